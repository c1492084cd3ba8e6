#include "support/StyleMaking.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace Styles::Testing
{

namespace
{

using StyleList = std::vector<Style*>;

StyleList Sorted(StyleList styles)
{
    std::sort(styles.begin(), styles.end(), std::less<>());
    return styles;
}

/// Merging a parent's value throws when the value says so.
class FailingMerge : public ProbeProperty
{
public:
    void MergeParentProperty(Style* target, const Style* source, const PropertyKey& key) const override
    {
        if (OwnText(*source, key) == L"fail")
        {
            throw std::runtime_error("as asked");
        }
        ProbeProperty::MergeParentProperty(target, source, key);
    }
};

/// Values that name a style which they do not own.
class ReferenceProperty : public ProbeProperty
{
public:
    bool HasDependency(const Any& value, StyleSpan styles, bool) const override
    {
        return styles.contains(value.Get<Style*>());
    }
    std::vector<Style*> GetDependencies(const Any& value, StyleSpan styles, bool) override
    {
        Style* named = value.Get<Style*>();
        return styles.contains(named) ? StyleList{named, named} : StyleList();
    }
    void RemapPointer(Any& value, const std::vector<std::pair<Any, Any>>& replacements) const override
    {
        for (const auto& [from, to] : replacements)
        {
            if (value == from)
            {
                value = to;
                return;
            }
        }
    }
};

class StyleDependencies : public SchemaFixture
{
protected:
    StyleDependencies()
    {
        Manager().RegisterProperty(StyleCategoryName, Reference, new ReferenceProperty);
        Manager().RegisterProperty(StyleCategoryName, Failing, new FailingMerge);
    }

    const PropertyKey Reference = Key(L"reference"), Failing = Key(L"failing");
    Style root{nullptr, StyleCategoryName};
    Style base{&root, StyleCategoryName};
    Style style{&base, StyleCategoryName};
    Style other{nullptr, StyleCategoryName};
    const Any red{VelString(L"red")};
    const Any blue{VelString(L"blue")};
};

} // namespace

TEST_F(StyleDependencies, AStyleDependsOnItself)
{
    Style* const self[] = {&other};
    EXPECT_TRUE(other.HasDependency(StyleSpan(self)));
    EXPECT_TRUE(other.HasDirectDependency(StyleSpan(self)));
    EXPECT_THAT(other.GetDependencies(StyleSpan(self), false), ElementsAre(&other));
    EXPECT_THAT(other.GetDependencies(StyleSpan(self), true), ElementsAre(&other));
    EXPECT_FALSE(other.HasParentalDependency(StyleSpan(self)));
}

TEST_F(StyleDependencies, AParentIsADirectDependencyAndAGrandparentIsNot)
{
    Style* const parent[] = {&base};
    Style* const grandparent[] = {&root};
    EXPECT_TRUE(style.HasDirectDependency(StyleSpan(parent)));
    EXPECT_TRUE(style.HasDependency(StyleSpan(parent)));
    EXPECT_FALSE(style.HasDirectDependency(StyleSpan(grandparent)));
    EXPECT_TRUE(style.HasDependency(StyleSpan(grandparent)));
    EXPECT_TRUE(style.HasParentalDependency(StyleSpan(parent)));
    EXPECT_TRUE(style.HasParentalDependency(StyleSpan(grandparent)));
    EXPECT_THAT(style.GetDependencies(StyleSpan(grandparent), true), IsEmpty());
    EXPECT_THAT(style.GetDependencies(StyleSpan(grandparent), false), ElementsAre(&root));
}

TEST_F(StyleDependencies, WhatAParentRefersToIsAParentalDependency)
{
    base.SetProperty(Reference, Any(&other));
    Style* const members[] = {&other};
    EXPECT_TRUE(style.HasDependency(StyleSpan(members)));
    EXPECT_FALSE(style.HasDirectDependency(StyleSpan(members)));
    EXPECT_TRUE(style.HasParentalDependency(StyleSpan(members)));
    EXPECT_FALSE(other.HasParentalDependency(StyleSpan(members)));
    base.ClearProperty(Reference);
    style.SetProperty(Reference, Any(&other));
    EXPECT_TRUE(style.HasDependency(StyleSpan(members)));
    EXPECT_TRUE(style.HasDirectDependency(StyleSpan(members)));
    EXPECT_FALSE(style.HasParentalDependency(StyleSpan(members)));
}

TEST_F(StyleDependencies, DependenciesAreSortedAndListedOnceWhateverTheOrderOfTheSpan)
{
    style.SetProperty(Reference, Any(&other)); // names it twice
    base.SetProperty(Reference, Any(&other));
    Style unrelated(nullptr, StyleCategoryName);
    const StyleList members = Sorted({&root, &base, &style, &other, &unrelated});
    StyleList backwards(members.rbegin(), members.rend());
    backwards.push_back(&root); // twice in the span
    const StyleList expected = Sorted({&root, &base, &style, &other});
    EXPECT_EQ(style.GetDependencies(StyleSpan(members, true), false), expected);
    EXPECT_EQ(style.GetDependencies(StyleSpan(backwards), false), expected);
    EXPECT_EQ(style.GetDependencies(StyleSpan(members, true), true), Sorted({&base, &style, &other}));
    EXPECT_TRUE(style.HasDependency(StyleSpan(members, true)));
    EXPECT_TRUE(style.HasDependency(StyleSpan(backwards)));
}

TEST_F(StyleDependencies, ManyMembersAreFoundWhetherTheyAreSortedOrNot)
{
    std::vector<std::unique_ptr<Style>> others;
    StyleList members;
    for (int count = 0; count < 100; ++count)
    {
        others.push_back(std::make_unique<Style>(nullptr, StyleCategoryName));
        members.push_back(others.back().get());
    }
    const StyleList without = Sorted(members);
    EXPECT_FALSE(style.HasDependency(StyleSpan(without, true)));
    EXPECT_FALSE(style.HasDependency(StyleSpan(members)));
    members.insert(members.begin() + 50, &root);
    const StyleList with = Sorted(members);
    EXPECT_TRUE(style.HasDependency(StyleSpan(with, true)));
    EXPECT_TRUE(style.HasDependency(StyleSpan(members)));
    EXPECT_TRUE(style.HasParentalDependency(StyleSpan(members)));
}

TEST_F(StyleDependencies, AnEmptySpanAndANullInASpanMatchNothing)
{
    AddSubstyle(style, Fill, Fill);
    AddElements(style, Stops, Stop, 1);
    style.SetProperty(Note, red);
    Style* const null[] = {nullptr};
    for (const StyleSpan span : {StyleSpan(), StyleSpan(null), StyleSpan(null, true)})
    {
        EXPECT_FALSE(style.HasDependency(span));
        EXPECT_FALSE(style.HasDirectDependency(span));
        EXPECT_FALSE(style.HasParentalDependency(span));
        EXPECT_THAT(style.GetDependencies(span, false), IsEmpty());
        EXPECT_THAT(style.GetDependencies(span, true), IsEmpty());
        style.RemoveDependency(span, false);
        style.RemoveDependency(span, true);
        EXPECT_EQ(style.GetParent(), &base);
    }
}

TEST_F(StyleDependencies, StylesInsideValuesCount)
{
    Style fillParent(nullptr, Fill);
    Style stopParent(nullptr, Stop);
    AddSubstyle(other, Fill, Fill, &fillParent);
    AddElements(other, Stops, Stop, 2, &stopParent);
    Style* const members[] = {&fillParent};
    Style* const more[] = {&stopParent, &fillParent};
    EXPECT_TRUE(other.HasDependency(StyleSpan(members)));
    EXPECT_TRUE(other.HasDirectDependency(StyleSpan(members)));
    Style fillRoot(nullptr, Fill);
    fillParent.SetParent(&fillRoot);
    Style* const distant[] = {&fillRoot};
    EXPECT_TRUE(other.HasDependency(StyleSpan(distant)));
    EXPECT_FALSE(other.HasDirectDependency(StyleSpan(distant)));
    EXPECT_EQ(other.GetDependencies(StyleSpan(more), false), Sorted({&fillParent, &stopParent}));
    EXPECT_THAT(other.GetDependencies(StyleSpan(more), true), ElementsAre(&fillParent));
}

TEST_F(StyleDependencies, AParentOfTheStyleOfItsOwnerOrInsideItIsAParentalDependency)
{
    EXPECT_TRUE(style.HasParentalDependency());
    EXPECT_FALSE(other.HasParentalDependency());
    const Style& fill = AddSubstyle(style, Fill, Fill);
    EXPECT_TRUE(fill.HasParentalDependency());
    Style& inner = AddSubstyle(AddSubstyle(style, Character, Character), Fill, Fill);
    EXPECT_FALSE(inner.HasParentalDependency()); // only the nearest owner is asked

    Style fillParent(nullptr, Fill);
    AddSubstyle(other, Fill, Fill, &fillParent);
    EXPECT_TRUE(other.HasParentalDependency());
    other.ClearProperty(Fill);
    AddElements(other, Stops, Stop, 1, &fillParent);
    EXPECT_TRUE(other.HasParentalDependency());
}

TEST_F(StyleDependencies, ADirectRemovalTakesOverAnUnbrokenRunOfParents)
{
    root.SetProperty(Number, Any(1.0));
    base.SetProperty(Note, red);
    Style* const grandparent[] = {&root};
    style.RemoveDependency(StyleSpan(grandparent), true);
    EXPECT_EQ(style.GetParent(), &base);
    EXPECT_TRUE(style.IsEmpty());

    Style* const parent[] = {&base};
    style.RemoveDependency(StyleSpan(parent), true);
    EXPECT_EQ(style.GetParent(), &root);
    EXPECT_EQ(OwnText(style, Note), L"red");
    EXPECT_FALSE(style.DoesOverrideProperty(Number));

    Style heir(&style, StyleCategoryName);
    Style* const run[] = {&root, &style};
    heir.RemoveDependency(StyleSpan(run), true);
    EXPECT_EQ(heir.GetParent(), nullptr);
    EXPECT_EQ(EffectiveNumber(heir, Number), 1.0);
    EXPECT_EQ(OwnText(heir, Note), L"red");
}

TEST_F(StyleDependencies, ARemovalTakesOverEverythingUpToTheFarthestMember)
{
    Style top(nullptr, StyleCategoryName);
    root.SetParent(&top);
    root.SetProperty(Note, blue);
    root.SetProperty(Number, Any(1.0));
    base.SetProperty(Note, red);
    Style* const members[] = {&root, &other};
    style.RemoveDependency(StyleSpan(members), false);
    EXPECT_EQ(style.GetParent(), &top);
    EXPECT_EQ(OwnText(style, Note), L"red"); // the nearest parent wins
    EXPECT_EQ(EffectiveNumber(style, Number), 1.0);
    EXPECT_EQ(base.GetParent(), &root);

    Style* const unrelated[] = {&other};
    style.RemoveDependency(StyleSpan(unrelated), false);
    EXPECT_EQ(style.GetParent(), &top);
}

TEST_F(StyleDependencies, RemovalGoesOnIntoSubstylesAndLists)
{
    Style fillParent(nullptr, Fill);
    Style stopParent(nullptr, Stop);
    fillParent.SetProperty(Color, red);
    stopParent.SetProperty(Color, blue);
    for (const bool all : {false, true})
    {
        Style& fill = AddSubstyle(style, Fill, Fill, &fillParent);
        Style* stop = AddElements(style, Stops, Stop, 1, &stopParent)[0];
        Style* const members[] = {&stopParent, &fillParent};
        all ? style.RemoveAllDependencies() : style.RemoveDependency(StyleSpan(members), false);
        EXPECT_EQ(style.GetParent(), all ? nullptr : &base);
        EXPECT_EQ(fill.GetParent(), nullptr);
        EXPECT_EQ(OwnText(fill, Color), L"red");
        EXPECT_EQ(stop->GetParent(), nullptr);
        EXPECT_EQ(OwnText(*stop, Color), L"blue");
    }
    EXPECT_FALSE(style.HasParentalDependency());
}

TEST_F(StyleDependencies, RemovingAllDependenciesKeepsEveryEffectiveValue)
{
    root.SetProperty(Note, blue);
    AddSubstyle(root, Fill, Fill).SetProperty(Color, red);
    AddSubstyle(base, Fill, Fill).SetProperty(Angle, Any(30.0));
    AddElements(base, Stops, Stop, 2)[1]->SetProperty(Color, blue);
    AddSubstyle(style, Fill, Fill).SetProperty(XScale, Any(2.0));
    style.RemoveAllDependencies();
    EXPECT_EQ(style.GetParent(), nullptr);
    EXPECT_EQ(OwnText(style, Note), L"blue");
    const Style& fill = *style.GetSubstyle(Fill, false);
    EXPECT_EQ(OwnText(fill, Color), L"red");
    EXPECT_EQ(EffectiveNumber(fill, Angle), 30.0);
    EXPECT_EQ(EffectiveNumber(fill, XScale), 2.0);
    EXPECT_EQ(OwnText(*ElementsOf(style, Stops).at(1), Color), L"blue");
}

TEST_F(StyleDependencies, AFailingMergeLeavesTheLinkToWhatWasNotTakenOver)
{
    root.SetProperty(Note, blue);
    base.SetProperty(Number, Any(2.0));
    root.SetProperty(Failing, Any(VelString(L"fail")));
    Style* const members[] = {&root, &base};
    for (int way = 0; way < 3; ++way)
    {
        Style heir(&base, StyleCategoryName);
        EXPECT_THROW(way == 0 ? heir.RemoveAllDependencies() : heir.RemoveDependency(StyleSpan(members), way == 1),
                     std::runtime_error);
        EXPECT_EQ(heir.GetParent(), &root); // the first parent was taken over, the second was not
        EXPECT_EQ(EffectiveNumber(heir, Number), 2.0);
        EXPECT_EQ(EffectiveText(heir, Note), L"blue");
        EXPECT_EQ(EffectiveText(heir, Failing), L"fail");
    }
    base.SetProperty(Failing, Any(VelString(L"fail")));
    Style heir(&base, StyleCategoryName);
    EXPECT_THROW(heir.RemoveAllDependencies(), std::runtime_error);
    EXPECT_EQ(heir.GetParent(), &base);
    EXPECT_EQ(EffectiveNumber(heir, Number), 2.0);
}

TEST_F(StyleDependencies, AFailingMergeInsideASubstyleLeavesItsLink)
{
    Manager().RegisterProperty(Fill, Failing, new FailingMerge);
    Style fillParent(nullptr, Fill);
    fillParent.SetProperty(Color, red);
    fillParent.SetProperty(Failing, Any(VelString(L"fail")));
    const Style& fill = AddSubstyle(other, Fill, Fill, &fillParent);
    EXPECT_THROW(other.RemoveAllDependencies(), std::runtime_error);
    EXPECT_EQ(fill.GetParent(), &fillParent);
    EXPECT_EQ(EffectiveText(fill, Color), L"red");

    // The next attempt finds nothing left over from the failed one.
    fillParent.SetProperty(Failing, Any(VelString(L"fine")));
    other.RemoveAllDependencies();
    EXPECT_EQ(fill.GetParent(), nullptr);
    EXPECT_EQ(OwnText(fill, Failing), L"fine");
}

TEST_F(StyleDependencies, RemappingExchangesParentsHereAndInValues)
{
    Style fillParent(nullptr, Fill);
    Style otherFill(nullptr, Fill);
    const Style& fill = AddSubstyle(style, Fill, Fill, &fillParent);
    const Style* stop = AddElements(style, Stops, Stop, 1, &fillParent)[0];
    style.RemapDependency({{&base, &other}, {&fillParent, &otherFill}, {&style, &root}});
    EXPECT_EQ(style.GetParent(), &other);
    EXPECT_EQ(fill.GetParent(), &otherFill);
    EXPECT_EQ(stop->GetParent(), &otherFill);
    style.RemapDependency({{&other, nullptr}, {nullptr, &base}});
    EXPECT_EQ(style.GetParent(), &other);
    root.RemapDependency({{nullptr, &base}}); // no parent is no key
    EXPECT_EQ(root.GetParent(), nullptr);
}

TEST_F(StyleDependencies, RemappingPointersReachesValuesAtAnyDepthAndNoParents)
{
    Manager().RegisterProperty(Fill, Reference, new ReferenceProperty);
    style.SetProperty(Reference, Any(&base));
    Style& fill = AddSubstyle(style, Fill, Fill);
    fill.SetProperty(Reference, Any(&base));
    style.RemapPointer({{Any(&base), Any(&other)}});
    EXPECT_EQ(style.GetProperty(Reference), Any(&other));
    EXPECT_EQ(fill.GetProperty(Reference), Any(&other));
    EXPECT_EQ(style.GetParent(), &base);
}

TEST_F(StyleDependencies, ADirectRemovalIsDirectInsideValuesToo)
{
    Style far(nullptr, Fill);
    Style near(&far, Fill);
    far.SetProperty(Color, red);
    AddSubstyle(other, Fill, Fill, &near);
    AddElements(other, Stops, Stop, 1, &near);
    Style* const members[] = {&far};
    const std::vector<const Style*> inside{other.GetSubstyle(Fill, false), ElementsOf(other, Stops)[0]};
    other.RemoveDependency(StyleSpan(members), true);
    for (const Style* heir : inside)
    {
        EXPECT_EQ(heir->GetParent(), &near);
        EXPECT_TRUE(heir->IsEmpty());
    }
    other.RemoveDependency(StyleSpan(members), false);
    for (const Style* heir : inside)
    {
        EXPECT_EQ(heir->GetParent(), nullptr);
        EXPECT_EQ(OwnText(*heir, Color), L"red");
    }
}

TEST_F(StyleDependencies, EmptyValuesAreNoPointersToRemap)
{
    class Listening : public ReferenceProperty
    {
    public:
        explicit Listening(int& calls) : m_calls(calls) {}
        void RemapPointer(Any&, const std::vector<std::pair<Any, Any>>&) const override { ++m_calls; }

    private:
        int& m_calls;
    };
    int calls = 0;
    const PropertyKey listening = Key(L"listening");
    Manager().RegisterProperty(StyleCategoryName, listening, new Listening(calls));
    style.SetProperty(listening, red);
    style.RemapPointer({});
    EXPECT_EQ(calls, 1);
    style.ProcessProperties([](Any& value, Style*, const PropertyKey&) {
        value = Any();
        return true;
    });
    ASSERT_TRUE(style.DoesOverrideProperty(listening));
    style.RemapPointer({});
    EXPECT_EQ(calls, 1);
}

TEST_F(StyleDependencies, ValuesWithoutDefinitionArePassedOver)
{
    Style fillParent(nullptr, Fill);
    const Style& fill = AddSubstyle(other, Fill, Fill, &fillParent);
    other.SetProperty(Reference, Any(&style));
    other.SetCategory(Outline); // knows neither
    Style* const members[] = {&fillParent, &style};
    EXPECT_FALSE(other.HasDependency(StyleSpan(members)));
    EXPECT_FALSE(other.HasDirectDependency(StyleSpan(members)));
    EXPECT_FALSE(other.HasParentalDependency());
    EXPECT_THAT(other.GetDependencies(StyleSpan(members), false), IsEmpty());
    EXPECT_THAT(other.GetDependencies(StyleSpan(members), true), IsEmpty());
    other.RemoveDependency(StyleSpan(members), false);
    other.RemoveAllDependencies();
    other.RemapDependency({{&fillParent, &root}});
    other.RemapPointer({{Any(&style), Any(&base)}});
    const auto refuse = [](Any&, Style*, const PropertyKey&) { return false; };
    EXPECT_TRUE(other.ProcessProperties(refuse));
    EXPECT_TRUE(other.ProcessProperties({{Reference}, {Fill}}, refuse));
    EXPECT_EQ(fill.GetParent(), &fillParent);
    other.SetCategory(StyleCategoryName);
    EXPECT_EQ(other.GetProperty(Reference), Any(&style));
}

} // namespace Styles::Testing
