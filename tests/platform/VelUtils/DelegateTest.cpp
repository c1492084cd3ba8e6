#include "VelUtils/Delegate.h"

#include <gmock/gmock.h>

#include <memory>
#include <stdexcept>
#include <string>

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

struct Adder
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
