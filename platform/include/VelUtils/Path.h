#pragma once

/// @file
/// File paths as texts; nothing here looks at the disk.

#include "VelPlatform/String.h"

namespace VelUtils::SystemIO::Path
{

/// Folder and name with one separator between them. An empty folder gives the name, an empty name the folder. The
/// separator is "/", on Windows "\", where "/" counts as one too.
VEL_API VelPlatform::VelString Combine(const VelPlatform::VelString& folder, const VelPlatform::VelString& name);

/// Whether `name` can name a file in a folder: not empty, not "." or "..", no separator, no zero character, and on
/// Windows none of its reserved signs.
VEL_API bool IsFileName(const VelPlatform::VelString& name) noexcept;

} // namespace VelUtils::SystemIO::Path
