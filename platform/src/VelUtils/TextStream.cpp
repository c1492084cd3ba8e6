#include "VelUtils/TextStream.h"

#include "VelPlatform/Unicode.h"

#include <utility>

namespace VelUtils
{

namespace
{

using Encoding = TextStream::Encoding;
using VelPlatform::VelStringView;
namespace Unicode = VelPlatform::Unicode;

constexpr std::size_t kChunkSize = 16 * 1024;

std::string_view ByteOrderMark(Encoding encoding)
{
    switch (encoding)
    {
    case Encoding::Utf16LittleEndian:
        return "\xFF\xFE";
    case Encoding::Utf16BigEndian:
        return "\xFE\xFF";
    case Encoding::Utf8:
        return "\xEF\xBB\xBF";
    case Encoding::Latin1:
        break;
    }
    return {};
}

/// Where the low byte of a unit of UTF-16 is.
std::size_t PlaceOfLowByte(Encoding encoding)
{
    return encoding == Encoding::Utf16LittleEndian ? 0 : 1;
}

template <class Unit>
bool Convert(std::basic_string_view<Unit> text, VelString& wide)
{
    bool valid = false;
    const std::size_t length = Unicode::TranscodedLength<wchar_t>(text, valid);
    if (valid)
    {
        wide = VelString::Make(length, [&](wchar_t* out) { Unicode::Transcode(text, out); });
    }
    return valid;
}

bool DecodeUtf16(std::string_view bytes, Encoding encoding, VelString& wide)
{
    const std::size_t low = PlaceOfLowByte(encoding);
    std::u16string units;
    units.reserve(bytes.size() / 2);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
    {
        const unsigned lowByte = static_cast<unsigned char>(bytes[i + low]);
        const unsigned highByte = static_cast<unsigned char>(bytes[i + 1 - low]);
        units += static_cast<char16_t>(highByte << 8 | lowByte);
    }
    return bytes.size() % 2 == 0 && Convert(std::u16string_view(units), wide);
}

bool DecodeText(std::string_view bytes, Encoding encoding, VelString& wide)
{
    switch (encoding)
    {
    case Encoding::Latin1:
        wide = VelString::Make(bytes.size(), [&](wchar_t* out) {
            for (const char byte : bytes)
            {
                *out++ = static_cast<wchar_t>(static_cast<unsigned char>(byte));
            }
        });
        return true;
    case Encoding::Utf16LittleEndian:
    case Encoding::Utf16BigEndian:
        return DecodeUtf16(bytes, encoding, wide);
    case Encoding::Utf8:
        return VelPlatform::TryToWide(bytes, wide);
    }
    return false;
}

/// Appends one character in Latin-1 or UTF-16 to the bytes; false when the encoding has none for it.
bool EncodeCharacter(char32_t character, Encoding encoding, std::string& bytes)
{
    if (encoding == Encoding::Latin1)
    {
        bytes += static_cast<char>(character);
        return character <= 0xFF;
    }
    char16_t units[2];
    const char16_t* const end = Unicode::Encode(character, units);
    for (const char16_t* unit = units; unit != end; ++unit)
    {
        char pair[2];
        pair[PlaceOfLowByte(encoding)] = static_cast<char>(*unit & 0xFF);
        pair[1 - PlaceOfLowByte(encoding)] = static_cast<char>(*unit >> 8);
        bytes.append(pair, 2);
    }
    return true;
}

bool EncodeText(VelStringView text, Encoding encoding, std::string& bytes)
{
    if (encoding == Encoding::Utf8)
    {
        bool valid = false;
        const std::size_t before = bytes.size();
        bytes.resize(before + Unicode::TranscodedLength<char>(text, valid));
        Unicode::Transcode(text, bytes.data() + before);
        return valid;
    }
    bytes.reserve(bytes.size() + text.size());
    const wchar_t* const end = text.data() + text.size();
    for (const wchar_t* at = text.data(); at != end;)
    {
        const Unicode::Decoded character = Unicode::Decode(at, end);
        if (!character.valid || !EncodeCharacter(character.value, encoding, bytes))
        {
            return false;
        }
        at += character.length;
    }
    return true;
}

bool IsKnown(Encoding encoding)
{
    return encoding >= Encoding::Latin1 && encoding <= Encoding::Utf8;
}

} // namespace

TextStreamReader::TextStreamReader(Stream stream, Encoding encoding) : m_stream(std::move(stream)), m_encoding(encoding)
{}

std::string TextStreamReader::ReadBytes()
{
    m_failed = true;
    std::string bytes;
    if (!m_stream)
    {
        return bytes;
    }
    for (std::size_t read = kChunkSize; read == kChunkSize;)
    {
        const std::size_t before = bytes.size();
        bytes.resize(before + kChunkSize);
        read = m_stream.Read(bytes.data() + before, kChunkSize);
        bytes.resize(before + read);
    }
    m_failed = m_stream.Failed();
    if (const std::string_view mark = ByteOrderMark(m_encoding); bytes.starts_with(mark))
    {
        bytes.erase(0, mark.size());
    }
    return bytes;
}

VelString TextStreamReader::ReadToEnd()
{
    const std::string bytes = ReadBytes();
    VelString wide;
    m_failed = m_failed || !DecodeText(bytes, m_encoding, wide);
    return wide;
}

bool TextStreamReader::Failed() const noexcept
{
    return m_failed;
}

TextStreamWriter::TextStreamWriter(Stream stream, Encoding encoding, bool byteOrderMark)
    : m_stream(std::move(stream)), m_encoding(encoding), m_markPending(byteOrderMark)
{}

bool TextStreamWriter::Write(const VelString& text)
{
    std::string bytes;
    if (m_markPending)
    {
        bytes = ByteOrderMark(m_encoding);
    }
    if (!IsKnown(m_encoding) || !EncodeText(text, m_encoding, bytes))
    {
        m_stream.GiveUp();
        return false;
    }
    m_markPending = false;
    return m_stream.Write(bytes.data(), bytes.size());
}

} // namespace VelUtils
