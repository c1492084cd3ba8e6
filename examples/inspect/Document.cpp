#include "Document.h"

#include "Failure.h"
#include "Output.h"

#include <VelUtils/Stream.h>
#include <VelUtils/TextStream.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <string_view>
#include <utility>

namespace Inspect
{

namespace
{

std::string ReadBytes(const VelString& path)
{
    VelUtils::Stream stream = VelUtils::FileStream::Open(path);
    std::string bytes;
    std::array<char, 65536> block;
    while (stream)
    {
        const std::size_t count = stream.Read(block.data(), block.size());
        bytes.append(block.data(), count);
        if (count < block.size())
        {
            break;
        }
    }
    if (!stream || stream.Failed())
    {
        throw Failure(Shown(path) + ": cannot be read");
    }
    return bytes;
}

/// The number of the first line that is no UTF-8. No character of UTF-8 reaches over a line feed.
std::size_t FirstMalformedLine(std::string_view bytes)
{
    std::size_t number = 1;
    VelString ignored;
    for (;; ++number)
    {
        const std::size_t end = bytes.find('\n');
        if (end == std::string_view::npos || !VelPlatform::TryToWide(bytes.substr(0, end), ignored))
        {
            return number;
        }
        bytes.remove_prefix(end + 1);
    }
}

/// Takes "Line 3, column 7: " off a message of the JSON reader. The message as it is, where it begins otherwise.
std::string SplitPosition(const std::string& message, TextPosition& position)
{
    const auto takeNumber = [&message](std::size_t& at, std::string_view before, std::size_t& number) {
        if (message.compare(at, before.size(), before) != 0)
        {
            return false;
        }
        const char* const begin = message.data() + at + before.size();
        const auto [end, error] = std::from_chars(begin, message.data() + message.size(), number);
        at = static_cast<std::size_t>(end - message.data());
        return error == std::errc();
    };
    std::size_t at = 0;
    TextPosition found;
    if (!takeNumber(at, "Line ", found.line) || !takeNumber(at, ", column ", found.column) ||
        message.compare(at, 2, ": ") != 0)
    {
        return message;
    }
    position = found;
    return message.substr(at + 2);
}

bool IsPlain(const VelString& name)
{
    return !name.empty() && std::all_of(name.begin(), name.end(), [](wchar_t c) {
        return (c >= L'a' && c <= L'z') || (c >= L'A' && c <= L'Z') || (c >= L'0' && c <= L'9') || c == L'_' ||
               c == L'-';
    });
}

} // namespace

Document ReadDocument(const VelString& path)
{
    Document document{path, ReadBytes(path), {}};
    VelUtils::TextStreamReader reader(VelUtils::MemoryStream(document.bytes), VelUtils::TextStream::Encoding::Utf8);
    const VelString text = reader.ReadToEnd();
    if (reader.Failed())
    {
        const std::size_t line = FirstMalformedLine(document.bytes);
        throw MalformedDocument(Shown(path) + ": line " + std::to_string(line) + " is no UTF-8",
                                MalformedDocument::Kind::Text, {line, 1}, "the line is no UTF-8");
    }
    VelString error;
    if (!Json::Parse(text, document.value, error))
    {
        const std::string message = Shown(error);
        TextPosition position;
        const std::string reason = SplitPosition(message, position);
        throw MalformedDocument(Shown(path) + ": " + message, MalformedDocument::Kind::Json, position, reason);
    }
    return document;
}

Place Place::Member(const VelString& name) const
{
    Place place;
    place.m_text = m_text + (m_text.empty() ? "" : ".") + (IsPlain(name) ? Shown(name) : Quoted(name));
    return place;
}

Place Place::Element(std::size_t index) const
{
    Place place;
    place.m_text = m_text + '[' + std::to_string(index) + ']';
    return place;
}

Place Place::Omission() const
{
    Place place;
    place.m_text = m_text + ".\u2026";
    return place;
}

std::string MessageAt(const VelString& file, const Place& place, const std::string& message)
{
    return Shown(file) + ": " + (place.GetText().empty() ? "" : place.GetText() + ": ") + message;
}

template <class T>
const T& ValueAt(const VelString& file, const Json::Variant& value, const Place& place)
{
    if (const T* found = value.GetIf<T>())
    {
        return *found;
    }
    throw Failure(MessageAt(file, place, "is " + KindOf(value) + ", not " + KindOf(Json::Variant(T()))));
}

template const Json::Object& ValueAt(const VelString&, const Json::Variant&, const Place&);
template const Json::Array& ValueAt(const VelString&, const Json::Variant&, const Place&);
template const VelString& ValueAt(const VelString&, const Json::Variant&, const Place&);

std::string KindOf(const Json::Variant& value)
{
    if (value.Is<Json::Object>())
    {
        return "an object";
    }
    if (value.Is<Json::Array>())
    {
        return "an array";
    }
    if (value.Is<VelString>())
    {
        return "a text";
    }
    if (value.Is<bool>())
    {
        return "a truth value";
    }
    return value.Is<Json::NullType>() ? "null" : "a number";
}

} // namespace Inspect
