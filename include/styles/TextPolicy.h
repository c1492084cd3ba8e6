/// \file
/// Ready-made conversion policies: the text of common values in documents.
///
/// A policy accepts only a text that is wholly a value, and writes the shortest text that reads back to the same value,
/// independently of the locale. Anything else throws `VelPref::Detail::BadConversion`.
#pragma once

#include "Any.h"
#include "StylesApi.h"

#include <VelPref/ConversionPolicy.h>

#include <cstdint>

namespace Styles
{

/// The text of a `T`: `double`, `std::int32_t`, `std::uint32_t`, `bool` or `VelString`.
///
/// A boolean is written "1" or "0" and also read from "true" and "false". An unsigned integer is also read from "-1",
/// as all ones.
template <class T>
class STYLES_API TextPolicy final : public VelPref::Detail::IConversionPolicy
{
public:
    TextPolicy();
    ~TextPolicy() override;
    /// The shortest text that reads back to the same value. \throws std::bad_cast for a value of another type.
    [[nodiscard]] VelPlatform::VelStringT<wchar_t> ToText(const VelUtils::Any& value) const override;
    /// The value that `text` writes. \throws VelPref::Detail::BadConversion for a text that is not wholly one.
    [[nodiscard]] VelUtils::Any FromText(const VelPlatform::VelStringT<wchar_t>& text) const override;
};

extern template class STYLES_API TextPolicy<double>;
extern template class STYLES_API TextPolicy<std::int32_t>;
extern template class STYLES_API TextPolicy<std::uint32_t>;
extern template class STYLES_API TextPolicy<bool>;
extern template class STYLES_API TextPolicy<VelPlatform::VelStringT<wchar_t>>;

} // namespace Styles
