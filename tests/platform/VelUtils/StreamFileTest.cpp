#include "VelUtils/Stream.h"

#include "StreamTestTools.h"
#include "support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#if !defined(_WIN32)
#    include <sys/stat.h>
#    include <unistd.h>
#endif

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

std::string Load(const fs::path& path)
{
    Stream stream = FileStream::Open(ToText(path));
    std::string bytes;
    char chunk[1000];
    for (std::size_t size = 0; (size = stream.Read(chunk, sizeof chunk)) > 0;)
    {
        bytes.append(chunk, size);
    }
    EXPECT_TRUE(stream);
    return bytes;
}

} // namespace

TEST(FileStream, ReadsBackWhatItWrote)
{
    const TemporaryFolder folder;
    const std::string bytes = std::string("a\0b\xFF\n", 5) + std::string(300'000, 'x') + "end";
    EXPECT_TRUE(Save(folder / "file", bytes));
    EXPECT_EQ(Load(folder / "file"), bytes);
    EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
}

TEST(FileStream, ManySmallAndLargeWritesArriveInOrder)
{
    const TemporaryFolder folder;
    Stream stream = FileStream::Create(ToText(folder / "file"));
    std::string expected;
    for (std::size_t i = 0; i < 3000; ++i)
    {
        const std::string piece(i % 1000 == 999 ? 100'000 : i % 90, static_cast<char>('a' + i % 26));
        EXPECT_TRUE(Write(stream, piece));
        expected += piece;
    }
    EXPECT_TRUE(stream.Close());
    EXPECT_EQ(BytesOf(folder / "file"), expected);
}

TEST(FileStream, TheOldFileStaysUntilTheNewOneIsClosed)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    Stream stream = FileStream::Create(ToText(folder / "file"));
    EXPECT_TRUE(Write(stream, std::string(200'000, 'n')));
    EXPECT_EQ(BytesOf(folder / "file"), "old");
    EXPECT_TRUE(stream.Close());
    EXPECT_EQ(BytesOf(folder / "file").size(), 200'000u);
    EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
}

TEST(FileStream, TheLastHandlePutsTheFileInItsPlace)
{
    const TemporaryFolder folder;
    {
        Stream stream = FileStream::Create(ToText(folder / "file"));
        EXPECT_TRUE(Write(stream, "new"));
    }
    EXPECT_EQ(BytesOf(folder / "file"), "new");
}

TEST(FileStream, TheLastHandleGivesUpAFileIntoWhichNothingWasWritten)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    {
        EXPECT_TRUE(FileStream::Create(ToText(folder / "file")));
        EXPECT_TRUE(FileStream::Create(ToText(folder / "other")));
    }
    EXPECT_EQ(BytesOf(folder / "file"), "old");
    EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
}

TEST(FileStream, ClosingMakesAnEmptyFileWhenThatIsWanted)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    EXPECT_TRUE(FileStream::Create(ToText(folder / "file")).Close());
    EXPECT_EQ(BytesOf(folder / "file"), "");
    EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
}

TEST(FileStream, AnExceptionThatPassesLeavesTheOldFileAndNoLitter)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    try
    {
        Stream stream = FileStream::Create(ToText(folder / "file"));
        EXPECT_TRUE(Write(stream, "half of the new"));
        throw std::runtime_error("passing");
    }
    catch (const std::runtime_error&)
    {}
    EXPECT_EQ(BytesOf(folder / "file"), "old");
    EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
}

TEST(FileStream, ANameOfAnyLanguageAndLengthIsWritten)
{
    const TemporaryFolder folder;
    const std::string longest = std::string(251, 'n') + "\xC3\xA9\xC3\xA9";
    for (const std::string& name : {std::string("\xE2\x82\xAC.mtss"), longest})
    {
        EXPECT_TRUE(Save(folder / name, "one"));
        EXPECT_TRUE(Save(folder / name, "two"));
        EXPECT_EQ(Load(folder / name), "two");
    }
    EXPECT_EQ(folder.GetNames().size(), 2u);
}

TEST(FileStream, APathThatCannotBeWrittenGivesAFalseHandleAtOnce)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "folder");
    WriteBytes(folder / "file", "old");
    const VelString zero = ToText(folder / "a") + VelString(L"\0b", 2);
    VelString half = ToText(folder / "a");
    half += static_cast<wchar_t>(0xD800);
    for (const VelString& path :
         {VelString(), ToText(folder / "missing" / "file"), ToText(folder / "folder"), ToText(folder / "new/"),
          ToText(folder / "file" / "below"), ToText(folder / std::string(300, 'x')), zero, half})
    {
        EXPECT_FALSE(FileStream::Create(path));
    }
    EXPECT_THAT(folder.GetNames(), ElementsAre("file", "folder"));
}

TEST(FileStream, APathThatCannotBeReadGivesAFalseHandle)
{
    const TemporaryFolder folder;
    EXPECT_FALSE(FileStream::Open(ToText(folder / "missing")));
    EXPECT_FALSE(FileStream::Open(ToText(folder.GetPath())));
    EXPECT_FALSE(FileStream::Open(VelString()));
    WriteBytes(folder / "a", "x");
    EXPECT_FALSE(FileStream::Open(ToText(folder / "a") + VelString(L"\0b", 2)));
}

TEST(FileStream, AFileIsEitherReadOrWritten)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    Stream reading = FileStream::Open(ToText(folder / "file"));
    EXPECT_FALSE(Write(reading, "x"));
    EXPECT_TRUE(reading.Failed());
    Stream writing = FileStream::Create(ToText(folder / "file"));
    char byte = 0;
    EXPECT_EQ(writing.Read(&byte, 1), 0u);
    EXPECT_TRUE(writing.Failed());
    EXPECT_FALSE(writing.Close());
    EXPECT_EQ(BytesOf(folder / "file"), "old");
    EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
}

TEST(FileStream, AFileThatWasReadIsClosedWithSuccess)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    EXPECT_TRUE(FileStream::Open(ToText(folder / "file")).Close());
    EXPECT_EQ(BytesOf(folder / "file"), "old");
}

TEST(FileStream, TwoWritersOfOnePathLeaveOneAnotherAloneAndTheLastToCloseWins)
{
    const TemporaryFolder folder;
    Stream first = FileStream::Create(ToText(folder / "file"));
    Stream second = FileStream::Create(ToText(folder / "file"));
    EXPECT_TRUE(Write(first, "first"));
    EXPECT_TRUE(Write(second, "second"));
    EXPECT_TRUE(Save(folder / "file", "third"));
    EXPECT_TRUE(second.Close());
    EXPECT_EQ(BytesOf(folder / "file"), "second");
    EXPECT_TRUE(first.Close());
    EXPECT_EQ(BytesOf(folder / "file"), "first");
    EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
}

TEST(FileStream, ThreadsThatSaveToOnePathLeaveOneWholeFile)
{
    const TemporaryFolder folder;
    std::vector<std::thread> threads;
    for (char letter = 'a'; letter < 'e'; ++letter)
    {
        threads.emplace_back([&folder, letter] {
            for (int i = 0; i < 50; ++i)
            {
                Save(folder / "file", std::string(100'000, letter));
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_TRUE(Save(folder / "other", "x"));
    const std::string bytes = BytesOf(folder / "file");
    EXPECT_EQ(bytes, std::string(100'000, bytes.at(0)));
    EXPECT_TRUE(Save(folder / "file", "last"));
    EXPECT_THAT(folder.GetNames(), ElementsAre("file", "other"));
}

TEST(FileStream, ALeftoverOfACrashIsRemovedByTheNextSave)
{
    const TemporaryFolder folder;
    for (const char* name : {"file.saving~0", "file.saving~7", "file.saving~x", "fil.saving~0"})
    {
        WriteBytes(folder / name, "left behind");
    }
    EXPECT_TRUE(Save(folder / "file", "new"));
    EXPECT_EQ(BytesOf(folder / "file"), "new");
    EXPECT_THAT(folder.GetNames(), ElementsAre("fil.saving~0", "file", "file.saving~x"));
}

#if !defined(_WIN32)

using Support::InChild;

namespace
{

mode_t ModeOf(const fs::path& path)
{
    struct stat found = {};
    EXPECT_EQ(stat(path.c_str(), &found), 0);
    return found.st_mode & 07777u;
}

} // namespace

TEST(FileStream, TheModeIsKept)
{
    const TemporaryFolder folder;
    for (const mode_t mode : {0600u, 0644u, 0777u, 0640u})
    {
        WriteBytes(folder / "file", "old");
        ASSERT_EQ(chmod((folder / "file").c_str(), mode), 0);
        EXPECT_TRUE(Save(folder / "file", "new"));
        EXPECT_EQ(ModeOf(folder / "file"), mode);
    }
}

TEST(FileStream, WhileItIsWrittenAPrivateFileIsPrivate)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    ASSERT_EQ(chmod((folder / "file").c_str(), 0600), 0);
    Stream stream = FileStream::Create(ToText(folder / "file"));
    EXPECT_EQ(ModeOf(folder / "file.saving~0"), 0600u);
}

TEST(FileStream, ANewFileHasTheModeOfEveryNewFile)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "plain", "x");
    EXPECT_TRUE(Save(folder / "file", "new"));
    EXPECT_EQ(ModeOf(folder / "file"), ModeOf(folder / "plain"));
}

TEST(FileStream, ALinkStaysALinkAndItsTargetIsReplaced)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "sub");
    WriteBytes(folder / "sub" / "target", "old");
    fs::create_symlink("sub/second", folder / "link");
    fs::create_symlink(folder / "sub" / "target", folder / "sub" / "second");
    EXPECT_TRUE(Save(folder / "link", "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_TRUE(fs::is_symlink(folder / "sub" / "second"));
    EXPECT_EQ(BytesOf(folder / "sub" / "target"), "new");
    EXPECT_THAT(folder.GetNames(), ElementsAre("link", "sub"));
}

TEST(FileStream, ALinkToNothingYetGetsItsTarget)
{
    const TemporaryFolder folder;
    fs::create_symlink("target", folder / "link");
    EXPECT_TRUE(Save(folder / "link", "new"));
    EXPECT_TRUE(fs::is_symlink(folder / "link"));
    EXPECT_EQ(BytesOf(folder / "target"), "new");
}

TEST(FileStream, LinksInACircleCannotBeWritten)
{
    const TemporaryFolder folder;
    fs::create_symlink("b", folder / "a");
    fs::create_symlink("a", folder / "b");
    EXPECT_FALSE(FileStream::Create(ToText(folder / "a")));
    EXPECT_FALSE(FileStream::Open(ToText(folder / "a")));
}

TEST(FileStream, WhatIsNoPlainFileIsNotReplaced)
{
    EXPECT_FALSE(FileStream::Create(L"/dev/null"));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
}

TEST(FileStream, APathRelativeToTheWorkingFolderIsWritten)
{
    const TemporaryFolder folder;
    EXPECT_EQ(InChild([&] {
                  return chdir(folder.GetPath().c_str()) == 0 && Save("plain", "new") && Save("./dotted", "new") ? 0
                                                                                                                 : 1;
              }),
              0);
    EXPECT_THAT(folder.GetNames(), ElementsAre("dotted", "plain"));
}

TEST(FileStream, WithoutPermissionTheHandleIsFalse)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    fs::create_directory(folder / "closed");
    const auto withoutPermission = [&] {
        // The superuser may write everything; another user, who owns the files, may not.
        constexpr uid_t kOther = 65534;
        const bool isOther = geteuid() != 0 || (chown(folder.GetPath().c_str(), kOther, kOther) == 0 &&
                                                chown((folder / "file").c_str(), kOther, kOther) == 0 &&
                                                chown((folder / "closed").c_str(), kOther, kOther) == 0 &&
                                                setgid(kOther) == 0 && setuid(kOther) == 0);
        if (!isOther || chmod((folder / "file").c_str(), 0444) != 0 || chmod((folder / "closed").c_str(), 0555) != 0)
        {
            return 2;
        }
        const bool refused =
            !FileStream::Create(ToText(folder / "file")) && !FileStream::Create(ToText(folder / "closed" / "new"));
        return refused && Save(folder / "new", "x") ? 0 : 1;
    };
    EXPECT_EQ(InChild(withoutPermission), 0);
    EXPECT_EQ(BytesOf(folder / "file"), "old");
    fs::permissions(folder / "closed", fs::perms::owner_all);
    EXPECT_THAT(folder.GetNames(), ElementsAre("closed", "file", "new"));
}

#endif
