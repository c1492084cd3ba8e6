// Every operation on the collection of a sheet fails wherever it can.

#include "faults/FaultWorld.h"

#include <algorithm>
#include <functional>
#include <iterator>
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

VelString NameOf(const W& w, const Style* style)
{
    return w.sheet.GetStyleName(style);
}

/// Deletes some styles of the sheet: all of them or, after a failure, none.
Op DeleteOperation(const char* name, std::function<std::vector<Style*>(const W&)> choose)
{
    Op operation;
    operation.name = name;
    operation.act = [choose = std::move(choose)](W& w) {
        if (!w.isDone)
        {
            w.sheet.DeleteStyles(choose(w));
            w.isDone = true;
        }
    };
    operation.whenMemoryEnds = Promise::SameEffect;
    operation.whenDefinitionsThrow = Promise::SameEffect;
    operation.whenDestroyingThrows = Promise::ThrowsNothing;
    operation.prepare = [](W& w) { w.loose->SetParent(nullptr); };
    operation.alsoHolds = [](W& w, const Picture&, const Expectation&) {
        EXPECT_TRUE(w.isDone || w.sheet.GetStyles().size() == 8) << "a style is gone";
    };
    return operation;
}

/// What would nest without end is cut in the end, so that look-ups deep inside may change before.
Op DeleteTheNest()
{
    Op operation = DeleteOperation("DeleteTheNest", [](const W& w) { return std::vector<Style*>{w.nest}; });
    operation.whenMemoryEnds = Promise::AsChecked;
    operation.whenDefinitionsThrow = Promise::AsChecked;
    operation.alsoHolds = [](W& w, const Picture& before, const Expectation&) {
        const auto isOutside = [](const auto& entry) { return entry.first.rfind("Nest", 0) != 0; };
        Picture expected;
        std::copy_if(before.begin(), before.end(), std::inserter(expected, expected.end()), isOutside);
        Picture now = w.GetIdentity();
        EXPECT_EQ(now.contains("Nest im Nest im Nest"), !w.isDone);
        std::erase_if(now, [&isOutside](const auto& entry) { return !isOutside(entry); });
        EXPECT_EQ(now, expected);
    };
    return operation;
}

/// Adds so many numbered names that the sheet remembers which of them are taken, and lets it learn that.
void AddNumberedNames(W& w)
{
    const VelString base(L"Eine Ebene unter vielen");
    for (int count = 0; count < 40; ++count)
    {
        w.sheet.AddStyle(w.sheet.GetUnusedStyleName(base), new Style(), false);
    }
}

/// A number in the middle becomes free, which needs memory to remember what lies behind it.
Op RemoveANumberedName()
{
    const VelString name(L"Eine Ebene unter vielen 20");
    Op operation{"RemoveANumberedName", [name](W& w) { delete w.sheet.RemoveStyle(name); }};
    operation.whenMemoryEnds = Promise::ThrowsNothing;
    operation.prepare = AddNumberedNames;
    operation.alsoHolds = [](W& w, const Picture&, const Expectation&) {
        EXPECT_EQ(w.sheet.GetUnusedStyleName(L"Eine Ebene unter vielen"), VelString(L"Eine Ebene unter vielen 20"));
        EXPECT_EQ(w.sheet.GetUnusedStyleName(L"Eine Ebene unter vielen 21"), VelString(L"Eine Ebene unter vielen 40"));
    };
    return operation;
}

Op FindANumberedName()
{
    Op operation{"FindANumberedName", [](W& w) { (void)w.sheet.GetUnusedStyleName(L"Eine Ebene unter vielen"); }};
    operation.prepare = [](W& w) {
        AddNumberedNames(w);
        for (const wchar_t* removed : {L"Eine Ebene unter vielen 10", L"Eine Ebene unter vielen 30"})
        {
            delete w.sheet.RemoveStyle(removed);
            w.sheet.AddStyle(removed, new Style(), false);
        }
    };
    operation.alsoHolds = [](W& w, const Picture&, const Expectation&) {
        EXPECT_EQ(w.sheet.GetUnusedStyleName(L"Eine Ebene unter vielen"), VelString(L"Eine Ebene unter vielen 40"));
    };
    return operation;
}

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
           [](W& w) {
               const VelString name = L"Enkel der Basis, noch kleiner";
               const std::unique_ptr<Style> removed(w.sheet.RemoveStyle(name));
           }},
        Op{"RemoveStyle",
           [](W& w) {
               if (w.sheet.RemoveStyle(w.grandchild))
               {
                   delete w.grandchild;
               }
           },
           Promise::ThrowsNothing, Promise::ThrowsNothing, false, true, Promise::ThrowsNothing},
        DeleteOperation("DeleteStyles",
                        [](const W& w) {
                            return std::vector<Style*>{w.base, w.line};
                        }),
        DeleteOperation("DeleteAChain",
                        [](const W& w) {
                            return std::vector<Style*>{w.child, w.ancestor, w.base};
                        }),
        DeleteOperation("DeleteWhatAListInheritsFrom", [](const W& w) { return std::vector<Style*>{w.stopParent}; }),
        DeleteOperation("DeleteAllButTheNest",
                        [](const W& w) {
                            std::vector<Style*> styles = w.sheet.GetStyles();
                            std::erase(styles, w.nest);
                            return styles;
                        }),
        DeleteTheNest(),
        DeleteOperation("DeleteNone",
                        [](const W& w) {
                            return std::vector<Style*>{w.loose.get(), nullptr};
                        }),
        Op{"DeleteAStyleListedTwice",
           [](W& w) {
               StyleSheet sheet;
               auto style = std::make_unique<Style>(*w.child);
               Style* const listed = style.get();
               const VelString first = L"ein langer Name";
               const VelString second = L"noch ein langer Name";
               sheet.AddStyle(first, style.release(), false);
               sheet.AddStyle(second, listed, false);
               sheet.DeleteStyles(std::vector<Style*>{listed});
               ASSERT_EQ(sheet.GetStyles().size(), 1u);
               EXPECT_TRUE(listed->IsEmpty());
           },
           Promise::Unchanged, Promise::Unchanged, false, true, Promise::ThrowsNothing},
        Op{"Clear", [](W& w) { w.sheet.Clear(); }, Promise::ThrowsNothing, Promise::ThrowsNothing, false, true,
           Promise::ThrowsNothing, [](W& w) { w.loose->SetParent(nullptr); }},
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
        Op{"AskForOne",
           [](W& w) {
               (void)w.sheet.GetStyle(L"Linie");
               (void)w.sheet.GetStyleName(w.base);
               w.sheet.SetVersion(w.sheet.GetVersion());
           },
           Promise::Unchanged, Promise::ThrowsNothing},
        Op{"GetDependencies",
           [](W& w) {
               std::vector<Style*> dependants{w.nest};
               try
               {
                   w.sheet.GetDependencies(std::vector<Style*>{w.base, w.stopParent}, dependants);
               }
               catch (...)
               {
                   EXPECT_EQ(dependants, std::vector<Style*>{w.nest});
                   throw;
               }
           }},
        Op{"RenameStyle",
           [](W& w) { w.sheet.RenameStyle(L"Basis für alle anderen", L"Basis unter einem anderen, langen Namen"); }},
        Op{"GetUnusedStyleName",
           [](W& w) {
               (void)w.sheet.GetUnusedStyleName(L"Basis für alle anderen");
               (void)w.sheet.GetUnusedStyleName(L"fill");
           }},
        FindANumberedName(), RemoveANumberedName(),
        Op{"ConvertToValidStyleName", [](W&) { (void)ConvertToValidStyleName(L" ein \"langer\" Name\t, ach ", true); }},
        Op{"GenerateCategoryStyleMap",
           [](W& w) {
               std::map<PropertyKey, StyleSheet::NameMap> map;
               map[PropertyKey::Empty].emplace(L"from before", nullptr);
               try
               {
                   w.sheet.GenerateCategoryStyleMap(map);
               }
               catch (...)
               {
                   EXPECT_TRUE(map.size() == 1 && map.begin()->second.contains(L"from before"));
                   throw;
               }
           }}),
    OperationName());

} // namespace

} // namespace Styles::Testing
