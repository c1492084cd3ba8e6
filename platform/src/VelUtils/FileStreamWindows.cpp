#ifdef _WIN32

#    define NOMINMAX
#    define WIN32_LEAN_AND_MEAN
#    include "FileNames.h"
#    include "VelPlatform/Unicode.h"
#    include "VelUtils/Stream.h"

#    include <algorithm>
#    include <cstddef>
#    include <cwchar>
#    include <utility>
#    include <vector>
#    include <windows.h>

namespace VelUtils
{

namespace
{

constexpr DWORD kLargestStep = 1 << 20;

/// Owns a file handle.
class File
{
public:
    explicit File(HANDLE handle = INVALID_HANDLE_VALUE) noexcept : m_handle(handle) {}
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { Close(); }

    bool Close() noexcept
    {
        const bool closed = m_handle == INVALID_HANDLE_VALUE || CloseHandle(m_handle) != 0;
        m_handle = INVALID_HANDLE_VALUE;
        return closed;
    }
    void Open(HANDLE handle) noexcept { m_handle = handle; }
    HANDLE Get() const noexcept { return m_handle; }
    explicit operator bool() const noexcept { return m_handle != INVALID_HANDLE_VALUE; }

private:
    HANDLE m_handle;
};

bool IsSystemPath(const VelString& path)
{
    return !path.empty() && std::wcslen(path.c_str()) == path.size();
}

class FileReader final : public Stream::Device
{
public:
    explicit FileReader(HANDLE file) : m_file(file) {}

    bool Read(void* target, std::size_t size, std::size_t& read) override
    {
        DWORD got = 0;
        const bool done = ReadFile(m_file.Get(), target, static_cast<DWORD>(std::min<std::size_t>(size, kLargestStep)),
                                   &got, nullptr) != 0;
        read = got;
        return done;
    }
    bool Write(const void*, std::size_t) override { return false; }
    bool Commit() override { return true; }

private:
    File m_file;
};

/// The file at the end of the links of a path, when there is one. False when it is no file but a device.
bool ResolveLinks(const VelString& path, std::wstring& resolved)
{
    resolved.assign(path.c_str(), path.size());
    const File file(CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                OPEN_EXISTING, 0, nullptr));
    if (file && GetFileType(file.Get()) != FILE_TYPE_DISK)
    {
        return false;
    }
    const DWORD size = file ? GetFinalPathNameByHandleW(file.Get(), nullptr, 0, 0) : 0;
    if (size > 0)
    {
        std::wstring name(size, L'\0');
        const DWORD written = GetFinalPathNameByHandleW(file.Get(), name.data(), size, 0);
        if (written > 0 && written < size)
        {
            name.resize(written);
            resolved = name;
        }
    }
    return true;
}

/// Who may do what with the file that is there; empty when that is unknown, or there is none.
std::vector<std::byte> AccessRightsOf(const std::wstring& path)
{
    DWORD size = 0;
    GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<std::byte> rights(size);
    if (size == 0 || !GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, rights.data(), size, &size))
    {
        rights.clear();
    }
    return rights;
}

class FileWriter final : public Stream::Device
{
public:
    static std::unique_ptr<FileWriter> Create(const VelString& path);

    ~FileWriter() override
    {
        m_file.Close();
        if (!m_committed)
        {
            DeleteFileW(m_temporary.c_str());
        }
    }

    bool Read(void*, std::size_t, std::size_t& read) override
    {
        read = 0;
        return false;
    }
    bool Write(const void* source, std::size_t size) override;
    bool Commit() override;

private:
    FileWriter() = default;

    bool CreateTemporary(const std::wstring& folder, const VelPlatform::VelStringA& name, std::size_t longestName);

    std::wstring m_target;
    std::wstring m_temporary;
    File m_file;
    bool m_committed = true; // until there is a file to be removed
};

std::unique_ptr<FileWriter> FileWriter::Create(const VelString& path)
{
    constexpr std::size_t kLongestName = 255;
    std::unique_ptr<FileWriter> writer(new FileWriter);
    std::wstring& target = writer->m_target;
    if (!ResolveLinks(path, target))
    {
        return nullptr;
    }
    const DWORD attributes = GetFileAttributesW(target.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES &&
        (attributes & (FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_READONLY)) != 0)
    {
        return nullptr;
    }
    const std::size_t folderSize = target.find_last_of(L"/\\:") + 1;
    VelPlatform::VelStringA name;
    if (target.size() - folderSize > kLongestName ||
        !VelPlatform::TryToNarrow(std::wstring_view(target).substr(folderSize), name) || name.empty())
    {
        return nullptr;
    }
    return writer->CreateTemporary(target.substr(0, folderSize), name, kLongestName) ? std::move(writer) : nullptr;
}

bool FileWriter::CreateTemporary(const std::wstring& folder, const VelPlatform::VelStringA& name,
                                 std::size_t longestName)
{
    std::vector<std::byte> rights = AccessRightsOf(m_target);
    SECURITY_ATTRIBUTES security{sizeof(SECURITY_ATTRIBUTES), rights.data(), FALSE};
    for (int number = 0; number < kSavingNames; ++number)
    {
        std::wstring temporary = folder + VelPlatform::ToWide(SavingName(name, number, longestName)).c_str();
        if (!m_committed)
        {
            DeleteFileW(temporary.c_str());
            continue;
        }
        m_temporary = std::move(temporary); // before there is a file, so that nothing that throws leaves one behind
        // It is shared with nobody: what another writer is working on is opened, or deleted, by none.
        m_file.Open(CreateFileW(m_temporary.c_str(), GENERIC_WRITE, 0, rights.empty() ? nullptr : &security,
                                CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
        m_committed = !m_file;
    }
    return !m_committed;
}

bool FileWriter::Write(const void* source, std::size_t size)
{
    const char* bytes = static_cast<const char*>(source);
    while (size > 0)
    {
        DWORD taken = 0;
        if (!WriteFile(m_file.Get(), bytes, static_cast<DWORD>(std::min<std::size_t>(size, kLargestStep)), &taken,
                       nullptr) ||
            taken == 0)
        {
            return false;
        }
        bytes += taken;
        size -= taken;
    }
    return true;
}

bool FileWriter::Commit()
{
    if (!FlushFileBuffers(m_file.Get()) || !m_file.Close())
    {
        return false;
    }
    m_committed =
        MoveFileExW(m_temporary.c_str(), m_target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
    return m_committed;
}

} // namespace

Stream FileStream::Create(const VelString& path)
{
    return IsSystemPath(path) ? Stream(FileWriter::Create(path)) : Stream();
}

Stream FileStream::Open(const VelString& path)
{
    if (!IsSystemPath(path))
    {
        return Stream();
    }
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    return file == INVALID_HANDLE_VALUE ? Stream() : Stream(std::make_unique<FileReader>(file));
}

} // namespace VelUtils

#endif
