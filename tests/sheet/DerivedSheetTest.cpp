// Sheets of a host's own: which stages of the document they can take over, and where these stand in the table.

#include <styles/StyleSheet.h>

#include "support/TestSheet.h"
#include "support/VirtualSlots.h"

#include <gmock/gmock.h>

#include <VelUtils/Stream.h>

#include <string>
#include <utility>
#include <vector>

using testing::ElementsAre;

namespace Styles::Testing
{

namespace
{

class DerivedSheet : public SchemaFixture
{};

std::string Flag(const char* call, bool flag)
{
    return std::string(call) + (flag ? " true" : " false");
}

/// Notes what is called on it, and lets the library do it.
class ListeningSheet : public TestSheet
{
public:
    mutable std::vector<std::string> calls;

protected:
    void ExportToString(VelString& out, bool flag) const override
    {
        calls.push_back(Flag("ExportToString", flag));
        TestSheet::ExportToString(out, flag);
    }
    bool ImportFromString(const VelString& text, bool flag) override
    {
        calls.push_back(Flag("ImportFromString", flag));
        return TestSheet::ImportFromString(text, flag);
    }
    void ExportJson(Json::Variant& out, bool flag) const override
    {
        calls.push_back(Flag("ExportJson", flag));
        TestSheet::ExportJson(out, flag);
    }
    bool ImportJson(Json::Object* root, bool flag) override
    {
        calls.push_back(Flag("ImportJson", flag));
        return TestSheet::ImportJson(root, flag);
    }
};

/// Has a text of its own.
class TextSheet : public StyleSheet
{
public:
    VelString text;
    bool answer = true;

protected:
    void ExportToString(VelString& out, bool) const override { out = text; }
    bool ImportFromString(const VelString& given, bool) override
    {
        text = given;
        return answer;
    }
};

class Context : public IStyleSheetDuplicationContext
{
public:
    void OnStyleDuplicated(Style* style, bool reserved) override { seen.emplace_back(style, reserved); }
    std::vector<std::pair<Style*, bool>> seen;
};

} // namespace

TEST_F(DerivedSheet, WritingGoesThroughTextAndJson)
{
    const ListeningSheet sheet;
    VelUtils::MemoryStream stream;
    EXPECT_TRUE(sheet.Export(stream));
    EXPECT_THAT(sheet.calls, ElementsAre("ExportToString false", "ExportJson false"));
}

TEST_F(DerivedSheet, ReadingGoesThroughTextAndJson)
{
    for (const bool replace : {false, true})
    {
        ListeningSheet sheet;
        VelUtils::MemoryStream stream("{}");
        EXPECT_TRUE(sheet.Import(stream, replace));
        EXPECT_THAT(sheet.calls, ElementsAre(Flag("ImportFromString", replace), Flag("ImportJson", replace)));
    }
}

TEST_F(DerivedSheet, TextsThatAreNoObjectsDoNotReachTheJsonStage)
{
    ListeningSheet sheet;
    for (const char* text : {"[]", "1", "\"x\"", "null", "", "{"})
    {
        VelUtils::MemoryStream stream(text);
        EXPECT_FALSE(sheet.Import(stream, true)) << text;
    }
    EXPECT_THAT(sheet.calls, testing::Each("ImportFromString true"));
}

TEST_F(DerivedSheet, CopyingGoesThroughTheTextsOfBothSheets)
{
    ListeningSheet source;
    source.Add(L"a", Fill);
    ListeningSheet target;
    target.CopyContentsFrom(source, nullptr);
    EXPECT_THAT(source.calls, ElementsAre("ExportToString true", "ExportJson true"));
    EXPECT_THAT(target.calls, ElementsAre("ImportFromString true", "ImportJson true"));
}

TEST_F(DerivedSheet, TheTextOfADerivedSheetIsWhatIsWrittenAndRead)
{
    TextSheet sheet;
    sheet.text = VelString(L"of its own: ä");
    VelUtils::MemoryStream stream;
    EXPECT_TRUE(sheet.Export(stream));
    EXPECT_EQ(stream.GetBytes(), "of its own: ä");
    VelUtils::MemoryStream given("something");
    EXPECT_TRUE(sheet.Import(given, false));
    EXPECT_EQ(sheet.text, VelString(L"something"));
    sheet.answer = false;
    EXPECT_FALSE(sheet.Import(given, false));
}

TEST_F(DerivedSheet, WhatTheJsonStageThrowsIsAnsweredFalse)
{
    class ThrowingSheet : public TestSheet
    {
        bool ImportJson(Json::Object*, bool) override { throw 7; }
    };
    ThrowingSheet sheet;
    EXPECT_FALSE(sheet.Read("{}"));
}

TEST_F(DerivedSheet, WhatTheJsonStageAnswersIsTheAnswer)
{
    class RefusingSheet : public TestSheet
    {
        bool ImportJson(Json::Object*, bool) override { return false; }
    };
    RefusingSheet sheet;
    EXPECT_FALSE(sheet.Read("{}"));
}

TEST_F(DerivedSheet, ACopyHasNewStylesInheritingAmongThemselves)
{
    TestSheet source;
    Style* base = source.Add(L"Base", Fill);
    Style* heir = source.Add(L"Heir", Fill, base);
    base->SetProperty(Angle, Any(45.0));
    base->SetExternalName(VelString(L"outside"));
    source.SetVersion(2);
    TestSheet target;
    target.Add(L"old", Outline);
    Context context;
    target.CopyContentsFrom(source, &context);
    EXPECT_THAT(target.GetStyleNames(), ElementsAre(VelString(L"Base"), VelString(L"Heir")));
    Style* newBase = target.Get(L"Base");
    Style* newHeir = target.Get(L"Heir");
    EXPECT_NE(newBase, base);
    EXPECT_NE(newHeir, heir);
    EXPECT_EQ(newHeir->GetParent(), newBase);
    EXPECT_EQ(EffectiveNumber(*newHeir, Angle), 45.0);
    EXPECT_EQ(newBase->GetExternalName(), VelString(L"outside"));
    EXPECT_EQ(newBase->GetCategoryName(), Fill);
    EXPECT_EQ(target.GetVersion(), 2);
    EXPECT_THAT(context.seen, ElementsAre(std::pair(newBase, false), std::pair(newHeir, false)));
    EXPECT_THAT(source.GetStyles(), ElementsAre(base, heir));
}

TEST_F(DerivedSheet, ACopyHasTheExactVersionOfItsSource)
{
    for (const int version : {0, -5, 7})
    {
        TestSheet source;
        source.SetVersion(version);
        TestSheet target;
        target.CopyContentsFrom(source, nullptr);
        EXPECT_EQ(target.GetVersion(), version);
    }
}

TEST_F(DerivedSheet, ACopyTakesTheIdentityOnlyWhenItHasOneAlready)
{
    TestSheet source;
    source.Add(L"a", Fill);
    source.SetExternalID(VelString(L"of the source"));
    TestSheet without;
    without.CopyContentsFrom(source, nullptr);
    EXPECT_EQ(without.GetExternalID(), VelString());
    EXPECT_EQ(without.Get(L"a")->GetExternalID(), VelString());
    TestSheet with;
    with.SetExternalID(VelString(L"own"));
    with.CopyContentsFrom(source, nullptr);
    EXPECT_EQ(with.GetExternalID(), VelString(L"of the source"));
    EXPECT_EQ(with.Get(L"a")->GetExternalID(), VelString(L"of the source"));
}

TEST_F(DerivedSheet, CopyingASheetToItselfDoesNothing)
{
    ListeningSheet sheet;
    Style* style = sheet.Add(L"a", Fill);
    Context context;
    sheet.CopyContentsFrom(sheet, &context);
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(style));
    EXPECT_THAT(sheet.calls, testing::IsEmpty());
    EXPECT_THAT(context.seen, testing::IsEmpty());
}

#if !defined(_MSC_VER)

namespace
{

class PlainSheet : public StyleSheet
{};
struct OwnExternalID : StyleSheet
{
    VelString GetExternalID() override { return {}; }
};
struct OwnExportToString : StyleSheet
{
    void ExportToString(VelString&, bool) const override {}
};
struct OwnImportFromString : StyleSheet
{
    bool ImportFromString(const VelString&, bool) override { return false; }
};
struct OwnExportJson : StyleSheet
{
    void ExportJson(Json::Variant&, bool) const override {}
};
struct OwnImportJson : StyleSheet
{
    bool ImportJson(Json::Object*, bool) override { return false; }
};
struct OwnSetExternalID : StyleSheet
{
    void SetExternalID(const VelString&) override {}
};

template <class Sheet>
std::vector<std::size_t> SlotsOf()
{
    return DifferingSlots<StyleSheet>(PlainSheet(), Sheet(), 2, 8);
}

} // namespace

TEST_F(DerivedSheet, TheVirtualOperationsStandInTheirOrder)
{
    EXPECT_THAT(SlotsOf<OwnExternalID>(), ElementsAre(2u));
    EXPECT_THAT(SlotsOf<OwnExportToString>(), ElementsAre(3u));
    EXPECT_THAT(SlotsOf<OwnImportFromString>(), ElementsAre(4u));
    EXPECT_THAT(SlotsOf<OwnExportJson>(), ElementsAre(5u));
    EXPECT_THAT(SlotsOf<OwnImportJson>(), ElementsAre(6u));
    EXPECT_THAT(SlotsOf<OwnSetExternalID>(), ElementsAre(7u));
    // The destructor stands before them.
    EXPECT_THAT((DifferingSlots<StyleSheet>(PlainSheet(), OwnExternalID(), 0, 2)), ElementsAre(0u, 1u));
}

#endif

} // namespace Styles::Testing
