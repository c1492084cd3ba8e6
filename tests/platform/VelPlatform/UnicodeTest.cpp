#include "VelPlatform/Unicode.h"

#include "VelPlatform/StringIO.h"

#include <gmock/gmock.h>

#include <string>

namespace Unicode = VelPlatform::Unicode;
using VelPlatform::ToNarrow;
using VelPlatform::ToWide;
using VelPlatform::VelString;
using VelPlatform::VelStringA;
using namespace std::string_view_literals;

namespace
{

template <class To, class From>
std::basic_string<To> Transcoded(std::basic_string_view<From> text)
{
    bool valid = false;
    std::basic_string<To> result(Unicode::TranscodedLength<To>(text, valid), To{});
    const To* const end = Unicode::Transcode(text, result.data());
    EXPECT_EQ(result.data() + result.size(), end);
    return result;
}

template <class From>
bool IsValid(std::basic_string_view<From> text)
{
    bool valid = false;
    Unicode::TranscodedLength<char>(text, valid);
    return valid;
}

std::u32string Wide(std::string_view utf8)
{
    return Transcoded<char32_t>(utf8);
}

} // namespace

TEST(Unicode, EveryScalarValueComesBackFromEveryEncoding)
{
    for (char32_t c = 0; c <= Unicode::kLastCodePoint; ++c)
    {
        if (!Unicode::IsScalar(c))
        {
            continue;
        }
        const std::u32string_view text(&c, 1);
        const std::string utf8 = Transcoded<char>(text);
        const std::u16string utf16 = Transcoded<char16_t>(std::string_view(utf8));
        ASSERT_EQ(text, Transcoded<char32_t>(std::u16string_view(utf16)));
        ASSERT_EQ(utf8, Transcoded<char>(std::u16string_view(utf16)));
        ASSERT_EQ(c < 0x80 ? 1u : c < 0x800 ? 2u : c < 0x10000 ? 3u : 4u, utf8.size());
        ASSERT_EQ(c < 0x10000 ? 1u : 2u, utf16.size());
    }
}

TEST(Unicode, EncodesKnownTexts)
{
    EXPECT_EQ("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF",
              Transcoded<char>(U"a\u00E4\u20AC\U0001F600\U0010FFFF"sv));
    EXPECT_EQ(u"\xD83D\xDE00\xDBFF\xDFFF", Transcoded<char16_t>(U"\U0001F600\U0010FFFF"sv));
}

TEST(Unicode, EverySurrogateIsRefusedByUtf8AndUtf32)
{
    for (char32_t c = 0xD800; c <= 0xDFFF; ++c)
    {
        const char utf8[] = {static_cast<char>(0xED), static_cast<char>(0x80 | ((c >> 6) & 0x3F)),
                             static_cast<char>(0x80 | (c & 0x3F))};
        ASSERT_EQ(U"\uFFFD\uFFFD\uFFFD", Wide({utf8, 3}));
        ASSERT_FALSE(IsValid(std::u32string_view(&c, 1)));
    }
}

TEST(Unicode, OverlongFormsAreReplacedByteByByte)
{
    EXPECT_EQ(U"\uFFFD\uFFFD", Wide("\xC0\x80"));
    EXPECT_EQ(U"\uFFFD\uFFFD", Wide("\xC1\xBF"));
    EXPECT_EQ(U"\uFFFD\uFFFD\uFFFD", Wide("\xE0\x9F\xBF"));
    EXPECT_EQ(U"\uFFFD\uFFFD\uFFFD\uFFFD", Wide("\xF0\x8F\xBF\xBF"));
}

TEST(Unicode, WhatLiesBeyondTheLastCodePointIsReplaced)
{
    EXPECT_EQ(U"\uFFFD\uFFFD\uFFFD\uFFFD", Wide("\xF4\x90\x80\x80"));
    EXPECT_EQ(U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD", Wide("\xF8\x88\x80\x80\x80"));
    EXPECT_EQ(U"\uFFFD", Transcoded<char32_t>(std::u32string_view(U"\x110000", 1)));
    EXPECT_EQ(U"\uFFFD", Transcoded<char32_t>(std::u32string_view(U"\xFFFFFFFF", 1)));
}

TEST(Unicode, AMaximalSubpartBecomesOneReplacement)
{
    // A truncated sequence counts once, and what breaks it off is read anew.
    EXPECT_EQ(U"a\uFFFD\uFFFD\uFFFDb\uFFFDc\uFFFD\uFFFDd", Wide("a\xF1\x80\x80\xE1\x80\xC2"
                                                                "b\x80"
                                                                "c\x80\xBF"
                                                                "d"));
    EXPECT_EQ(U"\uFFFD", Wide("\xE2\x82"));
    EXPECT_EQ(U"\uFFFD", Wide("\xF0\x9F\x98"));
    EXPECT_EQ(U"\uFFFDA", Wide("\xF0\x9F\x98"
                               "A"));
    EXPECT_EQ(U"\uFFFD\u00E4", Wide("\xE2\xC3\xA4"));
    EXPECT_EQ(U"\uFFFD\uFFFD", Wide("\xFE\xFF"));
}

TEST(Unicode, LoneHalvesOfPairsAreReplacedInUtf16)
{
    EXPECT_EQ(U"\uFFFDa", Transcoded<char32_t>(u"\xD83D\x0061"sv));
    EXPECT_EQ(U"\uFFFD", Transcoded<char32_t>(u"\xD83D"sv));
    EXPECT_EQ(U"\uFFFD\uFFFD", Transcoded<char32_t>(u"\xDE00\xD83D"sv));
    EXPECT_EQ(U"\uFFFD\U0001F600", Transcoded<char32_t>(u"\xD83D\xD83D\xDE00"sv));
    EXPECT_FALSE(IsValid(u"\xD83D"sv));
    EXPECT_TRUE(IsValid(u"\xD83D\xDE00"sv));
}

TEST(Unicode, APairInUtf32IsTwoLoneHalves)
{
    const char32_t pair[] = {0xD83D, 0xDE00};
    EXPECT_EQ(U"\uFFFD\uFFFD", Transcoded<char32_t>(std::u32string_view(pair, 2)));
    EXPECT_FALSE(IsValid(std::u32string_view(pair, 2)));
}

TEST(Unicode, WideAndNarrowStringsConvertBothWays)
{
    const VelString wide(L"a\u00E4\u20AC\U0001F600");
    const VelStringA narrow("a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(narrow, ToNarrow(wide));
    EXPECT_EQ(wide, ToWide(narrow));
    EXPECT_EQ(L"", ToWide(""));
    EXPECT_EQ("", ToNarrow(L""));
}

TEST(Unicode, AWideStringHoldsACharacterBeyondTheFirstPlaneInAsManyUnitsAsTheSystemTakes)
{
    const VelString wide = ToWide("\xF0\x9F\x98\x80");
    if constexpr (sizeof(wchar_t) == 2)
    {
        ASSERT_EQ(2u, wide.size());
        EXPECT_EQ(static_cast<wchar_t>(0xD83D), wide[0]);
        EXPECT_EQ(static_cast<wchar_t>(0xDE00), wide[1]);
        // The halves of two pairs, the wrong way round.
        const wchar_t turned[] = {wide[1], wide[0]};
        EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBD", ToNarrow({turned, 2}));
    }
    else
    {
        ASSERT_EQ(1u, wide.size());
        EXPECT_EQ(static_cast<wchar_t>(0x1F600), wide[0]);
    }
    EXPECT_EQ("\xF0\x9F\x98\x80", ToNarrow(wide));
}

TEST(Unicode, MalformedNarrowTextIsReplacedOrRefused)
{
    VelString wide(L"kept");
    EXPECT_EQ(L"a\uFFFDb", ToWide("a\xFF"
                                  "b"));
    EXPECT_FALSE(VelPlatform::TryToWide("a\xFF", wide));
    EXPECT_EQ(L"kept", wide);
    EXPECT_TRUE(VelPlatform::TryToWide("\xC3\xA4", wide));
    EXPECT_EQ(L"\u00E4", wide);
    EXPECT_TRUE(VelPlatform::TryToWide("", wide));
    EXPECT_EQ(L"", wide);
}

TEST(Unicode, MalformedWideTextIsReplacedOrRefused)
{
    const wchar_t lone[] = {L'a', static_cast<wchar_t>(0xD800), L'b'};
    const wchar_t behind[] = {static_cast<wchar_t>(0xDC00)};
    VelStringA narrow("kept");
    EXPECT_EQ("a\xEF\xBF\xBD"
              "b",
              ToNarrow({lone, 3}));
    EXPECT_EQ("\xEF\xBF\xBD", ToNarrow({behind, 1}));
    EXPECT_FALSE(VelPlatform::TryToNarrow({lone, 3}, narrow));
    EXPECT_EQ("kept", narrow);
    EXPECT_TRUE(VelPlatform::TryToNarrow(L"\u00E4", narrow));
    EXPECT_EQ("\xC3\xA4", narrow);
    if constexpr (sizeof(wchar_t) == 4)
    {
        const wchar_t beyond[] = {static_cast<wchar_t>(0x110000), static_cast<wchar_t>(0xFFFFFFFF)};
        EXPECT_EQ("\xEF\xBF\xBD\xEF\xBF\xBD", ToNarrow({beyond, 2}));
        EXPECT_FALSE(VelPlatform::TryToNarrow({beyond, 2}, narrow));
    }
}

TEST(Unicode, AConversionMayReplaceItsOwnSource)
{
    VelStringA narrow("\xC3\xA4");
    VelString wide = ToWide(narrow);
    wide = ToWide(ToNarrow(wide));
    EXPECT_EQ(L"\u00E4", wide);
}

TEST(Unicode, TrimWorksOnEveryWidth)
{
    EXPECT_EQ(u"x", Unicode::Trimmed(u" \u3000x\u2028\t"sv));
    EXPECT_EQ("x", Unicode::Trimmed("\xE3\x80\x80 x\xC2\x85\xE2\x80\xA8"sv));
    EXPECT_EQ(U"x", Unicode::Trimmed(U"\u205Fx"sv));
    EXPECT_EQ("", Unicode::Trimmed("\xC2\xA0"sv));
}
