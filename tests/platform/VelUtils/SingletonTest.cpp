#include "VelUtils/Singleton.h"

#include "platform/VelUtils/SharedCounter.h"
#include "support/LoadedModule.h"

#include <gmock/gmock.h>

#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

using VelUtils::Singleton;
using VelUtils::SingletonLibrary;
using VelUtils::SingletonRecord;

namespace
{

/// Counts its own life.
class Counted
{
public:
    static inline std::atomic<int> s_made = 0;
    static inline std::atomic<int> s_deleted = 0;
    static inline bool s_refuse = false;
    static inline bool s_sawItselfWhileDying = false;

    int value = 0;

private:
    template <class T, int N>
    friend class VelUtils::Singleton;

    Counted()
    {
        if (s_refuse)
        {
            throw std::runtime_error("refused");
        }
        ++s_made;
    }
    ~Counted()
    {
        ++s_deleted;
        s_sawItselfWhileDying = &Singleton<Counted, 0>::GetInstance() == this;
    }
};

using CountedSingleton = Singleton<Counted, 0>;

class SingletonTest : public testing::Test
{
protected:
    void SetUp() override
    {
        CountedSingleton::ReleaseInstance(false);
        Counted::s_made = 0;
        Counted::s_deleted = 0;
    }
    void TearDown() override { CountedSingleton::ReleaseInstance(false); }
};

std::unique_ptr<SingletonRecord> MakeRecord()
{
    return std::make_unique<SingletonRecord>();
}

template <int>
struct Key;

} // namespace

TEST_F(SingletonTest, TheInstanceIsMadeOnFirstUseAndOnlyOnce)
{
    EXPECT_FALSE(CountedSingleton::HasInstance());
    EXPECT_EQ(0, Counted::s_made);
    Counted& first = CountedSingleton::GetInstance();
    EXPECT_TRUE(CountedSingleton::HasInstance());
    EXPECT_EQ(&first, &CountedSingleton::GetInstance());
    EXPECT_EQ(1, Counted::s_made);
}

TEST_F(SingletonTest, ReleaseDeletesTheInstanceAndTheNextUseMakesAnother)
{
    CountedSingleton::GetInstance().value = 5;
    CountedSingleton::ReleaseInstance(false);
    EXPECT_FALSE(CountedSingleton::HasInstance());
    EXPECT_EQ(1, Counted::s_deleted);
    EXPECT_EQ(0, CountedSingleton::GetInstance().value);
    EXPECT_EQ(2, Counted::s_made);
}

TEST_F(SingletonTest, ReleaseWithoutAnInstanceDoesNothing)
{
    CountedSingleton::ReleaseInstance(false);
    EXPECT_EQ(0, Counted::s_deleted);
}

TEST_F(SingletonTest, AFinalReleaseMarksTheRecordUntilThereIsAnotherInstance)
{
    CountedSingleton::GetInstance();
    SingletonRecord* const record = CountedSingleton::GetSingletonData(false);
    ASSERT_NE(nullptr, record);
    CountedSingleton::ReleaseInstance(false);
    EXPECT_FALSE(record->finished);
    CountedSingleton::GetInstance();
    CountedSingleton::ReleaseInstance(true);
    EXPECT_TRUE(record->finished);
    EXPECT_FALSE(CountedSingleton::HasInstance());
    CountedSingleton::GetInstance();
    EXPECT_TRUE(CountedSingleton::HasInstance());
    EXPECT_FALSE(record->finished);
}

TEST_F(SingletonTest, AConstructorThatThrowsLeavesNoInstanceAndIsTriedAgain)
{
    Counted::s_refuse = true;
    EXPECT_THROW(CountedSingleton::GetInstance(), std::runtime_error);
    EXPECT_FALSE(CountedSingleton::HasInstance());
    Counted::s_refuse = false;
    CountedSingleton::GetInstance();
    EXPECT_EQ(1, Counted::s_made);
}

TEST_F(SingletonTest, ADestructorStillFindsTheInstanceItEnds)
{
    CountedSingleton::GetInstance();
    Counted::s_sawItselfWhileDying = false;
    CountedSingleton::ReleaseInstance(false);
    EXPECT_TRUE(Counted::s_sawItselfWhileDying);
}

TEST_F(SingletonTest, NumbersTellSingletonsOfOneTypeApart)
{
    SharedCounter& second = Singleton<SharedCounter, 2>::GetInstance();
    SharedCounter& third = Singleton<SharedCounter, 3>::GetInstance();
    EXPECT_NE(&second, &third);
    EXPECT_FALSE((Singleton<SharedCounter, 4>::HasInstance()));
    Singleton<SharedCounter, 2>::ReleaseInstance(false);
    EXPECT_TRUE((Singleton<SharedCounter, 3>::HasInstance()));
    Singleton<SharedCounter, 3>::ReleaseInstance(false);
}

TEST_F(SingletonTest, TheFinalizerReleasesTheInstanceAndUseAfterwardsMakesAnother)
{
    CountedSingleton::GetInstance();
    CountedSingleton::StaticFinalizer();
    EXPECT_EQ(1, Counted::s_deleted);
    EXPECT_EQ(nullptr, CountedSingleton::GetSingletonData(false));
    EXPECT_FALSE(CountedSingleton::HasInstance());
    CountedSingleton::StaticFinalizer();
    CountedSingleton::GetInstance();
    EXPECT_EQ(2, Counted::s_made);
}

TEST_F(SingletonTest, ThreadsThatAskFirstAllGetOneInstance)
{
    for (int round = 0; round < 20; ++round)
    {
        Counted::s_made = 0;
        std::atomic<bool> go = false;
        std::vector<Counted*> found(16);
        std::vector<std::thread> threads;
        for (Counted*& mine : found)
        {
            threads.emplace_back([&mine, &go] {
                while (!go)
                {
                    std::this_thread::yield();
                }
                mine = &CountedSingleton::GetInstance();
            });
        }
        go = true;
        for (std::thread& thread : threads)
        {
            thread.join();
        }
        EXPECT_EQ(1u, std::set<Counted*>(found.begin(), found.end()).size());
        EXPECT_EQ(1, Counted::s_made);
        // Every other round starts without a record, too.
        round % 2 ? CountedSingleton::ReleaseInstance(false) : CountedSingleton::StaticFinalizer();
    }
}

TEST(SingletonLibrary, MakesARecordOnlyWhenAsked)
{
    SingletonLibrary::ResetCallback reset = [] {};
    EXPECT_EQ(nullptr, SingletonLibrary::GetEntryForType(typeid(Key<1>*), MakeRecord, false, &reset));
    SingletonRecord* const made = SingletonLibrary::GetEntryForType(typeid(Key<1>*), MakeRecord, true, &reset);
    ASSERT_NE(nullptr, made);
    EXPECT_EQ(nullptr, made->instance);
    EXPECT_FALSE(made->finished);
    EXPECT_EQ(made, SingletonLibrary::GetEntryForType(typeid(Key<1>*), MakeRecord, false, &reset));
    SingletonLibrary::RemoveCallback(&reset);
    EXPECT_EQ(nullptr, SingletonLibrary::GetEntryForType(typeid(Key<1>*), MakeRecord, false, &reset));
}

TEST(SingletonLibrary, UsersOfOneTypeShareARecordUntilTheLastIsGone)
{
    int resets = 0;
    SingletonLibrary::ResetCallback first = [&] { ++resets; };
    SingletonLibrary::ResetCallback second = [&] { resets += 10; };
    SingletonRecord* const made = SingletonLibrary::GetEntryForType(typeid(Key<2>*), MakeRecord, true, &first);
    EXPECT_EQ(made, SingletonLibrary::GetEntryForType(typeid(Key<2>*), MakeRecord, true, &second));
    SingletonLibrary::NotifySingletonModuleUnloaded(&first);
    EXPECT_EQ(1, resets);
    EXPECT_EQ(made, SingletonLibrary::GetEntryForType(typeid(Key<2>*), MakeRecord, false, &second));
    SingletonLibrary::RemoveCallback(&second);
    EXPECT_EQ(1, resets);
    EXPECT_EQ(nullptr, SingletonLibrary::GetEntryForType(typeid(Key<2>*), MakeRecord, false, &first));
}

TEST(SingletonLibrary, UnknownCallbacksAreIgnored)
{
    int resets = 0;
    SingletonLibrary::ResetCallback unknown = [&] { ++resets; };
    SingletonLibrary::NotifySingletonModuleUnloaded(&unknown);
    SingletonLibrary::NotifySingletonModuleUnloaded(nullptr);
    SingletonLibrary::RemoveCallback(&unknown);
    SingletonLibrary::RemoveCallback(nullptr);
    EXPECT_EQ(0, resets);
}

TEST(SingletonLibrary, AFailureToMakeTheRecordLeavesTheTableAsItWas)
{
    SingletonLibrary::ResetCallback reset = [] {};
    const auto fail = []() -> std::unique_ptr<SingletonRecord> { throw std::bad_alloc(); };
    EXPECT_THROW(SingletonLibrary::GetEntryForType(typeid(Key<3>*), fail, true, &reset), std::bad_alloc);
    EXPECT_EQ(nullptr, SingletonLibrary::GetEntryForType(typeid(Key<3>*), MakeRecord, false, &reset));
}

namespace
{

class SingletonModules : public testing::Test
{
protected:
    void SetUp() override
    {
        Load();
        ASSERT_TRUE(m_module);
    }
    void TearDown() override
    {
        Unload();
        Singleton<SharedCounter, 0>::StaticFinalizer();
        Singleton<SharedCounter, 7>::StaticFinalizer();
    }
    void Load() { m_module = Support::LoadedModule(STYLES_TEST_MODULES "/SingletonUser.dll"); }
    void Unload() { m_module.Unload(); }
    void* Call(const char* name) { return m_module.Find<void*()>(name)(); }

    Support::LoadedModule m_module;
};

} // namespace

TEST_F(SingletonModules, ModulesReachOneInstance)
{
    EXPECT_EQ(&(Singleton<SharedCounter, 0>::GetInstance()), Call("GetCounterOfModule"));
    EXPECT_EQ(Call("GetNumberedCounterOfModule"), &(Singleton<SharedCounter, 7>::GetInstance()));
    EXPECT_NE(Call("GetCounterOfModule"), Call("GetNumberedCounterOfModule"));
}

TEST_F(SingletonModules, AnInstanceStaysWhenAnotherModuleThatUsedItGoes)
{
    SharedCounter& mine = Singleton<SharedCounter, 0>::GetInstance();
    mine.count = 3;
    Call("GetCounterOfModule");
    Unload();
    ASSERT_TRUE((Singleton<SharedCounter, 0>::HasInstance()));
    EXPECT_EQ(&mine, &(Singleton<SharedCounter, 0>::GetInstance()));
    EXPECT_EQ(3, mine.count);
}

TEST_F(SingletonModules, AnInstanceGoesWithTheModuleThatMadeItAndTheNextUseMakesAnother)
{
    static_cast<SharedCounter*>(Call("GetCounterOfModule"))->count = 3;
    EXPECT_EQ(3, (Singleton<SharedCounter, 0>::GetInstance().count));
    Unload();
    EXPECT_FALSE((Singleton<SharedCounter, 0>::HasInstance()));
    EXPECT_EQ(0, (Singleton<SharedCounter, 0>::GetInstance().count));
}

TEST_F(SingletonModules, AModuleMayComeAndGoRepeatedly)
{
    for (int i = 0; i < 5; ++i)
    {
        ASSERT_NE(nullptr, Call("GetCounterOfModule"));
        Unload();
        Load();
        ASSERT_TRUE(m_module);
    }
    EXPECT_EQ(&(Singleton<SharedCounter, 0>::GetInstance()), Call("GetCounterOfModule"));
}
