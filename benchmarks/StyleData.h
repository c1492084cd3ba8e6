/// The styles that look-ups and whole-style operations are measured on: the same numbers, texts, booleans and pointers
/// under the same 64 names, for us and for every peer.
#pragma once

#include <styles/Styles.h>

#include <cstddef>
#include <string>
#include <vector>

namespace StyleData
{

/// Properties that a category defines.
inline constexpr std::size_t PropertyCount = 64;
/// Properties that a style holds.
inline constexpr std::size_t ValueCount = 24;

/// What a host keeps elsewhere and names in a style.
struct HostObject
{
    int number = 0;
};

/// What a property holds.
enum class Kind
{
    Number,
    Text,
    Boolean,
    Pointer
};

/// 20 numbers, 20 texts, 12 booleans, 12 pointers.
[[nodiscard]] Kind KindOf(std::size_t property) noexcept;

/// One value, in every form that a contender may want.
struct Value
{
    std::size_t property = 0;
    Kind kind = Kind::Number;
    double number = 0;
    std::wstring text; ///< of 10 characters
    bool boolean = false;
    HostObject* pointer = nullptr;
};

/// `property` with the value that `seed` gives it.
[[nodiscard]] Value MakeValue(std::size_t property, std::size_t seed);

/// The value as a style holds it, made from its text anew.
[[nodiscard]] Styles::Any ToAny(const Value& value);

/// The name of a property; names are not in the order of their addresses.
[[nodiscard]] const std::wstring& NameOf(std::size_t property);
/// The same, as a key.
[[nodiscard]] const Styles::PropertyKey& KeyOf(std::size_t property);
/// The same, as what a hand-written map has for a key: the address of the pooled text.
[[nodiscard]] const void* AddressOf(std::size_t property);

/// A category that defines the 64 properties.
[[nodiscard]] const Styles::PropertyKey& Category();
/// A category that defines them and four substyle properties of this very category.
[[nodiscard]] const Styles::PropertyKey& NestingCategory();
/// One of those four.
[[nodiscard]] const Styles::PropertyKey& SubstyleKey(std::size_t index);

} // namespace StyleData
