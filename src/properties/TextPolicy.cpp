#include <styles/TextPolicy.h>

#include <charconv>
#include <cmath>
#include <concepts>
#include <limits>
#include <string_view>
#include <typeinfo>

namespace Styles
{

using VelPlatform::VelString;
using VelPlatform::VelStringA;
using VelPref::Detail::BadConversion;
using VelUtils::Any;

namespace
{

template <class Number>
VelString WriteNumber(Number number)
{
    char text[32];
    const std::to_chars_result result = std::to_chars(text, text + sizeof text, number);
    return VelPlatform::ToWide(std::string_view(text, result.ptr));
}

/// Numbers are written in ASCII; any other text gives an empty one, which is no number.
VelStringA ToAscii(const VelString& text)
{
    VelStringA narrow;
    return VelPlatform::TryToNarrow(text, narrow) && narrow.size() == text.size() ? narrow : VelStringA();
}

template <class Number>
Number ReadNumber(std::string_view text)
{
    Number number{};
    const std::from_chars_result result = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || result.ec != std::errc() || result.ptr != text.data() + text.size())
    {
        throw BadConversion("not a number, or out of range");
    }
    return number;
}

VelString Write(double number)
{
    return WriteNumber(number);
}
VelString Write(std::int32_t number)
{
    return WriteNumber(number);
}
VelString Write(std::uint32_t number)
{
    return WriteNumber(number);
}
VelString Write(bool flag)
{
    return VelString(flag ? L"1" : L"0");
}
VelString Write(const VelString& text)
{
    return text;
}

template <class T>
T Read(const VelString& text)
{
    if constexpr (std::same_as<T, VelString>)
    {
        return text;
    }
    else if constexpr (std::same_as<T, bool>)
    {
        if (text == L"1" || text == L"true")
        {
            return true;
        }
        if (text == L"0" || text == L"false")
        {
            return false;
        }
        throw BadConversion("neither true nor false");
    }
    else
    {
        const VelStringA narrow = ToAscii(text);
        const std::string_view digits = narrow;
        if (std::same_as<T, std::uint32_t> && digits == "-1")
        {
            return static_cast<T>(std::numeric_limits<std::uint32_t>::max()); // how sheets write a pattern of all ones
        }
        const T number = ReadNumber<T>(digits);
        // What is not a number is read in the one form in which it is written.
        if (std::same_as<T, double> && !std::isfinite(static_cast<double>(number)) && Write(number) != text)
        {
            throw BadConversion("not a number");
        }
        return number;
    }
}

} // namespace

template <class T>
TextPolicy<T>::TextPolicy() = default;

template <class T>
TextPolicy<T>::~TextPolicy() = default;

template <class T>
VelString TextPolicy<T>::ToText(const Any& value) const
{
    return Write(value.Get<T>());
}

template <class T>
Any TextPolicy<T>::FromText(const VelString& text) const
{
    return Any(Read<T>(text));
}

template class TextPolicy<double>;
template class TextPolicy<std::int32_t>;
template class TextPolicy<std::uint32_t>;
template class TextPolicy<bool>;
template class TextPolicy<VelString>;

} // namespace Styles
