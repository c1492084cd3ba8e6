#pragma once

/// @file
/// Writes strings to streams of the standard library, as UTF-8.

#include "VelPlatform/String.h"

#include <ostream>

namespace VelPlatform
{

/// Writes the text as UTF-8, see ToNarrow(); width and fill of the stream count bytes.
VEL_API std::ostream& operator<<(std::ostream& stream, const VelString& text);
/// Writes the bytes of the text.
VEL_API std::ostream& operator<<(std::ostream& stream, const VelStringA& text);

} // namespace VelPlatform
