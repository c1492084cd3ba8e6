// Setting, clearing and reverting values.

#include <styles/Style.h>

#include "core/DefinitionCalls.h"
#include "core/StyleAccess.h"
#include "core/StylesInside.h"
#include "core/SubstyleSteps.h"

#include <exception>
#include <memory>

namespace Styles
{

namespace
{

/// The own value of `source` at the end of a path goes to `target`; where `source` has none, `target` loses its own.
void CopyPathProperty(Style& target, const PropertyPath& path, const Style& source)
{
    if (path.empty())
    {
        return;
    }
    Style* to = &target;
    const Style* from = &source;
    for (std::size_t index = 0; index + 1 < path.size(); ++index)
    {
        to = Detail::FindOrCreateSubstyle(*to, path[index]);
        if (to == nullptr)
        {
            return;
        }
        from = from->GetSubstyle(path[index], false);
        if (from == nullptr)
        {
            to->ClearProperty(path[index + 1]);
            return;
        }
    }
    if (const Any* value = Detail::StyleAccess::FindOwn(*from, path.back()))
    {
        to->SetProperty(path.back(), *value);
    }
    else
    {
        to->ClearProperty(path.back());
    }
}

/// The style at the end of a path, whose substyles are made where they are missing; null where that is impossible. The
/// path has at least one key.
Style* FollowOrCreatePath(Style& style, const PropertyPath& path)
{
    Style* reached = &style;
    for (std::size_t index = 0; index + 1 < path.size() && reached != nullptr; ++index)
    {
        reached = Detail::FindOrCreateSubstyle(*reached, path[index]);
    }
    return reached;
}

/// Destroys a value that has left its style, when its turn comes or when an exception passes.
class Departing
{
public:
    Departing(const BaseStyleProperty* definition, const Any* value) : m_definition(definition), m_value(value) {}
    Departing(const Departing&) = delete;
    Departing& operator=(const Departing&) = delete;

    ~Departing()
    {
        try
        {
            Destroy();
        }
        catch (...) // another exception is on its way already
        {}
    }

    void Release() noexcept { m_definition = nullptr; }

    void Destroy()
    {
        if (const BaseStyleProperty* definition = std::exchange(m_definition, nullptr))
        {
            definition->DestroyPropertyData(*m_value);
        }
    }

private:
    const BaseStyleProperty* m_definition;
    const Any* m_value;
};

} // namespace

void Detail::StyleAccess::Adopt(Style& style, const BaseStyleProperty& definition, const PropertyKey& key, Any value)
{
    Departing departing(&definition, &value);
    if (HoldsOnlyPlainValues(style))
    {
        Category(style)->ExpectUnknownValues(); // `definition` has exchanged the category
    }
    const auto place = FindPlace(style, key);
    if (place != style.m_properties.end() && place->first == key)
    {
        place->second.Swap(value);
        departing.Destroy();
        return;
    }
    style.m_properties.emplace_hint(place, key, Any())->second.Swap(value);
    departing.Release();
}

void Detail::StyleAccess::StorePlain(Style& style, const PropertyKey& key, Any value)
{
    const auto place = FindPlace(style, key);
    const bool isThere = place != style.m_properties.end() && place->first == key;
    if (value.IsEmpty())
    {
        if (isThere)
        {
            style.m_properties.erase(place);
        }
    }
    else if (isThere)
    {
        place->second.Swap(value);
    }
    else
    {
        style.m_properties.emplace_hint(place, key, std::move(value));
    }
}

void Style::SetProperty(const PropertyKey& key, const Any& value)
{
    const PropertyKey name = key; // `key` and `value` may be parts of the very entry that goes
    const auto [definition, isPlain] = Detail::StyleAccess::Find(*this, name);
    Any copy(value);
    if (isPlain)
    {
        Detail::StyleAccess::StorePlain(*this, name, std::move(copy));
        return;
    }
    const std::shared_ptr<const StyleCategory> category = m_category; // a definition may exchange it

    // KEPT: unlike the other form, this one destroys and removes the old value before it asks for the new one, so that
    // an unknown key, or a definition that throws, leaves the property cleared. Hosts clear properties in this way.
    // Pinned by StyleMutation.SettingACopyRemovesTheOldValueFirst
    auto old = m_properties.extract(name);
    Departing departing(old.empty() ? nullptr : definition, old.empty() ? nullptr : &old.mapped());
    if (definition == nullptr)
    {
        return;
    }
    // A new value inside the old one, as when a substyle is set to itself, must be copied while it lives.
    if (old.empty() || !Detail::RefersInto(*definition, old.mapped(), copy))
    {
        departing.Destroy();
    }
    Any result = Detail::Callable(*definition).MovePropertyData(this, std::move(copy));
    if (result.IsEmpty())
    {
        departing.Destroy();
        return;
    }
    Departing unused(definition, &result);
    departing.Destroy();
    unused.Release();
    Detail::StyleAccess::Adopt(*this, *definition, name, std::move(result));
}

void Style::SetProperty(const PropertyKey& key, Any&& value)
{
    // KEPT: an unknown key leaves an existing value where it is, unlike the other form.
    // Pinned by StyleMutation.SettingAnUnknownKeyByMoveLeavesTheOldValue
    const PropertyKey name = key;
    const auto [definition, isPlain] = Detail::StyleAccess::Find(*this, name);
    if (definition == nullptr)
    {
        return;
    }
    if (isPlain)
    {
        Detail::StyleAccess::StorePlain(*this, name, std::move(value));
        return;
    }
    const std::shared_ptr<const StyleCategory> category = m_category; // a definition may exchange it
    Any result = Detail::Callable(*definition).MovePropertyData(this, std::move(value));
    if (result.IsEmpty())
    {
        // KEPT: the old value is removed without being destroyed, so a substyle in it belongs to nobody from then on. A
        // host that keeps a pointer to the substyle it clears in this way relies on it. Pinned by
        // StyleMutation.SettingAnEmptyValueByMoveRemovesTheOldOneWithoutDestroyingIt
        m_properties.erase(name);
        return;
    }
    Detail::StyleAccess::Adopt(*this, *definition, name, std::move(result));
}

void Style::SetSubstyle(const PropertyKey& key, const Style* substyle)
{
    SetProperty(key, Any(substyle));
}

void Style::SetPathProperty(const PropertyPath& path, const Any& value)
{
    if (path.empty())
    {
        return;
    }
    if (Style* reached = FollowOrCreatePath(*this, path))
    {
        reached->SetProperty(path.back(), value);
    }
}

void Style::SetPathProperty(const PropertyPath& path, Any&& value)
{
    if (path.empty())
    {
        return;
    }
    if (Style* reached = FollowOrCreatePath(*this, path))
    {
        reached->SetProperty(path.back(), std::move(value));
    }
}

void Style::SetPathProperty(const PropertyPath& path, const Style* source)
{
    if (source != nullptr)
    {
        CopyPathProperty(*this, path, *source);
    }
}

void Style::SetPathSubstyle(const PropertyPath& path, const Style* substyle)
{
    SetPathProperty(path, Any(substyle));
}

void Style::SetProperties(const std::vector<PropertyPath>& paths, const Style* source)
{
    if (source == nullptr)
    {
        return;
    }
    for (const PropertyPath& path : paths)
    {
        CopyPathProperty(*this, path, *source);
    }
}

bool Style::ClearProperty(const PropertyKey& key)
{
    const PropertyKey name = key;
    const auto old = m_properties.extract(name);
    if (old.empty())
    {
        return false;
    }
    DestroyPropertyData(name, old.mapped());
    return true;
}

bool Style::ClearPathProperty(const PropertyPath& path)
{
    Style* reached = path.empty() ? nullptr : Detail::FollowPath(*this, path);
    return reached != nullptr && reached->ClearProperty(path.back());
}

bool Style::RevertPathProperty(const PropertyPath& path, bool force)
{
    if (path.empty())
    {
        return false;
    }
    bool inherits = force || m_parent != nullptr || (m_owner != nullptr && m_owner->m_parent != nullptr);
    Style* reached = this;
    for (std::size_t index = 0; index + 1 < path.size(); ++index)
    {
        reached = reached->GetSubstyle(path[index], false);
        if (reached == nullptr)
        {
            return false;
        }
        inherits = inherits || reached->m_parent != nullptr;
    }
    return inherits && reached->ClearProperty(path.back());
}

void Style::ClearProperties(const Style* other)
{
    if (other == nullptr)
    {
        return;
    }
    std::vector<PropertyKey> keys; // `other` may be this style, or die with one of the values
    keys.reserve(other->m_properties.size());
    for (const auto& entry : other->m_properties)
    {
        keys.push_back(entry.first);
    }
    for (const PropertyKey& key : keys)
    {
        ClearProperty(key);
    }
}

void Style::ClearAllProperties()
{
    std::map<PropertyKey, Any> old;
    old.swap(m_properties);
    if (Detail::StyleAccess::HoldsOnlyPlainValues(*this))
    {
        return;
    }
    std::exception_ptr failure;
    for (const auto& [key, value] : old)
    {
        try
        {
            const auto [definition, isPlain] = Detail::StyleAccess::Find(*this, key);
            if (definition != nullptr && !isPlain)
            {
                definition->DestroyPropertyData(value);
            }
        }
        catch (...)
        {
            if (!failure)
            {
                failure = std::current_exception();
            }
        }
    }
    if (failure)
    {
        std::rethrow_exception(failure);
    }
}

bool Style::RevertAllProperties()
{
    bool changed = false;
    for (auto entry = m_properties.begin(); entry != m_properties.end();)
    {
        const auto current = entry++;
        Style* const* substyle = current->second.GetIf<Style*>();
        if (substyle != nullptr && *substyle != nullptr)
        {
            changed = (*substyle)->RevertAllProperties() || changed;
            continue;
        }
        const auto old = m_properties.extract(current);
        changed = true;
        DestroyPropertyData(old.key(), old.mapped());
    }
    return changed;
}

Style* Style::CopyProperties(const std::set<PropertyKey>& keys)
{
    auto copy = std::make_unique<Style>(nullptr, GetCategoryName());
    for (const PropertyKey& key : keys)
    {
        copy->SetProperty(key, GetProperty(key));
    }
    return copy.release();
}

void Style::DestroyPropertyData(const PropertyKey& key, const Any& value)
{
    if (const BaseStyleProperty* definition = FindDefinition(key))
    {
        definition->DestroyPropertyData(value);
    }
}

} // namespace Styles
