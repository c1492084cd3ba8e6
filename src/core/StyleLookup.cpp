// Looking values up: own, inherited from parents or through the owner, default.

#include <styles/Style.h>

#include "core/OwnerInheritance.h"
#include "core/ParentSearch.h"
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

/// Whether `value` is the very default object of its category.
bool IsDefaultObject(const Detail::Definition& definition, const Any& value)
{
    return definition.property != nullptr && &definition.property->GetDefaultValue() == &value;
}

/// What `style` inherits for `key` beyond its parents, where a search along them ended at `top`.
const Any& GetBeyondParents(const Style& style, const Style* top, const PropertyKey& key)
{
    if (top == nullptr)
    {
        return Detail::GetDefaultOf(style, key);
    }
    return top->GetOwner() == nullptr ? Detail::GetDefaultOf(*top, key) : Detail::GetInheritedThroughOwner(*top, key);
}

/// What `style` inherits for `key`, whatever its own value.
const Any& Inherit(const Style& style, const PropertyKey& key)
{
    if (style.GetParent() == nullptr)
    {
        return GetBeyondParents(style, &style, key);
    }
    const auto [value, top] = Detail::SearchUpwards(*style.GetParent(), key);
    return value != nullptr ? *value : GetBeyondParents(style, top, key);
}

} // namespace

Detail::ParentSearch Detail::SearchLongChain(const Style& style, const PropertyKey& key) noexcept
{
    ParentWalk parents(style);
    const Style* top = nullptr;
    for (const Style* current = &style; current != nullptr; current = parents.Next())
    {
        if (const Any* own = StyleAccess::FindOwn(*current, key))
        {
            return {own, nullptr};
        }
        top = current;
    }
    return {nullptr, parents.IsClosed() ? nullptr : top};
}

const Any& Style::GetProperty(const PropertyKey& key) const
{
    const Any* own = Detail::StyleAccess::FindOwn(*this, key);
    return own != nullptr ? *own : Inherit(*this, key);
}

const Any& Style::GetInheritedProperty(const PropertyKey& key) const
{
    return Inherit(*this, key);
}

bool Style::GetProperty(const PropertyKey& key, Any& out) const
{
    const Detail::Definition definition = Detail::StyleAccess::Find(*this, key);
    if (definition.property == nullptr)
    {
        return false;
    }
    const Any& value = GetProperty(key);
    if (IsDefaultObject(definition, value))
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
    if (IsDefaultObject(Detail::StyleAccess::Category(*this)->Find(key), value))
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
