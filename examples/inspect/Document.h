/// \file
/// A JSON file: its bytes, its value, and how a place in it is called.
#pragma once

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

/// Reads a file whole. \throws Failure when it cannot be read, is no UTF-8 or no JSON; the message says in what line.
[[nodiscard]] Document ReadDocument(const VelString& path);

/// Where a value stands in a document: style."Blue box".fill.stops[2]
class Place
{
public:
    /// The document itself.
    Place() = default;

    [[nodiscard]] Place Member(const VelString& name) const;
    [[nodiscard]] Place Element(std::size_t index) const;

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
