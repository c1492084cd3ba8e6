#include "VelUtils/Path.h"

using VelPlatform::VelString;
using VelPlatform::VelStringView;

namespace VelUtils::SystemIO::Path
{

namespace
{

#if defined(_WIN32)
constexpr VelStringView kSeparators = L"\\/";
#else
constexpr VelStringView kSeparators = L"/";
#endif

bool IsSeparator(wchar_t unit) noexcept
{
    return kSeparators.find(unit) != VelStringView::npos;
}

} // namespace

VelString Combine(const VelString& folder, const VelString& name)
{
    if (folder.empty())
    {
        return name;
    }
    if (name.empty())
    {
        return folder;
    }
    const bool ends = IsSeparator(folder[folder.size() - 1]);
    const bool begins = IsSeparator(name[0]);
    VelString path = folder;
    if (!ends && !begins)
    {
        path += kSeparators.front();
    }
    path += VelStringView(name).substr(ends && begins ? 1 : 0);
    return path;
}

} // namespace VelUtils::SystemIO::Path
