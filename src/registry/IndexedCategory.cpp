#include "registry/IndexedCategory.h"

#include <algorithm>
#include <bit>
#include <typeinfo>

namespace Styles::Detail
{

namespace
{

constexpr std::size_t FewestSlots = 8;

} // namespace

IndexedCategory::IndexedCategory(const PropertyKey& name, const VelString& uiName, bool isPublic)
    : StyleCategory(name, uiName, isPublic)
{
    std::vector<Slot> slots(FewestSlots);
    SetTable(slots);
}

void IndexedCategory::Reserve(std::size_t count)
{
    if (count * 2 <= m_slots.size())
    {
        return;
    }
    std::vector<Slot> slots(std::bit_ceil(count * 2));
    SetTable(slots);
    for (const Slot& slot : slots)
    {
        if (slot.name != nullptr)
        {
            Insert(slot);
        }
    }
}

void IndexedCategory::Add(const PropertyKey& key, const BaseStyleProperty* property) noexcept
{
    if (property == nullptr)
    {
        return;
    }
    static_assert(alignof(BaseStyleProperty) > 1);
    const std::type_info& type = typeid(*property);
    const bool isPlain = type == typeid(StyleProperty) || type == typeid(TemporaryStyleProperty);
    Insert({key.GetPooled(), reinterpret_cast<const char*>(property) + (isPlain ? 1 : 0)});
    m_plainCount += isPlain ? 1 : 0;
}

void IndexedCategory::Clear() noexcept
{
    std::fill(m_slots.begin(), m_slots.end(), Slot());
    m_plainCount = 0;
}

void IndexedCategory::SetTable(std::vector<Slot>& slots) noexcept
{
    m_slots.swap(slots);
    m_mask = m_slots.size() - 1;
    m_shift = 64 - std::countr_zero(m_slots.size());
}

void IndexedCategory::Insert(const Slot& slot) noexcept
{
    const std::uint64_t hash = reinterpret_cast<std::uintptr_t>(slot.name) * Spread;
    std::size_t index = static_cast<std::size_t>(hash >> m_shift);
    while (m_slots[index].name != nullptr)
    {
        index = (index + 1) & m_mask;
    }
    m_slots[index] = slot;
}

} // namespace Styles::Detail
