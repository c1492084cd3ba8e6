#include "GrowingText.h"
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

/// Whether the unit stands in a string as one unit of the text, whatever is beside it.
template <class CharT>
constexpr bool IsPlain(wchar_t unit) noexcept
{
    constexpr char32_t kEnd = sizeof(CharT) == 1 ? 0x80 : 0xD800;
    const char32_t value = VelPlatform::Unicode::ToUnit(unit);
    return value >= U' ' && value != U'"' && value != U'\\' && value < kEnd;
}

} // namespace

/// Writes values on a stack of its own, so that how deep they are does not matter.
template <class CharT>
class BasicWriter<CharT>::Output
{
public:
    explicit Output(bool compact) : m_compact(compact) {}

    void Start();
    void End();
    void WriteName(VelStringView name);
    void WriteWhole(const Variant& value);
    VelPlatform::VelStringT<CharT> Finish() { return m_text.Join(); }

private:
    /// A container that is being written.
    struct Level
    {
        const Object* object; ///< null for an array, and for an object that is written piece by piece
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
    void WriteCharacters(VelStringView text);
    void WriteEscaped(char character);
    void StartItem();
    void StartLine();
    void Append(std::string_view ascii) { m_text.Append(ascii); }
    void AppendCharacter(char32_t character)
    {
        m_text.Advance(VelPlatform::Unicode::Encode(character, m_text.MakeRoom(4)));
    }

    bool m_compact;
    GrowingText<CharT> m_text;
    std::vector<Level> m_open;
};

template <class CharT>
void BasicWriter<CharT>::Output::Start()
{
    m_text.Append('{');
    m_open.push_back({nullptr, nullptr, 0});
}

template <class CharT>
void BasicWriter<CharT>::Output::End()
{
    const bool isEmpty = m_open.back().next == 0;
    m_open.pop_back();
    if (!isEmpty)
    {
        StartLine();
    }
    m_text.Append('}');
}

template <class CharT>
void BasicWriter<CharT>::Output::WriteName(VelStringView name)
{
    StartItem();
    WriteString(name);
    Append(m_compact ? ":" : ": ");
}

template <class CharT>
void BasicWriter<CharT>::Output::WriteWhole(const Variant& value)
{
    const std::size_t depth = m_open.size();
    WriteValue(value);
    while (m_open.size() > depth)
    {
        WriteNext();
    }
}

template <class CharT>
void BasicWriter<CharT>::Output::WriteNext()
{
    Level& level = m_open.back();
    const std::size_t place = level.next;
    if (place == level.GetSize())
    {
        const char bracket = level.object ? '}' : ']';
        m_open.pop_back();
        StartLine();
        m_text.Append(bracket);
    }
    else if (level.object)
    {
        const Object& object = *level.object;
        WriteName(object.GetValueName(place));
        WriteValue(*object.GetValue(place));
    }
    else
    {
        StartItem();
        WriteValue(*level.array->GetValue(place));
    }
}

template <class CharT>
void BasicWriter<CharT>::Output::StartItem()
{
    if (m_open.back().next++ > 0)
    {
        m_text.Append(',');
    }
    StartLine();
}

template <class CharT>
void BasicWriter<CharT>::Output::WriteValue(const Variant& value)
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

template <class CharT>
void BasicWriter<CharT>::Output::Open(const Object* object, const Array* array)
{
    const Level level{object, array, 0};
    if (level.GetSize() == 0)
    {
        Append(object ? "{}" : "[]");
        return;
    }
    m_text.Append(object ? '{' : '[');
    m_open.push_back(level);
}

template <class CharT>
template <class Integer>
void BasicWriter<CharT>::Output::WriteInteger(Integer value)
{
    char digits[24]; // a sign and 20 digits at most
    Append({digits, static_cast<std::size_t>(std::to_chars(digits, std::end(digits), value).ptr - digits)});
}

template <class CharT>
void BasicWriter<CharT>::Output::WriteDouble(double value)
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
        m_text.Append('-');
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

template <class CharT>
void BasicWriter<CharT>::Output::WriteString(VelStringView text)
{
    // Loops over all units, without a way out, are what compilers make vector instructions of.
    const wchar_t* const units = text.data();
    const std::size_t size = text.size();
    unsigned special = 0;
    for (std::size_t i = 0; i < size; ++i)
    {
        special |= static_cast<unsigned>(!IsPlain<CharT>(units[i]));
    }
    if (special != 0)
    {
        WriteCharacters(text);
        return;
    }
    CharT* const out = m_text.MakeRoom(size + 2);
    out[0] = '"';
    for (std::size_t i = 0; i < size; ++i)
    {
        out[i + 1] = static_cast<CharT>(units[i]);
    }
    out[size + 1] = '"';
    m_text.Advance(out + size + 2);
}

template <class CharT>
void BasicWriter<CharT>::Output::WriteCharacters(VelStringView text)
{
    m_text.Append('"');
    const wchar_t* const end = text.data() + text.size();
    for (const wchar_t* at = text.data(); at != end;)
    {
        const VelPlatform::Unicode::Decoded character = VelPlatform::Unicode::Decode(at, end);
        at += character.length;
        if (!character.valid)
        {
            AppendCharacter(VelPlatform::Unicode::kReplacement);
        }
        else if (character.value < ' ' || character.value == '"' || character.value == '\\')
        {
            WriteEscaped(static_cast<char>(character.value));
        }
        else
        {
            AppendCharacter(character.value);
        }
    }
    m_text.Append('"');
}

/// Writes a character that cannot stand in a string as it is.
template <class CharT>
void BasicWriter<CharT>::Output::WriteEscaped(char character)
{
    static constexpr std::string_view kNamed = "\"\"\\\\\bb\ff\nn\rr\tt"; // pairs: what is meant, what is written
    m_text.Append('\\');
    for (std::size_t i = 0; i < kNamed.size(); i += 2)
    {
        if (character == kNamed[i])
        {
            m_text.Append(kNamed[i + 1]);
            return;
        }
    }
    static constexpr char kDigits[] = "0123456789ABCDEF";
    Append("u00");
    m_text.Append(kDigits[character >> 4]);
    m_text.Append(kDigits[character & 15]);
}

template <class CharT>
void BasicWriter<CharT>::Output::StartLine()
{
    if (!m_compact)
    {
        m_text.Append('\n');
        m_text.AppendBlanks(m_open.size());
    }
}

template <class CharT>
BasicWriter<CharT>::BasicWriter(bool compact) : m_output(std::make_unique<Output>(compact))
{}

template <class CharT>
BasicWriter<CharT>::~BasicWriter() = default;

template <class CharT>
void BasicWriter<CharT>::StartObject()
{
    m_output->Start();
}

template <class CharT>
void BasicWriter<CharT>::EndObject()
{
    m_output->End();
}

template <class CharT>
void BasicWriter<CharT>::Name(const VelString& name)
{
    m_output->WriteName(name);
}

template <class CharT>
void BasicWriter<CharT>::Value(const Variant& value)
{
    m_output->WriteWhole(value);
}

template <class CharT>
VelPlatform::VelStringT<CharT> BasicWriter<CharT>::Finish()
{
    return m_output->Finish();
}

template class BasicWriter<wchar_t>;
template class BasicWriter<char>;

VelString ValueToString(const Variant& value, bool compact)
{
    Writer writer(compact);
    writer.Value(value);
    return writer.Finish();
}

} // namespace VelUtils::Json
