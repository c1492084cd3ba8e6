#include "TextHash.h"

#include <chrono>
#include <cstring>
#include <random>

namespace VelUtils
{

namespace
{

/// Another number in each process.
std::uint64_t Seed() noexcept
{
    try
    {
        std::random_device device;
        return std::uint64_t{device()} << 32 | device();
    }
    catch (...) // a system without a source of chance: where things lie is some
    {
        static const char place = 0;
        const auto now = static_cast<std::uint64_t>(std::chrono::steady_clock::now().time_since_epoch().count());
        return now * 0x9E3779B97F4A7C15u ^ reinterpret_cast<std::uintptr_t>(&place);
    }
}

/// The product with its upper half folded in, by which also the upper bits of `a` reach the lower ones of the result.
std::uint64_t Mix(std::uint64_t a, std::uint64_t b) noexcept
{
    const std::uint64_t low = (a & 0xFFFFFFFF) * b;
    const std::uint64_t high = (a >> 32) * b + (low >> 32);
    return low ^ (high >> 32) ^ (high << 32);
}

} // namespace

std::uint64_t HashText(const VelPlatform::VelString& text) noexcept
{
    static const std::uint64_t seed = Seed();
    const std::uint64_t factor = (seed ^ 0x9E3779B97F4A7C15u) | 1;
    constexpr std::size_t kPerWord = sizeof(std::uint64_t) / sizeof(wchar_t);
    const wchar_t* const units = text.c_str();
    const std::size_t size = text.size();
    const auto word = [units](std::size_t at) {
        std::uint64_t value = 0;
        std::memcpy(&value, units + at, sizeof value);
        return value;
    };
    // Two lanes: names are short, and a chain of multiplications is what costs.
    std::uint64_t first = seed ^ size;
    std::uint64_t second = ~seed;
    std::size_t at = 0;
    for (; size - at >= 2 * kPerWord; at += 2 * kPerWord)
    {
        first = Mix(first ^ word(at), factor);
        second = Mix(second ^ word(at + kPerWord), factor);
    }
    if (size - at >= kPerWord)
    {
        first = Mix(first ^ word(at), factor);
        at += kPerWord;
    }
    for (; at < size; ++at)
    {
        second = Mix(second ^ static_cast<std::uint64_t>(units[at]), factor);
    }
    // Names that differ in one digit must not end side by side: every bit has to reach the lowest ones.
    const std::uint64_t hash = Mix(first ^ ((second << 31) | (second >> 33)), factor);
    return hash ^ (hash >> 32);
}

} // namespace VelUtils
