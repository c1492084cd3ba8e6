// Keys: identity, order, hash and the pool behind them.

#include "support/SchemaFixture.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <string>
#include <thread>
#include <type_traits>

using Styles::PropertyKey;
using Styles::StyleCategoryName;
using Styles::VelString;
using Styles::Testing::Key;

namespace
{

// Made while this module is loaded, in an order that nothing promises.
const PropertyKey DefaultKeyOfThisModule;
const PropertyKey KeyOfThisModule(VelString(L"made while loading"));

static_assert(sizeof(PropertyKey) == sizeof(const VelString*));
static_assert(std::is_trivially_copyable_v<PropertyKey> && std::is_trivially_destructible_v<PropertyKey>);
static_assert(std::is_base_of_v<VelUtils::PooledString<Styles::StringPool>, PropertyKey>);
static_assert(!std::is_convertible_v<VelString, PropertyKey>, "a text becomes a key on purpose only");

std::uintptr_t AddressOf(const PropertyKey& key)
{
    return reinterpret_cast<std::uintptr_t>(key.GetPooled());
}

VelString Numbered(int number)
{
    const std::wstring text = L"numbered key " + std::to_wstring(number);
    return {text.c_str(), text.size()};
}

} // namespace

TEST(PropertyKey, KeysOfOneTextMadeAtDifferentTimesAreEqualAndHashEqual)
{
    const PropertyKey first(VelString(L"patternId"));
    for (int number = 0; number < 1000; ++number)
    {
        EXPECT_NE(PropertyKey(Numbered(number)), first);
    }
    const PropertyKey second(VelString(L"patternId"));
    EXPECT_EQ(first, second);
    EXPECT_FALSE(first != second);
    EXPECT_EQ(first.getHash(), second.getHash());
    EXPECT_EQ(std::hash<PropertyKey>()(first), std::hash<PropertyKey>()(second));
    EXPECT_EQ(first.GetPooled(), second.GetPooled());
}

TEST(PropertyKey, TextsThatDifferInCaseOrBehindAZeroCharacterGiveDifferentKeys)
{
    EXPECT_NE(Key(L"angle"), Key(L"Angle"));
    EXPECT_NE(Key(L"angle"), Key(L"angle "));
    EXPECT_NE(PropertyKey(VelString(L"a\0b", 3)), PropertyKey(VelString(L"a\0c", 3)));
    EXPECT_NE(PropertyKey(VelString(L"a\0", 2)), Key(L"a"));
}

TEST(PropertyKey, ADefaultConstructedKeyIsTheKeyOfTheEmptyText)
{
    EXPECT_EQ(PropertyKey(), PropertyKey::Empty);
    EXPECT_EQ(PropertyKey(VelString()), PropertyKey::Empty);
    EXPECT_TRUE(PropertyKey::Empty.ToString().empty());
    EXPECT_EQ(PropertyKey::Empty.getHash(), PropertyKey().getHash());
}

TEST(PropertyKey, TheGlobalKeysHaveTheirTexts)
{
    EXPECT_EQ(PropertyKey::Empty.ToString(), VelString());
    EXPECT_EQ(StyleCategoryName.ToString(), VelString(L"style"));
    EXPECT_EQ(StyleCategoryName, Key(L"style"));
}

TEST(PropertyKey, KeysCanBeMadeWhileAModuleIsLoaded)
{
    EXPECT_EQ(DefaultKeyOfThisModule, PropertyKey::Empty);
    EXPECT_EQ(KeyOfThisModule, Key(L"made while loading"));
    EXPECT_EQ(KeyOfThisModule.ToString(), VelString(L"made while loading"));
}

TEST(PropertyKey, ToStringGivesACopyOfTheText)
{
    const PropertyKey key = Key(L"copied");
    VelString text = key.ToString();
    text += VelString(L" and changed");
    EXPECT_EQ(key.ToString(), VelString(L"copied"));
    EXPECT_EQ(text, VelString(L"copied and changed"));
}

TEST(PropertyKey, CopyingAndMovingLeavesTheSourceUnchanged)
{
    PropertyKey source = Key(L"source");
    const PropertyKey copied(source);
    const PropertyKey moved(std::move(source));
    EXPECT_EQ(source, Key(L"source"));
    PropertyKey assigned;
    assigned = source;
    PropertyKey moveAssigned;
    moveAssigned = std::move(source);
    EXPECT_EQ(source, Key(L"source"));
    for (const PropertyKey& key : {copied, moved, assigned, moveAssigned})
    {
        EXPECT_EQ(key, source);
    }
}

TEST(PropertyKey, LessOrdersByTheAddressesOfThePooledTexts)
{
    const std::array keys{Key(L"b"), Key(L"a"), Key(L"d"), Key(L"c"), PropertyKey(), StyleCategoryName};
    for (const PropertyKey& a : keys)
    {
        for (const PropertyKey& b : keys)
        {
            EXPECT_EQ(std::less<PropertyKey>()(a, b), AddressOf(a) < AddressOf(b));
        }
    }
}

TEST(PropertyKey, ASetOfKeysIsInTheOrderOfTheirAddressesAndNotOfTheirTexts)
{
    // In one of the two orders of making them, texts and addresses cannot agree.
    std::set<PropertyKey> keys;
    for (const wchar_t* text : {L"order b", L"order a", L"order d", L"order e", L"order c"})
    {
        keys.insert(Key(text));
    }
    ASSERT_EQ(keys.size(), 5u);
    std::uintptr_t last = 0;
    for (const PropertyKey& key : keys)
    {
        EXPECT_LT(last, AddressOf(key));
        last = AddressOf(key);
    }
}

TEST(PropertyKey, TheHashIsFnv1aOverTheBytesOfTheAddressLeastSignificantFirst)
{
    for (const wchar_t* text : {L"", L"x", L"style", L"another text"})
    {
        const PropertyKey key = Key(text);
        std::uint64_t rest = AddressOf(key);
        std::uint64_t expected = 14695981039346656037u;
        for (int byte = 0; byte < 8; ++byte)
        {
            expected ^= rest % 256;
            expected *= 1099511628211u;
            rest /= 256;
        }
        EXPECT_EQ(key.getHash(), expected);
    }
}

TEST(PropertyKey, ThePoolOfTheProcessHoldsTheTextsOfTheKeys)
{
    VelUtils::StringPool& pool = Styles::StringPool::Get();
    EXPECT_EQ(&pool, &Styles::StringPool::Get());
    const PropertyKey key = Key(L"pooled");
    const std::size_t size = pool.GetSize();
    EXPECT_EQ(pool.AddString(VelString(L"pooled")), key.GetPooled());
    EXPECT_EQ(Key(L"pooled"), key);
    EXPECT_EQ(pool.GetSize(), size) << "a text is in the pool once";
    EXPECT_EQ(*key.GetPooled(), VelString(L"pooled"));
}

TEST(PropertyKey, ThreadsThatMakeKeysOfTheSameTextsGetTheSameKeys)
{
    constexpr int Texts = 500;
    constexpr int Threads = 8;
    std::array<std::vector<PropertyKey>, Threads> made;
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < Threads; ++thread)
    {
        threads.emplace_back([&keys = made[thread], thread] {
            keys.resize(Texts);
            for (int step = 0; step < Texts; ++step)
            {
                // Half of the threads from the last text on.
                const int number = thread % 2 == 0 ? step : Texts - 1 - step;
                const PropertyKey key(VelString(L"thread ") + Numbered(number));
                keys[static_cast<std::size_t>(number)] = key;
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    for (const auto& keys : made)
    {
        EXPECT_EQ(keys, made[0]);
    }
    for (int number = 0; number < Texts; ++number)
    {
        EXPECT_EQ(made[0][static_cast<std::size_t>(number)].ToString(), VelString(L"thread ") + Numbered(number));
    }
}
