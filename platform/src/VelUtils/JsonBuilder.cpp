#include "JsonBuilder.h"

#include "JsonObject.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace VelUtils::Json
{

namespace
{

/// Of at least one and at most 32 bytes. Which texts meet in one entry matters little, so no seed is needed.
std::size_t HashShort(std::string_view text) noexcept
{
    const auto word = [text](std::size_t at, std::size_t size) {
        std::uint64_t value = 0;
        std::memcpy(&value, text.data() + at, size);
        return value;
    };
    // The first and the last bytes, which overlap in short texts, tell most texts apart.
    const std::size_t size = std::min<std::size_t>(text.size(), sizeof(std::uint64_t));
    const std::uint64_t hash =
        (word(0, size) ^ text.size()) * 0x9E3779B97F4A7C15u + word(text.size() - size, size) * 0xD6E8FEB86659FD93u;
    return static_cast<std::size_t>(hash >> 40);
}

} // namespace

VelString RecentTexts::Get(std::string_view utf8)
{
    if (utf8.empty() || utf8.size() > kLongest)
    {
        return VelPlatform::ToWide(utf8);
    }
    const std::size_t hash = HashShort(utf8);
    Entry& entry = m_entries[hash % m_entries.size()];
    if (entry.size == utf8.size() && std::memcmp(entry.utf8.data(), utf8.data(), utf8.size()) == 0)
    {
        return entry.wide;
    }
    if (std::exchange(entry.challenger, hash) != hash)
    {
        return VelPlatform::ToWide(utf8);
    }
    entry.wide = VelPlatform::ToWide(utf8);
    entry.size = static_cast<unsigned char>(utf8.size());
    std::memcpy(entry.utf8.data(), utf8.data(), utf8.size());
    return entry.wide;
}

void JsonBuilder::Restart()
{
    m_open.clear();
    m_document = NullType::Null;
}

bool JsonBuilder::Null()
{
    return Add(NullType::Null);
}

bool JsonBuilder::Truth(bool value)
{
    return Add(value);
}

bool JsonBuilder::Number(double value)
{
    return Add(value);
}

bool JsonBuilder::String(std::string_view text)
{
    return Add(m_texts.Get(text));
}

bool JsonBuilder::StartObject()
{
    return Open(Object());
}

bool JsonBuilder::Name(std::string_view text)
{
    m_open.back().name = m_texts.Get(text);
    return true;
}

bool JsonBuilder::EndObject()
{
    return Close();
}

bool JsonBuilder::StartArray()
{
    return Open(Array());
}

bool JsonBuilder::EndArray()
{
    return Close();
}

bool JsonBuilder::Open(Variant container)
{
    if (m_open.size() == kDeepest)
    {
        return false;
    }
    if (m_open.size() == m_lastSizes.size())
    {
        m_lastSizes.push_back(0);
    }
    m_open.push_back({std::move(container), VelString(), 0});
    return true;
}

bool JsonBuilder::Close()
{
    Variant container = std::move(m_open.back().container);
    m_open.pop_back();
    if (const Object* object = container.GetIf<Object>())
    {
        m_lastSizes[m_open.size()] = object->GetSize();
    }
    return Add(std::move(container));
}

bool JsonBuilder::Add(Variant value)
{
    if (m_open.empty())
    {
        m_document = std::move(value);
    }
    else if (Array* array = m_open.back().container.GetIf<Array>())
    {
        array->AddValue(std::move(value));
    }
    else
    {
        AddMember(m_open.back(), m_open.back().container.Get<Object>(), std::move(value));
    }
    return true;
}

void JsonBuilder::AddMember(Level& level, Object& object, Variant&& value)
{
    const VelString& name = level.name;
    // Most names are new, which the bit tells more cheaply than a search among the others.
    const std::size_t size = name.size();
    const std::size_t hash =
        size == 0 ? 0
                  : size + 7 * static_cast<std::size_t>(name[size - 1]) + 31 * static_cast<std::size_t>(name[size / 2]);
    const std::uint64_t bit = std::uint64_t{1} << (hash % 64);
    const std::size_t place = (level.names & bit) != 0 ? object.Find(name) : object.GetSize();
    if (place != object.GetSize())
    {
        *object.GetValue(place) = std::move(value);
        return;
    }
    level.names |= bit;
    if (object.GetSize() == 0)
    {
        // Objects of one kind have about the same number of members.
        object.m_members.reserve(std::min(m_lastSizes[m_open.size() - 1], kMembersWithoutIndex));
    }
    object.Append(name, std::move(value));
}

} // namespace VelUtils::Json
