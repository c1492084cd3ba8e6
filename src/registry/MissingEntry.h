// The two failures of the registry that are exceptions.
#pragma once

#include <styles/PropertyKey.h>

namespace Styles::Detail
{

/// \throws std::logic_error always.
[[noreturn]] void ThrowMissingCategory(const PropertyKey& name);

/// \throws std::logic_error always.
[[noreturn]] void ThrowMissingDefault(const PropertyKey& name);

} // namespace Styles::Detail
