// Preset files when something goes wrong: the old file is there and loads.

#include <styles/StylePresetManager.h>

#include "presets/TestPresets.h"
#include "support/ChildProcess.h"
#include "support/ProgramRun.h"

#include <gmock/gmock.h>

#include <chrono>
#include <random>
#include <string>
#if !defined(_WIN32)
#    include <sys/stat.h>
#endif

using Support::BytesOf;
using Support::WriteBytes;
using testing::ElementsAre;

namespace Styles::Testing
{

namespace
{

class PresetFile : public PresetsFixture
{
protected:
    PresetFile() { presets.AddPreset(category, VelString(L"first"), &red, false); }

    /// The presets that are in the file; fails when it does not load.
    std::vector<VelString> NamesInFile() const
    {
        TestPresets loaded(folder.GetPath());
        std::vector<VelString> names = loaded.GetPresetNames(category);
        EXPECT_TRUE(loaded.wasLoaded);
        return names;
    }

    /// Adds and deletes a preset; zero when that is answered as where it can be saved.
    int Change()
    {
        return presets.AddPreset(category, VelString(L"second"), &blue, false) &&
                       presets.DeletePreset(category, VelString(L"first"))
                   ? 0
                   : 1;
    }
};

} // namespace

#if !defined(_WIN32)

using Support::InChild;

TEST_F(PresetFile, KilledWhileAddingAndDeletingTheOldFileOrTheNewOneIsThere)
{
    const std::string without = BytesOf(file);
    presets.AddPreset(category, VelString(L"second"), &blue, false);
    const std::string with = BytesOf(file);
    ASSERT_NE(with, without);
    std::mt19937 random(20260102);
    std::uniform_int_distribution<int> delay(0, 4'000);
    int seen[2] = {};
    for (int round = 0; round < 1000; ++round)
    {
        Support::KillAfter(std::chrono::microseconds(delay(random)), [this] {
            for (;;)
            {
                presets.DeletePreset(category, VelString(L"second"));
                presets.AddPreset(category, VelString(L"second"), &blue, false);
            }
            return 0;
        });
        const std::string bytes = BytesOf(file);
        ASSERT_TRUE(bytes == with || bytes == without) << bytes;
        ++seen[bytes == with];
        ASSERT_EQ(NamesInFile().size(), bytes == with ? 2u : 1u);
        ASSERT_LE(folder.GetNames().size(), 2u);
    }
    RecordProperty("without", seen[0]);
    RecordProperty("with", seen[1]);
    EXPECT_TRUE(presets.Save(category));
    EXPECT_THAT(folder.GetNames(), ElementsAre("style.mtss"));
}

TEST_F(PresetFile, OnAFullDiskTheOldFileStays)
{
    const std::string old = BytesOf(file);
    blue.SetProperty(Note, Any(Text(std::string(100'000, 'x'))));
    EXPECT_EQ(InChild([this] {
                  return !Support::LimitFileSize(2'000)                                     ? 2
                         : !presets.AddPreset(category, VelString(L"second"), &blue, false) ? 3
                         : presets.Save(category)                                           ? 4
                                                                                            : 0;
              }),
              0)
        << "saving is answered false, adding true";
    EXPECT_EQ(BytesOf(file), old);
    EXPECT_THAT(NamesInFile(), ElementsAre(VelString(L"first")));
    EXPECT_THAT(folder.GetNames(), ElementsAre("style.mtss"));
}

TEST_F(PresetFile, InAReadOnlyFolderTheOldFileStays)
{
    const std::string old = BytesOf(file);
    EXPECT_EQ(InChild([this] {
                  const char* path = folder.GetPath().c_str();
                  if (geteuid() == 0 && (chown(path, Support::ordinaryUser, Support::ordinaryUser) != 0 ||
                                         chown(file.c_str(), Support::ordinaryUser, Support::ordinaryUser) != 0))
                  {
                      return 2;
                  }
                  if (!Support::BecomeOrdinaryUser() || chmod(path, 0555) != 0)
                  {
                      return 3;
                  }
                  return !presets.Save(category) ? 4 : Change();
              }),
              0);
    std::filesystem::permissions(folder.GetPath(), std::filesystem::perms::owner_all);
    EXPECT_EQ(BytesOf(file), old);
    EXPECT_THAT(NamesInFile(), ElementsAre(VelString(L"first")));
    EXPECT_THAT(folder.GetNames(), ElementsAre("style.mtss"));
}

#endif

TEST_F(PresetFile, AFolderThatIsTakenAwayIsNotMadeAgain)
{
    const std::filesystem::path aside = folder.GetPath().string() + "-aside";
    std::filesystem::rename(folder.GetPath(), aside);
    EXPECT_EQ(Change(), 0);
    EXPECT_TRUE(presets.Save(category));
    EXPECT_FALSE(std::filesystem::exists(folder.GetPath()));
    std::filesystem::rename(aside, folder.GetPath());
    EXPECT_THAT(NamesInFile(), ElementsAre(VelString(L"first"))) << "the old file";
    EXPECT_TRUE(presets.Save(category));
    EXPECT_THAT(NamesInFile(), ElementsAre(VelString(L"second")));
}

TEST_F(PresetFile, AFileThatIsAFolderIsLeftAlone)
{
    std::filesystem::create_directory(folder / "fill.mtss");
    EXPECT_TRUE(presets.Save(VelString(L"fill")));
    EXPECT_TRUE(presets.AddPreset(VelString(L"fill"), VelString(L"a"), &red, false));
    EXPECT_TRUE(std::filesystem::is_directory(folder / "fill.mtss"));
}

#if !defined(_WIN32) // where names are more restricted

TEST_F(PresetFile, CategoriesOfAnyNameThatTheSystemHoldsHaveAFile)
{
    for (const char* name : {"Füllung", "\xF0\x9F\x8E\xA8", " blank ", "..", ".", "a\\b", "a:b*?\"<>|", "line\nfeed",
                             "con", "\xD7\xA9", "style.mtss", "-rf", ""})
    {
        const VelString odd = Text(name);
        EXPECT_TRUE(presets.AddPreset(odd, VelString(L"preset"), &red, false)) << name;
        EXPECT_TRUE(std::filesystem::exists(folder / (name + std::string(".mtss")))) << name;
        TestPresets loaded(folder.GetPath());
        EXPECT_THAT(loaded.GetPresetNames(odd), ElementsAre(VelString(L"preset"))) << name;
        EXPECT_TRUE(loaded.wasLoaded);
    }
}

TEST_F(PresetFile, CategoriesThatCannotNameAFileAreNotSaved)
{
    std::filesystem::create_directory(folder / "sub");
    std::vector<VelString> names{Text("sub/inside"),
                                 Text("../outside"),
                                 Text("/"),
                                 Text("/tmp/styles-absolute"),
                                 Text(std::string_view("zero\0inside", 11)),
                                 Text(std::string_view("\0", 1)),
                                 Text(std::string(5'000, 'n'))};
    if (sizeof(wchar_t) == 4)
    {
        names.emplace_back(L"\xD800"); // half a character
    }
    for (const VelString& odd : names)
    {
        EXPECT_TRUE(presets.AddPreset(odd, VelString(L"preset"), &red, false)) << odd;
        EXPECT_TRUE(presets.Save(odd)) << odd;
        EXPECT_TRUE(presets.DoesPresetNameExist(odd, VelString(L"preset"))) << odd;
        EXPECT_TRUE(presets.DeletePreset(odd, VelString(L"preset"))) << odd;
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder / "sub"));
    EXPECT_FALSE(std::filesystem::exists(folder / "../outside.mtss"));
    EXPECT_FALSE(std::filesystem::exists("/tmp/styles-absolute.mtss"));
    EXPECT_THAT(folder.GetNames(), ElementsAre("style.mtss", "sub"));
}

#else

TEST_F(PresetFile, CategoriesNamedInAnyLanguageHaveAFile)
{
    for (const char* name : {"F\xC3\xBCllung", "\xF0\x9F\x8E\xA8", "\xD7\xA9", "-rf"})
    {
        const VelString odd = Text(name);
        EXPECT_TRUE(presets.AddPreset(odd, VelString(L"preset"), &red, false)) << name;
        EXPECT_TRUE(std::filesystem::exists(folder / (name + std::string(".mtss")))) << name;
        TestPresets loaded(folder.GetPath());
        EXPECT_THAT(loaded.GetPresetNames(odd), ElementsAre(VelString(L"preset"))) << name;
    }
}

TEST_F(PresetFile, CategoriesWithCharactersThatTheSystemReservesAreNotSaved)
{
    for (const wchar_t* name : {L"a:b", L"a\\b", L"..\\outside", L"sub/inside", L"a*", L"a?", L"<a>", L"a|b", L"\"a\""})
    {
        const VelString odd(name);
        EXPECT_TRUE(presets.AddPreset(odd, VelString(L"preset"), &red, false)) << odd;
        EXPECT_TRUE(presets.Save(odd)) << odd;
        EXPECT_TRUE(presets.DoesPresetNameExist(odd, VelString(L"preset"))) << odd;
    }
    EXPECT_THAT(folder.GetNames(), ElementsAre("style.mtss"));
}

TEST_F(PresetFile, AFileThatAnotherProgramHoldsOpenStaysAndSavingIsAnsweredFalse)
{
    const std::string old = BytesOf(file);
    {
        const Support::SystemHandle held(
            CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
        ASSERT_NE(held.Get(), INVALID_HANDLE_VALUE);
        EXPECT_EQ(Change(), 0);
        EXPECT_FALSE(presets.Save(category));
    }
    EXPECT_EQ(BytesOf(file), old);
    EXPECT_TRUE(presets.Save(category));
    EXPECT_THAT(NamesInFile(), ElementsAre(VelString(L"second")));
    EXPECT_THAT(folder.GetNames(), ElementsAre("style.mtss"));
}

#endif

TEST_F(PresetFile, ASaveAnswersFalseWhereTheSheetCannotBeWritten)
{
    presets.GetSheet(category).AddStyle(VelString(L"odd"), new Style(nullptr, StyleCategoryName), false);
    class SilentSheet : public TestSheet
    {
        void ExportToString(VelString& out, bool) const override
        {
            const wchar_t half[] = {static_cast<wchar_t>(0xD800), 0};
            out = VelString(half); // no text
        }
    };
    const std::string old = BytesOf(file);
    TestPresets broken(folder.GetPath());
    broken.sheets[category] = new SilentSheet();
    EXPECT_FALSE(broken.Save(category));
    EXPECT_EQ(BytesOf(file), old);
    EXPECT_THAT(folder.GetNames(), ElementsAre("style.mtss"));
}

} // namespace Styles::Testing
