// The example with presets, run as a program.

#if defined(STYLES_PRESETS_PROGRAM)

#    include "support/ProgramRun.h"

#    include <gmock/gmock.h>

#    include <string>
#    include <vector>

using Support::Answer;
using testing::ElementsAre;
using testing::HasSubstr;

namespace Styles::Testing
{

namespace
{

class PresetsExample : public testing::Test
{
protected:
    /// Runs a command on the folder of the presets.
    Answer Run(std::vector<std::string> arguments, Support::Output output = Support::Output::Kept)
    {
        arguments.insert(arguments.begin(), folder.GetPath().string());
        return Support::RunProgram(STYLES_PRESETS_PROGRAM, work.GetPath(), arguments, output);
    }

    void ExpectDone(const std::vector<std::string>& arguments, const std::string& out)
    {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const Answer answer = Run(arguments);
        EXPECT_EQ(answer.err, "");
        EXPECT_EQ(answer.out, out);
        EXPECT_EQ(answer.status, 0);
    }

    /// A command that is refused with this message and leaves the files as they were.
    void ExpectRefused(const std::vector<std::string>& arguments, const std::string& message, int status = 1)
    {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const std::string before = Support::BytesOf(file);
        const std::vector<std::string> names = folder.GetNames();
        const Answer answer = Run(arguments);
        EXPECT_EQ(answer.err, message + '\n');
        EXPECT_EQ(answer.out, "");
        EXPECT_EQ(answer.status, status);
        EXPECT_EQ(Support::BytesOf(file), before);
        EXPECT_EQ(folder.GetNames(), names);
    }

    const Support::TemporaryFolder folder;
    const Support::TemporaryFolder work;
    const std::filesystem::path file = folder / "fill.mtss";
    const std::string usage =
        "usage: styles-presets FOLDER list | show NAME | add NAME [PROPERTY=VALUE]... | delete NAME";
};

} // namespace

TEST_F(PresetsExample, WhatOneRunSavesTheNextOneLoads)
{
    ExpectDone({"list"}, "");
    EXPECT_TRUE(folder.GetNames().empty());
    ExpectDone({"add", "Ziegel, rot", "patternId=17", "angle=45", "color=#a0522d"}, "");
    ExpectDone({"add", "Brick"}, "");
    EXPECT_THAT(folder.GetNames(), ElementsAre("fill.mtss"));
    ExpectDone({"list"}, "Brick\nZiegel, rot\n");
    ExpectDone({"show", "ZIEGEL, ROT"}, "patternId = 17\nxScale = 1\nyScale = 1\nangle = 45\nskew = 0\n"
                                        "color = #a0522d\n");
    ExpectDone({"add", "brick", "skew=-1.5"}, "");
    ExpectDone({"show", "Brick"}, "patternId = 0\nxScale = 1\nyScale = 1\nangle = 0\nskew = -1.5\ncolor = #000000\n");
    ExpectDone({"delete", "Ziegel, rot"}, "");
    ExpectDone({"list"}, "brick\n");
}

TEST_F(PresetsExample, AskingChangesNoFile)
{
    Run({"add", "Brick"});
    const auto written = std::filesystem::last_write_time(file);
    Run({"list"});
    Run({"show", "Brick"});
    EXPECT_EQ(std::filesystem::last_write_time(file), written);
}

TEST_F(PresetsExample, ADamagedFileIsKeptAsideAndTheUserIsTold)
{
    const std::string damaged = R"({"fill": {"Brick": {"angle": "45"}, "Stone": {"ang)";
    Support::WriteBytes(file, damaged);
    const std::string message = "The presets in " + file.string() + " are damaged. The file is kept as ";
    const Answer listed = Run({"list"});
    EXPECT_EQ(listed.err, message + file.string() + ".damaged-1.\n");
    EXPECT_EQ(listed.out, "");
    EXPECT_EQ(listed.status, 0);
    EXPECT_THAT(folder.GetNames(), ElementsAre("fill.mtss.damaged-1"));
    ExpectDone({"add", "Brick"}, "");

    // Another one does not take the place of the first.
    Support::WriteBytes(file, "[]");
    EXPECT_EQ(Run({"add", "Stone"}).err, message + file.string() + ".damaged-2.\n");
    ExpectDone({"list"}, "Stone\n");
    EXPECT_EQ(Support::BytesOf(folder / "fill.mtss.damaged-1"), damaged);
    EXPECT_EQ(Support::BytesOf(folder / "fill.mtss.damaged-2"), "[]");
}

TEST_F(PresetsExample, WhatWasReadBeforeTheDamageIsNoPreset)
{
    Support::WriteBytes(file, R"({"fill": {"Brick": {"angle": "45"}, "Stone": 7}})");
    const Answer answer = Run({"show", "Brick"});
    EXPECT_THAT(answer.err, HasSubstr("is kept as"));
    EXPECT_THAT(answer.err, HasSubstr("There is no preset Brick.\n"));
    EXPECT_EQ(answer.status, 1);
}

TEST_F(PresetsExample, AFileThatCannotBeOpenedIsNotWrittenOver)
{
    std::filesystem::create_directory(file);
    const std::string damaged = "The presets in " + file.string() + " ";
    const Answer answer = Run({"add", "Brick"});
    EXPECT_THAT(answer.err, testing::StartsWith(damaged));
    EXPECT_THAT(answer.err, testing::EndsWith("The preset cannot be added.\n"));
    EXPECT_EQ(answer.status, 1);
    EXPECT_TRUE(std::filesystem::is_directory(file));
}

TEST_F(PresetsExample, PresetsThatCannotBeWrittenAreTold)
{
    const std::string absent = (work / "absent").string();
    const Answer answer = Support::RunProgram(STYLES_PRESETS_PROGRAM, work.GetPath(), {absent, "add", "Brick"});
    EXPECT_EQ(answer.err, "The presets cannot be written to the folder.\n");
    EXPECT_EQ(answer.status, 1);
    EXPECT_TRUE(work.GetNames().empty());
}

TEST_F(PresetsExample, WhatDoesNotExistOrIsNoValueIsRefused)
{
    Run({"add", "Brick"});
    ExpectRefused({"show", "Stone"}, "There is no preset Stone.");
    ExpectRefused({"delete", "Stone"}, "There is no preset Stone.");
    ExpectRefused({"show", ""}, "There is no preset .");
    ExpectRefused({"add", ""}, "The preset cannot be added.");
    ExpectRefused({"add", "Stone", "angle=steep"}, "angle=steep: the value cannot be read.");
    ExpectRefused({"add", "Stone", "depth=1"}, "depth=1 is not PROPERTY=VALUE with a property of a fill.");
    ExpectRefused({"add", "Stone", "angle"}, "angle is not PROPERTY=VALUE with a property of a fill.");
}

TEST_F(PresetsExample, ACommandLineThatMakesNoSenseIsRefused)
{
    for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
             {}, {"paint"}, {"list", "Brick"}, {"show"}, {"show", "A", "B"}, {"add"}, {"delete"}, {"delete", "A", "B"}})
    {
        ExpectRefused(arguments, usage, 2);
    }
#    if !defined(_WIN32) // there arguments are not bytes
    ExpectRefused({"show", "\xff"}, "Argument 3 is no UTF-8.", 2);
#    endif
    const Answer nothing = Support::RunProgram(STYLES_PRESETS_PROGRAM, work.GetPath(), {});
    EXPECT_EQ(nothing.err, usage + '\n');
    EXPECT_EQ(nothing.status, 2);
}

TEST_F(PresetsExample, AnAnswerThatCannotBeWrittenIsAFailure)
{
    Run({"add", "Brick"});
    const Answer answer = Run({"list"}, Support::Output::Refused);
    EXPECT_EQ(answer.err, "The answer cannot be written.\n");
    EXPECT_EQ(answer.status, 1);
}

} // namespace Styles::Testing

#endif
