// On long chains of styles the work grows with their length and no faster: counted, not timed.

#include "faults/FaultWorld.h"

#include <memory>
#include <string>
#include <vector>

namespace Styles::Testing
{

namespace
{

constexpr std::size_t FullLength = 20'000;

/// A sheet of styles, each of which inherits from the one before.
class Chain
{
public:
    explicit Chain(std::size_t length)
    {
        Style* parent = nullptr;
        for (std::size_t index = 0; index < length; ++index)
        {
            auto style = std::make_unique<Style>(parent, StyleCategoryName);
            style->SetProperty(K().number, Any(static_cast<double>(index)));
            parent = style.get();
            styles.push_back(parent);
            const std::wstring name = L"Stil " + std::to_wstring(index);
            sheet.AddStyle(VelString(name.c_str()), style.release(), false);
        }
    }

    [[nodiscard]] std::vector<Style*> GetRoot() const { return {styles.front()}; }
    [[nodiscard]] std::vector<Style*> GetEverySecond() const
    {
        std::vector<Style*> some;
        for (std::size_t index = 0; index < styles.size(); index += 2)
        {
            some.push_back(styles[index]);
        }
        return some;
    }

    StyleSheet sheet;
    std::vector<Style*> styles;
};

struct Cost
{
    std::size_t calls = 0;
    std::size_t allocations = 0;
};

template <class Act>
Cost Measure(const Act& act)
{
    CallPoints().Count();
    AllocationPoints().Count();
    act();
    AllocationPoints().Disarm();
    CallPoints().Disarm();
    return {CallPoints().GetReached(), AllocationPoints().GetReached()};
}

class ChainCost : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        schema = std::make_unique<FaultySchema>();
        half = std::make_unique<Chain>(FullLength / 2);
        full = std::make_unique<Chain>(FullLength);
    }
    static void TearDownTestSuite()
    {
        half.reset();
        full.reset();
        schema.reset();
    }

    /// `act` visits every style of the chain, and twice the length costs it twice as much.
    template <class Act>
    static void ExpectLinear(const Act& act)
    {
        ExpectLinearOn(act, *half, *full);
    }
    template <class Act>
    static void ExpectLinearOn(const Act& act, Chain& shorter, Chain& longer)
    {
        const Cost costOfHalf = Measure([&] { act(shorter); });
        const Cost costOfFull = Measure([&] { act(longer); });
        EXPECT_GE(costOfHalf.calls + costOfHalf.allocations, FullLength / 2) << "the chain was not gone along";
        EXPECT_LE(costOfFull.calls, costOfHalf.calls * 21 / 10);
        EXPECT_LE(costOfFull.allocations, costOfHalf.allocations * 21 / 10 + 100);
    }

    static inline std::unique_ptr<FaultySchema> schema;
    static inline std::unique_ptr<Chain> half;
    static inline std::unique_ptr<Chain> full;
};

TEST_F(ChainCost, OfAskingForADependencyIsLinear)
{
    ExpectLinear([](const Chain& chain) { EXPECT_TRUE(chain.styles.back()->HasDependency(chain.GetRoot())); });
}

TEST_F(ChainCost, OfAskingForAParentalDependencyIsLinear)
{
    ExpectLinear([](const Chain& chain) { EXPECT_TRUE(chain.styles.back()->HasParentalDependency(chain.GetRoot())); });
}

TEST_F(ChainCost, OfAskingForAParentalDependencyThatIsNotThereIsLinear)
{
    Style stranger;
    ExpectLinear([&stranger](const Chain& chain) {
        EXPECT_FALSE(chain.styles.back()->HasParentalDependency(std::vector<Style*>{&stranger}));
    });
}

TEST_F(ChainCost, OfListingDependenciesIsLinear)
{
    ExpectLinear([](const Chain& chain) {
        EXPECT_EQ(chain.styles.back()->GetDependencies(chain.styles, false).size(), chain.styles.size());
    });
}

TEST_F(ChainCost, OfListingTheDependantsInASheetIsLinear)
{
    ExpectLinear([](const Chain& chain) {
        std::vector<Style*> dependants;
        chain.sheet.GetDependencies(chain.GetRoot(), dependants);
        EXPECT_EQ(dependants.size(), chain.styles.size());
    });
}

TEST_F(ChainCost, OfListingTheDependantsOfManyInASheetIsLinear)
{
    ExpectLinear([](const Chain& chain) {
        std::vector<Style*> dependants;
        chain.sheet.GetDependencies(chain.GetEverySecond(), dependants);
        EXPECT_EQ(dependants.size(), chain.styles.size());
    });
}

TEST_F(ChainCost, OfRemovingADependencyIsLinear)
{
    ExpectLinear([](const Chain& chain) {
        Style heir(chain.styles.back(), StyleCategoryName);
        heir.RemoveDependency(chain.GetRoot(), false);
        EXPECT_EQ(heir.GetParent(), nullptr);
    });
}

TEST_F(ChainCost, OfRemovingDirectDependenciesIsLinear)
{
    ExpectLinear([](const Chain& chain) {
        Style heir(chain.styles.back(), StyleCategoryName);
        heir.RemoveDependency(chain.styles, true);
        EXPECT_EQ(heir.GetParent(), nullptr);
    });
}

TEST_F(ChainCost, OfRemovingAllDependenciesIsLinear)
{
    ExpectLinear([](const Chain& chain) {
        Style heir(chain.styles.back(), StyleCategoryName);
        heir.RemoveAllDependencies();
        EXPECT_EQ(heir.GetProperty(K().number).Get<double>(), static_cast<double>(chain.styles.size() - 1));
    });
}

TEST_F(ChainCost, OfMeetingTheParentsOfSubstylesAndElementsIsLinear)
{
    ExpectLinear([](const Chain& chain) {
        Style style(nullptr, StyleCategoryName);
        FaultWorld::AddStops(style, 10, chain.styles.back());
        style.GetSubstyleAndCreateIfMissing(K().fill, K().fill)->SetParent(chain.styles.back());
        EXPECT_TRUE(style.HasDependency(chain.GetRoot()));
        EXPECT_EQ(style.GetDependencies(chain.GetRoot(), false).size(), 1u);
    });
}

TEST_F(ChainCost, OfDeletingEverySecondStyleAndThenTheOthersIsLinear)
{
    Chain shorter(FullLength / 2);
    Chain longer(FullLength);
    const auto deleteEverySecond = [](Chain& chain) {
        EXPECT_TRUE(chain.sheet.DeleteStyles(chain.GetEverySecond()));
        EXPECT_EQ(chain.sheet.GetStyles().size(), chain.styles.size() / 2);
    };
    ExpectLinearOn(deleteEverySecond, shorter, longer);
    ExpectLinearOn([](Chain& chain) { EXPECT_TRUE(chain.sheet.DeleteStyles(chain.sheet.GetStyles())); }, shorter,
                   longer);
}

} // namespace

} // namespace Styles::Testing
