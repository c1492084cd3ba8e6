// A stack whose first elements need no allocation.
#pragma once

#include <array>
#include <cstddef>
#include <type_traits>
#include <vector>

namespace Styles::Detail
{

/// Keeps up to `Inline` elements in place and the rest in a vector. For elements that are plain data: those in place
/// are not touched before they are pushed.
template <class T, std::size_t Inline>
class SmallStack
{
    static_assert(std::is_trivial_v<T>);

public:
    SmallStack() noexcept = default;

    [[nodiscard]] bool IsEmpty() const noexcept { return m_size == 0; }
    [[nodiscard]] std::size_t GetSize() const noexcept { return m_size; }

    void Push(const T& element)
    {
        if (m_size < Inline)
        {
            m_inline[m_size] = element;
        }
        else
        {
            m_rest.push_back(element);
        }
        ++m_size;
    }

    void Pop() noexcept
    {
        if (m_size > Inline)
        {
            m_rest.pop_back();
        }
        --m_size;
    }

    /// Pops until `size` elements are left.
    void ShrinkTo(std::size_t size) noexcept
    {
        while (m_size > size)
        {
            Pop();
        }
    }

    [[nodiscard]] T& operator[](std::size_t index) noexcept
    {
        return index < Inline ? m_inline[index] : m_rest[index - Inline];
    }

    [[nodiscard]] T& Top() noexcept { return (*this)[m_size - 1]; }

private:
    std::array<T, Inline> m_inline;
    std::vector<T> m_rest;
    std::size_t m_size = 0;
};

} // namespace Styles::Detail
