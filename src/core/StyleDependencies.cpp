// Which styles a style depends on, how it is made independent of them or depends on others, and visiting every value.

#include <styles/Style.h>

#include "core/DefinitionCalls.h"
#include "core/DependencyWalk.h"
#include "core/LinkWalk.h"
#include "core/StyleAccess.h"
#include "core/StylesInside.h"
#include "core/SubstyleSteps.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace Styles
{

namespace
{

using Detail::DependencyWalk;
using Detail::StyleAccess;

bool IsIn(StyleSpan styles, const Style* style)
{
    return style != nullptr && styles.contains(style);
}

void Append(std::vector<Style*>& styles, const std::vector<Style*>& more)
{
    styles.insert(styles.end(), more.begin(), more.end());
}

/// The members that `style` is, inherits from directly, or depends on through its values; what its parents depend on is
/// put aside unless `direct`.
void CollectDependencies(Style& style, StyleSpan styles, bool direct, DependencyWalk& walk, std::vector<Style*>& found)
{
    if (styles.empty() || !walk.Meet(style))
    {
        return;
    }
    if (IsIn(styles, &style))
    {
        found.push_back(&style);
    }
    if (Style* parent = style.GetParent())
    {
        if (IsIn(styles, parent))
        {
            found.push_back(parent);
        }
        if (!direct)
        {
            walk.PutAside(*parent);
        }
    }
    for (const auto& [key, value] : StyleAccess::Properties(style))
    {
        if (const BaseStyleProperty* definition = StyleAccess::FindDefinition(style, key))
        {
            Append(found, Detail::Callable(*definition).GetDependencies(value, styles, direct));
        }
    }
}

/// Calls `action` with the definition and value of each own value that has one.
template <class Action>
void ForEachDefinedValue(Style& style, const Action& action)
{
    for (auto& [key, value] : StyleAccess::Properties(style))
    {
        if (const BaseStyleProperty* definition = StyleAccess::FindDefinition(style, key))
        {
            action(*definition, value);
        }
    }
}

/// What `style` inherits from `ancestor`, its parent, becomes its own, and it inherits from the next style up from then
/// on.
void TakeOver(Style& style, Style& ancestor)
{
    style.MergeParentProperties(&ancestor);
    Style* next = ancestor.GetParent();
    style.SetParent(next != &style ? next : nullptr);
}

/// What `style` inherits from its parents becomes its own, and it has no parent from then on.
void TakeOverAll(Style& style)
{
    Detail::ParentWalk ancestors(style);
    while (ancestors.Next() != nullptr && style.GetParent() != nullptr)
    {
        TakeOver(style, *style.GetParent());
    }
    style.SetParent(nullptr); // a chain that closes on itself has been taken over all around
}

/// Whether a parent at any distance is a member; on a chain that closes on itself, `style` is one of its own parents.
bool InheritsFromAny(const Style& style, StyleSpan styles)
{
    Detail::ParentWalk ancestors(style);
    const Style* heir = &style;
    while (heir != nullptr && !IsIn(styles, heir->GetParent()))
    {
        heir = ancestors.Next();
    }
    return heir != nullptr;
}

} // namespace

bool Style::HasDependency(StyleSpan styles) const
{
    return HasDependency(styles, false);
}

bool Style::HasDirectDependency(StyleSpan styles) const
{
    return HasDependency(styles, true);
}

bool Style::HasDependency(StyleSpan styles, bool direct) const
{
    if (direct)
    {
        if (IsIn(styles, this) || IsIn(styles, m_parent))
        {
            return true;
        }
        return std::any_of(m_properties.begin(), m_properties.end(), [&](const auto& entry) {
            const BaseStyleProperty* definition = FindDefinition(entry.first);
            return definition != nullptr && definition->HasDependency(entry.second, styles, true);
        });
    }
    if (DependencyWalk* walk = DependencyWalk::FindUnderWay(DependencyWalk::Question::HasAny, styles))
    {
        return walk->Visit(*this);
    }
    return Detail::DependsOnAny(*this, styles);
}

std::vector<Style*> Style::GetDependencies(StyleSpan styles, bool direct)
{
    std::vector<Style*> storage;
    return GetDependenciesImpl(Detail::Sorted(styles, storage), direct);
}

std::vector<Style*> Style::GetDependenciesImpl(StyleSpan styles, bool direct)
{
    std::vector<Style*> found;
    const auto question = direct ? DependencyWalk::Question::WhichDirectly : DependencyWalk::Question::Which;
    if (DependencyWalk* walk = DependencyWalk::FindUnderWay(question, styles))
    {
        CollectDependencies(*this, styles, direct, *walk, found);
    }
    else
    {
        DependencyWalk newWalk(question, styles);
        CollectDependencies(*this, styles, direct, newWalk, found);
        while (Style* aside = newWalk.TakeAside())
        {
            CollectDependencies(*aside, styles, direct, newWalk, found);
        }
    }
    std::sort(found.begin(), found.end(), std::less<>());
    found.erase(std::unique(found.begin(), found.end()), found.end());
    return found;
}

bool Style::HasParentalDependency(StyleSpan styles) const
{
    // What holds for a style further up holds for the parent's dependencies, which reach all the way up.
    return m_parent != nullptr && Detail::DependsOnAny(*m_parent, styles);
}

bool Style::HasParentalDependency() const
{
    if (m_parent != nullptr || (m_owner != nullptr && m_owner->m_parent != nullptr))
    {
        return true;
    }
    return std::any_of(m_properties.begin(), m_properties.end(), [this](const auto& entry) {
        const BaseStyleProperty* definition = FindDefinition(entry.first);
        return definition != nullptr && definition->HasParentalDependency(entry.second);
    });
}

void Style::RemoveDependency(StyleSpan styles, bool direct)
{
    std::vector<Style*> storage;
    const StyleSpan members = Detail::Sorted(styles, storage);
    const Detail::WorkInProgress work(*this);

    // The last style on the parent chain that goes: of a run of members, or of all members.
    std::size_t count = 0;
    std::size_t steps = 0;
    Detail::ParentWalk ancestors(*this);
    while (const Style* ancestor = ancestors.Next())
    {
        ++steps;
        const bool isMember = IsIn(members, ancestor);
        if (isMember)
        {
            count = steps;
        }
        else if (direct)
        {
            break;
        }
    }
    for (; count != 0 && m_parent != nullptr; --count)
    {
        TakeOver(*this, *m_parent);
    }
    if (ancestors.IsClosed() && (direct ? IsIn(members, m_parent) : InheritsFromAny(*this, members)))
    {
        TakeOverAll(*this); // the chain leads back to what went
    }
    ForEachDefinedValue(*this, [&](const BaseStyleProperty& definition, Any& value) {
        definition.RemoveDependency(value, members, direct);
    });
}

void Style::RemoveAllDependencies()
{
    const Detail::WorkInProgress work(*this);
    TakeOverAll(*this);
    ForEachDefinedValue(
        *this, [](const BaseStyleProperty& definition, Any& value) { definition.RemoveAllDependencies(value); });
}

void Style::RemapDependency(const std::map<Style*, Style*>& replacements)
{
    if (const auto entry = replacements.find(m_parent);
        m_parent != nullptr && entry != replacements.end() && entry->second != nullptr)
    {
        m_parent = entry->second;
    }
    ForEachDefinedValue(*this, [&](const BaseStyleProperty& definition, Any& value) {
        definition.RemapDependency(value, replacements);
    });
}

void Style::RemapPointer(const std::vector<std::pair<Any, Any>>& replacements)
{
    ForEachDefinedValue(*this, [&](const BaseStyleProperty& definition, Any& value) {
        if (!value.IsEmpty())
        {
            definition.RemapPointer(value, replacements);
        }
    });
}

bool Style::ProcessProperties(const PropertyVisitor& visitor)
{
    std::vector<PropertyPath> paths; // the visitor may set and clear values
    paths.reserve(m_properties.size());
    for (const auto& entry : m_properties)
    {
        paths.push_back({entry.first});
    }
    return ProcessProperties(paths, visitor);
}

bool Style::ProcessProperties(const std::vector<PropertyPath>& paths, const PropertyVisitor& visitor)
{
    for (const PropertyPath& path : paths)
    {
        Style* reached = path.empty() ? nullptr : Detail::FollowPath(*this, path);
        if (reached == nullptr)
        {
            continue;
        }
        const auto entry = reached->m_properties.find(path.back());
        const BaseStyleProperty* definition = reached->FindDefinition(path.back());
        if (entry != reached->m_properties.end() && definition != nullptr &&
            !definition->ProcessProperty(entry->second, visitor, reached, path.back()))
        {
            return false;
        }
    }
    return true;
}

} // namespace Styles
