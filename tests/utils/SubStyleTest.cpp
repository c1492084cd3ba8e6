#include <styles/SubStyle.h>

#include "support/NullKeepingProperty.h"

#include <gmock/gmock.h>

#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;

namespace Styles::Testing
{

namespace
{

using Handle = Styles::SubStyle;

static_assert(!std::is_polymorphic_v<Handle>);
static_assert(!std::is_convertible_v<Style*, Handle>);
static_assert(std::is_nothrow_move_constructible_v<Handle>);

class SubStyle : public SchemaFixture
{
protected:
    SubStyle()
    {
        character = GetOrCreateSubstyle(top, Character);
        fill = GetOrCreateSubstyle(*character, Fill);
        fill->SetProperty(Angle, Any(1.0));
    }

    Style top{nullptr, StyleCategoryName};
    Style* character;
    Style* fill;
};

} // namespace

TEST_F(SubStyle, OfNothingIsEmpty)
{
    const Handle handle(nullptr);
    EXPECT_EQ(handle.GetRoot(), nullptr);
    EXPECT_EQ(static_cast<Style*>(handle), nullptr);
    EXPECT_EQ(handle.operator->(), nullptr);
}

TEST_F(SubStyle, OfATopLevelStyleIsThatStyle)
{
    const Handle handle(&top);
    EXPECT_EQ(handle.GetRoot(), &top);
    EXPECT_EQ(static_cast<Style*>(handle), &top);
    EXPECT_EQ(handle->GetCategoryName(), StyleCategoryName);
    top.ClearAllProperties();
    EXPECT_EQ(static_cast<Style*>(handle), &top);
}

TEST_F(SubStyle, OfASubstyleIsReachedFromTheTop)
{
    const Handle direct(character);
    const Handle deep(fill);
    EXPECT_EQ(direct.GetRoot(), &top);
    EXPECT_EQ(deep.GetRoot(), &top);
    EXPECT_EQ(static_cast<Style*>(direct), character);
    EXPECT_EQ(static_cast<Style*>(deep), fill);
    EXPECT_EQ(deep->GetProperty(Angle).Get<double>(), 1.0);
}

TEST_F(SubStyle, FindsTheSubstyleThatHasTakenThePlace)
{
    const Handle handle(fill);
    Style other(nullptr, Character);
    GetOrCreateSubstyle(other, Fill)->SetProperty(Angle, Any(2.0));
    top.SetSubstyle(Character, &other);
    ASSERT_NE(static_cast<Style*>(handle), nullptr);
    EXPECT_EQ(static_cast<Style*>(handle), top.GetSubstyle(Character, false)->GetSubstyle(Fill, false));
    EXPECT_EQ(handle->GetProperty(Angle).Get<double>(), 2.0);
}

TEST_F(SubStyle, LeadsNowhereWhenTheWayIsGone)
{
    const Handle direct(character);
    const Handle deep(fill);
    character->ClearProperty(Fill);
    EXPECT_EQ(static_cast<Style*>(deep), nullptr);
    EXPECT_EQ(static_cast<Style*>(direct), character);
    top.ClearProperty(Character);
    EXPECT_EQ(static_cast<Style*>(direct), nullptr);
    EXPECT_EQ(static_cast<Style*>(deep), nullptr);
    EXPECT_EQ(deep.GetRoot(), &top);
}

TEST_F(SubStyle, FollowsOwnValuesOnly)
{
    const Handle handle(fill);
    Style parent(nullptr, StyleCategoryName);
    parent.SetSubstyle(Character, character);
    top.SetParent(&parent);
    top.ClearProperty(Character);
    ASSERT_NE(top.GetSubstyle(Character, true), nullptr) << "there is an inherited one";
    EXPECT_EQ(static_cast<Style*>(handle), nullptr);
}

TEST_F(SubStyle, LeadsNowhereThroughAValueThatIsNoSubstyle)
{
    Style lone(nullptr, StyleCategoryName);
    lone.SetProperty(Note, Any(VelString(L"text")));
    Style inside(nullptr, Fill);
    inside.SetOwner(&lone, Note);
    EXPECT_EQ(static_cast<Style*>(Handle(&inside)), nullptr);
}

TEST_F(SubStyle, LeadsNowhereThroughANull)
{
    const PropertyKey hollow = KeepNull(top, Character);
    Style inside(nullptr, Character);
    inside.SetOwner(&top, hollow);
    Style deeper(nullptr, Fill);
    deeper.SetOwner(&inside, Fill);
    EXPECT_EQ(static_cast<Style*>(Handle(&inside)), nullptr);
    EXPECT_EQ(static_cast<Style*>(Handle(&deeper)), nullptr);
    EXPECT_EQ(GetStyleOrSubstyle(&top, hollow, false), nullptr);
    EXPECT_EQ(GetStyleOrSubstyle(&top, hollow, true), nullptr);
    EXPECT_EQ(GetSubstyleParent(inside), nullptr);
    EXPECT_TRUE(ForEachSubStyle(&top, {}, false, {hollow}));
}

TEST_F(SubStyle, IsCopiedMovedAndAssigned)
{
    Handle handle(fill);
    const Handle copy(handle);
    EXPECT_EQ(static_cast<Style*>(copy), fill);
    EXPECT_EQ(static_cast<Style*>(handle), fill);
    const Handle moved(std::move(handle));
    EXPECT_EQ(static_cast<Style*>(moved), fill);
    EXPECT_EQ(handle.GetRoot(), nullptr); // NOLINT(bugprone-use-after-move): it is empty now
    EXPECT_EQ(static_cast<Style*>(handle), nullptr);
    Handle assigned(&top);
    assigned = moved;
    EXPECT_EQ(static_cast<Style*>(assigned), fill);
    const Handle& itself = assigned;
    assigned = itself;
    EXPECT_EQ(static_cast<Style*>(assigned), fill);
    assigned = Handle(nullptr);
    EXPECT_EQ(static_cast<Style*>(assigned), nullptr);
}

TEST_F(SubStyle, OwnersThatCloseOnThemselvesEndTheWay)
{
    Style a, b;
    a.SetOwner(&b, Fill);
    b.SetOwner(&a, Fill);
    const Handle handle(&a);
    EXPECT_EQ(static_cast<Style*>(handle), nullptr);
    a.SetOwner(nullptr, PropertyKey::Empty);
    b.SetOwner(nullptr, PropertyKey::Empty);
}

TEST_F(SubStyle, HandlesAreMadeOfStylesAndBackInOrder)
{
    const std::vector<Handle> handles = StylesToSubStyles({fill, nullptr, &top, character, fill});
    ASSERT_EQ(handles.size(), 5u);
    EXPECT_THAT(SubStylesToStyles(handles), ElementsAre(fill, nullptr, &top, character, fill));
    character->ClearProperty(Fill);
    EXPECT_THAT(SubStylesToStyles(handles), ElementsAre(nullptr, nullptr, &top, character, nullptr)) << "nulls stay";
    EXPECT_THAT(StylesToSubStyles({}), IsEmpty());
    EXPECT_THAT(SubStylesToStyles({}), IsEmpty());
}

TEST_F(SubStyle, AStyleOfTheCategoryStandsForItself)
{
    EXPECT_EQ(GetStyleOrSubstyle(nullptr, Fill, true), nullptr);
    EXPECT_EQ(GetStyleOrSubstyle(&top, StyleCategoryName, false), &top);
    EXPECT_EQ(GetStyleOrSubstyle(fill, Fill, false), fill);
    EXPECT_EQ(GetStyleOrSubstyle(&top, Character, false), character);
    EXPECT_EQ(GetStyleOrSubstyle(character, Fill, true), fill);
    EXPECT_EQ(GetStyleOrSubstyle(&top, Outline, false), nullptr);
    EXPECT_EQ(GetStyleOrSubstyle(&top, Fill, false), nullptr) << "that of its character is another";
    Style heir(&top, StyleCategoryName);
    EXPECT_EQ(GetStyleOrSubstyle(&heir, Character, false), nullptr);
    EXPECT_EQ(GetStyleOrSubstyle(&heir, Character, true), character);
    Style without;
    EXPECT_EQ(GetStyleOrSubstyle(&without, PropertyKey::Empty, false), &without);
    EXPECT_EQ(GetStyleOrSubstyle(&without, Fill, false), nullptr);
}

TEST_F(SubStyle, AParentOfItsOwnIsTheEffectiveParent)
{
    Style own(nullptr, Fill);
    Style base(nullptr, StyleCategoryName);
    Style other(nullptr, Fill);
    GetOrCreateSubstyle(base, Fill)->SetParent(&other);
    top.SetParent(&base);
    Style* substyle = GetOrCreateSubstyle(top, Fill);
    EXPECT_EQ(GetSubstyleParent(*substyle), &other);
    substyle->SetParent(&own);
    EXPECT_EQ(GetSubstyleParent(*substyle), &own);
    EXPECT_EQ(GetSubstyleParent(top), &base);
}

TEST_F(SubStyle, WithoutOwnerAndParentThereIsNoEffectiveParent)
{
    EXPECT_EQ(GetSubstyleParent(Style()), nullptr);
    EXPECT_EQ(GetSubstyleParent(*character), nullptr);
    EXPECT_EQ(GetSubstyleParent(top), nullptr);
}

TEST_F(SubStyle, TheNearestAncestorWithAParentedSubstyleGivesTheEffectiveParent)
{
    Style closer(nullptr, Fill), distant(nullptr, Fill);
    Style top3(nullptr, StyleCategoryName), top2(&top3, StyleCategoryName), top1(&top2, StyleCategoryName);
    Style heir(&top1, StyleCategoryName);
    Style* substyle = GetOrCreateSubstyle(heir, Fill);
    GetOrCreateSubstyle(top1, Outline)->SetParent(&distant); // another key
    GetOrCreateSubstyle(top2, Fill);                         // the key, but no parent
    EXPECT_EQ(GetSubstyleParent(*substyle), nullptr);
    GetOrCreateSubstyle(top3, Fill)->SetParent(&distant);
    EXPECT_EQ(GetSubstyleParent(*substyle), &distant);
    top2.GetSubstyle(Fill, false)->SetParent(&closer);
    EXPECT_EQ(GetSubstyleParent(*substyle), &closer);
}

TEST_F(SubStyle, TheSearchForTheEffectiveParentEndsOnAClosedWay)
{
    Style a(nullptr, StyleCategoryName), b(&a, StyleCategoryName);
    a.SetParent(&b);
    EXPECT_EQ(GetSubstyleParent(*GetOrCreateSubstyle(a, Fill)), nullptr);
}

namespace
{

/// A visitor that notes whom it sees and stops at `last`.
class Visitor
{
public:
    explicit Visitor(Style* last = nullptr)
        : m_call([this, last](Style* style) {
              seen.push_back(style);
              return style != last;
          })
    {}
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;

    operator const VelUtils::basic_safe_function<bool(Style*)>&() const { return m_call; }

    std::vector<Style*> seen;

private:
    VelUtils::basic_safe_function<bool(Style*)> m_call;
};

const VelUtils::basic_safe_function<bool(Style*)> noVisitor;

} // namespace

TEST_F(SubStyle, DirectSubstylesAreVisitedInTheOrderOfTheirRegistration)
{
    Style* ownFill = GetOrCreateSubstyle(top, Fill);
    Visitor visitor;
    EXPECT_TRUE(ForEachSubStyle(&top, visitor, false, {}));
    EXPECT_THAT(visitor.seen, ElementsAre(ownFill, character)) << "and nothing in them";
}

TEST_F(SubStyle, TheStyleItselfIsVisitedFirstWhenAskedFor)
{
    Visitor visitor;
    EXPECT_TRUE(ForEachSubStyle(&top, visitor, true, {}));
    EXPECT_THAT(visitor.seen, ElementsAre(&top, character));
}

TEST_F(SubStyle, GivenKeysAreVisitedInTheirOrder)
{
    Style* ownFill = GetOrCreateSubstyle(top, Fill);
    Visitor visitor;
    EXPECT_TRUE(ForEachSubStyle(&top, visitor, false, {Character, Note, Key(L"unknown"), Fill, Outline, Character}));
    EXPECT_THAT(visitor.seen, ElementsAre(character, ownFill, character));
}

TEST_F(SubStyle, AVisitorThatAnswersFalseEndsTheWalk)
{
    GetOrCreateSubstyle(top, Fill);
    Visitor atSelf(&top);
    EXPECT_FALSE(ForEachSubStyle(&top, atSelf, true, {}));
    EXPECT_THAT(atSelf.seen, ElementsAre(&top));
    Visitor atFirst(top.GetSubstyle(Fill, false));
    EXPECT_FALSE(ForEachSubStyle(&top, atFirst, false, {}));
    EXPECT_EQ(atFirst.seen.size(), 1u);
    Visitor atLast(character);
    EXPECT_FALSE(ForEachSubStyle(&top, atLast, false, {}));
    EXPECT_EQ(atLast.seen.size(), 2u);
}

TEST_F(SubStyle, WithoutAVisitorTheAnswerIsWhetherThereIsNothingToVisit)
{
    EXPECT_FALSE(ForEachSubStyle(&top, noVisitor, true, {}));
    EXPECT_FALSE(ForEachSubStyle(&top, noVisitor, false, {}));
    EXPECT_FALSE(ForEachSubStyle(&top, noVisitor, false, {Outline, Character}));
    EXPECT_TRUE(ForEachSubStyle(&top, noVisitor, false, {Outline, Fill}));
    EXPECT_TRUE(ForEachSubStyle(fill, noVisitor, false, {}));
    EXPECT_FALSE(ForEachSubStyle(fill, noVisitor, true, {}));
}

TEST_F(SubStyle, NothingToVisitIsAnsweredTrue)
{
    Visitor visitor;
    EXPECT_TRUE(ForEachSubStyle(nullptr, visitor, true, {}));
    EXPECT_TRUE(ForEachSubStyle(nullptr, noVisitor, true, {Fill}));
    Style without;
    EXPECT_TRUE(ForEachSubStyle(&without, visitor, false, {}));
    EXPECT_TRUE(ForEachSubStyle(&without, visitor, false, {Fill}));
    Style heir(&top, StyleCategoryName);
    EXPECT_TRUE(ForEachSubStyle(&heir, visitor, false, {})) << "inherited ones are not visited";
    EXPECT_THAT(visitor.seen, IsEmpty());
}

} // namespace Styles::Testing
