#include "VelPref/ConversionPolicy.h"

namespace VelPref::Detail
{

BadConversion::BadConversion() : BadConversion("bad conversion") {}

BadConversion::BadConversion(const std::string& what) : m_text(what) {}

BadConversion::BadConversion(const BadConversion&) noexcept = default;
BadConversion& BadConversion::operator=(const BadConversion&) noexcept = default;

// The destructors stand here, so that each type has one home and an exception is caught across libraries.
BadConversion::~BadConversion() = default;
IConversionPolicy::~IConversionPolicy() = default;

const char* BadConversion::what() const noexcept
{
    return m_text.what();
}

} // namespace VelPref::Detail
