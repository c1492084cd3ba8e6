// Making a schema and styles, and finding places in them.

#include "core/ModelPair.h"

#include <algorithm>

namespace Styles::Modelling
{

namespace
{

constexpr std::size_t FewestTops = 4;

StyleManager& Manager()
{
    return VelUtils::Singleton<StyleManager, 0>::GetInstance();
}

} // namespace

Pair::Pair(Choose choose) : m_choose(std::move(choose))
{
    Manager().Reset();
    Manager().SetCurrentVersion(1);
    m_sheet.SetVersion(1);
    MakeSchema();
    for (std::size_t count = FewestTops + 2 + Below(3); count > 0; --count)
    {
        AddTop();
    }
}

Pair::~Pair()
{
    m_sheet.Clear();
    Manager().Reset();
    Manager().SetCurrentVersion(-1);
}

bool Pair::Expect(bool holds, std::string_view what)
{
    if (!holds)
    {
        m_differences.push_back(std::string(m_operation) + ": " + std::string(what));
    }
    return holds;
}

void Pair::MakeSchema()
{
    const std::size_t count = 2 + Below(3);
    for (std::size_t index = 0; index < count; ++index)
    {
        MakeCategory(index);
    }
}

/// Texts, substyles and a list; substyles and elements are of this category or of one made before.
void Pair::MakeCategory(std::size_t index)
{
    const PropertyKey name = KeyOf("category" + std::to_string(index));
    ModelCategory& category = *m_schema.emplace_back(std::make_unique<ModelCategory>());
    category.name = name;
    Manager().RegisterCategory(name, name.GetText(), false, true);
    for (std::size_t text = 0; text < 1 + Below(3); ++text)
    {
        category.definitions.push_back({KeyOf("text" + std::to_string(text)), Kind::Text, AnyText(), nullptr});
        const ModelDefinition& made = category.definitions.back();
        Manager().RegisterProperty(name, made.key,
                                   new StyleProperty(nullptr, Wide(made.defaultText), new TextPolicy<VelString>(), 0));
    }
    for (const auto& element : m_schema)
    {
        if (OneIn(2))
        {
            category.definitions.push_back({element->name, Kind::Substyle, "", element.get()});
            RegisterSubstyleSet(name, element->name);
        }
    }
    if (OneIn(3))
    {
        const ModelCategory* element = &AnyCategory();
        category.definitions.push_back({KeyOf("named"), Kind::Substyle, "", element});
        Manager().RegisterProperty(name, KeyOf("named"), new StyleSetProperty(nullptr, element->name, nullptr, 0));
    }
    if (OneIn(2))
    {
        const ModelCategory* element = &AnyCategory();
        category.definitions.push_back({KeyOf("list"), Kind::List, "", element});
        Manager().RegisterProperty(name, KeyOf("list"),
                                   element == &category ? new StyleArrayProperty(nullptr, 0)
                                                        : new StyleArrayProperty(nullptr, element->name));
    }
}

void Pair::AddTop()
{
    const std::string name = "style" + std::to_string(100 + m_named++);
    auto model = std::make_unique<ModelStyle>(AnyCategory());
    const Place parent = OneIn(2) ? AnyTopOf(model->category) : Place();
    model->parent = parent.model;
    auto* style = new Style(parent.real, model->category->name);
    Expect(m_sheet.AddStyle(Wide(name), style, OneIn(2)) == nullptr, "a new name has no style yet");
    m_models[name] = std::move(model);
}

Style* Pair::Real(const std::string& name) const
{
    return m_sheet.GetStyle(Wide(name));
}

Style* Pair::RealTop(const ModelStyle* model) const
{
    const auto entry = std::find_if(m_models.begin(), m_models.end(),
                                    [model](const auto& candidate) { return candidate.second.get() == model; });
    return entry != m_models.end() ? Real(entry->first) : nullptr;
}

Style* Pair::Counterpart(const ModelStyle* model) const
{
    const auto entry = m_counterparts.find(model);
    return entry != m_counterparts.end() ? entry->second : nullptr;
}

std::vector<Place> Pair::Tops() const
{
    std::vector<Place> tops;
    for (const auto& [name, model] : m_models)
    {
        tops.push_back({model.get(), Real(name)});
    }
    return tops;
}

std::vector<Place> Pair::Inside(const Place& place) const
{
    std::vector<Place> inside;
    for (const ModelDefinition& definition : place.model->category->definitions)
    {
        const ModelValue* value = Own(*place.model, definition.key);
        if (value == nullptr || value->kind == Kind::Text)
        {
            continue;
        }
        if (value->substyle != nullptr)
        {
            inside.push_back({value->substyle.get(), place.real->GetSubstyle(definition.key, false)});
        }
        Any list;
        place.real->GetOverrideProperty(definition.key, list);
        for (std::size_t index = 0; index < value->list.size(); ++index)
        {
            inside.push_back({value->list[index].get(), list.Get<std::vector<Style*>>()[index]});
        }
    }
    return inside;
}

Place Pair::AnyPlace()
{
    Place place = AnyTop();
    for (std::vector<Place> inside = Inside(place); !inside.empty() && !OneIn(3); inside = Inside(place))
    {
        place = AnyOf(inside);
    }
    return place;
}

Place Pair::AnyPlaceOf(const ModelCategory* category)
{
    for (std::size_t tries = 0; tries < 4; ++tries)
    {
        if (const Place place = AnyPlace(); place.model->category == category)
        {
            return place;
        }
    }
    return AnyTopOf(category);
}

Place Pair::AnyTopOf(const ModelCategory* category)
{
    std::vector<Place> tops = Tops();
    std::erase_if(tops, [category](const Place& top) { return top.model->category != category; });
    return tops.empty() ? Place() : AnyOf(tops);
}

PropertyKey Pair::AnyKey(const ModelCategory& category, Kind kind)
{
    const std::vector<ModelDefinition> those = category.Those(kind);
    return those.empty() ? PropertyKey::Empty : AnyOf(those).key;
}

PropertyKey Pair::AnyKey(const ModelCategory& category)
{
    return AnyOf(category.definitions).key;
}

/// Along substyles that are there more often than not.
std::vector<PropertyKey> Pair::AnyPath(const ModelStyle& style)
{
    std::vector<PropertyKey> path;
    const ModelStyle* reached = &style;
    const ModelCategory* category = style.category;
    for (std::size_t depth = Below(4); depth > 0; --depth)
    {
        std::vector<ModelDefinition> steps = category->Those(Kind::Substyle);
        if (reached != nullptr && !OneIn(4))
        {
            std::erase_if(steps, [reached](const ModelDefinition& step) { return Own(*reached, step.key) == nullptr; });
        }
        if (steps.empty())
        {
            break;
        }
        const ModelDefinition step = AnyOf(steps);
        path.push_back(step.key);
        reached = reached != nullptr ? OwnSubstyle(*reached, step.key) : nullptr;
        category = step.element;
    }
    path.push_back(OneIn(3) ? AnyKey(*category) : AnyKey(*category, Kind::Text));
    return path;
}

std::vector<Place> Pair::AnySpan()
{
    std::vector<Place> span;
    for (std::size_t count = 1 + Below(3); count > 0; --count)
    {
        span.push_back(OneIn(4) ? AnyPlace() : AnyTop());
    }
    if (OneIn(4))
    {
        span.emplace_back();
    }
    return span;
}

} // namespace Styles::Modelling
