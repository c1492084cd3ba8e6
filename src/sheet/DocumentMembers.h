// The members of a document besides its categories.
#pragma once

#include <styles/PropertyKey.h>

namespace Styles::Detail
{

inline const VelString VersionMember(L"version");
inline const VelString IdMember(L"id");

} // namespace Styles::Detail
