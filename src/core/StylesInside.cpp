#include "core/StylesInside.h"

#include "core/LinkWalk.h"
#include "core/StyleAccess.h"

#include <algorithm>
#include <functional>
#include <unordered_map>
#include <utility>

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

/// What is marked on one thread.
struct Marks
{
    std::unordered_map<const Style*, std::size_t> counts;
    std::size_t depth = 0; ///< how many works are under way
    /// For the copies that were made while works are under way: what each was made from.
    std::unordered_map<const Style*, const Style*> originals;

    const Style* FindOriginal(const Style* style) const
    {
        const auto entry = originals.find(style);
        return entry != originals.end() ? entry->second : nullptr;
    }

    void Unmark(const Style* style) noexcept
    {
        const auto entry = counts.find(style);
        if (--entry->second == 0)
        {
            counts.erase(entry);
        }
    }
};

Marks& MarksOfThisThread()
{
    thread_local Marks marks;
    return marks;
}

std::vector<const Style*> StylesDirectlyIn(const BaseStyleProperty& definition, const Any& value)
{
    std::vector<const Style*> styles;
    definition.ProcessStylesInProperty(value, [&styles](const Style* style) {
        if (style != nullptr)
        {
            styles.push_back(style);
        }
        return true;
    });
    return styles;
}

/// Whether storing a copy of `value` in `target` would put a style into its own inside, or bring in what is marked.
bool WouldNestEndlessly(const BaseStyleProperty& definition, const Any& value, const Style& target)
{
    return AnyStyleInside(definition, value, [&target](const Style& style) {
        if (&style == &target || WorkInProgress::IsTooDeep() || WorkInProgress::Includes(style))
        {
            return true;
        }
        OwnerWalk owners(target);
        const Style* owner = owners.Next();
        while (owner != nullptr && owner != &style)
        {
            owner = owners.Next();
        }
        return owner != nullptr;
    });
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
    : m_style(&style), m_original(MarksOfThisThread().FindOriginal(&style))
{
    Marks& marks = MarksOfThisThread();
    ++marks.counts[m_style];
    try
    {
        if (m_original != nullptr)
        {
            ++marks.counts[m_original];
        }
    }
    catch (...)
    {
        marks.Unmark(m_style);
        throw;
    }
    ++marks.depth;
}

WorkInProgress::~WorkInProgress()
{
    Marks& marks = MarksOfThisThread();
    marks.Unmark(m_style);
    if (m_original != nullptr)
    {
        marks.Unmark(m_original);
    }
    if (--marks.depth == 0)
    {
        marks.originals.clear();
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

void BringIn(const BaseStyleProperty& definition, const Any& value, Any given, Style& target, const PropertyKey& key)
{
    if (!value.IsEmpty() && WouldNestEndlessly(definition, value, target))
    {
        return;
    }
    Marks& marks = MarksOfThisThread();
    const std::vector<const Style*> originals =
        marks.depth != 0 && !value.IsEmpty() ? StylesDirectlyIn(definition, value) : std::vector<const Style*>();
    target.SetProperty(key, std::move(given));
    const Any* stored = originals.empty() ? nullptr : StyleAccess::FindOwn(target, key);
    if (stored == nullptr)
    {
        return;
    }
    const std::vector<const Style*> copies = StylesDirectlyIn(definition, *stored);
    for (std::size_t index = 0; index < copies.size() && copies.size() == originals.size(); ++index)
    {
        const Style* first = marks.FindOriginal(originals[index]);
        marks.originals[copies[index]] = first != nullptr ? first : originals[index];
    }
}

} // namespace Styles::Detail
