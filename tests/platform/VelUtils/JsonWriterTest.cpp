#include "VelPlatform/StringIO.h"
#include "VelUtils/Json.h"

#include <gmock/gmock.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace Json = VelUtils::Json;
using VelPlatform::VelString;
using VelPlatform::VelStringA;

namespace
{

VelString Compact(const Json::Variant& value)
{
    return Json::ValueToString(value, true);
}

Json::Variant ReadBack(const VelString& text)
{
    Json::Variant value;
    VelString error;
    EXPECT_TRUE(Json::Parse(text, value, error)) << error << ": " << text;
    return value;
}

/// Values of all kinds that reading gives back as they were, made by chance.
class RandomValues
{
public:
    explicit RandomValues(std::uint32_t seed) : m_random(seed) {}

    double Double()
    {
        for (;;)
        {
            const double value = std::bit_cast<double>((std::uint64_t{m_random()} << 32) | m_random());
            if (std::isfinite(value))
            {
                return value;
            }
        }
    }

    VelString Text()
    {
        VelString text;
        for (std::size_t size = m_random() % 12; size > 0; --size)
        {
            constexpr wchar_t kSpecial[] = L"\"\\/\b\f\n\r\t\0\x1F\x7F\uFEFF\uFFFF\u2028";
            const auto any = static_cast<wchar_t>(m_random() % 0xD800);
            text += m_random() % 2 ? kSpecial[m_random() % (std::size(kSpecial) - 1)] : any;
        }
        return text;
    }

    Json::Variant Value(int depth)
    {
        switch (m_random() % (depth > 0 ? 6 : 4))
        {
        case 0:
            return Double();
        case 1:
            return Text();
        case 2:
            return m_random() % 2 == 0;
        case 3:
            return Json::Variant();
        case 4: {
            Json::Array array;
            for (std::size_t size = m_random() % 6; size > 0; --size)
            {
                array.AddValue(Value(depth - 1));
            }
            return array;
        }
        default: {
            Json::Object object;
            for (std::size_t size = m_random() % 24; size > 0; --size)
            {
                object.AddValue(Text(), Value(depth - 1));
            }
            return object;
        }
        }
    }

private:
    std::mt19937 m_random;
};

} // namespace

TEST(JsonWriter, WritesEveryKindOfValue)
{
    EXPECT_EQ(Compact(Json::Variant()), L"null");
    EXPECT_EQ(Compact(true), L"true");
    EXPECT_EQ(Compact(false), L"false");
    EXPECT_EQ(Compact(VelString(L"wide")), L"\"wide\"");
    EXPECT_EQ(Compact(VelStringA("narrow")), L"\"narrow\"");
    EXPECT_EQ(Compact(Json::Array()), L"[]");
    EXPECT_EQ(Compact(Json::Object()), L"{}");
}

TEST(JsonWriter, IntegersAreWrittenWithoutAFraction)
{
    EXPECT_EQ(Compact(std::int64_t{0}), L"0");
    EXPECT_EQ(Compact(std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
    EXPECT_EQ(Compact(std::numeric_limits<std::int64_t>::max()), L"9223372036854775807");
    EXPECT_EQ(Compact(std::numeric_limits<std::uint64_t>::max()), L"18446744073709551615");
}

TEST(JsonWriter, DoublesAreWrittenWithTheFewestDigitsThatReadBack)
{
    const struct
    {
        double value;
        const wchar_t* text;
    } cases[] = {
        {0.0, L"0.0"},
        {-0.0, L"-0.0"},
        {1.0, L"1.0"},
        {3.0, L"3.0"},
        {-3.0, L"-3.0"},
        {10.0, L"10.0"},
        {123.0, L"123.0"},
        {1.5, L"1.5"},
        {-12.375, L"-12.375"},
        {0.1, L"0.1"},
        {0.1 + 0.2, L"0.30000000000000004"},
        {1.0 / 3, L"0.3333333333333333"},
        {100.25, L"100.25"},
        {9007199254740992.0, L"9007199254740992.0"},
        {123456789012345680000.0, L"123456789012345680000.0"},
        {1e20, L"100000000000000000000.0"},
        {999999999999999900000.0, L"999999999999999900000.0"},
        {1e21, L"1e+21"},
        {-1e21, L"-1e+21"},
        {1.5e21, L"1.5e+21"},
        {1e30, L"1e+30"},
        {1e100, L"1e+100"},
        {1e-5, L"0.00001"},
        {1e-6, L"0.000001"},
        {1.25e-6, L"0.00000125"},
        {1e-7, L"1e-7"},
        {1.5e-7, L"1.5e-7"},
        {9.999e-7, L"9.999e-7"},
        {5e-324, L"5e-324"},
        {2.2250738585072014e-308, L"2.2250738585072014e-308"},
        {std::numeric_limits<double>::max(), L"1.7976931348623157e+308"},
        {-std::numeric_limits<double>::max(), L"-1.7976931348623157e+308"},
    };
    for (const auto& [value, text] : cases)
    {
        EXPECT_EQ(Compact(value), text);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(ReadBack(text).Get<double>()), std::bit_cast<std::uint64_t>(value));
    }
}

TEST(JsonWriter, WhatIsNoNumberBecomesNull)
{
    EXPECT_EQ(Compact(std::numeric_limits<double>::quiet_NaN()), L"null");
    EXPECT_EQ(Compact(std::numeric_limits<double>::infinity()), L"null");
    EXPECT_EQ(Compact(-std::numeric_limits<double>::infinity()), L"null");
}

TEST(JsonWriter, StringsAreEscapedWhereTheyMustBeAndNowhereElse)
{
    EXPECT_EQ(Compact(VelString(L"\"\\\b\f\n\r\t")), L"\"\\\"\\\\\\b\\f\\n\\r\\t\"");
    EXPECT_EQ(Compact(VelString(L"\0\x01\x1F", 3)), L"\"\\u0000\\u0001\\u001F\"");
    EXPECT_EQ(Compact(VelString(L"a/b'<\x7F\u00E9\u2028\uFEFF\U0001D11E")),
              L"\"a/b'<\x7F\u00E9\u2028\uFEFF\U0001D11E\"");
    Json::Object object;
    object.AddValue(L"a\"\n", 1.0);
    EXPECT_EQ(Compact(object), L"{\"a\\\"\\n\":1.0}");
}

TEST(JsonWriter, HalfASurrogatePairIsReplaced)
{
    VelString text = L"a";
    text += static_cast<wchar_t>(0xD800);
    text += L"b";
    text += static_cast<wchar_t>(0xDC00);
    EXPECT_EQ(Compact(text), L"\"a\uFFFDb\uFFFD\"");
    EXPECT_EQ(ReadBack(Compact(text)), Json::Variant(VelString(L"a\uFFFDb\uFFFD")));
}

TEST(JsonWriter, NarrowStringsAreUtf8AndWhatIsNotIsReplaced)
{
    EXPECT_EQ(Compact(VelStringA("\xC3\xA9\xF0\x9D\x84\x9E\"")), L"\"\u00E9\U0001D11E\\\"\"");
    EXPECT_EQ(Compact(VelStringA("a\xFF"
                                 "b\xC3")),
              L"\"a\uFFFDb\uFFFD\"");
}

TEST(JsonWriter, TheCompactFormHasNoWhiteSpace)
{
    const VelString text = L"{\"a\":[1.0,[],{}],\"b\":{\"c\":null,\"d\":\"x y\"}}";
    EXPECT_EQ(Compact(ReadBack(text)), text);
}

TEST(JsonWriter, TheIndentedFormHasOneMemberALine)
{
    const VelString text =
        L"{\n \"version\": 3.0,\n \"font\": {\n  \"a\": [\n   1.0,\n   \"x\"\n  ],\n  \"b\": {},\n  \"c\": []\n }\n}";
    EXPECT_EQ(Json::ValueToString(ReadBack(text), false), text);
    EXPECT_EQ(Json::ValueToString(Json::Object(), false), L"{}");
    EXPECT_EQ(Json::ValueToString(Json::Array(), false), L"[]");
    EXPECT_EQ(Json::ValueToString(1.0, false), L"1.0");
}

TEST(JsonWriter, KeepsTheOrderOfMembers)
{
    Json::Object object;
    object.AddValue(L"z", 1.0);
    object.AddValue(L"a", 2.0);
    EXPECT_EQ(Compact(object), L"{\"z\":1.0,\"a\":2.0}");
}

TEST(JsonWriter, WhatWasWrittenReadsBackEqual)
{
    RandomValues values(20240602);
    for (int i = 0; i < 300; ++i)
    {
        const Json::Variant value = values.Value(4);
        for (const bool compact : {true, false})
        {
            const VelString text = Json::ValueToString(value, compact);
            const Json::Variant back = ReadBack(text);
            ASSERT_EQ(back, value) << text;
            ASSERT_EQ(Json::ValueToString(back, compact), text);
        }
    }
}

TEST(JsonWriter, EveryDoubleReadsBackBitByBit)
{
    RandomValues values(20240603);
    for (int i = 0; i < 20'000; ++i)
    {
        const double value = values.Double();
        const VelString text = Compact(value);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(ReadBack(text).Get<double>()), std::bit_cast<std::uint64_t>(value))
            << text;
    }
}

TEST(JsonWriter, WritingADeepValueNeedsNoDeepStack)
{
    constexpr std::size_t kDepth = 100'000;
    Json::Variant value;
    for (std::size_t i = 0; i < kDepth; ++i)
    {
        Json::Array array;
        array.AddValue(std::move(value));
        value = std::move(array);
    }
    const VelString text = Compact(value);
    EXPECT_EQ(text.size(), 2 * kDepth + 4);
}

TEST(JsonWriter, WritesPieceByPieceWhatItWritesOfTheWhole)
{
    RandomValues values(20240604);
    for (int i = 0; i < 100; ++i)
    {
        Json::Object inner;
        Json::Object whole;
        for (std::size_t member = 0; member < static_cast<std::size_t>(i % 5); ++member)
        {
            inner.AddValue(VelString::Format(L"\"{}\" \u00E4\U0001D11E", member), values.Value(3));
        }
        whole.AddValue(L"before", values.Value(2));
        whole.AddValue(L"inner", inner);
        whole.AddValue(L"behind", values.Value(2));
        for (const bool compact : {true, false})
        {
            const auto write = [&](auto&& writer) {
                writer.StartObject();
                writer.Name(L"before");
                writer.Value(*whole.GetValue(L"before"));
                writer.Name(L"inner");
                writer.StartObject();
                for (std::size_t member = 0; member < inner.GetSize(); ++member)
                {
                    writer.Name(inner.GetValueName(member));
                    writer.Value(*inner.GetValue(member));
                }
                writer.EndObject();
                writer.Name(L"behind");
                writer.Value(*whole.GetValue(L"behind"));
                writer.EndObject();
                return writer.Finish();
            };
            const VelString text = Json::ValueToString(whole, compact);
            ASSERT_EQ(write(Json::Writer(compact)), text);
            ASSERT_EQ(write(Json::Utf8Writer(compact)), VelPlatform::ToNarrow(text));
        }
    }
}

TEST(JsonWriter, ReplacesWhatUtf8CannotExpress)
{
    const wchar_t lone[] = {L'a', static_cast<wchar_t>(0xD800), L'b', 0};
    Json::Utf8Writer writer(true);
    writer.Value(VelString(lone));
    EXPECT_EQ(writer.Finish(), "\"a\xEF\xBF\xBD"
                               "b\"");
}
