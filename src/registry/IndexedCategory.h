// The categories that the manager makes, and therefore all that styles have: they find a definition fast.
#pragma once

#include <styles/StyleManager.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace Styles::Detail
{

/// What a category says about a key.
struct Definition
{
    /// Null where the category has none.
    const BaseStyleProperty* property = nullptr;

    /// Whether this is a `StyleProperty` or `TemporaryStyleProperty` itself and not a class of a host that is derived
    /// from one. A value of it is stored as it comes, leaves without ado, and compares by itself: nobody can tell
    /// whether the operations of the definition are called for it, so they are not.
    bool isPlain = false;
};

/// A category with a hash table of its definitions beside the map. Styles ask for definitions at every turn: a look-up
/// that ends in the default of one of 64 takes 97 instructions with the table, 136 with the map.
///
/// The functions of `StyleCategory` that change definitions keep the table: as any registration, this is not locked.
class IndexedCategory final : public StyleCategory
{
public:
    IndexedCategory(const PropertyKey& name, const VelString& uiName, bool isPublic);

    /// A miss is not reported to the log.
    [[nodiscard]] Definition Find(const PropertyKey& key) const noexcept
    {
        // Pooled texts lie beside each other; the multiplication spreads them, its upper bits best.
        const std::uint64_t hash = reinterpret_cast<std::uintptr_t>(key.GetPooled()) * Spread;
        std::size_t index = static_cast<std::size_t>(hash >> m_shift);
        while (m_slots[index].name != key.GetPooled())
        {
            if (m_slots[index].name == nullptr)
            {
                return {};
            }
            index = (index + 1) & m_mask;
        }
        return m_slots[index].GetDefinition();
    }

    /// Whether all values of all styles of this category have definitions, and plain ones. Then they are copied,
    /// compared, flattened and destroyed without a look at the definitions, in half the time.
    [[nodiscard]] bool HasOnlyPlainValues() const noexcept
    {
        return m_plainCount == GetPropertyNames().size() && !m_mayHaveUnknownValues.load(std::memory_order_relaxed);
    }

    /// Some style of this category may from now on hold values that have no definition in it.
    void ExpectUnknownValues() const noexcept { m_mayHaveUnknownValues.store(true, std::memory_order_relaxed); }

    /// Makes room for so many definitions in all. \throws std::bad_alloc; the table is as it was.
    void Reserve(std::size_t count);
    /// Adds a definition (null ones are left out), for which there is room and which is not there yet.
    void Add(const PropertyKey& key, const BaseStyleProperty* property) noexcept;
    /// Forgets all definitions; the room stays.
    void Clear() noexcept;

private:
    static constexpr std::uint64_t Spread = 0x9E3779B97F4A7C15u;

    struct Slot
    {
        const VelString* name = nullptr;  // pooled; null for a free slot
        const char* definition = nullptr; // its first byte, or where it is plain its second one

        [[nodiscard]] Definition GetDefinition() const noexcept
        {
            const bool isPlain = (reinterpret_cast<std::uintptr_t>(definition) & 1) != 0;
            return {reinterpret_cast<const BaseStyleProperty*>(definition - (isPlain ? 1 : 0)), isPlain};
        }
    };

    void SetTable(std::vector<Slot>& slots) noexcept;
    void Insert(const Slot& slot) noexcept;

    std::vector<Slot> m_slots; // a power of two, at least half of them free
    std::size_t m_mask = 0;
    int m_shift = 0;
    std::size_t m_plainCount = 0;
    mutable std::atomic<bool> m_mayHaveUnknownValues = false;
};

} // namespace Styles::Detail
