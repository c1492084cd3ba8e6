// Lists of styles in documents.

#include "properties/StyleArraySuite.h"

#include <gmock/gmock.h>

#include <vector>

using testing::IsEmpty;
using testing::SizeIs;

namespace Styles::Testing
{

namespace
{

class StyleArrayJson : public StyleArraySuite
{};

} // namespace

TEST_F(StyleArrayJson, IsWrittenAsAnArrayWithoutItsNullElements)
{
    first.SetProperty(Color, Any(VelString(L"red")));
    Json::Variant output(true);
    EXPECT_TRUE(layers->Serialize(sheet, &style, MakeList(), output));
    EXPECT_EQ(Utf8(Json::ValueToString(output, true)), R"([{"color":"red"},{}])");
    EXPECT_TRUE(layers->Serialize(sheet, &style, Any(StyleList()), output));
    EXPECT_EQ(output.Get<Json::Array>().GetSize(), 0U);
}

TEST_F(StyleArrayJson, APropertyNewerThanTheSheetIsLeftOut)
{
    Json::Variant output(true);
    sheet.SetVersion(2);
    EXPECT_FALSE(own->Serialize(sheet, &style, MakeList(), output));
    EXPECT_FALSE(own->Serialize(sheet, &style, Any(1.5), output)); // not looked at
    EXPECT_TRUE(output.Get<bool>());
    EXPECT_TRUE(layers->Serialize(sheet, &style, Any(StyleList()), output));
    sheet.SetVersion(3);
    EXPECT_TRUE(own->Serialize(sheet, &style, Any(StyleList()), output));
}

TEST_F(StyleArrayJson, TheObjectsOfAnArrayAreReadAndTheOtherMembersPassedOver)
{
    Json::Object red;
    red.AddValue(VelString(L"color"), VelString(L"red"));
    Json::Array array;
    array.AddValue(Json::Variant(1.0));
    array.AddValue(Json::Variant(red));
    array.AddValue(Json::Variant());
    array.AddValue(Json::Variant(Json::Object()));
    array.AddValue(Json::Variant(Json::Array()));
    const Json::Variant json(array);
    AddElements(style, Layers, Stop, 3);
    EXPECT_TRUE(layers->Deserialize(sheet, &style, &json));
    const StyleList read = ElementsOf(style, Layers);
    ASSERT_THAT(read, SizeIs(2));
    EXPECT_EQ(OwnText(*read[0], Color), L"red");
    EXPECT_EQ(read[0]->GetOwner(), nullptr);
    EXPECT_EQ(read[1]->GetCategoryName(), Stop);
    EXPECT_TRUE(read[1]->IsEmpty());
}

TEST_F(StyleArrayJson, AnEmptyArrayIsReadAsAnEmptyList)
{
    const Json::Variant json{Json::Array()};
    AddElements(style, Layers, Stop, 3);
    EXPECT_TRUE(layers->Deserialize(sheet, &style, &json));
    EXPECT_TRUE(style.DoesOverrideProperty(Layers));
    EXPECT_THAT(ElementsOf(style, Layers), IsEmpty());
}

TEST_F(StyleArrayJson, WithoutAnElementCategoryElementsHaveTheCategoryOfTheProperty)
{
    Json::Array array;
    array.AddValue(Json::Variant(Json::Object()));
    const Json::Variant json(array);
    EXPECT_TRUE(own->Deserialize(sheet, &style, &json));
    ASSERT_THAT(ElementsOf(style, Own), SizeIs(1));
    EXPECT_EQ(ElementsOf(style, Own)[0]->GetCategoryName(), StyleCategoryName);
}

TEST_F(StyleArrayJson, OnlyAnArrayIsRead)
{
    for (const Json::Variant& json :
         {Json::Variant(), Json::Variant(Json::Object()), Json::Variant(VelString(L"[]")), Json::Variant(1.0)})
    {
        EXPECT_FALSE(layers->Deserialize(sheet, &style, &json));
    }
    EXPECT_FALSE(layers->Deserialize(sheet, &style, nullptr));
    const Json::Variant array{Json::Array()};
    EXPECT_FALSE(layers->Deserialize(sheet, nullptr, &array));
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleArrayJson, AnElementThatFailsToReadLeavesTheOldList)
{
    const StyleList before = AddElements(style, Layers, Stop, 1);
    Json::Object good;
    good.AddValue(VelString(L"position"), VelString(L"0.5"));
    Json::Object bad;
    bad.AddValue(VelString(L"position"), VelString(L"half"));
    Json::Array array;
    array.AddValue(Json::Variant(good));
    array.AddValue(Json::Variant(bad));
    const Json::Variant json(array);
    EXPECT_THROW(layers->Deserialize(sheet, &style, &json), VelPref::Detail::BadConversion);
    EXPECT_EQ(ElementsOf(style, Layers), before);
}

TEST_F(StyleArrayJson, ReadingIntoAStyleThatDoesNotKnowTheListStoresNothing)
{
    Style fill(nullptr, Fill);
    Json::Array array;
    array.AddValue(Json::Variant(Json::Object()));
    const Json::Variant json(array);
    layers->Deserialize(sheet, &fill, &json);
    EXPECT_TRUE(fill.IsEmpty());
}

} // namespace Styles::Testing
