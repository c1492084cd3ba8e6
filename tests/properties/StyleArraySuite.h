// What the tests of lists of styles share.
#pragma once

#include "support/StyleMaking.h"

#include <vector>

namespace Styles::Testing
{

class StyleArraySuite : public SchemaFixture
{
protected:
    using Definition = Styles::StyleArrayProperty;
    using StyleList = std::vector<Style*>;

    StyleArraySuite()
    {
        sheet.SetVersion(3);
        Manager().RegisterProperty(StyleCategoryName, Layers, layers);
        Manager().RegisterProperty(StyleCategoryName, Own, own);
    }

    /// A list of the two elements with a null one between them, owned by the fixture.
    Any MakeList() { return Any(StyleList{&first, nullptr, &second}); }

    const PropertyKey Layers = Key(L"layers"), Own = Key(L"own");
    Definition* layers = new Definition(nullptr, Stop);
    Definition* own = new Definition(nullptr, 3);
    TestSheet sheet;
    Style style{nullptr, StyleCategoryName};
    Style parent{nullptr, Stop};
    Style first{&parent, Stop};
    Style second{nullptr, Stop};
};

} // namespace Styles::Testing
