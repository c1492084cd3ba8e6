// Values inside substyles: reading, setting, clearing, pruning and copying them.

#include <styles/SubStyle.h>

#include "core/DefinitionCalls.h"
#include "core/StyleAccess.h"
#include "core/StylesInside.h"
#include "core/SubstyleSteps.h"
#include "registry/MissingEntry.h"

#include <memory>
#include <stdexcept>
#include <utility>

namespace Styles
{

namespace
{

/// The substyle in the own value under `key`; null without a value. \throws std::bad_cast when the value is no
/// substyle.
Style* OwnSubstyle(const Style& style, const PropertyKey& key)
{
    const Any* own = Detail::StyleAccess::FindOwn(style, key);
    return own != nullptr ? own->Get<Style*>() : nullptr;
}

/// The inherited substyle under `key`; null without one, also for a key that nobody knows. \throws std::bad_cast when
/// the inherited value is no substyle.
Style* InheritedSubstyle(const Style& style, const PropertyKey& key)
{
    try
    {
        return style.GetInheritedProperty(key).Get<Style*>();
    }
    catch (const std::logic_error&)
    {
        return nullptr;
    }
}

} // namespace

const Any& GetSubstyleProperty(const Style& style, const PropertyKey& substyleKey, const PropertyKey& propertyKey)
{
    if (const Style* substyle = style.GetSubstyle(substyleKey, true))
    {
        return substyle->GetProperty(propertyKey);
    }
    const BaseStyleProperty* definition = Detail::StyleAccess::FindDefinition(style, substyleKey);
    if (definition == nullptr)
    {
        Detail::ThrowMissingDefault(substyleKey); // only a parent of another category knows the property
    }
    return VelUtils::Singleton<StyleManager, 0>::GetInstance().GetDefaultValue(
        Detail::Callable(*definition).GetElementCategoryName(), propertyKey);
}

bool GetSubstyleProperty(const Style& style, const PropertyKey& substyleKey, const PropertyKey& propertyKey, Any& out)
{
    Any value;
    if (!style.GetProperty(substyleKey, value))
    {
        return false;
    }
    const Style* substyle = value.Get<Style*>();
    return substyle != nullptr && substyle->GetProperty(propertyKey, out);
}

Style* GetOrCreateSubstyle(Style& style, const PropertyKey& substyleKey)
{
    return Detail::FindOrCreateSubstyle(style, substyleKey);
}

void SetSubstyleProperty(Style& style, const PropertyKey& substyleCategory, const PropertyKey& substyleKey,
                         const PropertyKey& propertyKey, const Any& value)
{
    Style* substyle = OwnSubstyle(style, substyleKey);
    const BaseStyleProperty* definition =
        substyle == nullptr ? Detail::StyleAccess::FindDefinition(style, substyleKey) : nullptr;
    if (definition != nullptr)
    {
        if (!definition->IsSubstyle())
        {
            throw VelUtils::BadAnyCast();
        }
        substyle = Detail::CreateSubstyle(style, *definition, substyleKey, substyleCategory);
    }
    if (substyle == nullptr)
    {
        substyle = InheritedSubstyle(style, substyleKey);
    }
    if (substyle != nullptr)
    {
        substyle->SetProperty(propertyKey, value);
    }
}

void ClearSubstyleProperty(Style& style, const PropertyKey& substyleKey, const PropertyKey& propertyKey)
{
    if (Style* substyle = OwnSubstyle(style, substyleKey))
    {
        substyle->ClearProperty(propertyKey);
    }
}

void ClearEmptySubstyles(Style& style)
{
    std::vector<PropertyKey> empty;
    for (const auto& [key, value] : Detail::StyleAccess::Properties(style))
    {
        Style* const* substyle = value.GetIf<Style*>();
        if (substyle == nullptr || *substyle == nullptr)
        {
            continue;
        }
        ClearEmptySubstyles(**substyle);
        if ((*substyle)->IsEmpty())
        {
            empty.push_back(key);
        }
    }
    for (const PropertyKey& key : empty)
    {
        style.ClearProperty(key);
    }
}

void CopySourceSubstylesThatExistsInDestinationStyle(Style* destination, const Style* source, bool mergeValues)
{
    if (destination == nullptr || source == nullptr || destination == source)
    {
        return;
    }
    std::unique_ptr<const Style> copy;
    if (Detail::HoldsStyle(*destination, *source))
    {
        copy = std::make_unique<const Style>(*source); // replacing may destroy the source
        source = copy.get();
    }
    std::vector<PropertyKey> keys;
    for (const auto& entry : Detail::StyleAccess::Properties(*destination))
    {
        keys.push_back(entry.first);
    }
    for (const PropertyKey& key : keys)
    {
        const Style* given = source->GetSubstyle(key, false);
        Style* present = destination->GetSubstyle(key, false);
        if (given == nullptr || present == nullptr)
        {
            continue;
        }
        if (!mergeValues)
        {
            destination->SetSubstyle(key, given);
            continue;
        }
        for (const auto& [entryKey, value] : Detail::StyleAccess::Properties(*given))
        {
            present->SetProperty(entryKey, value);
        }
    }
}

} // namespace Styles
