#include "properties/StyleArraySuite.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace Styles::Testing
{

namespace
{

class StyleArrayProperty : public StyleArraySuite
{};

} // namespace

TEST_F(StyleArrayProperty, IsMadeOfAnElementCategoryOrOfAVersion)
{
    EXPECT_EQ(layers->GetElementCategoryName(), Stop);
    EXPECT_EQ(layers->GetNewSinceVersion(), 0);
    EXPECT_EQ(own->GetElementCategoryName(), PropertyKey::Empty);
    EXPECT_EQ(own->GetNewSinceVersion(), 3);
    for (Definition* definition : {layers, own})
    {
        EXPECT_THAT(definition->GetDefaultValue().Get<StyleList>(), IsEmpty());
        EXPECT_FALSE(definition->IsSubstyle());
        EXPECT_FALSE(definition->IsTemporary());
        EXPECT_FALSE(definition->IsDeprecated());
    }
}

TEST_F(StyleArrayProperty, ACopyTakesTheElementCategory)
{
    Definition copy(*layers); // without a validator nothing is shared
    EXPECT_EQ(copy.GetElementCategoryName(), Stop);
    copy = *own;
    EXPECT_EQ(copy.GetElementCategoryName(), PropertyKey::Empty);
    EXPECT_EQ(copy.GetNewSinceVersion(), 3);
}

TEST_F(StyleArrayProperty, TheTypeIsAListOfStyles)
{
    EXPECT_TRUE(layers->CheckType(Any(StyleList())));
    EXPECT_FALSE(layers->CheckType(Any(std::vector<const Style*>())));
    EXPECT_FALSE(layers->CheckType(Any(&first)));
    EXPECT_FALSE(layers->CheckType(Any()));
}

TEST_F(StyleArrayProperty, AValueOfAnotherTypeIsABadCastAndStaysAsItIs)
{
    Json::Variant output;
    const Any list = MakeList();
    for (const Any& wrong : {Any(1.5), Any(), Any(&first)})
    {
        Any changed(wrong);
        const StyleSpan span;
        const auto visitor = [](Any&, Style*, const PropertyKey&) { return true; };
        const std::vector<std::function<void()>> operations{
            [&] { layers->Serialize(sheet, &style, wrong, output); },
            [&] { layers->DestroyPropertyData(wrong); },
            [&] { static_cast<void>(layers->MovePropertyData(&style, Any(wrong))); },
            [&] { layers->GetDependencies(wrong, span, false); },
            [&] { layers->GetDependencies(wrong, span, true); },
            [&] { static_cast<void>(layers->HasDependency(wrong, span, false)); },
            [&] { static_cast<void>(layers->HasDependency(wrong, span, true)); },
            [&] { layers->RemoveDependency(changed, span, false); },
            [&] { static_cast<void>(layers->HasParentalDependency(wrong)); },
            [&] { layers->RemoveAllDependencies(changed); },
            [&] { layers->RemapDependency(changed, {}); },
            [&] { layers->RemapPointer(changed, {}); },
            [&] { layers->ProcessProperty(changed, visitor, &style, Layers); },
            [&] { static_cast<void>(layers->IsEqual(wrong, list)); },
            [&] { static_cast<void>(layers->IsEqual(list, wrong)); },
            [&] { static_cast<void>(layers->IsLess(wrong, list)); },
            [&] { static_cast<void>(layers->IsLess(list, wrong)); },
            [&] { layers->ProcessStylesInProperty(wrong, [](Style*) { return true; }); },
        };
        for (std::size_t index = 0; index < operations.size(); ++index)
        {
            EXPECT_THROW(operations[index](), std::bad_cast) << index;
            EXPECT_EQ(changed, wrong) << index;
        }
    }
}

TEST_F(StyleArrayProperty, AWrongValueThatIsSetByMoveLeavesTheOldOne)
{
    const StyleList before = AddElements(style, Layers, Stop, 2);
    EXPECT_THROW(style.SetProperty(Layers, Any(1.5)), std::bad_cast);
    EXPECT_EQ(ElementsOf(style, Layers), before);
}

TEST_F(StyleArrayProperty, StoringCopiesTheElementsWhichHaveNoOwner)
{
    first.SetProperty(Color, Any(VelString(L"red")));
    Any list(StyleList{&first, &second});
    style.SetProperty(Layers, list);
    const StyleList stored = ElementsOf(style, Layers);
    ASSERT_THAT(stored, SizeIs(2));
    EXPECT_NE(stored[0], &first);
    EXPECT_EQ(*stored[0], first);
    EXPECT_EQ(stored[0]->GetOwner(), nullptr);
    EXPECT_EQ(stored[0]->GetOwnersSubstylePropertyName(), PropertyKey::Empty);
    EXPECT_EQ(*stored[1], second);
    EXPECT_THAT(list.Get<StyleList>(), ElementsAre(&first, &second));

    Any given(list);
    const Any moved = layers->MovePropertyData(nullptr, std::move(given));
    EXPECT_EQ(given, list); // the argument is left as it is
    layers->DestroyPropertyData(moved);
}

TEST_F(StyleArrayProperty, NullElementsAreNotStored)
{
    style.SetProperty(Layers, MakeList());
    const StyleList stored = ElementsOf(style, Layers);
    ASSERT_THAT(stored, SizeIs(2));
    EXPECT_EQ(stored[0]->GetParent(), &parent);
    EXPECT_EQ(stored[1]->GetParent(), nullptr);
}

TEST_F(StyleArrayProperty, ACopyThatThrowsInTheMiddleLeavesTheOldListAndNoCopies)
{
    auto* probe = new ProbeProperty;
    Manager().RegisterProperty(Stop, Key(L"probe"), probe);
    first.SetProperty(Key(L"probe"), Any(VelString(L"a")));
    second.SetProperty(Key(L"probe"), Any(VelString(L"b")));
    const StyleList before = AddElements(style, Layers, Stop, 1);
    probe->log->clear();
    probe->onCall = [probe](const std::string& entry) {
        if (entry == "move" && std::count(probe->log->begin(), probe->log->end(), "move") == 2)
        {
            throw std::runtime_error("as asked");
        }
    };
    EXPECT_THROW(style.SetProperty(Layers, Any(StyleList{&first, &second})), std::runtime_error);
    EXPECT_EQ(ElementsOf(style, Layers), before);
    EXPECT_THAT(*probe->log, ElementsAre("move", "move", "destroy"));
    probe->onCall = nullptr;
}

TEST_F(StyleArrayProperty, DestroyingDestroysEveryElement)
{
    const auto log = std::make_shared<std::vector<std::string>>();
    auto* probe = new ProbeProperty;
    probe->log = log;
    Manager().RegisterProperty(Stop, Key(L"probe"), probe);
    auto one = std::make_unique<Style>(nullptr, Stop);
    auto other = std::make_unique<Style>(nullptr, Stop);
    one->SetProperty(Key(L"probe"), Any(VelString(L"a")));
    other->SetProperty(Key(L"probe"), Any(VelString(L"b")));
    log->clear();
    layers->DestroyPropertyData(Any(StyleList{one.release(), nullptr, other.release()}));
    EXPECT_THAT(*log, ElementsAre("destroy", "destroy"));
}

TEST_F(StyleArrayProperty, DirectlyParentsAreDependenciesAndElementsAreListed)
{
    const Any list = MakeList();
    Style* const parents[] = {&parent};
    Style* const elements[] = {&first};
    EXPECT_TRUE(layers->HasDependency(list, StyleSpan(parents), true));
    EXPECT_THAT(layers->GetDependencies(list, StyleSpan(parents), true), IsEmpty());
    EXPECT_FALSE(layers->HasDependency(list, StyleSpan(elements), true));
    EXPECT_THAT(layers->GetDependencies(list, StyleSpan(elements), true), ElementsAre(&first));
}

TEST_F(StyleArrayProperty, AnElementThatIsListedTwiceIsADirectDependencyTwice)
{
    Style* const elements[] = {&second, &first};
    const StyleList expected =
        std::less<>()(&first, &second) ? StyleList{&first, &first, &second} : StyleList{&second, &first, &first};
    EXPECT_EQ(layers->GetDependencies(Any(StyleList{&first, &second, &first}), StyleSpan(elements), true), expected);
}

TEST_F(StyleArrayProperty, AtAnyDistanceElementsAndWhatTheyDependOnAreDependencies)
{
    Style grandparent(nullptr, Stop);
    parent.SetParent(&grandparent);
    const Any list = MakeList();
    StyleList members{&grandparent, &second, &style};
    std::sort(members.begin(), members.end(), std::less<>());
    StyleList unsorted(members.rbegin(), members.rend());
    StyleList expected{&grandparent, &second};
    std::sort(expected.begin(), expected.end(), std::less<>());
    EXPECT_EQ(layers->GetDependencies(list, StyleSpan(members, true), false), expected);
    EXPECT_EQ(layers->GetDependencies(list, StyleSpan(unsorted), false), expected);

    Style* const distant[] = {&grandparent};
    Style* const element[] = {&second};
    Style* const unrelated[] = {&style, nullptr};
    EXPECT_TRUE(layers->HasDependency(list, StyleSpan(distant, true), false));
    EXPECT_FALSE(layers->HasDependency(list, StyleSpan(distant, true), true));
    EXPECT_TRUE(layers->HasDependency(list, StyleSpan(element), false));
    EXPECT_FALSE(layers->HasDependency(list, StyleSpan(unrelated), false));
    EXPECT_FALSE(layers->HasDependency(list, StyleSpan(unrelated), true));
}

TEST_F(StyleArrayProperty, OneElementWithAParentIsAParentalDependency)
{
    EXPECT_TRUE(layers->HasParentalDependency(MakeList()));
    first.SetParent(nullptr);
    EXPECT_FALSE(layers->HasParentalDependency(MakeList()));
    EXPECT_FALSE(layers->HasParentalDependency(Any(StyleList())));
}

TEST_F(StyleArrayProperty, RemovingDependenciesReachesEveryElement)
{
    parent.SetProperty(Color, Any(VelString(L"red")));
    second.SetParent(&parent);
    Any list = MakeList();
    Style* const others[] = {&style};
    layers->RemoveDependency(list, StyleSpan(others), false);
    EXPECT_EQ(first.GetParent(), &parent);
    Style* const parents[] = {&parent};
    layers->RemoveDependency(list, StyleSpan(parents), true);
    for (const Style* element : {&first, &second})
    {
        EXPECT_EQ(element->GetParent(), nullptr);
        EXPECT_EQ(OwnText(*element, Color), L"red");
    }
    second.Clear();
    second.SetParent(&parent);
    layers->RemoveAllDependencies(list);
    EXPECT_EQ(second.GetParent(), nullptr);
    EXPECT_EQ(OwnText(second, Color), L"red");
    EXPECT_EQ(list, MakeList());
}

TEST_F(StyleArrayProperty, RemappingReachesTheParentsOfTheElementsAndTheirValues)
{
    Style other(nullptr, StyleCategoryName);
    Style holder(nullptr, StyleCategoryName);
    Style fillParent(nullptr, Fill);
    Style otherFill(nullptr, Fill);
    Style element(&style, StyleCategoryName);
    Style& inner = AddSubstyle(element, Fill, Fill, &fillParent);
    Any list(StyleList{nullptr, &element});
    own->RemapDependency(list, {{&style, &other}, {&fillParent, &otherFill}});
    EXPECT_EQ(element.GetParent(), &other);
    EXPECT_EQ(inner.GetParent(), &otherFill);
    own->RemapDependency(list, {{&other, nullptr}});
    EXPECT_EQ(element.GetParent(), &other);
}

TEST_F(StyleArrayProperty, RemappingPointersReachesTheValuesOfTheElements)
{
    struct Remapper : ProbeProperty
    {
        void RemapPointer(Any& value, const std::vector<std::pair<Any, Any>>& replacements) const override
        {
            for (const auto& [from, to] : replacements)
            {
                if (value == from)
                {
                    value = to;
                }
            }
        }
    };
    Manager().RegisterProperty(Stop, Key(L"probe"), new Remapper);
    first.SetProperty(Key(L"probe"), Any(VelString(L"old")));
    Any list = MakeList();
    layers->RemapPointer(list, {{Any(VelString(L"old")), Any(VelString(L"new"))}});
    EXPECT_EQ(OwnText(first, Key(L"probe")), L"new");
    EXPECT_EQ(first.GetParent(), &parent);
}

TEST_F(StyleArrayProperty, ProcessingVisitsTheValuesOfTheElementsInOrderUntilItIsStopped)
{
    first.SetProperty(Color, Any(VelString(L"red")));
    second.SetProperty(Color, Any(VelString(L"blue")));
    Any list = MakeList();
    StyleList visited;
    const auto visitAll = [&](Any&, Style* holder, const PropertyKey& key) {
        EXPECT_EQ(key, Color);
        visited.push_back(holder);
        return true;
    };
    EXPECT_TRUE(layers->ProcessProperty(list, visitAll, &style, Layers));
    EXPECT_THAT(visited, ElementsAre(&first, &second));
    visited.clear();
    const auto visitOne = [&](Any&, Style* holder, const PropertyKey&) {
        visited.push_back(holder);
        return false;
    };
    EXPECT_FALSE(layers->ProcessProperty(list, visitOne, &style, Layers));
    EXPECT_THAT(visited, ElementsAre(&first));
}

TEST_F(StyleArrayProperty, VisitingStylesMeetsNullElementsTooAndStopsAtTheFirstFalse)
{
    StyleList visited;
    EXPECT_TRUE(layers->ProcessStylesInProperty(MakeList(), [&](Style* element) {
        visited.push_back(element);
        return true;
    }));
    EXPECT_THAT(visited, ElementsAre(&first, nullptr, &second));
    visited.clear();
    EXPECT_FALSE(layers->ProcessStylesInProperty(MakeList(), [&](Style* element) {
        visited.push_back(element);
        return element != nullptr;
    }));
    EXPECT_THAT(visited, ElementsAre(&first, nullptr));
    EXPECT_TRUE(layers->ProcessStylesInProperty(Any(StyleList()), [](Style*) { return false; }));
}

TEST_F(StyleArrayProperty, SettingTheOwnerLeavesTheElementsWithoutOne)
{
    Any list = MakeList();
    layers->SetOwner(list, &style, Layers);
    EXPECT_EQ(first.GetOwner(), nullptr);
}

TEST_F(StyleArrayProperty, MergingCopiesTheWholeList)
{
    Style source(nullptr, StyleCategoryName);
    AddElements(source, Layers, Stop, 2)[0]->SetProperty(Color, Any(VelString(L"red")));
    AddElements(style, Layers, Stop, 1);
    layers->MergeProperty(&style, &source, Layers, false);
    EXPECT_THAT(ElementsOf(style, Layers), SizeIs(1));
    layers->MergeParentProperty(&style, &source, Layers);
    EXPECT_THAT(ElementsOf(style, Layers), SizeIs(1));
    layers->MergeProperty(&style, &source, Layers, true);
    ASSERT_THAT(ElementsOf(style, Layers), SizeIs(2));
    EXPECT_NE(ElementsOf(style, Layers)[0], ElementsOf(source, Layers)[0]);
    EXPECT_EQ(OwnText(*ElementsOf(style, Layers)[0], Color), L"red");

    Style empty(nullptr, StyleCategoryName);
    layers->MergeParentProperty(&empty, &source, Layers);
    EXPECT_THAT(ElementsOf(empty, Layers), SizeIs(2));
}

TEST_F(StyleArrayProperty, FlatteningStoresFlattenedCopiesOfTheEffectiveElements)
{
    parent.SetProperty(Color, Any(VelString(L"red")));
    Style base(nullptr, StyleCategoryName);
    const StyleList theirs = AddElements(base, Layers, Stop, 2, &parent);
    style.SetParent(&base);
    EXPECT_TRUE(layers->FlattenProperty(&style, Layers));
    const StyleList ours = ElementsOf(style, Layers);
    ASSERT_THAT(ours, SizeIs(2));
    for (const Style* element : ours)
    {
        EXPECT_EQ(element->GetParent(), nullptr);
        EXPECT_EQ(OwnText(*element, Color), L"red");
    }
    EXPECT_EQ(ElementsOf(base, Layers), theirs);
    EXPECT_EQ(theirs[0]->GetParent(), &parent);

    parent.Clear();
    EXPECT_TRUE(layers->FlattenProperty(&style, Layers)); // own elements again, which have values
    AddElements(style, Layers, Stop, 1);
    EXPECT_FALSE(layers->FlattenProperty(&style, Layers)); // nothing in the elements
    EXPECT_THAT(ElementsOf(style, Layers), SizeIs(1));
}

TEST_F(StyleArrayProperty, FlatteningTheDefaultAnswersFalseAndStoresNothing)
{
    EXPECT_FALSE(layers->FlattenProperty(&style, Layers));
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleArrayProperty, ListsOfDifferentLengthsCompareEqual)
{
    const Any one(StyleList{&first});
    const Any two(StyleList{&second, &first});
    EXPECT_TRUE(layers->IsEqual(one, two));
    EXPECT_TRUE(layers->IsEqual(two, one));
    EXPECT_TRUE(layers->IsEqual(Any(StyleList()), one));
    EXPECT_TRUE(layers->IsLess(one, two));
    EXPECT_FALSE(layers->IsLess(two, one));
    EXPECT_TRUE(layers->IsLess(Any(StyleList()), one));
}

TEST_F(StyleArrayProperty, ListsOfOneLengthAreComparedElementByElement)
{
    Style alike(second);
    Style more(second);
    more.SetProperty(Color, Any(VelString(L"red")));
    const auto list = [](std::initializer_list<Style*> styles) { return Any(StyleList(styles)); };
    EXPECT_TRUE(layers->IsEqual(list({}), list({})));
    EXPECT_TRUE(layers->IsEqual(list({&second, nullptr}), list({&alike, nullptr})));
    EXPECT_FALSE(layers->IsEqual(list({&second, &second}), list({&alike, &more})));
    EXPECT_FALSE(layers->IsEqual(list({nullptr}), list({&second})));
    EXPECT_FALSE(layers->IsEqual(list({&second}), list({nullptr})));

    EXPECT_FALSE(layers->IsLess(list({}), list({})));
    EXPECT_FALSE(layers->IsLess(list({&second, nullptr}), list({&alike, nullptr})));
    EXPECT_TRUE(layers->IsLess(list({&second, &second}), list({&alike, &more})));
    EXPECT_FALSE(layers->IsLess(list({&alike, &more}), list({&second, &second})));
    EXPECT_TRUE(layers->IsLess(list({nullptr}), list({&second})));
    EXPECT_FALSE(layers->IsLess(list({&second}), list({nullptr})));
}

} // namespace Styles::Testing
