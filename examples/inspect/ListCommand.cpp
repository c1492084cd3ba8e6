// list: the styles by category, with their parents and the number of their own values.

#include "Commands.h"
#include "Output.h"
#include "OwnValues.h"

#include <string>

namespace Inspect
{

namespace
{

/// The properties that the style has values for, and the plain values in all of it.
std::vector<std::string> CountsOf(const Style& style)
{
    std::size_t own = 0;
    std::size_t plain = 0;
    ForEachOwnValue(style, [&](const OwnValue& value) {
        own += value.style == &style ? 1 : 0;
        plain += value.value->Is<Style*>() || value.value->Is<StyleList>() ? 0 : 1;
    });
    return {std::to_string(own), std::to_string(plain)};
}

} // namespace

void RunList(Session& session)
{
    const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
    std::size_t total = 0;
    std::size_t categories = 0;
    for (const PropertyKey& category : session.schema.GetCategoryNames())
    {
        const std::vector<Style*> styles = session.sheet.GetStylesByCategory(category);
        if (styles.empty())
        {
            continue;
        }
        session.out << Shown(manager.TranslateCategory(category)) << " (" << Shown(category.GetText())
                    << "): " << Counted(styles.size(), "style") << '\n';
        Table table({"NAME", "INHERITS", "OWN VALUES", "IN SUBSTYLES TOO", "EXTERNAL ID"});
        for (const Style* style : styles)
        {
            const Style* parent = style->GetParent();
            const std::vector<std::string> counts = CountsOf(*style);
            table.AddRow({Shown(session.sheet.GetStyleName(style)),
                          parent != nullptr ? Shown(session.sheet.GetStyleName(parent)) : "-", counts[0], counts[1],
                          Shown(style->GetExternalID())});
        }
        table.Write(session.out, "  ");
        session.out << '\n';
        total += styles.size();
        ++categories;
    }
    session.out << Counted(total, "style") << " in " << std::to_string(categories)
                << (categories == 1 ? " category" : " categories") << ", version "
                << std::to_string(session.sheet.GetVersion()) << '\n';
}

} // namespace Inspect
