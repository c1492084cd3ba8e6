#include "VelPlatform/StringIO.h"

namespace VelPlatform
{

std::ostream& operator<<(std::ostream& stream, const VelString& text)
{
    return stream << ToNarrow(text);
}

std::ostream& operator<<(std::ostream& stream, const VelStringA& text)
{
    return stream << VelStringViewA(text);
}

} // namespace VelPlatform
