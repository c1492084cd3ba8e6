#pragma once

#include "VelPlatform/String.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace Support
{

/// A path from UTF-8, which is how tests write names on every system.
inline std::filesystem::path ToPath(const std::string& utf8)
{
    return std::u8string(utf8.begin(), utf8.end());
}

inline std::string ToUtf8(const std::filesystem::path& path)
{
    const std::u8string utf8 = path.u8string();
    return std::string(utf8.begin(), utf8.end());
}

/// A new, empty folder for one test; it goes, with all that is in it, when the test is through.
class TemporaryFolder
{
public:
    explicit TemporaryFolder(const std::filesystem::path& parent = std::filesystem::temp_directory_path())
    {
        std::random_device random;
        do
        {
            m_path = parent / ("styles-test-" + std::to_string(random()));
        } while (!std::filesystem::create_directory(m_path));
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    ~TemporaryFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }

    const std::filesystem::path& GetPath() const { return m_path; }
    std::filesystem::path operator/(const std::string& name) const { return m_path / ToPath(name); }

    /// The names in the folder, in order.
    std::vector<std::string> GetNames() const
    {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_path))
        {
            names.push_back(ToUtf8(entry.path().filename()));
        }
        std::sort(names.begin(), names.end());
        return names;
    }

private:
    std::filesystem::path m_path;
};

/// Where files are kept in memory, if the system has such a folder: for tests that write so many that no disk keeps up.
inline std::filesystem::path FolderInMemory()
{
    const std::filesystem::path folder = "/dev/shm";
    std::error_code ignored;
    return std::filesystem::is_directory(folder, ignored) ? folder : std::filesystem::temp_directory_path();
}

inline VelPlatform::VelString ToText(const std::filesystem::path& path)
{
    return VelPlatform::ToWide(ToUtf8(path));
}

inline std::string BytesOf(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteBytes(const std::filesystem::path& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

} // namespace Support
