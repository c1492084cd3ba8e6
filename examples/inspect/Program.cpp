#include "Program.h"

#include "CommandLine.h"
#include "Failure.h"
#include "Output.h"

#include <exception>
#include <new>
#include <sstream>
#include <string>

namespace Inspect
{

namespace
{

/// Each line of a message behind the name of the program.
void WriteMessage(std::ostream& err, const std::string& message)
{
    std::istringstream lines(message);
    for (std::string line; std::getline(lines, line);)
    {
        err << "styles-inspect: " << line << '\n';
    }
}

void RunCommand(const CommandLine& line, std::ostream& out, std::ostream& err)
{
    Schema schema(ReadDocument(line.schemaPath));
    const RegisteredSchema registered(schema);
    Sheet sheet(schema, line.sheetPath);
    for (const std::string& loss : sheet.GetLosses())
    {
        err << "styles-inspect: warning: " << loss << " (passed over)\n";
    }
    for (const std::string& warning : sheet.GetWarnings())
    {
        err << "styles-inspect: warning: " << warning << '\n';
    }
    Session session{schema, sheet, line.request, out, err};
    line.command->run(session);
}

int RunChecked(const std::vector<VelString>& arguments, std::ostream& out, std::ostream& err)
{
    const CommandLine line = ParseCommandLine(arguments);
    if (line.command != nullptr)
    {
        RunCommand(line, out, err);
    }
    else
    {
        out << line.answer;
    }
    if (!out.flush())
    {
        throw Failure("the answer cannot be written");
    }
    return static_cast<int>(Status::Done);
}

} // namespace

int Run(const std::vector<VelString>& arguments, std::ostream& out, std::ostream& err) noexcept
{
    try
    {
        try
        {
            return RunChecked(arguments, out, err);
        }
        catch (const Failure& failure)
        {
            out.flush();
            WriteMessage(err, failure.what());
            return static_cast<int>(failure.GetStatus());
        }
        catch (const std::bad_alloc&)
        {
            err << "styles-inspect: out of memory\n";
        }
        catch (const std::exception& error)
        {
            WriteMessage(err, error.what());
        }
    }
    catch (...) // not even the message could be written
    {}
    return static_cast<int>(Status::BadInput);
}

} // namespace Inspect
