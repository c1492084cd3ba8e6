#include "OwnValues.h"

namespace Inspect
{

namespace
{

Property Describe(const Styles::StyleCategory& category, const PropertyKey& key, Styles::BaseStyleProperty& definition)
{
    Property property{key, &definition, definition.GetDefaultValue().Is<StyleList>(), PropertyKey()};
    if (property.isList || definition.IsSubstyle())
    {
        property.elementCategory = definition.GetElementCategoryName();
        if (property.elementCategory == PropertyKey::Empty)
        {
            property.elementCategory = category.GetCategoryName();
        }
    }
    return property;
}

} // namespace

std::vector<Property> PropertiesOf(const Styles::StyleCategory* category)
{
    std::vector<Property> properties;
    if (category != nullptr)
    {
        for (const PropertyKey& key : category->GetPropertyNames())
        {
            if (const Property property = FindProperty(*category, key); property.definition != nullptr)
            {
                properties.push_back(property);
            }
        }
    }
    return properties;
}

Property FindProperty(const Styles::StyleCategory& category, const PropertyKey& key)
{
    const auto entry = category.GetProperties().find(key);
    return entry != category.GetProperties().end() && entry->second != nullptr ? Describe(category, key, *entry->second)
                                                                               : Property{};
}

void ForEachOwnValue(const Style& style, const std::function<void(const OwnValue&)>& onValue,
                     const std::function<void(const InnerStyle&)>& onInner)
{
    const auto goInto = [&](const InnerStyle& inner) {
        if (inner.style != nullptr)
        {
            if (onInner)
            {
                onInner(inner);
            }
            ForEachOwnValue(*inner.style, onValue, onInner);
        }
    };
    for (const Property& property : PropertiesOf(style.GetCategory().get()))
    {
        if (!style.DoesOverrideProperty(property.key))
        {
            continue;
        }
        const Any& value = style.GetProperty(property.key);
        onValue({&style, property.key, property.definition, &value});
        if (Style* const* substyle = value.GetIf<Style*>())
        {
            goInto({&style, property.key, false, 0, *substyle});
        }
        else if (const auto* list = value.GetIf<StyleList>())
        {
            for (std::size_t index = 0; index < list->size(); ++index)
            {
                goInto({&style, property.key, true, index, (*list)[index]});
            }
        }
    }
}

void ForEachOwnValue(const Styles::StyleSheet& sheet, const std::function<void(const OwnValue&)>& onValue)
{
    for (const Style* style : sheet.GetStyles())
    {
        if (style != nullptr)
        {
            ForEachOwnValue(*style, onValue);
        }
    }
}

} // namespace Inspect
