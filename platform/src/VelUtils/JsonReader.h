#pragma once

#include "JsonEvents.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace VelUtils::Json
{

/// Why and where reading ended before its time.
struct JsonReadError
{
    std::size_t offset = 0; ///< In bytes; the size of the text when the end came too early.
    std::string reason;     ///< What was expected or is wrong; empty when the events asked to stop.
};

/// Tells the events what the text holds; false, with the error, when it is not one JSON text (RFC 8259) or the events
/// asked to stop. Goes down as deep as the events let it. What the events throw passes through, and std::bad_alloc.
/// @param utf8  well-formed UTF-8
bool ReadJson(std::string_view utf8, JsonEvents& events, JsonReadError& error);

} // namespace VelUtils::Json
