// What it costs to look a value up: through parents, to the default, and through owners.

#include "PeerMaps.h"
#include "Rows.h"
#include "StyleData.h"

#include <algorithm>
#include <deque>
#include <initializer_list>
#include <memory>
#include <numeric>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace
{

using Styles::PropertyKey;
using Styles::Style;

// Of the 64 properties, only roots hold the first 8 and nothing holds the next 8; styles hold 24 of the others.
constexpr std::size_t kAtTheRoot = 8;
constexpr std::size_t kNowhere = 8;
constexpr std::size_t kLookUps = 256;
constexpr std::size_t kColdChains = 4096;

/// What the styles of one chain hold, the nearest style first.
using ChainPlan = std::vector<std::vector<std::size_t>>;

ChainPlan PlanChain(std::size_t parents, std::mt19937& random)
{
    ChainPlan plan(parents + 1);
    for (std::size_t style = 0; style <= parents; ++style)
    {
        std::vector<std::size_t> others(StyleData::PropertyCount - kAtTheRoot - kNowhere);
        std::iota(others.begin(), others.end(), kAtTheRoot + kNowhere);
        std::shuffle(others.begin(), others.end(), random);
        others.resize(StyleData::ValueCount);
        if (style == parents)
        {
            std::iota(others.begin(), others.begin() + kAtTheRoot, std::size_t{0});
            std::shuffle(others.begin(), others.end(), random);
        }
        plan[style] = std::move(others);
    }
    return plan;
}

/// The properties to look up one after the other.
std::vector<std::size_t> PlanLookUps(std::size_t first, std::size_t count, std::size_t lookUps)
{
    std::mt19937 random(7);
    std::vector<std::size_t> properties;
    for (std::size_t index = 0; index < lookUps; ++index)
    {
        properties.push_back(first + random() % count);
    }
    return properties;
}

/// Our chains.
struct OurChain
{
    static constexpr const char* Contender = Rows::Ours;
    using Key = PropertyKey;

    explicit OurChain(const ChainPlan& plan)
    {
        Style* parent = nullptr;
        for (std::size_t style = plan.size(); style-- > 0;)
        {
            styles.emplace_front(parent, StyleData::Category());
            parent = &styles.front();
            for (const std::size_t property : plan[style])
            {
                parent->SetProperty(StyleData::KeyOf(property),
                                    StyleData::ToAny(StyleData::MakeValue(property, style)));
            }
        }
    }
    static const PropertyKey& Name(std::size_t property) { return StyleData::KeyOf(property); }
    const Styles::Any& LookUp(const PropertyKey& key) const { return styles.front().GetProperty(key); }

    std::deque<Style> styles;
};

/// The same by hand, over one of the peers' maps. A miss ends in a map of 64 defaults.
template <class Peer>
struct PeerChain
{
    static constexpr const char* Contender = Peer::Contender;
    using Key = typename Peer::Key;
    using Map = typename Peer::Map;

    struct Node
    {
        Map values;
        const Node* parent = nullptr;
    };

    explicit PeerChain(const ChainPlan& plan)
    {
        const Node* parent = nullptr;
        for (std::size_t style = plan.size(); style-- > 0;)
        {
            nodes.push_front({Map(), parent});
            parent = &nodes.front();
            for (const std::size_t property : plan[style])
            {
                Peer::Insert(nodes.front().values, StyleData::MakeValue(property, style));
            }
        }
    }
    static Key Name(std::size_t property) { return Peer::Name(property); }
    // A function, as in any program that looks up in more places than one; not a part of the loop that measures it.
    [[gnu::noinline]] const auto& LookUp(const Key& key) const
    {
        for (const Node* node = &nodes.front(); node != nullptr; node = node->parent)
        {
            if (const auto* value = Peer::Find(node->values, key))
            {
                return *value;
            }
        }
        return *Peer::Find(*defaults, key);
    }

    static const Map* Defaults()
    {
        static const Map made = [] {
            Map map;
            for (std::size_t property = 0; property < StyleData::PropertyCount; ++property)
            {
                Peer::Insert(map, StyleData::MakeValue(property, 0));
            }
            return map;
        }();
        return &made;
    }

    std::deque<Node> nodes;
    const Map* defaults = Defaults();
};

/// Does nothing but follow the parents.
struct PointerChase : PeerChain<PeerMaps::HandWritten>
{
    static constexpr const char* Contender = "limit: following parents";
    using PeerChain::PeerChain;
    const Node& LookUp(const void* /*key*/) const
    {
        const Node* node = &nodes.front();
        while (node->parent != nullptr)
        {
            Rows::Keep(node);
            node = node->parent;
        }
        return *node;
    }
};

/// One chain, looked up again and again.
template <class Chain>
void AddHot(const std::string& what, std::size_t firstProperty, std::size_t parents)
{
    const std::string workload = "look up/" + what + "/parents " + std::to_string(parents);
    Rows::Add(workload, Chain::Contender, kLookUps, [firstProperty, parents]() -> Rows::Operation {
        std::mt19937 random(5);
        auto chain = std::make_shared<const Chain>(PlanChain(parents, random));
        std::vector<typename Chain::Key> names;
        for (const std::size_t property : PlanLookUps(firstProperty, kAtTheRoot, kLookUps))
        {
            names.push_back(Chain::Name(property));
        }
        return [chain, names] {
            for (const auto& name : names)
            {
                Rows::Keep(&chain->LookUp(name));
            }
        };
    });
}

/// Chains enough to be in no cache, picked at random.
template <class Chain>
void AddCold(std::size_t parents)
{
    const std::string workload = "look up/hit at the root, cold/parents " + std::to_string(parents);
    Rows::Add(workload, Chain::Contender, kColdChains, [parents]() -> Rows::Operation {
        std::mt19937 random(5);
        auto chains = std::make_shared<std::deque<Chain>>();
        for (std::size_t chain = 0; chain < kColdChains; ++chain)
        {
            chains->emplace_back(PlanChain(parents, random));
        }
        std::vector<std::pair<const Chain*, typename Chain::Key>> lookUps;
        for (const std::size_t property : PlanLookUps(0, kAtTheRoot, kColdChains))
        {
            lookUps.emplace_back(&(*chains)[lookUps.size()], Chain::Name(property));
        }
        std::shuffle(lookUps.begin(), lookUps.end(), random);
        return [chains, lookUps] {
            for (const auto& [chain, name] : lookUps)
            {
                Rows::Keep(&chain->LookUp(name));
            }
        };
    });
}

template <class Chain>
void AddChain()
{
    for (const std::size_t parents : std::initializer_list<std::size_t>{0, 1, 2, 4, 8, 16, 64})
    {
        AddHot<Chain>("hit at the root", 0, parents);
        AddHot<Chain>("default", kAtTheRoot, parents);
    }
    AddCold<Chain>(4);
}

/// A style whose substyle at the place `keys` keys deep has no parent and lacks the values looked up. Its top owner has
/// a parent, whose substyle at the same place holds them. All styles on both sides hold 24 plain values.
struct Substyles
{
    explicit Substyles(std::size_t keys)
        : parent(nullptr, StyleData::NestingCategory()), heirs(&parent, StyleData::NestingCategory())
    {
        std::mt19937 random(5);
        Fill(parent, keys, true, random);
        Fill(heirs, keys, false, random);
        heir = &heirs;
        for (std::size_t key = 0; key < keys; ++key)
        {
            heir = heir->GetSubstyle(StyleData::SubstyleKey(key), false);
        }
    }

    static void Fill(Style& top, std::size_t keys, bool isSource, std::mt19937& random)
    {
        Style* style = &top;
        for (std::size_t depth = 0; depth <= keys; ++depth)
        {
            // The innermost style of the source is the only root of values here.
            const ChainPlan plan = PlanChain(isSource && depth == keys ? 0 : 1, random);
            for (const std::size_t property : plan.front())
            {
                style->SetProperty(StyleData::KeyOf(property), StyleData::ToAny(StyleData::MakeValue(property, depth)));
            }
            if (depth < keys)
            {
                style =
                    style->GetSubstyleAndCreateIfMissing(StyleData::SubstyleKey(depth), StyleData::NestingCategory());
            }
        }
    }

    Style parent;
    Style heirs;
    const Style* heir = nullptr;
};

void AddOwners(std::size_t keys)
{
    const std::string workload = "look up/through owners/keys " + std::to_string(keys);
    Rows::Add(workload, Rows::Ours, kLookUps, [keys]() -> Rows::Operation {
        auto substyles = std::make_shared<const Substyles>(keys);
        std::vector<PropertyKey> names;
        for (const std::size_t property : PlanLookUps(0, kAtTheRoot, kLookUps))
        {
            names.push_back(StyleData::KeyOf(property));
        }
        return [substyles, names] {
            for (const PropertyKey& name : names)
            {
                Rows::Keep(&substyles->heir->GetProperty(name));
            }
        };
    });

    // No way is shorter than a look-up in the heir, which has no value; one of each key on the way to its place, from
    // the parent of the top owner on; and one in the substyle at that place: two more than there are keys. The peer
    // does them in maps of the same contents, one after the other, and follows the substyles that it finds.
    Rows::Add(workload, "look-ups in std::map<const void*, Any>", kLookUps, [keys]() -> Rows::Operation {
        using Map = PeerMaps::HandWritten::Map;
        struct Data
        {
            explicit Data(std::size_t count) : substyles(count) {}
            Substyles substyles;
            std::deque<Map> maps; // of the heir, then of the parent and the styles in it, outermost first
        };
        auto data = std::make_shared<Data>(keys);
        const auto addMap = [&](const Style& style) {
            Map& map = data->maps.emplace_back();
            for (std::size_t property = 0; property < StyleData::PropertyCount; ++property)
            {
                if (style.DoesOverrideProperty(StyleData::KeyOf(property)))
                {
                    map.emplace(StyleData::AddressOf(property), style.GetProperty(StyleData::KeyOf(property)));
                }
            }
        };
        addMap(*data->substyles.heir);
        const Style* style = &data->substyles.parent;
        addMap(*style);
        for (std::size_t key = 0; key < keys; ++key)
        {
            style = style->GetSubstyle(StyleData::SubstyleKey(key), false);
            addMap(*style);
            const Map* inside = &data->maps.back();
            data->maps[data->maps.size() - 2].emplace(StyleData::SubstyleKey(key).GetPooled(), inside);
        }
        std::vector<const void*> names;
        for (const std::size_t property : PlanLookUps(0, kAtTheRoot, kLookUps))
        {
            names.push_back(StyleData::AddressOf(property));
        }
        std::vector<const void*> way;
        for (std::size_t key = 0; key < keys; ++key)
        {
            way.push_back(StyleData::SubstyleKey(key).GetPooled());
        }
        return [data, names, way] {
            for (const void* name : names)
            {
                Rows::Keep(PeerMaps::HandWritten::Find(data->maps[0], name));
                const Map* map = &data->maps[1];
                for (const void* key : way)
                {
                    map = *PeerMaps::HandWritten::Find(*map, key)->GetIf<const Map*>();
                }
                Rows::Keep(PeerMaps::HandWritten::Find(*map, name));
            }
        };
    });
}

[[maybe_unused]] const bool kAdded = [] {
    AddChain<OurChain>();
    AddChain<PeerChain<PeerMaps::HandWritten>>();
    AddChain<PeerChain<PeerMaps::WideText>>();
#ifdef STYLES_PEER_NLOHMANN
    AddChain<PeerChain<PeerMaps::OrderedJson>>();
#endif
#ifdef STYLES_PEER_QT
    AddChain<PeerChain<PeerMaps::QtVariantMap>>();
    AddChain<PeerChain<PeerMaps::QtVariantHash>>();
#endif
    AddChain<PointerChase>();
    AddOwners(2);
    AddOwners(4);
    return true;
}();

} // namespace
