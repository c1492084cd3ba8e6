/// @file
/// A JSON document in memory, its reader and its writer.
///
/// A Variant holds one value of any JSON kind; Object and Array hold Variants by value, so a document is a tree that
/// owns everything in it. Parse makes a Variant of a text, ValueToString a text of a Variant.
///
/// Threads: as with the standard containers, any number of threads may read a value, or one may change it.
#pragma once

#include "VelPlatform/String.h"
#include "VelPlatform/VelApi.h"

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <variant>
#include <vector>

namespace VelUtils::Json
{

using VelPlatform::VelString;
using VelPlatform::VelStringA;
using VelPlatform::VelStringView;

class Variant;

class JsonBuilder;

namespace Detail
{
class Dismantler;
} // namespace Detail

/// The JSON value null.
enum class NullType
{
    Null
};

/// The values of a JSON array, in order.
///
/// Pointers to values stay good until the array is changed. A moved-from array is empty.
class VEL_API Array
{
public:
    /// Without values.
    Array() noexcept;
    /// Copies everything in it. Throws std::bad_alloc.
    Array(const Array& other);
    /// Takes the values of `other`, which is empty then.
    Array(Array&& other) noexcept;
    ~Array();
    /// When the copy throws, this array is as it was.
    Array& operator=(const Array& other);
    /// Takes the values of `other`, which is empty then.
    Array& operator=(Array&& other) noexcept;

    /// The number of values.
    std::size_t GetSize() const noexcept;

    /// The value at a place, owned by the array; null behind the end.
    const Variant* GetValue(std::size_t index) const noexcept;
    /// The same, to be changed.
    Variant* GetValue(std::size_t index) noexcept;

    /// Appends a value. When this throws (std::bad_alloc), the array is as it was.
    void AddValue(Variant value);

    /// Whether both hold equal values in the same order.
    friend VEL_API bool operator==(const Array& left, const Array& right) noexcept;

private:
    friend class Detail::Dismantler;
    friend class JsonBuilder;

    std::vector<Variant> m_values;
};

/// The members of a JSON object, in the order in which they were added; no two have the same name.
///
/// Finding a member by name takes the same time whatever their number: past a few of them an index is kept. Pointers to
/// values stay good until a member is added or the object goes. A moved-from object is empty.
class VEL_API Object
{
public:
    /// Without members.
    Object() noexcept;
    /// Copies everything in it. Throws std::bad_alloc.
    Object(const Object& other);
    /// Takes the members of `other`, which is empty then.
    Object(Object&& other) noexcept;
    ~Object();
    /// When the copy throws, this object is as it was.
    Object& operator=(const Object& other);
    /// Takes the members of `other`, which is empty then.
    Object& operator=(Object&& other) noexcept;

    /// The number of members.
    std::size_t GetSize() const noexcept;

    /// The name of the member at a place. Like operator[] of a vector, it does not check: the place must be below
    /// GetSize().
    const VelString& GetValueName(std::size_t index) const noexcept;

    /// The value of the member at a place, owned by the object; null behind the end.
    const Variant* GetValue(std::size_t index) const noexcept;
    /// The same, to be changed.
    Variant* GetValue(std::size_t index) noexcept;

    /// The value of the member of this name (case counts), owned by the object; null when there is none.
    const Variant* GetValue(const VelString& name) const noexcept;
    /// The same, to be changed.
    Variant* GetValue(const VelString& name) noexcept;

    /// Adds a member behind the others. A name that is there already gives false, and the object keeps the value that
    /// it has. When this throws (std::bad_alloc), the object is as it was.
    bool AddValue(const VelString& name, Variant value);

    /// Whether both hold equal values under the same names in the same order.
    friend VEL_API bool operator==(const Object& left, const Object& right) noexcept;

private:
    friend class Detail::Dismantler;
    friend class JsonBuilder;

    struct Member;
    class VEL_HIDDEN Index;

    std::size_t Find(const VelString& name) const noexcept;
    void Append(const VelString& name, Variant&& value);
    void BuildIndex();

    std::vector<Member> m_members;
    std::unique_ptr<Index> m_index; // null while there are few members
};

namespace Detail
{
template <class T, class... Types>
concept OneOf = (std::same_as<T, Types> || ...);
} // namespace Detail

/// The types of a JSON value.
template <class T>
concept ValueType =
    Detail::OneOf<T, NullType, VelString, Object, std::int64_t, std::uint64_t, double, bool, Array, VelStringA>;

/// One JSON value: null, a string, a number, a truth value, an object or an array.
///
/// It is made from exactly the types of ValueType and nothing that merely converts to one of them: a pointer is not
/// taken for a truth value, nor an `int` for some number. Two variants are equal when they hold equal values of the
/// same type, so the integer 1 and the double 1.0 differ.
///
/// Copying and comparing go down as deep as the value does. Taking a value apart does not: it needs no deep stack.
class VEL_API Variant
{
public:
    /// Null.
    Variant() noexcept = default;

    /// Holds this value. Throws what copying it throws.
    template <class T>
    requires ValueType<std::remove_cvref_t<T>> Variant(T&& value)
    noexcept(std::is_nothrow_constructible_v<std::remove_cvref_t<T>, T>)
        : m_held(std::in_place_type<std::remove_cvref_t<T>>, std::forward<T>(value))
    {}

    /// Whether a value of this type is held.
    template <ValueType T>
    bool Is() const noexcept
    {
        return std::holds_alternative<T>(m_held);
    }

    /// The value that is held; std::bad_cast when it is of another type.
    template <ValueType T>
    const T& Get() const
    {
        if (const T* value = GetIf<T>())
        {
            return *value;
        }
        throw std::bad_cast();
    }

    /// @copydoc Get
    template <ValueType T>
    T& Get()
    {
        return const_cast<T&>(std::as_const(*this).Get<T>());
    }

    /// The value that is held, null when it is of another type. It stays good until the variant is changed.
    template <ValueType T>
    const T* GetIf() const noexcept
    {
        return std::get_if<T>(&m_held);
    }

    /// @copydoc GetIf
    template <ValueType T>
    T* GetIf() noexcept
    {
        return std::get_if<T>(&m_held);
    }

    /// Whether both hold equal values of the same type.
    friend bool operator==(const Variant& left, const Variant& right) noexcept { return left.m_held == right.m_held; }

private:
    std::variant<NullType, VelString, Object, std::int64_t, std::uint64_t, double, bool, Array, VelStringA> m_held;
};

// A holder of any value keeps what is larger than a pointer by its address; these two are meant to be kept so.
static_assert(sizeof(Object) > 8 && sizeof(Array) > 8);
static_assert(std::is_nothrow_move_constructible_v<Variant> && std::is_nothrow_move_assignable_v<Variant>);

/// Reads a JSON text (RFC 8259, nothing else).
///
/// Every number becomes a double, the nearest one; -0 keeps its sign. Of members with one name the last value stands,
/// in the place of the first.
///
/// @param text       the text; a byte-order mark at its beginning is not part of JSON, and an error
/// @param value      receives the document
/// @param errorText  receives, on failure, the line, the column (counted in characters) and what was expected there
/// @return false when the text is not JSON, holds a surrogate without its other half or a number outside the range of a
///         double, or has more than 512 containers in each other; `value` is as it was then. std::bad_alloc passes
///         through and leaves `value` as it was, too.
VEL_API bool Parse(const VelString& text, Variant& value, VelString& errorText);

/// Reads a JSON text in UTF-8: the same, without a wide text. Malformed UTF-8 is an error.
VEL_API bool ParseUtf8(std::string_view utf8, Variant& value, VelString& errorText);

/// The JSON text of a value; Parse reads it back. It is what Writer writes.
///
/// Doubles are written with the fewest digits that read back to the same value, whole ones with ".0" (3.0, 1e+30);
/// integers without. What JSON cannot express is replaced: NaN and infinities by null, a surrogate without its other
/// half and malformed UTF-8 by U+FFFD.
///
/// @param value    the value, which is left as it is
/// @param compact  true: without any white space; false: a member or an element per line, a blank deeper for each
///                 container
/// @return the text. Throws std::bad_alloc.
VEL_API VelString ValueToString(const Variant& value, bool compact);

/// Writes a JSON text piece by piece, for documents that are too large to be held as one Variant beside their text: a
/// wide text, or UTF-8.
///
/// One value is written: a Value(), or an object whose members are written between StartObject() and EndObject(), each
/// a Name() and then a value. It is the caller's duty that no two members of an object have the same name and that
/// objects are ended. All operations throw std::bad_alloc; then the text is lost.
template <class CharT>
class VEL_API BasicWriter
{
public:
    /// @param compact  as of ValueToString
    explicit BasicWriter(bool compact);
    BasicWriter(const BasicWriter&) = delete;
    BasicWriter& operator=(const BasicWriter&) = delete;
    ~BasicWriter();

    /// Begins an object.
    void StartObject();
    /// Ends the object that was begun last.
    void EndObject();
    /// The name of the member whose value comes next.
    void Name(const VelString& name);
    /// A whole value, which is left as it is.
    void Value(const Variant& value);

    /// The text, which is whole now; the writer is not to be used any more.
    VelPlatform::VelStringT<CharT> Finish();

private:
    class Output;

    std::unique_ptr<Output> m_output;
};

using Writer = BasicWriter<wchar_t>;  ///< Writes wide text.
using Utf8Writer = BasicWriter<char>; ///< Writes UTF-8.

extern template class VEL_API BasicWriter<wchar_t>;
extern template class VEL_API BasicWriter<char>;

} // namespace VelUtils::Json
