#include "Looks.h"

#include "Failure.h"
#include "Output.h"
#include "OwnValues.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string>

namespace Inspect
{

namespace
{

using Styles::PropertyKey;

/// What gallery/swatch.js knows to draw, the groups before the values.
constexpr const wchar_t* Parts[] = {
    L"fill",     L"line",        L"shadow", L"text",    L"paragraph",  L"gradient", L"hatch",     L"dash",
    L"arrow",    L"start",       L"end",    L"stops",   L"fonts",      L"tabs",     L"mode",      L"color",
    L"opacity",  L"pattern",     L"xScale", L"yScale",  L"angle",      L"skew",     L"distance",  L"width",
    L"join",     L"cap",         L"behind", L"visible", L"blur",       L"xOffset",  L"yOffset",   L"startWidth",
    L"endWidth", L"phase",       L"count1", L"length1", L"count2",     L"length2",  L"gap",       L"shape",
    L"size",     L"path",        L"box",    L"kind",    L"startColor", L"endColor", L"border",    L"x",
    L"y",        L"position",    L"font",   L"weight",  L"italic",     L"tracking", L"underline", L"strike",
    L"align",    L"lineSpacing", L"indent"};

void CheckPart(const VelString& file, const VelString& part, const Place& place)
{
    if (std::any_of(std::begin(Parts), std::end(Parts), [&part](const wchar_t* known) { return part == known; }))
    {
        return;
    }
    std::string known;
    for (const wchar_t* text : Parts)
    {
        known += (known.empty() ? "" : ", ") + Shown(text);
    }
    throw Failure(MessageAt(file, place, "nothing is drawn for " + Quoted(part) + "; there are: " + known));
}

VelString ReadPart(const VelString& file, const Json::Variant& value, const Place& place)
{
    const auto& part = ValueAt<VelString>(file, value, place);
    CheckPart(file, part, place);
    return part;
}

void CheckMembers(const VelString& file, const Json::Object& object, const Place& place,
                  std::initializer_list<VelStringView> known)
{
    for (std::size_t index = 0; index < object.GetSize(); ++index)
    {
        const VelString& name = object.GetValueName(index);
        if (std::find(known.begin(), known.end(), VelStringView(name)) == known.end())
        {
            throw Failure(MessageAt(file, place.Member(name), "is not known here"));
        }
    }
}

} // namespace

void Looks::ReadLook(const VelString& file, const Json::Variant& value, const Place& place, Look& look)
{
    if (value.Is<VelString>())
    {
        look.part = ReadPart(file, value, place);
        return;
    }
    const auto& members = ValueAt<Json::Object>(file, value, place);
    CheckMembers(file, members, place, {L"part", L"unit", L"tiles"});
    const Json::Variant* part = members.GetValue(VelString(L"part"));
    if (part == nullptr)
    {
        throw Failure(MessageAt(file, place, "the member \"part\" is missing"));
    }
    look.part = ReadPart(file, *part, place.Member(L"part"));
    if (const Json::Variant* unit = members.GetValue(VelString(L"unit")))
    {
        look.unit = ValueAt<VelString>(file, *unit, place.Member(L"unit"));
    }
    if (const Json::Variant* tilesValue = members.GetValue(VelString(L"tiles")))
    {
        const Place tilesPlace = place.Member(L"tiles");
        const auto& tiles = ValueAt<Json::Object>(file, *tilesValue, tilesPlace);
        look.tiles.clear();
        for (std::size_t index = 0; index < tiles.GetSize(); ++index)
        {
            const VelString& id = tiles.GetValueName(index);
            look.tiles.emplace_back(id, ValueAt<VelString>(file, *tiles.GetValue(index), tilesPlace.Member(id)));
        }
    }
}

void Looks::ReadCategory(const VelString& file, const Json::Object& category, const Place& place)
{
    const Json::Variant* nameValue = category.GetValue(VelString(L"name"));
    const PropertyKey name(nameValue != nullptr ? nameValue->Get<VelString>() : Styles::StyleCategoryName.GetText());
    if (const Json::Variant* look = category.GetValue(VelString(L"look")))
    {
        m_categories[name] = ReadPart(file, *look, place.Member(L"look"));
    }
    const auto& properties = category.GetValue(VelString(L"properties"))->Get<Json::Array>();
    for (std::size_t index = 0; index < properties.GetSize(); ++index)
    {
        const auto& property = properties.GetValue(index)->Get<Json::Object>();
        const Place propertyPlace = place.Member(L"properties").Element(index);
        Look& look = m_properties[name][PropertyKey(property.GetValue(VelString(L"name"))->Get<VelString>())];
        if (const Json::Variant* unit = property.GetValue(VelString(L"unit")))
        {
            look.unit = ValueAt<VelString>(file, *unit, propertyPlace.Member(L"unit"));
        }
        if (const Json::Variant* value = property.GetValue(VelString(L"look")))
        {
            ReadLook(file, *value, propertyPlace.Member(L"look"), look);
        }
    }
}

void Looks::ReadSection(const Document& description, const wchar_t* section)
{
    if (const Json::Variant* value = description.value.Get<Json::Object>().GetValue(VelString(section)))
    {
        const auto& categories = value->Get<Json::Array>();
        for (std::size_t index = 0; index < categories.GetSize(); ++index)
        {
            ReadCategory(description.path, categories.GetValue(index)->Get<Json::Object>(),
                         Place().Member(section).Element(index));
        }
    }
}

void Looks::ReadFurther(const Document& description, const wchar_t* section)
{
    const Json::Variant* value = description.value.Get<Json::Object>().GetValue(VelString(section));
    const Json::Object none;
    const auto& categories = value != nullptr ? value->Get<Json::Object>() : none;
    for (std::size_t index = 0; index < categories.GetSize(); ++index)
    {
        const VelString& category = categories.GetValueName(index);
        const auto& properties = categories.GetValue(index)->Get<Json::Array>();
        for (std::size_t element = 0; element < properties.GetSize(); ++element)
        {
            const auto& property = properties.GetValue(element)->Get<Json::Object>();
            if (const Json::Variant* look = property.GetValue(VelString(L"look")))
            {
                const PropertyKey name(property.GetValue(VelString(L"name"))->Get<VelString>());
                ReadLook(description.path, *look,
                         Place().Member(section).Member(category).Element(element).Member(L"look"),
                         m_properties[PropertyKey(category)][name]);
            }
        }
    }
}

void Looks::ReadSchema(const Document& description)
{
    ReadSection(description, L"styleSets");
    ReadSection(description, L"categories");
    if (const Json::Variant* base = description.value.Get<Json::Object>().GetValue(VelString(L"base")))
    {
        ReadCategory(description.path, base->Get<Json::Object>(), Place().Member(L"base"));
    }
    ReadFurther(description, L"namedSubstyles");
    ReadFurther(description, L"lists");
}

void Looks::ReadFile(const Document& file)
{
    const auto& root = ValueAt<Json::Object>(file.path, file.value, {});
    CheckMembers(file.path, root, {}, {L"title", L"looks"});
    const Json::Variant* value = root.GetValue(VelString(L"looks"));
    if (value == nullptr)
    {
        throw Failure(MessageAt(file.path, {}, "the member \"looks\" is missing"));
    }
    const Place place = Place().Member(L"looks");
    const auto& categories = ValueAt<Json::Object>(file.path, *value, place);
    for (std::size_t index = 0; index < categories.GetSize(); ++index)
    {
        const VelString& name = categories.GetValueName(index);
        const Place categoryPlace = place.Member(name);
        ReadFileCategory(file.path, PropertyKey(name),
                         ValueAt<Json::Object>(file.path, *categories.GetValue(index), categoryPlace), categoryPlace);
    }
}

void Looks::ReadFileCategory(const VelString& file, const PropertyKey& name, const Json::Object& category,
                             const Place& place)
{
    const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
    if (!manager.CategoryExists(name))
    {
        throw Failure(MessageAt(file, place, "the schema has no such category"));
    }
    CheckMembers(file, category, place, {L"look", L"properties"});
    if (const Json::Variant* look = category.GetValue(VelString(L"look")))
    {
        m_categories[name] = ReadPart(file, *look, place.Member(L"look"));
    }
    const Json::Variant* value = category.GetValue(VelString(L"properties"));
    if (value == nullptr)
    {
        return;
    }
    const auto& properties = ValueAt<Json::Object>(file, *value, place.Member(L"properties"));
    for (std::size_t index = 0; index < properties.GetSize(); ++index)
    {
        const PropertyKey key(properties.GetValueName(index));
        const Place propertyPlace = place.Member(L"properties").Member(key.GetText());
        if (FindProperty(*manager.GetCategory(name), key).definition == nullptr)
        {
            throw Failure(MessageAt(file, propertyPlace, "the category has no such property"));
        }
        ReadLook(file, *properties.GetValue(index), propertyPlace, m_properties[name][key]);
    }
}

VelString Looks::OfCategory(const PropertyKey& category) const
{
    const auto found = m_categories.find(category);
    return found != m_categories.end() ? found->second : VelString();
}

Look Looks::OfProperty(const PropertyKey& category, const PropertyKey& property) const
{
    const auto properties = m_properties.find(category);
    if (properties == m_properties.end())
    {
        return {};
    }
    const auto found = properties->second.find(property);
    return found != properties->second.end() ? found->second : Look();
}

} // namespace Inspect
