#include "Program.h"

#include "CommandLine.h"
#include "Failure.h"
#include "Output.h"
#include "Progress.h"

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

int RunCommand(const CommandLine& line, std::ostream& out, std::ostream& err)
{
    Schema schema(ReadDocument(line.schemaPath));
    const RegisteredSchema registered(schema);
    Progress progress(err);
    if (line.command->runAlone != nullptr)
    {
        Task task{schema, line.request, out, err, progress};
        return line.command->runAlone(task);
    }
    Sheet sheet(schema, line.sheetPath, &progress);
    WarnOfLosses(sheet, err);
    Session session{schema, sheet, line.request, out, err};
    line.command->run(session);
    return static_cast<int>(Status::Done);
}

/// \param trouble becomes the status of a command that cannot do what it is asked
int RunChecked(const std::vector<VelString>& arguments, std::ostream& out, std::ostream& err, Status& trouble)
{
    const CommandLine line = ParseCommandLine(arguments);
    int status = static_cast<int>(Status::Done);
    if (line.command != nullptr)
    {
        trouble = line.command->trouble;
        status = RunCommand(line, out, err);
    }
    else
    {
        out << line.answer;
    }
    if (!out.flush())
    {
        throw Failure("the answer cannot be written");
    }
    return status;
}

} // namespace

int Run(const std::vector<VelString>& arguments, std::ostream& out, std::ostream& err) noexcept
{
    Status trouble = Status::BadInput;
    try
    {
        try
        {
            return RunChecked(arguments, out, err, trouble);
        }
        catch (const Failure& failure)
        {
            out.flush();
            WriteMessage(err, failure.what());
            return static_cast<int>(failure.GetStatus() == Status::BadInput ? trouble : failure.GetStatus());
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
    return static_cast<int>(trouble);
}

} // namespace Inspect
