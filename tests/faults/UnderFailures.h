// Runs an operation once for each point at which it may fail, and holds what is left against what was promised.
#pragma once

#include "faults/FailingAllocations.h"
#include "faults/FaultyDefinitions.h"

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <new>
#include <ostream>
#include <string>
#include <vector>

namespace Styles::Testing
{

/// What may be seen of a world: texts by the places where they stand.
using Picture = std::map<std::string, std::string>;

/// What holds after a failure.
enum class Promise
{
    Unchanged,  ///< everything is as it was, also the addresses
    Stepwise,   ///< each value is as it was or as it would be
    MayClear,   ///< the same, or gone
    SameEffect, ///< every style answers the same look-ups
    Usable      ///< everything that is there can be used
};

/// One operation on a `World`, which has a default constructor and the three pictures that `Check` takes.
template <class World>
struct Operation
{
    const char* name;
    std::function<void(World&)> act;
    Promise whenMemoryEnds = Promise::Unchanged;
    /// After the failure of a definition other than in destroying a value.
    Promise whenDefinitionsThrow = Promise::Unchanged;
    /// Whether the failure may turn into a result (false, an empty text), and what would have been done is not done.
    bool mayAnswerInstead = false;
    /// Whether doing it again after a failure leads to the same as doing it once.
    bool repeats = true;
};

/// One run of an operation with a failure in it.
template <class World>
class FailingRun
{
public:
    FailingRun(const Operation<World>& operation, bool byMemory, const Picture& expected)
        : m_operation(operation), m_byMemory(byMemory), m_expected(expected)
    {}

    void Run(std::size_t n, FailureMode mode)
    {
        World world;
        const Picture identity = world.GetIdentity();
        const Picture content = world.GetContent();
        const Picture effect = world.GetEffect();
        const bool threw = Act(world, n, mode);
        if (!Points().HasFailed())
        {
            EXPECT_FALSE(threw);
            return;
        }
        const bool destroying = !m_byMemory && FirstFailureWasDestroying();
        const Promise promise = destroying   ? Promise::Usable
                                : m_byMemory ? m_operation.whenMemoryEnds
                                             : m_operation.whenDefinitionsThrow;
        const Picture contentNow = world.GetContent();
        const Picture effectNow = world.GetEffect();
        if (!threw)
        {
            EXPECT_TRUE(m_operation.mayAnswerInstead || contentNow == m_expected)
                << "nothing was thrown, and yet it is not done";
        }
        else if (promise == Promise::Unchanged)
        {
            ExpectSame(identity, world.GetIdentity(), "is no longer as it was");
        }
        else if (promise == Promise::SameEffect)
        {
            ExpectSame(effect, effectNow, "is looked up as something else");
        }
        else if (promise != Promise::Usable)
        {
            ExpectSteps(content, contentNow, promise == Promise::MayClear);
        }
        if (threw && m_operation.repeats && promise != Promise::Usable)
        {
            m_operation.act(world);
            ExpectSame(m_expected, world.GetContent(), "is not as promised after the second try");
        }
    }

    FailurePoints& Points() const { return m_byMemory ? AllocationPoints() : CallPoints(); }

private:
    /// Whether it threw.
    bool Act(World& world, std::size_t n, FailureMode mode)
    {
        FirstFailureWasDestroying() = false;
        Points().Arm(n, mode);
        try
        {
            m_operation.act(world);
            Points().Disarm();
            return false;
        }
        catch (const std::bad_alloc&)
        {
            Points().Disarm();
            EXPECT_TRUE(m_byMemory);
        }
        catch (const HostFailure&)
        {
            Points().Disarm();
            EXPECT_FALSE(m_byMemory);
        }
        catch (const std::exception& other)
        {
            Points().Disarm();
            ADD_FAILURE() << "another exception left: " << other.what();
        }
        return true;
    }

    static std::string At(const Picture& picture, const std::string& place)
    {
        const auto entry = picture.find(place);
        return entry != picture.end() ? entry->second : std::string("(nothing)");
    }

    static void ExpectSame(const Picture& expected, const Picture& now, const char* complaint)
    {
        Picture places = expected;
        places.insert(now.begin(), now.end());
        for (const auto& entry : places)
        {
            EXPECT_EQ(At(expected, entry.first), At(now, entry.first)) << entry.first << ' ' << complaint;
        }
    }

    void ExpectSteps(const Picture& before, const Picture& now, bool mayClear) const
    {
        Picture places = before;
        places.insert(m_expected.begin(), m_expected.end());
        places.insert(now.begin(), now.end());
        for (const auto& entry : places)
        {
            const std::string& place = entry.first;
            const std::string is = At(now, place);
            const bool allowed =
                is == At(before, place) || is == At(m_expected, place) || (mayClear && is == "(nothing)");
            EXPECT_TRUE(allowed) << place << " is " << is << ", was " << At(before, place) << " and was to be "
                                 << At(m_expected, place);
        }
    }

    const Operation<World>& m_operation;
    bool m_byMemory;
    const Picture& m_expected;
};

/// Fails each point of the operation: that point alone, and all from it on.
template <class World>
void RunUnderFailures(const Operation<World>& operation, bool byMemory)
{
    SCOPED_TRACE(operation.name);
    {
        World warmUp; // what is made once in the life of the process is made here
        operation.act(warmUp);
    }
    Picture expected;
    std::size_t count = 0;
    FailingRun<World> run(operation, byMemory, expected);
    {
        World world;
        run.Points().Count();
        operation.act(world);
        run.Points().Disarm();
        count = run.Points().GetReached();
        expected = world.GetContent();
    }
    const std::size_t before = GetLiveAllocations();
    {
        World world;
        operation.act(world);
    }
    EXPECT_EQ(GetLiveAllocations(), before) << "something leaks without any failure";
    for (const FailureMode mode : {FailureMode::Once, FailureMode::FromThenOn})
    {
        for (std::size_t n = 1; n <= count; ++n)
        {
            SCOPED_TRACE((mode == FailureMode::Once ? "fails at " : "fails from ") + std::to_string(n) + " of " +
                         std::to_string(count));
            const std::size_t live = GetLiveAllocations();
            run.Run(n, mode);
            if (testing::Test::HasFailure())
            {
                return; // one report is enough, and failing keeps memory
            }
            EXPECT_EQ(GetLiveAllocations(), live) << "something leaked";
        }
    }
}

/// How the failing operation is named in messages.
template <class World>
void PrintTo(const Operation<World>& operation, std::ostream* out)
{
    *out << operation.name;
}

/// Names a parameterised test after its operation.
struct OperationName
{
    template <class Info>
    std::string operator()(const Info& info) const
    {
        return info.param.name;
    }
};

} // namespace Styles::Testing
