/// \file
/// `Style`: a set of typed property values that inherits.
///
/// A style belongs to a category, which says what properties it may have. It holds values of its own, may inherit from
/// a parent, and through some of its properties owns nested styles (substyles) and lists of styles. A value is looked
/// up in the style itself, then along its parents; a substyle without a parent inherits from the substyle at the same
/// place of what its owner inherits from; the last resort is the default of the category.
///
/// Ownership: a style owns its values, and through them its substyles and the elements of its lists. Parent and owner
/// are plain links: a style that dies tells nobody, so remove the references to it first (`StyleSheet::DeleteStyles`
/// does). A function that returns a new style hands it to the caller.
///
/// Values: every value enters through `BaseStyleProperty::MovePropertyData` of its definition and leaves through
/// `DestroyPropertyData`. A key that the category does not know is never added. A reference to a value is valid until
/// the style that holds it changes the property or dies. Arguments may be references into the very style that is
/// changed.
///
/// Links may close on themselves (a document can say so): they are kept as they are, every walk along them ends, and a
/// look-up on them ends in the default.
///
/// Without a category a style answers as for properties without definition: copies drop all values, the `bool` forms of
/// look-ups are false, and those that return a reference throw as `StyleCategory::GetDefaultValue` does.
///
/// Exceptions: definitions and the allocator may throw in the middle of anything. Unless a function says otherwise, it
/// then leaves the style as it was, and nothing leaks. Where several values are handled one after the other (merging,
/// flattening, removing dependencies, clearing), each is either done or as it was.
///
/// Threads: a style and everything it is linked to is used by one thread at a time. Any number of threads may read.
#pragma once

#include "StyleManager.h"

#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace Styles
{

namespace Detail
{
struct StyleAccess;
}

/// Own values by key, and the links through which a style inherits what it has no own value for.
class STYLES_API Style
{
public:
    /// \name Making, copying, moving
    /// @{

    /// Empty: no values, parent, owner, category or external identity.
    Style();

    /// Inherits from `parent` (may be null) and has the category of that name, or none when it is unknown.
    Style(Style* parent, const PropertyKey& categoryName);

    /// Parent, category and external identity of `other`, and copies of its values. The copy has no owner. A value
    /// whose key the category does not know is left out.
    Style(const Style& other);

    /// As move assignment to an empty style, but when a definition throws, `other` keeps its values.
    Style(Style&& other);

    /// As the copy constructor; the owner of this style stays. `other` may be a substyle of this style.
    Style& operator=(const Style& other);

    /// Takes the values of `other`, and copies its parent, category and external identity, which `other` keeps. The
    /// owner of this style stays. `other` may be a substyle of this style; a style that is moved into its own substyle
    /// is copied. When a definition throws while it is told the new owner, all values have been taken; then the first
    /// exception goes on.
    Style& operator=(Style&& other);

    /// Destroys every value. Never throws.
    ~Style();

    /// Exchanges values, parent, category and external identity; the owners stay. Nothing happens when one of the two
    /// holds the other.
    void SwapData(Style& other);

    /// Removes all values and the parent; category, owner and external identity stay.
    void Clear();
    /// @}

    /// \name Links and identity
    /// @{

    /// Sets the parent, unchecked. The values stay.
    void SetParent(Style* style) noexcept { m_parent = style; }
    /// What the style inherits from; null for none. Not owned.
    [[nodiscard]] Style* GetParent() const noexcept { return m_parent; }

    /// Says which style holds this one, and under which key. Called by definitions.
    void SetOwner(Style* style, const PropertyKey& ownersKey) noexcept;
    /// The style that holds this one as a substyle; null for none. Not owned.
    [[nodiscard]] Style* GetOwner() const noexcept { return m_owner; }
    /// The key under which the owner holds this style, `PropertyKey::Empty` without owner.
    [[nodiscard]] PropertyKey GetOwnersSubstylePropertyName() const noexcept { return m_ownersSubstylePropertyName; }

    /// Sets the category. An unknown name leaves the one that the style had. The values stay, also those that the new
    /// category does not know.
    void SetCategory(const PropertyKey& categoryName);
    /// Null for none.
    [[nodiscard]] std::shared_ptr<const StyleCategory> GetCategory() const noexcept { return m_category; }
    /// `PropertyKey::Empty` without category.
    [[nodiscard]] PropertyKey GetCategoryName() const;
    /// Empty without category.
    [[nodiscard]] VelString GetCategoryUIName() const;

    /// Sets the identity in an outside system; a style of the base category also passes it on to its direct substyles.
    void SetExternalID(const VelString& id);
    /// Sets the display name of the external identity; passed on like the identity.
    void SetExternalName(const VelString& name);
    /// Empty for none.
    [[nodiscard]] VelString GetExternalID() const { return m_externalID; }
    /// Empty for none.
    [[nodiscard]] VelString GetExternalName() const { return m_externalName; }
    /// Whether there is an external identity (not: name).
    [[nodiscard]] bool IsExternal() const noexcept { return !m_externalID.empty(); }
    /// @}

    /// \name What is in it
    /// @{

    /// Whether the style has no value of its own.
    [[nodiscard]] bool IsEmpty() const noexcept { return m_properties.empty(); }
    /// Whether the style holds nothing but substyles of which the same is true.
    [[nodiscard]] bool IsEmptyWithEmptySubstyles() const;
    /// The number of own values of substyle properties.
    [[nodiscard]] int GetNumSubstyles() const;
    /// The own substyle that is named like the element category of the last substyle property, in key order; null
    /// without.
    [[nodiscard]] Style* GetLastSubstyle() const;
    /// Whether a style inside the own values, at any depth, has a parent.
    [[nodiscard]] bool SubstylesHaveAnyParentalRelationships() const;
    /// @}

    /// \name Comparing
    /// Owners take no part. A value without definition makes two styles unequal, but orders neither before the other.
    /// @{

    /// Same parent, category, external identity and own values, these as their definitions compare.
    [[nodiscard]] bool operator==(const Style& other) const;
    /// The opposite of `==`.
    [[nodiscard]] bool operator!=(const Style& other) const { return !(*this == other); }
    /// A strict weak order without meaning, for sorted containers.
    [[nodiscard]] bool operator<(const Style& other) const;
    /// As `<`, and tells apart equal substyles that inherit from different places through their owners.
    [[nodiscard]] bool substyle_less_including_owner_based_inheritance(const Style& other) const;
    /// @}

    /// \name Looking values up
    /// References are valid until the style that holds the value changes it. They never fail for a registered key.
    /// @{

    /// The effective value: own, inherited or default.
    /// \throws std::bad_cast when a value on the way to an inherited substyle is no substyle.
    /// \throws std::logic_error when the look-up ends in a category that does not know the key.
    [[nodiscard]] const Any& GetProperty(const PropertyKey& key) const;

    /// The value that the style would have without its own. Throws as `GetProperty`.
    [[nodiscard]] const Any& GetInheritedProperty(const PropertyKey& key) const;

    /// Copies the effective value into `out`. False, `out` untouched, when the category does not know the key or the
    /// value is its very default object.
    bool GetProperty(const PropertyKey& key, Any& out) const;

    /// Copies the inherited value into `out`. False, `out` untouched, when it is the very default object of the
    /// category. \throws std::logic_error when the look-up ends in a category that does not know the key.
    bool GetInheritedProperty(const PropertyKey& key, Any& out) const;

    /// Copies the own value into `out`; false, `out` untouched, without one.
    bool GetOverrideProperty(const PropertyKey& key, Any& out) const;

    /// Whether the style has an own value.
    [[nodiscard]] bool DoesOverrideProperty(const PropertyKey& key) const;

    /// The substyle under `key`, or null. `inherited` false: the own one, null also for a value that is no substyle.
    /// `inherited` true: the effective one. \throws std::bad_cast when the effective value is no substyle.
    [[nodiscard]] Style* GetSubstyle(const PropertyKey& key, bool inherited) const;

    /// The own substyle, made first with that category when there is none. Null, and no change, for a key that is no
    /// substyle property.
    Style* GetSubstyleAndCreateIfMissing(const PropertyKey& key, const PropertyKey& categoryName);

    /// The effective value at the end of a path through own substyles. Where a substyle is missing, the default of the
    /// last key in the category that the substyle would have. \throws std::exception for an empty path or a missing
    /// category.
    [[nodiscard]] const Any& GetPathProperty(const PropertyPath& path) const;

    /// Whether there is an own value at the end of a path through own substyles; for a last key "*", whether the
    /// substyle has a parent or anything in it.
    [[nodiscard]] bool DoesOverridePathProperty(const PropertyPath& path) const;
    /// @}

    /// \name Changing values
    /// @{

    /// Sets the own value. First the old value is destroyed, then the definition makes the new one: when it throws, or
    /// gives an empty value, or when the category does not know the key, the property is cleared.
    void SetProperty(const PropertyKey& key, const Any& value);

    /// Sets the own value. First the definition makes the new value, then the old one is destroyed: when making it
    /// throws, or when the category does not know the key, the property stays. An empty new value removes the old one
    /// without destroying it.
    void SetProperty(const PropertyKey& key, Any&& value);

    /// Stores a copy of `substyle` (may be null: as an empty value).
    void SetSubstyle(const PropertyKey& key, const Style* substyle);

    /// Sets the value at the end of a path, creating own substyles on the way. Nothing happens for an empty path, or
    /// where a key on the way is no substyle property; substyles created before that stay.
    void SetPathProperty(const PropertyPath& path, const Any& value);
    /// As above, by the form of `SetProperty` that takes an rvalue.
    void SetPathProperty(const PropertyPath& path, Any&& value);

    /// Copies the own value at the end of the path from `source`, or clears it where `source` has none.
    void SetPathProperty(const PropertyPath& path, const Style* source);

    /// Stores a copy of `substyle` at the end of a path.
    void SetPathSubstyle(const PropertyPath& path, const Style* substyle);

    /// Copies the own values at the ends of the paths from `source`, each as `SetPathProperty` does.
    void SetProperties(const std::vector<PropertyPath>& paths, const Style* source);

    /// Removes the own value; false when there was none.
    bool ClearProperty(const PropertyKey& key);

    /// Removes the own value at the end of a path through own substyles; false when there was none.
    bool ClearPathProperty(const PropertyPath& path);

    /// As `ClearPathProperty`, but only where there is something to inherit from (a parent of this style, of its owner
    /// or of a substyle on the way), or with `force`.
    bool RevertPathProperty(const PropertyPath& path, bool force);

    /// Removes the own values for all keys that `other` has own values for. A null `other` does nothing.
    void ClearProperties(const Style* other);

    /// Removes all own values. When destroying one throws, the others are destroyed too, then the first exception goes
    /// on.
    void ClearAllProperties();

    /// Removes all own values but substyles, here and in the substyles. True when anything was removed.
    bool RevertAllProperties();

    /// A new style of this category with the effective values of these keys as its own. The caller owns it.
    /// \throws std::logic_error for a key that the category does not know.
    [[nodiscard]] Style* CopyProperties(const std::set<PropertyKey>& keys);
    /// @}

    /// \name Merging and flattening
    /// @{

    /// Brings the own values of `source` into this style; own values stay unless `overwrite`.
    void MergeProperties(const Style* source, bool overwrite);

    /// Brings in the own values of a parent where this style has none.
    void MergeParentProperties(const Style* source);

    /// Makes every inherited value an own one and cuts the parent. True when a property had a value that is no default.
    /// Without a category only the parent is cut. When a definition throws, the parent stays.
    bool Flatten();

    /// As `Flatten()`, adding the keys of the properties that had a value to `changed`. True when `changed` is not
    /// empty afterwards.
    bool Flatten(std::set<PropertyKey>& changed);

    /// A flattened copy. The caller owns it.
    [[nodiscard]] Style* CreateFlattenedStyle() const;
    /// As above, adding the keys of the properties that had a value to `changed`.
    [[nodiscard]] Style* CreateFlattenedStyle(std::set<PropertyKey>& changed) const;

    /// Whether the style inherits through its owner: it has no parent, and a style on its owner chain has one.
    [[nodiscard]] bool StylePropertiesHasDependencyOnOwner() const;

    /// A copy that has for its own what this style inherits through its owner. The caller owns it.
    [[nodiscard]] Style* CreateStyleCloneWithNoDependencyOnOwner() const;

    /// Such a copy of the effective substyle under `key`, or an empty style of its category. The caller owns it.
    [[nodiscard]] Style* CreateSubStyleCloneWithNoDependencyOnOwner(const PropertyKey& key) const;

    /// Makes the substyle under `key` match that of `source`: as a copy where both inherit alike, else without
    /// dependency on the owner of `source`. \throws std::bad_cast when the default for `key` is no substyle.
    void CopySubstyleProperties(const Style* source, const PropertyKey& key);
    /// @}

    /// \name Dependencies
    /// A style depends on the styles that it or a style inside its values inherits from, and on those that its values
    /// refer to. The null pointer in a span matches nothing.
    /// @{

    /// Whether this style is, inherits from, or refers to a member of `styles`, at any distance.
    [[nodiscard]] bool HasDependency(StyleSpan styles) const;
    /// As `HasDependency`, but only the style itself, its parent, and the direct references of its values.
    [[nodiscard]] bool HasDirectDependency(StyleSpan styles) const;
    /// The members of `styles` that this style depends on, sorted by address, without duplicates.
    [[nodiscard]] std::vector<Style*> GetDependencies(StyleSpan styles, bool direct);
    /// Whether a parent is, inherits from, or refers to a member of `styles`.
    [[nodiscard]] bool HasParentalDependency(StyleSpan styles) const;
    /// Whether this style, its owner or a style inside its values has a parent.
    [[nodiscard]] bool HasParentalDependency() const;

    /// Makes this style independent of `styles`: what it inherits from them becomes its own. `direct`: only an unbroken
    /// run of parents from the nearest on. Otherwise every member of `styles` on the parent chain, with all below it.
    void RemoveDependency(StyleSpan styles, bool direct);
    /// Makes this style and the styles inside its values independent of all parents.
    void RemoveAllDependencies();
    /// Inherits from the styles that `replacements` maps parents to, here and in the values. A parent mapped to null
    /// stays.
    void RemapDependency(const std::map<Style*, Style*>& replacements);
    /// Hands `replacements` to the definitions of all values that are not empty.
    void RemapPointer(const std::vector<std::pair<Any, Any>>& replacements);
    /// @}

    /// \name Visiting values
    /// The visitor may change the value, and set and clear properties of the style that it is called with.
    /// @{

    /// Visits all plain values, in substyles and lists too, in key order. False when the visitor stopped the walk.
    bool ProcessProperties(const PropertyVisitor& visitor);
    /// Visits the values at the ends of these paths through own substyles; paths that lead nowhere are skipped.
    bool ProcessProperties(const std::vector<PropertyPath>& paths, const PropertyVisitor& visitor);
    /// @}

    /// \name JSON
    /// @{

    /// Replaces `output` with the style's object: "inherits", "id", "original", then the own values by name. Parents
    /// are written by their names in `sheet`. When a definition throws, `output` holds the members written so far.
    void Serialize(const StyleSheet& sheet, Json::Variant& output, bool includeTemporaries) const;
    /// The text of that object.
    [[nodiscard]] VelString Serialize(const StyleSheet& sheet, bool compact, bool includeTemporaries) const;

    /// Reads the members of `object` into this style, which has its category already. What is unknown or of the wrong
    /// type is passed over. When a definition throws, the members read so far stay.
    void DeserializeJson(const StyleSheet& sheet, const Json::Object& object);

    /// A new style of that category, read from `object`. The caller owns it.
    [[nodiscard]] static Style* Deserialize(const StyleSheet& sheet, const Json::Object& object,
                                            const PropertyKey& categoryName);
    /// @}

private:
    friend struct Detail::StyleAccess;

    [[nodiscard]] bool HasDependency(StyleSpan styles, bool direct) const;
    [[nodiscard]] std::vector<Style*> GetDependenciesImpl(StyleSpan styles, bool direct);
    void DestroyPropertyData(const PropertyKey& key, const Any& value);
    void SetIdentity(VelString Style::*field, VelString text);
    bool RepairSubstyleOwnerPointers();

    [[nodiscard]] const BaseStyleProperty* FindDefinition(const PropertyKey& key) const;

    std::map<PropertyKey, Any> m_properties;
    Style* m_parent;
    Style* m_owner;
    PropertyKey m_ownersSubstylePropertyName;
    std::shared_ptr<const StyleCategory> m_category;
    VelString m_externalID;
    VelString m_externalName;
};

} // namespace Styles
