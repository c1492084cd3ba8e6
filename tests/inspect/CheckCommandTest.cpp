#include "InspectTools.h"

#include <gmock/gmock.h>

namespace Inspect::Testing
{

using ::testing::HasSubstr;
using ::testing::StartsWith;

class CheckCommand : public InspectProgram
{
protected:
    Answer Check(std::string_view document, const std::vector<std::string>& options = {})
    {
        Write("document.json", document);
        std::vector<std::string> arguments{"--schema", "schema.json", "check", "document.json"};
        arguments.insert(arguments.end(), options.begin(), options.end());
        const Answer answer = RunBare(arguments);
        EXPECT_EQ(answer.err, "");
        return answer;
    }

    /// A document of which exactly this is told.
    void ExpectFindings(std::string_view document, const std::string& findings, int status)
    {
        SCOPED_TRACE(document);
        const Answer answer = Check(document);
        const std::size_t summary = answer.out.rfind('\n', answer.out.size() - 2);
        EXPECT_EQ(answer.out.substr(0, summary == std::string::npos ? 0 : summary + 1), findings);
        EXPECT_EQ(answer.status, status);
    }
};

TEST_F(CheckCommand, ASheetWithoutAnythingStrangeIsDone)
{
    const Answer answer = Check(R"({"version": 3, "style": {"A": {"note": "x"}}})");
    EXPECT_EQ(answer.out, "0 errors, 0 warnings, 0 hints\n");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(CheckCommand, TellsEverythingAtOnceInTheOrderOfTheDocument)
{
    const Answer answer = Check(R"({
 "colour": {"X": {}},
 "style": {
  "A": {"inherits": "Nobody", "notes": "x",
   "level": "high"},
  "B": {"fill": 7, "note": []}
 },
 "version": "3"
})");
    EXPECT_EQ(
        answer.out,
        "document.json:2:2: warning: colour: the schema has no such category; 1 style passed over "
        "[unknown-category]\n"
        "document.json:4:9: warning: style.A.inherits: there is no style \"Nobody\" to inherit from "
        "[unknown-parent]\n"
        "document.json:4:31: warning: style.A.notes: the schema has no such property [unknown-property]\n"
        "document.json:5:4: error: style.A.level: \"high\" is no value: not a number, or out of range [bad-value]\n"
        "document.json:6:9: warning: style.B.fill: is a number, not an object [wrong-type]\n"
        "document.json:6:20: warning: style.B.note: an array is no value [wrong-type]\n"
        "document.json:8:2: warning: version: is no version [bad-version]\n"
        "1 error, 6 warnings, 0 hints\n");
    EXPECT_EQ(answer.status, 1);
}

TEST_F(CheckCommand, TextThatIsNoJsonOrNoUtf8IsAFindingWithItsPlace)
{
    EXPECT_THAT(Check("{\n  \"style\": ?}").out, StartsWith("document.json:2:12: error: "));
    EXPECT_THAT(Check("{\n  \"style\": ?}").out, HasSubstr(" [malformed-json]\n1 error, 0 warnings, 0 hints\n"));
    ExpectFindings("{\n\n\"\xFF\": 1}", "document.json:3:1: error: the line is no UTF-8 [malformed-text]\n", 1);
    EXPECT_THAT(Check("").out, StartsWith("document.json:1:1: error: "));
    EXPECT_THAT(Check(std::string(2000, '[')).out, HasSubstr("[malformed-json]"));
}

TEST_F(CheckCommand, ColumnsCountCharactersAndLinesEndInThreeWays)
{
    ExpectFindings(
        "\xEF\xBB\xBF{\"style\": {\"日本\": {\"x\": 1}}}",
        "document.json:1:19: warning: style.\"日本\".x: the schema has no such property [unknown-property]\n", 1);
    ExpectFindings("{\r\n\"style\": {\r\"A\": {\n\"x\": 1}}}",
                   "document.json:4:1: warning: style.A.x: the schema has no such property [unknown-property]\n", 1);
}

TEST_F(CheckCommand, FindsMembersBehindTextsWithEscapes)
{
    ExpectFindings(R"({"style": {"A\"\\": {"note": "\\\"}", "\u0078": 1}}})",
                   "document.json:1:39: warning: style.\"A\\\"\\\\\".x: the schema has no such property "
                   "[unknown-property]\n",
                   1);
}

TEST_F(CheckCommand, TellsMembersThatStandTwice)
{
    ExpectFindings("{\"style\": {\"A\": {\"note\": \"x\",\n\"n\\u006Fte\": \"y\"}}}",
                   "document.json:2:1: warning: style.A.note: stands in line 1, column 18 already; the last one counts "
                   "[repeated-member]\n",
                   1);
    const Answer answer = Check(R"({"style": {"A": {"x": 1}}, "style": {"B": {}, "B": {"y": 1}}})");
    EXPECT_EQ(answer.out.find("style.A"), std::string::npos) << "what does not count is not looked at";
    EXPECT_THAT(answer.out, HasSubstr("document.json:1:28: warning: style: stands in line 1, column 2 already"));
    EXPECT_THAT(answer.out, HasSubstr("document.json:1:47: warning: style.B: stands in line 1, column 38 already"));
    EXPECT_THAT(answer.out, HasSubstr("document.json:1:53: warning: style.B.y: the schema has no such property"));
}

TEST_F(CheckCommand, TellsNamesThatTwoStylesHave)
{
    ExpectFindings(R"({"style": {"Box": {}}, "fill": {"BOX": {}}})",
                   "document.json:1:33: error: fill.BOX: there is a style \"Box\" already; case makes no difference "
                   "[repeated-name]\n",
                   1);
}

TEST_F(CheckCommand, TellsWhatIsNoObject)
{
    ExpectFindings("[]", "document.json:1:1: error: a sheet is an object, not an array [bad-shape]\n", 1);
    ExpectFindings(R"({"style": {"A": 1}})",
                   "document.json:1:12: error: style.A: a style is an object, not a number [bad-shape]\n", 1);
    ExpectFindings(R"({"gradient": {"A": {"stops": [{}, 1, null]}}})",
                   "document.json:1:35: warning: gradient.A.stops[1]: is a number, not an object [wrong-type]\n"
                   "document.json:1:38: hint: gradient.A.stops[2]: null is no style [null-value]\n",
                   1);
    ExpectFindings(R"({"style": 5, "id": 5, "version": -1})",
                   "document.json:1:2: warning: style: means nothing as a number [unknown-member]\n"
                   "document.json:1:14: warning: id: means nothing as a number [unknown-member]\n"
                   "document.json:1:23: warning: version: is no version [bad-version]\n",
                   1);
}

TEST_F(CheckCommand, TellsWhatIsNewerThanTheSchemaOrTheSheet)
{
    ExpectFindings(R"({"version": 5, "style": {"A": {"fill": {"glow": "1"}}}})",
                   "document.json:1:2: warning: version: the sheet has version 5, and the schema 3 [newer-version]\n",
                   1);
    ExpectFindings(R"({"style": {"A": {"fill": {"glow": "1"}}}, "version": 3})",
                   "document.json:1:27: warning: style.A.fill.glow: new since version 4, and the sheet has version 3: "
                   "writing leaves it out [newer-property]\n",
                   1);
    EXPECT_THAT(Check(R"({"style": {"A": {"fill": {"glow": "1"}}}})").out, HasSubstr("the sheet has version 0"));
}

TEST_F(CheckCommand, TellsClosedChainsOnceEach)
{
    ExpectFindings(R"({"style": {"T": {"inherits": "A"}, "A": {"inherits": "c"}, "B": {"inherits": "A"},
"C": {"inherits": "B"}, "D": {"inherits": "E"}, "E": {"inherits": "D"}, "S": {"inherits": "s"}}})",
                   "document.json:1:42: warning: style.A.inherits: the parents lead back: \"A\" < \"C\" < \"B\" < "
                   "\"A\", 3 styles [closed-chain]\n"
                   "document.json:2:31: warning: style.D.inherits: the parents lead back: \"D\" < \"E\" < \"D\", 2 "
                   "styles [closed-chain]\n"
                   "document.json:2:79: warning: style.S.inherits: a style does not inherit from itself [own-parent]\n",
                   1);
}

TEST_F(CheckCommand, TellsValuesThatAreReadAsOthers)
{
    ExpectFindings(R"({"fill": {"A": {"angle": "steep"}, "B": {"angle": 1.23456789}}})",
                   "document.json:1:17: warning: fill.A.angle: \"steep\" is no value; it is read as 0 "
                   "[replaced-value]\n"
                   "document.json:1:17: hint: fill.A.angle: the value is the same without this member "
                   "[same-as-inherited]\n"
                   "document.json:1:42: warning: fill.B.angle: a number is read to six digits; a text would keep them "
                   "all [rounded-number]\n",
                   1);
}

TEST_F(CheckCommand, HintsAtWhatChangesNothing)
{
    ExpectFindings(R"({"version": 3, "style": {"Base": {"note": "all", "fill": {"color": "red"}},
"Heir": {"inherits": "Base", "id": "", "note": "all", "level": null,
"fill": {"color": "red", "angle": "0", "gradient": {"stops": [{"at": "0"}, {"at": "1"}]}}}}})",
                   "document.json:2:30: hint: style.Heir.id: means nothing while it is empty [empty-member]\n"
                   "document.json:2:40: hint: style.Heir.note: the value is the same without this member "
                   "[same-as-inherited]\n"
                   "document.json:2:55: hint: style.Heir.level: null is no value [null-value]\n"
                   "document.json:3:10: hint: style.Heir.fill.color: the value is the same without this member "
                   "[same-as-inherited]\n"
                   "document.json:3:26: hint: style.Heir.fill.angle: the value is the same without this member "
                   "[same-as-inherited]\n"
                   "document.json:3:64: hint: style.Heir.fill.gradient.stops[0].at: the value is the same without "
                   "this member [same-as-inherited]\n",
                   0);
}

TEST_F(CheckCommand, AnswersInJson)
{
    const Answer answer = Check(R"({"style": {"A \u0007": {"x": 1}}})", {"--json"});
    EXPECT_EQ(answer.out, R"({
 "file": "document.json",
 "errors": 0,
 "warnings": 1,
 "hints": 0,
 "findings": [
  {
   "severity": "warning",
   "id": "unknown-property",
   "line": 1,
   "column": 25,
   "path": "style.\"A \\u{7}\".x",
   "message": "the schema has no such property"
  }
 ]
}
)");
    EXPECT_EQ(answer.status, 1);
}

TEST_F(CheckCommand, TroubleHasAStatusOfItsOwn)
{
    const Answer answer = RunBare({"--schema", "schema.json", "check", "missing.json"});
    EXPECT_EQ(answer.status, 2);
    EXPECT_EQ(answer.out, "");
    EXPECT_EQ(answer.err, "styles-inspect: missing.json: cannot be read\n");
    EXPECT_EQ(RunBare({"--schema", "sheet.json", "check", "sheet.json"}).status, 2);
    EXPECT_EQ(RunBare({"--schema", "schema.json", "check"}).status, 2);
    EXPECT_EQ(RunBare({"--schema", "schema.json", "check", "sheet.json"}, Support::Output::Refused).status, 2);
}

TEST_F(CheckCommand, LongNamesAndLongWaysAreToldInPart)
{
    const std::string name(100000, 'n');
    const Answer named = Check("{\"style\": {\"" + name + "\": {\"x\": 1, \"y\": 2}}}");
    EXPECT_LT(named.out.size(), 1000u);
    EXPECT_THAT(named.out, HasSubstr("n…\".y: the schema has no such property"));

    std::string deep = "{\"style\": {\"A\": ";
    for (int level = 0; level < 500; ++level)
    {
        deep += "{\"nested\": ";
    }
    deep += "{\"x\": 1, \"x\": 2}" + std::string(500, '}') + "}}";
    const Answer nested = Check(deep);
    EXPECT_LT(nested.out.size(), 2000u);
    EXPECT_THAT(nested.out, HasSubstr("style.A.nested.nested"));
    EXPECT_THAT(nested.out, HasSubstr(".….nested"));
    EXPECT_THAT(nested.out, HasSubstr("nested.x: the schema has no such property"));
    EXPECT_THAT(nested.out, HasSubstr("[repeated-member]"));
}

TEST_F(CheckCommand, ValuesAtTheEndOfALongChainAreNotCompared)
{
    std::string document = "{\"style\": {\"S0\": {\"note\": \"x\"}";
    for (int number = 1; number <= 20000; ++number)
    {
        document += ", \"S" + std::to_string(number) + "\": {\"inherits\": \"S" + std::to_string(number - 1) +
                    "\", \"note\": \"x\"}";
    }
    const Answer answer = Check(document + "}}");
    EXPECT_THAT(answer.out,
                HasSubstr("style.S201.inherits: more than 200 parents, one behind the other; values are "
                          "not compared with what is inherited [long-chain]\n0 errors, 0 warnings, 1 hint"));
    EXPECT_EQ(answer.status, 0);
}

TEST_F(CheckCommand, SheetsOfTheTreeHaveNothingButHints)
{
    const DataSet data = DataSets().front();
    const Answer answer = RunBare({"--schema", data.schema.string(), "check", data.sheet.string()});
    EXPECT_EQ(answer.status, 0) << answer.out;
    EXPECT_THAT(answer.out, HasSubstr("\n0 errors, 0 warnings, "));
}

TEST_F(CheckCommand, StandsBeforeItsFile)
{
    const Answer answer = Run({"check"});
    EXPECT_EQ(answer.status, 2);
    EXPECT_THAT(answer.err, HasSubstr("the command \"check\" stands before its files"));
}

} // namespace Inspect::Testing
