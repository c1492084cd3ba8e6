// The names of the styles of a sheet.

#include <styles/StyleSheet.h>

#include "sheet/SheetNames.h"

#include <VelUtils/StringUtils.h>

#include <utility>

namespace Styles
{

using Detail::SheetNames;

VelString StyleSheet::GetStyleName(const Style* style) const
{
    const auto entry = style != nullptr ? m_namesByStyle->find(const_cast<Style*>(style)) : m_namesByStyle->end();
    return entry != m_namesByStyle->end() ? entry->second : VelString();
}

std::vector<VelString> StyleSheet::GetStyleNames(const PropertyKey& category) const
{
    std::vector<VelString> names;
    for (const auto& [name, style] : *m_stylesByName)
    {
        if (Detail::IsOfCategory(style, category))
        {
            names.push_back(name);
        }
    }
    return names;
}

std::vector<VelString> StyleSheet::GetStyleNames() const
{
    std::vector<VelString> names;
    names.reserve(m_stylesByName->size());
    for (const auto& entry : *m_stylesByName)
    {
        names.push_back(entry.first);
    }
    return names;
}

void StyleSheet::RenameStyle(const VelString& oldName, const VelString& newName)
{
    const VelString name = newName; // both may be entries of the very map that changes
    const auto entry = m_stylesByName->find(oldName);
    if (entry == m_stylesByName->end())
    {
        return;
    }
    auto place = m_stylesByName->lower_bound(name);
    const bool isTaken = place != m_stylesByName->end() && !m_stylesByName->key_comp()(name, place->first);
    if (isTaken && place != entry)
    {
        return;
    }
    m_namesByStyle->insert_or_assign(entry->second, name);
    if (place == entry)
    {
        ++place;
    }
    SheetNames& names = SheetNames::Of(*m_stylesByName);
    names.numbers.Forget(entry->first);
    ++names.changes;
    auto node = m_stylesByName->extract(entry);
    node.key() = name;
    m_stylesByName->insert(place, std::move(node));
}

VelString StyleSheet::GetUnusedStyleName(const VelString& baseName) const
{
    const StyleManager& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
    VelString candidate = baseName;
    if (manager.CategoryExists(baseName))
    {
        candidate = manager.GetCategory(PropertyKey(baseName))->GetCategoryUIName() + VelString(L" 1");
    }
    return SheetNames::Of(*m_stylesByName).numbers.FindUnused(candidate, [this](const VelString& name) {
        return m_stylesByName->contains(name);
    });
}

VelString ConvertToValidStyleName(const VelString& name, bool strict)
{
    VelString valid =
        strict
            ? VelUtils::String::KeepCharacters(name, L" 0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
                                                     L"()[]{}'|!@#$%^&*-_.,?/+=:;`")
            : VelUtils::String::RemoveCharacters(name, L"\t\n\"~");
    valid.Trim();
    return valid;
}

} // namespace Styles
