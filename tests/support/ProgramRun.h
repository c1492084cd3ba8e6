// Running a program as a user does: through the shell, for its status and for what it writes.
#pragma once

#if !defined(_WIN32)

#    include "support/TemporaryFolder.h"

#    include <cstdlib>
#    include <filesystem>
#    include <string>
#    include <sys/wait.h>
#    include <vector>

namespace Support
{

struct Answer
{
    int status = -1; ///< -1 when the program did not end by itself
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

/// Runs the program in `folder` with exactly these arguments; `redirection` is handed to the shell behind them.
inline Answer RunProgram(const std::string& program, const std::filesystem::path& folder,
                         const std::vector<std::string>& arguments, const std::string& redirection = "")
{
    const TemporaryFolder answers;
    std::string line = "cd " + ForShell(folder.string()) + " && " + ForShell(program);
    for (const std::string& argument : arguments)
    {
        line += ' ' + ForShell(argument);
    }
    const std::string out = (answers / "out").string();
    const std::string err = (answers / "err").string();
    line += " >" + ForShell(out) + " 2>" + ForShell(err) + ' ' + redirection;
    const int result = std::system(line.c_str());
    return {WIFEXITED(result) ? WEXITSTATUS(result) : -1, BytesOf(out), BytesOf(err)};
}

} // namespace Support

#endif
