// A plug-in that reads what the other one made.
#include "Plugin.h"

using namespace Styles;

PLUGIN_EXPORT void Look(View& view)
{
    view = {&VelUtils::Singleton<StyleManager, 0>::GetInstance(), PropertyKey(L"shape"), &typeid(Style),
            &typeid(BaseStyleProperty), &typeid(Length)};
}

PLUGIN_EXPORT bool Read(const Style& style, const Any& length)
{
    return style.GetProperty(PropertyKey(L"length")) == length &&
           style.GetProperty(PropertyKey(L"length")).Get<Length>() == Length{2} &&
           style.GetProperty(PropertyKey(L"note")).Get<VelString>() == L"made by a plug-in";
}
