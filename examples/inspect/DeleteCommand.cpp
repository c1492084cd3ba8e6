// delete: takes styles out of the sheet; those that inherit from them take over what they inherited.

#include "Commands.h"
#include "Output.h"
#include "Takeover.h"

#include <algorithm>
#include <string>

namespace Inspect
{

namespace
{

/// The styles of these names, each once.
std::vector<Style*> FindStyles(const Sheet& sheet, const std::vector<VelString>& names)
{
    std::vector<Style*> styles;
    for (const VelString& name : names)
    {
        Style* style = &FindStyle(sheet, name);
        if (std::find(styles.begin(), styles.end(), style) == styles.end())
        {
            styles.push_back(style);
        }
    }
    return styles;
}

} // namespace

void RunDelete(Session& session)
{
    Sheet& sheet = session.sheet;
    const std::vector<Style*> doomed = FindStyles(sheet, session.request.arguments);
    const auto isDoomed = [&](const Style* style) {
        return std::find(doomed.begin(), doomed.end(), style) != doomed.end();
    };
    std::string report;
    {
        const Origins origins(sheet);
        for (const Style* style : doomed)
        {
            (void)CollectAllValues(origins, *style); // they take over from one another before they go
            report += "deleted " + origins.GetName(*style) + '\n';
        }
    }
    std::vector<Style*> dependants;
    sheet.GetDependencies(doomed, dependants);
    std::erase_if(dependants, isDoomed);
    const Takeover takeover(sheet, dependants,
                            [&](const Style& style, const Style&) { return isDoomed(style.GetParent()); });
    sheet.DeleteStyles(doomed);
    const Takeover::Outcome outcome = takeover.Settle();
    AcceptChanges(session, outcome.changes);
    SaveChanges(session, outcome.report + report);
}

} // namespace Inspect
