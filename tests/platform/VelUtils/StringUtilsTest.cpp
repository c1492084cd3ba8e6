#include "VelUtils/StringUtils.h"

#include "VelPlatform/StringIO.h"

#include <gmock/gmock.h>

#include <functional>
#include <map>
#include <set>
#include <stdexcept>
#include <string>

using VelPlatform::VelString;
using VelPlatform::VelStringView;
using VelUtils::String::FindUnusedName;
using VelUtils::String::KeepCharacters;
using VelUtils::String::LessThanCaseInsensitive;
using VelUtils::String::RemoveCharacters;
using VelUtils::String::Split;
using namespace std::string_view_literals;

namespace
{

using Pieces = std::vector<VelString>;

/// FindUnusedName where exactly `used` are taken.
VelString FindBeside(const std::set<VelString>& used, const VelString& candidate)
{
    return FindUnusedName(candidate, [&](const VelString& name) { return used.count(name) != 0; });
}

} // namespace

TEST(StringUtilsSplit, GivesThePiecesBetweenTheSeparatorsInOrder)
{
    EXPECT_EQ((Pieces{L"a", L"b", L"c"}), Split(L"a.b.c", L'.', false, false));
    EXPECT_EQ((Pieces{L"abc"}), Split(L"abc", L'.', false, false));
}

TEST(StringUtilsSplit, KeepsEmptyPiecesUnlessTheyAreToBeSkipped)
{
    EXPECT_EQ((Pieces{L"", L"a", L"", L"b", L""}), Split(L".a..b.", L'.', false, false));
    EXPECT_EQ((Pieces{L"a", L"b"}), Split(L".a..b.", L'.', true, false));
    EXPECT_EQ((Pieces{L"", L""}), Split(L".", L'.', false, false));
}

TEST(StringUtilsSplit, TheEmptyTextIsOneEmptyPiece)
{
    EXPECT_EQ(Pieces{L""}, Split(L"", L'.', false, false));
    EXPECT_EQ(Pieces{L""}, Split(static_cast<const wchar_t*>(nullptr), L'.', false, false));
    EXPECT_EQ(Pieces{L""}, Split(VelStringView(), L'.', false, false));
    EXPECT_EQ(Pieces{}, Split(L"", L'.', true, false));
}

TEST(StringUtilsSplit, TrimsEveryPieceBeforeEmptyOnesAreSkipped)
{
    EXPECT_EQ((Pieces{L" a ", L" "}), Split(L" a . ", L'.', true, false));
    EXPECT_EQ((Pieces{L"a", L"", L"b c"}), Split(L" a . .\tb c\u3000", L'.', false, true));
    EXPECT_EQ((Pieces{L"a", L"b c"}), Split(L" a . .\tb c\u3000", L'.', true, true));
}

TEST(StringUtilsSplit, AViewMayHoldZerosAndBeSplitAtThem)
{
    EXPECT_EQ((Pieces{VelString(L"a\0b"sv), L"c"}), Split(L"a\0b.c"sv, L'.', false, false));
    EXPECT_EQ((Pieces{L"a", L"b.c"}), Split(L"a\0b.c"sv, L'\0', false, false));
    EXPECT_EQ((Pieces{L"a", L"b"}), Split(VelString(L"a.b"), L'.', false, false));
}

TEST(StringUtilsFindUnusedName, AFreeCandidateIsTakenAsItIs)
{
    EXPECT_EQ(L"Fill", FindBeside({}, L"Fill"));
    EXPECT_EQ(L"Fill 7", FindBeside({L"Fill 6"}, L"Fill 7"));
    EXPECT_EQ(L"", FindBeside({}, L""));
}

TEST(StringUtilsFindUnusedName, ATakenNameGetsTheFirstFreeNumber)
{
    EXPECT_EQ(L"Fill 1", FindBeside({L"Fill"}, L"Fill"));
    EXPECT_EQ(L"Fill 2", FindBeside({L"Fill", L"Fill 1", L"Fill 3"}, L"Fill"));
    EXPECT_EQ(L" 1", FindBeside({L""}, L""));
}

TEST(StringUtilsFindUnusedName, ATrailingNumberIsCountedUp)
{
    EXPECT_EQ(L"Fill 8", FindBeside({L"Fill 7"}, L"Fill 7"));
    EXPECT_EQ(L"Fill 10", FindBeside({L"Fill 7", L"Fill 8", L"Fill 9"}, L"Fill 7"));
    EXPECT_EQ(L"Fill 1 2", FindBeside({L"Fill 1 1"}, L"Fill 1 1"));
    EXPECT_EQ(L"Fill 1", FindBeside({L"Fill 0"}, L"Fill 0"));
}

TEST(StringUtilsFindUnusedName, OnlyDigitsBehindABlankAreANumber)
{
    EXPECT_EQ(L"Fill7 1", FindBeside({L"Fill7"}, L"Fill7"));
    EXPECT_EQ(L"7 1", FindBeside({L"7"}, L"7"));
    EXPECT_EQ(L"Fill  1", FindBeside({L"Fill "}, L"Fill "));
    EXPECT_EQ(L"Fill -7 1", FindBeside({L"Fill -7"}, L"Fill -7"));
    EXPECT_EQ(L"Fill \u0667 1", FindBeside({L"Fill \u0667"}, L"Fill \u0667"));
}

TEST(StringUtilsFindUnusedName, ZerosBeforeANumberKeepItsWidth)
{
    EXPECT_EQ(L"Fill 008", FindBeside({L"Fill 007"}, L"Fill 007"));
    EXPECT_EQ(L"Fill 010", FindBeside({L"Fill 009"}, L"Fill 009"));
    EXPECT_EQ(L"Fill 100", FindBeside({L"Fill 99"}, L"Fill 99"));
}

TEST(StringUtilsFindUnusedName, NumbersOfAnyLengthAreCountedUp)
{
    EXPECT_EQ(L"Fill 18446744073709551616", FindBeside({L"Fill 18446744073709551615"}, L"Fill 18446744073709551615"));
    const VelString nines = L"Fill " + VelString(std::wstring(1000, L'9'));
    EXPECT_EQ(L"Fill 1" + VelString(std::wstring(1000, L'0')), FindBeside({nines}, nines));
}

TEST(StringUtilsFindUnusedName, NamesAskedForOneAfterTheOtherAreNumberedInOrder)
{
    std::set<VelString> used{L"Fill"};
    for (int i = 1; i <= 200; ++i)
    {
        const VelString name = FindBeside(used, L"Fill");
        EXPECT_EQ(VelString::Format(L"Fill {}", i), name);
        used.insert(name);
    }
}

TEST(StringUtilsFindUnusedName, EveryNumberPassedOverIsAskedForOnce)
{
    std::vector<VelString> asked;
    FindUnusedName(L"a", [&](const VelString& name) {
        asked.push_back(name);
        return asked.size() < 4;
    });
    EXPECT_EQ((Pieces{L"a", L"a 1", L"a 2", L"a 3"}), asked);
}

TEST(StringUtilsFindUnusedName, WhatTheQuestionThrowsPassesThrough)
{
    EXPECT_THROW(FindUnusedName(L"a", [](const VelString&) -> bool { throw std::runtime_error("asked"); }),
                 std::runtime_error);
    EXPECT_THROW(FindUnusedName(L"a", nullptr), std::bad_function_call);
}

TEST(StringUtilsCharacters, KeepLeavesOnlyTheSet)
{
    EXPECT_EQ(L"abba", KeepCharacters(L"a-b\u00E4b\ta", L"ab"));
    EXPECT_EQ(L"", KeepCharacters(L"abc", L""));
    EXPECT_EQ(L"", KeepCharacters(L"", L"abc"));
    EXPECT_EQ(L"\u00E4\U0001F600", KeepCharacters(L"x\u00E4\u00E5\U0001F600\U0001F601", L"\U0001F600\u00E4"));
}

TEST(StringUtilsCharacters, RemoveTakesOutTheSet)
{
    EXPECT_EQ(L"ab", RemoveCharacters(L"\ta\"~b\n", L"\t\n\"~"));
    EXPECT_EQ(L"\U0001F601", RemoveCharacters(L"\U0001F600\U0001F601", L"\U0001F600"));
    EXPECT_EQ(L"ab", RemoveCharacters(VelString(L"a\0b\0"sv), L"\0"sv));
}

TEST(StringUtilsCharacters, ATextThatStaysAsItIsIsShared)
{
    const VelString text(L"abc");
    EXPECT_EQ(text.c_str(), RemoveCharacters(text, L"x").c_str());
    EXPECT_EQ(text.c_str(), KeepCharacters(text, L"abc").c_str());
}

TEST(StringUtilsOrder, AMapWithoutCaseIsSearchedWithAnyKindOfText)
{
    std::map<VelString, int, LessThanCaseInsensitive> map{{L"Fill", 1}, {L"\u00C4rger", 2}};
    EXPECT_FALSE(map.emplace(L"FILL", 3).second);
    EXPECT_EQ(1, map.at(L"fILL"));
    EXPECT_EQ(2, map.find(L"\u00E4RGER")->second);
    EXPECT_EQ(2, map.find(VelStringView(L"\u00E4rger"))->second);
    EXPECT_EQ(map.end(), map.find(L"Fil"));
}
