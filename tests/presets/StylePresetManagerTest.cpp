#include <styles/StylePresetManager.h>

#include <styles/SubStyle.h>

#include "presets/TestPresets.h"
#include "support/VirtualSlots.h"

#include <gmock/gmock.h>

#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

using Support::BytesOf;
using Support::TemporaryFolder;
using Support::WriteBytes;
using testing::ElementsAre;
using testing::IsEmpty;

namespace Styles::Testing
{

namespace
{

static_assert(std::is_abstract_v<Styles::StylePresetManager>);
static_assert(std::has_virtual_destructor_v<Styles::StylePresetManager>);

class StylePresetManager : public PresetsFixture
{};

VelString Name(const wchar_t* text)
{
    return VelString(text);
}

} // namespace

TEST_F(StylePresetManager, APresetIsASelfContainedCopy)
{
    Style parent(nullptr, StyleCategoryName);
    parent.SetProperty(Note, Any(Name(L"inherited")));
    Style fillParent(nullptr, Fill);
    fillParent.SetProperty(Angle, Any(30.0));
    Style stop(nullptr, Stop);
    stop.SetProperty(Position, Any(0.5));
    Style element(&stop, Stop);
    Style style(&parent, StyleCategoryName);
    style.SetProperty(Stops, Any(std::vector<Style*>{&element}));
    GetOrCreateSubstyle(style, Fill)->SetParent(&fillParent);

    EXPECT_TRUE(presets.AddPreset(category, Name(L"Mine"), &style, false));
    Style* preset = presets.GetPreset(category, Name(L"mine"));
    ASSERT_NE(preset, nullptr);
    EXPECT_NE(preset, &style);
    EXPECT_EQ(preset->GetParent(), nullptr);
    EXPECT_FALSE(preset->HasParentalDependency());
    EXPECT_EQ(OwnText(*preset, Note), Name(L"inherited"));
    EXPECT_EQ(EffectiveNumber(*preset->GetSubstyle(Fill, false), Angle), 30.0);
    const auto& elements = preset->GetProperty(Stops).Get<std::vector<Style*>>();
    ASSERT_EQ(elements.size(), 1u);
    EXPECT_EQ(elements[0]->GetParent(), nullptr);
    EXPECT_EQ(EffectiveNumber(*elements[0], Position), 0.5);

    EXPECT_EQ(style.GetParent(), &parent) << "the style that was given is untouched";
    EXPECT_FALSE(style.DoesOverrideProperty(Note));
    EXPECT_EQ(style.GetSubstyle(Fill, false)->GetParent(), &fillParent);
}

TEST_F(StylePresetManager, AddingSavesTheFile)
{
    EXPECT_TRUE(presets.AddPreset(category, Name(L"Mine"), &red, false));
    EXPECT_EQ(BytesOf(file), presets.GetSheet(category).Write());
    EXPECT_THAT(folder.GetNames(), ElementsAre("style.mtss"));
    TestPresets loaded(folder.GetPath());
    EXPECT_THAT(loaded.GetPresetNames(category), ElementsAre(Name(L"Mine")));
    EXPECT_EQ(OwnText(*loaded.GetPreset(category, Name(L"Mine")), Note), Name(L"red"));
}

TEST_F(StylePresetManager, WithoutReplacingAnOldPresetStaysAndTheFileIsSaved)
{
    presets.AddPreset(category, Name(L"Mine"), &red, false);
    Style* old = presets.GetPreset(category, Name(L"Mine"));
    std::filesystem::remove(file);
    EXPECT_TRUE(presets.AddPreset(category, Name(L"MINE"), &blue, false));
    EXPECT_EQ(presets.GetPreset(category, Name(L"mine")), old);
    EXPECT_EQ(OwnText(*old, Note), Name(L"red"));
    EXPECT_THAT(presets.GetPresetNames(category), ElementsAre(Name(L"Mine")));
    EXPECT_EQ(BytesOf(file), presets.GetSheet(category).Write());
}

TEST_F(StylePresetManager, ReplacingTakesTheNewStyleAndSpelling)
{
    presets.AddPreset(category, Name(L"Mine"), &red, true);
    EXPECT_TRUE(presets.AddPreset(category, Name(L"MINE"), &blue, true));
    EXPECT_THAT(presets.GetPresetNames(category), ElementsAre(Name(L"MINE")));
    EXPECT_EQ(OwnText(*presets.GetPreset(category, Name(L"mine")), Note), Name(L"blue"));
    TestPresets loaded(folder.GetPath());
    EXPECT_EQ(OwnText(*loaded.GetPreset(category, Name(L"mine")), Note), Name(L"blue"));
}

TEST_F(StylePresetManager, APresetMayBeReplacedByItself)
{
    presets.AddPreset(category, Name(L"Mine"), &red, false);
    EXPECT_TRUE(presets.AddPreset(category, Name(L"Mine"), presets.GetPreset(category, Name(L"Mine")), true));
    EXPECT_EQ(OwnText(*presets.GetPreset(category, Name(L"Mine")), Note), Name(L"red"));
}

TEST_F(StylePresetManager, WithoutSheetNameOrStyleNothingIsAdded)
{
    EXPECT_FALSE(presets.AddPreset(Name(L"none"), Name(L"Mine"), &red, false));
    EXPECT_FALSE(presets.AddPreset(category, VelString(), &red, true));
    EXPECT_FALSE(presets.AddPreset(category, Name(L"Mine"), nullptr, true));
    EXPECT_THAT(presets.GetPresetNames(category), IsEmpty());
    EXPECT_THAT(folder.GetNames(), IsEmpty()) << "and nothing is saved";
}

TEST_F(StylePresetManager, DeletingRemovesThePresetAndSavesTheFile)
{
    presets.AddPreset(category, Name(L"Mine"), &red, false);
    presets.AddPreset(category, Name(L"Yours"), &blue, false);
    EXPECT_TRUE(presets.DeletePreset(category, Name(L"MINE")));
    EXPECT_THAT(presets.GetPresetNames(category), ElementsAre(Name(L"Yours")));
    EXPECT_EQ(presets.GetPreset(category, Name(L"Mine")), nullptr);
    TestPresets loaded(folder.GetPath());
    EXPECT_THAT(loaded.GetPresetNames(category), ElementsAre(Name(L"Yours")));
}

TEST_F(StylePresetManager, DeletingAnUnknownPresetIsAnsweredFalseAndSavesTheFile)
{
    presets.AddPreset(category, Name(L"Mine"), &red, false);
    WriteBytes(file, "damaged");
    EXPECT_FALSE(presets.DeletePreset(category, Name(L"unknown")));
    EXPECT_EQ(BytesOf(file), presets.GetSheet(category).Write());
}

TEST_F(StylePresetManager, WithoutSheetOrNameNothingIsDeletedOrSaved)
{
    WriteBytes(file, "as it was");
    EXPECT_FALSE(presets.DeletePreset(Name(L"none"), Name(L"Mine")));
    EXPECT_FALSE(presets.DeletePreset(category, VelString()));
    EXPECT_EQ(BytesOf(file), "as it was");
    EXPECT_THAT(folder.GetNames(), ElementsAre("style.mtss"));
}

TEST_F(StylePresetManager, PresetsTakeTheValuesOfADeletedOneThatTheyInheritFrom)
{
    TestSheet& sheet = presets.GetSheet(category);
    Style* base = sheet.Add(L"base", StyleCategoryName);
    base->SetProperty(Note, Any(Name(L"of the base")));
    Style* heir = sheet.Add(L"heir", StyleCategoryName, base);
    Style* grandchild = sheet.Add(L"grandchild", StyleCategoryName, heir);
    EXPECT_TRUE(presets.DeletePreset(category, Name(L"BASE")));
    EXPECT_EQ(heir->GetParent(), nullptr);
    EXPECT_EQ(OwnText(*heir, Note), Name(L"of the base"));
    EXPECT_EQ(grandchild->GetParent(), heir);
    EXPECT_EQ(EffectiveText(*grandchild, Note), Name(L"of the base"));
}

TEST_F(StylePresetManager, PresetsTakeTheValuesOfAReplacedOneThatTheyInheritFrom)
{
    TestSheet& sheet = presets.GetSheet(category);
    Style* base = sheet.Add(L"base", StyleCategoryName);
    base->SetProperty(Note, Any(Name(L"of the base")));
    GetOrCreateSubstyle(*base, Fill)->SetProperty(Angle, Any(30.0));
    Style* heir = sheet.Add(L"heir", StyleCategoryName, base);
    const Style* grandchild = sheet.Add(L"grandchild", StyleCategoryName, heir);
    EXPECT_TRUE(presets.AddPreset(category, Name(L"Base"), &blue, true));
    EXPECT_EQ(grandchild->GetParent(), heir);
    EXPECT_EQ(heir->GetParent(), nullptr);
    EXPECT_EQ(OwnText(*heir, Note), Name(L"of the base"));
    ASSERT_NE(heir->GetSubstyle(Fill, false), nullptr);
    EXPECT_EQ(EffectiveNumber(*heir->GetSubstyle(Fill, false), Angle), 30.0);
    EXPECT_TRUE(presets.AddPreset(category, Name(L"Base"), heir, false));
    EXPECT_EQ(OwnText(*presets.GetPreset(category, Name(L"base")), Note), Name(L"blue"));
}

TEST_F(StylePresetManager, ANameWithoutAStyleIsNoPresetToDelete)
{
    TestSheet& sheet = presets.GetSheet(category);
    sheet.AddStyle(Name(L"hollow"), nullptr, false);
    sheet.Add(L"base", StyleCategoryName);
    EXPECT_TRUE(presets.AddPreset(category, Name(L"base"), &red, true));
    EXPECT_FALSE(presets.DeletePreset(category, Name(L"hollow")));
    EXPECT_TRUE(presets.AddPreset(category, Name(L"hollow"), &blue, true));
    EXPECT_EQ(OwnText(*presets.GetPreset(category, Name(L"hollow")), Note), Name(L"blue"));
}

TEST_F(StylePresetManager, PresetsThatInheritFromEachOtherAreAddedAndDeleted)
{
    TestSheet& sheet = presets.GetSheet(Name(L"nest"));
    ASSERT_TRUE(sheet.Read(R"({"nest": {"a": {"inherits": "b", "note": "x", "nest": {"inherits": "a"}},
                                        "b": {"inherits": "a", "nests": [{"inherits": "b"}, {"inherits": "a"}]}}})"));
    EXPECT_TRUE(presets.AddPreset(Name(L"nest"), Name(L"copy"), sheet.Get(L"a"), false));
    const Style* copy = presets.GetPreset(Name(L"nest"), Name(L"copy"));
    ASSERT_NE(copy, nullptr);
    EXPECT_FALSE(copy->HasParentalDependency());
    EXPECT_TRUE(presets.AddPreset(Name(L"nest"), Name(L"a"), sheet.Get(L"b"), true));
    EXPECT_TRUE(presets.DeletePreset(Name(L"nest"), Name(L"b")));
    EXPECT_EQ(sheet.Get(L"a")->GetParent(), nullptr);
    TestPresets loaded(folder.GetPath());
    EXPECT_THAT(loaded.GetPresetNames(Name(L"nest")), ElementsAre(Name(L"a"), Name(L"copy")));
}

TEST_F(StylePresetManager, PresetsAreFoundWithoutRegardToCase)
{
    presets.AddPreset(category, Name(L"Größe"), &red, false);
    presets.AddPreset(category, Name(L"a"), &red, false);
    EXPECT_TRUE(presets.DoesPresetNameExist(category, Name(L"gRÖßE")));
    EXPECT_FALSE(presets.DoesPresetNameExist(category, Name(L"Größ")));
    EXPECT_FALSE(presets.DoesPresetNameExist(category, VelString()));
    EXPECT_FALSE(presets.DoesPresetNameExist(Name(L"none"), Name(L"a")));
    EXPECT_NE(presets.GetPreset(category, Name(L"A")), nullptr);
    EXPECT_EQ(presets.GetPreset(category, Name(L"b")), nullptr);
    EXPECT_EQ(presets.GetPreset(category, VelString()), nullptr);
    EXPECT_EQ(presets.GetPreset(Name(L"none"), Name(L"a")), nullptr);
    EXPECT_THAT(presets.GetPresetNames(category), ElementsAre(Name(L"a"), Name(L"Größe")));
    EXPECT_THAT(presets.GetPresetNames(Name(L"none")), IsEmpty());
}

TEST_F(StylePresetManager, AnUnusedNameIsMadeFromABaseName)
{
    presets.AddPreset(category, Name(L"Mine"), &red, false);
    EXPECT_EQ(presets.GetUnusedPresetName(category, Name(L"mine")), Name(L"mine 1"));
    EXPECT_EQ(presets.GetUnusedPresetName(category, Name(L"Yours")), Name(L"Yours"));
    EXPECT_EQ(presets.GetUnusedPresetName(category, Name(L"fill")), Name(L"Fill 1"));
    EXPECT_EQ(presets.GetUnusedPresetName(category, VelString()), VelString());
    EXPECT_EQ(presets.GetUnusedPresetName(Name(L"none"), Name(L"Mine")), VelString());
}

TEST_F(StylePresetManager, TheFileIsNamedAfterTheCategory)
{
    EXPECT_EQ(presets.GetFileName(Name(L"fill")), Name(L"fill.mtss"));
    EXPECT_EQ(presets.GetFileName(VelString()), Name(L".mtss"));
    EXPECT_EQ(presets.GetFileName(Name(L"a/b")), Name(L"a/b.mtss"));
}

TEST_F(StylePresetManager, SavingWritesTheWholeSheet)
{
    presets.GetSheet(category).Add(L"first", StyleCategoryName);
    EXPECT_TRUE(presets.Save(category));
    EXPECT_EQ(BytesOf(file), presets.GetSheet(category).Write());
    presets.GetSheet(category).Clear();
    EXPECT_TRUE(presets.Save(category));
    EXPECT_EQ(BytesOf(file), presets.GetSheet(category).Write());
    EXPECT_THAT(folder.GetNames(), ElementsAre("style.mtss"));
}

TEST_F(StylePresetManager, SavingACategoryWithoutASheetAnswersTrueAndLeavesTheFile)
{
    WriteBytes(folder / "none.mtss", "as it was");
    EXPECT_TRUE(presets.Save(Name(L"none")));
    EXPECT_EQ(BytesOf(folder / "none.mtss"), "as it was");
    EXPECT_THAT(folder.GetNames(), ElementsAre("none.mtss"));
    std::filesystem::remove(folder / "none.mtss");
    EXPECT_TRUE(presets.Save(Name(L"none")));
    EXPECT_THAT(folder.GetNames(), IsEmpty());
}

TEST_F(StylePresetManager, SavingWhereNoFileCanBeCreatedAnswersTrue)
{
    presets.AddPreset(category, Name(L"Mine"), &red, false);
    std::filesystem::remove_all(folder.GetPath());
    EXPECT_TRUE(presets.Save(category));
    EXPECT_FALSE(std::filesystem::exists(folder.GetPath()));
}

TEST_F(StylePresetManager, AddingAPresetSucceedsWhereItCannotBeSaved)
{
    std::filesystem::remove_all(folder.GetPath());
    EXPECT_TRUE(presets.AddPreset(category, Name(L"Mine"), &red, false));
    EXPECT_THAT(presets.GetPresetNames(category), ElementsAre(Name(L"Mine")));
    EXPECT_TRUE(presets.DeletePreset(category, Name(L"Mine")));
    EXPECT_FALSE(presets.DeletePreset(category, Name(L"Mine")));
}

TEST_F(StylePresetManager, DestroysItsSheets)
{
    std::vector<std::string> destroyed;
    class MortalSheet : public TestSheet
    {
    public:
        MortalSheet(std::vector<std::string>& log, const char* name) : m_log(log), m_name(name) {}
        MortalSheet(const MortalSheet&) = delete;
        MortalSheet& operator=(const MortalSheet&) = delete;
        ~MortalSheet() override { m_log.emplace_back(m_name); }

    private:
        std::vector<std::string>& m_log;
        const char* m_name;
    };
    {
        TestPresets own(folder.GetPath());
        own.sheets[Name(L"b")] = new MortalSheet(destroyed, "b");
        own.sheets[Name(L"C")] = new MortalSheet(destroyed, "C");
        own.sheets[Name(L"a")] = new MortalSheet(destroyed, "a");
        own.sheets[Name(L"d")] = nullptr;
    }
    EXPECT_THAT(destroyed, ElementsAre("a", "b", "C")) << "in the order of the categories";
}

TEST_F(StylePresetManager, CopiesShareTheSheets)
{
    TestSheet& sheet = presets.GetSheet(category);
    alignas(TestPresets) std::byte storage[sizeof(TestPresets)];
    auto* copy = new (storage) TestPresets(presets);
    EXPECT_EQ(copy->sheets, presets.sheets);
    EXPECT_EQ(&copy->GetSheet(category), &sheet);
    copy->sheets.clear(); // so that it may be destroyed
    copy->~TestPresets();
    EXPECT_EQ(&presets.GetSheet(category), &sheet);

    const auto forgotten = std::make_unique<TestSheet>();
    TestPresets assigned(folder.GetPath());
    assigned.sheets[Name(L"fill")] = forgotten.get();
    assigned = presets;
    EXPECT_EQ(assigned.sheets, presets.sheets) << "the sheet that was there belongs to nobody";
    EXPECT_TRUE(forgotten->GetStyles().empty());
    const TestPresets& itself = assigned;
    assigned = itself;
    EXPECT_EQ(assigned.sheets, presets.sheets);
    assigned.sheets.clear();
}

TEST_F(StylePresetManager, SheetsAreFiledWithoutRegardToCase)
{
    TestSheet& sheet = presets.GetSheet(Name(L"Fill"));
    EXPECT_EQ(&presets.GetSheet(Name(L"FILL")), &sheet);
}

#if !defined(_MSC_VER)

TEST_F(StylePresetManager, TheVirtualOperationsStandInTheirOrder)
{
    class Plain : public Styles::StylePresetManager
    {
    public:
        StyleSheet* GetPresetSheet(const VelString&) override { return nullptr; }
        VelString GetPresetFolder() override { return {}; }
    };
    class OwnSheet : public Plain
    {
        StyleSheet* GetPresetSheet(const VelString&) override { return sheet; }
        StyleSheet* sheet = nullptr; // functions of one body may become one in optimised builds
    };
    class OwnFolder : public Plain
    {
        VelString GetPresetFolder() override { return VelString(L"x"); }
    };
    EXPECT_THAT((DifferingSlots<Styles::StylePresetManager>(Plain(), OwnSheet(), 2, 4)), ElementsAre(2u));
    EXPECT_THAT((DifferingSlots<Styles::StylePresetManager>(Plain(), OwnFolder(), 2, 4)), ElementsAre(3u));
    EXPECT_THAT((DifferingSlots<Styles::StylePresetManager>(Plain(), OwnFolder(), 0, 2)), ElementsAre(0u, 1u));
}

#endif

} // namespace Styles::Testing
