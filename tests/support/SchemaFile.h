// Registers the categories and properties that a schema file describes.
#pragma once

#include "support/TestSheet.h"

#include <string_view>

namespace Styles::Testing
{

class SchemaFile
{
public:
    /// Registers what the text of a schema file says; std::bad_cast when it says something else.
    static void Register(std::string_view utf8)
    {
        Json::Variant document;
        VelString error;
        if (!Json::Parse(Text(utf8), document, error))
        {
            throw std::bad_cast();
        }
        const auto& schema = document.Get<Json::Object>();
        ForEach(schema, L"styleSets", [](const Json::Object& category) { RegisterCategory(category, true); });
        ForEach(schema, L"categories", [](const Json::Object& category) { RegisterCategory(category, false); });
        const auto& base = schema.GetValue(VelString(L"base"))->Get<Json::Object>();
        RegisterStyleCategory(TextOf(base, L"uiName"));
        RegisterProperties(base);
        const auto& substyles = schema.GetValue(VelString(L"substyles"))->Get<Json::Object>();
        for (std::size_t index = 0; index < substyles.GetSize(); ++index)
        {
            const auto& names = substyles.GetValue(index)->Get<Json::Array>();
            for (std::size_t name = 0; name < names.GetSize(); ++name)
            {
                RegisterSubstyleSet(PropertyKey(substyles.GetValueName(index)),
                                    PropertyKey(names.GetValue(name)->Get<VelString>()));
            }
        }
        RegisterNested(schema, L"namedSubstyles", [](const PropertyKey& element) -> BaseStyleProperty* {
            return new StyleSetProperty(nullptr, element, nullptr, 0);
        });
        RegisterNested(schema, L"lists", [](const PropertyKey& element) -> BaseStyleProperty* {
            return new StyleArrayProperty(nullptr, element);
        });
    }

private:
    static VelString TextOf(const Json::Object& object, const wchar_t* name)
    {
        return object.GetValue(VelString(name))->Get<VelString>();
    }

    template <class Action>
    static void ForEach(const Json::Object& object, const wchar_t* name, const Action& action)
    {
        const auto& elements = object.GetValue(VelString(name))->Get<Json::Array>();
        for (std::size_t index = 0; index < elements.GetSize(); ++index)
        {
            action(elements.GetValue(index)->Get<Json::Object>());
        }
    }

    static void RegisterCategory(const Json::Object& category, bool isStyleSet)
    {
        Manager().RegisterCategory(PropertyKey(TextOf(category, L"name")), TextOf(category, L"uiName"), isStyleSet,
                                   true);
        RegisterProperties(category);
    }

    static void RegisterProperties(const Json::Object& category)
    {
        ForEach(category, L"properties", [&category](const Json::Object& property) {
            const VelString defaultText = TextOf(property, L"default");
            const auto newSince = static_cast<int>(property.GetValue(VelString(L"newSince"))->Get<double>());
            BaseStyleProperty* definition = nullptr;
            if (TextOf(property, L"type") == VelString(L"double"))
            {
                const Any value = TextPolicy<double>().FromText(defaultText);
                definition = MakeNumberProperty(value.Get<double>(), newSince);
            }
            else
            {
                definition = MakeTextProperty(defaultText.c_str(), newSince);
            }
            Manager().RegisterProperty(PropertyKey(TextOf(category, L"name")), PropertyKey(TextOf(property, L"name")),
                                       definition);
        });
    }

    template <class Make>
    static void RegisterNested(const Json::Object& schema, const wchar_t* section, const Make& make)
    {
        const auto& categories = schema.GetValue(VelString(section))->Get<Json::Object>();
        for (std::size_t index = 0; index < categories.GetSize(); ++index)
        {
            const PropertyKey category(categories.GetValueName(index));
            ForEach(categories, category.GetText().c_str(), [&](const Json::Object& property) {
                Manager().RegisterProperty(category, PropertyKey(TextOf(property, L"name")),
                                           make(PropertyKey(TextOf(property, L"elementCategory"))));
            });
        }
    }
};

} // namespace Styles::Testing
