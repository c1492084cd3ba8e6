// Every operation on a sheet and its document fails wherever it can, and so do the helpers over substyles, the override
// analysis and the presets.

#include "faults/FaultWorld.h"

#include <VelUtils/Stream.h>

#include <set>
#include <span>
#include <utility>

namespace Styles::Testing
{

namespace
{

using W = FaultWorld;
using Op = Operation<W>;

class SheetFaults : public WorldFaults
{};

TEST_P(SheetFaults, HoldWhatIsPromisedWhenMemoryEnds)
{
    RunUnderFailures(GetParam(), /*byMemory*/ true);
}

TEST_P(SheetFaults, HoldWhatIsPromisedWhenADefinitionThrows)
{
    RunUnderFailures(GetParam(), /*byMemory*/ false);
}

const FaultKeys& K()
{
    return Keys();
}

VelString NameOf(const W& w, const Style* style)
{
    return w.sheet.GetStyleName(style);
}

/// The text of the sheet of another world, in which a note is different.
const VelString& OtherDocument()
{
    static const VelString text = [] {
        W other;
        W::Set(*other.grandchild, MakePath(K().note), L"Notiz aus einem anderen Dokument");
        VelString document;
        other.sheet.ExportToString(document, true);
        return document;
    }();
    return text;
}

class Duplicates : public IStyleSheetDuplicationContext
{
public:
    void OnStyleDuplicated(Style* style, bool /*reserved*/) override { styles.push_back(style); }

    std::vector<Style*> styles;
};

INSTANTIATE_TEST_SUITE_P(
    Collection, SheetFaults,
    testing::Values(
        Op{"Construct", [](W&) { const StyleSheet sheet; }},
        Op{"AddStyle",
           [](W& w) {
               auto style = std::make_unique<Style>(w.base, StyleCategoryName);
               const VelString name = L"ein ganz neuer Name für einen Stil";
               w.sheet.AddStyle(name, style.release(), false);
           }},
        Op{"AddStyleInPlaceOfAnother",
           [](W& w) {
               auto style = std::make_unique<Style>(*w.loose);
               const std::unique_ptr<Style> old(w.sheet.AddStyle(NameOf(w, w.grandchild), style.release(), true));
               w.grandchild = nullptr;
           },
           Promise::Unchanged, Promise::Unchanged},
        Op{"AddStyleThatIsRefused",
           [](W& w) {
               auto style = std::make_unique<Style>(*w.loose);
               w.sheet.AddStyle(NameOf(w, w.grandchild), style.release(), false);
           }},
        Op{"RemoveByName",
           [](W& w) { const std::unique_ptr<Style> removed(w.sheet.RemoveStyle(L"Enkel der Basis, noch kleiner")); }},
        Op{"RemoveStyle",
           [](W& w) {
               if (w.sheet.RemoveStyle(w.grandchild))
               {
                   delete w.grandchild;
               }
           }},
        Op{"DeleteStyles",
           [](W& w) {
               if (w.base != nullptr)
               {
                   w.loose->SetParent(nullptr);
                   w.sheet.DeleteStyles(std::vector<Style*>{w.base, w.line});
                   w.base = nullptr;
               }
           },
           Promise::Usable, Promise::Usable},
        Op{"Clear",
           [](W& w) {
               w.loose->SetParent(nullptr);
               w.sheet.Clear();
           }},
        Op{"CopyContentsFrom",
           [](W& w) {
               StyleSheet copy;
               Duplicates duplicates;
               copy.CopyContentsFrom(w.sheet, &duplicates);
           },
           Promise::Unchanged, Promise::Unchanged, true},
        Op{"MergeIn",
           [](W& w) {
               StyleSheet mine;
               const VelString name = L"eins, mit langem Namen";
               mine.AddStyle(name, std::make_unique<Style>(*w.grandchild).release(), true);
               StyleSheet other;
               mine.MergeIn(other, true);
           }},
        Op{"GetStyles",
           [](W& w) {
               (void)w.sheet.GetStyles();
               (void)w.sheet.GetStyleNames();
               (void)w.sheet.GetStyleNames(K().outline);
               (void)w.sheet.GetStylesByCategory(K().outline);
               (void)w.sheet.GetStylesByName({NameOf(w, w.base), NameOf(w, w.line)});
               (void)w.sheet.GetChildStyles(w.base);
               (void)w.sheet.GetExternalStyleAlias(L"a", L"b");
           }},
        Op{"GetDependencies",
           [](W& w) {
               std::vector<Style*> dependants;
               w.sheet.GetDependencies(std::vector<Style*>{w.base, w.stopParent}, dependants);
           }},
        Op{"RenameStyle",
           [](W& w) { w.sheet.RenameStyle(L"Basis für alle anderen", L"Basis unter einem anderen, langen Namen"); }},
        Op{"GetUnusedStyleName",
           [](W& w) {
               (void)w.sheet.GetUnusedStyleName(L"Basis für alle anderen");
               (void)w.sheet.GetUnusedStyleName(L"fill");
           }},
        Op{"ConvertToValidStyleName", [](W&) { (void)ConvertToValidStyleName(L" ein \"langer\" Name\t, ach ", true); }},
        Op{"GenerateCategoryStyleMap",
           [](W& w) {
               std::map<PropertyKey, StyleSheet::NameMap> map;
               w.sheet.GenerateCategoryStyleMap(map);
           }}),
    OperationName());

INSTANTIATE_TEST_SUITE_P(
    Document, SheetFaults,
    testing::Values(Op{"ExportToString",
                       [](W& w) {
                           VelString text;
                           w.sheet.ExportToString(text, true);
                       }},
                    Op{"ExportJson",
                       [](W& w) {
                           Json::Variant out = Json::Object();
                           w.sheet.ExportJson(out, false);
                       }},
                    Op{"Export",
                       [](W& w) {
                           VelUtils::MemoryStream stream;
                           w.sheet.Export(stream);
                       }},
                    Op{"ImportIntoAnEmptySheet",
                       [](W& w) {
                           OpenSheet sheet;
                           if (sheet.ImportFromString(OtherDocument(), true))
                           {
                               w.made = std::make_unique<Style>(*sheet.GetStyle(NameOf(w, w.grandchild)));
                               w.made->SetParent(nullptr);
                               w.made->ClearProperty(K().stops); // their parent goes with the sheet
                           }
                       },
                       Promise::Unchanged, Promise::Unchanged, true},
                    Op{"ImportInPlaceOfAll",
                       [](W& w) {
                           w.loose->SetParent(nullptr);
                           w.sheet.ImportFromString(OtherDocument(), true);
                       },
                       Promise::Usable, Promise::Usable, true},
                    Op{"ImportBesideAll", [](W& w) { w.sheet.ImportFromString(OtherDocument(), false); },
                       Promise::Usable, Promise::Usable, true},
                    Op{"ImportFromAStream",
                       [](W& w) {
                           VelUtils::MemoryStream stream(
                               "{\"style\":{\"Neu und mit langem Namen\":{\"note\":\"eine Notiz\"}}}");
                           w.sheet.Import(stream, true);
                       },
                       Promise::Unchanged, Promise::Unchanged, true},
                    Op{"ImportNothing", [](W& w) { w.sheet.ImportFromString(L"{ \"style\" ", true); }}),
    OperationName());

INSTANTIATE_TEST_SUITE_P(
    Helpers, SheetFaults,
    testing::Values(
        Op{"SubStyleHandle",
           [](W& w) {
               SubStyle handle(w.grandchild->GetSubstyle(K().character, false)->GetSubstyle(K().fill, false));
               SubStyle copy(handle);
               copy = SubStyle(w.base);
               copy = handle;
               const SubStyle moved(std::move(handle));
               (void)static_cast<Style*>(moved);
           }},
        Op{"StylesToSubStyles",
           [](W& w) {
               (void)SubStylesToStyles(
                   StylesToSubStyles({w.base, w.grandchild->GetSubstyle(K().character, false), nullptr}));
           }},
        Op{"GetSubstyleProperty",
           [](W& w) {
               Any out;
               (void)GetSubstyleProperty(*w.grandchild, K().fill, K().color);
               (void)GetSubstyleProperty(*w.nest, K().nest, K().note);
               GetSubstyleProperty(*w.grandchild, K().fill, K().color, out);
           }},
        Op{"GetOrCreateSubstyle", [](W& w) { GetOrCreateSubstyle(*w.loose, K().character); }},
        Op{"SetSubstyleProperty",
           [](W& w) {
               SetSubstyleProperty(*w.loose, K().character, K().character, K().font, Any(VelString(L"neue Schrift")));
           },
           Promise::Stepwise, Promise::Stepwise},
        Op{"ClearSubstyleProperty", [](W& w) { ClearSubstyleProperty(*w.base, K().fill, K().pattern); }},
        Op{"GetSubstyleParent",
           [](W& w) { (void)GetSubstyleParent(*w.grandchild->GetSubstyle(K().character, false)); }},
        Op{"ForEachSubStyle",
           [](W& w) {
               (void)ForEachSubStyle(w.base, [](Style*) { return true; }, true, {K().fill, K().character});
           }},
        Op{"ClearEmptySubstyles",
           [](W& w) {
               w.grandchild->GetSubstyle(K().character, false)->GetSubstyle(K().fill, false)->ClearProperty(K().scale);
               ClearEmptySubstyles(*w.grandchild);
           },
           Promise::Stepwise, Promise::Stepwise},
        Op{"CopySourceSubstyles",
           [](W& w) { CopySourceSubstylesThatExistsInDestinationStyle(w.loose.get(), w.child, false); },
           Promise::Stepwise, Promise::Stepwise},
        Op{"CopySourceSubstylesMerging",
           [](W& w) { CopySourceSubstylesThatExistsInDestinationStyle(w.loose.get(), w.ancestor, true); },
           Promise::MayClear, Promise::MayClear},
        Op{"PropertiesAndPaths",
           [](W& w) {
               (void)GetStyleCategoryProperties(*w.grandchild);
               (void)GetOverriddenProperties(*w.grandchild);
               (void)GetOverriddenPropertyPaths(*w.grandchild);
               (void)GetOverriddenSubstyleProperties(*w.grandchild, K().character, true);
               (void)MakePaths(std::set<PropertyKey>{K().fill, K().note});
               (void)MakePath(MakePath(K().fill, K().color), MakePath(K().fill, K().note, K().size));
           }},
        Op{"CreateStyleFromSubstyle",
           [](W& w) {
               std::set<PropertyKey> keys;
               w.made.reset(CreateStyleFromSubstyleWithoutOwnerDependencies(w.grandchild, K().character, keys));
           }},
        Op{"ClearMatchingInheritedProperties",
           [](W& w) {
               W::Set(*w.child, MakePath(K().note), L"Notiz der Basis, die lang genug ist");
               w.child->SetProperty(K().number, Any(4.5));
               ClearMatchingInheritedProperties(*w.child);
           },
           Promise::Usable, Promise::Usable}),
    OperationName());

/// Presets in memory: there is no folder to save them in.
class HomelessPresets : public StylePresetManager
{
public:
    HomelessPresets()
    {
        auto sheet = std::make_unique<StyleSheet>();
        sheets[VelString(L"style")] = sheet.get();
        sheet.release();
    }
    StyleSheet* GetPresetSheet(const VelString& category) override
    {
        const auto entry = sheets.find(category);
        return entry != sheets.end() ? entry->second : nullptr;
    }
    VelString GetPresetFolder() override { return L"/there/is/no/such/folder"; }
};

INSTANTIATE_TEST_SUITE_P(
    Presets, SheetFaults,
    testing::Values(Op{"AddPreset",
                       [](W& w) {
                           HomelessPresets presets;
                           presets.AddPreset(L"style", L"ein Preset mit langem Namen", w.grandchild, true);
                           presets.AddPreset(L"style", L"ein Preset mit langem Namen", w.loose.get(), true);
                       }},
                    Op{"DeletePreset",
                       [](W& w) {
                           HomelessPresets presets;
                           presets.AddPreset(L"style", L"ein Preset mit langem Namen", w.grandchild, true);
                           presets.DeletePreset(L"style", L"ein Preset mit langem Namen");
                       }},
                    Op{"AskForPresets",
                       [](W&) {
                           HomelessPresets presets;
                           (void)presets.GetPresetNames(L"style");
                           (void)presets.DoesPresetNameExist(L"style", L"ein Preset mit langem Namen");
                           (void)presets.GetPreset(L"style", L"ein Preset mit langem Namen");
                           (void)presets.GetUnusedPresetName(L"style", L"ein Preset mit langem Namen");
                       }}),
    OperationName());

} // namespace

} // namespace Styles::Testing
