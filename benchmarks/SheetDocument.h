/// A style sheet as documents hold it, of any size, and the schema that reads it: what the programs about reading,
/// writing and memory have in common.
///
/// A style has 12 text properties, two substyles of 4 text properties each, and inherits from an earlier style. One
/// text in 32 needs escaping. The same size gives the same document, always.
#pragma once

#include <cstddef>
#include <string>

namespace SheetDocument
{

/// The number of texts in a style, those of its substyles included.
inline constexpr std::size_t TextsPerStyle = 20;

/// The document with that many styles: UTF-8, without white space, 670 bytes a style on average.
std::string Make(std::size_t styles);

/// Registers the categories and properties of the document, once in a process, and makes 1 the current version.
void RegisterSchema();

} // namespace SheetDocument
