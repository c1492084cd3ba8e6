// What the tests of styles-inspect share: the program, files for it, and sheets of the parts.
#pragma once

#include "support/TemporaryFolder.h"

#include "Failure.h"
#include "Sheet.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/wait.h>
#include <vector>

namespace Inspect::Testing
{

/// A schema that is small enough to know by heart.
inline constexpr const char* SmallSchema = R"({
 "version": 3,
 "styleSets": [
  {"name": "fill", "uiName": "Fill", "properties": [
   {"name": "color", "type": "string", "default": "white"},
   {"name": "angle", "type": "double", "default": "0"},
   {"name": "patternId", "type": "uint", "default": "-1"},
   {"name": "glow", "type": "double", "default": "0", "newSince": 4}]}
 ],
 "categories": [
  {"name": "stop", "uiName": "Stop", "properties": [
   {"name": "at", "type": "double", "default": "0"}]},
  {"name": "gradient", "uiName": "Gradient", "properties": [
   {"name": "kind", "type": "string", "default": "linear"}]}
 ],
 "base": {"name": "style", "uiName": "Graphic style", "properties": [
  {"name": "note", "type": "string", "default": ""},
  {"name": "level", "type": "int", "default": "1"},
  {"name": "locked", "type": "bool", "default": "0"}]},
 "substyles": {"fill": ["gradient"]},
 "namedSubstyles": {"style": [{"name": "nested", "elementCategory": "style"}]},
 "lists": {"gradient": [{"name": "stops", "elementCategory": "stop"}]}
})";

inline constexpr const char* SmallSheet = R"({
 "version": 3,
 "gradient": {
  "Dawn": {"stops": [{"at": "0"}, {"at": "0.5"}]}
 },
 "style": {
  "Base": {"note": "all", "fill": {"color": "red", "gradient": {"inherits": "Dawn"}}},
  "Größe": {"id": "x-1", "original": "Size", "inherits": "Base", "fill": {"angle": "30"}}
 }
})";

struct Answer
{
    int status = -1;
    std::string out;
    std::string err;
};

inline std::string ForShell(const std::string& word)
{
    std::string quoted = "'";
    for (const char c : word)
    {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

/// Files in a folder of their own, and the program to be run on them, with that folder for its working folder.
class InspectProgram : public ::testing::Test
{
protected:
    InspectProgram()
    {
        Write("schema.json", SmallSchema);
        Write("sheet.json", SmallSheet);
    }

    void Write(const std::string& name, std::string_view bytes) { Support::WriteBytes(m_folder / name, bytes); }
    std::string Read(const std::string& name) { return Support::BytesOf(m_folder / name); }

    /// Runs the program with exactly these arguments; `redirection` is handed to the shell behind them.
    Answer RunBare(const std::vector<std::string>& arguments, const std::string& redirection = "")
    {
        std::string line = "cd " + ForShell(m_folder.GetPath().string()) + " && " + ForShell(STYLES_INSPECT_PROGRAM);
        for (const std::string& argument : arguments)
        {
            line += ' ' + ForShell(argument);
        }
        const std::string out = (m_answers / "out").string();
        const std::string err = (m_answers / "err").string();
        line += " >" + ForShell(out) + " 2>" + ForShell(err) + ' ' + redirection;
        const int result = std::system(line.c_str());
        return {WIFEXITED(result) ? WEXITSTATUS(result) : -1, Support::BytesOf(out), Support::BytesOf(err)};
    }

    /// Runs a command on sheet.json under schema.json.
    Answer Run(std::vector<std::string> arguments)
    {
        arguments.insert(arguments.begin(), {"--schema", "schema.json", "sheet.json"});
        return RunBare(arguments);
    }

    /// A command that fails with this message and this status, says nothing else and leaves the sheet as it was.
    void ExpectRefusal(const std::vector<std::string>& arguments, const std::string& message, int status = 1)
    {
        SCOPED_TRACE(::testing::PrintToString(arguments));
        const std::string before = Read("sheet.json");
        const Answer answer = Run(arguments);
        EXPECT_EQ(answer.status, status);
        EXPECT_EQ(answer.out, "");
        EXPECT_EQ(answer.err,
                  "styles-inspect: " + message + "\n" +
                      (status == 2 ? "styles-inspect: `styles-inspect --help` tells how it is used\n" : ""));
        EXPECT_EQ(Read("sheet.json"), before);
        EXPECT_EQ(m_folder.GetNames(), (std::vector<std::string>{"schema.json", "sheet.json"}));
    }

    Support::TemporaryFolder m_folder;
    Support::TemporaryFolder m_answers;
};

/// A schema that is registered, and a sheet under it.
class OpenSheet
{
public:
    OpenSheet(const std::filesystem::path& schemaPath, const std::filesystem::path& sheetPath)
        : m_schema(ReadDocument(Support::ToText(schemaPath))),
          m_registered(m_schema),
          m_sheet(std::make_unique<Sheet>(m_schema, Support::ToText(sheetPath)))
    {}
    ~OpenSheet() { m_sheet.reset(); }
    OpenSheet(const OpenSheet&) = delete;
    OpenSheet& operator=(const OpenSheet&) = delete;

    Sheet& Get() { return *m_sheet; }
    const Schema& GetSchema() const { return m_schema; }

private:
    Schema m_schema;
    RegisteredSchema m_registered;
    std::unique_ptr<Sheet> m_sheet;
};

struct DataSet
{
    std::filesystem::path schema;
    std::filesystem::path sheet;
    std::size_t styleCount;
};

/// The sheet of the example, and a large one where it is at hand.
inline std::vector<DataSet> DataSets()
{
    const std::filesystem::path own = std::filesystem::path(STYLES_SOURCE_FOLDER) / "examples/inspect/data";
    std::vector<DataSet> sets{{own / "drawing-schema.json", own / "drawing-sheet.json", 43}};
    const std::filesystem::path other = std::filesystem::path(STYLES_TEST_DATA) / "draw-bpmn";
    if (std::filesystem::exists(other / "sheet.json"))
    {
        sets.push_back({other / "schema.json", other / "sheet.json", 100});
    }
    return sets;
}

} // namespace Inspect::Testing
