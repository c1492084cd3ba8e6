#include <styles/StylesIO.h>

#include "support/NullKeepingProperty.h"
#include "support/StyleMaking.h"

#include <gmock/gmock.h>

#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace Styles::Testing
{

namespace
{

enum class Corner
{
    Sharp,
    Round
};

struct Inch
{
    int count;
};

struct Foreign
{};

/// Knows inches; everything else is a value of another type.
class InchPolicy final : public VelPref::Detail::IConversionPolicy
{
public:
    VelPlatform::VelStringT<wchar_t> ToText(const VelUtils::Any& value) const override
    {
        return VelString::Format(L"{} in", value.Get<Inch>().count);
    }
    VelUtils::Any FromText(const VelPlatform::VelStringT<wchar_t>&) const override { return Any(Inch{1}); }
};

class StylesIO : public SchemaFixture
{
protected:
    template <class T>
    static std::string Written(const T& value)
    {
        std::ostringstream stream;
        stream << value;
        return stream.str();
    }
    template <class T>
    static std::string WrittenAny(T value)
    {
        return Written(Any(std::move(value)));
    }
};

} // namespace

TEST_F(StylesIO, AKeyIsWrittenAsItsText)
{
    EXPECT_EQ("fill", Written(Fill));
    EXPECT_EQ("", Written(PropertyKey::Empty));
    EXPECT_EQ("stra\xC3\x9F"
              "e",
              Written(Key(L"stra\u00DFe")));
}

TEST_F(StylesIO, TextsAreWrittenInQuotesAndNumbersAsInDocuments)
{
    EXPECT_EQ("\"red\"", WrittenAny(VelString(L"red")));
    EXPECT_EQ("\"a \\\"b\\\"\\n\"", WrittenAny(VelString(L"a \"b\"\n")));
    EXPECT_EQ("\"red\"", WrittenAny(VelStringA("red")));
    EXPECT_EQ("0.1", WrittenAny(0.1));
    EXPECT_EQ("-3", WrittenAny(-3));
    EXPECT_EQ("4294967295", WrittenAny(std::uint32_t{4294967295}));
    EXPECT_EQ("-9223372036854775808", WrittenAny(std::numeric_limits<std::int64_t>::min()));
    EXPECT_EQ("18446744073709551615", WrittenAny(std::numeric_limits<std::uint64_t>::max()));
    EXPECT_EQ("true", WrittenAny(true));
    EXPECT_EQ("false", WrittenAny(false));
}

TEST_F(StylesIO, OtherValuesAreWrittenByTheirKind)
{
    EXPECT_EQ("(empty)", Written(Any()));
    EXPECT_EQ("1", WrittenAny(Corner::Round));
    EXPECT_EQ("\"fill\"", WrittenAny(Fill));
    EXPECT_EQ("null", Written(NullSubstyle()));
    EXPECT_EQ("null", WrittenAny(static_cast<const Style*>(nullptr)));
    EXPECT_EQ("0 styles", WrittenAny(std::vector<Style*>()));
    EXPECT_EQ("2 styles", WrittenAny(std::vector<Style*>(2, nullptr)));
    Json::Array array;
    array.AddValue(0.5);
    Json::Object object;
    object.AddValue(VelString(L"a"), array);
    EXPECT_EQ("[0.5]", WrittenAny(array));
    EXPECT_EQ("{\"a\":[0.5]}", WrittenAny(object));
    EXPECT_EQ("{\"a\":[0.5]}", WrittenAny(Json::Variant(object)));
}

TEST_F(StylesIO, AValueOfAnotherTypeIsWrittenAsTheNameOfItsType)
{
    const std::string name = WrittenAny(Inch{3});
    EXPECT_THAT(name, testing::MatchesRegex("\\(.*Inch.*\\)"));
}

TEST_F(StylesIO, TheTypeOfAValueHasTheNameThatProgramsWrite)
{
    EXPECT_EQ(VelString(L"(empty)"), GetReadableTypeName(Any()));
    EXPECT_EQ(VelString(L"double"), GetReadableTypeName(Any(0.5)));
    EXPECT_THAT(Utf8(GetReadableTypeName(Any(Inch{3}))), testing::EndsWith("Inch"));
}

TEST_F(StylesIO, AStyleIsWrittenWithItsOwnValuesInTheOrderOfTheirNames)
{
    Style base(nullptr, StyleCategoryName);
    Style style(&base, StyleCategoryName);
    EXPECT_EQ("style of \"style\", 0 values", Written(base));
    EXPECT_EQ("style of \"style\", inherits, 0 values", Written(style));

    style.SetProperty(Number, Any(0.5));
    EXPECT_EQ("style of \"style\", inherits, 1 value {number = 0.5}", Written(style));
    style.SetProperty(Note, Any(L"a; b"));
    AddSubstyle(style, Fill, Fill).SetProperty(Color, Any(L"red"));
    AddElements(style, Stops, Stop, 1);
    EXPECT_EQ(
        "style of \"style\", inherits, 4 values {fill = style of \"fill\", 1 value; note = \"a; b\"; number = 0.5; "
        "stops = 1 style}",
        Written(style));
    EXPECT_EQ("style without category, 0 values", Written(Style()));
}

TEST_F(StylesIO, AStyleInAValueIsWrittenWithoutItsValues)
{
    Style style(nullptr, Fill);
    style.SetProperty(Color, Any(L"red"));
    EXPECT_EQ("style of \"fill\", 1 value", WrittenAny(&style));
    EXPECT_EQ("style of \"fill\", 1 value", WrittenAny(static_cast<const Style*>(&style)));
}

TEST_F(StylesIO, ValuesOfAHostsTypesAreWrittenByTheirPolicyWhereItKnowsThem)
{
    const PropertyKey inches = Key(L"inches"), plain = Key(L"plain");
    Manager().RegisterProperty(Fill, inches, new StyleProperty(nullptr, Inch{1}, new InchPolicy(), 0));
    Manager().RegisterProperty(Fill, plain, new StyleProperty(nullptr, Inch{1}, nullptr, 0));
    Style style(nullptr, Fill);
    style.SetProperty(inches, Any(Inch{3}));
    EXPECT_EQ("style of \"fill\", 1 value {inches = 3 in}", Written(style));
    style.SetProperty(inches, Any(VelString(L"wrong")));
    EXPECT_EQ("style of \"fill\", 1 value {inches = \"wrong\"}", Written(style));

    style.SetProperty(inches, Any(Foreign()));
    EXPECT_THAT(Written(style), testing::MatchesRegex("style of \"fill\", 1 value \\{inches = \\(.*Foreign.*\\)\\}"));
    style.ClearProperty(inches);
    style.SetProperty(plain, Any(Inch{3}));
    EXPECT_THAT(Written(style), testing::MatchesRegex("style of \"fill\", 1 value \\{plain = \\(.*Inch.*\\)\\}"));
    // A style keeps its values when its category is gone, and when it gets another.
    Manager().DeregisterCategory(Fill);
    EXPECT_THAT(Written(style), testing::MatchesRegex("style of \"fill\", 1 value \\{plain = \\(.*Inch.*\\)\\}"));
}

TEST_F(StylesIO, LongValuesAndLongListsAreCut)
{
    Style style(nullptr, StyleCategoryName);
    style.SetProperty(Note, Any(VelString(std::wstring(1000, L'x').c_str())));
    EXPECT_EQ("style of \"style\", 1 value {note = \"" + std::string(92, 'x') + "...}", Written(style));
    EXPECT_EQ(1002U, WrittenAny(VelString(std::wstring(1000, L'x').c_str())).size());

    TestSheet sheet;
    for (int number = 10; number < 31; ++number)
    {
        sheet.AddStyle(VelString::Format(L"{}", number), nullptr, false);
    }
    const std::string text = Written(sheet);
    EXPECT_THAT(text, testing::StartsWith("sheet of 21 styles, version 3 {\"10\"; \"11\"; "));
    EXPECT_THAT(text, testing::EndsWith("; \"29\"; ...}"));
}

TEST_F(StylesIO, ASheetIsWrittenAsTheNamesOfItsStyles)
{
    TestSheet sheet;
    EXPECT_EQ("sheet of 0 styles, version 3", Written(sheet));
    sheet.Add(L"Warning", Fill);
    EXPECT_EQ("sheet of 1 style, version 3 {\"Warning\"}", Written(sheet));
    sheet.Add(L"Outline", Fill);
    EXPECT_EQ("sheet of 2 styles, version 3 {\"Outline\"; \"Warning\"}", Written(sheet));
}

TEST_F(StylesIO, StylesThatInheritFromOrHoldThemselvesAreWritten)
{
    Style style(nullptr, Nest);
    Style& inner = AddSubstyle(style, Nest, Nest, &style);
    style.SetParent(&inner);
    EXPECT_EQ("style of \"nest\", inherits, 1 value {nest = style of \"nest\", inherits, 0 values}", Written(style));
    style.SetParent(nullptr);
}

TEST_F(StylesIO, WidthAndFillAreForTheWholeText)
{
    Style style(nullptr, Fill);
    std::ostringstream stream;
    stream << std::setfill('.') << std::setw(6) << Fill << std::setw(5) << Any(0.5) << std::setw(26) << style << '|'
           << std::setw(30) << TestSheet();
    EXPECT_EQ("..fill..0.5.style of \"fill\", 0 values|..sheet of 0 styles, version 3", stream.str());
}

TEST_F(StylesIO, TheSettingsAndTheLocaleOfTheStreamPlayNoPart)
{
    struct Comma : std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };
    std::ostringstream stream;
    stream.imbue(std::locale(stream.getloc(), new Comma));
    stream << std::hex << std::setprecision(1) << Any(1234.5) << ' ' << Any(123456);
    EXPECT_EQ("1234.5 123456", stream.str());
}

} // namespace Styles::Testing
