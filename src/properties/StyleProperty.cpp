// Plain values: those that are written as text, and those that are not written.

#include <styles/Style.h>
#include <styles/StyleProperty.h>

#include "core/StyleJson.h"

#include <charconv>
#include <string_view>
#include <utility>

namespace Styles
{

namespace
{

/// `number` as "%g" writes it, in every locale.
VelString FormatNumber(double number)
{
    char text[32];
    const std::to_chars_result result = std::to_chars(text, text + sizeof text, number, std::chars_format::general, 6);
    return VelPlatform::ToWide(std::string_view(text, result.ptr));
}

/// The text of a string, number or boolean, which `made` may have to hold; null for any other value.
const VelString* ReadText(const Json::Variant* json, VelString& made)
{
    if (json == nullptr)
    {
        return nullptr;
    }
    if (const VelString* string = json->GetIf<VelString>())
    {
        return string;
    }
    if (const double* number = json->GetIf<double>())
    {
        made = FormatNumber(*number);
    }
    else if (const bool* boolean = json->GetIf<bool>())
    {
        made = VelString(*boolean ? L"1" : L"0");
    }
    else
    {
        return nullptr;
    }
    return &made;
}

/// What a property of this name is when its text cannot be read; null when that is a failure.
const Any* FindFallback(const PropertyKey& name)
{
    static const std::pair<PropertyKey, Any> fallbacks[] = {
        {PropertyKey(VelString(L"xScale")), Any(1.0)},
        {PropertyKey(VelString(L"yScale")), Any(1.0)},
        {PropertyKey(VelString(L"angle")), Any(0.0)},
        {PropertyKey(VelString(L"skew")), Any(0.0)},
    };
    for (const auto& [key, value] : fallbacks)
    {
        if (key == name)
        {
            return &value;
        }
    }
    return nullptr;
}

} // namespace

StyleProperty::StyleProperty(const StyleProperty& other) = default;
StyleProperty& StyleProperty::operator=(const StyleProperty& other) = default;

StyleProperty::~StyleProperty()
{
    delete m_conversionPolicy;
}

bool StyleProperty::Serialize(const StyleSheet& sheet, const Style* /*style*/, const Any& value,
                              Json::Variant& output) const
{
    if (Detail::IsOlderThan(sheet, GetNewSinceVersion()))
    {
        return false;
    }
    output = Json::NullType::Null;
    if (m_conversionPolicy == nullptr)
    {
        return true;
    }
    VelString text = m_conversionPolicy->ToText(value);
    static const PropertyKey patternId(VelString(L"patternId"));
    // KEPT: an unsigned pattern identifier of all ones is written as minus one. Sheets have always said "no pattern"
    // so. Pinned by StyleProperty.APatternIdOfAllOnesIsWrittenAsMinusOne
    if (GetPropertyName() == patternId && text == L"4294967295")
    {
        text = VelString(L"-1");
    }
    output = std::move(text);
    return true;
}

bool StyleProperty::Deserialize(const StyleSheet& /*sheet*/, Style* style, const Json::Variant* json) const
{
    if (m_conversionPolicy == nullptr || style == nullptr)
    {
        return false;
    }
    VelString made;
    const VelString* const text = ReadText(json, made);
    if (text == nullptr)
    {
        return false;
    }
    try
    {
        style->SetProperty(GetPropertyName(), m_conversionPolicy->FromText(*text));
    }
    catch (const VelPref::Detail::BadConversion&)
    {
        // KEPT: four properties, by name, take a neutral value in the place of a text that cannot be read; sheets of
        // old hold such texts. Any other property fails. Pinned by
        // StyleProperty.ScalesAnglesAndSkewsThatCannotBeReadTakeANeutralValue
        const Any* fallback = FindFallback(GetPropertyName());
        if (fallback == nullptr)
        {
            throw;
        }
        style->SetProperty(GetPropertyName(), Any(*fallback));
    }
    return true;
}

const VelPref::Detail::IConversionPolicy* StyleProperty::GetConversionPolicy() const
{
    return m_conversionPolicy;
}

bool StyleProperty::CheckType(const Any& value) const
{
    return m_typeTest(value);
}

TemporaryStyleProperty::TemporaryStyleProperty(const TemporaryStyleProperty& other) = default;
TemporaryStyleProperty& TemporaryStyleProperty::operator=(const TemporaryStyleProperty& other) = default;
TemporaryStyleProperty::~TemporaryStyleProperty() = default;

bool TemporaryStyleProperty::Serialize(const StyleSheet& /*sheet*/, const Style* /*style*/, const Any& /*value*/,
                                       Json::Variant& /*output*/) const
{
    return true;
}

bool TemporaryStyleProperty::Deserialize(const StyleSheet& /*sheet*/, Style* /*style*/,
                                         const Json::Variant* /*json*/) const
{
    return true;
}

bool TemporaryStyleProperty::CheckType(const Any& value) const
{
    return m_typeTest(value);
}

bool TemporaryStyleProperty::IsTemporary() const
{
    return true;
}

} // namespace Styles
