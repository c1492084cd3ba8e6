#include "SheetDocument.h"

#include <styles/Styles.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace SheetDocument
{

namespace
{

constexpr std::string_view kStyleProperties[] = {
    "alignment",     "backgroundFill", "borderStyle",     "fontFamilyName", "keepWithNext",   "language",
    "letterSpacing", "lineSpacing",    "paragraphIndent", "spaceBefore",    "tabulatorStops", "textDirection"};

struct Substyle
{
    std::string_view name;
    std::string_view properties[4];
};

constexpr Substyle kSubstyles[] = {
    {"characterStyle", {"fontVariation", "highlightColour", "strikethrough", "underlineStyle"}},
    {"numberingStyle", {"leadingText", "levelSeparator", "numberFormat", "trailingText"}},
};

constexpr std::string_view kNames[] = {"Heading", "Body text", "Caption",  "Footnote", "List item",
                                       "Margin",  "Quotation", "Headline", "Table",    "Listing"};

constexpr std::string_view kTexts[] = {"left",         "justified",     "#ffe08a",    "Source Serif", "12 pt, fixed",
                                       "next page",    "double solid",  "en-GB",      "hanging",      "0.5 cm",
                                       "small caps",   "continued",     "dark green", "automatic",    "wide, 3 columns",
                                       "page margins", "Hauptschrift",  "dotted",     "none",         "bold condensed",
                                       "arabic",       "bottom inside", "#20242c"};

constexpr std::string_view kEscapedTexts[] = {R"(\"quoted\")", R"(first\nsecond)", R"(C:\\fonts)", R"(gr\u00fcn)"};

/// A small generator of numbers (xorshift), the same on every system.
class Numbers
{
public:
    /// Below `end`.
    std::size_t Below(std::size_t end)
    {
        m_state ^= m_state << 13U;
        m_state ^= m_state >> 7U;
        m_state ^= m_state << 17U;
        return static_cast<std::size_t>((m_state >> 11U) % end);
    }

private:
    std::uint64_t m_state = 0x9E3779B97F4A7C15U;
};

std::string NameOf(std::size_t style)
{
    std::string name(kNames[style % std::size(kNames)]);
    return name.append(" ").append(std::to_string(style / std::size(kNames) + 1));
}

class Writer
{
public:
    explicit Writer(std::string& out) : m_out(out) {}

    void Style(std::size_t index)
    {
        Member(NameOf(index)) += '{';
        if (index > 0)
        {
            Member("inherits").append("\"").append(NameOf(m_numbers.Below(index))).append("\"");
        }
        Texts(kStyleProperties);
        for (const Substyle& substyle : kSubstyles)
        {
            Member(substyle.name) += '{';
            Texts(substyle.properties);
            m_out += '}';
        }
        m_out += '}';
    }

private:
    std::string& Member(std::string_view name)
    {
        if (m_out.back() != '{')
        {
            m_out += ',';
        }
        return m_out.append("\"").append(name).append("\":");
    }

    template <std::size_t Count>
    void Texts(const std::string_view (&names)[Count])
    {
        for (const std::string_view name : names)
        {
            Member(name) += '"';
            if (m_numbers.Below(32) == 0)
            {
                m_out += kEscapedTexts[m_numbers.Below(std::size(kEscapedTexts))];
            }
            else
            {
                m_out += kTexts[m_numbers.Below(std::size(kTexts))];
            }
            if (m_numbers.Below(2) == 0) // so that not all values are the same few
            {
                m_out.append(" ").append(std::to_string(m_numbers.Below(1000)));
            }
            m_out += '"';
        }
    }

    std::string& m_out;
    Numbers m_numbers;
};

void RegisterTexts(const Styles::PropertyKey& category, std::string_view name)
{
    using namespace Styles;
    VelUtils::Singleton<StyleManager, 0>::GetInstance().RegisterProperty(
        category, PropertyKey(VelPlatform::ToWide(name)),
        new StyleProperty(nullptr, VelString(), new TextPolicy<VelString>, 1));
}

bool RegisterEverything()
{
    using namespace Styles;
    auto& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
    manager.SetCurrentVersion(1);
    for (const Substyle& substyle : kSubstyles)
    {
        const PropertyKey category(VelPlatform::ToWide(substyle.name));
        manager.RegisterCategory(category, category.GetText(), /*isStyleSet*/ true, /*isPublic*/ true);
        std::ranges::for_each(substyle.properties, [&](std::string_view name) { RegisterTexts(category, name); });
    }
    RegisterStyleCategory(L"Style");
    std::ranges::for_each(kStyleProperties, [](std::string_view name) { RegisterTexts(StyleCategoryName, name); });
    return true;
}

} // namespace

std::string Make(std::size_t styles)
{
    std::string text;
    text.reserve(styles * 700 + 100);
    text += R"({"version":1.0,"style":{)";
    Writer writer(text);
    for (std::size_t index = 0; index < styles; ++index)
    {
        writer.Style(index);
    }
    return text += "}}";
}

void RegisterSchema()
{
    [[maybe_unused]] static const bool registered = RegisterEverything();
}

} // namespace SheetDocument
