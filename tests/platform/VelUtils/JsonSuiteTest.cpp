// The parsing cases of the JSON test suite, when they are there: what a reader must take (y_), must refuse (n_) and may
// decide (i_). The files are read as hosts read theirs, through a text stream.

#include "VelPlatform/StringIO.h"
#include "VelUtils/Json.h"
#include "VelUtils/TextStream.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>

namespace Json = VelUtils::Json;
using VelPlatform::VelString;

namespace
{

/// The open cases that are taken; all others are refused: numbers beyond the range of a double, halves of surrogate
/// pairs, and what is not UTF-8.
const std::set<std::string> kTaken = {
    "i_number_double_huge_neg_exp.json",      // becomes 0
    "i_number_real_underflow.json",           // becomes 0
    "i_number_too_big_neg_int.json",          // becomes the nearest double, as the next two
    "i_number_too_big_pos_int.json",          //
    "i_number_very_big_negative_int.json",    //
    "i_structure_500_nested_arrays.json",     // the limit is 512
    "i_structure_UTF-8_BOM_empty_object.json" // the text stream drops the mark
};

std::vector<std::filesystem::path> FindCases()
{
    std::vector<std::filesystem::path> cases;
    std::error_code absent;
    for (const auto& entry :
         std::filesystem::directory_iterator(STYLES_TEST_DATA "/json-test-suite/test_parsing", absent))
    {
        cases.push_back(entry.path());
    }
    std::sort(cases.begin(), cases.end());
    return cases;
}

bool IsTaken(const std::filesystem::path& path, Json::Variant& value)
{
    VelUtils::TextStreamReader reader(VelUtils::FileStream::Open(Support::ToText(path)),
                                      VelUtils::TextStream::Encoding::Utf8);
    const VelString text = reader.ReadToEnd();
    VelString error;
    return !reader.Failed() && Json::Parse(text, value, error);
}

class JsonSuite : public testing::TestWithParam<std::filesystem::path>
{};

} // namespace

GTEST_ALLOW_UNINSTANTIATED_PARAMETERIZED_TEST(JsonSuite);
INSTANTIATE_TEST_SUITE_P(Parsing, JsonSuite, testing::ValuesIn(FindCases()), [](const auto& tested) {
    std::string name = tested.param.stem().string();
    std::replace_if(
        name.begin(), name.end(), [](char c) { return std::isalnum(static_cast<unsigned char>(c)) == 0; }, '_');
    return std::to_string(tested.index) + "_" + name;
});

TEST_P(JsonSuite, IsDecidedAsItMustBe)
{
    const std::string name = GetParam().filename().string();
    const bool expected = name.starts_with("y_") || kTaken.count(name) > 0;
    Json::Variant value;
    EXPECT_EQ(IsTaken(GetParam(), value), expected) << name;
    if (expected)
    {
        Json::Variant back;
        VelString error;
        EXPECT_TRUE(Json::Parse(Json::ValueToString(value, false), back, error)) << name << ": " << error;
        EXPECT_EQ(back, value) << name;
    }
}
