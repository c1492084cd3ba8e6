// A host's own test, with the matchers that are installed.

#include <styles/Styles.h>
#include <styles/testing/StylesMatchers.h>

using namespace Styles;
using namespace Styles::Testing;

TEST(Consumer, AStyleInheritsFromItsParent)
{
    const PropertyKey shape(L"shape"), width(L"width");
    auto& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
    manager.RegisterCategory(shape, VelString(L"Shape"), false, true);
    manager.RegisterProperty(shape, width, new StyleProperty(nullptr, 0.25, new TextPolicy<double>, 1));
    {
        Style parent(nullptr, shape), child(&parent, shape);
        parent.SetProperty(width, Any(2.0));
        EXPECT_THAT(child, testing::AllOf(Inherits(parent), HasValue(width, 2.0), testing::Not(HasOwnValue(width))));
        EXPECT_EQ("style of \"shape\", 1 value {width = 2}", testing::PrintToString(parent));
    }
    ResetStyleManager();
}
