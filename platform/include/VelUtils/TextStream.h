/// @file
/// Text on byte streams: the encodings, a reader and a writer.
#pragma once

#include "VelPlatform/String.h"
#include "VelPlatform/VelApi.h"
#include "VelUtils/Stream.h"

#include <string>

namespace VelUtils
{

/// Names what readers and writers of text have in common.
class VEL_API TextStream
{
public:
    TextStream() = delete;

    /// How characters become bytes. The values are kept in files and in interfaces; they do not change.
    enum class Encoding
    {
        Latin1 = 0,            ///< ISO 8859-1: a byte for each character up to U+00FF, no other; has no byte-order mark
        Utf16LittleEndian = 1, ///< UTF-16, low byte first
        Utf16BigEndian = 2,    ///< UTF-16, high byte first
        Utf8 = 3               ///< UTF-8
    };
};

/// Reads text from a stream. It holds a handle on the stream, not more.
class VEL_API TextStreamReader
{
public:
    /// Reads what is ahead in `stream`, which other handles may go on using.
    TextStreamReader(Stream stream, TextStream::Encoding encoding);

    /// All the text from here to the end, without the one byte-order mark that may lead it. Empty, and Failed() then,
    /// when the bytes are not text in this encoding or the stream cannot be read; std::bad_alloc passes through.
    VelString ReadToEnd();

    /// The bytes up to the end of the stream as they are, without a byte-order mark before them. A stream that fails
    /// gives what was read before, and Failed().
    std::string ReadBytes();

    /// Whether the last reading failed.
    bool Failed() const noexcept;

private:
    Stream m_stream;
    TextStream::Encoding m_encoding;
    bool m_failed = false;
};

/// Writes text to a stream. It holds a handle on the stream, not more.
class VEL_API TextStreamWriter
{
public:
    /// Writes to `stream`; with `byteOrderMark`, a byte-order mark goes before the first text.
    TextStreamWriter(Stream stream, TextStream::Encoding encoding, bool byteOrderMark);

    /// Appends a text. False when it has characters that the encoding lacks (half a surrogate pair, which no encoding
    /// has, too) or the stream refuses a byte; nothing of this text is written in the first case, and in both the
    /// stream is given up, so that no part of a text takes the place of a whole file.
    bool Write(const VelString& text);

private:
    Stream m_stream;
    TextStream::Encoding m_encoding;
    bool m_markPending;
};

} // namespace VelUtils
