// check: everything about a sheet's file that reading it passes over in silence.

#include "Commands.h"
#include "Output.h"
#include "Progress.h"
#include "SheetHints.h"

#include <algorithm>
#include <iterator>
#include <tuple>

namespace Inspect
{

namespace
{

void Append(std::vector<Finding>& findings, std::vector<Finding> more)
{
    std::move(more.begin(), more.end(), std::back_inserter(findings));
}

bool Has(const std::vector<Finding>& findings, const Rule& rule)
{
    return std::any_of(findings.begin(), findings.end(), [&rule](const Finding& found) { return found.rule == &rule; });
}

std::vector<Finding> FindAll(const Schema& schema, const Document& document, Progress& progress)
{
    DocumentPositions positions;
    {
        const ProgressPhase phase(&progress, "locating", document.bytes.size());
        positions = DocumentPositions(document.bytes);
    }
    const CheckedDocument checked{document, &positions.GetRoot(), &progress};
    std::vector<Finding> findings = CheckSheet(checked, Styles::StyleSheet());
    const bool isReadable = std::none_of(findings.begin(), findings.end(),
                                         [](const Finding& found) { return found.rule->effect == Effect::Refused; });
    std::vector<Finding> chains = FindStrangeChains(checked);
    if (isReadable && !Has(chains, Rules::LongChain))
    {
        const Sheet sheet(schema, document, findings, &progress);
        Append(findings, FindSameAsInherited(checked, sheet));
    }
    Append(findings, std::move(chains));
    Append(findings, FindRepeatedMembers(positions));
    std::stable_sort(findings.begin(), findings.end(), [](const Finding& one, const Finding& other) {
        return std::tie(one.at.line, one.at.column) < std::tie(other.at.line, other.at.column);
    });
    return findings;
}

std::vector<Finding> FindAll(Task& task, const VelString& path)
{
    try
    {
        return FindAll(task.schema, ReadDocument(path), task.progress);
    }
    catch (const MalformedDocument& malformed)
    {
        const bool isText = malformed.GetKind() == MalformedDocument::Kind::Text;
        return {{isText ? &Rules::MalformedText : &Rules::MalformedJson,
                 {},
                 malformed.GetPosition(),
                 malformed.GetReason()}};
    }
}

std::size_t Count(const std::vector<Finding>& findings, Severity severity)
{
    return static_cast<std::size_t>(std::count_if(findings.begin(), findings.end(), [severity](const Finding& found) {
        return found.rule->severity == severity;
    }));
}

void WriteText(std::ostream& out, const VelString& path, const std::vector<Finding>& findings)
{
    for (const Finding& found : findings)
    {
        const std::string& place = found.place.GetText();
        out << Shown(path) << ':' << found.at.line << ':' << found.at.column << ": " << NameOf(found.rule->severity)
            << ": " << place << (place.empty() ? "" : ": ") << found.message << " [" << found.rule->id << "]\n";
    }
    out << Counted(Count(findings, Severity::Error), "error") << ", "
        << Counted(Count(findings, Severity::Warning), "warning") << ", "
        << Counted(Count(findings, Severity::Hint), "hint") << '\n';
}

void WriteJson(std::ostream& out, const VelString& path, const std::vector<Finding>& findings)
{
    const auto text = [](const std::string& utf8) { return Json::Variant(VelPlatform::ToWide(utf8)); };
    const auto number = [](std::size_t value) { return Json::Variant(static_cast<std::uint64_t>(value)); };
    const auto add = [](Json::Object& object, const wchar_t* name, Json::Variant value) {
        object.AddValue(VelString(name), std::move(value));
    };
    Json::Array list;
    for (const Finding& found : findings)
    {
        Json::Object entry;
        add(entry, L"severity", text(NameOf(found.rule->severity)));
        add(entry, L"id", text(found.rule->id));
        add(entry, L"line", number(found.at.line));
        add(entry, L"column", number(found.at.column));
        add(entry, L"path", text(found.place.GetText()));
        add(entry, L"message", text(found.message));
        list.AddValue(std::move(entry));
    }
    Json::Object answer;
    add(answer, L"file", Json::Variant(path));
    add(answer, L"errors", number(Count(findings, Severity::Error)));
    add(answer, L"warnings", number(Count(findings, Severity::Warning)));
    add(answer, L"hints", number(Count(findings, Severity::Hint)));
    add(answer, L"findings", std::move(list));
    out << std::string_view(VelPlatform::ToNarrow(Json::ValueToString(std::move(answer), /*compact*/ false))) << '\n';
}

} // namespace

int RunCheck(Task& task)
{
    const VelString& path = task.request.arguments[0];
    const std::vector<Finding> findings = FindAll(task, path);
    (task.request.json ? WriteJson : WriteText)(task.out, path, findings);
    return Count(findings, Severity::Error) + Count(findings, Severity::Warning) > 0 ? 1 : 0;
}

} // namespace Inspect
