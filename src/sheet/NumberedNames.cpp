#include "sheet/NumberedNames.h"

#include <VelUtils/StringUtils.h>

#include <algorithm>
#include <iterator>
#include <new>
#include <optional>
#include <string>
#include <utility>

namespace Styles::Detail
{

namespace
{

using VelPlatform::VelString;
using VelPlatform::VelStringView;
using Runs = std::map<std::uint64_t, std::uint64_t>;

/// A search that asks fewer questions than this leaves nothing behind.
constexpr std::uint64_t kWorthLearning = 16;
/// Longer numbers do not fit, with room to count on.
constexpr std::size_t kMostDigits = 18;

struct NumberedName
{
    VelStringView stem; // with the blank
    std::uint64_t number = 0;
};

std::optional<NumberedName> Split(VelStringView name)
{
    std::size_t begin = name.size();
    while (begin > 0 && name[begin - 1] >= L'0' && name[begin - 1] <= L'9')
    {
        --begin;
    }
    const std::size_t digits = name.size() - begin;
    if (begin == 0 || name[begin - 1] != L' ' || digits == 0 || digits > kMostDigits || name[begin] == L'0')
    {
        return std::nullopt;
    }
    NumberedName found{name.substr(0, begin)};
    for (const wchar_t digit : name.substr(begin))
    {
        found.number = found.number * 10 + static_cast<std::uint64_t>(digit - L'0');
    }
    return found;
}

/// The run that holds `number`, or the end.
template <class AnyRuns>
auto FindRun(AnyRuns& runs, std::uint64_t number)
{
    const auto next = runs.upper_bound(number);
    return next != runs.begin() && std::prev(next)->second >= number ? std::prev(next) : runs.end();
}

} // namespace

VelString NumberedNames::FindUnused(const VelString& candidate, const std::function<bool(const VelString&)>& isUsed)
{
    const std::lock_guard guard(m_mutex);
    VelString start = candidate;
    for (bool isKnown = false;; isKnown = true)
    {
        // One stretch of the search, from a name that is taken to one that is free or begins a known run.
        bool isStart = isKnown;
        std::optional<std::uint64_t> firstTaken;
        std::uint64_t lastTaken = 0;
        std::optional<std::uint64_t> endOfRun;
        VelString name = VelUtils::String::FindUnusedName(start, [&](const VelString& asked) {
            if (std::exchange(isStart, false))
            {
                return true;
            }
            const std::optional<NumberedName> split = Split(asked);
            if (split)
            {
                const auto runs = m_runs.find(split->stem);
                if (runs != m_runs.end())
                {
                    const auto run = FindRun(runs->second, split->number);
                    if (run != runs->second.end())
                    {
                        endOfRun = run->second;
                        return false;
                    }
                }
            }
            if (!isUsed(asked))
            {
                return false;
            }
            if (split)
            {
                firstTaken = firstTaken.value_or(split->number);
                lastTaken = split->number;
            }
            return true;
        });
        const std::optional<NumberedName> split = Split(name);
        if (firstTaken && split && (isKnown || endOfRun || lastTaken - *firstTaken + 1 >= kWorthLearning))
        {
            Learn(split->stem, *firstTaken, lastTaken);
        }
        if (!endOfRun)
        {
            return name;
        }
        start = VelString(split->stem) + VelStringView(std::to_wstring(*endOfRun));
    }
}

void NumberedNames::Learn(VelStringView stem, std::uint64_t first, std::uint64_t last)
{
    auto entry = m_runs.find(stem);
    if (entry == m_runs.end())
    {
        entry = m_runs.emplace(VelString(stem), Runs()).first;
    }
    Runs& runs = entry->second;
    auto run = FindRun(runs, first - 1);
    if (run == runs.end())
    {
        run = runs.emplace(first, last).first;
    }
    run->second = std::max(run->second, last);
    const auto next = std::next(run);
    if (next != runs.end() && next->first == last + 1)
    {
        run->second = next->second;
        runs.erase(next);
    }
}

void NumberedNames::Forget(const VelString& name) noexcept
{
    const std::optional<NumberedName> split = m_runs.empty() ? std::nullopt : Split(name);
    const auto entry = split ? m_runs.find(split->stem) : m_runs.end();
    if (entry == m_runs.end())
    {
        return;
    }
    Runs& runs = entry->second;
    const auto run = FindRun(runs, split->number);
    if (run == runs.end())
    {
        return;
    }
    const auto [first, last] = *run;
    if (first == split->number)
    {
        runs.erase(run);
    }
    else
    {
        run->second = split->number - 1;
    }
    try
    {
        if (split->number != last)
        {
            runs.emplace(split->number + 1, last);
        }
    }
    catch (const std::bad_alloc&) // then the numbers behind are asked for again
    {}
    if (runs.empty())
    {
        m_runs.erase(entry);
    }
}

} // namespace Styles::Detail
