#pragma once

/// @file
/// The host's check of a value before it is stored.

#include "VelPlatform/VelApi.h"

namespace VelUtils
{
class Any;
}

namespace VelPref
{

/// A check that a host writes. It is owned by the definition that it is given to, and keeps nothing between the calls.
class VEL_API Validator
{
public:
    virtual ~Validator();

    /// Whether the value, which may be corrected in place, can be stored; `defaultValue` is what stands when nothing
    /// is. False leaves the value unfit for use.
    virtual bool Validate(VelUtils::Any& value, const VelUtils::Any& defaultValue) const = 0;
};

} // namespace VelPref
