#include "VelUtils/StringPool.h"

#include "TextHash.h"

using VelPlatform::VelString;

namespace VelUtils
{

namespace
{

struct Slot
{
    std::atomic<const VelString*> text{nullptr};
    std::uint64_t hash = 0; // written before the text is published, never again
};

} // namespace

/// Open addressing with linear probing, at most half full, so a search always ends at an empty slot.
struct StringPool::Table
{
    explicit Table(std::size_t capacity) : slots(std::make_unique<Slot[]>(capacity)), mask(capacity - 1) {}

    const VelString* Find(std::uint64_t hash, const VelString& text) const noexcept
    {
        for (std::size_t i = hash & mask;; i = (i + 1) & mask)
        {
            const VelString* const found = slots[i].text.load(std::memory_order_acquire);
            if (!found || (slots[i].hash == hash && *found == text))
            {
                return found;
            }
        }
    }

    void Insert(std::uint64_t hash, const VelString* text) noexcept
    {
        std::size_t i = hash & mask;
        while (slots[i].text.load(std::memory_order_relaxed))
        {
            i = (i + 1) & mask;
        }
        slots[i].hash = hash;
        slots[i].text.store(text, std::memory_order_release);
    }

    std::unique_ptr<Slot[]> slots;
    std::size_t mask; // the number of slots, a power of two, less one
};

StringPool::StringPool() : m_table(nullptr)
{
    m_tables.push_back(std::make_unique<Table>(64));
    m_table.store(m_tables.back().get(), std::memory_order_release);
}

StringPool::~StringPool() = default;

const VelPlatform::VelStringT<wchar_t>* StringPool::AddString(const VelPlatform::VelStringT<wchar_t>& text)
{
    const std::uint64_t hash = HashText(text);
    if (const VelString* const found = m_table.load(std::memory_order_acquire)->Find(hash, text))
    {
        return found;
    }
    const std::lock_guard guard(m_writing);
    Table* table = m_table.load(std::memory_order_relaxed);
    if (const VelString* const found = table->Find(hash, text))
    {
        return found;
    }
    if (2 * (m_texts.size() + 1) > table->mask + 1)
    {
        auto grown = std::make_unique<Table>(2 * (table->mask + 1));
        for (std::size_t i = 0; i <= table->mask; ++i)
        {
            if (const VelString* const kept = table->slots[i].text.load(std::memory_order_relaxed))
            {
                grown->Insert(table->slots[i].hash, kept);
            }
        }
        m_tables.push_back(std::move(grown));
        table = m_tables.back().get();
        m_table.store(table, std::memory_order_release);
    }
    const VelString& added = m_texts.emplace_back(text);
    table->Insert(hash, &added);
    return &added;
}

std::size_t StringPool::GetSize() const noexcept
{
    const std::lock_guard guard(m_writing);
    return m_texts.size();
}

} // namespace VelUtils
