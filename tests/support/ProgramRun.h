// Running a program as a user does, for its status and for what it writes.
#pragma once

#include "support/TemporaryFolder.h"

#include <filesystem>
#include <string>
#include <vector>
#if defined(_WIN32)
#    include "support/ProgramRunWindows.h"
#else
#    include <cstdlib>
#    include <sys/wait.h>
#endif

namespace Support
{

struct Answer
{
    int status = -1; ///< -1 when the program did not end by itself
    std::string out;
    std::string err;
};

/// What becomes of what a program writes to its output.
enum class Output
{
    Kept,
    Refused ///< every byte
};

#if defined(_WIN32)

/// Runs the program in `folder` with exactly these arguments, which are UTF-8. Its output is given byte by byte; in
/// what it writes of errors, lines end as everywhere.
inline Answer RunProgram(const std::string& program, const std::filesystem::path& folder,
                         const std::vector<std::string>& arguments, Output output = Output::Kept)
{
    const TemporaryFolder answers;
    const std::filesystem::path out = answers / "out";
    const std::filesystem::path err = answers / "err";
    const int status = RunToEnd(program, folder, arguments, out, output == Output::Refused, err);
    return {status, BytesOf(out), LinesOf(BytesOf(err))};
}

#else

inline std::string ForShell(const std::string& word)
{
    std::string quoted = "'";
    for (const char c : word)
    {
        quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    }
    return quoted + "'";
}

/// Runs the program in `folder` with exactly these arguments.
inline Answer RunProgram(const std::string& program, const std::filesystem::path& folder,
                         const std::vector<std::string>& arguments, Output output = Output::Kept)
{
    const TemporaryFolder answers;
    std::string line = "cd " + ForShell(folder.string()) + " && " + ForShell(program);
    for (const std::string& argument : arguments)
    {
        line += ' ' + ForShell(argument);
    }
    const std::string out = (answers / "out").string();
    const std::string err = (answers / "err").string();
    line += " >" + (output == Output::Refused ? "/dev/full" : ForShell(out)) + " 2>" + ForShell(err);
    const int result = std::system(line.c_str());
    return {WIFEXITED(result) ? WEXITSTATUS(result) : -1, BytesOf(out), BytesOf(err)};
}

#endif

} // namespace Support
