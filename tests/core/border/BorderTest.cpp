// Values, keys, definitions and styles on their way between two libraries that hide their symbols from each other.

#include "core/border/Library.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

using Border::Any;
using Border::Box;
using Border::PropertyKey;
using Border::Style;
using Border::VelString;

namespace
{

PropertyKey Key(const wchar_t* text)
{
    return PropertyKey(VelString(text));
}

/// The category that the other library registers.
class BorderCategory : public ::testing::Test
{
protected:
    BorderCategory()
    {
        Styles::ResetStyleManager();
        Border::RegisterCategory();
    }
    ~BorderCategory() override { Styles::ResetStyleManager(); }
    BorderCategory(const BorderCategory&) = delete;
    BorderCategory& operator=(const BorderCategory&) = delete;

    const PropertyKey Category = Key(L"border"), Text = Key(L"text");
};

} // namespace

TEST(Border, ValuesMadeThereAreReadHere)
{
    Style style;
    const std::vector<Any> values = Border::MakeValues(&style);
    EXPECT_TRUE(values[0].IsEmpty());
    EXPECT_TRUE(values[0].Is<Any::null_holder_type>());
    EXPECT_EQ(values[1].Get<double>(), 1.25);
    EXPECT_EQ(values[2].Get<Style*>(), &style);
    EXPECT_EQ(values[3].Get<const Style*>(), &style);
    EXPECT_EQ(values[4].Get<VelString>(), VelString(L"a text of the other side"));
    EXPECT_EQ(values[5].Get<Styles::Json::NullType>(), Styles::Json::NullType::Null);
    EXPECT_EQ(values[6].Get<std::vector<Style*>>(), (std::vector<Style*>{&style, nullptr}));
    EXPECT_EQ(values[7].Get<Styles::Json::Object>().GetSize(), 2u);
    EXPECT_EQ(values[8].Get<Styles::Json::Array>().GetSize(), 2u);
    EXPECT_EQ(values[9].Get<Border::Point>(), (Border::Point{3, -4}));
    EXPECT_EQ(values[10].Get<Box>(), (Box{1, 2, 3, 4}));
    EXPECT_EQ(values[11].Get<Border::Fruit>(), Border::Fruit::Pear);
    EXPECT_EQ(values.size(), 12u);
}

TEST(Border, ValuesMadeHereAreReadThere)
{
    Style style;
    Styles::Json::Object object;
    object.AddValue(VelString(L"name"), VelString(L"value"));
    object.AddValue(VelString(L"number"), 2.5);
    Styles::Json::Array array;
    array.AddValue(object);
    array.AddValue(true);
    std::vector<Any> values;
    values.emplace_back();
    values.emplace_back(1.25);
    values.emplace_back(&style);
    values.emplace_back(static_cast<const Style*>(&style));
    values.emplace_back(VelString(L"a text of the other side"));
    values.emplace_back(Styles::Json::NullType::Null);
    values.emplace_back(std::vector<Style*>{&style, nullptr});
    values.emplace_back(object);
    values.emplace_back(array);
    values.emplace_back(Border::Point{3, -4});
    values.emplace_back(Box{1, 2, 3, 4});
    values.emplace_back(Border::Fruit::Pear);
    const std::vector<Any> theirs = Border::MakeValues(&style);
    for (std::size_t index = 0; index < values.size(); ++index)
    {
        SCOPED_TRACE(index);
        EXPECT_TRUE(Border::ReadsValue(index, values[index], &style));
        EXPECT_TRUE(values[index] == theirs[index]);
        EXPECT_TRUE(Border::AreEqual(values[index], theirs[index]));
        EXPECT_TRUE(Border::AreEqual(theirs[index], values[index]));
        for (std::size_t other = 0; other < values.size(); ++other)
        {
            if (index != other)
            {
                EXPECT_FALSE(Border::ReadsValue(other, values[index], &style));
                EXPECT_FALSE(values[index] == theirs[other]);
                EXPECT_EQ(values[index] < theirs[other], Border::IsLess(theirs[index], values[other]));
            }
        }
    }
}

TEST(Border, BothSidesAssignExchangeMoveAndDestroyValuesOfTheOther)
{
    Style style;
    const std::size_t count = Border::MakeValues(&style).size();
    for (std::size_t first = 0; first < count; ++first)
    {
        for (std::size_t second = 0; second < count; ++second)
        {
            SCOPED_TRACE(std::to_string(first) + " and " + std::to_string(second));
            std::vector<Any> values = Border::MakeValues(&style);
            Any target(values[first]);
            target = values[second];
            EXPECT_TRUE(Border::ReadsValue(second, target, &style));
            Border::Assign(target, values[first]);
            EXPECT_TRUE(Border::ReadsValue(first, target, &style));
            Any other(values[second]);
            Border::Exchange(target, other);
            EXPECT_TRUE(Border::ReadsValue(second, target, &style));
            target.Swap(other);
            EXPECT_TRUE(Border::ReadsValue(first, target, &style));
            const Any moved = Border::MoveOut(target);
            EXPECT_TRUE(Border::ReadsValue(first, moved, &style));
        }
    }
}

TEST(Border, ABadCastThrownThereIsCaughtHere)
{
    EXPECT_EQ(Border::GetNumber(Any(1.5)), 1.5);
    EXPECT_THROW(Border::GetNumber(Any(VelString(L"1.5"))), std::bad_cast);
    EXPECT_THROW(Border::GetNumber(Any()), std::bad_cast);
}

TEST(Border, KeysOfOneTextAreEqualOnBothSides)
{
    EXPECT_EQ(Border::MakeKey(L"patternId"), Key(L"patternId"));
    EXPECT_EQ(Border::MakeKey(L"patternId").getHash(), Key(L"patternId").getHash());
    EXPECT_NE(Border::MakeKey(L"patternId"), Key(L"PatternId"));
    EXPECT_EQ(Border::MakeDefaultKey(), PropertyKey());
    EXPECT_EQ(Border::MakeDefaultKey(), PropertyKey::Empty);
    EXPECT_EQ(Border::GetEmptyKey(), &PropertyKey::Empty);
    EXPECT_EQ(Border::MakeKey(L"style"), Styles::StyleCategoryName);
}

TEST(Border, BothSidesSeeOneManager)
{
    EXPECT_EQ(Border::GetManager(), &(VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance()));
}

TEST(Border, ThreadsOnBothSidesMakeTheSameKeys)
{
    std::vector<PropertyKey> here(200), there(200);
    const auto textOf = [](std::size_t index) { return L"border " + std::to_wstring(index); };
    std::thread other([&] {
        for (std::size_t index = there.size(); index-- > 0;)
        {
            there[index] = Border::MakeKey(textOf(index).c_str());
        }
    });
    for (std::size_t index = 0; index < here.size(); ++index)
    {
        here[index] = Key(textOf(index).c_str());
    }
    other.join();
    EXPECT_EQ(here, there);
}

TEST_F(BorderCategory, StylesMadeThereAreReadHere)
{
    const std::unique_ptr<Style> style(Border::MakeStyle());
    EXPECT_EQ(style->GetProperty(Key(L"double")).Get<double>(), 7.5);
    EXPECT_EQ(style->GetProperty(Key(L"box")).Get<Box>(), (Box{1, 2, 3, 4}));
    EXPECT_EQ(style->GetProperty(Text).Get<VelString>(), VelString(L"made there!"));
    const Style* substyle = style->GetSubstyle(Category, false);
    ASSERT_NE(substyle, nullptr);
    EXPECT_EQ(substyle->GetOwner(), style.get());
    EXPECT_EQ(Border::ReadText(*substyle, Text), VelString(L"inside!"));
}

TEST_F(BorderCategory, StylesMadeHereUseTheDefinitionsOfTheOtherSide)
{
    Style style(nullptr, Category);
    EXPECT_EQ(Border::ReadText(style, Text), VelString(L"silence"));
    style.SetProperty(Text, Any(L"hello"));
    EXPECT_EQ(Border::ReadText(style, Text), VelString(L"hello!"));
    Border::SetText(style, Text, L"again");
    EXPECT_EQ(style.GetProperty(Text).Get<VelString>(), VelString(L"again!"));
}

TEST_F(BorderCategory, CopiesAndComparisonsCrossTheBorder)
{
    const std::unique_ptr<Style> theirs(Border::MakeStyle());
    const Style copy(*theirs);
    // Copying hands the text to its definition once more.
    EXPECT_EQ(copy.GetProperty(Text).Get<VelString>(), VelString(L"made there!!"));
    EXPECT_TRUE(*theirs == *theirs);
    EXPECT_FALSE(copy == *theirs);
    EXPECT_NE(copy < *theirs, *theirs < copy);
    EXPECT_EQ(copy.GetProperty(Key(L"list")).Get<std::vector<Style*>>().size(), 1u);
}
