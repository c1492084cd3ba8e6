// Uses something of both libraries, and of the headers that live in headers alone, from outside the tree.

#include <styles/Styles.h>

#include <iostream>

int main()
{
    using namespace Styles;

    const PropertyKey shape(VelString(L"shape"));
    const PropertyKey width(VelString(L"width"));

    StyleManager& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
    manager.RegisterCategory(shape, VelString(L"Shape"), false, true);
    manager.RegisterProperty(shape, width, new StyleProperty(nullptr, 0.25, new TextPolicy<double>, 1));

    StyleSheet sheet;
    Style* parent = new Style(nullptr, shape);
    Style* child = new Style(parent, shape);
    sheet.AddStyle(VelString(L"Parent"), parent, false);
    sheet.AddStyle(VelString(L"Child"), child, false);
    parent->SetProperty(width, Any(2.0));

    const bool inherited = child->GetProperty(width) == Any(2.0);
    sheet.Clear();
    ResetStyleManager();
    std::cout << (inherited ? "inherited\n" : "not inherited\n");
    return inherited ? 0 : 1;
}
