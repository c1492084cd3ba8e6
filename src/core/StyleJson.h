// What the definitions must know of a sheet when they write.
#pragma once

#include <styles/Style.h>

namespace Styles::Detail
{

/// Whether a sheet is old enough not to have a property that is new since `newSinceVersion`.
[[nodiscard]] bool IsOlderThan(const StyleSheet& sheet, int newSinceVersion) noexcept;

} // namespace Styles::Detail
