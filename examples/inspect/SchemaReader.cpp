// Reading the description of a schema, with a message for everything that can be wrong in it.

#include "Failure.h"
#include "Output.h"
#include "Schema.h"

#include <styles/TextPolicy.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <initializer_list>
#include <limits>
#include <map>
#include <set>
#include <string>
#include <utility>

namespace Inspect
{

namespace
{

using Definition = std::unique_ptr<Styles::BaseStyleProperty>;

/// A plain property. \throws VelPref::Detail::BadConversion when the text is no value of the type.
template <class T>
Definition MakeProperty(const VelString& defaultText, int newSince)
{
    auto policy = std::make_unique<Styles::TextPolicy<T>>();
    const Styles::Any defaultValue = policy->FromText(defaultText);
    auto property = std::make_unique<Styles::StyleProperty>(nullptr, defaultValue.Get<T>(), policy.get(), newSince);
    policy.release();
    return property;
}

struct PropertyType
{
    const wchar_t* name;
    Definition (*make)(const VelString& defaultText, int newSince);
};

constexpr PropertyType PropertyTypes[] = {{L"double", &MakeProperty<double>},
                                          {L"string", &MakeProperty<VelString>},
                                          {L"int", &MakeProperty<std::int32_t>},
                                          {L"uint", &MakeProperty<std::uint32_t>},
                                          {L"bool", &MakeProperty<bool>}};

} // namespace

class SchemaReader
{
public:
    SchemaReader(const VelString& file, Schema& schema) : m_file(file), m_schema(schema) {}

    void Read(const Json::Variant& description)
    {
        const Json::Object& root = ObjectAt(description, {});
        CheckMembers(
            root, {},
            {L"title", L"version", L"styleSets", L"categories", L"base", L"substyles", L"namedSubstyles", L"lists"});
        m_schema.m_version = NumberAt(root, {}, L"version", nullptr);
        ReadCategories(root, L"styleSets", true);
        ReadCategories(root, L"categories", false);
        ReadBase(root);
        ReadFurther(root, L"substyles", &SchemaReader::ReadSubstyle);
        ReadFurther(root, L"namedSubstyles", &SchemaReader::ReadNamedSubstyle);
        ReadFurther(root, L"lists", &SchemaReader::ReadList);
    }

private:
    using Property = Schema::Property;
    using Category = Schema::Category;

    [[noreturn]] void Fail(const Place& place, const std::string& message) const
    {
        throw Failure(MessageAt(m_file, place, message));
    }

    const Json::Object& ObjectAt(const Json::Variant& value, const Place& place) const
    {
        return ValueAt<Json::Object>(m_file, value, place);
    }

    const Json::Array& ArrayAt(const Json::Variant& value, const Place& place) const
    {
        return ValueAt<Json::Array>(m_file, value, place);
    }

    const VelString& TextAt(const Json::Variant& value, const Place& place) const
    {
        return ValueAt<VelString>(m_file, value, place);
    }

    const Json::Variant& MemberAt(const Json::Object& object, const Place& place, const wchar_t* name) const
    {
        if (const Json::Variant* value = object.GetValue(VelString(name)))
        {
            return *value;
        }
        Fail(place, "the member " + Quoted(name) + " is missing");
    }

    const VelString& TextAt(const Json::Object& object, const Place& place, const wchar_t* name) const
    {
        return TextAt(MemberAt(object, place, name), place.Member(name));
    }

    /// A version: a whole number that an `int` holds, not below 0.
    int NumberAt(const Json::Object& object, const Place& place, const wchar_t* name, const int* whenAbsent) const
    {
        if (whenAbsent != nullptr && object.GetValue(VelString(name)) == nullptr)
        {
            return *whenAbsent;
        }
        const Json::Variant& value = MemberAt(object, place, name);
        const auto* number = value.GetIf<double>();
        if (number == nullptr)
        {
            Fail(place.Member(name), "is " + KindOf(value) + ", not a number");
        }
        if (*number != std::trunc(*number) || *number < 0 || *number > std::numeric_limits<int>::max())
        {
            Fail(place.Member(name), "is no whole number from 0 to 2147483647");
        }
        return static_cast<int>(*number);
    }

    int NewSinceOf(const Json::Object& object, const Place& place) const
    {
        static constexpr int always = 0;
        return NumberAt(object, place, L"newSince", &always);
    }

    void CheckMembers(const Json::Object& object, const Place& place, std::initializer_list<const wchar_t*> known) const
    {
        for (std::size_t index = 0; index < object.GetSize(); ++index)
        {
            const VelString& name = object.GetValueName(index);
            if (std::none_of(known.begin(), known.end(), [&name](const wchar_t* text) { return name == text; }))
            {
                Fail(place.Member(name), "is not known here");
            }
        }
    }

    /// A name that sheets and paths can be written with.
    PropertyKey KeyOf(const VelString& name, const Place& place, std::initializer_list<const wchar_t*> reserved) const
    {
        if (name.empty())
        {
            Fail(place, "a name may not be empty");
        }
        if (std::any_of(name.begin(), name.end(), [](wchar_t c) { return c == L'.' || c == L'[' || c == L']'; }))
        {
            Fail(place, "a name may have no point and no brackets, which paths are written with: " + Quoted(name));
        }
        if (std::any_of(reserved.begin(), reserved.end(), [&name](const wchar_t* text) { return name == text; }))
        {
            Fail(place, "sheets mean something else by the name " + Quoted(name));
        }
        return PropertyKey(name);
    }

    /// Notes that `category` has that property from now on.
    PropertyKey AddName(const PropertyKey& category, const VelString& name, const Place& place)
    {
        const PropertyKey key = KeyOf(name, place, {L"inherits", L"id", L"original", L"*"});
        if (!m_propertyNames[category].insert(key).second)
        {
            Fail(place, "the category " + Quoted(category.GetText()) + " has a property " + Quoted(name) + " already");
        }
        return key;
    }

    void AddCategory(Category category, const Place& namePlace)
    {
        if (!m_categories.insert(category.name).second)
        {
            Fail(namePlace, "there is a category " + Quoted(category.name.GetText()) + " already");
        }
        m_schema.m_categoryNames.push_back(category.name);
        m_schema.m_categories.push_back(std::move(category));
    }

    PropertyKey KnownCategory(const VelString& name, const Place& place) const
    {
        const PropertyKey key(name);
        if (!m_categories.contains(key))
        {
            Fail(place, "there is no category " + Quoted(name));
        }
        return key;
    }

    Definition ReadDefinition(const Json::Object& object, const Place& place) const
    {
        CheckMembers(object, place, {L"name", L"type", L"default", L"newSince", L"unit", L"look"});
        const VelString& typeName = TextAt(object, place, L"type");
        const auto* const type = std::find_if(std::begin(PropertyTypes), std::end(PropertyTypes),
                                              [&](const PropertyType& known) { return typeName == known.name; });
        if (type == std::end(PropertyTypes))
        {
            Fail(place.Member(L"type"),
                 "there is no type " + Quoted(typeName) + "; the types are double, string, int, uint and bool");
        }
        const VelString& defaultText = TextAt(object, place, L"default");
        const int newSince = NewSinceOf(object, place);
        try
        {
            return type->make(defaultText, newSince);
        }
        catch (const VelPref::Detail::BadConversion& error)
        {
            Fail(place.Member(L"default"),
                 Quoted(defaultText) + " is no " + Shown(typeName) + ": " + std::string(error.what()));
        }
    }

    std::vector<Property> ReadProperties(const PropertyKey& category, const Json::Object& object, const Place& place)
    {
        std::vector<Property> properties;
        const Place listPlace = place.Member(L"properties");
        const Json::Array& list = ArrayAt(MemberAt(object, place, L"properties"), listPlace);
        for (std::size_t index = 0; index < list.GetSize(); ++index)
        {
            const Place propertyPlace = listPlace.Element(index);
            const Json::Object& property = ObjectAt(*list.GetValue(index), propertyPlace);
            const PropertyKey name =
                AddName(category, TextAt(property, propertyPlace, L"name"), propertyPlace.Member(L"name"));
            properties.push_back({name, ReadDefinition(property, propertyPlace)});
        }
        return properties;
    }

    void ReadCategories(const Json::Object& root, const wchar_t* section, bool areStyleSets)
    {
        const Json::Variant* value = root.GetValue(VelString(section));
        if (value == nullptr)
        {
            return;
        }
        const Place sectionPlace = Place().Member(section);
        const Json::Array& list = ArrayAt(*value, sectionPlace);
        for (std::size_t index = 0; index < list.GetSize(); ++index)
        {
            const Place place = sectionPlace.Element(index);
            const Json::Object& object = ObjectAt(*list.GetValue(index), place);
            CheckMembers(object, place, {L"name", L"uiName", L"properties", L"look"});
            const PropertyKey name =
                KeyOf(TextAt(object, place, L"name"), place.Member(L"name"), {L"style", L"version", L"id"});
            Category category{name, TextAt(object, place, L"uiName"), areStyleSets, {}};
            category.properties = ReadProperties(name, object, place);
            AddCategory(std::move(category), place.Member(L"name"));
        }
    }

    void ReadBase(const Json::Object& root)
    {
        const Place place = Place().Member(L"base");
        const Json::Object& object = ObjectAt(MemberAt(root, {}, L"base"), place);
        CheckMembers(object, place, {L"name", L"uiName", L"properties", L"look"});
        if (object.GetValue(VelString(L"name")) != nullptr && TextAt(object, place, L"name") != L"style")
        {
            Fail(place.Member(L"name"), "the base category is called \"style\"");
        }
        const PropertyKey& name = Styles::StyleCategoryName;
        // The base category gets a substyle property for each style set before its plain properties.
        for (const Category& category : m_schema.m_categories)
        {
            if (category.isStyleSet)
            {
                m_propertyNames[name].insert(category.name);
            }
        }
        Category base{name, TextAt(object, place, L"uiName"), false, {}};
        base.properties = ReadProperties(name, object, place);
        AddCategory(std::move(base), place);
    }

    using ReadProperty = Property (SchemaReader::*)(const PropertyKey&, const Json::Variant&, const Place&);

    /// Reads a section that has a list of properties for each of some categories.
    void ReadFurther(const Json::Object& root, const wchar_t* section, ReadProperty readProperty)
    {
        const Json::Variant* value = root.GetValue(VelString(section));
        if (value == nullptr)
        {
            return;
        }
        const Place sectionPlace = Place().Member(section);
        const Json::Object& categories = ObjectAt(*value, sectionPlace);
        for (std::size_t index = 0; index < categories.GetSize(); ++index)
        {
            const VelString& categoryName = categories.GetValueName(index);
            const Place place = sectionPlace.Member(categoryName);
            const PropertyKey category = KnownCategory(categoryName, place);
            const Json::Array& list = ArrayAt(*categories.GetValue(index), place);
            std::vector<Property> properties;
            for (std::size_t element = 0; element < list.GetSize(); ++element)
            {
                properties.push_back((this->*readProperty)(category, *list.GetValue(element), place.Element(element)));
            }
            m_schema.m_furtherProperties.emplace_back(category, std::move(properties));
        }
    }

    Property ReadSubstyle(const PropertyKey& category, const Json::Variant& value, const Place& place)
    {
        const VelString& name = TextAt(value, place);
        KnownCategory(name, place);
        return {AddName(category, name, place), nullptr};
    }

    /// What a named substyle property and a list have in common; checks it and gives name and element category.
    std::pair<PropertyKey, PropertyKey> ReadNames(const PropertyKey& category, const Json::Object& object,
                                                  const Place& place)
    {
        CheckMembers(object, place, {L"name", L"elementCategory", L"newSince", L"look"});
        const PropertyKey name = AddName(category, TextAt(object, place, L"name"), place.Member(L"name"));
        return {name, KnownCategory(TextAt(object, place, L"elementCategory"), place.Member(L"elementCategory"))};
    }

    Property ReadNamedSubstyle(const PropertyKey& category, const Json::Variant& value, const Place& place)
    {
        const Json::Object& object = ObjectAt(value, place);
        const auto [name, element] = ReadNames(category, object, place);
        return {name, std::make_unique<Styles::StyleSetProperty>(nullptr, element, nullptr, NewSinceOf(object, place))};
    }

    Property ReadList(const PropertyKey& category, const Json::Variant& value, const Place& place)
    {
        const Json::Object& object = ObjectAt(value, place);
        const auto [name, element] = ReadNames(category, object, place);
        const int newSince = NewSinceOf(object, place);
        if (newSince == 0)
        {
            return {name, std::make_unique<Styles::StyleArrayProperty>(nullptr, element)};
        }
        if (element != category)
        {
            Fail(place.Member(L"newSince"), "only a list of its own category can be newer than version 0");
        }
        return {name, std::make_unique<Styles::StyleArrayProperty>(nullptr, newSince)};
    }

    const VelString& m_file;
    Schema& m_schema;
    std::set<PropertyKey> m_categories;
    std::map<PropertyKey, std::set<PropertyKey>> m_propertyNames;
};

Schema::Schema(const Document& description) : m_path(description.path)
{
    SchemaReader(description.path, *this).Read(description.value);
    m_looks.ReadSchema(description);
}

} // namespace Inspect
