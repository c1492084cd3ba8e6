// What it costs to copy, compare and flatten a whole style of 24 values: 8 numbers, 8 texts, 4 booleans, 4 pointers.

#include "PeerMaps.h"
#include "Rows.h"
#include "StyleData.h"

#include <algorithm>
#include <array>
#include <deque>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace
{

using Styles::Style;

constexpr std::size_t kTimes = 64;
constexpr std::size_t kGenerations = 4;

/// The values of a style. Of the properties of a kind, which ones is drawn at random.
std::vector<StyleData::Value> DrawValues(std::size_t seed)
{
    std::mt19937 random(static_cast<std::mt19937::result_type>(seed));
    std::vector<std::size_t> properties(StyleData::PropertyCount);
    for (std::size_t property = 0; property < properties.size(); ++property)
    {
        properties[property] = property;
    }
    std::shuffle(properties.begin(), properties.end(), random);
    std::array<std::size_t, 4> wanted = {8, 8, 4, 4}; // by kind
    std::vector<StyleData::Value> values;
    for (const std::size_t property : properties)
    {
        std::size_t& left = wanted[static_cast<std::size_t>(StyleData::KindOf(property))];
        if (left > 0)
        {
            --left;
            values.push_back(StyleData::MakeValue(property, seed));
        }
    }
    return values;
}

void FillStyle(Style& style, std::size_t seed)
{
    for (const StyleData::Value& value : DrawValues(seed))
    {
        style.SetProperty(StyleData::KeyOf(value.property), StyleData::ToAny(value));
    }
}

template <class Peer>
typename Peer::Map MakeMap(std::size_t seed)
{
    typename Peer::Map map;
    for (const StyleData::Value& value : DrawValues(seed))
    {
        Peer::Insert(map, value);
    }
    return map;
}

/// Does `act` some times in a call.
template <class Act>
Rows::Operation Repeat(Act act)
{
    return [act] {
        for (std::size_t time = 0; time < kTimes; ++time)
        {
            act();
        }
    };
}

void AddOurs()
{
    Rows::Add("whole style/copy and destroy", Rows::Ours, kTimes, []() -> Rows::Operation {
        auto style = std::make_shared<Style>(nullptr, StyleData::Category());
        FillStyle(*style, 1);
        return Repeat([style] {
            const Style copy(*style);
            Rows::Keep(&copy);
        });
    });
    // The texts of the other side are equal, but not the same: both were made from characters.
    Rows::Add("whole style/compare equal ones", Rows::Ours, kTimes, []() -> Rows::Operation {
        auto styles = std::make_shared<std::deque<Style>>();
        for (int side = 0; side < 2; ++side)
        {
            FillStyle(styles->emplace_back(nullptr, StyleData::Category()), 1);
        }
        return Repeat([styles] { Rows::Keep(styles->front() == styles->back()); });
    });
    Rows::Add("whole style/flatten with 3 parents", Rows::Ours, kTimes, []() -> Rows::Operation {
        auto styles = std::make_shared<std::deque<Style>>();
        Style* parent = nullptr;
        for (std::size_t generation = 0; generation < kGenerations; ++generation)
        {
            FillStyle(styles->emplace_back(parent, StyleData::Category()), generation);
            parent = &styles->back();
        }
        return Repeat([styles] {
            const std::unique_ptr<const Style> flattened(styles->back().CreateFlattenedStyle());
            Rows::Keep(flattened.get());
        });
    });
}

template <class Peer>
void AddPeer()
{
    using Map = typename Peer::Map;
    Rows::Add("whole style/copy and destroy", Peer::Contender, kTimes, []() -> Rows::Operation {
        auto map = std::make_shared<Map>(MakeMap<Peer>(1));
        return Repeat([map] {
            Map copy(*map);
            Peer::Detach(copy);
            Rows::Keep(&copy);
        });
    });
    Rows::Add("whole style/compare equal ones", Peer::Contender, kTimes, []() -> Rows::Operation {
        auto one = std::make_shared<const Map>(MakeMap<Peer>(1));
        auto other = std::make_shared<const Map>(MakeMap<Peer>(1));
        return Repeat([one, other] { Rows::Keep(Peer::AreEqual(*one, *other)); });
    });
    Rows::Add("whole style/flatten with 3 parents", Peer::Contender, kTimes, []() -> Rows::Operation {
        auto maps = std::make_shared<std::deque<Map>>();
        for (std::size_t generation = 0; generation < kGenerations; ++generation)
        {
            maps->push_back(MakeMap<Peer>(generation));
        }
        // The nearest style, then what it lacks from its parents, nearest first.
        return Repeat([maps] {
            auto flattened = std::make_unique<Map>(maps->back());
            for (std::size_t generation = kGenerations - 1; generation-- > 0;)
            {
                Peer::AddAbsent(*flattened, (*maps)[generation]);
            }
            Rows::Keep(flattened.get());
        });
    });
}

[[maybe_unused]] const bool kAdded = [] {
    AddOurs();
    AddPeer<PeerMaps::HandWritten>();
    AddPeer<PeerMaps::WideText>();
#ifdef STYLES_PEER_NLOHMANN
    AddPeer<PeerMaps::OrderedJson>();
#endif
#ifdef STYLES_PEER_QT
    AddPeer<PeerMaps::QtVariantMap>();
#endif
    return true;
}();

} // namespace
