// What the table of definitions, and the short cuts for plain values, must not change.

#include <styles/Styles.h>

#include "support/SchemaFixture.h"

#include <VelUtils/LogMessage.h>

#include <array>
#include <cstddef>
#include <deque>
#include <exception>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

using testing::ElementsAre;

namespace Styles::Testing
{

namespace
{

class IndexedCategory : public SchemaFixture
{
protected:
    [[nodiscard]] static PropertyKey Numbered(std::size_t number)
    {
        return Key((L"numbered " + std::to_wstring(number)).c_str());
    }
};

/// A host's class that changes nothing of what it is derived from: the library cannot know.
class HostProperty : public StyleProperty
{
public:
    using StyleProperty::StyleProperty;
};

} // namespace

TEST_F(IndexedCategory, AnyNumberOfDefinitionsIsFoundAndNoOthers)
{
    Style early(nullptr, Outline);
    for (std::size_t number = 0; number < 1000; ++number)
    {
        const Style style(nullptr, Outline);
        Any out;
        EXPECT_THROW(static_cast<void>(early.GetProperty(Numbered(number))), std::logic_error);
        Manager().RegisterProperty(Outline, Numbered(number), MakeNumberProperty(static_cast<double>(number)));
        EXPECT_EQ(early.GetProperty(Numbered(number)).Get<double>(), static_cast<double>(number));
    }
    for (std::size_t number = 0; number < 1000; ++number)
    {
        EXPECT_EQ(&early.GetProperty(Numbered(number)), &Manager().GetDefaultValue(Outline, Numbered(number)));
    }
    EXPECT_THROW(static_cast<void>(early.GetProperty(Numbered(1000))), std::logic_error);
}

TEST_F(IndexedCategory, ANullDefinitionIsNone)
{
    Manager().RegisterProperty(Outline, Note, nullptr);
    Style style(nullptr, Outline);
    style.SetProperty(Note, Any(L"unknown"));
    EXPECT_TRUE(style.IsEmpty());
    EXPECT_THROW(static_cast<void>(style.GetProperty(Note)), std::logic_error);
    style.SetProperty(Width, Any(2.0));
    EXPECT_TRUE(Style(style) == style);
}

TEST_F(IndexedCategory, AnAssignedCategoryHasTheDefinitionsOfTheOther)
{
    Style style(nullptr, Outline);
    style.SetProperty(Width, Any(2.0));
    const std::shared_ptr<Styles::StyleCategory> outline = Manager().GetCategory(Outline);
    const Styles::StyleCategory before(*outline);
    *outline = *Manager().GetCategory(Fill); // which knows the color and no width
    EXPECT_EQ(&style.GetProperty(Angle), &Manager().GetDefaultValue(Fill, Angle));
    EXPECT_TRUE(Style(style).IsEmpty()) << "unknown by now";
    EXPECT_FALSE(style == style) << "so it equals nothing";
    *outline = before;
    EXPECT_TRUE(style == style);
    EXPECT_THROW(static_cast<void>(style.GetProperty(Angle)), std::logic_error);
}

TEST_F(IndexedCategory, ACategoryThatTheManagerForgotHasNoDefinitions)
{
    Style style(nullptr, Outline);
    style.SetProperty(Width, Any(2.0));
    Manager().DeregisterCategory(Outline);
    EXPECT_THROW(static_cast<void>(style.GetProperty(Color)), std::logic_error);
    EXPECT_TRUE(Style(style).IsEmpty());
    EXPECT_FALSE(style == style);
    EXPECT_EQ(style.GetProperty(Width).Get<double>(), 2.0) << "the style has it still";
}

TEST_F(IndexedCategory, ValuesThatCameFromAnotherCategoryAreUnknown)
{
    Style style(nullptr, Fill);
    style.SetProperty(Angle, Any(2.0));
    style.SetProperty(Color, Any(L"red"));
    style.SetCategory(Outline);
    const Style copy(style);
    EXPECT_FALSE(copy.DoesOverrideProperty(Angle));
    EXPECT_TRUE(copy.DoesOverrideProperty(Color));
    EXPECT_FALSE(style == style);
    EXPECT_TRUE(Style(copy) == copy);
}

TEST_F(IndexedCategory, AValueWhoseDefinitionExchangesTheCategoryIsUnknown)
{
    auto* probe = new ProbeProperty;
    Manager().RegisterProperty(Fill, Note, probe);
    Style style(nullptr, Fill);
    probe->onCall = [this, &style](const std::string& call) {
        if (call == "move")
        {
            style.SetCategory(Outline);
        }
    };
    style.SetProperty(Note, Any(L"of another category"));
    probe->onCall = nullptr;
    ASSERT_EQ(style.GetCategoryName(), Outline);
    EXPECT_TRUE(style.DoesOverrideProperty(Note));
    EXPECT_TRUE(Style(style).IsEmpty());
    EXPECT_FALSE(style == style);
}

TEST_F(IndexedCategory, ADefinitionOfAHostIsAskedAlsoAmongPlainOnes)
{
    Style style(nullptr, Outline);
    style.SetProperty(Width, Any(2.0));
    auto* probe = new ProbeProperty;
    Manager().RegisterProperty(Outline, Note, probe);
    style.SetProperty(Note, Any(L"asked"));
    {
        const Style copy(style);
        EXPECT_TRUE(copy == style);
    }
    EXPECT_THAT(*probe->log, ElementsAre("move", "move", "destroy"));
}

namespace
{

/// Styles of two categories, all of whose properties are plain ones, or a host's that do the same.
class World
{
public:
    static constexpr std::size_t StyleCount = 5;
    static constexpr std::size_t KeyCount = 6;

    explicit World(bool isPlain)
        : m_categories{Key(isPlain ? L"plain wide" : L"host's wide"), Key(isPlain ? L"plain narrow" : L"host's narrow")}
    {
        for (std::size_t key = 0; key < KeyCount; ++key)
        {
            keys.push_back(Key((L"twin " + std::to_wstring(key)).c_str()));
        }
        for (std::size_t category = 0; category < m_categories.size(); ++category)
        {
            Manager().RegisterCategory(m_categories[category], VelString(), false, false);
            for (std::size_t key = 0; key < KeyCount / (category + 1); ++key)
            {
                Manager().RegisterProperty(m_categories[category], keys[key],
                                           isPlain ? MakeDefinition<StyleProperty>() : MakeDefinition<HostProperty>());
            }
        }
        for (std::size_t style = 0; style < StyleCount; ++style)
        {
            styles.emplace_back(nullptr, m_categories[0]);
        }
    }

    /// Does something, drawn from `random`. What came of it, as text.
    std::string Act(std::mt19937& random)
    {
        Style& style = styles[random() % StyleCount];
        Style& other = styles[random() % StyleCount];
        const PropertyKey& key = keys[random() % KeyCount];
        const Any value(static_cast<double>(random() % 3));
        std::set<PropertyKey> changed;
        switch (random() % 16)
        {
        case 0:
        case 1:
            style.SetProperty(key, value);
            break;
        case 2:
        case 3:
            style.SetProperty(key, Any(value));
            break;
        case 4:
            style.SetProperty(key, Any());
            break;
        case 5:
            return std::to_string(style.ClearProperty(key));
        case 6: // a host's visitor may leave nothing
            style.ProcessProperties([](Any& visited, Style*, const PropertyKey&) {
                Any().Swap(visited);
                return false;
            });
            break;
        case 7:
            style.SetParent(random() % 3 == 0 ? nullptr : &other);
            break;
        case 8:
            style.SetOwner(random() % 2 == 0 ? nullptr : &other, key);
            break;
        case 9:
            style.SetCategory(m_categories[random() % 5 == 0 ? 1 : 0]);
            break;
        case 10:
            style = other;
            break;
        case 11:
            return std::to_string(style == other) + std::to_string(Style(other) == other);
        case 12:
            return std::to_string(style.Flatten());
        case 13:
            style.Flatten(changed);
            return std::to_string(changed.size()) + std::to_string(changed.contains(key));
        case 14: {
            const std::unique_ptr<const Style> flattened(style.CreateFlattenedStyle());
            return std::to_string(flattened->IsEmpty()) + Show(*flattened);
        }
        default:
            style.SwapData(other);
            break;
        }
        return "";
    }

    [[nodiscard]] std::string Show(const Style& style) const
    {
        std::string shown;
        for (const PropertyKey& key : keys)
        {
            Any value;
            if (!style.GetOverrideProperty(key, value))
            {
                shown += "- ";
            }
            else
            {
                shown += value.IsEmpty() ? "empty " : std::to_string(value.Get<double>()) + ' ';
            }
        }
        return shown;
    }

    std::deque<Style> styles;
    std::vector<PropertyKey> keys;

private:
    template <class Definition>
    static BaseStyleProperty* MakeDefinition()
    {
        return new Definition(nullptr, 1.0, new TextPolicy<double>(), 0);
    }

    std::array<PropertyKey, 2> m_categories;
};

/// Counts what is reported to the log.
class LogCount
{
public:
    LogCount()
    {
        VelUtils::SetLogSink([this](const VelString&) { ++count; });
    }
    LogCount(const LogCount&) = delete;
    LogCount& operator=(const LogCount&) = delete;
    ~LogCount() { VelUtils::SetLogSink({}); }

    std::size_t count = 0;
};

} // namespace

TEST_F(IndexedCategory, PlainValuesBehaveAsThoseOfAHostThatDoTheSame)
{
    const unsigned seed = std::random_device()();
    for (unsigned round = 0; round < 200; ++round)
    {
        Manager().Reset();
        World plain(true), hosts(false);
        std::mt19937 random(seed + round);
        for (int step = 0; step < 60; ++step)
        {
            SCOPED_TRACE("seed " + std::to_string(seed + round) + ", step " + std::to_string(step));
            const auto act = [drawn = static_cast<unsigned>(random())](World& world) {
                std::mt19937 draws(drawn);
                const LogCount log;
                std::string result;
                try
                {
                    result = world.Act(draws);
                }
                catch (const std::exception& failure)
                {
                    result = failure.what();
                }
                return result + ", reports: " + std::to_string(log.count);
            };
            ASSERT_EQ(act(plain), act(hosts));
            for (std::size_t style = 0; style < World::StyleCount; ++style)
            {
                ASSERT_EQ(plain.Show(plain.styles[style]), hosts.Show(hosts.styles[style])) << style;
                ASSERT_EQ(plain.styles[style].GetParent() == nullptr, hosts.styles[style].GetParent() == nullptr);
            }
        }
    }
}

} // namespace Styles::Testing
