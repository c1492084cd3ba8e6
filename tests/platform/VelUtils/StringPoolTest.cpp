#include "VelUtils/StringPool.h"

#include "VelPlatform/StringIO.h"

#include <gmock/gmock.h>

#include <set>
#include <thread>
#include <vector>

using VelPlatform::VelString;
using VelUtils::StringPool;
using namespace std::string_view_literals;

namespace
{

struct TestPool
{
    static StringPool& Get()
    {
        static StringPool pool;
        return pool;
    }
};

using TestKey = VelUtils::PooledString<TestPool>;

VelString Numbered(int i)
{
    return VelString::Format(L"text number {}", i);
}

} // namespace

TEST(StringPool, EqualTextsHaveOneAddressAndOthersNot)
{
    StringPool pool;
    const VelString* const a = pool.AddString(L"a");
    EXPECT_EQ(L"a", *a);
    EXPECT_EQ(a, pool.AddString(VelString(L"xa", 2) == L"xa" ? VelString(L"a") : VelString()));
    EXPECT_NE(a, pool.AddString(L"A"));
    EXPECT_NE(a, pool.AddString(L"a "));
    EXPECT_EQ(3u, pool.GetSize());
}

TEST(StringPool, TheEmptyTextAndZerosInsideAreTextsLikeOthers)
{
    StringPool pool;
    const VelString* const empty = pool.AddString(VelString());
    const VelString* const a = pool.AddString(L"a");
    const VelString* const zero = pool.AddString(VelString(L"a\0"sv));
    EXPECT_EQ(L"", *empty);
    EXPECT_EQ(empty, pool.AddString(L""));
    EXPECT_NE(a, zero);
    EXPECT_EQ(2u, zero->size());
    EXPECT_NE(zero, pool.AddString(VelString(L"a\0\0"sv)));
    EXPECT_EQ(zero, pool.AddString(VelString(L"a\0"sv)));
}

TEST(StringPool, EveryLengthAndEveryPositionCounts)
{
    StringPool pool;
    std::set<const VelString*> addresses;
    std::size_t added = 0;
    for (std::size_t length = 0; length < 20; ++length)
    {
        const std::wstring base(length, L'x');
        addresses.insert(pool.AddString(VelString(base)));
        ++added;
        for (std::size_t at = 0; at < length; ++at)
        {
            std::wstring changed = base;
            changed[at] = L'y';
            addresses.insert(pool.AddString(VelString(changed)));
            ++added;
        }
    }
    EXPECT_EQ(added, addresses.size());
    EXPECT_EQ(added, pool.GetSize());
}

TEST(StringPool, AddressesStayWhileThePoolGrows)
{
    StringPool pool;
    std::vector<const VelString*> addresses;
    for (int i = 0; i < 20000; ++i)
    {
        addresses.push_back(pool.AddString(Numbered(i)));
    }
    for (int i = 0; i < 20000; ++i)
    {
        ASSERT_EQ(addresses[static_cast<std::size_t>(i)], pool.AddString(Numbered(i)));
        ASSERT_EQ(Numbered(i), *addresses[static_cast<std::size_t>(i)]);
    }
    EXPECT_EQ(20000u, pool.GetSize());
}

TEST(StringPool, ChangingTheTextThatWasAddedLeavesThePooledOne)
{
    StringPool pool;
    VelString text(L"before");
    const VelString* const pooled = pool.AddString(text);
    text += L" and after";
    EXPECT_EQ(L"before", *pooled);
    EXPECT_EQ(pooled, pool.AddString(L"before"));
}

TEST(StringPool, CannotBeCopied)
{
    EXPECT_FALSE(std::is_copy_constructible_v<StringPool>);
    EXPECT_FALSE(std::is_copy_assignable_v<StringPool>);
}

TEST(StringPoolThreads, ThreadsThatAddTheSameTextsAgreeOnTheAddresses)
{
    StringPool pool;
    constexpr int kTexts = 3000;
    std::vector<std::vector<const VelString*>> found(8);
    std::vector<std::thread> threads;
    for (std::size_t t = 0; t < found.size(); ++t)
    {
        threads.emplace_back([&pool, &mine = found[t], t] {
            mine.resize(kTexts);
            for (int i = 0; i < kTexts; ++i)
            {
                // Half of the threads from the front, half from the back, so that hits and additions mix.
                const int text = t % 2 ? i : kTexts - 1 - i;
                mine[static_cast<std::size_t>(text)] = pool.AddString(Numbered(text));
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(static_cast<std::size_t>(kTexts), pool.GetSize());
    for (const auto& mine : found)
    {
        EXPECT_EQ(found.front(), mine);
    }
    EXPECT_EQ(Numbered(77), *found.front()[77]);
}

TEST(PooledString, IsOnePointerThatIsCopiedWithoutThought)
{
    EXPECT_EQ(sizeof(void*), sizeof(TestKey));
    EXPECT_TRUE(std::is_trivially_copyable_v<TestKey>);
    EXPECT_TRUE(std::is_trivially_destructible_v<TestKey>);
    EXPECT_FALSE((std::is_convertible_v<VelString, TestKey>));
}

TEST(PooledString, StartsAsTheEmptyText)
{
    EXPECT_EQ(TestKey(VelString()), TestKey());
    EXPECT_EQ(L"", TestKey().ToString());
}

TEST(PooledString, KeysOfOneTextAreEqualAndHashEqual)
{
    const TestKey a(L"a");
    const TestKey again(VelString(L"a"));
    EXPECT_TRUE(a == again);
    EXPECT_FALSE(a != again);
    EXPECT_EQ(a.getHash(), again.getHash());
    EXPECT_TRUE(a != TestKey(L"b"));
    EXPECT_TRUE(a != TestKey(L"A"));
}

TEST(PooledString, GivesItsTextAndTheAddressInThePool)
{
    const TestKey key(L"key");
    EXPECT_EQ(L"key", key.ToString());
    EXPECT_EQ(&key.GetText(), key.GetPooled());
    EXPECT_EQ(TestPool::Get().AddString(L"key"), key.GetPooled());
}

TEST(PooledString, AMoveLeavesTheSourceAsItWas)
{
    TestKey key(L"key");
    const TestKey moved(std::move(key));
    EXPECT_EQ(moved, key); // NOLINT: that is the promise
}

TEST(PooledString, TheHashIsFnv1aOverTheAddressFromItsLowestByte)
{
    const TestKey key(L"hashed");
    std::uint64_t address = reinterpret_cast<std::uintptr_t>(key.GetPooled());
    std::uint64_t expected = 14695981039346656037u;
    for (int i = 0; i < 8; ++i)
    {
        expected ^= address % 256;
        expected *= 1099511628211u;
        address /= 256;
    }
    EXPECT_EQ(expected, key.getHash());
}
