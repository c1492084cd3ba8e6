// JSON under locales whose numbers look otherwise. The locales are compiled for the test.

#if defined(__linux__)

#    include "VelPlatform/StringIO.h"
#    include "VelUtils/Json.h"
#    include "support/TemporaryFolder.h"

#    include <gtest/gtest.h>

#    include <algorithm>
#    include <clocale>
#    include <cstdlib>
#    include <string>
#    include <tuple>

namespace Json = VelUtils::Json;
using VelPlatform::VelString;

namespace
{

class JsonLocale : public testing::TestWithParam<const char*>
{
protected:
    void SetUp() override
    {
        const std::string language = GetParam();
        const std::string name = language + ".UTF-8";
        const std::string command =
            "localedef --no-archive -i " + language + " -f UTF-8 '" + (m_folder / name).string() + "' >/dev/null 2>&1";
        m_before = std::setlocale(LC_ALL, nullptr);
        std::ignore = std::system(command.c_str()); // what came of it shows in the next lines
        setenv("LOCPATH", m_folder.GetPath().c_str(), 1);
        ASSERT_STRNE(std::setlocale(LC_ALL, name.c_str()), nullptr)
            << "the locale " << name << " cannot be made; `script/bootstrap test` installs what makes it";
        ASSERT_STRNE(std::localeconv()->decimal_point, ".");
    }
    void TearDown() override
    {
        unsetenv("LOCPATH");
        std::setlocale(LC_ALL, m_before.c_str());
    }

private:
    Support::TemporaryFolder m_folder;
    std::string m_before;
};

} // namespace

// German writes a comma; the sign of Pashto is a character of two bytes.
INSTANTIATE_TEST_SUITE_P(Languages, JsonLocale, testing::Values("de_DE", "ps_AF"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_P(JsonLocale, NumbersAreReadAndWrittenAsEverywhere)
{
    const VelString text = L"[0.1,-1234.5,1.5e-7,2.5e+300,-0.0,12345678901234567000.0]";
    Json::Variant value;
    VelString error;
    ASSERT_TRUE(Json::Parse(text, value, error)) << error;
    EXPECT_EQ(value.Get<Json::Array>().GetValue(0)->Get<double>(), 0.1);
    EXPECT_EQ(value.Get<Json::Array>().GetValue(1)->Get<double>(), -1234.5);
    EXPECT_EQ(Json::ValueToString(value, true), text);
}

TEST_P(JsonLocale, NumbersAreStillJudgedByTheirRange)
{
    Json::Variant value;
    VelString error;
    EXPECT_FALSE(Json::Parse(L"1.5e999", value, error));
    EXPECT_TRUE(Json::Parse(L"1.5e-999", value, error));
    EXPECT_EQ(value.Get<double>(), 0.0);
    const VelString large = VelString::Make(400, [](wchar_t* out) { std::fill_n(out, 400, L'9'); });
    EXPECT_TRUE(Json::Parse(large + L".5e-399", value, error)) << error;
    EXPECT_EQ(value.Get<double>(), 10.0);
}

TEST_P(JsonLocale, ACommaIsNoPoint)
{
    Json::Variant value;
    VelString error;
    EXPECT_FALSE(Json::Parse(L"1,5", value, error));
}

TEST_P(JsonLocale, ReadingLeavesTheLocaleOfTheHost)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);
    Json::Variant value;
    VelString error;
    EXPECT_TRUE(Json::Parse(L"0.5", value, error));
    EXPECT_FALSE(Json::Parse(L"0.5.5", value, error));
    EXPECT_EQ(std::setlocale(LC_ALL, nullptr), before);
    EXPECT_STRNE(std::localeconv()->decimal_point, ".");
}

#endif
