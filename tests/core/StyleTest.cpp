// Making styles, their links and identity, and what is in them.

#include "core/StyleSuite.h"

#include <gmock/gmock.h>

#include <memory>

namespace Styles::Suites
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// The fields without any gap; their order is that of the header.
static_assert(sizeof(Styles::Style) == sizeof(std::map<PropertyKey, Any>) + 2 * sizeof(Styles::Style*) +
                                           sizeof(PropertyKey) + sizeof(std::shared_ptr<const StyleCategory>) +
                                           2 * sizeof(VelString));
static_assert(!std::is_polymorphic_v<Styles::Style>);
static_assert(std::is_nothrow_destructible_v<Styles::Style>);

TEST_F(Style, ADefaultConstructedStyleHasNothing)
{
    const Styles::Style style;
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_EQ(style.GetParent(), nullptr);
    EXPECT_EQ(style.GetOwner(), nullptr);
    EXPECT_EQ(style.GetOwnersSubstylePropertyName(), PropertyKey::Empty);
    EXPECT_EQ(style.GetCategory(), nullptr);
    EXPECT_EQ(style.GetCategoryName(), PropertyKey::Empty);
    EXPECT_EQ(style.GetCategoryUIName(), VelString());
    EXPECT_EQ(style.GetExternalID(), VelString());
    EXPECT_EQ(style.GetExternalName(), VelString());
    EXPECT_FALSE(style.IsExternal());
}

TEST_F(Style, AStyleIsMadeWithParentAndCategory)
{
    Styles::Style parent;
    const Styles::Style style(&parent, Fill);
    EXPECT_EQ(style.GetParent(), &parent);
    EXPECT_EQ(style.GetCategory(), Manager().GetCategory(Fill));
    EXPECT_EQ(style.GetCategoryName(), Fill);
    EXPECT_EQ(style.GetCategoryUIName(), VelString(L"Fill"));
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_EQ(style.GetOwner(), nullptr);
}

TEST_F(Style, AnUnknownCategoryGivesNone)
{
    Styles::Style parent;
    const Styles::Style style(&parent, Key(L"no such category"));
    EXPECT_EQ(style.GetCategory(), nullptr);
    EXPECT_EQ(style.GetParent(), &parent);
}

TEST_F(Style, SettingAnUnknownCategoryKeepsTheOldOne)
{
    Styles::Style style(nullptr, Fill);
    style.SetCategory(Key(L"no such category"));
    EXPECT_EQ(style.GetCategoryName(), Fill);
    style.SetCategory(PropertyKey::Empty);
    EXPECT_EQ(style.GetCategoryName(), Fill);
}

TEST_F(Style, ChangingTheCategoryKeepsAllValues)
{
    Styles::Style style(nullptr, Fill);
    style.SetProperty(Color, Any(L"red"));
    style.SetProperty(Angle, Any(45.0));
    style.SetCategory(Outline);
    EXPECT_EQ(style.GetCategoryName(), Outline);
    EXPECT_EQ(OwnText(style, Color), VelString(L"red"));
    EXPECT_TRUE(style.DoesOverrideProperty(Angle)) << "although outlines have no angle";
}

TEST_F(Style, ParentAndOwnerAreSetAsTheyAre)
{
    Styles::Style style(nullptr, StyleCategoryName), other;
    style.SetProperty(Note, Any(L"kept"));
    style.SetParent(&style);
    EXPECT_EQ(style.GetParent(), &style);
    style.SetOwner(&other, Fill);
    EXPECT_EQ(style.GetOwner(), &other);
    EXPECT_EQ(style.GetOwnersSubstylePropertyName(), Fill);
    style.SetOwner(nullptr, PropertyKey::Empty);
    EXPECT_EQ(style.GetOwner(), nullptr);
    EXPECT_EQ(style.GetOwnersSubstylePropertyName(), PropertyKey::Empty);
    style.SetParent(nullptr);
    EXPECT_EQ(style.GetParent(), nullptr);
    EXPECT_EQ(OwnText(style, Note), VelString(L"kept"));
}

TEST_F(Style, TheBaseCategoryPassesTheExternalIdentityOnToDirectSubstyles)
{
    Styles::Style style(nullptr, StyleCategoryName);
    style.SetProperty(Note, Any(L"no substyle"));
    Styles::Style& character = Substyle(style, Character);
    Styles::Style& fill = Substyle(style, Fill);
    const Styles::Style& innerFill = Substyle(character, Fill);
    const std::vector<Styles::Style*> elements = MakeList(style, Stops, Stop, 1);
    style.SetExternalID(VelString(L"id 1"));
    style.SetExternalName(VelString(L"name 1"));
    for (const Styles::Style* reached : {&style, &character, &fill})
    {
        EXPECT_EQ(reached->GetExternalID(), VelString(L"id 1"));
        EXPECT_EQ(reached->GetExternalName(), VelString(L"name 1"));
    }
    for (const Styles::Style* untouched : {&innerFill, static_cast<const Styles::Style*>(elements[0])})
    {
        EXPECT_EQ(untouched->GetExternalID(), VelString());
        EXPECT_EQ(untouched->GetExternalName(), VelString());
    }
    style.SetExternalID(VelString());
    EXPECT_FALSE(fill.IsExternal());
}

TEST_F(Style, OtherCategoriesKeepTheExternalIdentityToThemselves)
{
    Styles::Style style(nullptr, Character);
    const Styles::Style& fill = Substyle(style, Fill);
    style.SetExternalID(VelString(L"id"));
    style.SetExternalName(VelString(L"name"));
    EXPECT_EQ(style.GetExternalID(), VelString(L"id"));
    EXPECT_EQ(style.GetExternalName(), VelString(L"name"));
    EXPECT_EQ(fill.GetExternalID(), VelString());
    EXPECT_EQ(fill.GetExternalName(), VelString());
}

TEST_F(Style, TheExternalIdentityAndNotTheNameMakesAStyleExternal)
{
    Styles::Style style;
    style.SetExternalName(VelString(L"name"));
    EXPECT_FALSE(style.IsExternal());
    style.SetExternalID(VelString(L"id"));
    EXPECT_TRUE(style.IsExternal());
}

TEST_F(Style, InheritedValuesDoNotFillAStyle)
{
    Styles::Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    parent.SetProperty(Note, Any(L"inherited"));
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_TRUE(style.IsEmptyWithEmptySubstyles());
    style.SetProperty(Note, Any(L"own"));
    EXPECT_FALSE(style.IsEmpty());
}

TEST_F(Style, AStyleOfEmptySubstylesIsEmptyWithEmptySubstyles)
{
    Styles::Style style(nullptr, StyleCategoryName);
    Styles::Style& innerFill = Substyle(Substyle(style, Character), Fill);
    MakeList(style, Stops, Stop, 2);
    EXPECT_FALSE(style.IsEmpty());
    EXPECT_TRUE(style.IsEmptyWithEmptySubstyles());
    innerFill.SetProperty(Angle, Any(1.0));
    EXPECT_FALSE(style.IsEmptyWithEmptySubstyles());
    innerFill.ClearProperty(Angle);
    EXPECT_TRUE(style.IsEmptyWithEmptySubstyles());
    ElementsOf(style, Stops)[1]->SetProperty(Color, Any(L"red"));
    EXPECT_FALSE(style.IsEmptyWithEmptySubstyles());
}

TEST_F(Style, APlainValueFillsAStyle)
{
    Styles::Style style(nullptr, StyleCategoryName);
    style.SetProperty(Number, Any(0.25));
    EXPECT_FALSE(style.IsEmptyWithEmptySubstyles());
}

TEST_F(Style, AValueWithoutDefinitionFillsAStyle)
{
    Styles::Style style(nullptr, Fill);
    style.SetProperty(Angle, Any(1.0));
    style.SetCategory(Outline);
    EXPECT_FALSE(style.IsEmptyWithEmptySubstyles());
}

TEST_F(Style, NullElementsCountAsEmptyAndUnrelated)
{
    Styles::Style style(nullptr, StyleCategoryName);
    style.SetProperty(Stops, Any(std::vector<Styles::Style*>{nullptr, nullptr}));
    EXPECT_TRUE(style.IsEmptyWithEmptySubstyles());
    EXPECT_FALSE(style.SubstylesHaveAnyParentalRelationships());
}

TEST_F(Style, OwnValuesOfSubstylePropertiesAreCounted)
{
    Styles::Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    Substyle(parent, Outline);
    EXPECT_EQ(style.GetNumSubstyles(), 0);
    style.SetProperty(Note, Any(L"no substyle"));
    MakeList(style, Stops, Stop, 3);
    EXPECT_EQ(style.GetNumSubstyles(), 0);
    Substyle(style, Fill);
    Substyle(Substyle(style, Character), Fill);
    EXPECT_EQ(style.GetNumSubstyles(), 2);
}

TEST_F(Style, AStyleWithoutSubstylesHasNoLastOne)
{
    Styles::Style style(nullptr, StyleCategoryName);
    EXPECT_EQ(style.GetLastSubstyle(), nullptr);
    style.SetProperty(Note, Any(L"no substyle"));
    MakeList(style, Stops, Stop, 1);
    EXPECT_EQ(style.GetLastSubstyle(), nullptr);
    EXPECT_EQ(Styles::Style().GetLastSubstyle(), nullptr);
}

TEST_F(Style, TheLastSubstyleIsTheOneWithTheLastKey)
{
    Styles::Style style(nullptr, StyleCategoryName);
    style.SetProperty(Note, Any(L"no substyle"));
    std::map<PropertyKey, Styles::Style*> substyles;
    for (const PropertyKey& key : {Fill, Outline, Character})
    {
        substyles[key] = &Substyle(style, key);
        EXPECT_EQ(style.GetLastSubstyle(), substyles.rbegin()->second);
    }
}

TEST_F(Style, TheLastSubstyleIsLookedUpByItsElementCategoryAndNotByItsKey)
{
    const PropertyKey back = Key(L"background fill");
    Manager().RegisterProperty(Outline, back, new StyleSetProperty(nullptr, Fill, nullptr, 0));
    Styles::Style style(nullptr, Outline);
    Substyle(style, back);
    EXPECT_EQ(style.GetNumSubstyles(), 1);
    EXPECT_EQ(style.GetLastSubstyle(), nullptr) << "there is no substyle under the key \"fill\"";
    RegisterSubstyleSet(Outline, Fill);
    Styles::Style& fill = Substyle(style, Fill);
    EXPECT_EQ(style.GetLastSubstyle(), &fill) << "whichever of the two keys is the last";
}

TEST_F(Style, ParentsOfStylesInsideAreFoundAtAnyDepth)
{
    Styles::Style parent(nullptr, Fill), style(nullptr, StyleCategoryName);
    EXPECT_FALSE(style.SubstylesHaveAnyParentalRelationships());
    style.SetParent(&parent);
    style.SetProperty(Note, Any(L"text"));
    Styles::Style& innerFill = Substyle(Substyle(style, Character), Fill);
    Substyle(style, Fill);
    EXPECT_FALSE(style.SubstylesHaveAnyParentalRelationships()) << "the parent of the style itself does not count";
    innerFill.SetParent(&parent);
    EXPECT_TRUE(style.SubstylesHaveAnyParentalRelationships());
    innerFill.SetParent(nullptr);
    EXPECT_FALSE(style.SubstylesHaveAnyParentalRelationships());
    MakeList(style, Stops, Stop, 2)[1]->SetParent(&parent);
    EXPECT_TRUE(style.SubstylesHaveAnyParentalRelationships());
}

TEST_F(Style, ClearingKeepsCategoryOwnerAndExternalIdentityButNotTheParent)
{
    Styles::Style parent(nullptr, StyleCategoryName), owner, style(&parent, StyleCategoryName);
    style.SetOwner(&owner, Fill);
    style.SetExternalID(VelString(L"id"));
    style.SetExternalName(VelString(L"name"));
    style.SetProperty(Note, Any(L"text"));
    Substyle(style, Character);
    style.Clear();
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_EQ(style.GetParent(), nullptr);
    EXPECT_EQ(style.GetCategoryName(), StyleCategoryName);
    EXPECT_EQ(style.GetOwner(), &owner);
    EXPECT_EQ(style.GetOwnersSubstylePropertyName(), Fill);
    EXPECT_EQ(style.GetExternalID(), VelString(L"id"));
    EXPECT_EQ(style.GetExternalName(), VelString(L"name"));
}

TEST_F(Style, ClearingDestroysAllValuesAndDropsTheParentAlsoWhereADefinitionThrows)
{
    Styles::Style parent(nullptr, Probes), style(&parent, Probes);
    SetAll(style, L"text");
    TakeCalls();
    failing = {"1 destroy"};
    EXPECT_EQ(ThrownBy([&] { style.Clear(); }), "1 destroy");
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy", "1 destroy", "2 destroy"));
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_EQ(style.GetParent(), nullptr);
}

TEST_F(Style, TheDestructorDestroysEveryValueInKeyOrderAndNeverThrows)
{
    {
        Styles::Style style(nullptr, Probes);
        SetAll(style, L"text");
        TakeCalls();
        failing = {"0 destroy", "2 destroy"};
    }
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy", "1 destroy", "2 destroy"));
}

TEST_F(Style, WithoutACategoryNothingIsKnown)
{
    Styles::Style style;
    style.SetProperty(Note, Any(L"text"));
    const Any text(L"text");
    style.SetProperty(Note, text);
    style.SetSubstyle(Fill, &style);
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_EQ(style.GetNumSubstyles(), 0);
    EXPECT_EQ(style.GetCategoryName(), PropertyKey::Empty);
    EXPECT_FALSE(style.SubstylesHaveAnyParentalRelationships());
    style.SetExternalID(VelString(L"id"));
    EXPECT_TRUE(style.IsExternal());
}

TEST_F(Style, AStyleOutlivesTheRegistrationOfItsCategory)
{
    Styles::Style style(nullptr, StyleCategoryName);
    style.SetProperty(Note, Any(L"text"));
    // Without its definition nothing can destroy the substyle any more.
    const std::unique_ptr<Styles::Style> substyle(&Substyle(style, Fill));
    DeregisterStyleCategory();
    EXPECT_EQ(style.GetCategoryName(), StyleCategoryName);
    EXPECT_EQ(style.GetCategoryUIName(), VelString(L"Graphic style"));
    EXPECT_EQ(style.GetNumSubstyles(), 0);
    EXPECT_EQ(OwnText(style, Note), VelString(L"text"));
    EXPECT_FALSE(style.IsEmptyWithEmptySubstyles());
    EXPECT_TRUE(Styles::Style(style).IsEmpty());
    EXPECT_FALSE(style == style);
    EXPECT_FALSE(style < style);
    Any out(1.0);
    EXPECT_FALSE(style.GetProperty(Number, out));
    EXPECT_THROW(static_cast<void>(style.GetProperty(Number)), std::logic_error);
    style.SetProperty(Note, Any(L"other"));
    EXPECT_EQ(OwnText(style, Note), VelString(L"text"));
    EXPECT_TRUE(style.ClearProperty(Note));
    const Styles::Style moved(std::move(style));
    EXPECT_EQ(moved.GetSubstyle(Fill, false), substyle.get());
}

} // namespace Styles::Suites
