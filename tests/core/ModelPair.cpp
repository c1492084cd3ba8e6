#include "core/ModelPair.h"

#include <gtest/gtest.h>

namespace Styles::Modelling
{

void Pair::MakeSchema()
{
    Manager().Reset();
    Manager().SetCurrentVersion(1);
    m_sheet.SetVersion(1);
    // Substyles and lists are of categories made before, so that nothing nests in itself.
    const std::size_t count = 2 + Below(3);
    std::vector<std::string> names;
    for (std::size_t index = 0; index < count; ++index)
    {
        const std::string name = "category" + std::to_string(index);
        ModelCategory& category = m_schema[name];
        Manager().RegisterCategory(KeyOf(name), Wide(name), false, true);
        for (std::size_t property = 0; property < 2 + Below(3); ++property)
        {
            const std::string key = "text" + std::to_string(property);
            category.texts[key] = "default of " + name;
            Manager().RegisterProperty(
                KeyOf(name), KeyOf(key),
                new StyleProperty(nullptr, Wide(category.texts[key]), new TextPolicy<VelString>(), 0));
        }
        for (const std::string& inner : names)
        {
            if (Below(3) != 0)
            {
                category.substyles.push_back(inner);
                RegisterSubstyleSet(KeyOf(name), KeyOf(inner));
            }
        }
        if (!names.empty())
        {
            category.lists["list"] = names.front();
            Manager().RegisterProperty(KeyOf(name), KeyOf("list"),
                                       new StyleArrayProperty(nullptr, KeyOf(names.front())));
        }
        names.push_back(name);
    }
}

void Pair::MakeStyles()
{
    for (std::size_t index = 0; index < 12; ++index)
    {
        const std::string name = "style" + std::to_string(10 + index);
        auto model = std::make_unique<ModelStyle>();
        model->category = AnyOf(m_schema).first;
        m_sheet.AddStyle(Wide(name), std::make_unique<Style>(nullptr, KeyOf(model->category)).release(), true);
        m_models[name] = std::move(model);
        SetParents(name);
    }
}

std::string Pair::AnyEarlierName(const std::string& name)
{
    std::vector<std::string> earlier;
    for (const auto& [candidate, model] : m_models)
    {
        if (candidate < name && model->category == m_models[name]->category)
        {
            earlier.push_back(candidate);
        }
    }
    return earlier.empty() ? std::string() : AnyOf(earlier);
}

/// A path to substyles of a category, up to two down.
Path Pair::AnyPath(const std::string& category)
{
    Path path;
    std::string reached = category;
    for (std::size_t depth = Below(3); depth > 0 && !m_schema[reached].substyles.empty(); --depth)
    {
        reached = AnyOf(m_schema[reached].substyles);
        path.push_back(reached);
    }
    return path;
}

const ModelStyle* Pair::FollowOwn(const ModelStyle& top, const Path& place) const
{
    const ModelStyle* reached = &top;
    for (const std::string& step : place)
    {
        const auto entry = reached->substyles.find(step);
        if (entry == reached->substyles.end())
        {
            return nullptr;
        }
        reached = entry->second.get();
    }
    return reached;
}

/// The text at a place in `top` or in what is inherited there. A substyle with a parent inherits from it and no more;
/// one without inherits from the same place of what the style around it inherits.
std::optional<std::string> Pair::FindText(const Path& place, const ModelStyle& top, const std::string& key) const
{
    const ModelStyle* own = FollowOwn(top, place);
    if (own != nullptr)
    {
        if (const auto entry = own->texts.find(key); entry != own->texts.end())
        {
            return entry->second;
        }
        if (own->parent != nullptr)
        {
            return FindText({}, *own->parent, key);
        }
    }
    // The innermost style around the place that has a parent says where to go on.
    for (std::size_t length = place.size(); length-- > 0;)
    {
        const ModelStyle* around =
            FollowOwn(top, Path(place.begin(), place.begin() + static_cast<std::ptrdiff_t>(length)));
        if (around != nullptr && around->parent != nullptr)
        {
            return FindText(Path(place.begin() + static_cast<std::ptrdiff_t>(length), place.end()), *around->parent,
                            key);
        }
    }
    return std::nullopt;
}

std::string Pair::EffectiveText(const ModelStyle& top, const Path& place, const std::string& key) const
{
    const std::string& category = place.empty() ? top.category : place.back();
    const std::optional<std::string> found = FindText(place, top, key);
    return found ? *found : m_schema.at(category).texts.at(key);
}

void Pair::SetText(const std::string& name)
{
    const Path place = AnyPath(m_models[name]->category);
    const std::string category = place.empty() ? m_models[name]->category : place.back();
    const std::string key = AnyOf(m_schema[category].texts).first;
    const std::string text = AnyText();
    ModelStyle* reached = m_models[name].get();
    for (const std::string& step : place)
    {
        auto& substyle = reached->substyles[step];
        if (substyle == nullptr)
        {
            substyle = std::make_unique<ModelStyle>();
            substyle->category = step;
        }
        reached = substyle.get();
    }
    reached->texts[key] = text;
    Path path = place;
    path.push_back(key);
    Real(name)->SetPathProperty(PathOf(path), Any(Wide(text)));
}

void Pair::ClearOne(const std::string& name)
{
    Path path = AnyPath(m_models[name]->category);
    auto* reached = const_cast<ModelStyle*>(FollowOwn(*m_models[name], path));
    const std::string category = path.empty() ? m_models[name]->category : path.back();
    const ModelCategory& properties = m_schema[category];
    const std::string key =
        !properties.substyles.empty() && Below(3) == 0 ? AnyOf(properties.substyles) : AnyOf(properties.texts).first;
    const bool removed = reached != nullptr && reached->texts.erase(key) + reached->substyles.erase(key) > 0;
    path.push_back(key);
    EXPECT_EQ(Real(name)->ClearPathProperty(PathOf(path)), removed);
}

void Pair::SetParents(const std::string& name)
{
    const std::string parent = Below(4) == 0 ? std::string() : AnyEarlierName(name);
    m_models[name]->parent = parent.empty() ? nullptr : m_models[parent].get();
    Real(name)->SetParent(parent.empty() ? nullptr : Real(parent));
}

void Pair::SetList(const std::string& name)
{
    const ModelCategory& category = m_schema[m_models[name]->category];
    if (category.lists.empty())
    {
        return;
    }
    const auto& [key, elementCategory] = *category.lists.begin();
    std::vector<std::unique_ptr<ModelStyle>> list;
    std::vector<Style> elements;
    for (std::size_t count = Below(4); count > 0; --count)
    {
        auto element = std::make_unique<ModelStyle>();
        element->category = elementCategory;
        const std::string text = AnyOf(m_schema[elementCategory].texts).first;
        element->texts[text] = AnyText();
        elements.emplace_back(nullptr, KeyOf(elementCategory))
            .SetProperty(KeyOf(text), Any(Wide(element->texts[text])));
        list.push_back(std::move(element));
    }
    std::vector<Style*> pointers;
    for (Style& element : elements)
    {
        pointers.push_back(&element);
    }
    Real(name)->SetProperty(KeyOf(key), Any(pointers));
    m_models[name]->lists[key] = std::move(list);
}

void Pair::MergeInto(ModelStyle& target, const ModelStyle& source, bool overwrite)
{
    for (const auto& [key, text] : source.texts)
    {
        if (overwrite || !target.texts.contains(key))
        {
            target.texts[key] = text;
        }
    }
    for (const auto& [key, list] : source.lists)
    {
        if (overwrite || !target.lists.contains(key))
        {
            target.lists[key] = ModelStyle::CopyList(list);
        }
    }
    for (const auto& [key, substyle] : source.substyles)
    {
        if (const auto own = target.substyles.find(key); own != target.substyles.end())
        {
            MergeInto(*own->second, *substyle, overwrite);
        }
        else
        {
            target.substyles[key] = substyle->Copy();
        }
    }
}

void Pair::Merge(const std::string& name)
{
    const std::string other = AnyEarlierName(name);
    if (!other.empty())
    {
        const bool overwrite = Below(2) == 0;
        MergeInto(*m_models[name], *m_models[other], overwrite);
        Real(name)->MergeProperties(Real(other), overwrite);
    }
}

void Pair::Assign(const std::string& name)
{
    const std::string other = AnyEarlierName(name);
    if (!other.empty())
    {
        auto copy = m_models[other]->Copy();
        ModelStyle& model = *m_models[name];
        model.parent = copy->parent;
        model.texts.swap(copy->texts);
        model.substyles.swap(copy->substyles);
        model.lists.swap(copy->lists);
        *Real(name) = *Real(other);
    }
}

/// A flattened copy has no parent and the same effect; the original stays.
void Pair::FlattenCopy(const std::string& name)
{
    const std::unique_ptr<Style> flat(Real(name)->CreateFlattenedStyle());
    EXPECT_EQ(flat->GetParent(), nullptr);
    EXPECT_FALSE(flat->SubstylesHaveAnyParentalRelationships());
    Path place;
    CompareEffect(*flat, *m_models[name], place, m_models[name]->category, 0);
}

/// Without its dependencies a style has no parent and the same effect, but for what inherits nothing any more.
void Pair::Cut(const std::string& name)
{
    Style copy(*Real(name));
    copy.RemoveAllDependencies();
    EXPECT_EQ(copy.GetParent(), nullptr);
    EXPECT_FALSE(copy.HasParentalDependency());
    Path place;
    CompareEffect(copy, *m_models[name], place, m_models[name]->category, 0);
}

/// A style that is deleted leaves its heirs with what they inherited.
void Pair::Delete(const std::string& name)
{
    if (m_models.size() < 6)
    {
        return;
    }
    ModelStyle& gone = *m_models[name];
    for (const auto& entry : m_models)
    {
        if (entry.second->parent == &gone)
        {
            MergeInto(*entry.second, gone, false);
            entry.second->parent = gone.parent;
        }
    }
    Style* const style = Real(name);
    EXPECT_TRUE(m_sheet.DeleteStyles(std::vector<Style*>{style}));
    m_models.erase(name);
}

/// A substyle cloned without its owner has for its own what the style that holds it and the nearest parent of that hold
/// at its place; what is further up stays behind.
void Pair::Clone(const std::string& name)
{
    const Path place = AnyPath(m_models[name]->category);
    if (place.size() != 1)
    {
        return;
    }
    const std::string& step = place.front();
    const ModelStyle* holder = m_models[name].get();
    while (holder != nullptr && !holder->substyles.contains(step))
    {
        holder = holder->parent;
    }
    ModelStyle expected;
    if (holder != nullptr)
    {
        MergeInto(expected, *holder->substyles.at(step), false);
        if (holder->parent != nullptr && holder->parent->substyles.contains(step))
        {
            MergeInto(expected, *holder->parent->substyles.at(step), false);
        }
    }
    expected.category = step;
    const std::unique_ptr<Style> clone(Real(name)->CreateSubStyleCloneWithNoDependencyOnOwner(KeyOf(step)));
    EXPECT_EQ(clone->GetOwner(), nullptr);
    EXPECT_EQ(clone->GetParent(), nullptr);
    CompareOwn(*clone, expected, "the clone of " + name + "." + step);
}

} // namespace Styles::Modelling
