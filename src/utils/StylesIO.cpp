#include <styles/StylesIO.h>

#include <styles/StyleSheet.h>

#include "core/StyleAccess.h"

#include <VelPlatform/StringIO.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

#if __has_include(<cxxabi.h>)
#    include <cxxabi.h>
#endif

namespace Styles
{

namespace
{

constexpr std::size_t MostListed = 20;
constexpr std::size_t MostCharacters = 100;
constexpr const wchar_t* EmptyText = L"(empty)";

VelString Quoted(const VelString& text)
{
    return Json::ValueToString(Json::Variant(text), true);
}

VelString Count(std::size_t count, const wchar_t* noun)
{
    VelString text = VelString::Format(L"{} {}", count, noun);
    return count == 1 ? text : text += L's';
}

/// Category, inheritance and number of values.
VelString HeadlineOf(const Style& style)
{
    VelString text(L"style ");
    const StyleCategory* category = Detail::StyleAccess::Category(style);
    text += category != nullptr ? L"of " + Quoted(category->GetCategoryName().ToString()) : L"without category";
    if (style.GetParent() != nullptr)
    {
        text += L", inherits";
    }
    return text + L", " + Count(Detail::StyleAccess::Properties(style).size(), L"value");
}

template <class T>
VelString TextOf(const T& number)
{
    return VelString::Format(L"{}", number);
}
VelString TextOf(const bool& truth)
{
    return truth ? L"true" : L"false";
}
VelString TextOf(const VelString& text)
{
    return Quoted(text);
}
VelString TextOf(const VelStringA& text)
{
    return Quoted(VelPlatform::ToWide(text));
}
VelString TextOf(const PropertyKey& key)
{
    return Quoted(key.ToString());
}
VelString TextOf(const Style* const& style)
{
    return style != nullptr ? HeadlineOf(*style) : VelString(L"null");
}
VelString TextOf(Style* const& style)
{
    return TextOf(static_cast<const Style*>(style));
}
VelString TextOf(const std::vector<Style*>& styles)
{
    return Count(styles.size(), L"style");
}
VelString TextOf(const Json::Variant& json)
{
    return Json::ValueToString(json, true);
}
VelString TextOf(const Json::Object& json)
{
    return Json::ValueToString(Json::Variant(json), true);
}
VelString TextOf(const Json::Array& json)
{
    return Json::ValueToString(Json::Variant(json), true);
}

template <class T>
bool WriteIf(const Any& value, VelString& text)
{
    const T* held = value.GetIf<T>();
    if (held != nullptr)
    {
        text = TextOf(*held);
    }
    return held != nullptr;
}

template <class... Types>
bool WriteIfAnyOf(const Any& value, VelString& text)
{
    return (WriteIf<Types>(value, text) || ...);
}

/// False for a type that is not known here.
bool WriteKnown(const Any& value, VelString& text)
{
    if (value.IsEmpty())
    {
        text = EmptyText;
        return true;
    }
    if (value.GetHolder()->IsEnum())
    {
        text = TextOf(value.GetHolder()->GetEnumValue());
        return true;
    }
    return WriteIfAnyOf<double, VelString, bool, int, unsigned, long, unsigned long, long long, unsigned long long,
                        short, unsigned short, VelStringA, PropertyKey, Style*, const Style*, std::vector<Style*>,
                        Json::Variant, Json::Object, Json::Array>(value, text);
}

VelString TextOf(const Any& value)
{
    VelString text;
    return WriteKnown(value, text) ? text : L"(" + GetReadableTypeName(value) + L")";
}

/// The value as its definition writes it; false where it does not.
bool WriteByDefinition(const Style& style, const PropertyKey& key, const Any& value, VelString& text)
{
    const StyleCategory* category = Detail::StyleAccess::Category(style);
    if (category == nullptr)
    {
        return false;
    }
    const auto entry = category->GetProperties().find(key);
    if (entry == category->GetProperties().end() || entry->second == nullptr)
    {
        return false;
    }
    const VelPref::Detail::IConversionPolicy* policy = entry->second->GetConversionPolicy();
    try
    {
        if (policy != nullptr)
        {
            text = policy->ToText(value);
        }
    }
    catch (const std::bad_alloc&)
    {
        throw;
    }
    catch (...)
    {
        return false; // a value of another type, which nobody checks before it is stored
    }
    return policy != nullptr;
}

VelString Cut(VelString text)
{
    if (text.size() > MostCharacters)
    {
        // Of two units that are one character both go.
        const bool splits = sizeof(wchar_t) == 2 && (text[MostCharacters - 1] & 0xFC00) == 0xD800;
        text.Truncate(MostCharacters - (splits ? 1 : 0));
        text += L"...";
    }
    return text;
}

/// In braces, cut.
VelString Listed(const std::vector<VelString>& entries)
{
    VelString text;
    for (std::size_t index = 0; index < std::min(entries.size(), MostListed); ++index)
    {
        text += (index == 0 ? L" {" : L"; ") + Cut(entries[index]);
    }
    return text + (entries.size() > MostListed ? L"; ...}" : entries.empty() ? L"" : L"}");
}

} // namespace

VelString GetReadableTypeName(const Any& value)
{
    if (value.IsEmpty())
    {
        return EmptyText;
    }
    const char* name = value.GetType().name();
#if __has_include(<cxxabi.h>)
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> demangled(abi::__cxa_demangle(name, nullptr, nullptr, &status),
                                                                &std::free);
    if (demangled != nullptr)
    {
        return VelPlatform::ToWide(demangled.get());
    }
#endif
    return VelPlatform::ToWide(name);
}

std::ostream& operator<<(std::ostream& stream, const PropertyKey& key)
{
    return stream << key.GetText();
}

std::ostream& operator<<(std::ostream& stream, const Style& style)
{
    std::vector<VelString> values;
    for (const auto& [key, value] : Detail::StyleAccess::Properties(style))
    {
        VelString text;
        if (!WriteKnown(value, text) && !WriteByDefinition(style, key, value, text))
        {
            text = TextOf(value);
        }
        values.push_back(key.GetText() + L" = " + text);
    }
    std::sort(values.begin(), values.end());
    return stream << HeadlineOf(style) + Listed(values);
}

std::ostream& operator<<(std::ostream& stream, const StyleSheet& sheet)
{
    std::vector<VelString> names = sheet.GetStyleNames();
    std::transform(names.begin(), names.end(), names.begin(), Quoted);
    return stream << L"sheet of " + Count(names.size(), L"style") +
                         VelString::Format(L", version {}", sheet.GetVersion()) + Listed(names);
}

} // namespace Styles

namespace VelUtils
{

std::ostream& operator<<(std::ostream& stream, const Any& value)
{
    return stream << Styles::TextOf(value);
}

} // namespace VelUtils
