#include "FileNames.h"

#include <cstdint>

namespace VelUtils
{

namespace
{

/// FNV-1a in 64 bits, as 16 hexadecimal digits.
std::string Checksum(std::string_view text)
{
    std::uint64_t sum = 0xCBF29CE484222325u;
    for (const char c : text)
    {
        sum = (sum ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
    }
    std::string digits;
    for (int shift = 60; shift >= 0; shift -= 4)
    {
        digits += "0123456789abcdef"[(sum >> shift) & 15];
    }
    return digits;
}

} // namespace

std::string SavingName(std::string_view target, int number, std::size_t longestName)
{
    const std::string ending = ".saving~" + std::to_string(number);
    if (target.size() + ending.size() <= longestName)
    {
        return std::string(target) + ending;
    }
    const std::string sum = "~" + Checksum(target);
    const std::size_t taken = sum.size() + ending.size();
    std::size_t kept = taken < longestName ? longestName - taken : 0;
    const auto isContinuation = [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; };
    while (kept > 0 && kept < target.size() && isContinuation(target[kept]))
    {
        --kept;
    }
    return std::string(target.substr(0, kept)) + sum + ending;
}

std::string FolderOf(std::string_view path)
{
    return std::string(path.substr(0, path.rfind('/') + 1));
}

} // namespace VelUtils
