#include <styles/StyleManager.h>

#include <styles/Style.h>

#include "support/RegistryFixture.h"

#include <algorithm>
#include <functional>
#include <latch>
#include <memory>
#include <thread>
#include <type_traits>

using testing::ElementsAre;
using testing::IsEmpty;

namespace Styles::Testing
{

namespace
{

using Registry = VelUtils::Singleton<Styles::StyleManager, 0>;

static_assert(!std::is_polymorphic_v<Styles::StyleManager>);
static_assert(!std::is_default_constructible_v<Styles::StyleManager>);
static_assert(!std::is_destructible_v<Styles::StyleManager>);

class StyleManager : public RegistryFixture
{};

} // namespace

TEST_F(StyleManager, RegisteringACategoryFilesItAsItIsDescribed)
{
    const auto category = Manager().RegisterCategory(A, VelString(L"Category A"), true, true);
    ASSERT_NE(category, nullptr);
    EXPECT_EQ(category->GetCategoryName(), A);
    EXPECT_EQ(category->GetCategoryUIName(), VelString(L"Category A"));
    EXPECT_TRUE(category->IsPublic());
    EXPECT_EQ(Manager().GetCategory(A), category);
    EXPECT_TRUE(Manager().CategoryExists(A));
    EXPECT_THAT(Manager().GetStyleSetCategoryNames(), ElementsAre(A));
    EXPECT_FALSE(Manager().RegisterCategory(B, VelString(), false, false)->IsPublic());
    EXPECT_THAT(Manager().GetStyleSetCategoryNames(), ElementsAre(A));
}

TEST_F(StyleManager, RegisteringACategoryTwiceReturnsTheSameAndChangesNothing)
{
    const auto first = Manager().RegisterCategory(A, VelString(L"first"), false, false);
    const auto second = Manager().RegisterCategory(A, VelString(L"second"), true, true);
    EXPECT_EQ(first, second);
    EXPECT_EQ(second->GetCategoryUIName(), VelString(L"first"));
    EXPECT_FALSE(second->IsPublic());
    EXPECT_THAT(Manager().GetStyleSetCategoryNames(), IsEmpty());
    Manager().RegisterCategory(B, VelString(), true, true);
    Manager().RegisterCategory(B, VelString(), true, true);
    EXPECT_THAT(Manager().GetStyleSetCategoryNames(), ElementsAre(B));
    EXPECT_EQ(Manager().GetCategoryNames().size(), 2u);
}

TEST_F(StyleManager, CategoryNamesAreListedInKeyOrderPublicOrNot)
{
    std::vector<PropertyKey> registered;
    for (const wchar_t* text : {L"z", L"m", L"a", L"y", L"b", L"x"})
    {
        registered.push_back(Key(text));
    }
    std::vector<PropertyKey> sorted = registered;
    std::sort(sorted.begin(), sorted.end(), std::less<PropertyKey>());
    // Registered against the order of the keys, so that the two orders differ.
    for (auto name = sorted.rbegin(); name != sorted.rend(); ++name)
    {
        Manager().RegisterCategory(*name, VelString(), true, *name == registered[0]);
    }
    EXPECT_EQ(Manager().GetCategoryNames(), sorted);
    std::reverse(sorted.begin(), sorted.end());
    EXPECT_EQ(Manager().GetStyleSetCategoryNames(), sorted) << "in the order of registration";
}

TEST_F(StyleManager, DeregisteringDeletesTheDefinitionsAndForgetsTheCategory)
{
    Manager().RegisterCategory(A, VelString(), false, true);
    Manager().RegisterCategory(B, VelString(), false, true);
    Manager().RegisterProperty(A, C, new MortalProperty(deaths, "a.c"));
    Manager().RegisterProperty(B, C, new MortalProperty(deaths, "b.c"));
    Manager().DeregisterCategory(A);
    EXPECT_THAT(deaths, ElementsAre("a.c"));
    EXPECT_FALSE(Manager().CategoryExists(A));
    EXPECT_THAT(Manager().GetCategoryNames(), ElementsAre(B));
    Manager().DeregisterCategory(Unknown);
    EXPECT_THAT(Manager().GetCategoryNames(), ElementsAre(B));
}

TEST_F(StyleManager, ADeregisteredStyleSetCategoryStaysListed)
{
    Manager().RegisterCategory(A, VelString(), true, true);
    Manager().RegisterCategory(B, VelString(), true, true);
    Manager().DeregisterCategory(A);
    EXPECT_FALSE(Manager().CategoryExists(A));
    EXPECT_THAT(Manager().GetStyleSetCategoryNames(), ElementsAre(A, B));
}

TEST_F(StyleManager, ACategoryMayBeDeregisteredByAReferenceIntoTheRegistry)
{
    Manager().RegisterCategory(A, VelString(), true, true);
    Manager().DeregisterCategory(Manager().GetStyleSetCategoryNames().front());
    EXPECT_FALSE(Manager().CategoryExists(A));
}

TEST_F(StyleManager, ADeregisteredCategoryLivesOnInItsStylesWithoutDefinitions)
{
    Manager().RegisterCategory(A, VelString(L"UI"), false, true);
    Manager().RegisterProperty(A, B, MakeNumberProperty());
    const Style style(nullptr, A);
    Manager().DeregisterCategory(A);
    ASSERT_NE(style.GetCategory(), nullptr);
    EXPECT_EQ(style.GetCategoryName(), A);
    EXPECT_EQ(style.GetCategoryUIName(), VelString(L"UI"));
    EXPECT_THAT(style.GetCategory()->GetPropertyNames(), ElementsAre(B));
    Any value;
    EXPECT_FALSE(style.GetProperty(B, value));
    const auto again = Manager().RegisterCategory(A, VelString(L"new"), false, true);
    EXPECT_NE(again.get(), style.GetCategory().get());
}

TEST_F(StyleManager, ResettingEmptiesTheCategoriesLastRegisteredFirst)
{
    for (const PropertyKey& name : {B, C, A})
    {
        Manager().RegisterCategory(name, VelString(), true, true);
        Manager().RegisterProperty(name, Unknown,
                                   new MortalProperty(deaths, VelPlatform::ToNarrow(name.GetText()).c_str()));
    }
    const auto survivor = Manager().GetCategory(C);
    Manager().Reset();
    EXPECT_THAT(deaths, ElementsAre("a", "c", "b"));
    EXPECT_THAT(Manager().GetCategoryNames(), IsEmpty());
    EXPECT_THAT(Manager().GetStyleSetCategoryNames(), IsEmpty());
    EXPECT_FALSE(Manager().CategoryExists(C));
    EXPECT_THAT(survivor->GetPropertyNames(), ElementsAre(Unknown));
    EXPECT_THAT(survivor->GetProperties(), IsEmpty());
}

TEST_F(StyleManager, ResettingKeepsTheVersionAndTheImportRecord)
{
    Manager().SetCurrentVersion(7);
    Manager().GetImportStyleInfo().nameSet.insert(VelString(L"x"));
    Manager().GetImportStyleInfo().nameMap.emplace(VelString(L"y"), VelString(L"z"));
    Manager().Reset();
    EXPECT_EQ(Manager().GetCurrentVersion(), 7);
    EXPECT_EQ(Manager().GetImportStyleInfo().nameSet.count(VelString(L"x")), 1u);
    EXPECT_EQ(Manager().GetImportStyleInfo().nameMap.at(VelString(L"y")), VelString(L"z"));
}

TEST_F(StyleManager, RegisteringAPropertyGivesItItsNames)
{
    Manager().RegisterCategory(A, VelString(), false, true);
    auto* definition = new MortalProperty(deaths);
    Manager().RegisterProperty(A, B, definition);
    EXPECT_EQ(Manager().GetStyleProperty(A, B), definition);
    EXPECT_EQ(definition->GetCategoryName(), A);
    EXPECT_EQ(definition->GetPropertyName(), B);
}

TEST_F(StyleManager, ADefinitionForATakenNameGetsItsNamesAndStaysTheCallers)
{
    Manager().RegisterCategory(A, VelString(), false, true);
    auto* first = new MortalProperty(deaths, "first");
    Manager().RegisterProperty(A, B, first);
    {
        MortalProperty second(deaths, "second");
        Manager().RegisterProperty(A, B, &second);
        EXPECT_EQ(Manager().GetStyleProperty(A, B), first);
        EXPECT_EQ(second.GetCategoryName(), A);
        EXPECT_EQ(second.GetPropertyName(), B);
    }
    EXPECT_THAT(deaths, ElementsAre("second"));
}

TEST_F(StyleManager, ADefinitionForAnUnknownCategoryStaysAsItIs)
{
    MortalProperty definition(deaths);
    Manager().RegisterProperty(Unknown, B, &definition);
    EXPECT_EQ(definition.GetCategoryName(), PropertyKey::Empty);
    EXPECT_EQ(definition.GetPropertyName(), PropertyKey::Empty);
    EXPECT_FALSE(Manager().CategoryExists(Unknown));
    Manager().RegisterProperty(Unknown, B, nullptr);
}

TEST_F(StyleManager, ANullDefinitionTakesItsName)
{
    Manager().RegisterCategory(A, VelString(), false, true);
    Manager().RegisterProperty(A, B, nullptr);
    EXPECT_THAT(Manager().GetStylePropertyNames(A), ElementsAre(B));
    EXPECT_EQ(Manager().GetStyleProperty(A, B), nullptr);
    EXPECT_EQ(Manager().GetConversionPolicy(A, B), nullptr);
}

TEST_F(StyleManager, AnUnknownCategoryIsAnErrorThatEndsWithItsName)
{
    const PropertyKey name(VelPlatform::ToWide("Ümlaut"));
    const std::string expected = "Source: StyleManager::GetCategory.\nMissing category: Ümlaut";
    EXPECT_EQ(LogicErrorOf([&] { return Manager().GetCategory(name); }), expected);
    EXPECT_EQ(LogicErrorOf([&] { return Manager().TranslateCategory(name); }), expected);
    EXPECT_EQ(LogicErrorOf([&] { return Manager().GetDefaultValue(name, A); }), expected);
    EXPECT_FALSE(Manager().CategoryExists(name)) << "asking registers nothing";
}

TEST_F(StyleManager, AnUnknownPropertyHasNoDefault)
{
    Manager().RegisterCategory(A, VelString(), false, true);
    EXPECT_EQ(LogicErrorOf([&] { return Manager().GetDefaultValue(A, Unknown); }),
              "Source: StyleCategory::GetDefaultValue.\nMissing default property: unknown");
}

TEST_F(StyleManager, LookUpsByTwoKeysFindWhatTheCategoryHas)
{
    Manager().RegisterCategory(A, VelString(), false, true);
    StyleProperty* number = MakeNumberProperty(2.5);
    Manager().RegisterProperty(A, B, number);
    EXPECT_EQ(Manager().GetStyleProperty(A, B), number);
    EXPECT_EQ(&Manager().GetDefaultValue(A, B), &number->GetDefaultValue());
    EXPECT_EQ(Manager().GetConversionPolicy(A, B), number->GetConversionPolicy());
    EXPECT_THAT(Manager().GetStylePropertyNames(A), ElementsAre(B));
}

TEST_F(StyleManager, LookUpsOfWhatIsUnknownAnswerNothing)
{
    Manager().RegisterCategory(A, VelString(), false, true);
    EXPECT_EQ(Manager().GetStyleProperty(Unknown, B), nullptr);
    EXPECT_EQ(Manager().GetStyleProperty(A, Unknown), nullptr);
    EXPECT_EQ(Manager().GetConversionPolicy(Unknown, B), nullptr);
    EXPECT_EQ(Manager().GetConversionPolicy(A, Unknown), nullptr);
    EXPECT_THAT(Manager().GetStylePropertyNames(Unknown), IsEmpty());
    EXPECT_FALSE(Manager().CategoryExists(Unknown));
    EXPECT_FALSE(Manager().CategoryExists(PropertyKey::Empty));
}

TEST_F(StyleManager, AListOfPropertyNamesIsACopy)
{
    Manager().RegisterCategory(A, VelString(), false, true);
    Manager().RegisterProperty(A, C, MakeNumberProperty());
    Manager().RegisterProperty(A, B, MakeNumberProperty());
    const std::vector<PropertyKey> names = Manager().GetStylePropertyNames(A);
    Manager().Reset();
    EXPECT_THAT(names, ElementsAre(C, B));
}

TEST_F(StyleManager, ACategoryExistsUnderExactlyItsName)
{
    Manager().RegisterCategory(A, VelString(L"UI name"), false, true);
    EXPECT_TRUE(Manager().CategoryExists(VelString(L"a")));
    EXPECT_FALSE(Manager().CategoryExists(VelString(L"A")));
    EXPECT_FALSE(Manager().CategoryExists(VelString(L"a ")));
    EXPECT_FALSE(Manager().CategoryExists(VelString(L"UI name")));
    EXPECT_FALSE(Manager().CategoryExists(VelString()));
    Manager().RegisterCategory(PropertyKey::Empty, VelString(), false, false);
    EXPECT_TRUE(Manager().CategoryExists(VelString()));
}

TEST_F(StyleManager, UINamesAreTranslatedBothWays)
{
    Manager().RegisterCategory(A, VelString(L"Füllung"), false, true);
    Manager().RegisterCategory(B, VelString(L"Line"), false, false);
    EXPECT_EQ(Manager().TranslateCategory(A), VelString(L"Füllung"));
    EXPECT_EQ(Manager().UntranslateCategory(VelString(L"Füllung")), A);
    EXPECT_EQ(Manager().UntranslateCategory(VelString(L"Line")), B);
    EXPECT_EQ(Manager().UntranslateCategory(VelString(L"line")), PropertyKey::Empty);
    EXPECT_EQ(Manager().UntranslateCategory(VelString(L"a")), PropertyKey::Empty);
    EXPECT_EQ(Manager().UntranslateCategory(VelString(L"nothing")), PropertyKey::Empty);
}

TEST_F(StyleManager, OfCategoriesWithOneUINameTheFirstInKeyOrderIsFound)
{
    for (const PropertyKey& name : {C, A, B})
    {
        Manager().RegisterCategory(name, VelString(L"same"), false, true);
    }
    EXPECT_EQ(Manager().UntranslateCategory(VelString(L"same")), Manager().GetCategoryNames().front());
}

TEST_F(StyleManager, ClearingTheImportRecordEmptiesBothContainers)
{
    WImportStyleInfo& info = Manager().GetImportStyleInfo();
    info.nameSet.insert(VelString(L"x"));
    info.nameMap.emplace(VelString(L"y"), VelString(L"z"));
    Manager().ClearImportStyleInfo();
    EXPECT_THAT(info.nameSet, IsEmpty());
    EXPECT_THAT(info.nameMap, IsEmpty());
    EXPECT_EQ(&info, &Manager().GetImportStyleInfo());
}

TEST_F(StyleManager, IsMadeOnFirstUseWithoutAVersion)
{
    Registry::ReleaseInstance(false);
    EXPECT_FALSE(Registry::HasInstance());
    EXPECT_FALSE(Registry::HasInstance()) << "asking makes none";
    Styles::StyleManager& manager = Registry::GetInstance();
    EXPECT_TRUE(Registry::HasInstance());
    EXPECT_EQ(&manager, &Registry::GetInstance());
    EXPECT_EQ(manager.GetCurrentVersion(), -1);
    EXPECT_THAT(manager.GetCategoryNames(), IsEmpty());
    EXPECT_THAT(manager.GetImportStyleInfo().nameSet, IsEmpty());
    EXPECT_THAT(manager.GetImportStyleInfo().nameMap, IsEmpty());
}

TEST_F(StyleManager, ReleasingTheInstanceEmptiesTheRegistry)
{
    Manager().RegisterCategory(A, VelString(), false, true);
    Manager().RegisterProperty(A, B, new MortalProperty(deaths));
    const auto category = Manager().GetCategory(A);
    Manager().SetCurrentVersion(4);
    Registry::ReleaseInstance(false);
    EXPECT_THAT(deaths, ElementsAre("definition"));
    EXPECT_FALSE(Registry::HasInstance());
    EXPECT_THAT(category->GetProperties(), IsEmpty());
    EXPECT_EQ(Manager().GetCurrentVersion(), -1) << "a new instance";
    EXPECT_FALSE(Manager().CategoryExists(A));
}

TEST_F(StyleManager, AFinalReleaseMarksTheRecordAsFinished)
{
    Manager();
    VelUtils::SingletonRecord* record = Registry::GetSingletonData(false);
    ASSERT_NE(record, nullptr);
    EXPECT_EQ(record, Registry::GetSingletonData(true));
    EXPECT_EQ(record->instance.load(), &Manager());
    Registry::ReleaseInstance(false);
    EXPECT_EQ(record->instance.load(), nullptr);
    EXPECT_FALSE(record->finished.load());
    Registry::ReleaseInstance(true);
    EXPECT_TRUE(record->finished.load());
    EXPECT_FALSE(Registry::HasInstance());
    Registry::CreateSingletonData(record);
    EXPECT_TRUE(Registry::HasInstance());
    void* made = record->instance.load();
    Registry::CreateSingletonData(record);
    EXPECT_EQ(record->instance.load(), made) << "one that is there stays";
}

TEST_F(StyleManager, TheFinalizerOfTheModuleReleasesTheInstance)
{
    Manager().RegisterCategory(A, VelString(), false, true);
    Manager().RegisterProperty(A, B, new MortalProperty(deaths));
    Registry::StaticFinalizer();
    EXPECT_THAT(deaths, ElementsAre("definition"));
    EXPECT_FALSE(Registry::HasInstance());
    EXPECT_FALSE(Manager().CategoryExists(A)) << "whoever asks afterwards gets a new one";
    EXPECT_TRUE(Registry::HasInstance());
}

TEST_F(StyleManager, AnInstanceOfItsOwnIsMadeAndDeletedByTheSingleton)
{
    Styles::StyleManager* own = Registry::CreateInstance();
    EXPECT_NE(own, &Manager());
    own->RegisterCategory(A, VelString(), false, true);
    own->RegisterProperty(A, B, new MortalProperty(deaths));
    EXPECT_FALSE(Manager().CategoryExists(A));
    Registry::DeleteInstance(own);
    EXPECT_THAT(deaths, ElementsAre("definition"));
    EXPECT_TRUE(Registry::HasInstance());
}

TEST_F(StyleManager, ThreadsThatUseItFirstAtOnceGetOneInstance)
{
    constexpr std::size_t threadCount = 16;
    for (int round = 0; round < 20; ++round)
    {
        Registry::ReleaseInstance(false);
        std::latch start(threadCount);
        std::vector<Styles::StyleManager*> seen(threadCount);
        std::vector<int> versions(threadCount);
        std::vector<std::thread> threads;
        for (std::size_t index = 0; index < threadCount; ++index)
        {
            threads.emplace_back([&, index] {
                start.arrive_and_wait();
                seen[index] = &Registry::GetInstance();
                versions[index] = seen[index]->GetCurrentVersion();
            });
        }
        for (std::thread& thread : threads)
        {
            thread.join();
        }
        EXPECT_EQ(std::count(seen.begin(), seen.end(), &Manager()), static_cast<std::ptrdiff_t>(threadCount));
        EXPECT_THAT(versions, testing::Each(-1));
    }
}

TEST_F(StyleManager, ThreadsMayReadARegistryTogether)
{
    Manager().RegisterCategory(A, VelString(L"Füllung"), true, true);
    Manager().RegisterProperty(A, B, MakeNumberProperty(2.5));
    std::latch start(8);
    std::vector<std::thread> threads;
    std::vector<int> good(8);
    for (std::size_t index = 0; index < good.size(); ++index)
    {
        threads.emplace_back([&, index] {
            start.arrive_and_wait();
            for (int round = 0; round < 200; ++round)
            {
                const auto category = Manager().GetCategory(A);
                good[index] += Manager().GetDefaultValue(A, B).Get<double>() == 2.5 &&
                               category->GetStyleProperty(C) == nullptr &&
                               Manager().UntranslateCategory(VelString(L"Füllung")) == A;
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_THAT(good, testing::Each(200));
}

} // namespace Styles::Testing
