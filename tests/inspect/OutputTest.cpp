#include "Output.h"

#include <gtest/gtest.h>

#include <sstream>

namespace Inspect::Testing
{

TEST(Output, WhatWouldMoveTheCursorOrTurnTheTextIsEscaped)
{
    EXPECT_EQ(Shown(VelStringView(L"a\tb\nc\rd\x1b[2J\x7f\0e", 14)), "a\\tb\\nc\\rd\\u{1B}[2J\\u{7F}\\u{0}e");
    EXPECT_EQ(Shown(VelString(L"\u202Eabc\u2066\u200F\u0085")), "\\u{202E}abc\\u{2066}\\u{200F}\\u{85}");
    EXPECT_EQ(Shown(VelString(L"C:\\new")), "C:\\\\new");
    EXPECT_EQ(Shown(VelString(L"Größe 水面 \U0001F600")), "Größe 水面 \U0001F600");
    EXPECT_EQ(Shown(VelString(L"say \"a\"")), "say \"a\"");
}

TEST(Output, QuotesInsideQuotesAreEscaped)
{
    EXPECT_EQ(Quoted(VelString(L"say \"a\"")), "\"say \\\"a\\\"\"");
    EXPECT_EQ(Quoted(VelString()), "\"\"");
}

TEST(Output, WidthCountsColumnsOfATerminal)
{
    EXPECT_EQ(WidthOf(""), 0u);
    EXPECT_EQ(WidthOf("Größe"), 5u);
    EXPECT_EQ(WidthOf("水面"), 4u);
    EXPECT_EQ(WidthOf("e\u0301"), 1u);
    EXPECT_EQ(WidthOf("\U0001F600"), 2u);
}

TEST(Output, NounsAreCounted)
{
    EXPECT_EQ(Counted(0, "style"), "0 styles");
    EXPECT_EQ(Counted(1, "style"), "1 style");
    EXPECT_EQ(Counted(12, "value"), "12 values");
}

TEST(Output, ColumnsOfATableAreAlignedAndLinesEndWithoutBlanks)
{
    Table table({"NAME", "VALUE", "FROM"});
    table.AddRow({"水面", "1", ""});
    table.AddRow({"é", "", "x"});
    std::ostringstream out;
    table.Write(out, " ");
    EXPECT_EQ(out.str(), " NAME  VALUE  FROM\n"
                         " 水面  1\n"
                         " é            x\n");
}

TEST(Output, ACellThatIsTooWideIsWrittenWholeAndDoesNotWidenItsColumn)
{
    Table table({"NAME", "VALUE", "FROM"});
    table.AddRow({"a", std::string(50, 'v'), "x"});
    table.AddRow({"b", "1", "y"});
    std::ostringstream out;
    table.Write(out);
    EXPECT_EQ(out.str(), "NAME  VALUE" + std::string(41, ' ') + "FROM\n" + "a     " + std::string(50, 'v') + "  x\n" +
                             "b     1" + std::string(45, ' ') + "y\n");
}

} // namespace Inspect::Testing
