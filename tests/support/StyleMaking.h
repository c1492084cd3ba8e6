// Making and searching the styles inside styles.
#pragma once

#include "support/TestSheet.h"

#include <initializer_list>
#include <memory>
#include <vector>

namespace Styles::Testing
{

/// Gives `holder` a new, empty substyle of category `category` under `key`, with that parent.
inline Style& AddSubstyle(Style& holder, const PropertyKey& key, const PropertyKey& category, Style* parent = nullptr)
{
    const Style empty(parent, category);
    holder.SetSubstyle(key, &empty);
    return *holder.GetSubstyle(key, false);
}

/// The elements of the own list under `key`; none without one.
inline std::vector<Style*> ElementsOf(const Style& style, const PropertyKey& key)
{
    Any value;
    return style.GetOverrideProperty(key, value) ? value.Get<std::vector<Style*>>() : std::vector<Style*>();
}

/// Stores a list of `count` new, empty styles of category `category`, with that parent, under `key`.
inline std::vector<Style*> AddElements(Style& holder, const PropertyKey& key, const PropertyKey& category, int count,
                                       Style* parent = nullptr)
{
    Style empty(parent, category);
    holder.SetProperty(key, Any(std::vector<Style*>(static_cast<std::size_t>(count), &empty)));
    return ElementsOf(holder, key);
}

/// The value of a substyle property that holds none.
inline Any NullSubstyle()
{
    return Any(static_cast<Style*>(nullptr));
}

} // namespace Styles::Testing
