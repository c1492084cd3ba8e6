// What becomes of files when the disk is full, the folder is gone or the writer is killed.

#if !defined(_WIN32)

#    include "StreamTestTools.h"
#    include "VelUtils/Stream.h"
#    include "support/TemporaryFolder.h"

#    include <gmock/gmock.h>

#    include <chrono>
#    include <csignal>
#    include <filesystem>
#    include <random>
#    include <string>
#    include <sys/resource.h>
#    include <thread>

using Support::BytesOf;
using Support::InChild;
using Support::Save;
using Support::TemporaryFolder;
using Support::ToText;
using Support::Write;
using Support::WriteBytes;
using testing::ElementsAre;
using testing::IsEmpty;
using VelUtils::FileStream;
using VelUtils::Stream;
namespace fs = std::filesystem;

TEST(FileStream, AFullDiskLeavesTheOldFileAndNoLitter)
{
    const TemporaryFolder folder;
    WriteBytes(folder / "file", "old");
    const auto onAFullDisk = [&](std::size_t size, std::size_t pieces) {
        return InChild([&] {
            // A limit on the size of files looks to a writer like a disk that is full.
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit limit{100'000, 100'000};
            if (setrlimit(RLIMIT_FSIZE, &limit) != 0)
            {
                return 2;
            }
            Stream stream = FileStream::Create(ToText(folder / "file"));
            bool written = true;
            for (std::size_t i = 0; i < pieces; ++i)
            {
                written = written && Write(stream, std::string(size, 'n'));
            }
            const bool closed = stream.Close();
            return closed ? (written ? 0 : 3) : 1;
        });
    };
    EXPECT_EQ(onAFullDisk(100, 100), 0);
    WriteBytes(folder / "file", "old");
    EXPECT_EQ(onAFullDisk(1'000'000, 1), 1);
    EXPECT_EQ(onAFullDisk(1'000, 101), 1);
    EXPECT_EQ(onAFullDisk(1'000, 1'000), 1);
    EXPECT_EQ(BytesOf(folder / "file"), "old");
    EXPECT_THAT(folder.GetNames(), ElementsAre("file"));
}

TEST(FileStream, AFolderThatGoesAwayMakesClosingFail)
{
    const TemporaryFolder folder;
    fs::create_directory(folder / "sub");
    Stream stream = FileStream::Create(ToText(folder / "sub" / "file"));
    EXPECT_TRUE(Write(stream, "new"));
    fs::remove_all(folder / "sub");
    EXPECT_FALSE(stream.Close());
    EXPECT_TRUE(stream.Failed());
    EXPECT_THAT(folder.GetNames(), IsEmpty());
}

TEST(FileStream, AKilledWriterLeavesAWholeFileAndAtMostOneOtherThatTheNextSaveRemoves)
{
    const TemporaryFolder folder;
    const fs::path file = folder / "file";
    const std::string contents[] = {std::string(150'000, 'a'), std::string(90'000, 'b')};
    ASSERT_TRUE(Save(file, contents[0]));
    std::mt19937 random(20240604);
    std::size_t crashes = 0;
    for (int round = 0; round < 200; ++round)
    {
        const pid_t child = fork();
        ASSERT_GE(child, 0);
        if (child == 0)
        {
            for (std::size_t i = 0;; ++i)
            {
                Save(file, contents[i % 2]);
            }
        }
        std::this_thread::sleep_for(std::chrono::microseconds(1000 + random() % 6000));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const std::string bytes = BytesOf(file);
        ASSERT_TRUE(bytes == contents[0] || bytes == contents[1]) << bytes.size();
        const std::size_t files = folder.GetNames().size();
        ASSERT_LE(files, 2u);
        crashes += files == 2;
        ASSERT_TRUE(Save(file, contents[0]));
        ASSERT_THAT(folder.GetNames(), ElementsAre("file"));
    }
    RecordProperty("leftovers", static_cast<int>(crashes));
}

#endif
