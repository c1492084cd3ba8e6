#include <styles/PropertyKey.h>

namespace Styles
{

VelUtils::StringPool& StringPool::Get()
{
    static VelUtils::StringPool pool;
    return pool;
}

const PropertyKey PropertyKey::Empty;

const PropertyKey StyleCategoryName(VelString(L"style"));

} // namespace Styles
