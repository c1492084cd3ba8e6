// Memory that runs out when a test wants it to: the operator new of this program counts, and fails on demand.
#pragma once

#include <cstddef>

namespace Styles::Testing
{

/// How often something fails: at one point, or at that point and at all behind it.
enum class FailureMode
{
    Once,
    FromThenOn
};

/// The places where one operation may fail, counted from 1, of one kind (allocations, or calls of definitions).
class FailurePoints
{
public:
    /// Counts the points of this thread from here on; none fails.
    void Count() noexcept;
    /// The `n`-th point from here on fails.
    void Arm(std::size_t n, FailureMode mode) noexcept;
    /// Nothing fails any more.
    void Disarm() noexcept;

    /// A point has been reached; whether it is to fail.
    bool Reach() noexcept;

    /// How many points were reached since Count or Arm.
    [[nodiscard]] std::size_t GetReached() const noexcept { return m_reached; }
    [[nodiscard]] bool HasFailed() const noexcept { return m_failed; }

private:
    bool m_active = false;
    bool m_failed = false;
    std::size_t m_reached = 0;
    std::size_t m_failAt = 0; // none for 0
    FailureMode m_mode = FailureMode::Once;
};

/// The allocations of this thread through any form of operator new.
FailurePoints& AllocationPoints() noexcept;

/// How many allocations of the process have not been given back.
std::size_t GetLiveAllocations() noexcept;

} // namespace Styles::Testing
