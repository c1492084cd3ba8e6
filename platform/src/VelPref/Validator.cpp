#include "VelPref/Validator.h"

namespace VelPref
{

// Here, so that the type's table has one home that every module refers to.
Validator::~Validator() = default;

} // namespace VelPref
