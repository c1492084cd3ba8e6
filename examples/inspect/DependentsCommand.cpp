// dependents: the styles that depend on a style.

#include "Commands.h"
#include "Output.h"
#include "OwnValues.h"

#include <string>

namespace Inspect
{

void RunDependents(Session& session)
{
    Style* const style = &FindStyle(session.sheet, session.request.arguments[0]);
    const std::vector<Style*> span{style};
    std::vector<Style*> dependants;
    session.sheet.GetDependencies(span, dependants);
    std::erase(dependants, style);
    Table table({"NAME", "CATEGORY", "DEPENDS"});
    for (const Style* dependant : dependants)
    {
        table.AddRow({Shown(session.sheet.GetStyleName(dependant)), Shown(dependant->GetCategoryName().GetText()),
                      dependant->HasDirectDependency(span) ? "directly" : "through others"});
    }
    if (!dependants.empty())
    {
        table.Write(session.out);
        session.out << '\n';
    }
    session.out << Counted(dependants.size(), "style") << (dependants.size() == 1 ? " depends" : " depend") << " on "
                << Quoted(session.sheet.GetStyleName(style)) << '\n';
}

} // namespace Inspect
