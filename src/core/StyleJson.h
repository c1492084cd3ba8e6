// Writing a style, for the definitions and the sheet.
#pragma once

#include <styles/Style.h>

namespace Styles::Detail
{

/// Whether a sheet is old enough not to have a property that is new since `newSinceVersion`.
[[nodiscard]] bool IsOlderThan(const StyleSheet& sheet, int newSinceVersion) noexcept;

/// Hands the members of the JSON object of `style` to `add`, in their order; no name comes twice.
void WriteMembers(const Style& style, const StyleSheet& sheet, bool includeTemporaries,
                  Delegate<void(const VelString&, Json::Variant&&)> add);

} // namespace Styles::Detail
