#include "JsonObject.h"

#include <chrono>
#include <cstring>
#include <random>

namespace VelUtils::Json
{

namespace
{

/// Another number in each process.
std::uint64_t Seed() noexcept
{
    try
    {
        std::random_device device;
        return std::uint64_t{device()} << 32 | device();
    }
    catch (...) // a system without a source of chance: where things lie is some
    {
        static const char place = 0;
        const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        return now * 0x9E3779B97F4A7C15u ^ reinterpret_cast<std::uintptr_t>(&place);
    }
}

/// The product with its upper half folded in, by which also the upper bits of `a` reach the lower ones of the result.
std::uint64_t Mix(std::uint64_t a, std::uint64_t b) noexcept
{
    const std::uint64_t low = (a & 0xFFFFFFFF) * b;
    const std::uint64_t high = (a >> 32) * b + (low >> 32);
    return low ^ (high >> 32) ^ (high << 32);
}

std::uint64_t Hash(const VelString& name) noexcept
{
    static const std::uint64_t seed = Seed();
    const std::uint64_t factor = (seed ^ 0x9E3779B97F4A7C15u) | 1;
    constexpr std::size_t kPerWord = sizeof(std::uint64_t) / sizeof(wchar_t);
    const wchar_t* const units = name.c_str();
    const std::size_t size = name.size();
    std::uint64_t hash = seed ^ size;
    std::size_t at = 0;
    for (; size - at >= kPerWord; at += kPerWord)
    {
        std::uint64_t word = 0;
        std::memcpy(&word, units + at, sizeof word);
        hash = Mix(hash ^ word, factor);
    }
    for (; at < size; ++at)
    {
        hash = Mix(hash ^ static_cast<std::uint64_t>(units[at]), factor);
    }
    return hash ^ (hash >> 32);
}

} // namespace

Object::Index::Index(const std::vector<Member>& members) : m_slots(MakeSlots(members, 4 * kMembersWithoutIndex)) {}

std::size_t Object::Index::Find(const std::vector<Member>& members, const VelString& name) const noexcept
{
    const std::uint64_t hash = Hash(name);
    for (std::size_t i = hash & (m_slots.size() - 1);; i = (i + 1) & (m_slots.size() - 1))
    {
        const Slot& slot = m_slots[i];
        if (slot.member == 0)
        {
            return members.size();
        }
        if (slot.hash == hash && members[slot.member - 1].name == name)
        {
            return slot.member - 1;
        }
    }
}

void Object::Index::AddLast(const std::vector<Member>& members)
{
    if (2 * members.size() > m_slots.size())
    {
        m_slots = MakeSlots(members, 2 * m_slots.size());
        return;
    }
    Insert(m_slots, Hash(members.back().name), members.size());
}

std::vector<Object::Index::Slot> Object::Index::MakeSlots(const std::vector<Member>& members, std::size_t size)
{
    while (size < 2 * members.size())
    {
        size *= 2;
    }
    std::vector<Slot> slots(size);
    for (std::size_t i = 0; i < members.size(); ++i)
    {
        Insert(slots, Hash(members[i].name), i + 1);
    }
    return slots;
}

void Object::Index::Insert(std::vector<Slot>& slots, std::uint64_t hash, std::size_t member) noexcept
{
    std::size_t i = hash & (slots.size() - 1);
    while (slots[i].member != 0)
    {
        i = (i + 1) & (slots.size() - 1);
    }
    slots[i] = {hash, member};
}

} // namespace VelUtils::Json
