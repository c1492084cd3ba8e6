#include "VelUtils/Path.h"

#include "VelPlatform/StringIO.h"

#include <gmock/gmock.h>

using VelPlatform::VelString;
using VelUtils::SystemIO::Path::Combine;
using VelUtils::SystemIO::Path::IsFileName;

#if defined(_WIN32)
#    define SEPARATOR L"\\"
#else
#    define SEPARATOR L"/"
#endif

TEST(Path, PutsOneSeparatorBetweenFolderAndName)
{
    EXPECT_EQ(L"folder" SEPARATOR L"name.mtss", Combine(L"folder", L"name.mtss"));
    EXPECT_EQ(L"folder/name", Combine(L"folder/", L"name"));
    EXPECT_EQ(L"folder/name", Combine(L"folder", L"/name"));
    EXPECT_EQ(L"folder/name", Combine(L"folder/", L"/name"));
    EXPECT_EQ(L"/name", Combine(L"/", L"name"));
}

TEST(Path, AnEmptyPartGivesTheOther)
{
    EXPECT_EQ(L"name", Combine(L"", L"name"));
    EXPECT_EQ(L"/name", Combine(L"", L"/name"));
    EXPECT_EQ(L"folder", Combine(L"folder", L""));
    EXPECT_EQ(L"", Combine(L"", L""));
}

TEST(Path, KeepsWhatStandsInsideTheParts)
{
    EXPECT_EQ(L"a//b/../c d/\u00E4.x", Combine(L"a//b/../c d/", L"\u00E4.x"));
}

TEST(Path, ABackslashSeparatesOnlyOnWindows)
{
#if defined(_WIN32)
    EXPECT_EQ(L"folder\\name", Combine(L"folder\\", L"name"));
#else
    EXPECT_EQ(L"folder\\/name", Combine(L"folder\\", L"name"));
#endif
}

TEST(Path, AFileNameIsNeitherEmptyNorAPathNorCutByAZero)
{
    EXPECT_TRUE(IsFileName(L"name"));
    EXPECT_TRUE(IsFileName(L"..."));
    EXPECT_TRUE(IsFileName(L".hidden \u00E4"));
    EXPECT_FALSE(IsFileName(L""));
    EXPECT_FALSE(IsFileName(L"."));
    EXPECT_FALSE(IsFileName(L".."));
    EXPECT_FALSE(IsFileName(L"a/b"));
    EXPECT_FALSE(IsFileName(L"/"));
    EXPECT_FALSE(IsFileName(VelString(L"a\0b", 3)));
#if defined(_WIN32)
    EXPECT_FALSE(IsFileName(L"a\\b"));
    EXPECT_FALSE(IsFileName(L"a:b"));
#else
    EXPECT_TRUE(IsFileName(L"a\\b"));
#endif
}
