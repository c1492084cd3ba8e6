#include "VelPlatform/Unicode.h"
#include "VelUtils/Json.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <memory>
#include <string>

namespace VelUtils::Json
{

namespace
{

/// A text that grows without ever being copied, but once in the end.
class GrowingText
{
public:
    /// Room for `size` more units, of which Advance() then says how many are filled.
    wchar_t* MakeRoom(std::size_t size)
    {
        if (size > static_cast<std::size_t>(m_end - m_at))
        {
            AddPiece(size);
        }
        return m_at;
    }
    void Advance(wchar_t* at) noexcept { m_at = at; }

    void Append(wchar_t unit)
    {
        *MakeRoom(1) = unit;
        ++m_at;
    }
    template <class Unit>
    void Append(std::basic_string_view<Unit> text)
    {
        Advance(std::copy(text.begin(), text.end(), MakeRoom(text.size())));
    }
    void AppendBlanks(std::size_t count) { Advance(std::fill_n(MakeRoom(count), count, L' ')); }

    VelString Join();

private:
    struct Piece
    {
        std::unique_ptr<wchar_t[]> units;
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
    wchar_t* m_at = nullptr; // in the last piece
    wchar_t* m_end = nullptr;
};

void GrowingText::AddPiece(std::size_t size)
{
    constexpr std::size_t kSmallest = 256;
    constexpr std::size_t kLargest = std::size_t{1} << 20;
    ClosePiece();
    const std::size_t last =
        m_pieces.empty() ? kSmallest / 2 : static_cast<std::size_t>(m_end - m_pieces.back().units.get());
    const std::size_t room = std::max(size, std::min(2 * last, kLargest));
    m_pieces.push_back({std::unique_ptr<wchar_t[]>(new wchar_t[room]), 0});
    m_at = m_pieces.back().units.get();
    m_end = m_at + room;
}

VelString GrowingText::Join()
{
    ClosePiece();
    std::size_t size = 0;
    for (const Piece& piece : m_pieces)
    {
        size += piece.size;
    }
    return VelString::Make(size, [this](wchar_t* out) {
        for (const Piece& piece : m_pieces)
        {
            out = std::copy_n(piece.units.get(), piece.size, out);
        }
    });
}

/// Whether the unit stands in a string as it is, whatever is beside it.
constexpr bool IsPlain(wchar_t unit) noexcept
{
    const char32_t value = VelPlatform::Unicode::ToUnit(unit);
    return value >= U' ' && value != U'"' && value != U'\\' && value < 0xD800;
}

/// Whether all units are plain.
bool IsPlain(VelStringView text) noexcept
{
    // Loops over so many units, a constant, are compiled to vector instructions.
    constexpr std::size_t kBlock = 8;
    const auto isPlainBlock = [](const wchar_t* units) {
        unsigned special = 0;
        for (std::size_t i = 0; i < kBlock; ++i)
        {
            special |= static_cast<unsigned>(!IsPlain(units[i]));
        }
        return special == 0;
    };
    if (text.size() < kBlock)
    {
        return std::all_of(text.begin(), text.end(), [](wchar_t unit) { return IsPlain(unit); });
    }
    const wchar_t* const last = text.data() + text.size() - kBlock;
    for (const wchar_t* at = text.data(); at < last; at += kBlock)
    {
        if (!isPlainBlock(at))
        {
            return false;
        }
    }
    return isPlainBlock(last);
}

/// Writes a value on a stack of its own, so that how deep it is does not matter.
class Writer
{
public:
    explicit Writer(bool compact) : m_compact(compact) {}

    VelString Write(const Variant& value);

private:
    /// A container that is being written.
    struct Level
    {
        const Object* object; ///< null for an array
        const Array* array;
        std::size_t next; ///< place of what comes next

        std::size_t GetSize() const { return object ? object->GetSize() : array->GetSize(); }
    };

    void WriteNext();
    void WriteValue(const Variant& value);
    void Open(const Object* object, const Array* array);
    void WriteDouble(double value);
    template <class Integer>
    void WriteInteger(Integer value);
    void WriteString(VelStringView text);
    void WriteCharacter(VelPlatform::Unicode::Decoded character);
    void StartLine();
    void Append(std::string_view ascii) { m_text.Append(ascii); }

    bool m_compact;
    GrowingText m_text;
    std::vector<Level> m_open;
};

VelString Writer::Write(const Variant& value)
{
    WriteValue(value);
    while (!m_open.empty())
    {
        WriteNext();
    }
    return m_text.Join();
}

void Writer::WriteNext()
{
    Level& level = m_open.back();
    if (level.next == level.GetSize())
    {
        const wchar_t bracket = level.object ? L'}' : L']';
        m_open.pop_back();
        StartLine();
        m_text.Append(bracket);
        return;
    }
    if (level.next > 0)
    {
        m_text.Append(L',');
    }
    StartLine();
    const std::size_t place = level.next++;
    if (!level.object)
    {
        WriteValue(*level.array->GetValue(place));
        return;
    }
    WriteString(level.object->GetValueName(place));
    Append(m_compact ? ":" : ": ");
    WriteValue(*level.object->GetValue(place));
}

void Writer::WriteValue(const Variant& value)
{
    if (const VelString* text = value.GetIf<VelString>())
    {
        WriteString(*text);
    }
    else if (const Object* object = value.GetIf<Object>())
    {
        Open(object, nullptr);
    }
    else if (const Array* array = value.GetIf<Array>())
    {
        Open(nullptr, array);
    }
    else if (const double* real = value.GetIf<double>())
    {
        WriteDouble(*real);
    }
    else if (const bool* truth = value.GetIf<bool>())
    {
        Append(*truth ? "true" : "false");
    }
    else if (const std::int64_t* number = value.GetIf<std::int64_t>())
    {
        WriteInteger(*number);
    }
    else if (const std::uint64_t* natural = value.GetIf<std::uint64_t>())
    {
        WriteInteger(*natural);
    }
    else if (const VelStringA* narrow = value.GetIf<VelStringA>())
    {
        WriteString(VelPlatform::ToWide(*narrow));
    }
    else
    {
        Append("null");
    }
}

void Writer::Open(const Object* object, const Array* array)
{
    const Level level{object, array, 0};
    if (level.GetSize() == 0)
    {
        Append(object ? "{}" : "[]");
        return;
    }
    m_text.Append(object ? L'{' : L'[');
    m_open.push_back(level);
}

template <class Integer>
void Writer::WriteInteger(Integer value)
{
    char digits[24]; // a sign and 20 digits at most
    Append({digits, static_cast<std::size_t>(std::to_chars(digits, std::end(digits), value).ptr - digits)});
}

void Writer::WriteDouble(double value)
{
    if (!std::isfinite(value))
    {
        Append("null");
        return;
    }
    // The form d.ddde+xx gives the digits that count and where the point is; both are put in order by hand.
    char text[32];
    const char* const end = std::to_chars(text, std::end(text), std::fabs(value), std::chars_format::scientific).ptr;
    const std::string_view scientific(text, static_cast<std::size_t>(end - text));
    const std::size_t mark = scientific.find('e');
    std::string digits(scientific.substr(0, mark));
    if (digits.size() > 1)
    {
        digits.erase(1, 1);
    }
    const char* const power = text + mark + (text[mark + 1] == '+' ? 2 : 1);
    int exponent = 0;
    std::from_chars(power, end, exponent);
    const auto count = static_cast<int>(digits.size());
    if (std::signbit(value))
    {
        m_text.Append(L'-');
    }
    if (exponent < -6 || exponent > 20)
    {
        if (count > 1)
        {
            digits.insert(1, 1, '.');
        }
        Append(digits + (exponent < 0 ? "e-" : "e+") + std::to_string(std::abs(exponent)));
    }
    else if (exponent < 0)
    {
        Append("0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits);
    }
    else if (exponent >= count - 1)
    {
        Append(digits + std::string(static_cast<std::size_t>(exponent - count + 1), '0') + ".0");
    }
    else
    {
        Append(digits.insert(static_cast<std::size_t>(exponent + 1), 1, '.'));
    }
}

void Writer::WriteString(VelStringView text)
{
    m_text.Append(L'"');
    if (IsPlain(text))
    {
        m_text.Append(text);
        m_text.Append(L'"');
        return;
    }
    const wchar_t* const end = text.data() + text.size();
    const wchar_t* written = text.data();
    for (const wchar_t* at = written; at != end;)
    {
        const VelPlatform::Unicode::Decoded character = VelPlatform::Unicode::Decode(at, end);
        at += character.length;
        if (!character.valid || character.value < ' ' || character.value == '"' || character.value == '\\')
        {
            m_text.Append(VelStringView(written, static_cast<std::size_t>(at - character.length - written)));
            WriteCharacter(character);
            written = at;
        }
    }
    m_text.Append(VelStringView(written, static_cast<std::size_t>(end - written)));
    m_text.Append(L'"');
}

/// Writes a character that cannot stand in a string as it is.
void Writer::WriteCharacter(VelPlatform::Unicode::Decoded character)
{
    static constexpr std::string_view kNamed = "\"\"\\\\\bb\ff\nn\rr\tt"; // pairs: what is meant, what is written
    if (!character.valid)
    {
        m_text.Append(static_cast<wchar_t>(VelPlatform::Unicode::kReplacement));
        return;
    }
    m_text.Append(L'\\');
    for (std::size_t i = 0; i < kNamed.size(); i += 2)
    {
        if (character.value == static_cast<unsigned char>(kNamed[i]))
        {
            m_text.Append(static_cast<wchar_t>(kNamed[i + 1]));
            return;
        }
    }
    static constexpr char kDigits[] = "0123456789ABCDEF";
    Append("u00");
    m_text.Append(static_cast<wchar_t>(kDigits[character.value >> 4]));
    m_text.Append(static_cast<wchar_t>(kDigits[character.value & 15]));
}

void Writer::StartLine()
{
    if (!m_compact)
    {
        m_text.Append(L'\n');
        m_text.AppendBlanks(m_open.size());
    }
}

} // namespace

VelString ValueToString(const Variant& value, bool compact)
{
    return Writer(compact).Write(value);
}

} // namespace VelUtils::Json
