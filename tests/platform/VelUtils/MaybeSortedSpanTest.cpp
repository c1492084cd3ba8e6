#include "VelUtils/MaybeSortedSpan.h"

#include <gmock/gmock.h>

#include <array>
#include <vector>

using VelUtils::maybe_sorted_span;

namespace
{

using Pointers = maybe_sorted_span<int* const>;

std::size_t SizeOf(Pointers span)
{
    return span.size();
}

} // namespace

TEST(MaybeSortedSpan, StartsEmptyAndUnsorted)
{
    const Pointers span;
    EXPECT_TRUE(span.empty());
    EXPECT_EQ(0u, span.size());
    EXPECT_FALSE(span.is_sorted());
    EXPECT_FALSE(span.contains(nullptr));
}

TEST(MaybeSortedSpan, IsMadeFromWhateverBecomesASpan)
{
    int numbers[3] = {};
    std::vector<int*> vector{numbers, numbers + 1};
    const std::vector<int*>& constVector = vector;
    std::array<int*, 1> array{numbers};
    int* plain[] = {numbers, numbers + 1, numbers + 2};
    EXPECT_EQ(2u, SizeOf(vector));
    EXPECT_EQ(2u, SizeOf(constVector));
    EXPECT_EQ(1u, SizeOf(array));
    EXPECT_EQ(3u, SizeOf(plain));
    EXPECT_EQ(2u, SizeOf(std::span<int*>(vector)));
    EXPECT_EQ(2u, SizeOf(std::span<int* const>(vector)));
    EXPECT_EQ(2u, SizeOf(std::vector<int*>{numbers, numbers}));
    EXPECT_EQ(2u, SizeOf({vector, true}));
    EXPECT_FALSE((std::is_convertible_v<const std::vector<int*>&, maybe_sorted_span<int*>>));
}

TEST(MaybeSortedSpan, ShowsTheElementsInTheirPlace)
{
    std::vector<int> numbers{3, 1, 2};
    const maybe_sorted_span<int> span(numbers);
    EXPECT_EQ(numbers.data(), span.data());
    EXPECT_EQ(numbers, std::vector<int>(span.begin(), span.end()));
    *span.begin() = 7;
    EXPECT_EQ(7, numbers[0]);
}

TEST(MaybeSortedSpan, AViewOfConstElementsStaysAsSortedAsItWas)
{
    int numbers[2] = {};
    std::vector<int*> pointers{numbers, numbers + 1};
    const maybe_sorted_span<int*> sorted(pointers, true);
    const Pointers fromSorted = sorted;
    EXPECT_TRUE(fromSorted.is_sorted());
    EXPECT_EQ(pointers.data(), fromSorted.data());
    EXPECT_FALSE(Pointers(maybe_sorted_span<int*>(pointers)).is_sorted());
    const Pointers copy = fromSorted;
    EXPECT_TRUE(copy.is_sorted());
}

TEST(MaybeSortedSpan, ContainsSearchesEveryElementWhenUnsorted)
{
    int numbers[4] = {};
    std::vector<int*> pointers{numbers + 2, numbers, numbers + 1};
    const Pointers span = pointers;
    EXPECT_TRUE(span.contains(numbers));
    EXPECT_TRUE(span.contains(numbers + 2));
    EXPECT_TRUE(span.contains(static_cast<const int*>(numbers + 1)));
    EXPECT_FALSE(span.contains(numbers + 3));
}

TEST(MaybeSortedSpan, ContainsFindsEveryElementWhenSorted)
{
    int numbers[100] = {};
    std::vector<int*> pointers;
    for (int i = 0; i < 100; i += 2)
    {
        pointers.push_back(numbers + i);
    }
    const Pointers span(pointers, true);
    for (int i = 0; i < 100; ++i)
    {
        EXPECT_EQ(i % 2 == 0, span.contains(numbers + i));
    }
}

TEST(MaybeSortedSpan, ContainsTrustsTheFlag)
{
    int numbers[3] = {};
    std::vector<int*> pointers{numbers + 2, numbers + 1, numbers};
    EXPECT_FALSE(Pointers(pointers, true).contains(numbers + 2));
    EXPECT_TRUE(Pointers(pointers, false).contains(numbers + 2));
}
