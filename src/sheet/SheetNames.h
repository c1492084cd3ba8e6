// The styles of a sheet by name, with what the sheet knows of the names beside.
#pragma once

#include <styles/StyleSheet.h>

#include "core/StyleAccess.h"
#include "sheet/NumberedNames.h"

namespace Styles::Detail
{

/// What a sheet has for its map of names. Sheets that share a collection share all of it, and the fields of a sheet are
/// those that hosts are compiled with.
struct SheetNames : StyleSheet::NameMap
{
    /// Follows every removal of a name.
    NumberedNames numbers;

    /// Whether a style may be listed under two names, or not be known by the name that it is listed under. Else the
    /// two maps of the sheet hold the same pairs.
    bool mayRepeatStyles = false;

    /// Goes up whenever another style is listed under a name. Who has seen a style listed knows that it still is while
    /// this stays.
    std::size_t changes = 0;

    [[nodiscard]] static SheetNames& Of(StyleSheet::NameMap& map) noexcept { return static_cast<SheetNames&>(map); }
};

/// Whether `style` is no null and of that category, `PropertyKey::Empty` for none.
[[nodiscard]] inline bool IsOfCategory(const Style* style, const PropertyKey& name)
{
    if (style == nullptr)
    {
        return false;
    }
    const StyleCategory* category = StyleAccess::Category(*style);
    return (category != nullptr ? category->GetCategoryName() : PropertyKey::Empty) == name;
}

} // namespace Styles::Detail
