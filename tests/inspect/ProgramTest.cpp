#include "InspectTools.h"

#include <gmock/gmock.h>

namespace Inspect::Testing
{

using ::testing::HasSubstr;
using ::testing::Not;

class Program : public InspectProgram
{};

TEST_F(Program, ListTellsStylesByCategoryWithParentsAndCounts)
{
    const Answer answer = Run({"list"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.out, R"(Gradient (gradient): 1 style
  NAME  INHERITS  OWN VALUES  IN SUBSTYLES TOO  EXTERNAL ID
  Dawn  -         1           2

Graphic style (style): 2 styles
  NAME   INHERITS  OWN VALUES  IN SUBSTYLES TOO  EXTERNAL ID
  Base   -         2           2
  Größe  Base      1           1                 x-1

3 styles in 2 categories, version 3
)");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Program, TreeShowsWhoInheritsFromWhom)
{
    Write("sheet.json", R"({"gradient": {"G": {}}, "style": {"A": {}, "B": {"inherits": "A"}, "C": {"inherits": "B"},
                            "D": {"inherits": "A"}, "E": {"inherits": "G"}}})");
    const Answer answer = Run({"tree"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.out, R"(Gradient (gradient)
  G
  └─ E (style)

Graphic style (style)
  A
  ├─ B
  │  └─ C
  └─ D

)");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Program, TreeShowsAClosedChainOnceAround)
{
    Write("sheet.json", R"({"style": {"A": {"inherits": "C"}, "B": {"inherits": "A"}, "C": {"inherits": "B"},
                            "T": {"inherits": "B"}, "Z": {}}})");
    const Answer answer = Run({"tree"});
    EXPECT_EQ(answer.out, R"(Graphic style (style)
  Z

Graphic style (style)
  A  (inherits from "C", in a closed chain)
  └─ B
     ├─ C
     │  └─ A  <- the chain is closed here
     └─ T

)");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Program, TreeOfAVeryLongChainStaysNarrow)
{
    std::string sheet = R"({"style": {"S0": {})";
    for (int index = 1; index < 3000; ++index)
    {
        sheet += ", \"S" + std::to_string(index) + R"(": {"inherits": "S)" + std::to_string(index - 1) + "\"}";
    }
    Write("sheet.json", sheet + "}}");
    const Answer answer = Run({"tree"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.out, HasSubstr("[2999] S2999\n"));
    EXPECT_LT(answer.out.size(), 400000u);
}

TEST_F(Program, ShowTellsEveryValueAndWhereItComesFrom)
{
    const Answer answer = Run({"show", "GRÖßE"}); // names make no difference of case
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.out.substr(0, answer.out.find("nested.")), R"("Größe", Graphic style (style)
inherits "Base"
external identity "x-1", called "Size"

PROPERTY                    VALUE                        FROM                  THROUGH
fill                        (fill)                       own
fill.color                  "red"                        "Base" fill.color     owner's parent "Base"
fill.angle                  30                           own
fill.patternId              4294967295                   default
fill.glow                   0                            default
fill.gradient               (gradient, inherits "Dawn")  "Base" fill.gradient  owner's parent "Base"
fill.gradient.kind          "linear"                     default
fill.gradient.stops         (list of 2)                  "Dawn" stops          owner's parent "Base"
fill.gradient.stops[0].at   0                            "Dawn" stops[0].at    owner's parent "Base"
fill.gradient.stops[1].at   0.5                          "Dawn" stops[1].at    owner's parent "Base"
note                        "all"                        "Base" note
level                       1                            default
locked                      0                            default
nested                      (none)                       default
)");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Program, ShowLeavesDefaultsOutWhenAsked)
{
    const Answer answer = Run({"show", "Base", "--no-defaults"});
    EXPECT_EQ(answer.out, R"("Base", Graphic style (style)

PROPERTY                   VALUE                        FROM                THROUGH
fill                       (fill)                       own
fill.color                 "red"                        own
fill.gradient              (gradient, inherits "Dawn")  own
fill.gradient.stops        (list of 2)                  "Dawn" stops        fill.gradient's parent "Dawn"
fill.gradient.stops[0].at  0                            "Dawn" stops[0].at  fill.gradient's parent "Dawn"
fill.gradient.stops[1].at  0.5                          "Dawn" stops[1].at  fill.gradient's parent "Dawn"
note                       "all"                        own

and 19 defaults
)");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(Program, ShowShowsControlCharactersEscaped)
{
    Write("sheet.json", R"({"style": {"A\u001b[2J\n": {"note": "\u0007\u202e"}}})");
    const Answer list = Run({"list"});
    EXPECT_THAT(list.out, HasSubstr("  A\\u{1B}[2J\\n  -"));
    const Answer show = Run({"show", "A\x1b[2J\n"});
    EXPECT_THAT(show.out, HasSubstr("\"\\u{7}\\u{202E}\""));
    EXPECT_THAT(show.out, Not(HasSubstr("\x1b")));
    EXPECT_EQ(show.status, 0);
}

TEST_F(Program, SetSavesOverTheFileOfTheSheet)
{
    Write("sheet.json", R"({"version": 3.0, "style": {"Base": {"level": "2"}}})");
    const Answer answer = Run({"set", "base", "fill.angle", "-12.5"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.out, "\"Base\" fill.angle: 0 (default) -> -12.5\nsaved to sheet.json\n");
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(Read("sheet.json"), R"({
 "version": 3.0,
 "style": {
  "Base": {
   "fill": {
    "angle": "-12.5"
   },
   "level": "2"
  }
 }
})");
}

TEST_F(Program, SetSavesToAnotherFileAndLeavesTheSheetAlone)
{
    const std::string before = Read("sheet.json");
    const Answer answer = Run({"set", "Größe", "level", "7", "-o", "new.json"});
    EXPECT_EQ(answer.out, "\"Größe\" level: 1 (default) -> 7\nsaved to new.json\n");
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(Read("sheet.json"), before);
    EXPECT_THAT(Read("new.json"), HasSubstr("\"level\": \"7\""));
    const Answer piped = Run({"set", "Größe", "level", "7", "-o", "-"});
    EXPECT_EQ(piped.out, Read("new.json"));
}

TEST_F(Program, UnsetLetsAStyleInheritAgain)
{
    Run({"set", "Größe", "fill.color", "blue"});
    const Answer answer = Run({"set", "Größe", "fill.color", "--unset"});
    EXPECT_EQ(answer.out, "\"Größe\" fill.color: \"blue\" -> \"red\" (inherited)\nsaved to sheet.json\n");
    EXPECT_EQ(answer.status, 0);
    ExpectRefusal({"set", "Größe", "fill.color", "--unset"}, "\"Größe\" has no value of its own for fill.color");
    ExpectRefusal({"set", "Größe", "fill.gradient.kind", "--unset"},
                  "\"Größe\" has no value of its own for fill.gradient.kind");
}

TEST_F(Program, UnsetTakesAWholeSubstyleAway)
{
    EXPECT_EQ(Run({"set", "Base", "fill", "--unset"}).status, 0);
    EXPECT_THAT(Run({"show", "Base", "--no-defaults"}).out, Not(HasSubstr("fill")));
}

TEST_F(Program, SetInAnInheritedListMakesAListOfItsOwn)
{
    const Answer answer = Run({"set", "Größe", "fill.gradient.stops[1].at", "0.75"});
    EXPECT_EQ(answer.out, "\"Größe\" fill.gradient.stops[1].at: 0.5 (inherited) -> 0.75\nsaved to sheet.json\n");
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(Run({"show", "Dawn"}).out, HasSubstr("stops[1].at  0.5"));
    EXPECT_THAT(Run({"show", "Größe"}).out, HasSubstr("fill.gradient.stops[0].at   0            own\n"));
    EXPECT_EQ(Run({"set", "Dawn", "stops[0].at", "0.1"}).status, 0);
    EXPECT_THAT(Run({"show", "Dawn"}).out, HasSubstr("stops[0].at  0.1"));
}

TEST_F(Program, SetRefusesWhatIsNotThere)
{
    ExpectRefusal({"set", "Nobody", "level", "1"},
                  "sheet.json: there is no style \"Nobody\"; `list` shows those there are");
    ExpectRefusal({"show", "Nobody"}, "sheet.json: there is no style \"Nobody\"; `list` shows those there are");
    ExpectRefusal({"set", "Base", "fill.hue", "1"}, "fill.hue: the category \"fill\" has no property \"hue\"; its "
                                                    "properties: color, angle, patternId, glow, gradient");
    ExpectRefusal({"set", "Base", "fil.color", "1"}, "fil.color: the category \"style\" has no property \"fil\"; its "
                                                     "properties: fill, note, level, locked, nested");
    ExpectRefusal({"set", "Base", "", "1"}, ": the category \"style\" has no property \"\"; its properties: fill, "
                                            "note, level, locked, nested");
    ExpectRefusal({"set", "Base", "level.x", "1"}, "level.x: \"level\" is a plain property; a path ends there");
    ExpectRefusal({"set", "Dawn", "stops.at", "1"},
                  "stops.at: \"stops\" is a list; an element of it is written like stops[0]");
    ExpectRefusal({"set", "Dawn", "stops[2].at", "1"}, "stops[2].at: the list \"stops\" has 2 elements, 0 to 1");
    ExpectRefusal({"set", "Base", "nested.fill.gradient.stops[0].at", "1"},
                  "nested.fill.gradient.stops[0].at: the list \"stops\" has no elements");
    ExpectRefusal({"set", "Dawn", "stops[1]", "1"}, "stops[1]: \"stops[1]\" is no property");
    ExpectRefusal({"set", "Base", "fill[0].color", "1"}, "fill[0].color: \"fill[0]\" is no list");
    for (const char* step : {"stops[", "stops[]", "stops[x]", "stops[-1]", "stops[1", "stops[9999999999]"})
    {
        ExpectRefusal({"set", "Dawn", step + std::string(".at"), "1"},
                      '"' + std::string(step) +
                          "\" is no step of a path; an element of a list is written like stops[0]");
    }
}

TEST_F(Program, SetRefusesWhatIsNoValue)
{
    ExpectRefusal({"set", "Base", "level", "many"}, "level: \"many\" is no value: not a number, or out of range");
    ExpectRefusal({"set", "Base", "locked", "maybe"}, "locked: \"maybe\" is no value: neither true nor false");
    ExpectRefusal({"set", "Base", "fill.angle", "1,5"},
                  "fill.angle: \"1,5\" is no value: not a number, or out of range");
    ExpectRefusal({"set", "Base", "fill", "red"}, "fill: is a substyle; set one of its properties");
    ExpectRefusal({"set", "Dawn", "stops", "red"}, "stops: is a list; set a property of one of its elements");
    ExpectRefusal({"set", "Base", "fill.glow", "1"},
                  "fill.glow: \"glow\" is new since version 4; a sheet of version 3 does not keep it");
}

TEST_F(Program, ExportWritesTheDocumentToAFileOrTheStandardOutput)
{
    ExpectRefusal({"export", "absent/out.json"}, "absent/out.json: cannot be written; nothing was saved");
    const Answer piped = Run({"export", "-"});
    EXPECT_EQ(piped.status, 0);
    const Answer saved = Run({"export", "out.json"});
    EXPECT_EQ(saved.status, 0);
    EXPECT_EQ(saved.out, "");
    EXPECT_EQ(Read("out.json"), piped.out);
    EXPECT_EQ(RunBare({"--schema=schema.json", "out.json", "export", "-"}).out, piped.out);
}

TEST_F(Program, WhatTheSchemaDoesNotKnowIsNotLostByAccident)
{
    const std::string sheet = R"({"version": 3, "style": {"A": {"colour": "red", "fill": {"glow": "1"}}}})";
    Write("sheet.json", sheet);
    const std::string warning =
        "styles-inspect: warning: sheet.json: style.A.colour: the schema has no such property (passed over)\n";
    const std::string refusal = "styles-inspect: sheet.json: not saved, since what was passed over would be lost; "
                                "--lossy saves the rest\n";
    const std::string leftOut = "styles-inspect: warning: sheet.json: 1 value of fill.glow left out: new since version "
                                "4, and the sheet has version 3\n";
    EXPECT_EQ(Run({"list"}).err, warning);
    EXPECT_EQ(Run({"list"}).status, 0);
    for (const std::string target : {"sheet.json", "./sheet.json"})
    {
        const Answer answer = Run({"export", target});
        EXPECT_EQ(answer.err, warning + refusal);
        EXPECT_EQ(answer.status, 1);
    }
    EXPECT_EQ(Run({"set", "A", "level", "2"}).status, 1);
    EXPECT_EQ(Read("sheet.json"), sheet);
    const Answer other = Run({"export", "other.json"});
    EXPECT_EQ(other.err, warning + leftOut);
    EXPECT_EQ(other.status, 0);
    EXPECT_EQ(Run({"set", "A", "level", "2", "--lossy"}).status, 0);
    EXPECT_THAT(Read("sheet.json"), Not(HasSubstr("colour")));
}

TEST_F(Program, FilesThatCannotBeReadAreNamedWithThePlace)
{
    Write("sheet.json", "{\n \"style\": {]\n}");
    Answer answer = Run({"list"});
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.out, "");
    EXPECT_THAT(answer.err, ::testing::StartsWith("styles-inspect: sheet.json: Line 2, column 12: "));

    Write("sheet.json", "{\n \"style\": {\n\"A\xff\": {}}}");
    ExpectRefusal({"list"}, "sheet.json: line 3 is no UTF-8");
    Write("sheet.json", "");
    EXPECT_EQ(Run({"list"}).status, 1);
    Write("sheet.json", R"({"style": {"A": []}})");
    ExpectRefusal({"list"}, "sheet.json: style.A: a style is an object, not an array");

    Write("schema.json", "{\"version\": 01}");
    answer = Run({"list"});
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.err, ::testing::StartsWith("styles-inspect: schema.json: Line 1, column "));
    Write("schema.json", R"({"version": 1})");
    ExpectRefusal({"list"}, "schema.json: the member \"base\" is missing");
    answer = RunBare({"--schema", "none.json", "sheet.json", "list"});
    EXPECT_EQ(answer.err, "styles-inspect: none.json: cannot be read\n");
    EXPECT_EQ(answer.status, 1);
    answer = RunBare({"--schema", ".", "sheet.json", "list"});
    EXPECT_EQ(answer.err, "styles-inspect: .: cannot be read\n");
    EXPECT_EQ(answer.status, 1);
}

TEST_F(Program, HostileDocumentsEndInAMessage)
{
    Write("sheet.json", std::string(1000000, '['));
    EXPECT_EQ(Run({"list"}).status, 1);
    std::string nested = R"({"style": {"A": )";
    std::string end;
    for (int depth = 0; depth < 505; ++depth)
    {
        nested += R"({"nested": )";
        end += '}';
    }
    Write("sheet.json", nested + "{}" + end + "}}");
    for (const char* command : {"list", "tree"})
    {
        EXPECT_EQ(Run({command}).status, 0);
    }
    EXPECT_EQ(Run({"show", "A", "--no-defaults"}).status, 0);
    EXPECT_EQ(Run({"export", "-"}).status, 0);
}

TEST_F(Program, AStyleThatUnfoldsWithoutEndIsCutOff)
{
    // Each of these holds the next one twice over by inheritance: 2^40 paths.
    Write("schema.json", R"({"version": 1, "base": {"uiName": "S", "properties": []}, "namedSubstyles": {"style": [
        {"name": "a", "elementCategory": "style"}, {"name": "b", "elementCategory": "style"}]}})");
    std::string sheet = R"({"style": {"S40": {})";
    for (int index = 0; index < 40; ++index)
    {
        const std::string next = R"({"inherits": "S)" + std::to_string(index + 1) + "\"}";
        sheet += ", \"S" + std::to_string(index) + R"(": {"a": )" + next + R"(, "b": )" + next + "}";
    }
    Write("sheet.json", sheet + "}}");
    const Answer answer = Run({"show", "S0"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.out, ::testing::EndsWith("and more: the style contains itself, or too much to be written\n"));
}

TEST_F(Program, ACommandLineThatMakesNoSenseIsRefusedWithItsOwnStatus)
{
    ExpectRefusal({}, "the command is missing", 2);
    ExpectRefusal({"paint"}, "there is no command \"paint\"", 2);
    ExpectRefusal({"list", "more"}, "the command \"list\" takes no arguments", 2);
    ExpectRefusal({"show"}, "the command \"show\" takes NAME [--no-defaults]", 2);
    ExpectRefusal({"set", "Base", "level"}, "the command \"set\" takes NAME PATH VALUE | NAME PATH --unset", 2);
    ExpectRefusal({"set", "Base", "level", "1", "--unset"},
                  "the command \"set\" takes NAME PATH VALUE | NAME PATH --unset", 2);
    ExpectRefusal({"flatten"}, "the command \"flatten\" takes NAME [--in-place | -o FILE]", 2);
    ExpectRefusal({"flatten", "Base", "Dawn"}, "the command \"flatten\" takes NAME [--in-place | -o FILE]", 2);
    ExpectRefusal({"flatten", "Base", "--in-place", "-o", "x"},
                  "the command \"flatten\" takes NAME [--in-place | -o FILE]", 2);
    ExpectRefusal({"delete"}, "the command \"delete\" takes NAME... [-o FILE]", 2);
    ExpectRefusal({"delete", "Base", "--unset"}, "the command \"delete\" takes no --unset", 2);
    ExpectRefusal({"delete", "Base", "--in-place"}, "the command \"delete\" takes no --in-place", 2);
    ExpectRefusal({"list", "--lossy"}, "the command \"list\" takes no --lossy", 2);
    ExpectRefusal({"export", "-o", "x", "y"}, "the command \"export\" takes no -o", 2);
    ExpectRefusal({"list", "--colour"}, "there is no option \"--colour\"; `--` before a text makes it none", 2);
    ExpectRefusal({"set", "Base", "note", "x", "-o"}, "\"-o\" needs a file", 2);
    for (const auto& [arguments, message] :
         std::vector<std::pair<std::vector<std::string>, std::string>>{{{}, "--schema is missing"},
                                                                       {{"sheet.json", "list"}, "--schema is missing"},
                                                                       {{"--schema"}, "\"--schema\" needs a file"},
                                                                       {{"--schema", "s"}, "the sheet is missing"}})
    {
        const Answer answer = RunBare(arguments);
        EXPECT_EQ(answer.status, 2);
        EXPECT_EQ(answer.err,
                  "styles-inspect: " + message + "\nstyles-inspect: `styles-inspect --help` tells how it is used\n");
    }
}

#if !defined(_WIN32) // there arguments are not bytes

TEST_F(Program, AnArgumentThatIsNoUtf8IsRefused)
{
    const Answer answer = Run({"show", "\xff"});
    EXPECT_EQ(answer.err, "styles-inspect: argument 5 is no UTF-8\n");
    EXPECT_EQ(answer.status, 2);
}

#endif

TEST_F(Program, WhatFollowsTwoDashesIsNoOption)
{
    EXPECT_EQ(Run({"set", "--", "Base", "note", "--help"}).out,
              "\"Base\" note: \"all\" -> \"--help\"\nsaved to sheet.json\n");
}

TEST_F(Program, HelpAndVersionNeedNoFiles)
{
    const Answer help = RunBare({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* word : {"list", "tree", "show NAME", "set NAME PATH VALUE", "flatten NAME", "delete NAME...",
                             "export FILE", "--schema", "--in-place", "Status:"})
    {
        EXPECT_THAT(help.out, HasSubstr(word));
    }
    const Answer version = RunBare({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "styles-inspect " + std::to_string(STYLES_VERSION_MAJOR) + '.' +
                               std::to_string(STYLES_VERSION_MINOR) + '.' + std::to_string(STYLES_VERSION_PATCH) +
                               '\n');
}

TEST_F(Program, AnAnswerThatCannotBeWrittenIsAFailure)
{
    const Answer answer = RunBare({"--schema", "schema.json", "sheet.json", "list"}, Support::Output::Refused);
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.err, "styles-inspect: the answer cannot be written\n");
}

TEST_F(Program, EveryCommandWorksOnTheDataAtHand)
{
    for (const DataSet& data : DataSets())
    {
        for (const std::vector<std::string>& command :
             std::vector<std::vector<std::string>>{{"list"}, {"tree"}, {"export", "first.json"}})
        {
            std::vector<std::string> arguments{"--schema", data.schema.string(), data.sheet.string()};
            arguments.insert(arguments.end(), command.begin(), command.end());
            EXPECT_EQ(RunBare(arguments).status, 0);
        }
        EXPECT_EQ(RunBare({"--schema", data.schema.string(), "first.json", "export", "second.json"}).status, 0);
        EXPECT_EQ(Read("first.json"), Read("second.json"));
    }
}

} // namespace Inspect::Testing
