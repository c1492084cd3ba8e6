#include "VelPlatform/Module.h"

#include <cstring>

#if defined(_WIN32)
#    include <windows.h>
#else
#    include <link.h>
#endif

namespace VelPlatform
{

#if defined(_WIN32)

bool IsModuleLoaded(const char* name) noexcept
{
    // The system takes null for the program itself.
    return name && *name && ::GetModuleHandleA(name) != nullptr;
}

#else

namespace
{

int MatchesName(dl_phdr_info* module, std::size_t, void* wanted)
{
    const char* const name = static_cast<const char*>(wanted);
    const char* path = module->dlpi_name ? module->dlpi_name : "";
    if (!std::strchr(name, '/'))
    {
        if (const char* const slash = std::strrchr(path, '/'))
        {
            path = slash + 1;
        }
    }
    return std::strcmp(path, name) == 0;
}

} // namespace

bool IsModuleLoaded(const char* name) noexcept
{
    return name && *name && dl_iterate_phdr(&MatchesName, const_cast<char*>(name)) != 0;
}

#endif

} // namespace VelPlatform
