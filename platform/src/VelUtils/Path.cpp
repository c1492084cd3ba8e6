#include "VelUtils/Path.h"

using VelPlatform::VelString;
using VelPlatform::VelStringView;

namespace VelUtils::SystemIO::Path
{

namespace
{

#if defined(_WIN32)
constexpr VelStringView kSeparators = L"\\/";
constexpr VelStringView kReserved(L"\\/<>:\"|?*\0", 10);
#else
constexpr VelStringView kSeparators = L"/";
constexpr VelStringView kReserved(L"/\0", 2);
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

bool IsFileName(const VelString& name) noexcept
{
    const VelStringView view = name;
    return !view.empty() && view != L"." && view != L".." && view.find_first_of(kReserved) == VelStringView::npos;
}

} // namespace VelUtils::SystemIO::Path
