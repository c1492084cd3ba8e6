#include <styles/StyleManager.h>

#include <styles/Style.h>

#include "support/RegistryFixture.h"

#include <memory>

using testing::ElementsAre;
using testing::IsEmpty;

namespace Styles::Testing
{

namespace
{

class Registration : public RegistryFixture
{
protected:
    /// Registers style-set categories of these names.
    static void RegisterStyleSets(std::initializer_list<PropertyKey> names)
    {
        for (const PropertyKey& name : names)
        {
            Manager().RegisterCategory(name, VelString(L"Set"), true, true);
        }
    }

    static PropertyKey ElementCategoryOf(const PropertyKey& category, const PropertyKey& name)
    {
        const BaseStyleProperty* definition = Manager().GetStyleProperty(category, name);
        return const_cast<BaseStyleProperty*>(definition)->GetElementCategoryName();
    }
};

} // namespace

TEST_F(Registration, TheBaseCategoryIsPublicAndNoStyleSet)
{
    RegisterStyleCategory(VelString(L"Graphic style"));
    ASSERT_TRUE(Manager().CategoryExists(StyleCategoryName));
    EXPECT_EQ(StyleCategoryName.GetText(), VelString(L"style"));
    EXPECT_TRUE(Manager().GetCategory(StyleCategoryName)->IsPublic());
    EXPECT_EQ(Manager().TranslateCategory(StyleCategoryName), VelString(L"Graphic style"));
    EXPECT_THAT(Manager().GetStyleSetCategoryNames(), IsEmpty());
}

TEST_F(Registration, TheBaseCategoryHasNoPropertiesBeforeThereAreStyleSets)
{
    RegisterStyleCategory(VelString(L"Graphic style"));
    EXPECT_THAT(Manager().GetStylePropertyNames(StyleCategoryName), IsEmpty());
}

TEST_F(Registration, TheBaseCategoryGetsASubstylePropertyForEachStyleSetInOrder)
{
    RegisterStyleSets({C, A, B});
    Manager().RegisterCategory(Unknown, VelString(L"No set"), false, true);
    RegisterStyleCategory(VelString(L"Graphic style"));
    EXPECT_THAT(Manager().GetStylePropertyNames(StyleCategoryName), ElementsAre(C, A, B));
    for (const PropertyKey& name : {A, B, C})
    {
        const BaseStyleProperty* definition = Manager().GetStyleProperty(StyleCategoryName, name);
        ASSERT_NE(definition, nullptr);
        EXPECT_TRUE(definition->IsSubstyle());
        EXPECT_EQ(ElementCategoryOf(StyleCategoryName, name), name);
        EXPECT_EQ(definition->GetDefaultValue().Get<Style*>(), nullptr);
        EXPECT_EQ(definition->GetNewSinceVersion(), 0);
        Any value(static_cast<Style*>(nullptr));
        EXPECT_FALSE(definition->Validate(value)) << "there is no validator";
    }
}

TEST_F(Registration, StyleSetsRegisteredAfterTheBaseCategoryAreNotAdded)
{
    RegisterStyleSets({A});
    RegisterStyleCategory(VelString(L"Graphic style"));
    RegisterStyleSets({B});
    EXPECT_THAT(Manager().GetStylePropertyNames(StyleCategoryName), ElementsAre(A));
}

TEST_F(Registration, ABaseCategoryThatIsThereKeepsItsNameAndGetsTheNewStyleSets)
{
    RegisterStyleSets({A});
    RegisterStyleCategory(VelString(L"first"));
    const BaseStyleProperty* definition = Manager().GetStyleProperty(StyleCategoryName, A);
    RegisterStyleSets({B});
    RegisterStyleCategory(VelString(L"second"));
    EXPECT_EQ(Manager().TranslateCategory(StyleCategoryName), VelString(L"first"));
    EXPECT_THAT(Manager().GetStylePropertyNames(StyleCategoryName), ElementsAre(A, B));
    EXPECT_EQ(Manager().GetStyleProperty(StyleCategoryName, A), definition);
}

TEST_F(Registration, AStyleSetThatIsListedTwiceGivesOneProperty)
{
    RegisterStyleSets({A});
    Manager().DeregisterCategory(A);
    RegisterStyleSets({A});
    ASSERT_THAT(Manager().GetStyleSetCategoryNames(), ElementsAre(A, A));
    RegisterStyleCategory(VelString(L"Graphic style"));
    EXPECT_THAT(Manager().GetStylePropertyNames(StyleCategoryName), ElementsAre(A));
}

TEST_F(Registration, DeregisteringTheBaseCategoryForgetsItAlone)
{
    RegisterStyleSets({A});
    RegisterStyleCategory(VelString(L"Graphic style"));
    DeregisterStyleCategory();
    EXPECT_FALSE(Manager().CategoryExists(StyleCategoryName));
    EXPECT_TRUE(Manager().CategoryExists(A));
    DeregisterStyleCategory();
    RegisterStyleCategory(VelString(L"again"));
    EXPECT_EQ(Manager().TranslateCategory(StyleCategoryName), VelString(L"again"));
    EXPECT_THAT(Manager().GetStylePropertyNames(StyleCategoryName), ElementsAre(A));
}

TEST_F(Registration, ASubstyleSetIsAPropertyNamedLikeTheCategoryOfItsSubstyles)
{
    RegisterStyleSets({A, B});
    RegisterSubstyleSet(A, B);
    EXPECT_THAT(Manager().GetStylePropertyNames(A), ElementsAre(B));
    const BaseStyleProperty* definition = Manager().GetStyleProperty(A, B);
    ASSERT_NE(definition, nullptr);
    EXPECT_TRUE(definition->IsSubstyle());
    EXPECT_EQ(ElementCategoryOf(A, B), B);
    EXPECT_EQ(definition->GetDefaultValue().Get<Style*>(), nullptr);
    EXPECT_EQ(definition->GetNewSinceVersion(), 0);
}

TEST_F(Registration, ASubstyleKnowsThePropertyThatItIsRegisteredUnder)
{
    RegisterStyleSets({A, B});
    RegisterSubstyleSet(A, B);
    Style owner(nullptr, A);
    const Style given(nullptr, B);
    owner.SetSubstyle(B, &given);
    ASSERT_NE(owner.GetSubstyle(B, false), nullptr);
    EXPECT_EQ(owner.GetSubstyle(B, false)->GetOwnersSubstylePropertyName(), B);
}

TEST_F(Registration, ASubstyleSetOfACategoryThatIsNotRegisteredDoesNothing)
{
    RegisterStyleSets({B});
    RegisterSubstyleSet(Unknown, B);
    EXPECT_FALSE(Manager().CategoryExists(Unknown));
    EXPECT_THAT(Manager().GetStylePropertyNames(B), IsEmpty());
}

TEST_F(Registration, ASubstyleSetUnderANameThatIsTakenDoesNothing)
{
    RegisterStyleSets({A, B});
    Manager().RegisterProperty(A, B, MakeNumberProperty());
    const BaseStyleProperty* definition = Manager().GetStyleProperty(A, B);
    RegisterSubstyleSet(A, B);
    EXPECT_EQ(Manager().GetStyleProperty(A, B), definition);
    EXPECT_THAT(Manager().GetStylePropertyNames(A), ElementsAre(B));
}

TEST_F(Registration, ResettingForgetsAllCategories)
{
    RegisterStyleSets({A, B});
    RegisterStyleCategory(VelString(L"Graphic style"));
    ResetStyleManager();
    EXPECT_THAT(Manager().GetCategoryNames(), IsEmpty());
    EXPECT_THAT(Manager().GetStyleSetCategoryNames(), IsEmpty());
}

} // namespace Styles::Testing
