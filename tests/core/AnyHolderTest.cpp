// What holds a value: its operations, and their places in the virtual table.

#include <styles/Style.h>

#include "support/VirtualSlots.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <typeinfo>
#include <vector>

using Styles::Any;
using Styles::Style;

TEST(AnyHolder, MovingOutOfTheHolderOfAListTakesItsElements)
{
    Style style;
    Any source(std::vector<Style*>{&style});
    Style* const* elements = source.Get<std::vector<Style*>>().data();
    Any target;
    source.GetHolder()->MoveInto(target);
    EXPECT_EQ(target.Get<std::vector<Style*>>().data(), elements);
    EXPECT_TRUE(source.Get<std::vector<Style*>>().empty());
}

TEST(AnyHolder, EnumerationsTellTheirValue)
{
    enum class Narrow : signed char
    {
        Negative = -3,
        Positive = 100
    };
    enum class Unsigned : std::uint32_t
    {
        All = 0xFFFFFFFFu
    };
    EXPECT_TRUE(Any(Narrow::Negative).GetHolder()->IsEnum());
    EXPECT_EQ(Any(Narrow::Negative).GetHolder()->GetEnumValue(), -3);
    EXPECT_EQ(Any(Narrow::Positive).GetHolder()->GetEnumValue(), 100);
    EXPECT_EQ(Any(Unsigned::All).GetHolder()->GetEnumValue(), -1);
    EXPECT_TRUE(Any(Narrow::Negative) < Any(Narrow::Positive));
    EXPECT_FALSE(Any(Narrow::Positive) == Any(Narrow::Negative));
    EXPECT_FALSE(Any(std::int32_t{5}).GetHolder()->IsEnum());
    EXPECT_EQ(Any(std::int32_t{5}).GetHolder()->GetEnumValue(), 0);
}

#if !defined(_MSC_VER)

namespace
{

class PlainHolder : public Any::HolderInterface
{
public:
    ~PlainHolder() override = default;
    void CloneInto(Any&) const override {}
    void MoveInto(Any&) override {}
    void Assign(const HolderInterface&) override {}
    [[nodiscard]] bool IsEqual(const HolderInterface&) const override { return false; }
    [[nodiscard]] const std::type_info& GetType() const noexcept override { return typeid(int); }
    [[nodiscard]] bool IsLess(const HolderInterface&) const override { return false; }
    [[nodiscard]] bool IsEnum() const noexcept override { return false; }
    [[nodiscard]] std::int32_t GetEnumValue() const noexcept override { return 0; }
};

struct OwnCloneInto : PlainHolder
{
    void CloneInto(Any&) const override { ++calls; }
    mutable int calls = 0;
};
struct OwnMoveInto : PlainHolder
{
    void MoveInto(Any&) override { ++calls; }
    int calls = 0;
};
struct OwnAssign : PlainHolder
{
    void Assign(const HolderInterface&) override { ++calls; }
    int calls = 0;
};
struct OwnIsEqual : PlainHolder
{
    [[nodiscard]] bool IsEqual(const HolderInterface&) const override { return true; }
};
struct OwnGetType : PlainHolder
{
    [[nodiscard]] const std::type_info& GetType() const noexcept override { return typeid(bool); }
};
struct OwnIsLess : PlainHolder
{
    [[nodiscard]] bool IsLess(const HolderInterface&) const override { return !IsEnum(); }
};
struct OwnIsEnum : PlainHolder
{
    [[nodiscard]] bool IsEnum() const noexcept override { return true; }
};
struct OwnGetEnumValue : PlainHolder
{
    [[nodiscard]] std::int32_t GetEnumValue() const noexcept override { return 1; }
};

template <class Overriding>
std::size_t SlotOverriddenBy()
{
    const PlainHolder plain;
    const Overriding overriding;
    // The destructor fills two slots, one of them frees the memory too.
    const auto slots = Styles::Testing::DifferingSlots<Any::HolderInterface>(plain, overriding, 2, 10);
    return slots.size() == 1 ? slots[0] - 1 : 0;
}

} // namespace

TEST(AnyHolder, TheOperationsOfTheHolderAreInTheirSlots)
{
    EXPECT_EQ(SlotOverriddenBy<OwnCloneInto>(), 1u);
    EXPECT_EQ(SlotOverriddenBy<OwnMoveInto>(), 2u);
    EXPECT_EQ(SlotOverriddenBy<OwnAssign>(), 3u);
    EXPECT_EQ(SlotOverriddenBy<OwnIsEqual>(), 4u);
    EXPECT_EQ(SlotOverriddenBy<OwnGetType>(), 5u);
    EXPECT_EQ(SlotOverriddenBy<OwnIsLess>(), 6u);
    EXPECT_EQ(SlotOverriddenBy<OwnIsEnum>(), 7u);
    EXPECT_EQ(SlotOverriddenBy<OwnGetEnumValue>(), 8u);
}

#endif
