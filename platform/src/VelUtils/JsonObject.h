#pragma once

#include "VelUtils/Json.h"

#include <cstdint>

namespace VelUtils::Json
{

/// Comparing so many names one by one takes no longer than going through an index, and most objects have no more.
inline constexpr std::size_t kMembersWithoutIndex = 16;

struct Object::Member
{
    VelString name;
    Variant value;

    friend bool operator==(const Member& left, const Member& right) noexcept
    {
        return left.name == right.name && left.value == right.value;
    }
};

/// Finds the members of an object by name: an open table of their places, at most half full. Hashes are seeded for each
/// process, so that nobody can choose names that all come to lie in one spot.
class Object::Index
{
public:
    /// Of all members. Throws std::bad_alloc.
    explicit Index(const std::vector<Member>& members);

    /// The place of the member; the number of members when there is none.
    std::size_t Find(const std::vector<Member>& members, const VelString& name) const noexcept;

    /// Takes in the last of the members. When this throws (std::bad_alloc), the index is as it was.
    void AddLast(const std::vector<Member>& members);

private:
    struct Slot
    {
        std::uint64_t hash = 0;
        std::size_t member = 0; ///< Counted from 1; 0 is an empty slot.
    };

    static std::vector<Slot> MakeSlots(const std::vector<Member>& members, std::size_t size);
    static void Insert(std::vector<Slot>& slots, std::uint64_t hash, std::size_t member) noexcept;

    std::vector<Slot> m_slots; // their number is a power of two
};

} // namespace VelUtils::Json
