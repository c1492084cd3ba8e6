#include "InspectTools.h"

#include "GalleryFiles.h"

#include <gmock/gmock.h>

#include <regex>
#include <sstream>

namespace Inspect::Testing
{

using ::testing::HasSubstr;

class LooksOfProperties : public InspectProgram
{
protected:
    void ExpectMistake(const std::string& looks, const std::string& message)
    {
        Write("looks.json", looks);
        const Answer answer = Run({"gallery", "-o", "page.html", "--look", "looks.json"});
        EXPECT_EQ(answer.status, 1) << looks;
        EXPECT_THAT(answer.err, ::testing::StartsWith("styles-inspect: looks.json: " + message)) << looks;
        EXPECT_FALSE(std::filesystem::exists(m_folder / "page.html"));
    }
};

TEST_F(LooksOfProperties, AMistakeInAFileOfLooksIsToldWithItsPlace)
{
    ExpectMistake("[]", "is an array, not an object");
    ExpectMistake("{}", "the member \"looks\" is missing");
    ExpectMistake(R"({"looks": {}, "look": 1})", "look: is not known here");
    ExpectMistake(R"({"looks": {"none": {}}})", "looks.none: the schema has no such category");
    ExpectMistake(R"({"looks": {"fill": 1}})", "looks.fill: is a number, not an object");
    ExpectMistake(R"({"looks": {"fill": {"lok": 1}}})", "looks.fill.lok: is not known here");
    ExpectMistake(R"({"looks": {"fill": {"properties": {"colour": "color"}}}})",
                  "looks.fill.properties.colour: the category has no such property");
    ExpectMistake(R"({"looks": {"fill": {"properties": {"color": 1}}}})",
                  "looks.fill.properties.color: is a number, not an object");
    ExpectMistake(R"({"looks": {"fill": {"properties": {"color": "colour"}}}})",
                  "looks.fill.properties.color: nothing is drawn for \"colour\"; there are: fill, line");
    ExpectMistake(R"({"looks": {"fill": {"properties": {"color": {"unit": "mm"}}}}})",
                  "looks.fill.properties.color: the member \"part\" is missing");
    ExpectMistake(R"({"looks": {"fill": {"properties": {"color": {"part": "color", "tiles": {"1": 2}}}}}})",
                  "looks.fill.properties.color.tiles.1: is a number, not a text");
}

TEST_F(LooksOfProperties, AMistakeInTheSchemaKeepsItFromBeingUsed)
{
    const auto expectMistake = [this](const std::string& look, const std::string& message) {
        Write("schema.json", R"({"version": 1, "base": {"uiName": "S", "properties": [
            {"name": "note", "type": "string", "default": "", "look": )" +
                                 look + "}]}}");
        Write("sheet.json", "{}");
        EXPECT_THAT(Run({"list"}).err, ::testing::StartsWith("styles-inspect: schema.json: " + message)) << look;
    };
    expectMistake("7", "base.properties[0].look: is a number, not an object");
    expectMistake("\"colour\"", "base.properties[0].look: nothing is drawn for \"colour\"");
    expectMistake("{\"part\": \"color\", \"unit\": 1}", "base.properties[0].look.unit: is a number, not a text");
}

TEST_F(LooksOfProperties, TheSchemaTellsLooksOfCategoriesPropertiesAndStylesInside)
{
    const DataSet data = DataSets().front();
    OpenSheet open(data.schema, data.sheet);
    const Looks& looks = open.GetSchema().GetLooks();
    const auto key = [](const wchar_t* text) { return PropertyKey(VelString(text)); };
    EXPECT_EQ(looks.OfCategory(key(L"outline")), VelString(L"line"));
    EXPECT_EQ(looks.OfCategory(Styles::StyleCategoryName), VelString());
    EXPECT_EQ(looks.OfProperty(key(L"outline"), key(L"width")).part, VelString(L"width"));
    EXPECT_EQ(looks.OfProperty(key(L"outline"), key(L"width")).unit, VelString(L"mm"));
    EXPECT_EQ(looks.OfProperty(key(L"outline"), key(L"endArrow")).part, VelString(L"end"));
    EXPECT_EQ(looks.OfProperty(key(L"fill"), key(L"patternId")).tiles.size(), 6u);
    EXPECT_EQ(looks.OfProperty(key(L"outline"), key(L"none")).part, VelString());
    EXPECT_EQ(looks.OfProperty(key(L"none"), key(L"width")).part, VelString());
}

TEST_F(LooksOfProperties, AFileOfLooksGoesBeforeTheSchema)
{
    const DataSet data = DataSets().front();
    Write("looks.json", R"({"looks": {"outline": {"properties": {"width": {"part": "phase", "unit": "cm"}}}}})");
    OpenSheet open(data.schema, data.sheet);
    Looks looks = open.GetSchema().GetLooks();
    looks.ReadFile(ReadDocument(Support::ToText(m_folder / "looks.json")));
    const PropertyKey outline(VelString(L"outline"));
    EXPECT_EQ(looks.OfProperty(outline, PropertyKey(VelString(L"width"))).part, VelString(L"phase"));
    EXPECT_EQ(looks.OfProperty(outline, PropertyKey(VelString(L"width"))).unit, VelString(L"cm"));
    EXPECT_EQ(looks.OfProperty(outline, PropertyKey(VelString(L"cap"))).part, VelString(L"cap"));
    EXPECT_EQ(looks.OfCategory(outline), VelString(L"line"));
}

TEST_F(LooksOfProperties, ThePageDrawsEveryPartThatThereIs)
{
    Write("looks.json", R"({"looks": {"fill": {"look": "?"}}})");
    const std::string message = Run({"gallery", "-o", "page.html", "--look", "looks.json"}).err;
    std::istringstream parts(message.substr(message.find("there are: ") + 11));
    std::vector<std::string> notDrawn;
    std::size_t count = 0;
    for (std::string part; std::getline(parts, part, ',');)
    {
        part.erase(0, part.find_first_not_of(' '));
        part.erase(part.find_last_not_of('\n') + 1);
        const std::regex isUsed("[.]" + part + "[^A-Za-z]|[{, ]" + part + "[:,]? ");
        const std::string_view script = GalleryFiles::Script;
        if (!std::regex_search(script.begin(), script.end(), isUsed))
        {
            notDrawn.push_back(part);
        }
        ++count;
    }
    EXPECT_THAT(notDrawn, ::testing::IsEmpty());
    EXPECT_GT(count, 40u);
}

} // namespace Inspect::Testing
