/// \file
/// Where values come from.
///
/// The library answers a look-up with the very object that is kept somewhere: as a style's own value, or as the default
/// of a property. So the place of a value is found by its address, and needs no second telling of how values inherit.
#pragma once

#include "OwnValues.h"

#include <string>
#include <unordered_map>

namespace Inspect
{

/// The place of a value.
struct Origin
{
    enum class Kind
    {
        Unknown, ///< kept neither in the sheet nor in a definition
        Style,   ///< a style's own value
        Default  ///< of a property of a category
    };

    Kind kind = Kind::Unknown;
    const Style* style = nullptr; ///< that keeps the value
    PropertyKey category;         ///< whose default it is
    PropertyKey key;
};

/// All values of a sheet and of the registered schema, by their addresses. Good until one of them changes.
class Origins
{
public:
    explicit Origins(const Styles::StyleSheet& sheet);

    [[nodiscard]] Origin Find(const Any& value) const;

    /// The style of the sheet that `style` is, or is somewhere inside of; null for a style of elsewhere.
    [[nodiscard]] const Style* GetTop(const Style& style) const;

    /// The path from the top to `style`: "line.dash", "fill.stops[1]"; empty for the top itself.
    [[nodiscard]] std::string GetPath(const Style& style) const;

    /// The name of a style of the sheet, quoted, and the path to `style` behind it: "Blue box" line.dash
    [[nodiscard]] std::string GetName(const Style& style) const;

private:
    const Styles::StyleSheet& m_sheet;
    std::unordered_map<const Any*, Origin> m_values;
    std::unordered_map<const Style*, InnerStyle> m_inner;
};

/// The path to a property of a style with this path.
[[nodiscard]] std::string PathTo(const std::string& stylePath, const PropertyKey& key);

} // namespace Inspect
