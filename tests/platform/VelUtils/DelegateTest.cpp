#include "VelUtils/Delegate.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>

using VelUtils::basic_safe_function;
using VelUtils::Delegate;

namespace
{

int Twice(int number)
{
    return 2 * number;
}

int Call(Delegate<int(int)> delegate, int number)
{
    return delegate(number);
}

// As large as a pointer, since g++ 12 fears that a virtual table is looked for in it.
struct alignas(void*) Adder
{
    int sum = 0;
    int Add(int number) { return sum += number; }
    int operator()(int number) { return Add(number); }
};

} // namespace

TEST(Delegate, IsTwoWordsWide)
{
    EXPECT_EQ(2 * sizeof(void*), sizeof(Delegate<void()>));
    EXPECT_TRUE((std::is_trivially_copyable_v<Delegate<int(int)>>));
}

TEST(Delegate, IsMadeFromAnyCallableInTheCall)
{
    int offset = 1;
    const auto constant = [](int number) { return number + 5; };
    Adder adder;
    EXPECT_EQ(4, Call([&](int number) { return number + offset; }, 3));
    EXPECT_EQ(6, Call(Twice, 3));
    EXPECT_EQ(6, Call(&Twice, 3));
    EXPECT_EQ(8, Call(constant, 3));
    EXPECT_EQ(3, Call(adder, 3));
    EXPECT_EQ(7, Call(std::function<int(int)>([](int number) { return number + 4; }), 3));
}

TEST(Delegate, RefersToTheCallableAndCopiesNothing)
{
    Adder adder;
    const Delegate<int(int)> delegate = adder;
    const Delegate<int(int)> copy = delegate;
    delegate(1);
    copy(2);
    EXPECT_EQ(3, adder.sum);
}

TEST(Delegate, KeepsAFunctionPointerItself)
{
    int (*function)(int) = Twice;
    const Delegate<int(int)> delegate = function;
    function = nullptr;
    EXPECT_EQ(8, delegate(4));
}

TEST(Delegate, ANullFunctionPointerThrowsWhenItIsCalled)
{
    int (*const function)(int) = nullptr;
    EXPECT_THROW(Call(function, 1), std::bad_function_call);
    EXPECT_THROW(Call(basic_safe_function<int(int)>(), 1), std::bad_function_call);
}

TEST(Delegate, DropsAResultThatNobodyWants)
{
    Adder adder;
    const Delegate<void(int)> delegate = adder;
    delegate(4);
    const Delegate<void(int)> function = Twice;
    function(1);
    EXPECT_EQ(4, adder.sum);
}

TEST(Delegate, PassesReferencesAndMovesThrough)
{
    const auto take = [](std::unique_ptr<int> number, int& target) { target = *number; };
    const Delegate<void(std::unique_ptr<int>, int&)> delegate = take;
    int target = 0;
    delegate(std::make_unique<int>(9), target);
    EXPECT_EQ(9, target);
    const auto same = [&target]() -> int& { return target; };
    const Delegate<int&()> reference = same;
    EXPECT_EQ(&target, &reference());
}

TEST(Delegate, WhatTheCallableThrowsPassesThrough)
{
    EXPECT_THROW(Call([](int) -> int { throw std::runtime_error("thrown"); }, 1), std::runtime_error);
}

TEST(SafeFunction, StartsEmptyAndThrowsWhenItIsCalled)
{
    const basic_safe_function<int(int)> empty;
    EXPECT_FALSE(empty);
    EXPECT_THROW(empty(1), std::bad_function_call);
    EXPECT_FALSE((basic_safe_function<int(int)>(nullptr)));
    EXPECT_FALSE((std::is_convertible_v<basic_safe_function<int(int)>, bool>));
}

TEST(SafeFunction, WhatIsEmptyItselfMakesItEmpty)
{
    int (*const function)(int) = nullptr;
    EXPECT_FALSE((basic_safe_function<int(int)>(function)));
    EXPECT_FALSE((basic_safe_function<int(int)>(std::function<int(int)>())));
}

TEST(SafeFunction, OwnsItsCallable)
{
    auto shared = std::make_shared<int>(7);
    const std::weak_ptr<int> watched = shared;
    {
        basic_safe_function<int(int)> function = [shared = std::move(shared)](int number) { return number + *shared; };
        ASSERT_TRUE(function);
        EXPECT_EQ(8, function(1));
        basic_safe_function<int(int)> copy = function;
        function = nullptr;
        EXPECT_FALSE(function);
        EXPECT_EQ(9, copy(2));
    }
    EXPECT_TRUE(watched.expired());
}

TEST(Delegate, IsMadeFromAPointerToAMemberToo)
{
    Adder adder;
    auto add = &Adder::Add;
    auto sum = &Adder::sum;
    const Delegate<int(Adder&, int)> call = add;
    EXPECT_EQ(3, call(adder, 3));
    const Delegate<int(const Adder*)> look = sum;
    EXPECT_EQ(3, look(&adder));
    const basic_safe_function<int(Adder&, int)> owned = &Adder::Add;
    EXPECT_EQ(7, owned(adder, 4));
    EXPECT_FALSE((basic_safe_function<int(Adder&, int)>(static_cast<int (Adder::*)(int)>(nullptr))));
}

TEST(SafeFunction, HasAStateOfItsOwnInEachCopy)
{
    const basic_safe_function<int(int)> function = Adder();
    const basic_safe_function<int(int)> copy = function;
    EXPECT_EQ(1, function(1));
    EXPECT_EQ(3, function(2)) << "it is called as what it was made from, which is not const";
    EXPECT_EQ(5, copy(5));
}

TEST(SafeFunction, IsEmptyAfterItWasMovedFrom)
{
    basic_safe_function<int(int)> function = Twice;
    const basic_safe_function<int(int)> moved = std::move(function);
    EXPECT_EQ(4, moved(2));
    EXPECT_FALSE(function); // NOLINT(bugprone-use-after-move)
    basic_safe_function<int(int)> target = Adder();
    target = function;
    EXPECT_FALSE(target);
    const basic_safe_function<int(int)>& itself = moved;
    target = itself;
    target = static_cast<const basic_safe_function<int(int)>&>(target);
    EXPECT_EQ(4, target(2));
}

TEST(SafeFunction, StaysAsItWasWhenTheOtherCannotBeCopied)
{
    struct Uncopyable
    {
        Uncopyable() = default;
        Uncopyable(const Uncopyable&) { throw std::runtime_error("thrown"); }
        Uncopyable(Uncopyable&&) noexcept {}
        Uncopyable& operator=(const Uncopyable&) = delete;
        int operator()(int number) const { return -number; }
    };
    const basic_safe_function<int(int)> other = Uncopyable();
    basic_safe_function<int(int)> function = Twice;
    EXPECT_THROW(function = other, std::runtime_error);
    EXPECT_EQ(4, function(2));
}
