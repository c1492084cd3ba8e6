#include "JsonObject.h"

#include "TextHash.h"

namespace VelUtils::Json
{

Object::Index::Index(const std::vector<Member>& members) : m_slots(MakeSlots(members, 4 * kMembersWithoutIndex)) {}

std::size_t Object::Index::Find(const std::vector<Member>& members, const VelString& name) const noexcept
{
    const std::uint64_t hash = HashText(name);
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
    Insert(m_slots, HashText(members.back().name), members.size());
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
        Insert(slots, HashText(members[i].name), i + 1);
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
