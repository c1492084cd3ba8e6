#include <styles/StyleSheet.h>

#include "support/TestSheet.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>

using testing::ElementsAre;

namespace Styles::Testing
{

namespace
{

class StyleNames : public SchemaFixture
{
protected:
    StyleNames()
    {
        body = sheet.Add(L"Body", StyleCategoryName);
        heading = sheet.Add(L"Heading", StyleCategoryName, body);
    }

    void Rename(const wchar_t* oldName, const wchar_t* newName)
    {
        sheet.RenameStyle(VelString(oldName), VelString(newName));
    }

    std::string Unused(const wchar_t* baseName) { return Utf8(sheet.GetUnusedStyleName(VelString(baseName))); }

    TestSheet sheet;
    Style* body;
    Style* heading;
};

std::string Valid(std::string_view name, bool strict)
{
    return Utf8(ConvertToValidStyleName(Text(name), strict));
}

} // namespace

TEST_F(StyleNames, NullAndForeignStylesHaveNone)
{
    const Style foreign;
    EXPECT_EQ(sheet.GetStyleName(body), VelString(L"Body"));
    EXPECT_EQ(sheet.GetStyleName(nullptr), VelString());
    EXPECT_EQ(sheet.GetStyleName(&foreign), VelString());
}

TEST_F(StyleNames, AStyleGetsAnotherName)
{
    Rename(L"hEADING", L"Title");
    EXPECT_EQ(sheet.Get(L"title"), heading);
    EXPECT_EQ(sheet.Get(L"Heading"), nullptr);
    EXPECT_EQ(sheet.GetStyleName(heading), VelString(L"Title"));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"Body"), VelString(L"Title")));
    EXPECT_EQ(heading->GetParent(), body);
}

TEST_F(StyleNames, ARenamedParentIsWrittenByItsNewName)
{
    Rename(L"Body", L"Text");
    EXPECT_EQ(heading->GetParent(), body);
    EXPECT_NE(sheet.Write().find(R"("inherits": "Text")"), std::string::npos);
}

TEST_F(StyleNames, ARenameOfTheCaseChangesTheSpelling)
{
    Rename(L"Heading", L"heading");
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"Body"), VelString(L"heading")));
    EXPECT_EQ(sheet.GetStyleName(heading), VelString(L"heading"));
    EXPECT_EQ(sheet.Get(L"HEADING"), heading);
    Rename(L"heading", L"heading");
    EXPECT_EQ(sheet.Get(L"heading"), heading);
}

TEST_F(StyleNames, ANameThatAnotherStyleHasIsNotGiven)
{
    Rename(L"Heading", L"Body");
    Rename(L"Heading", L"BODY");
    EXPECT_EQ(sheet.Get(L"Heading"), heading);
    EXPECT_EQ(sheet.Get(L"Body"), body);
    EXPECT_EQ(sheet.GetStyleName(heading), VelString(L"Heading"));
    EXPECT_EQ(sheet.GetStyleName(body), VelString(L"Body"));
}

TEST_F(StyleNames, RenamingWhatIsNotThereDoesNothing)
{
    Rename(L"Missing", L"Title");
    Rename(L"Missing", L"missing");
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"Body"), VelString(L"Heading")));
}

TEST_F(StyleNames, ANameMayBeEmpty)
{
    Rename(L"Heading", L"");
    EXPECT_EQ(sheet.Get(L""), heading);
    Rename(L"", L"Heading");
    EXPECT_EQ(sheet.Get(L"Heading"), heading);
}

TEST_F(StyleNames, RenamingMayBeGivenTheStoredNames)
{
    const std::vector<VelString> names = sheet.GetStyleNames();
    const VelString stored = sheet.GetStyleName(heading);
    sheet.RenameStyle(stored, names[1]);
    EXPECT_EQ(sheet.Get(L"Heading"), heading);
}

TEST_F(StyleNames, AStyleUnderTwoNamesIsKnownByTheOneItIsRenamedTo)
{
    sheet.AddStyle(VelString(L"Second"), heading, false);
    Rename(L"Heading", L"Title");
    EXPECT_EQ(sheet.GetStyleName(heading), VelString(L"Title"));
    EXPECT_EQ(sheet.Get(L"Second"), heading);
    EXPECT_EQ(sheet.Get(L"Title"), heading);
}

TEST_F(StyleNames, AFreeNameIsUnusedAsItStands)
{
    EXPECT_EQ(Unused(L"Title"), "Title");
    EXPECT_EQ(Unused(L""), "");
    EXPECT_EQ(Unused(L"Fill"), "Fill") << "a UI name, not the name of a category";
    EXPECT_EQ(Unused(L"FILL"), "FILL");
}

TEST_F(StyleNames, ATakenNameIsCountedUpWithoutRegardToCase)
{
    EXPECT_EQ(Unused(L"Heading"), "Heading 1");
    EXPECT_EQ(Unused(L"heading"), "heading 1");
    sheet.Add(L"HEADING 1", StyleCategoryName);
    EXPECT_EQ(Unused(L"Heading"), "Heading 2");
    EXPECT_EQ(Unused(L"Heading 1"), "Heading 2");
}

TEST_F(StyleNames, ACategorysNameStandsForItsUINameAndANumber)
{
    EXPECT_EQ(Unused(L"fill"), "Fill 1");
    EXPECT_EQ(Unused(L"style"), "Graphic style 1");
    sheet.Add(L"fill 1", Fill);
    EXPECT_EQ(Unused(L"fill"), "Fill 2");
    EXPECT_EQ(Unused(L"outline"), "Outline 1");
}

TEST_F(StyleNames, ValidNamesLackTabsLineFeedsQuotesAndTildes)
{
    EXPECT_EQ(Valid("  a~b\"c  ", false), "abc");
    EXPECT_EQ(Valid("a\tb\nc\"d~e", false), "abcde");
    EXPECT_EQ(Valid("Überschrift <1> \\ €  \xF0\x9F\x8E\xA8", false), "Überschrift <1> \\ €  \xF0\x9F\x8E\xA8");
    EXPECT_EQ(Valid("\xC2\xA0 a \xE3\x80\x80", false), "a") << "any white space at the ends";
    EXPECT_EQ(Valid("~\t\"\n", false), "");
    EXPECT_EQ(Valid("~ a", false), "a") << "trimmed last";
    EXPECT_EQ(Valid("", false), "");
    EXPECT_EQ(Valid(std::string_view("a\0b", 3), false), std::string("a\0b", 3));
}

TEST_F(StyleNames, StrictlyValidNamesKeepOnlyLettersDigitsAndSignsOfASCII)
{
    EXPECT_EQ(Valid("\xC3\xA9-1", true), "-1");
    const std::string allowed =
        "0123456789abcdefghijklmnopqrstuvwxyz ABCDEFGHIJKLMNOPQRSTUVWXYZ()[]{}'|!@#$%^&*-_.,?/+=:;`";
    ASSERT_EQ(allowed.size(), 90u);
    EXPECT_EQ(Valid(allowed, true), allowed);
    std::string kept;
    for (int character = 1; character < 0x250; ++character)
    {
        kept += Valid("x" + Utf8(VelString(std::wstring(1, static_cast<wchar_t>(character)).c_str())) + "x", true);
    }
    std::string expected;
    for (int character = 1; character < 0x250; ++character)
    {
        const bool isKept = character < 0x80 && allowed.find(static_cast<char>(character)) != std::string::npos;
        expected += isKept ? "x" + std::string(1, static_cast<char>(character)) + "x" : "xx";
    }
    EXPECT_EQ(kept, expected);
    EXPECT_EQ(Valid("  a \\\"~<>\t\n b  ", true), "a  b");
    EXPECT_EQ(Valid("é \xC2\xA0 ü", true), "");
    EXPECT_EQ(Valid(std::string_view("a\0b", 3), true), "ab");
}

} // namespace Styles::Testing
