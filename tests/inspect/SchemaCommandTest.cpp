#include "InspectTools.h"

#include <gmock/gmock.h>

namespace Inspect::Testing
{

using ::testing::HasSubstr;
using ::testing::StartsWith;

class SchemaCommand : public InspectProgram
{
protected:
    Answer MakeSchema(const std::string& schema)
    {
        return RunBare({"--schema", schema, "schema", "-o", "sheets.json"});
    }

    /// What an independent validator says of documents, a line each.
    std::string Validate(const std::vector<std::string>& documents)
    {
        std::vector<std::string> arguments{"-B", STYLES_SOURCE_FOLDER "/tests/inspect/validate.py", "sheets.json"};
        arguments.insert(arguments.end(), documents.begin(), documents.end());
        const Answer answer = Support::RunProgram("/usr/bin/python3", m_folder.GetPath(), arguments);
        EXPECT_EQ(answer.err, "");
        return answer.out;
    }

    /// The same of one document with this text.
    std::string ValidateText(const std::string& text)
    {
        Write("document.json", text);
        return Validate({"document.json"});
    }
};

TEST_F(SchemaCommand, WritesToTheStandardOutputOrToAFile)
{
    const Answer printed = RunBare({"--schema", "schema.json", "schema"});
    EXPECT_EQ(printed.err, "");
    EXPECT_EQ(printed.status, 0);
    EXPECT_THAT(printed.out, StartsWith("{\n"));
    EXPECT_THAT(printed.out, HasSubstr("\"$schema\": \"https://json-schema.org/draft/2020-12/schema\""));

    const Answer saved = MakeSchema("schema.json");
    EXPECT_EQ(saved.out + saved.err, "");
    EXPECT_EQ(saved.status, 0);
    EXPECT_EQ(Read("sheets.json"), printed.out);
}

TEST_F(SchemaCommand, AFileThatCannotBeWrittenIsTold)
{
    const Answer answer = RunBare({"--schema", "schema.json", "schema", "-o", "missing/sheets.json"});
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(answer.err, "styles-inspect: missing/sheets.json: cannot be written; nothing was saved\n");
}

#if !defined(_WIN32)

TEST_F(SchemaCommand, SheetsAreValidForAnIndependentValidator)
{
    for (const DataSet& data : DataSets())
    {
        ASSERT_EQ(MakeSchema(data.schema.string()).status, 0);
        EXPECT_EQ(Validate({data.sheet.string()}), "valid\n") << data.sheet;
        EXPECT_EQ(Validate({SavedTo(m_folder, data).sheet.string()}), "valid\n") << data.sheet;
    }
}

TEST_F(SchemaCommand, BrokenSheetsAreInvalidAtThePlaceOfTheMistake)
{
    ASSERT_EQ(MakeSchema("schema.json").status, 0);
    EXPECT_EQ(Validate({"sheet.json"}), "valid\n");
    EXPECT_EQ(ValidateText("[]"), "invalid:\n");
    EXPECT_EQ(ValidateText(R"({"color": {}})"), "invalid:\n");
    EXPECT_EQ(ValidateText(R"({"version": "3"})"), "invalid:/version\n");
    EXPECT_EQ(ValidateText(R"({"version": 2.5})"), "invalid:/version\n");
    EXPECT_EQ(ValidateText(R"({"style": []})"), "invalid:/style\n");
    EXPECT_EQ(ValidateText(R"({"style": {"A": 1}})"), "invalid:/style/A\n");
    EXPECT_EQ(ValidateText(R"({"style": {"A": {"inherits": 1}}})"), "invalid:/style/A/inherits\n");
    EXPECT_EQ(ValidateText(R"({"style": {"A": {"notes": ""}}})"), "invalid:/style/A\n");
    EXPECT_EQ(ValidateText(R"({"style": {"A": {"fill": "red"}}})"), "invalid:/style/A/fill\n");
    EXPECT_EQ(ValidateText(R"({"style": {"A": {"fill": {"angle": "steep"}}}})"), "invalid:/style/A/fill/angle\n");
    EXPECT_EQ(ValidateText(R"({"gradient": {"A": {"stops": {}}}})"), "invalid:/gradient/A/stops\n");
    EXPECT_EQ(ValidateText(R"({"gradient": {"A": {"stops": [{}, {"at": []}]}}})"), "invalid:/gradient/A/stops/1/at\n");
}

TEST_F(SchemaCommand, EveryFormOfAValueThatIsReadIsValid)
{
    ASSERT_EQ(MakeSchema("schema.json").status, 0);
    const auto check = [this](const std::string& member, const std::string& value) {
        const bool isFill = member == "patternId" || member == "angle";
        const std::string object = "{\"" + member + "\": " + value + "}";
        const std::string text =
            std::string("{\"version\": 4, \"") + (isFill ? "fill" : "style") + "\": {\"A\": " + object + "}}";
        const bool isValid = ValidateText(text) == "valid\n";
        const Answer answer = RunBare({"--schema", "schema.json", "check", "document.json", "--json"});
        const bool isRead = answer.out.find("\"errors\": 0") != std::string::npos &&
                            answer.out.find("replaced-value") == std::string::npos &&
                            answer.out.find("wrong-type") == std::string::npos;
        EXPECT_EQ(isValid, isRead) << text;
        return isValid;
    };
    for (const char* value : {"\"0.5\"", "\"-3\"", "\"1e-7\"", "\"inf\"", "0.5", "-3", "1e5"})
    {
        EXPECT_TRUE(check("angle", value)) << value;
    }
    for (const char* value : {"\"\"", "\" 1\"", "\"1,5\"", "\"+1\"", "[]", "{}"})
    {
        EXPECT_FALSE(check("angle", value)) << value;
    }
    EXPECT_TRUE(check("patternId", "\"-1\""));
    EXPECT_TRUE(check("patternId", "7"));
    EXPECT_FALSE(check("patternId", "\"-2\""));
    EXPECT_FALSE(check("patternId", "1.5"));
    EXPECT_TRUE(check("level", "\"-12\""));
    EXPECT_TRUE(check("level", "-12"));
    EXPECT_FALSE(check("level", "\"1.5\""));
    EXPECT_FALSE(check("level", "\"\""));
    for (const char* value : {"\"1\"", "\"0\"", "\"true\"", "\"false\"", "true", "false", "1", "0"})
    {
        EXPECT_TRUE(check("locked", value)) << value;
    }
    EXPECT_FALSE(check("locked", "\"yes\""));
    EXPECT_FALSE(check("locked", "2"));
    EXPECT_TRUE(check("note", "\"\""));
    EXPECT_TRUE(check("note", "2"));
    EXPECT_TRUE(check("note", "true"));
    EXPECT_FALSE(check("note", "[]"));
}

TEST_F(SchemaCommand, NamesOfAnyCharactersCanBeReferredTo)
{
    Write("schema.json", R"({"version": 1, "base": {"name": "style", "uiName": "S", "properties": []},
        "styleSets": [{"name": "a/b ~%ü\"", "uiName": "U", "properties": [
            {"name": "x", "type": "int", "default": "0"}]}]})");
    ASSERT_EQ(MakeSchema("schema.json").status, 0);
    EXPECT_EQ(ValidateText(R"({"style": {"A": {"a/b ~%ü\"": {"x": "1"}}}})"), "valid\n");
    EXPECT_EQ(ValidateText(R"({"style": {"A": {"a/b ~%ü\"": {"x": "?"}}}})"), "invalid:/style/A/a/b ~%ü\"/x\n");
}

#endif

} // namespace Inspect::Testing
