// show: every value that a style has, and where it comes from.

#include "Commands.h"
#include "EffectiveValues.h"
#include "Output.h"

#include <string>
#include <unordered_set>

namespace Inspect
{

namespace
{

/// Lines of ancestors do not become longer than this many names.
constexpr std::size_t MostAncestors = 16;

std::string FromOf(const EffectiveValue& value, const Origins& origins)
{
    if (value.isOwn)
    {
        return "own";
    }
    switch (value.origin.kind)
    {
    case Origin::Kind::Style: {
        const Style& style = *value.origin.style;
        const Style* top = origins.GetTop(style);
        const std::string name = top != nullptr ? origins.GetName(*top) : origins.GetName(style);
        return name + ' ' + PathTo(origins.GetPath(style), value.origin.key);
    }
    case Origin::Kind::Default:
        return value.origin.category == value.category ? "default"
                                                       : "default of " + Shown(value.origin.category.GetText());
    case Origin::Kind::Unknown:
        break;
    }
    return value.value != nullptr ? "outside of the sheet" : "-";
}

/// By what link it comes, where that is more than the parent of the style shown.
std::string ThroughOf(const EffectiveValue& value, const Origins& origins)
{
    const Style* heir = value.heir;
    if (heir == nullptr || (heir == value.asked && heir->GetOwner() == nullptr && origins.GetPath(*heir).empty()))
    {
        return {};
    }
    const std::string path = origins.GetPath(*heir);
    return (path.empty() ? "owner" : path) + "'s parent " + origins.GetName(*heir->GetParent());
}

void PrintHeading(const Style& style, Session& session)
{
    session.out << Quoted(session.sheet.GetStyleName(&style)) << ", " << Shown(style.GetCategoryUIName()) << " ("
                << Shown(style.GetCategoryName().GetText()) << ")\n";
    std::unordered_set<const Style*> met{&style};
    std::string ancestors;
    for (const Style* parent = style.GetParent(); parent != nullptr; parent = parent->GetParent())
    {
        ancestors += (ancestors.empty() ? "inherits " : " < ") + Quoted(session.sheet.GetStyleName(parent));
        if (!met.insert(parent).second)
        {
            ancestors += " (a closed chain)";
            break;
        }
        if (met.size() > MostAncestors)
        {
            ancestors += " < ...";
            break;
        }
    }
    if (!ancestors.empty())
    {
        session.out << ancestors << '\n';
    }
    if (!style.GetExternalID().empty() || !style.GetExternalName().empty())
    {
        session.out << "external identity " << Quoted(style.GetExternalID()) << ", called "
                    << Quoted(style.GetExternalName()) << '\n';
    }
    session.out << '\n';
}

} // namespace

void RunShow(Session& session)
{
    const Style& style = FindStyle(session.sheet, session.request.arguments[0]);
    const Origins origins(session.sheet);
    bool isComplete = true;
    const std::vector<EffectiveValue> values = CollectEffectiveValues(origins, style, isComplete);
    PrintHeading(style, session);
    Table table({"PROPERTY", "VALUE", "FROM", "THROUGH"});
    std::size_t defaults = 0;
    for (const EffectiveValue& value : values)
    {
        if (session.request.noDefaults && value.origin.kind == Origin::Kind::Default)
        {
            ++defaults;
            continue;
        }
        table.AddRow({value.path, value.text, FromOf(value, origins), ThroughOf(value, origins)});
    }
    table.Write(session.out);
    if (defaults > 0)
    {
        session.out << "\nand " << Counted(defaults, "default") << '\n';
    }
    if (!isComplete)
    {
        session.out << "\nand more: the style contains itself, or too much to be written\n";
    }
}

} // namespace Inspect
