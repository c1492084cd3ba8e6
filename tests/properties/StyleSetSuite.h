// What the tests of substyles share.
#pragma once

#include "support/StyleMaking.h"

#include <vector>

namespace Styles::Testing
{

class StyleSetSuite : public SchemaFixture
{
protected:
    using Definition = Styles::StyleSetProperty;

    StyleSetSuite()
    {
        sheet.SetVersion(3);
        Manager().RegisterProperty(StyleCategoryName, Shade, shade);
    }

    const PropertyKey Shade = Key(L"shade");
    Definition* shade = new Definition(nullptr, Fill, nullptr, 3);
    TestSheet sheet;
    Style style{nullptr, StyleCategoryName};
    Style parent{nullptr, Fill};
    Style substyle{&parent, Fill};
    Any value{&substyle};
    const Any null = NullSubstyle();
};

} // namespace Styles::Testing
