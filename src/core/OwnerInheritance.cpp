#include "core/OwnerInheritance.h"

#include "core/LinkWalk.h"
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
    const Style* origin = nullptr;
    const PropertyKey* key = nullptr;

    const Style* heir = nullptr;
    /// The styles climbed from the heir to the one whose parent is followed; their keys are still to be followed, last
    /// first.
    SmallStack<const Style*, 2> place;

    // A look-up that comes back to a style has closed on itself (see LinkWalk for the landmark).
    const Style* landmark = nullptr;
    std::size_t steps = 0;
    std::size_t stepsToLandmark = 1;
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
        Lookup lookup;
        lookup.origin = &origin;
        lookup.key = &key;
        m_lookups.Push(std::move(lookup));
    }

    /// Follows the next key on the way to the heir's place. The value where it is there at once, null where a new
    /// look-up has to go on.
    const Any* Continue();

    /// The value of the topmost look-up is known. It is the style in which the look-up below goes on; without one
    /// below, it is the result.
    const Any* Finish(const Any& value);

    /// The effective value of the topmost look-up's key, from `style` upwards; null when it has to wait for an heir's
    /// place.
    const Any* Search(const Style& style);

    /// Makes the topmost look-up wait for the place of `heir`; its default where nothing is inherited.
    const Any* WaitForHeir(const Style& heir);

    SmallStack<Lookup, 2> m_lookups;
    const Style* m_source = nullptr; // where Continue goes on
};

const Any* Resolver::Continue()
{
    Lookup& waiting = m_lookups.Top();
    if (waiting.place.IsEmpty())
    {
        return Search(*m_source);
    }
    const PropertyKey& key = StyleAccess::OwnersKey(*waiting.place.Top());
    waiting.place.Pop();
    if (const Any* own = StyleAccess::FindOwn(*m_source, key))
    {
        Begin(*m_source, key);
        return own;
    }
    // The same question again, deeper in, would be asked for ever.
    const std::size_t depth = m_lookups.GetSize();
    Lookup& earlier = m_lookups[std::bit_floor(depth) - 1];
    const bool closed = earlier.origin == m_source && *earlier.key == key;
    Begin(*m_source, key);
    return closed ? &GetDefaultOf(*m_source, key) : Search(*m_source);
}

const Any* Resolver::Finish(const Any& value)
{
    m_lookups.Pop();
    if (m_lookups.IsEmpty())
    {
        return &value;
    }
    Style* const* substyle = value.GetIf<Style*>();
    if (substyle == nullptr)
    {
        throw VelUtils::BadAnyCast();
    }
    if (*substyle == nullptr)
    {
        const Lookup& waiting = m_lookups.Top();
        return &GetDefaultOf(*waiting.heir, *waiting.key);
    }
    m_source = *substyle;
    return nullptr;
}

const Any* Resolver::Search(const Style& style)
{
    Lookup& lookup = m_lookups.Top();
    if (&style == lookup.landmark)
    {
        return &GetDefaultOf(*lookup.origin, *lookup.key);
    }
    if (++lookup.steps == lookup.stepsToLandmark)
    {
        lookup.landmark = &style;
        lookup.stepsToLandmark *= 2;
        lookup.steps = 0;
    }
    ParentWalk parents(style);
    const Style* top = &style;
    for (const Style* current = top; current != nullptr; current = parents.Next())
    {
        if (const Any* own = StyleAccess::FindOwn(*current, *lookup.key))
        {
            return own;
        }
        top = current;
    }
    if (parents.IsClosed())
    {
        return &GetDefaultOf(*lookup.origin, *lookup.key);
    }
    return WaitForHeir(*top);
}

const Any* Resolver::WaitForHeir(const Style& heir)
{
    Lookup& lookup = m_lookups.Top();
    const Style* top = &heir;
    OwnerWalk owners(heir);
    while (const Style* owner = owners.Next())
    {
        top = owner;
        if (top->GetParent() != nullptr)
        {
            break;
        }
    }
    if (top->GetParent() == nullptr)
    {
        return &GetDefaultOf(heir, *lookup.key);
    }
    lookup.heir = &heir;
    for (const Style* style = &heir; style != top; style = style->GetOwner())
    {
        lookup.place.Push(style);
    }
    m_source = top->GetParent();
    return nullptr;
}

} // namespace

const Any& GetDefaultOf(const Style& style, const PropertyKey& key)
{
    if (const StyleCategory* category = StyleAccess::Category(style))
    {
        return category->GetDefaultValue(key);
    }
    ThrowMissingDefault(key);
}

const Any& GetInheritedThroughOwner(const Style& heir, const PropertyKey& key)
{
    return Resolver().Resolve(heir, key);
}

} // namespace Styles::Detail
