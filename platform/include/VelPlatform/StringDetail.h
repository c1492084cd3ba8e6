#pragma once

/// @file
/// What VelStringT is made of; no part of its interface.

#include "VelPlatform/VelApi.h"

#include <atomic>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <string_view>
#include <type_traits>

namespace VelPlatform
{

/// A view of characters that somebody else owns.
template <class CharT>
using VelStringViewT = std::basic_string_view<CharT>;

/// Declared here for what it is made of; see VelPlatform/String.h.
template <class CharT>
class VEL_VISIBLE VelStringT;

namespace Detail
{

/// What stands in memory before the characters of a text. The capacity leaves the closing zero out.
struct StringHeader
{
    std::atomic<std::size_t> references;
    std::size_t size;
    std::size_t capacity;
};

/// What the empty text points at, every module at its own.
template <class CharT>
struct VEL_HIDDEN EmptyText
{
    static constexpr CharT zero{};
};

/// One value handed to VelStringT::Format.
template <class CharT>
struct FormatArgument
{
    enum class Kind
    {
        Text,
        Signed,
        Unsigned,
        Real
    };

    FormatArgument(VelStringViewT<CharT> value) noexcept : kind(Kind::Text), text(value) {}
    FormatArgument(const VelStringT<CharT>& value) noexcept : kind(Kind::Text), text(value) {}
    FormatArgument(const CharT* value) noexcept
        : kind(Kind::Text), text(value ? VelStringViewT<CharT>(value) : VelStringViewT<CharT>())
    {}
    FormatArgument(double value) noexcept : kind(Kind::Real), real(value) {}
    template <std::integral Number>
    FormatArgument(Number value) noexcept
        : kind(std::is_signed_v<Number> ? Kind::Signed : Kind::Unsigned), integer(static_cast<std::uint64_t>(value))
    {}

    Kind kind;
    VelStringViewT<CharT> text;
    std::uint64_t integer = 0;
    double real = 0;
};

VEL_API int CompareFolded(VelStringViewT<wchar_t> left, VelStringViewT<wchar_t> right) noexcept;
VEL_API int CompareFolded(VelStringViewT<char> left, VelStringViewT<char> right) noexcept;
VEL_API VelStringViewT<wchar_t> Trimmed(VelStringViewT<wchar_t> text) noexcept;
VEL_API VelStringViewT<char> Trimmed(VelStringViewT<char> text) noexcept;
VEL_API VelStringT<wchar_t> FormatText(VelStringViewT<wchar_t> pattern,
                                       std::initializer_list<FormatArgument<wchar_t>> arguments);
VEL_API VelStringT<char> FormatText(VelStringViewT<char> pattern,
                                    std::initializer_list<FormatArgument<char>> arguments);

/// Orders by unsigned code unit: below, equal to or above zero.
template <class CharT>
int CompareUnits(VelStringViewT<CharT> left, VelStringViewT<CharT> right) noexcept
{
    const std::size_t common = left.size() < right.size() ? left.size() : right.size();
    if constexpr (sizeof(CharT) == 1)
    {
        const int order = common == 0 ? 0 : std::memcmp(left.data(), right.data(), common);
        if (order != 0)
        {
            return order;
        }
    }
    else
    {
        using Unit = std::make_unsigned_t<CharT>;
        for (std::size_t i = 0; i < common; ++i)
        {
            if (left[i] != right[i])
            {
                return static_cast<Unit>(left[i]) < static_cast<Unit>(right[i]) ? -1 : 1;
            }
        }
    }
    return static_cast<int>(left.size() > common) - static_cast<int>(right.size() > common);
}

template <class CharT>
bool SameUnits(VelStringViewT<CharT> left, VelStringViewT<CharT> right) noexcept
{
    return left.size() == right.size() &&
           (left.empty() || std::memcmp(left.data(), right.data(), left.size() * sizeof(CharT)) == 0);
}

template <class CharT>
VelStringViewT<CharT> ViewOf(const CharT* zeroTerminated) noexcept
{
    return zeroTerminated ? VelStringViewT<CharT>(zeroTerminated) : VelStringViewT<CharT>();
}

} // namespace Detail

} // namespace VelPlatform
