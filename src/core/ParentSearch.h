// The innermost loop of all look-ups: the first own value in a style and along its parents.
#pragma once

#include "core/LinkWalk.h"
#include "core/StyleAccess.h"

namespace Styles::Detail
{

/// Where a search along parents ended.
struct ParentSearch
{
    /// The own value that was found, or null.
    const Any* value;
    /// Without a value: the last style, which has no parent; null where the parents close on themselves.
    const Style* top;
};

/// The search from `style` on, with an end also where the parents close on themselves.
[[nodiscard]] ParentSearch SearchLongChain(const Style& style, const PropertyKey& key) noexcept;

/// The first own value for `key` in `style` and along its parents.
///
/// The first steps are plain, since chains of parents are rarely longer: to watch for parents that close on themselves
/// makes each step a tenth longer (59 instructions for 53). What closes on itself is walked around some times more.
[[nodiscard]] inline ParentSearch SearchUpwards(const Style& style, const PropertyKey& key) noexcept
{
    constexpr int PlainSteps = 64;
    const PropertyKey name = key; // in a register
    const Style* current = &style;
    for (int steps = 0; steps < PlainSteps; ++steps)
    {
        if (const Any* own = StyleAccess::FindOwn(*current, name))
        {
            return {own, nullptr};
        }
        const Style* parent = current->GetParent();
        if (parent == nullptr)
        {
            return {nullptr, current};
        }
        current = parent;
    }
    return SearchLongChain(*current, key);
}

} // namespace Styles::Detail
