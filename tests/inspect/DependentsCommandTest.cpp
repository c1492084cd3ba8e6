#include "InspectTools.h"

namespace Inspect::Testing
{

class DependentsCommand : public InspectProgram
{};

TEST_F(DependentsCommand, MarksThoseThatDependDirectly)
{
    Write("sheet.json", R"({"style": {"A": {}, "B": {"inherits": "A"}, "C": {"inherits": "B"}, "D": {}}})");
    const Answer answer = Run({"dependents", "a"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.out, R"(NAME  CATEGORY  DEPENDS
B     style     directly
C     style     through others

2 styles depend on "A"
)");
    EXPECT_EQ(answer.status, 0);
}

TEST_F(DependentsCommand, AClosedChainEndsAndTheStyleItselfIsNotListed)
{
    Write("sheet.json", R"({"style": {"A": {"inherits": "B"}, "B": {"inherits": "A"}}})");
    EXPECT_EQ(Run({"dependents", "A"}).out, "NAME  CATEGORY  DEPENDS\nB     style     directly\n\n"
                                            "1 style depends on \"A\"\n");
}

TEST_F(DependentsCommand, AStyleThatNothingDependsOnIsToldSo)
{
    EXPECT_EQ(Run({"dependents", "Größe"}).out, "0 styles depend on \"Größe\"\n");
    ExpectRefusal({"dependents", "None"}, "sheet.json: there is no style \"None\"; `list` shows those there are");
}

} // namespace Inspect::Testing
