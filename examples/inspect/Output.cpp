#include "Output.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Inspect
{

namespace
{

/// How wide a column may be: what a long text may take of a line before the other rows stop making room for it. Paths,
/// which stand first, may take more than values.
constexpr std::size_t WidestFirstColumn = 64;
constexpr std::size_t WidestColumn = 44;

struct Range
{
    char32_t first;
    char32_t last;
};

/// What is never written to a terminal as it stands: control characters, and those that change the direction.
constexpr std::array<Range, 8> Unprintable{{{0x00, 0x1F},
                                            {0x7F, 0x9F},
                                            {0x061C, 0x061C},
                                            {0x200E, 0x200F},
                                            {0x2028, 0x202E},
                                            {0x2066, 0x2069},
                                            {0xD800, 0xDFFF},
                                            {0xFEFF, 0xFEFF}}};

/// Accents and the like, which stand above the letter before them.
constexpr std::array<Range, 6> Zero{
    {{0x0300, 0x036F}, {0x0483, 0x0489}, {0x200B, 0x200D}, {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}}};

/// The scripts and pictures that take two columns.
constexpr std::array<Range, 9> Double{{{0x1100, 0x115F},
                                       {0x2E80, 0x303E},
                                       {0x3041, 0xA4CF},
                                       {0xAC00, 0xD7A3},
                                       {0xF900, 0xFAFF},
                                       {0xFE30, 0xFE6F},
                                       {0xFF00, 0xFF60},
                                       {0x1F300, 0x1FAFF},
                                       {0x20000, 0x3FFFD}}};

template <std::size_t Size>
bool IsIn(const std::array<Range, Size>& ranges, char32_t c)
{
    return std::any_of(ranges.begin(), ranges.end(), [c](Range range) { return c >= range.first && c <= range.last; });
}

/// The code point at `index`, which moves behind it.
char32_t NextOf(VelStringView text, std::size_t& index)
{
    const auto unit = [&text](std::size_t at) {
        return static_cast<char32_t>(text[at]) & (sizeof(wchar_t) == 2 ? 0xFFFFu : 0xFFFFFFFFu);
    };
    const char32_t first = unit(index++);
    if (sizeof(wchar_t) == 2 && first >= 0xD800 && first < 0xDC00 && index < text.size() && unit(index) >= 0xDC00 &&
        unit(index) < 0xE000)
    {
        return 0x10000 + ((first - 0xD800) << 10) + (unit(index++) - 0xDC00);
    }
    return first;
}

/// The code point that begins at `index` of valid UTF-8; `index` moves behind it.
char32_t NextOf(std::string_view utf8, std::size_t& index)
{
    const auto lead = static_cast<unsigned char>(utf8[index++]);
    if (lead < 0x80)
    {
        return lead;
    }
    char32_t c = lead & (lead >= 0xF0 ? 0x07u : lead >= 0xE0 ? 0x0Fu : 0x1Fu);
    while (index < utf8.size() && (static_cast<unsigned char>(utf8[index]) & 0xC0) == 0x80)
    {
        c = (c << 6) | (static_cast<unsigned char>(utf8[index++]) & 0x3Fu);
    }
    return c;
}

std::string EscapeOf(char32_t c)
{
    switch (c)
    {
    case U'\n':
        return "\\n";
    case U'\t':
        return "\\t";
    case U'\r':
        return "\\r";
    default:
        break;
    }
    std::string digits;
    do
    {
        digits.insert(digits.begin(), "0123456789ABCDEF"[c & 15]);
        c >>= 4;
    } while (c != 0);
    return "\\u{" + digits + "}";
}

std::string Escape(VelStringView text, bool quotes)
{
    std::string shown;
    for (std::size_t index = 0; index < text.size();)
    {
        const std::size_t start = index;
        const char32_t c = NextOf(text, index);
        if (c == U'\\' || (quotes && c == U'"'))
        {
            shown += '\\';
            shown += static_cast<char>(c);
        }
        else if (IsIn(Unprintable, c))
        {
            shown += EscapeOf(c);
        }
        else
        {
            shown += std::string_view(VelPlatform::ToNarrow(text.substr(start, index - start)));
        }
    }
    return shown;
}

} // namespace

std::string Shown(VelStringView text)
{
    return Escape(text, false);
}

std::string Quoted(VelStringView text)
{
    return '"' + Escape(text, true) + '"';
}

std::size_t WidthOf(std::string_view shown)
{
    std::size_t width = 0;
    for (std::size_t index = 0; index < shown.size();)
    {
        const char32_t c = NextOf(shown, index);
        width += IsIn(Zero, c) ? 0 : IsIn(Double, c) ? 2 : 1;
    }
    return width;
}

std::string Counted(std::size_t count, std::string_view noun)
{
    return std::to_string(count) + ' ' + std::string(noun) + (count == 1 ? "" : "s");
}

Table::Table(std::initializer_list<std::string> headings)
{
    m_rows.emplace_back(headings);
}

void Table::AddRow(std::vector<std::string> cells)
{
    m_rows.push_back(std::move(cells));
}

void Table::Write(std::ostream& out, std::string_view indentation) const
{
    std::vector<std::size_t> widths(m_rows.front().size());
    for (const auto& row : m_rows)
    {
        for (std::size_t column = 0; column < row.size(); ++column)
        {
            widths[column] = std::max(widths[column],
                                      std::min(WidthOf(row[column]), column == 0 ? WidestFirstColumn : WidestColumn));
        }
    }
    for (const auto& row : m_rows)
    {
        std::string line(indentation);
        std::size_t missing = 0; // blanks are written before the next text only, never at the end of a line
        for (std::size_t column = 0; column < row.size(); ++column)
        {
            if (!row[column].empty())
            {
                line.append(missing, ' ').append(row[column]);
                missing = 0;
            }
            const std::size_t width = WidthOf(row[column]);
            missing += (width < widths[column] ? widths[column] - width : 0) + 2;
        }
        out << line << '\n';
    }
}

} // namespace Inspect
