/// \file
/// The schema: categories of properties, the process-wide manager that owns them, and their registration.
///
/// A host registers its schema once, at start-up: first its style-set categories (`StyleManager::RegisterCategory`),
/// then their properties (`RegisterProperty`), then the base category (`RegisterStyleCategory`) and further substyle
/// properties
/// (`RegisterSubstyleSet`). Last it sets the current version of its sheets.
///
/// Ownership: the manager owns the categories and shares them with the styles that have them; a category owns its
/// definitions until it is deregistered. A category that is deregistered lives on, without definitions, as long as a
/// style has it.
///
/// Exceptions: registration is all or nothing when memory runs out.
///
/// Threads: creating and releasing the manager is safe from any thread. Registration is not locked; after it, any
/// number of threads may read.
#pragma once

#include "StyleProperty.h"

#include <VelUtils/Singleton.h>

#include <map>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

/// What a host that imports styles from elsewhere tells the reader of styles about the names in "inherits".
struct WImportStyleInfo
{
    /// Names that are not to be inherited from.
    std::unordered_set<VelPlatform::VelStringT<wchar_t>> nameSet;
    /// Names that stand for others.
    std::unordered_map<VelPlatform::VelStringT<wchar_t>, VelPlatform::VelStringT<wchar_t>> nameMap;
};

namespace Styles
{

/// A category: the properties that a kind of style may have, in the order of their registration.
class STYLES_API StyleCategory
{
public:
    /// Without name, properties and publicity.
    StyleCategory();
    /// Without properties. `uiName` is shown to users, and `isPublic` says whether the category is offered to them.
    StyleCategory(const PropertyKey& name, const VelString& uiName, bool isPublic);

    /// Shares the definitions of `other`. Of a set of copies at most one may be emptied by the manager.
    StyleCategory(const StyleCategory& other);
    /// As the copy constructor; on a throw this category is as it was.
    StyleCategory& operator=(const StyleCategory& other);

    /// Deletes no definition.
    virtual ~StyleCategory();

    /// The name that it is registered under, and that stands in documents.
    [[nodiscard]] PropertyKey GetCategoryName() const { return m_categoryName; }
    /// The name shown to users.
    [[nodiscard]] VelString GetCategoryUIName() const { return m_categoryUIName; }
    /// In the order of registration.
    [[nodiscard]] const std::vector<PropertyKey>& GetPropertyNames() const noexcept { return m_propertyNames; }
    /// The definitions by name. The category owns them; one may be null.
    [[nodiscard]] const std::map<PropertyKey, BaseStyleProperty*>& GetProperties() const noexcept
    {
        return m_properties;
    }
    /// Whether the category is offered to users.
    [[nodiscard]] bool IsPublic() const noexcept { return m_isPublic; }

    /// Files `definition` (which may be null) under `name`. The first registration of a name wins: a later definition
    /// is ignored and stays the caller's. \throws std::bad_alloc; the category is as it was.
    void RegisterProperty(const PropertyKey& name, BaseStyleProperty* definition);

    /// The definition, or null. A miss is reported to the log unless the marker module of unit tests is loaded.
    [[nodiscard]] const BaseStyleProperty* GetStyleProperty(const PropertyKey& name) const;

    /// The default, as the very object that the definition holds.
    /// \throws std::logic_error "Source: StyleCategory::GetDefaultValue.\nMissing default property: " and the name.
    [[nodiscard]] const Any& GetDefaultValue(const PropertyKey& name) const;

    /// The conversion policy of the definition, or null.
    [[nodiscard]] const VelPref::Detail::IConversionPolicy* GetConversionPolicy(const PropertyKey& name) const;

private:
    friend class StyleManager;

    void PreDestroyProperties();
    [[nodiscard]] const BaseStyleProperty* FindDefinition(const PropertyKey& name) const noexcept;

    PropertyKey m_categoryName;
    VelString m_categoryUIName;
    std::vector<PropertyKey> m_propertyNames;
    std::map<PropertyKey, BaseStyleProperty*> m_properties;
    bool m_isPublic = false;
};

/// The registry of the categories of a process, reached by `VelUtils::Singleton<StyleManager, 0>::GetInstance()`.
class STYLES_API StyleManager
{
public:
    StyleManager(const StyleManager&) = delete;
    StyleManager& operator=(const StyleManager&) = delete;

    /// Registers a category. When `name` is registered already, that category is returned and nothing changes, whatever
    /// the other arguments say. A style-set category is one whose styles serve as substyles of the base category.
    std::shared_ptr<StyleCategory> RegisterCategory(const PropertyKey& name, const VelString& uiName, bool isStyleSet,
                                                    bool isPublic);

    /// Deletes the definitions of the category and forgets it. Nothing happens for an unknown name.
    void DeregisterCategory(const PropertyKey& name);

    /// Empties all categories, the last registered first, and forgets them. Version and import record stay.
    void Reset();

    /// Gives `definition` its names and files it; from then on the category owns it. For an unknown category nothing
    /// happens, and for a name that the category has only the names are given: then the definition stays the caller's.
    void RegisterProperty(const PropertyKey& category, const PropertyKey& name, BaseStyleProperty* definition);

    /// \throws std::logic_error "Source: StyleManager::GetCategory.\nMissing category: " and the name.
    [[nodiscard]] std::shared_ptr<StyleCategory> GetCategory(const PropertyKey& name) const;

    /// Whether a category is registered under this name.
    [[nodiscard]] bool CategoryExists(const PropertyKey& name) const;
    /// Whether a category has exactly this name (not: UI name).
    [[nodiscard]] bool CategoryExists(const VelString& name) const;

    /// The definition, or null when category or property is unknown.
    [[nodiscard]] const BaseStyleProperty* GetStyleProperty(const PropertyKey& category, const PropertyKey& name) const;

    /// The default. \throws std::logic_error as `GetCategory` and `StyleCategory::GetDefaultValue`.
    [[nodiscard]] const Any& GetDefaultValue(const PropertyKey& category, const PropertyKey& name) const;

    /// The conversion policy, or null when anything on the way is unknown.
    [[nodiscard]] const VelPref::Detail::IConversionPolicy* GetConversionPolicy(const PropertyKey& category,
                                                                                const PropertyKey& name) const;

    /// Every category, public or not, in key order.
    [[nodiscard]] std::vector<PropertyKey> GetCategoryNames() const;
    /// In the order of registration; empty for an unknown category.
    [[nodiscard]] std::vector<PropertyKey> GetStylePropertyNames(const PropertyKey& category) const;
    /// In the order of registration.
    [[nodiscard]] const std::vector<PropertyKey>& GetStyleSetCategoryNames() const noexcept;

    /// The UI name of a category. \throws std::logic_error as `GetCategory`.
    [[nodiscard]] VelString TranslateCategory(const PropertyKey& name) const;
    /// The first category, in key order, with exactly this UI name; `PropertyKey::Empty` when there is none.
    [[nodiscard]] PropertyKey UntranslateCategory(const VelString& uiName) const;

    /// The version that new sheets get; -1 until it is set. A sheet is written without the properties that are newer
    /// than its version, which below 0 are all of them: set the version at start-up.
    void SetCurrentVersion(int version) noexcept { m_currentVersion = version; }
    /// The version that new sheets get; -1 until it is set.
    [[nodiscard]] int GetCurrentVersion() const noexcept { return m_currentVersion; }

    /// The import record, for hosts to fill; the manager itself does not use it.
    [[nodiscard]] WImportStyleInfo& GetImportStyleInfo() noexcept { return m_importStyleInfo; }
    /// Empties the import record.
    void ClearImportStyleInfo() noexcept;

private:
    friend class VelUtils::Singleton<StyleManager, 0>;

    StyleManager();
    ~StyleManager();

    std::map<PropertyKey, std::shared_ptr<StyleCategory>> m_categories;
    std::vector<PropertyKey> m_categoryNames;
    std::vector<PropertyKey> m_styleSetCategoryNames;
    int m_currentVersion = -1;
    WImportStyleInfo m_importStyleInfo;
};

/// Registers the base category "style", public, with a substyle property for each style-set category registered so far;
/// the property is named like its category. A base category that exists already keeps its UI name and properties. When
/// memory runs out, a new base category is gone again; one that existed keeps the properties that it got so far.
STYLES_API void RegisterStyleCategory(const VelString& uiName);

/// Deregisters the base category.
STYLES_API void DeregisterStyleCategory();

/// Gives `category` a substyle property `name` whose substyles are of category `name`. Nothing happens when `category`
/// is not registered or has the property already.
STYLES_API void RegisterSubstyleSet(const PropertyKey& category, const PropertyKey& name);

/// Forgets all categories, see `StyleManager::Reset`.
STYLES_API void ResetStyleManager();

} // namespace Styles

extern template class STYLES_API VelUtils::Singleton<Styles::StyleManager, 0>;
