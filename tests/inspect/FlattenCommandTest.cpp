#include "InspectTools.h"

#include "Output.h"
#include "OwnValues.h"

#include <gmock/gmock.h>

namespace Inspect::Testing
{

using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

class FlattenCommand : public InspectProgram
{
protected:
    DataSet Small() const { return {m_folder / "schema.json", m_folder / "sheet.json", 3}; }

    /// A schema whose category "style" holds lists of itself.
    void WriteSelfContainingSchema()
    {
        Write("schema.json", R"({"version": 1, "base": {"uiName": "S", "properties": [
            {"name": "note", "type": "string", "default": ""}]},
            "namedSubstyles": {"style": [{"name": "a", "elementCategory": "style"},
                                         {"name": "b", "elementCategory": "style"}]},
            "lists": {"style": [{"name": "parts", "elementCategory": "style"}]}})");
    }
};

TEST_F(FlattenCommand, WritesTheFlattenedStyleAndLeavesTheSheetAlone)
{
    const std::string before = Read("sheet.json");
    const Answer answer = Run({"flatten", "größe"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.out, R"({
 "id": "x-1",
 "original": "Size",
 "fill": {
  "angle": "30",
  "color": "red",
  "gradient": {
   "stops": [
    {
     "at": "0"
    },
    {
     "at": "0.5"
    }
   ]
  }
 },
 "note": "all"
}
)");
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(Read("sheet.json"), before);
}

TEST_F(FlattenCommand, TellsWhichValuesTheStyleTakesOverAndSaves)
{
    const std::string before = Read("sheet.json");
    const auto looks = LooksOf(Small());
    const Answer answer = Run({"flatten", "Größe", "-o", "new.json"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.out, R"("Größe": parent "Base" -> (none), takes over
  fill.color: "red"
  fill.gradient: (gradient)
  fill.gradient.stops: (list of 2)
  fill.gradient.stops[0].at: 0
  fill.gradient.stops[1].at: 0.5
  note: "all"
saved to new.json
)");
    EXPECT_EQ(answer.status, 0);
    EXPECT_EQ(Read("sheet.json"), before);
    const Answer inPlace = Run({"flatten", "Größe", "--in-place"});
    EXPECT_THAT(inPlace.out, ::testing::EndsWith("\nsaved to sheet.json\n"));
    EXPECT_EQ(Read("sheet.json"), Read("new.json"));
    EXPECT_THAT(DifferencesOf(looks, LooksOf(Small())), IsEmpty());
    EXPECT_EQ(Run({"flatten", "Größe", "-o", "-"}).out, Read("new.json")); // once more, with nothing left to do
}

TEST_F(FlattenCommand, SubstylesAndElementsOfListsAreToldOfByThemselves)
{
    Write("sheet.json", R"({"stop": {"Half": {"at": "0.5"}}, "gradient": {"Dawn": {"kind": "dawn"},
        "G": {"inherits": "Dawn", "stops": [{}, {"inherits": "Half"}]}},
        "style": {"S": {"fill": {"gradient": {"inherits": "Dawn"}}}}})");
    EXPECT_EQ(Run({"flatten", "G", "-o", "new.json"}).out, R"("G": parent "Dawn" -> (none), takes over
  kind: "dawn"
"G" stops[1]: parent "Half" -> (none), takes over
  stops[1].at: 0.5
saved to new.json
)");
    EXPECT_EQ(Run({"flatten", "S", "-o", "new.json"}).out, R"("S" fill.gradient: parent "Dawn" -> (none), takes over
  fill.gradient.kind: "dawn"
saved to new.json
)");
    EXPECT_EQ(Run({"flatten", "Half", "-o", "new.json"}).out, "saved to new.json\n");
}

TEST_F(FlattenCommand, NothingOfAStyleInheritsAnyMoreAndAllThatDependOnItLookAsBefore)
{
    for (const DataSet& original : DataSets())
    {
        const DataSet data = SavedTo(m_folder, original);
        const auto looks = LooksOf(data);
        const DataSet flattened{data.schema, m_folder / "flattened.json", data.styleCount};
        for (const VelString& name : NamesOf(data))
        {
            SCOPED_TRACE(Shown(name));
            RunHere(data, flattened.sheet, {VelString(L"flatten"), VelString(L"--"), name});
            const auto dependants = DependantsOf(data, name);
            EXPECT_THAT(DifferencesOf(Select(looks, dependants), LooksOf(flattened, dependants)), IsEmpty());
            OpenSheet open(flattened.schema, flattened.sheet);
            const Style& style = *open.Get().GetStyle(name);
            EXPECT_EQ(style.GetParent(), nullptr);
            ForEachOwnValue(
                style, [](const OwnValue&) {},
                [](const InnerStyle& inner) { EXPECT_EQ(inner.style->GetParent(), nullptr); });
            EXPECT_FALSE(style.HasParentalDependency());
        }
    }
}

TEST_F(FlattenCommand, WhatIsNewerThanTheSheetIsWarnedOf)
{
    Write("sheet.json", R"({"version": 3, "style": {"A": {"fill": {"glow": "1"}}, "B": {"inherits": "A"}}})");
    const Answer answer = Run({"flatten", "B"});
    EXPECT_EQ(answer.err,
              "styles-inspect: warning: sheet.json: 1 value of fill.glow left out: new since version 4, and "
              "the sheet has version 3\n");
    EXPECT_EQ(answer.out, "{\n \"fill\": {}\n}\n");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(FlattenCommand, AStyleThatContainsItselfIsRefusedSinceItHasNoEnd)
{
    WriteSelfContainingSchema();
    Write("sheet.json", R"({"style": {"A": {"a": {"inherits": "A", "note": "inner"}},
                            "L": {"parts": [{"inherits": "L", "note": "element"}]}, "C": {"inherits": "A"}}})");
    ExpectRefusal(
        {"flatten", "A", "--in-place"},
        "\"A\" a.a: (style, inherits \"A\", which this is inside of) -> (none)\nstyles-inspect: nothing was done, "
        "since these values cannot be kept; --lossy gives them up");
    EXPECT_EQ(Run({"flatten", "A"}).status, 1);
    EXPECT_EQ(Run({"flatten", "L"}).status, 1);
    const Answer lossy = Run({"flatten", "A", "--in-place", "--lossy"});
    EXPECT_THAT(lossy.err, HasSubstr("warning: \"A\" a.a: "));
    EXPECT_EQ(lossy.status, 0);
    EXPECT_THAT(Run({"tree"}).out, Not(HasSubstr("closed")));
    EXPECT_EQ(Run({"flatten", "A", "--in-place"}).status, 0);
}

TEST_F(FlattenCommand, AStyleThatUnfoldsToTooMuchIsRefused)
{
    WriteSelfContainingSchema();
    std::string sheet = R"({"style": {"S40": {})";
    for (int index = 0; index < 40; ++index)
    {
        const std::string next = R"({"inherits": "S)" + std::to_string(index + 1) + "\"}";
        sheet += ", \"S" + std::to_string(index) + R"(": {"a": )" + next + R"(, "b": )" + next + "}";
    }
    Write("sheet.json", sheet + "}}");
    ExpectRefusal({"flatten", "S0"}, "\"S0\" contains itself, or too much to be looked through");
    std::vector<std::string> all{"delete"};
    for (int index = 0; index <= 40; ++index)
    {
        all.push_back("S" + std::to_string(index));
    }
    ExpectRefusal(all, "\"S0\" contains itself, or too much to be looked through");
}

TEST_F(FlattenCommand, AClosedChainIsOpened)
{
    Write("sheet.json", R"({"style": {"A": {"inherits": "B", "note": "a"}, "B": {"inherits": "A", "level": "2"}}})");
    const auto looks = LooksOf(Small());
    EXPECT_EQ(Run({"flatten", "A", "--in-place"}).out,
              "\"A\": parent \"B\" -> (none), takes over\n  level: 2\nsaved to sheet.json\n");
    EXPECT_THAT(DifferencesOf(looks, LooksOf(Small())), IsEmpty());
}

TEST_F(FlattenCommand, WhatHeirsOfAnotherCategorySeeThroughTheStyleIsKept)
{
    // B passes the place of A on to C, and cannot have one itself.
    Write("sheet.json", R"({"stop": {"A": {"at": "0.5"}, "C": {"inherits": "B"}},
                            "gradient": {"B": {"inherits": "A", "kind": "k", "stops": []}}})");
    EXPECT_EQ(Run({"flatten", "B", "--in-place"}).out,
              "\"B\": parent \"A\" -> (none), takes over nothing\n\"C\" takes over at: 0.5\nsaved to sheet.json\n");
    EXPECT_THAT(Run({"show", "C"}).out, HasSubstr("at        0.5    own\n"));
}

TEST_F(FlattenCommand, WhatHeirsOfAnotherCategoryCannotKeepIsRefused)
{
    Write("sheet.json", R"({"fill": {"A": {"color": "red"}, "C": {"inherits": "B"}},
                            "gradient": {"B": {"inherits": "A", "kind": "k", "stops": []}}})");
    const std::string before = Read("sheet.json");
    const Answer answer = Run({"flatten", "B", "--in-place"});
    EXPECT_THAT(answer.err, ::testing::StartsWith("styles-inspect: \"C\" gradient: (none) -> (none: "));
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(Read("sheet.json"), before);
    EXPECT_EQ(Run({"flatten", "B"}).out, "{\n \"kind\": \"k\",\n \"stops\": []\n}\n"); // nobody else is touched
}

TEST_F(FlattenCommand, BadInputIsRefused)
{
    ExpectRefusal({"flatten", "None"}, "sheet.json: there is no style \"None\"; `list` shows those there are");
    ExpectRefusal({"flatten", ""}, "sheet.json: there is no style \"\"; `list` shows those there are");
    ExpectRefusal({"flatten", "Base", "-o", "absent/out.json"},
                  "absent/out.json: cannot be written; nothing was saved");
    Write("sheet.json", R"({"style": {"Base": [})");
    EXPECT_EQ(Run({"flatten", "Base", "--in-place"}).status, 1);
    EXPECT_EQ(Read("sheet.json"), R"({"style": {"Base": [})");
}

} // namespace Inspect::Testing
