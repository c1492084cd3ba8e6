#include <styles/StyleManager.h>

#include "support/ProgramRun.h"
#include "support/RegistryFixture.h"

#include <VelUtils/LogMessage.h>

#include <memory>
#include <string>
#include <type_traits>
#include <vector>

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

namespace Styles::Testing
{

namespace
{

using Category = Styles::StyleCategory;

static_assert(std::has_virtual_destructor_v<Category>);

class StyleCategory : public RegistryFixture
{};

} // namespace

TEST_F(StyleCategory, StartsWithoutNamePropertiesAndPublicity)
{
    const Category category;
    EXPECT_EQ(category.GetCategoryName(), PropertyKey::Empty);
    EXPECT_EQ(category.GetCategoryUIName(), VelString());
    EXPECT_THAT(category.GetPropertyNames(), IsEmpty());
    EXPECT_THAT(category.GetProperties(), IsEmpty());
    EXPECT_FALSE(category.IsPublic());
}

TEST_F(StyleCategory, HasTheNamesAndThePublicityThatItIsMadeWith)
{
    const Category category(A, VelString(L"Category A"), true);
    EXPECT_EQ(category.GetCategoryName(), A);
    EXPECT_EQ(category.GetCategoryUIName(), VelString(L"Category A"));
    EXPECT_TRUE(category.IsPublic());
    EXPECT_THAT(category.GetPropertyNames(), IsEmpty());
    EXPECT_FALSE(Category(A, VelString(), false).IsPublic());
}

TEST_F(StyleCategory, TheFirstRegistrationOfANameWins)
{
    Category category(A, VelString(), true);
    const auto first = std::make_unique<MortalProperty>(deaths);
    const auto second = std::make_unique<MortalProperty>(deaths);
    const auto late = std::make_unique<MortalProperty>(deaths);
    category.RegisterProperty(A, first.get());
    category.RegisterProperty(B, second.get());
    category.RegisterProperty(A, late.get());
    EXPECT_THAT(category.GetPropertyNames(), ElementsAre(A, B));
    EXPECT_EQ(category.GetStyleProperty(A), first.get());
    EXPECT_EQ(category.GetStyleProperty(B), second.get());
    EXPECT_EQ(category.GetProperties().size(), 2u);
    EXPECT_THAT(deaths, IsEmpty()) << "the rejected definition stays its owner's";
}

TEST_F(StyleCategory, RegisteringCallsNothingOnTheDefinition)
{
    Category category(A, VelString(), true);
    MortalProperty definition(deaths);
    category.RegisterProperty(B, &definition);
    EXPECT_THAT(*definition.log, IsEmpty());
    EXPECT_EQ(definition.GetCategoryName(), PropertyKey::Empty);
    EXPECT_EQ(definition.GetPropertyName(), PropertyKey::Empty);
}

TEST_F(StyleCategory, ListsNamesInTheOrderOfTheirRegistration)
{
    Category category(A, VelString(), true);
    std::vector<PropertyKey> names;
    for (const wchar_t* text : {L"z", L"m", L"a", L"y", L"b", L"x"})
    {
        names.push_back(Key(text));
        category.RegisterProperty(names.back(), nullptr);
    }
    EXPECT_EQ(category.GetPropertyNames(), names);
    EXPECT_EQ(category.GetProperties().size(), names.size());
}

TEST_F(StyleCategory, ANameWithANullDefinitionIsListedAndTaken)
{
    Category category(A, VelString(), true);
    category.RegisterProperty(B, nullptr);
    MortalProperty definition(deaths);
    category.RegisterProperty(B, &definition);
    EXPECT_THAT(category.GetPropertyNames(), ElementsAre(B));
    EXPECT_THAT(category.GetProperties(), ElementsAre(Pair(B, nullptr)));
    EXPECT_EQ(category.GetStyleProperty(B), nullptr);
    EXPECT_EQ(category.GetConversionPolicy(B), nullptr);
    EXPECT_EQ(LogicErrorOf([&] { return category.GetDefaultValue(B); }),
              "Source: StyleCategory::GetDefaultValue.\nMissing default property: b");
}

TEST_F(StyleCategory, TheDefaultIsTheVeryObjectOfTheDefinition)
{
    Category category(A, VelString(), true);
    const MortalProperty definition(deaths);
    category.RegisterProperty(B, const_cast<MortalProperty*>(&definition));
    EXPECT_EQ(&category.GetDefaultValue(B), &definition.GetDefaultValue());
    EXPECT_EQ(category.GetDefaultValue(B).Get<VelString>(), VelString(L"probe"));
}

TEST_F(StyleCategory, AMissingDefaultIsAnErrorThatEndsWithItsName)
{
    Category category(A, VelString(), true);
    category.RegisterProperty(B, nullptr);
    const PropertyKey umlaut(VelPlatform::ToWide("Füllung \xF0\x9F\x8E\xA8"));
    EXPECT_EQ(LogicErrorOf([&] { return category.GetDefaultValue(umlaut); }),
              "Source: StyleCategory::GetDefaultValue.\nMissing default property: Füllung \xF0\x9F\x8E\xA8");
    EXPECT_EQ(category.GetStyleProperty(umlaut), nullptr);
    EXPECT_THAT(category.GetPropertyNames(), ElementsAre(B));
}

TEST_F(StyleCategory, TheConversionPolicyIsThatOfTheDefinition)
{
    Category category(A, VelString(), true);
    const std::unique_ptr<StyleProperty> number(MakeNumberProperty());
    const MortalProperty withoutPolicy(deaths);
    category.RegisterProperty(A, number.get());
    category.RegisterProperty(B, const_cast<MortalProperty*>(&withoutPolicy));
    EXPECT_NE(number->GetConversionPolicy(), nullptr);
    EXPECT_EQ(category.GetConversionPolicy(A), number->GetConversionPolicy());
    EXPECT_EQ(category.GetConversionPolicy(B), nullptr);
    EXPECT_EQ(category.GetConversionPolicy(Unknown), nullptr);
}

TEST_F(StyleCategory, ACopySharesTheDefinitionsOfItsSource)
{
    Category source(A, VelString(L"UI"), true);
    const MortalProperty definition(deaths);
    source.RegisterProperty(B, const_cast<MortalProperty*>(&definition));
    source.RegisterProperty(C, nullptr);
    {
        const Category copy(source);
        Category assigned(C, VelString(L"other"), false);
        MortalProperty forgotten(deaths, "forgotten");
        assigned.RegisterProperty(A, &forgotten);
        assigned = source;
        for (const Category* shared : {&copy, static_cast<const Category*>(&assigned)})
        {
            EXPECT_EQ(shared->GetCategoryName(), A);
            EXPECT_EQ(shared->GetCategoryUIName(), VelString(L"UI"));
            EXPECT_TRUE(shared->IsPublic());
            EXPECT_EQ(shared->GetPropertyNames(), source.GetPropertyNames());
            EXPECT_EQ(shared->GetProperties(), source.GetProperties());
            EXPECT_EQ(shared->GetStyleProperty(B), &definition);
        }
        EXPECT_THAT(deaths, IsEmpty()) << "assignment deletes no definition";
    }
    EXPECT_THAT(deaths, ElementsAre("forgotten"));
    EXPECT_EQ(source.GetStyleProperty(B), &definition);
}

TEST_F(StyleCategory, AssignmentToItselfKeepsEverything)
{
    Category category(A, VelString(L"UI"), true);
    const MortalProperty definition(deaths);
    category.RegisterProperty(B, const_cast<MortalProperty*>(&definition));
    const Category& itself = category;
    category = itself;
    EXPECT_EQ(category.GetCategoryName(), A);
    EXPECT_EQ(category.GetCategoryUIName(), VelString(L"UI"));
    EXPECT_TRUE(category.IsPublic());
    EXPECT_THAT(category.GetPropertyNames(), ElementsAre(B));
    EXPECT_EQ(category.GetStyleProperty(B), &definition);
}

TEST_F(StyleCategory, DyingDeletesNoDefinition)
{
    const MortalProperty definition(deaths);
    {
        Category category(A, VelString(), true);
        category.RegisterProperty(B, const_cast<MortalProperty*>(&definition));
    }
    EXPECT_THAT(deaths, IsEmpty());
}

TEST_F(StyleCategory, AnEmptiedCategoryStillListsItsNames)
{
    const std::shared_ptr<Category> category = Manager().RegisterCategory(A, VelString(L"UI"), false, true);
    Manager().RegisterProperty(A, B, new MortalProperty(deaths, "b"));
    Manager().RegisterProperty(A, Unknown, nullptr);
    Manager().RegisterProperty(A, C, new MortalProperty(deaths, "c"));
    Manager().DeregisterCategory(A);
    EXPECT_THAT(deaths, testing::UnorderedElementsAre("b", "c"));
    EXPECT_THAT(category->GetProperties(), IsEmpty());
    EXPECT_THAT(category->GetPropertyNames(), ElementsAre(B, Unknown, C));
    EXPECT_EQ(category->GetCategoryName(), A);
    EXPECT_EQ(category->GetCategoryUIName(), VelString(L"UI"));
    EXPECT_EQ(category->GetStyleProperty(B), nullptr);
    EXPECT_EQ(category->GetConversionPolicy(B), nullptr);
    EXPECT_EQ(LogicErrorOf([&] { return category->GetDefaultValue(B); }),
              "Source: StyleCategory::GetDefaultValue.\nMissing default property: b");
}

TEST_F(StyleCategory, DefinitionsDieInTheOrderOfTheirKeys)
{
    const std::shared_ptr<Category> category = Manager().RegisterCategory(A, VelString(), false, true);
    for (const wchar_t* text : {L"z", L"m", L"a", L"y", L"b", L"x"})
    {
        Manager().RegisterProperty(A, Key(text), new MortalProperty(deaths, std::string(1, static_cast<char>(*text))));
    }
    std::vector<std::string> inKeyOrder;
    for (const auto& entry : category->GetProperties())
    {
        inKeyOrder.emplace_back(1, static_cast<char>(entry.first.GetText()[0]));
    }
    Manager().DeregisterCategory(A);
    EXPECT_EQ(deaths, inKeyOrder);
}

TEST_F(StyleCategory, AMissWithoutAListenerIsSilent)
{
    EXPECT_FALSE(VelUtils::IsLogging());
    EXPECT_EQ(Category(A, VelString(), true).GetStyleProperty(B), nullptr);
}

namespace
{

/// What a process of its own reports that does these things, see programs/MissingDefinition.cpp.
int ReportsOf(const std::vector<std::string>& steps)
{
    const Support::TemporaryFolder folder;
    return Support::RunProgram(STYLES_TEST_PROGRAMS "/MissingDefinition", folder.GetPath(), steps).status;
}

} // namespace

TEST_F(StyleCategory, AMissIsReportedWithoutTheMarkerModule)
{
    EXPECT_EQ(ReportsOf({"miss"}), 1);
    EXPECT_EQ(ReportsOf({"miss", "miss", "miss"}), 3);
}

TEST_F(StyleCategory, AMissIsNotReportedWithTheMarkerModule)
{
    EXPECT_EQ(ReportsOf({"load", "miss"}), 0);
    EXPECT_EQ(ReportsOf({"load", "miss", "miss"}), 0);
}

TEST_F(StyleCategory, TheFirstMissDecidesWhetherMissesAreReported)
{
    EXPECT_EQ(ReportsOf({"miss", "load", "miss"}), 2);
}

} // namespace Styles::Testing
