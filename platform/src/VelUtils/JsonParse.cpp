#include "JsonBuilder.h"
#include "JsonReader.h"
#include "VelPlatform/Unicode.h"

namespace VelUtils::Json
{

namespace
{

/// Where a text ends, for people: both count from 1, columns in characters.
struct Place
{
    std::size_t line = 1;
    std::size_t column = 1;
};

template <class Unit>
Place PlaceBehind(std::basic_string_view<Unit> text)
{
    Place place;
    const Unit* const end = text.data() + text.size();
    for (const Unit* at = text.data(); at != end;)
    {
        const VelPlatform::Unicode::Decoded found = VelPlatform::Unicode::Decode(at, end);
        at += found.length;
        const bool pairOfLineEnds = found.value == '\r' && at != end && *at == Unit{'\n'};
        if (found.value == '\n' || (found.value == '\r' && !pairOfLineEnds))
        {
            ++place.line;
            place.column = 1;
        }
        else
        {
            ++place.column;
        }
    }
    return place;
}

VelString Describe(Place place, std::string_view reason)
{
    return VelString::Format(L"Line {}, column {}: {}", place.line, place.column, VelPlatform::ToWide(reason));
}

template <class Unit>
std::size_t OffsetOfMalformed(std::basic_string_view<Unit> text)
{
    const Unit* at = text.data();
    const Unit* const end = at + text.size();
    while (at != end)
    {
        const VelPlatform::Unicode::Decoded found = VelPlatform::Unicode::Decode(at, end);
        if (!found.valid)
        {
            break;
        }
        at += found.length;
    }
    return static_cast<std::size_t>(at - text.data());
}

/// As ParseUtf8, of well-formed UTF-8.
bool ParseWellFormed(std::string_view bytes, Variant& value, VelString& errorText)
{
    JsonBuilder builder;
    JsonReadError error;
    if (!ReadJson(bytes, builder, error))
    {
        if (error.reason.empty())
        {
            error.reason = "expected at most " + std::to_string(JsonBuilder::kDeepest) + " containers in each other";
        }
        errorText = Describe(PlaceBehind(bytes.substr(0, error.offset)), error.reason);
        return false;
    }
    value = std::move(builder.GetDocument());
    return true;
}

} // namespace

bool Parse(const VelString& text, Variant& value, VelString& errorText)
{
    VelStringA utf8;
    if (!VelPlatform::TryToNarrow(text, utf8))
    {
        const VelStringView wide = text;
        errorText = Describe(PlaceBehind(wide.substr(0, OffsetOfMalformed(wide))),
                             "expected a character, found half a surrogate pair or no code point");
        return false;
    }
    return ParseWellFormed(utf8, value, errorText);
}

bool ParseUtf8(std::string_view utf8, Variant& value, VelString& errorText)
{
    if (!VelPlatform::Unicode::IsWellFormed(utf8))
    {
        errorText =
            Describe(PlaceBehind(utf8.substr(0, OffsetOfMalformed(utf8))), "expected a character, found no UTF-8");
        return false;
    }
    return ParseWellFormed(utf8, value, errorText);
}

} // namespace VelUtils::Json
