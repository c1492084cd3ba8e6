#include "Takeover.h"

#include "Failure.h"
#include "Output.h"
#include "PropertyPath.h"
#include "ValueTexts.h"

#include <algorithm>

namespace Inspect
{

namespace
{

constexpr const char* NoStyle = "(none)";
constexpr const char* SomeStyle = "(a style)";

std::string NameOf(const Origins& origins, const Style* style)
{
    return style != nullptr ? origins.GetName(*style) : NoStyle;
}

/// The name of the parent of the style at a path from `top`.
std::string ParentOf(const Origins& origins, const Style& top, const std::string& path)
{
    const Style* found = &top;
    ForEachOwnValue(
        top, [](const OwnValue&) {},
        [&](const InnerStyle& inner) { found = origins.GetPath(*inner.style) == path ? inner.style : found; });
    return NameOf(origins, found->GetParent());
}

/// What must not change: of a plain value its text, of a list its length, of a substyle whether it is there.
std::string KindOf(const EffectiveValue& row)
{
    Style* const* substyle = row.value != nullptr ? row.value->GetIf<Style*>() : nullptr;
    return substyle == nullptr    ? row.text
           : *substyle == nullptr ? NoStyle
           : row.isClosed         ? "(which this is inside of)"
                                  : SomeStyle;
}

/// The value where any style may have it as it is: a plain one, or a list without elements. Otherwise empty.
Any Givable(const PropertyKey& category, const PropertyKey& key, const Any& value)
{
    const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
    const StyleList* list = value.GetIf<StyleList>();
    const bool isGivable = list != nullptr ? list->empty() : manager.GetConversionPolicy(category, key) != nullptr;
    return isGivable ? Any(value) : Any();
}

/// Gives the value to the style at the path. A path that cannot be written as people write it is left as it is.
void GiveBack(Style& top, const std::string& path, const Any& value)
{
    try
    {
        const VelString text = VelPlatform::ToWide(path);
        const std::vector<PathStep> steps = ParsePath(text, top.GetCategory());
        if (Style* holder = FollowPath(top, steps, text, /*create*/ true))
        {
            holder->SetProperty(steps.back().property.key, value);
        }
    }
    catch (const Failure&) // then the change remains, and is told
    {}
}

/// Whether a style of the sheet, or one inside, has a parent of another category. Such a parent may pass on values that
/// the heir cannot keep, although those who inherit from the heir can see them.
bool HasMixedChains(const Sheet& sheet)
{
    bool isMixed = false;
    const auto look = [&](const Style& style) {
        const Style* parent = style.GetParent();
        isMixed = isMixed || (parent != nullptr && parent->GetCategoryName() != style.GetCategoryName());
    };
    for (const Style* style : sheet.GetStyles())
    {
        look(*style);
        ForEachOwnValue(
            *style, [](const OwnValue&) {}, [&](const InnerStyle& inner) { look(*inner.style); });
    }
    return isMixed;
}

bool IsBelow(const std::string& path, const std::string& outer)
{
    return outer.empty() || (path.starts_with(outer) && path[outer.size()] == '.');
}

} // namespace

Takeover::Takeover(const Sheet& sheet, const std::vector<Style*>& affected, const Condition& losesParent)
    : m_sheet(sheet)
{
    const Origins origins(sheet);
    const bool isMixed = HasMixedChains(sheet);
    for (Style* top : affected)
    {
        const std::size_t heirsBefore = m_heirs.size();
        const auto add = [&](const Style& style) {
            if (losesParent(style, *top))
            {
                m_heirs.push_back(
                    {top, origins.GetName(style), origins.GetPath(style), NameOf(origins, style.GetParent())});
            }
        };
        add(*top);
        ForEachOwnValue(
            *top, [](const OwnValue&) {}, [&](const InnerStyle& inner) { add(*inner.style); });
        if (!isMixed && m_heirs.size() == heirsBefore)
        {
            continue; // it inherits from heirs, which go on looking as they did
        }
        m_watched.push_back(top);
        Values& values = m_before[top];
        for (const EffectiveValue& row : CollectAllValues(origins, *top))
        {
            values[row.path] = Note(row);
        }
    }
}

Takeover::Before Takeover::Note(const EffectiveValue& row)
{
    return {row.text, KindOf(row), row.value != nullptr ? Givable(row.category, row.key, *row.value) : Any(),
            row.isOwn};
}

const Takeover::Heir* Takeover::FindHeir(const Style& top, const std::string& path) const
{
    const auto found = std::find_if(m_heirs.rbegin(), m_heirs.rend(),
                                    [&](const Heir& heir) { return heir.top == &top && IsBelow(path, heir.path); });
    return found != m_heirs.rend() ? &*found : nullptr;
}

std::vector<Takeover::Change> Takeover::FindChanges() const
{
    const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
    const Origins origins(m_sheet);
    std::vector<Change> changes;
    for (Style* top : m_watched)
    {
        for (const EffectiveValue& row : CollectAllValues(origins, *top))
        {
            const std::string kind = KindOf(row);
            const auto known = m_before.at(top).find(row.path);
            Before before;
            if (known != m_before.at(top).end())
            {
                before = known->second;
            }
            else // inside a substyle that was not there
            {
                const Any& value = manager.GetDefaultValue(row.category, row.key);
                const auto& category = *manager.GetCategory(row.category);
                const auto& definition = *FindProperty(category, row.key).definition;
                before.kind = before.text = DescribeValue(origins, definition, value);
                before.value = Givable(row.category, row.key, value);
            }
            // The values of a substyle that was not there are looked at by themselves.
            if (kind != before.kind && !(before.kind == NoStyle && kind == SomeStyle))
            {
                changes.push_back({top, row.path, before.value,
                                   origins.GetName(*top) + ' ' + row.path + ": " + before.text + " -> " + row.text});
            }
        }
    }
    return changes;
}

Takeover::Outcome Takeover::Settle() const
{
    for (const Change& change : FindChanges())
    {
        if (!change.before.IsEmpty())
        {
            GiveBack(*change.top, change.path, change.before);
        }
    }
    Outcome outcome{{}, Report()};
    for (const Change& change : FindChanges())
    {
        outcome.changes.push_back(change.message);
    }
    return outcome;
}

std::string Takeover::Report() const
{
    const Origins origins(m_sheet);
    std::unordered_map<const Heir*, std::string> takenOver;
    std::string others; // of styles that inherit from heirs
    for (const Style* top : m_watched)
    {
        const Values& values = m_before.at(top);
        for (const EffectiveValue& row : CollectAllValues(origins, *top))
        {
            const auto before = values.find(row.path);
            if (row.isOwn && (before == values.end() || !before->second.isOwn))
            {
                const Heir* heir = FindHeir(*top, row.path);
                const std::string value = row.path + ": " + row.text + '\n';
                (heir != nullptr ? takenOver[heir] : others) +=
                    heir != nullptr ? "  " + value : origins.GetName(*top) + " takes over " + value;
            }
        }
    }
    std::string report;
    for (const Heir& heir : m_heirs)
    {
        const std::string& values = takenOver[&heir];
        report += heir.name + ": parent " + heir.parent + " -> " + ParentOf(origins, *heir.top, heir.path) +
                  (values.empty() ? ", takes over nothing\n" : ", takes over\n" + values);
    }
    return report + others;
}

std::vector<EffectiveValue> CollectAllValues(const Origins& origins, const Style& style)
{
    bool isComplete = false;
    std::vector<EffectiveValue> rows = CollectEffectiveValues(origins, style, isComplete);
    if (!isComplete)
    {
        throw Failure(origins.GetName(style) + " contains itself, or too much to be looked through");
    }
    return rows;
}

void AcceptChanges(Session& session, const std::vector<std::string>& changes)
{
    if (!changes.empty() && !session.request.lossy)
    {
        std::string message;
        for (const std::string& change : changes)
        {
            message += change + '\n';
        }
        throw Failure(message + "nothing was done, since these values cannot be kept; --lossy gives them up");
    }
    for (const std::string& change : changes)
    {
        session.err << "styles-inspect: warning: " << change << '\n';
    }
}

} // namespace Inspect
