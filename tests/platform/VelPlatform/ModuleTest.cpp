#include "VelPlatform/Module.h"

#include "support/LoadedModule.h"

#include <gmock/gmock.h>

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

TEST(Module, IsFoundByItsFileNameWhileItIsLoaded)
{
    const char* const path = STYLES_TEST_MODULES "/PlatformMarker.dll";
    EXPECT_FALSE(IsModuleLoaded("PlatformMarker.dll"));
    EXPECT_FALSE(IsModuleLoaded(path)) << "asking must not load";
    Support::LoadedModule module(path);
    ASSERT_TRUE(module);
    EXPECT_TRUE(IsModuleLoaded("PlatformMarker.dll"));
    EXPECT_FALSE(IsModuleLoaded("Marker.dll"));
#if defined(_WIN32) // whose module names have no case, and end in .dll when they do not say how
    EXPECT_TRUE(IsModuleLoaded("platformmarker.DLL"));
    EXPECT_TRUE(IsModuleLoaded("PlatformMarker"));
#else
    EXPECT_TRUE(IsModuleLoaded(path));
    EXPECT_FALSE(IsModuleLoaded("platformmarker.dll"));
    EXPECT_FALSE(IsModuleLoaded("PlatformMarker"));
#endif
    EXPECT_FALSE(IsModuleLoaded("/elsewhere/PlatformMarker.dll"));
    module.Unload();
    EXPECT_FALSE(IsModuleLoaded("PlatformMarker.dll"));
}

TEST(Module, TheSystemsOwnLibrariesAreFound)
{
#if defined(_WIN32)
    EXPECT_TRUE(IsModuleLoaded("kernel32.dll"));
#else
    EXPECT_TRUE(IsModuleLoaded("libc.so.6"));
#endif
}
