#pragma once

#include "VelPlatform/String.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <string_view>
#include <vector>

namespace VelUtils
{

/// A text that grows without ever being copied, but once in the end.
template <class CharT>
class GrowingText
{
public:
    /// Room for `size` more units, of which Advance() then says how many are filled.
    CharT* MakeRoom(std::size_t size)
    {
        if (size > static_cast<std::size_t>(m_end - m_at))
        {
            AddPiece(size);
        }
        return m_at;
    }
    void Advance(CharT* at) noexcept { m_at = at; }

    void Append(CharT unit)
    {
        *MakeRoom(1) = unit;
        ++m_at;
    }
    template <class Unit>
    void Append(std::basic_string_view<Unit> text)
    {
        Advance(std::copy(text.begin(), text.end(), MakeRoom(text.size())));
    }
    void AppendBlanks(std::size_t count) { Advance(std::fill_n(MakeRoom(count), count, CharT{' '})); }

    VelPlatform::VelStringT<CharT> Join();

private:
    struct Piece
    {
        std::unique_ptr<CharT[]> units;
        std::size_t size = 0;
    };

    void AddPiece(std::size_t size);
    void ClosePiece() noexcept
    {
        if (!m_pieces.empty())
        {
            m_pieces.back().size = static_cast<std::size_t>(m_at - m_pieces.back().units.get());
        }
    }

    std::vector<Piece> m_pieces;
    CharT* m_at = nullptr; // in the last piece
    CharT* m_end = nullptr;
};

template <class CharT>
void GrowingText<CharT>::AddPiece(std::size_t size)
{
    constexpr std::size_t kSmallest = 256;
    constexpr std::size_t kLargest = std::size_t{1} << 20;
    ClosePiece();
    const std::size_t last =
        m_pieces.empty() ? kSmallest / 2 : static_cast<std::size_t>(m_end - m_pieces.back().units.get());
    const std::size_t room = std::max(size, std::min(2 * last, kLargest));
    m_pieces.push_back({std::unique_ptr<CharT[]>(new CharT[room]), 0});
    m_at = m_pieces.back().units.get();
    m_end = m_at + room;
}

template <class CharT>
VelPlatform::VelStringT<CharT> GrowingText<CharT>::Join()
{
    ClosePiece();
    std::size_t size = 0;
    for (const Piece& piece : m_pieces)
    {
        size += piece.size;
    }
    return VelPlatform::VelStringT<CharT>::Make(size, [this](CharT* out) {
        for (const Piece& piece : m_pieces)
        {
            out = std::copy_n(piece.units.get(), piece.size, out);
        }
    });
}

} // namespace VelUtils
