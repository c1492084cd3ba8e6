#include "EffectiveValues.h"

#include "Output.h"
#include "ValueTexts.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace Inspect
{

namespace
{

/// No document nests deeper; links between styles can.
constexpr std::size_t MaximalDepth = 512;
constexpr std::size_t MaximalCount = 100000;

class Collector
{
public:
    explicit Collector(const Origins& origins) : m_origins(origins) {}

    /// The values of the effective style at `path`. `nearest` is the innermost style on the way there that the style
    /// shown has of its own; where it is `style` itself, so are the values.
    void Collect(const std::string& path, const Style& style, const Style& nearest)
    {
        m_open.push_back(&style);
        for (const Property& property : PropertiesOf(style.GetCategory().get()))
        {
            if (!HasRoom())
            {
                break;
            }
            EffectiveValue row;
            row.path = PathTo(path, property.key);
            row.asked = &style;
            row.category = style.GetCategoryName();
            row.key = property.key;
            try
            {
                row.value = &style.GetProperty(property.key);
                row.origin = m_origins.Find(*row.value);
                row.isOwn = &style == &nearest && style.DoesOverrideProperty(property.key);
                row.heir = row.isOwn || row.origin.kind != Origin::Kind::Style ? nullptr : HeirFrom(nearest);
            }
            catch (const std::exception& error) // a parent of another category, which has no such value
            {
                row.text = "(none: " + Shown(VelPlatform::ToWide(error.what())) + ')';
            }
            Add(std::move(row), property, nearest);
        }
        m_open.pop_back();
    }

private:
    bool HasRoom()
    {
        isComplete = isComplete && rows.size() < MaximalCount && m_open.size() <= MaximalDepth;
        return isComplete;
    }

    /// The first style from `style` outwards that has a parent: what inherits through its owner inherits through that.
    static const Style* HeirFrom(const Style& style)
    {
        const Style* heir = &style;
        while (heir->GetParent() == nullptr && heir->GetOwner() != nullptr)
        {
            heir = heir->GetOwner();
        }
        return heir->GetParent() != nullptr ? heir : nullptr;
    }

    bool IsOpen(const Style* style) const { return std::find(m_open.begin(), m_open.end(), style) != m_open.end(); }

    /// Adds a row and, behind it, the values inside.
    void Add(EffectiveValue row, const Property& property, const Style& nearest)
    {
        const std::string path = row.path;
        const bool isOwn = row.isOwn;
        const Any* value = row.value;
        Style* const* substyle = value != nullptr ? value->GetIf<Style*>() : nullptr;
        const StyleList* list = value != nullptr ? value->GetIf<StyleList>() : nullptr;
        if (value != nullptr)
        {
            row.isClosed = substyle != nullptr && *substyle != nullptr && IsOpen(*substyle);
            row.text = row.isClosed ? DescribeStyle(m_origins, *substyle, ", which this is inside of")
                                    : DescribeValue(m_origins, *property.definition, *value);
        }
        rows.push_back(std::move(row));
        if (substyle != nullptr && property.definition->IsSubstyle())
        {
            GoInto(path, *substyle, isOwn, property.elementCategory, nearest);
        }
        else if (list != nullptr && property.isList)
        {
            AddElements(path, *list, isOwn, nearest);
        }
    }

    void GoInto(const std::string& path, const Style* substyle, bool isOwn, const PropertyKey& category,
                const Style& nearest)
    {
        if (substyle == nullptr)
        {
            CollectDefaults(path, category);
        }
        else if (!IsOpen(substyle))
        {
            Collect(path, *substyle, isOwn ? *substyle : nearest);
        }
    }

    void AddElements(const std::string& path, const StyleList& list, bool isOwn, const Style& nearest)
    {
        for (std::size_t index = 0; index < list.size(); ++index)
        {
            const Style* element = list[index];
            if (element != nullptr && !IsOpen(element))
            {
                const std::string elementPath = path + '[' + std::to_string(index) + ']';
                Collect(elementPath, *element, isOwn ? *element : nearest);
            }
        }
    }

    /// The values where there is no style: the defaults of the category that it would have.
    void CollectDefaults(const std::string& path, const PropertyKey& categoryName)
    {
        const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
        if (std::find(m_openCategories.begin(), m_openCategories.end(), categoryName) != m_openCategories.end() ||
            !manager.CategoryExists(categoryName))
        {
            return;
        }
        m_openCategories.push_back(categoryName);
        for (const Property& property : PropertiesOf(manager.GetCategory(categoryName).get()))
        {
            if (!HasRoom())
            {
                break;
            }
            EffectiveValue row;
            row.path = PathTo(path, property.key);
            row.category = categoryName;
            row.key = property.key;
            row.value = &manager.GetDefaultValue(categoryName, property.key);
            row.origin = m_origins.Find(*row.value);
            Add(std::move(row), property, m_noStyle);
        }
        m_openCategories.pop_back();
    }

public:
    std::vector<EffectiveValue> rows;
    bool isComplete = true;

private:
    const Origins& m_origins;
    const Style m_noStyle;
    std::vector<const Style*> m_open; // from the style shown inwards
    std::vector<PropertyKey> m_openCategories;
};

} // namespace

std::vector<EffectiveValue> CollectEffectiveValues(const Origins& origins, const Style& style, bool& isComplete)
{
    Collector collector(origins);
    collector.Collect({}, style, style);
    isComplete = collector.isComplete;
    return std::move(collector.rows);
}

} // namespace Inspect
