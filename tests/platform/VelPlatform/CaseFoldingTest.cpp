#include "VelPlatform/String.h"
#include "VelPlatform/Unicode.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>
#if !defined(_WIN32) // for which there is no ICU to compare with
#    include <unicode/uchar.h>
#endif

namespace Unicode = VelPlatform::Unicode;
using VelPlatform::VelString;
using VelPlatform::VelStringA;
using namespace std::string_view_literals;

#if !defined(_WIN32)

TEST(CaseFolding, AgreesWithIcuForEveryCodePoint)
{
    for (char32_t c = 0; c <= Unicode::kLastCodePoint; ++c)
    {
        const UChar32 expected = u_foldCase(static_cast<UChar32>(c), U_FOLD_CASE_DEFAULT);
        ASSERT_EQ(static_cast<char32_t>(expected), Unicode::FoldCase(c)) << std::hex << static_cast<unsigned>(c);
    }
}

TEST(CaseFolding, WhiteSpaceAgreesWithIcuForEveryCodePoint)
{
    for (char32_t c = 0; c <= Unicode::kLastCodePoint; ++c)
    {
        ASSERT_EQ(u_isUWhiteSpace(static_cast<UChar32>(c)) != 0, Unicode::IsWhiteSpace(c))
            << std::hex << static_cast<unsigned>(c);
    }
}

#endif

TEST(CaseFolding, FoldingTwiceIsFoldingOnce)
{
    for (char32_t c = 0; c <= Unicode::kLastCodePoint; ++c)
    {
        const char32_t folded = Unicode::FoldCase(c);
        ASSERT_EQ(folded, Unicode::FoldCase(folded));
    }
}

TEST(CaseFolding, WhatIsNoCodePointStaysAsItIs)
{
    EXPECT_EQ(0x110000u, Unicode::FoldCase(0x110000));
    EXPECT_EQ(0xFFFFFFFFu, Unicode::FoldCase(0xFFFFFFFF));
}

TEST(CaseFolding, IsTheSameInEveryLocaleForTheTurkishI)
{
    EXPECT_EQ(0, VelString(L"FILL").CompareNoCase(L"fill"));
    EXPECT_NE(0, VelString(L"\u0130").CompareNoCase(L"i"));
    EXPECT_NE(0, VelString(L"\u0131").CompareNoCase(L"I"));
    EXPECT_NE(0, VelString(L"\u0130").CompareNoCase(L"\u0131"));
}

TEST(CaseFolding, IsOneToOneForTheSharpS)
{
    EXPECT_EQ(0, VelString(L"\u1E9E").CompareNoCase(L"\u00DF"));
    EXPECT_NE(0, VelString(L"\u00DF").CompareNoCase(L"ss"));
}

TEST(CaseFolding, MakesTheThreeSigmasOne)
{
    EXPECT_EQ(0, VelString(L"\u03A3").CompareNoCase(L"\u03C3"));
    EXPECT_EQ(0, VelString(L"\u03C2").CompareNoCase(L"\u03C3"));
}

TEST(CaseFolding, LettersBeyondAsciiMeetLettersOfAscii)
{
    EXPECT_EQ(0, VelString(L"\u212A").CompareNoCase(L"k"));
    EXPECT_EQ(0, VelString(L"S").CompareNoCase(L"\u017F"));
    EXPECT_LT(VelString(L"\u212A").CompareNoCase(L"l"), 0);
}

TEST(CaseFolding, FoldsOnlyTheLettersOfAscii)
{
    for (wchar_t c = 0; c < 128; ++c)
    {
        const bool upper = c >= L'A' && c <= L'Z';
        const wchar_t changed = static_cast<wchar_t>(c ^ 0x20);
        const bool letter = upper || (changed >= L'A' && changed <= L'Z');
        EXPECT_EQ(letter, VelString(&c, 1).CompareNoCase({&changed, 1}) == 0) << static_cast<unsigned>(c);
    }
}

TEST(CaseFolding, LettersBeyondTheFirstPlaneFoldInEveryWidth)
{
    EXPECT_EQ(0, VelString(L"\U00010400").CompareNoCase(L"\U00010428"));
    EXPECT_EQ(0, VelStringA("\xF0\x90\x90\x80").CompareNoCase("\xF0\x90\x90\xA8"));
    EXPECT_EQ(0, Unicode::CompareFolded(u"\U00010400"sv, u"\U00010428"sv));
    EXPECT_NE(0, Unicode::CompareFolded(u"\U00010400"sv, u"\U00010429"sv));
}

TEST(CaseFolding, NarrowTextsFoldAsUtf8)
{
    EXPECT_EQ(0, VelStringA("\xC3\x84x").CompareNoCase("\xC3\xA4X"));
    EXPECT_NE(0, VelStringA("\xC4").CompareNoCase("\xE4"));
}

TEST(CaseFolding, MalformedTextEqualsOnlyItself)
{
    EXPECT_EQ(0, VelStringA("a\xE2\x82").CompareNoCase("A\xE2\x82"));
    EXPECT_NE(0, VelStringA("\xE2\x82").CompareNoCase("\xE2\x83"));
    EXPECT_NE(0, VelStringA("\xE2").CompareNoCase("\xE3"));
    EXPECT_NE(0, Unicode::CompareFolded(u"\xD800"sv, u"\xD801"sv));
    EXPECT_NE(0, Unicode::CompareFolded(u"\xD800\xDC00"sv, u"\xDC00\xD800"sv));
    EXPECT_EQ(0, Unicode::CompareFolded(u"\xD800"sv, u"\xD800"sv));
    const wchar_t lone[] = {static_cast<wchar_t>(0xD800), static_cast<wchar_t>(0xD801)};
    EXPECT_LT(VelString(lone, 1).CompareNoCase({lone + 1, 1}), 0);
}

TEST(CaseFolding, EveryWidthOrdersAlike)
{
    const std::u32string texts[] = {U"",        U"A",          U"a",      U"ab",         U"B", U"\u00C4", U"\u00E4x",
                                    U"\u212Ax", U"\U00010400", U"\uFFFD", U"\U00010429", U"K", U"\uE000", U"_"};
    const auto sign = [](int order) { return (order > 0) - (order < 0); };
    for (const std::u32string& left : texts)
    {
        for (const std::u32string& right : texts)
        {
            const auto narrow = [](const std::u32string& text) {
                std::string utf8;
                for (const char32_t c : text)
                {
                    char units[4];
                    utf8.append(units, Unicode::Encode(c, units));
                }
                return utf8;
            };
            const auto utf16 = [](const std::u32string& text) {
                std::u16string result;
                for (const char32_t c : text)
                {
                    char16_t units[2];
                    result.append(units, Unicode::Encode(c, units));
                }
                return result;
            };
            const int expected = sign(Unicode::CompareFolded<char32_t>(left, right));
            EXPECT_EQ(expected, sign(Unicode::CompareFolded<char>(narrow(left), narrow(right))));
            EXPECT_EQ(expected, sign(Unicode::CompareFolded<char16_t>(utf16(left), utf16(right))));
            EXPECT_EQ(expected, -sign(Unicode::CompareFolded<char32_t>(right, left)));
        }
    }
}

namespace
{

/// Both texts begin with `length` letters, in other cases where `changeCase`; then one has `left` and the other
/// `right`, and letters behind.
template <class Unit>
int CompareBehindLetters(std::size_t length, bool changeCase, unsigned left, unsigned right)
{
    std::basic_string<Unit> a(length, Unit{'q'});
    std::basic_string<Unit> b(length, Unit{'q'});
    if (changeCase && length > 0)
    {
        a[length / 2] = Unit{'Q'};
        b[length - 1] = Unit{'Q'};
    }
    a += static_cast<Unit>(left);
    b += static_cast<Unit>(right);
    a.append(9, Unit{'a'});
    b.append(9, Unit{'A'});
    const int order = Unicode::CompareFolded<Unit>(a, b);
    return (order > 0) - (order < 0);
}

} // namespace

TEST(CaseFolding, AUnitCountsTheSameWhereverItStands)
{
    const auto fold = [](unsigned c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; };
    for (unsigned left = 1; left < 128; ++left)
    {
        for (unsigned right = 1; right < 128; ++right)
        {
            const int expected = (fold(left) > fold(right)) - (fold(left) < fold(right));
            for (std::size_t length = 0; length < 18; ++length)
            {
                const bool changeCase = length % 2 == 0;
                ASSERT_EQ(expected, CompareBehindLetters<char>(length, changeCase, left, right))
                    << length << ": " << left << ", " << right;
                ASSERT_EQ(expected, CompareBehindLetters<char16_t>(length, changeCase, left, right))
                    << length << ": " << left << ", " << right;
                ASSERT_EQ(expected, CompareBehindLetters<char32_t>(length, changeCase, left, right))
                    << length << ": " << left << ", " << right;
            }
        }
    }
}

TEST(CaseFolding, LettersBeyondAsciiFoldWhereverTheyStand)
{
    for (std::size_t length = 0; length < 18; ++length)
    {
        const std::string letters(length, 'q');
        const std::u16string pairs(length, u'Q');
        EXPECT_EQ(0, Unicode::CompareFolded<char>(letters + "\xC3\x84xxxxxxxxx", letters + "\xC3\xA4XXXXXXXXX"));
        EXPECT_GT(0, Unicode::CompareFolded<char>(letters + "\xC3\x84", letters + "\xC3\xA4x"));
        EXPECT_EQ(0, Unicode::CompareFolded<char16_t>(pairs + u"\U00010400xxxxx", pairs + u"\U00010428XXXXX"));
        EXPECT_GT(0, Unicode::CompareFolded<char16_t>(pairs + u"\U00010400", pairs + u"\U00010429"));
        EXPECT_EQ(0, CompareBehindLetters<char32_t>(length, true, 0x10400, 0x10428));
        EXPECT_EQ(-1, CompareBehindLetters<char32_t>(length, true, 0xE4, 0x10428));
        EXPECT_EQ(1, CompareBehindLetters<char32_t>(length, true, 0xFFFFFFC1, 'A')) << "not a letter of ASCII";
        EXPECT_EQ(1, CompareBehindLetters<char16_t>(length, true, 0x0141, 'a')) << "not a letter of ASCII";
    }
}

TEST(CaseFolding, OrdersStrictlyAndWeakly)
{
    const auto unit = [](unsigned value) {
        const wchar_t c = static_cast<wchar_t>(value);
        return VelString(&c, 1);
    };
    const std::vector<VelString> texts{L"",           L"a",          L"A",          L"b",
                                       L"_",          L"\u00E4",     L"\u00C4",     L"\u212A",
                                       L"k",          unit(0xD800),  unit(0xFFFF),  unit(0xFFFFFFFF),
                                       L"\U0010FFFF", L"\U00010428", L"\U00010400", L"ab"};
    const auto less = [](const VelString& a, const VelString& b) { return a.CompareNoCase(b) < 0; };
    const auto same = [&](const VelString& a, const VelString& b) { return !less(a, b) && !less(b, a); };
    for (const VelString& a : texts)
    {
        EXPECT_FALSE(less(a, a));
        for (const VelString& b : texts)
        {
            EXPECT_FALSE(less(a, b) && less(b, a));
            for (const VelString& c : texts)
            {
                EXPECT_TRUE(!less(a, b) || !less(b, c) || less(a, c));
                EXPECT_TRUE(!same(a, b) || !same(b, c) || same(a, c));
            }
        }
    }
}
