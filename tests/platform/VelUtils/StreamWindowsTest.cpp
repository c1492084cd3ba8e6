// Files on Windows: what another program holds open, read-only files, names that are devices, paths of its own kind.

#if defined(_WIN32)

#    include "StreamTestTools.h"
#    include "VelUtils/Stream.h"
#    include "support/ProgramRun.h"
#    include "support/TemporaryFolder.h"

#    include <gmock/gmock.h>

#    include <filesystem>
#    include <string>

using Support::BytesOf;
using Support::Save;
using Support::TemporaryFolder;
using Support::ToText;
using Support::Write;
using Support::WriteBytes;
using testing::ElementsAre;
using VelPlatform::VelString;
using VelUtils::FileStream;
using VelUtils::Stream;
namespace fs = std::filesystem;

namespace
{

/// Opens a file as another program may have it, letting others do what `sharing` says.
HANDLE Hold(const fs::path& path, DWORD sharing)
{
    return CreateFileW(path.c_str(), GENERIC_READ, sharing, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
}

} // namespace

TEST(FileStream, AFileThatAnotherHoldsOpenIsNotReplacedAndStays)
{
    for (const DWORD sharing : {DWORD{0}, DWORD{FILE_SHARE_READ}, DWORD{FILE_SHARE_READ | FILE_SHARE_WRITE}})
    {
        SCOPED_TRACE(sharing);
        const TemporaryFolder folder;
        WriteBytes(folder / "file", "old");
        {
            const Support::SystemHandle held(Hold(folder / "file", sharing));
            ASSERT_NE(held.Get(), INVALID_HANDLE_VALUE);
            Stream stream = FileStream::Create(ToText(folder / "file"));
            Write(stream, "new");
            EXPECT_FALSE(stream.Close());
            EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
        }
        EXPECT_EQ(BytesOf(folder / "file"), "old");
        EXPECT_TRUE(Save(folder / "file", "new"));
        EXPECT_EQ(BytesOf(folder / "file"), "new");
        EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
    }
}

// Which of the two it is depends on the version of the system.
TEST(FileStream, AFileThatIsBeingReadIsReplacedForTheNextReaderOrStays)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    Stream reading = FileStream::Open(ToText(folder / "file"));
    const bool saved = Save(folder / "file", "new");
    EXPECT_EQ(BytesOf(folder / "file"), saved ? "new" : "old");
    char bytes[4] = {};
    EXPECT_EQ(reading.Read(bytes, sizeof bytes), 3u);
    EXPECT_STREQ(bytes, "old");
}

TEST(FileStream, AReadOnlyFileGivesAFalseHandleAndStays)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    ASSERT_TRUE(SetFileAttributesW((folder / "file").c_str(), FILE_ATTRIBUTE_READONLY));
    EXPECT_FALSE(FileStream::Create(ToText(folder / "file")));
    EXPECT_EQ(BytesOf(folder / "file"), "old");
    ASSERT_TRUE(SetFileAttributesW((folder / "file").c_str(), FILE_ATTRIBUTE_NORMAL));
    EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
}

TEST(FileStream, ANameOfTheSystemsDevicesIsNotWritten)
{
    EXPECT_FALSE(FileStream::Create(L"NUL"));
    EXPECT_FALSE(FileStream::Create(L"\\\\.\\NUL"));
}

TEST(FileStream, PathsOfEveryKindAreWrittenAndRead)
{
    const TemporaryFolder folder;
    const std::wstring absolute = fs::absolute(folder.GetPath()).make_preferred().wstring();
    const std::wstring slashes = fs::path(absolute).generic_wstring();
    for (const std::wstring& path :
         {absolute + L"\\a", slashes + L"/b", L"\\\\?\\" + absolute + L"\\c",
          absolute + L"\\..\\" + folder.GetPath().filename().wstring() + L"\\d", absolute + L"\\\u6C34\U0001F600"})
    {
        const VelString text(path.c_str());
        for (const char* bytes : {"one", "two!"})
        {
            Stream stream = FileStream::Create(text);
            EXPECT_TRUE(Write(stream, bytes));
            EXPECT_TRUE(stream.Close());
        }
        char bytes[5] = {};
        EXPECT_EQ(FileStream::Open(text).Read(bytes, sizeof bytes), 4u);
        EXPECT_STREQ(bytes, "two!");
    }
    EXPECT_THAT(folder.GetNames(), ElementsAre("a", "b", "c", "d", "\xE6\xB0\xB4\xF0\x9F\x98\x80"));
}

TEST(FileStream, AWriterThatDiesLeavesTheOldFileAndOneOtherThatTheNextSaveRemoves)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    EXPECT_EQ(Support::RunProgram(STYLES_TEST_PROGRAMS "/DyingWriter", folder.GetPath(), {"file"}).status, 3);
    EXPECT_EQ(BytesOf(folder / "file"), "old");
    EXPECT_THAT(folder.GetNames(), ElementsAre("file", "file.saving~0"));
    EXPECT_TRUE(Save(folder / "file", "new"));
    EXPECT_EQ(BytesOf(folder / "file"), "new");
    EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
}

#endif
