// Runs an operation once for each point at which it may fail, and holds what is left against what was promised.
#pragma once

#include "faults/FailingAllocations.h"
#include "faults/FaultyDefinitions.h"
#include "faults/Painter.h"

#include <gtest/gtest.h>

#include <functional>
#include <new>
#include <ostream>
#include <string>
#include <vector>

namespace Styles::Testing
{

/// What holds after a failure.
enum class Promise
{
    Unchanged,    ///< everything is as it was, also the addresses
    Done,         ///< everything is as without the failure
    AllOrNothing, ///< everything is as it was or as without the failure
    Stepwise,     ///< each value is as it was or as it would be
    MayClear,     ///< the same, or gone
    SameEffect,   ///< every style answers the same look-ups
    AsChecked,    ///< what `alsoHolds` looks for
    ThrowsNothing ///< the failure is never seen, and everything is done
};

/// How worlds look before and after an operation without a failure: the same in all of them.
struct Expectation
{
    Picture contentBefore;
    Picture effectBefore;
    Picture contentAfter;
};

/// One operation on a `World`, which has a default constructor and the three pictures that `Check` takes. A world
/// checks while it is drawn that what is there can be used.
template <class World>
struct Operation
{
    const char* name;
    std::function<void(World&)> act;
    Promise whenMemoryEnds = Promise::Unchanged;
    /// After the failure of a definition or of another call into the host, other than in destroying a value.
    Promise whenDefinitionsThrow = Promise::Unchanged;
    /// Whether the failure may turn into a result (false, an empty text), and what would have been done is not done.
    bool mayAnswerInstead = false;
    /// Whether doing it again after a failure leads to the same as doing it once.
    bool repeats = true;
    /// After a definition has destroyed a value, and then thrown.
    Promise whenDestroyingThrows = Promise::AllOrNothing;
    /// What is to be there before, without any failure.
    std::function<void(World&)> prepare = nullptr;
    /// What else holds after a failure; called with how this world looked before.
    std::function<void(World&, const Picture& identityBefore, const Expectation&)> alsoHolds = nullptr;

    void Prepare(World& world) const
    {
        if (prepare)
        {
            prepare(world);
        }
    }
};

/// One run of an operation with a failure in it.
template <class World>
class FailingRun
{
public:
    FailingRun(const Operation<World>& operation, bool byMemory, const Expectation& expected)
        : m_operation(operation), m_byMemory(byMemory), m_expected(expected)
    {}

    void Run(std::size_t n, FailureMode mode)
    {
        World world;
        m_operation.Prepare(world);
        const Promise expected = m_byMemory ? m_operation.whenMemoryEnds : m_operation.whenDefinitionsThrow;
        const bool needsIdentity = expected == Promise::Unchanged || m_operation.alsoHolds;
        const Picture identity = needsIdentity ? world.GetIdentity() : Picture();
        const bool threw = Act(world, n, mode);
        if (!Points().HasFailed())
        {
            EXPECT_FALSE(threw);
            return;
        }
        if (m_operation.alsoHolds)
        {
            m_operation.alsoHolds(world, identity, m_expected);
        }
        if (!threw)
        {
            const Picture contentNow = world.GetContent();
            EXPECT_TRUE(m_operation.mayAnswerInstead || contentNow == m_expected.contentAfter)
                << "nothing was thrown, and yet it is not done";
            return;
        }
        Check(CurrentPromise(), world, identity);
        if (m_operation.repeats && CurrentPromise() != Promise::Done && CurrentPromise() != Promise::AllOrNothing &&
            CurrentPromise() != Promise::AsChecked)
        {
            m_operation.act(world);
            ExpectSame(m_expected.contentAfter, world.GetContent(), "is not as promised after the second try");
        }
    }

    FailurePoints& Points() const { return m_byMemory ? AllocationPoints() : CallPoints(); }

private:
    Promise CurrentPromise() const
    {
        if (m_byMemory)
        {
            return m_operation.whenMemoryEnds;
        }
        return FirstFailureWasDestroying() ? m_operation.whenDestroyingThrows : m_operation.whenDefinitionsThrow;
    }

    void Check(Promise promise, const World& world, const Picture& identity) const
    {
        switch (promise)
        {
        case Promise::Unchanged:
            ExpectSame(identity, world.GetIdentity(), "is no longer as it was");
            break;
        case Promise::Done:
            ExpectSame(m_expected.contentAfter, world.GetContent(), "is not done");
            break;
        case Promise::AllOrNothing:
            if (const Picture now = world.GetContent(); now != m_expected.contentBefore)
            {
                ExpectSame(m_expected.contentAfter, now, "is neither as it was nor done");
            }
            break;
        case Promise::Stepwise:
        case Promise::MayClear:
            ExpectSteps(world.GetContent(), promise == Promise::MayClear);
            break;
        case Promise::SameEffect:
            ExpectSame(m_expected.effectBefore, world.GetEffect(), "is looked up as something else");
            (void)world.GetContent();
            break;
        case Promise::AsChecked:
            break;
        case Promise::ThrowsNothing:
            ADD_FAILURE() << "it was to throw nothing";
            break;
        }
    }

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
        if (expected == now)
        {
            return;
        }
        Picture places = expected;
        places.insert(now.begin(), now.end());
        for (const auto& entry : places)
        {
            EXPECT_EQ(At(expected, entry.first), At(now, entry.first)) << entry.first << ' ' << complaint;
        }
    }

    void ExpectSteps(const Picture& now, bool mayClear) const
    {
        Picture places = m_expected.contentBefore;
        places.insert(m_expected.contentAfter.begin(), m_expected.contentAfter.end());
        places.insert(now.begin(), now.end());
        for (const auto& entry : places)
        {
            const std::string& place = entry.first;
            const std::string is = At(now, place);
            const std::string was = At(m_expected.contentBefore, place);
            const std::string wouldBe = At(m_expected.contentAfter, place);
            const bool allowed = is == was || is == wouldBe || (mayClear && is == "(nothing)");
            EXPECT_TRUE(allowed) << place << " is " << is << ", was " << was << " and was to be " << wouldBe;
        }
    }

    const Operation<World>& m_operation;
    bool m_byMemory;
    const Expectation& m_expected;
};

/// Fails each point of the operation: that point alone, and all from it on.
template <class World>
void RunUnderFailures(const Operation<World>& operation, bool byMemory)
{
    SCOPED_TRACE(operation.name);
    {
        World warmUp; // what is made once in the life of the process is made here
        operation.Prepare(warmUp);
        operation.act(warmUp);
    }
    Expectation expected;
    std::size_t count = 0;
    FailingRun<World> run(operation, byMemory, expected);
    {
        World world;
        operation.Prepare(world);
        expected.contentBefore = world.GetContent();
        expected.effectBefore = world.GetEffect();
        run.Points().Count();
        operation.act(world);
        run.Points().Disarm();
        count = run.Points().GetReached();
        expected.contentAfter = world.GetContent();
    }
    const std::size_t before = GetLiveAllocations();
    {
        World world;
        operation.Prepare(world);
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
