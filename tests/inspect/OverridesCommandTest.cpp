#include "InspectTools.h"

#include <algorithm>
#include <sstream>

namespace Inspect::Testing
{

class OverridesCommand : public InspectProgram
{};

TEST_F(OverridesCommand, TellsOfEachOwnValueWhetherItWouldBeSoAnyway)
{
    Write("sheet.json", R"({"style": {"A": {"level": "5", "fill": {"color": "red"}},
                            "B": {"inherits": "A", "level": "5", "locked": "1", "note": "",
                                  "fill": {"color": "red", "angle": "3"}}}})");
    const Answer answer = Run({"overrides", "b"});
    EXPECT_EQ(answer.err, "");
    std::vector<std::string> lines;
    std::istringstream in(answer.out);
    for (std::string line; std::getline(in, line);)
    {
        lines.push_back(line);
    }
    ASSERT_EQ(lines.size(), 8u);
    EXPECT_EQ(lines[0], "PROPERTY    OWN VALUE  WITHOUT IT  EQUAL");
    std::sort(lines.begin() + 1, lines.begin() + 6);
    EXPECT_EQ(lines[1], "fill.angle  3          0           no");
    EXPECT_EQ(lines[2], "fill.color  \"red\"      \"red\"       yes");
    EXPECT_EQ(lines[3], "level       5          5           yes");
    EXPECT_EQ(lines[4], "locked      1          0           no");
    EXPECT_EQ(lines[5], "note        \"\"         \"\"          yes");
    EXPECT_EQ(lines[7], "5 own values, 3 equal without");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(OverridesCommand, ListsOfDifferentLengthsAreEqualAsTheirDefinitionCompares)
{
    Write("sheet.json", R"({"gradient": {"A": {"stops": [{}]}, "B": {"inherits": "A", "stops": [{}, {}]}}})");
    EXPECT_EQ(Run({"overrides", "B"}).out, R"(PROPERTY  OWN VALUE    WITHOUT IT   EQUAL
stops     (list of 2)  (list of 1)  yes

1 own value, 1 equal without
)");
}

TEST_F(OverridesCommand, AStyleThatIsNotThereIsRefused)
{
    ExpectRefusal({"overrides", "None"}, "sheet.json: there is no style \"None\"; `list` shows those there are");
}

} // namespace Inspect::Testing
