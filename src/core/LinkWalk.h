// The walk along parents or owners that all code shares: a loop, which ends also where the links close on themselves.
#pragma once

#include <styles/Style.h>

#include <cstddef>

namespace Styles::Detail
{

/// Walks from a style along one kind of link. On links that close on themselves it ends after every style was met at
/// least once; it may meet some of them twice before it notices, so what is done on the way must bear being done again.
///
/// The walk needs no memory (Brent's method: a landmark that moves up after 1, 2, 4, ... steps is met again on a closed
/// way only), so it suits the innermost loop of look-ups and chains of any length.
template <Style* (Style::*Link)() const noexcept>
class LinkWalk
{
public:
    explicit LinkWalk(const Style& start) noexcept : m_start(&start), m_current(&start), m_landmark(&start) {}

    /// The next style on the way; null at the end.
    [[nodiscard]] Style* Next() noexcept
    {
        Style* next = m_current != nullptr ? (m_current->*Link)() : nullptr;
        if (next == nullptr || next == m_start || next == m_landmark)
        {
            m_closed = next != nullptr;
            m_current = nullptr;
            return nullptr;
        }
        m_current = next;
        if (++m_steps == m_stepsToLandmark)
        {
            m_landmark = next;
            m_stepsToLandmark *= 2;
            m_steps = 0;
        }
        return next;
    }

    /// After the end: whether the links closed on themselves.
    [[nodiscard]] bool IsClosed() const noexcept { return m_closed; }

private:
    const Style* m_start;
    const Style* m_current;
    const Style* m_landmark;
    std::size_t m_steps = 0;
    std::size_t m_stepsToLandmark = 1;
    bool m_closed = false;
};

using ParentWalk = LinkWalk<&Style::GetParent>;
using OwnerWalk = LinkWalk<&Style::GetOwner>;

} // namespace Styles::Detail
