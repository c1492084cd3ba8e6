// Copying, moving and exchanging styles, also with the styles inside them.

#include "core/StyleSuite.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>

namespace Styles::Suites
{

using ::testing::ElementsAre;
using ::testing::IsEmpty;

namespace
{

/// A substyle property that can be told to fail.
class FailingSubstyle : public StyleSetProperty
{
public:
    explicit FailingSubstyle(const PropertyKey& category) : StyleSetProperty(nullptr, category, nullptr, 0) {}

    void SetOwner(Any& value, Styles::Style* owner, const PropertyKey& key) const override
    {
        StyleSetProperty::SetOwner(value, owner, key);
        FailWhenTold();
    }
    Any MovePropertyData(Styles::Style* newOwner, Any&& value) override
    {
        Any result = StyleSetProperty::MovePropertyData(newOwner, std::move(value));
        if (failing)
        {
            DestroyPropertyData(result);
        }
        FailWhenTold();
        return result;
    }

    bool failing = false;

private:
    void FailWhenTold() const
    {
        if (failing)
        {
            throw std::runtime_error("told to fail");
        }
    }
};

} // namespace

TEST_F(Style, ACopyHasLinksIdentityAndCopiesOfTheValues)
{
    Styles::Style parent(nullptr, StyleCategoryName), owner, source(&parent, StyleCategoryName);
    source.SetOwner(&owner, Fill);
    source.SetProperty(Note, Any(L"text"));
    Styles::Style& innerFill = Substyle(Substyle(source, Character), Fill);
    innerFill.SetProperty(Color, Any(L"red"));
    source.SetExternalID(VelString(L"id"));
    source.SetExternalName(VelString(L"name"));

    const Styles::Style copy(source);
    EXPECT_EQ(copy.GetParent(), &parent);
    EXPECT_EQ(copy.GetCategory(), source.GetCategory());
    EXPECT_EQ(copy.GetExternalID(), VelString(L"id"));
    EXPECT_EQ(copy.GetExternalName(), VelString(L"name"));
    EXPECT_EQ(copy.GetOwner(), nullptr);
    EXPECT_EQ(copy.GetOwnersSubstylePropertyName(), PropertyKey::Empty);
    EXPECT_TRUE(copy == source);

    Styles::Style* character = copy.GetSubstyle(Character, false);
    ASSERT_NE(character, nullptr);
    EXPECT_NE(character, source.GetSubstyle(Character, false));
    EXPECT_EQ(character->GetOwner(), &copy);
    EXPECT_EQ(character->GetOwnersSubstylePropertyName(), Character);
    Styles::Style* fill = character->GetSubstyle(Fill, false);
    EXPECT_EQ(fill->GetOwner(), character);
    innerFill.SetProperty(Color, Any(L"blue"));
    EXPECT_EQ(OwnText(*fill, Color), VelString(L"red"));
}

TEST_F(Style, CopyingLeavesOutValuesThatTheCategoryDoesNotKnow)
{
    Styles::Style source(nullptr, Fill);
    source.SetProperty(Color, Any(L"red"));
    source.SetProperty(Angle, Any(1.0));
    source.SetCategory(Outline);
    const Styles::Style copy(source);
    EXPECT_EQ(OwnText(copy, Color), VelString(L"red"));
    EXPECT_FALSE(copy.DoesOverrideProperty(Angle));
    EXPECT_TRUE(source.DoesOverrideProperty(Angle));
}

TEST_F(Style, CopyingHandsEveryValueToItsDefinitionInKeyOrder)
{
    Styles::Style source(nullptr, Probes);
    SetAll(source, L"text");
    TakeCalls();
    const Styles::Style copy(source);
    EXPECT_THAT(TakeCalls(), ElementsAre("0 move", "1 move", "2 move"));
    EXPECT_EQ(OwnText(copy, Keys[1]), VelString(L"text"));
}

TEST_F(Style, CopyAssignmentReplacesTheValuesAndKeepsTheOwner)
{
    Styles::Style owner, parent(nullptr, Probes), source(nullptr, Probes), target(&parent, Fill);
    source.SetProperty(Keys[0], Any(L"new"));
    source.SetExternalID(VelString(L"new id"));
    target.SetOwner(&owner, Fill);
    target.SetProperty(Angle, Any(1.0));
    target.SetExternalName(VelString(L"old name"));
    Styles::Style& result = (target = source);
    EXPECT_EQ(&result, &target);
    EXPECT_TRUE(target == source);
    EXPECT_EQ(target.GetParent(), nullptr);
    EXPECT_FALSE(target.DoesOverrideProperty(Angle));
    EXPECT_EQ(target.GetExternalID(), VelString(L"new id"));
    EXPECT_EQ(target.GetExternalName(), VelString());
    EXPECT_EQ(target.GetOwner(), &owner);
    EXPECT_EQ(target.GetOwnersSubstylePropertyName(), Fill);
}

TEST_F(Style, CopyAssignmentDestroysEveryOldValueOnce)
{
    Styles::Style source(nullptr, Probes), target(nullptr, Probes);
    SetAll(target, L"old");
    source.SetProperty(Keys[1], Any(L"new"));
    TakeCalls();
    target = source;
    const std::vector<std::string> made = TakeCalls();
    EXPECT_THAT(made, ::testing::UnorderedElementsAre("1 move", "0 destroy", "1 destroy", "2 destroy"));
    EXPECT_FALSE(target.DoesOverrideProperty(Keys[0]));
    EXPECT_EQ(OwnText(target, Keys[1]), VelString(L"new"));
}

TEST_F(Style, AssigningAStyleToItselfDoesNothing)
{
    Styles::Style style(nullptr, Probes);
    SetAll(style, L"text");
    TakeCalls();
    Styles::Style& self = style;
    style = self;
    style = std::move(self);
    EXPECT_THAT(TakeCalls(), IsEmpty());
    EXPECT_EQ(OwnText(style, Keys[2]), VelString(L"text"));
}

TEST_F(Style, ADefinitionThatThrowsWhileCopyingLeavesTheTargetAsItWas)
{
    Styles::Style parent(nullptr, Probes), source(nullptr, Probes), target(&parent, Probes);
    SetAll(source, L"new");
    source.SetExternalID(VelString(L"new id"));
    source.SetExternalName(VelString(L"new name"));
    target.SetProperty(Keys[0], Any(L"old"));
    target.SetExternalID(VelString(L"old id"));
    for (const char* call : {"0 move", "1 move", "2 move"})
    {
        failing = {call};
        EXPECT_EQ(ThrownBy([&] { target = source; }), call);
        EXPECT_EQ(ThrownBy([&] { const Styles::Style copy(source); }), call);
        EXPECT_EQ(OwnText(target, Keys[0]), VelString(L"old"));
        EXPECT_FALSE(target.DoesOverrideProperty(Keys[1]));
        EXPECT_EQ(target.GetParent(), &parent);
        EXPECT_EQ(target.GetExternalID(), VelString(L"old id"));
        EXPECT_EQ(target.GetExternalName(), VelString());
    }
}

TEST_F(Style, WhatWasCopiedBeforeADefinitionThrewIsDestroyed)
{
    Styles::Style source(nullptr, Probes);
    SetAll(source, L"text");
    TakeCalls();
    failing = {"2 move"};
    EXPECT_THROW(const Styles::Style copy(source), std::runtime_error);
    EXPECT_THAT(TakeCalls(), ElementsAre("0 move", "1 move", "2 move", "0 destroy", "1 destroy"));
}

TEST_F(Style, ADefinitionThatThrowsWhileOldValuesGoLeavesTheNewOnes)
{
    Styles::Style source(nullptr, Probes), target(nullptr, Probes);
    SetAll(source, L"new");
    SetAll(target, L"old");
    TakeCalls();
    failing = {"0 destroy"};
    EXPECT_EQ(ThrownBy([&] { target = source; }), "0 destroy");
    EXPECT_EQ(std::count(calls.begin(), calls.end(), "2 destroy"), 1);
    EXPECT_TRUE(target == source);
    TakeCalls();
    Styles::Style other(nullptr, Probes);
    EXPECT_EQ(ThrownBy([&] { target = std::move(other); }), "0 destroy");
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy", "1 destroy", "2 destroy"));
    EXPECT_TRUE(target.IsEmpty());
}

TEST_F(Style, MovingTakesTheValuesAndTellsTheSubstylesTheirNewOwner)
{
    Styles::Style parent(nullptr, StyleCategoryName), oldOwner, source(&parent, StyleCategoryName);
    source.SetProperty(Note, Any(L"text"));
    const Styles::Style& fill = Substyle(source, Fill);
    source.SetExternalID(VelString(L"id"));
    source.SetExternalName(VelString(L"name"));
    Styles::Style target(nullptr, Fill);
    target.SetProperty(Angle, Any(1.0));
    target.SetOwner(&oldOwner, Outline);

    target = std::move(source);
    EXPECT_EQ(OwnText(target, Note), VelString(L"text"));
    EXPECT_EQ(target.GetSubstyle(Fill, false), &fill) << "the very substyle";
    EXPECT_EQ(fill.GetOwner(), &target);
    EXPECT_EQ(fill.GetOwnersSubstylePropertyName(), Fill);
    EXPECT_FALSE(target.DoesOverrideProperty(Angle));
    EXPECT_EQ(target.GetOwner(), &oldOwner);
    EXPECT_TRUE(source.IsEmpty());
    for (const Styles::Style* style : {&target, &source})
    {
        EXPECT_EQ(style->GetParent(), &parent);
        EXPECT_EQ(style->GetCategoryName(), StyleCategoryName);
        EXPECT_EQ(style->GetExternalID(), VelString(L"id"));
        EXPECT_EQ(style->GetExternalName(), VelString(L"name"));
    }
}

TEST_F(Style, AMoveConstructedStyleHasNoOwner)
{
    Styles::Style owner, source(nullptr, StyleCategoryName);
    source.SetOwner(&owner, Fill);
    const Styles::Style& fill = Substyle(source, Fill);
    const Styles::Style target(std::move(source));
    EXPECT_EQ(target.GetOwner(), nullptr);
    EXPECT_EQ(fill.GetOwner(), &target);
    EXPECT_EQ(source.GetOwner(), &owner);
    EXPECT_TRUE(source.IsEmpty());
}

TEST_F(Style, MovingAsksNoDefinitionForNewValues)
{
    Styles::Style source(nullptr, Probes), target(nullptr, Probes);
    SetAll(source, L"new");
    SetAll(target, L"old");
    TakeCalls();
    target = std::move(source);
    EXPECT_THAT(TakeCalls(), ElementsAre("0 destroy", "1 destroy", "2 destroy"));
    EXPECT_EQ(OwnText(target, Keys[0]), VelString(L"new"));
}

TEST_F(Style, MovingKeepsValuesThatTheCategoryDoesNotKnow)
{
    Styles::Style source(nullptr, Fill);
    source.SetProperty(Angle, Any(1.0));
    source.SetCategory(Outline);
    const Styles::Style target(std::move(source));
    EXPECT_TRUE(target.DoesOverrideProperty(Angle));
}

TEST_F(Style, OwnersAreRepairedEverywhereBeforeAnExceptionGoesOn)
{
    const PropertyKey first = Keys[0], second = Keys[1];
    Manager().RegisterCategory(Key(L"failing"), VelString(), false, false);
    auto* failingDefinition = new FailingSubstyle(Fill);
    Manager().RegisterProperty(Key(L"failing"), first, failingDefinition);
    Manager().RegisterProperty(Key(L"failing"), second, new StyleSetProperty(nullptr, Fill, nullptr, 0));
    Styles::Style source(nullptr, Key(L"failing")), target, other(nullptr, Key(L"failing"));
    const Styles::Style& one = Substyle(source, first);
    const Styles::Style& two = Substyle(source, second);
    failingDefinition->failing = true;
    EXPECT_EQ(ThrownBy([&] { target = std::move(source); }), "told to fail");
    EXPECT_EQ(one.GetOwner(), &target);
    EXPECT_EQ(two.GetOwner(), &target);
    EXPECT_TRUE(source.IsEmpty());
    EXPECT_EQ(ThrownBy([&] { target.SwapData(other); }), "told to fail");
    EXPECT_EQ(one.GetOwner(), &other);
    EXPECT_EQ(two.GetOwner(), &other);
    EXPECT_EQ(ThrownBy([&] { const Styles::Style copy(other); }), "told to fail");
    EXPECT_EQ(ThrownBy([&] { const Styles::Style moved(std::move(other)); }), "told to fail");
}

TEST_F(Style, ExchangingExchangesAllButTheOwners)
{
    Styles::Style parent(nullptr, StyleCategoryName), owner, a(&parent, StyleCategoryName), b(nullptr, Character);
    a.SetOwner(&owner, Fill);
    a.SetProperty(Note, Any(L"of a"));
    a.SetExternalID(VelString(L"id of a"));
    a.SetExternalName(VelString(L"name of a"));
    const Styles::Style& fillOfA = Substyle(a, Fill);
    const Styles::Style& fillOfB = Substyle(b, Fill);
    a.SwapData(b);
    EXPECT_EQ(a.GetCategoryName(), Character);
    EXPECT_EQ(b.GetCategoryName(), StyleCategoryName);
    EXPECT_EQ(a.GetParent(), nullptr);
    EXPECT_EQ(b.GetParent(), &parent);
    EXPECT_EQ(a.GetExternalID(), VelString());
    EXPECT_EQ(b.GetExternalID(), VelString(L"id of a"));
    EXPECT_EQ(b.GetExternalName(), VelString(L"name of a"));
    EXPECT_EQ(OwnText(b, Note), VelString(L"of a"));
    EXPECT_EQ(a.GetSubstyle(Fill, false), &fillOfB);
    EXPECT_EQ(fillOfB.GetOwner(), &a);
    EXPECT_EQ(fillOfA.GetOwner(), &b);
    EXPECT_EQ(a.GetOwner(), &owner);
    EXPECT_EQ(a.GetOwnersSubstylePropertyName(), Fill);
    EXPECT_EQ(b.GetOwner(), nullptr);
    a.SwapData(a);
    EXPECT_EQ(a.GetSubstyle(Fill, false), &fillOfB);
}

TEST_F(Style, ExchangingWithAStyleInsideDoesNothing)
{
    Styles::Style style(nullptr, Nest);
    style.SetProperty(Note, Any(L"outer"));
    Styles::Style& inner = Substyle(Substyle(style, Nest), Nest);
    inner.SetProperty(Note, Any(L"inner"));
    style.SwapData(inner);
    inner.SwapData(style);
    EXPECT_EQ(OwnText(style, Note), VelString(L"outer"));
    EXPECT_EQ(OwnText(inner, Note), VelString(L"inner"));
    EXPECT_EQ(inner.GetOwner()->GetOwner(), &style);

    Styles::Style& element = *MakeList(style, Nests, Nest, 1)[0];
    style.SwapData(element);
    element.SwapData(style);
    EXPECT_EQ(OwnText(style, Note), VelString(L"outer"));
    EXPECT_TRUE(element.IsEmpty());
}

TEST_F(Style, AStyleIsReplacedByACopyOfItsOwnSubstyle)
{
    Styles::Style style(nullptr, Nest);
    style.SetProperty(Note, Any(L"outer"));
    Styles::Style& inner = Substyle(style, Nest);
    inner.SetProperty(Note, Any(L"inner"));
    Substyle(inner, Nest).SetProperty(Note, Any(L"innermost"));
    style = *style.GetSubstyle(Nest, false);
    EXPECT_EQ(OwnText(style, Note), VelString(L"inner"));
    EXPECT_EQ(OwnText(*style.GetSubstyle(Nest, false), Note), VelString(L"innermost"));
    EXPECT_EQ(style.GetSubstyle(Nest, false)->GetOwner(), &style);
    style = *style.GetSubstyle(Nest, false);
    EXPECT_EQ(OwnText(style, Note), VelString(L"innermost"));
    EXPECT_EQ(style.GetSubstyle(Nest, false), nullptr);
}

TEST_F(Style, AStyleIsReplacedByItsOwnSubstyleMoved)
{
    Styles::Style style(nullptr, Nest);
    style.SetProperty(Note, Any(L"outer"));
    Styles::Style& innermost = Substyle(Substyle(style, Nest), Nest);
    innermost.SetProperty(Note, Any(L"innermost"));
    const Styles::Style& kept = Substyle(innermost, Nest);
    style = std::move(innermost);
    EXPECT_EQ(OwnText(style, Note), VelString(L"innermost"));
    EXPECT_EQ(style.GetSubstyle(Nest, false), &kept);
    EXPECT_EQ(kept.GetOwner(), &style);
    style = std::move(*style.GetSubstyle(Nest, false));
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(Style, AStyleIsReplacedByAnElementOfItsOwnList)
{
    Styles::Style style(nullptr, Nest);
    MakeList(style, Nests, Nest, 2)[1]->SetProperty(Note, Any(L"element"));
    Styles::Style copy(style);
    style = *ElementsOf(style, Nests)[1];
    copy = std::move(*ElementsOf(copy, Nests)[1]);
    for (const Styles::Style* replaced : {&style, &copy})
    {
        EXPECT_EQ(OwnText(*replaced, Note), VelString(L"element"));
        EXPECT_FALSE(replaced->DoesOverrideProperty(Nests));
    }
}

TEST_F(Style, AStyleThatIsAssignedToItsOwnSubstyleIsCopied)
{
    for (const bool moving : {false, true})
    {
        Styles::Style style(nullptr, Nest);
        style.SetProperty(Note, Any(L"outer"));
        Styles::Style& inner = Substyle(Substyle(style, Nest), Nest);
        inner.SetProperty(Note, Any(L"inner"));
        if (moving)
        {
            inner = std::move(style);
        }
        else
        {
            inner = style;
        }
        EXPECT_EQ(OwnText(style, Note), VelString(L"outer"));
        EXPECT_EQ(style.GetSubstyle(Nest, false)->GetSubstyle(Nest, false), &inner);
        EXPECT_EQ(OwnText(inner, Note), VelString(L"outer"));
        const Styles::Style* copyOfInner = inner.GetSubstyle(Nest, false)->GetSubstyle(Nest, false);
        EXPECT_EQ(OwnText(*copyOfInner, Note), VelString(L"inner"));
    }
}

TEST_F(Style, AStyleThatIsAssignedToAnElementOfItsOwnListIsCopied)
{
    for (const bool moving : {false, true})
    {
        Styles::Style style(nullptr, Nest);
        style.SetProperty(Note, Any(L"outer"));
        Styles::Style& element = *MakeList(style, Nests, Nest, 2)[1];
        element.SetProperty(Note, Any(L"element"));
        if (moving)
        {
            element = std::move(style);
        }
        else
        {
            element = style;
        }
        EXPECT_EQ(OwnText(style, Note), VelString(L"outer"));
        EXPECT_EQ(ElementsOf(style, Nests)[1], &element);
        EXPECT_EQ(OwnText(element, Note), VelString(L"outer"));
        EXPECT_EQ(OwnText(*ElementsOf(element, Nests)[1], Note), VelString(L"element"));
    }
}

TEST_F(Style, ACopyStoresWhatTheDefinitionMakesOfAValueAlsoNothing)
{
    class Emptying : public Testing::ProbeProperty
    {
    public:
        Any MovePropertyData(Styles::Style* newOwner, Any&& value) override
        {
            return emptying ? Any() : ProbeProperty::MovePropertyData(newOwner, std::move(value));
        }
        bool emptying = false;
    };
    const PropertyKey key = Key(L"emptying");
    auto* definition = new Emptying();
    Manager().RegisterProperty(Probes, key, definition);
    Styles::Style source(nullptr, Probes);
    source.SetProperty(key, Any(L"text"));
    definition->emptying = true;
    const Styles::Style copy(source);
    Any value(1.0);
    EXPECT_TRUE(copy.GetOverrideProperty(key, value));
    EXPECT_TRUE(value.IsEmpty());
}

} // namespace Styles::Suites
