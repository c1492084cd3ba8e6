#include "InspectTools.h"

#include "Output.h"

#include <gmock/gmock.h>

namespace Inspect::Testing
{

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class DeleteCommand : public InspectProgram
{
protected:
    DataSet Small() const { return {m_folder / "schema.json", m_folder / "sheet.json", 3}; }

    /// What the styles of the sheet look like, but for one of them.
    static std::map<std::string, Look> LooksWithout(const DataSet& data, const std::string& name)
    {
        auto looks = LooksOf(data);
        looks.erase(name);
        return looks;
    }
};

TEST_F(DeleteCommand, TellsWhatTheDependantsTakeOverAndSaves)
{
    const auto looks = LooksWithout(Small(), "\"Base\"");
    const Answer answer = Run({"delete", "base"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.out, R"("Größe": parent "Base" -> (none), takes over
  fill.color: "red"
  fill.gradient: (gradient, inherits "Dawn")
  note: "all"
deleted "Base"
saved to sheet.json
)");
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(DifferencesOf(looks, LooksOf(Small())), IsEmpty());
}

TEST_F(DeleteCommand, TheParentOfTheDeletedStyleTakesItsPlace)
{
    Write("sheet.json", R"({"style": {"A": {"level": "1"}, "B": {"inherits": "A", "note": "b"},
        "C": {"inherits": "B", "note": "c"}, "D": {"inherits": "C"}}})");
    EXPECT_EQ(Run({"delete", "B"}).out,
              "\"C\": parent \"B\" -> \"A\", takes over nothing\ndeleted \"B\"\nsaved to sheet.json\n");
    EXPECT_EQ(Run({"delete", "C", "-o", "new.json"}).out,
              "\"D\": parent \"C\" -> \"A\", takes over\n  note: \"c\"\ndeleted \"C\"\nsaved to new.json\n");
}

TEST_F(DeleteCommand, SubstylesAndElementsOfListsAreDependantsToo)
{
    Write("sheet.json", R"({"stop": {"Half": {"at": "0.5"}}, "gradient": {"Dawn": {"kind": "dawn"},
        "G": {"stops": [{}, {"inherits": "Half"}]}}, "style": {"S": {"fill": {"gradient": {"inherits": "Dawn"}}}}})");
    EXPECT_EQ(Run({"delete", "Half", "Dawn"}).out, R"("G" stops[1]: parent "Half" -> (none), takes over
  stops[1].at: 0.5
"S" fill.gradient: parent "Dawn" -> (none), takes over
  fill.gradient.kind: "dawn"
deleted "Half"
deleted "Dawn"
saved to sheet.json
)");
}

TEST_F(DeleteCommand, SeveralStylesOfAChainGoTogether)
{
    Write("sheet.json", R"({"style": {"A": {"note": "a"}, "B": {"inherits": "A", "level": "2"},
                            "C": {"inherits": "B", "locked": "1"}, "D": {"inherits": "C"}, "E": {}}})");
    const auto look = LooksOf(Small()).at("\"D\"");
    EXPECT_EQ(Run({"delete", "C", "A", "B"}).out, R"("D": parent "C" -> (none), takes over
  note: "a"
  level: 2
  locked: 1
deleted "C"
deleted "A"
deleted "B"
saved to sheet.json
)");
    EXPECT_EQ(LooksOf(Small()).at("\"D\""), look);
    EXPECT_EQ(NamesOf(Small()), (std::vector<VelString>{VelString(L"D"), VelString(L"E")}));
}

TEST_F(DeleteCommand, AStyleThatIsNamedTwiceIsDeletedOnce)
{
    EXPECT_EQ(Run({"delete", "Größe", "GRÖßE"}).out, "deleted \"Größe\"\nsaved to sheet.json\n");
}

TEST_F(DeleteCommand, AllThatDependedOnAStyleLookAsBeforeWhicheverIsDeleted)
{
    for (const DataSet& original : DataSets())
    {
        const DataSet data = SavedTo(m_folder, original);
        const auto looks = LooksOf(data);
        const DataSet left{data.schema, m_folder / "left.json", data.styleCount - 1};
        std::size_t compared = 0;
        for (const VelString& name : NamesOf(data))
        {
            SCOPED_TRACE(Shown(name));
            RunHere(data, left.sheet, {VelString(L"delete"), VelString(L"--"), name});
            EXPECT_EQ(NamesOf(left).size(), looks.size() - 1);
            auto dependants = DependantsOf(data, name);
            dependants.erase(Quoted(name));
            if (!dependants.empty())
            {
                EXPECT_THAT(DifferencesOf(Select(looks, dependants), LooksOf(left, dependants)), IsEmpty());
                compared += dependants.size();
            }
        }
        EXPECT_GT(compared, 0u);
    }
}

TEST_F(DeleteCommand, ASubstyleKeepsItsDefaultsWhereItsOwnerWouldGiveItOthers)
{
    Write("sheet.json", R"({"gradient": {"Plain": {}}, "fill": {"Bare": {}},
        "style": {"Red": {"fill": {"color": "red", "gradient": {"kind": "radial", "stops": [{"at": "1"}]}}},
                  "S": {"inherits": "Red", "fill": {"inherits": "Bare"}},
                  "T": {"inherits": "Red", "fill": {"gradient": {"inherits": "Plain"}}}}})");
    auto looks = LooksOf(Small());
    EXPECT_EQ(Run({"delete", "Bare", "Plain"}).out, R"("S" fill: parent "Bare" -> (none), takes over
  fill.color: "white"
  fill.gradient: (gradient)
  fill.gradient.kind: "linear"
  fill.gradient.stops: (list of 0)
"T" fill.gradient: parent "Plain" -> (none), takes over
  fill.gradient.kind: "linear"
  fill.gradient.stops: (list of 0)
deleted "Bare"
deleted "Plain"
saved to sheet.json
)");
    looks.erase("\"Bare\"");
    looks.erase("\"Plain\"");
    looks.at("\"S\"").at("fill.gradient") = "(a style)"; // it holds what the defaults were
    EXPECT_THAT(DifferencesOf(looks, LooksOf(Small())), IsEmpty());
}

TEST_F(DeleteCommand, ClosedChainsEnd)
{
    Write("sheet.json", R"({"style": {"A": {"inherits": "B", "note": "a"}, "B": {"inherits": "A", "level": "2"},
                            "C": {"inherits": "C"}, "D": {"inherits": "C"}}})");
    const auto look = LooksOf(Small()).at("\"B\"");
    EXPECT_EQ(Run({"delete", "A", "C"}).status, 0);
    EXPECT_EQ(LooksOf(Small()).at("\"B\""), look);
    EXPECT_THAT(Run({"tree"}).out, Not(HasSubstr("closed")));
}

TEST_F(DeleteCommand, AStyleThatInheritsFromItsHolderIsDeletedWithIt)
{
    Write("sheet.json", R"({"style": {"A": {"nested": {"inherits": "A", "note": "inner"}}, "B": {"level": "3"}}})");
    EXPECT_EQ(Run({"delete", "A"}).out, "deleted \"A\"\nsaved to sheet.json\n");
    EXPECT_EQ(NamesOf(Small()), std::vector<VelString>{VelString(L"B")});
}

TEST_F(DeleteCommand, WhatCannotBeKeptIsRefusedUnlessTheUserGivesItUp)
{
    // What B looks like inside has no end, and goes on in A.
    Write("sheet.json", R"({"style": {"A": {"nested": {"inherits": "A", "note": "inner"}}, "B": {"inherits": "A"}}})");
    const std::string before = Read("sheet.json");
    const Answer refused = Run({"delete", "A"});
    EXPECT_THAT(refused.err, ::testing::StartsWith("styles-inspect: \"B\" nested."));
    EXPECT_THAT(refused.err, ::testing::EndsWith("styles-inspect: nothing was done, since these values cannot be kept; "
                                                 "--lossy gives them up\n"));
    EXPECT_EQ(refused.out, "");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(Read("sheet.json"), before);
    const Answer lossy = Run({"delete", "A", "--lossy"});
    EXPECT_THAT(lossy.err, ::testing::StartsWith("styles-inspect: warning: \"B\" nested."));
    EXPECT_EQ(lossy.status, 0);
    EXPECT_EQ(NamesOf(Small()), std::vector<VelString>{VelString(L"B")});
}

TEST_F(DeleteCommand, TheDocumentAloneGoesToTheStandardOutput)
{
    Run({"delete", "Base", "-o", "new.json"});
    EXPECT_EQ(Run({"delete", "Base", "-o", "-"}).out, Read("new.json"));
}

TEST_F(DeleteCommand, AStyleWhoseNameLooksLikeAnOptionIsDeletedBehindTwoDashes)
{
    Write("sheet.json", R"({"style": {"--help": {}, "B": {}}})");
    EXPECT_EQ(Run({"delete", "--", "--help"}).out, "deleted \"--help\"\nsaved to sheet.json\n");
}

TEST_F(DeleteCommand, BadInputIsRefusedAndNothingIsDeleted)
{
    ExpectRefusal({"delete", "Base", "None"}, "sheet.json: there is no style \"None\"; `list` shows those there are");
    ExpectRefusal({"delete", ""}, "sheet.json: there is no style \"\"; `list` shows those there are");
    ExpectRefusal({"delete", "Base", "-o", "absent/out.json"}, "absent/out.json: cannot be written; nothing was saved");
    Write("sheet.json", R"({"style": {"Base": [})");
    EXPECT_EQ(Run({"delete", "Base"}).status, 1);
    EXPECT_EQ(Read("sheet.json"), R"({"style": {"Base": [})");
    Write("sheet.json", R"({"style": {"Base": {"colour": "red"}, "B": {}}})");
    EXPECT_THAT(Run({"delete", "B"}).err, HasSubstr("not saved, since what was passed over would be lost"));
    EXPECT_EQ(Read("sheet.json"), R"({"style": {"Base": {"colour": "red"}, "B": {}}})");
}

} // namespace Inspect::Testing
