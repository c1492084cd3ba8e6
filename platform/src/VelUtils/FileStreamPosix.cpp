#ifndef _WIN32

#    include "VelUtils/Stream.h"

#    include "FileNames.h"

#    include <algorithm>
#    include <cerrno>
#    include <climits>
#    include <cstring>
#    include <fcntl.h>
#    include <sys/file.h>
#    include <sys/stat.h>
#    include <unistd.h>
#    include <utility>
#    include <vector>

namespace VelUtils
{

namespace
{

/// Owns a file descriptor.
class Descriptor
{
public:
    explicit Descriptor(int number = -1) noexcept : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept
    {
        std::swap(m_number, other.m_number);
        return *this;
    }
    ~Descriptor()
    {
        if (m_number >= 0)
        {
            close(m_number);
        }
    }

    int Get() const noexcept { return m_number; }
    explicit operator bool() const noexcept { return m_number >= 0; }

private:
    int m_number;
};

/// Calls a function of the system again while a signal interrupts it.
template <class Call>
auto Repeat(Call call)
{
    auto result = call();
    while (result < 0 && errno == EINTR)
    {
        result = call();
    }
    return result;
}

bool ToSystemPath(const VelString& path, std::string& bytes)
{
    VelPlatform::VelStringA utf8;
    if (!VelPlatform::TryToNarrow(path, utf8) || std::strlen(utf8.c_str()) != utf8.size())
    {
        return false;
    }
    bytes = utf8.c_str();
    return !bytes.empty();
}

class FileReader final : public Stream::Device
{
public:
    explicit FileReader(Descriptor file) : m_file(std::move(file)) {}

    bool Read(void* target, std::size_t size, std::size_t& read) override
    {
        const ssize_t got =
            Repeat([&] { return ::read(m_file.Get(), target, std::min<std::size_t>(size, SSIZE_MAX)); });
        read = got < 0 ? 0 : static_cast<std::size_t>(got);
        return got >= 0;
    }
    bool Write(const void*, std::size_t) override { return false; }
    bool Commit() override { return true; }

private:
    Descriptor m_file;
};

/// The end of a chain of symbolic links; false when it has none.
bool ResolveLinks(std::string& path)
{
    constexpr int kLongestChain = 40; // the limit of the system itself
    for (int i = 0; i < kLongestChain; ++i)
    {
        char target[PATH_MAX];
        const ssize_t size = readlink(path.c_str(), target, sizeof target);
        if (size < 0)
        {
            return errno == EINVAL || errno == ENOENT; // no link, or nothing there yet
        }
        if (static_cast<std::size_t>(size) == sizeof target)
        {
            return false;
        }
        const std::string_view destination(target, static_cast<std::size_t>(size));
        path = (destination.starts_with('/') ? std::string() : FolderOf(path)) + std::string(destination);
    }
    return false;
}

bool IsAt(int file, const std::string& path)
{
    struct stat opened = {};
    struct stat there = {};
    return fstat(file, &opened) == 0 && lstat(path.c_str(), &there) == 0 && opened.st_dev == there.st_dev &&
           opened.st_ino == there.st_ino;
}

/// Removes a file that a writer has left behind. Living writers hold a lock on theirs. False when something stays
/// there.
bool RemoveLeftover(const std::string& path)
{
    const Descriptor file(open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file)
    {
        return errno == ENOENT;
    }
    struct stat found = {};
    return fstat(file.Get(), &found) == 0 && S_ISREG(found.st_mode) && flock(file.Get(), LOCK_EX | LOCK_NB) == 0 &&
           IsAt(file.Get(), path) && unlink(path.c_str()) == 0;
}

/// Makes a file that was not there and locks it.
Descriptor CreateLocked(const std::string& path, mode_t mode)
{
    Descriptor file(
        Repeat([&] { return open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, mode); }));
    if (!file)
    {
        return file;
    }
    // Between the two calls another writer may take it for a leftover, and does not where there are no locks.
    const bool lost = flock(file.Get(), LOCK_EX | LOCK_NB) != 0 ? errno == EWOULDBLOCK : !IsAt(file.Get(), path);
    return lost ? Descriptor() : std::move(file);
}

bool FlushFolder(const std::string& path)
{
    const Descriptor folder(open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    // A folder that may not be read, or that its file system cannot flush, is as safe as it gets.
    return !folder || Repeat([&] { return fsync(folder.Get()); }) == 0 || errno != EIO;
}

class FileWriter final : public Stream::Device
{
public:
    static std::unique_ptr<FileWriter> Create(std::string path);

    ~FileWriter() override
    {
        if (!m_committed)
        {
            unlink(m_temporary.c_str());
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

    bool CreateTemporary(mode_t mode);
    bool WriteThrough(const char* bytes, std::size_t size);

    static constexpr std::size_t kBufferSize = 64 * 1024;

    std::string m_target;
    std::string m_folder;
    std::string m_temporary;
    std::vector<char> m_buffer;
    Descriptor m_file;
    mode_t m_mode = 0;
    bool m_keepsMode = false;
    bool m_committed = true; // until there is a file to be removed
};

std::unique_ptr<FileWriter> FileWriter::Create(std::string path)
{
    if (path.find('/') == std::string::npos)
    {
        path.insert(0, "./");
    }
    if (!ResolveLinks(path) || path.back() == '/')
    {
        return nullptr;
    }
    std::unique_ptr<FileWriter> writer(new FileWriter);
    struct stat old = {};
    mode_t mode = S_IRUSR | S_IWUSR | S_IRGRP | S_IWGRP | S_IROTH | S_IWOTH;
    if (lstat(path.c_str(), &old) == 0)
    {
        if (!S_ISREG(old.st_mode) || faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) != 0)
        {
            return nullptr;
        }
        writer->m_keepsMode = true;
        writer->m_mode = old.st_mode & static_cast<mode_t>(07777);
        mode = (old.st_mode & static_cast<mode_t>(0777)) | S_IRUSR | S_IWUSR;
    }
    writer->m_folder = FolderOf(path);
    writer->m_target = std::move(path);
    writer->m_buffer.reserve(kBufferSize);
    return writer->CreateTemporary(mode) ? std::move(writer) : nullptr;
}

bool FileWriter::CreateTemporary(mode_t mode)
{
    const long longest = pathconf(m_folder.c_str(), _PC_NAME_MAX);
    const std::size_t longestName = longest > 0 ? static_cast<std::size_t>(longest) : NAME_MAX;
    for (int number = 0; number < kSavingNames; ++number)
    {
        std::string name =
            m_folder + SavingName(std::string_view(m_target).substr(m_folder.size()), number, longestName);
        // All names are looked at, also when there is a file already: a crash may have left any of them.
        if (RemoveLeftover(name) && m_committed)
        {
            m_file = CreateLocked(name, mode);
            m_committed = !m_file;
            m_temporary = std::move(name);
        }
    }
    return !m_committed;
}

bool FileWriter::WriteThrough(const char* bytes, std::size_t size)
{
    while (size > 0)
    {
        const ssize_t taken =
            Repeat([&] { return write(m_file.Get(), bytes, std::min<std::size_t>(size, SSIZE_MAX)); });
        if (taken <= 0)
        {
            return false;
        }
        bytes += taken;
        size -= static_cast<std::size_t>(taken);
    }
    return true;
}

bool FileWriter::Write(const void* source, std::size_t size)
{
    const char* const bytes = static_cast<const char*>(source);
    if (size <= kBufferSize - m_buffer.size())
    {
        m_buffer.insert(m_buffer.end(), bytes, bytes + size);
        return true;
    }
    const bool flushed = WriteThrough(m_buffer.data(), m_buffer.size());
    m_buffer.clear();
    return flushed && WriteThrough(bytes, size);
}

bool FileWriter::Commit()
{
    // Where the system has no such modes, there is nothing to be kept.
    const auto keepMode = [this] { return fchmod(m_file.Get(), m_mode) == 0 || errno == EPERM || errno == ENOTSUP; };
    if (!WriteThrough(m_buffer.data(), m_buffer.size()) || (m_keepsMode && !keepMode()) ||
        Repeat([&] { return fsync(m_file.Get()); }) != 0 || rename(m_temporary.c_str(), m_target.c_str()) != 0)
    {
        return false;
    }
    m_committed = true;
    return FlushFolder(m_folder);
}

} // namespace

Stream FileStream::Create(const VelString& path)
{
    std::string bytes;
    return ToSystemPath(path, bytes) ? Stream(FileWriter::Create(std::move(bytes))) : Stream();
}

Stream FileStream::Open(const VelString& path)
{
    std::string bytes;
    if (!ToSystemPath(path, bytes))
    {
        return Stream();
    }
    Descriptor file(Repeat([&] { return open(bytes.c_str(), O_RDONLY | O_CLOEXEC); }));
    struct stat opened = {};
    if (!file || fstat(file.Get(), &opened) != 0 || S_ISDIR(opened.st_mode))
    {
        return Stream();
    }
    return Stream(std::make_unique<FileReader>(std::move(file)));
}

} // namespace VelUtils

#endif
