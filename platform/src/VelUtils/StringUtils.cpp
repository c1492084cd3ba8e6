#include "VelUtils/StringUtils.h"

#include "VelPlatform/Unicode.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>

using VelPlatform::VelString;
using VelPlatform::VelStringView;
namespace Unicode = VelPlatform::Unicode;

namespace VelUtils::String
{

namespace
{

bool IsDigit(wchar_t unit) noexcept
{
    return unit >= L'0' && unit <= L'9';
}

/// Where the number of a name like "Fill 7" begins; the name's size when it has none.
std::size_t FindTrailingNumber(VelStringView name) noexcept
{
    std::size_t begin = name.size();
    while (begin > 0 && IsDigit(name[begin - 1]))
    {
        --begin;
    }
    return begin > 0 && name[begin - 1] == L' ' ? begin : name.size();
}

/// Adds one to a number written in decimal digits; the text grows only when all of them are nines.
void Increment(std::wstring& digits)
{
    for (std::size_t i = digits.size(); i-- > 0;)
    {
        if (digits[i] != L'9')
        {
            ++digits[i];
            return;
        }
        digits[i] = L'0';
    }
    digits.insert(digits.begin(), L'1');
}

/// A set of code points that answers for ASCII without a search.
class CharacterSet
{
public:
    explicit CharacterSet(VelStringView characters)
    {
        const wchar_t* const end = characters.data() + characters.size();
        for (const wchar_t* at = characters.data(); at != end;)
        {
            const Unicode::Decoded found = Unicode::Decode(at, end);
            at += found.length;
            if (found.value < m_ascii.size())
            {
                m_ascii[found.value] = true;
            }
            else
            {
                m_others.push_back(found.value);
            }
        }
    }

    bool Contains(char32_t c) const noexcept
    {
        return c < m_ascii.size() ? m_ascii[c] : m_others.find(c) != std::u32string::npos;
    }

private:
    std::array<bool, 128> m_ascii{};
    std::u32string m_others;
};

VelString Filter(const VelString& text, VelStringView characters, bool keepMembers)
{
    const CharacterSet set(characters);
    VelString kept;
    kept.reserve(text.size());
    for (const wchar_t* at = text.begin(); at != text.end();)
    {
        const Unicode::Decoded found = Unicode::Decode(at, text.end());
        if (set.Contains(found.value) == keepMembers)
        {
            kept.append(at, found.length);
        }
        at += found.length;
    }
    return kept.size() == text.size() ? text : kept;
}

} // namespace

std::vector<VelString> Split(const wchar_t* text, wchar_t separator, bool skipEmpty, bool trim)
{
    return Split(text ? VelStringView(text) : VelStringView(), separator, skipEmpty, trim);
}

std::vector<VelString> Split(VelStringView text, wchar_t separator, bool skipEmpty, bool trim)
{
    std::vector<VelString> pieces;
    for (std::size_t begin = 0; begin <= text.size();)
    {
        const std::size_t end = std::min(text.find(separator, begin), text.size());
        VelStringView piece = text.substr(begin, end - begin);
        if (trim)
        {
            piece = Unicode::Trimmed(piece);
        }
        if (!piece.empty() || !skipEmpty)
        {
            pieces.emplace_back(piece);
        }
        begin = end + 1;
    }
    return pieces;
}

VelString FindUnusedName(const VelString& candidate, const std::function<bool(const VelString&)>& isUsed)
{
    if (!isUsed(candidate))
    {
        return candidate;
    }
    const std::size_t numberBegin = FindTrailingNumber(candidate);
    std::wstring number(candidate.begin() + numberBegin, candidate.end());
    VelString stem(candidate.c_str(), numberBegin);
    if (number.empty())
    {
        stem += L' ';
        number = L"0";
    }
    VelString name;
    name.reserve(stem.size() + number.size() + 8);
    name += stem;
    do
    {
        Increment(number);
        name.Truncate(stem.size());
        name += VelStringView(number);
    } while (isUsed(name));
    return name;
}

VelString KeepCharacters(const VelString& text, VelStringView set)
{
    return Filter(text, set, true);
}

VelString RemoveCharacters(const VelString& text, VelStringView set)
{
    return Filter(text, set, false);
}

} // namespace VelUtils::String
