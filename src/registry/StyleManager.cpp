#include <styles/StyleManager.h>

#include "registry/IndexedCategory.h"
#include "registry/MissingEntry.h"

#include <algorithm>
#include <utility>

template class VelUtils::Singleton<Styles::StyleManager, 0>;

namespace Styles
{

StyleManager::StyleManager() = default;

StyleManager::~StyleManager()
{
    Reset();
}

std::shared_ptr<StyleCategory> StyleManager::RegisterCategory(const PropertyKey& name, const VelString& uiName,
                                                              bool isStyleSet, bool isPublic)
{
    if (const auto entry = m_categories.find(name); entry != m_categories.end())
    {
        return entry->second;
    }
    // Whatever may fail comes before the first change.
    m_categoryNames.reserve(m_categoryNames.size() + 1);
    if (isStyleSet)
    {
        m_styleSetCategoryNames.reserve(m_styleSetCategoryNames.size() + 1);
    }
    const auto entry =
        m_categories.emplace(name, std::make_shared<Detail::IndexedCategory>(name, uiName, isPublic)).first;
    m_categoryNames.push_back(entry->first);
    if (isStyleSet)
    {
        m_styleSetCategoryNames.push_back(entry->first);
    }
    return entry->second;
}

void StyleManager::DeregisterCategory(const PropertyKey& name)
{
    const PropertyKey category = name; // `name` may be an element of a list that changes
    const auto entry = m_categories.find(category);
    if (entry == m_categories.end())
    {
        return;
    }
    entry->second->PreDestroyProperties();
    m_categories.erase(entry);
    if (const auto listed = std::find(m_categoryNames.begin(), m_categoryNames.end(), category);
        listed != m_categoryNames.end())
    {
        m_categoryNames.erase(listed);
    }
    // KEPT: the list of style-set categories still has the name. A host that registers the category again, and then the
    // base category, finds its substyle property as before. Pinned by
    // StyleManager.ADeregisteredStyleSetCategoryStaysListed
}

void StyleManager::Reset()
{
    for (auto name = m_categoryNames.rbegin(); name != m_categoryNames.rend(); ++name)
    {
        if (const auto entry = m_categories.find(*name); entry != m_categories.end())
        {
            entry->second->PreDestroyProperties();
        }
    }
    m_categoryNames.clear();
    m_categories.clear();
    m_styleSetCategoryNames.clear();
}

void StyleManager::RegisterProperty(const PropertyKey& category, const PropertyKey& name, BaseStyleProperty* definition)
{
    const auto entry = m_categories.find(category);
    if (entry == m_categories.end())
    {
        return;
    }
    if (definition != nullptr)
    {
        definition->SetName(category, name);
    }
    entry->second->RegisterProperty(name, definition);
}

std::shared_ptr<StyleCategory> StyleManager::GetCategory(const PropertyKey& name) const
{
    if (const auto entry = m_categories.find(name); entry != m_categories.end())
    {
        return entry->second;
    }
    Detail::ThrowMissingCategory(name);
}

bool StyleManager::CategoryExists(const PropertyKey& name) const
{
    return m_categories.contains(name);
}

bool StyleManager::CategoryExists(const VelString& name) const
{
    return std::any_of(m_categories.begin(), m_categories.end(),
                       [&name](const auto& entry) { return entry.first.GetText().Compare(name) == 0; });
}

const BaseStyleProperty* StyleManager::GetStyleProperty(const PropertyKey& category, const PropertyKey& name) const
{
    const auto entry = m_categories.find(category);
    return entry != m_categories.end() ? entry->second->GetStyleProperty(name) : nullptr;
}

const Any& StyleManager::GetDefaultValue(const PropertyKey& category, const PropertyKey& name) const
{
    return GetCategory(category)->GetDefaultValue(name);
}

const VelPref::Detail::IConversionPolicy* StyleManager::GetConversionPolicy(const PropertyKey& category,
                                                                            const PropertyKey& name) const
{
    const auto entry = m_categories.find(category);
    return entry != m_categories.end() ? entry->second->GetConversionPolicy(name) : nullptr;
}

std::vector<PropertyKey> StyleManager::GetCategoryNames() const
{
    std::vector<PropertyKey> names;
    names.reserve(m_categories.size());
    for (const auto& entry : m_categories)
    {
        names.push_back(entry.first);
    }
    return names;
}

std::vector<PropertyKey> StyleManager::GetStylePropertyNames(const PropertyKey& category) const
{
    const auto entry = m_categories.find(category);
    return entry != m_categories.end() ? entry->second->GetPropertyNames() : std::vector<PropertyKey>();
}

const std::vector<PropertyKey>& StyleManager::GetStyleSetCategoryNames() const noexcept
{
    return m_styleSetCategoryNames;
}

VelString StyleManager::TranslateCategory(const PropertyKey& name) const
{
    return GetCategory(name)->GetCategoryUIName();
}

PropertyKey StyleManager::UntranslateCategory(const VelString& uiName) const
{
    const auto entry = std::find_if(m_categories.begin(), m_categories.end(), [&uiName](const auto& candidate) {
        return candidate.second->GetCategoryUIName().Compare(uiName) == 0;
    });
    return entry != m_categories.end() ? entry->first : PropertyKey::Empty;
}

void StyleManager::ClearImportStyleInfo() noexcept
{
    m_importStyleInfo.nameSet.clear();
    m_importStyleInfo.nameMap.clear();
}

} // namespace Styles
