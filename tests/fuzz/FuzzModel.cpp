// Bytes as a schema, styles and a sequence of changes, made alike on styles and on the plain model of them: whatever is
// done, both say the same.

#include "core/ModelPair.h"

#include <cstdint>
#include <cstdlib>
#include <iostream>

using Styles::Modelling::Pair;

namespace
{

constexpr int MostChanges = 64;
constexpr int ChangesBetweenComparisons = 8;

void RequireNoDifference(const Pair& pair)
{
    for (const std::string& difference : pair.GetDifferences())
    {
        std::cerr << difference << '\n';
    }
    if (!pair.GetDifferences().empty())
    {
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::size_t next = 0;
    // Behind the end of the input the first of everything is chosen.
    Pair pair([&](std::size_t count) { return next < size ? data[next++] % count : 0; });
    for (int change = 0; change < MostChanges && next < size; ++change)
    {
        if (!pair.ChangeOnce())
        {
            return 0;
        }
        if (change % ChangesBetweenComparisons == 0)
        {
            pair.CompareAll();
        }
        RequireNoDifference(pair);
    }
    pair.CompareAfterAJourneyThroughADocument();
    RequireNoDifference(pair);
    return 0;
}
