#include "InspectTools.h"

#include <gmock/gmock.h>

namespace Inspect::Testing
{

using ::testing::HasSubstr;

class DiffCommand : public InspectProgram
{
protected:
    Answer Diff(const std::string& before, const std::string& after)
    {
        Write("before.json", before);
        Write("after.json", after);
        return RunBare({"--schema", "schema.json", "diff", "before.json", "after.json"});
    }

    /// Sheets with one style that is different in what is told.
    void ExpectChange(const std::string& before, const std::string& after, const std::string& lines)
    {
        SCOPED_TRACE(before + " -> " + after);
        const std::string base = R"({"version": 4, "gradient": {"Dawn": {"stops": [{"at": "0.5"}]}}, "style": {
            "Base": {"note": "all", "fill": {"color": "red", "gradient": {"inherits": "Dawn"}}}, "Box": )";
        const Answer answer = Diff(base + before + "}}", base + after + "}}");
        EXPECT_EQ(answer.err, "");
        EXPECT_EQ(answer.out, "changed \"Box\" (style)\n" + lines + "0 added, 0 removed, 1 changed\n");
        EXPECT_EQ(answer.status, 1);
    }
};

TEST_F(DiffCommand, SheetsThatAreTheSameAreToldByTheStatusAlone)
{
    const Answer answer = RunBare({"--schema", "schema.json", "diff", "sheet.json", "sheet.json"});
    EXPECT_EQ(answer.out + answer.err, "");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(DiffCommand, TheOrderOfADocumentAndTheFormOfItsValuesMakeNoDifference)
{
    const Answer answer = Diff(R"({"version": 3, "style": {"A": {"level": "2", "note": "x"}, "B": {}}})",
                               R"({"style": {"B": {}, "A": {"note": "x", "level": 2}}, "version": 3})");
    EXPECT_EQ(answer.out + answer.err, "");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(DiffCommand, TellsStylesThatCameAndWentInTheOrderOfTheirNames)
{
    const Answer answer = Diff(R"({"style": {"b": {}, "C": {}, "Z": {"inherits": "b"}}})",
                               R"({"style": {"A": {"inherits": "C"}, "C": {}}, "fill": {"D": {}}})");
    EXPECT_EQ(answer.out, "added \"A\" (style, inherits \"C\")\n"
                          "removed \"b\" (style)\n"
                          "added \"D\" (fill)\n"
                          "removed \"Z\" (style, inherits \"b\")\n"
                          "2 added, 2 removed, 0 changed\n");
    EXPECT_EQ(answer.status, 1);
}

TEST_F(DiffCommand, TellsVersionAndCategoryAndNamesThatDifferInCase)
{
    const Answer answer =
        Diff(R"({"version": 2, "style": {"Box": {}, "Heir": {"inherits": "Box"}, "X": {"note": "n"}}})",
             R"({"version": 3, "style": {"BOX": {}, "Heir": {"inherits": "BOX"}}, "fill": {"X": {"angle": "1"}}})");
    EXPECT_EQ(answer.out, "version: 2 -> 3\n"
                          "changed \"BOX\" (style)\n"
                          "  name: \"Box\" -> \"BOX\"\n"
                          "changed \"X\" (fill)\n"
                          "  category: style -> fill\n"
                          "  set angle: (nothing) -> 1\n"
                          "  cleared note: \"n\" -> (nothing)\n"
                          "0 added, 0 removed, 2 changed\n");
}

TEST_F(DiffCommand, TellsValuesThatAreSetClearedAndChanged)
{
    ExpectChange(R"({})", R"({"level": "2"})", "  set level: 1 -> 2\n");
    ExpectChange(R"({"level": "2"})", R"({})", "  cleared level: 2 -> 1\n");
    ExpectChange(R"({"level": "2"})", R"({"level": "3"})", "  changed level: 2 -> 3\n");
    ExpectChange(R"({"inherits": "Base", "note": "x"})", R"({"inherits": "Base"})",
                 "  cleared note: \"x\" -> \"all\"\n");
    ExpectChange(R"({"note": "a\nb"})", R"({"note": "\u202e"})", "  changed note: \"a\\nb\" -> \"\\u{202E}\"\n");
}

TEST_F(DiffCommand, TellsValuesThatMovedBetweenOwnAndInheritedWithEqualEffect)
{
    ExpectChange(R"({"inherits": "Base", "note": "all"})", R"({"inherits": "Base"})",
                 "  now inherited note: \"all\", as before\n");
    ExpectChange(R"({"inherits": "Base"})", R"({"inherits": "Base", "note": "all"})",
                 "  now own note: \"all\", as inherited before\n");
    ExpectChange(R"({"level": "1"})", R"({})", "  now inherited level: 1, as before\n");
}

TEST_F(DiffCommand, TellsNewParentsOfStylesAndOfStylesInside)
{
    ExpectChange(R"({"inherits": "Base"})", R"({})", "  parent: \"Base\" -> (nothing)\n");
    ExpectChange(R"({"fill": {}})", R"({"fill": {"inherits": "Base"}})", "  fill: parent: (nothing) -> \"Base\"\n");
}

TEST_F(DiffCommand, GoesIntoSubstyles)
{
    ExpectChange(R"({"inherits": "Base", "fill": {"angle": "30"}})",
                 R"({"inherits": "Base", "fill": {"color": "red"}})",
                 "  now own fill.color: \"red\", as inherited before\n"
                 "  cleared fill.angle: 30 -> 0\n");
    ExpectChange(R"({})", R"({"fill": {"angle": "30"}})",
                 "  set fill: (none) -> (fill)\n"
                 "  set fill.angle: 0 -> 30\n");
    ExpectChange(R"({"inherits": "Base", "fill": {"color": "red"}})", R"({"inherits": "Base"})",
                 "  now inherited fill: (fill), as before\n"
                 "  now inherited fill.color: \"red\", as before\n");
}

TEST_F(DiffCommand, GoesIntoLists)
{
    ExpectChange(R"({"fill": {"gradient": {"stops": [{"at": "0"}, {"at": "1"}]}}})",
                 R"({"fill": {"gradient": {"stops": [{"at": "0.5"}, {"at": "1"}, {"at": "2"}]}}})",
                 "  changed fill.gradient.stops: (list of 2) -> (list of 3)\n"
                 "  changed fill.gradient.stops[0].at: 0 -> 0.5\n"
                 "  set fill.gradient.stops[2].at: 0 -> 2\n");
    ExpectChange(R"({"inherits": "Base", "fill": {"gradient": {"inherits": "Dawn", "stops": [{"at": "0.5"}]}}})",
                 R"({"inherits": "Base", "fill": {"gradient": {"inherits": "Dawn"}}})",
                 "  now inherited fill.gradient.stops: (list of 1), as before\n"
                 "  now inherited fill.gradient.stops[0].at: 0.5, as before\n");
}

TEST_F(DiffCommand, TellsTheIdentityOfAStyleOnce)
{
    ExpectChange(R"({"id": "x-1", "original": "One", "fill": {}})", R"({"id": "x-2", "fill": {}})",
                 "  changed id: \"x-1\" -> \"x-2\"\n"
                 "  cleared original: \"One\" -> (nothing)\n");
}

TEST_F(DiffCommand, ClosedChainsAndStylesThatContainThemselvesAreCompared)
{
    const std::string closed = R"({"style": {"A": {"inherits": "B"}, "B": {"inherits": "A"},
        "C": {"nested": {"inherits": "C", "note": "1"}}}})";
    EXPECT_EQ(Diff(closed, closed).status, 0);
    const Answer answer = Diff(closed, R"({"style": {"A": {"inherits": "B"}, "B": {"inherits": "A", "note": "x"},
        "C": {}}})");
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.out, HasSubstr("set note: \"\" -> \"x\""));
    EXPECT_THAT(answer.out, HasSubstr("cleared nested: "));
}

TEST_F(DiffCommand, AnswersInJson)
{
    Write("after.json", R"({"version": 3, "gradient": {"Dawn": {"stops": [{"at": "0"}, {"at": "0.5"}]}},
        "style": {"Base": {"note": "all", "fill": {"gradient": {"inherits": "Dawn"}}}}})");
    const Answer answer = RunBare({"--schema", "schema.json", "diff", "sheet.json", "after.json", "--json"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.out, R"json({
 "before": "sheet.json",
 "after": "after.json",
 "differences": [
  {
   "kind": "cleared",
   "style": "Base",
   "category": "style",
   "path": "fill.color",
   "before": "\"red\"",
   "after": "\"white\""
  },
  {
   "kind": "removed",
   "style": "Größe",
   "category": "style",
   "path": null,
   "before": "(style, inherits \"Base\")",
   "after": null
  }
 ]
}
)json");
}

TEST_F(DiffCommand, TroubleHasAStatusOfItsOwn)
{
    const Answer missing = RunBare({"--schema", "schema.json", "diff", "sheet.json", "missing.json"});
    EXPECT_EQ(missing.status, 2);
    EXPECT_EQ(missing.err, "styles-inspect: missing.json: cannot be read\n");
    Write("broken.json", R"({"style": {"A": {"level": "high"}}})");
    const Answer broken = RunBare({"--schema", "schema.json", "diff", "broken.json", "sheet.json"});
    EXPECT_EQ(broken.status, 2);
    EXPECT_THAT(broken.err, HasSubstr("style.A.level"));
    EXPECT_EQ(RunBare({"--schema", "missing.json", "diff", "sheet.json", "sheet.json"}).status, 1 + 1);
    EXPECT_EQ(RunBare({"--schema", "schema.json", "diff", "sheet.json"}).status, 2);
    EXPECT_EQ(RunBare({"--schema", "schema.json", "sheet.json", "diff", "sheet.json"}).status, 2);
}

TEST_F(DiffCommand, WhatReadingPassesOverIsWarnedOf)
{
    const Answer answer = Diff(R"({"style": {"A": {"colour": "red"}}})", R"({"style": {"A": {}}})");
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(answer.err, "styles-inspect: warning: before.json: style.A.colour: the schema has no such property "
                          "(passed over)\n");
}

TEST_F(DiffCommand, ADeletedParentLeavesTheSameEffectBehind)
{
    const DataSet data = DataSets().front();
    const std::filesystem::path smaller = m_folder / "smaller.json";
    RunHere(data, smaller, {VelString(L"delete"), VelString(L"Way")});
    const Answer answer = RunBare({"--schema", data.schema.string(), "diff", data.sheet.string(), smaller.string()});
    EXPECT_EQ(answer.status, 1);
    EXPECT_THAT(answer.out, HasSubstr("  parent: \"Way\" -> \"Plan element\"\n"
                                      "  now own fill: (fill), as inherited before\n"));
    EXPECT_EQ(answer.out.find("\n  set "), std::string::npos) << answer.out;
    EXPECT_EQ(answer.out.find("\n  cleared "), std::string::npos) << answer.out;
}

} // namespace Inspect::Testing
