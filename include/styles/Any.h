/// \file
/// `Any`: a property value of any type, in 16 bytes without allocation when it is small.
///
/// Every value that a style holds, every default that a definition supplies, is an `Any`. It stores a value, copies it,
/// tells its type, compares two values and hands out the typed value; what a value means is the business of the
/// property definitions.
///
/// Numbers, pointers, enumerations and the one-pointer string live inline and never allocate; larger values (lists of
/// styles, JSON objects and arrays) live in a holder on the heap that the `Any` owns.
///
/// Why not `std::any`: values are compared and ordered, assigning a value of the same type reuses its holder, a known
/// layout crosses library borders, and inline values are exchanged by copying their bytes.
///
/// Types: two modules agree on a type when its `std::type_info` agrees, which on all supported systems includes modules
/// that hide their symbols. Types of unnamed namespaces are private to their module.
///
/// Threads: as for an `int`. Different objects are independent; one object may be read by many or written by one.
#pragma once

#include <VelPlatform/String.h>

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <map> // std::less
#include <new>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

namespace Styles
{
class Style;
}

namespace VelUtils
{

/// Whether a `T` may be moved to another address by copying its bytes and forgetting the old ones. Only such types live
/// inline in an `Any`. True of trivially copyable types; specialise it for others that are known to be safe.
template <class T>
struct IsRelocatableByBytes : std::is_trivially_copyable<T>
{};

/// A string is a pointer that knows nothing of its own address.
template <class CharT>
struct IsRelocatableByBytes<VelPlatform::VelStringT<CharT>> : std::true_type
{};

/// Whether values of `T` are compared with `==` inside an `Any`; otherwise any two values of the type are unequal.
template <class T>
struct IsAnyEqualityComparable : std::bool_constant<std::equality_comparable<T>>
{};

/// Whether values of `T` are ordered with `<` inside an `Any`; otherwise no value of the type is less than another.
template <class T>
    struct IsAnyLessComparable : std::bool_constant < requires(const T& a, const T& b)
{
    {
        a < b
        } -> std::convertible_to<bool>;
} > {};

/// Vectors compare when their elements do: a vector declares its comparisons for every element type, whether they
/// compile or not.
template <class T, class Allocator>
struct IsAnyEqualityComparable<std::vector<T, Allocator>> : IsAnyEqualityComparable<T>
{};

/// Vectors are ordered when their elements are.
template <class T, class Allocator>
struct IsAnyLessComparable<std::vector<T, Allocator>> : IsAnyLessComparable<T>
{};

/// The type that an `Any` holds when it is made from a `T`: the decayed type, and a string for a zero-terminated text.
template <class T>
struct AnyValueTypeOf
{
    using type = std::decay_t<T>; ///< What is held.
};

/// A wide zero-terminated text is held as a string.
template <class T>
requires std::same_as < std::decay_t<T>,
const wchar_t* > || std::same_as<std::decay_t<T>, wchar_t*> struct AnyValueTypeOf<T>
{
    using type = VelPlatform::VelStringT<wchar_t>; ///< What is held.
};

/// A narrow zero-terminated text is held as a string.
template <class T>
requires std::same_as < std::decay_t<T>,
const char* > || std::same_as<std::decay_t<T>, char*> struct AnyValueTypeOf<T>
{
    using type = VelPlatform::VelStringT<char>; ///< What is held.
};

/// The type that an `Any` made from a `T` answers to `Is` and `Get`.
template <class T>
using AnyValueType = typename AnyValueTypeOf<T>::type;

/// Thrown where a value is not of the type that was asked for; its text is the same on every system.
class BadAnyCast : public std::bad_cast
{
public:
    /// "bad cast".
    [[nodiscard]] const char* what() const noexcept override { return "bad cast"; }
};

/// A value of any copyable type, or none.
class Any
{
public:
    /// The type that an empty `Any` answers.
    struct null_holder_type
    {};

    class HolderInterface;

    template <class T, bool EqualityComparable = IsAnyEqualityComparable<T>::value,
              bool LessComparable = IsAnyLessComparable<T>::value>
    class Holder;

    /// Empty.
    Any() noexcept { MakeEmpty(); }

    /// Holds a copy of `value` (or takes it over, from an rvalue). A text literal becomes a string.
    /// \throws whatever making the value or its holder throws.
    template <class T>
    requires(!std::same_as<std::decay_t<T>, Any> && std::copy_constructible<AnyValueType<T>>) explicit Any(T&& value)
        : Any()
    {
        Emplace<AnyValueType<T>>(std::forward<T>(value));
    }

    /// A copy of the held value in a holder of the same kind; a copy of nothing is empty.
    Any(const Any& source);

    /// Takes over a value on the heap and leaves `source` empty; moves an inline value and leaves `source` its type.
    Any(Any&& source) noexcept;

    ~Any();

    /// Assigns a copy. A value of the same type is assigned in its holder; otherwise the new value is made first, so
    /// that a failure leaves this value as it was.
    ///
    /// There is no move assignment: `a = std::move(b)` is this operation and leaves `b` its value.
    Any& operator=(const Any& source);

    /// Exchanges the two values without calling any operation of the held types.
    void Swap(Any& other) noexcept;

    /// The type of the held value, `null_holder_type` when empty.
    [[nodiscard]] const std::type_info& GetType() const noexcept;

    /// Whether nothing is held.
    [[nodiscard]] bool IsEmpty() const noexcept { return m_onHeap && m_heap == nullptr; }

    /// Whether a `T` is held, exactly: a `Style*` is no `const Style*`.
    template <class T>
    [[nodiscard]] bool Is() const noexcept
    {
        if constexpr (KnownKind<T> != Kind::Other)
        {
            return m_kind == KnownKind<T>;
        }
        else
        {
            return GetType() == typeid(T);
        }
    }

    /// The held `T`. \throws std::bad_cast ("bad cast") when another type or nothing is held.
    template <class T>
    [[nodiscard]] T& Get()
    {
        if (T* value = GetIf<T>())
        {
            return *value;
        }
        throw BadAnyCast();
    }

    /// The held `T`. \throws std::bad_cast ("bad cast") when another type or nothing is held.
    template <class T>
    [[nodiscard]] const T& Get() const
    {
        if (const T* value = GetIf<T>())
        {
            return *value;
        }
        throw BadAnyCast();
    }

    /// The held `T`, or null when another type or nothing is held.
    template <class T>
    [[nodiscard]] T* GetIf() noexcept
    {
        return Is<T>() ? &Value<T>() : nullptr;
    }

    /// The held `T`, or null when another type or nothing is held.
    template <class T>
    [[nodiscard]] const T* GetIf() const noexcept
    {
        return Is<T>() ? &Value<T>() : nullptr;
    }

    /// The holder of the value, null when empty. Owned by this object and gone with its value.
    [[nodiscard]] HolderInterface* GetHolder() noexcept;
    /// The holder of the value, null when empty.
    [[nodiscard]] const HolderInterface* GetHolder() const noexcept;

    /// Values of different types are unequal; two empty ones are equal.
    friend bool operator==(const Any& a, const Any& b);

    /// Values of one type are ordered by the type, others by the order of their types, which carries no meaning. Do not
    /// order two empty values.
    friend bool operator<(const Any& a, const Any& b);

private:
    static constexpr std::size_t StorageSize = 16;
    static constexpr std::size_t StorageAlignment = 8;

    template <class T>
    static constexpr bool LivesInline =
        sizeof(T) <= 8 &&
        alignof(T) <= StorageAlignment&& IsRelocatableByBytes<T>::value&& std::is_nothrow_move_constructible_v<T>;

    /// What is known of a value without asking its holder. Most values have one of the known types.
    // Asked by virtual calls, copying and destroying a number took three times as long, reading it five times, and
    // comparing two of them six times.
    enum class Kind : std::uint8_t
    {
        Other,     ///< nothing; it is empty, on the heap, or inline with operations of its own
        Text,      ///< that it is a wide string
        Trivial,   ///< that it lives inline, is copied by its bytes and needs no end; so it is with all that follow
        Number,    ///< that it is a `double`
        Style,     ///< that it is a `Style*`
        ConstStyle ///< that it is a `const Style*`
    };

    /// The kind that only a `T` has, `Other` if there is none.
    template <class T>
    static constexpr Kind KnownKind = std::same_as<T, VelPlatform::VelString> ? Kind::Text
                                      : std::same_as<T, double>               ? Kind::Number
                                      : std::same_as<T, Styles::Style*>       ? Kind::Style
                                      : std::same_as<T, const Styles::Style*> ? Kind::ConstStyle
                                                                              : Kind::Other;

    template <class T>
    static constexpr bool IsTrivial =
        LivesInline<T>&& std::is_trivially_copyable_v<T>&& std::is_trivially_copy_constructible_v<T>;

    /// The kind of a `T`.
    template <class T>
    static constexpr Kind KindOf = KnownKind<T> == Kind::Other&& IsTrivial<T> ? Kind::Trivial : KnownKind<T>;

    /// Whether the value lives inline, is copied by its bytes and needs no end.
    [[nodiscard]] bool HoldsTrivial() const noexcept { return m_kind >= Kind::Trivial; }

    /// Whether the two, neither of them empty, hold values of one type.
    [[nodiscard]] bool HasTypeOf(const Any& other) const noexcept;

    /// The value, which is a `T`.
    template <class T>
    [[nodiscard]] const T& Value() const noexcept
    {
        static_assert(KnownKind<T> == Kind::Other || LivesInline<T>);
        const HolderInterface* holder = KnownKind<T> != Kind::Other ? GetInlineHolder() : GetHolder();
        return static_cast<const Holder<T, false, false>*>(holder)->value;
    }

    template <class T>
    [[nodiscard]] T& Value() noexcept
    {
        return const_cast<T&>(std::as_const(*this).template Value<T>());
    }

    [[nodiscard]] HolderInterface* GetInlineHolder() noexcept;
    [[nodiscard]] const HolderInterface* GetInlineHolder() const noexcept;

    /// Makes the value in this object, which is empty and stays so when that throws.
    template <class T, class... Arguments>
    void Emplace(Arguments&&... arguments);

    void MakeEmpty() noexcept
    {
        m_heap = nullptr;
        m_onHeap = true;
        m_kind = Kind::Other;
    }

    /// Copies a trivial value over nothing or over another trivial value.
    void CopyBytes(const Any& source) noexcept
    {
        std::memmove(m_storage, source.m_storage, StorageSize);
        m_onHeap = false;
        m_kind = source.m_kind;
    }

    union
    {
        alignas(StorageAlignment) std::byte m_storage[StorageSize];
        HolderInterface* m_heap;
    };
    bool m_onHeap;
    Kind m_kind;
};

/// What an `Any` asks of its value. The order of the operations is part of the interface.
class Any::HolderInterface
{
public:
    virtual ~HolderInterface() = default;
    /// Makes a copy of the value in `target`, which must be empty; on a throw it still is.
    virtual void CloneInto(Any& target) const = 0;
    /// Moves the value into a new holder in `target`, which must be empty; on a throw it still is.
    virtual void MoveInto(Any& target) = 0;
    /// Assigns the value of `other`, which holds the same type.
    virtual void Assign(const HolderInterface& other) = 0;
    /// Equality with the value of `other`, which holds the same type; false when the type has none.
    [[nodiscard]] virtual bool IsEqual(const HolderInterface& other) const = 0;
    /// The type of the value.
    [[nodiscard]] virtual const std::type_info& GetType() const noexcept = 0;
    /// Order before the value of `other`, which holds the same type; false when the type has none.
    [[nodiscard]] virtual bool IsLess(const HolderInterface& other) const = 0;
    /// Whether the type of the value is an enumeration.
    [[nodiscard]] virtual bool IsEnum() const noexcept = 0;
    /// The value of an enumeration, 0 for any other type.
    [[nodiscard]] virtual std::int32_t GetEnumValue() const noexcept = 0;

protected:
    /// Made with its value only.
    HolderInterface() = default;
    /// Copied with its value only.
    HolderInterface(const HolderInterface&) = default;
    /// Assigned with its value only.
    HolderInterface& operator=(const HolderInterface&) = default;
};

/// Holds a value of a type without comparisons; the base of the holders that compare.
template <class T>
class Any::Holder<T, false, false> : public Any::HolderInterface
{
public:
    /// Makes the value from `arguments`. \throws what its constructor throws.
    template <class... Arguments>
    explicit Holder(std::in_place_t, Arguments&&... arguments) : value(std::forward<Arguments>(arguments)...)
    {}

    void CloneInto(Any& target) const override { target.Emplace<T>(value); }
    void MoveInto(Any& target) override { target.Emplace<T>(std::move(value)); }
    void Assign(const HolderInterface& other) override
    {
        // A type without assignment is replaced; an inline or heap value of such a type keeps its address.
        if constexpr (std::is_copy_assignable_v<T>)
        {
            value = ValueOf(other);
        }
        else if (&other != this)
        {
            T copy(ValueOf(other));
            static_assert(std::is_nothrow_move_constructible_v<T>, "a value that cannot be assigned must move safely");
            std::destroy_at(&value);
            std::construct_at(&value, std::move(copy));
        }
    }
    [[nodiscard]] bool IsEqual(const HolderInterface& /*other*/) const override { return false; }
    [[nodiscard]] const std::type_info& GetType() const noexcept override { return typeid(T); }
    [[nodiscard]] bool IsLess(const HolderInterface& /*other*/) const override { return false; }
    [[nodiscard]] bool IsEnum() const noexcept override { return std::is_enum_v<T>; }
    [[nodiscard]] std::int32_t GetEnumValue() const noexcept override
    {
        if constexpr (std::is_enum_v<T>)
        {
            return static_cast<std::int32_t>(value);
        }
        else
        {
            return 0;
        }
    }

    T value; ///< The value itself.

protected:
    /// The value in `holder`, which holds a `T`.
    [[nodiscard]] static const T& ValueOf(const HolderInterface& holder)
    {
        return static_cast<const Holder<T, false, false>&>(holder).value;
    }
};

/// \cond
// Doxygen takes this for a class that derives from itself.
/// Holds a value of a type that compares.
template <class T, bool EqualityComparable, bool LessComparable>
class Any::Holder : public Any::Holder<T, false, false>
{
    using Base = Any::Holder<T, false, false>;

public:
    using Base::Base;

    [[nodiscard]] bool IsEqual(const HolderInterface& other) const override
    {
        if constexpr (EqualityComparable)
        {
            return this->value == Base::ValueOf(other);
        }
        else
        {
            return false;
        }
    }
    [[nodiscard]] bool IsLess(const HolderInterface& other) const override
    {
        // Pointers are ordered by address, which the built-in operator does not promise for unrelated ones.
        if constexpr (LessComparable && std::is_pointer_v<T>)
        {
            return std::less<T>()(this->value, Base::ValueOf(other));
        }
        else if constexpr (LessComparable)
        {
            return this->value < Base::ValueOf(other);
        }
        else
        {
            return false;
        }
    }
};
/// \endcond

inline Any::Any(const Any& source)
{
    if (source.HoldsTrivial())
    {
        CopyBytes(source);
        return;
    }
    MakeEmpty();
    if (source.m_kind == Kind::Text)
    {
        Emplace<VelPlatform::VelString>(source.Value<VelPlatform::VelString>());
    }
    else if (!source.IsEmpty())
    {
        source.GetHolder()->CloneInto(*this);
    }
}

inline Any::Any(Any&& source) noexcept
{
    if (source.HoldsTrivial())
    {
        CopyBytes(source);
        return;
    }
    MakeEmpty();
    if (source.m_kind == Kind::Text)
    {
        Emplace<VelPlatform::VelString>(std::move(source.Value<VelPlatform::VelString>()));
    }
    else if (source.m_onHeap)
    {
        m_heap = std::exchange(source.m_heap, nullptr);
    }
    else
    {
        source.GetHolder()->MoveInto(*this);
    }
}

inline Any& Any::operator=(const Any& source)
{
    if (HoldsTrivial() && source.HoldsTrivial())
    {
        CopyBytes(source);
    }
    else if (IsEmpty())
    {
        if (!source.IsEmpty())
        {
            source.GetHolder()->CloneInto(*this);
        }
    }
    else if (!source.IsEmpty() && HasTypeOf(source))
    {
        GetHolder()->Assign(*source.GetHolder());
    }
    else
    {
        Any copy(source);
        Swap(copy);
    }
    return *this;
}

inline void Any::Swap(Any& other) noexcept
{
    if (m_onHeap && other.m_onHeap)
    {
        std::swap(m_heap, other.m_heap);
        return;
    }
    std::byte bytes[StorageSize];
    std::memcpy(bytes, m_storage, StorageSize);
    std::memcpy(m_storage, other.m_storage, StorageSize);
    std::memcpy(other.m_storage, bytes, StorageSize);
    std::swap(m_onHeap, other.m_onHeap);
    std::swap(m_kind, other.m_kind);
}

inline const std::type_info& Any::GetType() const noexcept
{
    const HolderInterface* holder = GetHolder();
    return holder != nullptr ? holder->GetType() : typeid(null_holder_type);
}

inline Any::HolderInterface* Any::GetInlineHolder() noexcept
{
    return std::launder(reinterpret_cast<HolderInterface*>(m_storage));
}

inline const Any::HolderInterface* Any::GetInlineHolder() const noexcept
{
    return std::launder(reinterpret_cast<const HolderInterface*>(m_storage));
}

inline Any::HolderInterface* Any::GetHolder() noexcept
{
    return m_onHeap ? m_heap : GetInlineHolder();
}

inline const Any::HolderInterface* Any::GetHolder() const noexcept
{
    return m_onHeap ? m_heap : GetInlineHolder();
}

inline bool Any::HasTypeOf(const Any& other) const noexcept
{
    return m_kind == other.m_kind && ((m_kind != Kind::Other && m_kind != Kind::Trivial) ||
                                      GetHolder()->GetType() == other.GetHolder()->GetType());
}

template <class T, class... Arguments>
void Any::Emplace(Arguments&&... arguments)
{
    if constexpr (LivesInline<T>)
    {
        static_assert(sizeof(Holder<T>) == StorageSize && alignof(Holder<T>) <= StorageAlignment);
        try
        {
            ::new (static_cast<void*>(m_storage)) Holder<T>(std::in_place, std::forward<Arguments>(arguments)...);
        }
        catch (...)
        {
            // The interface of the unfinished holder has been written over the null pointer of the empty state.
            m_heap = nullptr;
            throw;
        }
        m_onHeap = false;
        m_kind = KindOf<T>;
    }
    else
    {
        m_heap = new Holder<T>(std::in_place, std::forward<Arguments>(arguments)...);
    }
}

inline Any::~Any()
{
    if (HoldsTrivial())
    {
        return;
    }
    if (m_kind == Kind::Text)
    {
        std::destroy_at(&Value<VelPlatform::VelString>());
    }
    else if (m_onHeap)
    {
        delete m_heap;
    }
    else
    {
        GetHolder()->~HolderInterface();
    }
}

/// Values of different types are unequal; two empty ones are equal.
inline bool operator==(const Any& a, const Any& b)
{
    using Kind = Any::Kind;
    // Both are asked each time: one question whether the kinds are the same makes the compiler choose from all kinds at
    // once, and numbers took a third longer.
    if (a.m_kind == Kind::Number && b.m_kind == Kind::Number)
    {
        return a.Value<double>() == b.Value<double>();
    }
    if (a.m_kind == Kind::Style && b.m_kind == Kind::Style)
    {
        return a.Value<Styles::Style*>() == b.Value<Styles::Style*>();
    }
    if (a.m_kind != b.m_kind)
    {
        return false;
    }
    if (a.m_kind == Kind::Text)
    {
        return a.Value<VelPlatform::VelString>() == b.Value<VelPlatform::VelString>();
    }
    if (a.IsEmpty() || b.IsEmpty())
    {
        return a.IsEmpty() && b.IsEmpty();
    }
    return a.HasTypeOf(b) && a.GetHolder()->IsEqual(*b.GetHolder());
}

inline bool operator<(const Any& a, const Any& b)
{
    const std::type_info& typeOfA = a.GetType();
    const std::type_info& typeOfB = b.GetType();
    if (typeOfA != typeOfB)
    {
        return typeOfA.before(typeOfB);
    }
    return !a.IsEmpty() && a.GetHolder()->IsLess(*b.GetHolder());
}

} // namespace VelUtils
