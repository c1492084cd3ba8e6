#include "Sheet.h"

#include "InspectTools.h"
#include "Output.h"

#include <algorithm>

namespace Inspect::Testing
{

namespace
{

/// Reads these bytes as a sheet under that schema and gives the document of the sheet.
std::string ReadAndWrite(const std::filesystem::path& schema, const std::string& bytes)
{
    const Support::TemporaryFolder folder;
    Support::WriteBytes(folder / "sheet.json", bytes);
    OpenSheet open(schema, folder / "sheet.json");
    return open.Get().ToBytes();
}

std::string SmallDocument(const char* sheet)
{
    const Support::TemporaryFolder folder;
    Support::WriteBytes(folder / "schema.json", SmallSchema);
    return ReadAndWrite(folder / "schema.json", sheet);
}

/// The messages of a small sheet, without the path of the file.
template <class Get>
std::vector<std::string> MessagesOf(const char* sheet, const Get& get)
{
    const Support::TemporaryFolder folder;
    Support::WriteBytes(folder / "schema.json", SmallSchema);
    Support::WriteBytes(folder / "sheet.json", sheet);
    OpenSheet open(folder / "schema.json", folder / "sheet.json");
    std::vector<std::string> messages;
    for (const std::string& message : get(open.Get()))
    {
        const std::string path = Shown(Support::ToText(folder / "sheet.json")) + ": ";
        messages.push_back(message.starts_with(path) ? message.substr(path.size()) : message);
    }
    return messages;
}

std::string MistakesOf(const char* sheet)
{
    try
    {
        SmallDocument(sheet);
    }
    catch (const Failure& failure)
    {
        EXPECT_EQ(failure.GetStatus(), Status::BadInput);
        std::string text = failure.what();
        const std::string folders = Shown(Support::ToText(std::filesystem::temp_directory_path()));
        for (std::size_t at = text.find(folders); at != std::string::npos; at = text.find(folders))
        {
            text.erase(at, text.find("sheet.json", at) - at);
        }
        return text;
    }
    return "none";
}

} // namespace

TEST(Sheet, ExportAfterImportAfterExportIsTheSameByteForByte)
{
    for (const DataSet& data : DataSets())
    {
        const std::string first = ReadAndWrite(data.schema, Support::BytesOf(data.sheet));
        const std::string second = ReadAndWrite(data.schema, first);
        EXPECT_EQ(first, second);
        EXPECT_GT(first.size(), 1000u);
    }
}

TEST(Sheet, TheSheetOfTheExampleIsWrittenAsItWasRead)
{
    const DataSet data = DataSets().front();
    EXPECT_EQ(ReadAndWrite(data.schema, Support::BytesOf(data.sheet)), Support::BytesOf(data.sheet));
}

TEST(Sheet, EveryStyleIsThereWithItsParent)
{
    for (const DataSet& data : DataSets())
    {
        const Document document = ReadDocument(Support::ToText(data.sheet));
        OpenSheet open(data.schema, data.sheet);
        std::size_t count = 0;
        const auto& root = document.value.Get<Json::Object>();
        for (std::size_t block = 0; block < root.GetSize(); ++block)
        {
            const auto* styles = root.GetValue(block)->GetIf<Json::Object>();
            for (std::size_t index = 0; styles != nullptr && index < styles->GetSize(); ++index)
            {
                const Styles::Style* style = open.Get().GetStyle(styles->GetValueName(index));
                ASSERT_NE(style, nullptr);
                EXPECT_EQ(style->GetCategoryName().GetText(), root.GetValueName(block));
                const auto* inherits = styles->GetValue(index)->Get<Json::Object>().GetValue(VelString(L"inherits"));
                EXPECT_EQ(open.Get().GetStyleName(style->GetParent()),
                          inherits != nullptr ? inherits->Get<VelString>() : VelString());
                ++count;
            }
        }
        EXPECT_EQ(count, data.styleCount);
    }
}

TEST(Sheet, CategoriesStayInTheOrderOfTheFile)
{
    const std::string written = SmallDocument(R"({"style": {"S": {}}, "stop": {"T": {}}, "gradient": {"G": {}}})");
    EXPECT_LT(written.find("\"style\""), written.find("\"stop\""));
    EXPECT_LT(written.find("\"stop\""), written.find("\"gradient\""));
}

TEST(Sheet, TheIdentityOfTheSheetAndThoseOfItsStylesAreKept)
{
    const std::string written = SmallDocument(R"({"version": 2, "id": "sheet", "style": {"S": {"id": "own"}}})");
    EXPECT_EQ(written, "{\n \"version\": 2.0,\n \"id\": \"sheet\",\n \"style\": {\n  \"S\": {\n   \"id\": "
                       "\"own\"\n  }\n }\n}");
}

TEST(Sheet, WhatTheSchemaDoesNotKnowIsALoss)
{
    const auto losses = MessagesOf(R"({"version": "3", "extra": 1, "paint": {"A": {}, "B": {}}, "style": {"S": {
        "colour": "red", "fill": {"hue": "1"}, "note": ["a"], "nested": 3, "inherits": 7}},
        "gradient": {"G": {"stops": {}}, "H": {"stops": [1, {"on": "2"}]}}})",
                                   [](const Sheet& sheet) { return sheet.GetLosses(); });
    EXPECT_EQ(losses,
              (std::vector<std::string>{
                  "version: is no version", "extra: means nothing as a number",
                  "paint: the schema has no such category; 2 styles passed over",
                  "style.S.colour: the schema has no such property",
                  "style.S.fill.hue: the schema has no such property", "style.S.note: an array is no value",
                  "style.S.nested: is a number, not an object", "style.S.inherits: is a number, not a text",
                  "gradient.G.stops: is an object, not an array", "gradient.H.stops[0]: is a number, not an object",
                  "gradient.H.stops[1].on: the schema has no such property"}));
}

TEST(Sheet, ParentsThatAreNotThereAndLongNumbersAreWarnedOf)
{
    const auto warnings = MessagesOf(R"({"style": {"S": {"inherits": "T", "fill": {"angle": 1.23456789}},
                                                 "U": {"inherits": "u"}}})",
                                     [](const Sheet& sheet) { return sheet.GetWarnings(); });
    EXPECT_EQ(warnings, (std::vector<std::string>{
                            "style.S.inherits: there is no style \"T\" to inherit from",
                            "style.S.fill.angle: a number is read to six digits; a text would keep them all",
                            "style.U.inherits: a style does not inherit from itself"}));
}

TEST(Sheet, ValuesNewerThanTheSheetAreLeftOutAndCounted)
{
    const char* sheet = R"({"version": 3, "style": {"S": {"fill": {"glow": "1"}}, "T": {"fill": {"glow": "2"}}}})";
    EXPECT_EQ(
        MessagesOf(sheet, [](const Sheet& read) { return read.GetValuesLeftOut(); }),
        std::vector<std::string>{"2 values of fill.glow left out: new since version 4, and the sheet has version 3"});
    EXPECT_EQ(SmallDocument(sheet).find("glow"), std::string::npos);
}

TEST(Sheet, EveryMistakeIsNamedWithItsPlace)
{
    EXPECT_EQ(MistakesOf("[1]"), "sheet.json: a sheet is an object, not an array");
    EXPECT_EQ(MistakesOf(R"({"style": {"A b": {"level": "two", "fill": {"patternId": -7}}, "B": true}})"),
              "sheet.json: style.\"A b\".level: \"two\" is no value: not a number, or out of range\n"
              "sheet.json: style.\"A b\".fill.patternId: a number is no value: not a number, or out of range\n"
              "sheet.json: style.B: a style is an object, not a truth value");
    EXPECT_EQ(MistakesOf(R"({"style": {"Box": {}}, "gradient": {"BOX": {}}})"),
              "sheet.json: gradient.BOX: there is a style \"Box\" already; case makes no difference");
}

TEST(Sheet, ADocumentCutOffAnywhereIsRefused)
{
    const std::string whole = SmallSheet;
    for (std::size_t size = 0; size < whole.size(); ++size)
    {
        EXPECT_NE(MistakesOf(whole.substr(0, size).c_str()), "none") << size;
    }
}

TEST(Sheet, AFileThatCannotBeWrittenStaysAsItWas)
{
    const Support::TemporaryFolder folder;
    Support::WriteBytes(folder / "schema.json", SmallSchema);
    Support::WriteBytes(folder / "sheet.json", SmallSheet);
    OpenSheet open(folder / "schema.json", folder / "sheet.json");
    EXPECT_THROW(open.Get().Save(Support::ToText((folder / "absent") / "sheet.json")), Failure);
    EXPECT_THROW(open.Get().Save(Support::ToText(folder.GetPath())), Failure);
    EXPECT_EQ(folder.GetNames(), (std::vector<std::string>{"schema.json", "sheet.json"}));
    open.Get().Save(Support::ToText(folder / "sheet.json"));
    EXPECT_EQ(Support::BytesOf(folder / "sheet.json"), open.Get().ToBytes());
}

} // namespace Inspect::Testing
