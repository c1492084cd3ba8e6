// Definitions of a category, for look-ups that are no news when they miss.
#pragma once

#include <styles/StyleManager.h>

namespace Styles::Detail
{

/// The definition of `key`, or null. Unlike `StyleCategory::GetStyleProperty` it reports no miss to the log.
[[nodiscard]] inline const BaseStyleProperty* FindQuietly(const StyleCategory& category,
                                                          const PropertyKey& key) noexcept
{
    const auto entry = category.GetProperties().find(key);
    return entry != category.GetProperties().end() ? entry->second : nullptr;
}

} // namespace Styles::Detail
