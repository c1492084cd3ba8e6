// Running a program on Windows, where a program gets one line of text and splits it into arguments itself.
#pragma once

#if defined(_WIN32)

#    include "support/TemporaryFolder.h"
#    include "support/WindowsHeader.h"

#    include <filesystem>
#    include <string>
#    include <vector>

namespace Support
{

/// Owns a handle of the system.
class SystemHandle
{
public:
    explicit SystemHandle(HANDLE handle) noexcept : m_handle(handle) {}
    SystemHandle(const SystemHandle&) = delete;
    SystemHandle& operator=(const SystemHandle&) = delete;
    ~SystemHandle() { CloseHandle(m_handle); }

    HANDLE Get() const noexcept { return m_handle; }

private:
    HANDLE m_handle;
};

/// The word as the usual rules read it back: backslashes count double only before a quotation mark.
inline std::wstring ForCommandLine(const std::wstring& word)
{
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : word)
    {
        if (unit == L'"')
        {
            quoted.append(backslashes + 1, L'\\');
        }
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        quoted += unit;
    }
    return quoted.append(backslashes, L'\\') + L'"';
}

/// A file for a child process to write to, or one that may only be read, so that every byte is refused.
inline HANDLE OpenForChild(const std::filesystem::path& path, bool refusing)
{
    SECURITY_ATTRIBUTES inherited{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    return CreateFileW(path.c_str(), refusing ? GENERIC_READ : GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                       &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
}

/// Starts a program in `folder` and waits for its end. Its exit code; -1 when it cannot be started.
inline int RunToEnd(const std::filesystem::path& program, const std::filesystem::path& folder,
                    const std::vector<std::string>& arguments, const std::filesystem::path& out, bool isOutRefusing,
                    const std::filesystem::path& err)
{
    std::filesystem::path path = std::filesystem::absolute(program).make_preferred();
    if (!path.has_extension())
    {
        path += ".exe";
    }
    std::wstring line = ForCommandLine(path.wstring());
    for (const std::string& argument : arguments)
    {
        line += L' ' + ForCommandLine(ToPath(argument).wstring());
    }
    const SystemHandle outFile(OpenForChild(out, isOutRefusing));
    const SystemHandle errFile(OpenForChild(err, false));
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = GetStdHandle(STD_INPUT_HANDLE);
    startup.hStdOutput = outFile.Get();
    startup.hStdError = errFile.Get();
    PROCESS_INFORMATION process{};
    if (!CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, folder.c_str(), &startup,
                        &process))
    {
        return -1;
    }
    const SystemHandle thread(process.hThread);
    const SystemHandle running(process.hProcess);
    DWORD status = 0;
    WaitForSingleObject(running.Get(), INFINITE);
    GetExitCodeProcess(running.Get(), &status);
    return static_cast<int>(status);
}

/// What a console shows of bytes that were written as text.
inline std::string LinesOf(const std::string& bytes)
{
    std::string lines;
    for (std::size_t index = 0; index < bytes.size(); ++index)
    {
        if (bytes.compare(index, 2, "\r\n") != 0)
        {
            lines += bytes[index];
        }
    }
    return lines;
}

} // namespace Support

#endif
