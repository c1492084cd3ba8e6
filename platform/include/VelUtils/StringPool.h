#pragma once

/// @file
/// A pool that keeps one copy of every text, and the handle on a pooled text: one pointer, compared by identity.

#include "VelPlatform/String.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <type_traits>
#include <vector>

namespace VelUtils
{

/// Owns its texts until it dies; a text is never removed and never moves. Safe from several threads at once. Texts
/// match exactly, unit by unit.
class VEL_API StringPool
{
public:
    StringPool();
    ~StringPool();
    StringPool(const StringPool&) = delete;
    StringPool& operator=(const StringPool&) = delete;

    /// The pool's own copy of the text: the same pointer for equal texts, never null, good as long as the pool lives.
    /// A text that is there already is found without a lock and without memory. Throws std::bad_alloc, the pool being
    /// as it was.
    const VelPlatform::VelStringT<wchar_t>* AddString(const VelPlatform::VelStringT<wchar_t>& text);

    /// How many texts are in the pool.
    std::size_t GetSize() const noexcept;

private:
    struct Table;

    std::atomic<Table*> m_table; // what readers search
    mutable std::mutex m_writing;
    // Readers may still be in an outgrown table, so all of them stay; together they are smaller than the last.
    std::vector<std::unique_ptr<Table>> m_tables;
    std::deque<VelPlatform::VelString> m_texts;
};

/// A handle on a text in the pool that `PoolTag::Get()` gives. Copying, comparing and hashing never look at the
/// characters. Good as long as the pool lives.
template <class PoolTag>
class PooledString
{
public:
    /// The empty text.
    PooledString() : m_text(GetEmpty()) {}
    /// Puts the text into the pool if it is not there. Throws std::bad_alloc.
    explicit PooledString(const VelPlatform::VelStringT<wchar_t>& text) : m_text(PoolTag::Get().AddString(text)) {}

    /// The text, shared with the pool.
    VelPlatform::VelStringT<wchar_t> ToString() const noexcept { return *m_text; }
    /// The pool's own copy.
    const VelPlatform::VelString& GetText() const noexcept { return *m_text; }
    /// The pooled address that stands for the text; never null.
    const VelPlatform::VelString* GetPooled() const noexcept { return m_text; }

    /// FNV-1a over the eight bytes of the address, the least significant first, whatever the machine's byte order.
    std::uint64_t getHash() const noexcept
    {
        const std::uint64_t address = reinterpret_cast<std::uintptr_t>(m_text);
        std::uint64_t hash = 0xCBF29CE484222325u;
        for (unsigned shift = 0; shift < 64; shift += 8)
        {
            hash = (hash ^ ((address >> shift) & 0xFF)) * 0x100000001B3u;
        }
        return hash;
    }

    /// Whether the texts are the same: whether their addresses are.
    friend bool operator==(const PooledString& left, const PooledString& right) noexcept
    {
        return left.m_text == right.m_text;
    }

private:
    VEL_HIDDEN static const VelPlatform::VelString* GetEmpty()
    {
        static const VelPlatform::VelString* const empty = PoolTag::Get().AddString(VelPlatform::VelString());
        return empty;
    }

    const VelPlatform::VelString* m_text;
};

} // namespace VelUtils
