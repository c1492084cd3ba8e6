// A style sheet whose document stages tests can call, and what tests do with whole sheets.
#pragma once

#include "support/SchemaFixture.h"

#include <VelPlatform/StringIO.h>

#include <memory>
#include <string>
#include <string_view>

namespace Styles::Testing
{

inline VelString Text(std::string_view utf8)
{
    return VelPlatform::ToWide(VelStringA(utf8.data(), utf8.size()));
}

inline std::string Utf8(const VelString& text)
{
    const VelStringA narrow = VelPlatform::ToNarrow(text);
    return {narrow.c_str(), narrow.size()};
}

class TestSheet : public StyleSheet
{
public:
    using StyleSheet::CategoryStyleMap;
    using StyleSheet::ExportJson;
    using StyleSheet::ExportToString;
    using StyleSheet::GenerateCategoryStyleMap;
    using StyleSheet::ImportFromString;
    using StyleSheet::ImportJson;
    using StyleSheet::SetExternalID;

    /// Adds a new style; the sheet owns it.
    Style* Add(const wchar_t* name, const PropertyKey& category, Style* parent = nullptr)
    {
        auto style = std::make_unique<Style>(parent, category);
        Style* added = style.get();
        AddStyle(VelString(name), style.release(), false);
        return added;
    }

    Style* Get(const wchar_t* name) const { return GetStyle(VelString(name)); }

    bool Read(std::string_view utf8, bool replace = false) { return ImportFromString(Text(utf8), replace); }

    /// The document.
    std::string Write() const
    {
        VelString text;
        ExportToString(text, false);
        return Utf8(text);
    }
};

/// The own value of `key` as text.
inline VelString OwnText(const Style& style, const PropertyKey& key)
{
    Any value;
    return style.GetOverrideProperty(key, value) ? value.Get<VelString>() : VelString(L"(no value)");
}

/// The effective value of `key` as text.
inline VelString EffectiveText(const Style& style, const PropertyKey& key)
{
    return style.GetProperty(key).Get<VelString>();
}

inline double EffectiveNumber(const Style& style, const PropertyKey& key)
{
    return style.GetProperty(key).Get<double>();
}

} // namespace Styles::Testing
