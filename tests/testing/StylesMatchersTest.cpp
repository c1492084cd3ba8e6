#include <styles/testing/StylesMatchers.h>

#include "support/StyleMaking.h"

#include <gtest/gtest-spi.h>

#include <memory>
#include <string>
#include <vector>

using testing::AllOf;
using testing::Gt;
using testing::HasSubstr;
using testing::Not;

namespace Styles::Testing
{

namespace
{

class StylesMatchers : public SchemaFixture
{
protected:
    StylesMatchers()
    {
        base.SetProperty(Note, Any(L"red"));
        base.SetPathProperty({Fill, Color}, Any(L"blue"));
        style.SetProperty(Number, Any(0.5));
        style.GetSubstyleAndCreateIfMissing(Character, Character);
    }

    /// What a failed test prints behind "Actual: ...".
    template <class Subject>
    static std::string Explained(const StyleMatcher& matcher, const Subject& subject)
    {
        testing::StringMatchResultListener listener;
        testing::ExplainMatchResult(matcher, subject, &listener);
        return listener.str();
    }
    static std::string Described(const testing::Matcher<const Style&>& matcher)
    {
        return testing::DescribeMatcher<const Style&>(matcher);
    }
    static std::string Denied(const testing::Matcher<const Style&>& matcher)
    {
        return testing::DescribeMatcher<const Style&>(matcher, true);
    }

    Style base{nullptr, StyleCategoryName}, style{&base, StyleCategoryName};
};

} // namespace

TEST_F(StylesMatchers, HasValueMatchesOwnInheritedAndDefaultValues)
{
    EXPECT_THAT(style, HasValue(Number, 0.5));
    EXPECT_THAT(style, HasValue(Note, L"red"));
    EXPECT_THAT(style, HasValue(Note, Any(L"red")));
    EXPECT_THAT(Style(nullptr, StyleCategoryName), HasValue(Note, L"default note"));
    EXPECT_THAT(style, Not(HasValue(Note, L"blue")));
}

TEST_F(StylesMatchers, HasValueFollowsPathsThroughEffectiveSubstyles)
{
    EXPECT_THAT(style, HasValue(L"fill.color", L"blue"));
    EXPECT_THAT(style, HasValue(MakePath(Fill, Color), L"blue"));
    EXPECT_THAT(base, HasValue(L"fill.angle", 0.0));
    EXPECT_THAT(base, HasValue(VelString(L"outline.width"), 0.5)) << "the default, there being no substyle";
    EXPECT_THAT(base, HasValue(L"character.fill.color", L"white")) << "the default two substyles down";
    base.SetPathProperty({Character, Font}, Any(L"Serif"));
    EXPECT_THAT(style, HasValue(L"character.font", L"Serif")) << "through the owner";
}

TEST_F(StylesMatchers, AnythingThatLeadsToAStyleIsMatched)
{
    const Style* pointer = &style;
    const auto shared = std::make_shared<Style>(style);
    const auto unique = std::make_unique<const Style>(style);
    EXPECT_THAT(pointer, HasValue(Number, 0.5));
    EXPECT_THAT(shared, HasValue(Number, 0.5));
    EXPECT_THAT(unique, HasValue(Number, 0.5));
    EXPECT_THAT(SubStyle(&style), HasValue(Number, 0.5));
    EXPECT_THAT((std::vector<Style*>{&style, &style}), testing::Each(HasValue(Number, 0.5)));

    pointer = nullptr;
    EXPECT_THAT(pointer, Not(HasValue(Number, 0.5)));
    EXPECT_EQ("which is null", Explained(HasValue(Number, 0.5), pointer));
    EXPECT_EQ("which is null", Explained(HasValue(Number, 0.5), std::unique_ptr<Style>()));
}

TEST_F(StylesMatchers, AFailureSaysWhatIsThereAndFromWhere)
{
    const StyleMatcher note = HasValue(Note, L"x");
    const StyleMatcher number = HasValue(Number, 1.0);
    EXPECT_EQ("whose \"number\" is 0.5 (double), its own", Explained(number, style));
    EXPECT_EQ("whose \"number\" is 0.25 (double), the default", Explained(number, base));
    EXPECT_THAT(Explained(note, style),
                AllOf(HasSubstr("whose \"note\" is \"red\" ("),
                      HasSubstr("), inherited from its parent: style of \"style\", 2 values {fill = ")));
    Style heir(&style, StyleCategoryName);
    EXPECT_THAT(Explained(note, heir), HasSubstr("inherited from its ancestor 2 above: style of \"style\", 2 values"));

    base.SetPathProperty({Character, Size}, Any(1.0));
    EXPECT_EQ("whose \"character.size\" is 1 (double), inherited through its owner",
              Explained(HasValue(L"character.size", 2.0), style));
    EXPECT_EQ("whose \"outline.width\" is 0.5 (double), the default, for want of a substyle",
              Explained(HasValue(L"outline.width", 2.0), style));
}

TEST_F(StylesMatchers, APlaceThatLeadsNowhereDoesNotMatchAndSaysWhy)
{
    const Style empty;
    const StyleMatcher unknown = HasValue(L"fill.pattern", 1.0);
    EXPECT_THAT(style, Not(unknown));
    EXPECT_EQ("where style of \"fill\", 1 value {color = \"blue\"} knows no \"pattern\"", Explained(unknown, style));
    EXPECT_EQ("where style without category, 0 values knows no \"note\"", Explained(HasValue(Note, 1), empty));
    EXPECT_EQ("where \"number\" is no substyle but 0.5 (double)", Explained(HasValue(L"number.width", 1), style));
    EXPECT_EQ("where \"outline\" holds no substyle, and its category knows no \"dash\"",
              Explained(HasValue(L"outline.dash", 1), style));
    EXPECT_EQ("where \"outline\" holds no substyle, and its category knows no \"width\"",
              Explained(HasValue(L"outline.dash.width", 1), style));
    EXPECT_EQ("where the path is empty", Explained(HasValue(PropertyPath(), 1), style));
    EXPECT_EQ("where the path is empty", Explained(HasOwnValue(PropertyPath(), 1), style));
}

TEST_F(StylesMatchers, ValuesOfDifferentTypesDiffer)
{
    style.SetProperty(Number, Any(1.0));
    EXPECT_THAT(style, Not(HasValue(Number, 1)));
    EXPECT_EQ("has the value 1 (int) for \"number\"", Described(HasValue(Number, 1)));
    EXPECT_EQ("whose \"number\" is 1 (double), its own", Explained(HasValue(Number, 1), style));
}

TEST_F(StylesMatchers, SubstylesAreComparedAsTheirDefinitionDoes)
{
    Style blue(nullptr, Fill);
    blue.SetProperty(Color, Any(L"blue"));
    const Style& same = blue;
    const Style* pointer = &blue;
    EXPECT_THAT(base, HasValue(Fill, blue));
    EXPECT_THAT(base, HasOwnValue(Fill, same));
    EXPECT_THAT(base, HasOwnValue(Fill, pointer));
    blue.SetProperty(Angle, Any(1.0));
    EXPECT_THAT(base, Not(HasValue(Fill, blue)));
    EXPECT_EQ("whose \"fill\" is style of \"fill\", 1 value {color = \"blue\"}, its own",
              Explained(HasValue(Fill, blue), base));
    EXPECT_EQ("has the value style of \"fill\", 2 values {angle = 1; color = \"blue\"} for \"fill\"",
              Described(HasValue(Fill, blue)));
}

TEST_F(StylesMatchers, HasOwnValueMatchesOnlyWhatTheStyleSetsItself)
{
    EXPECT_THAT(style, HasOwnValue(Number, 0.5));
    EXPECT_THAT(style, HasOwnValue(Number));
    EXPECT_THAT(style, Not(HasOwnValue(Note, L"red")));
    EXPECT_THAT(style, Not(HasOwnValue(Note)));
    EXPECT_THAT(base, HasOwnValue(L"fill.color", L"blue"));
    EXPECT_THAT(base, Not(HasOwnValue(L"fill.color", L"red")));
    EXPECT_THAT(base, HasOwnValue(L"fill.color"));
    EXPECT_THAT(style, Not(HasOwnValue(L"fill.color")));
    EXPECT_THAT(style, Not(HasOwnValue(L"number.color")));
    EXPECT_EQ("where style of \"style\", inherits, 2 values {character = style of \"character\", 0 values; number = "
              "0.5} has no own \"fill\"",
              Explained(HasOwnValue(L"fill.color"), style));
    EXPECT_EQ("where \"number\" is no substyle but 0.5 (double)", Explained(HasOwnValue(L"number.color"), style));
    EXPECT_EQ("has an own value for \"fill.color\"", Described(HasOwnValue(L"fill.color")));
    EXPECT_EQ("does not have the own value 1 (double) for \"number\"", Denied(HasOwnValue(Number, 1.0)));
}

TEST_F(StylesMatchers, HasValueThatHandsTheTypedValueToAMatcher)
{
    EXPECT_THAT(style, HasValueThat<double>(Number, Gt(0.25)));
    EXPECT_THAT(style, Not(HasValueThat<double>(Number, Gt(0.5))));
    EXPECT_THAT(style, Not(HasValueThat<int>(Number, Gt(0)))) << "a value of another type";
    EXPECT_THAT(style, Not(HasValueThat<int>(L"hatch", Gt(0)))) << "no value";
    EXPECT_THAT(style, HasValueThat<Style*>(Fill, HasOwnValue(Color, L"blue")));
    EXPECT_EQ("has a value for \"number\" that is > 1", Described(HasValueThat<double>(Number, Gt(1.0))));
}

TEST_F(StylesMatchers, InheritsMatchesAtAnyDistanceAndHasParentTheParentOnly)
{
    Style heir(&style, StyleCategoryName);
    EXPECT_THAT(heir, AllOf(Inherits(style), Inherits(&base), HasParent(&style)));
    EXPECT_THAT(heir, Not(HasParent(&base)));
    EXPECT_THAT(base, HasParent(nullptr));
    EXPECT_THAT(heir, Not(HasParent(nullptr)));
    EXPECT_THAT(base, Not(Inherits(style)));
    EXPECT_THAT(base, Not(Inherits(base)));
    EXPECT_THAT(base, Not(Inherits(nullptr)));
    EXPECT_EQ("which has no parent", Explained(Inherits(style), base));
    EXPECT_EQ("which has no parent", Explained(HasParent(&style), base));
    EXPECT_THAT(Explained(HasParent(&base), heir), HasSubstr("whose parent is style of \"style\", inherits, 2 values"));
    EXPECT_THAT(Explained(Inherits(heir), heir), testing::MatchesRegex("which inherits from style of .* at 0x.*, which "
                                                                       "inherits from style of .* at 0x.*"));
    EXPECT_THAT(Described(Inherits(style)), testing::StartsWith("inherits from style of \"style\", inherits, "));
    EXPECT_EQ("has no parent", Described(HasParent(nullptr)));
}

TEST_F(StylesMatchers, ParentsThatCloseOnThemselvesEnd)
{
    Style other(&style, StyleCategoryName);
    const Style stranger;
    base.SetParent(&other);
    EXPECT_THAT(style, Inherits(style));
    EXPECT_THAT(style, Not(Inherits(stranger)));
    EXPECT_EQ("whose \"stops\" is 0 styles (" + Utf8(GetReadableTypeName(style.GetProperty(Stops))) + "), the default",
              Explained(HasValue(Stops, 1), style));
    base.SetParent(nullptr);
}

TEST_F(StylesMatchers, IsCategoryMatchesTheNameOfTheCategory)
{
    EXPECT_THAT(style, IsCategory(L"style"));
    EXPECT_THAT(style, IsCategory(StyleCategoryName));
    EXPECT_THAT(style, Not(IsCategory(Fill)));
    EXPECT_THAT(Style(), IsCategory(PropertyKey::Empty));
    EXPECT_EQ("is of the category \"fill\"", Described(IsCategory(Fill)));
    EXPECT_EQ("is not of the category \"fill\"", Denied(IsCategory(Fill)));
    EXPECT_EQ("which is of the category \"style\"", Explained(IsCategory(Fill), style));
    EXPECT_EQ("which has no category", Explained(IsCategory(Fill), Style()));
}

TEST_F(StylesMatchers, AsAPredicateAValueSaysTheSame)
{
    EXPECT_TRUE(HasValue(style, Note, L"red"));
    EXPECT_TRUE(HasOwnValue(style, Number, 0.5));
    const testing::AssertionResult result = HasOwnValue(base, L"fill.color", L"red");
    EXPECT_FALSE(result);
    EXPECT_THAT(result.message(),
                AllOf(testing::StartsWith("style of \"style\", 2 values {fill = style of \"fill\", 1 "
                                          "value; note = \"red\"}, whose \"fill.color\" is \"blue\" ("),
                      HasSubstr("; asked was whether it has the own value \"red\" (")));
    EXPECT_NONFATAL_FAILURE(EXPECT_TRUE(HasValue(Style(), L"note", 1)), "knows no \"note\"");
}

TEST_F(StylesMatchers, FailedTestsPrintTextsInQuotesAndValuesWithTheirType)
{
    EXPECT_EQ("\"a\\n\"", testing::PrintToString(VelString(L"a\n")));
    EXPECT_EQ("\"a\"", testing::PrintToString(VelStringA("a")));
    EXPECT_EQ("\"fill\"", testing::PrintToString(Fill));
    EXPECT_EQ("0.5 (double)", testing::PrintToString(Any(0.5)));
    EXPECT_EQ("(empty)", testing::PrintToString(Any()));
    EXPECT_EQ("style of \"style\", inherits, 2 values {character = style of \"character\", 0 values; number = 0.5}",
              testing::PrintToString(style));
    EXPECT_EQ("{ \"fill\", \"color\" }", testing::PrintToString(MakePath(Fill, Color)));
}

} // namespace Styles::Testing
