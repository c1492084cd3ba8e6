// Trivial values, which are copied by their bytes and forgotten, and the values beside them that are not: what an Any
// knows of its value has to be right on every way that a value comes in and goes out.

#include "core/AnySamples.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

using Styles::Any;
using Styles::Style;
using Styles::VelString;
using Styles::Testing::AnySamples;
using Styles::Testing::LivesInside;

namespace
{

/// Lives inline, but counts its living objects and throws from copies when told to: not trivial.
struct Watched
{
    explicit Watched(int initial) : number(initial) { ++living; }
    Watched(const Watched& other) : number(other.number)
    {
        if (throwing)
        {
            throw std::runtime_error("told to throw");
        }
        ++living;
        ++copies;
    }
    Watched(Watched&& other) noexcept : number(other.number) { ++living; }
    Watched& operator=(const Watched&) = default;
    ~Watched() { --living; }
    bool operator==(const Watched& other) const { return number == other.number; }

    int number;
    static inline int living = 0;
    static inline int copies = 0;
    static inline bool throwing = false;
};

/// Trivial, but equal by its own rule.
struct LastDigit
{
    int number;
    bool operator==(const LastDigit& other) const { return number % 10 == other.number % 10; }
};

/// Trivial, and of no comparison.
struct Mark
{
    short number;
};

/// Small and trivial, but kept out of the inline place by its owner.
struct Pinned
{
    int number;
    bool operator==(const Pinned&) const = default;
};

enum class Side : unsigned char
{
    Left,
    Right
};

} // namespace

template <>
struct VelUtils::IsRelocatableByBytes<Watched> : std::true_type
{};

template <>
struct VelUtils::IsRelocatableByBytes<Pinned> : std::false_type
{};

namespace
{

class AnyTrivial : public ::testing::Test
{
protected:
    ~AnyTrivial() override
    {
        Watched::throwing = false;
        EXPECT_EQ(Watched::living, 0);
    }
};

/// One value of each sort that an Any tells apart.
std::vector<Any> AllSorts()
{
    std::vector<Any> sorts;
    sorts.emplace_back();
    sorts.emplace_back(2.5);
    sorts.emplace_back(Styles::Testing::SampleStyle(0));
    sorts.emplace_back(static_cast<const Style*>(Styles::Testing::SampleStyle(0)));
    sorts.emplace_back(VelString(L"a text that is kept on the heap"));
    sorts.emplace_back(VelString());
    sorts.emplace_back(true);
    sorts.emplace_back(7u);
    sorts.emplace_back(1.5f);
    sorts.emplace_back(Side::Right);
    sorts.emplace_back(LastDigit{14});
    sorts.emplace_back(Pinned{3});
    sorts.emplace_back(Watched(4));
    sorts.emplace_back(std::vector<Style*>{nullptr});
    return sorts;
}

const std::type_info& HolderTypeOf(const Any& any)
{
    if (any.IsEmpty())
    {
        return typeid(void);
    }
    const Any::HolderInterface& holder = *any.GetHolder();
    return typeid(holder);
}

void ExpectSame(const Any& any, const Any& expected)
{
    EXPECT_EQ(HolderTypeOf(any), HolderTypeOf(expected));
    EXPECT_EQ(any.GetType(), expected.GetType());
    EXPECT_EQ(any.IsEmpty(), expected.IsEmpty());
    EXPECT_TRUE(any == expected);
    EXPECT_TRUE(expected == any);
    EXPECT_EQ(any.Is<double>(), expected.GetType() == typeid(double));
    EXPECT_EQ(any.Is<Style*>(), expected.GetType() == typeid(Style*));
    EXPECT_EQ(any.Is<const Style*>(), expected.GetType() == typeid(const Style*));
    EXPECT_EQ(any.Is<VelString>(), expected.GetType() == typeid(VelString));
    EXPECT_EQ(any.Is<Watched>(), expected.GetType() == typeid(Watched));
    // What comes of it is right too: it is copied and ended as what it is.
    const Any copy(any);
    EXPECT_TRUE(copy == expected);
}

/// Calls `check` with the indices of every two sorts, the same one twice included.
template <class Check>
void ForEachPairOfSorts(const Check& check)
{
    const std::size_t count = AllSorts().size();
    for (std::size_t first = 0; first < count; ++first)
    {
        for (std::size_t second = 0; second < count; ++second)
        {
            SCOPED_TRACE(std::to_string(first) + " and " + std::to_string(second));
            check(first, second);
        }
    }
}

} // namespace

TEST_F(AnyTrivial, AssigningAnySortToAnyOtherMakesItThatSort)
{
    ForEachPairOfSorts([](std::size_t first, std::size_t second) {
        std::vector<Any> values = AllSorts();
        const std::vector<Any> expected = AllSorts();
        values[first] = expected[second];
        ExpectSame(values[first], expected[second]);
        values[first] = expected[first];
        ExpectSame(values[first], expected[first]);
    });
}

TEST_F(AnyTrivial, ExchangingTwoSortsExchangesWhatIsKnownOfThem)
{
    ForEachPairOfSorts([](std::size_t first, std::size_t second) {
        Any a = AllSorts()[first], b = AllSorts()[second];
        a.Swap(b);
        ExpectSame(a, AllSorts()[second]);
        ExpectSame(b, AllSorts()[first]);
        a = b;
        ExpectSame(a, AllSorts()[first]);
    });
}

TEST_F(AnyTrivial, TwoSortsAreEqualOnlyWhenTheyAreOne)
{
    ForEachPairOfSorts([](std::size_t first, std::size_t second) {
        const Any a = AllSorts()[first], b = AllSorts()[second];
        EXPECT_EQ(a == b, first == second);
    });
}

TEST_F(AnyTrivial, EverySortIsCopiedAndMovedAndClonedByItsHolder)
{
    const std::vector<Any> expected = AllSorts();
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        SCOPED_TRACE(i);
        Any source(expected[i]);
        ExpectSame(source, expected[i]);
        Any cloned, taken;
        if (!source.IsEmpty())
        {
            source.GetHolder()->CloneInto(cloned);
            ExpectSame(cloned, expected[i]);
            cloned.GetHolder()->MoveInto(taken);
            ExpectSame(taken, expected[i]);
            cloned.GetHolder()->Assign(*source.GetHolder());
            ExpectSame(cloned, expected[i]);
        }
        const Any moved(std::move(source));
        ExpectSame(moved, expected[i]);
        source = expected[i];
        ExpectSame(source, expected[i]);
    }
}

TEST_F(AnyTrivial, ACopyIsAValueOfItsOwn)
{
    Any number(2.5), style(Styles::Testing::SampleStyle(0)), last(LastDigit{14});
    Any numberCopy(number), styleCopy(style), lastCopy(last);
    number.Get<double>() = 3.5;
    style.Get<Style*>() = nullptr;
    last.Get<LastDigit>().number = 5;
    EXPECT_EQ(numberCopy.Get<double>(), 2.5);
    EXPECT_EQ(styleCopy.Get<Style*>(), Styles::Testing::SampleStyle(0));
    EXPECT_EQ(lastCopy.Get<LastDigit>().number, 14);
    EXPECT_EQ(number.Get<double>(), 3.5);
    EXPECT_EQ(style.Get<Style*>(), nullptr);
}

TEST_F(AnyTrivial, AssigningATrivialValueKeepsTheHolderInItsPlace)
{
    Any target(2.5);
    double& value = target.Get<double>();
    const Any::HolderInterface* const holder = target.GetHolder();
    target = Any(3.5);
    EXPECT_EQ(target.GetHolder(), holder);
    EXPECT_EQ(value, 3.5);
}

TEST_F(AnyTrivial, ATypeWithItsOwnEqualityIsComparedByItAndNotByItsBytes)
{
    EXPECT_TRUE(Any(LastDigit{4}) == Any(LastDigit{14}));
    EXPECT_FALSE(Any(LastDigit{4}) == Any(LastDigit{5}));
    const Any mark(Mark{1});
    const Any& same = mark;
    EXPECT_FALSE(mark == same) << "there is no equality to ask";
}

TEST_F(AnyTrivial, ATrivialTypeThatIsDeclaredImmovableLivesOnTheHeap)
{
    const Any pinned(Pinned{3});
    EXPECT_FALSE(LivesInside(&pinned.Get<Pinned>(), pinned));
    EXPECT_TRUE(pinned == Any(Pinned{3}));
}

TEST_F(AnyTrivial, AnInlineValueThatIsNotTrivialIsCopiedAndEndedByItsOwnOperations)
{
    {
        const int before = Watched::copies;
        Any value{Watched(1)};
        const Any copy(value);
        EXPECT_EQ(Watched::copies, before + 1);
        EXPECT_EQ(Watched::living, 2);
        Any number(2.5);
        number.Swap(value);
        EXPECT_EQ(Watched::living, 2);
        number = Any(3.5);
        EXPECT_EQ(Watched::living, 1);
        value = copy;
        EXPECT_EQ(Watched::living, 2);
    }
    EXPECT_EQ(Watched::living, 0);
}

TEST_F(AnyTrivial, AThrowingCopyLeavesEverySortAsItWas)
{
    const Any source{Watched(1)};
    const std::vector<Any> expected = AllSorts();
    for (std::size_t i = 0; i < expected.size(); ++i)
    {
        if (expected[i].Is<Watched>())
        {
            continue; // assigned, not copied
        }
        SCOPED_TRACE(i);
        Any target(expected[i]);
        Watched::throwing = true;
        EXPECT_THROW(target = source, std::runtime_error);
        EXPECT_THROW(Any copy(source), std::runtime_error);
        Watched::throwing = false;
        ExpectSame(target, expected[i]);
        target = source;
        ExpectSame(target, source);
    }
}

TEST_F(AnyTrivial, AMovedFromTextIsAnEmptyText)
{
    Any source(VelString(L"a text that is kept on the heap"));
    const Any target(std::move(source));
    EXPECT_EQ(target.Get<VelString>(), L"a text that is kept on the heap");
    EXPECT_EQ(source.Get<VelString>(), L"");
    source = target;
    EXPECT_EQ(source.Get<VelString>().c_str(), target.Get<VelString>().c_str()) << "copies share their text";
}

TEST_F(AnyTrivial, NearbyTypesAreNotTakenForOneAnother)
{
    EXPECT_FALSE(Any(1.0f).Is<double>());
    EXPECT_FALSE(Any(1.0).Is<float>());
    EXPECT_EQ(Any(1.0f).GetIf<double>(), nullptr);
    EXPECT_FALSE(Any("narrow").Is<VelString>());
    EXPECT_FALSE(Any(static_cast<void*>(nullptr)).Is<Style*>());
    EXPECT_FALSE(Any(static_cast<Style*>(nullptr)) == Any(static_cast<const Style*>(nullptr)));
    EXPECT_FALSE(Any().Is<double>());
}
