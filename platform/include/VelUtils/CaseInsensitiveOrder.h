#pragma once

/// @file
/// The order of texts without regard to case, for containers.

#include "VelPlatform/String.h"

namespace VelUtils::String
{

/// Orders wide texts by VelString::CompareNoCase; associative containers that use it are searched with views and
/// literals as well.
struct LessThanCaseInsensitive
{
    using is_transparent = void; ///< Tells containers that they may be searched with views.

    /// Whether `left` comes before `right`.
    bool operator()(VelPlatform::VelStringView left, VelPlatform::VelStringView right) const noexcept
    {
        return VelPlatform::Detail::CompareFolded(left, right) < 0;
    }
};

} // namespace VelUtils::String
