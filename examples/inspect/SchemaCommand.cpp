// schema: a JSON Schema for the sheets of the registered schema.

#include "Commands.h"
#include "Output.h"
#include "OwnValues.h"

#include <cstdint>
#include <initializer_list>
#include <utility>

namespace Inspect
{

namespace
{

constexpr const wchar_t* Dialect = L"https://json-schema.org/draft/2020-12/schema";

/// What is read as a number: as the library writes and reads it, in every locale.
constexpr const wchar_t* NumberPattern = L"^-?([0-9]+([.][0-9]*)?|[.][0-9]+)([eE][-+]?[0-9]+)?$|^-?(inf|nan)$";
constexpr const wchar_t* IntegerPattern = L"^-?[0-9]+$";
constexpr const wchar_t* UnsignedPattern = L"^[0-9]+$|^-1$";

using Member = std::pair<const wchar_t*, Json::Variant>;

Json::Variant Object(std::initializer_list<Member> members)
{
    Json::Object object;
    for (const Member& member : members)
    {
        object.AddValue(VelString(member.first), member.second);
    }
    return object;
}

Json::Variant Text(const wchar_t* text)
{
    return VelString(text);
}

Json::Variant Whole(std::int64_t number)
{
    return number;
}

Json::Variant List(std::initializer_list<Json::Variant> elements)
{
    Json::Array array;
    for (const Json::Variant& element : elements)
    {
        array.AddValue(element);
    }
    return array;
}

/// What a value of that type may be in a document: its text, or what stands for the text.
Json::Variant ValuesOf(const Any& value)
{
    if (value.Is<VelString>())
    {
        return Object({{L"type", List({Text(L"string"), Text(L"number"), Text(L"boolean")})}});
    }
    if (value.Is<bool>())
    {
        return Object({{L"enum", List({Text(L"0"), Text(L"1"), Text(L"false"), Text(L"true"), false, true, Whole(0),
                                       Whole(1)})}});
    }
    const auto choice = [](const wchar_t* pattern, Json::Variant number) {
        return Object(
            {{L"anyOf", List({Object({{L"type", Text(L"string")}, {L"pattern", Text(pattern)}}), std::move(number)})}});
    };
    const auto range = [](std::int64_t least, std::int64_t greatest) {
        return Object({{L"type", Text(L"integer")}, {L"minimum", Whole(least)}, {L"maximum", Whole(greatest)}});
    };
    if (value.Is<std::int32_t>())
    {
        return choice(IntegerPattern, range(INT32_MIN, INT32_MAX));
    }
    if (value.Is<std::uint32_t>())
    {
        return choice(UnsignedPattern, range(-1, UINT32_MAX));
    }
    return choice(NumberPattern, Object({{L"type", Text(L"number")}}));
}

Json::Variant ReferenceTo(const PropertyKey& category)
{
    // In a reference two characters of a name have names of their own, and all but plain ones are percent-encoded.
    std::string reference = "#/$defs/";
    const VelPlatform::VelStringA name = VelPlatform::ToNarrow(category.GetText());
    for (const char c : name)
    {
        const auto byte = static_cast<unsigned char>(c);
        const bool isPlain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-' ||
                             c == '_' || c == '.';
        if (isPlain)
        {
            reference += c;
        }
        else if (c == '~' || c == '/')
        {
            reference += c == '~' ? "~0" : "~1";
        }
        else
        {
            reference += {'%', "0123456789ABCDEF"[byte >> 4], "0123456789ABCDEF"[byte & 15]};
        }
    }
    return Object({{L"$ref", VelPlatform::ToWide(reference)}});
}

Json::Variant SchemaOf(const Property& property)
{
    if (property.isList)
    {
        return Object({{L"type", Text(L"array")}, {L"items", ReferenceTo(property.elementCategory)}});
    }
    if (property.definition->IsSubstyle())
    {
        return ReferenceTo(property.elementCategory);
    }
    const Any& defaultValue = property.definition->GetDefaultValue();
    Json::Variant schema = ValuesOf(defaultValue);
    if (const auto* policy = property.definition->GetConversionPolicy())
    {
        schema.Get<Json::Object>().AddValue(VelString(L"default"), policy->ToText(defaultValue));
    }
    return schema;
}

Json::Variant SchemaOf(const Styles::StyleCategory& category)
{
    Json::Variant properties =
        Object({{L"inherits", Object({{L"type", Text(L"string")},
                                      {L"description", Text(L"the name of the style that this one inherits from")}})},
                {L"id", Object({{L"type", Text(L"string")}})},
                {L"original", Object({{L"type", Text(L"string")}})}});
    for (const Property& property : PropertiesOf(&category))
    {
        Json::Variant schema = SchemaOf(property);
        if (const int newSince = property.definition->GetNewSinceVersion(); newSince > 0)
        {
            schema.Get<Json::Object>().AddValue(VelString(L"$comment"),
                                                VelString(L"new since version ") +
                                                    VelPlatform::ToWide(std::to_string(newSince)));
        }
        properties.Get<Json::Object>().AddValue(property.key.GetText(), std::move(schema));
    }
    return Object({{L"title", category.GetCategoryUIName()},
                   {L"type", Text(L"object")},
                   {L"properties", std::move(properties)},
                   {L"additionalProperties", false}});
}

Json::Variant SchemaOfSheets(const Schema& schema)
{
    Json::Variant members = Object(
        {{L"version", Object({{L"type", Text(L"integer")}, {L"minimum", Whole(0)}, {L"maximum", Whole(INT32_MAX)}})},
         {L"id", Object({{L"type", Text(L"string")}})}});
    Json::Object definitions;
    const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
    for (const PropertyKey& name : schema.GetCategoryNames())
    {
        definitions.AddValue(name.GetText(), SchemaOf(*manager.GetCategory(name)));
        members.Get<Json::Object>().AddValue(
            name.GetText(), Object({{L"type", Text(L"object")}, {L"additionalProperties", ReferenceTo(name)}}));
    }
    return Object({{L"$schema", Text(Dialect)},
                   {L"title", Text(L"Style sheet")},
                   {L"type", Text(L"object")},
                   {L"properties", std::move(members)},
                   {L"additionalProperties", false},
                   {L"$defs", std::move(definitions)}});
}

} // namespace

int RunSchema(Task& task)
{
    const VelPlatform::VelStringA text =
        VelPlatform::ToNarrow(Json::ValueToString(SchemaOfSheets(task.schema), /*compact*/ false));
    const std::string bytes = std::string(text.c_str(), text.size()) + '\n';
    const VelString& path = task.request.outputPath;
    if (path.empty() || path == L"-")
    {
        task.out << bytes;
    }
    else
    {
        WriteFile(path, bytes);
    }
    return static_cast<int>(Status::Done);
}

} // namespace Inspect
