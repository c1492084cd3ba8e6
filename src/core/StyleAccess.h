// The one door to what a style keeps to itself, for the definitions and the free functions that must see it.
#pragma once

#include <styles/Style.h>

namespace Styles::Detail
{

using PropertyMap = std::map<PropertyKey, Any>;

struct StyleAccess
{
    [[nodiscard]] static PropertyMap& Properties(Style& style) noexcept { return style.m_properties; }
    [[nodiscard]] static const PropertyMap& Properties(const Style& style) noexcept { return style.m_properties; }

    /// The key under which the owner holds `style`, in the style itself.
    [[nodiscard]] static const PropertyKey& OwnersKey(const Style& style) noexcept
    {
        return style.m_ownersSubstylePropertyName;
    }

    /// The category without the cost of sharing it; null for none.
    [[nodiscard]] static const StyleCategory* Category(const Style& style) noexcept { return style.m_category.get(); }

    [[nodiscard]] static const BaseStyleProperty* FindDefinition(const Style& style, const PropertyKey& key)
    {
        return style.FindDefinition(key);
    }

    /// The own value, or null.
    [[nodiscard]] static const Any* FindOwn(const Style& style, const PropertyKey& key) noexcept
    {
        const auto entry = style.m_properties.find(key);
        return entry != style.m_properties.end() ? &entry->second : nullptr;
    }

    /// Stores `value`, which is made for `style` already: what it owns belongs to the style from now on. The old value
    /// is destroyed through `definition`. When there is no memory the new value is destroyed instead.
    static void Adopt(Style& style, const BaseStyleProperty& definition, const PropertyKey& key, Any value);

    /// Makes `style` a copy of `other`, which must not hold it. On a throw of a definition it is as it was.
    static void Copy(Style& style, const Style& other);

    /// Gives `style` the values of `other`, which must not hold it, and a copy of all else but the owner.
    static void Take(Style& style, Style& other);

    /// Moves the values of `from` to `to`, which is empty, and gives it the category and the parent that they need. The
    /// owner links still name `from`, see `RepairOwners`.
    static void TakeValues(Style& to, Style& from) noexcept
    {
        to.m_parent = from.m_parent;
        to.m_category = from.m_category;
        to.m_properties.swap(from.m_properties);
    }

    /// As the private `Style::HasDependency` with both arguments.
    [[nodiscard]] static bool HasDependency(const Style& style, StyleSpan styles, bool direct)
    {
        return style.HasDependency(styles, direct);
    }

    /// Lets every value know that `style` holds it now.
    static void RepairOwners(Style& style) { style.RepairSubstyleOwnerPointers(); }
};

} // namespace Styles::Detail
