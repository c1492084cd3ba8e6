#include <styles/SubStyle.h>

#include "support/NullKeepingProperty.h"

#include <gmock/gmock.h>

#include <stdexcept>
#include <typeinfo>
#include <utility>
#include <vector>

using testing::IsEmpty;

namespace Styles::Testing
{

namespace
{

class SubstyleProperties : public SchemaFixture
{
protected:
    /// A style of the base category with an angle in its fill.
    static void SetAngle(Style& style, const PropertyKey& fill, const PropertyKey& angle, double value)
    {
        GetOrCreateSubstyle(style, fill)->SetProperty(angle, Any(value));
    }

    double AngleOf(const Style& owner) const { return GetSubstyleProperty(owner, Fill, Angle).Get<double>(); }

    Style style{nullptr, StyleCategoryName};
};

} // namespace

TEST_F(SubstyleProperties, AnOwnValueOfAnOwnSubstyleIsRead)
{
    SetAngle(style, Fill, Angle, 30.0);
    EXPECT_EQ(&GetSubstyleProperty(style, Fill, Angle), &style.GetSubstyle(Fill, false)->GetProperty(Angle));
    EXPECT_EQ(AngleOf(style), 30.0);
    Any value;
    EXPECT_TRUE(GetSubstyleProperty(style, Fill, Angle, value));
    EXPECT_EQ(value.Get<double>(), 30.0);
}

TEST_F(SubstyleProperties, ValuesAreInheritedThroughSubstylesAndOwners)
{
    Style parent(nullptr, StyleCategoryName);
    SetAngle(parent, Fill, Angle, 30.0);
    style.SetParent(&parent);
    EXPECT_EQ(AngleOf(style), 30.0) << "an inherited substyle";
    SetAngle(style, Fill, Skew, 1.0);
    EXPECT_EQ(AngleOf(style), 30.0) << "an own one, which inherits through its owner";
    Style other(nullptr, Fill);
    other.SetProperty(Angle, Any(60.0));
    style.GetSubstyle(Fill, false)->SetParent(&other);
    EXPECT_EQ(AngleOf(style), 60.0) << "an own one with a parent";
    Any value;
    EXPECT_TRUE(GetSubstyleProperty(style, Fill, Angle, value));
    EXPECT_EQ(value.Get<double>(), 60.0);
}

TEST_F(SubstyleProperties, WithoutASubstyleTheDefaultOfItsCategoryIsTheAnswer)
{
    EXPECT_EQ(&GetSubstyleProperty(style, Fill, PatternId), &Manager().GetDefaultValue(Fill, PatternId));
    Any value(1);
    EXPECT_FALSE(GetSubstyleProperty(style, Fill, PatternId, value));
    EXPECT_EQ(value.Get<int>(), 1) << "untouched";
    GetOrCreateSubstyle(style, Fill);
    EXPECT_EQ(&GetSubstyleProperty(style, Fill, PatternId), &Manager().GetDefaultValue(Fill, PatternId));
    EXPECT_FALSE(GetSubstyleProperty(style, Fill, PatternId, value));
    EXPECT_EQ(value.Get<int>(), 1);
}

TEST_F(SubstyleProperties, ANullIsAnsweredWithTheDefaultOfTheCategoryThatItWouldHave)
{
    const PropertyKey hollow = KeepNull(style, Fill);
    Style stranger(nullptr, Character); // its fill is null, and another object than the default of the style's category
    Style heir(&stranger, StyleCategoryName);
    Any value(1);
    for (const auto& [owner, key] : {std::pair(&style, hollow), std::pair(&heir, Fill)})
    {
        ASSERT_TRUE(owner->GetProperty(key, value));
        value = Any(1);
        EXPECT_EQ(&GetSubstyleProperty(*owner, key, PatternId), &Manager().GetDefaultValue(Fill, PatternId));
        EXPECT_FALSE(GetSubstyleProperty(*owner, key, PatternId, value));
        EXPECT_EQ(value, Any(1));
    }
}

TEST_F(SubstyleProperties, ANullIsChangedIntoASubstyleAndOtherwiseLeftAlone)
{
    const PropertyKey hollow = KeepNull(style, Fill);
    ClearSubstyleProperty(style, hollow, Angle);
    ClearEmptySubstyles(style);
    Style source(nullptr, StyleCategoryName);
    source.SetSubstyle(hollow, nullptr);
    Style full(nullptr, StyleCategoryName);
    SetAngle(full, hollow, Angle, 30.0);
    for (const bool mergeValues : {false, true})
    {
        CopySourceSubstylesThatExistsInDestinationStyle(&style, &full, mergeValues);
        CopySourceSubstylesThatExistsInDestinationStyle(&full, &source, mergeValues);
    }
    EXPECT_EQ(full.GetSubstyle(hollow, false)->GetProperty(Angle).Get<double>(), 30.0);
    EXPECT_EQ(style.GetProperty(hollow), NullSubstyle());
    ASSERT_NE(GetOrCreateSubstyle(style, hollow), nullptr);
    EXPECT_EQ(style.GetSubstyle(hollow, false)->GetCategoryName(), Fill);
    SetSubstyleProperty(source, Fill, hollow, Angle, Any(60.0));
    EXPECT_EQ(source.GetSubstyle(hollow, false)->GetProperty(Angle).Get<double>(), 60.0);
}

TEST_F(SubstyleProperties, ReadingThroughAValueThatIsNoSubstyleIsAnError)
{
    Any value;
    EXPECT_THROW(static_cast<void>(GetSubstyleProperty(style, Note, Angle)), std::bad_cast);
    style.SetProperty(Note, Any(VelString(L"x")));
    EXPECT_THROW(static_cast<void>(GetSubstyleProperty(style, Note, Angle)), std::bad_cast);
    EXPECT_THROW(GetSubstyleProperty(style, Note, Angle, value), std::bad_cast);
}

TEST_F(SubstyleProperties, ReadingWhatNoCategoryKnowsIsAnErrorOrFalse)
{
    Any value;
    EXPECT_THROW(static_cast<void>(GetSubstyleProperty(style, Key(L"unknown"), Angle)), std::logic_error);
    EXPECT_THROW(static_cast<void>(GetSubstyleProperty(style, Fill, Key(L"unknown"))), std::logic_error);
    EXPECT_THROW(static_cast<void>(GetSubstyleProperty(Style(), Fill, Angle)), std::logic_error);
    EXPECT_FALSE(GetSubstyleProperty(style, Key(L"unknown"), Angle, value));
    EXPECT_FALSE(GetSubstyleProperty(style, Fill, Key(L"unknown"), value));
    EXPECT_FALSE(GetSubstyleProperty(Style(), Fill, Angle, value));
}

TEST_F(SubstyleProperties, ASubstyleIsMadeOfItsElementCategory)
{
    Style* fill = GetOrCreateSubstyle(style, Fill);
    ASSERT_NE(fill, nullptr);
    EXPECT_EQ(fill->GetCategoryName(), Fill);
    EXPECT_EQ(fill->GetOwner(), &style);
    EXPECT_EQ(fill->GetOwnersSubstylePropertyName(), Fill);
    EXPECT_TRUE(fill->IsEmpty());
    EXPECT_EQ(GetOrCreateSubstyle(style, Fill), fill) << "one that is there is returned";
    EXPECT_EQ(style.GetSubstyle(Fill, false), fill);
}

TEST_F(SubstyleProperties, AnInheritedSubstyleIsNoOwnOne)
{
    Style heir(&style, StyleCategoryName);
    SetAngle(style, Fill, Angle, 30.0);
    Style* fill = GetOrCreateSubstyle(heir, Fill);
    EXPECT_NE(fill, style.GetSubstyle(Fill, false));
    EXPECT_TRUE(fill->IsEmpty());
    EXPECT_EQ(AngleOf(heir), 30.0);
}

TEST_F(SubstyleProperties, NoSubstyleIsMadeForAKeyThatIsNoSubstyleProperty)
{
    style.SetProperty(Note, Any(VelString(L"x")));
    EXPECT_EQ(GetOrCreateSubstyle(style, Note), nullptr);
    EXPECT_EQ(GetOrCreateSubstyle(style, Number), nullptr);
    EXPECT_EQ(GetOrCreateSubstyle(style, Stops), nullptr);
    EXPECT_EQ(GetOrCreateSubstyle(style, Key(L"unknown")), nullptr);
    EXPECT_EQ(OwnText(style, Note), VelString(L"x"));
    EXPECT_FALSE(style.DoesOverrideProperty(Number));
    EXPECT_FALSE(style.DoesOverrideProperty(Stops));
    Style without;
    EXPECT_EQ(GetOrCreateSubstyle(without, Fill), nullptr);
    EXPECT_TRUE(without.IsEmpty());
}

TEST_F(SubstyleProperties, AValueIsSetInTheOwnSubstyle)
{
    Style* fill = GetOrCreateSubstyle(style, Fill);
    SetSubstyleProperty(style, Fill, Fill, Angle, Any(30.0));
    EXPECT_EQ(style.GetSubstyle(Fill, false), fill);
    EXPECT_EQ(fill->GetProperty(Angle).Get<double>(), 30.0);
    SetSubstyleProperty(style, Fill, Fill, Angle, Any(60.0));
    EXPECT_EQ(fill->GetProperty(Angle).Get<double>(), 60.0);
}

TEST_F(SubstyleProperties, SettingAValueMakesASubstyleOfTheCategoryGiven)
{
    Style parent(nullptr, StyleCategoryName);
    SetAngle(parent, Fill, Angle, 1.0);
    style.SetParent(&parent);
    SetSubstyleProperty(style, Outline, Fill, Width, Any(3.0));
    ASSERT_NE(style.GetSubstyle(Fill, false), nullptr);
    EXPECT_EQ(style.GetSubstyle(Fill, false)->GetCategoryName(), Outline);
    EXPECT_EQ(style.GetSubstyle(Fill, false)->GetProperty(Width).Get<double>(), 3.0);
    EXPECT_EQ(AngleOf(parent), 1.0);
    EXPECT_FALSE(parent.GetSubstyle(Fill, false)->DoesOverrideProperty(Width)) << "the inherited one is left alone";
}

TEST_F(SubstyleProperties, SettingAValueWhereNoSubstyleCanBeMadeDoesNothing)
{
    SetSubstyleProperty(style, Fill, Key(L"unknown"), Angle, Any(1.0));
    EXPECT_TRUE(style.IsEmpty());
    Style without;
    SetSubstyleProperty(without, Fill, Fill, Angle, Any(1.0));
    EXPECT_TRUE(without.IsEmpty());
    SetSubstyleProperty(style, Fill, Fill, Key(L"unknown"), Any(1.0));
    EXPECT_TRUE(style.GetSubstyle(Fill, false)->IsEmpty()) << "the substyle does not know the key";
}

TEST_F(SubstyleProperties, SettingAValueWhereNoSubstyleCanBeMadeChangesTheInheritedOne)
{
    Style parent(nullptr, StyleCategoryName);
    SetAngle(parent, Fill, Skew, 1.0);
    Style heir(&parent, Outline); // does not know the key itself
    SetSubstyleProperty(heir, Fill, Fill, Angle, Any(30.0));
    EXPECT_TRUE(heir.IsEmpty());
    EXPECT_EQ(AngleOf(parent), 30.0);
    SetSubstyleProperty(heir, Fill, Character, Angle, Any(30.0)); // a null is inherited
    EXPECT_TRUE(heir.IsEmpty());
    EXPECT_FALSE(parent.DoesOverrideProperty(Character));
    EXPECT_THROW(SetSubstyleProperty(heir, Fill, Note, Angle, Any(30.0)), std::bad_cast);
}

TEST_F(SubstyleProperties, SettingAValueThroughAValueThatIsNoSubstyleIsAnError)
{
    EXPECT_THROW(SetSubstyleProperty(style, Fill, Number, Angle, Any(1.0)), std::bad_cast);
    EXPECT_TRUE(style.IsEmpty());
    style.SetProperty(Note, Any(VelString(L"x")));
    EXPECT_THROW(SetSubstyleProperty(style, Fill, Note, Angle, Any(1.0)), std::bad_cast);
    EXPECT_EQ(OwnText(style, Note), VelString(L"x"));
}

TEST_F(SubstyleProperties, AValueIsClearedInTheOwnSubstyle)
{
    SetAngle(style, Fill, Angle, 30.0);
    SetAngle(style, Fill, Skew, 1.0);
    ClearSubstyleProperty(style, Fill, Angle);
    ASSERT_NE(style.GetSubstyle(Fill, false), nullptr);
    EXPECT_FALSE(style.GetSubstyle(Fill, false)->DoesOverrideProperty(Angle));
    EXPECT_TRUE(style.GetSubstyle(Fill, false)->DoesOverrideProperty(Skew));
    ClearSubstyleProperty(style, Fill, Angle);
    ClearSubstyleProperty(style, Fill, Skew);
    EXPECT_NE(style.GetSubstyle(Fill, false), nullptr) << "an empty one stays";
}

TEST_F(SubstyleProperties, ClearingNeverTouchesAnInheritedSubstyle)
{
    Style heir(&style, StyleCategoryName);
    SetAngle(style, Fill, Angle, 30.0);
    ClearSubstyleProperty(heir, Fill, Angle);
    EXPECT_EQ(AngleOf(style), 30.0);
    EXPECT_TRUE(heir.IsEmpty());
}

TEST_F(SubstyleProperties, ClearingThroughAValueThatIsNoSubstyleIsAnError)
{
    ClearSubstyleProperty(style, Note, Angle);
    style.SetProperty(Note, Any(VelString(L"x")));
    EXPECT_THROW(ClearSubstyleProperty(style, Note, Angle), std::bad_cast);
    EXPECT_EQ(OwnText(style, Note), VelString(L"x"));
}

TEST_F(SubstyleProperties, EmptySubstylesArePrunedInnermostFirst)
{
    GetOrCreateSubstyle(*GetOrCreateSubstyle(style, Character), Fill);
    GetOrCreateSubstyle(style, Outline);
    SetAngle(style, Fill, Angle, 30.0);
    style.SetProperty(Note, Any(VelString(L"x")));
    ClearEmptySubstyles(style);
    EXPECT_FALSE(style.DoesOverrideProperty(Character)) << "it held an empty substyle only";
    EXPECT_FALSE(style.DoesOverrideProperty(Outline));
    EXPECT_EQ(AngleOf(style), 30.0);
    EXPECT_EQ(OwnText(style, Note), VelString(L"x"));
}

TEST_F(SubstyleProperties, ASubstyleWithAValueDeepInsideIsNotPruned)
{
    Style* character = GetOrCreateSubstyle(style, Character);
    GetOrCreateSubstyle(*character, Fill)->SetProperty(Angle, Any(0.0));
    ClearEmptySubstyles(style);
    EXPECT_EQ(style.GetSubstyle(Character, false), character);
    EXPECT_TRUE(character->DoesOverrideProperty(Fill));
    Style empty;
    ClearEmptySubstyles(empty);
    EXPECT_TRUE(empty.IsEmpty());
}

TEST_F(SubstyleProperties, CopyingReplacesTheSubstylesThatAreThere)
{
    Style source(nullptr, StyleCategoryName);
    SetAngle(source, Fill, Angle, 30.0);
    GetOrCreateSubstyle(source, Outline)->SetProperty(Width, Any(3.0));
    SetAngle(style, Fill, Skew, 1.0);
    style.SetProperty(Note, Any(VelString(L"x")));
    GetOrCreateSubstyle(style, Character)->SetProperty(Size, Any(9.0));
    CopySourceSubstylesThatExistsInDestinationStyle(&style, &source, false);
    const Style* fill = style.GetSubstyle(Fill, false);
    ASSERT_NE(fill, nullptr);
    EXPECT_NE(fill, source.GetSubstyle(Fill, false));
    EXPECT_EQ(fill->GetOwner(), &style);
    EXPECT_EQ(AngleOf(style), 30.0);
    EXPECT_FALSE(fill->DoesOverrideProperty(Skew));
    EXPECT_FALSE(style.DoesOverrideProperty(Outline)) << "only the source has it";
    EXPECT_EQ(style.GetSubstyle(Character, false)->GetProperty(Size).Get<double>(), 9.0) << "the source lacks it";
    EXPECT_EQ(OwnText(style, Note), VelString(L"x"));
}

TEST_F(SubstyleProperties, MergingBringsTheValuesOfTheSourceIntoTheSubstylesThatAreThere)
{
    Style source(nullptr, StyleCategoryName);
    SetAngle(source, Fill, Angle, 30.0);
    SetAngle(source, Fill, XScale, 2.0);
    GetOrCreateSubstyle(source, Outline);
    SetAngle(style, Fill, Skew, 1.0);
    SetAngle(style, Fill, XScale, 5.0);
    Style* fill = style.GetSubstyle(Fill, false);
    CopySourceSubstylesThatExistsInDestinationStyle(&style, &source, true);
    EXPECT_EQ(style.GetSubstyle(Fill, false), fill) << "the same object";
    EXPECT_EQ(AngleOf(style), 30.0);
    EXPECT_EQ(fill->GetProperty(XScale).Get<double>(), 2.0);
    EXPECT_EQ(fill->GetProperty(Skew).Get<double>(), 1.0);
    EXPECT_FALSE(style.DoesOverrideProperty(Outline));
}

TEST_F(SubstyleProperties, AValueOfTheDestinationThatIsNoSubstyleIsPassedOver)
{
    Manager().RegisterCategory(Key(L"plain"), VelString(), false, true);
    Manager().RegisterProperty(Key(L"plain"), Fill, MakeTextProperty());
    for (const bool mergeValues : {false, true})
    {
        Style plain(nullptr, Key(L"plain"));
        plain.SetProperty(Fill, Any(VelString(L"x")));
        SetAngle(style, Fill, Angle, 30.0);
        CopySourceSubstylesThatExistsInDestinationStyle(&plain, &style, mergeValues);
        EXPECT_EQ(OwnText(plain, Fill), VelString(L"x"));
        CopySourceSubstylesThatExistsInDestinationStyle(&style, &plain, mergeValues);
        EXPECT_EQ(AngleOf(style), 30.0);
    }
}

TEST_F(SubstyleProperties, CopyingFromNothingOrFromItselfDoesNothing)
{
    SetAngle(style, Fill, Angle, 30.0);
    Style* fill = style.GetSubstyle(Fill, false);
    for (const bool mergeValues : {false, true})
    {
        CopySourceSubstylesThatExistsInDestinationStyle(&style, nullptr, mergeValues);
        CopySourceSubstylesThatExistsInDestinationStyle(nullptr, &style, mergeValues);
        CopySourceSubstylesThatExistsInDestinationStyle(&style, &style, mergeValues);
    }
    EXPECT_EQ(style.GetSubstyle(Fill, false), fill);
    EXPECT_EQ(AngleOf(style), 30.0);
}

TEST_F(SubstyleProperties, TheSourceMayBeASubstyleOfTheDestination)
{
    for (const bool mergeValues : {false, true})
    {
        Style nest(nullptr, Nest);
        Style* inner = GetOrCreateSubstyle(nest, Nest);
        GetOrCreateSubstyle(*inner, Nest)->SetProperty(Note, Any(VelString(L"innermost")));
        CopySourceSubstylesThatExistsInDestinationStyle(&nest, inner, mergeValues);
        EXPECT_EQ(OwnText(*nest.GetSubstyle(Nest, false), Note), VelString(L"innermost"));
        EXPECT_EQ(nest.GetSubstyle(Nest, false)->GetOwner(), &nest);
    }
}

TEST_F(SubstyleProperties, TheSourceIsWhatItWasWhenItIsReplacedItself)
{
    const PropertyKey other = Key(L"other nest");
    Manager().RegisterProperty(Nest, other, new StyleSetProperty(nullptr, Nest, nullptr, 0));
    for (const PropertyKey& place : {Nest, other}) // one of them is replaced first
    {
        for (const bool mergeValues : {false, true})
        {
            Style nest(nullptr, Nest);
            GetOrCreateSubstyle(nest, Nest);
            GetOrCreateSubstyle(nest, other);
            Style* source = nest.GetSubstyle(place, false);
            GetOrCreateSubstyle(*source, Nest)->SetProperty(Note, Any(L"first"));
            GetOrCreateSubstyle(*source, other)->SetProperty(Note, Any(L"second"));
            CopySourceSubstylesThatExistsInDestinationStyle(&nest, source, mergeValues);
            EXPECT_EQ(OwnText(*nest.GetSubstyle(Nest, false), Note), VelString(L"first"));
            EXPECT_EQ(OwnText(*nest.GetSubstyle(other, false), Note), VelString(L"second"));
        }
    }
}

} // namespace Styles::Testing
