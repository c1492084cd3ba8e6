#include "VelPlatform/String.h"

#include "VelPlatform/StringIO.h"

#include <gmock/gmock.h>

#include <climits>
#include <cstring>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <thread>
#include <unordered_set>
#include <vector>

using VelPlatform::CaseMode;
using VelPlatform::VelString;
using VelPlatform::VelStringA;
using VelPlatform::VelStringView;
using namespace std::string_view_literals;

namespace
{

const VelStringView kWithZeros = L"a\0b\0"sv;

} // namespace

TEST(String, IsOnePointerWide)
{
    EXPECT_EQ(sizeof(void*), sizeof(VelString));
    EXPECT_EQ(sizeof(void*), sizeof(VelStringA));
}

TEST(String, StartsEmptyWithAClosingZero)
{
    static constinit const VelString text{};
    EXPECT_TRUE(text.empty());
    EXPECT_EQ(0u, text.size());
    EXPECT_EQ(0u, text.capacity());
    EXPECT_EQ(L'\0', *text.c_str());
    EXPECT_EQ(text.begin(), text.end());
    EXPECT_TRUE(std::is_nothrow_default_constructible_v<VelString>);
}

TEST(String, ANullPointerIsTheEmptyText)
{
    EXPECT_EQ(L"", VelString(static_cast<const wchar_t*>(nullptr)));
    EXPECT_EQ(L"", VelString(nullptr, 0));
    EXPECT_EQ(L"", VelString(nullptr, 7));
    EXPECT_TRUE(VelString() == static_cast<const wchar_t*>(nullptr));
    VelString text(L"a");
    text += static_cast<const wchar_t*>(nullptr);
    EXPECT_EQ(L"a", text);
}

TEST(String, IsMadeFromTextPointerAndSizeOrView)
{
    EXPECT_EQ(L"abc", VelString(L"abc"));
    EXPECT_EQ(L"ab", VelString(L"abc", 2));
    EXPECT_EQ(L"bc", VelString(VelStringView(L"abc").substr(1)));
    EXPECT_EQ("abc", VelStringA("abc"));
    EXPECT_FALSE((std::is_convertible_v<VelStringView, VelString>));
    EXPECT_TRUE((std::is_convertible_v<const wchar_t*, VelString>));
    EXPECT_TRUE((std::is_convertible_v<VelString, VelStringView>));
}

TEST(String, ZerosInsideSurviveEverything)
{
    const VelString text(kWithZeros);
    VelString copy = text;
    copy += L"c";
    EXPECT_EQ(4u, text.size());
    EXPECT_EQ(kWithZeros, VelStringView(text));
    EXPECT_EQ(L"a\0b\0c"sv, VelStringView(copy));
    EXPECT_NE(VelString(L"a"), text);
    EXPECT_LT(VelString(L"a"), text);
    EXPECT_LT(text, VelString(L"a\0c"sv));
    EXPECT_NE(std::hash<VelString>()(L"a"), std::hash<VelString>()(text));
    EXPECT_EQ(kWithZeros, VelStringView(VelString(L" " + text + L" ").Trim()));
    EXPECT_EQ("a\0b\0"sv, VelPlatform::VelStringViewA(VelPlatform::ToNarrow(text)));
    EXPECT_EQ(text, VelPlatform::ToWide("a\0b\0"sv));
    EXPECT_EQ(0, VelString(L"A\0B\0"sv).CompareNoCase(text));
    EXPECT_NE(0, VelString(L"A\0C\0"sv).CompareNoCase(text));
}

TEST(String, CopiesShareTheirTextUntilOneChanges)
{
    const VelString text(L"shared");
    VelString copy = text;
    EXPECT_EQ(text.c_str(), copy.c_str());
    copy += L"!";
    EXPECT_NE(text.c_str(), copy.c_str());
    EXPECT_EQ(L"shared", text);
    EXPECT_EQ(L"shared!", copy);

    VelString cut = text;
    cut.Truncate(3);
    EXPECT_EQ(L"sha", cut);
    VelString cleared = text;
    cleared.clear();
    EXPECT_EQ(L"", cleared);
    VelString roomy = text;
    roomy.reserve(100);
    EXPECT_NE(text.c_str(), roomy.c_str());
    EXPECT_EQ(L"shared", roomy);
    EXPECT_EQ(L"shared", text);
}

TEST(String, TrimOfASharedTextLeavesTheOthers)
{
    const VelString text(L" x ");
    VelString copy = text;
    copy.Trim();
    EXPECT_EQ(L"x", copy);
    EXPECT_EQ(L" x ", text);
}

TEST(String, MovingLeavesTheSourceEmptyAndTakesTheText)
{
    VelString text(L"moved");
    const wchar_t* const characters = text.c_str();
    VelString other(std::move(text));
    EXPECT_EQ(characters, other.c_str());
    EXPECT_TRUE(text.empty()); // NOLINT: that is the promise
    text = std::move(other);
    EXPECT_EQ(characters, text.c_str());
    EXPECT_TRUE(other.empty()); // NOLINT
}

TEST(String, AssigningItselfChangesNothing)
{
    VelString text(L"self");
    VelString& same = text;
    text = same;
    EXPECT_EQ(L"self", text);
    text = std::move(same);
    EXPECT_EQ(L"self", text);
}

TEST(String, ArgumentsMayPointIntoTheStringItself)
{
    VelString text(L"abcdef");
    text = text.c_str() + 2;
    EXPECT_EQ(L"cdef", text);
    text += text;
    EXPECT_EQ(L"cdefcdef", text);
    text += VelStringView(text).substr(2, 3);
    EXPECT_EQ(L"cdefcdefefc", text);
    text += text.c_str() + 9;
    EXPECT_EQ(L"cdefcdefefcfc", text);
    text.reserve(100);
    text += VelStringView(text).substr(0, 2);
    text.push_back(text[0]);
    EXPECT_EQ(L"cdefcdefefcfccdc", text);
    text = text + text;
    EXPECT_EQ(L"cdefcdefefcfccdccdefcdefefcfccdc", text);
}

TEST(String, AppendsTextsViewsLiteralsAndUnits)
{
    VelString text;
    text += VelString(L"a");
    text += VelStringView(L"b");
    text += L"c";
    text += L'd';
    text.append(L"efg", 2);
    text.push_back(L'g');
    text += L"";
    EXPECT_EQ(L"abcdefg", text);
    EXPECT_EQ(L'\0', text[text.size()]);
}

TEST(String, AppendingToAnEmptyStringSharesTheText)
{
    const VelString text(L"shared");
    VelString empty;
    empty += text;
    EXPECT_EQ(text.c_str(), empty.c_str());
}

TEST(String, AppendingWithinTheReservedRoomMovesNothing)
{
    VelString text;
    text.reserve(1000);
    const wchar_t* const characters = text.c_str();
    for (int i = 0; i < 1000; ++i)
    {
        text += L'x';
    }
    EXPECT_EQ(characters, text.c_str());
    EXPECT_EQ(1000u, text.size());
}

TEST(String, AppendingUnitByUnitGrowsInSteps)
{
    VelString text;
    int moves = 0;
    for (int i = 0; i < 100000; ++i)
    {
        const wchar_t* const before = text.c_str();
        text += L'x';
        moves += before != text.c_str();
    }
    EXPECT_EQ(100000u, text.size());
    EXPECT_LT(moves, 100);
}

TEST(String, PlusJoinsEveryMixture)
{
    const VelString b(L"b");
    EXPECT_EQ(L"bb", b + b);
    EXPECT_EQ(L"bc", b + L"c");
    EXPECT_EQ(L"ab", L"a" + b);
    EXPECT_EQ(L"bc", b + VelStringView(L"c"));
    EXPECT_EQ(L"ab", VelStringView(L"a") + b);
    EXPECT_EQ(L"bc", b + L'c');
    EXPECT_EQ(L"abc", VelString(L"a") + b + L"c");
    EXPECT_EQ(L"b", b);
}

TEST(String, TruncateCutsAndNeverLengthens)
{
    VelString text(L"abc");
    text.Truncate(7);
    EXPECT_EQ(L"abc", text);
    text.Truncate(1);
    EXPECT_EQ(L"a", text);
    EXPECT_EQ(L'\0', text.c_str()[1]);
    text.Truncate(0);
    EXPECT_TRUE(text.empty());
    text += L"again";
    EXPECT_EQ(L"again", text);
}

TEST(String, ATextThatNoMemoryCouldHoldIsRefusedAndNothingChanges)
{
    VelString text(L"kept");
    EXPECT_THROW(text.reserve(std::numeric_limits<std::size_t>::max()), std::length_error);
    EXPECT_THROW(text.append(L"x", std::numeric_limits<std::size_t>::max() - 2), std::length_error);
    EXPECT_EQ(L"kept", text);
}

TEST(String, ComparesWithTextsViewsAndLiteralsOnEitherSide)
{
    const VelString text(L"b");
    EXPECT_TRUE(text == L"b" && L"b" == text);
    EXPECT_TRUE(text == VelStringView(L"b") && VelStringView(L"b") == text);
    EXPECT_TRUE(text == std::wstring(L"b") && std::wstring(L"b") == text);
    EXPECT_TRUE(text != L"c" && L"c" != text);
    EXPECT_TRUE(text < L"c" && L"a" < text && text <= L"b" && L"b" >= text);
    EXPECT_TRUE(text < VelStringView(L"ba") && VelStringView(L"") < text);
    EXPECT_TRUE(VelStringA("b") == "b" && "a" < VelStringA("b"));
    EXPECT_EQ(std::strong_ordering::equal, text <=> VelString(L"b"));
}

TEST(String, OrdersByUnsignedCodeUnit)
{
    const wchar_t last = static_cast<wchar_t>(~0u);
    const VelString highest(&last, 1);
    EXPECT_LT(VelString(L"a"), highest);
    EXPECT_LT(VelString(L"\xFFFF"), highest + L"a");
    EXPECT_GT(highest, L"\x7FFF");
    EXPECT_LT(VelString(L"z"), VelString(L"\u00e4"));
    EXPECT_LT(VelStringA("z"), VelStringA("\xC3\xA4"));
    EXPECT_LT(VelStringA("\x7F"), VelStringA("\x80"));
    EXPECT_LT(VelString(L"ab"), VelString(L"abc"));
    EXPECT_LT(VelString(), VelString(L"a"));
}

TEST(String, CompareTellsTheOrderInBothModes)
{
    const VelString text(L"Fill");
    EXPECT_EQ(0, text.Compare(L"Fill"));
    EXPECT_LT(text.Compare(L"fill"), 0);
    EXPECT_GT(text.Compare(L"Fil"), 0);
    EXPECT_EQ(0, text.Compare(L"fILL", CaseMode::Insensitive));
    EXPECT_LT(text.Compare(L"FILM", CaseMode::Insensitive), 0);
    EXPECT_EQ(0, text.CompareNoCase(L"FILL"));
    EXPECT_GT(text.CompareNoCase(L"FIL"), 0);
}

TEST(String, EqualTextsHaveEqualHashes)
{
    std::unordered_set<VelString> texts{L"a", L"b", VelString(kWithZeros)};
    EXPECT_EQ(1u, texts.count(VelString(L"xa", 2).Trim() == L"xa" ? VelString(L"a") : VelString()));
    EXPECT_EQ(1u, texts.count(VelString(kWithZeros)));
    EXPECT_EQ(0u, texts.count(L"c"));
}

TEST(String, TrimTakesEveryWhiteSpaceOfUnicodeOffBothEnds)
{
    VelString text;
    for (const int c :
         {0x09,   0x0A,   0x0B,   0x0C,   0x0D,   0x20,   0x85,   0xA0,   0x1680, 0x2000, 0x2001, 0x2002, 0x2003,
          0x2004, 0x2005, 0x2006, 0x2007, 0x2008, 0x2009, 0x200A, 0x2028, 0x2029, 0x202F, 0x205F, 0x3000})
    {
        text += static_cast<wchar_t>(c);
    }
    VelString surrounded = text + L"a" + text + L"b" + text;
    EXPECT_EQ(L"a" + text + L"b", surrounded.Trim());
    VelStringA narrow = VelPlatform::ToNarrow(text + L"a" + text);
    EXPECT_EQ("a", narrow.Trim());
    EXPECT_EQ(L"", text.Trim());
    EXPECT_EQ(L"", VelString().Trim());
}

TEST(String, TrimKeepsWhatOnlyLooksLikeWhiteSpace)
{
    for (const wchar_t unit : {L'\x200B', L'\xFEFF', L'\x180E', L'\x2060', L'\x1F', L'\0'})
    {
        const VelString text(&unit, 1);
        EXPECT_EQ(text, VelString(text).Trim()) << static_cast<unsigned>(unit);
    }
    EXPECT_EQ("\xA0", VelStringA("\xA0").Trim());
    EXPECT_EQ("\x85x\xC2", VelStringA(" \x85x\xC2 ").Trim());
}

TEST(String, FormatPutsTheArgumentsInTheirPlaces)
{
    EXPECT_EQ(L"a 1 b -2 c x", VelString::Format(L"a {} b {} c {}", 1, -2, L"x"));
    EXPECT_EQ(L"view text ", VelString::Format(L"{} {} {}", L"view"sv, VelString(L"text"), VelString()));
    EXPECT_EQ(L"{1}", VelString::Format(L"{{{}}}", 1u));
    EXPECT_EQ(L"-9223372036854775808 18446744073709551615", VelString::Format(L"{} {}", LLONG_MIN, ULLONG_MAX));
    EXPECT_EQ("n=0.1", VelStringA::Format("n={}", 0.1));
    EXPECT_EQ(L"-1.7976931348623157e+308", VelString::Format(L"{}", -std::numeric_limits<double>::max()));
    EXPECT_EQ(L"", VelString::Format(L""));
}

TEST(String, FormatRefusesBracesThatDoNotFit)
{
    EXPECT_THROW(VelString::Format(L"{}"), std::invalid_argument);
    EXPECT_THROW(VelString::Format(L"x", 1), std::invalid_argument);
    EXPECT_THROW(VelString::Format(L"{", 1), std::invalid_argument);
    EXPECT_THROW(VelString::Format(L"}"), std::invalid_argument);
    EXPECT_THROW(VelString::Format(L"{0}", 1), std::invalid_argument);
}

TEST(String, MakeIsFilledInPlace)
{
    EXPECT_EQ(L"xyz", VelString::Make(3, [](wchar_t* units) { std::memcpy(units, L"xyz", 3 * sizeof(wchar_t)); }));
    EXPECT_EQ(L"", VelString::Make(0, [](wchar_t*) { FAIL(); }));
    EXPECT_THROW(VelString::Make(3, [](wchar_t*) { throw std::runtime_error("fill"); }), std::runtime_error);
}

TEST(String, MayBeMovedByCopyingItsBytes)
{
    alignas(VelString) unsigned char from[sizeof(VelString)];
    alignas(VelString) unsigned char to[sizeof(VelString)];
    new (from) VelString(L"relocated");
    std::memcpy(to, from, sizeof from);
    VelString* const moved = std::launder(reinterpret_cast<VelString*>(to));
    *moved += L"!";
    EXPECT_EQ(L"relocated!", *moved);
    moved->~VelString();
}

TEST(StringThreads, CopiesOfOneTextAreMadeChangedAndDroppedByManyThreads)
{
    const VelString text(L"one text for all");
    std::vector<std::thread> threads;
    std::atomic<int> wrong = 0;
    for (int t = 0; t < 8; ++t)
    {
        threads.emplace_back([&wrong, own = text] {
            for (int i = 0; i < 5000; ++i)
            {
                VelString copy = own;
                VelString another = copy;
                copy += L'!';
                another = std::move(copy);
                wrong += another != L"one text for all!" || own != L"one text for all";
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_EQ(0, wrong);
    EXPECT_EQ(L"one text for all", text);
}

TEST(StringThreads, TheLastOfManyOwnersOnAnyThreadFreesTheText)
{
    for (int round = 0; round < 500; ++round)
    {
        auto text = std::make_unique<VelString>(VelString::Format(L"round {}", round));
        std::thread other([copy = *text]() mutable { copy += L" there"; });
        *text += L" here";
        text.reset();
        other.join();
    }
}
