// Setting, clearing, reverting and copying the values of one style.

#include "core/StyleMutationSuite.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>

namespace Styles::Testing
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST_F(StyleMutation, AValueEntersThroughItsDefinitionAndLeavesThroughIt)
{
    Style style(nullptr, Probes);
    const Any first(L"first");
    style.SetProperty(Choosy, first);
    EXPECT_THAT(log, ElementsAre("move"));
    style.SetProperty(Choosy, Any(L"second"));
    EXPECT_THAT(log, ElementsAre("move", "move", "destroy")) << "made first, then destroyed";
    EXPECT_EQ(OwnText(style, Choosy), VelString(L"second"));
    style.SetProperty(Choosy, first);
    EXPECT_THAT(log, ElementsAre("move", "move", "destroy", "destroy", "move")) << "destroyed first, then made";
    EXPECT_EQ(OwnText(style, Choosy), VelString(L"first"));
    EXPECT_EQ(first.Get<VelString>(), VelString(L"first"));
    EXPECT_TRUE(style.ClearProperty(Choosy));
    EXPECT_EQ(log.back(), "destroy");
    EXPECT_FALSE(style.DoesOverrideProperty(Choosy));
}

TEST_F(StyleMutation, SettingACopyRemovesTheOldValueFirst)
{
    Style style(nullptr, Probes);
    style.SetProperty(Keys[0], Any(L"old"));
    TakeCalls();
    const Any value(L"new");
    failing = {"0 move"};
    EXPECT_EQ(ThrownBy([&] { style.SetProperty(Keys[0], value); }), "0 move");
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy", "0 move"));
    EXPECT_FALSE(style.DoesOverrideProperty(Keys[0]));
}

TEST_F(StyleMutation, SettingByMoveKeepsTheOldValueWhereTheDefinitionThrows)
{
    Style style(nullptr, Probes);
    style.SetProperty(Keys[0], Any(L"old"));
    TakeCalls();
    failing = {"0 move"};
    EXPECT_EQ(ThrownBy([&] { style.SetProperty(Keys[0], Any(L"new")); }), "0 move");
    EXPECT_THAT(TakeCalls(), ElementsAre("0 move"));
    EXPECT_EQ(OwnText(style, Keys[0]), VelString(L"old"));
}

TEST_F(StyleMutation, AnOldValueWhoseDestructionThrowsIsGoneAllTheSame)
{
    Style style(nullptr, Probes);
    style.SetProperty(Keys[0], Any(L"old"));
    TakeCalls();
    failing = {"0 destroy"};
    EXPECT_EQ(ThrownBy([&] { style.SetProperty(Keys[0], Any(L"new")); }), "0 destroy");
    EXPECT_EQ(OwnText(style, Keys[0]), VelString(L"new")) << "it had been made already";
    EXPECT_THAT(TakeCalls(), ElementsAre("0 move", "0 destroy"));
    const Any value(L"newer");
    EXPECT_EQ(ThrownBy([&] { style.SetProperty(Keys[0], value); }), "0 destroy");
    EXPECT_FALSE(style.DoesOverrideProperty(Keys[0]));
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy"));
    style.SetProperty(Keys[0], value);
    TakeCalls();
    EXPECT_EQ(ThrownBy([&] { style.ClearProperty(Keys[0]); }), "0 destroy");
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy"));
}

TEST_F(StyleMutation, SettingAnUnknownKeyByCopyRemovesTheOldValue)
{
    Style style(nullptr, Fill);
    style.SetProperty(Angle, Any(1.0));
    style.SetCategory(Outline);
    const Any value(2.0);
    style.SetProperty(Angle, value);
    EXPECT_FALSE(style.DoesOverrideProperty(Angle));
    style.SetProperty(Angle, value);
    EXPECT_FALSE(style.DoesOverrideProperty(Angle));
}

TEST_F(StyleMutation, SettingAnUnknownKeyByMoveLeavesTheOldValue)
{
    Style style(nullptr, Fill);
    style.SetProperty(Angle, Any(1.0));
    style.SetCategory(Outline);
    style.SetProperty(Angle, Any(2.0));
    style.SetCategory(Fill);
    EXPECT_EQ(EffectiveNumber(style, Angle), 1.0);
    style.SetProperty(Key(L"unknown"), Any(2.0));
    EXPECT_FALSE(style.DoesOverrideProperty(Key(L"unknown")));
}

TEST_F(StyleMutation, AnEmptyNewValueByCopyDestroysTheOldOne)
{
    Style style(nullptr, Probes);
    style.SetProperty(Choosy, Any(L"old"));
    log.clear();
    const Any nothing(L"nothing");
    style.SetProperty(Choosy, nothing);
    EXPECT_THAT(log, ElementsAre("destroy", "move"));
    EXPECT_FALSE(style.DoesOverrideProperty(Choosy));
    log.clear();
    style.SetProperty(Choosy, nothing);
    EXPECT_THAT(log, ElementsAre("move"));
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleMutation, SettingAnEmptyValueByMoveRemovesTheOldOneWithoutDestroyingIt)
{
    Style style(nullptr, Probes);
    style.SetProperty(Choosy, Any(L"old"));
    log.clear();
    style.SetProperty(Choosy, Any(L"nothing"));
    EXPECT_THAT(log, ElementsAre("move"));
    EXPECT_FALSE(style.DoesOverrideProperty(Choosy));

    Style holder(nullptr, StyleCategoryName);
    const std::unique_ptr<Style> substyle(GetOrCreateSubstyle(holder, Fill));
    substyle->SetProperty(Color, Any(L"red"));
    holder.SetSubstyle(Fill, nullptr);
    EXPECT_FALSE(holder.DoesOverrideProperty(Fill));
    EXPECT_EQ(OwnText(*substyle, Color), VelString(L"red")) << "it belongs to nobody now";
}

TEST_F(StyleMutation, ASubstyleSetToNullByCopyIsDestroyed)
{
    Style holder(nullptr, StyleCategoryName);
    GetOrCreateSubstyle(holder, Fill);
    const Any null(static_cast<Style*>(nullptr));
    holder.SetProperty(Fill, null);
    EXPECT_FALSE(holder.DoesOverrideProperty(Fill));
}

TEST_F(StyleMutation, ASubstyleIsStoredAsAnOwnedCopy)
{
    Style source(nullptr, Fill), holder(nullptr, StyleCategoryName);
    source.SetProperty(Color, Any(L"red"));
    const Any asMutable(&source);
    holder.SetProperty(Fill, asMutable);
    const Style* substyle = holder.GetSubstyle(Fill, false);
    ASSERT_NE(substyle, nullptr);
    EXPECT_NE(substyle, &source);
    EXPECT_TRUE(*substyle == source);
    EXPECT_EQ(substyle->GetOwner(), &holder);
    EXPECT_EQ(substyle->GetOwnersSubstylePropertyName(), Fill);
    EXPECT_EQ(source.GetOwner(), nullptr);
    source.SetProperty(Color, Any(L"blue"));
    holder.SetSubstyle(Fill, &source);
    EXPECT_EQ(OwnText(*holder.GetSubstyle(Fill, false), Color), VelString(L"blue"));
    holder.SetPathSubstyle({Character, Fill}, &source);
    EXPECT_EQ(holder.GetPathProperty({Character, Fill, Color}).Get<VelString>(), VelString(L"blue"));
}

TEST_F(StyleMutation, AValueOfTheWrongTypeForASubstyleThrowsAsTheFormSays)
{
    Style holder(nullptr, StyleCategoryName);
    Style* substyle = GetOrCreateSubstyle(holder, Fill);
    EXPECT_THROW(holder.SetProperty(Fill, Any(1.0)), std::bad_cast);
    EXPECT_EQ(holder.GetSubstyle(Fill, false), substyle);
    const Any number(1.0);
    EXPECT_THROW(holder.SetProperty(Fill, number), std::bad_cast);
    EXPECT_FALSE(holder.DoesOverrideProperty(Fill));
}

TEST_F(StyleMutation, AnyTypeAndAnyValueIsStoredUnasked)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    parent.SetProperty(Number, Any(3.0));
    style.SetProperty(Number, Any(3.0));
    EXPECT_TRUE(style.DoesOverrideProperty(Number)) << "equal to the inherited value, and stored all the same";
    style.SetProperty(Number, Any(L"no number"));
    EXPECT_EQ(OwnText(style, Number), VelString(L"no number"));
}

TEST_F(StyleMutation, ClearingAnswersWhetherThereWasAValue)
{
    Style style(nullptr, StyleCategoryName);
    EXPECT_FALSE(style.ClearProperty(Note));
    style.SetProperty(Note, Any(L"text"));
    EXPECT_TRUE(style.ClearProperty(Note));
    EXPECT_FALSE(style.ClearProperty(Note));
    GetOrCreateSubstyle(style, Fill);
    EXPECT_TRUE(style.ClearProperty(Fill));
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleMutation, ClearingRemovesAValueWithoutDefinition)
{
    Style style(nullptr, Fill);
    style.SetProperty(Angle, Any(1.0));
    style.SetCategory(Outline);
    EXPECT_TRUE(style.ClearProperty(Angle));
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleMutation, TheKeysOfAnotherStyleAreCleared)
{
    Style style(nullptr, Probes), other(nullptr, Probes);
    SetAll(style, L"text");
    other.SetProperty(Keys[2], Any(L"other"));
    other.SetProperty(Keys[0], Any(L"other"));
    other.SetProperty(Choosy, Any(L"other"));
    TakeCalls();
    style.ClearProperties(&other);
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy", "2 destroy"));
    EXPECT_TRUE(style.DoesOverrideProperty(Keys[1]));
    style.ClearProperties(nullptr);
    EXPECT_TRUE(style.DoesOverrideProperty(Keys[1]));
    other.ClearProperties(&other);
    EXPECT_TRUE(other.IsEmpty());
}

TEST_F(StyleMutation, ClearingEverythingDestroysAllInKeyOrderAndThenLetsTheFirstExceptionGoOn)
{
    Style style(nullptr, Probes);
    SetAll(style, L"text");
    TakeCalls();
    style.ClearAllProperties();
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy", "1 destroy", "2 destroy"));
    EXPECT_TRUE(style.IsEmpty());
    SetAll(style, L"text");
    TakeCalls();
    failing = {"1 destroy", "2 destroy"};
    EXPECT_EQ(ThrownBy([&] { style.ClearAllProperties(); }), "1 destroy");
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy", "1 destroy", "2 destroy"));
    EXPECT_TRUE(style.IsEmpty());
    style.ClearAllProperties();
    EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(StyleMutation, RevertingEverythingKeepsTheSubstylesAndEmptiesThem)
{
    Style style(nullptr, StyleCategoryName);
    style.SetProperty(Note, Any(L"text"));
    Style* character = GetOrCreateSubstyle(style, Character);
    Style* fill = GetOrCreateSubstyle(*character, Fill);
    fill->SetProperty(Angle, Any(1.0));
    Style element(nullptr, Stop);
    style.SetProperty(Stops, Any(std::vector<Style*>{&element}));
    EXPECT_TRUE(style.RevertAllProperties());
    EXPECT_FALSE(style.DoesOverrideProperty(Note));
    EXPECT_FALSE(style.DoesOverrideProperty(Stops)) << "lists go";
    EXPECT_EQ(style.GetSubstyle(Character, false), character);
    EXPECT_EQ(character->GetSubstyle(Fill, false), fill);
    EXPECT_TRUE(fill->IsEmpty());
    EXPECT_FALSE(style.RevertAllProperties()) << "nothing is left to remove";
    fill->SetProperty(Angle, Any(1.0));
    EXPECT_TRUE(style.RevertAllProperties()) << "at any depth";
}

TEST_F(StyleMutation, RevertingRemovesValuesWithoutDefinitionToo)
{
    Style style(nullptr, Fill);
    style.SetProperty(Angle, Any(1.0));
    style.SetCategory(Outline);
    EXPECT_TRUE(style.RevertAllProperties());
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_FALSE(Style().RevertAllProperties());
}

TEST_F(StyleMutation, ADefinitionThatThrowsWhileRevertingLeavesTheOthersDoneOrAsTheyWere)
{
    Style style(nullptr, Probes);
    SetAll(style, L"text");
    TakeCalls();
    failing = {"1 destroy"};
    EXPECT_EQ(ThrownBy([&] { style.RevertAllProperties(); }), "1 destroy");
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy", "1 destroy"));
    EXPECT_FALSE(style.DoesOverrideProperty(Keys[0]));
    EXPECT_FALSE(style.DoesOverrideProperty(Keys[1])) << "it is not destroyed twice";
    EXPECT_TRUE(style.DoesOverrideProperty(Keys[2]));
}

TEST_F(StyleMutation, CopiedPropertiesAreTheEffectiveOnes)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    style.SetProperty(Note, Any(L"own"));
    parent.SetPathProperty({Fill, Color}, Any(L"inherited"));
    style.SetProperty(Stops, Any(std::vector<Style*>()));
    const std::unique_ptr<Style> copy(style.CopyProperties({Note, Number, Fill}));
    EXPECT_EQ(copy->GetParent(), nullptr);
    EXPECT_EQ(copy->GetOwner(), nullptr);
    EXPECT_EQ(copy->GetCategoryName(), StyleCategoryName);
    EXPECT_EQ(OwnText(*copy, Note), VelString(L"own"));
    EXPECT_TRUE(copy->DoesOverrideProperty(Number));
    EXPECT_EQ(EffectiveNumber(*copy, Number), 0.25) << "the default is stored";
    const Style* fill = copy->GetSubstyle(Fill, false);
    ASSERT_NE(fill, nullptr);
    EXPECT_EQ(fill->GetOwner(), copy.get());
    EXPECT_EQ(OwnText(*fill, Color), VelString(L"inherited"));
    EXPECT_FALSE(copy->DoesOverrideProperty(Stops));
}

TEST_F(StyleMutation, NoKeysGiveAnEmptyStyleOfTheSameCategory)
{
    Style style(nullptr, Fill);
    const std::unique_ptr<Style> copy(style.CopyProperties({}));
    EXPECT_TRUE(copy->IsEmpty());
    EXPECT_EQ(copy->GetCategoryName(), Fill);
}

TEST_F(StyleMutation, CopyingAnUnknownPropertyThrowsAndLeaksNothing)
{
    Style style(nullptr, StyleCategoryName);
    GetOrCreateSubstyle(style, Fill);
    EXPECT_THROW(static_cast<void>(style.CopyProperties({Fill, Note, Key(L"unknown")})), std::logic_error);
    EXPECT_THROW(static_cast<void>(Style().CopyProperties({Note})), std::logic_error);
}

TEST_F(StyleMutation, ACopyOfADefaultThatIsANullSubstyleStoresNothing)
{
    Style style(nullptr, StyleCategoryName);
    const std::unique_ptr<Style> copy(style.CopyProperties({Outline}));
    EXPECT_TRUE(copy->IsEmpty());
}

TEST_F(StyleMutation, EveryCallOfADefinitionMayThrow)
{
    // For each operation: what it calls, and that the style is whole and nothing leaks whichever call throws.
    const std::vector<std::function<void(Style&)>> operations{
        [this](Style& style) { style.SetProperty(Keys[1], Any(L"new")); },
        [this](Style& style) {
            const Any value(L"new");
            style.SetProperty(Keys[1], value);
        },
        [this](Style& style) { style.ClearProperty(Keys[1]); },
        [](Style& style) { style.ClearAllProperties(); },
        [](Style& style) { style.ClearProperties(&style); },
        [](Style& style) { style.RevertAllProperties(); },
        [](Style& style) { style = Style(style); },
        [this](Style& style) {
            const std::unique_ptr<Style> copy(style.CopyProperties({Keys[0], Keys[1], Keys[2]}));
            style.SwapData(*copy);
        },
    };
    for (std::size_t operation = 0; operation < operations.size(); ++operation)
    {
        for (const char* step : {"destroy", "move"})
        {
            for (const char* probe : {"0 ", "1 ", "2 "})
            {
                SCOPED_TRACE(std::to_string(operation) + ": " + probe + step);
                Style style(nullptr, Probes);
                SetAll(style, L"old");
                TakeCalls();
                failing = {std::string(probe) + step};
                const std::string thrown = ThrownBy([&] { operations[operation](style); });
                const bool called = std::count(calls.begin(), calls.end(), std::string(probe) + step) > 0;
                // The last two also make and destroy temporary styles, whose destructors do not throw.
                EXPECT_TRUE(thrown.empty() != called || operation >= 6) << thrown;
                failing.clear();
                for (const PropertyKey& key : Keys)
                {
                    Any value(L"none");
                    style.GetOverrideProperty(key, value);
                    EXPECT_TRUE(value.Is<VelString>());
                }
                style.SetProperty(Keys[1], Any(L"usable"));
                EXPECT_EQ(OwnText(style, Keys[1]), VelString(L"usable"));
            }
        }
    }
}

} // namespace Styles::Testing
