// Styles that inherit from the styles around them, and links that close on themselves: everything ends, and nothing is
// copied into its own inside. And chains so long that nothing may go down them by calling itself.

#include "support/StyleMaking.h"

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

namespace Styles::Testing
{

namespace
{

using StyleList = std::vector<Style*>;

constexpr std::size_t ChainLength = 1000000;
constexpr std::size_t NestCount = 100000;

class StylesInside : public SchemaFixture
{
protected:
    static void SetNote(Style& style, const wchar_t* text) { style.SetProperty(Key(L"note"), Any(VelString(text))); }

    /// The styles nested in `style` along its substyles and lists, itself not included.
    void CollectInside(const Style& style, StyleList& inside) const
    {
        StyleList next = ElementsOf(style, Nests);
        if (Style* nest = style.GetSubstyle(Nest, false))
        {
            next.push_back(nest);
        }
        for (Style* found : next)
        {
            inside.push_back(found);
            ASSERT_LT(inside.size(), 1000U);
            CollectInside(*found, inside);
        }
    }

    /// Asks `style` everything that only reads.
    static void AskEverything(Style& style, const StyleList& members)
    {
        for (const StyleSpan span : {StyleSpan(members), StyleSpan()})
        {
            static_cast<void>(style.HasDependency(span));
            static_cast<void>(style.HasDirectDependency(span));
            static_cast<void>(style.HasParentalDependency(span));
            static_cast<void>(style.GetDependencies(span, false));
            static_cast<void>(style.GetDependencies(span, true));
        }
        static_cast<void>(style.HasParentalDependency());
        static_cast<void>(style.SubstylesHaveAnyParentalRelationships());
        static_cast<void>(style.StylePropertiesHasDependencyOnOwner());
        static_cast<void>(GetSubstyleParent(style));
        static_cast<void>(style.GetProperty(Key(L"note")));
    }

    /// Neither `style` nor a style inside it inherits.
    void ExpectIndependent(const Style& style) const
    {
        EXPECT_EQ(style.GetParent(), nullptr);
        EXPECT_FALSE(style.SubstylesHaveAnyParentalRelationships());
        StyleList inside;
        CollectInside(style, inside);
        for (const Style* found : inside)
        {
            EXPECT_EQ(found->GetParent(), nullptr);
        }
    }

    /// What makes a style independent, each tried on a style of its own.
    static std::vector<std::function<void(Style&)>> WaysToIndependence(const StyleList& members)
    {
        return {[](Style& style) { style.RemoveAllDependencies(); },
                [&members](Style& style) { style.RemoveDependency(StyleSpan(members), false); },
                [&members](Style& style) { style.RemoveDependency(StyleSpan(members), true); },
                [](Style& style) { style.Flatten(); }};
    }
};

} // namespace

TEST_F(StylesInside, QueriesAndRemovalsOnAParentChainThatClosesEnd)
{
    for (std::size_t way = 0; way < 4; ++way)
    {
        Style a(nullptr, Nest);
        Style b(&a, Nest);
        Style c(&b, Nest);
        Style outside(&c, Nest); // leads into the circle
        Style unrelated(nullptr, Nest);
        a.SetParent(&c);
        SetNote(a, L"a");
        SetNote(b, L"b");
        const StyleList members{&a, &b, &c, &outside};
        AskEverything(outside, members);
        AskEverything(a, {&unrelated});
        EXPECT_TRUE(outside.HasDependency(StyleSpan(members)));
        Style* const stranger[] = {&unrelated};
        EXPECT_FALSE(outside.HasDependency(StyleSpan(stranger)));
        EXPECT_FALSE(outside.HasParentalDependency(StyleSpan(stranger)));
        StyleList sorted(members);
        std::sort(sorted.begin(), sorted.end(), std::less<>());
        EXPECT_EQ(outside.GetDependencies(StyleSpan(members), false), sorted);

        WaysToIndependence(members)[way](outside);
        ExpectIndependent(outside);
        EXPECT_EQ(a.GetParent(), &c);
        if (way < 3)
        {
            EXPECT_EQ(OwnText(outside, Note), L"b"); // the nearest
        }
        WaysToIndependence(members)[way](c);
        ExpectIndependent(c);
    }
}

TEST_F(StylesInside, AStyleThatIsItsOwnParentIsAskedAndFreedLikeAnyOther)
{
    for (std::size_t way = 0; way < 4; ++way)
    {
        Style self(nullptr, Nest);
        self.SetParent(&self);
        SetNote(self, L"self");
        const StyleList members{&self};
        AskEverything(self, members);
        EXPECT_THAT(self.GetDependencies(StyleSpan(members), false), ElementsAre(&self));
        WaysToIndependence(members)[way](self);
        ExpectIndependent(self);
        EXPECT_EQ(OwnText(self, Note), L"self");
    }
}

TEST_F(StylesInside, ASubstyleThatInheritsFromItsHolderTakesItsPlainValuesAndNotItself)
{
    for (std::size_t way = 0; way < 4; ++way)
    {
        Style holder(nullptr, Nest);
        SetNote(holder, L"holder");
        Style& inner = AddSubstyle(holder, Nest, Nest, &holder);
        const StyleList members{&holder};
        AskEverything(holder, members);
        AskEverything(inner, members);
        EXPECT_TRUE(inner.HasDependency(StyleSpan(members)));
        EXPECT_THAT(inner.GetDependencies(StyleSpan(members), false), ElementsAre(&holder));
        EXPECT_TRUE(holder.HasParentalDependency());

        WaysToIndependence(members)[way](holder);
        ExpectIndependent(holder);
        EXPECT_EQ(holder.GetSubstyle(Nest, false), &inner);
        EXPECT_EQ(OwnText(inner, Note), L"holder");
        StyleList inside;
        CollectInside(holder, inside);
        EXPECT_LE(inside.size(), 2U);
    }
}

TEST_F(StylesInside, ASubstyleOfASubstyleThatInheritsFromTheOutermostStyleEnds)
{
    for (std::size_t way = 0; way < 4; ++way)
    {
        Style holder(nullptr, Nest);
        SetNote(holder, L"holder");
        Style& middle = AddSubstyle(holder, Nest, Nest);
        SetNote(middle, L"middle");
        Style& inner = AddSubstyle(middle, Nest, Nest, &holder);
        const StyleList members{&holder, &middle};
        AskEverything(inner, members);
        WaysToIndependence(members)[way](holder);
        ExpectIndependent(holder);
        EXPECT_EQ(OwnText(inner, Note), L"holder");
        EXPECT_EQ(OwnText(middle, Note), L"middle");
    }
}

TEST_F(StylesInside, SubstylesThatInheritFromEachOthersHoldersTakeTheirPlainValues)
{
    for (std::size_t way = 0; way < 4; ++way)
    {
        Style a(nullptr, Nest);
        Style b(nullptr, Nest);
        SetNote(a, L"a");
        SetNote(b, L"b");
        Style& inA = AddSubstyle(a, Nest, Nest, &b);
        Style& inB = AddSubstyle(b, Nest, Nest, &a);
        const StyleList members{&a, &b};
        AskEverything(a, members);
        AskEverything(inB, members);
        EXPECT_EQ(a.GetDependencies(StyleSpan(members), false).size(), 2U);

        WaysToIndependence(members)[way](a);
        ExpectIndependent(a);
        EXPECT_EQ(OwnText(a, Note), L"a");
        EXPECT_EQ(OwnText(inA, Note), L"b");
        EXPECT_EQ(inB.GetParent(), &a);
        EXPECT_TRUE(inB.IsEmpty());

        WaysToIndependence(members)[way](b);
        ExpectIndependent(b);
        EXPECT_EQ(OwnText(inB, Note), L"a");
    }
}

TEST_F(StylesInside, ListElementsThatInheritFromTheirHolderTakeItsPlainValues)
{
    for (std::size_t way = 0; way < 4; ++way)
    {
        Style holder(nullptr, Nest);
        SetNote(holder, L"holder");
        AddElements(holder, Nests, Nest, 2, &holder);
        const StyleList members{&holder};
        AskEverything(holder, members);
        AskEverything(*ElementsOf(holder, Nests)[1], members);
        WaysToIndependence(members)[way](holder);
        ExpectIndependent(holder);
        ASSERT_EQ(ElementsOf(holder, Nests).size(), 2U);
        for (const Style* element : ElementsOf(holder, Nests))
        {
            EXPECT_EQ(OwnText(*element, Note), L"holder");
        }
    }
}

TEST_F(StylesInside, ListElementsAndSubstylesThatInheritCrosswiseTakePlainValues)
{
    for (std::size_t way = 0; way < 4; ++way)
    {
        Style a(nullptr, Nest);
        Style b(nullptr, Nest);
        SetNote(a, L"a");
        SetNote(b, L"b");
        AddElements(a, Nests, Nest, 2, &b);
        AddSubstyle(a, Nest, Nest, &b);
        AddElements(b, Nests, Nest, 2, &a);
        AddSubstyle(b, Nest, Nest, &a);
        const StyleList members{&a, &b};
        AskEverything(a, members);
        AskEverything(b, members);
        WaysToIndependence(members)[way](a);
        ExpectIndependent(a);
        ASSERT_EQ(ElementsOf(a, Nests).size(), 2U);
        EXPECT_EQ(OwnText(*ElementsOf(a, Nests)[0], Note), L"b");
        EXPECT_EQ(OwnText(*ElementsOf(a, Nests)[1], Note), L"b");
        EXPECT_EQ(OwnText(*a.GetSubstyle(Nest, false), Note), L"b");
        EXPECT_EQ(ElementsOf(b, Nests)[0]->GetParent(), &a);
    }
}

TEST_F(StylesInside, FlatteningACopyOfEndlessNestingEndsToo)
{
    Style holder(nullptr, Nest);
    SetNote(holder, L"holder");
    AddSubstyle(holder, Nest, Nest, &holder);
    AddElements(holder, Nests, Nest, 2, &holder);
    const std::unique_ptr<Style> flattened(holder.CreateFlattenedStyle());
    ExpectIndependent(*flattened);
    EXPECT_EQ(OwnText(*flattened->GetSubstyle(Nest, false), Note), L"holder");
    EXPECT_EQ(holder.GetSubstyle(Nest, false)->GetParent(), &holder);

    Style heir(&holder, Nest);
    heir.RemoveAllDependencies();
    ExpectIndependent(heir);
    EXPECT_EQ(OwnText(heir, Note), L"holder");
}

TEST_F(StylesInside, MergingAStyleIntoItsOwnSubstyleEnds)
{
    Style holder(nullptr, Nest);
    SetNote(holder, L"holder");
    Style& inner = AddSubstyle(holder, Nest, Nest);
    inner.MergeProperties(&holder, true);
    EXPECT_EQ(OwnText(inner, Note), L"holder");
    EXPECT_EQ(inner.GetSubstyle(Nest, false), nullptr);
    inner.MergeParentProperties(&holder);
    EXPECT_EQ(inner.GetSubstyle(Nest, false), nullptr);
}

TEST_F(StylesInside, WhatIsInheritedTwiceWithoutACircleIsKeptTwice)
{
    Style deepest(nullptr, Nest);
    SetNote(deepest, L"deepest");
    Style base(nullptr, Nest);
    AddSubstyle(base, Nest, Nest, &deepest);
    AddElements(base, Nests, Nest, 2, &deepest);
    for (std::size_t way = 0; way < 4; ++way)
    {
        Style heir(nullptr, Nest);
        AddSubstyle(heir, Nest, Nest, &base);
        AddElements(heir, Nests, Nest, 2, &base);
        const StyleList members{&base, &deepest};
        WaysToIndependence(members)[way](heir);
        ExpectIndependent(heir);
        StyleList holders = ElementsOf(heir, Nests);
        holders.push_back(heir.GetSubstyle(Nest, false));
        ASSERT_EQ(holders.size(), 3U);
        for (const Style* holder : holders)
        {
            ASSERT_NE(holder->GetSubstyle(Nest, false), nullptr);
            EXPECT_EQ(OwnText(*holder->GetSubstyle(Nest, false), Note), L"deepest");
            ASSERT_EQ(ElementsOf(*holder, Nests).size(), 2U);
            EXPECT_EQ(OwnText(*ElementsOf(*holder, Nests)[1], Note), L"deepest");
        }
    }
}

TEST_F(StylesInside, NothingStaysMarkedAfterAThrow)
{
    auto* probe = new ProbeProperty;
    Manager().RegisterProperty(Nest, Key(L"probe"), probe);
    Style base(nullptr, Nest);
    Style& inBase = AddSubstyle(base, Nest, Nest);
    inBase.SetProperty(Key(L"probe"), Any(VelString(L"x")));
    Style heir(&base, Nest);
    probe->onCall = [](const std::string& entry) {
        if (entry == "move")
        {
            throw std::runtime_error("as asked");
        }
    };
    EXPECT_THROW(heir.Flatten(), std::runtime_error);
    EXPECT_THROW(heir.RemoveAllDependencies(), std::runtime_error);
    EXPECT_EQ(heir.GetParent(), &base);
    EXPECT_EQ(heir.GetSubstyle(Nest, false), nullptr);
    probe->onCall = nullptr;

    heir.RemoveAllDependencies();
    ASSERT_NE(heir.GetSubstyle(Nest, false), nullptr);
    EXPECT_EQ(OwnText(*heir.GetSubstyle(Nest, false), Key(L"probe")), L"x");
}

TEST_F(StylesInside, AMillionParentsAreAskedWithoutADeepStack)
{
    std::vector<Style> chain(ChainLength);
    for (std::size_t index = 0; index < ChainLength; ++index)
    {
        chain[index].SetCategory(Nest);
        chain[index].SetParent(index + 1 < ChainLength ? &chain[index + 1] : nullptr);
    }
    SetNote(chain.back(), L"top");
    Style& bottom = chain.front();
    Style unrelated(nullptr, Nest);
    Style* const top[] = {&chain.back()};
    Style* const stranger[] = {&unrelated};

    EXPECT_TRUE(bottom.HasDependency(StyleSpan(top)));
    EXPECT_FALSE(bottom.HasDependency(StyleSpan(stranger)));
    EXPECT_FALSE(bottom.HasDirectDependency(StyleSpan(top)));
    EXPECT_TRUE(bottom.HasParentalDependency(StyleSpan(top)));
    EXPECT_FALSE(bottom.HasParentalDependency(StyleSpan(stranger)));
    EXPECT_TRUE(bottom.HasParentalDependency());
    EXPECT_THAT(bottom.GetDependencies(StyleSpan(top), false), ElementsAre(&chain.back()));
    EXPECT_THAT(bottom.GetDependencies(StyleSpan(top), true), IsEmpty());

    Style heir(&bottom, Nest);
    heir.RemoveDependency(StyleSpan(top), true);
    EXPECT_EQ(heir.GetParent(), &bottom);
    heir.RemoveDependency(StyleSpan(top), false);
    EXPECT_EQ(heir.GetParent(), nullptr);
    EXPECT_EQ(OwnText(heir, Note), L"top");
}

TEST_F(StylesInside, AMillionParentsAreTakenOverWithoutADeepStack)
{
    std::vector<Style> chain(ChainLength);
    StyleList all;
    all.reserve(ChainLength);
    for (std::size_t index = 0; index < ChainLength; ++index)
    {
        chain[index].SetCategory(Nest);
        chain[index].SetParent(index + 1 < ChainLength ? &chain[index + 1] : nullptr);
        all.push_back(&chain[index]); // a vector is sorted by address
    }
    SetNote(chain.back(), L"top");
    AddSubstyle(chain.back(), Nest, Nest).SetProperty(Note, Any(VelString(L"nested")));

    Style direct(&chain.front(), Nest);
    direct.RemoveDependency(StyleSpan(all, true), true);
    ExpectIndependent(direct);
    EXPECT_EQ(OwnText(direct, Note), L"top");

    Style heir(&chain.front(), Nest);
    AddSubstyle(heir, Nest, Nest);
    EXPECT_EQ(EffectiveText(*heir.GetSubstyle(Nest, false), Note), L"nested");
    const std::unique_ptr<Style> clone(heir.GetSubstyle(Nest, false)->CreateStyleCloneWithNoDependencyOnOwner());
    EXPECT_TRUE(heir.GetSubstyle(Nest, false)->StylePropertiesHasDependencyOnOwner());
    EXPECT_EQ(GetSubstyleParent(*heir.GetSubstyle(Nest, false)), nullptr);
    const std::unique_ptr<Style> flattened(heir.CreateFlattenedStyle());
    heir.RemoveAllDependencies();
    for (const Style* free : {&heir, flattened.get()})
    {
        ExpectIndependent(*free);
        EXPECT_EQ(OwnText(*free, Note), L"top");
        EXPECT_EQ(OwnText(*free->GetSubstyle(Nest, false), Note), L"nested");
    }
}

TEST_F(StylesInside, ManyStylesWithSubstylesThatInheritFromTheNextAreAskedWithoutADeepStack)
{
    std::vector<Style> styles(NestCount);
    for (Style& style : styles)
    {
        style.SetCategory(Nest);
    }
    for (std::size_t index = 0; index + 1 < NestCount; ++index)
    {
        AddSubstyle(styles[index], Nest, Nest, &styles[index + 1]);
    }
    Style unrelated(nullptr, Nest);
    Style* const last[] = {&styles.back()};
    Style* const stranger[] = {&unrelated};
    EXPECT_TRUE(styles.front().HasDependency(StyleSpan(last)));
    EXPECT_FALSE(styles.front().HasDependency(StyleSpan(stranger)));
    EXPECT_FALSE(styles.front().HasDirectDependency(StyleSpan(last)));
    EXPECT_THAT(styles.front().GetDependencies(StyleSpan(last), false), ElementsAre(&styles.back()));
    EXPECT_THAT(styles.front().GetDependencies(StyleSpan(stranger), false), IsEmpty());

    Style heir(&styles.front(), Nest);
    EXPECT_TRUE(heir.HasParentalDependency(StyleSpan(last)));
    EXPECT_FALSE(heir.HasParentalDependency(StyleSpan(stranger)));
}

TEST_F(StylesInside, ManyStylesWithElementsThatInheritFromTheNextAreAskedWithoutADeepStack)
{
    std::vector<Style> styles(NestCount);
    for (Style& style : styles)
    {
        style.SetCategory(Nest);
    }
    for (std::size_t index = 0; index + 1 < NestCount; ++index)
    {
        AddElements(styles[index], Nests, Nest, 1, &styles[index + 1]);
    }
    Style* const last[] = {&styles.back()};
    EXPECT_TRUE(styles.front().HasDependency(StyleSpan(last)));
    EXPECT_THAT(styles.front().GetDependencies(StyleSpan(last), false), ElementsAre(&styles.back()));
}

TEST_F(StylesInside, RemovingFromManyStylesThatNestInEachOtherEnds)
{
    constexpr std::size_t Deep = 2000; // deeper than values are brought in
    std::vector<Style> styles(Deep);
    for (Style& style : styles)
    {
        style.SetCategory(Nest);
    }
    for (std::size_t index = 0; index + 1 < Deep; ++index)
    {
        AddSubstyle(styles[index], Nest, Nest, &styles[index + 1]);
        SetNote(styles[index + 1], L"nested");
    }
    Style removed(styles.front());
    removed.RemoveAllDependencies();
    EXPECT_EQ(removed.GetParent(), nullptr);
    EXPECT_FALSE(removed.SubstylesHaveAnyParentalRelationships());
    EXPECT_EQ(OwnText(*removed.GetSubstyle(Nest, false), Note), L"nested");

    Style flattened(styles.front());
    flattened.Flatten();
    EXPECT_FALSE(flattened.SubstylesHaveAnyParentalRelationships());
    EXPECT_EQ(OwnText(*flattened.GetSubstyle(Nest, false), Note), L"nested");
}

} // namespace Styles::Testing
