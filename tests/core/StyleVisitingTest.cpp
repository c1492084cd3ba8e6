// Visiting every value of a style, or those at the ends of paths.

#include "support/StyleMaking.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <utility>
#include <vector>

using testing::ElementsAre;

namespace Styles::Testing
{

namespace
{

class StyleVisiting : public SchemaFixture
{
protected:
    Style base{nullptr, StyleCategoryName};
    Style style{&base, StyleCategoryName};
    Style other{nullptr, StyleCategoryName};
    const Any red{VelString(L"red")};
};

} // namespace

TEST_F(StyleVisiting, VisitingReachesPlainValuesInSubstylesAndListsInKeyOrder)
{
    style.SetProperty(Note, red);
    style.SetProperty(Number, Any(1.0));
    Style& fill = AddSubstyle(style, Fill, Fill);
    fill.SetProperty(Color, red);
    const std::vector<Style*> stops = AddElements(style, Stops, Stop, 2);
    stops[0]->SetProperty(Color, red);
    stops[1]->SetProperty(Position, Any(0.5));

    std::map<PropertyKey, std::vector<std::pair<Style*, PropertyKey>>> byKey{
        {Note, {{&style, Note}}},
        {Number, {{&style, Number}}},
        {Fill, {{&fill, Color}}},
        {Stops, {{stops[0], Color}, {stops[1], Position}}}};
    std::vector<std::pair<Style*, PropertyKey>> expected;
    for (const auto& entry : byKey)
    {
        expected.insert(expected.end(), entry.second.begin(), entry.second.end());
    }
    std::vector<std::pair<Style*, PropertyKey>> visited;
    EXPECT_TRUE(style.ProcessProperties([&](Any& value, Style* holder, const PropertyKey& key) {
        EXPECT_EQ(&value, &holder->GetProperty(key));
        visited.emplace_back(holder, key);
        return true;
    }));
    EXPECT_EQ(visited, expected);
}

TEST_F(StyleVisiting, AVisitorThatAnswersFalseStopsTheWalk)
{
    EXPECT_TRUE(other.ProcessProperties([](Any&, Style*, const PropertyKey&) { return false; }));
    AddSubstyle(style, Fill, Fill).SetProperty(Color, red);
    style.SetProperty(Note, red);
    style.SetProperty(Number, Any(1.0));
    int visits = 0;
    const auto stop = [&visits](Any&, Style*, const PropertyKey&) {
        ++visits;
        return false;
    };
    EXPECT_FALSE(style.ProcessProperties(stop));
    EXPECT_EQ(visits, 1);
    EXPECT_FALSE(style.ProcessProperties({{Note}, {Number}}, stop));
    EXPECT_EQ(visits, 2);
}

TEST_F(StyleVisiting, VisitingPathsSkipsThoseThatLeadNowhere)
{
    Style& fill = AddSubstyle(style, Fill, Fill);
    fill.SetProperty(Color, red);
    AddSubstyle(base, Outline, Outline).SetProperty(Color, red);
    style.SetProperty(Note, red);
    std::vector<std::pair<Style*, PropertyKey>> visited;
    EXPECT_TRUE(style.ProcessProperties({{},
                                         {Number},
                                         {Fill, Angle},
                                         {Outline, Color},
                                         {Note, Color},
                                         {Key(L"unknown")},
                                         {Fill, Color},
                                         {Note},
                                         {Fill}},
                                        [&](Any&, Style* holder, const PropertyKey& key) {
                                            visited.emplace_back(holder, key);
                                            return true;
                                        }));
    EXPECT_THAT(visited, ElementsAre(std::pair(&fill, Color), std::pair(&style, Note), std::pair(&fill, Color)));
}

TEST_F(StyleVisiting, AVisitorMayChangeValues)
{
    style.SetProperty(Number, Any(1.0));
    AddElements(style, Stops, Stop, 1)[0]->SetProperty(Position, Any(0.5));
    style.ProcessProperties([](Any& value, Style*, const PropertyKey&) {
        value = Any(value.Get<double>() * 2.0);
        return true;
    });
    EXPECT_EQ(EffectiveNumber(style, Number), 2.0);
    EXPECT_EQ(EffectiveNumber(*ElementsOf(style, Stops)[0], Position), 1.0);
}

TEST_F(StyleVisiting, AVisitorMaySetAndClearPropertiesOfTheStyleItVisits)
{
    const std::vector<PropertyKey> keys{XScale, YScale, Angle, Skew};
    for (const PropertyKey& first : keys)
    {
        Style fill(nullptr, Fill);
        for (const PropertyKey& key : keys)
        {
            fill.SetProperty(key, Any(1.0));
        }
        std::vector<PropertyKey> visited;
        EXPECT_TRUE(fill.ProcessProperties([&](Any&, Style* holder, const PropertyKey& key) {
            visited.push_back(key);
            holder->SetProperty(Color, Any(VelString(L"new"))); // not visited: it was not there at the beginning
            for (const PropertyKey& gone : keys)
            {
                if (gone != first)
                {
                    holder->ClearProperty(gone);
                }
            }
            holder->SetProperty(first, Any(2.0));
            return true;
        }));
        EXPECT_TRUE(std::count(visited.begin(), visited.end(), first) == 1);
        EXPECT_LE(visited.size(), 2U);
        EXPECT_EQ(EffectiveNumber(fill, first), 2.0);
        EXPECT_EQ(OwnText(fill, Color), L"new");
    }
}

TEST_F(StyleVisiting, AVisitorMayClearEverythingInsideASubstyleItVisits)
{
    Style& fill = AddSubstyle(style, Fill, Fill);
    fill.SetProperty(XScale, Any(1.0));
    fill.SetProperty(Angle, Any(1.0));
    int visits = 0;
    EXPECT_TRUE(style.ProcessProperties([&visits](Any&, Style* holder, const PropertyKey&) {
        holder->ClearAllProperties();
        ++visits;
        return true;
    }));
    EXPECT_EQ(visits, 1);
    EXPECT_TRUE(fill.IsEmpty());
}

} // namespace Styles::Testing
