// overrides: what a style says itself, and whether that is anything new.

#include "Commands.h"
#include "Output.h"
#include "ValueTexts.h"

#include <styles/StyleOverrides.h>

#include <exception>
#include <string>

namespace Inspect
{

void RunOverrides(Session& session)
{
    const Style& style = FindStyle(session.sheet, session.request.arguments[0]);
    const Origins origins(session.sheet);
    Table table({"PROPERTY", "OWN VALUE", "WITHOUT IT", "EQUAL"});
    std::size_t equal = 0;
    const std::vector<Styles::PropertyPath> paths = Styles::GetOverriddenPropertyPaths(style);
    for (const Styles::PropertyPath& path : paths)
    {
        const Style* holder = &style;
        std::string shownPath;
        for (const PropertyKey& key : path)
        {
            shownPath = PathTo(shownPath, key);
            holder = &key != &path.back() ? holder->GetSubstyle(key, false) : holder;
        }
        const PropertyKey& key = path.back();
        const Any& own = holder->GetProperty(key);
        const auto& definition = *FindProperty(*holder->GetCategory(), key).definition;
        std::vector<std::string> row{shownPath, DescribeValue(origins, definition, own)};
        try
        {
            const Any& inherited = holder->GetInheritedProperty(key);
            const bool isEqual = definition.IsEqual(own, inherited);
            equal += isEqual ? 1 : 0;
            row.insert(row.end(), {DescribeValue(origins, definition, inherited), isEqual ? "yes" : "no"});
        }
        catch (const std::exception& error) // a parent of another category, which has no such value
        {
            row.insert(row.end(), {"(none: " + Shown(VelPlatform::ToWide(error.what())) + ')', "no"});
        }
        table.AddRow(std::move(row));
    }
    table.Write(session.out);
    session.out << '\n' << Counted(paths.size(), "own value") << ", " << equal << " equal without\n";
}

} // namespace Inspect
