#include <styles/TextPolicy.h>

#include "support/TestSheet.h"

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>
#include <locale>
#include <random>
#include <string>
#include <vector>

namespace Styles::Testing
{

namespace
{

using VelPref::Detail::BadConversion;

template <class T>
VelString Written(const T& value)
{
    return Styles::TextPolicy<T>().ToText(Any(value));
}

template <class T>
T Read(const VelString& text)
{
    return Styles::TextPolicy<T>().FromText(text).template Get<T>();
}

template <class T>
void ExpectRefused(const std::vector<VelString>& texts)
{
    for (const VelString& text : texts)
    {
        EXPECT_THROW(Read<T>(text), BadConversion) << Utf8(text);
    }
}

/// A host that has decimal commas and grouped digits everywhere it can.
class CommaLocale
{
public:
    CommaLocale()
        : m_oldC(std::setlocale(LC_ALL, nullptr)),
          m_old(std::locale::global(std::locale(std::locale::classic(), new Punctuation)))
    {
        for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8", "nl_NL.UTF-8"})
        {
            if (std::setlocale(LC_ALL, name) != nullptr)
            {
                break;
            }
        }
    }
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale()
    {
        std::locale::global(m_old);
        std::setlocale(LC_ALL, m_oldC.c_str());
    }

private:
    class Punctuation : public std::numpunct<char>
    {
        char do_decimal_point() const override { return ','; }
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\3"; }
    };

    std::string m_oldC;
    std::locale m_old;
};

} // namespace

TEST(TextPolicy, ANumberIsWrittenInTheShortestFormThatReadsBack)
{
    EXPECT_EQ(Written(0.1), L"0.1");
    EXPECT_EQ(Written(0.25), L"0.25");
    EXPECT_EQ(Written(3.0), L"3");
    EXPECT_EQ(Written(-2.5), L"-2.5");
    EXPECT_EQ(Written(1e300), L"1e+300");
    EXPECT_EQ(Written(-0.0), L"-0");
    EXPECT_EQ(Written(std::int32_t{-7}), L"-7");
    EXPECT_EQ(Written(std::uint32_t{7}), L"7");
}

TEST(TextPolicy, RandomDoublesReadBackBitForBit)
{
    std::mt19937_64 random(20240607);
    int finite = 0;
    for (int round = 0; round < 20000; ++round)
    {
        const auto number = std::bit_cast<double>(static_cast<std::uint64_t>(random()));
        if (!std::isfinite(number))
        {
            continue;
        }
        ++finite;
        const VelString text = Written(number);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(Read<double>(text)), std::bit_cast<std::uint64_t>(number)) << Utf8(text);
    }
    EXPECT_GT(finite, 10000);
}

TEST(TextPolicy, LimitsReadBack)
{
    using Doubles = std::numeric_limits<double>;
    for (const double number : {Doubles::max(), Doubles::lowest(), Doubles::min(), Doubles::denorm_min(),
                                Doubles::epsilon(), Doubles::infinity(), -Doubles::infinity(), -0.0})
    {
        EXPECT_EQ(std::bit_cast<std::uint64_t>(Read<double>(Written(number))), std::bit_cast<std::uint64_t>(number));
    }
    EXPECT_TRUE(std::isnan(Read<double>(Written(Doubles::quiet_NaN()))));
    for (const std::int32_t number :
         {std::numeric_limits<std::int32_t>::min(), -1, 0, 1, std::numeric_limits<std::int32_t>::max()})
    {
        EXPECT_EQ(Read<std::int32_t>(Written(number)), number);
    }
    for (const std::uint32_t number : {0U, 1U, 2147483648U, std::numeric_limits<std::uint32_t>::max()})
    {
        EXPECT_EQ(Read<std::uint32_t>(Written(number)), number);
    }
}

TEST(TextPolicy, AnUnsignedNumberIsAlsoReadFromMinusOneAsAllOnes)
{
    EXPECT_EQ(Read<std::uint32_t>(VelString(L"-1")), 4294967295U);
    EXPECT_EQ(Written(std::uint32_t{4294967295U}), L"4294967295");
    ExpectRefused<std::uint32_t>({VelString(L"-2"), VelString(L"-01"), VelString(L"-1 "), VelString(L"-0")});
}

TEST(TextPolicy, ATruthValueIsWrittenAsADigitAndReadFromWordsToo)
{
    EXPECT_EQ(Written(true), L"1");
    EXPECT_EQ(Written(false), L"0");
    EXPECT_TRUE(Read<bool>(VelString(L"1")));
    EXPECT_TRUE(Read<bool>(VelString(L"true")));
    EXPECT_FALSE(Read<bool>(VelString(L"0")));
    EXPECT_FALSE(Read<bool>(VelString(L"false")));
    ExpectRefused<bool>({VelString(L""), VelString(L"2"), VelString(L"True"), VelString(L"yes"), VelString(L"1 ")});
}

TEST(TextPolicy, ATextIsAnyText)
{
    for (const VelString& text :
         {VelString(), VelString(L" a \n"), VelString(L"\u00e4\u4e2d"), VelString(L"a\0b", 3), VelString(L"-1")})
    {
        EXPECT_EQ(Written(text), text);
        EXPECT_EQ(Read<VelString>(text), text);
    }
}

TEST(TextPolicy, WhatIsNotWhollyANumberIsRefused)
{
    const std::vector<VelString> junk{
        VelString(),          VelString(L" "),       VelString(L" 1"),        VelString(L"1 "),     VelString(L"+1"),
        VelString(L"1,5"),    VelString(L"0x10"),    VelString(L"1e"),        VelString(L"--1"),    VelString(L"one"),
        VelString(L"\u0661"), VelString(L"1\u00a0"), VelString(L"1\0001", 3), VelString(L"\uff11"), VelString(L"1\n"),
    };
    ExpectRefused<double>(junk);
    ExpectRefused<std::int32_t>(junk);
    ExpectRefused<std::uint32_t>(junk);
    ExpectRefused<std::int32_t>({VelString(L"1.0"), VelString(L"1e3")});
    ExpectRefused<std::uint32_t>({VelString(L"1.0"), VelString(L"1e3")});
    ExpectRefused<double>({VelString(L"1.5.5"), VelString(L"."), VelString(L"e5"), VelString(L"infinity"),
                           VelString(L"INF"), VelString(L"nan(1)"), VelString(L"NaN")});
}

TEST(TextPolicy, ANumberOutOfRangeIsRefused)
{
    ExpectRefused<double>({VelString(L"1e309"), VelString(L"-1e309"), VelString(L"1e-400")});
    ExpectRefused<std::int32_t>({VelString(L"2147483648"), VelString(L"-2147483649")});
    ExpectRefused<std::uint32_t>({VelString(L"4294967296"), VelString(L"99999999999999999999")});
}

TEST(TextPolicy, AValueOfAnotherTypeIsABadCast)
{
    EXPECT_THROW(static_cast<void>(Styles::TextPolicy<double>().ToText(Any(1))), std::bad_cast);
    EXPECT_THROW(static_cast<void>(Styles::TextPolicy<double>().ToText(Any())), std::bad_cast);
    EXPECT_THROW(static_cast<void>(Styles::TextPolicy<std::int32_t>().ToText(Any(1U))), std::bad_cast);
    EXPECT_THROW(static_cast<void>(Styles::TextPolicy<std::uint32_t>().ToText(Any(1))), std::bad_cast);
    EXPECT_THROW(static_cast<void>(Styles::TextPolicy<bool>().ToText(Any(1))), std::bad_cast);
    EXPECT_THROW(static_cast<void>(Styles::TextPolicy<VelString>().ToText(Any(1.0))), std::bad_cast);
}

TEST(TextPolicy, TheLocaleOfTheHostChangesNothing)
{
    const CommaLocale locale;
    EXPECT_EQ(Written(1234567.25), L"1234567.25");
    EXPECT_EQ(Read<double>(VelString(L"1234567.25")), 1234567.25);
    EXPECT_EQ(Written(std::int32_t{1234567}), L"1234567");
    EXPECT_EQ(Read<std::int32_t>(VelString(L"1234567")), 1234567);
    ExpectRefused<double>({VelString(L"1,5"), VelString(L"1.234.567")});
}

} // namespace Styles::Testing
