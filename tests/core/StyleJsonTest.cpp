#include "support/StyleMaking.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace Styles::Testing
{

namespace
{

/// Notes what the reader and the writer ask of it, in a list that several share, and may throw.
class ReaderProbe : public ProbeProperty
{
public:
    struct Behaviour
    {
        bool deprecated = false;
        bool adjusts = false;
        bool leftOut = false;
        bool fails = false;
    };

    ReaderProbe(std::vector<std::string>& events, Behaviour behaviour) : m_events(events), m_behaviour(behaviour) {}

    bool Serialize(const StyleSheet& sheet, const Style* style, const Any& value, Json::Variant& output) const override
    {
        Note("write ");
        EXPECT_TRUE(output == Json::Variant());
        return ProbeProperty::Serialize(sheet, style, value, output) && !m_behaviour.leftOut;
    }
    bool Deserialize(const StyleSheet& sheet, Style* style, const Json::Variant* json) const override
    {
        Note("read ");
        return ProbeProperty::Deserialize(sheet, style, json);
    }
    bool NeedAdjustementsForStyleIO() const override { return m_behaviour.adjusts; }
    void AdjustAfterDeserialize(const StyleSheet&, Style*) const override { Note("adjust "); }
    bool IsDeprecated() const override { return m_behaviour.deprecated; }

private:
    void Note(const std::string& what) const
    {
        m_events.push_back(what + Utf8(GetPropertyName().GetText()));
        if (m_behaviour.fails)
        {
            throw std::runtime_error("as asked");
        }
    }

    std::vector<std::string>& m_events;
    Behaviour m_behaviour;
};

class StyleJson : public SchemaFixture
{
protected:
    StyleJson() { sheet.SetVersion(3); }

    void RegisterProbe(const wchar_t* name, ReaderProbe::Behaviour behaviour)
    {
        Manager().RegisterProperty(StyleCategoryName, Key(name), new ReaderProbe(events, behaviour));
    }

    std::string Write(const Style& given, bool includeTemporaries = false) const
    {
        return Utf8(given.Serialize(sheet, true, includeTemporaries));
    }

    /// The object that a text says.
    static Json::Object Object(std::string_view text)
    {
        Json::Variant value;
        VelString error;
        EXPECT_TRUE(Json::Parse(Text(text), value, error)) << Utf8(error);
        return value.Get<Json::Object>();
    }

    void Read(Style& given, std::string_view text) { given.DeserializeJson(sheet, Object(text)); }

    std::vector<std::string> events;
    TestSheet sheet;
    Style style{nullptr, StyleCategoryName};
    const Any red{VelString(L"red")};
};

} // namespace

TEST_F(StyleJson, AStyleWithNothingInItIsAnEmptyObject)
{
    EXPECT_EQ(Write(style), "{}");
    EXPECT_EQ(Write(Style()), "{}");
    Json::Variant output(VelString(L"before"));
    style.Serialize(sheet, output, false);
    EXPECT_EQ(output.Get<Json::Object>().GetSize(), 0U);
}

TEST_F(StyleJson, ParentAndIdentityComeFirstThenThePropertiesByName)
{
    style.SetProperty(Number, Any(1.5));
    style.SetProperty(Note, red);
    AddSubstyle(style, Outline, Outline).SetProperty(Color, red);
    AddSubstyle(style, Fill, Fill);
    AddElements(style, Stops, Stop, 1);
    style.SetParent(sheet.Add(L"Base", StyleCategoryName));
    style.SetExternalName(VelString(L"outer name"));
    style.SetExternalID(VelString(L"outer id"));
    EXPECT_EQ(Write(style), R"({"inherits":"Base","id":"outer id","original":"outer name","fill":{"id":"outer id",)"
                            R"("original":"outer name"},"note":"red","number":"1.5","outline":{"id":"outer id",)"
                            R"("original":"outer name","color":"red"},"stops":[{}]})");
}

TEST_F(StyleJson, PropertiesAreSortedCaseSensitivelyWhateverTheOrderTheyWereSetIn)
{
    std::vector<const wchar_t*> names{L"zebra", L"Zebra", L"apple", L"Apple", L"\u00e9clair", L"_", L"mid"};
    for (const wchar_t* name : names)
    {
        Manager().RegisterProperty(StyleCategoryName, Key(name), MakeTextProperty());
    }
    for (int round = 0; round < 2; ++round)
    {
        std::reverse(names.begin(), names.end());
        Style other(nullptr, StyleCategoryName);
        for (const wchar_t* name : names)
        {
            other.SetProperty(Key(name), Any(VelString(L"1")));
        }
        EXPECT_EQ(Write(other), R"({"Apple":"1","Zebra":"1","_":"1","apple":"1","mid":"1","zebra":"1","éclair":"1"})");
    }
}

TEST_F(StyleJson, AParentThatTheSheetDoesNotKnowIsLeftOut)
{
    Style stranger(nullptr, StyleCategoryName);
    style.SetParent(&stranger);
    EXPECT_EQ(Write(style), "{}");
}

TEST_F(StyleJson, KeysWithoutDefinitionAreLeftOut)
{
    Style fill(nullptr, Fill);
    fill.SetProperty(Color, red);
    fill.SetProperty(XScale, Any(2.0));
    fill.SetCategory(Outline);
    EXPECT_EQ(Write(fill), R"({"color":"red"})");
    fill.SetCategory(Fill);
}

TEST_F(StyleJson, AStyleWhoseCategoryIsForgottenIsWrittenWithoutValues)
{
    Style stop(nullptr, Stop);
    stop.SetProperty(Position, Any(0.5));
    stop.SetExternalID(VelString(L"id"));
    Manager().DeregisterCategory(Stop);
    EXPECT_EQ(Write(stop), R"({"id":"id"})");
    Read(stop, R"({"color":"red","id":"other"})");
    EXPECT_FALSE(stop.DoesOverrideProperty(Color));
    EXPECT_EQ(stop.GetExternalID(), L"other");
}

TEST_F(StyleJson, AMemberThatItsDefinitionRefusesIsLeftOut)
{
    RegisterProbe(L"a", {.leftOut = true});
    RegisterProbe(L"b", {});
    Manager().RegisterProperty(StyleCategoryName, Key(L"newer"), MakeTextProperty(L"", 4));
    for (const wchar_t* name : {L"a", L"b", L"newer"})
    {
        style.SetProperty(Key(name), red);
    }
    EXPECT_EQ(Write(style), R"({"b":"red"})");
    sheet.SetVersion(4);
    EXPECT_EQ(Write(style), R"({"b":"red","newer":"red"})");
}

TEST_F(StyleJson, TemporariesAreWrittenOnRequestAndNeverInsideValues)
{
    for (const PropertyKey& category : {StyleCategoryName, Fill, Stop})
    {
        Manager().RegisterProperty(category, Key(L"memory"), new TemporaryStyleProperty(nullptr, 0.0, 0));
    }
    const auto fillIn = [&](Style& to) { to.SetProperty(Key(L"memory"), Any(1.0)); };
    fillIn(style);
    fillIn(AddSubstyle(style, Fill, Fill));
    fillIn(*AddElements(style, Stops, Stop, 1)[0]);
    EXPECT_EQ(Write(style, false), R"({"fill":{},"stops":[{}]})");
    EXPECT_EQ(Write(style, true), R"({"fill":{},"memory":null,"stops":[{}]})");
}

TEST_F(StyleJson, TheFirstFlagOfTheTextIsThatOfTheWriter)
{
    style.SetProperty(Note, red);
    Json::Variant object;
    style.Serialize(sheet, object, false);
    EXPECT_EQ(style.Serialize(sheet, true, false), Json::ValueToString(object, true));
    EXPECT_EQ(style.Serialize(sheet, false, false), Json::ValueToString(object, false));
    EXPECT_NE(style.Serialize(sheet, true, false), style.Serialize(sheet, false, false));
}

TEST_F(StyleJson, AThrowWhileWritingLeavesTheMembersWrittenSoFar)
{
    RegisterProbe(L"m", {.fails = true});
    style.SetExternalID(VelString(L"id"));
    style.SetProperty(Key(L"m"), red);
    style.SetProperty(Note, red); // comes after it
    Manager().RegisterProperty(StyleCategoryName, Key(L"a"), MakeTextProperty());
    style.SetProperty(Key(L"a"), red);
    Json::Variant output;
    EXPECT_THROW(style.Serialize(sheet, output, false), std::runtime_error);
    EXPECT_EQ(Utf8(Json::ValueToString(output, true)), R"({"id":"id","a":"red"})");
}

TEST_F(StyleJson, ReadingFillsTheStyleAndClearsNothing)
{
    style.SetProperty(Number, Any(1.5));
    style.SetProperty(Note, Any(VelString(L"before")));
    Read(style, R"({"note":"red","fill":{"color":"blue"},"stops":[{"position":"0.5"},{}],"id":"i","original":"o"})");
    EXPECT_EQ(OwnText(style, Note), L"red");
    EXPECT_EQ(EffectiveNumber(style, Number), 1.5);
    EXPECT_EQ(OwnText(*style.GetSubstyle(Fill, false), Color), L"blue");
    EXPECT_EQ(style.GetSubstyle(Fill, false)->GetOwner(), &style);
    ASSERT_EQ(ElementsOf(style, Stops).size(), 2U);
    EXPECT_EQ(EffectiveNumber(*ElementsOf(style, Stops)[0], Position), 0.5);
    EXPECT_EQ(style.GetExternalID(), L"i");
    EXPECT_EQ(style.GetExternalName(), L"o");
    EXPECT_EQ(style.GetParent(), nullptr);
}

TEST_F(StyleJson, ANewStyleIsReadWithItsCategory)
{
    const std::unique_ptr<Style> read(Style::Deserialize(sheet, Object(R"({"color":"red"})"), Fill));
    EXPECT_EQ(read->GetCategoryName(), Fill);
    EXPECT_EQ(read->GetParent(), nullptr);
    EXPECT_EQ(OwnText(*read, Color), L"red");
    const std::unique_ptr<Style> unknown(Style::Deserialize(sheet, Object(R"({"color":"red"})"), Key(L"unknown")));
    EXPECT_EQ(unknown->GetCategory(), nullptr);
    EXPECT_TRUE(unknown->IsEmpty());
}

TEST_F(StyleJson, WhatIsWrittenReadsBackEqual)
{
    style.SetParent(sheet.Add(L"Base", StyleCategoryName));
    style.SetProperty(Number, Any(0.1));
    Style& character = AddSubstyle(style, Character, Character);
    AddSubstyle(character, Fill, Fill, sheet.Add(L"Red", Fill)).SetProperty(PatternId, Any(std::uint32_t{4294967295U}));
    AddElements(style, Stops, Stop, 3)[1]->SetProperty(Color, Any(VelString(L"\u4e2d\u6587 \"x\"")));
    Json::Variant output;
    style.Serialize(sheet, output, false);
    const std::unique_ptr<Style> read(Style::Deserialize(sheet, output.Get<Json::Object>(), StyleCategoryName));
    EXPECT_EQ(*read, style);
}

TEST_F(StyleJson, UnknownMembersAndWrongTypesArePassedOver)
{
    style.SetExternalID(VelString(L"id"));
    style.SetExternalName(VelString(L"name"));
    style.SetParent(sheet.Add(L"Base", StyleCategoryName));
    Style* const parent = style.GetParent();
    Read(style, R"({"inherits":1.5,"id":true,"original":null,"unknown":"x","note":null,"Note":"x","fill":"x"})");
    Read(style, R"({"inherits":"","id":"","original":"","INHERITS":"Base","fill":[],"stops":{},"number":{}})");
    Read(style, R"({"inherits":["Base"],"id":{},"original":[]})");
    EXPECT_EQ(style.GetExternalID(), L"id");
    EXPECT_EQ(style.GetExternalName(), L"name");
    EXPECT_EQ(style.GetParent(), parent);
    EXPECT_TRUE(style.IsEmpty());
}

TEST_F(StyleJson, AParentIsFoundByItsNameWithoutRegardToCase)
{
    const Style* base = sheet.Add(L"Base \u00c4", StyleCategoryName);
    Read(style, "{\"inherits\":\"bASE \xc3\xa4\"}");
    EXPECT_EQ(style.GetParent(), base);
}

TEST_F(StyleJson, AParentThatIsUnknownOrTheStyleItselfIsNotSet)
{
    Style* own = sheet.Add(L"Own", StyleCategoryName);
    Read(*own, R"({"inherits":"OWN"})");
    EXPECT_EQ(own->GetParent(), nullptr);
    Read(*own, R"({"inherits":"nobody"})");
    EXPECT_EQ(own->GetParent(), nullptr);
}

TEST_F(StyleJson, ASubstyleMayInheritFromTheStyleThatHoldsIt)
{
    Style* holder = sheet.Add(L"Holder", Nest);
    Read(*holder, R"({"nest":{"inherits":"Holder"},"nests":[{"inherits":"Holder"}]})");
    EXPECT_EQ(holder->GetSubstyle(Nest, false)->GetParent(), holder);
    EXPECT_EQ(ElementsOf(*holder, Nests).at(0)->GetParent(), holder);
    EXPECT_EQ(Write(*holder), R"({"nest":{"inherits":"Holder"},"nests":[{"inherits":"Holder"}]})");
}

TEST_F(StyleJson, NamesOfTheImportRecordAreNotInheritedFrom)
{
    sheet.Add(L"Base", StyleCategoryName);
    const Style* other = sheet.Add(L"Other", StyleCategoryName);
    Manager().GetImportStyleInfo().nameSet.insert(VelString(L"Base"));
    Manager().GetImportStyleInfo().nameMap[VelString(L"Base")] = VelString(L"Other");
    Read(style, R"({"inherits":"Base"})");
    EXPECT_EQ(style.GetParent(), nullptr);

    Manager().GetImportStyleInfo().nameSet.clear();
    Read(style, R"({"inherits":"Base"})");
    EXPECT_EQ(style.GetParent(), other);
}

TEST_F(StyleJson, NamesOfTheImportRecordAreCaseSensitive)
{
    const Style* base = sheet.Add(L"Base", StyleCategoryName);
    sheet.Add(L"Other", StyleCategoryName);
    Manager().GetImportStyleInfo().nameSet.insert(VelString(L"base"));
    Manager().GetImportStyleInfo().nameMap[VelString(L"BASE")] = VelString(L"Other");
    Read(style, R"({"inherits":"Base"})");
    EXPECT_EQ(style.GetParent(), base);
}

TEST_F(StyleJson, ASubstituteIsTakenAsItIs)
{
    sheet.Add(L"Base", StyleCategoryName);
    const Style* other = sheet.Add(L"Other", StyleCategoryName);
    auto& record = Manager().GetImportStyleInfo();
    record.nameMap[VelString(L"Base")] = VelString(L"other");
    record.nameMap[VelString(L"other")] = VelString(L"Base"); // not followed any further
    record.nameSet.insert(VelString(L"other"));               // nor refused
    Read(style, R"({"inherits":"Base"})");
    EXPECT_EQ(style.GetParent(), other);

    record.nameMap[VelString(L"Base")] = VelString(L"nobody");
    Style without(nullptr, StyleCategoryName);
    Read(without, R"({"inherits":"Base"})");
    EXPECT_EQ(without.GetParent(), nullptr);
}

TEST_F(StyleJson, DeprecatedPropertiesAreReadAfterAllOthersAndThenComeTheAdjustments)
{
    RegisterProbe(L"old", {.deprecated = true, .adjusts = true});
    RegisterProbe(L"older", {.deprecated = true});
    RegisterProbe(L"new", {.adjusts = true});
    RegisterProbe(L"newer", {});
    Read(style, R"({"older":"1","old":"2","newer":"3","new":"4"})");
    EXPECT_THAT(events, ElementsAre("read newer", "read new", "read older", "read old", "adjust old", "adjust new"));
    EXPECT_EQ(OwnText(style, Key(L"old")), L"2");
}

TEST_F(StyleJson, ADeprecatedPropertyHasTheLastWord)
{
    struct Successor : ProbeProperty
    {
        bool IsDeprecated() const override { return true; }
        bool Deserialize(const StyleSheet&, Style* holder, const Json::Variant* json) const override
        {
            holder->SetProperty(Key(L"note"), Any(json->Get<VelString>()));
            return true;
        }
    };
    Manager().RegisterProperty(StyleCategoryName, Key(L"remark"), new Successor);
    Read(style, R"({"remark":"old","note":"new"})");
    EXPECT_EQ(OwnText(style, Note), L"old");
    EXPECT_FALSE(style.DoesOverrideProperty(Key(L"remark")));
}

TEST_F(StyleJson, AThrowWhileReadingLeavesWhatWasReadAndSkipsTheRest)
{
    RegisterProbe(L"old", {.deprecated = true, .adjusts = true});
    RegisterProbe(L"good", {.adjusts = true});
    RegisterProbe(L"bad", {.fails = true});
    EXPECT_THROW(Read(style, R"({"id":"i","good":"1","old":"2","bad":"3","note":"4","original":"o"})"),
                 std::runtime_error);
    EXPECT_THAT(events, ElementsAre("read good", "read bad"));
    EXPECT_EQ(OwnText(style, Key(L"good")), L"1");
    EXPECT_FALSE(style.DoesOverrideProperty(Key(L"old")));
    EXPECT_FALSE(style.DoesOverrideProperty(Note));
    EXPECT_EQ(style.GetExternalID(), L"i");
    EXPECT_EQ(style.GetExternalName(), L"");
}

TEST_F(StyleJson, AThrowOfADeprecatedPropertySkipsTheAdjustments)
{
    RegisterProbe(L"old", {.deprecated = true, .fails = true});
    RegisterProbe(L"good", {.adjusts = true});
    EXPECT_THROW(Read(style, R"({"old":"2","good":"1"})"), std::runtime_error);
    EXPECT_THAT(events, ElementsAre("read good", "read old"));
}

TEST_F(StyleJson, ATextThatIsNoValueIsABadConversion)
{
    EXPECT_THROW(Read(style, R"({"note":"red","number":"one"})"), VelPref::Detail::BadConversion);
    EXPECT_EQ(OwnText(style, Note), L"red");
    EXPECT_FALSE(style.DoesOverrideProperty(Number));
    EXPECT_THROW(static_cast<void>(Style::Deserialize(sheet, Object(R"({"number":"one"})"), StyleCategoryName)),
                 VelPref::Detail::BadConversion);
}

TEST_F(StyleJson, ReadingHasNoTestOfVersions)
{
    Manager().RegisterProperty(StyleCategoryName, Key(L"newer"), MakeTextProperty(L"", 99));
    Read(style, R"({"newer":"x"})");
    EXPECT_EQ(OwnText(style, Key(L"newer")), L"x");
}

} // namespace Styles::Testing
