#include "JsonPlace.h"

#include "VelPlatform/Unicode.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <vector>

namespace VelUtils::Json
{

namespace
{

/// The character at a place, for people.
std::string NameOfCharacter(std::string_view text, std::size_t offset)
{
    if (offset >= text.size())
    {
        return "the end of the text";
    }
    const VelPlatform::Unicode::Decoded found =
        VelPlatform::Unicode::Decode(text.data() + offset, text.data() + text.size());
    if (found.value > ' ' && found.value < 0x7F)
    {
        return {'\'', static_cast<char>(found.value), '\''};
    }
    char name[16];
    std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(found.value));
    return name;
}

/// Goes through a text that is sound as far as it goes, and knows what may come next.
class Place
{
public:
    explicit Place(std::string_view sound) : m_text(sound)
    {
        while (m_at < m_text.size())
        {
            Step();
        }
    }

    /// What is expected behind the text, where `rest` stands instead.
    std::string Expected(std::string_view rest) const;

    /// How many characters of `rest` are the beginning of a word that may stand there.
    std::size_t CountOfWord(std::string_view rest) const;

private:
    void Step();
    void StepOverString();
    void StepOverScalar();
    void EndValue() { m_expected = AfterValue(); }
    const char* AfterValue() const;
    const char* ExpectedInString(std::string_view rest) const;
    bool IsInObject() const { return !m_open.empty() && m_open.back() == '{'; }

    std::string_view m_text;
    std::size_t m_at = 0;
    std::vector<char> m_open;
    const char* m_expected = kValue;
    std::string_view m_unfinished; ///< string, from its quote on, or number

    static constexpr const char* kValue = "a value";
    static constexpr const char* kValueOrEnd = "a value or ']'";
    static constexpr const char* kAfterBackslash = "one of \"\\/bfnrtu after the backslash";
    static constexpr const char* kName = "a member name in quotes";
    static constexpr const char* kNameOrEnd = "a member name in quotes or '}'";
};

void Place::Step()
{
    const char c = m_text[m_at];
    switch (c)
    {
    case ' ':
    case '\t':
    case '\n':
    case '\r':
        break;
    case '{':
        m_open.push_back(c);
        m_expected = kNameOrEnd;
        break;
    case '[':
        m_open.push_back(c);
        m_expected = kValueOrEnd;
        break;
    case '}':
    case ']':
        m_open.pop_back();
        EndValue();
        break;
    case ',':
        m_expected = IsInObject() ? kName : kValue;
        break;
    case ':':
        m_expected = kValue;
        break;
    case '"':
        StepOverString();
        return;
    default:
        StepOverScalar();
        return;
    }
    ++m_at;
}

void Place::StepOverString()
{
    const std::size_t first = m_at;
    for (++m_at; m_at < m_text.size(); ++m_at)
    {
        if (m_text[m_at] == '\\')
        {
            ++m_at;
        }
        else if (m_text[m_at] == '"')
        {
            ++m_at;
            if (m_expected == kName || m_expected == kNameOrEnd)
            {
                m_expected = "':'";
            }
            else
            {
                EndValue();
            }
            return;
        }
    }
    m_at = m_text.size();
    m_unfinished = m_text.substr(first);
}

void Place::StepOverScalar()
{
    const std::string_view rest = m_text.substr(m_at);
    const std::string_view scalar = rest.substr(0, rest.find_first_of(" \t\n\r,:]}"));
    m_at += scalar.size();
    const bool isNumber = scalar.front() == '-' || (scalar.front() >= '0' && scalar.front() <= '9');
    if (isNumber && !(scalar.back() >= '0' && scalar.back() <= '9'))
    {
        m_unfinished = scalar;
    }
    else if (isNumber || scalar == "true" || scalar == "false" || scalar == "null")
    {
        EndValue();
    }
}

const char* Place::AfterValue() const
{
    if (m_open.empty())
    {
        return "the end of the text";
    }
    return IsInObject() ? "',' or '}'" : "',' or ']'";
}

std::string Place::Expected(std::string_view rest) const
{
    if (m_unfinished.empty())
    {
        return m_expected;
    }
    return m_unfinished.front() == '"' ? ExpectedInString(rest) : "a digit";
}

const char* Place::ExpectedInString(std::string_view rest) const
{
    static constexpr const char* kSecondHalf = "the second half of a surrogate pair behind the first";
    static constexpr const char* kFirstHalf = "the first half of a surrogate pair before the second";
    bool halfIsOpen = false;
    bool isLoneHalf = false;
    for (std::size_t at = 1; at < m_unfinished.size();)
    {
        if (m_unfinished[at] != '\\')
        {
            ++at;
            continue;
        }
        const std::string_view escape = m_unfinished.substr(at + 1, 5);
        if (escape.empty())
        {
            // What is refused behind \u may be all of what was written there.
            return halfIsOpen ? kSecondHalf : rest.starts_with('u') ? kFirstHalf : kAfterBackslash;
        }
        if (escape.front() != 'u')
        {
            at += 2;
            continue;
        }
        if (escape.size() < 5)
        {
            return halfIsOpen ? kSecondHalf : "four hexadecimal digits after \\u";
        }
        unsigned unit = 0;
        std::from_chars(escape.data() + 1, escape.data() + escape.size(), unit, 16);
        isLoneHalf = !halfIsOpen && unit >= 0xDC00 && unit <= 0xDFFF;
        halfIsOpen = unit >= 0xD800 && unit <= 0xDBFF;
        at += 6;
    }
    if (halfIsOpen || isLoneHalf)
    {
        return halfIsOpen ? kSecondHalf : kFirstHalf;
    }
    return !rest.empty() && static_cast<unsigned char>(rest.front()) < ' '
               ? "a control character of a string to be written as an escape"
               : "'\"' at the end of the string";
}

std::size_t Place::CountOfWord(std::string_view rest) const
{
    if (m_expected != kValue && m_expected != kValueOrEnd)
    {
        return 0;
    }
    std::size_t longest = 0;
    for (const std::string_view word : {"true", "false", "null"})
    {
        const auto [end, ignored] = std::mismatch(rest.begin(), rest.end(), word.begin(), word.end());
        longest = std::max(longest, static_cast<std::size_t>(end - rest.begin()));
    }
    return longest;
}

} // namespace

std::string ExpectedAt(std::string_view utf8, std::size_t& offset)
{
    offset = std::min(offset, utf8.size());
    const Place place(utf8.substr(0, offset));
    const std::string expected = place.Expected(utf8.substr(offset));
    offset += place.CountOfWord(utf8.substr(offset));
    return "expected " + expected + ", found " + NameOfCharacter(utf8, offset);
}

} // namespace VelUtils::Json
