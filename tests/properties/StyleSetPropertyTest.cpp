#include "properties/StyleSetSuite.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <typeinfo>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace Styles::Testing
{

namespace
{

class StyleSetProperty : public StyleSetSuite
{};

} // namespace

TEST_F(StyleSetProperty, IsMadeOfElementCategoryDefaultAndVersion)
{
    EXPECT_EQ(shade->GetElementCategoryName(), Fill);
    EXPECT_EQ(shade->GetDefaultValue().Get<Style*>(), nullptr);
    EXPECT_EQ(shade->GetNewSinceVersion(), 3);
    EXPECT_TRUE(shade->IsSubstyle());
    EXPECT_FALSE(shade->IsTemporary());
    EXPECT_FALSE(shade->IsDeprecated());
    EXPECT_FALSE(shade->NeedAdjustementsForStyleIO());
    EXPECT_EQ(shade->GetConversionPolicy(), nullptr);
}

TEST_F(StyleSetProperty, DeletesItsDefaultSubstyle)
{
    const auto log = std::make_shared<std::vector<std::string>>();
    auto* probe = new ProbeProperty;
    probe->log = log;
    Manager().RegisterProperty(Fill, Key(L"probe"), probe);
    {
        auto defaultSubstyle = std::make_unique<Style>(nullptr, Fill);
        defaultSubstyle->SetProperty(Key(L"probe"), Any(VelString(L"x")));
        log->clear();
        const Definition definition(nullptr, Fill, defaultSubstyle.release(), 0);
        EXPECT_THAT(*log, IsEmpty());
    }
    EXPECT_THAT(*log, ElementsAre("destroy"));
}

TEST_F(StyleSetProperty, ACopyTakesTheElementCategoryAndSharesTheDefault)
{
    const Definition original(nullptr, Outline, new Style(nullptr, Outline), 2);
    alignas(Definition) std::byte storage[sizeof(Definition)];
    auto* copy = new (storage) Definition(original); // never destroyed: it would delete the default, too
    EXPECT_EQ(copy->GetElementCategoryName(), Outline);
    EXPECT_EQ(copy->GetDefaultValue(), original.GetDefaultValue());

    alignas(Definition) std::byte otherStorage[sizeof(Definition)];
    auto* assigned = new (otherStorage) Definition(nullptr, Fill, nullptr, 0);
    *assigned = original;
    EXPECT_EQ(assigned->GetElementCategoryName(), Outline);
    EXPECT_EQ(assigned->GetDefaultValue(), original.GetDefaultValue());
    EXPECT_EQ(assigned->GetNewSinceVersion(), 2);
}

TEST_F(StyleSetProperty, TheTypeIsAStyleToHoldOrAStyleToCopy)
{
    EXPECT_TRUE(shade->CheckType(Any(&substyle)));
    EXPECT_TRUE(shade->CheckType(null));
    EXPECT_TRUE(shade->CheckType(Any(static_cast<const Style*>(&substyle))));
    EXPECT_FALSE(shade->CheckType(Any()));
    EXPECT_FALSE(shade->CheckType(Any(1.5)));
    EXPECT_FALSE(shade->CheckType(Any(std::vector<Style*>())));
}

TEST_F(StyleSetProperty, AValueOfAnotherTypeIsABadCastAndStaysAsItIs)
{
    Json::Variant output;
    const Any substyleToCopy(static_cast<const Style*>(&substyle));
    for (const Any& wrong : {Any(1.5), Any(), substyleToCopy})
    {
        Any changed(wrong);
        const StyleSpan span;
        const std::vector<std::function<void()>> operations{
            [&] { shade->Serialize(sheet, &style, wrong, output); },
            [&] { shade->DestroyPropertyData(wrong); },
            [&] { shade->GetDependencies(wrong, span, false); },
            [&] { shade->GetDependencies(wrong, span, true); },
            [&] { static_cast<void>(shade->HasDependency(wrong, span, false)); },
            [&] { static_cast<void>(shade->HasDependency(wrong, span, true)); },
            [&] { shade->RemoveDependency(changed, span, false); },
            [&] { static_cast<void>(shade->HasParentalDependency(wrong)); },
            [&] { shade->RemoveAllDependencies(changed); },
            [&] { shade->RemapDependency(changed, {}); },
            [&] { shade->RemapPointer(changed, {}); },
            [&] { shade->SetOwner(changed, &style, Shade); },
            [&] {
                shade->ProcessProperty(
                    changed, [](Any&, Style*, const PropertyKey&) { return true; }, &style, Shade);
            },
            [&] { static_cast<void>(shade->IsEqual(wrong, value)); },
            [&] { static_cast<void>(shade->IsEqual(value, wrong)); },
            [&] { static_cast<void>(shade->IsLess(wrong, value)); },
            [&] { static_cast<void>(shade->IsLess(value, wrong)); },
            [&] { shade->ProcessStylesInProperty(wrong, [](Style*) { return true; }); },
        };
        for (std::size_t index = 0; index < operations.size(); ++index)
        {
            EXPECT_THROW(operations[index](), std::bad_cast) << index;
            EXPECT_EQ(changed, wrong) << index;
        }
    }
    EXPECT_THROW(shade->MovePropertyData(&style, Any(1.5)), std::bad_cast);
    EXPECT_THROW(shade->MovePropertyData(&style, Any()), std::bad_cast);
    EXPECT_EQ(substyle.GetOwner(), nullptr);
    EXPECT_EQ(substyle.GetParent(), &parent);
}

TEST_F(StyleSetProperty, AWrongValueThatIsSetByMoveLeavesTheOldOne)
{
    AddSubstyle(style, Shade, Fill).SetProperty(Color, Any(VelString(L"red")));
    EXPECT_THROW(style.SetProperty(Shade, Any(1.5)), std::bad_cast);
    EXPECT_EQ(OwnText(*style.GetSubstyle(Shade, false), Color), L"red");
}

TEST_F(StyleSetProperty, ANullSubstyleIsPassedOverByEveryOperation)
{
    Any changed(null);
    Style* const members[] = {&parent};
    const StyleSpan span(members);
    shade->DestroyPropertyData(null);
    EXPECT_TRUE(shade->MovePropertyData(&style, Any(null)).IsEmpty());
    EXPECT_TRUE(shade->MovePropertyData(&style, Any(static_cast<const Style*>(nullptr))).IsEmpty());
    for (const bool direct : {false, true})
    {
        EXPECT_THAT(shade->GetDependencies(null, span, direct), IsEmpty());
        EXPECT_FALSE(shade->HasDependency(null, span, direct));
        shade->RemoveDependency(changed, span, direct);
    }
    EXPECT_FALSE(shade->HasParentalDependency(null));
    shade->RemoveAllDependencies(changed);
    shade->RemapDependency(changed, {{&parent, &substyle}});
    shade->RemapPointer(changed, {});
    shade->SetOwner(changed, &style, Shade);
    EXPECT_TRUE(shade->ProcessProperty(
        changed, [](Any&, Style*, const PropertyKey&) { return false; }, &style, Shade));
    EXPECT_EQ(changed, null);

    Style* visited = &substyle;
    EXPECT_FALSE(shade->ProcessStylesInProperty(null, [&visited](Style* inside) {
        visited = inside;
        return false;
    }));
    EXPECT_EQ(visited, nullptr);
}

TEST_F(StyleSetProperty, ANullSubstyleMatchesNothingInASpanThatHoldsNull)
{
    Style* const members[] = {nullptr};
    substyle.SetParent(nullptr);
    for (const bool direct : {false, true})
    {
        EXPECT_FALSE(shade->HasDependency(null, StyleSpan(members), direct));
        EXPECT_FALSE(shade->HasDependency(value, StyleSpan(members), direct));
        EXPECT_THAT(shade->GetDependencies(value, StyleSpan(members, true), direct), IsEmpty());
    }
}

TEST_F(StyleSetProperty, StoringCopiesTheStyleAndTellsTheCopyItsOwner)
{
    substyle.SetProperty(Color, Any(VelString(L"red")));
    for (const Any& given : {Any(&substyle), Any(static_cast<const Style*>(&substyle))})
    {
        style.SetProperty(Shade, given);
        const Style* stored = style.GetSubstyle(Shade, false);
        ASSERT_NE(stored, nullptr);
        EXPECT_NE(stored, &substyle);
        EXPECT_EQ(*stored, substyle);
        EXPECT_EQ(stored->GetOwner(), &style);
        EXPECT_EQ(stored->GetOwnersSubstylePropertyName(), Shade);
        EXPECT_EQ(substyle.GetOwner(), nullptr);
        EXPECT_EQ(substyle.GetOwnersSubstylePropertyName(), PropertyKey::Empty);
    }
}

TEST_F(StyleSetProperty, TheSubstyleItselfIsADependencyThatIsNotListed)
{
    Style* const members[] = {&substyle};
    const StyleSpan span(members);
    EXPECT_TRUE(shade->HasDependency(value, span, false));
    EXPECT_FALSE(shade->HasDependency(value, span, true));
    EXPECT_THAT(shade->GetDependencies(value, span, false), IsEmpty());
    EXPECT_THAT(shade->GetDependencies(value, span, true), IsEmpty());

    Style holder(nullptr, StyleCategoryName);
    holder.SetSubstyle(Shade, &substyle);
    Style* const held[] = {holder.GetSubstyle(Shade, false)};
    EXPECT_TRUE(holder.HasDependency(StyleSpan(held)));
    EXPECT_THAT(holder.GetDependencies(StyleSpan(held), false), IsEmpty());
}

TEST_F(StyleSetProperty, DirectlyOnlyTheParentOfTheSubstyleIsADependency)
{
    Style grandparent(nullptr, Fill);
    parent.SetParent(&grandparent);
    Style* const direct[] = {&parent};
    Style* const distant[] = {&grandparent};
    EXPECT_TRUE(shade->HasDependency(value, StyleSpan(direct), true));
    EXPECT_THAT(shade->GetDependencies(value, StyleSpan(direct), true), ElementsAre(&parent));
    EXPECT_FALSE(shade->HasDependency(value, StyleSpan(distant), true));
    EXPECT_THAT(shade->GetDependencies(value, StyleSpan(distant), true), IsEmpty());
    EXPECT_TRUE(shade->HasDependency(value, StyleSpan(distant), false));
    EXPECT_THAT(shade->GetDependencies(value, StyleSpan(distant), false), ElementsAre(&grandparent));
    EXPECT_TRUE(shade->HasParentalDependency(value));
    substyle.SetParent(nullptr);
    EXPECT_FALSE(shade->HasParentalDependency(value));
}

TEST_F(StyleSetProperty, RemovingAndRemappingGoOnIntoTheSubstyle)
{
    parent.SetProperty(Color, Any(VelString(L"red")));
    Style other(nullptr, Fill);
    shade->RemapDependency(value, {{&parent, &other}});
    EXPECT_EQ(substyle.GetParent(), &other);
    shade->RemapDependency(value, {{&other, nullptr}});
    EXPECT_EQ(substyle.GetParent(), &other);

    substyle.SetParent(&parent);
    Style* const members[] = {&parent};
    shade->RemoveDependency(value, StyleSpan(members), true);
    EXPECT_EQ(substyle.GetParent(), nullptr);
    EXPECT_EQ(OwnText(substyle, Color), L"red");

    Style again(&parent, Fill);
    Any next(&again);
    shade->RemoveAllDependencies(next);
    EXPECT_EQ(again.GetParent(), nullptr);
    EXPECT_EQ(OwnText(again, Color), L"red");
}

TEST_F(StyleSetProperty, SettingTheOwnerTellsTheSubstyle)
{
    shade->SetOwner(value, &style, Color);
    EXPECT_EQ(substyle.GetOwner(), &style);
    EXPECT_EQ(substyle.GetOwnersSubstylePropertyName(), Color);
}

TEST_F(StyleSetProperty, ProcessingVisitsTheValuesOfTheSubstyleAndNotTheSubstyle)
{
    substyle.SetProperty(Color, Any(VelString(L"red")));
    std::vector<PropertyKey> keys;
    const auto visit = [&](Any& visited, Style* holder, const PropertyKey& key) {
        EXPECT_EQ(holder, &substyle);
        EXPECT_EQ(visited.Get<VelString>(), L"red");
        keys.push_back(key);
        return false;
    };
    EXPECT_FALSE(shade->ProcessProperty(value, visit, nullptr, PropertyKey()));
    EXPECT_THAT(keys, ElementsAre(Color));
}

TEST_F(StyleSetProperty, VisitingStylesAnswersAsTheVisitorDoes)
{
    for (const bool answer : {true, false})
    {
        std::vector<Style*> visited;
        EXPECT_EQ(shade->ProcessStylesInProperty(value,
                                                 [&](Style* inside) {
                                                     visited.push_back(inside);
                                                     return answer;
                                                 }),
                  answer);
        EXPECT_THAT(visited, ElementsAre(&substyle));
    }
}

TEST_F(StyleSetProperty, MergingStoresACopyOfTheOwnSubstyleOfTheSource)
{
    Style source(nullptr, StyleCategoryName);
    shade->MergeProperty(&style, &source, Shade, true);
    EXPECT_TRUE(style.IsEmpty());

    Style& theirs = AddSubstyle(source, Shade, Fill, &parent);
    theirs.SetProperty(Color, Any(VelString(L"red")));
    shade->MergeProperty(&style, &source, Shade, false);
    const Style* ours = style.GetSubstyle(Shade, false);
    ASSERT_NE(ours, nullptr);
    EXPECT_NE(ours, &theirs);
    EXPECT_EQ(*ours, theirs);
    EXPECT_EQ(ours->GetOwner(), &style);
}

TEST_F(StyleSetProperty, MergingIntoAnOwnSubstyleHandsTheFlagDown)
{
    Style source(nullptr, StyleCategoryName);
    Style& theirs = AddSubstyle(source, Shade, Fill);
    theirs.SetProperty(Color, Any(VelString(L"red")));
    theirs.SetProperty(Angle, Any(30.0));
    Style& ours = AddSubstyle(style, Shade, Fill);
    ours.SetProperty(Color, Any(VelString(L"blue")));

    shade->MergeProperty(&style, &source, Shade, false);
    EXPECT_EQ(style.GetSubstyle(Shade, false), &ours);
    EXPECT_EQ(OwnText(ours, Color), L"blue");
    EXPECT_EQ(EffectiveNumber(ours, Angle), 30.0);

    shade->MergeProperty(&style, &source, Shade, true);
    EXPECT_EQ(style.GetSubstyle(Shade, false), &ours);
    EXPECT_EQ(OwnText(ours, Color), L"red");

    source.ClearProperty(Shade);
    shade->MergeProperty(&style, &source, Shade, true); // nothing to merge
    EXPECT_EQ(OwnText(ours, Color), L"red");
}

TEST_F(StyleSetProperty, MergingAParentFillsTheOwnSubstyleAndTakesOverItsParent)
{
    Style source(nullptr, StyleCategoryName);
    Style& theirs = AddSubstyle(source, Shade, Fill, &parent);
    theirs.SetProperty(Color, Any(VelString(L"red")));
    theirs.SetProperty(Angle, Any(30.0));
    Style& ours = AddSubstyle(style, Shade, Fill);
    ours.SetProperty(Color, Any(VelString(L"blue")));

    shade->MergeParentProperty(&style, &source, Shade);
    EXPECT_EQ(OwnText(ours, Color), L"blue");
    EXPECT_EQ(EffectiveNumber(ours, Angle), 30.0);
    EXPECT_EQ(ours.GetParent(), &parent);
}

TEST_F(StyleSetProperty, MergingAParentLeavesAnOwnSubstyleThatHasAParent)
{
    Style source(nullptr, StyleCategoryName);
    AddSubstyle(source, Shade, Fill).SetProperty(Angle, Any(30.0));
    const Style& ours = AddSubstyle(style, Shade, Fill, &parent);
    shade->MergeParentProperty(&style, &source, Shade);
    EXPECT_TRUE(ours.IsEmpty());
    EXPECT_EQ(ours.GetParent(), &parent);
}

TEST_F(StyleSetProperty, MergingAParentWithoutASubstyleChangesNothing)
{
    Style source(nullptr, StyleCategoryName);
    shade->MergeParentProperty(&style, &source, Shade);
    EXPECT_TRUE(style.IsEmpty());
    const Style& ours = AddSubstyle(style, Shade, Fill);
    shade->MergeParentProperty(&style, &source, Shade);
    EXPECT_TRUE(ours.IsEmpty());

    Style empty(nullptr, StyleCategoryName);
    AddSubstyle(source, Shade, Fill, &parent);
    shade->MergeParentProperty(&empty, &source, Shade);
    ASSERT_NE(empty.GetSubstyle(Shade, false), nullptr);
    EXPECT_EQ(empty.GetSubstyle(Shade, false)->GetParent(), &parent);
}

TEST_F(StyleSetProperty, FlatteningAnOwnSubstyleFlattensIt)
{
    parent.SetProperty(Color, Any(VelString(L"red")));
    Style& own = AddSubstyle(style, Shade, Fill, &parent);
    EXPECT_TRUE(shade->FlattenProperty(&style, Shade));
    EXPECT_EQ(OwnText(own, Color), L"red");
    EXPECT_EQ(own.GetParent(), nullptr);

    Style& empty = AddSubstyle(style, Shade, Fill);
    EXPECT_FALSE(shade->FlattenProperty(&style, Shade));
    EXPECT_TRUE(empty.IsEmpty());
}

TEST_F(StyleSetProperty, FlatteningAnInheritedSubstyleMakesAnOwnOneOfItsValues)
{
    Style base(nullptr, StyleCategoryName);
    parent.SetProperty(Color, Any(VelString(L"red")));
    AddSubstyle(base, Shade, Fill, &parent).SetProperty(Angle, Any(30.0));
    style.SetParent(&base);

    EXPECT_TRUE(shade->FlattenProperty(&style, Shade));
    const Style* own = style.GetSubstyle(Shade, false);
    ASSERT_NE(own, nullptr);
    EXPECT_EQ(own->GetCategoryName(), Fill);
    EXPECT_EQ(own->GetOwner(), &style);
    EXPECT_EQ(own->GetParent(), nullptr);
    EXPECT_EQ(OwnText(*own, Color), L"red");
    EXPECT_EQ(EffectiveNumber(*own, Angle), 30.0);
    EXPECT_EQ(style.GetParent(), &base);
}

TEST_F(StyleSetProperty, FlatteningWhereThereIsNoSubstyleAnywhereAnswersFalseAndChangesNothing)
{
    Style base(nullptr, StyleCategoryName);
    style.SetParent(&base);
    EXPECT_FALSE(shade->FlattenProperty(&style, Shade));
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_EQ(style.GetParent(), &base);
}

TEST_F(StyleSetProperty, TheSameSubstyleIsEqualWithoutLookingInside)
{
    substyle.SetProperty(Color, Any(VelString(L"red")));
    substyle.SetCategory(Outline);
    Manager().DeregisterCategory(Outline); // a value without definition is unequal to itself
    EXPECT_FALSE(substyle == substyle);
    EXPECT_TRUE(shade->IsEqual(value, value));
    EXPECT_FALSE(shade->IsLess(value, value));
}

TEST_F(StyleSetProperty, SubstylesAreComparedByWhatIsInThem)
{
    Style alike(substyle);
    EXPECT_TRUE(shade->IsEqual(value, Any(&alike)));
    EXPECT_FALSE(shade->IsLess(value, Any(&alike)));
    alike.SetProperty(Color, Any(VelString(L"red")));
    EXPECT_FALSE(shade->IsEqual(value, Any(&alike)));
    EXPECT_TRUE(shade->IsLess(value, Any(&alike))); // fewer values come first
    EXPECT_FALSE(shade->IsLess(Any(&alike), value));
}

TEST_F(StyleSetProperty, ANullSubstyleEqualsOnlyAnotherOneAndComesFirst)
{
    EXPECT_TRUE(shade->IsEqual(null, null));
    EXPECT_FALSE(shade->IsEqual(null, value));
    EXPECT_FALSE(shade->IsEqual(value, null));
    EXPECT_FALSE(shade->IsLess(null, null));
    EXPECT_TRUE(shade->IsLess(null, value));
    EXPECT_FALSE(shade->IsLess(value, null));
}

} // namespace Styles::Testing
