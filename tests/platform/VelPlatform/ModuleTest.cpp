#include "VelPlatform/Module.h"

#include <gmock/gmock.h>

#if !defined(_WIN32)
#    include <dlfcn.h>
#endif

using VelPlatform::IsModuleLoaded;

TEST(Module, NoNameIsNeverLoaded)
{
    EXPECT_FALSE(IsModuleLoaded(nullptr));
    EXPECT_FALSE(IsModuleLoaded(""));
}

TEST(Module, ANameThatNoModuleHasIsNotLoaded)
{
    EXPECT_FALSE(IsModuleLoaded("NoSuchModule.dll"));
    EXPECT_FALSE(IsModuleLoaded("/no/such/Module.dll"));
}

#if !defined(_WIN32)

TEST(Module, IsFoundByItsFileNameWhileItIsLoaded)
{
    const char* const path = STYLES_TEST_MODULES "/PlatformMarker.dll";
    EXPECT_FALSE(IsModuleLoaded("PlatformMarker.dll"));
    EXPECT_FALSE(IsModuleLoaded(path)) << "asking must not load";
    void* const module = dlopen(path, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(nullptr, module) << dlerror();
    EXPECT_TRUE(IsModuleLoaded("PlatformMarker.dll"));
    EXPECT_TRUE(IsModuleLoaded(path));
    EXPECT_FALSE(IsModuleLoaded("PlatformMarker"));
    EXPECT_FALSE(IsModuleLoaded("Marker.dll"));
    EXPECT_FALSE(IsModuleLoaded("platformmarker.dll"));
    EXPECT_FALSE(IsModuleLoaded("/elsewhere/PlatformMarker.dll"));
    dlclose(module);
    EXPECT_FALSE(IsModuleLoaded("PlatformMarker.dll"));
}

TEST(Module, TheSystemsOwnLibrariesAreFound)
{
    EXPECT_TRUE(IsModuleLoaded("libc.so.6"));
}

#endif
