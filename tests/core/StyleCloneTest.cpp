// Copies that no longer depend on an owner, and making a substyle match another one.

#include "support/StyleMaking.h"

#include <memory>
#include <typeinfo>

namespace Styles::Testing
{

namespace
{

class StyleClone : public SchemaFixture
{
protected:
    Style base{nullptr, StyleCategoryName};
    Style style{&base, StyleCategoryName};
    const Any red{VelString(L"red")};
    const Any blue{VelString(L"blue")};
};

} // namespace

TEST_F(StyleClone, DependencyOnTheOwnerIsHavingNoParentUnderAnOwnerWithOne)
{
    EXPECT_FALSE(base.StylePropertiesHasDependencyOnOwner());
    EXPECT_FALSE(style.StylePropertiesHasDependencyOnOwner());
    Style& character = AddSubstyle(style, Character, Character);
    Style& fill = AddSubstyle(character, Fill, Fill);
    EXPECT_TRUE(character.StylePropertiesHasDependencyOnOwner());
    EXPECT_TRUE(fill.StylePropertiesHasDependencyOnOwner());

    style.SetParent(nullptr);
    EXPECT_FALSE(fill.StylePropertiesHasDependencyOnOwner());
    Style other(nullptr, Character);
    character.SetParent(&other);
    EXPECT_TRUE(fill.StylePropertiesHasDependencyOnOwner());
    EXPECT_FALSE(character.StylePropertiesHasDependencyOnOwner());
}

TEST_F(StyleClone, ACloneOfAStyleThatDoesNotDependOnAnOwnerIsACopy)
{
    base.SetProperty(Note, red);
    const std::unique_ptr<Style> top(style.CreateStyleCloneWithNoDependencyOnOwner());
    EXPECT_EQ(*top, style);
    EXPECT_EQ(top->GetParent(), &base);

    Style fillParent(nullptr, Fill);
    const Style& fill = AddSubstyle(style, Fill, Fill, &fillParent);
    const std::unique_ptr<Style> withParent(fill.CreateStyleCloneWithNoDependencyOnOwner());
    EXPECT_EQ(*withParent, fill);
    EXPECT_EQ(withParent->GetParent(), &fillParent);
    EXPECT_EQ(withParent->GetOwner(), nullptr);
}

TEST_F(StyleClone, ACloneHasForItsOwnWhatTheSubstyleInheritsThroughItsOwners)
{
    Style root(nullptr, StyleCategoryName);
    base.SetParent(&root);
    Style& rootFill = AddSubstyle(AddSubstyle(root, Character, Character), Fill, Fill);
    rootFill.SetProperty(Angle, Any(15.0)); // further up than the clone takes over
    Style& baseFill = AddSubstyle(AddSubstyle(base, Character, Character), Fill, Fill);
    baseFill.SetProperty(Color, red);
    baseFill.SetProperty(XScale, Any(3.0));
    Style& fill = AddSubstyle(AddSubstyle(style, Character, Character), Fill, Fill);
    fill.SetProperty(XScale, Any(2.0));
    const Style before(style);

    const std::unique_ptr<Style> clone(fill.CreateStyleCloneWithNoDependencyOnOwner());
    EXPECT_EQ(clone->GetOwner(), nullptr);
    EXPECT_EQ(clone->GetParent(), nullptr);
    EXPECT_EQ(OwnText(*clone, Color), L"red");
    EXPECT_EQ(EffectiveNumber(*clone, XScale), 2.0);
    EXPECT_EQ(EffectiveText(fill, Color), EffectiveText(*clone, Color));
    EXPECT_EQ(style, before);
    EXPECT_EQ(style.GetParent(), &base);
}

TEST_F(StyleClone, ACloneTakesTheParentOfTheSubstyleAtItsPlace)
{
    Style fillParent(nullptr, Fill);
    fillParent.SetProperty(Color, red);
    AddSubstyle(base, Fill, Fill, &fillParent);
    const Style& fill = AddSubstyle(style, Fill, Fill);
    const std::unique_ptr<Style> clone(fill.CreateStyleCloneWithNoDependencyOnOwner());
    EXPECT_EQ(clone->GetParent(), &fillParent);
    EXPECT_EQ(EffectiveText(*clone, Color), EffectiveText(fill, Color));
}

TEST_F(StyleClone, ACloneOfASubstyleThatItsOwnerDoesNotHoldIsACopy)
{
    AddSubstyle(base, Fill, Fill).SetProperty(Color, red);
    Style stray(nullptr, Fill);
    stray.SetProperty(Angle, Any(30.0));
    stray.SetOwner(&style, Outline); // names a place that is empty
    const std::unique_ptr<Style> clone(stray.CreateStyleCloneWithNoDependencyOnOwner());
    EXPECT_EQ(*clone, stray);
}

TEST_F(StyleClone, ACloneIsIndependentOfTheParentsOfAllItsOwners)
{
    Style parents[2];
    for (const int first : {0, 1}) // in either order of their addresses
    {
        Style& far = parents[first];
        Style& near = parents[1 - first];
        far.SetCategory(StyleCategoryName);
        near.SetCategory(Character);
        near.SetParent(&far);
        AddSubstyle(far, Fill, Fill).SetProperty(Color, red);
        AddSubstyle(near, Fill, Fill).SetProperty(Angle, Any(30.0));
        Style top(&far, StyleCategoryName);
        const Style& fill = AddSubstyle(AddSubstyle(top, Character, Character, &near), Fill, Fill);
        ASSERT_EQ(EffectiveText(fill, Color), L"red");

        const std::unique_ptr<Style> clone(fill.CreateStyleCloneWithNoDependencyOnOwner());
        EXPECT_EQ(OwnText(*clone, Color), L"red");
        EXPECT_EQ(EffectiveNumber(*clone, Angle), 30.0);
        for (Style& parent : parents)
        {
            parent.ClearAllProperties();
            parent.SetParent(nullptr);
        }
    }
}

TEST_F(StyleClone, ACloneTakesOverAnUnbrokenRunOfTheParentsOfItsOwnersOnly)
{
    Style between(&base, Character);
    Style characterParent(&between, Character);
    AddSubstyle(between, Fill, Fill).SetProperty(Color, red);
    AddSubstyle(characterParent, Fill, Fill).SetProperty(Angle, Any(30.0));
    const Style& fill = AddSubstyle(AddSubstyle(style, Character, Character, &characterParent), Fill, Fill);
    const std::unique_ptr<Style> clone(fill.CreateStyleCloneWithNoDependencyOnOwner());
    EXPECT_EQ(EffectiveNumber(*clone, Angle), 30.0);
    EXPECT_FALSE(clone->DoesOverrideProperty(Color)) << "the parent of an owner stands behind one that is none";
}

TEST_F(StyleClone, ACloneOfTheSubstyleUnderAKeyComesFromWhereTheSubstyleIs)
{
    const std::unique_ptr<Style> none(style.CreateSubStyleCloneWithNoDependencyOnOwner(Fill));
    EXPECT_TRUE(none->IsEmpty());
    EXPECT_EQ(none->GetCategoryName(), Fill);
    EXPECT_EQ(none->GetParent(), nullptr);

    AddSubstyle(base, Fill, Fill).SetProperty(Color, red);
    const std::unique_ptr<Style> inherited(style.CreateSubStyleCloneWithNoDependencyOnOwner(Fill));
    EXPECT_EQ(*inherited, *base.GetSubstyle(Fill, false));

    AddSubstyle(style, Fill, Fill).SetProperty(Angle, Any(30.0));
    const std::unique_ptr<Style> own(style.CreateSubStyleCloneWithNoDependencyOnOwner(Fill));
    EXPECT_EQ(OwnText(*own, Color), L"red");
    EXPECT_EQ(EffectiveNumber(*own, Angle), 30.0);
    EXPECT_EQ(own->GetOwner(), nullptr);
}

TEST_F(StyleClone, ACloneUnderAKeyThatIsNoSubstyleIsAnEmptyStyle)
{
    style.SetProperty(Note, red);
    const std::unique_ptr<Style> plain(style.CreateSubStyleCloneWithNoDependencyOnOwner(Note));
    EXPECT_TRUE(plain->IsEmpty());
    EXPECT_EQ(plain->GetCategory(), nullptr);
    const std::unique_ptr<Style> unknown(style.CreateSubStyleCloneWithNoDependencyOnOwner(Key(L"unknown")));
    EXPECT_EQ(unknown->GetCategory(), nullptr);
    const std::unique_ptr<Style> without(Style().CreateSubStyleCloneWithNoDependencyOnOwner(Fill));
    EXPECT_EQ(without->GetCategory(), nullptr);
}

TEST_F(StyleClone, AnInheritedNullMakesAnEmptyCloneOfTheCategory)
{
    Style stranger(nullptr, Character); // its fill is null, and another object than the default of the style's category
    Style heir(&stranger, StyleCategoryName);
    Any value;
    ASSERT_TRUE(heir.GetProperty(Fill, value));
    ASSERT_EQ(value, NullSubstyle());
    const std::unique_ptr<Style> clone(heir.CreateSubStyleCloneWithNoDependencyOnOwner(Fill));
    EXPECT_EQ(clone->GetCategoryName(), Fill);
    EXPECT_TRUE(clone->IsEmpty());

    Style sibling(&stranger, StyleCategoryName);
    AddSubstyle(sibling, Fill, Fill);
    sibling.CopySubstyleProperties(&heir, Fill);
    EXPECT_TRUE(sibling.IsEmpty()) << "both inherit alike";
    style.CopySubstyleProperties(&heir, Fill);
    ASSERT_NE(style.GetSubstyle(Fill, false), nullptr);
    EXPECT_TRUE(style.GetSubstyle(Fill, false)->IsEmpty());
}

TEST_F(StyleClone, CopyingADefaultSubstyleClearsTheOwnOne)
{
    Style source(nullptr, StyleCategoryName);
    Style target(nullptr, StyleCategoryName);
    AddSubstyle(target, Fill, Fill);
    target.CopySubstyleProperties(&source, Fill);
    EXPECT_TRUE(target.IsEmpty());
    target.CopySubstyleProperties(nullptr, Fill);
    EXPECT_TRUE(target.IsEmpty());
}

TEST_F(StyleClone, CopyingADefaultSubstyleIsStoredWhereSomethingElseWouldBeInherited)
{
    const PropertyKey shade = Key(L"shade");
    auto* defaultShade = new Style(nullptr, Fill);
    defaultShade->SetProperty(Color, red);
    Manager().RegisterProperty(StyleCategoryName, shade, new StyleSetProperty(nullptr, Fill, defaultShade, 0));
    Style source(nullptr, StyleCategoryName);

    Style alone(nullptr, StyleCategoryName);
    alone.CopySubstyleProperties(&source, shade);
    EXPECT_FALSE(alone.DoesOverrideProperty(shade)); // it inherits the default already

    AddSubstyle(base, shade, Fill).SetProperty(Color, blue);
    style.CopySubstyleProperties(&source, shade);
    ASSERT_NE(style.GetSubstyle(shade, false), nullptr);
    EXPECT_NE(style.GetSubstyle(shade, false), defaultShade);
    EXPECT_EQ(OwnText(*style.GetSubstyle(shade, false), Color), L"red");
}

TEST_F(StyleClone, CopyingADefaultThatIsNoSubstyleIsABadCast)
{
    Style source(nullptr, StyleCategoryName);
    Style target(nullptr, StyleCategoryName);
    EXPECT_THROW(target.CopySubstyleProperties(&source, Note), std::bad_cast);
    EXPECT_NO_THROW(target.CopySubstyleProperties(&source, Key(L"unknown")));
}

TEST_F(StyleClone, CopyingAValueThatIsNoSubstyleClearsTheOwnOneOrIsABadCast)
{
    Style source(nullptr, StyleCategoryName);
    source.SetProperty(Note, red);
    style.SetProperty(Note, blue);
    style.CopySubstyleProperties(&source, Note);
    EXPECT_FALSE(style.DoesOverrideProperty(Note));

    style.SetProperty(Note, blue);
    Style other(nullptr, StyleCategoryName);
    source.SetParent(&other); // a clone would be taken, but there is nothing that the value could hold it in
    EXPECT_THROW(style.CopySubstyleProperties(&source, Note), std::bad_cast);
    EXPECT_EQ(OwnText(style, Note), L"blue");
}

TEST_F(StyleClone, CopyingASubstyleThatHasAParentIsAPlainCopy)
{
    Style fillParent(nullptr, Fill);
    const Style& fill = AddSubstyle(style, Fill, Fill, &fillParent);
    Style target(nullptr, StyleCategoryName);
    target.CopySubstyleProperties(&style, Fill);
    EXPECT_EQ(*target.GetSubstyle(Fill, false), fill);
    EXPECT_EQ(target.GetSubstyle(Fill, false)->GetParent(), &fillParent);
    EXPECT_EQ(target.GetSubstyle(Fill, false)->GetOwner(), &target);
}

TEST_F(StyleClone, CopyingFromAStyleThatInheritsNothingIsAPlainCopy)
{
    AddSubstyle(base, Fill, Fill).SetProperty(Color, red);
    Style target(nullptr, StyleCategoryName);
    target.CopySubstyleProperties(&base, Fill);
    EXPECT_EQ(*target.GetSubstyle(Fill, false), *base.GetSubstyle(Fill, false));
}

TEST_F(StyleClone, CopyingUnderTheSameParentIsAPlainCopy)
{
    AddSubstyle(base, Fill, Fill).SetProperty(Color, red);
    AddSubstyle(style, Fill, Fill).SetProperty(Angle, Any(30.0));
    Style target(&base, StyleCategoryName);
    target.CopySubstyleProperties(&style, Fill);
    EXPECT_EQ(*target.GetSubstyle(Fill, false), *style.GetSubstyle(Fill, false));
    EXPECT_FALSE(target.GetSubstyle(Fill, false)->DoesOverrideProperty(Color));
    EXPECT_EQ(EffectiveText(*target.GetSubstyle(Fill, false), Color), L"red");

    style.ClearProperty(Fill); // from now on both inherit alike
    target.CopySubstyleProperties(&style, Fill);
    EXPECT_FALSE(target.DoesOverrideProperty(Fill));
}

TEST_F(StyleClone, CopyingBetweenSubstylesAtTheSameLevelUnderTheSameParentIsAPlainCopy)
{
    AddSubstyle(AddSubstyle(base, Character, Character), Fill, Fill).SetProperty(Color, red);
    Style& source = AddSubstyle(style, Character, Character);
    AddSubstyle(source, Fill, Fill).SetProperty(Angle, Any(30.0));
    Style other(&base, StyleCategoryName);
    Style& target = AddSubstyle(other, Character, Character);
    target.CopySubstyleProperties(&source, Fill);
    EXPECT_FALSE(target.GetSubstyle(Fill, false)->DoesOverrideProperty(Color));
    EXPECT_EQ(EffectiveText(*target.GetSubstyle(Fill, false), Color), L"red");
}

TEST_F(StyleClone, CopyingUnderAnotherParentIsAClone)
{
    AddSubstyle(base, Fill, Fill).SetProperty(Color, red);
    AddSubstyle(style, Fill, Fill).SetProperty(Angle, Any(30.0));
    Style otherBase(nullptr, StyleCategoryName);
    Style target(&otherBase, StyleCategoryName);
    target.CopySubstyleProperties(&style, Fill);
    EXPECT_EQ(OwnText(*target.GetSubstyle(Fill, false), Color), L"red");
    EXPECT_EQ(EffectiveNumber(*target.GetSubstyle(Fill, false), Angle), 30.0);
    EXPECT_EQ(target.GetSubstyle(Fill, false)->GetOwner(), &target);

    style.ClearProperty(Fill);
    target.ClearProperty(Fill);
    target.CopySubstyleProperties(&style, Fill); // what the source inherits becomes the target's own
    ASSERT_NE(target.GetSubstyle(Fill, false), nullptr);
    EXPECT_EQ(OwnText(*target.GetSubstyle(Fill, false), Color), L"red");
}

TEST_F(StyleClone, CopyingToAStyleWithFewerOwnersIsAClone)
{
    AddSubstyle(AddSubstyle(base, Character, Character), Fill, Fill).SetProperty(Color, red);
    Style& source = AddSubstyle(style, Character, Character);
    AddSubstyle(source, Fill, Fill).SetProperty(Angle, Any(30.0));
    Style target(nullptr, Character);
    target.CopySubstyleProperties(&source, Fill);
    EXPECT_EQ(OwnText(*target.GetSubstyle(Fill, false), Color), L"red");
    EXPECT_EQ(EffectiveNumber(*target.GetSubstyle(Fill, false), Angle), 30.0);
}

TEST_F(StyleClone, CopyingBetweenLevelsIsACloneUnderTheSameParentToo)
{
    AddSubstyle(base, Fill, Fill).SetProperty(Color, blue);
    AddSubstyle(AddSubstyle(base, Character, Character), Fill, Fill).SetProperty(Color, red);
    AddSubstyle(style, Fill, Fill).SetProperty(Angle, Any(30.0));
    Style& character = AddSubstyle(style, Character, Character);
    AddSubstyle(character, Fill, Fill).SetProperty(Angle, Any(60.0));

    Style higher(&base, Character);
    higher.CopySubstyleProperties(&character, Fill);
    EXPECT_EQ(OwnText(*higher.GetSubstyle(Fill, false), Color), L"red");
    Style other(&base, StyleCategoryName);
    Style& lower = AddSubstyle(other, Character, Character);
    lower.CopySubstyleProperties(&style, Fill);
    EXPECT_EQ(OwnText(*lower.GetSubstyle(Fill, false), Color), L"blue");
}

TEST_F(StyleClone, CopyingLooksAtTheTargetsParentOnlyWhereTheSourceHasOne)
{
    AddSubstyle(AddSubstyle(base, Character, Character), Fill, Fill).SetProperty(Color, red);
    Style& source = AddSubstyle(style, Character, Character);
    AddSubstyle(source, Fill, Fill).SetProperty(Angle, Any(30.0));
    Style characterParent(nullptr, Character);
    Style other(&base, StyleCategoryName);
    Style& target = AddSubstyle(other, Character, Character, &characterParent);
    target.CopySubstyleProperties(&source, Fill);
    EXPECT_EQ(EffectiveNumber(*target.GetSubstyle(Fill, false), Angle), 30.0);
    EXPECT_FALSE(target.GetSubstyle(Fill, false)->DoesOverrideProperty(Color)) << "a plain copy";
}

TEST_F(StyleClone, CopyingFromTheStyleItselfChangesNothing)
{
    AddSubstyle(base, Fill, Fill).SetProperty(Color, red);
    AddSubstyle(style, Fill, Fill).SetProperty(Angle, Any(30.0));
    const Style before(style);
    style.CopySubstyleProperties(&style, Fill);
    EXPECT_EQ(style, before);
}

} // namespace Styles::Testing
