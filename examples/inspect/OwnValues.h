/// \file
/// A walk over all values that the styles of a sheet have of their own, in substyles and lists too.
#pragma once

#include <styles/StyleSheet.h>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace Inspect
{

using Styles::Any;
using Styles::PropertyKey;
using Styles::Style;
using VelPlatform::VelString;

/// The styles of a list.
using StyleList = std::vector<Style*>;

/// A property of a category.
struct Property
{
    PropertyKey key;
    Styles::BaseStyleProperty* definition = nullptr;
    bool isList = false;
    /// What the styles inside are; the empty key for a plain property.
    PropertyKey elementCategory;
};

/// The properties of a category in the order of their registration; none for null.
[[nodiscard]] std::vector<Property> PropertiesOf(const Styles::StyleCategory* category);

/// The property of that name; null in `definition` when the category has none.
[[nodiscard]] Property FindProperty(const Styles::StyleCategory& category, const PropertyKey& key);

/// A value where it is kept.
struct OwnValue
{
    const Style* style = nullptr;
    PropertyKey key;
    const Styles::BaseStyleProperty* definition = nullptr;
    const Any* value = nullptr;
};

/// A style inside another: under `key`, in a list at `index`.
struct InnerStyle
{
    const Style* outer = nullptr;
    PropertyKey key;
    bool isElement = false;
    std::size_t index = 0;
    const Style* style = nullptr;
};

/// Visits the values of one style. `onInner` (may be empty) hears of each style inside before its values come.
void ForEachOwnValue(const Style& style, const std::function<void(const OwnValue&)>& onValue,
                     const std::function<void(const InnerStyle&)>& onInner = {});

/// Visits the values of all styles of a sheet.
void ForEachOwnValue(const Styles::StyleSheet& sheet, const std::function<void(const OwnValue&)>& onValue);

} // namespace Inspect
