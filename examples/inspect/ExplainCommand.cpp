// explain: every place where a value is looked for, in order.

#include "Commands.h"
#include "Explanation.h"
#include "Output.h"
#include "ValueTexts.h"

#include <string>

namespace Inspect
{

namespace
{

void PrintSteps(const Explanation& explanation, const Origins& origins, std::ostream& out)
{
    for (const Step& step : explanation.steps)
    {
        out << step.path << " is "
            << (step.style == nullptr ? "no style; its category answers"
                                      : (step.isOwn ? "own: " : "inherited: ") + origins.GetName(*step.style))
            << '\n';
    }
}

std::string RelationOf(const Link& link, const Origins& origins)
{
    switch (link.kind)
    {
    case Link::Kind::Own:
        return "asked";
    case Link::Kind::Parent:
        return "its parent";
    case Link::Kind::OwnersParent:
    case Link::Kind::NoSubstyle:
        return "through the parent of " + origins.GetName(*link.owner);
    case Link::Kind::Closed:
        return "closed chain";
    case Link::Kind::Default:
        return "default";
    case Link::Kind::Elsewhere:
        break;
    }
    return "elsewhere";
}

std::string PlaceOf(const Link& link, const Origins& origins)
{
    switch (link.kind)
    {
    case Link::Kind::Default:
        return "category " + Shown(link.category.GetText());
    case Link::Kind::Elsewhere: {
        const Origin origin = origins.Find(*link.value);
        return origin.style != nullptr ? origins.GetName(*origin.style) : "-";
    }
    case Link::Kind::Closed:
        return origins.GetName(*link.style) + " again";
    default:
        return origins.GetName(*link.style);
    }
}

std::string HeldBy(const Link& link, const Explanation& explanation, const Origins& origins)
{
    return link.kind == Link::Kind::NoSubstyle ? "(no such substyle)"
           : link.value != nullptr             ? DescribeValue(origins, *explanation.definition, *link.value)
                                               : "-";
}

} // namespace

void RunExplain(Session& session)
{
    const Style& style = FindStyle(session.sheet, session.request.arguments[0]);
    const std::vector<PathStep> steps = ParsePath(session.request.arguments[1], style.GetCategory());
    const Explanation explanation = Explain(style, steps);
    const Origins origins(session.sheet);
    session.out << Quoted(session.sheet.GetStyleName(&style)) << ' ' << WritePath(steps) << "\n\n";
    PrintSteps(explanation, origins, session.out);
    session.out << (explanation.steps.empty() ? "" : "\n");
    Table table({"LOOKED FOR", "IN", "HOLDS", ""});
    for (const Link& link : explanation.links)
    {
        table.AddRow({RelationOf(link, origins), PlaceOf(link, origins), HeldBy(link, explanation, origins),
                      link.isWinner           ? "<- the value"
                      : link.value != nullptr ? "shadowed"
                                              : ""});
    }
    table.Write(session.out);
    if (!explanation.failure.empty())
    {
        session.out << (explanation.answer != nullptr ? "\nbehind that: " : "\nno value: ") << explanation.failure
                    << '\n';
    }
}

} // namespace Inspect
