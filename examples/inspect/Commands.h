/// \file
/// The commands of the program, a source file each.
#pragma once

#include "Progress.h"
#include "Sheet.h"

#include <ostream>
#include <string>
#include <vector>

namespace Inspect
{

/// What a command line says behind the name of the command.
struct Request
{
    std::vector<VelString> arguments;
    VelString outputPath; ///< -o; empty for the file of the sheet itself
    VelString lookPath;   ///< --look; empty for what the description of the schema says
    bool unset = false;
    bool noDefaults = false;
    bool lossy = false;
    bool inPlace = false;
    bool json = false;
};

/// What a command works with.
struct Session
{
    const Schema& schema;
    Sheet& sheet;
    const Request& request;
    std::ostream& out;
    std::ostream& err;
};

/// What a command works with that reads its sheets, the arguments, by itself.
struct Task
{
    const Schema& schema;
    const Request& request;
    std::ostream& out;
    std::ostream& err;
    Progress& progress;
};

/// \name The commands. Each throws `Failure` when it cannot do what it is asked; nothing is saved then.
/// @{
void RunList(Session& session);
void RunTree(Session& session);
void RunShow(Session& session);
void RunSet(Session& session);
void RunExport(Session& session);
void RunExplain(Session& session);
void RunOverrides(Session& session);
void RunDependents(Session& session);
void RunFlatten(Session& session);
void RunDelete(Session& session);
void RunGallery(Session& session);
/// @}

/// \name The commands that read their sheets by themselves. Each gives the status for the shell, and throws `Failure`
/// when it cannot do what it is asked.
/// @{
[[nodiscard]] int RunCheck(Task& task);
[[nodiscard]] int RunDiff(Task& task);
[[nodiscard]] int RunSchema(Task& task);
/// @}

/// Warns of what was passed over in a sheet's file.
void WarnOfLosses(const Sheet& sheet, std::ostream& err);

/// Writes a file as a whole. \throws Failure when it cannot be written; it is as it was then.
void WriteFile(const VelString& path, const std::string& bytes);

/// The style of that name. \throws Failure when there is none.
[[nodiscard]] Styles::Style& FindStyle(const Sheet& sheet, const VelString& name);

/// Whether both paths lead to one file that is there.
[[nodiscard]] bool AreSameFile(const VelString& one, const VelString& other);

/// Saves the sheet to `path`, "-" being `session.out`. Warns of what the document leaves out because of its version.
/// \throws Failure when this would lose what the sheet's own file holds and the schema does not know (unless
/// `Request::lossy`), or when the file cannot be written; the file is as it was then.
void SaveSheet(Session& session, const VelString& path);

/// Saves the sheet to where the command line says, by default over its own file, and tells so behind `report`. Where
/// the document goes to the standard output, nothing else does. \throws Failure as `SaveSheet` does.
void SaveChanges(Session& session, const std::string& report);

/// Tells the user what a document leaves out.
void WarnOfValuesLeftOut(Session& session, const std::vector<std::string>& messages);

} // namespace Inspect
