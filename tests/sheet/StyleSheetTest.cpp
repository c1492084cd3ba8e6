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
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"A"), VelString(L"b"), VelString(L"C")));
}

TEST_F(StyleSheet, FindsAStyleWithoutRegardToCase)
{
    TestSheet sheet;
    Style* style = AddTo(sheet, L"Überschrift 1");
    EXPECT_EQ(sheet.Get(L"Überschrift 1"), style);
    EXPECT_EQ(sheet.Get(L"üBERSCHRIFT 1"), style);
    EXPECT_EQ(sheet.Get(L"Überschrift"), nullptr);
    EXPECT_EQ(sheet.Get(L""), nullptr);
    EXPECT_EQ(sheet.GetStyleName(style), VelString(L"Überschrift 1"));
}

TEST_F(StyleSheet, AClashOfNamesDestroysTheStyleThatIsOffered)
{
    TestSheet sheet;
    Style* old = AddTo(sheet, L"Heading");
    EXPECT_EQ(sheet.AddStyle(VelString(L"heading"), MakeStyle(L"offered"), false), nullptr);
    EXPECT_THAT(destroyed, ElementsAre("offered"));
    EXPECT_EQ(sheet.Get(L"heading"), old);
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"Heading")));
    EXPECT_EQ(sheet.AddStyle(VelString(L"heading"), nullptr, false), nullptr);
    EXPECT_EQ(sheet.Get(L"heading"), old);
}

TEST_F(StyleSheet, ReplacingGivesTheOldStyleBackAndTakesTheNewSpelling)
{
    TestSheet sheet;
    Style* old = AddTo(sheet, L"Heading");
    Style* offered = MakeStyle(L"offered");
    const std::unique_ptr<Style> removed(sheet.AddStyle(VelString(L"HEADING"), offered, true));
    EXPECT_EQ(removed.get(), old);
    EXPECT_THAT(destroyed, IsEmpty());
    EXPECT_EQ(sheet.Get(L"heading"), offered);
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"HEADING")));
    EXPECT_EQ(sheet.GetStyleName(old), VelString());
    EXPECT_EQ(sheet.GetStyleName(offered), VelString(L"HEADING"));
}

TEST_F(StyleSheet, ReplacingWhereNothingIsThereJustAdds)
{
    TestSheet sheet;
    Style* style = MakeStyle(L"new");
    EXPECT_EQ(sheet.AddStyle(VelString(L"new"), style, true), nullptr);
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(style));
}

TEST_F(StyleSheet, ReplacingAStyleByItselfKeepsIt)
{
    TestSheet sheet;
    Style* style = AddTo(sheet, L"name");
    EXPECT_EQ(sheet.AddStyle(VelString(L"NAME"), style, true), style);
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(style));
    EXPECT_EQ(sheet.GetStyleName(style), VelString(L"NAME"));
    EXPECT_THAT(destroyed, IsEmpty());
}

TEST_F(StyleSheet, ANullStyleIsStored)
{
    TestSheet sheet;
    EXPECT_EQ(sheet.AddStyle(VelString(L"null"), nullptr, false), nullptr);
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(nullptr));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"null")));
    EXPECT_EQ(sheet.GetStyleName(nullptr), VelString());
    EXPECT_FALSE(sheet.RemoveStyle(static_cast<Style*>(nullptr)));
    EXPECT_EQ(sheet.RemoveStyle(VelString(L"NULL")), nullptr);
    EXPECT_THAT(sheet.GetStyleNames(), IsEmpty());
}

TEST_F(StyleSheet, NullEntriesArePassedOverByEveryWalk)
{
    TestSheet sheet;
    sheet.AddStyle(VelString(L"a"), nullptr, false);
    Style* parent = AddTo(sheet, L"b");
    Style* child = AddTo(sheet, L"c", parent);
    sheet.AddStyle(VelString(L"d"), nullptr, false);
    EXPECT_THAT(sheet.GetStylesByName({VelString(L"a"), VelString(L"b"), VelString(L"d")}), ElementsAre(parent));
    EXPECT_THAT(sheet.GetStylesByCategory(StyleCategoryName), ElementsAre(parent, child));
    EXPECT_THAT(sheet.GetStylesByCategory(PropertyKey::Empty), IsEmpty());
    EXPECT_THAT(sheet.GetStyleNames(StyleCategoryName), ElementsAre(VelString(L"b"), VelString(L"c")));
    EXPECT_THAT(sheet.GetStyleNames(PropertyKey::Empty), IsEmpty());
    EXPECT_THAT(sheet.GetChildStyles(parent), ElementsAre(Pair(VelString(L"c"), child)));
    std::vector<Style*> dependants;
    sheet.GetDependencies(StyleSpan(std::vector<Style*>{parent, nullptr}), dependants);
    EXPECT_THAT(dependants, ElementsAre(parent, child));
    EXPECT_EQ(sheet.GetExternalStyleAlias(VelString(L"id"), VelString(L"name")), nullptr);
    TestSheet::CategoryStyleMap byCategory;
    sheet.GenerateCategoryStyleMap(byCategory);
    EXPECT_THAT(byCategory, ElementsAre(Pair(StyleCategoryName, ElementsAre(Pair(VelString(L"b"), parent),
                                                                            Pair(VelString(L"c"), child)))));
    const std::vector<Style*> doomed{nullptr, parent};
    EXPECT_TRUE(sheet.DeleteStyles(StyleSpan(doomed)));
    EXPECT_EQ(child->GetParent(), nullptr);
    TestSheet reader;
    EXPECT_TRUE(reader.Read(sheet.Write()));
    EXPECT_THAT(reader.GetStyleNames(), ElementsAre(VelString(L"c")));
    sheet.RenameStyle(VelString(L"a"), VelString(L"e"));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"c"), VelString(L"d"), VelString(L"e")));
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
    const std::unique_ptr<Style> owned(sheet.RemoveStyle(VelString(L"FIRST")));
    EXPECT_EQ(owned.get(), first);
    EXPECT_EQ(sheet.RemoveStyle(VelString(L"first")), nullptr);
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
    sheet.SetExternalID(VelString(L"id"));
    sheet.SetVersion(1);
    Manager().SetCurrentVersion(8);
    sheet.Clear();
    EXPECT_THAT(destroyed, ElementsAre("a"));
    EXPECT_THAT(sheet.GetStyles(), IsEmpty());
    EXPECT_EQ(sheet.GetExternalID(), VelString(L"id"));
    EXPECT_EQ(sheet.GetVersion(), 8);
    AddTo(sheet, L"a");
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"a")));
}

TEST_F(StyleSheet, VersionAndIdentityAreSetAndRead)
{
    TestSheet sheet;
    Style* style = AddTo(sheet, L"a");
    sheet.SetVersion(-12);
    EXPECT_EQ(sheet.GetVersion(), -12);
    sheet.SetExternalID(VelString(L"id"));
    EXPECT_EQ(sheet.GetExternalID(), VelString(L"id"));
    EXPECT_EQ(style->GetExternalID(), VelString()) << "the styles are not told";
}

TEST_F(StyleSheet, StylesAreFoundByNamesInTheOrderGiven)
{
    TestSheet sheet;
    Style* a = AddTo(sheet, L"a");
    Style* b = AddTo(sheet, L"b");
    EXPECT_THAT(sheet.GetStylesByName({VelString(L"a"), VelString(L"missing"), VelString(L"A")}), ElementsAre(a, a));
    EXPECT_THAT(sheet.GetStylesByName({VelString(L"b"), VelString(L"a")}), ElementsAre(b, a));
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
    EXPECT_THAT(sheet.GetStyleNames(Fill), ElementsAre(VelString(L"A fill"), VelString(L"z fill")));
    EXPECT_THAT(sheet.GetStylesByCategory(PropertyKey::Empty), ElementsAre(without));
    EXPECT_THAT(sheet.GetStyleNames(PropertyKey::Empty), ElementsAre(VelString(L"nothing")));
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
                ElementsAre(Pair(VelString(L"a child"), childToo), Pair(VelString(L"B child"), child)));
    EXPECT_THAT(sheet.GetChildStyles(child), ElementsAre(Pair(VelString(L"grandchild"), grandchild)));
    EXPECT_THAT(sheet.GetChildStyles(grandchild), IsEmpty());
    EXPECT_THAT(sheet.GetChildStyles(nullptr), IsEmpty()) << "not: the styles without parent";
    Style outside(nullptr, StyleCategoryName);
    childToo->SetParent(&outside);
    EXPECT_THAT(sheet.GetChildStyles(&outside), ElementsAre(Pair(VelString(L"a child"), childToo)));
}

TEST_F(StyleSheet, AnExternalStyleIsFoundByExactlyItsIdentityAndName)
{
    TestSheet sheet;
    const auto add = [&](const wchar_t* name, const wchar_t* id, const wchar_t* externalName) {
        Style* style = AddTo(sheet, name);
        style->SetExternalID(VelString(id));
        style->SetExternalName(VelString(externalName));
        return style;
    };
    add(L"c", L"id", L"name");
    Style* first = add(L"b", L"id", L"name");
    add(L"a", L"id", L"Name");
    add(L"0", L"ID", L"name");
    add(L"1", L"", L"name");
    add(L"2", L"id", L"");
    EXPECT_EQ(sheet.GetExternalStyleAlias(VelString(L"id"), VelString(L"name")), first);
    EXPECT_EQ(sheet.GetExternalStyleAlias(VelString(L"id"), VelString(L"other")), nullptr);
    EXPECT_EQ(sheet.GetExternalStyleAlias(VelString(L"Id"), VelString(L"name")), nullptr);
    EXPECT_EQ(sheet.GetExternalStyleAlias(VelString(), VelString(L"name")), nullptr);
    EXPECT_EQ(sheet.GetExternalStyleAlias(VelString(L"id"), VelString()), nullptr);
}

TEST_F(StyleSheet, AStyleUnderTwoNamesIsKnownByTheLast)
{
    TestSheet sheet;
    Style* style = AddTo(sheet, L"first");
    sheet.AddStyle(VelString(L"second"), style, false);
    EXPECT_THAT(sheet.GetStyles(), ElementsAre(style, style));
    EXPECT_EQ(sheet.GetStyleName(style), VelString(L"second"));
    EXPECT_TRUE(sheet.RemoveStyle(style));
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"first")));
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
            sheet.AddStyle(VelString(name), style, false);
        }
        AddTo(sheet, L"e");
    }
    EXPECT_THAT(destroyed, testing::UnorderedElementsAre("b", "e"));
    destroyed.clear();
    {
        TestSheet sheet;
        Style* style = AddTo(sheet, L"b");
        sheet.AddStyle(VelString(L"a"), style, false);
        sheet.AddStyle(VelString(L"c"), style, false);
        EXPECT_TRUE(sheet.RemoveStyle(style)); // the names a and b are left, and it is known by neither
    }
    EXPECT_THAT(destroyed, ElementsAre("b"));
}

TEST_F(StyleSheet, AStyleThatMustGoWhileItIsListedBecomesEmpty)
{
    TestSheet sheet;
    Style* style = AddTo(sheet, L"first");
    sheet.AddStyle(VelString(L"second"), style, false);
    const std::vector<Style*> doomed{style};
    EXPECT_TRUE(sheet.DeleteStyles(StyleSpan(doomed)));
    EXPECT_THAT(destroyed, ElementsAre("first")) << "its values are";
    EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"first")));
    ASSERT_EQ(sheet.Get(L"first"), style);
    EXPECT_TRUE(style->IsEmpty());
    EXPECT_EQ(style->GetCategoryName(), PropertyKey::Empty);
    EXPECT_EQ(sheet.AddStyle(VelString(L"FIRST"), style, false), nullptr) << "a clash with itself";
    EXPECT_EQ(sheet.Get(L"first"), style);
}

TEST_F(StyleSheet, ACopySharesTheCollectionOfItsSource)
{
    TestSheet source;
    Style* style = AddTo(source, L"a");
    source.SetExternalID(VelString(L"id"));
    source.SetVersion(5);
    alignas(TestSheet) std::byte storage[sizeof(TestSheet)];
    auto* copy = new (storage) TestSheet(source); // never destroyed: its source is
    EXPECT_THAT(copy->GetStyles(), ElementsAre(style));
    EXPECT_EQ(copy->GetVersion(), 5);
    EXPECT_EQ(copy->GetExternalID(), VelString(L"id"));
    Style* added = AddTo(*copy, L"b");
    EXPECT_EQ(source.Get(L"b"), added);
    EXPECT_EQ(source.GetStyleName(added), VelString(L"b"));
    copy->SetExternalID(VelString());
    copy->SetVersion(6);
    EXPECT_EQ(source.GetExternalID(), VelString(L"id")) << "version and identity are its own";
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
        EXPECT_THAT(sheet.GetStyleNames(), ElementsAre(VelString(L"A"), VelString(L"b")));
        EXPECT_THAT(sheet.GetStyles(), ElementsAre(a, b)) << "they stay listed, empty";
        EXPECT_TRUE(a->IsEmpty());
        EXPECT_TRUE(b->IsEmpty());
        EXPECT_EQ(b->GetParent(), nullptr);
        EXPECT_EQ(a->GetCategoryName(), PropertyKey::Empty);
        EXPECT_EQ(sheet.GetStyleName(a), VelString(L"A"));
        EXPECT_THAT(other.GetStyleNames(), IsEmpty());
        EXPECT_EQ(other.GetStyleName(orphan.get()), VelString(L"other")) << "the names by style are left";
        EXPECT_EQ(OwnText(*orphan, Probe), VelString(L"other"));
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
