// What the writer and the reader of documents agree on.
#pragma once

#include <styles/PropertyKey.h>

#include <VelUtils/TextStream.h>

namespace Styles::Detail
{

inline constexpr VelUtils::TextStream::Encoding DocumentEncoding = VelUtils::TextStream::Encoding::Utf8;

// The members besides the categories.
inline const VelString VersionMember(L"version");
inline const VelString IdMember(L"id");

} // namespace Styles::Detail
