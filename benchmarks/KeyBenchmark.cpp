// What names cost: interning a known one, comparing two, and finding one among those of a style.

#include "Rows.h"

#include <styles/Styles.h>

#ifdef STYLES_PEER_BOOST
#    include <boost/flyweight.hpp>
#    include <boost/flyweight/no_locking.hpp>
#endif
#ifdef STYLES_PEER_GLIB
#    include <glib.h>
#endif
#ifdef STYLES_PEER_QT
#    include <QMap>
#    include <QSet>
#    include <QString>
#endif

#include <algorithm>
#include <any>
#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace
{

using Styles::Any;
using Styles::PropertyKey;
using Styles::VelString;

// The names: words with a point between them and a number, of 8 to 22 characters, as styles have them.

constexpr std::size_t NameCount = 10000;

std::wstring NameAt(std::size_t index)
{
    static constexpr std::array Words{L"fill",  L"line",  L"frame", L"font",   L"shadow", L"grid",   L"border",
                                      L"label", L"color", L"width", L"margin", L"weight", L"dashes", L"opacity"};
    return std::wstring(Words[index % Words.size()]) + L'.' + Words[index / Words.size() % Words.size()] +
           std::to_wstring(index);
}

/// Every name once, in an order that has nothing to do with the one in which they are added.
std::vector<std::wstring> ShuffledNames()
{
    std::vector<std::wstring> names;
    for (std::size_t i = 0; i < NameCount; ++i)
    {
        names.push_back(NameAt(i));
    }
    std::shuffle(names.begin(), names.end(), std::mt19937(7));
    return names;
}

// Interning. A contender adds all names, and then is asked for each of them by a text in another place. `Intern` may be
// called by several threads at once when `Shared`.

struct OursInterns
{
    using Text = VelString;
    static constexpr bool Shared = true;
    static Text TextOf(const std::wstring& name) { return Text(std::wstring_view(name)); }
    const void* Intern(const Text& text) { return PropertyKey(text).GetPooled(); }
};

struct SetInterns
{
    using Text = std::wstring;
    static constexpr bool Shared = false;
    static Text TextOf(const std::wstring& name) { return name; }
    const void* Intern(const Text& text) { return &*m_set.insert(text).first; }

private:
    std::unordered_set<std::wstring> m_set;
};

struct LockedSetInterns
{
    using Text = std::wstring;
    static constexpr bool Shared = true;
    static Text TextOf(const std::wstring& name) { return name; }
    const void* Intern(const Text& text)
    {
        const std::lock_guard guard(m_mutex);
        return &*m_set.insert(text).first;
    }

private:
    std::mutex m_mutex;
    std::unordered_set<std::wstring> m_set;
};

#ifdef STYLES_PEER_GLIB
struct QuarkInterns
{
    using Text = std::string; // UTF-8
    static constexpr bool Shared = true;
    static Text TextOf(const std::wstring& name) { return Text(name.begin(), name.end()); }
    std::size_t Intern(const Text& text) { return g_quark_from_string(text.c_str()); }
};
#endif

#ifdef STYLES_PEER_BOOST
template <class Flyweight, bool IsShared>
struct FlyweightInterns
{
    using Text = std::wstring;
    static constexpr bool Shared = IsShared;
    static Text TextOf(const std::wstring& name) { return name; }
    const void* Intern(const Text& text)
    {
        if (m_kept.size() < NameCount)
        {
            m_kept.emplace_back(text);
        }
        return &Flyweight(text).get();
    }

private:
    std::vector<Flyweight> m_kept; // so that no name goes away
};
using LockedFlyweight = boost::flyweight<std::wstring>;
using UnlockedFlyweight = boost::flyweight<std::wstring, boost::flyweights::no_locking>;
#endif

#ifdef STYLES_PEER_QT
struct QtSetInterns
{
    using Text = QString;
    static constexpr bool Shared = false;
    static Text TextOf(const std::wstring& name) { return QString::fromStdWString(name); }
    const void* Intern(const Text& text) { return &*m_set.insert(text); }

private:
    QSet<QString> m_set;
};
#endif

template <class Contender>
void AddInternRows(const std::string& contender)
{
    struct World
    {
        World()
        {
            for (std::size_t i = 0; i < NameCount; ++i)
            {
                pool.Intern(Contender::TextOf(NameAt(i)));
            }
            for (const std::wstring& name : ShuffledNames())
            {
                asked.push_back(Contender::TextOf(name));
            }
        }

        Contender pool;
        std::vector<typename Contender::Text> asked;
    };
    const auto prepare = [] {
        return [world = std::make_shared<World>()] {
            for (const auto& text : world->asked)
            {
                Rows::Keep(world->pool.Intern(text));
            }
        };
    };
    Rows::Add("intern a known name among 10000", contender, NameCount, prepare);
    if constexpr (Contender::Shared)
    {
        for (const int threads : {1, 2, 4})
        {
            Rows::AddThreaded("intern a known name among 10000 by " + std::to_string(threads) + " threads", contender,
                              NameCount, threads, prepare);
        }
    }
}

// Comparing keys: two arrays of them, every other one the same in both.

constexpr std::size_t ComparedCount = 1024;

template <class Key, class Make>
void AddCompareRow(const std::string& contender, Make make)
{
    Rows::Add("compare two keys", contender, ComparedCount, [make] {
        auto keys = std::make_shared<std::pair<std::vector<Key>, std::vector<Key>>>();
        for (std::size_t i = 0; i < ComparedCount; ++i)
        {
            keys->first.push_back(make(NameAt(i)));
            keys->second.push_back(make(NameAt(i % 2 == 0 ? i : i + 1)));
        }
        return [keys] {
            std::size_t same = 0;
            for (std::size_t i = 0; i < ComparedCount; ++i)
            {
                same += keys->first[i] == keys->second[i] ? 1 : 0;
            }
            Rows::Keep(same);
        };
    });
}

// Looking a key up among the 24 of a style: 512 of them in a random order.

constexpr std::size_t HeldCount = 24;
constexpr std::size_t AskedCount = 512;

PropertyKey OurKey(const std::wstring& name)
{
    return PropertyKey(VelString(std::wstring_view(name)));
}

const void* AddressOf(const std::wstring& name)
{
    return OurKey(name).GetPooled(); // so that the trees of all maps by address have one shape
}

/// `make` turns a name into a key of the map.
template <class Map, class Make>
void AddFindRows(const std::string& contender, Make make)
{
    using Key = typename Map::key_type;
    struct World
    {
        Map map;
        std::vector<Key> asked;
    };
    const auto add = [&](const std::string& workload, std::size_t firstAsked) {
        Rows::Add(workload, contender, AskedCount, [make, firstAsked] {
            auto world = std::make_shared<World>();
            std::mt19937 random(3);
            for (std::size_t i = 0; i < HeldCount; ++i)
            {
                // Pooled one behind the other, the addresses of neighbours tell where they are; those of a style do
                // not.
                world->map[make(NameAt(i * 37))] = typename Map::mapped_type(static_cast<double>(i));
            }
            for (std::size_t i = 0; i < AskedCount; ++i)
            {
                world->asked.push_back(make(NameAt(firstAsked + random() % HeldCount * 37)));
            }
            return [world] {
                std::size_t found = 0;
                for (const Key& key : world->asked)
                {
                    found += world->map.find(key) != world->map.end() ? 1 : 0;
                }
                Rows::Keep(found);
            };
        });
    };
    add("find a key among 24", 0);
    add("miss a key among 24", 18);
}

[[maybe_unused]] const bool kAdded = [] {
    AddInternRows<OursInterns>(Rows::Ours);
    AddInternRows<SetInterns>("std::unordered_set<wstring>");
    AddInternRows<LockedSetInterns>("std::unordered_set<wstring> and mutex");

    AddCompareRow<PropertyKey>(Rows::Ours, OurKey);
    AddCompareRow<const void*>("pointer", AddressOf);
    AddCompareRow<std::wstring>("std::wstring", [](const std::wstring& name) { return name; });

    AddFindRows<std::map<PropertyKey, Any>>(Rows::Ours, OurKey);
    AddFindRows<std::map<const void*, Any>>("std::map<const void*>", AddressOf);
    AddFindRows<std::unordered_map<const void*, Any>>("std::unordered_map<const void*>", AddressOf);
    AddFindRows<std::unordered_map<PropertyKey, Any>>("std::unordered_map<PropertyKey>", OurKey);
    const auto nameItself = [](const std::wstring& name) { return name; };
    AddFindRows<std::map<std::wstring, std::any>>("std::map<wstring,any>", nameItself);
    AddFindRows<std::unordered_map<std::wstring, std::any>>("std::unordered_map<wstring,any>", nameItself);
#ifdef STYLES_PEER_BOOST
    AddInternRows<FlyweightInterns<LockedFlyweight, true>>("boost::flyweight");
    AddInternRows<FlyweightInterns<UnlockedFlyweight, false>>("boost::flyweight without locks");
    AddCompareRow<UnlockedFlyweight>("boost::flyweight",
                                     [](const std::wstring& name) { return UnlockedFlyweight(name); });
#endif
#ifdef STYLES_PEER_GLIB
    AddInternRows<QuarkInterns>("GQuark");
    AddCompareRow<GQuark>(
        "GQuark", [](const std::wstring& name) { return g_quark_from_string(QuarkInterns::TextOf(name).c_str()); });
#endif
#ifdef STYLES_PEER_QT
    AddInternRows<QtSetInterns>("QSet<QString>");
    const auto qtName = [](const std::wstring& name) { return QString::fromStdWString(name); };
    AddCompareRow<QString>("QString", qtName);
    AddFindRows<QMap<QString, Any>>("QMap<QString>", qtName);
#endif
    return true;
}();

} // namespace
