// The one door to what a style keeps to itself, for the definitions and the free functions that must see it.
#pragma once

#include <styles/Style.h>

#include "registry/IndexedCategory.h"

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
    [[nodiscard]] static const IndexedCategory* Category(const Style& style) noexcept
    {
        return static_cast<const IndexedCategory*>(style.m_category.get()); // the manager makes no others
    }

    /// What the category says about `key`. A miss is reported to the log.
    [[nodiscard]] static Definition Find(const Style& style, const PropertyKey& key)
    {
        const IndexedCategory* category = Category(style);
        const Definition definition = category != nullptr ? category->Find(key) : Definition();
        if (definition.property == nullptr && category != nullptr)
        {
            static_cast<void>(category->GetStyleProperty(key)); // reports
        }
        return definition;
    }

    [[nodiscard]] static const BaseStyleProperty* FindDefinition(const Style& style, const PropertyKey& key)
    {
        return Find(style, key).property;
    }

    /// The own value, or null.
    [[nodiscard]] static const Any* FindOwn(const Style& style, const PropertyKey& key) noexcept
    {
        const auto entry = style.m_properties.find(key);
        return entry != style.m_properties.end() ? &entry->second : nullptr;
    }

    /// Whether no definition has to be asked about the values of `style`.
    [[nodiscard]] static bool HoldsOnlyPlainValues(const Style& style) noexcept
    {
        const IndexedCategory* category = Category(style);
        return category != nullptr && category->HasOnlyPlainValues();
    }

    /// Where `key` is in the map, or where it is to be inserted.
    [[nodiscard]] static PropertyMap::iterator FindPlace(Style& style, const PropertyKey& key) noexcept
    {
        PropertyMap& map = style.m_properties;
        // Copies come in order, one behind the other.
        return map.empty() || std::less<PropertyKey>()(map.rbegin()->first, key) ? map.end() : map.lower_bound(key);
    }

    /// Stores `value` under `key`, which has a plain definition; an empty one removes what is there. On a throw the
    /// style is as it was.
    static void StorePlain(Style& style, const PropertyKey& key, Any value);

    /// Whether `style` and its parents are of one category, hold only plain values, and inherit from no owner.
    [[nodiscard]] static bool InheritsPlainly(const Style& style) noexcept;

    /// As `Flatten`, for a style that inherits plainly; the parent stays.
    static bool FlattenPlainly(Style& style, std::set<PropertyKey>* changed);

    /// As `FlattenProperty` of `definition`, which is the plain one of `key` in the category of `style`.
    static bool FlattenPlain(Style& style, const BaseStyleProperty& definition, const PropertyKey& key);

    /// As `Style::Flatten`; adds the keys to `changed` unless it is null. Whether there are any.
    static bool Flatten(Style& style, std::set<PropertyKey>* changed);

    /// Gives `style`, which holds no values, copies of those of `other`, and all else of it but the owner.
    static void Fill(Style& style, const Style& other);

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
