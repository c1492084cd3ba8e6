// Every operation on a style fails wherever it can.

#include "faults/FaultWorld.h"

#include <set>
#include <span>

namespace Styles::Testing
{

namespace
{

using Op = Operation<FaultWorld>;
using W = FaultWorld;

class StyleFaults : public WorldFaults
{};

TEST_P(StyleFaults, HoldWhatIsPromisedWhenMemoryEnds)
{
    RunUnderFailures(GetParam(), /*byMemory*/ true);
}

TEST_P(StyleFaults, HoldWhatIsPromisedWhenADefinitionThrows)
{
    RunUnderFailures(GetParam(), /*byMemory*/ false);
}

Any Text(const wchar_t* text)
{
    return Any(VelString(text));
}

INSTANTIATE_TEST_SUITE_P(
    Making, StyleFaults,
    testing::Values(
        Op{"DefaultConstruct", [](W& w) { w.made = std::make_unique<Style>(); }},
        Op{"ConstructWithCategory", [](W& w) { w.made = std::make_unique<Style>(w.base, K().fill); }},
        Op{"ConstructWithUnknownCategory", [](W& w) { w.made = std::make_unique<Style>(w.base, K().unknown); }},
        Op{"CopyConstruct", [](W& w) { w.made = std::make_unique<Style>(*w.grandchild); }},
        Op{"CopyConstructNest", [](W& w) { w.made = std::make_unique<Style>(*w.nest); }},
        Op{"MoveConstruct", [](W& w) { w.made = std::make_unique<Style>(std::move(*w.loose)); }},
        Op{"CopyAssign", [](W& w) { *w.loose = *w.grandchild; }},
        Op{"CopyAssignOwnSubstyle", [](W& w) { *w.nest = *w.nest->GetSubstyle(K().nest, false); }, Promise::Unchanged,
           Promise::Unchanged, false, false},
        Op{"CopyAssignOwnOwner", [](W& w) { *w.nest->GetSubstyle(K().nest, false) = *w.nest; }, Promise::Unchanged,
           Promise::AllOrNothing, false, false},
        Op{"MoveAssign", [](W& w) { *w.loose = std::move(*w.grandchild); }, Promise::ThrowsNothing,
           Promise::AllOrNothing, false, true, Promise::Done},
        Op{"MoveAssignIntoOwnSubstyle", [](W& w) { *w.nest->GetSubstyle(K().nest, false) = std::move(*w.nest); },
           Promise::Unchanged, Promise::AllOrNothing, false, false},
        Op{"SwapData", [](W& w) { w.loose->SwapData(*w.grandchild); }, Promise::ThrowsNothing, Promise::AllOrNothing},
        Op{"Clear", [](W& w) { w.grandchild->Clear(); }, Promise::ThrowsNothing, Promise::Done, false, true,
           Promise::Done},
        Op{"Destroy", [](W& w) { w.loose = std::make_unique<Style>(); }, Promise::Unchanged, Promise::ThrowsNothing,
           false, true, Promise::ThrowsNothing},
        Op{"SetCategory", [](W& w) { w.oldLine->SetCategory(K().fill); }},
        Op{"SetUnknownCategory", [](W& w) { w.loose->SetCategory(K().unknown); }},
        Op{"SetExternalID", [](W& w) { w.child->SetExternalID(L"eine neue, lange Kennung"); }},
        Op{"SetExternalName", [](W& w) { w.child->SetExternalName(L"ein neuer, langer Name"); }}),
    OperationName());

INSTANTIATE_TEST_SUITE_P(
    Asking, StyleFaults,
    testing::Values(
        Op{"IsEmptyWithEmptySubstyles", [](W& w) { (void)w.nest->IsEmptyWithEmptySubstyles(); }},
        Op{"GetNumSubstyles", [](W& w) { (void)w.child->GetNumSubstyles(); }},
        Op{"GetLastSubstyle", [](W& w) { (void)w.child->GetLastSubstyle(); }},
        Op{"SubstylesHaveAnyParentalRelationships",
           [](W& w) { (void)w.child->SubstylesHaveAnyParentalRelationships(); }},
        Op{"CompareEqual",
           [](W& w) {
               const Style copy(*w.grandchild);
               (void)(copy == *w.grandchild);
               (void)(copy < *w.grandchild);
               (void)copy.substyle_less_including_owner_based_inheritance(*w.grandchild);
           }},
        Op{"GetProperty",
           [](W& w) {
               for (const PropertyKey& key : w.grandchild->GetCategory()->GetPropertyNames())
               {
                   Any out;
                   (void)w.grandchild->GetProperty(key);
                   w.grandchild->GetProperty(key, out);
                   w.grandchild->GetInheritedProperty(key, out);
                   w.grandchild->GetOverrideProperty(key, out);
               }
           }},
        Op{"AskWithoutFailure",
           [](W& w) {
               Style& style = *w.grandchild->GetSubstyle(K().character, false);
               style.SetOwner(style.GetOwner(), style.GetOwnersSubstylePropertyName());
               w.base->SetParent(w.base->GetParent());
               (void)w.base->IsEmpty();
               (void)w.base->IsExternal();
               (void)w.base->GetExternalID();
               (void)w.base->GetExternalName();
               (void)w.base->GetCategoryName();
               (void)w.base->GetCategoryUIName();
               (void)w.base->DoesOverrideProperty(K().note);
               (void)style.StylePropertiesHasDependencyOnOwner();
           },
           Promise::ThrowsNothing, Promise::ThrowsNothing},
        Op{"GetPropertyThroughTheOwner",
           [](W& w) { (void)w.grandchild->GetSubstyle(K().character, false)->GetProperty(K().font); }},
        Op{"GetPathProperty",
           [](W& w) {
               (void)w.grandchild->GetPathProperty(SplitPath(L"character.fill.color"));
               (void)w.grandchild->GetPathProperty(SplitPath(L"outline.width"));
           }},
        Op{"DoesOverridePathProperty", [](W& w) { (void)w.nest->DoesOverridePathProperty(SplitPath(L"nest.nest.*")); }},
        Op{"StylePropertiesHasDependencyOnOwner",
           [](W& w) { (void)w.grandchild->GetSubstyle(K().character, false)->StylePropertiesHasDependencyOnOwner(); }}),
    OperationName());

INSTANTIATE_TEST_SUITE_P(
    Changing, StyleFaults,
    testing::Values(
        Op{"SetNewCopy",
           [](W& w) {
               const Any value = Text(L"neu, und lang genug");
               w.child->SetProperty(K().note, value);
           }},
        Op{"SetCopy",
           [](W& w) {
               const Any value = Text(L"neu");
               w.base->SetProperty(K().note, value);
           },
           Promise::MayClear, Promise::MayClear, false, true, Promise::MayClear},
        Op{"SetCopyOfSubstyle",
           [](W& w) {
               const Any value(w.grandchild->GetSubstyle(K().character, false));
               w.base->SetProperty(K().character, value);
           },
           Promise::MayClear, Promise::MayClear, false, true, Promise::MayClear},
        Op{"SetOwnSubstyle",
           [](W& w) {
               const Any value = w.base->GetProperty(K().character);
               w.base->SetProperty(K().character, value);
           },
           Promise::MayClear, Promise::MayClear, false, false, Promise::MayClear},
        Op{"SetMoved", [](W& w) { w.base->SetProperty(K().note, Text(L"neu")); }},
        Op{"SetMovedSubstyle",
           [](W& w) { w.base->SetProperty(K().character, Any(w.grandchild->GetSubstyle(K().character, false))); }},
        Op{"SetMovedList", [](W& w) { w.ancestor->SetProperty(K().stops, Any(w.grandchild->GetProperty(K().stops))); }},
        Op{"SetNewList", [](W& w) { w.child->SetProperty(K().stops, Any(w.grandchild->GetProperty(K().stops))); }},
        Op{"SetSubstyle",
           [](W& w) { w.loose->SetSubstyle(K().character, w.grandchild->GetSubstyle(K().character, false)); }},
        Op{"SetPathProperty",
           [](W& w) {
               const Any value = Text(L"neu");
               w.loose->SetPathProperty(SplitPath(L"character.fill.color"), value);
           },
           Promise::Stepwise, Promise::Stepwise},
        Op{"SetPathPropertyMoved",
           [](W& w) { w.loose->SetPathProperty(SplitPath(L"character.fill.color"), Text(L"neu")); }, Promise::Stepwise,
           Promise::Stepwise},
        Op{"SetPathPropertyFrom",
           [](W& w) { w.loose->SetPathProperty(SplitPath(L"character.fill.scale"), w.grandchild); }, Promise::Stepwise,
           Promise::Stepwise},
        Op{"SetPathSubstyle",
           [](W& w) {
               w.loose->SetPathSubstyle(SplitPath(L"character.fill"), w.grandchild->GetSubstyle(K().fill, true));
           },
           Promise::Stepwise, Promise::Stepwise},
        Op{"SetProperties",
           [](W& w) {
               w.loose->SetProperties({SplitPath(L"character.fill.xScale"), SplitPath(L"note"), SplitPath(L"number")},
                                      w.grandchild);
           },
           Promise::Stepwise, Promise::MayClear},
        Op{"GetSubstyleAndCreateIfMissing",
           [](W& w) { w.loose->GetSubstyleAndCreateIfMissing(K().character, K().character); }},
        Op{"ClearProperty", [](W& w) { w.base->ClearProperty(K().character); }, Promise::ThrowsNothing,
           Promise::ThrowsNothing, false, true, Promise::Done},
        Op{"ClearPathProperty", [](W& w) { w.base->ClearPathProperty(SplitPath(L"character.fill.color")); },
           Promise::Unchanged, Promise::ThrowsNothing, false, true, Promise::Done},
        Op{"RevertPathProperty", [](W& w) { w.base->RevertPathProperty(SplitPath(L"character.fill"), false); },
           Promise::Unchanged, Promise::ThrowsNothing, false, true, Promise::Done},
        Op{"ClearProperties", [](W& w) { w.loose->ClearProperties(w.ancestor); }, Promise::Stepwise, Promise::Stepwise},
        Op{"ClearAllProperties", [](W& w) { w.base->ClearAllProperties(); }, Promise::ThrowsNothing,
           Promise::ThrowsNothing, false, true, Promise::Done},
        Op{"RevertAllProperties", [](W& w) { w.grandchild->RevertAllProperties(); }, Promise::Stepwise,
           Promise::Stepwise, false, true, Promise::Stepwise},
        Op{"CopyProperties",
           [](W& w) {
               w.made.reset(w.grandchild->CopyProperties({K().note, K().fill, K().stops, K().character}));
           }}),
    OperationName());

std::vector<Style*> Three(const W& w)
{
    return {w.base, w.line, w.stopParent};
}

INSTANTIATE_TEST_SUITE_P(
    Merging, StyleFaults,
    testing::Values(
        Op{"Merge", [](W& w) { w.loose->MergeProperties(w.grandchild, false); }, Promise::Stepwise, Promise::Stepwise},
        Op{"MergeOverwriting", [](W& w) { w.loose->MergeProperties(w.grandchild, true); }, Promise::Stepwise,
           Promise::Stepwise},
        Op{"MergeOwnSubstyle", [](W& w) { w.nest->MergeProperties(w.nest->GetSubstyle(K().nest, false), true); },
           Promise::Stepwise, Promise::Stepwise, false, false},
        Op{"MergeParent", [](W& w) { w.child->MergeParentProperties(w.base); }, Promise::Stepwise, Promise::Stepwise},
        Op{"Flatten", [](W& w) { w.grandchild->Flatten(); }, Promise::SameEffect, Promise::SameEffect, false, true,
           Promise::SameEffect},
        // What would nest without end is cut in the end, so that look-ups deep inside change.
        Op{"FlattenNest", [](W& w) { w.nest->Flatten(); }, Promise::Stepwise, Promise::Stepwise},
        Op{"FlattenIntoASet",
           [](W& w) {
               std::set<PropertyKey> changed;
               w.child->Flatten(changed);
           },
           Promise::SameEffect, Promise::SameEffect, false, true, Promise::SameEffect},
        Op{"CreateFlattenedStyle", [](W& w) { w.made.reset(w.grandchild->CreateFlattenedStyle()); }},
        Op{"CreateStyleClone",
           [](W& w) {
               w.made.reset(w.grandchild->GetSubstyle(K().character, false)->CreateStyleCloneWithNoDependencyOnOwner());
           }},
        Op{"CreateSubStyleClone",
           [](W& w) { w.made.reset(w.grandchild->CreateSubStyleCloneWithNoDependencyOnOwner(K().fill)); }},
        Op{"CreateSubStyleCloneOfNothing",
           [](W& w) { w.made.reset(w.nest->CreateSubStyleCloneWithNoDependencyOnOwner(K().fill)); }},
        Op{"CopySubstyleProperties", [](W& w) { w.loose->CopySubstyleProperties(w.grandchild, K().character); }},
        Op{"CopySubstyleOverAnother", [](W& w) { w.loose->CopySubstyleProperties(w.grandchild, K().fill); },
           Promise::MayClear, Promise::MayClear}),
    OperationName());

INSTANTIATE_TEST_SUITE_P(
    Depending, StyleFaults,
    testing::Values(
        Op{"HasDependency", [](W& w) { (void)w.grandchild->HasDependency(Three(w)); }},
        Op{"HasDirectDependency", [](W& w) { (void)w.grandchild->HasDirectDependency(Three(w)); }},
        Op{"GetDependencies", [](W& w) { (void)w.grandchild->GetDependencies(Three(w), false); }},
        Op{"GetDirectDependencies", [](W& w) { (void)w.grandchild->GetDependencies(Three(w), true); }},
        Op{"HasParentalDependencyOnSome", [](W& w) { (void)w.grandchild->HasParentalDependency(Three(w)); }},
        Op{"HasParentalDependency", [](W& w) { (void)w.nest->HasParentalDependency(); }},
        Op{"RemoveDependency", [](W& w) { w.grandchild->RemoveDependency(Three(w), false); }, Promise::SameEffect,
           Promise::SameEffect},
        Op{"RemoveDirectDependency", [](W& w) { w.child->RemoveDependency(Three(w), true); }, Promise::SameEffect,
           Promise::SameEffect},
        // What would nest without end is cut in the end, so that look-ups deep inside change.
        Op{"RemoveDependencyOfANest", [](W& w) { w.nest->RemoveDependency(std::vector<Style*>{w.nest}, false); },
           Promise::Stepwise, Promise::Stepwise},
        Op{"RemoveAllDependencies", [](W& w) { w.grandchild->RemoveAllDependencies(); }, Promise::SameEffect,
           Promise::SameEffect},
        Op{"RemapDependency",
           [](W& w) {
               w.grandchild->RemapDependency({{w.child, w.base}, {w.stopParent, nullptr}, {w.line, w.oldLine}});
           },
           Promise::Stepwise, Promise::Stepwise},
        Op{"RemapPointer",
           [](W& w) {
               w.grandchild->RemapPointer({{Text(L"a"), Text(L"b")}});
           }},
        Op{"ProcessProperties",
           [](W& w) {
               w.grandchild->ProcessProperties([](Any& value, Style*, const PropertyKey&) {
                   ReachCall();
                   if (value.Is<double>())
                   {
                       value = Any(8.0);
                   }
                   return true;
               });
           },
           Promise::Stepwise, Promise::Stepwise},
        Op{"ProcessPaths",
           [](W& w) {
               w.grandchild->ProcessProperties({SplitPath(L"character.size"), SplitPath(L"note")},
                                               [](Any&, Style* style, const PropertyKey& key) {
                                                   ReachCall();
                                                   style->SetProperty(key, Text(L"besucht"));
                                                   return true;
                                               });
           },
           Promise::Stepwise, Promise::Stepwise, false, true, Promise::Stepwise},
        Op{"ProcessWhileClearing",
           [](W& w) {
               w.grandchild->ProcessProperties([](Any&, Style* style, const PropertyKey& key) {
                   ReachCall();
                   style->ClearProperty(key);
                   ReachCall();
                   return true;
               });
           },
           Promise::Stepwise, Promise::Stepwise, false, true, Promise::Stepwise}),
    OperationName());

/// Members for a style that has values already.
const Json::Object& MoreMembers()
{
    static const Json::Object object = [] {
        Json::Object character;
        character.AddValue(L"font", VelString(L"gelesene Schrift"));
        Json::Object members;
        members.AddValue(L"inherits", VelString(L"Linie, etwas neuer"));
        members.AddValue(L"id", VelString(L"gelesene Kennung"));
        members.AddValue(L"number", VelString(L"8"));
        members.AddValue(L"character", std::move(character));
        members.AddValue(L"note", VelString(L"gelesene Notiz"));
        return members;
    }();
    return object;
}

INSTANTIATE_TEST_SUITE_P(
    Json, StyleFaults,
    testing::Values(Op{"Serialize",
                       [](W& w) {
                           Json::Variant out;
                           w.grandchild->Serialize(w.sheet, out, true);
                       }},
                    Op{"SerializeText", [](W& w) { (void)w.grandchild->Serialize(w.sheet, true, false); }},
                    Op{"Deserialize",
                       [](W& w) {
                           Json::Variant out;
                           w.grandchild->Serialize(w.sheet, out, true);
                           w.made.reset(Style::Deserialize(w.sheet, out.Get<Json::Object>(), StyleCategoryName));
                       }},
                    Op{"DeserializeJson",
                       [](W& w) {
                           Json::Variant out;
                           w.grandchild->Serialize(w.sheet, out, true);
                           Style read(nullptr, StyleCategoryName);
                           read.DeserializeJson(w.sheet, out.Get<Json::Object>());
                           w.made = std::make_unique<Style>(read);
                       }},
                    Op{"DeserializeMore",
                       [](W& w) {
                           w.loose->DeserializeJson(w.sheet, MoreMembers());
                           for (const PropertyKey& key : w.loose->GetCategory()->GetPropertyNames())
                           {
                               w.loose->GetCategory()->GetStyleProperty(key)->AdjustAfterDeserialize(w.sheet,
                                                                                                     w.loose.get());
                           }
                       },
                       Promise::Stepwise, Promise::Stepwise, false, false, Promise::Stepwise}),
    OperationName());

class SerializeFaults : public testing::Test
{
    FaultySchema m_schema;
};

/// Asserts that `out` holds the first members of `whole`, and returns how many.
std::size_t CountFirstMembers(const Json::Variant& out, const Json::Variant& whole)
{
    const auto& written = out.Get<Json::Object>();
    const auto& all = whole.Get<Json::Object>();
    for (std::size_t index = 0; index < written.GetSize(); ++index)
    {
        EXPECT_EQ(written.GetValueName(index), all.GetValueName(index));
        EXPECT_EQ(*written.GetValue(index), *all.GetValue(index));
    }
    return written.GetSize();
}

TEST_F(SerializeFaults, LeaveTheMembersThatWereWrittenBeforeADefinitionThrew)
{
    const W w;
    Json::Variant whole;
    CallPoints().Count();
    w.grandchild->Serialize(w.sheet, whole, true);
    CallPoints().Disarm();
    const std::size_t count = CallPoints().GetReached();
    std::set<std::size_t> sizes;
    for (std::size_t n = 1; n <= count; ++n)
    {
        Json::Variant out = VelString(L"davor");
        CallPoints().Arm(n, FailureMode::Once);
        EXPECT_THROW(w.grandchild->Serialize(w.sheet, out, true), HostFailure);
        CallPoints().Disarm();
        sizes.insert(CountFirstMembers(out, whole));
    }
    EXPECT_EQ(sizes.size(), whole.Get<Json::Object>().GetSize() - 1) << "some member was never the first to fail";
}

} // namespace

} // namespace Styles::Testing
