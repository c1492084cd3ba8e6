#include <styles/StyleSheet.h>

#include "support/TestSheet.h"

#include <VelUtils/StringUtils.h>

#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

namespace Styles::Testing
{

namespace
{

/// More than the sheet asks for again each time.
constexpr int Many = 100;

class NumberedNames : public SchemaFixture
{
protected:
    static VelString Name(const std::wstring& stem, int number)
    {
        return VelString((stem + L' ' + std::to_wstring(number)).c_str());
    }

    void Add(const VelString& name)
    {
        sheet.AddStyle(name, std::make_unique<Style>(nullptr, StyleCategoryName).release(), false);
    }

    void Remove(const VelString& name) { const std::unique_ptr<Style> removed(sheet.RemoveStyle(name)); }

    /// "stem", "stem 1", ... "stem `last`", each as the sheet names it.
    void AddMany(const wchar_t* stem, int last = Many)
    {
        for (int count = 0; count <= last; ++count)
        {
            Add(sheet.GetUnusedStyleName(VelString(stem)));
        }
    }

    std::string Unused(const wchar_t* baseName) { return Utf8(sheet.GetUnusedStyleName(VelString(baseName))); }

    /// What the sheet answers when it knows nothing but its names.
    VelString UnusedByAsking(const VelString& baseName)
    {
        return VelUtils::String::FindUnusedName(
            baseName, [this](const VelString& name) { return sheet.GetStyle(name) != nullptr; });
    }

    TestSheet sheet;
};

} // namespace

TEST_F(NumberedNames, AreNumberedOneByOne)
{
    AddMany(L"Layer");
    EXPECT_EQ(sheet.GetStyles().size(), std::size_t{Many} + 1);
    EXPECT_NE(sheet.Get(L"Layer 100"), nullptr);
    EXPECT_EQ(Unused(L"Layer"), "Layer 101");
    EXPECT_EQ(Unused(L"Layer 7"), "Layer 101");
    EXPECT_EQ(Unused(L"Layer 101"), "Layer 101");
    EXPECT_EQ(Unused(L"Layer 1000"), "Layer 1000");
}

TEST_F(NumberedNames, KeepTheSpellingThatIsAskedFor)
{
    AddMany(L"Layer");
    EXPECT_EQ(Unused(L"LAYER"), "LAYER 101");
    EXPECT_EQ(Unused(L"layer 3"), "layer 101");
}

TEST_F(NumberedNames, ANumberThatBecomesFreeIsTheNextOne)
{
    AddMany(L"Layer");
    Remove(Name(L"LAYER", 42));
    EXPECT_EQ(Unused(L"Layer"), "Layer 42");
    EXPECT_EQ(Unused(L"Layer 43"), "Layer 101");
    sheet.RenameStyle(Name(L"Layer", 17), VelString(L"Background"));
    EXPECT_EQ(Unused(L"Layer"), "Layer 17");
    Add(Name(L"Layer", 17));
    EXPECT_EQ(Unused(L"Layer"), "Layer 42");
    const std::unique_ptr<Style> first(sheet.Get(L"Layer 1"));
    EXPECT_TRUE(sheet.RemoveStyle(first.get()));
    EXPECT_EQ(Unused(L"Layer"), "Layer 1");
}

TEST_F(NumberedNames, TheFirstAndTheLastOfARunBecomeFreeToo)
{
    AddMany(L"Layer");
    Remove(Name(L"Layer", 100));
    EXPECT_EQ(Unused(L"Layer"), "Layer 100");
    Remove(Name(L"Layer", 1));
    EXPECT_EQ(Unused(L"Layer"), "Layer 1");
    EXPECT_EQ(Unused(L"Layer 2"), "Layer 100");
    for (int number = 2; number < 100; ++number)
    {
        Remove(Name(L"Layer", number));
    }
    EXPECT_EQ(Unused(L"Layer 50"), "Layer 50");
    EXPECT_EQ(Unused(L"Layer"), "Layer 1");
}

TEST_F(NumberedNames, AnotherCaseOfANumberedNameTakesItStill)
{
    AddMany(L"Layer");
    sheet.RenameStyle(Name(L"Layer", 5), Name(L"LAYER", 5));
    EXPECT_EQ(Unused(L"Layer"), "Layer 101");
}

TEST_F(NumberedNames, DeletedAndReplacedStylesCount)
{
    AddMany(L"Layer");
    EXPECT_TRUE(sheet.DeleteStyles(std::vector<Style*>{sheet.Get(L"Layer 9")}));
    EXPECT_EQ(Unused(L"Layer"), "Layer 9");
    delete sheet.AddStyle(Name(L"Layer", 3), new Style(nullptr, StyleCategoryName), true);
    EXPECT_EQ(Unused(L"Layer"), "Layer 9") << "the name of a replaced style stays taken";
}

TEST_F(NumberedNames, AClearedSheetBeginsAnew)
{
    AddMany(L"Layer");
    sheet.Clear();
    EXPECT_EQ(Unused(L"Layer"), "Layer");
    Add(VelString(L"Layer"));
    EXPECT_EQ(Unused(L"Layer"), "Layer 1");
}

TEST_F(NumberedNames, ASheetWhoseNamesWereEmptiedBeginsAnew)
{
    AddMany(L"Layer");
    const std::vector<Style*> orphans = sheet.GetStyles();
    TestSheet other;
    other.MergeIn(sheet, false);
    Add(VelString(L"Layer"));
    EXPECT_EQ(Unused(L"Layer"), "Layer 1");
    for (Style* orphan : orphans)
    {
        delete orphan;
    }
}

TEST_F(NumberedNames, NumbersWithZerosBeforeThemAreCountedToo)
{
    Add(VelString(L"Layer 001"));
    for (int count = 2; count <= 1100; ++count)
    {
        Add(sheet.GetUnusedStyleName(VelString(L"Layer 001")));
    }
    EXPECT_NE(sheet.Get(L"Layer 099"), nullptr);
    EXPECT_EQ(Unused(L"Layer 001"), "Layer 1101");
    Remove(VelString(L"Layer 050"));
    EXPECT_EQ(Unused(L"Layer 001"), "Layer 050");
    EXPECT_EQ(Unused(L"Layer 050"), "Layer 050");
    EXPECT_EQ(Unused(L"Layer 51"), "Layer 51") << "another name than that with a zero";
}

TEST_F(NumberedNames, NumbersOfAnyLengthAreCountedUp)
{
    const wchar_t* const base = L"Layer 999999999999999990";
    Add(VelString(base));
    for (int count = 0; count < Many; ++count)
    {
        const VelString name = sheet.GetUnusedStyleName(VelString(base));
        EXPECT_EQ(name, UnusedByAsking(VelString(base)));
        Add(name);
    }
    EXPECT_EQ(Unused(base), "Layer 1000000000000000091");
}

TEST_F(NumberedNames, DigitsWithoutABlankBeforeThemAreNoNumber)
{
    for (int number = 1; number <= Many; ++number)
    {
        Add(VelString((L"Layer" + std::to_wstring(number)).c_str()));
        EXPECT_EQ(sheet.GetUnusedStyleName(VelString(L"Layer1")), VelString(L"Layer1 1"));
    }
}

TEST_F(NumberedNames, ACopyKnowsWhatItsSourceHasLetGo)
{
    const auto copy = std::make_unique<StyleSheet>();
    auto* sharing = new StyleSheet(*copy); // of the two, only one may be destroyed
    for (int count = 0; count <= Many; ++count)
    {
        sharing->AddStyle(copy->GetUnusedStyleName(VelString(L"Layer")), new Style(nullptr, StyleCategoryName), false);
    }
    delete sharing->RemoveStyle(Name(L"Layer", 30));
    EXPECT_EQ(copy->GetUnusedStyleName(VelString(L"Layer")), Name(L"Layer", 30));
    ::operator delete(sharing);
}

TEST_F(NumberedNames, AreThoseThatAskingForEachNumberGives)
{
    std::minstd_rand random(7);
    const auto below = [&random](int bound) { return static_cast<int>(random() % static_cast<unsigned>(bound)); };
    const std::array<std::wstring, 3> stems{L"Layer", L"layer group", L"Fill"};
    for (int step = 0; step < 6000; ++step)
    {
        const std::wstring& stem = stems[random() % stems.size()];
        const VelString base = below(3) == 0 ? Name(stem, below(120)) : VelString(stem.c_str());
        const VelString unused = sheet.GetUnusedStyleName(base);
        ASSERT_EQ(unused, UnusedByAsking(base)) << "step " << step << ", base " << base;
        switch (below(6))
        {
        case 0:
            Remove(Name(stem, below(120)));
            break;
        case 1:
            sheet.RenameStyle(Name(stem, below(120)), Name(stem, below(120)));
            break;
        case 2:
            Add(Name(stem, below(120)));
            break;
        default:
            Add(unused);
        }
    }
}

TEST_F(NumberedNames, ThreadsMayAskForThemTogether)
{
    AddMany(L"Layer");
    const StyleSheet& readOnly = sheet;
    std::array<VelString, 4> found;
    std::vector<std::thread> threads;
    for (VelString& name : found)
    {
        threads.emplace_back([&readOnly, &name] {
            for (int number = 1; number <= Many; ++number)
            {
                name = readOnly.GetUnusedStyleName(Name(L"Layer", number));
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    EXPECT_THAT(found, ::testing::Each(VelString(L"Layer 101")));
}

} // namespace Styles::Testing
