#include <styles/StyleSheet.h>

#include "support/TestSheet.h"

#include <gmock/gmock.h>

#include <VelUtils/Stream.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <string>
#include <typeinfo>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace Styles::Testing
{

namespace
{

class StyleSheetDocument : public SchemaFixture
{
protected:
    TestSheet sheet;
};

} // namespace

TEST_F(StyleSheetDocument, HasVersionIdentityAndABlockForEachCategory)
{
    sheet.SetVersion(3);
    sheet.SetExternalID(VelString(L"the id"));
    sheet.Add(L"b", Fill)->SetProperty(Angle, Any(45.0));
    sheet.Add(L"A", Fill);
    EXPECT_EQ(sheet.Write(), R"({
 "version": 3.0,
 "id": "the id",
 "fill": {
  "A": {},
  "b": {
   "angle": "45"
  }
 }
})");
}

TEST_F(StyleSheetDocument, VersionZeroAndAnEmptyIdentityAreNotWritten)
{
    for (const int version : {0, -1})
    {
        sheet.SetVersion(version);
        EXPECT_EQ(sheet.Write(), "{}");
    }
    sheet.Add(L"a", Fill);
    EXPECT_EQ(sheet.Write(), "{\n \"fill\": {\n  \"a\": {}\n }\n}");
}

TEST_F(StyleSheetDocument, BlocksFollowTheOrderOfTheirKeys)
{
    sheet.SetVersion(0);
    for (const PropertyKey& category : {Stop, Fill, Character, Outline})
    {
        sheet.AddStyle(category.GetText(), new Style(nullptr, category), false);
    }
    Json::Variant document = Json::Object();
    sheet.ExportJson(document, false);
    std::vector<PropertyKey> blocks;
    for (std::size_t index = 0; index < document.Get<Json::Object>().GetSize(); ++index)
    {
        blocks.emplace_back(document.Get<Json::Object>().GetValueName(index));
    }
    EXPECT_EQ(blocks.size(), 4u);
    EXPECT_TRUE(std::is_sorted(blocks.begin(), blocks.end(), std::less<PropertyKey>()));
}

TEST_F(StyleSheetDocument, StylesAreGroupedByCategoryAndName)
{
    Style* fill = sheet.Add(L"z", Fill);
    Style* fillToo = sheet.Add(L"Y", Fill);
    Style* outline = sheet.Add(L"x", Outline);
    Style* without = sheet.Add(L"w", Key(L"unregistered"));
    TestSheet::CategoryStyleMap map;
    map[Key(L"left over")];
    sheet.GenerateCategoryStyleMap(map);
    EXPECT_EQ(map.size(), 3u);
    EXPECT_THAT(map[Fill], ElementsAre(Pair(VelString(L"Y"), fillToo), Pair(VelString(L"z"), fill)));
    EXPECT_THAT(map[Outline], ElementsAre(Pair(VelString(L"x"), outline)));
    EXPECT_THAT(map[PropertyKey::Empty], ElementsAre(Pair(VelString(L"w"), without)));
}

TEST_F(StyleSheetDocument, AStyleWithoutCategoryIsReadBackOnlyWhereTheEmptyNameIsRegistered)
{
    sheet.SetVersion(0);
    sheet.Add(L"a", Key(L"unregistered"));
    const std::string document = sheet.Write();
    EXPECT_EQ(document, "{\n \"\": {\n  \"a\": {}\n }\n}");
    TestSheet without;
    EXPECT_TRUE(without.Read(document));
    EXPECT_THAT(without.GetStyles(), IsEmpty());
    Manager().RegisterCategory(PropertyKey::Empty, VelString(L"none"), false, false);
    TestSheet with;
    EXPECT_TRUE(with.Read(document));
    ASSERT_THAT(with.GetStyleNames(), ElementsAre(VelString(L"a")));
    EXPECT_NE(with.Get(L"a")->GetCategory(), nullptr);
    EXPECT_EQ(with.Get(L"a")->GetCategoryUIName(), VelString(L"none"));
}

TEST_F(StyleSheetDocument, JsonIsAddedToAnObjectAndNothingElse)
{
    Json::Variant object = Json::Object();
    object.Get<Json::Object>().AddValue(VelString(L"mine"), true);
    sheet.Add(L"a", Fill);
    sheet.ExportJson(object, false);
    EXPECT_EQ(object.Get<Json::Object>().GetValueName(0), VelString(L"mine"));
    EXPECT_NE(object.Get<Json::Object>().GetValue(VelString(L"fill")), nullptr);
    EXPECT_TRUE(object.Get<Json::Object>().GetValue(VelString(L"version"))->Is<double>());
    for (Json::Variant other : {Json::Variant(), Json::Variant(Json::Array()), Json::Variant(1.0)})
    {
        EXPECT_THROW(sheet.ExportJson(other, false), std::bad_cast);
    }
}

TEST_F(StyleSheetDocument, TemporaryPropertiesAreWrittenWhenAskedFor)
{
    Manager().RegisterProperty(Fill, Key(L"temporary"), new TemporaryStyleProperty(nullptr, 1.0, 0));
    sheet.Add(L"a", Fill)->SetProperty(Key(L"temporary"), Any(2.0));
    VelString without, with;
    sheet.ExportToString(without, false);
    sheet.ExportToString(with, true);
    EXPECT_EQ(Utf8(without).find("temporary"), std::string::npos);
    EXPECT_NE(Utf8(with).find("\"temporary\": null"), std::string::npos);
    VelUtils::MemoryStream stream;
    EXPECT_TRUE(sheet.Export(stream));
    EXPECT_EQ(stream.GetBytes(), Utf8(without));
}

TEST_F(StyleSheetDocument, TheStreamIsUtf8WithoutAByteOrderMark)
{
    sheet.SetVersion(0);
    sheet.AddStyle(Text("Ünï \xF0\x9F\x8E\xA8"), new Style(nullptr, Fill), false);
    VelUtils::MemoryStream stream;
    EXPECT_TRUE(sheet.Export(stream));
    EXPECT_EQ(stream.GetBytes(), "{\n \"fill\": {\n  \"Ünï \xF0\x9F\x8E\xA8\": {}\n }\n}");
}

TEST_F(StyleSheetDocument, AStreamThatRefusesIsAnsweredFalse)
{
    VelUtils::Stream nothing;
    EXPECT_FALSE(sheet.Export(nothing));
    VelUtils::MemoryStream closed;
    EXPECT_TRUE(closed.Close());
    EXPECT_FALSE(sheet.Export(closed));
    Style* old = sheet.Add(L"old", Fill);
    EXPECT_FALSE(sheet.Import(nothing, true));
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(old));

    StyleSheet plain;
    EXPECT_FALSE(plain.Export(nothing));
    EXPECT_FALSE(plain.Export(closed));
    EXPECT_FALSE(plain.Import(nothing, true));
    VelUtils::MemoryStream malformed{std::string_view("{\"fill\":{\"a\xFF\":{}}}")};
    EXPECT_FALSE(plain.Import(malformed, true));
    EXPECT_THAT(plain.GetStyles(), IsEmpty());
}

TEST_F(StyleSheetDocument, APropertyGivesWayToTheFixedMemberOfItsName)
{
    for (const wchar_t* const name : {L"inherits", L"id", L"original"})
    {
        Manager().RegisterProperty(Fill, Key(name), MakeTextProperty());
    }
    TestSheet hosts;
    StyleSheet plain;
    for (StyleSheet* const each : {static_cast<StyleSheet*>(&hosts), &plain})
    {
        auto base = std::make_unique<Style>(nullptr, Fill);
        auto heir = std::make_unique<Style>(base.get(), Fill);
        heir->SetExternalID(VelString(L"x"));
        for (const wchar_t* const name : {L"inherits", L"id", L"original"})
        {
            heir->SetProperty(Key(name), Any(VelString(L"own")));
        }
        each->AddStyle(VelString(L"base"), base.release(), false);
        each->AddStyle(VelString(L"heir"), heir.release(), false);
        VelUtils::MemoryStream text;
        EXPECT_TRUE(each->Export(text));
        EXPECT_THAT(text.GetBytes(), testing::HasSubstr("{\n   \"inherits\": \"base\",\n   \"id\": \"x\",\n"
                                                        "   \"original\": \"own\"\n  }"));
    }
}

TEST_F(StyleSheetDocument, WhatIsExportedIsImported)
{
    Style* base = sheet.Add(L"Base", StyleCategoryName);
    base->SetProperty(Note, Any(VelString(L"of the base")));
    Style* heir = sheet.Add(L"Heir", StyleCategoryName, base);
    Style* fill = sheet.Add(L"Fill", Fill);
    fill->SetProperty(PatternId, Any(std::uint32_t{0xFFFFFFFF}));
    const Style substyle(fill, Fill);
    heir->SetSubstyle(Fill, &substyle);
    Style stop(nullptr, Stop);
    stop.SetProperty(Position, Any(0.25));
    heir->SetProperty(Stops, Any(std::vector<Style*>{&stop, &stop}));
    sheet.SetVersion(2);
    VelUtils::MemoryStream stream;
    ASSERT_TRUE(sheet.Export(stream));

    TestSheet copy;
    VelUtils::MemoryStream bytes(stream.GetBytes());
    ASSERT_TRUE(copy.Import(bytes, false));
    EXPECT_EQ(copy.GetStyleNames(), sheet.GetStyleNames());
    EXPECT_EQ(copy.GetVersion(), 2);
    for (const VelString& name : sheet.GetStyleNames())
    {
        const Style& original = *sheet.GetStyle(name);
        const Style& read = *copy.GetStyle(name);
        EXPECT_EQ(read.GetCategoryName(), original.GetCategoryName());
        EXPECT_EQ(copy.GetStyleName(read.GetParent()), sheet.GetStyleName(original.GetParent()));
    }
    EXPECT_EQ(EffectiveText(*copy.Get(L"Heir"), Note), VelString(L"of the base"));
    EXPECT_EQ(copy.Get(L"Heir")->GetSubstyle(Fill, false)->GetParent(), copy.Get(L"Fill"));
    EXPECT_EQ(copy.Get(L"Fill")->GetProperty(PatternId).Get<std::uint32_t>(), 0xFFFFFFFF);
    EXPECT_EQ(copy.Get(L"Heir")->GetProperty(Stops).Get<std::vector<Style*>>().size(), 2u);
    EXPECT_EQ(copy.Write(), sheet.Write());
}

TEST_F(StyleSheetDocument, AParentMayComeLaterInTheBlockOrInALaterBlock)
{
    ASSERT_TRUE(sheet.Read(R"({"style": {"heir": {"inherits": "PARENT", "fill": {"inherits": "a fill"}}, "parent": {}},
                               "fill": {"a fill": {}}, "outline": {"line": {"inherits": "later"}},
                               "character": {"later": {}}})"));
    EXPECT_EQ(sheet.Get(L"heir")->GetParent(), sheet.Get(L"parent"));
    EXPECT_EQ(sheet.Get(L"heir")->GetSubstyle(Fill, false)->GetParent(), sheet.Get(L"a fill"));
    EXPECT_EQ(sheet.Get(L"line")->GetParent(), sheet.Get(L"later"));
}

TEST_F(StyleSheetDocument, AnImportAddsToTheStylesThatAreThere)
{
    Style* old = sheet.Add(L"old", Fill);
    EXPECT_TRUE(sheet.Read(R"({"fill": {"new": {"inherits": "old"}}})"));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"new"), VelString(L"old")));
    EXPECT_EQ(sheet.Get(L"new")->GetParent(), old);
}

TEST_F(StyleSheetDocument, WithoutReplacingAStyleThatIsThereStaysUnread)
{
    sheet.SetExternalID(VelString(L"id"));
    Style* old = sheet.Add(L"Name", Fill);
    old->SetProperty(Angle, Any(1.0));
    EXPECT_TRUE(sheet.Read(
        R"({"outline": {"name": {"width": "2"}}, "fill": {"NAME": {"angle": "2", "inherits": "x"}, "x": {}}})"));
    EXPECT_EQ(sheet.Get(L"name"), old);
    EXPECT_EQ(sheet.GetStyleName(old), VelString(L"Name"));
    EXPECT_EQ(old->GetCategoryName(), Fill);
    EXPECT_EQ(EffectiveNumber(*old, Angle), 1.0);
    EXPECT_EQ(old->GetParent(), nullptr);
    EXPECT_EQ(old->GetExternalID(), VelString());
    EXPECT_EQ(sheet.Get(L"x")->GetExternalID(), VelString(L"id"));
}

TEST_F(StyleSheetDocument, ReplacingReadsTheStyleInThePlaceOfTheOldOne)
{
    sheet.Add(L"Name", Fill)->SetProperty(Angle, Any(1.0));
    EXPECT_TRUE(sheet.Read(R"({"fill": {"NAME": {"skew": "2"}}})", true));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"NAME")));
    EXPECT_FALSE(sheet.Get(L"name")->DoesOverrideProperty(Angle));
    EXPECT_EQ(EffectiveNumber(*sheet.Get(L"name"), Skew), 2.0);
}

TEST_F(StyleSheetDocument, OnlyASheetWithAnIdentityTakesThatOfTheDocument)
{
    const std::string document = R"({"fill": {"a": {"id": "own"}, "b": {}}, "id": "of the document"})";
    EXPECT_TRUE(sheet.Read(document));
    EXPECT_EQ(sheet.GetExternalID(), VelString());
    EXPECT_EQ(sheet.Get(L"a")->GetExternalID(), VelString(L"own"));
    EXPECT_EQ(sheet.Get(L"b")->GetExternalID(), VelString());
    TestSheet external;
    external.SetExternalID(VelString(L"before"));
    EXPECT_TRUE(external.Read(document));
    EXPECT_EQ(external.GetExternalID(), VelString(L"of the document"));
    EXPECT_EQ(external.Get(L"a")->GetExternalID(), VelString(L"of the document"));
    EXPECT_EQ(external.Get(L"b")->GetExternalID(), VelString(L"of the document"));
    EXPECT_TRUE(external.Read(R"({"id": 5, "fill": {"c": {}}})"));
    EXPECT_EQ(external.GetExternalID(), VelString(L"of the document")) << "no text";
    EXPECT_EQ(external.Get(L"c")->GetExternalID(), VelString(L"of the document"));
    EXPECT_TRUE(external.Read(R"({"id": "", "fill": {"d": {}}})"));
    EXPECT_EQ(external.GetExternalID(), VelString());
    EXPECT_EQ(external.Get(L"d")->GetExternalID(), VelString());
}

TEST_F(StyleSheetDocument, TheVersionIsTruncatedTowardsZeroAndSaturates)
{
    const auto versionOf = [&](const std::string& number) {
        sheet.SetVersion(77);
        EXPECT_TRUE(sheet.Read(R"({"version": )" + number + "}"));
        return sheet.GetVersion();
    };
    EXPECT_EQ(versionOf("3"), 3);
    EXPECT_EQ(versionOf("2.9"), 2);
    EXPECT_EQ(versionOf("-1.5"), -1);
    EXPECT_EQ(versionOf("0.9"), 0);
    EXPECT_EQ(versionOf("-0.9"), 0);
    EXPECT_EQ(versionOf("-0"), 0);
    EXPECT_EQ(versionOf("2147483647"), 2147483647);
    EXPECT_EQ(versionOf("2147483646.9"), 2147483646);
    EXPECT_EQ(versionOf("2147483647.5"), 2147483647);
    EXPECT_EQ(versionOf("2147483648"), 2147483647);
    EXPECT_EQ(versionOf("-2147483648.5"), -2147483647 - 1);
    EXPECT_EQ(versionOf("-2147483647.5"), -2147483647);
    EXPECT_EQ(versionOf("1e300"), 2147483647);
    EXPECT_EQ(versionOf("-1e300"), -2147483647 - 1);
}

TEST_F(StyleSheetDocument, NoVersionIsVersionZero)
{
    for (const char* document : {"{}", R"({"version": "3"})", R"({"Version": 3})", R"({"version": null})",
                                 R"({"version": [3]})", R"({"version": true})", R"({"version": {}})"})
    {
        sheet.SetVersion(77);
        EXPECT_TRUE(sheet.Read(document)) << document;
        EXPECT_EQ(sheet.GetVersion(), 0) << document;
    }
}

TEST_F(StyleSheetDocument, AnIntegerIsNoVersion)
{
    Json::Object root;
    root.AddValue(VelString(L"version"), std::int64_t{3});
    EXPECT_TRUE(sheet.ImportJson(&root, false));
    EXPECT_EQ(sheet.GetVersion(), 0);
    EXPECT_FALSE(sheet.ImportJson(nullptr, false));
}

namespace
{

/// Notes the version that the sheet has while a value is read.
class VersionProbe : public ProbeProperty
{
public:
    explicit VersionProbe(std::vector<int>& versions) : m_versions(versions) {}
    bool Deserialize(const StyleSheet& sheet, Style*, const Json::Variant*) const override
    {
        m_versions.push_back(sheet.GetVersion());
        return true;
    }

private:
    std::vector<int>& m_versions;
};

} // namespace

TEST_F(StyleSheetDocument, StylesAreReadAtTheVersionOfTheDocument)
{
    std::vector<int> versions;
    Manager().RegisterProperty(Fill, Key(L"probe"), new VersionProbe(versions));
    EXPECT_TRUE(sheet.Read(R"({"fill": {"a": {"probe": 1}}, "version": 9})"));
    EXPECT_TRUE(sheet.Read(R"({"fill": {"b": {"probe": 1}}})"));
    EXPECT_THAT(versions, ElementsAre(9, 9)) << "without one, at the version that the sheet had";
    EXPECT_EQ(sheet.GetVersion(), 0);
}

TEST_F(StyleSheetDocument, CategoriesThatAreNotRegisteredArePassedOver)
{
    Style* old = sheet.Add(L"old", Fill);
    EXPECT_TRUE(sheet.Read(
        R"({"unknown": {"a": {}, "old": {}, "b": 5}, "FILL": {"c": {}}, "": {"d": {}}, "fill": {"e": {}}})", true));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"e"), VelString(L"old")));
    EXPECT_EQ(sheet.Get(L"old"), old);
}

TEST_F(StyleSheetDocument, OtherMembersOfTheRootAreIgnored)
{
    EXPECT_TRUE(sheet.Read(R"({"fill": [1], "outline": "x", "stop": null, "style": true, "nest": 2, "x": {"y": 1}})"));
    EXPECT_THAT(sheet.GetStyles(), IsEmpty());
}

// A sheet of the library's own class takes shorter ways, which must lead to the same place as those that a class of a
// host can step into.
TEST_F(StyleSheetDocument, ASheetOfAHostsClassReadsAndWritesTheSameAsAPlainOne)
{
    Manager().RegisterCategory(Key(L"version"), VelString(L"Version"), false, true);
    Manager().RegisterCategory(Key(L"id"), VelString(L"Identity"), false, true);
    const char* const documents[] = {
        "{}",
        R"({"version":3.0,"fill":{"a":{"color":"red"},"b":{"inherits":"c"},"c":{"inherits":"a","angle":"1.5"}}})",
        R"({"version":1.0,"style":{"\u00e4 \ud834\udd1e":{"note":"\"\\\b\f\n\r\t\u0001\u007f\u0080\u20ac\ud83d\ude00"}}})",
        R"({"version":{"a":{},"b":{}},"id":{"c":{}},"fill":{"d":{}}})",
        R"({"version":2.0,"id":"x","version":{"a":{}},"fill":{"A":{"color":"1"},"a":{"color":"2"}}})",
        R"({"style":{"a":{"fill":{"color":"x"},"stops":[{"position":"1"},{}]},"b":{"inherits":"a","id":"1"}}})",
        R"({"fill":{"a":{"color":"x"}},"outline":{"a":{"width":"2"},"b":{"inherits":"a"}}})",
        R"({"fill":{"a":{"color":"x"},"b":7,"c":{}}})",
        R"({"fill":{"a":{"color":"x"},"b":{"angle":"?"},"patternId":{"patternId":"?"},"c":{"color":"y"}}})",
        "[]",
        R"({"fill":{"a":{})",
    };
    for (const bool replace : {false, true})
    {
        StyleSheet plain;
        TestSheet hosts;
        hosts.SetExternalID(VelString());
        for (const char* const document : documents)
        {
            VelUtils::MemoryStream first{std::string_view(document)};
            VelUtils::MemoryStream second{std::string_view(document)};
            EXPECT_EQ(plain.Import(first, replace), hosts.Import(second, replace)) << document;
            VelUtils::MemoryStream plainText;
            VelUtils::MemoryStream hostsText;
            EXPECT_TRUE(plain.Export(plainText));
            EXPECT_TRUE(hosts.Export(hostsText));
            EXPECT_EQ(plainText.GetBytes(), hostsText.GetBytes()) << document;
            EXPECT_EQ(plain.GetVersion(), hosts.GetVersion()) << document;
        }
    }
}

TEST_F(StyleSheetDocument, AStyleThatADefinitionRemovesWhileTheSheetIsReadIsPassedOver)
{
    class Remover : public StyleProperty
    {
    public:
        explicit Remover(StyleSheet& sheet)
            : StyleProperty(nullptr, VelString(), new TextPolicy<VelString>(), 0), m_sheet(sheet)
        {}
        bool Deserialize(const StyleSheet& /*sheet*/, Style* /*style*/, const Json::Variant* json) const override
        {
            delete m_sheet.RemoveStyle(json->Get<VelString>());
            return true;
        }

    private:
        StyleSheet& m_sheet;
    };
    StyleSheet plain;
    Manager().RegisterProperty(Fill, Key(L"remove"), new Remover(plain));
    VelUtils::MemoryStream stream{
        std::string_view(R"({"fill":{"a":{"color":"1"},"b":{"remove":"c"},"c":{"color":"2"},"d":{"color":"3"}}})")};
    EXPECT_TRUE(plain.Import(stream, false));
    EXPECT_EQ(plain.GetStyleNames(), (std::vector<VelString>{L"a", L"b", L"d"}));
    EXPECT_EQ(OwnText(*plain.GetStyle(VelString(L"d")), Color), L"3");
}

TEST_F(StyleSheetDocument, AStyleThatIsNoObjectStopsTheImportWhereItStands)
{
    for (const char* wrong : {"5", "null", "\"x\"", "[]", "true"})
    {
        TestSheet target;
        Style* old = target.Add(L"old", Fill);
        target.SetVersion(7);
        EXPECT_FALSE(target.Read(std::string(R"({"fill": {"a": {"angle": "1"}, "b": )") + wrong +
                                 R"(, "c": {}}, "version": 5})"));
        EXPECT_THAT(target.GetStyleNames(), ElementsAre(VelString(L"a"), VelString(L"old"))) << wrong;
        EXPECT_EQ(target.Get(L"old"), old);
        EXPECT_TRUE(target.Get(L"a")->IsEmpty());
        EXPECT_EQ(target.Get(L"a")->GetCategoryName(), PropertyKey::Empty);
        EXPECT_EQ(target.GetVersion(), 7);
    }
}

TEST_F(StyleSheetDocument, AValueThatCannotBeReadStopsTheImportWhereItStands)
{
    EXPECT_FALSE(
        sheet.Read(R"({"fill": {"a": {"patternId": "7"}, "b": {"patternId": "no number"}, "c": {"patternId": "8"}}})"));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"a"), VelString(L"b"), VelString(L"c")));
    EXPECT_EQ(sheet.Get(L"a")->GetProperty(PatternId).Get<std::uint32_t>(), 7u);
    EXPECT_EQ(sheet.Get(L"b")->GetCategoryName(), Fill);
    EXPECT_TRUE(sheet.Get(L"b")->IsEmpty());
    EXPECT_EQ(sheet.Get(L"c")->GetCategoryName(), PropertyKey::Empty);
}

TEST_F(StyleSheetDocument, WhatIsNoDocumentLeavesTheSheetAsItWas)
{
    sheet.Add(L"old", Fill)->SetProperty(Angle, Any(1.0));
    sheet.SetVersion(5);
    sheet.SetExternalID(VelString(L"id"));
    const std::string before = sheet.Write();
    for (const char* text : {"", " ", "[]", "[{}]", "1", "\"x\"", "true", "null", "{", "{}x", "{\"version\": 9,}",
                             "{'a': 1}", "{\"id\": \"x\" \"b\"}"})
    {
        EXPECT_FALSE(sheet.Read(text, true)) << text;
        EXPECT_EQ(sheet.Write(), before) << text;
        EXPECT_EQ(sheet.GetVersion(), 5);
    }
}

TEST_F(StyleSheetDocument, OneNameInTwoBlocksIsOneStyleOfTheLaterCategory)
{
    for (const bool replace : {false, true})
    {
        TestSheet target;
        EXPECT_TRUE(target.Read(
            R"({"fill": {"Name": {"angle": "4", "color": "red"}}, "outline": {"NAME": {"color": "blue"}}})", replace));
        EXPECT_THAT(target.GetStyleNames(), ElementsAre(replace ? VelString(L"NAME") : VelString(L"Name")));
        const Style* style = target.Get(L"name");
        EXPECT_EQ(style->GetCategoryName(), Outline);
        EXPECT_EQ(OwnText(*style, Color), VelString(L"blue"));
        EXPECT_TRUE(style->DoesOverrideProperty(Angle)) << "each block has been read into it in turn";
    }
}

TEST_F(StyleSheetDocument, StylesInsideThatTheLaterCategoryDoesNotKnowAreDestroyed)
{
    for (const bool replace : {false, true})
    {
        TestSheet target;
        EXPECT_TRUE(
            target.Read(R"({"style": {"x": {"fill": {"angle": "1"}, "outline": {}, "stops": [{}], "number": "3"}},
                                    "character": {"x": {"fill": {"angle": "2"}}}})",
                        replace));
        const Style* style = target.Get(L"x");
        EXPECT_EQ(style->GetCategoryName(), Character);
        EXPECT_FALSE(style->DoesOverrideProperty(Outline)) << "nobody would destroy it";
        EXPECT_FALSE(style->DoesOverrideProperty(Stops));
        ASSERT_NE(style->GetSubstyle(Fill, false), nullptr) << "both categories know it";
        EXPECT_EQ(EffectiveNumber(*style->GetSubstyle(Fill, false), Angle), 1.0) << "a substyle that is there wins";
    }
}

} // namespace Styles::Testing
