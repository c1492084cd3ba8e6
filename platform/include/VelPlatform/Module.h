#pragma once

/// @file
/// Questions about the modules (programs, shared libraries) of the running process.

#include "VelPlatform/VelApi.h"

namespace VelPlatform
{

/// Whether a module of this file name, case and extension included, is loaded in the process. A name with a folder
/// must match the whole path under which the module was loaded. Loads nothing; null and "" are never loaded.
VEL_API bool IsModuleLoaded(const char* name) noexcept;

} // namespace VelPlatform
