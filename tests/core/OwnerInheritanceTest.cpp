// What a substyle without a parent inherits through its owner.

#include "support/ProbeFixture.h"
#include "support/TestSheet.h"

#include <array>
#include <deque>
#include <iostream>
#include <memory>
#include <optional>
#include <random>

namespace Styles::Testing
{

class OwnerInheritance : public SchemaFixture
{
protected:
    /// The style that many steps down from `style`, along its substyles "nest", made where they are missing.
    Style& Nested(Style& style, std::size_t depth) const
    {
        Style* reached = &style;
        for (; depth > 0; --depth)
        {
            reached = GetOrCreateSubstyle(*reached, Nest);
        }
        return *reached;
    }

    const Any& NestDefault() const { return Manager().GetDefaultValue(Nest, Note); }
};

TEST_F(OwnerInheritance, ASubstyleInheritsFromTheSubstyleAtTheSamePlaceOfTheParentOfItsOwner)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    Style& theirs = *GetOrCreateSubstyle(parent, Fill);
    theirs.SetProperty(Color, Any(L"red"));
    const Style& ours = *GetOrCreateSubstyle(style, Fill);
    EXPECT_EQ(&ours.GetProperty(Color), &theirs.GetProperty(Color));
    EXPECT_EQ(&ours.GetInheritedProperty(Color), &theirs.GetProperty(Color));
    EXPECT_EQ(&ours.GetProperty(Angle), &Manager().GetDefaultValue(Fill, Angle));
    Any out;
    EXPECT_TRUE(ours.GetProperty(Color, out));
    EXPECT_FALSE(ours.GetProperty(Angle, out));
}

TEST_F(OwnerInheritance, AParentlessSubstyleTwoLevelsDeepResolvesThroughTheParentOfItsTopOwnerFollowingBothKeys)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    parent.SetPathProperty({Character, Fill, Color}, Any(L"red"));
    parent.SetPathProperty({Fill, Color}, Any(L"not this one"));
    const Style& ours = *GetOrCreateSubstyle(*GetOrCreateSubstyle(style, Character), Fill);
    EXPECT_THAT(ours, HasValue(Color, L"red"));
}

TEST_F(OwnerInheritance, AnyNumberOfKeysIsFollowed)
{
    for (std::size_t depth = 1; depth <= 9; ++depth)
    {
        Style grandparent(nullptr, Nest), parent(&grandparent, Nest), style(&parent, Nest);
        Nested(grandparent, depth).SetProperty(Note, Any(L"deep"));
        EXPECT_THAT(Nested(style, depth), HasValue(Note, L"deep")) << depth;
        // The substyle of the parent stands between, and inherits through its owner in turn.
        Style& between = Nested(parent, depth);
        EXPECT_THAT(Nested(style, depth), HasValue(Note, L"deep")) << depth;
        between.SetProperty(Note, Any(L"nearer"));
        EXPECT_THAT(Nested(style, depth), HasValue(Note, L"nearer")) << depth;
        Nested(style, depth).SetProperty(Note, Any(L"own"));
        EXPECT_THAT(Nested(style, depth), HasValue(Note, L"own")) << depth;
        EXPECT_EQ(Nested(style, depth).GetInheritedProperty(Note).Get<VelString>(), VelString(L"nearer")) << depth;
    }
}

TEST_F(OwnerInheritance, TheNearestOwnerWithAParentIsTheOneThatCounts)
{
    Style top(nullptr, Nest), parentOfTop(nullptr, Nest), parentOfOwner(nullptr, Nest);
    top.SetParent(&parentOfTop);
    Nested(parentOfTop, 2).SetProperty(Note, Any(L"through the top"));
    Style& heir = Nested(top, 2);
    EXPECT_THAT(heir, HasValue(Note, L"through the top"));
    Nested(top, 1).SetParent(&parentOfOwner);
    Nested(parentOfOwner, 1).SetProperty(Note, Any(L"through the owner"));
    EXPECT_THAT(heir, HasValue(Note, L"through the owner"));
}

TEST_F(OwnerInheritance, AnOwnParentComesBeforeTheOwner)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName), other(nullptr, Fill);
    parent.SetPathProperty({Fill, Color}, Any(L"through the owner"));
    Style& ours = *GetOrCreateSubstyle(style, Fill);
    ours.SetParent(&other);
    EXPECT_EQ(&ours.GetProperty(Color), &Manager().GetDefaultValue(Fill, Color));
    other.SetProperty(Color, Any(L"of the parent"));
    EXPECT_THAT(ours, HasValue(Color, L"of the parent"));
}

TEST_F(OwnerInheritance, WithoutAnyParentOnTheWayTheDefaultIsAnswered)
{
    Style style(nullptr, StyleCategoryName);
    const Style& ours = *GetOrCreateSubstyle(*GetOrCreateSubstyle(style, Character), Fill);
    EXPECT_EQ(&ours.GetProperty(Color), &Manager().GetDefaultValue(Fill, Color));
    Any out(1.0);
    EXPECT_FALSE(ours.GetProperty(Color, out));
    EXPECT_EQ(out.Get<double>(), 1.0);
}

TEST_F(OwnerInheritance, WhereTheOtherSideHasNoSubstyleTheDefaultIsAnswered)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    const Style& ours = *GetOrCreateSubstyle(style, Fill);
    EXPECT_EQ(&ours.GetProperty(Color), &Manager().GetDefaultValue(Fill, Color));
}

TEST_F(OwnerInheritance, TheDefaultSubstyleOfTheOtherSideIsInheritedFrom)
{
    const PropertyKey shade = Key(L"shade");
    auto* substyle = new Style(nullptr, Fill);
    substyle->SetProperty(Color, Any(L"shady"));
    Manager().RegisterProperty(StyleCategoryName, shade, new StyleSetProperty(nullptr, Fill, substyle, 0));
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    EXPECT_THAT(*GetOrCreateSubstyle(style, shade), HasValue(Color, L"shady"));
}

TEST_F(OwnerInheritance, AValueOnTheWayThatIsNoSubstyleThrowsBadCast)
{
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName), lost(nullptr, Fill);
    parent.SetProperty(Note, Any(L"no substyle"));
    for (const PropertyKey& key : {Note, Number, Stops})
    {
        lost.SetOwner(&style, key);
        EXPECT_THROW(static_cast<void>(lost.GetProperty(Color)), std::bad_cast);
        EXPECT_THROW(static_cast<void>(lost.GetInheritedProperty(Color)), std::bad_cast);
        Any out(1.0);
        EXPECT_THROW(lost.GetProperty(Color, out), std::bad_cast);
        EXPECT_EQ(out.Get<double>(), 1.0);
    }
    lost.SetOwner(&style, Key(L"unknown"));
    EXPECT_THROW(static_cast<void>(lost.GetProperty(Color)), std::logic_error);
    lost.SetProperty(Color, Any(L"own"));
    EXPECT_THAT(lost, HasValue(Color, L"own"));
}

TEST_F(OwnerInheritance, OwnersThatCloseOnThemselvesEndInTheDefault)
{
    for (const std::size_t length : {1u, 2u, 3u, 7u})
    {
        for (std::size_t entry = 0; entry < length; ++entry)
        {
            std::deque<Style> chain;
            for (std::size_t index = 0; index < length; ++index)
            {
                chain.emplace_back(nullptr, Nest);
            }
            for (std::size_t index = 0; index < length; ++index)
            {
                chain[index].SetOwner(&chain[index + 1 < length ? index + 1 : entry], Nest);
            }
            for (const Style& style : chain)
            {
                EXPECT_EQ(&style.GetProperty(Note), &NestDefault()) << length << " " << entry;
                EXPECT_FALSE(style.StylePropertiesHasDependencyOnOwner());
            }
        }
    }
}

TEST_F(OwnerInheritance, InheritanceThatClosesOnItselfThroughOwnersEndsInTheDefault)
{
    // The parent of a style is its own substyle: what the substyle inherits, it would inherit from its own substyle,
    // which inherits from its own, without end.
    Style style(nullptr, Nest);
    Style& inner = Nested(style, 1);
    style.SetParent(&inner);
    EXPECT_EQ(&inner.GetProperty(Note), &NestDefault());
    EXPECT_EQ(&style.GetProperty(Note), &NestDefault());
    Style& innermost = Nested(style, 2);
    EXPECT_EQ(&innermost.GetProperty(Note), &NestDefault());
    innermost.SetProperty(Note, Any(L"found"));
    EXPECT_THAT(inner, HasValue(Note, L"found"));

    // Two styles, each of which inherits from the substyle of the other.
    Style a(nullptr, Nest), b(nullptr, Nest);
    Style &inA = Nested(a, 1), &inB = Nested(b, 1);
    a.SetParent(&inB);
    b.SetParent(&inA);
    for (const Style* member : std::vector<Style*>{&a, &b, &inA, &inB})
    {
        EXPECT_EQ(&member->GetProperty(Note), &NestDefault());
    }
}

TEST_F(OwnerInheritance, AStyleMayBePassedTwiceOnAnHonestRoad)
{
    // The substyle of a style inherits from another substyle of the same style.
    Style parent(nullptr, StyleCategoryName), style(&parent, StyleCategoryName);
    parent.SetPathProperty({Fill, Color}, Any(L"the fill"));
    Style& character = *GetOrCreateSubstyle(style, Character);
    Style& inner = *GetOrCreateSubstyle(character, Fill);
    Style& fill = *GetOrCreateSubstyle(style, Fill);
    inner.SetParent(&fill);
    EXPECT_THAT(inner, HasValue(Color, L"the fill"));

    Style top(nullptr, Nest), source(nullptr, Nest);
    top.SetParent(&source);
    Nested(source, 3).SetProperty(Note, Any(L"three deep"));
    Style other(nullptr, Nest);
    Style& heir = Nested(other, 1);
    other.SetParent(&Nested(top, 2));
    EXPECT_THAT(heir, HasValue(Note, L"three deep"));
}

TEST_F(OwnerInheritance, OwnersAThousandDeepAreFollowed)
{
    Style parent(nullptr, Nest), style(&parent, Nest);
    Nested(parent, 1000).SetProperty(Note, Any(L"deep"));
    const Style& heir = Nested(style, 1000);
    EXPECT_THAT(heir, HasValue(Note, L"deep"));
    EXPECT_EQ(&heir.GetOwner()->GetProperty(Note), &NestDefault());
}

namespace
{

/// A graph of styles as plain data, and the rules of inheritance told in the simplest way.
struct ModelStyle
{
    std::optional<std::size_t> parent;
    std::optional<std::size_t> owner;
    std::size_t ownersKey = 0;
    std::array<std::optional<std::size_t>, 2> substyles;
    bool hasNote = false;
};

class Model
{
public:
    explicit Model(const std::vector<ModelStyle>& styles) : m_styles(styles) {}

    /// Which style supplies the note of a style, none for the default, and whether the rules run in a circle.
    std::pair<std::optional<std::size_t>, bool> NoteOf(std::size_t index)
    {
        try
        {
            return {Find(index, TheNote), false};
        }
        catch (const Circle&)
        {
            return {std::nullopt, true};
        }
    }

private:
    static constexpr std::size_t TheNote = 2; // the other keys are those of the substyles

    struct Circle
    {};

    /// The style whose own note is the effective one of `index`, or the effective substyle of `index`.
    std::optional<std::size_t> Find(std::size_t index, std::size_t key)
    {
        if (!m_underWay.insert({index, key}).second)
        {
            throw Circle();
        }
        const std::optional<std::size_t> found = FindOnce(index, key);
        m_underWay.erase({index, key});
        return found;
    }

    std::optional<std::size_t> FindOnce(std::size_t index, std::size_t key)
    {
        const ModelStyle& style = m_styles[index];
        if (key == TheNote ? style.hasNote : style.substyles[key].has_value())
        {
            return key == TheNote ? index : style.substyles[key];
        }
        if (style.parent)
        {
            return Find(*style.parent, key);
        }
        std::vector<std::size_t> place;
        std::set<std::size_t> passed;
        std::size_t top = index;
        while (!m_styles[top].parent && m_styles[top].owner && passed.insert(top).second)
        {
            place.push_back(m_styles[top].ownersKey);
            top = *m_styles[top].owner;
        }
        std::optional<std::size_t> source = m_styles[top].parent;
        for (; !place.empty() && source; place.pop_back())
        {
            source = Find(*source, place.back());
        }
        return source ? Find(*source, key) : std::nullopt;
    }

    const std::vector<ModelStyle>& m_styles;
    std::set<std::pair<std::size_t, std::size_t>> m_underWay;
};

/// Styles, and the same as plain data.
struct RandomGraph
{
    RandomGraph(std::mt19937& random, const PropertyKey& category, const std::array<PropertyKey, 2>& keys,
                const PropertyKey& note)
    {
        const auto below = [&random](std::size_t limit) { return random() % limit; };
        for (std::size_t count = 1 + below(4); count > 0; --count)
        {
            tops.push_back(std::make_unique<Style>(nullptr, category));
            const std::size_t top = styles.size();
            styles.push_back(tops.back().get());
            model.emplace_back();
            for (std::size_t inside = below(5); inside > 0; --inside)
            {
                const std::size_t owner = top + below(styles.size() - top), key = below(2);
                if (model[owner].substyles[key])
                {
                    continue;
                }
                model[owner].substyles[key] = model.size();
                model.push_back({std::nullopt, owner, key, {}, false});
                styles.push_back(GetOrCreateSubstyle(*styles[owner], keys[key]));
            }
        }
        for (std::size_t index = 0; index < styles.size(); ++index)
        {
            ModelStyle& style = model[index];
            if (below(5) < 2)
            {
                style.parent = below(styles.size());
                styles[index]->SetParent(styles[*style.parent]);
            }
            // Links that no definition would set, so that owners close on themselves too.
            if (!style.owner && below(4) == 0)
            {
                style.owner = below(styles.size());
                style.ownersKey = below(2);
                styles[index]->SetOwner(styles[*style.owner], keys[style.ownersKey]);
            }
            if (below(4) == 0)
            {
                style.hasNote = true;
                styles[index]->SetProperty(note, Any(L"own"));
            }
        }
    }

    std::vector<std::unique_ptr<Style>> tops;
    std::vector<Style*> styles;
    std::vector<ModelStyle> model;
};

} // namespace

TEST_F(OwnerInheritance, RandomGraphsResolveAsTheRulesSay)
{
    const unsigned seed = std::random_device()();
    std::cout << "seed " << seed << '\n';
    std::mt19937 random(seed);
    const PropertyKey otherNest = Key(L"other nest");
    Manager().RegisterProperty(Nest, otherNest, new StyleSetProperty(nullptr, Nest, nullptr, 0));
    std::size_t resolved = 0, defaults = 0, circles = 0;
    for (int turn = 0; turn < 3000; ++turn)
    {
        const RandomGraph graph(random, Nest, {Nest, otherNest}, Note);
        for (std::size_t index = 0; index < graph.styles.size(); ++index)
        {
            const auto [expected, circle] = Model(graph.model).NoteOf(index);
            const Any& found = graph.styles[index]->GetProperty(Note);
            const Any& wanted = expected ? graph.styles[*expected]->GetProperty(Note) : NestDefault();
            ASSERT_EQ(&found, &wanted) << "seed " << seed << ", graph " << turn << ", style " << index
                                       << (circle ? ", in a circle" : "");
            (circle ? circles : expected ? resolved : defaults) += 1;
        }
    }
    EXPECT_GT(resolved, 1000u);
    EXPECT_GT(defaults, 1000u);
    EXPECT_GT(circles, 100u);
}

} // namespace Styles::Testing
