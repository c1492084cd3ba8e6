// Calls of the operations of a definition that are not const although they change nothing in it.
#pragma once

#include <styles/StyleProperty.h>

namespace Styles::Detail
{

/// Categories hand definitions out as const, but three operations of the interface that hosts override are not const.
[[nodiscard]] inline BaseStyleProperty& Callable(const BaseStyleProperty& definition) noexcept
{
    return const_cast<BaseStyleProperty&>(definition);
}

} // namespace Styles::Detail
