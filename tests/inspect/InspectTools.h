// What the tests of styles-inspect share: the program, files for it, and sheets of the parts.
#pragma once

#include "support/ProgramRun.h"

#include "EffectiveValues.h"
#include "Failure.h"
#include "Output.h"
#include "Program.h"
#include "Sheet.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
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

using Support::Answer;

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

    /// Runs the program with exactly these arguments.
    Answer RunBare(const std::vector<std::string>& arguments, Support::Output output = Support::Output::Kept)
    {
        return Support::RunProgram(STYLES_INSPECT_PROGRAM, m_folder.GetPath(), arguments, output);
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

/// Effective values by path: of plain values and lists their texts, of substyles whether they are there.
using Look = std::map<std::string, std::string>;

/// What the styles of a sheet look like, by their names in quotes; of those with these names where some are given.
inline std::map<std::string, Look> LooksOf(const DataSet& data, const std::set<std::string>& names = {})
{
    OpenSheet open(data.schema, data.sheet);
    const Origins origins(open.Get());
    std::map<std::string, Look> looks;
    for (const Style* style : open.Get().GetStyles())
    {
        const std::string name = origins.GetName(*style);
        if (!names.empty() && !names.contains(name))
        {
            continue;
        }
        bool isComplete = false;
        Look& look = looks[name];
        for (const EffectiveValue& row : CollectEffectiveValues(origins, *style, isComplete))
        {
            const bool isSubstyle = row.value != nullptr && row.value->Is<Style*>();
            look[row.path] = !isSubstyle ? row.text : row.value->Get<Style*>() != nullptr ? "(a style)" : "(none)";
        }
        EXPECT_TRUE(isComplete);
    }
    return looks;
}

/// Where styles look different, in a few words each.
inline std::vector<std::string> DifferencesOf(const std::map<std::string, Look>& expected,
                                              const std::map<std::string, Look>& actual)
{
    std::vector<std::string> differences;
    const auto compare = [&differences](const std::string& style, const Look& one, const Look& other, bool bothWays) {
        for (const auto& [path, text] : one)
        {
            const auto found = other.find(path);
            if (found == other.end() || (bothWays && found->second != text))
            {
                differences.push_back(style + ' ' + path + ": " + text + " or " +
                                      (found != other.end() ? found->second : "nothing"));
            }
        }
    };
    for (const auto& [style, look] : expected)
    {
        const auto found = actual.find(style);
        compare(style, look, found != actual.end() ? found->second : Look(), true);
    }
    for (const auto& [style, look] : actual)
    {
        const auto found = expected.find(style);
        compare(style, look, found != expected.end() ? found->second : Look(), false);
    }
    return differences;
}

/// Runs a command in this process on a sheet, saving to `output`, with success.
inline void RunHere(const DataSet& data, const std::filesystem::path& output, const std::vector<VelString>& command)
{
    std::vector<VelString> arguments{VelString(L"--schema"), Support::ToText(data.schema), Support::ToText(data.sheet),
                                     VelString(L"-o"), Support::ToText(output)};
    arguments.insert(arguments.end(), command.begin(), command.end());
    std::ostringstream out;
    std::ostringstream err;
    EXPECT_EQ(Run(arguments, out, err), 0) << err.str();
}

/// The sheet as the program writes it, without what it leaves out, in `folder`.
inline DataSet SavedTo(const Support::TemporaryFolder& folder, const DataSet& data)
{
    const DataSet saved{data.schema, folder / "saved.json", data.styleCount};
    OpenSheet(data.schema, data.sheet).Get().Save(Support::ToText(saved.sheet));
    return saved;
}

/// The names in quotes of a style and of all that depend on it: of those that a change of it could change.
inline std::set<std::string> DependantsOf(const DataSet& data, const VelString& name)
{
    OpenSheet open(data.schema, data.sheet);
    const std::vector<Style*> span{open.Get().GetStyle(name)};
    std::vector<Style*> dependants;
    open.Get().GetDependencies(span, dependants);
    std::set<std::string> names{Quoted(name)};
    for (const Style* style : dependants)
    {
        names.insert(Quoted(open.Get().GetStyleName(style)));
    }
    return names;
}

/// The looks of some of the styles.
inline std::map<std::string, Look> Select(const std::map<std::string, Look>& looks, const std::set<std::string>& names)
{
    std::map<std::string, Look> selected;
    for (const std::string& name : names)
    {
        selected[name] = looks.at(name);
    }
    return selected;
}

/// The names of the styles of a sheet.
inline std::vector<VelString> NamesOf(const DataSet& data)
{
    OpenSheet open(data.schema, data.sheet);
    return open.Get().GetStyleNames();
}

} // namespace Inspect::Testing
