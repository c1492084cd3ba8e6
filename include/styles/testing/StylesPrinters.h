/// \file
/// How GoogleTest prints texts, keys, values and styles in the messages of a host's failed tests.
///
/// All sources of a test program include this header, or none.
#pragma once

#include <styles/PropertyKey.h>
#include <styles/Style.h>
#include <styles/StylesIO.h>

#include <VelPlatform/StringIO.h>
#include <VelUtils/Json.h>

#include <ostream>

namespace VelPlatform
{

/// In quotes, with the escapes of JSON.
inline void PrintTo(const VelString& text, std::ostream* out)
{
    *out << VelUtils::Json::ValueToString(VelUtils::Json::Variant(text), true);
}

/// The same for UTF-8.
inline void PrintTo(const VelStringA& text, std::ostream* out)
{
    PrintTo(ToWide(text), out);
}

} // namespace VelPlatform

namespace VelUtils
{

/// The value and its type, which is a part of it.
inline void PrintTo(const Any& value, std::ostream* out)
{
    *out << value;
    if (!value.IsEmpty())
    {
        *out << " (" << Styles::GetReadableTypeName(value) << ')';
    }
}

} // namespace VelUtils

namespace Styles
{

/// In quotes.
inline void PrintTo(const PropertyKey& key, std::ostream* out)
{
    PrintTo(key.GetText(), out);
}

/// Category and own values.
inline void PrintTo(const Style& style, std::ostream* out)
{
    *out << style;
}

} // namespace Styles
