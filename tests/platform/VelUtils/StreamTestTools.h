#pragma once

#include "VelUtils/Stream.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <functional>
#include <string_view>
#if !defined(_WIN32)
#    include <sys/wait.h>
#    include <unistd.h>
#endif

namespace Support
{

inline bool Write(VelUtils::Stream& stream, std::string_view bytes)
{
    return stream.Write(bytes.data(), bytes.size());
}

inline bool Save(const std::filesystem::path& path, std::string_view bytes)
{
    VelUtils::Stream stream = VelUtils::FileStream::Create(ToText(path));
    return stream && Write(stream, bytes) && stream.Close();
}

#if !defined(_WIN32)
/// What a child process answers; -1 when it does not end by itself.
inline int InChild(const std::function<int()>& work)
{
    const pid_t child = fork();
    if (child == 0)
    {
        _exit(work());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
#endif

} // namespace Support
