#pragma once

/// @file
/// How a value becomes text and text a value, and the exception for text that is none.

#include "VelPlatform/String.h"

#include <exception>
#include <stdexcept>
#include <string>

namespace VelUtils
{
class Any;
}

namespace VelPref::Detail
{

/// A text that cannot be converted into a value. Copying never throws.
class VEL_API BadConversion : public std::exception
{
public:
    /// With a text that says no more than that.
    BadConversion();
    /// With a text of the policy's own.
    explicit BadConversion(const std::string& what);
    /// Shares the text.
    BadConversion(const BadConversion&) noexcept;
    /// Shares the text.
    BadConversion& operator=(const BadConversion&) noexcept;
    ~BadConversion() override;

    /// The text; good as long as a copy of this exception is.
    const char* what() const noexcept override;

private:
    std::runtime_error m_text; // shares its text between copies
};

/// Converts the values of one type. Used by several definitions at once; it keeps nothing between the calls.
class VEL_API IConversionPolicy
{
public:
    virtual ~IConversionPolicy();

    /// Throws std::bad_cast for a value of another type.
    virtual VelPlatform::VelStringT<wchar_t> ToText(const VelUtils::Any& value) const = 0;
    /// Throws BadConversion for a text that is not wholly a value.
    virtual VelUtils::Any FromText(const VelPlatform::VelStringT<wchar_t>& text) const = 0;
};

} // namespace VelPref::Detail
