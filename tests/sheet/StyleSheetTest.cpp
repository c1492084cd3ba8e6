#include <styles/StyleSheet.h>

#include "sheet/DestructionProbe.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace Styles::Testing
{

namespace
{

static_assert(!std::is_copy_assignable_v<Styles::StyleSheet>);
static_assert(std::is_copy_constructible_v<Styles::StyleSheet>);
static_assert(std::has_virtual_destructor_v<Styles::StyleSheet>);

class StyleSheet : public DestructionFixture
{};

VelString Name(const wchar_t* text)
{
    return VelString(text);
}

} // namespace

TEST_F(StyleSheet, StartsEmptyAtTheCurrentVersion)
{
    TestSheet sheet;
    EXPECT_EQ(sheet.GetVersion(), 3);
    EXPECT_EQ(sheet.GetExternalID(), VelString());
    EXPECT_THAT(sheet.GetStyles(), IsEmpty());
    EXPECT_THAT(sheet.GetStyleNames(), IsEmpty());
    Manager().SetCurrentVersion(-1);
    EXPECT_EQ(TestSheet().GetVersion(), -1);
}

TEST_F(StyleSheet, ListsItsStylesInTheOrderOfTheirNamesWithoutCase)
{
    TestSheet sheet;
    Style* b = AddTo(sheet, L"b");
    Style* c = AddTo(sheet, L"C");
    Style* a = AddTo(sheet, L"A");
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(a, b, c));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(Name(L"A"), Name(L"b"), Name(L"C")));
}

TEST_F(StyleSheet, FindsAStyleWithoutRegardToCase)
{
    TestSheet sheet;
    Style* style = AddTo(sheet, L"Überschrift 1");
    EXPECT_EQ(sheet.Get(L"Überschrift 1"), style);
    EXPECT_EQ(sheet.Get(L"üBERSCHRIFT 1"), style);
    EXPECT_EQ(sheet.Get(L"Überschrift"), nullptr);
    EXPECT_EQ(sheet.Get(L""), nullptr);
    EXPECT_EQ(sheet.GetStyleName(style), Name(L"Überschrift 1"));
}

TEST_F(StyleSheet, AClashOfNamesDestroysTheStyleThatIsOffered)
{
    TestSheet sheet;
    Style* old = AddTo(sheet, L"Heading");
    EXPECT_EQ(sheet.AddStyle(Name(L"heading"), MakeStyle(L"offered"), false), nullptr);
    EXPECT_THAT(destroyed, ElementsAre("offered"));
    EXPECT_EQ(sheet.Get(L"heading"), old);
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(Name(L"Heading")));
    EXPECT_EQ(sheet.AddStyle(Name(L"heading"), nullptr, false), nullptr);
    EXPECT_EQ(sheet.Get(L"heading"), old);
}

TEST_F(StyleSheet, ReplacingGivesTheOldStyleBackAndTakesTheNewSpelling)
{
    TestSheet sheet;
    Style* old = AddTo(sheet, L"Heading");
    Style* offered = MakeStyle(L"offered");
    const std::unique_ptr<Style> removed(sheet.AddStyle(Name(L"HEADING"), offered, true));
    EXPECT_EQ(removed.get(), old);
    EXPECT_THAT(destroyed, IsEmpty());
    EXPECT_EQ(sheet.Get(L"heading"), offered);
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(Name(L"HEADING")));
    EXPECT_EQ(sheet.GetStyleName(old), VelString());
    EXPECT_EQ(sheet.GetStyleName(offered), Name(L"HEADING"));
}

TEST_F(StyleSheet, ReplacingWhereNothingIsThereJustAdds)
{
    TestSheet sheet;
    Style* style = MakeStyle(L"new");
    EXPECT_EQ(sheet.AddStyle(Name(L"new"), style, true), nullptr);
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(style));
}

TEST_F(StyleSheet, ReplacingAStyleByItselfKeepsIt)
{
    TestSheet sheet;
    Style* style = AddTo(sheet, L"name");
    EXPECT_EQ(sheet.AddStyle(Name(L"NAME"), style, true), style);
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(style));
    EXPECT_EQ(sheet.GetStyleName(style), Name(L"NAME"));
    EXPECT_THAT(destroyed, IsEmpty());
}

TEST_F(StyleSheet, ANullStyleIsStored)
{
    TestSheet sheet;
    EXPECT_EQ(sheet.AddStyle(Name(L"null"), nullptr, false), nullptr);
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(nullptr));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(Name(L"null")));
    EXPECT_EQ(sheet.GetStyleName(nullptr), VelString());
    EXPECT_FALSE(sheet.RemoveStyle(static_cast<Style*>(nullptr)));
    EXPECT_EQ(sheet.RemoveStyle(Name(L"NULL")), nullptr);
    EXPECT_THAT(sheet.GetStyleNames(), IsEmpty());
}

TEST_F(StyleSheet, NullEntriesArePassedOverByEveryWalk)
{
    TestSheet sheet;
    sheet.AddStyle(Name(L"a"), nullptr, false);
    Style* parent = AddTo(sheet, L"b");
    Style* child = AddTo(sheet, L"c", parent);
    sheet.AddStyle(Name(L"d"), nullptr, false);
    EXPECT_THAT(sheet.GetStylesByName({Name(L"a"), Name(L"b"), Name(L"d")}), ElementsAre(parent));
    EXPECT_THAT(sheet.GetStylesByCategory(StyleCategoryName), ElementsAre(parent, child));
    EXPECT_THAT(sheet.GetStylesByCategory(PropertyKey::Empty), IsEmpty());
    EXPECT_THAT(sheet.GetStyleNames(StyleCategoryName), ElementsAre(Name(L"b"), Name(L"c")));
    EXPECT_THAT(sheet.GetStyleNames(PropertyKey::Empty), IsEmpty());
    EXPECT_THAT(sheet.GetChildStyles(parent), ElementsAre(Pair(Name(L"c"), child)));
    std::vector<Style*> dependants;
    sheet.GetDependencies(StyleSpan(std::vector<Style*>{parent, nullptr}), dependants);
    EXPECT_THAT(dependants, ElementsAre(parent, child));
    EXPECT_EQ(sheet.GetExternalStyleAlias(Name(L"id"), Name(L"name")), nullptr);
    TestSheet::CategoryStyleMap byCategory;
    sheet.GenerateCategoryStyleMap(byCategory);
    EXPECT_THAT(byCategory,
                ElementsAre(Pair(StyleCategoryName, ElementsAre(Pair(Name(L"b"), parent), Pair(Name(L"c"), child)))));
    const std::vector<Style*> doomed{nullptr, parent};
    EXPECT_TRUE(sheet.DeleteStyles(StyleSpan(doomed)));
    EXPECT_EQ(child->GetParent(), nullptr);
    TestSheet reader;
    EXPECT_TRUE(reader.Read(sheet.Write()));
    EXPECT_THAT(reader.GetStyleNames(), ElementsAre(Name(L"c")));
    sheet.RenameStyle(Name(L"a"), Name(L"e"));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(Name(L"c"), Name(L"d"), Name(L"e")));
    TestSheet other;
    sheet.MergeIn(other, true);
    sheet.Clear();
    EXPECT_THAT(sheet.GetStyleNames(), IsEmpty());
}

TEST_F(StyleSheet, AStyleThatIsTakenOutBelongsToTheCaller)
{
    TestSheet sheet;
    Style* first = AddTo(sheet, L"first");
    Style* second = AddTo(sheet, L"second");
    const std::unique_ptr<Style> owned(sheet.RemoveStyle(Name(L"FIRST")));
    EXPECT_EQ(owned.get(), first);
    EXPECT_EQ(sheet.RemoveStyle(Name(L"first")), nullptr);
    EXPECT_FALSE(sheet.RemoveStyle(first));
    EXPECT_TRUE(sheet.RemoveStyle(second));
    const std::unique_ptr<Style> ownedToo(second);
    EXPECT_FALSE(sheet.RemoveStyle(second));
    EXPECT_THAT(sheet.GetStyles(), IsEmpty());
    EXPECT_EQ(sheet.GetStyleName(second), VelString());
    EXPECT_THAT(destroyed, IsEmpty());
}

TEST_F(StyleSheet, DestroysItsStylesInTheOrderOfTheirNames)
{
    {
        TestSheet sheet;
        for (const wchar_t* name : {L"b", L"D", L"a", L"C"})
        {
            AddTo(sheet, name);
        }
    }
    EXPECT_THAT(destroyed, ElementsAre("a", "b", "C", "D"));
}

TEST_F(StyleSheet, ClearingKeepsTheIdentityAndTakesTheCurrentVersion)
{
    TestSheet sheet;
    AddTo(sheet, L"a");
    sheet.SetExternalID(Name(L"id"));
    sheet.SetVersion(1);
    Manager().SetCurrentVersion(8);
    sheet.Clear();
    EXPECT_THAT(destroyed, ElementsAre("a"));
    EXPECT_THAT(sheet.GetStyles(), IsEmpty());
    EXPECT_EQ(sheet.GetExternalID(), Name(L"id"));
    EXPECT_EQ(sheet.GetVersion(), 8);
    AddTo(sheet, L"a");
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(Name(L"a")));
}

TEST_F(StyleSheet, VersionAndIdentityAreSetAndRead)
{
    TestSheet sheet;
    Style* style = AddTo(sheet, L"a");
    sheet.SetVersion(-12);
    EXPECT_EQ(sheet.GetVersion(), -12);
    sheet.SetExternalID(Name(L"id"));
    EXPECT_EQ(sheet.GetExternalID(), Name(L"id"));
    EXPECT_EQ(style->GetExternalID(), VelString()) << "the styles are not told";
}

TEST_F(StyleSheet, StylesAreFoundByNamesInTheOrderGiven)
{
    TestSheet sheet;
    Style* a = AddTo(sheet, L"a");
    Style* b = AddTo(sheet, L"b");
    EXPECT_THAT(sheet.GetStylesByName({Name(L"a"), Name(L"missing"), Name(L"A")}), ElementsAre(a, a));
    EXPECT_THAT(sheet.GetStylesByName({Name(L"b"), Name(L"a")}), ElementsAre(b, a));
    EXPECT_THAT(sheet.GetStylesByName({}), IsEmpty());
}

TEST_F(StyleSheet, StylesAreFoundByCategory)
{
    TestSheet sheet;
    Style* fill = sheet.Add(L"z fill", Fill);
    Style* fillToo = sheet.Add(L"A fill", Fill);
    Style* without = sheet.Add(L"nothing", Key(L"unregistered"));
    AddTo(sheet, L"graphic");
    EXPECT_THAT(sheet.GetStylesByCategory(Fill), ElementsAre(fillToo, fill));
    EXPECT_THAT(sheet.GetStyleNames(Fill), ElementsAre(Name(L"A fill"), Name(L"z fill")));
    EXPECT_THAT(sheet.GetStylesByCategory(PropertyKey::Empty), ElementsAre(without));
    EXPECT_THAT(sheet.GetStyleNames(PropertyKey::Empty), ElementsAre(Name(L"nothing")));
    EXPECT_THAT(sheet.GetStylesByCategory(Key(L"FILL")), IsEmpty());
    EXPECT_THAT(sheet.GetStyleNames(Outline), IsEmpty());
}

TEST_F(StyleSheet, ChildrenAreTheDirectHeirsOnly)
{
    TestSheet sheet;
    Style* parent = AddTo(sheet, L"parent");
    Style* child = AddTo(sheet, L"B child", parent);
    Style* childToo = AddTo(sheet, L"a child", parent);
    Style* grandchild = AddTo(sheet, L"grandchild", child);
    EXPECT_THAT(sheet.GetChildStyles(parent),
                ElementsAre(Pair(Name(L"a child"), childToo), Pair(Name(L"B child"), child)));
    EXPECT_THAT(sheet.GetChildStyles(child), ElementsAre(Pair(Name(L"grandchild"), grandchild)));
    EXPECT_THAT(sheet.GetChildStyles(grandchild), IsEmpty());
    EXPECT_THAT(sheet.GetChildStyles(nullptr), IsEmpty()) << "not: the styles without parent";
    Style outside(nullptr, StyleCategoryName);
    childToo->SetParent(&outside);
    EXPECT_THAT(sheet.GetChildStyles(&outside), ElementsAre(Pair(Name(L"a child"), childToo)));
}

TEST_F(StyleSheet, AnExternalStyleIsFoundByExactlyItsIdentityAndName)
{
    TestSheet sheet;
    const auto add = [&](const wchar_t* name, const wchar_t* id, const wchar_t* externalName) {
        Style* style = AddTo(sheet, name);
        style->SetExternalID(Name(id));
        style->SetExternalName(Name(externalName));
        return style;
    };
    add(L"c", L"id", L"name");
    Style* first = add(L"b", L"id", L"name");
    add(L"a", L"id", L"Name");
    add(L"0", L"ID", L"name");
    add(L"1", L"", L"name");
    add(L"2", L"id", L"");
    EXPECT_EQ(sheet.GetExternalStyleAlias(Name(L"id"), Name(L"name")), first);
    EXPECT_EQ(sheet.GetExternalStyleAlias(Name(L"id"), Name(L"other")), nullptr);
    EXPECT_EQ(sheet.GetExternalStyleAlias(Name(L"Id"), Name(L"name")), nullptr);
    EXPECT_EQ(sheet.GetExternalStyleAlias(VelString(), Name(L"name")), nullptr);
    EXPECT_EQ(sheet.GetExternalStyleAlias(Name(L"id"), VelString()), nullptr);
}

TEST_F(StyleSheet, AStyleUnderTwoNamesIsKnownByTheLast)
{
    TestSheet sheet;
    Style* style = AddTo(sheet, L"first");
    sheet.AddStyle(Name(L"second"), style, false);
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(style, style));
    EXPECT_EQ(sheet.GetStyleName(style), Name(L"second"));
    EXPECT_TRUE(sheet.RemoveStyle(style));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(Name(L"first")));
    EXPECT_EQ(sheet.Get(L"first"), style);
    EXPECT_EQ(sheet.GetStyleName(style), VelString());
    EXPECT_THAT(destroyed, IsEmpty());
    EXPECT_FALSE(sheet.RemoveStyle(style)) << "it is listed under a name that it is not known by";
    sheet.Clear();
    EXPECT_THAT(destroyed, ElementsAre("first"));
}

TEST_F(StyleSheet, AStyleUnderSeveralNamesIsDestroyedOnce)
{
    {
        TestSheet sheet;
        Style* style = AddTo(sheet, L"b");
        for (const wchar_t* name : {L"d", L"a", L"c"})
        {
            sheet.AddStyle(Name(name), style, false);
        }
        AddTo(sheet, L"e");
    }
    EXPECT_THAT(destroyed, testing::UnorderedElementsAre("b", "e"));
    destroyed.clear();
    {
        TestSheet sheet;
        Style* style = AddTo(sheet, L"b");
        sheet.AddStyle(Name(L"a"), style, false);
        sheet.AddStyle(Name(L"c"), style, false);
        EXPECT_TRUE(sheet.RemoveStyle(style)); // the names a and b are left, and it is known by neither
    }
    EXPECT_THAT(destroyed, ElementsAre("b"));
}

TEST_F(StyleSheet, AStyleThatMustGoWhileItIsListedBecomesEmpty)
{
    TestSheet sheet;
    Style* style = AddTo(sheet, L"first");
    sheet.AddStyle(Name(L"second"), style, false);
    const std::vector<Style*> doomed{style};
    EXPECT_TRUE(sheet.DeleteStyles(StyleSpan(doomed)));
    EXPECT_THAT(destroyed, ElementsAre("first")) << "its values are";
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(Name(L"first")));
    ASSERT_EQ(sheet.Get(L"first"), style);
    EXPECT_TRUE(style->IsEmpty());
    EXPECT_EQ(style->GetCategoryName(), PropertyKey::Empty);
    EXPECT_EQ(sheet.AddStyle(Name(L"FIRST"), style, false), nullptr) << "a clash with itself";
    EXPECT_EQ(sheet.Get(L"first"), style);
}

TEST_F(StyleSheet, ACopySharesTheCollectionOfItsSource)
{
    TestSheet source;
    Style* style = AddTo(source, L"a");
    source.SetExternalID(Name(L"id"));
    source.SetVersion(5);
    alignas(TestSheet) std::byte storage[sizeof(TestSheet)];
    auto* copy = new (storage) TestSheet(source); // never destroyed: its source is
    EXPECT_THAT(copy->GetStyles(), ElementsAre(style));
    EXPECT_EQ(copy->GetVersion(), 5);
    EXPECT_EQ(copy->GetExternalID(), Name(L"id"));
    Style* added = AddTo(*copy, L"b");
    EXPECT_EQ(source.Get(L"b"), added);
    EXPECT_EQ(source.GetStyleName(added), Name(L"b"));
    copy->SetExternalID(VelString());
    copy->SetVersion(6);
    EXPECT_EQ(source.GetExternalID(), Name(L"id")) << "version and identity are its own";
    EXPECT_EQ(source.GetVersion(), 5);
    copy->CopyContentsFrom(source, nullptr);
    EXPECT_THAT(source.GetStyles(), ElementsAre(style, added)) << "the contents are there already";
}

TEST_F(StyleSheet, MergingInWorksOnTheOwnStylesAndEmptiesTheNamesOfTheOther)
{
    for (const bool replace : {false, true})
    {
        destroyed.clear();
        TestSheet sheet;
        Style* a = AddTo(sheet, L"A");
        Style* b = AddTo(sheet, L"b", a);
        TestSheet other;
        const std::unique_ptr<Style> orphan(AddTo(other, L"other"));
        sheet.MergeIn(other, replace);
        EXPECT_THAT(destroyed, ElementsAre("A", "b")) << "every own style under its own name";
        EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(Name(L"A"), Name(L"b")));
        EXPECT_THAT(sheet.GetStyles(), ElementsAre(a, b)) << "they stay listed, empty";
        EXPECT_TRUE(a->IsEmpty());
        EXPECT_TRUE(b->IsEmpty());
        EXPECT_EQ(b->GetParent(), nullptr);
        EXPECT_EQ(a->GetCategoryName(), PropertyKey::Empty);
        EXPECT_EQ(sheet.GetStyleName(a), Name(L"A"));
        EXPECT_THAT(other.GetStyleNames(), IsEmpty());
        EXPECT_EQ(other.GetStyleName(orphan.get()), Name(L"other")) << "the names by style are left";
        EXPECT_EQ(OwnText(*orphan, Probe), Name(L"other"));
    }
}

TEST_F(StyleSheet, MergingInToItselfEmptiesItsNames)
{
    TestSheet sheet;
    const std::unique_ptr<Style> orphan(AddTo(sheet, L"a"));
    sheet.MergeIn(sheet, true);
    EXPECT_THAT(sheet.GetStyles(), IsEmpty());
    EXPECT_TRUE(orphan->IsEmpty());
}

} // namespace Styles::Testing
