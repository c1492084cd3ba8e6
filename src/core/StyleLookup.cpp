// Looking values up: own, inherited from parents or through the owner, default.

#include <styles/Style.h>

#include "core/LinkWalk.h"
#include "core/OwnerInheritance.h"
#include "core/StyleAccess.h"
#include "core/SubstyleSteps.h"

#include <exception>

namespace Styles
{

namespace
{

/// The last key of a path that names a substyle as a whole.
const PropertyKey& WholeSubstyle()
{
    static const PropertyKey key(VelString(L"*"));
    return key;
}

/// Whether `value` is the very default object of the category for `key`.
bool IsDefaultObject(const StyleCategory& category, const PropertyKey& key, const Any& value)
{
    const auto entry = category.GetProperties().find(key);
    return entry != category.GetProperties().end() && entry->second != nullptr &&
           &entry->second->GetDefaultValue() == &value;
}

} // namespace

const Any& Style::GetProperty(const PropertyKey& key) const
{
    const Any* own = Detail::StyleAccess::FindOwn(*this, key);
    return own != nullptr ? *own : GetInheritedProperty(key);
}

const Any& Style::GetInheritedProperty(const PropertyKey& key) const
{
    Detail::ParentWalk parents(*this);
    const Style* top = this;
    while (const Style* ancestor = parents.Next())
    {
        if (const Any* value = Detail::StyleAccess::FindOwn(*ancestor, key))
        {
            return *value;
        }
        top = ancestor;
    }
    if (parents.IsClosed())
    {
        return Detail::GetDefaultOf(*this, key);
    }
    return top->m_owner == nullptr ? Detail::GetDefaultOf(*top, key) : Detail::GetInheritedThroughOwner(*top, key);
}

bool Style::GetProperty(const PropertyKey& key, Any& out) const
{
    if (FindDefinition(key) == nullptr)
    {
        return false;
    }
    const Any& value = GetProperty(key);
    if (IsDefaultObject(*m_category, key, value))
    {
        return false;
    }
    out = value;
    return true;
}

bool Style::GetInheritedProperty(const PropertyKey& key, Any& out) const
{
    if (!m_category)
    {
        return false;
    }
    const Any& value = GetInheritedProperty(key);
    if (IsDefaultObject(*m_category, key, value))
    {
        return false;
    }
    out = value;
    return true;
}

bool Style::GetOverrideProperty(const PropertyKey& key, Any& out) const
{
    const Any* own = Detail::StyleAccess::FindOwn(*this, key);
    if (own == nullptr)
    {
        return false;
    }
    out = *own;
    return true;
}

bool Style::DoesOverrideProperty(const PropertyKey& key) const
{
    return m_properties.contains(key);
}

Style* Style::GetSubstyle(const PropertyKey& key, bool inherited) const
{
    if (inherited)
    {
        return GetProperty(key).Get<Style*>();
    }
    const Any* own = Detail::StyleAccess::FindOwn(*this, key);
    Style* const* substyle = own != nullptr ? own->GetIf<Style*>() : nullptr;
    return substyle != nullptr ? *substyle : nullptr;
}

Style* Style::GetSubstyleAndCreateIfMissing(const PropertyKey& key, const PropertyKey& categoryName)
{
    if (Style* substyle = GetSubstyle(key, false))
    {
        return substyle;
    }
    const BaseStyleProperty* definition = FindDefinition(key);
    return definition != nullptr ? Detail::CreateSubstyle(*this, *definition, key, categoryName) : nullptr;
}

const Any& Style::GetPathProperty(const PropertyPath& path) const
{
    if (path.empty())
    {
        throw std::exception();
    }
    const std::size_t last = path.size() - 1;
    const Style* reached = this;
    for (std::size_t index = 0; index < last; ++index)
    {
        if (const Style* substyle = reached->GetSubstyle(path[index], false))
        {
            reached = substyle;
            continue;
        }
        // From here on only the categories are left to follow.
        std::shared_ptr<const StyleCategory> category = reached->m_category;
        for (; index < last && category; ++index)
        {
            if (const BaseStyleProperty* definition = category->GetStyleProperty(path[index]))
            {
                category = Detail::GetElementCategory(*definition);
            }
        }
        if (!category)
        {
            throw std::exception();
        }
        return category->GetDefaultValue(path[last]);
    }
    return reached->GetProperty(path[last]);
}

bool Style::DoesOverridePathProperty(const PropertyPath& path) const
{
    if (path.empty())
    {
        return false;
    }
    const Style* reached = Detail::FollowPath(*this, path);
    if (reached == nullptr)
    {
        return false;
    }
    if (path.back() != WholeSubstyle())
    {
        return reached->DoesOverrideProperty(path.back());
    }
    return reached->m_parent != nullptr || !reached->IsEmptyWithEmptySubstyles() ||
           reached->SubstylesHaveAnyParentalRelationships();
}

} // namespace Styles
