#include "core/StylesInside.h"

#include "core/LinkWalk.h"
#include "core/StyleAccess.h"

#include <algorithm>
#include <unordered_map>

namespace Styles::Detail
{

namespace
{

using StylePredicate = Delegate<bool(const Style&)>;

bool AnyStyleInside(const BaseStyleProperty& definition, const Any& value, const StylePredicate& predicate);

bool AnyStyleInside(const Style& style, const StylePredicate& predicate)
{
    for (const auto& [key, value] : StyleAccess::Properties(style))
    {
        const BaseStyleProperty* definition = StyleAccess::FindDefinition(style, key);
        if (definition != nullptr && AnyStyleInside(*definition, value, predicate))
        {
            return true;
        }
    }
    return false;
}

bool AnyStyleInside(const BaseStyleProperty& definition, const Any& value, const StylePredicate& predicate)
{
    bool found = false;
    definition.ProcessStylesInProperty(value, [&](const Style* style) {
        found = style != nullptr && (predicate(*style) || AnyStyleInside(*style, predicate));
        return !found;
    });
    return found;
}

/// The styles that a value about to be stored names, sorted by address.
std::vector<const Style*> NamedStyles(const Any& value)
{
    std::vector<const Style*> styles;
    if (Style* const* style = value.GetIf<Style*>())
    {
        styles.push_back(*style);
    }
    else if (const Style* const* constStyle = value.GetIf<const Style*>())
    {
        styles.push_back(*constStyle);
    }
    else if (const auto* list = value.GetIf<std::vector<Style*>>())
    {
        styles.assign(list->begin(), list->end());
        std::sort(styles.begin(), styles.end(), std::less<>());
    }
    return styles;
}

/// How often each style is marked, and how many works are under way.
struct Marks
{
    std::unordered_map<const Style*, std::size_t> counts;
    std::size_t depth = 0;
};

Marks& MarksOfThisThread()
{
    thread_local Marks marks;
    return marks;
}

// As many containers as a document may have in each other.
constexpr std::size_t DeepestNesting = 512;

} // namespace

bool RefersInto(const BaseStyleProperty& definition, const Any& old, const Any& candidate)
{
    const std::vector<const Style*> named = NamedStyles(candidate);
    if (named.empty() || old.IsEmpty())
    {
        return false;
    }
    return AnyStyleInside(definition, old, [&named](const Style& style) {
        return std::binary_search(named.begin(), named.end(), &style, std::less<>());
    });
}

bool HoldsStyle(const Style& style, const Style& wanted)
{
    return AnyStyleInside(style, [&wanted](const Style& inside) { return &inside == &wanted; });
}

WorkInProgress::WorkInProgress(const Style& style)
{
    Add(style);
    ++MarksOfThisThread().depth;
}

WorkInProgress::~WorkInProgress()
{
    Marks& marks = MarksOfThisThread();
    --marks.depth;
    for (const Style* style : m_added)
    {
        const auto entry = marks.counts.find(style);
        if (--entry->second == 0)
        {
            marks.counts.erase(entry);
        }
    }
}

void WorkInProgress::Add(const Style& style)
{
    m_added.push_back(&style);
    try
    {
        ++MarksOfThisThread().counts[&style];
    }
    catch (...)
    {
        m_added.pop_back();
        throw;
    }
}

bool WorkInProgress::Includes(const Style& style)
{
    return MarksOfThisThread().counts.contains(&style);
}

bool WorkInProgress::IsTooDeep() noexcept
{
    return MarksOfThisThread().depth >= DeepestNesting;
}

bool WouldNestEndlessly(const BaseStyleProperty& definition, const Any& value, const Style& source, const Style& target)
{
    if (value.IsEmpty())
    {
        return false;
    }
    const bool comesBack = WorkInProgress::IsTooDeep() || WorkInProgress::Includes(source);
    return AnyStyleInside(definition, value, [&](const Style& style) {
        if (comesBack || &style == &target || WorkInProgress::Includes(style))
        {
            return true;
        }
        OwnerWalk owners(target);
        while (const Style* owner = owners.Next())
        {
            if (owner == &style)
            {
                return true;
            }
        }
        return false;
    });
}

} // namespace Styles::Detail
