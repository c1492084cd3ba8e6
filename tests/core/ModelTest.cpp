// Random schemas, styles and sequences of operations, held against a small model.

#include "core/ModelPair.h"

#include <VelUtils/Stream.h>

#include <gtest/gtest.h>

namespace Styles::Modelling
{

void Pair::ChangeOnce()
{
    using Change = void (Pair::*)(const std::string&);
    static constexpr Change changes[] = {&Pair::SetText,     &Pair::SetText, &Pair::SetText, &Pair::ClearOne,
                                         &Pair::SetParents,  &Pair::SetList, &Pair::Merge,   &Pair::Assign,
                                         &Pair::FlattenCopy, &Pair::Cut,     &Pair::Clone,   &Pair::Delete};
    // Deleting is rare, or nothing is left to be done.
    const std::size_t which = Below(100) < 3 ? std::size(changes) - 1 : Below(std::size(changes) - 1);
    (this->*changes[which])(AnyName());
}

void Pair::CompareOwn(const Style& real, const ModelStyle& model, const std::string& place)
{
    SCOPED_TRACE(place);
    EXPECT_EQ(Narrow(real.GetCategoryName().GetText()), model.category);
    EXPECT_EQ(GetOverriddenProperties(real).size(), model.texts.size() + model.substyles.size() + model.lists.size());
    for (const auto& [key, text] : model.texts)
    {
        Any value;
        ASSERT_TRUE(real.GetOverrideProperty(KeyOf(key), value)) << key;
        EXPECT_EQ(Narrow(value.Get<VelString>()), text) << key;
    }
    for (const auto& [key, substyle] : model.substyles)
    {
        const Style* own = real.GetSubstyle(KeyOf(key), false);
        ASSERT_NE(own, nullptr) << key;
        EXPECT_EQ(own->GetOwner(), &real);
        EXPECT_EQ(own->GetOwnersSubstylePropertyName(), KeyOf(key));
        CompareOwn(*own, *substyle, place + "." + key);
    }
    for (const auto& [key, list] : model.lists)
    {
        Any value;
        ASSERT_TRUE(real.GetOverrideProperty(KeyOf(key), value)) << key;
        const auto& elements = value.Get<std::vector<Style*>>();
        ASSERT_EQ(elements.size(), list.size()) << key;
        for (std::size_t index = 0; index < list.size(); ++index)
        {
            CompareOwn(*elements[index], *list[index], place + "." + key + "[" + std::to_string(index) + "]");
        }
    }
}

/// Every text of every place in `real`, looked up there or where it would be.
void Pair::CompareEffect(const Style& real, const ModelStyle& top, Path& place, const std::string& category, int depth)
{
    for (const auto& [key, unused] : m_schema[category].texts)
    {
        EXPECT_EQ(Narrow(real.GetProperty(KeyOf(key)).Get<VelString>()), EffectiveText(top, place, key))
            << "text " << key << " at depth " << depth;
    }
    for (const std::string& key : m_schema[category].substyles)
    {
        if (const Style* substyle = real.GetSubstyle(KeyOf(key), true))
        {
            place.push_back(key);
            CompareEffect(*substyle, top, place, key, depth + 1);
            place.pop_back();
        }
    }
}

bool Pair::Inherits(const ModelStyle& model, const ModelStyle& from) const
{
    return model.parent != nullptr && (model.parent == &from || Inherits(*model.parent, from));
}

void Pair::CompareDependencies()
{
    const std::string name = AnyName();
    const ModelStyle& asked = *m_models[name];
    std::vector<Style*> dependants;
    m_sheet.GetDependencies(std::vector<Style*>{Real(name)}, dependants);
    std::map<const Style*, bool> found;
    for (const Style* style : dependants)
    {
        found[style] = true;
    }
    for (const auto& entry : m_models)
    {
        const bool depends = entry.second.get() == &asked || Inherits(*entry.second, asked);
        EXPECT_EQ(found.contains(Real(entry.first)), depends) << entry.first << " on " << name;
        EXPECT_EQ(Real(entry.first)->HasDependency(std::vector<Style*>{Real(name)}), depends);
        EXPECT_EQ(Real(entry.first)->HasParentalDependency(std::vector<Style*>{Real(name)}),
                  Inherits(*entry.second, asked));
    }
}

void Pair::CompareAll()
{
    EXPECT_EQ(m_sheet.GetStyleNames().size(), m_models.size());
    for (const auto& [name, model] : m_models)
    {
        ASSERT_NE(Real(name), nullptr) << name;
        CompareOwn(*Real(name), *model, name);
        SCOPED_TRACE("the effect of " + name);
        Path place;
        CompareEffect(*Real(name), *model, place, model->category, 0);
    }
    CompareDependencies();
}

void Pair::CompareAfterAJourneyThroughADocument()
{
    VelUtils::MemoryStream written;
    ASSERT_TRUE(m_sheet.Export(written));
    VelUtils::MemoryStream input(written.GetBytes());
    m_sheet.Clear();
    ASSERT_TRUE(m_sheet.Import(input, /*replace*/ true));
    CompareAll();
}

namespace
{

class Model : public testing::TestWithParam<unsigned>
{};

TEST_P(Model, AndStylesAgreeAfterEveryChange)
{
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    Pair pair(GetParam());
    for (int step = 0; step < 60 && !HasFailure(); ++step)
    {
        SCOPED_TRACE("step " + std::to_string(step));
        pair.ChangeOnce();
        if (step % 5 == 4)
        {
            pair.CompareAll();
        }
    }
    if (!HasFailure())
    {
        pair.CompareAfterAJourneyThroughADocument();
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Model, testing::Range(1u, 201u));

} // namespace

} // namespace Styles::Modelling
