/// \file
/// Keys, values, styles and sheets in a line of text, for logs, messages of tests and debugging.
///
/// Everything is written as UTF-8 to a stream of the standard library, at once, so that the stream's width and fill are
/// for the whole text; its other settings and its locale play no part. The texts are for people and may change: the
/// document of a sheet is what programs read.
///
/// Strings are written by `VelPlatform/StringIO.h`. This header costs next to nothing to compile; who writes to a
/// stream includes that stream's header.
///
/// Exceptions: what the stream throws, and std::bad_alloc, before which nothing has been written.
#pragma once

#include "StylesApi.h"
#include "StylesFwd.h"

#include <iosfwd>

namespace VelUtils
{

/// Writes the value: a text in quotes, a number or a truth value as in a document, a style as a line without its
/// values, a list as the number of its styles, JSON without white space. Of any other type only its name is written,
/// in brackets, and of an empty value "(empty)".
STYLES_API std::ostream& operator<<(std::ostream& stream, const Any& value);

} // namespace VelUtils

namespace Styles
{

/// Writes the text of the key.
STYLES_API std::ostream& operator<<(std::ostream& stream, const PropertyKey& key);

/// Writes the category of the style, whether it inherits, and its own values in the order of their names:
/// `style of "shape", inherits, 2 values {fill = style of "fill", 1 value; width = 0.5}`. Values of a host's own types
/// are written by the conversion policy of their property. Long values and long lists are cut.
STYLES_API std::ostream& operator<<(std::ostream& stream, const Style& style);

/// Writes the names of the styles: `sheet of 2 styles, version 3 {"Outline"; "Warning"}`. A long list is cut.
STYLES_API std::ostream& operator<<(std::ostream& stream, const StyleSheet& sheet);

/// The name of the type that `value` holds, as far as possible the one that a program writes: "double"; "(empty)" for
/// an empty value. Compilers differ in it.
[[nodiscard]] STYLES_API VelString GetReadableTypeName(const Any& value);

} // namespace Styles
