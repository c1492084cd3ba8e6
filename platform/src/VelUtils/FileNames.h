#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace VelUtils
{

/// How many writers may save to one path at a time.
inline constexpr int kSavingNames = 10;

/// The name, beside the target, of a file that is being written: from 0 up to kSavingNames, always the same ones, so
/// that what a crash leaves is found again. A name that would become too long is cut, and told apart by a checksum.
/// @param target       name of the target, UTF-8, without its folder
/// @param longestName  in bytes
std::string SavingName(std::string_view target, int number, std::size_t longestName);

/// The path up to its last separator and with it; it has one.
std::string FolderOf(std::string_view path);

} // namespace VelUtils
