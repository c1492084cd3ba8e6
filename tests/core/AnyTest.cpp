// Values: what every held type has in common, and every way of making, copying, moving and comparing.

#include "core/AnySamples.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <string>
#include <utility>

using Styles::Any;
using Styles::Style;
using Styles::VelString;
using Styles::VelStringA;
using Styles::Testing::AnySamples;
using Styles::Testing::HeldTypes;
using Styles::Testing::LivesInside;
namespace Json = Styles::Json;

namespace
{

static_assert(sizeof(void*) != 8 || (sizeof(Any) == 24 && alignof(Any) == 8));
static_assert(!std::is_convertible_v<double, Any>, "a value becomes an Any on purpose only");

template <class T>
class AnyOf : public ::testing::Test
{};

TYPED_TEST_SUITE(AnyOf, HeldTypes);

/// One state that a value can be in.
struct State
{
    std::string name;
    std::function<Any()> make;
    const std::type_info* type;
    bool onHeap; // or empty
};

template <class T>
void AddStates(std::vector<State>& states, const char* name)
{
    using Samples = AnySamples<T>;
    states.push_back(
        {std::string("small ") + name, [] { return Any(Samples::Small()); }, &typeid(T), !Samples::Inline});
    states.push_back(
        {std::string("large ") + name, [] { return Any(Samples::Large()); }, &typeid(T), !Samples::Inline});
}

const std::vector<State>& AllStates()
{
    static const std::vector<State> all = [] {
        std::vector<State> states;
        states.push_back({"empty", [] { return Any(); }, &typeid(Any::null_holder_type), true});
        AddStates<double>(states, "double");
        AddStates<Style*>(states, "Style*");
        AddStates<const Style*>(states, "const Style*");
        AddStates<VelString>(states, "string");
        AddStates<std::vector<Style*>>(states, "list");
        AddStates<Json::Object>(states, "object");
        AddStates<Json::Array>(states, "array");
        AddStates<std::uint32_t>(states, "number");
        return states;
    }();
    return all;
}

/// Calls `check` with every two states, the same one twice included.
template <class Check>
void ForEachPair(const Check& check)
{
    for (const State& first : AllStates())
    {
        for (const State& second : AllStates())
        {
            SCOPED_TRACE(first.name + " and " + second.name);
            check(first, second);
        }
    }
}

} // namespace

TYPED_TEST(AnyOf, HoldsAValueInItsPlace)
{
    using Samples = AnySamples<TypeParam>;
    Any value(Samples::Small());
    EXPECT_FALSE(value.IsEmpty());
    EXPECT_TRUE(value.Is<TypeParam>());
    EXPECT_EQ(value.GetType(), typeid(TypeParam));
    EXPECT_EQ(value.Get<TypeParam>(), Samples::Small());
    EXPECT_EQ(std::as_const(value).template Get<TypeParam>(), Samples::Small());
    EXPECT_EQ(value.GetIf<TypeParam>(), &value.Get<TypeParam>());
    EXPECT_EQ(std::as_const(value).template GetIf<TypeParam>(), &value.Get<TypeParam>());
    EXPECT_EQ(LivesInside(&value.Get<TypeParam>(), value), Samples::Inline);
}

TYPED_TEST(AnyOf, HandsOutAValueThatCanBeChanged)
{
    using Samples = AnySamples<TypeParam>;
    Any value(Samples::Small());
    value.Get<TypeParam>() = Samples::Large();
    EXPECT_EQ(value, Any(Samples::Large()));
}

TYPED_TEST(AnyOf, TheHolderIsAnInterfaceAndTheValueBehindIt)
{
    using Samples = AnySamples<TypeParam>;
    using Holder = Any::Holder<TypeParam>;
    static_assert(std::is_base_of_v<Any::Holder<TypeParam, false, false>, Holder>);
    static_assert(std::is_base_of_v<Any::HolderInterface, Any::Holder<TypeParam, false, false>>);
    if constexpr (Samples::Inline)
    {
        static_assert(sizeof(void*) != 8 || sizeof(Holder) == 16);
    }
    else
    {
        static_assert(sizeof(TypeParam) > 8);
    }
    const Any value(Samples::Small());
    const auto* holder = reinterpret_cast<const std::byte*>(value.GetHolder());
    EXPECT_EQ(reinterpret_cast<const std::byte*>(&value.Get<TypeParam>()) - holder,
              static_cast<std::ptrdiff_t>(sizeof(void*)));
    EXPECT_EQ(static_cast<const void*>(holder) == static_cast<const void*>(&value), Samples::Inline);
    // The flag stands behind the storage.
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(&value)[16], Samples::Inline ? 0 : 1);
}

TYPED_TEST(AnyOf, TheHolderHasTheComparisonsOfTheTypeAlsoInCopies)
{
    using Samples = AnySamples<TypeParam>;
    using Flagged = Any::Holder<TypeParam, Samples::EqualityComparable, Samples::LessComparable>;
    Any value(Samples::Small());
    const Any copy(value);
    Any assigned;
    assigned = value;
    Any replaced(1.5f);
    replaced = value;
    const Any moved(std::move(value));
    for (const Any* any : {&copy, &std::as_const(assigned), &std::as_const(replaced), &moved})
    {
        const Any::HolderInterface& holder = *any->GetHolder();
        EXPECT_EQ(typeid(holder), typeid(Flagged));
        EXPECT_EQ(*any, Any(Samples::Small()));
    }
}

TYPED_TEST(AnyOf, ComparesByTheFlagsOfTheType)
{
    using Samples = AnySamples<TypeParam>;
    const Any small(Samples::Small()), same(Samples::Small()), large(Samples::Large());
    EXPECT_TRUE(small == same);
    EXPECT_FALSE(small == large);
    EXPECT_FALSE(large == small);
    EXPECT_FALSE(small != same);
    EXPECT_EQ(small < large, Samples::LessComparable);
    EXPECT_FALSE(large < small);
    EXPECT_FALSE(small < same);
}

TYPED_TEST(AnyOf, MovingLeavesAnInlineValueItsTypeAndAHeapValueNothing)
{
    using Samples = AnySamples<TypeParam>;
    Any source(Samples::Small());
    const void* before = &source.Get<TypeParam>();
    const Any target(std::move(source));
    EXPECT_EQ(target.Get<TypeParam>(), Samples::Small());
    if constexpr (Samples::Inline)
    {
        EXPECT_TRUE(source.Is<TypeParam>());
    }
    else
    {
        EXPECT_TRUE(source.IsEmpty());
        EXPECT_EQ(source.GetType(), typeid(Any::null_holder_type));
        EXPECT_EQ(&target.Get<TypeParam>(), before);
    }
}

TYPED_TEST(AnyOf, AssigningTheSameTypeReusesTheHolder)
{
    using Samples = AnySamples<TypeParam>;
    Any target(Samples::Small());
    const Any::HolderInterface* holder = target.GetHolder();
    const Any source(Samples::Large());
    target = source;
    EXPECT_EQ(target.GetHolder(), holder);
    EXPECT_EQ(target.Get<TypeParam>(), Samples::Large());
    EXPECT_EQ(source.Get<TypeParam>(), Samples::Large());
}

TEST(Any, TheFailureOfAMismatchedTypeIsCalledBadCast)
{
    try
    {
        static_cast<void>(Any(1.0).Get<Style*>());
        FAIL() << "a number was taken for a style";
    }
    catch (const std::bad_cast& failure)
    {
        EXPECT_STREQ("bad cast", failure.what());
    }
}

TYPED_TEST(AnyOf, AMismatchedTypeThrowsBadCastAndLeavesTheValue)
{
    struct Other
    {};
    Any value(AnySamples<TypeParam>::Small());
    EXPECT_FALSE(value.Is<Other>());
    EXPECT_THROW(static_cast<void>(value.Get<Other>()), std::bad_cast);
    EXPECT_THROW(static_cast<void>(std::as_const(value).template Get<Other>()), std::bad_cast);
    EXPECT_EQ(value.GetIf<Other>(), nullptr);
    EXPECT_EQ(std::as_const(value).template GetIf<Other>(), nullptr);
    EXPECT_EQ(value.Get<TypeParam>(), AnySamples<TypeParam>::Small());
}

TYPED_TEST(AnyOf, OnlyEnumerationsAreEnumerations)
{
    const Any value(AnySamples<TypeParam>::Small());
    EXPECT_EQ(value.GetHolder()->IsEnum(), (std::is_same_v<TypeParam, Json::NullType>));
    EXPECT_EQ(value.GetHolder()->GetEnumValue(), 0);
}

TEST(Any, ADefaultConstructedValueIsEmpty)
{
    Any value;
    EXPECT_TRUE(value.IsEmpty());
    EXPECT_EQ(value.GetType(), typeid(Any::null_holder_type));
    EXPECT_EQ(value.GetHolder(), nullptr);
    EXPECT_EQ(reinterpret_cast<const unsigned char*>(&value)[16], 1);
    EXPECT_THROW(static_cast<void>(value.Get<double>()), std::bad_cast);
    EXPECT_THROW(static_cast<void>(std::as_const(value).Get<Style*>()), std::bad_cast);
    EXPECT_EQ(value.GetIf<double>(), nullptr);
    EXPECT_FALSE(value.Is<double>());
}

TEST(Any, TwoEmptyValuesAreEqualAndDifferFromEveryOther)
{
    EXPECT_TRUE(Any() == Any());
    for (std::size_t index = 1; index < AllStates().size(); ++index)
    {
        EXPECT_FALSE(Any() == AllStates()[index].make());
        EXPECT_FALSE(AllStates()[index].make() == Any());
    }
}

TEST(Any, EveryStateComparesWithEveryOther)
{
    ForEachPair([](const State& first, const State& second) {
        const Any a = first.make(), b = second.make();
        EXPECT_EQ(a == b, &first == &second);
        if (*first.type != *second.type)
        {
            EXPECT_EQ(a < b, first.type->before(*second.type));
            EXPECT_NE(a < b, b < a) << "values of different types are always ordered";
        }
        EXPECT_FALSE(a < b && b < a);
    });
}

TEST(Any, EveryStateIsAssignedToEveryOther)
{
    ForEachPair([](const State& first, const State& second) {
        Any target = first.make();
        const Any source = second.make();
        Any& result = (target = source);
        EXPECT_EQ(&result, &target);
        EXPECT_TRUE(target == second.make());
        EXPECT_TRUE(source == second.make());
        EXPECT_EQ(target.GetType(), *second.type);
        target = first.make();
        EXPECT_TRUE(target == first.make()) << "and back again";
    });
}

TEST(Any, AssigningARvalueCopiesAndLeavesTheSourceItsValue)
{
    ForEachPair([](const State& first, const State& second) {
        Any target = first.make();
        Any source = second.make();
        target = std::move(source);
        EXPECT_TRUE(target == second.make());
        EXPECT_TRUE(source == second.make());
    });
}

TEST(Any, EveryStateIsExchangedWithEveryOther)
{
    ForEachPair([](const State& first, const State& second) {
        Any a = first.make(), b = second.make();
        const Any::HolderInterface* const holderOfA = a.GetHolder();
        const Any::HolderInterface* const holderOfB = b.GetHolder();
        a.Swap(b);
        EXPECT_TRUE(a == second.make());
        EXPECT_TRUE(b == first.make());
        if (first.onHeap && second.onHeap)
        {
            EXPECT_EQ(a.GetHolder(), holderOfB);
            EXPECT_EQ(b.GetHolder(), holderOfA);
        }
    });
}

TEST(Any, EveryStateIsCopiedMovedAndExchangedWithItself)
{
    for (const State& state : AllStates())
    {
        SCOPED_TRACE(state.name);
        Any value = state.make();
        const Any copy(value);
        EXPECT_TRUE(copy == value);
        EXPECT_TRUE(value == state.make());
        const Any& self = value;
        value = self;
        EXPECT_TRUE(value == state.make());
        value.Swap(value);
        EXPECT_TRUE(value == state.make());
        const Any moved(std::move(value));
        EXPECT_TRUE(moved == state.make());
        EXPECT_EQ(value.GetType(), state.onHeap ? typeid(Any::null_holder_type) : *state.type);
        value = state.make();
        EXPECT_TRUE(value == state.make()) << "a value that was moved from can be used again";
    }
}

TEST(Any, ExchangingAnInlineValueWithAnEmptyOneMovesItThere)
{
    Any inlineValue(2.5), empty;
    inlineValue.Swap(empty);
    EXPECT_TRUE(inlineValue.IsEmpty());
    EXPECT_EQ(empty.Get<double>(), 2.5);
}

TEST(Any, ANumberAndAStringAreUnequalAndOrderedByTheirTypes)
{
    const Any number(1.0), text(VelString(L"1.0"));
    EXPECT_FALSE(number == text);
    EXPECT_EQ(number < text, typeid(double).before(typeid(VelString)));
    EXPECT_EQ(text < number, typeid(VelString).before(typeid(double)));
    EXPECT_EQ(Any() < number, typeid(Any::null_holder_type).before(typeid(double)));
    EXPECT_EQ(number < Any(), typeid(double).before(typeid(Any::null_holder_type)));
}

TEST(Any, AStyleIsNoConstStyle)
{
    Style style;
    Any value(static_cast<const Style*>(&style));
    EXPECT_THROW(static_cast<void>(value.Get<Style*>()), std::bad_cast);
    EXPECT_EQ(value.Get<const Style*>(), &style);
    EXPECT_FALSE(value == Any(&style));
    EXPECT_THROW(static_cast<void>(Any(&style).Get<const Style*>()), std::bad_cast);
}

TEST(Any, NumbersCompareAsNumbersDo)
{
    const Any notANumber(std::numeric_limits<double>::quiet_NaN());
    EXPECT_FALSE(notANumber == notANumber);
    EXPECT_FALSE(notANumber < notANumber);
    EXPECT_TRUE(Any(0.0) == Any(-0.0));
    EXPECT_TRUE(Any(-1.0) < Any(0.0));
}

TEST(Any, StringsCompareByCase)
{
    EXPECT_FALSE(Any(VelString(L"Angle")) == Any(VelString(L"angle")));
    EXPECT_TRUE(Any(VelString(L"Angle")) < Any(VelString(L"angle")));
    EXPECT_TRUE(Any(VelString(L"ab")) < Any(VelString(L"abc")));
    EXPECT_TRUE(Any(VelString()) < Any(VelString(L"\x01")));
}

TEST(Any, ListsCompareElementByElementAndAProperPrefixIsLess)
{
    static Style styles[2];
    using List = std::vector<Style*>;
    Style *const low = &styles[0], *const high = &styles[1];
    EXPECT_TRUE(Any(List{low, high}) == Any(List{low, high}));
    EXPECT_FALSE(Any(List{low, high}) == Any(List{high, low}));
    EXPECT_TRUE(Any(List{low}) < Any(List{low, high}));
    EXPECT_FALSE(Any(List{low, high}) < Any(List{low}));
    EXPECT_TRUE(Any(List{low, high}) < Any(List{high}));
    EXPECT_TRUE(Any(List()) < Any(List{nullptr}));
}

TEST(Any, ObjectsWithEqualMembersAreEqualAndNeverOrdered)
{
    Json::Object one, same, other;
    one.AddValue(VelString(L"a"), 1.0);
    same.AddValue(VelString(L"a"), 1.0);
    other.AddValue(VelString(L"a"), 2.0);
    EXPECT_TRUE(Any(one) == Any(same));
    EXPECT_FALSE(Any(one) == Any(other));
    EXPECT_FALSE(Any(one) < Any(same));
    EXPECT_FALSE(Any(one) < Any(other));
    EXPECT_FALSE(Any(other) < Any(one));
}

TEST(Any, ATextLiteralBecomesAString)
{
    EXPECT_EQ(Any(L"wide").Get<VelString>(), VelString(L"wide"));
    EXPECT_EQ(Any("narrow").Get<VelStringA>(), VelStringA("narrow"));
    const wchar_t* nothing = nullptr;
    EXPECT_EQ(Any(nothing).Get<VelString>(), VelString());
    wchar_t buffer[] = L"buffer";
    EXPECT_EQ(Any(buffer).Get<VelString>(), VelString(L"buffer"));
}
