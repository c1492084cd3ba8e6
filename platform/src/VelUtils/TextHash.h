#pragma once

#include "VelPlatform/String.h"

#include <cstdint>

namespace VelUtils
{

/// Hashes a text for a table of texts that come from anywhere. It is another one in each process, so that nobody can
/// choose texts that all come to lie in one spot; every bit of it is of use.
std::uint64_t HashText(const VelPlatform::VelString& text) noexcept;

} // namespace VelUtils
