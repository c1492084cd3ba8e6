#include "support/TestSheet.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace Styles::Testing
{

namespace
{

using VelPref::Detail::BadConversion;

/// Reads and writes texts, throws what a test wants it to, and tells when it dies.
class TestPolicy : public VelPref::Detail::IConversionPolicy
{
public:
    explicit TestPolicy(int& deaths) : m_deaths(deaths) {}
    TestPolicy(const TestPolicy&) = delete;
    TestPolicy& operator=(const TestPolicy&) = delete;
    ~TestPolicy() override { ++m_deaths; }

    VelString ToText(const Any& value) const override { return value.Get<VelString>(); }
    Any FromText(const VelString& text) const override
    {
        if (text == L"bad conversion")
        {
            throw BadConversion("as asked");
        }
        if (text == L"another failure")
        {
            throw std::runtime_error("as asked");
        }
        return Any(text);
    }

private:
    int& m_deaths;
};

class StyleProperty : public SchemaFixture
{
protected:
    using Definition = Styles::StyleProperty;
    using Temporary = Styles::TemporaryStyleProperty;

    StyleProperty() { sheet.SetVersion(3); }

    Definition& Register(const PropertyKey& name, Definition* definition)
    {
        Manager().RegisterProperty(StyleCategoryName, name, definition);
        return *definition;
    }

    /// A text property that throws what it is asked to when it reads.
    Definition& RegisterTest(const wchar_t* name)
    {
        return Register(Key(name), new Definition(nullptr, VelString(), new TestPolicy(policyDeaths), 0));
    }

    Json::Variant Write(const Definition& definition, const Any& value)
    {
        Json::Variant output(std::int64_t{17});
        EXPECT_TRUE(definition.Serialize(sheet, &style, value, output));
        return output;
    }

    int policyDeaths = 0;
    TestSheet sheet;
    Style style{nullptr, StyleCategoryName};
    const PropertyKey Text = Key(L"text");
};

} // namespace

TEST_F(StyleProperty, IsWrittenAsAJsonStringWhateverItIs)
{
    const Definition text(nullptr, VelString(), new TextPolicy<VelString>(), 0);
    const Definition number(nullptr, 0.0, new TextPolicy<double>(), 0);
    const Definition flag(nullptr, false, new TextPolicy<bool>(), 0);
    EXPECT_EQ(Write(text, Any(VelString(L"x"))).Get<VelString>(), L"x");
    EXPECT_EQ(Write(number, Any(0.5)).Get<VelString>(), L"0.5");
    EXPECT_EQ(Write(flag, Any(true)).Get<VelString>(), L"1");
}

TEST_F(StyleProperty, AStringInTheOutputIsReplaced)
{
    const Definition text(nullptr, VelString(), new TextPolicy<VelString>(), 0);
    Json::Variant output(VelString(L"old"));
    EXPECT_TRUE(text.Serialize(sheet, &style, Any(VelString(L"new")), output));
    EXPECT_EQ(output.Get<VelString>(), L"new");
}

TEST_F(StyleProperty, APropertyNewerThanTheSheetIsLeftOut)
{
    const Definition newer(nullptr, VelString(), new TextPolicy<VelString>(), 4);
    const Definition justAsNew(nullptr, VelString(), new TextPolicy<VelString>(), 3);
    Json::Variant output(std::int64_t{17});
    EXPECT_FALSE(newer.Serialize(sheet, &style, Any(VelString(L"x")), output));
    EXPECT_EQ(output.Get<std::int64_t>(), 17);
    EXPECT_EQ(Write(justAsNew, Any(VelString(L"x"))).Get<VelString>(), L"x");

    sheet.SetVersion(std::numeric_limits<int>::min());
    EXPECT_FALSE(justAsNew.Serialize(sheet, &style, Any(VelString(L"x")), output));
    const Definition oldest(nullptr, VelString(), new TextPolicy<VelString>(), std::numeric_limits<int>::min());
    EXPECT_TRUE(oldest.Serialize(sheet, &style, Any(VelString(L"x")), output));
}

TEST_F(StyleProperty, WithoutAPolicyItIsWrittenAsNullAndNeverRead)
{
    const Definition& mute = Register(Text, new Definition(nullptr, VelString(L"d"), nullptr, 0));
    EXPECT_EQ(mute.GetConversionPolicy(), nullptr);
    EXPECT_TRUE(Write(mute, Any(VelString(L"x"))).Is<Json::NullType>());
    EXPECT_TRUE(Write(mute, Any(1.0)).Is<Json::NullType>()); // the value is not even looked at
    const Json::Variant json(VelString(L"x"));
    EXPECT_FALSE(mute.Deserialize(sheet, &style, &json));
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleProperty, AValueOfAnotherTypeIsABadCastWhenItIsWritten)
{
    const Definition number(nullptr, 0.0, new TextPolicy<double>(), 0);
    Json::Variant output;
    EXPECT_THROW(number.Serialize(sheet, &style, Any(VelString(L"x")), output), std::bad_cast);
}

TEST_F(StyleProperty, APatternIdOfAllOnesIsWrittenAsMinusOne)
{
    const Styles::BaseStyleProperty* patternId = Manager().GetStyleProperty(Fill, PatternId);
    const Definition other(nullptr, 0U, new TextPolicy<std::uint32_t>(), 0);
    const Any allOnes(std::uint32_t{4294967295U});
    Json::Variant output;

    EXPECT_TRUE(patternId->Serialize(sheet, &style, allOnes, output));
    EXPECT_EQ(output.Get<VelString>(), L"-1");
    EXPECT_TRUE(patternId->Serialize(sheet, &style, Any(std::uint32_t{4294967294U}), output));
    EXPECT_EQ(output.Get<VelString>(), L"4294967294");
    EXPECT_EQ(Write(other, allOnes).Get<VelString>(), L"4294967295");

    const auto& cased = Register(Key(L"PatternId"), new Definition(nullptr, 0U, new TextPolicy<std::uint32_t>(), 0));
    EXPECT_EQ(Write(cased, allOnes).Get<VelString>(), L"4294967295");
    const auto& text = Register(PatternId, new Definition(nullptr, VelString(), new TextPolicy<VelString>(), 0));
    EXPECT_EQ(Write(text, Any(VelString(L"4294967295"))).Get<VelString>(), L"-1");
    EXPECT_EQ(Write(text, Any(VelString(L"04294967295"))).Get<VelString>(), L"04294967295");
}

TEST_F(StyleProperty, APatternIdOfMinusOneIsReadAsAllOnes)
{
    Style fill(nullptr, Fill);
    const Json::Variant json(VelString(L"-1"));
    EXPECT_TRUE(Manager().GetStyleProperty(Fill, PatternId)->Deserialize(sheet, &fill, &json));
    EXPECT_EQ(fill.GetProperty(PatternId).Get<std::uint32_t>(), 4294967295U);
}

TEST_F(StyleProperty, StringsNumbersAndTruthValuesAreReadThroughTheirTexts)
{
    const Definition& text = RegisterTest(L"text");
    const std::vector<std::pair<Json::Variant, const wchar_t*>> cases{
        {Json::Variant(VelString(L"as it is ")), L"as it is "},
        {Json::Variant(VelString()), L""},
        {Json::Variant(true), L"1"},
        {Json::Variant(false), L"0"},
        {Json::Variant(0.5), L"0.5"},
        {Json::Variant(-0.0), L"-0"},
        {Json::Variant(3.0), L"3"},
        {Json::Variant(0.1234567), L"0.123457"},
        {Json::Variant(123456.0), L"123456"},
        {Json::Variant(1234567.0), L"1.23457e+06"},
        {Json::Variant(0.0001), L"0.0001"},
        {Json::Variant(0.00001), L"1e-05"},
        {Json::Variant(-1e100), L"-1e+100"},
    };
    for (const auto& [json, expected] : cases)
    {
        EXPECT_TRUE(text.Deserialize(sheet, &style, &json));
        EXPECT_EQ(OwnText(style, Text), VelString(expected));
    }
}

TEST_F(StyleProperty, AnyOtherJsonValueHasNoTextAndStoresNothing)
{
    const Definition& text = RegisterTest(L"text");
    style.SetProperty(Text, Any(VelString(L"before")));
    for (const Json::Variant& json :
         {Json::Variant(), Json::Variant(std::int64_t{1}), Json::Variant(std::uint64_t{1}),
          Json::Variant(Json::Object()), Json::Variant(Json::Array()), Json::Variant(VelStringA("narrow"))})
    {
        EXPECT_FALSE(text.Deserialize(sheet, &style, &json));
        EXPECT_EQ(OwnText(style, Text), L"before");
    }
    EXPECT_FALSE(text.Deserialize(sheet, &style, nullptr));
    const Json::Variant json(VelString(L"x"));
    EXPECT_FALSE(text.Deserialize(sheet, nullptr, &json));
    EXPECT_EQ(OwnText(style, Text), L"before");
}

TEST_F(StyleProperty, ATextThatCannotBeReadLeavesTheOldValue)
{
    const Definition& text = RegisterTest(L"text");
    style.SetProperty(Text, Any(VelString(L"before")));
    const Json::Variant json(VelString(L"bad conversion"));
    EXPECT_THROW(text.Deserialize(sheet, &style, &json), BadConversion);
    EXPECT_EQ(OwnText(style, Text), L"before");

    Style without(nullptr, StyleCategoryName);
    EXPECT_THROW(text.Deserialize(sheet, &without, &json), BadConversion);
    EXPECT_TRUE(without.IsEmpty());
}

TEST_F(StyleProperty, ScalesAnglesAndSkewsThatCannotBeReadTakeANeutralValue)
{
    for (const wchar_t* name : {L"xScale", L"yScale", L"angle", L"skew"})
    {
        const Definition& definition = RegisterTest(name);
        style.SetProperty(Key(name), Any(VelString(L"before")));
        const Json::Variant json(VelString(L"bad conversion"));
        EXPECT_TRUE(definition.Deserialize(sheet, &style, &json));
        const bool isScale = Key(name) == XScale || Key(name) == YScale;
        EXPECT_EQ(style.GetProperty(Key(name)), Any(isScale ? 1.0 : 0.0));
    }
    for (const wchar_t* name : {L"XScale", L"xscale", L"zScale", L"rotation"})
    {
        const Definition& definition = RegisterTest(name);
        const Json::Variant json(VelString(L"bad conversion"));
        EXPECT_THROW(definition.Deserialize(sheet, &style, &json), BadConversion);
        EXPECT_FALSE(style.DoesOverrideProperty(Key(name)));
    }
}

TEST_F(StyleProperty, OtherExceptionsOfThePolicyPassThroughWhateverTheName)
{
    const Definition& angle = RegisterTest(L"angle");
    const Json::Variant json(VelString(L"another failure"));
    EXPECT_THROW(angle.Deserialize(sheet, &style, &json), std::runtime_error);
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleProperty, TheTypeIsThatOfTheDefault)
{
    const Definition number(nullptr, 0.0, nullptr, 0);
    EXPECT_TRUE(number.CheckType(Any(1.0)));
    EXPECT_FALSE(number.CheckType(Any(1)));
    EXPECT_FALSE(number.CheckType(Any()));

    const Definition literal(nullptr, L"text", nullptr, 0);
    EXPECT_TRUE(literal.CheckType(Any(VelString(L"x"))));
    EXPECT_EQ(literal.GetDefaultValue().Get<VelString>(), L"text");
}

TEST_F(StyleProperty, DeletesItsPolicyAndHandsItOut)
{
    {
        auto* policy = new TestPolicy(policyDeaths);
        const Definition definition(nullptr, VelString(), policy, 0);
        EXPECT_EQ(definition.GetConversionPolicy(), policy);
        EXPECT_EQ(policyDeaths, 0);
    }
    EXPECT_EQ(policyDeaths, 1);
}

TEST_F(StyleProperty, ACopySharesThePolicyOfItsSource)
{
    const Definition original(nullptr, 0.5, new TestPolicy(policyDeaths), 2);
    alignas(Definition) std::byte storage[sizeof(Definition)];
    const auto* copy = new (storage) Definition(original); // never destroyed: it would delete the policy, too
    EXPECT_EQ(copy->GetConversionPolicy(), original.GetConversionPolicy());
    EXPECT_TRUE(copy->CheckType(Any(1.0)));
    EXPECT_EQ(copy->GetDefaultValue().Get<double>(), 0.5);
    EXPECT_EQ(copy->GetNewSinceVersion(), 2);

    alignas(Definition) std::byte otherStorage[sizeof(Definition)];
    auto* assigned = new (otherStorage) Definition(nullptr, 1, nullptr, 0);
    *assigned = original;
    EXPECT_EQ(assigned->GetConversionPolicy(), original.GetConversionPolicy());
    EXPECT_TRUE(assigned->CheckType(Any(1.0)));
    EXPECT_FALSE(assigned->CheckType(Any(1)));
}

TEST_F(StyleProperty, IsNeitherTemporaryNorASubstyleNorDeprecated)
{
    const Definition definition(nullptr, 0.0, nullptr, 0);
    EXPECT_FALSE(definition.IsTemporary());
    EXPECT_FALSE(definition.IsSubstyle());
    EXPECT_FALSE(definition.IsDeprecated());
}

TEST_F(StyleProperty, ATemporaryOneIsNeitherWrittenNorRead)
{
    const Temporary temporary(nullptr, 0.5, 99);
    EXPECT_TRUE(temporary.IsTemporary());
    EXPECT_EQ(temporary.GetConversionPolicy(), nullptr);
    EXPECT_EQ(temporary.GetDefaultValue().Get<double>(), 0.5);
    EXPECT_EQ(temporary.GetNewSinceVersion(), 99);

    Json::Variant output(std::int64_t{17});
    EXPECT_TRUE(temporary.Serialize(sheet, &style, Any(1.0), output));
    EXPECT_TRUE(temporary.Serialize(sheet, nullptr, Any(), output)); // nothing is looked at
    EXPECT_EQ(output.Get<std::int64_t>(), 17);

    const Json::Variant json(VelString(L"1"));
    EXPECT_TRUE(temporary.Deserialize(sheet, &style, &json));
    EXPECT_TRUE(temporary.Deserialize(sheet, nullptr, nullptr));
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleProperty, ATemporaryOneKnowsItsType)
{
    const Temporary temporary(nullptr, 0.5, 0);
    EXPECT_TRUE(temporary.CheckType(Any(1.0)));
    EXPECT_FALSE(temporary.CheckType(Any(1)));

    alignas(Temporary) std::byte storage[sizeof(Temporary)];
    auto* copy = new (storage) Temporary(temporary);
    EXPECT_TRUE(copy->CheckType(Any(1.0)));
    *copy = Temporary(nullptr, 1, 0);
    EXPECT_TRUE(copy->CheckType(Any(1)));
    copy->~Temporary(); // without a validator nothing is shared
}

} // namespace Styles::Testing
