#include "core/OwnerInheritance.h"

#include "core/LinkWalk.h"
#include "core/ParentSearch.h"
#include "core/SmallStack.h"
#include "core/StyleAccess.h"
#include "registry/MissingEntry.h"

#include <bit>

namespace Styles::Detail
{

namespace
{

/// One look-up under way: the effective value of `key` in `origin`. While it waits for the substyle at the place of
/// `heir`, further look-ups stand above it on the stack.
struct Lookup
{
    const Style* origin;
    const PropertyKey* key;

    const Style* heir;
    /// From here on, the stack of places holds the styles climbed from the heir to the one whose parent is followed;
    /// their keys are still to be followed, last first.
    std::size_t placesBelow;

    // A look-up that comes back to a style has closed on itself (see LinkWalk for the landmark).
    const Style* landmark;
    std::size_t stepsLeft;
    std::size_t stepsToLandmark;
};

class Resolver
{
public:
    const Any& Resolve(const Style& heir, const PropertyKey& key)
    {
        Begin(heir, key);
        const Any* value = WaitForHeir(heir);
        for (;;)
        {
            value = value != nullptr ? Finish(*value) : Continue();
            if (m_lookups.IsEmpty())
            {
                return *value;
            }
        }
    }

private:
    void Begin(const Style& origin, const PropertyKey& key)
    {
        m_lookups.Push({&origin, &key, nullptr, m_places.GetSize(), nullptr, 1, 1});
    }

    /// Follows the keys on the way to the heir's place, as far as the values are there at once. The value of the
    /// topmost look-up, or null where another has to go on.
    const Any* Continue();

    /// The value of the topmost look-up is known. It is the style in which the look-up below goes on; without one
    /// below, it is the result.
    const Any* Finish(const Any& value);

    /// Goes on in the style that is the value of the last key followed; the default where it is null.
    const Any* GoOnIn(const Any& value);

    /// The effective value of the topmost look-up's key, from `style` upwards; null when it has to wait for an heir's
    /// place.
    const Any* Search(const Style& style);

    /// Makes the topmost look-up wait for the place of `heir`; its default where nothing is inherited.
    const Any* WaitForHeir(const Style& heir);

    SmallStack<Lookup, 2> m_lookups;
    SmallStack<const Style*, 8> m_places; // of all look-ups that wait
    const Style* m_source = nullptr;      // where Continue goes on
};

const Any* Resolver::Continue()
{
    const Lookup& waiting = m_lookups.Top();
    while (m_places.GetSize() > waiting.placesBelow)
    {
        const PropertyKey& key = StyleAccess::OwnersKey(*m_places.Top());
        m_places.Pop();
        if (const Any* own = StyleAccess::FindOwn(*m_source, key))
        {
            if (const Any* value = GoOnIn(*own))
            {
                return value;
            }
            continue;
        }
        // The same question again, deeper in, would be asked for ever.
        const std::size_t depth = m_lookups.GetSize();
        const Lookup& earlier = m_lookups[std::bit_floor(depth) - 1];
        const bool closed = earlier.origin == m_source && *earlier.key == key;
        Begin(*m_source, key);
        return closed ? &GetDefaultOf(*m_source, key) : Search(*m_source);
    }
    return Search(*m_source);
}

const Any* Resolver::Finish(const Any& value)
{
    m_lookups.Pop();
    return m_lookups.IsEmpty() ? &value : GoOnIn(value);
}

const Any* Resolver::GoOnIn(const Any& value)
{
    Style* const* substyle = value.GetIf<Style*>();
    if (substyle == nullptr)
    {
        throw VelUtils::BadAnyCast();
    }
    m_source = *substyle;
    if (m_source != nullptr)
    {
        return nullptr;
    }
    const Lookup& waiting = m_lookups.Top();
    m_places.ShrinkTo(waiting.placesBelow);
    return &GetDefaultOf(*waiting.heir, *waiting.key);
}

const Any* Resolver::Search(const Style& style)
{
    Lookup& lookup = m_lookups.Top();
    if (&style == lookup.landmark)
    {
        return &GetDefaultOf(*lookup.origin, *lookup.key);
    }
    if (--lookup.stepsLeft == 0)
    {
        lookup.landmark = &style;
        lookup.stepsToLandmark *= 2;
        lookup.stepsLeft = lookup.stepsToLandmark;
    }
    const auto [value, top] = SearchUpwards(style, *lookup.key);
    if (value != nullptr)
    {
        return value;
    }
    return top != nullptr ? WaitForHeir(*top) : &GetDefaultOf(*lookup.origin, *lookup.key);
}

const Any* Resolver::WaitForHeir(const Style& heir)
{
    Lookup& lookup = m_lookups.Top();
    OwnerWalk owners(heir);
    for (const Style* style = &heir; style->GetParent() == nullptr;)
    {
        m_places.Push(style);
        style = owners.Next();
        if (style == nullptr)
        {
            m_places.ShrinkTo(lookup.placesBelow);
            return &GetDefaultOf(heir, *lookup.key);
        }
        m_source = style->GetParent();
    }
    lookup.heir = &heir;
    return nullptr;
}

} // namespace

const Any& GetDefaultOf(const Style& style, const PropertyKey& key)
{
    const IndexedCategory* category = StyleAccess::Category(style);
    const BaseStyleProperty* definition = category != nullptr ? category->Find(key).property : nullptr;
    if (definition == nullptr)
    {
        ThrowMissingDefault(key);
    }
    return definition->GetDefaultValue();
}

const Any& GetInheritedThroughOwner(const Style& heir, const PropertyKey& key)
{
    return Resolver().Resolve(heir, key);
}

} // namespace Styles::Detail
