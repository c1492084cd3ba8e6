/// What a host would hold the values of a style in without our library: maps from a name to a value of any type.
///
/// Each peer is a struct with the types `Map` and `Key`, `Name` (how a look-up names a property), `Insert`, `Find`,
/// `AreEqual`, `AddAbsent` (what another map has beyond this one), and `Detach` (from what copies share).
#pragma once

#include "StyleData.h"

#include <algorithm>
#include <any>
#include <cstdint>
#include <map>
#include <string>

#ifdef STYLES_PEER_NLOHMANN
#    include <nlohmann/json.hpp>
#endif
#ifdef STYLES_PEER_QT
#    include <QHash>
#    include <QMap>
#    include <QString>
#    include <QVariant>
#endif

namespace PeerMaps
{

/// Written by hand around our value: a standard map of addresses.
struct HandWritten
{
    static constexpr const char* Contender = "std::map<const void*, Any>";
    using Map = std::map<const void*, Styles::Any>;
    using Key = const void*;

    static Key Name(std::size_t property) { return StyleData::AddressOf(property); }
    static void Insert(Map& map, const StyleData::Value& value)
    {
        map.emplace(Name(value.property), StyleData::ToAny(value));
    }
    static const Styles::Any* Find(const Map& map, Key key)
    {
        const auto entry = map.find(key);
        return entry != map.end() ? &entry->second : nullptr;
    }
    static bool AreEqual(const Map& one, const Map& other) { return one == other; }
    static void AddAbsent(Map& map, const Map& others) { map.insert(others.begin(), others.end()); }
    static void Detach(Map& /*map*/) {}
};

/// What most would write.
struct WideText
{
    static constexpr const char* Contender = "std::map<wstring,any>";
    using Map = std::map<std::wstring, std::any>;
    using Key = std::wstring;

    static Key Name(std::size_t property) { return StyleData::NameOf(property); }
    static void Insert(Map& map, const StyleData::Value& value)
    {
        switch (value.kind)
        {
        case StyleData::Kind::Number:
            map.emplace(Name(value.property), value.number);
            break;
        case StyleData::Kind::Text:
            map.emplace(Name(value.property), value.text);
            break;
        case StyleData::Kind::Boolean:
            map.emplace(Name(value.property), value.boolean);
            break;
        case StyleData::Kind::Pointer:
            map.emplace(Name(value.property), value.pointer);
            break;
        }
    }
    static const std::any* Find(const Map& map, const Key& key)
    {
        const auto entry = map.find(key);
        return entry != map.end() ? &entry->second : nullptr;
    }
    /// std::any does not compare: the types are tried one after the other.
    static bool AreEqual(const Map& one, const Map& other)
    {
        return std::equal(one.begin(), one.end(), other.begin(), other.end(), [](const auto& a, const auto& b) {
            return a.first == b.first && AreEqual(a.second, b.second);
        });
    }
    static bool AreEqual(const std::any& one, const std::any& other)
    {
        return AreEqualAs<double>(one, other) || AreEqualAs<std::wstring>(one, other) || AreEqualAs<bool>(one, other) ||
               AreEqualAs<StyleData::HostObject*>(one, other);
    }
    template <class T>
    static bool AreEqualAs(const std::any& one, const std::any& other)
    {
        const T* a = std::any_cast<T>(&one);
        const T* b = std::any_cast<T>(&other);
        return a != nullptr && b != nullptr && *a == *b;
    }
    static void AddAbsent(Map& map, const Map& others) { map.insert(others.begin(), others.end()); }
    static void Detach(Map& /*map*/) {}
};

#ifdef STYLES_PEER_NLOHMANN
/// A JSON object; pointers are numbers in it.
struct OrderedJson
{
    static constexpr const char* Contender = "nlohmann::ordered_json";
    using Map = nlohmann::ordered_json;
    using Key = std::string;

    static std::string Narrow(const std::wstring& text)
    {
        std::string narrow;
        for (const wchar_t character : text)
        {
            narrow += static_cast<char>(character);
        }
        return narrow;
    }
    static Key Name(std::size_t property) { return Narrow(StyleData::NameOf(property)); }
    static void Insert(Map& map, const StyleData::Value& value)
    {
        Map& stored = map[Name(value.property)];
        switch (value.kind)
        {
        case StyleData::Kind::Number:
            stored = value.number;
            break;
        case StyleData::Kind::Text:
            stored = Narrow(value.text);
            break;
        case StyleData::Kind::Boolean:
            stored = value.boolean;
            break;
        case StyleData::Kind::Pointer:
            stored = reinterpret_cast<std::uintptr_t>(value.pointer);
            break;
        }
    }
    static const nlohmann::ordered_json* Find(const Map& map, const Key& key)
    {
        const auto entry = map.find(key);
        return entry != map.end() ? &*entry : nullptr;
    }
    static bool AreEqual(const Map& one, const Map& other) { return one == other; }
    static void AddAbsent(Map& map, const Map& others)
    {
        for (auto entry = others.begin(); entry != others.end(); ++entry)
        {
            if (!map.contains(entry.key()))
            {
                map[entry.key()] = entry.value();
            }
        }
    }
    static void Detach(Map& /*map*/) {}
};
#endif

#ifdef STYLES_PEER_QT
/// Qt's maps.
template <class MapOfQt>
struct QtMap
{
    using Map = MapOfQt;
    using Key = QString;

    static Key Name(std::size_t property) { return QString::fromStdWString(StyleData::NameOf(property)); }
    static void Insert(Map& map, const StyleData::Value& value)
    {
        switch (value.kind)
        {
        case StyleData::Kind::Number:
            map.insert(Name(value.property), value.number);
            break;
        case StyleData::Kind::Text:
            map.insert(Name(value.property), QString::fromStdWString(value.text));
            break;
        case StyleData::Kind::Boolean:
            map.insert(Name(value.property), value.boolean);
            break;
        case StyleData::Kind::Pointer:
            map.insert(Name(value.property), QVariant::fromValue(static_cast<void*>(value.pointer)));
            break;
        }
    }
    static const QVariant* Find(const Map& map, const Key& key)
    {
        const auto entry = map.constFind(key);
        return entry != map.constEnd() ? &entry.value() : nullptr;
    }
    static bool AreEqual(const Map& one, const Map& other) { return one == other; }
    static void AddAbsent(Map& map, const Map& others)
    {
        for (auto entry = others.constBegin(); entry != others.constEnd(); ++entry)
        {
            if (!map.contains(entry.key()))
            {
                map.insert(entry.key(), entry.value());
            }
        }
    }
    static void Detach(Map& map) { map.detach(); }
};
struct QtVariantMap : QtMap<QVariantMap>
{
    static constexpr const char* Contender = "QVariantMap";
};
struct QtVariantHash : QtMap<QVariantHash>
{
    static constexpr const char* Contender = "QVariantHash";
};
#endif

} // namespace PeerMaps
