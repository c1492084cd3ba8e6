#include "CommandLine.h"

#include "Failure.h"
#include "Output.h"

#include <styles/StylesApi.h>

#include <algorithm>
#include <iterator>
#include <optional>

namespace Inspect
{

namespace
{

const std::vector<Command>& Commands()
{
    static const std::vector<Command> commands{
        {L"list", "", "the styles by category", 0, {}, &RunList},
        {L"tree", "", "who inherits from whom", 0, {}, &RunTree},
        {L"show",
         "NAME [--no-defaults]",
         "every value of a style, and where it comes from",
         1,
         {"--no-defaults"},
         &RunShow},
        {L"explain", "NAME PATH", "every place where a value is looked for, in order", 2, {}, &RunExplain},
        {L"overrides", "NAME", "what a style says itself, and whether it would be so anyway", 1, {}, &RunOverrides},
        {L"dependents", "NAME", "the styles that depend on a style", 1, {}, &RunDependents},
        {L"set",
         "NAME PATH VALUE | NAME PATH --unset",
         "gives a style a value of its own, or takes it away",
         3,
         {"-o", "--unset", "--lossy"},
         &RunSet},
        {L"flatten",
         "NAME [--in-place | -o FILE]",
         "what a style is without inheriting anything: written, or kept in the sheet",
         1,
         {"-o", "--in-place", "--lossy"},
         &RunFlatten},
        {L"delete",
         "NAME... [-o FILE]",
         "takes styles out; those that inherit from them take over what they inherited",
         1,
         {"-o", "--lossy"},
         &RunDelete,
         /*takesMore*/ true},
        {L"gallery",
         "-o FILE.html [--look FILE]",
         "a page that shows the styles as they look, with where their values come from",
         0,
         {"-o", "--look"},
         &RunGallery,
         /*takesMore*/ false,
         /*needsOutput*/ true},
        {L"export", "FILE", "writes the sheet to a file, - being the standard output", 1, {"--lossy"}, &RunExport},
        {L"check",
         "SHEET.json [--json]",
         "everything about a sheet's file that reading it passes over",
         1,
         {"--json"},
         nullptr,
         /*takesMore*/ false,
         /*needsOutput*/ false,
         &RunCheck,
         Status::BadUsage},
        {L"diff",
         "BEFORE.json AFTER.json [--json]",
         "what is different between two sheets, style by style",
         2,
         {"--json"},
         nullptr,
         /*takesMore*/ false,
         /*needsOutput*/ false,
         &RunDiff,
         Status::BadUsage},
        {L"schema",
         "[-o FILE]",
         "a JSON Schema for the sheets of the schema",
         0,
         {"-o"},
         nullptr,
         /*takesMore*/ false,
         /*needsOutput*/ false,
         &RunSchema}};
    return commands;
}

std::string Help()
{
    std::string text = "Reads a style sheet under a schema, and answers questions about it.\n\n"
                       "  styles-inspect --schema SCHEMA.json SHEET.json COMMAND ...\n\nCommands:\n";
    for (const bool alone : {false, true})
    {
        text += alone ? "\n  styles-inspect --schema SCHEMA.json COMMAND ...\n\nCommands:\n" : "";
        for (const Command& command : Commands())
        {
            if ((command.runAlone != nullptr) == alone)
            {
                text += "  " + Shown(command.name) + (*command.usage != 0 ? " " : "") + command.usage + "\n      " +
                        command.summary + '\n';
            }
        }
    }
    return text +
           "\nA PATH leads through substyles and lists to a property: fill.angle, fill.gradient.stops[0].color\n"
           "\nOptions:\n"
           "  --schema FILE   the description of the schema\n"
           "  --no-defaults   show: only what the style or one that it inherits from says\n"
           "  --unset         set: takes the own value away, so that the style inherits again\n"
           "  -o FILE         set, flatten, delete: saves to this file instead of the sheet's own, - being the\n"
           "                  standard output\n"
           "  -o FILE         gallery, schema: what is made is written there\n"
           "  --look FILE     gallery: what the properties are in a drawing, where the schema does not say\n"
           "  --in-place      flatten: saves over the sheet's own file\n"
           "  --lossy         saves over a file also when it held what the schema does not know; flatten, delete:\n"
           "                  also when a style cannot look as before\n"
           "  --json          check, diff: the answer as JSON\n"
           "  --              what follows is no option\n"
           "  --help, --version\n"
           "\nStatus: 0 done, 1 bad input (nothing was saved), 2 bad command line\n"
           "  check: 0 nothing but hints, 1 errors or warnings, 2 trouble\n"
           "  diff: 0 no difference, 1 differences, 2 trouble\n";
}

std::string Version()
{
    return "styles-inspect " + std::to_string(STYLES_VERSION_MAJOR) + '.' + std::to_string(STYLES_VERSION_MINOR) + '.' +
           std::to_string(STYLES_VERSION_PATCH) + '\n';
}

[[noreturn]] void Refuse(const std::string& message)
{
    throw Failure(message + "\n`styles-inspect --help` tells how it is used", Status::BadUsage);
}

/// Whether the argument is an option; negative numbers and "-" are none.
bool LooksLikeOption(const VelString& argument)
{
    return argument.size() > 1 && argument[0] == L'-' && argument[1] != L'.' &&
           !(argument[1] >= L'0' && argument[1] <= L'9');
}

class Parser
{
public:
    explicit Parser(const std::vector<VelString>& arguments) : m_arguments(arguments) {}

    CommandLine Parse()
    {
        bool optionsEnded = false;
        while (m_next < m_arguments.size() && m_line.answer.empty())
        {
            const VelString& argument = m_arguments[m_next++];
            if (!optionsEnded && argument == L"--")
            {
                optionsEnded = true;
            }
            else if (!optionsEnded && LooksLikeOption(argument))
            {
                ReadOption(argument);
            }
            else
            {
                m_words.push_back(argument);
            }
        }
        if (m_line.answer.empty())
        {
            CheckWords();
        }
        return std::move(m_line);
    }

private:
    void ReadOption(const VelString& argument)
    {
        const std::size_t equals = VelStringView(argument).find(L'=');
        const VelString name(VelStringView(argument).substr(0, equals));
        if (name == L"--schema")
        {
            m_line.schemaPath = ValueOf(argument, equals);
        }
        else if (name == L"-o")
        {
            m_line.request.outputPath = ValueOf(argument, equals);
            m_commandOptions.push_back("-o");
        }
        else if (name == L"--look")
        {
            m_line.request.lookPath = ValueOf(argument, equals);
            m_commandOptions.push_back("--look");
        }
        else if (argument == L"--help" || argument == L"-h")
        {
            m_line.answer = Help();
        }
        else if (argument == L"--version")
        {
            m_line.answer = Version();
        }
        else if (bool* flag = FlagOf(argument))
        {
            *flag = true;
            m_commandOptions.push_back(Shown(argument));
        }
        else
        {
            Refuse("there is no option " + Quoted(argument) + "; `--` before a text makes it none");
        }
    }

    bool* FlagOf(const VelString& argument)
    {
        Request& request = m_line.request;
        return argument == L"--unset"         ? &request.unset
               : argument == L"--no-defaults" ? &request.noDefaults
               : argument == L"--lossy"       ? &request.lossy
               : argument == L"--in-place"    ? &request.inPlace
               : argument == L"--json"        ? &request.json
                                              : nullptr;
    }

    /// What stands behind the equals sign, or next.
    VelString ValueOf(const VelString& argument, std::size_t equals)
    {
        VelString value;
        if (equals != VelStringView::npos)
        {
            value = VelString(VelStringView(argument).substr(equals + 1));
        }
        else if (m_next < m_arguments.size())
        {
            value = m_arguments[m_next++];
        }
        if (value.empty())
        {
            Refuse(Quoted(argument) + " needs a file");
        }
        return value;
    }

    static const Command* FindCommand(const VelString& name)
    {
        const auto found = std::find_if(Commands().begin(), Commands().end(),
                                        [&name](const Command& known) { return name == known.name; });
        return found != Commands().end() ? &*found : nullptr;
    }

    static bool IsAlone(const Command* command) { return command != nullptr && command->runAlone != nullptr; }

    void CheckWords()
    {
        if (m_line.schemaPath.empty())
        {
            Refuse("--schema is missing");
        }
        if (m_words.empty() || (m_words.size() == 1 && !IsAlone(FindCommand(m_words[0]))))
        {
            Refuse(m_words.empty() ? "the sheet is missing" : "the command is missing");
        }
        // A command that reads its sheets by itself stands before them.
        const std::size_t place = IsAlone(FindCommand(m_words[0])) ? 0 : 1;
        const Command* command = FindCommand(m_words[place]);
        if (command == nullptr)
        {
            Refuse("there is no command " + Quoted(m_words[place]));
        }
        m_line.command = command;
        if (place == 1 && IsAlone(command))
        {
            Refuse("the command " + Quoted(command->name) + " stands before its files");
        }
        if (place == 1)
        {
            m_line.sheetPath = m_words[0];
        }
        m_line.request.arguments.assign(m_words.begin() + static_cast<std::ptrdiff_t>(place) + 1, m_words.end());
        const std::size_t count = m_line.request.arguments.size() + (m_line.request.unset ? 1 : 0);
        const bool excludeEachOther = m_line.request.inPlace && !m_line.request.outputPath.empty();
        const bool lacksOutput = command->needsOutput && m_line.request.outputPath.empty();
        if (lacksOutput || count < command->argumentCount || (count > command->argumentCount && !command->takesMore) ||
            excludeEachOther)
        {
            Refuse("the command " + Quoted(command->name) + " takes " +
                   (*command->usage != 0 ? command->usage : "no arguments"));
        }
        for (const std::string& option : m_commandOptions)
        {
            if (std::find(command->options.begin(), command->options.end(), option) == command->options.end())
            {
                Refuse("the command " + Quoted(command->name) + " takes no " + option);
            }
        }
    }

    const std::vector<VelString>& m_arguments;
    std::size_t m_next = 0;
    CommandLine m_line;
    std::vector<VelString> m_words;
    std::vector<std::string> m_commandOptions;
};

} // namespace

CommandLine ParseCommandLine(const std::vector<VelString>& arguments)
{
    return Parser(arguments).Parse();
}

} // namespace Inspect
