#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace VelUtils::Json
{

/// Why a text is no JSON, for people: "expected ..., found ...".
/// @param utf8    well-formed UTF-8
/// @param offset  of the first byte that does not belong there, or of the word (true, false, null) that it is in, which
///                is corrected; up to it the text is the beginning of some JSON text
std::string ExpectedAt(std::string_view utf8, std::size_t& offset);

} // namespace VelUtils::Json
