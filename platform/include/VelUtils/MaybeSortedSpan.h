#pragma once

/// @file
/// A view of elements, usually pointers, that knows whether they are sorted by address, so that asking for one of
/// them can be a binary search.

#include <cstddef>
#include <map> // std::less
#include <span>
#include <type_traits>
#include <utility>

namespace VelUtils
{

template <class T>
class maybe_sorted_span;

namespace Detail
{

template <class T>
inline constexpr bool isMaybeSortedSpan = false;
template <class T>
inline constexpr bool isMaybeSortedSpan<maybe_sorted_span<T>> = true;

} // namespace Detail

/// Owns nothing; the elements must outlive it. Copying copies the view.
template <class T>
class maybe_sorted_span
{
public:
    using element_type = T;                 ///< An element as it is seen, perhaps const.
    using value_type = std::remove_cv_t<T>; ///< A copy of an element.
    using iterator = T*;                    ///< Good as long as the elements are.

    /// No elements.
    constexpr maybe_sorted_span() noexcept = default;

    /// From a span or anything that becomes one. `sorted` promises that the elements are in the order of std::less;
    /// the promise is not checked, and when it is broken contains() may miss elements.
    template <class Source>
    requires(!Detail::isMaybeSortedSpan<std::remove_cvref_t<Source>> &&
             std::is_convertible_v<Source, std::span<T>>) constexpr maybe_sorted_span(Source&& source,
                                                                                      bool sorted = false)
        : m_elements(std::forward<Source>(source)), m_sorted(sorted)
    {}

    /// From a view of elements that are less const; it stays as sorted as it was.
    template <class U>
    requires(!std::is_same_v<U, T> && std::is_convertible_v<std::span<U>, std::span<T>>) constexpr maybe_sorted_span(
        const maybe_sorted_span<U>& other) noexcept
        : m_elements(std::span<U>(other.data(), other.size())), m_sorted(other.is_sorted())
    {}

    /// The first element.
    constexpr T* begin() const noexcept { return data(); }
    /// Behind the last element.
    constexpr T* end() const noexcept { return data() + size(); }
    /// The first element; of none, null or anything.
    constexpr T* data() const noexcept { return m_elements.data(); }
    /// The number of elements.
    constexpr std::size_t size() const noexcept { return m_elements.size(); }
    /// Whether there are no elements.
    constexpr bool empty() const noexcept { return m_elements.empty(); }
    /// What was promised of the order.
    constexpr bool is_sorted() const noexcept { return m_sorted; }

    /// Whether an element equals `wanted`: a binary search when sorted, else a look at one after the other.
    template <class Wanted>
    constexpr bool contains(const Wanted& wanted) const
    {
        T* element = m_sorted ? LowerBound(wanted) : begin();
        while (!m_sorted && element != end() && !(*element == wanted))
        {
            ++element;
        }
        return element != end() && *element == wanted;
    }

    /// Whether an element is null.
    constexpr bool contains(std::nullptr_t) const requires std::is_pointer_v<value_type>
    {
        return contains(value_type());
    }

private:
    /// The first element that is not less than `wanted`. (<algorithm> would be an eighth of what hosts compile.)
    template <class Wanted>
    constexpr T* LowerBound(const Wanted& wanted) const
    {
        T* first = begin();
        for (std::size_t count = size(); count != 0;)
        {
            const std::size_t half = count / 2;
            const bool isLess = std::less<>()(first[half], wanted);
            first += isLess ? half + 1 : 0;
            count = isLess ? count - half - 1 : half;
        }
        return first;
    }

    std::span<T> m_elements;
    bool m_sorted = false;
};

} // namespace VelUtils
