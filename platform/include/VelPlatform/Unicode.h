#pragma once

/// @file
/// The code points in a text of any unit width: 8 bits are UTF-8, 16 bits UTF-16, 32 bits UTF-32. Everything is the
/// same on every system and in every locale; the sign of a unit's type never matters.

#include "VelPlatform/VelApi.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <type_traits>

namespace VelPlatform::Unicode
{

/// What stands for a malformed sequence in converted text.
inline constexpr char32_t kReplacement = 0xFFFD;
/// The highest code point there is.
inline constexpr char32_t kLastCodePoint = 0x10FFFF;

/// What was found at the beginning of a text.
struct Decoded
{
    char32_t value = 0;     ///< The code point; of a malformed sequence its first unit.
    std::size_t length = 0; ///< Units taken, at least one. Of malformed UTF-8: the maximal subpart.
    bool valid = false;     ///< Whether `value` is a code point that may stand there.
};

/// The unit as an unsigned number.
template <class Unit>
constexpr char32_t ToUnit(Unit unit) noexcept
{
    return static_cast<char32_t>(static_cast<std::make_unsigned_t<Unit>>(unit));
}

/// Whether `c` is half of a surrogate pair.
constexpr bool IsSurrogate(char32_t c) noexcept
{
    return c >= 0xD800 && c <= 0xDFFF;
}

/// Whether `c` can be encoded: not a surrogate, not beyond U+10FFFF.
constexpr bool IsScalar(char32_t c) noexcept
{
    return c <= kLastCodePoint && !IsSurrogate(c);
}

namespace Detail
{

template <class Unit>
constexpr Decoded DecodeUtf8(const Unit* text, const Unit* end) noexcept
{
    const char32_t lead = ToUnit(*text);
    if (lead < 0x80)
    {
        return {lead, 1, true};
    }
    if (lead < 0xC2 || lead > 0xF4)
    {
        return {lead, 1, false};
    }
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    // Overlong forms, surrogates and what lies beyond U+10FFFF all show in the range of the second byte.
    char32_t lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    char32_t highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    char32_t value = lead & (0x7Fu >> length);
    for (std::size_t i = 1; i < length; ++i)
    {
        const char32_t next = text + i < end ? ToUnit(text[i]) : 0;
        if (next < lowest || next > highest)
        {
            return {lead, i, false};
        }
        value = (value << 6) | (next & 0x3F);
        lowest = 0x80;
        highest = 0xBF;
    }
    return {value, length, true};
}

template <class Unit>
constexpr Decoded DecodeUtf16(const Unit* text, const Unit* end) noexcept
{
    const char32_t first = ToUnit(*text);
    if (!IsSurrogate(first))
    {
        return {first, 1, true};
    }
    if (first < 0xDC00 && text + 1 < end)
    {
        const char32_t second = ToUnit(text[1]);
        if (second >= 0xDC00 && second <= 0xDFFF)
        {
            return {0x10000 + ((first - 0xD800) << 10) + (second - 0xDC00), 2, true};
        }
    }
    return {first, 1, false};
}

} // namespace Detail

/// Whether the text is ASCII, which most of any document is.
template <class Unit>
constexpr bool IsAscii(std::basic_string_view<Unit> text) noexcept
{
    // Pieces are gone through without a way out: that is what compilers make vector instructions of.
    constexpr std::size_t kPiece = 1024;
    for (; !text.empty(); text.remove_prefix(text.size() < kPiece ? text.size() : kPiece))
    {
        char32_t bits = 0;
        for (const Unit unit : text.substr(0, kPiece))
        {
            bits |= ToUnit(unit);
        }
        if (bits >= 0x80)
        {
            return false;
        }
    }
    return true;
}

/// Writes the text, which is ASCII, to `out` and returns the place behind it.
template <class To, class From>
constexpr To* CopyAscii(std::basic_string_view<From> text, To* out) noexcept
{
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        out[at] = static_cast<To>(text.data()[at]);
    }
    return out + text.size();
}

/// Reads the code point at `text`, which must lie before `end`. In 32-bit text a surrogate is malformed even beside
/// its other half: UTF-32 has no pairs.
template <class Unit>
constexpr Decoded Decode(const Unit* text, const Unit* end) noexcept
{
    if constexpr (sizeof(Unit) == 1)
    {
        return Detail::DecodeUtf8(text, end);
    }
    else if constexpr (sizeof(Unit) == 2)
    {
        return Detail::DecodeUtf16(text, end);
    }
    else
    {
        const char32_t value = ToUnit(*text);
        return {value, 1, IsScalar(value)};
    }
}

namespace Detail
{

/// How many units at the beginning of the text are ASCII; fewer may be told, but not none where there is one.
template <class Unit>
constexpr std::size_t AsciiRun(const Unit* text, const Unit* end) noexcept
{
    if (ToUnit(*text) >= 0x80)
    {
        return 0;
    }
    constexpr std::size_t kStep = 64;
    const auto size = static_cast<std::size_t>(end - text);
    std::size_t run = 0;
    while (size - run >= kStep && IsAscii(std::basic_string_view<Unit>(text + run, kStep)))
    {
        run += kStep;
    }
    const std::size_t limit = size - run < kStep ? size : run + kStep;
    while (run < limit && ToUnit(text[run]) < 0x80)
    {
        ++run;
    }
    return run;
}

} // namespace Detail

/// How many units of type `Unit` encode `c`, a scalar value.
template <class Unit>
constexpr std::size_t EncodedLength(char32_t c) noexcept
{
    if constexpr (sizeof(Unit) == 1)
    {
        return c < 0x80 ? 1u : c < 0x800 ? 2u : c < 0x10000 ? 3u : 4u;
    }
    else
    {
        return sizeof(Unit) == 2 && c >= 0x10000 ? 2u : 1u;
    }
}

/// Writes `c`, a scalar value, to `out` and returns the place behind it.
template <class Unit>
constexpr Unit* Encode(char32_t c, Unit* out) noexcept
{
    const std::size_t length = EncodedLength<Unit>(c);
    if (length == 1)
    {
        *out++ = static_cast<Unit>(c);
    }
    else if constexpr (sizeof(Unit) == 1)
    {
        constexpr char32_t kLeads[] = {0, 0, 0xC0, 0xE0, 0xF0};
        for (std::size_t i = length; i-- > 1;)
        {
            out[i] = static_cast<Unit>(0x80 | (c & 0x3F));
            c >>= 6;
        }
        out[0] = static_cast<Unit>(kLeads[length] | c);
        out += length;
    }
    else if constexpr (sizeof(Unit) == 2)
    {
        *out++ = static_cast<Unit>(0xD800 + ((c - 0x10000) >> 10));
        *out++ = static_cast<Unit>(0xDC00 + ((c - 0x10000) & 0x3FF));
    }
    return out;
}

/// How many units of type `To` the text becomes when malformed sequences are replaced; `valid` tells whether there
/// were none.
template <class To, class From>
constexpr std::size_t TranscodedLength(std::basic_string_view<From> text, bool& valid) noexcept
{
    std::size_t length = 0;
    valid = true;
    const From* const end = text.data() + text.size();
    for (const From* at = text.data(); at != end;)
    {
        if (const std::size_t run = Detail::AsciiRun(at, end); run > 0)
        {
            at += run;
            length += run;
            continue;
        }
        const Decoded found = Decode(at, end);
        at += found.length;
        valid = valid && found.valid;
        length += EncodedLength<To>(found.valid ? found.value : kReplacement);
    }
    return length;
}

/// Whether nothing in the text is malformed.
template <class Unit>
constexpr bool IsWellFormed(std::basic_string_view<Unit> text) noexcept
{
    bool valid = true;
    static_cast<void>(TranscodedLength<char32_t>(text, valid));
    return valid;
}

/// Writes the text to `out` in the encoding of `To` and returns the place behind it; every malformed sequence
/// becomes one U+FFFD. `out` has room for TranscodedLength() units.
template <class To, class From>
constexpr To* Transcode(std::basic_string_view<From> text, To* out) noexcept
{
    const From* const end = text.data() + text.size();
    for (const From* at = text.data(); at != end;)
    {
        if (const std::size_t run = Detail::AsciiRun(at, end); run > 0)
        {
            out = CopyAscii(std::basic_string_view<From>(at, run), out);
            at += run;
            continue;
        }
        const Decoded found = Decode(at, end);
        at += found.length;
        out = Encode(found.valid ? found.value : kReplacement, out);
    }
    return out;
}

/// The simple, one-to-one case folding of Unicode; what has none is returned as it is.
VEL_API char32_t FoldCase(char32_t c) noexcept;

/// Whether Unicode calls the code point white space.
constexpr bool IsWhiteSpace(char32_t c) noexcept
{
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F || c == 0x205F || c == 0x3000;
}

/// The next code point under case folding, `at` being moved behind it. What is malformed keeps its place in the order
/// and is equal to itself only: bytes come behind every code point, surrogates and large values stand as they are.
template <class Unit>
char32_t NextFolded(const Unit*& at, const Unit* end) noexcept
{
    const Decoded found = Decode(at, end);
    if (found.valid)
    {
        at += found.length;
        return FoldCase(found.value);
    }
    const char32_t unit = ToUnit(*at++);
    return sizeof(Unit) == 1 ? kLastCodePoint + 1 + unit : unit;
}

namespace Detail
{

constexpr char32_t FoldAscii(char32_t c) noexcept
{
    return c - U'A' < 26u ? c + 32u : c;
}

/// Units side by side, as many as fit: comparing by words takes 0.6 times the instructions of comparing by units when
/// names are found in a sheet.
using Word = std::uint64_t;

/// A word with `unit` in every place.
template <class Unit>
constexpr Word InEveryPlace(std::make_unsigned_t<Unit> unit) noexcept
{
    return ~Word{0} / std::make_unsigned_t<Unit>(-1) * unit;
}

/// Whether two words are equal units of ASCII but for the case of letters.
template <class Unit>
constexpr bool SameFoldedAscii(Word x, Word y) noexcept
{
    constexpr Word kCase = InEveryPlace<Unit>(0x20);
    constexpr Word kAscii = InEveryPlace<Unit>(0x7F);
    // The sums have bit 7 from 'a' on, and from behind 'z' on; ASCII is too small for a sum to reach the next unit.
    const Word lower = x | kCase;
    const Word letters = (lower + InEveryPlace<Unit>(0x80 - 'a')) & ~(lower + InEveryPlace<Unit>(0x7F - 'z'));
    const Word difference = x ^ y;
    return (((x | y) & ~kAscii) | (difference & ~kCase) | (difference << 2 & ~letters)) == 0;
}

/// How many of the first `common` units of both texts are surely equal under case folding, in whole words.
template <class Unit>
std::size_t CountSame(const Unit* left, const Unit* right, std::size_t common) noexcept
{
    constexpr std::size_t kUnits = sizeof(Word) / sizeof(Unit);
    std::size_t same = 0;
    for (; same + kUnits <= common; same += kUnits)
    {
        Word x;
        Word y;
        std::memcpy(&x, left + same, sizeof x);
        std::memcpy(&y, right + same, sizeof y);
        // Beyond ASCII equal units may begin different code points, but not where every unit is a code point.
        const bool skip = sizeof(Unit) == sizeof(char32_t) && x == y;
        if (!skip && !SameFoldedAscii<Unit>(x, y))
        {
            break;
        }
    }
    return same;
}

/// Compares code point by code point.
template <class Unit>
int CompareFoldedCodePoints(const Unit* a, const Unit* aEnd, const Unit* b, const Unit* bEnd) noexcept
{
    while (a != aEnd && b != bEnd)
    {
        char32_t x = ToUnit(*a);
        char32_t y = ToUnit(*b);
        if ((x | y) < 0x80)
        {
            ++a;
            ++b;
            x = FoldAscii(x);
            y = FoldAscii(y);
        }
        else
        {
            x = NextFolded(a, aEnd);
            y = NextFolded(b, bEnd);
        }
        if (x != y)
        {
            return x < y ? -1 : 1;
        }
    }
    return static_cast<int>(a != aEnd) - static_cast<int>(b != bEnd);
}

} // namespace Detail

/// Compares by folded code points: below, equal to or above zero. A strict weak order, the same for every width.
template <class Unit>
int CompareFolded(std::basic_string_view<Unit> left, std::basic_string_view<Unit> right) noexcept
{
    const Unit* const a = left.data();
    const Unit* const b = right.data();
    const std::size_t common = left.size() < right.size() ? left.size() : right.size();
    for (std::size_t i = Detail::CountSame(a, b, common); i < common; ++i)
    {
        const char32_t x = ToUnit(a[i]);
        const char32_t y = ToUnit(b[i]);
        if ((x | y) >= 0x80)
        {
            return Detail::CompareFoldedCodePoints(a + i, a + left.size(), b + i, b + right.size());
        }
        if (x != y && Detail::FoldAscii(x) != Detail::FoldAscii(y))
        {
            return Detail::FoldAscii(x) < Detail::FoldAscii(y) ? -1 : 1;
        }
    }
    return static_cast<int>(left.size() > common) - static_cast<int>(right.size() > common);
}

/// The text without the white space at both ends.
template <class Unit>
constexpr std::basic_string_view<Unit> Trimmed(std::basic_string_view<Unit> text) noexcept
{
    const auto isSpace = [](std::basic_string_view<Unit> piece) {
        const Decoded found = Decode(piece.data(), piece.data() + piece.size());
        return found.valid && found.length == piece.size() && IsWhiteSpace(found.value);
    };
    constexpr std::size_t kLongest = sizeof(Unit) == 1 ? 3 : 1; // white space ends at U+3000
    const auto spaceAt = [&](bool front) -> std::size_t {
        for (std::size_t n = 1; n <= kLongest && n <= text.size(); ++n)
        {
            if (isSpace(text.substr(front ? 0 : text.size() - n, n)))
            {
                return n;
            }
        }
        return 0;
    };
    while (const std::size_t n = spaceAt(true))
    {
        text.remove_prefix(n);
    }
    while (const std::size_t n = spaceAt(false))
    {
        text.remove_suffix(n);
    }
    return text;
}

} // namespace VelPlatform::Unicode
