#include <styles/StyleOverrides.h>
#include <styles/SubStyle.h>

#include "core/LinkWalk.h"
#include "core/StyleAccess.h"

#include <memory>
#include <utility>

namespace Styles
{

namespace
{

void CollectPaths(const Style& style, PropertyPath& prefix, std::vector<PropertyPath>& paths)
{
    for (const auto& [key, value] : Detail::StyleAccess::Properties(style))
    {
        prefix.push_back(key);
        Style* const* substyle = value.GetIf<Style*>();
        if (substyle == nullptr)
        {
            paths.push_back(prefix);
        }
        else if (*substyle != nullptr)
        {
            CollectPaths(**substyle, prefix, paths);
        }
        prefix.pop_back();
    }
}

/// Whether `style` or a style on its owner chain has a parent.
bool HasSomethingToInherit(const Style& style)
{
    return style.GetParent() != nullptr || style.StylePropertiesHasDependencyOnOwner();
}

} // namespace

std::set<PropertyKey> GetStyleCategoryProperties(const Style& style)
{
    const StyleCategory* category = Detail::StyleAccess::Category(style);
    if (category == nullptr)
    {
        return {};
    }
    return {category->GetPropertyNames().begin(), category->GetPropertyNames().end()};
}

std::set<PropertyKey> GetOverriddenProperties(const Style& style)
{
    std::set<PropertyKey> keys;
    for (const auto& entry : Detail::StyleAccess::Properties(style))
    {
        keys.insert(keys.end(), entry.first);
    }
    return keys;
}

std::vector<PropertyPath> GetOverriddenPropertyPaths(const Style& style)
{
    std::vector<PropertyPath> paths;
    PropertyPath prefix;
    CollectPaths(style, prefix, paths);
    return paths;
}

std::vector<PropertyPath> GetOverriddenSubstyleProperties(const Style& style, const PropertyKey& substyleKey,
                                                          bool includeSubstyleKey)
{
    std::vector<PropertyPath> paths;
    if (const Style* substyle = style.GetSubstyle(substyleKey, false))
    {
        for (const auto& entry : Detail::StyleAccess::Properties(*substyle))
        {
            paths.push_back(includeSubstyleKey ? MakePath(substyleKey, entry.first) : MakePath(entry.first));
        }
    }
    return paths;
}

Style* CreateStyleFromSubstyleWithoutOwnerDependencies(const Style* style, const PropertyKey& substyleKey,
                                                       std::set<PropertyKey>& keys)
{
    const Style* substyle = style != nullptr ? style->GetSubstyle(substyleKey, true) : nullptr;
    const StyleCategory* category = substyle != nullptr ? Detail::StyleAccess::Category(*substyle) : nullptr;
    if (category == nullptr)
    {
        return nullptr;
    }
    Style* parent = GetSubstyleParent(*substyle);
    auto result = std::make_unique<Style>(*substyle);
    result->SetParent(parent);
    std::set<PropertyKey> allKeys = GetStyleCategoryProperties(*substyle);
    for (const PropertyKey& key : allKeys)
    {
        const Any& value = substyle->GetProperty(key);
        const Any& inherited = parent != nullptr ? parent->GetProperty(key) : category->GetDefaultValue(key);
        if (&value != &inherited)
        {
            result->SetProperty(key, value);
        }
    }
    keys.swap(allKeys);
    return result.release();
}

void ClearMatchingInheritedProperties(Style& style)
{
    if (!HasSomethingToInherit(style))
    {
        return;
    }
    // The values move to a style of their own, so that this one answers what it inherits.
    Style examined;
    Detail::StyleAccess::TakeValues(examined, style);
    auto& values = Detail::StyleAccess::Properties(examined);
    auto entry = values.begin();
    try
    {
        Detail::StyleAccess::RepairOwners(examined);
        for (; entry != values.end(); ++entry)
        {
            const auto& [key, value] = *entry;
            // KEPT: since lists of different lengths compare equal, an own list with more or fewer elements than the
            // inherited one is removed. What is no override to the definition is none here. Pinned by
            // StyleOverrides.AListOfAnotherLengthThanTheInheritedOneIsRemoved
            const BaseStyleProperty* definition = Detail::StyleAccess::FindDefinition(style, key);
            if (definition != nullptr && !definition->IsEqual(value, style.GetInheritedProperty(key)))
            {
                style.SetProperty(key, value);
            }
        }
    }
    catch (...)
    {
        while (entry != values.end())
        {
            Detail::StyleAccess::Properties(style).insert(values.extract(entry++));
        }
        try
        {
            Detail::StyleAccess::RepairOwners(style);
        }
        catch (...) // the first exception is the one that goes on
        {}
        throw;
    }
    examined.ClearAllProperties();
}

} // namespace Styles
