#include "StyleData.h"

#include <array>
#include <memory>
#include <string>

namespace StyleData
{

namespace
{

using Styles::Any;
using Styles::PropertyKey;
using Styles::StyleManager;
using Styles::VelString;

constexpr std::size_t kNumbers = 20;
constexpr std::size_t kTexts = 20;
constexpr std::size_t kBooleans = 12;
constexpr std::size_t kSubstyles = 4;

std::array<HostObject, PropertyCount>& HostObjects()
{
    static std::array<HostObject, PropertyCount> objects;
    return objects;
}

Styles::BaseStyleProperty* MakeDefinition(std::size_t property)
{
    switch (KindOf(property))
    {
    case Kind::Number:
        return new Styles::StyleProperty(nullptr, 0.0, new Styles::TextPolicy<double>, 0);
    case Kind::Text:
        return new Styles::StyleProperty(nullptr, VelString(L""), new Styles::TextPolicy<VelString>, 0);
    case Kind::Boolean:
        return new Styles::StyleProperty(nullptr, false, new Styles::TextPolicy<bool>, 0);
    case Kind::Pointer:
        break;
    }
    return new Styles::TemporaryStyleProperty(nullptr, static_cast<HostObject*>(nullptr), 0);
}

PropertyKey RegisterCategory(const wchar_t* name)
{
    const PropertyKey category{VelString(name)};
    StyleManager& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
    manager.SetCurrentVersion(1);
    manager.RegisterCategory(category, VelString(name), false, true);
    for (std::size_t property = 0; property < PropertyCount; ++property)
    {
        manager.RegisterProperty(category, KeyOf(property), MakeDefinition(property));
    }
    return category;
}

std::vector<std::wstring> MakeNames()
{
    std::vector<std::wstring> names;
    for (std::size_t property = 0; property < PropertyCount; ++property)
    {
        names.push_back(L"property" + std::to_wstring(property));
    }
    return names;
}

std::vector<PropertyKey> MakeKeys()
{
    // Interned in an order of its own, so that the order of the addresses says nothing about the properties.
    std::vector<PropertyKey> keys(PropertyCount);
    for (std::size_t index = 0; index < PropertyCount; ++index)
    {
        const std::size_t property = (index * 37 + 11) % PropertyCount;
        keys[property] = PropertyKey(VelString(NameOf(property).c_str()));
    }
    return keys;
}

} // namespace

Kind KindOf(std::size_t property) noexcept
{
    if (property < kNumbers)
    {
        return Kind::Number;
    }
    if (property < kNumbers + kTexts)
    {
        return Kind::Text;
    }
    return property < kNumbers + kTexts + kBooleans ? Kind::Boolean : Kind::Pointer;
}

Value MakeValue(std::size_t property, std::size_t seed)
{
    Value value;
    value.property = property;
    value.kind = KindOf(property);
    value.number = static_cast<double>(seed) + 0.5;
    value.text = std::to_wstring(1'000'000'000 + seed * PropertyCount + property);
    value.boolean = seed % 2 != 0;
    value.pointer = &HostObjects()[(seed + property) % PropertyCount];
    return value;
}

Any ToAny(const Value& value)
{
    switch (value.kind)
    {
    case Kind::Number:
        return Any(value.number);
    case Kind::Text:
        return Any(VelString(value.text.c_str(), value.text.size()));
    case Kind::Boolean:
        return Any(value.boolean);
    case Kind::Pointer:
        break;
    }
    return Any(value.pointer);
}

const std::wstring& NameOf(std::size_t property)
{
    static const std::vector<std::wstring> names = MakeNames();
    return names[property];
}

const PropertyKey& KeyOf(std::size_t property)
{
    static const std::vector<PropertyKey> keys = MakeKeys();
    return keys[property];
}

const void* AddressOf(std::size_t property)
{
    return KeyOf(property).GetPooled();
}

const PropertyKey& Category()
{
    static const PropertyKey category = RegisterCategory(L"look");
    return category;
}

const PropertyKey& NestingCategory()
{
    static const PropertyKey category = [] {
        const PropertyKey name = RegisterCategory(L"nesting look");
        StyleManager& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
        for (std::size_t index = 0; index < kSubstyles; ++index)
        {
            manager.RegisterProperty(name, SubstyleKey(index), new Styles::StyleSetProperty(nullptr, name, nullptr, 0));
        }
        return name;
    }();
    return category;
}

const PropertyKey& SubstyleKey(std::size_t index)
{
    static const std::vector<PropertyKey> keys = [] {
        std::vector<PropertyKey> made;
        for (std::size_t number = 0; number < kSubstyles; ++number)
        {
            made.emplace_back(VelString((L"substyle" + std::to_wstring(number)).c_str()));
        }
        return made;
    }();
    return keys[index];
}

} // namespace StyleData
