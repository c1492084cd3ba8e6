// A plug-in with a category of its own, a definition of a class of its own among its properties.
#include "Plugin.h"

using namespace Styles;

namespace
{

const PropertyKey& Shape()
{
    static const PropertyKey shape(L"shape");
    return shape;
}

/// A definition whose code is in this plug-in alone.
class WidthProperty : public StyleProperty
{
public:
    WidthProperty() : StyleProperty(nullptr, 0.25, new TextPolicy<double>, 1) {}
    bool IsEqual(const Any&, const Any&) const override { return true; }
};

StyleManager& Manager()
{
    return VelUtils::Singleton<StyleManager, 0>::GetInstance();
}

} // namespace

PLUGIN_EXPORT void Look(View& view)
{
    view = {&Manager(), Shape(), &typeid(Style), &typeid(BaseStyleProperty), &typeid(Length)};
}

PLUGIN_EXPORT void Register()
{
    Manager().RegisterCategory(Shape(), VelString(L"Shape"), false, true);
    Manager().RegisterProperty(Shape(), PropertyKey(L"width"), new WidthProperty);
    Manager().RegisterProperty(Shape(), PropertyKey(L"length"), new StyleProperty(nullptr, Length{}, nullptr, 1));
    Manager().RegisterProperty(Shape(), PropertyKey(L"note"), new StyleProperty(nullptr, VelString(), nullptr, 1));
}

PLUGIN_EXPORT void Deregister()
{
    Manager().DeregisterCategory(Shape());
}

PLUGIN_EXPORT Style* Make()
{
    auto* style = new Style(nullptr, Shape());
    style->SetProperty(PropertyKey(L"length"), Any(Length{2}));
    style->SetProperty(PropertyKey(L"note"), Any(VelString(L"made by a plug-in")));
    return style;
}
