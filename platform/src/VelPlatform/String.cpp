#include "VelPlatform/String.h"

#include "VelPlatform/Unicode.h"

#include <charconv>
#include <iterator>

namespace VelPlatform
{

namespace
{

template <class To, class From>
bool Convert(VelStringViewT<From> text, VelStringT<To>& result, bool lenient)
{
    if (Unicode::IsAscii(text))
    {
        result = VelStringT<To>::Make(text.size(), [&](To* out) { Unicode::CopyAscii(text, out); });
        return true;
    }
    bool valid = true;
    const std::size_t length = Unicode::TranscodedLength<To>(text, valid);
    if (!valid && !lenient)
    {
        return false;
    }
    result = VelStringT<To>::Make(length, [&](To* out) { Unicode::Transcode(text, out); });
    return true;
}

template <class CharT>
void AppendAscii(VelStringT<CharT>& text, const char* from, const char* end)
{
    for (; from != end; ++from)
    {
        text += static_cast<CharT>(*from);
    }
}

template <class CharT>
void AppendArgument(VelStringT<CharT>& text, const Detail::FormatArgument<CharT>& argument)
{
    using Kind = typename Detail::FormatArgument<CharT>::Kind;
    char digits[40] = {}; // the longest is a double: sign, 17 digits, point, exponent
    switch (argument.kind)
    {
    case Kind::Text:
        text += argument.text;
        break;
    case Kind::Signed:
        AppendAscii(text, digits,
                    std::to_chars(digits, std::end(digits), static_cast<std::int64_t>(argument.integer)).ptr);
        break;
    case Kind::Unsigned:
        AppendAscii(text, digits, std::to_chars(digits, std::end(digits), argument.integer).ptr);
        break;
    case Kind::Real:
        AppendAscii(text, digits, std::to_chars(digits, std::end(digits), argument.real).ptr);
        break;
    }
}

template <class CharT>
VelStringT<CharT> FormatPattern(VelStringViewT<CharT> pattern,
                                std::initializer_list<Detail::FormatArgument<CharT>> arguments)
{
    constexpr CharT kOpen{'{'};
    constexpr CharT kClose{'}'};
    VelStringT<CharT> text;
    text.reserve(pattern.size());
    auto argument = arguments.begin();
    for (std::size_t i = 0; i < pattern.size(); ++i)
    {
        const CharT unit = pattern[i];
        if (unit != kOpen && unit != kClose)
        {
            text += unit;
            continue;
        }
        const CharT next = i + 1 < pattern.size() ? pattern[i + 1] : CharT{};
        if (next == unit)
        {
            text += unit;
        }
        else if (unit == kOpen && next == kClose && argument != arguments.end())
        {
            AppendArgument(text, *argument++);
        }
        else
        {
            throw std::invalid_argument("VelStringT::Format: a brace that stands for nothing");
        }
        ++i;
    }
    if (argument != arguments.end())
    {
        throw std::invalid_argument("VelStringT::Format: more arguments than places");
    }
    return text;
}

} // namespace

namespace Detail
{

int CompareFolded(VelStringViewT<wchar_t> left, VelStringViewT<wchar_t> right) noexcept
{
    return Unicode::CompareFolded(left, right);
}

int CompareFolded(VelStringViewT<char> left, VelStringViewT<char> right) noexcept
{
    return Unicode::CompareFolded(left, right);
}

VelStringViewT<wchar_t> Trimmed(VelStringViewT<wchar_t> text) noexcept
{
    return Unicode::Trimmed(text);
}

VelStringViewT<char> Trimmed(VelStringViewT<char> text) noexcept
{
    return Unicode::Trimmed(text);
}

VelStringT<wchar_t> FormatText(VelStringViewT<wchar_t> pattern,
                               std::initializer_list<FormatArgument<wchar_t>> arguments)
{
    return FormatPattern(pattern, arguments);
}

VelStringT<char> FormatText(VelStringViewT<char> pattern, std::initializer_list<FormatArgument<char>> arguments)
{
    return FormatPattern(pattern, arguments);
}

} // namespace Detail

VelString ToWide(VelStringViewA utf8)
{
    VelString wide;
    Convert(utf8, wide, true);
    return wide;
}

bool TryToWide(VelStringViewA utf8, VelString& wide)
{
    return Convert(utf8, wide, false);
}

VelStringA ToNarrow(VelStringView wide)
{
    VelStringA utf8;
    Convert(wide, utf8, true);
    return utf8;
}

bool TryToNarrow(VelStringView wide, VelStringA& utf8)
{
    return Convert(wide, utf8, false);
}

} // namespace VelPlatform
