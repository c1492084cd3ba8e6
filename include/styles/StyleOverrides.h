/// \file
/// What a style sets itself: listing its own values as keys and paths, and removing those that say nothing new.
#pragma once

#include "Style.h"

#include <set>
#include <vector>

namespace Styles
{

/// The keys of all properties of the style's category, whether the style sets them or not. None without category.
[[nodiscard]] STYLES_API std::set<PropertyKey> GetStyleCategoryProperties(const Style& style);

/// The keys of the own values; substyles count as keys.
[[nodiscard]] STYLES_API std::set<PropertyKey> GetOverriddenProperties(const Style& style);

/// The paths of all own values that are no substyles, through own substyles, depth first in key order.
[[nodiscard]] STYLES_API std::vector<PropertyPath> GetOverriddenPropertyPaths(const Style& style);

/// A path for each own value of the own substyle under `substyleKey`, beginning with that key if `includeSubstyleKey`.
[[nodiscard]] STYLES_API std::vector<PropertyPath>
GetOverriddenSubstyleProperties(const Style& style, const PropertyKey& substyleKey, bool includeSubstyleKey);

/// A new style equivalent to the effective substyle under `substyleKey`, with a parent in the place of inheritance
/// through its owner. The caller owns it; null without such a substyle or without a category. `keys` becomes all keys
/// of the substyle's category.
[[nodiscard]] STYLES_API Style* CreateStyleFromSubstyleWithoutOwnerDependencies(const Style* style,
                                                                                const PropertyKey& substyleKey,
                                                                                std::set<PropertyKey>& keys);

/// Removes every own value that equals what the style inherits without it, as its definition compares. Nothing happens
/// where there is nothing to inherit from. When a definition throws or memory runs out, each value is there still or
/// was one to be removed.
STYLES_API void ClearMatchingInheritedProperties(Style& style);

} // namespace Styles
