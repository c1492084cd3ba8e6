// How a substyle without a parent inherits through its owner.
#pragma once

#include <styles/Style.h>

namespace Styles::Detail
{

/// The default for `key` in the category of `style`.
/// \throws std::logic_error when there is none.
[[nodiscard]] const Any& GetDefaultOf(const Style& style, const PropertyKey& key);

/// What `heir`, a substyle without parent, inherits for `key`: the value in the substyle at the same place of the style
/// that its owner inherits from, or the default of its category.
///
/// The substyle at the same place may itself be inherited through an owner, and so on; this is a loop with a stack of
/// its own, and inheritance that closes on itself ends in a default.
[[nodiscard]] const Any& GetInheritedThroughOwner(const Style& heir, const PropertyKey& key);

} // namespace Styles::Detail
