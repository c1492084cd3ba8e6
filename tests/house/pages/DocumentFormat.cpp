// Prints the documents that docs/document-format.md shows, in the order of the page.

#include <VelPlatform/StringIO.h>
#include <styles/Styles.h>

#include <iostream>
#include <string_view>
#include <vector>

using namespace Styles;

namespace
{

const PropertyKey outline(L"outline"), layer(L"layer"), width(L"width"), colour(L"colour"), note(L"note"),
    hidden(L"hidden"), layers(L"layers"), selected(L"selected"), patternId(L"patternId"), weight(L"weight");

template <class T>
StyleProperty* MakePlain(T defaultValue, int newSinceVersion)
{
    using Held = VelUtils::AnyValueType<T>;
    return new StyleProperty(nullptr, std::move(defaultValue), new TextPolicy<Held>, newSinceVersion);
}

void RegisterSchema()
{
    auto& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
    manager.RegisterCategory(outline, L"Outline", true, true);
    manager.RegisterProperty(outline, width, MakePlain(0.25, 1));
    manager.RegisterProperty(outline, colour, MakePlain(VelString(L"black"), 1));
    manager.RegisterCategory(layer, L"Layer", false, false);
    manager.RegisterProperty(layer, colour, MakePlain(VelString(L"none"), 1));
    RegisterStyleCategory(L"Graphic style");
    manager.RegisterProperty(StyleCategoryName, note, MakePlain(VelString(), 1));
    manager.RegisterProperty(StyleCategoryName, hidden, MakePlain(false, 1));
    manager.RegisterProperty(StyleCategoryName, patternId, MakePlain(std::uint32_t(0), 1));
    manager.RegisterProperty(StyleCategoryName, weight, MakePlain(1.0, 3));
    manager.RegisterProperty(StyleCategoryName, layers, new StyleArrayProperty(nullptr, layer));
    manager.RegisterProperty(StyleCategoryName, selected, new TemporaryStyleProperty(nullptr, false, 1));
    manager.SetCurrentVersion(3);
}

void Print(const StyleSheet& sheet)
{
    VelUtils::MemoryStream document;
    std::cout << (sheet.Export(document) ? document.GetBytes() : "not written") << '\n';
}

Style* Add(StyleSheet& sheet, const wchar_t* name, Style* parent)
{
    auto* style = new Style(parent, StyleCategoryName);
    sheet.AddStyle(VelString(name), style, false);
    return style;
}

/// Makes the sheet at the top of the page.
void Fill(StyleSheet& sheet)
{
    Style* plain = Add(sheet, L"Plain", nullptr);
    plain->SetPathProperty(MakePath(outline, width), Any(0.5));
    plain->SetProperty(weight, Any(2.0));
    Style* warning = Add(sheet, L"Warnung, groß", plain);
    warning->SetProperty(note, Any(VelString(L"said \"now\"")));
    warning->SetPathProperty(MakePath(outline, colour), Any(VelString(L"red")));
    Add(sheet, L"like Plain", plain);
}

/// A style with a value of every kind.
void ShowStyle()
{
    StyleSheet sheet;
    auto* style = Add(sheet, L"Everything", Add(sheet, L"Plain", nullptr));
    style->SetExternalID(L"4711");
    style->SetExternalName(L"Everything of theirs");
    style->SetProperty(note, Any(VelString(L"text")));
    style->SetProperty(hidden, Any(true));
    style->SetProperty(patternId, Any(std::uint32_t(0xFFFFFFFF)));
    style->SetProperty(weight, Any(0.1));
    style->SetProperty(selected, Any(true));
    style->SetPathProperty(MakePath(outline, width), Any(2.0));
    Style first(nullptr, layer), second(nullptr, layer);
    second.SetProperty(colour, Any(VelString(L"navy")));
    style->SetProperty(layers, Any(std::vector<Style*>{&first, &second}));
    std::cout << style->Serialize(sheet, /*compact*/ false, /*includeTemporaries*/ false) << '\n'
              << style->Serialize(sheet, /*compact*/ true, /*includeTemporaries*/ true) << '\n';
}

/// A document that takes liberties, and what is read of it.
void ShowReading()
{
    const std::string_view document = R"({
 "style": {
  "Child": {
   "inherits": "PARENT",
   "note": 1.5,
   "hidden": true,
   "patternId": null,
   "sparkle": {
    "unknown": "property"
   },
   "outline": {
    "inherits": "Child",
    "width": 0.123456789
   },
   "layers": [
    "no style",
    {
     "colour": "navy"
    }
   ]
  },
  "Parent": {
   "inherits": "Parent",
   "note": "first",
   "note": "last"
  },
  "Orphan": {
   "inherits": "Nobody"
  }
 },
 "unknown category": {
  "Lost": {}
 },
 "version": 2.9,
 "comment": [
  "anything"
 ]
})";
    std::cout << document << '\n';
    VelUtils::MemoryStream stream(document);
    StyleSheet sheet;
    std::cout << (sheet.Import(stream, false) ? "" : "not read\n");
    Print(sheet);
}

} // namespace

int main()
{
    RegisterSchema();
    StyleSheet sheet;
    Fill(sheet);
    Print(sheet);
    ShowStyle();
    sheet.SetVersion(2); // as an older host gets it
    Print(sheet);
    ShowReading();
    sheet.Clear();
    ResetStyleManager();
}
