// Changing values along paths, and with arguments that are parts of the style that is changed.

#include "core/StyleMutationSuite.h"

#include <gmock/gmock.h>

#include <memory>

namespace Styles::Testing
{

using ::testing::ElementsAre;

TEST_F(StyleMutation, SettingAlongAPathCreatesTheSubstyles)
{
    Style style(nullptr, StyleCategoryName);
    style.SetPathProperty({Character, Fill, Color}, Any(L"red"));
    const Style* character = style.GetSubstyle(Character, false);
    ASSERT_NE(character, nullptr);
    EXPECT_EQ(character->GetCategoryName(), Character);
    const Style* fill = character->GetSubstyle(Fill, false);
    ASSERT_NE(fill, nullptr);
    EXPECT_EQ(fill->GetCategoryName(), Fill);
    EXPECT_EQ(OwnText(*fill, Color), VelString(L"red"));
    const Any blue(L"blue");
    style.SetPathProperty({Character, Fill, Color}, blue);
    EXPECT_EQ(OwnText(*fill, Color), VelString(L"blue")) << "in the substyle that was there";
    style.SetPathProperty({Note}, blue);
    style.SetPathProperty({Number}, Any(2.0));
    EXPECT_EQ(OwnText(style, Note), VelString(L"blue"));
    EXPECT_EQ(EffectiveNumber(style, Number), 2.0);
}

TEST_F(StyleMutation, AnEmptyPathSetsNothing)
{
    Style style(nullptr, StyleCategoryName), source(nullptr, StyleCategoryName);
    const Any value(L"text");
    style.SetPathProperty({}, value);
    style.SetPathProperty({}, Any(L"text"));
    style.SetPathProperty({}, &source);
    style.SetPathSubstyle({}, &source);
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_FALSE(style.ClearPathProperty({}));
    EXPECT_FALSE(style.RevertPathProperty({}, true));
}

TEST_F(StyleMutation, APathThroughAKeyThatIsNoSubstylePropertyEndsSilently)
{
    Style style(nullptr, StyleCategoryName);
    style.SetProperty(Note, Any(L"text"));
    const Any value(L"red");
    for (const PropertyKey& key : {Note, Number, Stops, Key(L"unknown")})
    {
        style.SetPathProperty({key, Color}, value);
        style.SetPathProperty({key, Color}, Any(L"red"));
        style.SetPathProperty({Character, key, Color}, value);
    }
    EXPECT_EQ(OwnText(style, Note), VelString(L"text"));
    EXPECT_FALSE(style.DoesOverrideProperty(Number));
    EXPECT_FALSE(style.DoesOverrideProperty(Stops));
    EXPECT_TRUE(style.DoesOverrideProperty(Character)) << "what was created before that stays";
}

TEST_F(StyleMutation, EachFormAlongAPathIsTheFormAtItsEnd)
{
    Style style(nullptr, StyleCategoryName);
    Style& fill = *GetOrCreateSubstyle(style, Fill);
    fill.SetProperty(Angle, Any(1.0));
    fill.SetCategory(Outline); // which has no angle
    const Any value(2.0);
    style.SetPathProperty({Fill, Angle}, Any(2.0));
    EXPECT_TRUE(fill.DoesOverrideProperty(Angle));
    style.SetPathProperty({Fill, Angle}, value);
    EXPECT_FALSE(fill.DoesOverrideProperty(Angle));
}

TEST_F(StyleMutation, ClearingAlongAPathFollowsOwnSubstylesOnly)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    parent.SetPathProperty({Fill, Color}, Any(L"red"));
    EXPECT_FALSE(style.ClearPathProperty({Fill, Color}));
    EXPECT_EQ(parent.GetPathProperty({Fill, Color}).Get<VelString>(), VelString(L"red"));
    style.SetPathProperty({Character, Fill, Color}, Any(L"blue"));
    EXPECT_FALSE(style.ClearPathProperty({Character, Fill, Angle}));
    EXPECT_TRUE(style.ClearPathProperty({Character, Fill, Color}));
    EXPECT_FALSE(style.ClearPathProperty({Character, Fill, Color}));
    EXPECT_TRUE(style.ClearPathProperty({Character}));
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleMutation, RevertingAlongAPathNeedsSomethingToInheritFrom)
{
    Style style(nullptr, StyleCategoryName);
    const PropertyPath path{Character, Fill, Color};
    style.SetPathProperty(path, Any(L"red"));
    EXPECT_FALSE(style.RevertPathProperty(path, false));
    EXPECT_TRUE(style.DoesOverridePathProperty(path)) << "the value stays";
    EXPECT_TRUE(style.RevertPathProperty(path, true));
    EXPECT_FALSE(style.DoesOverridePathProperty(path));
    EXPECT_FALSE(style.RevertPathProperty(path, true)) << "there is none any more";
    EXPECT_FALSE(style.RevertPathProperty({Outline, Width}, true)) << "there is no substyle";
}

TEST_F(StyleMutation, AParentOnTheWayOrOfTheOwnerIsSomethingToInheritFrom)
{
    Style parent, owner, style(nullptr, StyleCategoryName);
    const PropertyPath path{Character, Fill, Color};
    Style& character = *GetOrCreateSubstyle(style, Character);
    Style& fill = *GetOrCreateSubstyle(character, Fill);
    for (Style* inheriting : {&style, &owner, &character, &fill})
    {
        style.SetPathProperty(path, Any(L"red"));
        style.SetOwner(&owner, Nest);
        EXPECT_FALSE(style.RevertPathProperty(path, false));
        inheriting->SetParent(&parent);
        EXPECT_TRUE(style.RevertPathProperty(path, false));
        inheriting->SetParent(nullptr);
        style.SetOwner(nullptr, PropertyKey::Empty);
    }
    // Only the owner itself counts, not the owner's owner.
    Style top(&parent, StyleCategoryName);
    owner.SetOwner(&top, Nest);
    style.SetOwner(&owner, Nest);
    style.SetPathProperty(path, Any(L"red"));
    EXPECT_FALSE(style.RevertPathProperty(path, false));
    style.SetProperty(Note, Any(L"text"));
    EXPECT_FALSE(style.RevertPathProperty({Note}, false));
    owner.SetParent(&parent);
    EXPECT_TRUE(style.RevertPathProperty({Note}, false));
}

TEST_F(StyleMutation, CopyingAlongAPathTakesTheOwnValueOfTheSource)
{
    Style parent(nullptr, StyleCategoryName), source(&parent, StyleCategoryName), style(nullptr, StyleCategoryName);
    const PropertyPath path{Character, Fill, Color};
    source.SetPathProperty(path, Any(L"red"));
    style.SetPathProperty(path, &source);
    EXPECT_EQ(style.GetPathProperty(path).Get<VelString>(), VelString(L"red"));
    EXPECT_NE(style.GetSubstyle(Character, false), source.GetSubstyle(Character, false));
    parent.SetProperty(Note, Any(L"inherited"));
    style.SetProperty(Note, Any(L"own"));
    style.SetPathProperty({Note}, &source);
    EXPECT_FALSE(style.DoesOverrideProperty(Note)) << "what the source only inherits is not copied";
    style.SetPathProperty({Character}, &source);
    EXPECT_EQ(style.GetPathProperty(path).Get<VelString>(), VelString(L"red"));
    EXPECT_EQ(style.GetSubstyle(Character, false)->GetOwner(), &style);
}

TEST_F(StyleMutation, CopyingAlongAPathClearsWhatTheSourceLacks)
{
    Style source(nullptr, StyleCategoryName), style(nullptr, StyleCategoryName);
    style.SetPathProperty({Fill, Color}, Any(L"red"));
    style.SetPathProperty({Fill, Angle}, Any(1.0));
    GetOrCreateSubstyle(source, Fill);
    style.SetPathProperty({Fill, Color}, &source);
    EXPECT_FALSE(style.DoesOverridePathProperty({Fill, Color}));
    EXPECT_TRUE(style.DoesOverridePathProperty({Fill, Angle}));
}

TEST_F(StyleMutation, WhereTheSourceLacksASubstyleTheNextKeyOfThePathIsCleared)
{
    Style source(nullptr, StyleCategoryName), style(nullptr, StyleCategoryName);
    style.SetPathProperty({Character, Fill, Color}, Any(L"red"));
    style.SetPathProperty({Character, Font}, Any(L"Serif"));
    style.SetPathProperty({Character, Fill, Color}, &source);
    EXPECT_FALSE(style.DoesOverridePathProperty({Character, Fill})) << "the source has no character";
    EXPECT_TRUE(style.DoesOverridePathProperty({Character, Font}));
    style.SetPathProperty({Outline, Width}, &source);
    EXPECT_TRUE(style.DoesOverridePathProperty({Outline})) << "the way is made first";
    EXPECT_TRUE(style.GetSubstyle(Outline, false)->IsEmpty());
}

TEST_F(StyleMutation, ANullSourceCopiesNothing)
{
    Style style(nullptr, StyleCategoryName);
    style.SetProperty(Note, Any(L"text"));
    const Style* none = nullptr;
    style.SetPathProperty({Note}, none);
    style.SetProperties({{Note}, {Fill, Color}}, none);
    EXPECT_EQ(OwnText(style, Note), VelString(L"text"));
    EXPECT_FALSE(style.DoesOverrideProperty(Fill));
}

TEST_F(StyleMutation, SeveralPathsAreCopiedEachFromTheStart)
{
    Style source(nullptr, StyleCategoryName), style(nullptr, StyleCategoryName);
    source.SetPathProperty({Character, Fill, Color}, Any(L"red"));
    source.SetPathProperty({Outline, Width}, Any(3.0));
    source.SetProperty(Note, Any(L"text"));
    style.SetProperty(Number, Any(9.0));
    style.SetProperties(
        {{Character, Fill, Color}, {}, {Note, Color}, {Key(L"unknown"), Color}, {Number}, {Note}, {Outline, Width}},
        &source);
    EXPECT_EQ(style.GetPathProperty({Character, Fill, Color}).Get<VelString>(), VelString(L"red"));
    EXPECT_EQ(style.GetPathProperty({Outline, Width}).Get<double>(), 3.0);
    EXPECT_EQ(OwnText(style, Note), VelString(L"text"));
    EXPECT_FALSE(style.DoesOverrideProperty(Number));
}

TEST_F(StyleMutation, AValueIsSetToItself)
{
    Style style(nullptr, StyleCategoryName);
    style.SetProperty(Note, Any(L"a text that is kept on the heap"));
    style.SetProperty(Note, style.GetProperty(Note));
    EXPECT_EQ(OwnText(style, Note), VelString(L"a text that is kept on the heap"));
    const Any copy(style.GetProperty(Note));
    style.SetProperty(Note, copy);
    EXPECT_EQ(OwnText(style, Note), VelString(L"a text that is kept on the heap"));
}

TEST_F(StyleMutation, ASubstyleIsSetToItself)
{
    Style style(nullptr, StyleCategoryName);
    style.SetPathProperty({Character, Fill, Color}, Any(L"red"));
    const auto expectWhole = [&] {
        const Style* character = style.GetSubstyle(Character, false);
        ASSERT_NE(character, nullptr);
        EXPECT_EQ(character->GetOwner(), &style);
        EXPECT_EQ(style.GetPathProperty({Character, Fill, Color}).Get<VelString>(), VelString(L"red"));
    };
    style.SetProperty(Character, style.GetProperty(Character));
    expectWhole();
    const Any value(style.GetProperty(Character));
    style.SetProperty(Character, value);
    expectWhole();
    style.SetProperty(Character, Any(style.GetProperty(Character)));
    expectWhole();
    style.SetSubstyle(Character, style.GetSubstyle(Character, false));
    expectWhole();
    style.SetPathSubstyle({Character}, style.GetSubstyle(Character, false));
    expectWhole();
    style.SetPathProperty({Character}, &style);
    expectWhole();
    style.SetPathProperty({Character, Fill, Color}, &style);
    expectWhole();
}

TEST_F(StyleMutation, ASubstyleIsReplacedByASubstyleInsideIt)
{
    for (const bool byCopy : {false, true})
    {
        Style style(nullptr, Nest);
        style.SetPathProperty({Nest, Nest, Note}, Any(L"inner"));
        style.SetPathProperty({Nest, Note}, Any(L"outer"));
        const Style* inner = style.GetSubstyle(Nest, false)->GetSubstyle(Nest, false);
        if (byCopy)
        {
            const Any value(inner);
            style.SetProperty(Nest, value);
        }
        else
        {
            style.SetSubstyle(Nest, inner);
        }
        EXPECT_EQ(style.GetPathProperty({Nest, Note}).Get<VelString>(), VelString(L"inner"));
        EXPECT_FALSE(style.DoesOverridePathProperty({Nest, Nest}));
        EXPECT_EQ(style.GetSubstyle(Nest, false)->GetOwner(), &style);
    }
}

TEST_F(StyleMutation, AStyleIsStoredInItself)
{
    for (const bool byCopy : {false, true})
    {
        Style style(nullptr, Nest);
        style.SetProperty(Note, Any(L"outer"));
        style.SetPathProperty({Nest, Note}, Any(L"inner"));
        if (byCopy)
        {
            const Any value(&style);
            style.SetProperty(Nest, value);
            EXPECT_EQ(style.GetPathProperty({Nest, Note}).Get<VelString>(), VelString(L"outer"));
        }
        else
        {
            style.SetSubstyle(Nest, &style);
            EXPECT_EQ(style.GetPathProperty({Nest, Note}).Get<VelString>(), VelString(L"outer"));
            EXPECT_EQ(style.GetPathProperty({Nest, Nest, Note}).Get<VelString>(), VelString(L"inner"));
        }
        EXPECT_EQ(OwnText(style, Note), VelString(L"outer"));
    }
}

TEST_F(StyleMutation, AListIsReplacedByElementsOfItself)
{
    for (const bool byCopy : {false, true})
    {
        Style style(nullptr, StyleCategoryName), element(nullptr, Stop);
        for (const wchar_t* color : {L"red", L"green", L"blue"})
        {
            element.SetProperty(Color, Any(color));
            std::vector<Style*> list = ListOf(style, Stops);
            list.push_back(&element);
            style.SetProperty(Stops, Any(list));
        }
        std::vector<Style*> list = ListOf(style, Stops);
        ASSERT_EQ(list.size(), 3u);
        const std::vector<Style*> reversed(list.rbegin(), list.rend());
        if (byCopy)
        {
            const Any value(reversed);
            style.SetProperty(Stops, value);
            style.SetProperty(Stops, style.GetProperty(Stops));
        }
        else
        {
            style.SetProperty(Stops, Any(reversed));
            style.SetProperty(Stops, Any(style.GetProperty(Stops)));
        }
        list = ListOf(style, Stops);
        ASSERT_EQ(list.size(), 3u);
        EXPECT_EQ(OwnText(*list[0], Color), VelString(L"blue"));
        EXPECT_EQ(OwnText(*list[1], Color), VelString(L"green"));
        EXPECT_EQ(OwnText(*list[2], Color), VelString(L"red"));
    }
}

TEST_F(StyleMutation, AnElementOfAListBecomesASubstyleAndASubstyleAnElement)
{
    Style style(nullptr, Nest), element(nullptr, Nest);
    element.SetProperty(Note, Any(L"element"));
    style.SetProperty(Nests, Any(std::vector<Style*>{&element}));
    style.SetSubstyle(Nest, ListOf(style, Nests)[0]);
    EXPECT_EQ(style.GetPathProperty({Nest, Note}).Get<VelString>(), VelString(L"element"));
    // A list of one element that is replaced by the substyle inside that element.
    ListOf(style, Nests)[0]->SetPathProperty({Nest, Note}, Any(L"inside"));
    const Any value(std::vector<Style*>{ListOf(style, Nests)[0]->GetSubstyle(Nest, false)});
    style.SetProperty(Nests, value);
    EXPECT_EQ(OwnText(*ListOf(style, Nests)[0], Note), VelString(L"inside"));
}

TEST_F(StyleMutation, AKeyThatChangesUnderWayIsUsedAsItWasGiven)
{
    PropertyKey key = Choosy;
    Style probe(nullptr, Probes);
    probe.SetProperty(Choosy, Any(L"first"));
    choosy->onCall = [&](const std::string& operation) {
        if (operation == "destroy")
        {
            key = PropertyKey::Empty; // what the caller passed changes under way
        }
    };
    const Any second(L"second");
    probe.SetProperty(key, second);
    EXPECT_EQ(OwnText(probe, Choosy), VelString(L"second"));
    key = Choosy;
    EXPECT_TRUE(probe.ClearProperty(key));
    EXPECT_TRUE(probe.IsEmpty());
}

TEST_F(StyleMutation, ADefinitionThatThrowsAlongAPathLeavesTheSubstylesThatWereMade)
{
    const PropertyKey probes = Key(L"holder of probes");
    Manager().RegisterCategory(probes, VelString(), false, false);
    RegisterSubstyleSet(probes, Probes);
    Style style(nullptr, probes);
    failing = {"0 move"};
    EXPECT_EQ(ThrownBy([&] { style.SetPathProperty({Probes, Keys[0]}, Any(L"text")); }), "0 move");
    EXPECT_TRUE(style.DoesOverrideProperty(Probes));
    EXPECT_TRUE(style.GetSubstyle(Probes, false)->IsEmpty());
    failing.clear();
    style.SetPathProperty({Probes, Keys[0]}, Any(L"text"));
    failing = {"0 move"};
    Style copy(nullptr, probes);
    EXPECT_EQ(ThrownBy([&] { copy = style; }), "0 move") << "a copy of a substyle asks the definitions inside it";
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_EQ(ThrownBy([&] { copy.SetSubstyle(Probes, style.GetSubstyle(Probes, false)); }), "0 move");
    EXPECT_TRUE(copy.IsEmpty());
    failing = {"0 destroy"};
    style.ClearAllProperties();
    EXPECT_TRUE(style.IsEmpty()) << "the destructor of the substyle kept the exception to itself";
}

} // namespace Styles::Testing
