// What gdb is asked to show: each variable is a sample, and Pause() is where it looks.

#include <styles/Styles.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

using namespace Styles;

namespace
{

enum class Corner
{
    Sharp,
    Round
};

struct Point
{
    double x;
    double y;
    double z;
};

volatile int paused = 0;

[[gnu::noinline]] void Pause()
{
    paused = paused + 1;
}

/// The bytes of an object, all of them nonsense.
template <class T>
struct Nonsense
{
    Nonsense() { std::memset(bytes, 0x41, sizeof bytes); }
    const T& Get() const { return *reinterpret_cast<const T*>(bytes); }
    alignas(T) unsigned char bytes[sizeof(T)];
};

void RegisterSchema(const PropertyKey& shape, const PropertyKey& fill)
{
    auto& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
    manager.SetCurrentVersion(2);
    manager.RegisterCategory(fill, VelString(L"Fill"), true, true);
    manager.RegisterProperty(fill, PropertyKey(L"color"),
                             new StyleProperty(nullptr, VelString(L"white"), new TextPolicy<VelString>, 1));
    manager.RegisterCategory(shape, VelString(L"Shape"), false, true);
    manager.RegisterProperty(shape, PropertyKey(L"width"), new StyleProperty(nullptr, 0.25, new TextPolicy<double>, 1));
    manager.RegisterProperty(shape, PropertyKey(L"note"),
                             new StyleProperty(nullptr, VelString(), new TextPolicy<VelString>, 1));
    manager.RegisterProperty(shape, PropertyKey(L"stops"), new StyleArrayProperty(nullptr, fill));
    RegisterSubstyleSet(shape, fill);
}

void ShowStrings()
{
    const VelString empty;
    const VelString wide(L"stra\u00DFe \"1\"\n\U0001F3A8");
    const VelStringA narrow("stra\xC3\x9F"
                            "e");
    const VelString withZero(L"a\0b", 3);
    const VelString longText(std::wstring(100000, L'x').c_str());
    const PropertyKey key(L"fill.color");
    const PropertyKey& reference = key;
    const PropertyPath path = SplitPath(L"fill.color");
    const Nonsense<VelString> nonsense;
    const Nonsense<PropertyKey> nonsenseKey;
    const VelString& badText = nonsense.Get();
    const PropertyKey& badKey = nonsenseKey.Get();
    // Longer than its place.
    const std::array<std::size_t, 4> header{1, 5, 4, 0};
    const wchar_t* const behindHeader = reinterpret_cast<const wchar_t*>(&header[3]);
    const VelString& lengthless = reinterpret_cast<const VelString&>(behindHeader);
    const void* const null = nullptr;
    const PropertyKey& nullKey = reinterpret_cast<const PropertyKey&>(null);
    const VelString& nowhere = *reinterpret_cast<const VelString*>(std::uintptr_t{16});
    Pause();
    (void)empty, (void)wide, (void)narrow, (void)withZero, (void)longText, (void)reference, (void)path, (void)badText;
    (void)badKey, (void)nullKey, (void)lengthless, (void)nowhere;
}

bool IsThere(Style* style)
{
    return style != nullptr;
}

void ShowValues(Style* style)
{
    const Any empty;
    const Any number(0.5);
    const Any integer(std::uint32_t{7});
    const Any truth(true);
    const Any corner(Corner::Round);
    const Any text(L"red");
    const Any narrow("red");
    const Any key(PropertyKey(L"width"));
    const Any pointer(style);
    const Any nullPointer(static_cast<Style*>(nullptr));
    const Any list(std::vector<Style*>{style, nullptr});
    const Any point(Point{1.0, 2.0, 3.0});
    const Nonsense<Any> nonsense;
    const Any& badValue = nonsense.Get();
    Json::Object object;
    object.AddValue(L"name", VelString(L"red"));
    object.AddValue(L"count", std::int64_t{-3});
    object.AddValue(L"none", Json::NullType::Null);
    Json::Array array;
    array.AddValue(0.5);
    array.AddValue(true);
    array.AddValue(Json::Object());
    object.AddValue(L"list", array);
    const Json::Variant document(object);
    const Any json(object);
    const Nonsense<Json::Variant> nonsenseJson;
    const Json::Variant& badJson = nonsenseJson.Get();
    std::array<Style*, 2> styles{style, nullptr};
    const StyleSpan span(styles, false);
    const auto callable = [](Style* visited) { return visited != nullptr; };
    const Delegate<bool(Style*)> delegate(callable);
    const Delegate<bool(Style*)> function(IsThere);
    Pause();
    (void)empty, (void)number, (void)integer, (void)truth, (void)corner, (void)text, (void)narrow, (void)key;
    (void)pointer, (void)nullPointer, (void)list, (void)point, (void)badValue, (void)document, (void)json;
    (void)badJson, (void)span, (void)delegate, (void)function;
}

/// Here no sheet is known, and so no name.
void ShowWithoutSheet(const Style& lone)
{
    Pause();
    (void)lone;
}

void ShowStyles(const PropertyKey& shape, const PropertyKey& fill)
{
    StyleSheet sheet;
    auto* outline = new Style(nullptr, shape);
    auto* warning = new Style(outline, shape);
    sheet.AddStyle(L"Outline", outline, false);
    sheet.AddStyle(L"Warning", warning, false);
    sheet.AddStyle(L"Nobody", nullptr, false);
    outline->SetProperty(PropertyKey(L"width"), Any(0.5));
    warning->SetPathProperty(SplitPath(L"fill.color"), Any(L"red"));
    warning->SetProperty(PropertyKey(L"note"), Any(L"look"));
    Style stop(nullptr, fill);
    warning->SetProperty(PropertyKey(L"stops"), Any(std::vector<Style*>{&stop, &stop}));
    const Style* substyle = warning->GetSubstyle(fill, false);
    const Style withoutCategory;
    Style external(nullptr, shape);
    external.SetExternalID(L"id 7");
    external.SetExternalName(L"elsewhere");
    Style first(nullptr, shape);
    Style second(&first, shape);
    first.SetParent(&second);
    const StyleSheet emptySheet;
    const Style* const nobody = nullptr;
    const StyleCategory& category = *warning->GetCategory();
    const Nonsense<Style> nonsense;
    const Nonsense<StyleSheet> nonsenseSheet;
    const Style& badStyle = nonsense.Get();
    const StyleSheet& badSheet = nonsenseSheet.Get();
    Pause();
    (void)substyle, (void)withoutCategory, (void)emptySheet, (void)category, (void)badStyle, (void)badSheet,
        (void)nobody;
}

} // namespace

int main()
{
    const PropertyKey shape(L"shape"), fill(L"fill");
    RegisterSchema(shape, fill);
    ShowStrings();
    {
        Style style(nullptr, shape);
        style.SetProperty(PropertyKey(L"width"), Any(2.0));
        ShowValues(&style);
        ShowWithoutSheet(style);
    }
    ShowStyles(shape, fill);
    ResetStyleManager();
    return paused == 4 ? 0 : 1;
}
