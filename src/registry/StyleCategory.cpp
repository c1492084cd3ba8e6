#include <styles/StyleManager.h>

#include "registry/IndexedCategory.h"
#include "registry/MissingEntry.h"

#include <VelPlatform/Module.h>
#include <VelUtils/LogMessage.h>

#include <utility>

namespace Styles
{

namespace
{

/// Whether this process runs unit tests, which ask for unknown properties on purpose.
bool IsUnitTestModuleLoaded()
{
    static const bool isLoaded = VelPlatform::IsModuleLoaded("UnitTestMarker.dll");
    return isLoaded;
}

void ReportMissingDefinition(const PropertyKey& category, const PropertyKey& name) noexcept
{
    try
    {
        if (VelUtils::IsLogging() && !IsUnitTestModuleLoaded())
        {
            VelUtils::LogMessage(VelString(L"Category \"") + category.GetText() + VelString(L"\" has no property \"") +
                                 name.GetText() + VelString(L"\""));
        }
    }
    catch (...) // no memory for the message: a look-up does not fail for want of a report
    {}
}

} // namespace

StyleCategory::StyleCategory() = default;

StyleCategory::StyleCategory(const PropertyKey& name, const VelString& uiName, bool isPublic)
    : m_categoryName(name), m_categoryUIName(uiName), m_isPublic(isPublic)
{}

// KEPT: copies share the definitions. Only the manager empties categories, and it makes no copies.
// Pinned by StyleCategory.ACopySharesTheDefinitionsOfItsSource
StyleCategory::StyleCategory(const StyleCategory& other) = default;

StyleCategory& StyleCategory::operator=(const StyleCategory& other)
{
    StyleCategory copy(other);
    auto* const indexed = dynamic_cast<Detail::IndexedCategory*>(this);
    if (indexed != nullptr)
    {
        indexed->Reserve(copy.m_properties.size());
    }
    std::swap(m_categoryName, copy.m_categoryName);
    std::swap(m_categoryUIName, copy.m_categoryUIName);
    m_propertyNames.swap(copy.m_propertyNames);
    m_properties.swap(copy.m_properties);
    m_isPublic = copy.m_isPublic;
    if (indexed != nullptr)
    {
        indexed->Clear();
        indexed->ExpectUnknownValues();
        for (const auto& [name, definition] : m_properties)
        {
            indexed->Add(name, definition);
        }
    }
    return *this;
}

StyleCategory::~StyleCategory() = default;

void StyleCategory::RegisterProperty(const PropertyKey& name, BaseStyleProperty* definition)
{
    if (m_properties.contains(name))
    {
        return;
    }
    auto* const indexed = dynamic_cast<Detail::IndexedCategory*>(this);
    if (indexed != nullptr)
    {
        indexed->Reserve(m_properties.size() + 1);
    }
    m_propertyNames.push_back(name);
    try
    {
        m_properties.emplace(name, definition);
    }
    catch (...)
    {
        m_propertyNames.pop_back();
        throw;
    }
    if (indexed != nullptr)
    {
        indexed->Add(name, definition);
    }
}

const BaseStyleProperty* StyleCategory::GetStyleProperty(const PropertyKey& name) const
{
    const BaseStyleProperty* definition = FindDefinition(name);
    if (definition == nullptr)
    {
        ReportMissingDefinition(m_categoryName, name);
    }
    return definition;
}

const Any& StyleCategory::GetDefaultValue(const PropertyKey& name) const
{
    if (const BaseStyleProperty* definition = FindDefinition(name))
    {
        return definition->GetDefaultValue();
    }
    Detail::ThrowMissingDefault(name);
}

const VelPref::Detail::IConversionPolicy* StyleCategory::GetConversionPolicy(const PropertyKey& name) const
{
    const BaseStyleProperty* definition = FindDefinition(name);
    return definition != nullptr ? definition->GetConversionPolicy() : nullptr;
}

void StyleCategory::PreDestroyProperties()
{
    if (auto* const indexed = dynamic_cast<Detail::IndexedCategory*>(this))
    {
        indexed->Clear();
    }
    for (auto& [name, definition] : m_properties)
    {
        delete std::exchange(definition, nullptr);
    }
    m_properties.clear();
    // KEPT: the names stay. Styles that still share the category list what it had, and every look-up misses.
    // Pinned by StyleCategory.AnEmptiedCategoryStillListsItsNames
}

const BaseStyleProperty* StyleCategory::FindDefinition(const PropertyKey& name) const noexcept
{
    const auto entry = m_properties.find(name);
    return entry != m_properties.end() ? entry->second : nullptr;
}

} // namespace Styles
