#include "Explanation.h"

#include "InspectTools.h"

#include "EffectiveValues.h"
#include "Output.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace Inspect::Testing
{

using ::testing::HasSubstr;

class ExplainCommand : public InspectProgram
{};

TEST_F(ExplainCommand, TheWinnerIsTheVeryObjectThatTheLookUpAnswersForEveryStyleAndPath)
{
    for (const DataSet& data : DataSets())
    {
        OpenSheet open(data.schema, data.sheet);
        const Origins origins(open.Get());
        std::size_t compared = 0;
        for (const Style* style : open.Get().GetStyles())
        {
            SCOPED_TRACE(Shown(open.Get().GetStyleName(style)));
            bool isComplete = false;
            for (const EffectiveValue& row : CollectEffectiveValues(origins, *style, isComplete))
            {
                SCOPED_TRACE(row.path);
                const Explanation explanation =
                    Explain(*style, ParsePath(VelPlatform::ToWide(row.path), style->GetCategory()));
                EXPECT_EQ(explanation.failure, "");
                EXPECT_EQ(explanation.asked, row.asked);
                EXPECT_EQ(explanation.answer, row.value);
                if (row.asked != nullptr)
                {
                    EXPECT_EQ(explanation.answer, &row.asked->GetProperty(row.key));
                }
                // The walk finds it by itself: as the first value on the way.
                const auto first = std::find_if(explanation.links.begin(), explanation.links.end(),
                                                [](const Link& link) { return link.value != nullptr; });
                ASSERT_NE(first, explanation.links.end());
                EXPECT_EQ(first->value, row.value);
                EXPECT_TRUE(first->isWinner);
                EXPECT_NE(first->kind, Link::Kind::Elsewhere);
                EXPECT_EQ(std::count_if(explanation.links.begin(), explanation.links.end(),
                                        [](const Link& link) { return link.isWinner; }),
                          1);
                EXPECT_EQ(explanation.links.back().kind, Link::Kind::Default);
                ++compared;
            }
            EXPECT_TRUE(isComplete);
        }
        EXPECT_GT(compared, data.styleCount * 10);
    }
}

TEST_F(ExplainCommand, ShowsTheValueItsShadowsAndTheDefault)
{
    Write("sheet.json", R"({"style": {"A": {"level": "5"}, "B": {"inherits": "A"}, "C": {"inherits": "B", "level": "7"},
                            "D": {"inherits": "C"}}})");
    const Answer answer = Run({"explain", "d", "level"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.out, R"("D" level

LOOKED FOR  IN              HOLDS
asked       "D"             -
its parent  "C"             7      <- the value
its parent  "B"             -
its parent  "A"             5      shadowed
default     category style  1      shadowed
)");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(ExplainCommand, AnOwnValueIsTheFirstLink)
{
    EXPECT_THAT(Run({"explain", "Base", "note"}).out,
                HasSubstr("asked       \"Base\"          \"all\"  <- the value\n"));
}

TEST_F(ExplainCommand, ASubstyleIsFollowedThroughTheParentOfItsOwner)
{
    const Answer answer = Run({"explain", "Größe", "fill.color"});
    EXPECT_EQ(answer.out, R"("Größe" fill.color

fill is own: "Größe" fill

LOOKED FOR                     IN             HOLDS
asked                          "Größe" fill   -
through the parent of "Größe"  "Base" fill    "red"    <- the value
default                        category fill  "white"  shadowed
)");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(ExplainCommand, AnInheritedListLeadsToItsElements)
{
    const Answer answer = Run({"explain", "Größe", "fill.gradient.stops[1].at"});
    EXPECT_EQ(answer.out, R"("Größe" fill.gradient.stops[1].at

fill is own: "Größe" fill
fill.gradient is inherited: "Base" fill.gradient
fill.gradient.stops[1] is inherited: "Dawn" stops[1]

LOOKED FOR  IN               HOLDS
asked       "Dawn" stops[1]  0.5    <- the value
default     category stop    0      shadowed
)");
}

TEST_F(ExplainCommand, WithoutASubstyleItsCategoryAnswers)
{
    const Answer answer = Run({"explain", "Base", "nested.fill.angle"});
    EXPECT_EQ(answer.out, R"("Base" nested.fill.angle

nested is no style; its category answers
nested.fill is no style; its category answers

LOOKED FOR  IN             HOLDS
default     category fill  0      <- the value
)");
}

TEST_F(ExplainCommand, WhereTheOwnersParentHasNoSuchSubstyleTheDefaultAnswers)
{
    Write("sheet.json", R"({"style": {"A": {}, "B": {"inherits": "A", "fill": {}}}})");
    const Answer answer = Run({"explain", "B", "fill.color"});
    EXPECT_THAT(answer.out, HasSubstr(R"(through the parent of "B"  "A"            (no such substyle)
default                    category fill  "white"             <- the value
)"));
}

TEST_F(ExplainCommand, AClosedChainIsShownOnceAroundAndEndsInTheDefault)
{
    Write("sheet.json", R"({"style": {"A": {"inherits": "C"}, "B": {"inherits": "A", "level": "4"},
                            "C": {"inherits": "B"}}})");
    EXPECT_EQ(Run({"explain", "C", "note"}).out, R"("C" note

LOOKED FOR    IN              HOLDS
asked         "C"             -
its parent    "B"             -
its parent    "A"             -
closed chain  "C" again       -
default       category style  ""     <- the value
)");
    EXPECT_THAT(Run({"explain", "C", "level"}).out, HasSubstr("its parent    \"B\"             4      <- the value\n"));
}

TEST_F(ExplainCommand, AStyleThatInheritsFromItsHolderEnds)
{
    Write("sheet.json", R"({"style": {"A": {"nested": {"inherits": "A", "note": "inner"}}}})");
    for (const std::string path : {"nested.note", "nested.level", "nested.nested.nested.level", "nested.fill.color"})
    {
        SCOPED_TRACE(path);
        const Answer answer = Run({"explain", "A", path});
        EXPECT_EQ(answer.err, "");
        EXPECT_THAT(answer.out, HasSubstr("<- the value\n"));
        EXPECT_EQ(answer.status, 0);
    }
}

TEST_F(ExplainCommand, ClosedWaysThroughOwnersAnswerAsTheLookUpDoes)
{
    Write("sheet.json", R"({"style": {"A": {"inherits": "B", "nested": {"fill": {}}},
                            "B": {"inherits": "A", "nested": {"fill": {"angle": "3"}}}}})");
    OpenSheet open(m_folder / "schema.json", m_folder / "sheet.json");
    const Style* style = open.Get().GetStyle(VelString(L"A"));
    for (const wchar_t* path : {L"nested.fill.color", L"nested.fill.angle", L"nested.level", L"fill.color"})
    {
        SCOPED_TRACE(Shown(path));
        const Explanation explanation = Explain(*style, ParsePath(VelString(path), style->GetCategory()));
        const auto first = std::find_if(explanation.links.begin(), explanation.links.end(),
                                        [](const Link& link) { return link.value != nullptr; });
        ASSERT_NE(first, explanation.links.end());
        EXPECT_TRUE(first->isWinner);
        EXPECT_EQ(first->value, explanation.answer);
    }
}

TEST_F(ExplainCommand, AParentOfAnotherCategoryThatHasNoSuchPropertyIsTold)
{
    Write("sheet.json",
          R"({"gradient": {"G": {}}, "style": {"A": {"inherits": "G"}, "B": {"inherits": "G", "level": "2"}}})");
    const Answer none = Run({"explain", "A", "level"});
    EXPECT_THAT(none.out, HasSubstr("\nno value: "));
    EXPECT_EQ(none.status, 0);
    const Answer own = Run({"explain", "B", "level"});
    EXPECT_THAT(own.out, HasSubstr("2      <- the value\n"));
    EXPECT_THAT(own.out, HasSubstr("\nbehind that: "));
}

TEST_F(ExplainCommand, WhatDoesNotExistIsRefused)
{
    ExpectRefusal({"explain", "None", "level"}, "sheet.json: there is no style \"None\"; `list` shows those there are");
    ExpectRefusal({"explain", "Größe", "fill.gradient.stops[2].at"}, "fill.gradient.stops[2]: the list has 2 elements");
    ExpectRefusal({"explain", "Größe", "nested.fill.gradient.stops[0].at"},
                  "nested.fill.gradient.stops[0]: the list has 0 elements");
    ExpectRefusal({"explain", "Base"}, "the command \"explain\" takes NAME PATH", 2);
}

} // namespace Inspect::Testing
