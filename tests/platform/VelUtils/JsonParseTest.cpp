#include "VelPlatform/StringIO.h"
#include "VelUtils/Json.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>
#include <string>
#include <vector>
#if !defined(_WIN32)
#    include <dlfcn.h>
#endif

namespace Json = VelUtils::Json;
using VelPlatform::ToNarrow;
using VelPlatform::ToWide;
using VelPlatform::VelString;
using namespace std::string_view_literals;

namespace
{

Json::Variant Parsed(const VelString& text)
{
    Json::Variant value = VelString(L"untouched");
    VelString error;
    EXPECT_TRUE(Json::Parse(text, value, error)) << text << ": " << error;
    return value;
}

double ParsedNumber(const char* text)
{
    return Parsed(ToWide(text)).Get<double>();
}

/// The error of a text that must be refused; checks that the value stays as it was.
std::string ErrorOf(const VelString& text)
{
    Json::Variant value = VelString(L"untouched");
    VelString error;
    EXPECT_FALSE(Json::Parse(text, value, error)) << text;
    EXPECT_EQ(value, Json::Variant(VelString(L"untouched"))) << text;
    return ToNarrow(error).c_str();
}

std::string ErrorOf(std::string_view utf8)
{
    return ErrorOf(ToWide(utf8));
}

VelString Repeated(const wchar_t* part, std::size_t count)
{
    VelString text;
    for (std::size_t i = 0; i < count; ++i)
    {
        text += part;
    }
    return text;
}

} // namespace

TEST(JsonParse, ReadsEveryKindOfValue)
{
    const Json::Variant value =
        Parsed(L" { \"n\" : null , \"t\":true,\"f\":false,\"s\":\"x\",\"d\":1.5,\"a\":[1,[]],\"o\":{} }\r\n");
    const Json::Object& object = value.Get<Json::Object>();
    ASSERT_EQ(object.GetSize(), 7u);
    EXPECT_TRUE(object.GetValue(L"n")->Is<Json::NullType>());
    EXPECT_TRUE(object.GetValue(L"t")->Get<bool>());
    EXPECT_FALSE(object.GetValue(L"f")->Get<bool>());
    EXPECT_EQ(object.GetValue(L"s")->Get<VelString>(), L"x");
    EXPECT_EQ(object.GetValue(L"d")->Get<double>(), 1.5);
    EXPECT_EQ(object.GetValue(L"a")->Get<Json::Array>().GetSize(), 2u);
    EXPECT_EQ(object.GetValue(L"o")->Get<Json::Object>().GetSize(), 0u);
}

TEST(JsonParse, ADocumentMayBeAnyValue)
{
    EXPECT_TRUE(Parsed(L"null").Is<Json::NullType>());
    EXPECT_TRUE(Parsed(L"true").Get<bool>());
    EXPECT_EQ(Parsed(L"\"a\"").Get<VelString>(), L"a");
    EXPECT_EQ(Parsed(L"7").Get<double>(), 7.0);
}

TEST(JsonParse, KeepsTheOrderOfMembers)
{
    const Json::Variant value = Parsed(L"{\"z\":1,\"a\":2,\"\":3}");
    EXPECT_EQ(value.Get<Json::Object>().GetValueName(0), L"z");
    EXPECT_EQ(value.Get<Json::Object>().GetValueName(1), L"a");
    EXPECT_EQ(value.Get<Json::Object>().GetValueName(2), L"");
}

TEST(JsonParse, EveryNumberIsADouble)
{
    for (const char* text : {"0", "-0", "1", "-1", "9223372036854775807", "-9223372036854775808",
                             "18446744073709551615", "18446744073709551616", "1.0", "1e3", "1E+3", "1e-3"})
    {
        EXPECT_TRUE(Parsed(ToWide(text)).Is<double>()) << text;
    }
}

TEST(JsonParse, MinusZeroKeepsItsSign)
{
    for (const char* text : {"-0", "-0.0", "-0e5", "-1e-400"})
    {
        EXPECT_EQ(ParsedNumber(text), 0.0) << text;
        EXPECT_TRUE(std::signbit(ParsedNumber(text))) << text;
    }
    EXPECT_FALSE(std::signbit(ParsedNumber("0")));
    EXPECT_FALSE(std::signbit(ParsedNumber("0.0")));
}

TEST(JsonParse, ANumberTooSmallForADoubleIsZero)
{
    EXPECT_EQ(ParsedNumber("1e-400"), 0.0);
    EXPECT_FALSE(std::signbit(ParsedNumber("1e-400")));
    EXPECT_EQ(ParsedNumber("123456789e-99999999999999999999"), 0.0);
}

TEST(JsonParse, AnExponentMayHaveAnyNumberOfDigits)
{
    EXPECT_EQ(ParsedNumber("1e-99999999999"), 0.0);
    EXPECT_EQ(ParsedNumber("1E+00000000000000000002"), 100.0);
    const Json::Variant value =
        Parsed(L"{\"1e99999999999\":[-3e-88888888888,\"\\\"2e77777777777\",1e-2147483648],\"e\":2e0000000000003}");
    const Json::Object& object = value.Get<Json::Object>();
    ASSERT_EQ(object.GetValueName(0), L"1e99999999999");
    const Json::Array& array = object.GetValue(std::size_t{0})->Get<Json::Array>();
    EXPECT_TRUE(std::signbit(array.GetValue(0)->Get<double>()));
    EXPECT_EQ(array.GetValue(1)->Get<VelString>(), L"\"2e77777777777");
    EXPECT_EQ(array.GetValue(2)->Get<double>(), 0.0);
    EXPECT_EQ(object.GetValue(L"e")->Get<double>(), 2000.0);
    EXPECT_EQ(ErrorOf("[1e-99999999999, -1e99999999999]"sv),
              "Line 1, column 18: expected a number in the range of a double");
    EXPECT_EQ(ErrorOf("[1e-99999999999 x"sv), "Line 1, column 17: expected ',' or ']', found 'x'");
    EXPECT_EQ(ErrorOf("[1e99999999999"sv), "Line 1, column 2: expected a number in the range of a double");
}

TEST(JsonParse, NumbersAreTheNearestDoubles)
{
    const struct
    {
        const char* text;
        double value;
    } cases[] = {
        {"0.1", 0.1},
        {"0.3", 0.3},
        {"1e23", 1e23},
        {"8.5e22", 8.5e22},
        {"9007199254740993", 9007199254740992.0},
        {"9007199254740995", 9007199254740996.0},
        {"9007199254740992.999999999999999999999", 9007199254740992.0 + 0x1p-53 * 0},
        {"9223372036854775807", 9223372036854775807.0},
        {"-9223372036854775808", -9223372036854775808.0},
        {"18446744073709551615", 18446744073709551615.0},
        {"123456789012345678901234567890", 123456789012345678901234567890.0},
        {"2.2250738585072011e-308", 2.2250738585072011e-308},
        {"2.2250738585072012e-308", 2.2250738585072012e-308},
        {"2.2250738585072014e-308", 2.2250738585072014e-308},
        {"4.9406564584124654e-324", 4.9406564584124654e-324},
        {"2.4703282292062328e-324", 0x1p-1074},
        {"2.4703282292062327e-324", 0.0},
        {"1.7976931348623157e308", 1.7976931348623157e308},
        {"1.7976931348623158e308", 1.7976931348623158e308},
        {"6929495644600919.5", 6929495644600919.5},
        {"3.7455744005952583e15", 3.7455744005952583e15},
        {"1.00000000000000011102230246251565404236316680908203125", 1.0},
        {"1.00000000000000011102230246251565404236316680908203124", 1.0},
        {"1.00000000000000011102230246251565404236316680908203126", 1.0 + 0x1p-52},
        {"0.000000000000000000000000000000000000000000000000000001e54", 1.0},
        {"5e-324", 5e-324},
        {"1e308", 1e308},
        {"7.2057594037927933e16", 7.2057594037927933e16},
        {"2.2204460492503131e-16", 2.2204460492503131e-16},
        {"6.02214076e23", 6.02214076e23},
    };
    for (const auto& [text, value] : cases)
    {
        EXPECT_EQ(ParsedNumber(text), value) << text;
    }
}

TEST(JsonParse, ANumberOfManyDigitsIsReadExactly)
{
    const std::string zeros(5000, '0');
    EXPECT_EQ(ParsedNumber(("0." + zeros + "1e5001").c_str()), 1.0);
    EXPECT_EQ(ParsedNumber(("1" + zeros + "e-5000").c_str()), 1.0);
    EXPECT_EQ(ParsedNumber(("1." + zeros + "1").c_str()), 1.0);
}

TEST(JsonParse, ANumberOutsideTheRangeOfADoubleIsAnError)
{
    for (const char* text : {"1e309", "-1e309", "1.7976931348623159e308", "1e99999999999999999999"})
    {
        EXPECT_EQ(ErrorOf(std::string_view(text)), "Line 1, column 1: expected a number in the range of a double")
            << text;
    }
    EXPECT_EQ(ErrorOf("[1, 1e999]"sv), "Line 1, column 5: expected a number in the range of a double");
    EXPECT_NE(ErrorOf(std::string(400, '9')), "");
}

TEST(JsonParse, OfMembersWithOneNameTheLastValueStandsInThePlaceOfTheFirst)
{
    const Json::Variant value = Parsed(L"{\"a\":1,\"b\":2,\"a\":{\"x\":[]},\"\\u0061\":3}");
    const Json::Object& object = value.Get<Json::Object>();
    ASSERT_EQ(object.GetSize(), 2u);
    EXPECT_EQ(object.GetValueName(0), L"a");
    EXPECT_EQ(object.GetValue(0)->Get<double>(), 3.0);
    EXPECT_EQ(object.GetValueName(1), L"b");
}

TEST(JsonParse, TakesAHundredThousandMembersOfOneName)
{
    const Json::Variant value = Parsed(L"{" + Repeated(L"\"a\":[0],", 100'000) + L"\"a\":1}");
    ASSERT_EQ(value.Get<Json::Object>().GetSize(), 1u);
    EXPECT_EQ(value.Get<Json::Object>().GetValue(0)->Get<double>(), 1.0);
}

TEST(JsonParse, ReadsEveryEscape)
{
    EXPECT_EQ(Parsed(L"\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0041\\u00e9\\u00E9\"").Get<VelString>(),
              L"\"\\/\b\f\n\r\tA\u00E9\u00E9");
    EXPECT_EQ(Parsed(L"\"\\uD834\\uDD1E\"").Get<VelString>(), L"\U0001D11E");
    EXPECT_EQ(Parsed(L"\"\\uFEFF\\uFFFE\\uFFFF\"").Get<VelString>(), L"\uFEFF\uFFFE\uFFFF");
}

TEST(JsonParse, AnEscapedZeroStaysInTheText)
{
    EXPECT_EQ(Parsed(L"\"a\\u0000b\"").Get<VelString>(), VelString(L"a\0b", 3));
    const Json::Variant object = Parsed(L"{\"a\\u0000\":1}");
    EXPECT_EQ(object.Get<Json::Object>().GetValueName(0), VelString(L"a\0", 2));
}

TEST(JsonParse, CharactersOutsideAsciiStandAsTheyAre)
{
    EXPECT_EQ(Parsed(L"\"\u00E9\u20AC\U0001D11E\u007F\u0080\"").Get<VelString>(),
              L"\u00E9\u20AC\U0001D11E\u007F\u0080");
}

TEST(JsonParse, AByteOrderMarkIsAnErrorExceptInsideAString)
{
    EXPECT_EQ(ErrorOf(VelString(L"\uFEFF{}")), "Line 1, column 1: expected a value, found U+FEFF");
    EXPECT_EQ(ErrorOf(VelString(L"{}\uFEFF")), "Line 1, column 3: expected the end of the text, found U+FEFF");
    EXPECT_NE(ErrorOf(VelString(L"[\uFEFF1]")), "");
    EXPECT_EQ(Parsed(L"\"\uFEFF\"").Get<VelString>(), L"\uFEFF");
}

TEST(JsonParse, AZeroCharacterIsAnErrorEverywhere)
{
    EXPECT_EQ(ErrorOf("\0"sv), "Line 1, column 1: expected a value, found U+0000");
    EXPECT_EQ(ErrorOf("1\0"sv), "Line 1, column 2: expected the end of the text, found U+0000");
    EXPECT_EQ(ErrorOf("1\0 garbage"sv), "Line 1, column 2: expected the end of the text, found U+0000");
    EXPECT_EQ(ErrorOf("\"a\0\""sv),
              "Line 1, column 3: expected a control character of a string to be written as an escape, found U+0000");
    EXPECT_NE(ErrorOf("[1,\0]"sv), "");
    EXPECT_NE(ErrorOf("{\"a\0\":1}"sv), "");
}

TEST(JsonParse, HalfASurrogatePairIsAnError)
{
    for (const wchar_t* text : {L"\"\\uD800\"", L"\"\\uDC00\"", L"\"\\uD800\\uD800\"", L"\"\\uD800\\n\"",
                                L"\"\\uD800x\"", L"\"\\uDD1E\\uD834\"", L"{\"\\uDEAD\":1}"})
    {
        EXPECT_THAT(ErrorOf(VelString(text)), testing::HasSubstr("surrogate pair")) << VelString(text);
    }
    const VelString raw = L"[\"\n" + (VelString() += static_cast<wchar_t>(0xD800)) + L"\"]";
    EXPECT_EQ(ErrorOf(raw), "Line 2, column 1: expected a character, found half a surrogate pair or no code point");
}

TEST(JsonParse, TakesFiveHundredAndTwelveContainersInEachOtherAndNotOneMore)
{
    EXPECT_TRUE(Parsed(Repeated(L"[", 512) + Repeated(L"]", 512)).Is<Json::Array>());
    EXPECT_TRUE(Parsed(Repeated(L"{\"a\":[", 256) + Repeated(L"]}", 256)).Is<Json::Object>());
    EXPECT_TRUE(Parsed(L"[" + Repeated(L"[],", 600) + L"{}]").Is<Json::Array>());
    EXPECT_EQ(ErrorOf(Repeated(L"[", 513) + Repeated(L"]", 513)),
              "Line 1, column 513: expected at most 512 containers in each other");
    EXPECT_EQ(ErrorOf(Repeated(L"{\"a\":\n[", 256) + L" {}" + Repeated(L"]}", 256)),
              "Line 257, column 3: expected at most 512 containers in each other");
}

TEST(JsonParse, EndlessOpeningBracketsEndInAnError)
{
    EXPECT_NE(ErrorOf(VelString::Make(10'000'000, [](wchar_t* out) { std::fill_n(out, 10'000'000, L'['); })), "");
    EXPECT_NE(ErrorOf(Repeated(L"{\"a\":", 100'000)), "");
}

TEST(JsonParse, ErrorsNameLineColumnAndWhatWasExpected)
{
    const struct
    {
        std::string_view text;
        const char* error;
    } cases[] = {
        {"", "Line 1, column 1: expected a value, found the end of the text"},
        {" \n ", "Line 2, column 2: expected a value, found the end of the text"},
        {"[", "Line 1, column 2: expected a value or ']', found the end of the text"},
        {"[1,]", "Line 1, column 4: expected a value, found ']'"},
        {"[1 2]", "Line 1, column 4: expected ',' or ']', found '2'"},
        {"[1\n,2\n\"three\"]", "Line 3, column 1: expected ',' or ']', found '\"'"},
        {"{", "Line 1, column 2: expected a member name in quotes or '}', found the end of the text"},
        {"{\"a\":1,}", "Line 1, column 8: expected a member name in quotes, found '}'"},
        {"{\"a\":1,true:2}", "Line 1, column 8: expected a member name in quotes, found 't'"},
        {"{\"a\" 1}", "Line 1, column 6: expected ':', found '1'"},
        {"{\"a\":}", "Line 1, column 6: expected a value, found '}'"},
        {"{\"a\":1 \"b\":2}", "Line 1, column 8: expected ',' or '}', found '\"'"},
        {"{\"a\":[]", "Line 1, column 8: expected ',' or '}', found the end of the text"},
        {"1 false", "Line 1, column 3: expected the end of the text, found 'f'"},
        {"{}{}", "Line 1, column 3: expected the end of the text, found '{'"},
        {"01", "Line 1, column 2: expected the end of the text, found '1'"},
        {"1.", "Line 1, column 3: expected a digit, found the end of the text"},
        {"[-x]", "Line 1, column 3: expected a digit, found 'x'"},
        {"1e+", "Line 1, column 4: expected a digit, found the end of the text"},
        {"+1", "Line 1, column 1: expected a value, found '+'"},
        {"NaN", "Line 1, column 1: expected a value, found 'N'"},
        {"[nul]", "Line 1, column 5: expected a value or ']', found ']'"},
        {"[1,tru", "Line 1, column 7: expected a value, found the end of the text"},
        {"{\"a\":falsy}", "Line 1, column 10: expected a value, found 'y'"},
        {"truetrue", "Line 1, column 5: expected the end of the text, found 't'"},
        {"[null null]", "Line 1, column 7: expected ',' or ']', found 'n'"},
        {"[1}", "Line 1, column 3: expected ',' or ']', found '}'"},
        {"{\"a\":\"\\\\\" 1}", "Line 1, column 11: expected ',' or '}', found '1'"},
        {"'a'", "Line 1, column 1: expected a value, found '''"},
        {"// c\n1", "Line 1, column 1: expected a value, found '/'"},
        {"\"abc", "Line 1, column 5: expected '\"' at the end of the string, found the end of the text"},
        {"\"\\x\"", "Line 1, column 3: expected one of \"\\/bfnrtu after the backslash, found 'x'"},
        {"\"\\u12G4\"", "Line 1, column 6: expected four hexadecimal digits after \\u, found 'G'"},
        {"\"\\", "Line 1, column 3: expected one of \"\\/bfnrtu after the backslash, found the end of the text"},
        {"\"\\u0041\\u1", "Line 1, column 11: expected four hexadecimal digits after \\u, found the end of the text"},
        {"\"\\uD834\\uD834\"",
         "Line 1, column 10: expected the second half of a surrogate pair behind the first, found 'D'"},
        {"[\"\\uDC00\"]",
         "Line 1, column 9: expected the first half of a surrogate pair before the second, found '\"'"},
        {"\"a\tb\"",
         "Line 1, column 3: expected a control character of a string to be written as an escape, found U+0009"},
        {"\"\xC3\xA9\xF0\x9D\x84\x9E\" x", "Line 1, column 6: expected the end of the text, found 'x'"},
        {"\r\n\r\n\r[\n1 x", "Line 5, column 3: expected ',' or ']', found 'x'"},
        {"\xC2\xA0"
         "1",
         "Line 1, column 1: expected a value, found U+00A0"},
    };
    for (const auto& [text, error] : cases)
    {
        EXPECT_EQ(ErrorOf(text), error) << text;
    }
}

TEST(JsonParse, Utf8IsReadLikeWideText)
{
    for (const std::string_view text :
         {"{\"a\":[1,\"\xC3\xA4 \xF0\x9D\x84\x9E\",null],\"\xE2\x82\xAC\":{}}"sv, "[1,"sv, "[\"\xC3\xA9\", x]"sv, ""sv})
    {
        Json::Variant value = VelString(L"untouched");
        VelString error;
        Json::Variant wideValue = VelString(L"untouched");
        VelString wideError;
        EXPECT_EQ(Json::ParseUtf8(text, value, error), Json::Parse(ToWide(text), wideValue, wideError)) << text;
        EXPECT_EQ(value, wideValue) << text;
        EXPECT_EQ(error, wideError) << text;
    }
}

TEST(JsonParse, MalformedUtf8IsAnError)
{
    for (const std::string_view text : {"\"\xC3\xA9\xFF\""sv, "\"\xC3\xA9\xED\xA0\x80\""sv, "\"\xC3\xA9\xC3"sv})
    {
        Json::Variant value = VelString(L"untouched");
        VelString error;
        EXPECT_FALSE(Json::ParseUtf8(text, value, error));
        EXPECT_EQ(value, Json::Variant(VelString(L"untouched")));
        EXPECT_EQ(error, L"Line 1, column 3: expected a character, found no UTF-8");
    }
}

TEST(JsonParse, OfRepeatedNamesAndTextsEachIsReadAsItStands)
{
    // Many short texts, some of them again and again, more than any store of recent texts holds.
    VelString text(L"{");
    for (int i = 0; i < 3000; ++i)
    {
        text += VelString::Format(L"{}\"{}\":{{\"name{}\":\"value{}\",\"name\":\"value\",\"name{}\":\"last\"}}",
                                  i == 0 ? L"" : L",", i, i % 7, i % 700, i % 7);
    }
    const Json::Variant value = Parsed(text + L"}");
    const Json::Object& object = value.Get<Json::Object>();
    ASSERT_EQ(object.GetSize(), 3000u);
    for (int i = 0; i < 3000; ++i)
    {
        const auto& inner = object.GetValue(VelString::Format(L"{}", i))->Get<Json::Object>();
        ASSERT_EQ(inner.GetSize(), 2u);
        ASSERT_EQ(inner.GetValueName(0), VelString::Format(L"name{}", i % 7));
        ASSERT_EQ(inner.GetValue(std::size_t{0})->Get<VelString>(), L"last");
        ASSERT_EQ(inner.GetValue(L"name")->Get<VelString>(), L"value");
    }
}

TEST(JsonParse, AMessageFromTheTextIsNotTakenForAnError)
{
    EXPECT_EQ(ErrorOf("[\"; last read: ' - closing quote\" x"sv), "Line 1, column 35: expected ',' or ']', found 'x'");
    EXPECT_EQ(ErrorOf("{\"while parsing object key - expected end of input\" x"sv),
              "Line 1, column 53: expected ':', found 'x'");
}

TEST(JsonParse, AnErrorLeavesTheValueAndASuccessReplacesIt)
{
    Json::Variant value = 5.0;
    VelString error;
    EXPECT_FALSE(Json::Parse(L"[1, 2", value, error));
    EXPECT_EQ(value, Json::Variant(5.0));
    EXPECT_FALSE(error.empty());
    EXPECT_TRUE(Json::Parse(L"[]", value, error));
    EXPECT_EQ(value, Json::Variant(Json::Array()));
}

TEST(JsonParse, EveryPrefixOfADocumentIsAnError)
{
    const std::string text = "{\"a\":[1.5e3,-2,\"x\\u00e9\\n\",true,false,null,{}],\"b\":{\"c\":[]}}";
    for (std::size_t size = 0; size < text.size(); ++size)
    {
        EXPECT_NE(ErrorOf(std::string_view(text).substr(0, size)), "") << size;
    }
    Parsed(ToWide(text));
}

TEST(JsonParse, DamagedDocumentsAreReadOrRefusedButNeverBreak)
{
    const std::string text = "{\"a\":[1.5e3,-2,\"x\\u00e9\\ud834\\udd1e\\n\",true,null,{}],\"b\":{\"c\":[]}}";
    std::mt19937 random(20240601);
    std::size_t read = 0;
    for (int i = 0; i < 20'000; ++i)
    {
        VelString damaged = ToWide(text);
        std::vector<wchar_t> units(damaged.begin(), damaged.end());
        for (std::size_t changes = random() % 3 + 1; changes > 0; --changes)
        {
            units[random() % units.size()] = static_cast<wchar_t>(random() % 4 ? random() % 128 : random() % 0x10000);
        }
        Json::Variant value;
        VelString error;
        const bool done = Json::Parse(VelString(units.data(), units.size()), value, error);
        EXPECT_EQ(done, error.empty());
        read += done;
    }
    EXPECT_GT(read, 0u);
}

#if !defined(_WIN32)
TEST(JsonParse, NoSymbolOfTheReadingLibraryReachesAHost)
{
    Dl_info found{};
    ASSERT_NE(dladdr(reinterpret_cast<void*>(&Json::Parse), &found), 0);
    const std::string command = "nm -DC --defined-only '" + std::string(found.dli_fname) + "'";
    FILE* const pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string symbols;
    char chunk[4096];
    for (std::size_t size = 0; (size = fread(chunk, 1, sizeof chunk, pipe)) > 0;)
    {
        symbols.append(chunk, size);
    }
    ASSERT_EQ(pclose(pipe), 0);
    EXPECT_THAT(symbols, testing::Not(testing::HasSubstr("boost")));
}
#endif
