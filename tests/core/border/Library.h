// What a second shared library offers, which hides all its other symbols: it makes and reads values, keys and
// definitions.
#pragma once

#include <styles/Styles.h>

#include <cstdint>
#include <vector>

#if defined(_WIN32)
#    define BORDER_API __declspec(dllexport)
#else
#    define BORDER_API __attribute__((visibility("default")))
#endif

namespace Border
{

using Styles::Any;
using Styles::PropertyKey;
using Styles::Style;
using Styles::VelString;

/// A type of both sides that the engine does not know.
struct Point
{
    std::int32_t x;
    std::int32_t y;
    bool operator==(const Point&) const = default;
};

/// A larger one, which lives on the heap.
struct Box
{
    double left, top, right, bottom;
    bool operator==(const Box&) const = default;
};

enum class Fruit : std::int16_t
{
    Apple = 1,
    Pear = -2
};

/// One value of every type that styles hold, and of the types above, the empty one first.
BORDER_API std::vector<Any> MakeValues(Style* style);

/// Whether `value` is the one that `MakeValues` has at that place.
BORDER_API bool ReadsValue(std::size_t index, const Any& value, const Style* style);

/// `a == b` and `a < b`, as this side compares.
BORDER_API bool AreEqual(const Any& a, const Any& b);
BORDER_API bool IsLess(const Any& a, const Any& b);

/// Copies, moves, exchanges and destroys on this side.
BORDER_API void Assign(Any& target, const Any& source);
BORDER_API void Exchange(Any& a, Any& b);
BORDER_API Any MoveOut(Any& source);

/// Throws `std::bad_cast` unless a `double` is held.
BORDER_API double GetNumber(const Any& value);

BORDER_API PropertyKey MakeKey(const wchar_t* text);
BORDER_API PropertyKey MakeDefaultKey();
BORDER_API const PropertyKey* GetEmptyKey();
BORDER_API Styles::StyleManager* GetManager();

/// Registers the category "border" with the definitions of this side: the number "double", the text "text",
/// the box "box", the substyle "border" and the list "list".
BORDER_API void RegisterCategory();

/// A new style of that category, with values set by this side. The caller owns it.
BORDER_API Style* MakeStyle();

/// The value of a property, set in the same style.
BORDER_API VelString ReadText(const Style& style, const PropertyKey& key);
BORDER_API void SetText(Style& style, const PropertyKey& key, const wchar_t* text);

} // namespace Border
