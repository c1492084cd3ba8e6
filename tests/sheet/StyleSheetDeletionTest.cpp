// Deleting styles, and what becomes of those that depend on them.

#include <styles/StyleSheet.h>

#include "sheet/DestructionProbe.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace Styles::Testing
{

namespace
{

class StyleSheetDeletion : public DestructionFixture
{
protected:
    static bool Delete(TestSheet& sheet, const std::vector<Style*>& styles)
    {
        return sheet.DeleteStyles(StyleSpan(styles));
    }

    static std::vector<Style*> DependantsOf(const TestSheet& sheet, const std::vector<Style*>& styles)
    {
        std::vector<Style*> dependants;
        sheet.GetDependencies(StyleSpan(styles), dependants);
        return dependants;
    }
};

} // namespace

TEST_F(StyleSheetDeletion, DestroysTheStylesAndMakesTheirHeirsIndependent)
{
    TestSheet sheet;
    Style* base = AddTo(sheet, L"base");
    base->SetProperty(Note, Any(VelString(L"from base")));
    Style* middle = AddTo(sheet, L"middle", base);
    middle->SetProperty(Number, Any(4.0));
    Style* heir = AddTo(sheet, L"heir", middle);
    EXPECT_TRUE(Delete(sheet, {middle}));
    EXPECT_THAT(destroyed, ElementsAre("middle"));
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(base, heir));
    EXPECT_EQ(heir->GetParent(), base);
    EXPECT_TRUE(heir->DoesOverrideProperty(Number));
    EXPECT_EQ(EffectiveNumber(*heir, Number), 4.0);
    EXPECT_FALSE(heir->DoesOverrideProperty(Note));
    EXPECT_EQ(EffectiveText(*heir, Note), VelString(L"from base"));
}

TEST_F(StyleSheetDeletion, ReachesHeirsInSubstylesAndLists)
{
    TestSheet sheet;
    Style* fill = sheet.Add(L"fill", Fill);
    fill->SetProperty(Angle, Any(30.0));
    Style* stop = sheet.Add(L"stop", Stop);
    stop->SetProperty(Position, Any(0.5));
    Style* holder = AddTo(sheet, L"holder");
    const Style substyle(fill, Fill);
    holder->SetSubstyle(Fill, &substyle);
    Style element(stop, Stop);
    holder->SetProperty(Stops, Any(std::vector<Style*>{&element}));
    EXPECT_TRUE(Delete(sheet, {fill, stop}));
    const Style* left = holder->GetSubstyle(Fill, false);
    ASSERT_NE(left, nullptr);
    EXPECT_EQ(left->GetParent(), nullptr);
    EXPECT_EQ(EffectiveNumber(*left, Angle), 30.0);
    const auto& elements = holder->GetProperty(Stops).Get<std::vector<Style*>>();
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_EQ(elements[0]->GetParent(), nullptr);
    EXPECT_EQ(EffectiveNumber(*elements[0], Position), 0.5);
}

TEST_F(StyleSheetDeletion, StylesThatInheritFromEachOtherGoTogether)
{
    TestSheet sheet;
    Style* a = AddTo(sheet, L"a");
    Style* b = AddTo(sheet, L"b", a);
    Style* c = AddTo(sheet, L"c", b);
    Style* d = AddTo(sheet, L"d", c);
    a->SetProperty(Note, Any(VelString(L"of a")));
    EXPECT_TRUE(Delete(sheet, {c, a, b}));
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(d));
    EXPECT_EQ(d->GetParent(), nullptr);
    EXPECT_EQ(OwnText(*d, Note), VelString(L"of a"));
    EXPECT_EQ(destroyed.size(), 3u);
}

TEST_F(StyleSheetDeletion, NullForeignAndRepeatedPointersAreNoHindrance)
{
    TestSheet sheet;
    Style* a = AddTo(sheet, L"a");
    Style* b = AddTo(sheet, L"b");
    const std::unique_ptr<Style> foreign(MakeStyle(L"foreign"));
    EXPECT_TRUE(Delete(sheet, {nullptr, a, foreign.get(), a, nullptr}));
    EXPECT_THAT(destroyed, ElementsAre("a"));
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(b));
}

TEST_F(StyleSheetDeletion, StylesOfAnotherSheetLoseTheirHeirsHereAndStay)
{
    TestSheet sheet;
    TestSheet other;
    Style* outside = AddTo(other, L"outside");
    outside->SetProperty(Note, Any(VelString(L"of outside")));
    Style* heir = AddTo(sheet, L"heir", outside);
    Style* heirThere = AddTo(other, L"heir there", outside);
    EXPECT_FALSE(Delete(sheet, {outside}));
    EXPECT_THAT(destroyed, IsEmpty());
    EXPECT_EQ(heir->GetParent(), nullptr);
    EXPECT_EQ(OwnText(*heir, Note), VelString(L"of outside"));
    EXPECT_EQ(heirThere->GetParent(), outside);
    EXPECT_EQ(other.Get(L"outside"), outside);
}

TEST_F(StyleSheetDeletion, NothingToDeleteIsAnsweredFalse)
{
    TestSheet sheet;
    Style* a = AddTo(sheet, L"a");
    Style* b = AddTo(sheet, L"b", a);
    EXPECT_FALSE(Delete(sheet, {}));
    EXPECT_FALSE(Delete(sheet, {nullptr}));
    EXPECT_EQ(b->GetParent(), a);
    EXPECT_FALSE(Delete(*std::make_unique<TestSheet>(), {a}));
}

TEST_F(StyleSheetDeletion, EveryStyleIsMadeIndependentAlsoThoseThatGoAndForNothing)
{
    class Listening : public ProbeProperty
    {
    public:
        explicit Listening(std::vector<std::string>& calls) : m_calls(calls) {}
        void RemoveDependency(Any& value, StyleSpan, bool direct) const override
        {
            m_calls.push_back(Utf8(value.Get<VelString>()) + (direct ? " directly" : ""));
        }

    private:
        std::vector<std::string>& m_calls;
    };
    std::vector<std::string> calls;
    const PropertyKey listening = Key(L"listening");
    Manager().RegisterProperty(StyleCategoryName, listening, new Listening(calls));
    TestSheet sheet;
    Style* b = AddTo(sheet, L"b");
    Style* a = AddTo(sheet, L"a");
    b->SetProperty(listening, Any(L"b"));
    a->SetProperty(listening, Any(L"a"));
    EXPECT_FALSE(Delete(sheet, {}));
    EXPECT_THAT(calls, ElementsAre("a directly", "b directly"));
    calls.clear();
    EXPECT_TRUE(Delete(sheet, {a}));
    EXPECT_THAT(calls, ElementsAre("a directly", "b directly"));
}

TEST_F(StyleSheetDeletion, ADefinitionThatThrowsLeavesAllStylesInTheSheet)
{
    auto* probe = new ProbeProperty();
    probe->onCall = [](const std::string& call) {
        if (call == "move")
        {
            throw std::runtime_error("no");
        }
    };
    const PropertyKey brittle = Key(L"brittle");
    TestSheet sheet;
    Style* a = AddTo(sheet, L"a");
    Style* b = AddTo(sheet, L"b", a);
    {
        const auto guard = std::exchange(probe->onCall, {});
        Manager().RegisterProperty(StyleCategoryName, brittle, probe);
        a->SetProperty(brittle, Any(VelString(L"x")));
        probe->onCall = guard;
    }
    EXPECT_THROW(Delete(sheet, {a}), std::runtime_error);
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(a, b));
    EXPECT_EQ(b->GetParent(), a) << "it still inherits what it inherited";
    EXPECT_THAT(destroyed, testing::Not(testing::Contains("a")));
    probe->onCall = {};
}

TEST_F(StyleSheetDeletion, HalfOfAHundredThousandStylesAreDeletedAtOnce)
{
    constexpr std::size_t count = 100'000;
    TestSheet sheet;
    std::vector<Style*> doomed;
    Style* previous = nullptr;
    for (std::size_t index = 0; index < count; ++index)
    {
        auto style = std::make_unique<Style>(previous, Outline);
        style->SetProperty(Width, Any(static_cast<double>(index)));
        previous = style.get();
        if (index % 2 == 0)
        {
            doomed.push_back(previous);
        }
        sheet.AddStyle(Text("style " + std::to_string(index)), style.release(), false);
    }
    EXPECT_TRUE(Delete(sheet, doomed));
    const std::vector<Style*> left = sheet.GetStyles();
    ASSERT_EQ(left.size(), count / 2);
    std::vector<Style*> sorted = left;
    std::sort(sorted.begin(), sorted.end(), std::less<>());
    std::size_t heirs = 0;
    for (const Style* style : left)
    {
        const bool inherits = style->GetParent() != nullptr;
        heirs += inherits;
        ASSERT_TRUE(!inherits || std::binary_search(sorted.begin(), sorted.end(), style->GetParent(), std::less<>()));
    }
    EXPECT_EQ(heirs, count / 2 - 1);
    EXPECT_FALSE(Delete(sheet, doomed)) << "they are gone";
}

TEST_F(StyleSheetDeletion, ALongWayOfInheritanceIsDeletedFromItsMiddle)
{
    // Each inherits from the next in the order of the names, so that the longest ways come first.
    constexpr int count = 100'000;
    TestSheet sheet;
    std::vector<Style*> styles;
    for (int index = 0; index < count; ++index)
    {
        styles.push_back(new Style(nullptr, Outline));
        sheet.AddStyle(Text(std::to_string(count + index)), styles.back(), false);
    }
    for (std::size_t index = 0; index + 1 < styles.size(); ++index)
    {
        styles[index]->SetParent(styles[index + 1]);
    }
    styles[75'000]->SetProperty(Width, Any(7.0));
    styles[74'000]->SetProperty(Color, Any(VelString(L"red")));
    const std::vector<Style*> doomed(styles.begin() + 25'000, styles.begin() + 75'000);
    EXPECT_TRUE(Delete(sheet, doomed));
    EXPECT_EQ(sheet.GetStyles().size(), 50'000u);
    Style* last = styles[24'999];
    EXPECT_EQ(last->GetParent(), styles[75'000]);
    EXPECT_EQ(OwnText(*last, Color), VelString(L"red"));
    EXPECT_FALSE(last->DoesOverrideProperty(Width));
    EXPECT_EQ(EffectiveNumber(*styles[0], Width), 7.0);
    EXPECT_TRUE(Delete(sheet, sheet.GetStyles()));
    EXPECT_THAT(sheet.GetStyles(), IsEmpty());
}

TEST_F(StyleSheetDeletion, WhatDependsOnStylesIsListedInTheOrderOfNames)
{
    TestSheet sheet;
    Style* fill = sheet.Add(L"fill", Fill);
    Style* far = AddTo(sheet, L"z far");
    Style* holder = AddTo(sheet, L"holder");
    const Style substyle(fill, Fill);
    holder->SetSubstyle(Fill, &substyle);
    far->SetParent(holder);
    Style* unrelated = AddTo(sheet, L"unrelated");
    EXPECT_THAT(DependantsOf(sheet, {fill}), ElementsAre(fill, holder, far));
    EXPECT_THAT(DependantsOf(sheet, {unrelated}), ElementsAre(unrelated));
    EXPECT_THAT(DependantsOf(sheet, {}), IsEmpty());
    EXPECT_THAT(DependantsOf(sheet, {nullptr}), IsEmpty());
    std::vector<Style*> dependants{unrelated};
    const std::vector<Style*> asked{holder};
    sheet.GetDependencies(StyleSpan(asked), dependants);
    EXPECT_THAT(dependants, ElementsAre(unrelated, holder, far)) << "appended";
}

TEST_F(StyleSheetDeletion, ClosedWaysOfInheritanceAreDeletedToo)
{
    TestSheet sheet;
    ASSERT_TRUE(sheet.Read(R"({"nest": {
        "a": {"inherits": "b", "note": "of a", "nest": {"inherits": "a", "nests": [{"inherits": "a"}, {"inherits": "b"}]}},
        "b": {"inherits": "a", "nest": {"inherits": "c"}},
        "c": {"inherits": "c2", "nest": {"inherits": "b"}},
        "c2": {"inherits": "c"},
        "heir": {"inherits": "a"}}})"));
    EXPECT_TRUE(Delete(sheet, {sheet.Get(L"a"), sheet.Get(L"c")}));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"b"), VelString(L"c2"), VelString(L"heir")));
    EXPECT_EQ(EffectiveText(*sheet.Get(L"heir"), Note), VelString(L"of a"));
    for (const Style* style : sheet.GetStyles())
    {
        for (const Style* parent : {style->GetParent()})
        {
            EXPECT_TRUE(parent == nullptr || !sheet.GetStyleName(parent).empty());
        }
    }
    EXPECT_TRUE(Delete(sheet, sheet.GetStyles()));
    EXPECT_THAT(sheet.GetStyles(), IsEmpty());
}

} // namespace Styles::Testing
