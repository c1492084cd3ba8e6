// set: gives a style a value of its own, or takes it away.

#include "Commands.h"
#include "EffectiveValues.h"
#include "Failure.h"
#include "Output.h"
#include "PropertyPath.h"

#include <string>

namespace Inspect
{

namespace
{

/// The value that a text means for the property at the end of the path.
Any ConvertValue(const std::vector<PathStep>& steps, const VelString& path, const VelString& text)
{
    const Property& property = steps.back().property;
    const auto* policy = property.definition->GetConversionPolicy();
    if (policy == nullptr)
    {
        throw Failure(Shown(path) + ": is " +
                      (property.isList ? "a list; set a property of one of its elements"
                                       : "a substyle; set one of its properties"));
    }
    try
    {
        return policy->FromText(text);
    }
    catch (const VelPref::Detail::BadConversion& error)
    {
        throw Failure(Shown(path) + ": " + Quoted(text) + " is no value: " + error.what());
    }
}

/// Values that are newer than the sheet are not saved, and setting one would be in vain.
void CheckVersion(const Sheet& sheet, const std::vector<PathStep>& steps, const VelString& path)
{
    for (const PathStep& step : steps)
    {
        const int newSince = step.property.definition->GetNewSinceVersion();
        if (newSince > sheet.GetVersion())
        {
            throw Failure(Shown(path) + ": " + Quoted(step.property.key.GetText()) + " is new since version " +
                          std::to_string(newSince) + "; a sheet of version " + std::to_string(sheet.GetVersion()) +
                          " does not keep it");
        }
    }
}

/// What the style has at a path now, for people.
std::string Describe(const Sheet& sheet, const Style& style, const std::string& path)
{
    const Origins origins(sheet);
    bool isComplete = true;
    for (const EffectiveValue& value : CollectEffectiveValues(origins, style, isComplete))
    {
        if (value.path == path)
        {
            const bool isInherited = !value.isOwn && value.origin.kind == Origin::Kind::Style;
            return value.text + (value.isOwn ? "" : isInherited ? " (inherited)" : " (default)");
        }
    }
    return "(none)";
}

} // namespace

void RunSet(Session& session)
{
    const Request& request = session.request;
    Style& style = FindStyle(session.sheet, request.arguments[0]);
    const VelString& path = request.arguments[1];
    const std::vector<PathStep> steps = ParsePath(path, style.GetCategory());
    const PropertyKey& last = steps.back().property.key;
    const std::string shownPath = WritePath(steps);
    const std::string before = Describe(session.sheet, style, shownPath);
    if (request.unset)
    {
        Style* holder = FollowPath(style, steps, path, /*create*/ false);
        if (holder == nullptr || !holder->ClearProperty(last))
        {
            throw Failure(Quoted(session.sheet.GetStyleName(&style)) + " has no value of its own for " + Shown(path));
        }
    }
    else
    {
        const Any value = ConvertValue(steps, path, request.arguments[2]);
        CheckVersion(session.sheet, steps, path);
        FollowPath(style, steps, path, /*create*/ true)->SetProperty(last, value);
    }
    const std::string after = Describe(session.sheet, style, shownPath);
    SaveChanges(session,
                Quoted(session.sheet.GetStyleName(&style)) + ' ' + shownPath + ": " + before + " -> " + after + '\n');
}

} // namespace Inspect
