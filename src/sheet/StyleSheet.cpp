// The named collection that owns styles.

#include <styles/StyleSheet.h>

#include "core/DependencyWalk.h"
#include "sheet/SheetNames.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <unordered_map>
#include <utility>

namespace Styles
{

using Detail::SheetNames;

namespace
{

int CurrentVersion()
{
    return VelUtils::Singleton<StyleManager, 0>::GetInstance().GetCurrentVersion();
}

} // namespace

StyleSheet::StyleSheet() : m_version(CurrentVersion())
{
    auto stylesByName = std::make_unique<SheetNames>();
    m_namesByStyle = new std::map<Style*, VelString>();
    m_stylesByName = stylesByName.release();
}

// KEPT: the copy shares the very maps of its source, so only one of the two may be destroyed. Derived sheets hand a
// sheet on in this way and let go of the source. Pinned by StyleSheet.ACopySharesTheCollectionOfItsSource
StyleSheet::StyleSheet(const StyleSheet& other) = default;

StyleSheet::~StyleSheet()
{
    StyleSheet::Clear();
    delete &SheetNames::Of(*m_stylesByName);
    delete m_namesByStyle;
}

Style* StyleSheet::AddStyle(const VelString& name, Style* style, bool replace)
{
    auto place = m_stylesByName->lower_bound(name);
    const bool isTaken = place != m_stylesByName->end() && !m_stylesByName->key_comp()(name, place->first);
    if (isTaken && !replace)
    {
        DestroyStyle(style);
        return nullptr;
    }
    // Both new entries are made before anything changes.
    NameMap newName;
    std::map<Style*, VelString> newStyle;
    try
    {
        newName.emplace(name, style);
        newStyle.emplace(style, name);
    }
    catch (...)
    {
        DestroyStyle(style);
        throw;
    }
    Style* removed = nullptr;
    if (isTaken)
    {
        removed = place->second;
        place = m_stylesByName->erase(place);
        m_namesByStyle->erase(removed);
    }
    const auto added = m_stylesByName->insert(place, newName.extract(newName.begin()));
    ++SheetNames::Of(*m_stylesByName).changes;
    // The allocator often places one style behind the other: then the end is where the new one belongs.
    const std::size_t before = m_namesByStyle->size();
    const auto listed = m_namesByStyle->insert(m_namesByStyle->end(), newStyle.extract(newStyle.begin()));
    if (m_namesByStyle->size() == before)
    {
        listed->second = added->first;
        SheetNames::Of(*m_stylesByName).mayRepeatStyles = true;
    }
    return removed;
}

Style* StyleSheet::RemoveStyle(const VelString& name)
{
    const auto entry = m_stylesByName->find(name);
    if (entry == m_stylesByName->end())
    {
        return nullptr;
    }
    Style* style = entry->second;
    SheetNames& names = SheetNames::Of(*m_stylesByName);
    names.numbers.Forget(entry->first);
    ++names.changes;
    names.erase(entry);
    m_namesByStyle->erase(style);
    return style;
}

bool StyleSheet::RemoveStyle(Style* style)
{
    const auto entry = style != nullptr ? m_namesByStyle->find(style) : m_namesByStyle->end();
    if (entry == m_namesByStyle->end())
    {
        return false;
    }
    const VelString name = entry->second;
    RemoveStyle(name);
    return true;
}

bool StyleSheet::DeleteStyles(StyleSpan styles)
{
    std::vector<Style*> sorted(styles.begin(), styles.end());
    std::sort(sorted.begin(), sorted.end(), std::less<>());
    const StyleSpan doomed(sorted, true);
    for (Style* style : ListParentsFirst(doomed))
    {
        style->RemoveDependency(doomed, true);
    }
    bool deleted = false;
    for (Style* style : styles)
    {
        if (RemoveStyle(style))
        {
            DestroyStyle(style);
            deleted = true;
        }
    }
    return deleted;
}

/// Every style in the order of the names, but the members of `doomed` among its parents before it: then what it takes
/// over is in the nearest of them, and a long way is not gone again for each style on it.
std::vector<Style*> StyleSheet::ListParentsFirst(StyleSpan doomed) const
{
    std::unordered_map<const Style*, bool> isListed; // the members in the sheet, and whether each is in the list
    isListed.reserve(doomed.size());
    for (Style* style : doomed)
    {
        if (style != nullptr && m_namesByStyle->contains(style))
        {
            isListed.emplace(style, false);
        }
    }
    std::vector<Style*> ordered;
    ordered.reserve(m_stylesByName->size());
    for (const auto& entry : *m_stylesByName)
    {
        const std::size_t first = ordered.size();
        Style* style = entry.second;
        auto member = isListed.find(style);
        while (style != nullptr && (member == isListed.end() || !std::exchange(member->second, true)))
        {
            ordered.push_back(style);
            style = style->GetParent();
            member = style != nullptr ? isListed.find(style) : isListed.end();
            if (member == isListed.end())
            {
                break;
            }
        }
        std::reverse(ordered.begin() + static_cast<std::ptrdiff_t>(first), ordered.end());
    }
    return ordered;
}

void StyleSheet::Clear()
{
    m_version = CurrentVersion();
    SheetNames& names = SheetNames::Of(*m_stylesByName);
    // A style that is listed under several names dies with the first entry that is not the one it is known by.
    for (auto entry = names.begin(); entry != names.end(); ++entry)
    {
        Style* style = entry->second;
        if (style != nullptr && names.mayRepeatStyles)
        {
            const auto known = m_namesByStyle->find(style);
            if (known == m_namesByStyle->end())
            {
                std::for_each(std::next(entry), names.end(), [style](auto& later) {
                    if (later.second == style)
                    {
                        later.second = nullptr;
                    }
                });
            }
            else if (known->second.CompareNoCase(entry->first) != 0)
            {
                continue;
            }
        }
        entry->second = nullptr;
        delete style;
    }
    names.clear();
    names.numbers.Clear();
    ++names.changes;
    m_namesByStyle->clear();
    names.mayRepeatStyles = false;
}

void StyleSheet::CopyContentsFrom(const StyleSheet& other, IStyleSheetDuplicationContext* context)
{
    if (other.m_stylesByName == m_stylesByName)
    {
        return;
    }
    VelString text;
    other.ExportToString(text, /*includeTemporaries*/ true);
    Clear();
    ImportFromString(text, /*replace*/ true);
    if (context != nullptr)
    {
        for (Style* style : GetStyles())
        {
            context->OnStyleDuplicated(style, false);
        }
    }
    m_version = other.m_version;
}

void StyleSheet::MergeIn(StyleSheet& other, bool replace)
{
    // KEPT: the styles of this sheet, not of the other, are added once more, which destroys each of them under its own
    // name (it stays listed, empty), and the styles of the other belong to nobody. Existing hosts have built on the
    // outcome. Pinned by StyleSheet.MergingInWorksOnTheOwnStylesAndEmptiesTheNamesOfTheOther
    const std::vector<std::pair<VelString, Style*>> entries(m_stylesByName->begin(), m_stylesByName->end());
    for (const auto& [name, style] : entries)
    {
        DestroyStyle(AddStyle(name, style, replace));
    }
    SheetNames& otherNames = SheetNames::Of(*other.m_stylesByName);
    otherNames.clear();
    otherNames.numbers.Clear();
    ++otherNames.changes;
    otherNames.mayRepeatStyles = true; // the styles are known by names that list them no more
}

Style* StyleSheet::GetStyle(const VelString& name) const
{
    const auto entry = m_stylesByName->find(name);
    return entry != m_stylesByName->end() ? entry->second : nullptr;
}

std::vector<Style*> StyleSheet::GetStyles() const
{
    std::vector<Style*> styles;
    styles.reserve(m_stylesByName->size());
    for (const auto& entry : *m_stylesByName)
    {
        styles.push_back(entry.second);
    }
    return styles;
}

std::vector<Style*> StyleSheet::GetStylesByName(const std::vector<VelString>& names) const
{
    std::vector<Style*> styles;
    for (const VelString& name : names)
    {
        if (Style* style = GetStyle(name))
        {
            styles.push_back(style);
        }
    }
    return styles;
}

std::vector<Style*> StyleSheet::GetStylesByCategory(const PropertyKey& category) const
{
    std::vector<Style*> styles;
    for (const auto& entry : *m_stylesByName)
    {
        if (Detail::IsOfCategory(entry.second, category))
        {
            styles.push_back(entry.second);
        }
    }
    return styles;
}

StyleSheet::NameMap StyleSheet::GetChildStyles(const Style* parent) const
{
    NameMap children;
    if (parent == nullptr)
    {
        return children;
    }
    for (const auto& [name, style] : *m_stylesByName)
    {
        if (style != nullptr && style->GetParent() == parent)
        {
            children.emplace_hint(children.end(), name, style);
        }
    }
    return children;
}

void StyleSheet::GetDependencies(StyleSpan styles, std::vector<Style*>& dependants) const
{
    const std::vector<Style*> found = Detail::FindDependants(GetStyles(), styles);
    dependants.insert(dependants.end(), found.begin(), found.end());
}

Style* StyleSheet::GetExternalStyleAlias(const VelString& externalID, const VelString& externalName) const
{
    if (externalID.empty() || externalName.empty())
    {
        return nullptr;
    }
    const auto entry = std::find_if(m_stylesByName->begin(), m_stylesByName->end(), [&](const auto& candidate) {
        return candidate.second != nullptr && candidate.second->GetExternalID().Compare(externalID) == 0 &&
               candidate.second->GetExternalName().Compare(externalName) == 0;
    });
    return entry != m_stylesByName->end() ? entry->second : nullptr;
}

VelString StyleSheet::GetExternalID()
{
    return m_externalID;
}

void StyleSheet::SetExternalID(const VelString& id)
{
    m_externalID = id;
}

/// Destroys a style that the sheet lets go; one that is still listed becomes empty in its place.
void StyleSheet::DestroyStyle(Style* style) noexcept
{
    if (style == nullptr || !IsListed(style))
    {
        delete style;
        return;
    }
    try
    {
        *style = Style();
    }
    catch (...) // a definition, after all values have been destroyed
    {}
}

bool StyleSheet::IsListed(const Style* style) const noexcept
{
    if (m_namesByStyle->contains(const_cast<Style*>(style)))
    {
        return true;
    }
    const SheetNames& names = SheetNames::Of(*m_stylesByName);
    return names.mayRepeatStyles &&
           std::any_of(names.begin(), names.end(), [style](const auto& entry) { return entry.second == style; });
}

} // namespace Styles
