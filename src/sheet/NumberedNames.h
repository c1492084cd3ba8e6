// Which numbers of names like "Fill 7" are known to be taken.
#pragma once

#include <VelPlatform/String.h>
#include <VelUtils/CaseInsensitiveOrder.h>

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>

namespace Styles::Detail
{

/// Remembers runs of taken numbers, so that the search for a free name need not ask for each of them again: 10,000
/// names from one base are 50 million questions without. Who takes names away must say so; names that are added are
/// found by asking.
///
/// Only what is known to be taken is passed over, so the name that is found is the one that
/// `VelUtils::String::FindUnusedName` finds. Numbers that begin with a zero are asked for one by one.
///
/// Any number of threads may search at the same time, one after the other.
class NumberedNames
{
public:
    using Text = VelPlatform::VelString;

    /// As `VelUtils::String::FindUnusedName`, for the names that `isUsed` has been true for and that have not been
    /// forgotten. \throws what `isUsed` throws, and std::bad_alloc.
    [[nodiscard]] Text FindUnused(const Text& candidate, const std::function<bool(const Text&)>& isUsed);

    /// `name` is not taken any more.
    void Forget(const Text& name) noexcept;

    /// Nothing is taken any more.
    void Clear() noexcept { m_runs.clear(); }

private:
    /// Numbers from the first to the last, which it maps to; no two runs touch.
    using Runs = std::map<std::uint64_t, std::uint64_t>;

    void Learn(VelPlatform::VelStringView stem, std::uint64_t first, std::uint64_t last);

    std::mutex m_mutex;
    std::map<Text, Runs, VelUtils::String::LessThanCaseInsensitive> m_runs; // by what stands before the number
};

} // namespace Styles::Detail
