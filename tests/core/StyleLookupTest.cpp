// Looking values up: own, inherited from parents, default; along paths.

#include "support/ProbeFixture.h"
#include "support/TestSheet.h"

#include <gmock/gmock.h>

#include <deque>
#include <memory>
#include <thread>

namespace Styles::Testing
{

class StyleLookup : public ProbeFixture
{
protected:
    static const Any& DefaultOf(const PropertyKey& category, const PropertyKey& key)
    {
        return Manager().GetDefaultValue(category, key);
    }

    /// What each of the forms answers for a key that only has a default.
    static void ExpectOnlyTheDefault(const Style& style, const PropertyKey& category, const PropertyKey& key)
    {
        EXPECT_EQ(&style.GetProperty(key), &DefaultOf(category, key));
        EXPECT_EQ(&style.GetInheritedProperty(key), &DefaultOf(category, key));
        Any out(L"untouched");
        EXPECT_FALSE(style.GetProperty(key, out));
        EXPECT_FALSE(style.GetInheritedProperty(key, out));
        EXPECT_FALSE(style.GetOverrideProperty(key, out));
        EXPECT_EQ(out.Get<VelString>(), VelString(L"untouched"));
    }
};

TEST_F(StyleLookup, AStyleAloneAnswersTheVeryDefaultObjectOfItsCategory)
{
    const Style style(nullptr, StyleCategoryName);
    ExpectOnlyTheDefault(style, StyleCategoryName, Note);
    ExpectOnlyTheDefault(style, StyleCategoryName, Number);
    ExpectOnlyTheDefault(style, StyleCategoryName, Fill);
}

TEST_F(StyleLookup, TheOwnValueComesFirst)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    parent.SetProperty(Note, Any(L"of the parent"));
    style.SetProperty(Note, Any(L"own"));
    EXPECT_EQ(EffectiveText(style, Note), VelString(L"own"));
    EXPECT_EQ(style.GetInheritedProperty(Note).Get<VelString>(), VelString(L"of the parent"));
    Any out;
    EXPECT_TRUE(style.GetProperty(Note, out));
    EXPECT_EQ(out.Get<VelString>(), VelString(L"own"));
    EXPECT_TRUE(style.GetInheritedProperty(Note, out));
    EXPECT_EQ(out.Get<VelString>(), VelString(L"of the parent"));
    EXPECT_TRUE(style.GetOverrideProperty(Note, out));
    EXPECT_EQ(out.Get<VelString>(), VelString(L"own"));
    EXPECT_TRUE(style.DoesOverrideProperty(Note));
    EXPECT_FALSE(style.DoesOverrideProperty(Number));
}

TEST_F(StyleLookup, TheNearestParentWithAValueSuppliesIt)
{
    Style a(nullptr, StyleCategoryName), b(&a, StyleCategoryName), c(&b, StyleCategoryName), d(&c, StyleCategoryName);
    a.SetProperty(Note, Any(L"a"));
    b.SetProperty(Note, Any(L"b"));
    a.SetProperty(Number, Any(4.0));
    EXPECT_EQ(EffectiveText(d, Note), VelString(L"b"));
    EXPECT_EQ(EffectiveNumber(d, Number), 4.0);
    EXPECT_EQ(&d.GetProperty(Note), &b.GetProperty(Note)) << "the value object itself";
    Any out;
    EXPECT_FALSE(d.GetOverrideProperty(Note, out));
    EXPECT_FALSE(d.DoesOverrideProperty(Note));
}

TEST_F(StyleLookup, AValueEqualToTheDefaultIsNoDefault)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    parent.SetProperty(Number, Any(0.25));
    Any out;
    EXPECT_TRUE(style.GetProperty(Number, out));
    EXPECT_EQ(out.Get<double>(), 0.25);
    EXPECT_TRUE(style.GetInheritedProperty(Number, out));
}

TEST_F(StyleLookup, TheDefaultComesFromTheCategoryInWhichTheWalkEnds)
{
    Style parent(nullptr, Outline), style(&parent, Fill);
    EXPECT_EQ(&style.GetProperty(Color), &DefaultOf(Outline, Color));
    Any out;
    EXPECT_TRUE(style.GetProperty(Color, out)) << "not the default object of its own category";
    EXPECT_EQ(out.Get<VelString>(), VelString(L"black"));
}

TEST_F(StyleLookup, AKeyThatTheCategoryDoesNotKnow)
{
    const Style style(nullptr, StyleCategoryName);
    const PropertyKey unknown = Key(L"unknown");
    Any out(1.0);
    EXPECT_FALSE(style.GetProperty(unknown, out));
    EXPECT_EQ(ThrownBy([&] { static_cast<void>(style.GetProperty(unknown)); }),
              "Source: StyleCategory::GetDefaultValue.\nMissing default property: unknown");
    EXPECT_THROW(static_cast<void>(style.GetInheritedProperty(unknown)), std::logic_error);
    EXPECT_THROW(style.GetInheritedProperty(unknown, out), std::logic_error) << "this form does not ask first";
    EXPECT_THROW(static_cast<void>(style.GetSubstyle(unknown, true)), std::logic_error);
    EXPECT_EQ(style.GetSubstyle(unknown, false), nullptr);
    EXPECT_EQ(out.Get<double>(), 1.0);
}

TEST_F(StyleLookup, AnUnknownKeyIsInheritedWhereAParentHasIt)
{
    Style parent(nullptr, Fill), style(&parent, Outline);
    parent.SetProperty(Angle, Any(3.0));
    EXPECT_EQ(EffectiveNumber(style, Angle), 3.0);
    Any out(1.0);
    EXPECT_FALSE(style.GetProperty(Angle, out)) << "the definition is asked first";
    EXPECT_TRUE(style.GetInheritedProperty(Angle, out));
    EXPECT_EQ(out.Get<double>(), 3.0);
}

TEST_F(StyleLookup, WithoutCategoryAllKeysAreUnknown)
{
    Style parent, style;
    style.SetParent(&parent);
    Any out(1.0);
    EXPECT_FALSE(style.GetProperty(Note, out));
    EXPECT_FALSE(style.GetInheritedProperty(Note, out));
    EXPECT_FALSE(style.GetOverrideProperty(Note, out));
    EXPECT_THROW(static_cast<void>(style.GetProperty(Note)), std::logic_error);
    EXPECT_THROW(static_cast<void>(style.GetInheritedProperty(Note)), std::logic_error);
    EXPECT_THROW(static_cast<void>(style.GetSubstyle(Fill, true)), std::logic_error);
    EXPECT_THROW(static_cast<void>(style.GetPathProperty({Note})), std::exception);
    EXPECT_THROW(static_cast<void>(style.GetPathProperty({Fill, Color})), std::exception);
    EXPECT_EQ(style.GetSubstyleAndCreateIfMissing(Fill, Fill), nullptr);
    EXPECT_EQ(out.Get<double>(), 1.0);
}

TEST_F(StyleLookup, OwnAndEffectiveSubstyles)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    Style& fill = *GetOrCreateSubstyle(parent, Fill);
    EXPECT_EQ(style.GetSubstyle(Fill, false), nullptr);
    EXPECT_EQ(style.GetSubstyle(Fill, true), &fill);
    EXPECT_EQ(parent.GetSubstyle(Fill, false), &fill);
    style.SetProperty(Note, Any(L"text"));
    EXPECT_EQ(style.GetSubstyle(Note, false), nullptr);
    EXPECT_THROW(static_cast<void>(style.GetSubstyle(Note, true)), std::bad_cast);
    EXPECT_THROW(static_cast<void>(style.GetSubstyle(Number, true)), std::bad_cast);
    EXPECT_NO_THROW(static_cast<void>(style.GetSubstyle(Outline, true)));
}

TEST_F(StyleLookup, ADefaultSubstyleIsFoundAsInherited)
{
    const PropertyKey key = Key(L"shaded");
    auto* substyle = new Style(nullptr, Fill);
    Manager().RegisterProperty(StyleCategoryName, key, new StyleSetProperty(nullptr, Fill, substyle, 0));
    const Style style(nullptr, StyleCategoryName);
    EXPECT_EQ(style.GetSubstyle(key, true), substyle);
    EXPECT_EQ(style.GetSubstyle(key, false), nullptr);
    ExpectOnlyTheDefault(style, StyleCategoryName, key);
}

TEST_F(StyleLookup, AMissingSubstyleIsCreated)
{
    Style style(nullptr, StyleCategoryName);
    Style* fill = style.GetSubstyleAndCreateIfMissing(Fill, Fill);
    ASSERT_NE(fill, nullptr);
    EXPECT_EQ(fill, style.GetSubstyle(Fill, false));
    EXPECT_EQ(fill->GetCategoryName(), Fill);
    EXPECT_EQ(fill->GetOwner(), &style);
    EXPECT_EQ(fill->GetOwnersSubstylePropertyName(), Fill);
    EXPECT_EQ(fill->GetParent(), nullptr);
    EXPECT_TRUE(fill->IsEmpty());
    EXPECT_EQ(style.GetSubstyleAndCreateIfMissing(Fill, Outline), fill) << "one that is there stays as it is";
    EXPECT_EQ(fill->GetCategoryName(), Fill);
    EXPECT_EQ(style.GetSubstyleAndCreateIfMissing(Outline, Character)->GetCategoryName(), Character);
    EXPECT_EQ(style.GetSubstyleAndCreateIfMissing(Character, Key(L"unknown"))->GetCategory(), nullptr);
}

TEST_F(StyleLookup, NoSubstyleIsCreatedUnderAKeyThatIsNoSubstyleProperty)
{
    Style style(nullptr, StyleCategoryName);
    style.SetProperty(Note, Any(L"text"));
    for (const PropertyKey& key : {Note, Number, Stops, Key(L"unknown")})
    {
        EXPECT_EQ(style.GetSubstyleAndCreateIfMissing(key, Fill), nullptr);
    }
    EXPECT_EQ(OwnText(style, Note), VelString(L"text"));
    EXPECT_FALSE(style.DoesOverrideProperty(Number));
    EXPECT_FALSE(style.DoesOverrideProperty(Stops));
}

TEST_F(StyleLookup, APathLeadsThroughOwnSubstyles)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    style.SetPathProperty({Character, Fill, Color}, Any(L"red"));
    parent.SetPathProperty({Character, Fill, Skew}, Any(2.0));
    parent.SetPathProperty({Outline, Width}, Any(9.0));
    parent.SetProperty(Note, Any(L"inherited"));
    EXPECT_EQ(style.GetPathProperty({Character, Fill, Color}).Get<VelString>(), VelString(L"red"));
    EXPECT_EQ(style.GetPathProperty({Character, Fill, Skew}).Get<double>(), 2.0) << "through the owner";
    EXPECT_EQ(style.GetPathProperty({Note}).Get<VelString>(), VelString(L"inherited"));
    EXPECT_EQ(&style.GetPathProperty({Outline, Width}), &DefaultOf(Outline, Width))
        << "an inherited substyle is no step of a path";
}

TEST_F(StyleLookup, BehindAMissingSubstyleThePathGoesOnThroughTheCategories)
{
    Style style(nullptr, StyleCategoryName);
    EXPECT_EQ(&style.GetPathProperty({Fill, Color}), &DefaultOf(Fill, Color));
    EXPECT_EQ(&style.GetPathProperty({Outline, Color}), &DefaultOf(Outline, Color));
    EXPECT_EQ(&style.GetPathProperty({Character, Fill, Color}), &DefaultOf(Fill, Color));
    EXPECT_EQ(&style.GetPathProperty({Stops, Color}), &DefaultOf(Stop, Color)) << "also through the elements of lists";
    EXPECT_EQ(&style.GetPathProperty({Key(L"unknown"), Note}), &DefaultOf(StyleCategoryName, Note))
        << "a step without definition stays in the category";
}

TEST_F(StyleLookup, BehindALaterMissingSubstyleThePathGoesOnFromTheStyleReached)
{
    Style style(nullptr, StyleCategoryName);
    GetOrCreateSubstyle(style, Character);
    // The base category, too, has a substyle property "fill"; the one of "character" counts.
    EXPECT_EQ(&style.GetPathProperty({Character, Fill, Color}), &DefaultOf(Fill, Color));
    const PropertyKey ink = Key(L"ink");
    Manager().RegisterProperty(Character, ink, new StyleSetProperty(nullptr, Outline, nullptr, 0));
    EXPECT_EQ(&style.GetPathProperty({Character, ink, Width}), &DefaultOf(Outline, Width));
}

TEST_F(StyleLookup, APathThatIsEmptyOrLeadsToNoCategoryThrows)
{
    const Style style(nullptr, StyleCategoryName);
    EXPECT_THROW(static_cast<void>(style.GetPathProperty({})), std::exception);
    EXPECT_THROW(static_cast<void>(style.GetPathProperty({Fill, Key(L"unknown")})), std::logic_error);
    EXPECT_THROW(static_cast<void>(style.GetPathProperty({Note, Color})), std::logic_error)
        << "values without styles have no element category";
    const PropertyKey lost = Key(L"lost");
    Manager().RegisterProperty(StyleCategoryName, lost, new StyleSetProperty(nullptr, Key(L"gone"), nullptr, 0));
    EXPECT_EQ(ThrownBy([&] {
                  static_cast<void>(style.GetPathProperty({lost, Color}));
              }),
              "Source: StyleManager::GetCategory.\nMissing category: gone");
}

TEST_F(StyleLookup, OwnValuesAtTheEndOfPaths)
{
    Style style(nullptr, StyleCategoryName);
    style.SetPathProperty({Character, Fill, Color}, Any(L"red"));
    EXPECT_TRUE(style.DoesOverridePathProperty({Character}));
    EXPECT_TRUE(style.DoesOverridePathProperty({Character, Fill}));
    EXPECT_TRUE(style.DoesOverridePathProperty({Character, Fill, Color}));
    EXPECT_FALSE(style.DoesOverridePathProperty({Character, Fill, Angle}));
    EXPECT_FALSE(style.DoesOverridePathProperty({Fill, Color}));
    EXPECT_FALSE(style.DoesOverridePathProperty({Fill}));
    EXPECT_FALSE(style.DoesOverridePathProperty({}));
}

TEST_F(StyleLookup, AStarStandsForTheSubstyleAsAWhole)
{
    const PropertyKey star = Key(L"*");
    Style parent(nullptr, Fill), style(nullptr, StyleCategoryName);
    EXPECT_FALSE(style.DoesOverridePathProperty({Fill, star})) << "there is none";
    EXPECT_FALSE(style.DoesOverridePathProperty({star}));
    Style& fill = *GetOrCreateSubstyle(style, Fill);
    EXPECT_FALSE(style.DoesOverridePathProperty({Fill, star})) << "it is empty";
    fill.SetParent(&parent);
    EXPECT_TRUE(style.DoesOverridePathProperty({Fill, star})) << "it has a parent, although it is empty";
    fill.SetParent(nullptr);
    fill.SetProperty(Angle, Any(1.0));
    EXPECT_TRUE(style.DoesOverridePathProperty({Fill, star}));
    EXPECT_TRUE(style.DoesOverridePathProperty({star}));

    Style& inner = *GetOrCreateSubstyle(*GetOrCreateSubstyle(style, Character), Fill);
    EXPECT_FALSE(style.DoesOverridePathProperty({Character, star})) << "it holds only empty substyles";
    inner.SetParent(&parent);
    EXPECT_TRUE(style.DoesOverridePathProperty({Character, star})) << "a substyle in it has a parent";
}

TEST_F(StyleLookup, ALookUpOnParentsThatCloseOnThemselvesEndsInTheDefault)
{
    for (const std::size_t length : {1u, 2u, 3u, 10u})
    {
        for (std::size_t entry = 0; entry < length; ++entry)
        {
            SCOPED_TRACE(std::to_string(length) + " styles, back to " + std::to_string(entry));
            std::deque<Style> chain(length);
            for (std::size_t index = 0; index < length; ++index)
            {
                chain[index].SetCategory(StyleCategoryName);
                chain[index].SetParent(&chain[index + 1 < length ? index + 1 : entry]);
            }
            chain.back().SetProperty(Number, Any(6.0));
            for (const Style& style : chain)
            {
                Any out;
                EXPECT_EQ(&style.GetProperty(Note), &DefaultOf(StyleCategoryName, Note));
                EXPECT_FALSE(style.GetProperty(Note, out));
                EXPECT_EQ(EffectiveNumber(style, Number), 6.0) << "every style is met";
                EXPECT_EQ(style.GetSubstyle(Fill, true), nullptr);
                EXPECT_EQ(&style.GetPathProperty({Note}), &DefaultOf(StyleCategoryName, Note));
            }
            EXPECT_EQ(chain.back().GetParent(), &chain[entry]) << "the links stay";
        }
    }
}

TEST_F(StyleLookup, ValuesAndDefaultsAreReachedAtAnyDistance)
{
    std::deque<Style> chain;
    chain.emplace_back(nullptr, StyleCategoryName).SetProperty(Note, Any(L"at the root"));
    for (std::size_t parents = 1; parents < 200; ++parents)
    {
        const Style& style = chain.emplace_back(&chain.back(), StyleCategoryName);
        EXPECT_EQ(EffectiveText(style, Note), VelString(L"at the root")) << parents;
        EXPECT_EQ(&style.GetProperty(Number), &DefaultOf(StyleCategoryName, Number)) << parents;
        EXPECT_EQ(&style.GetInheritedProperty(Note), &chain.front().GetProperty(Note)) << parents;
    }
}

TEST_F(StyleLookup, ALookUpOnManyParentsThatCloseOnThemselvesMeetsAllOfThem)
{
    for (const std::size_t length : {63u, 64u, 65u, 66u, 150u})
    {
        for (const std::size_t entry : {std::size_t{0}, std::size_t{1}, length / 2, length - 1})
        {
            SCOPED_TRACE(std::to_string(length) + " styles, back to " + std::to_string(entry));
            std::deque<Style> chain(length);
            for (std::size_t index = 0; index < length; ++index)
            {
                chain[index].SetCategory(StyleCategoryName);
                chain[index].SetParent(&chain[index + 1 < length ? index + 1 : entry]);
            }
            chain.back().SetProperty(Number, Any(6.0));
            chain[entry].SetCategory(Outline); // which knows neither
            for (std::size_t index = 0; index < length; ++index)
            {
                EXPECT_EQ(EffectiveNumber(chain[index], Number), 6.0) << index;
                if (index != entry)
                {
                    EXPECT_EQ(&chain[index].GetProperty(Note), &DefaultOf(StyleCategoryName, Note))
                        << "the default of the style that is asked";
                }
            }
        }
    }
}

TEST_F(StyleLookup, AChainOfAMillionParentsIsResolvedCopiedComparedAndDestroyed)
{
    std::deque<Style> chain;
    chain.emplace_back(nullptr, StyleCategoryName);
    const std::shared_ptr<const StyleCategory> category = chain.front().GetCategory();
    for (std::size_t index = 1; index < 1'000'000; ++index)
    {
        chain.emplace_back(chain.back());
        chain.back().SetParent(&chain[index - 1]);
    }
    chain.front().SetProperty(Note, Any(L"far away"));
    GetOrCreateSubstyle(chain.front(), Fill)->SetProperty(Angle, Any(5.0));
    const Style& last = chain.back();
    EXPECT_EQ(EffectiveText(last, Note), VelString(L"far away"));
    EXPECT_EQ(&last.GetProperty(Number), &DefaultOf(StyleCategoryName, Number));
    Style copy(last);
    EXPECT_TRUE(copy == last);
    EXPECT_FALSE(copy < last);
    EXPECT_EQ(EffectiveText(copy, Note), VelString(L"far away"));
    EXPECT_EQ(EffectiveNumber(*GetOrCreateSubstyle(copy, Fill), Angle), 5.0) << "through the owner";
    chain.front().SetParent(&chain.back());
    EXPECT_EQ(&last.GetProperty(Number), &DefaultOf(StyleCategoryName, Number)) << "closed on itself";
    chain.clear();
}

TEST_F(StyleLookup, ThreadsReadOneSheetAtTheSameTime)
{
    TestSheet sheet;
    Style* base = sheet.Add(L"base", StyleCategoryName);
    base->SetProperty(Note, Any(L"shared text"));
    base->SetPathProperty({Character, Fill, Color}, Any(L"red"));
    Style* derived = sheet.Add(L"derived", StyleCategoryName, base);
    GetOrCreateSubstyle(*GetOrCreateSubstyle(*derived, Character), Fill);
    std::vector<std::thread> threads;
    std::vector<int> found(8);
    for (int& count : found)
    {
        threads.emplace_back([&] {
            for (int turn = 0; turn < 200; ++turn)
            {
                const Style* style = sheet.Get(L"Derived");
                const Style copy(*style);
                Any out;
                count += EffectiveText(*style, Note) == VelString(L"shared text") ? 1 : 0;
                count += style->GetPathProperty({Character, Fill, Color}).Get<VelString>() == VelString(L"red") ? 1 : 0;
                count += copy == *style ? 1 : 0;
                count += style->GetProperty(Number, out) ? 0 : 1;
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_THAT(found, ::testing::Each(800));
}

} // namespace Styles::Testing
