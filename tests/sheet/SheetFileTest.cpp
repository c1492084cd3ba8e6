// A sheet that is exported to a file: the old file or the new one is there, whatever happens on the way.

#include <styles/StyleSheet.h>

#include "support/ChildProcess.h"
#include "support/TemporaryFolder.h"
#include "support/TestSheet.h"

#include <gmock/gmock.h>

#include <VelUtils/Stream.h>

#include <chrono>
#include <random>
#include <string>

using Support::BytesOf;
using Support::TemporaryFolder;
using Support::ToText;
using testing::ElementsAre;

namespace Styles::Testing
{

namespace
{

class SheetFile : public SchemaFixture
{
protected:
    /// Makes `sheet` one of `count` styles.
    void SetStyles(TestSheet& sheet, int count) const
    {
        sheet.Clear();
        for (int index = 0; index < count; ++index)
        {
            auto style = std::make_unique<Style>(nullptr, Outline);
            style->SetProperty(Color, Any(VelString(L"a colour")));
            sheet.AddStyle(Text("style " + std::to_string(index)), style.release(), false);
        }
    }

    static bool Save(const TestSheet& sheet, const std::filesystem::path& path)
    {
        VelUtils::Stream stream = VelUtils::FileStream::Create(ToText(path));
        return stream && sheet.Export(stream) && stream.Close();
    }

    static bool Load(TestSheet& sheet, const std::filesystem::path& path)
    {
        VelUtils::Stream stream = VelUtils::FileStream::Open(ToText(path));
        return stream && sheet.Import(stream, false);
    }

    const TemporaryFolder folder;
    const std::filesystem::path file = folder / "sheet.json";
};

} // namespace

TEST_F(SheetFile, WhatIsSavedIsLoaded)
{
    TestSheet sheet;
    SetStyles(sheet, 5);
    ASSERT_TRUE(Save(sheet, file));
    EXPECT_EQ(BytesOf(file), sheet.Write());
    TestSheet loaded;
    ASSERT_TRUE(Load(loaded, file));
    EXPECT_EQ(loaded.Write(), sheet.Write());
    EXPECT_THAT(folder.GetNames(), ElementsAre("sheet.json"));
}

TEST_F(SheetFile, TheFileIsThereWhenTheLastHandleIsGone)
{
    TestSheet sheet;
    SetStyles(sheet, 5);
    {
        VelUtils::Stream stream = VelUtils::FileStream::Create(ToText(file));
        EXPECT_TRUE(sheet.Export(stream));
        EXPECT_FALSE(std::filesystem::exists(file));
    }
    EXPECT_EQ(BytesOf(file), sheet.Write());
}

#if !defined(_WIN32)

using Support::InChild;

TEST_F(SheetFile, AWriterThatIsKilledLeavesTheOldFileOrTheNewOne)
{
    TestSheet one, other;
    SetStyles(one, 3);
    SetStyles(other, 4000);
    const std::string contents[] = {one.Write(), other.Write()};
    ASSERT_TRUE(Save(one, file));
    std::mt19937 random(20260101);
    std::uniform_int_distribution<int> delay(0, 20'000);
    int seen[2] = {};
    for (int round = 0; round < 200; ++round)
    {
        Support::KillAfter(std::chrono::microseconds(delay(random)), [&] {
            for (;;)
            {
                Save(other, file);
                Save(one, file);
            }
            return 0;
        });
        const std::string bytes = BytesOf(file);
        ASSERT_TRUE(bytes == contents[0] || bytes == contents[1]) << bytes.size();
        ++seen[bytes == contents[1]];
        ASSERT_LE(folder.GetNames().size(), 2u);
    }
    RecordProperty("old", seen[0]);
    RecordProperty("new", seen[1]);
    ASSERT_TRUE(Save(other, file));
    EXPECT_THAT(folder.GetNames(), ElementsAre("sheet.json")) << "what was left over is gone";
}

TEST_F(SheetFile, AFullDiskIsAnsweredFalseAndLeavesTheOldFile)
{
    TestSheet sheet;
    SetStyles(sheet, 3);
    ASSERT_TRUE(Save(sheet, file));
    const std::string old = BytesOf(file);
    for (const int count : {100, 20'000})
    {
        SetStyles(sheet, count);
        EXPECT_EQ(InChild([&] { return !Support::LimitFileSize(3'000) ? 2 : Save(sheet, file) ? 1 : 0; }), 0) << count;
        EXPECT_EQ(BytesOf(file), old);
        EXPECT_THAT(folder.GetNames(), ElementsAre("sheet.json"));
    }
}

#endif

} // namespace Styles::Testing
