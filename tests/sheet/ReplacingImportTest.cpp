// Imports that replace styles: what becomes of the styles that inherit from those that are replaced.

#include <styles/StyleSheet.h>

#include "sheet/DestructionProbe.h"

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

using testing::ElementsAre;

namespace Styles::Testing
{

namespace
{

class ReplacingImport : public DestructionFixture
{
protected:
    /// A style "heir" that inherits from "fill" and "stop" in all the ways in which a style may.
    void AddHeirs()
    {
        fill = sheet.Add(L"fill", Fill);
        Style* stop = sheet.Add(L"stop", Stop);
        heir = AddTo(sheet, L"heir", AddTo(sheet, L"base"));
        const Style substyle(fill, Fill);
        heir->SetSubstyle(Fill, &substyle);
        Style element(stop, Stop);
        heir->SetProperty(Stops, Any(std::vector<Style*>{&element, &element}));
        destroyed.clear();
    }

    /// Whether all that the heir inherits from is in the sheet under those names.
    void ExpectHeirs() const
    {
        EXPECT_EQ(heir->GetParent(), sheet.Get(L"base"));
        EXPECT_EQ(heir->GetSubstyle(Fill, false)->GetParent(), sheet.Get(L"fill"));
        for (const Style* element : heir->GetProperty(Stops).Get<std::vector<Style*>>())
        {
            EXPECT_EQ(element->GetParent(), sheet.Get(L"stop"));
        }
    }

    static constexpr const char* replacements = R"({"style": {"BASE": {"note": "new base"}},
        "fill": {"FILL": {"angle": "9"}}, "stop": {"STOP": {"position": "8"}}})";

    TestSheet sheet;
    Style* fill = nullptr;
    Style* heir = nullptr;
};

} // namespace

TEST_F(ReplacingImport, HeirsInheritFromTheReplacement)
{
    AddHeirs();
    EXPECT_TRUE(sheet.Read(replacements, true));
    EXPECT_THAT(sheet.GetStyleNames(),
                ElementsAre(VelString(L"BASE"), VelString(L"FILL"), VelString(L"heir"), VelString(L"STOP")));
    EXPECT_THAT(destroyed, ElementsAre("base"));
    ExpectHeirs();
    EXPECT_THAT(heir, HasValue(Note, L"new base"));
    EXPECT_THAT(heir, HasValue(L"fill.angle", 9.0));
    EXPECT_EQ(EffectiveNumber(*heir->GetProperty(Stops).Get<std::vector<Style*>>()[1], Position), 8.0);
}

TEST_F(ReplacingImport, WithoutReplacingHeirsKeepTheirParents)
{
    AddHeirs();
    Style* base = sheet.Get(L"base");
    EXPECT_TRUE(sheet.Read(replacements, false));
    ExpectHeirs();
    EXPECT_EQ(heir->GetParent(), base);
    EXPECT_EQ(sheet.Get(L"fill"), fill);
}

TEST_F(ReplacingImport, HeirsAreToldAlsoWhenTheImportStopsInTheMiddle)
{
    AddHeirs();
    std::string document(replacements);
    document.insert(document.rfind('}'), R"(, "outline": {"x": 5})");
    EXPECT_FALSE(sheet.Read(document, true));
    ExpectHeirs();
    EXPECT_TRUE(heir->GetParent()->IsEmpty()) << "it was not read any more";
    EXPECT_FALSE(sheet.Read(R"({"style": {"base": {"number": "no number"}}})", true));
    ExpectHeirs();
    EXPECT_THAT(heir, HasValue(Number, 0.25));
}

TEST_F(ReplacingImport, AReplacementMayInheritFromTheHeir)
{
    AddHeirs();
    EXPECT_TRUE(sheet.Read(R"({"style": {"base": {"inherits": "heir"}}})", true));
    EXPECT_EQ(heir->GetParent(), sheet.Get(L"base"));
    EXPECT_EQ(sheet.Get(L"base")->GetParent(), heir);
    EXPECT_THAT(heir, HasValue(Note, L"default note"));
}

TEST_F(ReplacingImport, TheHeirItselfMayBeReplacedToo)
{
    AddHeirs();
    Style* grandchild = AddTo(sheet, L"grandchild", heir);
    EXPECT_TRUE(sheet.Read(R"({"style": {"heir": {"inherits": "base"}, "base": {"note": "x"}}})", true));
    EXPECT_THAT(destroyed, testing::UnorderedElementsAre("heir", "base"));
    EXPECT_EQ(grandchild->GetParent(), sheet.Get(L"heir"));
    EXPECT_EQ(sheet.Get(L"heir")->GetParent(), sheet.Get(L"base"));
    EXPECT_THAT(grandchild, HasValue(Note, L"x"));
}

TEST_F(ReplacingImport, OfSeveralReplacementsTheLastIsInheritedFrom)
{
    AddHeirs();
    EXPECT_TRUE(
        sheet.Read(R"({"style": {"base": {"note": "1"}, "Base": {"note": "2"}, "BASE": {"note": "3"}}})", true));
    ExpectHeirs();
    EXPECT_EQ(sheet.GetStyleName(heir->GetParent()), VelString(L"BASE"));
    EXPECT_THAT(heir, HasValue(Note, L"3"));
}

TEST_F(ReplacingImport, ANameInAHundredThousandSpellingsIsReplacedAsOften)
{
    AddHeirs();
    std::string document = R"({"style": {)";
    for (unsigned spelling = 0; spelling < 100'000; ++spelling)
    {
        document += spelling == 0 ? "\"" : ", \"";
        for (unsigned letter = 0; letter < 17; ++letter)
        {
            document += (spelling >> letter & 1u) != 0 ? 'A' : 'a';
        }
        document += "\": {}";
    }
    document += "}}";
    sheet.RenameStyle(VelString(L"base"), VelString(L"aaaaaaaaaaaaaaaaa"));
    EXPECT_TRUE(sheet.Read(document, true));
    EXPECT_EQ(sheet.GetStyles().size(), 4u);
    EXPECT_EQ(heir->GetParent(), sheet.Get(L"aaaaaaaaaaaaaaaaa"));
    EXPECT_EQ(sheet.GetStyleName(heir->GetParent()), VelString(L"AAAAAaaAaAAaaaaAA")) << "the bits of 99,999";
}

TEST_F(ReplacingImport, AStyleUnderTwoNamesBecomesEmptyWhereItIsStillListed)
{
    Style* style = AddTo(sheet, L"first");
    sheet.AddStyle(VelString(L"second"), style, false);
    AddHeirs();
    heir->SetParent(style);
    EXPECT_TRUE(sheet.Read(R"({"style": {"first": {"note": "new"}}})", true));
    EXPECT_THAT(destroyed, ElementsAre("first"));
    EXPECT_EQ(heir->GetParent(), sheet.Get(L"first"));
    EXPECT_THAT(heir, HasValue(Note, L"new"));
    ASSERT_EQ(sheet.Get(L"second"), style);
    EXPECT_TRUE(style->IsEmpty());
    destroyed.clear();
    EXPECT_TRUE(sheet.Read(R"({"style": {"second": {"note": "new too"}}})", true));
    EXPECT_THAT(*sheet.Get(L"second"), HasValue(Note, L"new too"));
}

TEST_F(ReplacingImport, AStyleUnderTwoNamesMayBeReplacedUnderBoth)
{
    Style* style = AddTo(sheet, L"first");
    sheet.AddStyle(VelString(L"second"), style, false);
    Style* child = AddTo(sheet, L"child", style);
    EXPECT_TRUE(sheet.Read(R"({"style": {"first": {}, "second": {}}})", true));
    EXPECT_THAT(destroyed, ElementsAre("first"));
    EXPECT_TRUE(child->GetParent() == sheet.Get(L"first") || child->GetParent() == sheet.Get(L"second"));
}

TEST_F(ReplacingImport, ANullEntryIsReplaced)
{
    sheet.AddStyle(VelString(L"null"), nullptr, false);
    EXPECT_TRUE(sheet.Read(R"({"style": {"null": {"note": "x"}}})", false));
    EXPECT_EQ(sheet.Get(L"null"), nullptr);
    EXPECT_TRUE(sheet.Read(R"({"style": {"null": {"note": "x"}}})", true));
    ASSERT_NE(sheet.Get(L"null"), nullptr);
    EXPECT_THAT(*sheet.Get(L"null"), HasValue(Note, L"x"));
}

} // namespace Styles::Testing
