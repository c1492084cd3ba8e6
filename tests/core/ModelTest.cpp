// Random schemas, styles and sequences of operations, held against a plain model.

#include "core/ModelPair.h"

#include <gtest/gtest.h>

#include <random>

namespace Styles::Modelling
{

namespace
{

class Model : public testing::TestWithParam<unsigned>
{};

TEST_P(Model, AndStylesAgreeAfterEveryChange)
{
    SCOPED_TRACE("seed " + std::to_string(GetParam()));
    std::mt19937 random(GetParam());
    Pair pair([&random](std::size_t count) { return random() % count; });
    bool goesOn = true;
    for (int step = 0; step < 60 && goesOn; ++step)
    {
        SCOPED_TRACE("step " + std::to_string(step));
        goesOn = pair.ChangeOnce();
        if (goesOn)
        {
            pair.CompareAll();
        }
        ASSERT_EQ(pair.GetDifferences(), std::vector<std::string>());
    }
    if (goesOn)
    {
        pair.CompareAfterAJourneyThroughADocument();
        ASSERT_EQ(pair.GetDifferences(), std::vector<std::string>());
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Model, testing::Range(1u, 81u));

} // namespace

} // namespace Styles::Modelling
