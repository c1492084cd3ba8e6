// Pictures of styles: what can be seen of them, as texts by the places where they stand.
#pragma once

#include <styles/Styles.h>

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace Styles::Testing
{

using Picture = std::map<std::string, std::string>;

inline std::string Narrow(const VelString& text)
{
    const VelStringA utf8 = VelPlatform::ToNarrow(text);
    return {utf8.c_str(), utf8.size()};
}

/// Draws styles into a picture, and checks meanwhile that they can be used: links lead to styles that are there.
class Painter
{
public:
    enum class Look
    {
        Identity, ///< own values and the addresses of substyles
        Content,  ///< own values
        Effect    ///< what look-ups answer
    };

    Painter(const StyleSheet& sheet, Look look, Picture& picture) : m_sheet(sheet), m_look(look), m_picture(picture) {}

    /// Every style of the sheet, under its name.
    void DrawSheet()
    {
        for (const VelString& name : m_sheet.GetStyleNames())
        {
            if (const Style* style = m_sheet.GetStyle(name))
            {
                Draw(Narrow(name), *style);
                EXPECT_EQ(m_sheet.GetStyleName(style), name);
            }
        }
    }

    void Draw(const std::string& place, const Style& style, int depth = 0)
    {
        if (m_look == Look::Effect)
        {
            DrawEffect(place, style, depth);
            return;
        }
        m_picture[place] = "style of " + Narrow(style.GetCategoryName().GetText());
        m_picture[place + "^"] = ParentOf(style);
        m_picture[place + "#"] = Narrow(style.GetExternalID()) + "#" + Narrow(style.GetExternalName());
        if (m_look == Look::Identity)
        {
            m_picture[place + "@"] = Address(&style) + " in " + Address(style.GetOwner()) + " as " +
                                     Narrow(style.GetOwnersSubstylePropertyName().GetText());
        }
        for (const PropertyKey& key : GetOverriddenProperties(style))
        {
            Any value;
            style.GetOverrideProperty(key, value);
            CheckOwner(place, style, key);
            DrawValue(place + "/" + Narrow(key.GetText()), value, depth);
        }
    }

private:
    void DrawEffect(const std::string& place, const Style& style, int depth)
    {
        const auto category = style.GetCategory();
        if (!category || depth > 4)
        {
            return;
        }
        for (const PropertyKey& key : category->GetPropertyNames())
        {
            if (const BaseStyleProperty* definition = category->GetStyleProperty(key))
            {
                // A style that has not been read to the end has no category, and those below it then no default.
                const Any* found = nullptr;
                try
                {
                    found = &style.GetProperty(key);
                }
                catch (const std::logic_error&)
                {
                    m_picture[place + "/" + Narrow(key.GetText())] = "(not known)";
                    continue;
                }
                const Any& value = *found;
                Style* const* substyle = value.GetIf<Style*>();
                // What is nowhere set is the same as an empty substyle.
                Style empty;
                if (substyle != nullptr && *substyle == nullptr)
                {
                    empty.SetCategory(const_cast<BaseStyleProperty*>(definition)->GetElementCategoryName());
                    DrawEffect(place + "/" + Narrow(key.GetText()), empty, depth + 1);
                    continue;
                }
                DrawValue(place + "/" + Narrow(key.GetText()), value, depth);
            }
        }
    }

    void DrawValue(const std::string& place, const Any& value, int depth)
    {
        if (Style* const* substyle = value.GetIf<Style*>())
        {
            if (*substyle != nullptr)
            {
                Draw(place, **substyle, depth + 1);
            }
            return;
        }
        if (const auto* list = value.GetIf<std::vector<Style*>>())
        {
            m_picture[place] = std::to_string(list->size()) + " styles";
            for (std::size_t index = 0; index < list->size(); ++index)
            {
                Draw(place + "[" + std::to_string(index) + "]", *(*list)[index], depth + 1);
            }
            return;
        }
        std::ostringstream text;
        if (const VelString* string = value.GetIf<VelString>())
        {
            text << '"' << Narrow(*string) << '"';
        }
        else if (const double* number = value.GetIf<double>())
        {
            text << *number;
        }
        else if (const std::uint32_t* integer = value.GetIf<std::uint32_t>())
        {
            text << *integer << 'u';
        }
        else
        {
            text << value.GetType().name();
        }
        m_picture[place] = text.str();
    }

    static void CheckOwner(const std::string& place, const Style& style, const PropertyKey& key)
    {
        if (const Style* substyle = style.GetSubstyle(key, false))
        {
            EXPECT_EQ(substyle->GetOwner(), &style) << place;
            EXPECT_EQ(substyle->GetOwnersSubstylePropertyName(), key) << place;
        }
    }

    std::string ParentOf(const Style& style) const
    {
        if (style.GetParent() == nullptr)
        {
            return "none";
        }
        const VelString name = m_sheet.GetStyleName(style.GetParent());
        EXPECT_FALSE(name.empty()) << "a parent link leads out of the sheet";
        return "inherits " + Narrow(name);
    }

    static std::string Address(const Style* style)
    {
        std::ostringstream text;
        text << static_cast<const void*>(style);
        return text.str();
    }

    const StyleSheet& m_sheet;
    Look m_look;
    Picture& m_picture;
};

} // namespace Styles::Testing
