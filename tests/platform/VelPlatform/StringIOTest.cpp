#include "VelPlatform/StringIO.h"

#include <gmock/gmock.h>

#include <iomanip>
#include <sstream>
#include <string_view>

using VelPlatform::VelString;
using VelPlatform::VelStringA;
using namespace std::string_view_literals;

TEST(StringIO, WritesUtf8)
{
    std::ostringstream stream;
    stream << VelString(L"\u00E4\0b"sv) << '|' << VelStringA("\xC3\xA4");
    EXPECT_EQ("\xC3\xA4\0b|\xC3\xA4"sv, stream.str());
}

TEST(StringIO, TheFieldWidthCountsBytes)
{
    std::ostringstream stream;
    stream << std::setw(4) << std::setfill('.') << VelString(L"\u00E4") << std::setw(3) << VelStringA("x");
    EXPECT_EQ("..\xC3\xA4..x", stream.str());
}
