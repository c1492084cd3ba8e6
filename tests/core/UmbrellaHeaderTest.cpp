// What including everything costs. The first include is the one that is looked at.

#include <styles/Styles.h>

namespace
{

#if defined(_GLIBCXX_FUNCTIONAL) || defined(_GLIBCXX_ALGORITHM) || defined(_GLIBCXX_RANGES) ||                         \
    defined(_GLIBCXX_IOSTREAM) || defined(_GLIBCXX_SSTREAM) || defined(_GLIBCXX_REGEX)
constexpr bool includesACostlyHeader = true;
#else
constexpr bool includesACostlyHeader = false;
#endif

} // namespace

#include <gtest/gtest.h>

// With <functional> and <algorithm> the header is 69,000 lines after preprocessing instead of 59,000, counted as
// `g++ -E -P` of GCC 12 writes them.
TEST(UmbrellaHeader, DoesWithoutTheCostliestHeadersOfTheStandardLibrary)
{
    EXPECT_FALSE(includesACostlyHeader);
}
