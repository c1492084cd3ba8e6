// diff: what is different between two sheets.

#include "Commands.h"
#include "Output.h"
#include "SheetDifference.h"

#include <algorithm>

namespace Inspect
{

namespace
{

using Kind = Difference::Kind;

std::string Told(const std::string& text)
{
    return text.empty() ? "(nothing)" : text;
}

/// One line about a value or the like.
std::string LineOf(const Difference& difference)
{
    const std::string place = difference.path.empty() ? "" : difference.path + ": ";
    const std::string change = Told(difference.before) + " -> " + Told(difference.after);
    switch (difference.kind)
    {
    case Kind::Renamed:
        return "name: " + change;
    case Kind::Category:
        return "category: " + change;
    case Kind::Reparented:
        return place + "parent: " + change;
    case Kind::Set:
        return "set " + place + change;
    case Kind::Cleared:
        return "cleared " + place + change;
    case Kind::NowOwn:
        return "now own " + place + difference.after + ", as inherited before";
    case Kind::NowInherited:
        return "now inherited " + place + difference.after + ", as before";
    default:
        return "changed " + place + change;
    }
}

bool IsWhole(const Difference& difference)
{
    return difference.kind == Kind::Added || difference.kind == Kind::Removed;
}

void WriteText(std::ostream& out, const std::vector<Difference>& differences)
{
    std::size_t added = 0;
    std::size_t removed = 0;
    std::size_t changed = 0;
    const Difference* before = nullptr;
    for (const Difference& difference : differences)
    {
        if (difference.kind == Kind::Heading)
        {
            out << difference.path << ": " << Told(difference.before) << " -> " << Told(difference.after) << '\n';
            continue;
        }
        if (IsWhole(difference))
        {
            const bool isAdded = difference.kind == Kind::Added;
            (isAdded ? added : removed) += 1;
            out << NameOf(difference.kind) << ' ' << Quoted(difference.style) << ' '
                << (isAdded ? difference.after : difference.before) << '\n';
        }
        else
        {
            // No two styles of a sheet have one name.
            if (before == nullptr || IsWhole(*before) || before->style != difference.style)
            {
                ++changed;
                out << "changed " << Quoted(difference.style) << " (" << Shown(difference.category.GetText()) << ")\n";
            }
            out << "  " << LineOf(difference) << '\n';
        }
        before = &difference;
    }
    out << added << " added, " << removed << " removed, " << changed << " changed\n";
}

void WriteJson(std::ostream& out, const Request& request, const std::vector<Difference>& differences)
{
    const auto text = [](const std::string& utf8) {
        return utf8.empty() ? Json::Variant(Json::NullType::Null) : Json::Variant(VelPlatform::ToWide(utf8));
    };
    Json::Array list;
    for (const Difference& difference : differences)
    {
        const bool isStyle = difference.kind != Kind::Heading;
        Json::Object entry;
        entry.AddValue(VelString(L"kind"), text(NameOf(difference.kind)));
        entry.AddValue(VelString(L"style"), isStyle ? Json::Variant(difference.style) : text(""));
        entry.AddValue(VelString(L"category"), isStyle ? Json::Variant(difference.category.GetText()) : text(""));
        entry.AddValue(VelString(L"path"), text(difference.path));
        entry.AddValue(VelString(L"before"), text(difference.before));
        entry.AddValue(VelString(L"after"), text(difference.after));
        list.AddValue(std::move(entry));
    }
    Json::Object answer;
    answer.AddValue(VelString(L"before"), request.arguments[0]);
    answer.AddValue(VelString(L"after"), request.arguments[1]);
    answer.AddValue(VelString(L"differences"), std::move(list));
    out << std::string_view(VelPlatform::ToNarrow(Json::ValueToString(std::move(answer), /*compact*/ false))) << '\n';
}

} // namespace

int RunDiff(Task& task)
{
    Sheet first(task.schema, task.request.arguments[0], &task.progress);
    Sheet second(task.schema, task.request.arguments[1], &task.progress);
    WarnOfLosses(first, task.err);
    WarnOfLosses(second, task.err);
    const std::vector<Difference> differences = CompareSheets(first, second, &task.progress);
    if (task.request.json)
    {
        WriteJson(task.out, task.request, differences);
    }
    else if (!differences.empty())
    {
        WriteText(task.out, differences);
    }
    return differences.empty() ? 0 : 1;
}

} // namespace Inspect
