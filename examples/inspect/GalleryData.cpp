#include "GalleryData.h"

#include "EffectiveValues.h"
#include "Explanation.h"
#include "Output.h"

#include <cstdint>
#include <map>
#include <optional>
#include <typeinfo>
#include <unordered_map>
#include <utility>

namespace Inspect
{

namespace
{

/// Of what a value hides so many are told: a chain of parents may be as long as a document.
constexpr std::size_t MostHidden = 12;
/// Rows of one style, and of all. A style that holds itself by inheritance would be told at every depth.
constexpr std::size_t MostRows = 5000;
constexpr std::size_t MostRowsOfAll = 1000000;

constexpr std::int64_t OwnPlace = -1;
constexpr std::int64_t OutsidePlace = -2;
constexpr std::int64_t FirstDefaultPlace = -3;

Json::Variant Number(std::size_t number)
{
    return Json::Variant(static_cast<std::int64_t>(number));
}

/// Things in the order in which they came first, each once, known by their number.
class Numbered
{
public:
    /// The number of the thing with this key; `make` makes it when it is new.
    template <class Make>
    std::size_t Add(const std::string& key, const Make& make)
    {
        const auto [found, isNew] = m_numbers.try_emplace(key, m_things.GetSize());
        if (isNew)
        {
            m_things.AddValue(make());
        }
        return found->second;
    }

    Json::Array Take() { return std::move(m_things); }

private:
    std::unordered_map<std::string, std::size_t> m_numbers;
    Json::Array m_things;
};

class Builder
{
public:
    Builder(const Schema& schema, const Sheet& sheet, const Looks& looks)
        : m_sheet(sheet), m_looks(looks), m_origins(sheet)
    {
        AddCategory(Styles::StyleCategoryName); // what most sheets are there for
        for (const PropertyKey& name : schema.GetCategoryNames())
        {
            if (name != Styles::StyleCategoryName)
            {
                AddCategory(name);
            }
        }
    }

    Json::Variant Build()
    {
        std::vector<const Style*> styles;
        for (const PropertyKey& category : m_categories)
        {
            for (const Style* style : m_sheet.GetStylesByCategory(category))
            {
                m_styleNumbers.emplace(style, styles.size());
                styles.push_back(style);
            }
        }
        Json::Array styleValues;
        for (const Style* style : styles)
        {
            styleValues.AddValue(StyleValue(*style));
        }
        const VelStringView path = m_sheet.GetPath();
        Json::Object data;
        data.AddValue(L"sheet", VelString(path.substr(path.find_last_of(L"/\\") + 1)));
        data.AddValue(L"version", Json::Variant(static_cast<std::int64_t>(m_sheet.GetVersion())));
        data.AddValue(L"categories", std::move(m_categoryValues));
        data.AddValue(L"values", m_values.Take());
        data.AddValue(L"places", m_places.Take());
        data.AddValue(L"tiles", m_tiles.Take());
        data.AddValue(L"slots", m_slots.Take());
        data.AddValue(L"styles", std::move(styleValues));
        return data;
    }

private:
    using Role = std::optional<std::string>;

    void AddCategory(const PropertyKey& name)
    {
        const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
        m_categoryNumbers.emplace(name, m_categories.size());
        m_categories.push_back(name);
        Json::Object category;
        category.AddValue(L"name", name.GetText());
        category.AddValue(L"label", manager.TranslateCategory(name));
        category.AddValue(L"look", m_looks.OfCategory(name));
        m_categoryValues.AddValue(std::move(category));
        for (const Property& property : PropertiesOf(manager.GetCategory(name).get()))
        {
            m_properties[name].emplace(property.key, property);
        }
    }

    Json::Variant StyleValue(const Style& style)
    {
        Json::Object value;
        value.AddValue(L"name", m_sheet.GetStyleName(&style));
        value.AddValue(L"category", Number(m_categoryNumbers.at(style.GetCategoryName())));
        if (const auto parent = m_styleNumbers.find(style.GetParent()); parent != m_styleNumbers.end())
        {
            value.AddValue(L"parent", Number(parent->second));
        }
        if (!style.GetExternalID().empty())
        {
            value.AddValue(L"id", style.GetExternalID());
        }
        if (!style.GetExternalName().empty())
        {
            value.AddValue(L"original", style.GetExternalName());
        }
        bool isComplete = true;
        Json::Array rows;
        m_roles = {{"", std::string()}};
        for (const EffectiveValue& row : CollectEffectiveValues(m_origins, style, isComplete))
        {
            if (rows.GetSize() == MostRows || m_rowCount == MostRowsOfAll)
            {
                isComplete = false;
                break;
            }
            rows.AddValue(RowValue(row));
            ++m_rowCount;
        }
        value.AddValue(L"rows", std::move(rows));
        if (!isComplete)
        {
            value.AddValue(L"cut", true);
        }
        return value;
    }

    /// The looks along a path. Rows come with what they are inside of before them.
    const Role& RoleOf(const EffectiveValue& row, const Property& property, const Look& look)
    {
        const std::size_t point = row.path.rfind('.');
        std::string outer = point == std::string::npos ? std::string() : row.path.substr(0, point);
        std::string element;
        if (!outer.empty() && outer.back() == ']')
        {
            element = outer.substr(outer.rfind('['));
            outer.erase(outer.size() - element.size());
        }
        const Role outerRole = m_roles[outer];
        Role& role = m_roles[row.path];
        role.reset();
        VelString part = look.part;
        if (part.empty() && (property.isList || property.definition->IsSubstyle()))
        {
            part = m_looks.OfCategory(property.elementCategory);
        }
        if (outerRole && !part.empty())
        {
            const std::string last = Shown(part);
            role = outerRole->empty() && element.empty() ? last : *outerRole + element + '.' + last;
        }
        return role;
    }

    Json::Variant RowValue(const EffectiveValue& row)
    {
        const Property& property = m_properties.at(row.category).at(row.key);
        const std::size_t value =
            row.value == nullptr || row.isClosed ? AddText(row.text) : AddValue(*property.definition, *row.value);
        const std::size_t slot = AddSlot(row, property);
        const bool isDefault = row.origin.kind == Origin::Kind::Default && row.origin.category == row.category;
        if (isDefault && row.value == &property.definition->GetDefaultValue() && !row.isClosed)
        {
            return Number(slot);
        }
        Json::Array values;
        values.AddValue(Number(slot));
        values.AddValue(Number(value));
        values.AddValue(row.isOwn ? OwnPlace : PlaceOf(row.origin));
        Json::Array hidden = row.value != nullptr && row.asked != nullptr ? HiddenBy(row, property) : Json::Array();
        values.AddValue(hidden.GetSize() > 0 ? Json::Variant(std::move(hidden)) : Number(0));
        const std::string heir = row.heir != nullptr ? m_origins.GetPath(*row.heir) : std::string();
        if (!heir.empty())
        {
            values.AddValue(VelPlatform::ToWide(heir));
        }
        return values;
    }

    std::size_t AddSlot(const EffectiveValue& row, const Property& property)
    {
        const Look look = m_looks.OfProperty(row.category, row.key);
        const Role& role = RoleOf(row, property, look);
        const std::size_t category = m_categoryNumbers.at(row.category);
        return m_slots.Add(row.path + '\n' + std::to_string(category) + '\n' + role.value_or(""), [&] {
            Json::Array slot;
            slot.AddValue(VelPlatform::ToWide(row.path));
            slot.AddValue(role ? Json::Variant(VelPlatform::ToWide(*role)) : Json::Variant());
            slot.AddValue(look.unit);
            slot.AddValue(Number(category));
            slot.AddValue(Number(AddValue(*property.definition, property.definition->GetDefaultValue())));
            slot.AddValue(look.tiles.empty() ? Json::Variant() : Number(AddTiles(row, look)));
            return slot;
        });
    }

    std::size_t AddTiles(const EffectiveValue& row, const Look& look)
    {
        return m_tiles.Add(Shown(row.category.GetText()) + '\n' + Shown(row.key.GetText()), [&look] {
            Json::Object tiles;
            for (const auto& [id, path] : look.tiles)
            {
                tiles.AddValue(id, path);
            }
            return tiles;
        });
    }

    /// What the value hides, from near to far.
    Json::Array HiddenBy(const EffectiveValue& row, const Property& property)
    {
        Json::Array hidden;
        if (property.definition->IsSubstyle())
        {
            return hidden; // a substyle adds to what it hides
        }
        PathStep step;
        step.property = property;
        const Explanation explanation = Explain(*row.asked, {step});
        std::size_t count = 0;
        bool isBehind = false;
        for (const Link& link : explanation.links)
        {
            if (isBehind && link.value != nullptr && ++count <= MostHidden)
            {
                hidden.AddValue(PlaceOf(m_origins.Find(*link.value)));
                hidden.AddValue(Number(AddValue(*property.definition, *link.value)));
            }
            isBehind = isBehind || link.isWinner;
        }
        if (count > MostHidden)
        {
            hidden.AddValue(Number(count - MostHidden));
        }
        return hidden;
    }

    Json::Variant PlaceOf(const Origin& origin)
    {
        if (origin.kind == Origin::Kind::Default)
        {
            return FirstDefaultPlace - static_cast<std::int64_t>(m_categoryNumbers.at(origin.category));
        }
        return origin.kind == Origin::Kind::Style
                   ? PlaceOf(*origin.style, PathTo(m_origins.GetPath(*origin.style), origin.key))
                   : Json::Variant(OutsidePlace);
    }

    Json::Variant PlaceOf(const Style& style, const std::string& path)
    {
        const auto number = m_styleNumbers.find(m_origins.GetTop(style));
        if (number == m_styleNumbers.end())
        {
            return OutsidePlace;
        }
        return Number(m_places.Add(std::to_string(number->second) + ' ' + path, [&] {
            Json::Array place;
            place.AddValue(Number(number->second));
            place.AddValue(VelPlatform::ToWide(path));
            return place;
        }));
    }

    std::size_t AddText(const std::string& text)
    {
        return m_values.Add("text " + text, [&text] {
            Json::Object value;
            value.AddValue(L"text", VelPlatform::ToWide(text));
            return value;
        });
    }

    std::size_t AddValue(const Styles::BaseStyleProperty& definition, const Any& value)
    {
        if (Style* const* substyle = value.GetIf<Style*>())
        {
            return AddStyle(*substyle);
        }
        if (const StyleList* list = value.GetIf<StyleList>())
        {
            return m_values.Add("list " + std::to_string(list->size()), [list] { return Number(list->size()); });
        }
        const auto* policy = definition.GetConversionPolicy();
        try
        {
            if (policy != nullptr)
            {
                const VelString text = policy->ToText(value);
                return m_values.Add("plain " + std::string(std::string_view(VelPlatform::ToNarrow(text))),
                                    [&text] { return text; });
            }
        }
        catch (const std::bad_cast&) // inherited from a style of another category
        {
            return AddText("a value of another kind");
        }
        return AddText("not written");
    }

    std::size_t AddStyle(const Style* style)
    {
        if (style == nullptr)
        {
            return m_values.Add("none", [] { return Json::Variant(); });
        }
        const std::size_t category = m_categoryNumbers.at(style->GetCategoryName());
        const Style* parent = style->GetParent();
        const Json::Variant place =
            parent != nullptr ? PlaceOf(*parent, m_origins.GetPath(*parent)) : Json::Variant(OwnPlace);
        return m_values.Add("style " + std::to_string(category) + ' ' + std::to_string(place.Get<std::int64_t>()), [&] {
            Json::Array value;
            value.AddValue(Number(category));
            value.AddValue(place);
            return value;
        });
    }

    const Sheet& m_sheet;
    const Looks& m_looks;
    const Origins m_origins;
    std::vector<PropertyKey> m_categories;
    Json::Array m_categoryValues;
    std::map<PropertyKey, std::size_t> m_categoryNumbers;
    std::map<PropertyKey, std::map<PropertyKey, Property>> m_properties; // by category
    std::unordered_map<const Style*, std::size_t> m_styleNumbers;
    Numbered m_values;
    Numbered m_places;
    Numbered m_tiles;
    Numbered m_slots;
    std::unordered_map<std::string, Role> m_roles; // of the style that is being told, by path
    std::size_t m_rowCount = 0;
};

} // namespace

Json::Variant MakeGalleryData(const Schema& schema, const Sheet& sheet, const Looks& looks)
{
    return Builder(schema, sheet, looks).Build();
}

} // namespace Inspect
