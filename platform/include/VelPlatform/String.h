#pragma once

/// @file
/// The string that everything is named with: one pointer wide, its text shared between copies and copied only when
/// one of them changes. Copies may be used from different threads; one object belongs to one thread at a time.

#include "VelPlatform/StringDetail.h"
#include "VelPlatform/VelApi.h"

#include <atomic>
#include <compare>
#include <cstddef>
#include <cstring>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace VelPlatform
{

/// How Compare() looks at letters.
enum class CaseMode
{
    Sensitive,  ///< as they are
    Insensitive ///< as VelStringT::CompareNoCase() does
};

/// A text of any length; zeros inside count like any other character. An empty string owns no memory. An object may
/// be moved in memory by copying its bytes. Operations that need memory throw std::bad_alloc, or std::length_error
/// for a text that no memory could hold, and leave every string as it was. A null `const CharT*` is the empty text.
/// Arguments may point into the string that is being changed.
template <class CharT>
class VEL_VISIBLE VelStringT
{
public:
    using value_type = CharT;               ///< A code unit.
    using size_type = std::size_t;          ///< Counts code units.
    using difference_type = std::ptrdiff_t; ///< Between two places in a text.
    using const_iterator = const CharT*;    ///< Good until the object changes or dies.
    using View = VelStringViewT<CharT>;     ///< What a text is looked at through.

    /// The empty text.
    constexpr VelStringT() noexcept = default;
    /// A copy of the text before the first zero.
    VelStringT(const CharT* zeroTerminated) : VelStringT(Detail::ViewOf(zeroTerminated)) {}
    /// A copy of `size` units, which may be zeros.
    VelStringT(const CharT* text, std::size_t size) : VelStringT(text ? View(text, size) : View()) {}
    /// A copy of the text that is looked at.
    explicit VelStringT(View text) : m_text(text.empty() ? nullptr : Allocate(text.size()))
    {
        if (m_text)
        {
            std::memcpy(m_text, text.data(), text.size() * sizeof(CharT));
            SetSize(text.size());
        }
    }

    /// Shares the text of `other`; needs no memory.
    VelStringT(const VelStringT& other) noexcept : m_text(other.m_text)
    {
        if (m_text)
        {
            Header()->references.fetch_add(1, std::memory_order_relaxed);
        }
    }
    /// Takes the text of `other`, which is empty then.
    VelStringT(VelStringT&& other) noexcept : m_text(std::exchange(other.m_text, nullptr)) {}
    ~VelStringT() { Release(); }

    /// Shares the text of `other`; needs no memory.
    VelStringT& operator=(const VelStringT& other) noexcept
    {
        VelStringT copy(other);
        swap(copy);
        return *this;
    }
    /// Takes the text of `other`, which is empty then.
    VelStringT& operator=(VelStringT&& other) noexcept
    {
        VelStringT taken(std::move(other));
        swap(taken);
        return *this;
    }

    /// A view of the text, good until this object changes or dies.
    operator View() const noexcept { return m_text ? View(m_text, Header()->size) : View(c_str(), 0); }

    /// Ends in a zero; good until this object changes or dies.
    const CharT* c_str() const noexcept { return m_text ? m_text : &Detail::EmptyText<CharT>::zero; }
    /// The same as c_str().
    const CharT* data() const noexcept { return c_str(); }
    /// In code units.
    std::size_t size() const noexcept { return m_text ? Header()->size : 0; }
    /// Whether the text has no units.
    bool empty() const noexcept { return size() == 0; }
    /// `index` may be size(), where the closing zero stands.
    const CharT& operator[](std::size_t index) const noexcept { return c_str()[index]; }
    /// The first unit.
    const CharT* begin() const noexcept { return c_str(); }
    /// Behind the last unit.
    const CharT* end() const noexcept { return c_str() + size(); }

    /// How many units the text may have before it must be copied to a larger place.
    std::size_t capacity() const noexcept { return m_text ? Header()->capacity : 0; }
    /// Makes room for a text of `capacity` units, so that appending up to it needs no memory.
    void reserve(std::size_t capacity)
    {
        if (capacity > 0 && (!IsUnique() || capacity > Header()->capacity))
        {
            Reallocate(capacity > size() ? capacity : size());
        }
    }
    /// Makes the text empty and lets go of its memory.
    void clear() noexcept
    {
        Release();
        m_text = nullptr;
    }
    /// Cuts the text to its first `size` units; a longer `size` changes nothing.
    void Truncate(std::size_t size)
    {
        if (size >= this->size())
        {
            return;
        }
        if (IsUnique())
        {
            SetSize(size);
        }
        else
        {
            *this = VelStringT(m_text, size);
        }
    }
    /// Appends one unit.
    void push_back(CharT unit) { append(&unit, 1); }
    /// Appends `size` units.
    VelStringT& append(const CharT* text, std::size_t size);
    /// Exchanges the two texts.
    void swap(VelStringT& other) noexcept { std::swap(m_text, other.m_text); }

    /// Appends a text; to an empty one by sharing.
    VelStringT& operator+=(const VelStringT& other)
    {
        return empty() && !IsUnique() ? *this = other : append(other.c_str(), other.size());
    }
    /// Appends a text.
    VelStringT& operator+=(View other) { return append(other.data(), other.size()); }
    /// Appends a zero-terminated text.
    VelStringT& operator+=(const CharT* other) { return *this += Detail::ViewOf(other); }
    /// Appends one unit.
    VelStringT& operator+=(CharT unit) { return append(&unit, 1); }

    /// Below, equal to or above zero. The sensitive mode orders by unsigned code unit.
    int Compare(View other, CaseMode mode = CaseMode::Sensitive) const noexcept
    {
        return mode == CaseMode::Sensitive ? Detail::CompareUnits<CharT>(*this, other) : CompareNoCase(other);
    }
    /// Compares the texts under Unicode's simple case folding, code point by code point: the same on every system and
    /// in every locale. Of narrow strings the text is UTF-8.
    int CompareNoCase(View other) const noexcept { return Detail::CompareFolded(*this, other); }

    /// Takes the white space of Unicode off both ends. Needs memory only when the text is shared.
    VelStringT& Trim();

    /// The pattern with the arguments, in their order, in place of every "{}"; "{{" and "}}" stand for one brace.
    /// Arguments are texts, integers (decimal, a character type is its number) and doubles (the shortest text that
    /// reads back to the same value); the locale plays no part. Throws std::invalid_argument when the braces do not
    /// fit the number of arguments.
    template <class... Arguments>
    static VelStringT Format(View pattern, const Arguments&... arguments)
    {
        return Detail::FormatText(pattern, {Detail::FormatArgument<CharT>(arguments)...});
    }

    /// A text of `size` units that `fill(CharT* units)` writes, all of them. What `fill` throws passes through.
    template <class Fill>
    static VelStringT Make(std::size_t size, Fill&& fill)
    {
        VelStringT made;
        if (size > 0)
        {
            made.m_text = Allocate(size);
            made.SetSize(0);
            fill(made.m_text);
            made.SetSize(size);
        }
        return made;
    }

    /// The two texts, one behind the other.
    friend VelStringT operator+(VelStringT left, const VelStringT& right)
    {
        left += right;
        return left;
    }
    /// The two texts, one behind the other.
    friend VelStringT operator+(VelStringT left, View right)
    {
        left += right;
        return left;
    }
    /// The two texts, one behind the other.
    friend VelStringT operator+(VelStringT left, const CharT* right)
    {
        left += right;
        return left;
    }
    /// The text with one more unit.
    friend VelStringT operator+(VelStringT left, CharT right)
    {
        left += right;
        return left;
    }
    /// The two texts, one behind the other.
    friend VelStringT operator+(View left, const VelStringT& right) { return Join(left, right); }
    /// The two texts, one behind the other.
    friend VelStringT operator+(const CharT* left, const VelStringT& right)
    {
        return Join(Detail::ViewOf(left), right);
    }

    /// Whether the texts are the same, unit by unit.
    friend bool operator==(const VelStringT& left, const VelStringT& right) noexcept
    {
        return left.m_text == right.m_text || Detail::SameUnits<CharT>(left, right);
    }
    /// Whether the texts are the same, unit by unit.
    friend bool operator==(const VelStringT& left, View right) noexcept
    {
        return Detail::SameUnits<CharT>(left, right);
    }
    /// Whether the texts are the same, unit by unit.
    friend bool operator==(const VelStringT& left, const CharT* right) noexcept
    {
        return Detail::SameUnits<CharT>(left, Detail::ViewOf(right));
    }
    /// The order by unsigned code unit.
    friend std::strong_ordering operator<=>(const VelStringT& left, const VelStringT& right) noexcept
    {
        return left.Compare(right) <=> 0;
    }
    /// The order by unsigned code unit.
    friend std::strong_ordering operator<=>(const VelStringT& left, View right) noexcept
    {
        return left.Compare(right) <=> 0;
    }
    /// The order by unsigned code unit.
    friend std::strong_ordering operator<=>(const VelStringT& left, const CharT* right) noexcept
    {
        return left.Compare(Detail::ViewOf(right)) <=> 0;
    }

private:
    static constexpr std::size_t kMaxSize =
        (static_cast<std::size_t>(PTRDIFF_MAX) - sizeof(Detail::StringHeader)) / sizeof(CharT) - 1;

    static CharT* Allocate(std::size_t capacity)
    {
        if (capacity > kMaxSize)
        {
            throw std::length_error("VelStringT: text too long");
        }
        void* memory = ::operator new(sizeof(Detail::StringHeader) + (capacity + 1) * sizeof(CharT));
        new (memory) Detail::StringHeader{{1}, 0, capacity};
        return reinterpret_cast<CharT*>(static_cast<unsigned char*>(memory) + sizeof(Detail::StringHeader));
    }
    Detail::StringHeader* Header() const noexcept
    {
        return reinterpret_cast<Detail::StringHeader*>(reinterpret_cast<unsigned char*>(m_text) -
                                                       sizeof(Detail::StringHeader));
    }
    bool IsUnique() const noexcept { return m_text && Header()->references.load(std::memory_order_acquire) == 1; }
    void SetSize(std::size_t size) noexcept
    {
        Header()->size = size;
        m_text[size] = CharT{};
    }
    void Release() noexcept
    {
        // The last owner needs no atomic subtraction: nobody else can be copying.
        if (m_text && (Header()->references.load(std::memory_order_acquire) == 1 ||
                       Header()->references.fetch_sub(1, std::memory_order_acq_rel) == 1))
        {
            Header()->~StringHeader();
            ::operator delete(Header());
        }
    }
    void Reallocate(std::size_t capacity)
    {
        VelStringT grown;
        grown.m_text = Allocate(capacity);
        const std::size_t kept = size();
        std::memcpy(grown.m_text, c_str(), kept * sizeof(CharT));
        grown.SetSize(kept);
        swap(grown);
    }
    static VelStringT Join(View left, View right)
    {
        VelStringT joined;
        joined.reserve(left.size() + right.size());
        return joined.append(left.data(), left.size()).append(right.data(), right.size());
    }

    CharT* m_text = nullptr; // null is the empty text; the header stands before the characters
};

template <class CharT>
VelStringT<CharT>& VelStringT<CharT>::append(const CharT* text, std::size_t size)
{
    if (size == 0)
    {
        return *this;
    }
    const std::size_t old = this->size();
    if (size > kMaxSize - old)
    {
        throw std::length_error("VelStringT: text too long");
    }
    const bool unique = IsUnique();
    if (unique && old + size <= Header()->capacity)
    {
        std::memmove(m_text + old, text, size * sizeof(CharT));
        SetSize(old + size);
        return *this;
    }
    std::size_t capacity = old + size;
    if (unique && capacity < old + old / 2)
    {
        capacity = old + old / 2;
    }
    VelStringT grown; // the old text stays until `text`, which may lie in it, is copied
    grown.m_text = Allocate(capacity);
    std::memcpy(grown.m_text, c_str(), old * sizeof(CharT));
    std::memcpy(grown.m_text + old, text, size * sizeof(CharT));
    grown.SetSize(old + size);
    swap(grown);
    return *this;
}

template <class CharT>
VelStringT<CharT>& VelStringT<CharT>::Trim()
{
    const View kept = Detail::Trimmed(*this);
    if (kept.empty())
    {
        clear();
    }
    else if (kept.size() != size())
    {
        if (IsUnique())
        {
            std::memmove(m_text, kept.data(), kept.size() * sizeof(CharT));
            SetSize(kept.size());
        }
        else
        {
            *this = VelStringT(kept);
        }
    }
    return *this;
}

using VelString = VelStringT<wchar_t>;         ///< The text of names and documents: UTF-32, on Windows UTF-16.
using VelStringA = VelStringT<char>;           ///< UTF-8, where characters matter.
using VelStringView = VelStringViewT<wchar_t>; ///< A view of a wide text.
using VelStringViewA = VelStringViewT<char>;   ///< A view of a narrow text.

static_assert(sizeof(VelString) == sizeof(void*) && std::is_standard_layout_v<VelString>,
              "a string is one pointer and may be moved by copying its bytes");

/// Wide text from UTF-8. Every malformed sequence (its maximal subpart) becomes one U+FFFD.
VEL_API VelString ToWide(VelStringViewA utf8);
/// The same, but false for malformed text, `wide` being left as it was.
VEL_API bool TryToWide(VelStringViewA utf8, VelString& wide);
/// UTF-8 from wide text. Lone surrogates and units above U+10FFFF become U+FFFD each. Where wchar_t has 4 bytes every
/// surrogate is a lone one, also beside its other half.
VEL_API VelStringA ToNarrow(VelStringView wide);
/// The same, but false for text that cannot be encoded, `utf8` being left as it was.
VEL_API bool TryToNarrow(VelStringView wide, VelStringA& utf8);

} // namespace VelPlatform

/// Hashes the text, so that a string and a view of it have one hash.
template <class CharT>
struct std::hash<VelPlatform::VelStringT<CharT>>
{
    /// The same for equal texts.
    std::size_t operator()(const VelPlatform::VelStringT<CharT>& text) const noexcept
    {
        return std::hash<VelPlatform::VelStringViewT<CharT>>()(text);
    }
};
