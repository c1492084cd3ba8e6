#include "VelUtils/Json.h"

#include "VelPlatform/StringIO.h"

#include <gmock/gmock.h>

#include <limits>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace Json = VelUtils::Json;
using Json::NullType;
using VelPlatform::VelString;
using VelPlatform::VelStringA;

namespace
{

VelString NameOf(std::size_t number)
{
    return VelString::Format(L"name {}", number);
}

Json::Object ObjectOf(std::size_t size)
{
    Json::Object object;
    for (std::size_t i = 0; i < size; ++i)
    {
        object.AddValue(NameOf(i), static_cast<double>(i));
    }
    return object;
}

Json::Variant NestedArrays(std::size_t depth)
{
    Json::Variant value = 1.0;
    for (std::size_t i = 0; i < depth; ++i)
    {
        Json::Array array;
        array.AddValue(std::move(value));
        value = std::move(array);
    }
    return value;
}

} // namespace

TEST(JsonVariant, StartsAsNull)
{
    const Json::Variant value;
    EXPECT_TRUE(value.Is<NullType>());
    EXPECT_EQ(value, Json::Variant(NullType::Null));
}

TEST(JsonVariant, HoldsEachOfItsTypes)
{
    EXPECT_EQ(Json::Variant(VelString(L"wide")).Get<VelString>(), L"wide");
    EXPECT_EQ(Json::Variant(VelStringA("narrow")).Get<VelStringA>(), "narrow");
    EXPECT_EQ(Json::Variant(std::int64_t{-5}).Get<std::int64_t>(), -5);
    EXPECT_EQ(Json::Variant(std::uint64_t{5}).Get<std::uint64_t>(), 5u);
    EXPECT_EQ(Json::Variant(2.5).Get<double>(), 2.5);
    EXPECT_TRUE(Json::Variant(true).Get<bool>());
    EXPECT_EQ(Json::Variant(ObjectOf(2)).Get<Json::Object>().GetSize(), 2u);
    EXPECT_EQ(Json::Variant(Json::Array()).Get<Json::Array>().GetSize(), 0u);
    EXPECT_EQ(Json::Variant(NullType::Null).Get<NullType>(), NullType::Null);
}

TEST(JsonVariant, IsMadeFromNothingThatMerelyConvertsToItsTypes)
{
    EXPECT_FALSE((std::is_constructible_v<Json::Variant, int>));
    EXPECT_FALSE((std::is_constructible_v<Json::Variant, float>));
    EXPECT_FALSE((std::is_constructible_v<Json::Variant, const wchar_t*>));
    EXPECT_FALSE((std::is_constructible_v<Json::Variant, const char*>));
    EXPECT_FALSE((std::is_constructible_v<Json::Variant, void*>));
    EXPECT_FALSE((std::is_constructible_v<Json::Variant, std::nullptr_t>));
    EXPECT_TRUE((std::is_convertible_v<const VelString&, Json::Variant>));
    EXPECT_TRUE((std::is_convertible_v<double, Json::Variant>));
}

TEST(JsonVariant, MovesWithoutThrowing)
{
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<Json::Variant>);
    EXPECT_TRUE(std::is_nothrow_move_assignable_v<Json::Variant>);
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<Json::Object>);
    EXPECT_TRUE(std::is_nothrow_move_constructible_v<Json::Array>);
}

TEST(JsonVariant, AskingForAnotherTypeThrowsBadCast)
{
    Json::Variant value = 1.0;
    EXPECT_THROW(value.Get<VelString>(), std::bad_cast);
    EXPECT_THROW(std::as_const(value).Get<Json::Object>(), std::bad_cast);
    EXPECT_THROW(value.Get<std::int64_t>(), std::bad_cast);
    EXPECT_EQ(value.Get<double>(), 1.0);
}

TEST(JsonVariant, AskingPolitelyForAnotherTypeGivesNull)
{
    Json::Variant value = 1.0;
    EXPECT_EQ(value.GetIf<bool>(), nullptr);
    EXPECT_EQ(std::as_const(value).GetIf<VelString>(), nullptr);
    *value.GetIf<double>() = 2.0;
    EXPECT_EQ(*std::as_const(value).GetIf<double>(), 2.0);
    EXPECT_TRUE(value.Is<double>());
    EXPECT_FALSE(value.Is<bool>());
}

TEST(JsonVariant, WhatIsGotCanBeChangedInPlace)
{
    Json::Variant value{Json::Object()};
    value.Get<Json::Object>().AddValue(L"a", 1.0);
    EXPECT_EQ(value.Get<Json::Object>().GetSize(), 1u);
}

TEST(JsonVariant, IsEqualOnlyToTheSameTypeAndValue)
{
    EXPECT_EQ(Json::Variant(1.0), Json::Variant(1.0));
    EXPECT_NE(Json::Variant(1.0), Json::Variant(2.0));
    EXPECT_NE(Json::Variant(1.0), Json::Variant(std::int64_t{1}));
    EXPECT_NE(Json::Variant(std::int64_t{1}), Json::Variant(std::uint64_t{1}));
    EXPECT_NE(Json::Variant(VelString(L"a")), Json::Variant(VelStringA("a")));
    EXPECT_NE(Json::Variant(), Json::Variant(false));
}

TEST(JsonContainers, AreLargerThanAPointer)
{
    EXPECT_GT(sizeof(Json::Object), 8u);
    EXPECT_GT(sizeof(Json::Array), 8u);
}

TEST(JsonObject, KeepsItsMembersInTheOrderInWhichTheyWereAdded)
{
    Json::Object object;
    EXPECT_TRUE(object.AddValue(L"z", 1.0));
    EXPECT_TRUE(object.AddValue(L"a", VelString(L"text")));
    EXPECT_TRUE(object.AddValue(L"", true));
    ASSERT_EQ(object.GetSize(), 3u);
    EXPECT_EQ(object.GetValueName(0), L"z");
    EXPECT_EQ(object.GetValueName(1), L"a");
    EXPECT_EQ(object.GetValueName(2), L"");
    EXPECT_EQ(*object.GetValue(1), Json::Variant(VelString(L"text")));
}

TEST(JsonObject, RefusesANameThatIsThereAndKeepsItsValue)
{
    Json::Object object;
    object.AddValue(L"a", 1.0);
    EXPECT_FALSE(object.AddValue(L"a", 2.0));
    ASSERT_EQ(object.GetSize(), 1u);
    EXPECT_EQ(*object.GetValue(L"a"), Json::Variant(1.0));
}

TEST(JsonObject, NamesDifferByCaseAndMayHoldZeros)
{
    Json::Object object;
    EXPECT_TRUE(object.AddValue(L"a", 1.0));
    EXPECT_TRUE(object.AddValue(L"A", 2.0));
    EXPECT_TRUE(object.AddValue(VelString(L"a\0b", 3), 3.0));
    EXPECT_EQ(*object.GetValue(VelString(L"a\0b", 3)), Json::Variant(3.0));
    EXPECT_EQ(*object.GetValue(L"A"), Json::Variant(2.0));
}

TEST(JsonObject, AnAbsentMemberIsNull)
{
    Json::Object object = ObjectOf(1);
    EXPECT_EQ(object.GetValue(L"other"), nullptr);
    EXPECT_EQ(std::as_const(object).GetValue(L"other"), nullptr);
    EXPECT_EQ(object.GetValue(1), nullptr);
    EXPECT_EQ(std::as_const(object).GetValue(1), nullptr);
    EXPECT_EQ(Json::Object().GetValue(L""), nullptr);
}

TEST(JsonObject, GivesValuesToBeChanged)
{
    Json::Object object = ObjectOf(1);
    *object.GetValue(NameOf(0)) = true;
    EXPECT_EQ(*std::as_const(object).GetValue(0), Json::Variant(true));
}

TEST(JsonObject, FindsEveryMemberAtEverySize)
{
    for (std::size_t size = 0; size <= 40; ++size)
    {
        const Json::Object object = ObjectOf(size);
        for (std::size_t i = 0; i < size; ++i)
        {
            ASSERT_EQ(*object.GetValue(NameOf(i)), Json::Variant(static_cast<double>(i))) << size;
        }
        EXPECT_EQ(object.GetValue(NameOf(size)), nullptr);
    }
}

TEST(JsonObject, TakesAHundredThousandMembers)
{
    constexpr std::size_t kSize = 100'000;
    Json::Object object = ObjectOf(kSize);
    ASSERT_EQ(object.GetSize(), kSize);
    for (std::size_t i = 0; i < kSize; ++i)
    {
        ASSERT_EQ(object.GetValue(NameOf(i)), object.GetValue(i));
    }
    EXPECT_FALSE(object.AddValue(NameOf(kSize / 2), 0.0));
}

TEST(JsonObject, ACopyAndAMovedObjectFindTheirOwnMembers)
{
    for (const std::size_t size : {3u, 30u})
    {
        Json::Object object = ObjectOf(size);
        Json::Object copy(object);
        EXPECT_EQ(copy, object);
        *copy.GetValue(NameOf(1)) = true;
        EXPECT_EQ(*object.GetValue(NameOf(1)), Json::Variant(1.0));

        const Json::Object moved(std::move(object));
        EXPECT_EQ(moved.GetValue(NameOf(2)), moved.GetValue(2));
        EXPECT_EQ(object.GetSize(), 0u);
        EXPECT_EQ(object.GetValue(NameOf(2)), nullptr);
        EXPECT_TRUE(object.AddValue(NameOf(2), 5.0));
        EXPECT_EQ(*object.GetValue(NameOf(2)), Json::Variant(5.0));

        object = copy;
        EXPECT_EQ(object, copy);
        EXPECT_EQ(object.GetValue(NameOf(2)), object.GetValue(2));
    }
}

TEST(JsonObject, SurvivesAssignmentToItselfAndOfItsOwnPart)
{
    Json::Variant value{ObjectOf(30)};
    Json::Object& object = value.Get<Json::Object>();
    object.AddValue(L"inner", ObjectOf(20));
    const Json::Object& same = object;
    object = same;
    EXPECT_EQ(object.GetSize(), 31u);
    value = Json::Variant(*object.GetValue(L"inner"));
    EXPECT_EQ(value, Json::Variant(ObjectOf(20)));

    Json::Object outer;
    outer.AddValue(L"inner", ObjectOf(20));
    outer = std::move(outer.GetValue(L"inner")->Get<Json::Object>());
    EXPECT_EQ(outer, ObjectOf(20));
}

TEST(JsonObject, EqualityCountsNamesValuesAndOrder)
{
    Json::Object first = ObjectOf(2);
    EXPECT_EQ(first, ObjectOf(2));
    EXPECT_FALSE(first == ObjectOf(3));
    Json::Object turned;
    turned.AddValue(NameOf(1), 1.0);
    turned.AddValue(NameOf(0), 0.0);
    EXPECT_FALSE(first == turned);
    *first.GetValue(NameOf(0)) = 7.0;
    EXPECT_FALSE(first == ObjectOf(2));
}

TEST(JsonObject, ThreadsReadOneObjectTogether)
{
    const Json::Object object = ObjectOf(1000);
    std::vector<std::thread> threads;
    std::vector<std::size_t> found(4);
    for (std::size_t& count : found)
    {
        threads.emplace_back([&object, &count] {
            for (std::size_t i = 0; i < object.GetSize(); ++i)
            {
                count += object.GetValue(NameOf(i)) == object.GetValue(i);
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_THAT(found, testing::Each(1000u));
}

TEST(JsonArray, KeepsItsValuesInOrder)
{
    Json::Array array;
    array.AddValue(1.0);
    array.AddValue(VelString(L"two"));
    ASSERT_EQ(array.GetSize(), 2u);
    EXPECT_EQ(*array.GetValue(0), Json::Variant(1.0));
    EXPECT_EQ(*std::as_const(array).GetValue(1), Json::Variant(VelString(L"two")));
    EXPECT_EQ(array.GetValue(2), nullptr);
    EXPECT_EQ(std::as_const(array).GetValue(2), nullptr);
}

TEST(JsonArray, IsCopiedMovedAndCompared)
{
    Json::Array array;
    array.AddValue(1.0);
    Json::Array copy(array);
    EXPECT_EQ(copy, array);
    copy.AddValue(2.0);
    EXPECT_FALSE(copy == array);
    array = copy;
    EXPECT_EQ(copy, array);
    const Json::Array moved = std::move(array);
    EXPECT_EQ(moved, copy);
    EXPECT_EQ(array.GetSize(), 0u);
}

TEST(JsonVariant, ValuesAsDeepAsTheReaderTakesThemAreCopiedAndCompared)
{
    const Json::Variant deep = NestedArrays(512);
    const Json::Variant copy = deep;
    EXPECT_EQ(copy, deep);
}

TEST(JsonVariant, TakingApartADeepValueNeedsNoDeepStack)
{
    Json::Variant value = NestedArrays(1'000'000);
    value = 1.0;
    Json::Variant mixed;
    for (int i = 0; i < 100'000; ++i)
    {
        Json::Object object;
        object.AddValue(L"before", ObjectOf(1));
        object.AddValue(L"inner", std::move(mixed));
        object.AddValue(L"behind", 1.0);
        mixed = std::move(object);
    }
    EXPECT_TRUE(mixed.Is<Json::Object>());
}
