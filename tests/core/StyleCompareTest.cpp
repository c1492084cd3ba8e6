// Equality and the orders of styles.

#include "core/StyleSuite.h"

#include <functional>
#include <memory>
#include <random>

namespace Styles::Suites
{

TEST_F(Style, StylesWithEqualValuesAreEqualWhoeverOwnsThem)
{
    Styles::Style parent, owner, a(&parent, StyleCategoryName), b(&parent, StyleCategoryName);
    EXPECT_TRUE(a == b);
    for (Styles::Style* style : {&a, &b})
    {
        style->SetProperty(Note, Any(L"text"));
        Substyle(*style, Fill).SetProperty(Angle, Any(2.0));
        style->SetExternalID(VelString(L"id"));
        style->SetExternalName(VelString(L"name"));
    }
    b.SetOwner(&owner, Outline);
    EXPECT_TRUE(a == b);
    EXPECT_FALSE(a != b);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(b < a);
    Substyle(b, Fill).SetProperty(Angle, Any(3.0));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
    EXPECT_TRUE(a < b) << "the substyles decide";
    EXPECT_FALSE(b < a);
}

TEST_F(Style, StylesOfDifferentCategoriesAreUnequalAndOrderedByTheirCategories)
{
    Styles::Style a(nullptr, Fill), b(nullptr, Outline), none;
    EXPECT_FALSE(a == b);
    EXPECT_EQ(a < b, std::less<const StyleCategory*>()(a.GetCategory().get(), b.GetCategory().get()));
    EXPECT_NE(a < b, b < a);
    EXPECT_TRUE(none < a);
    EXPECT_FALSE(a < none);
    EXPECT_TRUE(none == Styles::Style());
}

TEST_F(Style, TheCategoryObjectAndNotItsNameIsCompared)
{
    const Styles::Style before(nullptr, Stop);
    Manager().DeregisterCategory(Stop);
    Manager().RegisterCategory(Stop, VelString(L"Gradient stop"), false, false);
    const Styles::Style after(nullptr, Stop);
    EXPECT_FALSE(before == after);
    EXPECT_NE(before < after, after < before);
}

TEST_F(Style, StylesWithDifferentParentsAreUnequalAndOrderedByTheAddressesOfTheParents)
{
    Styles::Style parents[2];
    Styles::Style a(&parents[0], Fill), b(&parents[1], Fill), none(nullptr, Fill);
    b.SetExternalID(VelString(L"counts less than the parent"));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    EXPECT_TRUE(none < a);
}

TEST_F(Style, ExternalIdentityAndThenNameAreComparedByCase)
{
    Styles::Style a(nullptr, Fill), b(nullptr, Fill);
    a.SetExternalID(VelString(L"ID"));
    b.SetExternalID(VelString(L"id"));
    a.SetExternalName(VelString(L"z"));
    b.SetExternalName(VelString(L"a"));
    a.SetProperty(Angle, Any(1.0));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
    b.SetExternalID(VelString(L"ID"));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(b < a) << "by the names";
    EXPECT_FALSE(a < b);
    b.SetExternalName(VelString(L"z"));
    EXPECT_TRUE(b < a) << "by the number of values";
}

TEST_F(Style, TheStyleWithFewerValuesIsLess)
{
    Styles::Style a(nullptr, Probes), b(nullptr, Probes);
    a.SetProperty(Keys[2], Any(L"z"));
    b.SetProperty(Keys[0], Any(L"a"));
    b.SetProperty(Keys[1], Any(L"a"));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
}

TEST_F(Style, StylesWithDifferentKeysAreOrderedByTheFirstKeyThatDiffers)
{
    Styles::Style a(nullptr, Probes), b(nullptr, Probes);
    a.SetProperty(Keys[0], Any(L"same"));
    b.SetProperty(Keys[0], Any(L"same"));
    a.SetProperty(Keys[1], Any(L"z"));
    b.SetProperty(Keys[2], Any(L"a"));
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
}

TEST_F(Style, TheFirstValueThatDiffersDecidesTheOrder)
{
    Styles::Style a(nullptr, Probes), b(nullptr, Probes);
    SetAll(a, L"m");
    SetAll(b, L"m");
    a.SetProperty(Keys[1], Any(L"a"));
    a.SetProperty(Keys[2], Any(L"z"));
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
}

TEST_F(Style, ValuesWithoutDefinitionAreUnequalButNotOrdered)
{
    Styles::Style a(nullptr, Fill), b(nullptr, Fill);
    for (Styles::Style* style : {&a, &b})
    {
        style->SetProperty(Angle, Any(1.0));
        style->SetCategory(Outline);
    }
    EXPECT_FALSE(a == b);
    EXPECT_TRUE(a != b);
    EXPECT_FALSE(a == a);
    EXPECT_FALSE(a < b);
    EXPECT_FALSE(b < a);
}

TEST_F(Style, TheOrderGoesOnBehindAValueWithoutDefinition)
{
    const PropertyKey category = Key(L"only the last probe");
    Manager().RegisterCategory(category, VelString(), false, false);
    Manager().RegisterProperty(category, Keys[2], Testing::MakeTextProperty());
    Styles::Style a(nullptr, Probes), b(nullptr, Probes);
    SetAll(a, L"same");
    SetAll(b, L"same");
    a.SetProperty(Keys[0], Any(L"z"));
    a.SetProperty(Keys[2], Any(L"a"));
    EXPECT_FALSE(a < b);
    a.SetCategory(category);
    b.SetCategory(category);
    EXPECT_TRUE(a < b);
    EXPECT_FALSE(b < a);
}

TEST_F(Style, TheOrderIsAStrictWeakOne)
{
    std::mt19937 random(20);
    const auto oneOf = [&random](std::size_t count) { return random() % count; };
    Styles::Style parents[2];
    std::vector<std::unique_ptr<Styles::Style>> styles;
    for (int count = 0; count < 24; ++count)
    {
        auto style = std::make_unique<Styles::Style>(oneOf(3) == 0 ? &parents[oneOf(2)] : nullptr,
                                                     oneOf(4) == 0 ? Fill : Probes);
        for (const PropertyKey& key : Keys)
        {
            if (oneOf(2) == 0)
            {
                style->SetProperty(key, Any(oneOf(2) == 0 ? L"a" : L"b"));
            }
        }
        if (oneOf(5) == 0)
        {
            style->SetExternalID(VelString(oneOf(2) == 0 ? L"x" : L"y"));
        }
        styles.push_back(std::move(style));
    }
    for (const auto& a : styles)
    {
        EXPECT_FALSE(*a < *a);
        for (const auto& b : styles)
        {
            EXPECT_FALSE(*a < *b && *b < *a);
            EXPECT_EQ(*a == *b, !(*a < *b) && !(*b < *a));
            for (const auto& c : styles)
            {
                EXPECT_FALSE(*a < *b && *b < *c && !(*a < *c));
            }
        }
    }
}

namespace
{

/// Two equal substyles whose owners inherit from styles with different substyles.
struct EqualSubstyles
{
    EqualSubstyles(const PropertyKey& key, const PropertyKey& otherKey)
    {
        for (std::size_t index = 0; index < 2; ++index)
        {
            const PropertyKey& place = index == 0 ? key : otherKey;
            GetOrCreateSubstyle(sources[index], key);
            GetOrCreateSubstyle(sources[index], otherKey);
            owners[index].SetParent(&sources[index]);
            substyles[index] = GetOrCreateSubstyle(owners[index], place);
        }
    }

    [[nodiscard]] Styles::Style* Source(std::size_t index, const PropertyKey& key) const
    {
        return sources[index].GetSubstyle(key, false);
    }

    Styles::Style sources[2]{{nullptr, StyleCategoryName}, {nullptr, StyleCategoryName}};
    Styles::Style owners[2]{{nullptr, StyleCategoryName}, {nullptr, StyleCategoryName}};
    Styles::Style* substyles[2]{};
};

} // namespace

TEST_F(Style, EqualSubstylesAreOrderedByWhatTheirOwnersInherit)
{
    const EqualSubstyles made(Fill, Fill);
    const Styles::Style &a = *made.substyles[0], &b = *made.substyles[1];
    ASSERT_TRUE(a == b);
    const bool isLess = std::less<const Styles::Style*>()(made.Source(0, Fill), made.Source(1, Fill));
    EXPECT_EQ(a.substyle_less_including_owner_based_inheritance(b), isLess);
    EXPECT_EQ(b.substyle_less_including_owner_based_inheritance(a), !isLess);
    EXPECT_FALSE(a.substyle_less_including_owner_based_inheritance(a));
}

TEST_F(Style, OwnerBasedOrderUsesTheKeyOfTheLeftStyleOnBothSides)
{
    const PropertyKey other = Key(L"another fill");
    Manager().RegisterProperty(StyleCategoryName, other, new StyleSetProperty(nullptr, Fill, nullptr, 0));
    const EqualSubstyles made(Fill, other);
    const Styles::Style &a = *made.substyles[0], &b = *made.substyles[1];
    ASSERT_TRUE(a == b);
    const std::less<const Styles::Style*> less;
    EXPECT_EQ(a.substyle_less_including_owner_based_inheritance(b), less(made.Source(0, Fill), made.Source(1, Fill)));
    EXPECT_EQ(b.substyle_less_including_owner_based_inheritance(a), less(made.Source(1, other), made.Source(0, other)));
}

TEST_F(Style, EqualSubstylesWithParentsAreNotOrdered)
{
    const EqualSubstyles made(Fill, Fill);
    Styles::Style parent;
    made.substyles[0]->SetParent(&parent);
    made.substyles[1]->SetParent(&parent);
    EXPECT_FALSE(made.substyles[0]->substyle_less_including_owner_based_inheritance(*made.substyles[1]));
    EXPECT_FALSE(made.substyles[1]->substyle_less_including_owner_based_inheritance(*made.substyles[0]));
}

TEST_F(Style, UnequalSubstylesAreOrderedAsStylesAre)
{
    const EqualSubstyles made(Fill, Fill);
    Styles::Style &a = *made.substyles[0], &b = *made.substyles[1];
    a.SetProperty(Angle, Any(1.0));
    b.SetProperty(Angle, Any(2.0));
    EXPECT_TRUE(a.substyle_less_including_owner_based_inheritance(b));
    EXPECT_FALSE(b.substyle_less_including_owner_based_inheritance(a));
}

TEST_F(Style, AnEqualStyleWithoutOwnerIsLessWhereTheOtherSideInherits)
{
    const EqualSubstyles made(Fill, Fill);
    const Styles::Style alone(nullptr, Fill), alsoAlone(nullptr, Fill);
    EXPECT_FALSE(made.substyles[0]->substyle_less_including_owner_based_inheritance(alone));
    EXPECT_FALSE(alone.substyle_less_including_owner_based_inheritance(alsoAlone));
    // The key of a style without owner is the empty one, which the other owner does not know.
    EXPECT_FALSE(alone.substyle_less_including_owner_based_inheritance(*made.substyles[0]));
    Styles::Style keyed(nullptr, Fill);
    keyed.SetOwner(nullptr, Fill);
    EXPECT_TRUE(keyed.substyle_less_including_owner_based_inheritance(*made.substyles[0]));
}

TEST_F(Style, TheOwnerBasedOrderDoesNotThrow)
{
    Styles::Style owner(nullptr, Outline), a(nullptr, Fill), b(nullptr, Fill);
    a.SetOwner(&owner, Key(L"no such property"));
    b.SetOwner(&owner, Width); // no substyle property
    EXPECT_FALSE(a.substyle_less_including_owner_based_inheritance(b));
    EXPECT_FALSE(b.substyle_less_including_owner_based_inheritance(a));
    Styles::Style withoutCategory;
    b.SetOwner(&withoutCategory, Fill);
    EXPECT_FALSE(b.substyle_less_including_owner_based_inheritance(a));
}

} // namespace Styles::Suites
