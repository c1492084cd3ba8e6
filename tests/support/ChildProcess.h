// Work that a test does in another process: one that is killed, that has a full disk or few rights.
#pragma once

#if !defined(_WIN32)

#    include <chrono>
#    include <csignal>
#    include <functional>
#    include <sys/resource.h>
#    include <sys/wait.h>
#    include <thread>
#    include <unistd.h>

namespace Support
{

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

/// Starts a child and kills it after that time. Whether it was still at work.
inline bool KillAfter(std::chrono::microseconds time, const std::function<int()>& work)
{
    const pid_t child = fork();
    if (child == 0)
    {
        _exit(work());
    }
    std::this_thread::sleep_for(time);
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
    return WIFSIGNALED(status);
}

/// A limit on the size of files looks to a writer like a disk that is full. For child processes.
inline bool LimitFileSize(rlim_t bytes)
{
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit limit{bytes, bytes};
    return setrlimit(RLIMIT_FSIZE, &limit) == 0;
}

/// The user whom file modes bind, as whom a superuser's child process goes on.
constexpr uid_t ordinaryUser = 65534;

inline bool BecomeOrdinaryUser()
{
    return geteuid() != 0 || (setgid(ordinaryUser) == 0 && setuid(ordinaryUser) == 0);
}

} // namespace Support

#endif
