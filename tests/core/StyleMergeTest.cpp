#include "support/StyleMaking.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace Styles::Testing
{

namespace
{

/// Notes each merge and flattening that is asked of it, and may throw at one.
class MergeProbe : public ProbeProperty
{
public:
    struct Calls
    {
        std::vector<PropertyKey> keys;
        std::vector<bool> flags;
        std::function<void(const PropertyKey&)> onCall;

        void Note(const PropertyKey& key)
        {
            keys.push_back(key);
            if (onCall)
            {
                onCall(key);
            }
        }
    };

    explicit MergeProbe(Calls& calls) : m_calls(calls) {}

    void MergeProperty(Style* target, const Style* source, const PropertyKey& key, bool overwrite) const override
    {
        m_calls.flags.push_back(overwrite);
        m_calls.Note(key);
        ProbeProperty::MergeProperty(target, source, key, overwrite);
    }
    void MergeParentProperty(Style* target, const Style* source, const PropertyKey& key) const override
    {
        m_calls.Note(key);
        ProbeProperty::MergeParentProperty(target, source, key);
    }
    bool FlattenProperty(Style* style, const PropertyKey& key) const override
    {
        m_calls.Note(key);
        return ProbeProperty::FlattenProperty(style, key);
    }

private:
    Calls& m_calls;
};

class StyleMerge : public SchemaFixture
{
protected:
    StyleMerge()
    {
        for (const PropertyKey& key : probes)
        {
            Manager().RegisterProperty(StyleCategoryName, key, new MergeProbe(calls));
        }
    }

    /// The text properties of an object, in the order of their registration.
    const std::vector<PropertyKey> probes{Key(L"zeta"), Key(L"alpha"), Key(L"mid"), Key(L"beta"), Key(L"omega")};
    MergeProbe::Calls calls;
    Style base{nullptr, StyleCategoryName};
    Style style{&base, StyleCategoryName};
    const Any red{VelString(L"red")};
    const Any blue{VelString(L"blue")};
};

} // namespace

TEST_F(StyleMerge, MergingVisitsTheOwnKeysOfTheSourceInOrderAndHandsTheFlagOn)
{
    Style source(nullptr, StyleCategoryName);
    for (const PropertyKey& key : probes)
    {
        source.SetProperty(key, red);
    }
    std::vector<PropertyKey> inOrder(probes);
    std::sort(inOrder.begin(), inOrder.end(), std::less<PropertyKey>());

    style.MergeProperties(&source, false);
    EXPECT_EQ(calls.keys, inOrder);
    style.MergeProperties(&source, true);
    EXPECT_EQ(calls.flags, std::vector<bool>({false, false, false, false, false, true, true, true, true, true}));
    calls.keys.clear();
    Style other(nullptr, StyleCategoryName);
    other.MergeParentProperties(&source);
    EXPECT_EQ(calls.keys, inOrder);
    EXPECT_EQ(other, source);
}

TEST_F(StyleMerge, MergingKeepsOwnValuesUnlessToldToOverwriteThem)
{
    Style source(nullptr, StyleCategoryName);
    source.SetProperty(Note, red);
    source.SetProperty(Number, Any(2.0));
    style.SetProperty(Note, blue);
    style.MergeProperties(&source, false);
    EXPECT_EQ(OwnText(style, Note), L"blue");
    EXPECT_EQ(EffectiveNumber(style, Number), 2.0);
    style.MergeProperties(&source, true);
    EXPECT_EQ(OwnText(style, Note), L"red");
    EXPECT_EQ(style.GetParent(), &base);
}

TEST_F(StyleMerge, OnlyOwnValuesOfTheSourceAreMerged)
{
    Style source(&base, StyleCategoryName);
    base.SetProperty(Note, red);
    Style target(nullptr, StyleCategoryName);
    target.MergeProperties(&source, true);
    target.MergeParentProperties(&source);
    EXPECT_TRUE(target.IsEmpty());
}

TEST_F(StyleMerge, DefinitionsAreThoseOfTheCategoryOfTheSource)
{
    MergeProbe::Calls inFill;
    MergeProbe::Calls inOutline;
    const PropertyKey probe = Key(L"probe");
    Manager().RegisterProperty(Fill, probe, new MergeProbe(inFill));
    Manager().RegisterProperty(Outline, probe, new MergeProbe(inOutline));
    Style source(nullptr, Fill);
    source.SetProperty(probe, red);
    source.SetProperty(XScale, Any(2.0)); // the other category has none
    Style target(nullptr, Outline);

    target.MergeProperties(&source, true);
    target.MergeParentProperties(&source);
    EXPECT_THAT(inFill.keys, ElementsAre(probe, probe));
    EXPECT_THAT(inOutline.keys, IsEmpty());
    EXPECT_EQ(OwnText(target, probe), L"red");
    EXPECT_FALSE(target.DoesOverrideProperty(XScale));
}

TEST_F(StyleMerge, KeysWithoutDefinitionAreSkipped)
{
    Style source(nullptr, Fill);
    source.SetProperty(Color, red);
    source.SetProperty(XScale, Any(2.0));
    source.SetCategory(Outline); // knows the color only
    Style target(nullptr, Fill);
    target.MergeProperties(&source, true);
    EXPECT_EQ(OwnText(target, Color), L"red");
    EXPECT_FALSE(target.DoesOverrideProperty(XScale));

    Style without;
    target.MergeProperties(&without, true);
    without.MergeProperties(&target, true);
    without.MergeParentProperties(&target);
    EXPECT_TRUE(without.IsEmpty());
    source.SetCategory(Fill); // so that all values go
}

TEST_F(StyleMerge, MergingNothingOrTheStyleItselfChangesNothing)
{
    AddSubstyle(style, Fill, Fill).SetProperty(Color, red);
    AddElements(style, Stops, Stop, 2);
    style.SetProperty(probes[0], red);
    const Style before(style);
    const Style* fill = style.GetSubstyle(Fill, false);
    const std::vector<Style*> elements = ElementsOf(style, Stops);
    for (const Style* source : {static_cast<const Style*>(nullptr), static_cast<const Style*>(&style)})
    {
        style.MergeProperties(source, false);
        style.MergeProperties(source, true);
        style.MergeParentProperties(source);
        EXPECT_EQ(style, before);
        EXPECT_EQ(style.GetSubstyle(Fill, false), fill);
        EXPECT_EQ(ElementsOf(style, Stops), elements);
    }
    EXPECT_THAT(calls.keys, IsEmpty());
}

TEST_F(StyleMerge, MergingASubstyleOfTheStyleItselfWorksOnWhatItWas)
{
    Style nest(nullptr, Nest);
    Style& inner = AddSubstyle(nest, Nest, Nest);
    inner.SetProperty(Note, red);
    AddSubstyle(inner, Nest, Nest).SetProperty(Note, blue);
    nest.MergeProperties(&inner, true);
    EXPECT_EQ(OwnText(nest, Note), L"red");
    ASSERT_NE(nest.GetSubstyle(Nest, false), nullptr);
    EXPECT_EQ(OwnText(*nest.GetSubstyle(Nest, false), Note), L"blue");
}

TEST_F(StyleMerge, AThrowInTheMiddleOfMergingLeavesEachValueDoneOrAsItWas)
{
    Style source(nullptr, StyleCategoryName);
    source.SetProperty(probes[0], red);
    source.SetProperty(probes[1], red);
    const PropertyKey first = std::min(probes[0], probes[1], std::less<PropertyKey>());
    const PropertyKey last = std::max(probes[0], probes[1], std::less<PropertyKey>());
    style.SetProperty(last, blue);
    calls.onCall = [&](const PropertyKey& key) {
        if (key == last)
        {
            throw std::runtime_error("as asked");
        }
    };
    EXPECT_THROW(style.MergeProperties(&source, true), std::runtime_error);
    EXPECT_EQ(OwnText(style, first), L"red");
    EXPECT_EQ(OwnText(style, last), L"blue");
    EXPECT_EQ(style.GetParent(), &base);
}

TEST_F(StyleMerge, FlatteningVisitsEveryPropertyOfTheCategoryInTheOrderOfRegistration)
{
    style.Flatten();
    EXPECT_EQ(calls.keys, probes);
}

TEST_F(StyleMerge, FlatteningMakesInheritedValuesOwnOnesAndCutsTheParent)
{
    base.SetProperty(Note, red);
    AddSubstyle(base, Fill, Fill).SetProperty(Color, blue);
    AddElements(base, Stops, Stop, 1)[0]->SetProperty(Color, red);
    const Style before(base);

    EXPECT_TRUE(style.Flatten());
    EXPECT_EQ(style.GetParent(), nullptr);
    EXPECT_EQ(OwnText(style, Note), L"red");
    ASSERT_NE(style.GetSubstyle(Fill, false), nullptr);
    EXPECT_EQ(OwnText(*style.GetSubstyle(Fill, false), Color), L"blue");
    ASSERT_EQ(ElementsOf(style, Stops).size(), 1U);
    EXPECT_EQ(OwnText(*ElementsOf(style, Stops)[0], Color), L"red");
    EXPECT_FALSE(style.DoesOverrideProperty(Number));
    EXPECT_EQ(base, before);
}

TEST_F(StyleMerge, FlatteningTellsWhetherAPropertyHadAValue)
{
    EXPECT_FALSE(style.Flatten());
    EXPECT_EQ(style.GetParent(), nullptr);
    EXPECT_FALSE(style.Flatten());
    style.SetProperty(Note, red);
    EXPECT_TRUE(style.Flatten()); // an own value counts, too
}

TEST_F(StyleMerge, FlatteningAddsTheKeysThatHadAValue)
{
    base.SetProperty(Note, red);
    style.SetProperty(Number, Any(2.0));
    std::set<PropertyKey> changed;
    EXPECT_TRUE(style.Flatten(changed));
    EXPECT_EQ(changed, (std::set<PropertyKey>{Note, Number}));
}

TEST_F(StyleMerge, FlatteningIntoASetThatIsNotEmptyAnswersTrue)
{
    std::set<PropertyKey> changed{Width};
    EXPECT_TRUE(style.Flatten(changed));
    EXPECT_EQ(changed, std::set<PropertyKey>{Width});
    changed.clear();
    EXPECT_FALSE(style.Flatten(changed));
}

TEST_F(StyleMerge, FlatteningWithoutACategoryCutsTheParentAndAnswersFalse)
{
    Style without;
    without.SetParent(&base);
    base.SetProperty(Note, red);
    EXPECT_FALSE(without.Flatten());
    EXPECT_EQ(without.GetParent(), nullptr);
    EXPECT_TRUE(without.IsEmpty());
    std::set<PropertyKey> changed{Width};
    without.SetParent(&base);
    EXPECT_TRUE(without.Flatten(changed));
    EXPECT_EQ(without.GetParent(), nullptr);
}

TEST_F(StyleMerge, FlatteningMakesWhatComesThroughTheOwnerAnOwnValue)
{
    AddSubstyle(base, Fill, Fill).SetProperty(Color, red);
    Style& fill = AddSubstyle(style, Fill, Fill);
    EXPECT_TRUE(fill.Flatten());
    EXPECT_EQ(OwnText(fill, Color), L"red");
}

TEST_F(StyleMerge, AThrowInTheMiddleOfFlatteningLeavesTheParent)
{
    base.SetProperty(probes[0], red);
    base.SetProperty(probes[1], red);
    AddSubstyle(base, Fill, Fill).SetProperty(Color, blue);
    for (const PropertyKey& failing : probes)
    {
        Style heir(&base, StyleCategoryName);
        calls.onCall = [&failing](const PropertyKey& key) {
            if (key == failing)
            {
                throw std::runtime_error("as asked");
            }
        };
        EXPECT_THROW(heir.Flatten(), std::runtime_error);
        EXPECT_EQ(heir.GetParent(), &base);
        EXPECT_EQ(heir.DoesOverrideProperty(probes[0]), failing != probes[0]);
        EXPECT_EQ(EffectiveText(heir, probes[1]), L"red");
        const Style* const unchanged = base.GetSubstyle(Fill, false);
        EXPECT_EQ(OwnText(*unchanged, Color), L"blue");
        EXPECT_THROW(static_cast<void>(heir.CreateFlattenedStyle()), std::runtime_error);
    }
    calls.onCall = nullptr;
}

TEST_F(StyleMerge, ASubstyleThatFailsToFlattenGoesOnInheriting)
{
    MergeProbe::Calls inFill;
    const PropertyKey probe = Key(L"probe");
    Manager().RegisterProperty(Fill, probe, new MergeProbe(inFill));
    AddSubstyle(base, Fill, Fill).SetProperty(Color, red);
    inFill.onCall = [](const PropertyKey&) { throw std::runtime_error("as asked"); };
    EXPECT_THROW(style.Flatten(), std::runtime_error);
    EXPECT_EQ(style.GetParent(), &base);
    EXPECT_EQ(style.GetSubstyle(Fill, false), nullptr);
    EXPECT_EQ(EffectiveText(*style.GetSubstyle(Fill, true), Color), L"red");
}

TEST_F(StyleMerge, AFlattenedCopyLeavesTheStyleAlone)
{
    base.SetProperty(Note, red);
    const std::unique_ptr<Style> flattened(style.CreateFlattenedStyle());
    EXPECT_EQ(OwnText(*flattened, Note), L"red");
    EXPECT_EQ(flattened->GetParent(), nullptr);
    EXPECT_EQ(flattened->GetCategory(), style.GetCategory());
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_EQ(style.GetParent(), &base);

    std::set<PropertyKey> changed{Width};
    const std::unique_ptr<Style> again(style.CreateFlattenedStyle(changed));
    EXPECT_EQ(changed, (std::set<PropertyKey>{Width, Note}));
    EXPECT_EQ(*again, *flattened);
}

} // namespace Styles::Testing
