// Small steps along and into substyles that lookup, mutation and the substyle helpers share.
#pragma once

#include <styles/Style.h>

namespace Styles::Detail
{

/// The style that `path`, without its last key, leads to through own substyles; null where one is missing. The path has
/// at least one key.
[[nodiscard]] const Style* FollowPath(const Style& style, const PropertyPath& path);
[[nodiscard]] Style* FollowPath(Style& style, const PropertyPath& path);

/// The category that styles inside the values of `definition` have.
/// \throws std::logic_error when it is not registered.
[[nodiscard]] std::shared_ptr<const StyleCategory> GetElementCategory(const BaseStyleProperty& definition);

/// The own substyle under `key`, made first when there is none. Null, and no change, for a key that is no substyle
/// property.
Style* FindOrCreateSubstyle(Style& style, const PropertyKey& key);

/// Gives `style` an empty substyle of that category under `key`, whose definition is `definition`, and returns it.
/// Null, and no change, when `key` is no substyle property; null also when the definition stores none.
Style* CreateSubstyle(Style& style, const BaseStyleProperty& definition, const PropertyKey& key,
                      const PropertyKey& categoryName);

} // namespace Styles::Detail
