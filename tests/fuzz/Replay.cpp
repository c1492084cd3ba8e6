// Runs a fuzz target over files instead of over what a fuzzer thinks up: every file given, and every file in
// every folder given. This is the main function of the fuzz targets in ordinary builds, so that each input once
// found is a test from then on.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace
{

std::vector<std::filesystem::path> FilesUnder(const std::filesystem::path& path)
{
    std::vector<std::filesystem::path> files;
    if (!std::filesystem::is_directory(path))
    {
        files.push_back(path);
        return files;
    }
    for (const auto& entry : std::filesystem::recursive_directory_iterator(path))
    {
        if (entry.is_regular_file())
        {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

bool Replay(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    if (!file)
    {
        std::cerr << "cannot read " << path << '\n';
        return false;
    }
    std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    // Said before the run, so that the input that crashes is the last one named.
    std::cout << path.string() << std::endl;
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    return true;
}

} // namespace

int main(int argumentCount, char** arguments)
{
    std::size_t count = 0;
    for (int i = 1; i < argumentCount; ++i)
    {
        for (const auto& file : FilesUnder(arguments[i]))
        {
            if (!Replay(file))
            {
                return 1;
            }
            ++count;
        }
    }
    if (count == 0)
    {
        std::cerr << "no input to replay\n";
        return 1;
    }
    return 0;
}
