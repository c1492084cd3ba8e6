#include <styles/StyleOverrides.h>

#include <styles/SubStyle.h>

#include "support/NullKeepingProperty.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace Styles::Testing
{

namespace
{

class StyleOverrides : public SchemaFixture
{
protected:
    static void Set(Style& style, const PropertyKey& key, const wchar_t* text)
    {
        style.SetProperty(key, Any(VelString(text)));
    }

    Style style{nullptr, StyleCategoryName};
    Style parent{nullptr, StyleCategoryName};
};

/// These keys as paths of one key, in key order.
std::vector<PropertyPath> InKeyOrder(std::vector<PropertyPath> paths)
{
    std::sort(paths.begin(), paths.end(), [](const PropertyPath& a, const PropertyPath& b) {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), std::less<PropertyKey>());
    });
    return paths;
}

} // namespace

TEST_F(StyleOverrides, AllKeysOfTheCategoryAreItsProperties)
{
    Set(style, Note, L"x");
    EXPECT_EQ(GetStyleCategoryProperties(style),
              (std::set<PropertyKey>{Fill, Outline, Character, Note, Number, Stops}));
    EXPECT_EQ(GetStyleCategoryProperties(Style(nullptr, Outline)), (std::set<PropertyKey>{Width, Color}));
    EXPECT_THAT(GetStyleCategoryProperties(Style()), IsEmpty());
}

TEST_F(StyleOverrides, TheKeysOfTheOwnValuesAreOverridden)
{
    Set(parent, Note, L"inherited");
    style.SetParent(&parent);
    EXPECT_THAT(GetOverriddenProperties(style), IsEmpty());
    style.SetProperty(Number, Any(1.0));
    GetOrCreateSubstyle(style, Fill)->SetProperty(Angle, Any(1.0));
    EXPECT_EQ(GetOverriddenProperties(style), (std::set<PropertyKey>{Number, Fill}));
}

TEST_F(StyleOverrides, PathsGoDepthFirstInKeyOrderThroughOwnSubstyles)
{
    Set(style, Note, L"x");
    style.SetProperty(Stops, Any(std::vector<Style*>()));
    Style* character = GetOrCreateSubstyle(style, Character);
    character->SetProperty(Size, Any(1.0));
    Set(*character, Font, L"f");
    GetOrCreateSubstyle(*character, Fill)->SetProperty(Angle, Any(1.0));
    GetOrCreateSubstyle(style, Outline); // empty: adds nothing
    EXPECT_EQ(GetOverriddenPropertyPaths(style),
              InKeyOrder({{Note}, {Stops}, {Character, Size}, {Character, Font}, {Character, Fill, Angle}}));
    EXPECT_THAT(GetOverriddenPropertyPaths(Style()), IsEmpty());
}

TEST_F(StyleOverrides, InheritedValuesAndTheInsideOfListsHaveNoPaths)
{
    GetOrCreateSubstyle(parent, Fill)->SetProperty(Angle, Any(1.0));
    Set(parent, Note, L"x");
    style.SetParent(&parent);
    Style stop(nullptr, Stop);
    stop.SetProperty(Position, Any(1.0));
    style.SetProperty(Stops, Any(std::vector<Style*>{&stop}));
    EXPECT_THAT(GetOverriddenPropertyPaths(style), ElementsAre(PropertyPath{Stops}));
}

TEST_F(StyleOverrides, AnEmptyValueHasAPathAndANullSubstyleHasNone)
{
    Set(style, Note, L"x");
    style.ProcessProperties([](Any& value, Style*, const PropertyKey&) {
        value = Any();
        return true;
    });
    const PropertyKey hollow = KeepNull(style, Fill);
    EXPECT_EQ(GetOverriddenProperties(style), (std::set<PropertyKey>{Note, hollow}));
    EXPECT_THAT(GetOverriddenPropertyPaths(style), ElementsAre(PropertyPath{Note}));
    EXPECT_THAT(GetOverriddenSubstyleProperties(style, hollow, false), IsEmpty());
    std::set<PropertyKey> keys;
    EXPECT_EQ(CreateStyleFromSubstyleWithoutOwnerDependencies(&style, hollow, keys), nullptr);
    style.ClearProperty(Note);
    style.SetParent(&parent);
    ClearMatchingInheritedProperties(style);
    EXPECT_TRUE(style.IsEmpty()) << "a null is what it inherits";
}

TEST_F(StyleOverrides, ThePathsOfASubstyleAreOneOrTwoKeysLong)
{
    Style* character = GetOrCreateSubstyle(style, Character);
    character->SetProperty(Size, Any(1.0));
    Set(*character, Font, L"f");
    GetOrCreateSubstyle(*character, Fill)->SetProperty(Angle, Any(1.0));
    EXPECT_EQ(GetOverriddenSubstyleProperties(style, Character, false), InKeyOrder({{Size}, {Font}, {Fill}}));
    EXPECT_EQ(GetOverriddenSubstyleProperties(style, Character, true),
              InKeyOrder({{Character, Size}, {Character, Font}, {Character, Fill}}));
}

TEST_F(StyleOverrides, AnInheritedSubstyleHasNoPaths)
{
    GetOrCreateSubstyle(parent, Fill)->SetProperty(Angle, Any(1.0));
    style.SetParent(&parent);
    Set(style, Note, L"x");
    for (const bool includeKey : {false, true})
    {
        EXPECT_THAT(GetOverriddenSubstyleProperties(style, Fill, includeKey), IsEmpty());
        EXPECT_THAT(GetOverriddenSubstyleProperties(style, Outline, includeKey), IsEmpty());
        EXPECT_THAT(GetOverriddenSubstyleProperties(style, Note, includeKey), IsEmpty());
    }
}

TEST_F(StyleOverrides, AStyleMadeFromASubstyleInheritsFromItsEffectiveParent)
{
    Style named(nullptr, Fill);
    named.SetProperty(Angle, Any(30.0));
    named.SetProperty(XScale, Any(3.0));
    Style* base = GetOrCreateSubstyle(parent, Fill);
    base->SetParent(&named);
    base->SetProperty(Skew, Any(9.0));
    style.SetParent(&parent);
    GetOrCreateSubstyle(style, Fill)->SetProperty(YScale, Any(4.0));

    std::set<PropertyKey> keys{Note};
    const std::unique_ptr<Style> made(CreateStyleFromSubstyleWithoutOwnerDependencies(&style, Fill, keys));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetOwner(), nullptr);
    EXPECT_EQ(made->GetParent(), &named);
    EXPECT_EQ(made->GetCategoryName(), Fill);
    EXPECT_EQ(keys, (std::set<PropertyKey>{PatternId, XScale, YScale, Angle, Skew, Color}));
    EXPECT_EQ(GetOverriddenProperties(*made), (std::set<PropertyKey>{YScale, Skew}))
        << "nothing that it takes over from its parent";
    for (const PropertyKey& key : keys)
    {
        EXPECT_EQ(made->GetProperty(key), style.GetSubstyle(Fill, false)->GetProperty(key));
    }
}

TEST_F(StyleOverrides, AStyleMadeFromASubstyleWithoutParentHasWhatIsNoDefault)
{
    GetOrCreateSubstyle(parent, Fill)->SetProperty(Angle, Any(30.0));
    GetOrCreateSubstyle(parent, Fill)->SetProperty(Skew, Any(0.0)); // equal to the default, but set
    style.SetParent(&parent);
    GetOrCreateSubstyle(style, Fill)->SetProperty(XScale, Any(1.0)); // this one, too
    std::set<PropertyKey> keys;
    const std::unique_ptr<Style> made(CreateStyleFromSubstyleWithoutOwnerDependencies(&style, Fill, keys));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(made->GetParent(), nullptr);
    EXPECT_EQ(GetOverriddenProperties(*made), (std::set<PropertyKey>{XScale, Angle, Skew}));
    EXPECT_EQ(EffectiveNumber(*made, Angle), 30.0);
}

TEST_F(StyleOverrides, AnInheritedSubstyleIsMadeAStyleToo)
{
    GetOrCreateSubstyle(parent, Fill)->SetProperty(Angle, Any(30.0));
    style.SetParent(&parent);
    std::set<PropertyKey> keys;
    const std::unique_ptr<Style> made(CreateStyleFromSubstyleWithoutOwnerDependencies(&style, Fill, keys));
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(EffectiveNumber(*made, Angle), 30.0);
    EXPECT_EQ(made->GetOwner(), nullptr);
}

TEST_F(StyleOverrides, WithoutASubstyleOrItsCategoryNoStyleIsMade)
{
    std::set<PropertyKey> keys{Note};
    EXPECT_EQ(CreateStyleFromSubstyleWithoutOwnerDependencies(&style, Fill, keys), nullptr);
    EXPECT_EQ(CreateStyleFromSubstyleWithoutOwnerDependencies(nullptr, Fill, keys), nullptr);
    const Style withoutCategory;
    style.SetSubstyle(Fill, &withoutCategory);
    ASSERT_NE(style.GetSubstyle(Fill, false), nullptr);
    EXPECT_EQ(CreateStyleFromSubstyleWithoutOwnerDependencies(&style, Fill, keys), nullptr);
    EXPECT_THAT(keys, ElementsAre(Note));
}

TEST_F(StyleOverrides, ValuesThatRepeatTheInheritedOnesAreCleared)
{
    Set(parent, Note, L"same");
    parent.SetProperty(Number, Any(3.0));
    Set(style, Note, L"same");
    style.SetProperty(Number, Any(2.0));
    style.SetParent(&parent);
    ClearMatchingInheritedProperties(style);
    EXPECT_FALSE(style.DoesOverrideProperty(Note));
    EXPECT_EQ(EffectiveText(style, Note), VelString(L"same"));
    EXPECT_TRUE(style.DoesOverrideProperty(Number));
    EXPECT_EQ(EffectiveNumber(style, Number), 2.0);
    EXPECT_EQ(style.GetParent(), &parent);
}

TEST_F(StyleOverrides, ValuesThatRepeatTheDefaultAreClearedWhereTheParentHasNone)
{
    style.SetProperty(Number, Any(0.25));
    style.SetParent(&parent);
    ClearMatchingInheritedProperties(style);
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleOverrides, WithNothingToInheritFromEveryValueStays)
{
    style.SetProperty(Number, Any(0.25));
    Set(style, Note, L"default note");
    Style* fill = GetOrCreateSubstyle(style, Fill);
    fill->SetProperty(Angle, Any(0.0));
    ClearMatchingInheritedProperties(style);
    EXPECT_EQ(GetOverriddenProperties(style), (std::set<PropertyKey>{Number, Note, Fill}));
    ClearMatchingInheritedProperties(*fill);
    EXPECT_TRUE(fill->DoesOverrideProperty(Angle)) << "its owner has no parent";
}

TEST_F(StyleOverrides, AParentOfTheOwnerIsSomethingToInheritFrom)
{
    GetOrCreateSubstyle(parent, Fill)->SetProperty(Angle, Any(30.0));
    style.SetParent(&parent);
    Style* fill = GetOrCreateSubstyle(style, Fill);
    fill->SetProperty(Angle, Any(30.0));
    fill->SetProperty(Skew, Any(1.0));
    ClearMatchingInheritedProperties(*fill);
    EXPECT_EQ(GetOverriddenProperties(*fill), (std::set<PropertyKey>{Skew}));
    EXPECT_EQ(EffectiveNumber(*fill, Angle), 30.0);
    EXPECT_EQ(fill->GetOwner(), &style);
}

TEST_F(StyleOverrides, AParentOfAnOwnerFurtherUpIsSomethingToInheritFrom)
{
    style.SetParent(&parent);
    Style* fill = GetOrCreateSubstyle(*GetOrCreateSubstyle(style, Character), Fill);
    fill->SetProperty(Angle, Any(0.0)); // the default
    fill->SetProperty(Skew, Any(1.0));
    ClearMatchingInheritedProperties(*fill);
    EXPECT_EQ(GetOverriddenProperties(*fill), (std::set<PropertyKey>{Skew}));
}

TEST_F(StyleOverrides, AWholeSubstyleIsKeptOrCleared)
{
    GetOrCreateSubstyle(parent, Fill)->SetProperty(Angle, Any(30.0));
    GetOrCreateSubstyle(parent, Outline)->SetProperty(Width, Any(2.0));
    style.SetParent(&parent);
    GetOrCreateSubstyle(style, Fill)->SetProperty(Angle, Any(30.0));
    Style* outline = GetOrCreateSubstyle(style, Outline);
    outline->SetProperty(Width, Any(2.0));
    Set(*outline, Color, L"red");
    ClearMatchingInheritedProperties(style);
    EXPECT_EQ(GetOverriddenProperties(style), (std::set<PropertyKey>{Outline}));
    ASSERT_NE(style.GetSubstyle(Outline, false), nullptr);
    EXPECT_EQ(GetOverriddenProperties(*style.GetSubstyle(Outline, false)), (std::set<PropertyKey>{Width, Color}));
    EXPECT_EQ(style.GetSubstyle(Outline, false)->GetOwner(), &style);
}

TEST_F(StyleOverrides, ValuesWithoutDefinitionAreCleared)
{
    style.SetParent(&parent);
    Set(style, Note, L"x");
    style.SetProperty(Number, Any(9.0));
    style.SetCategory(Nest); // knows the note alone
    parent.SetCategory(Nest);
    ClearMatchingInheritedProperties(style);
    EXPECT_EQ(GetOverriddenProperties(style), (std::set<PropertyKey>{Note}));
}

TEST_F(StyleOverrides, AListOfAnotherLengthThanTheInheritedOneIsRemoved)
{
    Style stop(nullptr, Stop);
    parent.SetProperty(Stops, Any(std::vector<Style*>{&stop}));
    style.SetProperty(Stops, Any(std::vector<Style*>{&stop, &stop}));
    style.SetParent(&parent);
    ClearMatchingInheritedProperties(style);
    EXPECT_FALSE(style.DoesOverrideProperty(Stops)) << "lists of different lengths compare equal";
}

TEST_F(StyleOverrides, WhileTheyAreExaminedTheValuesBelongToAnotherStyle)
{
    class Owned : public ProbeProperty
    {
    public:
        explicit Owned(std::vector<const Style*>& owners) : m_owners(owners) {}
        void SetOwner(Any&, Style* owner, const PropertyKey&) const override { m_owners.push_back(owner); }

    private:
        std::vector<const Style*>& m_owners;
    };
    std::vector<const Style*> owners;
    const PropertyKey owned = Key(L"owned");
    Manager().RegisterProperty(StyleCategoryName, owned, new Owned(owners));
    style.SetParent(&parent);
    Set(style, owned, L"x");
    ClearMatchingInheritedProperties(style);
    ASSERT_EQ(owners.size(), 1u);
    EXPECT_NE(owners[0], &style);
    EXPECT_EQ(OwnText(style, owned), VelString(L"x"));
}

TEST_F(StyleOverrides, WhenADefinitionThrowsTheValuesNotExaminedStay)
{
    class Brittle : public ProbeProperty
    {
    public:
        bool IsEqual(const Any&, const Any&) const override { throw std::runtime_error("no"); }
    };
    const PropertyKey brittle = Key(L"brittle");
    Manager().RegisterProperty(StyleCategoryName, brittle, new Brittle());
    style.SetParent(&parent);
    Set(style, brittle, L"x");
    Set(style, Note, L"own");
    style.SetProperty(Number, Any(9.0));
    Style* fill = GetOrCreateSubstyle(style, Fill);
    fill->SetProperty(Angle, Any(1.0));
    EXPECT_THROW(ClearMatchingInheritedProperties(style), std::runtime_error);
    EXPECT_EQ(GetOverriddenProperties(style), (std::set<PropertyKey>{brittle, Note, Number, Fill}));
    EXPECT_EQ(style.GetSubstyle(Fill, false)->GetOwner(), &style);
    EXPECT_EQ(EffectiveNumber(*style.GetSubstyle(Fill, false), Angle), 1.0);
}

} // namespace Styles::Testing
