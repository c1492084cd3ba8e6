#include "VelUtils/Delegate.h"

#include <functional>

namespace VelUtils::Detail
{

void ThrowBadFunctionCall()
{
    throw std::bad_function_call();
}

} // namespace VelUtils::Detail
