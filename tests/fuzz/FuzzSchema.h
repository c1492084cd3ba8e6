// The schema that the fuzz targets register: every kind of property, and a category that nests in itself.
#pragma once

#include <styles/Styles.h>

#include <cstddef>
#include <cstdlib>
#include <vector>

namespace Styles::Fuzzing
{

inline PropertyKey Key(const wchar_t* text)
{
    return PropertyKey(VelString(text));
}

inline StyleManager& Manager()
{
    return VelUtils::Singleton<StyleManager, 0>::GetInstance();
}

inline void Require(bool holds)
{
    if (!holds)
    {
        std::abort();
    }
}

inline void RegisterSchema()
{
    const PropertyKey fill = Key(L"fill"), outline = Key(L"outline"), nest = Key(L"nest"), color = Key(L"color");
    Manager().SetCurrentVersion(3);
    Manager().RegisterCategory(fill, VelString(L"Fill"), true, true);
    Manager().RegisterCategory(outline, VelString(L"Outline"), true, true);
    Manager().RegisterCategory(nest, VelString(L"Nest"), true, true);
    Manager().RegisterProperty(fill, color, new StyleProperty(nullptr, L"white", new TextPolicy<VelString>(), 0));
    Manager().RegisterProperty(fill, Key(L"pattern"),
                               new StyleProperty(nullptr, std::uint32_t{7}, new TextPolicy<std::uint32_t>(), 0));
    Manager().RegisterProperty(outline, Key(L"width"), new StyleProperty(nullptr, 0.5, new TextPolicy<double>(), 0));
    Manager().RegisterProperty(outline, Key(L"on"), new StyleProperty(nullptr, true, new TextPolicy<bool>(), 2));
    RegisterSubstyleSet(outline, fill);
    Manager().RegisterProperty(nest, color, new StyleProperty(nullptr, L"", new TextPolicy<VelString>(), 0));
    RegisterSubstyleSet(nest, nest);
    Manager().RegisterProperty(nest, Key(L"nests"), new StyleArrayProperty(nullptr, nest));
    RegisterStyleCategory(VelString(L"Graphic style"));
    Manager().RegisterProperty(StyleCategoryName, Key(L"note"),
                               new StyleProperty(nullptr, L"note", new TextPolicy<VelString>(), 0));
    Manager().RegisterProperty(StyleCategoryName, Key(L"stops"), new StyleArrayProperty(nullptr, fill));
}

/// Looks every property up, in substyles too.
inline void ResolveAll(const Style& style, int depth = 0)
{
    const auto category = style.GetCategory();
    if (!category || depth > 6)
    {
        return;
    }
    for (const PropertyKey& key : category->GetPropertyNames())
    {
        const Any* value = nullptr;
        try
        {
            value = &style.GetProperty(key);
        }
        catch (const std::logic_error&) // inherited from a category that does not know the key
        {
            continue;
        }
        catch (const std::bad_cast&) // a value on the way is no substyle
        {
            continue;
        }
        if (Style* const* substyle = value->GetIf<Style*>(); substyle != nullptr && *substyle != nullptr)
        {
            ResolveAll(**substyle, depth + 1);
        }
        else if (const auto* list = value->GetIf<std::vector<Style*>>())
        {
            for (const Style* element : *list)
            {
                ResolveAll(*element, depth + 3);
            }
        }
    }
}

/// Gives the text of the document.
class OpenSheet : public StyleSheet
{
public:
    using StyleSheet::ImportFromString;

    VelString GetText() const
    {
        VelString text;
        ExportToString(text, false);
        return text;
    }
};

} // namespace Styles::Fuzzing
