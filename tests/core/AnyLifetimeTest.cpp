// Values of unusual types: counted, throwing, tied to their address, aligned, without assignment or comparison.

#include "core/AnySamples.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

using Styles::Any;
using Styles::Testing::LivesInside;

namespace
{

/// Counts its living objects, knows its own address, and throws from copies when told to.
template <int Size>
struct Counted
{
    explicit Counted(int initial) : number(initial) { ++living; }
    Counted(const Counted& other) : number(other.number)
    {
        ThrowWhenTold();
        ++living;
    }
    Counted(Counted&& other) noexcept : number(std::exchange(other.number, 0)) { ++living; }
    Counted& operator=(const Counted& other)
    {
        ThrowWhenTold();
        number = other.number;
        return *this;
    }
    ~Counted() { --living; }
    bool operator==(const Counted& other) const { return number == other.number; }

    static void ThrowWhenTold()
    {
        if (throwing)
        {
            throw std::runtime_error("told to throw");
        }
    }

    int number;
    std::byte rest[Size - sizeof(int)]{};
    static inline int living = 0;
    static inline bool throwing = false;
};

using Inline = Counted<8>; // declared relocatable below
using NotRelocatable = Counted<5>;
using Heap = Counted<40>;

} // namespace

template <>
struct VelUtils::IsRelocatableByBytes<Inline> : std::true_type
{};

namespace
{

template <class T>
class AnyLifetime : public ::testing::Test
{
protected:
    ~AnyLifetime() override
    {
        T::throwing = false;
        EXPECT_EQ(T::living, 0);
    }
};

using CountedTypes = ::testing::Types<Inline, NotRelocatable, Heap>;
TYPED_TEST_SUITE(AnyLifetime, CountedTypes);

template <class T>
constexpr bool LivesInline = std::is_same_v<T, Inline>;

struct ThrowingMove
{
    ThrowingMove() = default;
    ThrowingMove(const ThrowingMove&) = default;
    ThrowingMove(ThrowingMove&&) noexcept(false) {}
    ThrowingMove& operator=(const ThrowingMove&) = default;
    char character = 'a';
};

struct alignas(64) Aligned
{
    char character;
};

struct Incomparable
{
    int number;
};

struct OnlyEqual
{
    int number;
    bool operator==(const OnlyEqual&) const = default;
};

struct OnlyLess
{
    int number;
    bool operator<(const OnlyLess& other) const { return number < other.number; }
};

struct Unassignable
{
    const int number;
    bool operator==(const Unassignable&) const = default;
};

struct BigUnassignable
{
    const int number;
    int more[4];
};

} // namespace

TYPED_TEST(AnyLifetime, OnlySmallTypesThatAreKnownToBeRelocatableLiveInline)
{
    const Any value(TypeParam(1));
    EXPECT_EQ(LivesInside(&value.Get<TypeParam>(), value), LivesInline<TypeParam>);
}

TYPED_TEST(AnyLifetime, ValuesDieWithTheAnyThatHoldsThem)
{
    {
        Any value(TypeParam(1));
        EXPECT_EQ(TypeParam::living, 1);
        Any copy(value);
        EXPECT_EQ(TypeParam::living, 2);
        copy = value;
        EXPECT_EQ(TypeParam::living, 2);
        copy = Any(1.0);
        EXPECT_EQ(TypeParam::living, 1);
        copy = value;
        copy = Any();
        EXPECT_EQ(TypeParam::living, 1);
        value.Swap(copy);
        EXPECT_EQ(TypeParam::living, 1);
        EXPECT_EQ(copy.Get<TypeParam>().number, 1);
        Any moved(std::move(copy));
        EXPECT_EQ(moved.Get<TypeParam>().number, 1);
        // An inline value leaves a moved-from one behind.
        EXPECT_EQ(TypeParam::living, LivesInline<TypeParam> ? 2 : 1);
    }
    EXPECT_EQ(TypeParam::living, 0);
}

TYPED_TEST(AnyLifetime, MovingMovesAnInlineValueAndKeepsAHeapValueWhereItIs)
{
    Any source(TypeParam(5));
    const TypeParam* before = &source.Get<TypeParam>();
    const Any target(std::move(source));
    EXPECT_EQ(target.Get<TypeParam>().number, 5);
    if (LivesInline<TypeParam>)
    {
        EXPECT_EQ(source.Get<TypeParam>().number, 0) << "moved, not copied";
    }
    else
    {
        EXPECT_TRUE(source.IsEmpty());
        EXPECT_EQ(&target.Get<TypeParam>(), before);
    }
}

TYPED_TEST(AnyLifetime, ExchangingCallsNothingOfTheTypes)
{
    Any one(TypeParam(1)), other(TypeParam(2)), empty, number(1.5);
    TypeParam::throwing = true;
    const int living = TypeParam::living;
    one.Swap(other);
    EXPECT_EQ(one.Get<TypeParam>().number, 2);
    EXPECT_EQ(other.Get<TypeParam>().number, 1);
    one.Swap(empty);
    other.Swap(number);
    EXPECT_EQ(empty.Get<TypeParam>().number, 2);
    EXPECT_EQ(number.Get<TypeParam>().number, 1);
    EXPECT_TRUE(one.IsEmpty());
    EXPECT_EQ(other.Get<double>(), 1.5);
    EXPECT_EQ(TypeParam::living, living);
}

TYPED_TEST(AnyLifetime, AThrowingCopyLeavesAnEmptyTargetEmptyAndUsable)
{
    const Any source(TypeParam(1));
    Any target;
    TypeParam::throwing = true;
    EXPECT_THROW(target = source, std::runtime_error);
    EXPECT_TRUE(target.IsEmpty());
    EXPECT_TRUE(target == Any());
    EXPECT_THROW(source.GetHolder()->CloneInto(target), std::runtime_error);
    EXPECT_TRUE(target.IsEmpty());
    TypeParam::throwing = false;
    target = source;
    EXPECT_EQ(target.Get<TypeParam>().number, 1);
}

TYPED_TEST(AnyLifetime, AThrowingCopyLeavesATargetOfAnotherTypeAsItWas)
{
    const Any source(TypeParam(1));
    Any number(2.5), list(std::vector<int>{1, 2, 3});
    TypeParam::throwing = true;
    EXPECT_THROW(number = source, std::runtime_error);
    EXPECT_THROW(list = source, std::runtime_error);
    EXPECT_EQ(number.Get<double>(), 2.5);
    EXPECT_EQ(list.Get<std::vector<int>>(), (std::vector<int>{1, 2, 3}));
}

TYPED_TEST(AnyLifetime, AThrowingAssignmentLeavesATargetOfTheSameType)
{
    const Any source(TypeParam(1));
    Any target(TypeParam(2));
    const Any::HolderInterface* holder = target.GetHolder();
    TypeParam::throwing = true;
    EXPECT_THROW(target = source, std::runtime_error);
    EXPECT_EQ(target.GetHolder(), holder);
    EXPECT_EQ(target.Get<TypeParam>().number, 2);
}

TYPED_TEST(AnyLifetime, AThrowingCopyInAConstructorLeaksNothing)
{
    const TypeParam value(1);
    const Any source(value);
    TypeParam::throwing = true;
    EXPECT_THROW(Any made(value), std::runtime_error);
    EXPECT_THROW(Any copy(source), std::runtime_error);
    EXPECT_EQ(TypeParam::living, 2);
}

TYPED_TEST(AnyLifetime, AnRvalueIsTakenOverWithoutACopy)
{
    TypeParam::throwing = true;
    const Any value(TypeParam(3));
    EXPECT_EQ(value.Get<TypeParam>().number, 3);
}

TEST(AnyLifetime, SmallTypesWhoseMoveMayThrowLiveOnTheHeap)
{
    Any source{ThrowingMove()};
    EXPECT_FALSE(LivesInside(source.GetHolder(), source));
    const Any target(std::move(source));
    EXPECT_EQ(target.Get<ThrowingMove>().character, 'a');
    EXPECT_TRUE(source.IsEmpty());
}

TEST(AnyLifetime, OverAlignedTypesAreAligned)
{
    const Any value(Aligned{'x'});
    const Any copy(value);
    for (const Any* any : {&value, &copy})
    {
        const Aligned* aligned = &any->Get<Aligned>();
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(aligned) % 64, 0u);
        EXPECT_EQ(aligned->character, 'x');
        EXPECT_FALSE(LivesInside(aligned, *any));
    }
}

TEST(AnyLifetime, TheFlagsOfATypeFollowFromItsOperators)
{
    const Any one(Incomparable{1}), big(Incomparable{2});
    EXPECT_FALSE(one == one);
    EXPECT_FALSE(one < big);
    EXPECT_FALSE(big < one);
    EXPECT_TRUE(Any(OnlyEqual{1}) == Any(OnlyEqual{1}));
    EXPECT_FALSE(Any(OnlyEqual{1}) == Any(OnlyEqual{2}));
    EXPECT_FALSE(Any(OnlyEqual{1}) < Any(OnlyEqual{2}));
    EXPECT_FALSE(Any(OnlyLess{1}) == Any(OnlyLess{1}));
    EXPECT_TRUE(Any(OnlyLess{1}) < Any(OnlyLess{2}));
    EXPECT_FALSE(Any(OnlyLess{2}) < Any(OnlyLess{1}));
    const Any list(std::vector<Incomparable>{{1}});
    EXPECT_FALSE(list == list);
    EXPECT_FALSE(list < list);
    const auto holderTypeOf = [](const Any& any) -> const std::type_info& {
        const Any::HolderInterface& holder = *any.GetHolder();
        return typeid(holder);
    };
    EXPECT_EQ(holderTypeOf(one), typeid(Any::Holder<Incomparable, false, false>));
    EXPECT_EQ(holderTypeOf(Any(OnlyEqual{1})), typeid(Any::Holder<OnlyEqual, true, false>));
    EXPECT_EQ(holderTypeOf(Any(OnlyLess{1})), typeid(Any::Holder<OnlyLess, false, true>));
}

TEST(AnyLifetime, ATypeWithoutAssignmentIsReplacedInItsHolder)
{
    Any target(Unassignable{1});
    const Any::HolderInterface* holder = target.GetHolder();
    target = Any(Unassignable{2});
    EXPECT_EQ(target.GetHolder(), holder);
    EXPECT_EQ(target.Get<Unassignable>().number, 2);
    const Any& self = target;
    target = self;
    EXPECT_EQ(target.Get<Unassignable>().number, 2);

    Any big(BigUnassignable{1, {}});
    holder = big.GetHolder();
    big = Any(BigUnassignable{2, {7}});
    EXPECT_EQ(big.GetHolder(), holder);
    EXPECT_EQ(big.Get<BigUnassignable>().more[0], 7);
}
