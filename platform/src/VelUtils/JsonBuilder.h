#pragma once

#include "JsonEvents.h"
#include "VelUtils/Json.h"

#include <array>
#include <vector>

namespace VelUtils::Json
{

/// Wide strings of UTF-8 texts. Documents say the same names and values again and again; a text that is asked for
/// repeatedly is shared instead of made anew.
class RecentTexts
{
public:
    /// Throws std::bad_alloc.
    VelString Get(std::string_view utf8);

private:
    static constexpr std::size_t kLongest = 32;

    struct Entry
    {
        unsigned char size = 0;
        std::array<char, kLongest> utf8;
        VelString wide;
        std::size_t challenger = 0; ///< hash of the text that was asked for last in vain: once more, and it is kept
    };

    std::vector<Entry> m_entries = std::vector<Entry>(256);
};

/// Makes a Variant of what it is told. Asks to stop at containers that are too deep in each other.
class JsonBuilder final : public JsonEvents
{
public:
    /// The outermost container counted.
    static constexpr std::size_t kDeepest = 512;

    /// What was read, once reading is through.
    Variant& GetDocument() noexcept { return m_document; }

    void Restart() override;
    bool Null() override;
    bool Truth(bool value) override;
    bool Number(double value) override;
    bool String(std::string_view text) override;
    bool StartObject() override;
    bool Name(std::string_view text) override;
    bool EndObject() override;
    bool StartArray() override;
    bool EndArray() override;

private:
    /// A container that is being filled.
    struct Level
    {
        Variant container;
        VelString name;          ///< of the member whose value comes next
        std::uint64_t names = 0; ///< a bit for each hash that names of this object have
    };

    bool Open(Variant container);
    bool Close();
    bool Add(Variant value);
    void AddMember(Level& level, Object& object, Variant&& value);

    RecentTexts m_texts;
    std::vector<Level> m_open;
    std::vector<std::size_t> m_lastSizes; // for each depth, of the object that was closed there last
    Variant m_document;
};

} // namespace VelUtils::Json
