/// \file
/// A JSON file: its bytes, its value, and how a place in it is called.
#pragma once

#include "Failure.h"

#include <VelUtils/Json.h>

#include <cstddef>
#include <string>
#include <vector>

namespace Inspect
{

namespace Json = VelUtils::Json;
using VelPlatform::VelString;

/// A file as it was read.
struct Document
{
    VelString path;
    std::string bytes;
    Json::Variant value;
};

/// A place in a text. Both count from 1, columns in characters.
struct TextPosition
{
    std::size_t line = 1;
    std::size_t column = 1;
};

/// A file is there, and is no document.
class MalformedDocument : public Failure
{
public:
    enum class Kind
    {
        Text, ///< it is no UTF-8; only the line is known
        Json
    };

    MalformedDocument(const std::string& message, Kind kind, TextPosition position, std::string reason)
        : Failure(message), m_kind(kind), m_position(position), m_reason(std::move(reason))
    {}

    [[nodiscard]] Kind GetKind() const noexcept { return m_kind; }
    [[nodiscard]] TextPosition GetPosition() const noexcept { return m_position; }
    /// The message without file and position.
    [[nodiscard]] const std::string& GetReason() const noexcept { return m_reason; }

private:
    Kind m_kind;
    TextPosition m_position;
    std::string m_reason;
};

/// Reads a file whole. \throws Failure when it cannot be read, `MalformedDocument` when it is no UTF-8 or no JSON; the
/// message says in what line.
[[nodiscard]] Document ReadDocument(const VelString& path);

/// Where a value stands in a document: style."Blue box".fill.stops[2]
class Place
{
public:
    /// The document itself.
    Place() = default;

    [[nodiscard]] Place Member(const VelString& name) const;
    [[nodiscard]] Place Element(std::size_t index) const;
    /// Some steps further, which are not told.
    [[nodiscard]] Place Omission() const;

    /// Ready to be shown; empty for the document itself.
    [[nodiscard]] const std::string& GetText() const noexcept { return m_text; }

private:
    std::string m_text;
};

/// A message about a place in a file: "sheet.json: style.Box.fill: no object".
[[nodiscard]] std::string MessageAt(const VelString& file, const Place& place, const std::string& message);

/// The value as a `T`: `Json::Object`, `Json::Array` or `VelString`. \throws Failure when it is something else.
template <class T>
[[nodiscard]] const T& ValueAt(const VelString& file, const Json::Variant& value, const Place& place);

/// What kind of value it is, for messages: "a number", "an object".
[[nodiscard]] std::string KindOf(const Json::Variant& value);

} // namespace Inspect
