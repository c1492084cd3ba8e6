#pragma once

/// File paths as texts; nothing here looks at the disk.

#include "VelPlatform/String.h"

namespace VelUtils::SystemIO::Path
{

/// Folder and name with one separator between them. An empty folder gives the name, an empty name the folder. The
/// separator is "/", on Windows "\", where "/" counts as one too.
VEL_API VelPlatform::VelString Combine(const VelPlatform::VelString& folder, const VelPlatform::VelString& name);

} // namespace VelUtils::SystemIO::Path
