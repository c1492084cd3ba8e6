// Which slot of the table of virtual operations a class fills, where the table's layout is known.
#pragma once

#include <cstddef>
#include <vector>

namespace Styles::Testing
{

#if !defined(_MSC_VER)

/// The slots, counted in pointers, from `first` up to `end`, in which two objects of classes derived from `Base`
/// differ. The destructor has the slots 0 and 1 when it is declared first.
template <class Base>
std::vector<std::size_t> DifferingSlots(const Base& one, const Base& other, std::size_t first, std::size_t end)
{
    const auto tableOf = [](const Base& object) { return *reinterpret_cast<void* const* const*>(&object); };
    std::vector<std::size_t> slots;
    for (std::size_t slot = first; slot < end; ++slot)
    {
        if (tableOf(one)[slot] != tableOf(other)[slot])
        {
            slots.push_back(slot);
        }
    }
    return slots;
}

#endif

} // namespace Styles::Testing
