/// \file
/// What the user typed.
#pragma once

#include "Commands.h"
#include "Failure.h"

#include <string>
#include <vector>

namespace Inspect
{

/// A command as the user sees it.
struct Command
{
    const wchar_t* name;
    const char* usage; ///< the arguments behind the name
    const char* summary;
    std::size_t argumentCount;        ///< with `takesMore`, at least
    std::vector<std::string> options; ///< that this command takes
    void (*run)(Session& session);    ///< null for a command that reads its sheets by itself
    bool takesMore = false;
    bool needsOutput = false; ///< -o has to be given
    int (*runAlone)(Task& task) = nullptr;
    Status trouble = Status::BadInput; ///< the status when the command cannot do what it is asked
};

/// A command line that makes sense.
struct CommandLine
{
    VelString schemaPath;
    VelString sheetPath;
    const Command* command = nullptr; ///< null when `answer` is all that was asked for
    Request request;
    std::string answer; ///< help or version
};

/// \throws Failure with `Status::BadUsage`.
[[nodiscard]] CommandLine ParseCommandLine(const std::vector<VelString>& arguments);

} // namespace Inspect
