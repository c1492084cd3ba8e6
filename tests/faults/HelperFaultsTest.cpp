// Every function over substyles and of the override analysis fails wherever it can.

#include "faults/FaultWorld.h"

#include <set>
#include <utility>

namespace Styles::Testing
{

namespace
{

using W = FaultWorld;
using Op = Operation<W>;

class HelperFaults : public WorldFaults
{};

TEST_P(HelperFaults, HoldWhatIsPromisedWhenMemoryEnds)
{
    RunUnderFailures(GetParam(), /*byMemory*/ true);
}

TEST_P(HelperFaults, HoldWhatIsPromisedWhenADefinitionThrows)
{
    RunUnderFailures(GetParam(), /*byMemory*/ false);
}

/// Values of all kinds that equal the inherited ones, and some that do not.
void Repeat(W& w)
{
    W::Set(*w.child, MakePath(K().note), L"Notiz der Basis, die lang genug ist");
    w.child->SetProperty(K().number, Any(4.5));
    w.child->SetProperty(K().character, Any(w.base->GetSubstyle(K().character, false)));
    w.child->SetProperty(K().stops, Any(w.ancestor->GetProperty(K().stops)));
}

INSTANTIATE_TEST_SUITE_P(
    Substyles, HelperFaults,
    testing::Values(
        Op{"SubStyleHandle",
           [](W& w) {
               SubStyle handle(w.grandchild->GetSubstyle(K().character, false)->GetSubstyle(K().fill, false));
               SubStyle copy(handle);
               copy = SubStyle(w.base);
               copy = handle;
               const SubStyle moved(std::move(handle));
               (void)static_cast<Style*>(moved);
               (void)moved.GetRoot();
               (void)GetStyleOrSubstyle(w.base, K().character, true);
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
               const auto visit = [](Style* style) {
                   ReachCall();
                   style->SetExternalID(L"besucht");
                   return true;
               };
               (void)ForEachSubStyle(w.base, visit, true, {K().fill, K().character});
           },
           Promise::Stepwise, Promise::Stepwise},
        Op{"ClearEmptySubstyles", [](W& w) { ClearEmptySubstyles(*w.grandchild); }, Promise::Stepwise,
           Promise::Stepwise, false, true, Promise::Stepwise,
           [](W& w) {
               w.grandchild->ClearPathProperty(MakePath(K().character, K().fill, K().scale));
               w.grandchild->GetSubstyleAndCreateIfMissing(K().outline, K().outline);
           }},
        Op{"CopySourceSubstyles",
           [](W& w) { CopySourceSubstylesThatExistsInDestinationStyle(w.loose.get(), w.child, false); },
           Promise::Stepwise, Promise::Stepwise},
        Op{"CopySourceSubstylesMerging",
           [](W& w) { CopySourceSubstylesThatExistsInDestinationStyle(w.loose.get(), w.ancestor, true); },
           Promise::MayClear, Promise::MayClear, false, true, Promise::MayClear},
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
        Op{"ClearMatchingInheritedProperties", [](W& w) { ClearMatchingInheritedProperties(*w.child); },
           Promise::Stepwise, Promise::Stepwise, false, true, Promise::Stepwise, Repeat},
        Op{"ClearMatchingInheritedPropertiesForLookUps", [](W& w) { ClearMatchingInheritedProperties(*w.child); },
           Promise::SameEffect, Promise::SameEffect, false, true, Promise::SameEffect, Repeat},
        Op{"ClearMatchingInheritedPropertiesOfASubstyle",
           [](W& w) { ClearMatchingInheritedProperties(*w.grandchild->GetSubstyle(K().character, false)); },
           Promise::SameEffect, Promise::SameEffect, false, true, Promise::SameEffect,
           [](W& w) {
               w.grandchild->GetSubstyle(K().character, false)->SetProperty(K().font, Any(VelString(L"Grotesk")));
           }}),
    OperationName());

} // namespace

} // namespace Styles::Testing
