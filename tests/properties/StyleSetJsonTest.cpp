// Substyles in documents.

#include "properties/StyleSetSuite.h"

namespace Styles::Testing
{

namespace
{

class StyleSetJson : public StyleSetSuite
{};

} // namespace

TEST_F(StyleSetJson, ANullSubstyleIsWrittenAsNullWhenTheSheetIsNewEnough)
{
    Json::Variant output(true);
    EXPECT_TRUE(shade->Serialize(sheet, &style, null, output));
    EXPECT_TRUE(output.Is<Json::NullType>());

    sheet.SetVersion(2);
    output = true;
    EXPECT_FALSE(shade->Serialize(sheet, &style, null, output));
    EXPECT_FALSE(shade->Serialize(sheet, &style, Any(1.5), output)); // not looked at
    EXPECT_TRUE(output.Get<bool>());
}

TEST_F(StyleSetJson, IsWrittenAsTheObjectOfTheSubstyleWithoutTemporaries)
{
    Manager().RegisterProperty(Fill, Key(L"memory"), new TemporaryStyleProperty(nullptr, 0.0, 0));
    substyle.SetProperty(Key(L"memory"), Any(1.0));
    substyle.SetProperty(Color, Any(VelString(L"red")));
    Json::Variant output;
    EXPECT_TRUE(shade->Serialize(sheet, &style, value, output));
    EXPECT_EQ(Utf8(Json::ValueToString(output, true)), R"({"color":"red"})");
}

TEST_F(StyleSetJson, IsReadAsASubstyleThatKnowsItsOwner)
{
    Json::Object object;
    object.AddValue(VelString(L"color"), VelString(L"red"));
    const Json::Variant json(object);
    EXPECT_TRUE(shade->Deserialize(sheet, &style, &json));
    const Style* read = style.GetSubstyle(Shade, false);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->GetCategoryName(), Fill);
    EXPECT_EQ(read->GetOwner(), &style);
    EXPECT_EQ(read->GetOwnersSubstylePropertyName(), Shade);
    EXPECT_EQ(OwnText(*read, Color), L"red");
}

TEST_F(StyleSetJson, WhatIsThereAlreadyWinsWhenItIsRead)
{
    Style& before = AddSubstyle(style, Shade, Fill);
    Json::Object object;
    object.AddValue(VelString(L"color"), VelString(L"red"));
    const Json::Variant json(object);
    EXPECT_TRUE(shade->Deserialize(sheet, &style, &json));
    EXPECT_EQ(style.GetSubstyle(Shade, false), &before);
    EXPECT_TRUE(before.IsEmpty());
}

TEST_F(StyleSetJson, ACopyOfAStyleThatDoesNotKnowTheSubstyleReadIntoItIsWithoutIt)
{
    Json::Object object;
    object.AddValue(VelString(L"color"), VelString(L"red"));
    const Json::Variant json(object);
    Style stranger(nullptr, Fill);
    EXPECT_TRUE(shade->Deserialize(sheet, &stranger, &json));
    const std::unique_ptr<Style> read(stranger.GetSubstyle(Shade, false)); // the category does not destroy it either
    ASSERT_NE(read, nullptr);
    const Style copy(stranger);
    EXPECT_TRUE(copy.IsEmpty());
    EXPECT_NE(copy, stranger);
}

TEST_F(StyleSetJson, OnlyAnObjectIsRead)
{
    for (const Json::Variant& json : {Json::Variant(), Json::Variant(VelString(L"red")), Json::Variant(1.0),
                                      Json::Variant(true), Json::Variant(Json::Array())})
    {
        EXPECT_FALSE(shade->Deserialize(sheet, &style, &json));
    }
    EXPECT_FALSE(shade->Deserialize(sheet, &style, nullptr));
    const Json::Variant object{Json::Object()};
    EXPECT_FALSE(shade->Deserialize(sheet, nullptr, &object));
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleSetJson, ASubstyleThatFailsToReadIsNotKept)
{
    Json::Object object;
    object.AddValue(VelString(L"color"), VelString(L"red"));
    object.AddValue(VelString(L"patternId"), VelString(L"none"));
    const Json::Variant json(object);
    EXPECT_THROW(shade->Deserialize(sheet, &style, &json), VelPref::Detail::BadConversion);
    EXPECT_TRUE(style.IsEmpty());
}

} // namespace Styles::Testing
