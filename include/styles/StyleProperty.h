/// \file
/// The definitions of properties: what a host says about each property that its styles may have.
///
/// A definition supplies the default of its property, validates values, converts them to and from the text of a
/// document, and knows the rules by which values of the property are copied, compared, merged, flattened and searched
/// for other styles. A `Style` never interprets a value itself; it asks the definition.
///
/// Kinds: `StyleProperty` (a plain value), `TemporaryStyleProperty` (a plain value that is never written),
/// `StyleSetProperty` (a substyle) and `StyleArrayProperty` (a list of styles). A host derives from any of them, or
/// from `BaseStyleProperty`, and overrides what differs. The order of the virtual operations is part of the interface.
///
/// Ownership: a definition belongs to the category that it is registered in, which deletes it when the category is
/// emptied (`StyleManager::RegisterProperty` says when it refuses one). A definition owns its validator, its conversion
/// policy and its default value.
///
/// Exceptions: an operation given a value of the wrong type throws `std::bad_cast` and changes nothing. A host's
/// override may throw anything; `Style` says what holds then.
///
/// Threads: definitions are made and registered at start-up and are only read afterwards.
#pragma once

#include "Any.h"
#include "PropertyKey.h"
#include "StylesApi.h"
#include "StylesFwd.h"

#include <VelPref/ConversionPolicy.h>
#include <VelPref/Validator.h>
#include <VelUtils/Delegate.h>
#include <VelUtils/Json.h>
#include <VelUtils/MaybeSortedSpan.h>

#include <map>
#include <utility>
#include <vector>

namespace Styles
{

using VelUtils::Delegate;
using VelUtils::maybe_sorted_span;

/// Styles asked about, as a span that may be known to be sorted by address.
using StyleSpan = maybe_sorted_span<Style* const>;

/// Visits one value: the value, the style that holds it and its key. Answering false stops the walk.
using PropertyVisitor = Delegate<bool(Any&, Style*, const PropertyKey&)>;

/// The definition of a property: what all kinds have in common, and the default of every operation.
class STYLES_API BaseStyleProperty
{
public:
    /// Deletes the validator.
    virtual ~BaseStyleProperty();

    /// The category of the styles inside the values, `PropertyKey::Empty` for values without styles.
    virtual PropertyKey GetElementCategoryName();

    /// Writes `value` into `output`. False: the property is to be left out of the document, `output` is untouched.
    virtual bool Serialize(const StyleSheet& sheet, const Style* style, const Any& value,
                           Json::Variant& output) const = 0;

    /// Reads `json` (which may be null) and stores the value in `style`. False: nothing was stored.
    virtual bool Deserialize(const StyleSheet& sheet, Style* style, const Json::Variant* json) const = 0;

    /// Whether `AdjustAfterDeserialize` is to be called once the style has been read.
    virtual bool NeedAdjustementsForStyleIO() const;

    /// Called for each member of this property in a document after all members of its style have been read.
    virtual void AdjustAfterDeserialize(const StyleSheet& sheet, Style* style) const;

    /// The conversion to and from text; null when there is none. Owned by the definition.
    virtual const VelPref::Detail::IConversionPolicy* GetConversionPolicy() const;

    /// Frees what `value`, which leaves a style, owns. Called exactly once for a value that a style lets go.
    virtual void DestroyPropertyData(const Any& value) const;

    /// Makes the value that `newOwner` is to store from the one handed in. An empty result clears the property.
    virtual Any MovePropertyData(Style* newOwner, Any&& value);

    /// The members of `styles` that the value depends on; with `direct`, without following what its styles inherit.
    virtual std::vector<Style*> GetDependencies(const Any& value, StyleSpan styles, bool direct);

    /// Whether the value depends on a member of `styles`.
    virtual bool HasDependency(const Any& value, StyleSpan styles, bool direct) const;

    /// Makes the styles inside the value independent of `styles`, see `Style::RemoveDependency`.
    virtual void RemoveDependency(Any& value, StyleSpan styles, bool direct) const;

    /// Whether a style inside the value inherits.
    virtual bool HasParentalDependency(const Any& value) const;

    /// Makes the styles inside the value independent of every parent.
    virtual void RemoveAllDependencies(Any& value) const;

    /// Lets the styles inside the value inherit from the styles that `replacements` maps their parents to.
    virtual void RemapDependency(Any& value, const std::map<Style*, Style*>& replacements) const;

    /// For a host whose values hold pointers: exchanges each value equal to the first of a pair for the second.
    virtual void RemapPointer(Any& value, const std::vector<std::pair<Any, Any>>& replacements) const;

    /// Tells the styles inside the value that `owner` now holds them under `key`.
    virtual void SetOwner(Any& value, Style* owner, const PropertyKey& key) const;

    /// Visits the plain values in `value`. False when `visitor` stopped the walk.
    virtual bool ProcessProperty(Any& value, const PropertyVisitor& visitor, Style* style,
                                 const PropertyKey& key) const;

    /// Brings the value of `source` for `key` into `target`; an own value of `target` stays unless `overwrite`.
    virtual void MergeProperty(Style* target, const Style* source, const PropertyKey& key, bool overwrite) const;

    /// Brings the value that `target` inherits from its parent `source` into `target`.
    virtual void MergeParentProperty(Style* target, const Style* source, const PropertyKey& key) const;

    /// Makes the effective value an own value. True when there was one that is not the default.
    virtual bool FlattenProperty(Style* style, const PropertyKey& key) const;

    /// Whether two values of this property are equal: by the equality of their type; values of different types are not.
    virtual bool IsEqual(const Any& a, const Any& b) const;

    /// Whether the reader of a style reads this property after all current ones.
    virtual bool IsDeprecated() const;

    /// Whether `a` orders before `b`: by the order of their type; values of different types by the order of the types.
    virtual bool IsLess(const Any& a, const Any& b) const;

    /// Calls `visitor` for the styles directly inside the value until it answers false. False when it did, and for
    /// values without styles, for which it is never called.
    virtual bool ProcessStylesInProperty(const Any& value, const Delegate<bool(Style*)>& visitor) const;

    /// Whether `value` has the type of this property. Offered to hosts: `Style` stores values unasked.
    virtual bool CheckType(const Any& value) const = 0;

    /// Whether the property lives in memory only.
    virtual bool IsTemporary() const;

    /// Whether values are substyles.
    virtual bool IsSubstyle() const;

    /// The default. Look-ups that end here return this very object, valid as long as the definition.
    [[nodiscard]] const Any& GetDefaultValue() const noexcept { return m_defaultValue; }

    /// The first version of sheets that has the property; older sheets are written without it.
    [[nodiscard]] int GetNewSinceVersion() const noexcept { return m_newSinceVersion; }

    /// Asks the validator, which may correct `value`. False without a validator.
    [[nodiscard]] bool Validate(Any& value) const;

protected:
    /// Takes over `validator` (may be null).
    BaseStyleProperty(VelPref::Validator* validator, Any defaultValue, int newSinceVersion);

    /// The copy shares the validator of `other`: of the two, only one may be destroyed.
    BaseStyleProperty(const BaseStyleProperty& other);
    /// Shares the validator of `other`, as the copy constructor; the validator that was here is not deleted.
    BaseStyleProperty& operator=(const BaseStyleProperty& other);

    /// Sets the names that registration gives a definition.
    void SetName(const PropertyKey& category, const PropertyKey& name) noexcept;

    /// The category that the definition is registered in, `PropertyKey::Empty` before.
    [[nodiscard]] const PropertyKey& GetCategoryName() const noexcept { return m_categoryName; }
    /// The name that the definition is registered under, `PropertyKey::Empty` before.
    [[nodiscard]] const PropertyKey& GetPropertyName() const noexcept { return m_propertyName; }

private:
    friend class StyleManager;

    PropertyKey m_categoryName;
    PropertyKey m_propertyName;
    VelPref::Validator* m_validator;
    Any m_defaultValue;
    int m_newSinceVersion;
};

namespace Detail
{

/// Answers whether a value has the type that a definition was made for.
using TypeTest = bool (*)(const Any&);

/// The test for a `T`.
template <class T>
bool HoldsType(const Any& value)
{
    return value.Is<T>();
}

} // namespace Detail

/// A plain value (a number, a text, an identifier) that a conversion policy writes as text.
class STYLES_API StyleProperty : public BaseStyleProperty
{
public:
    /// Takes over `validator` and `conversionPolicy` (both may be null). The type of the property is that of
    /// `defaultValue`; a text literal makes it a wide string. Without a policy the property is written as null and
    /// never read. \throws what making the default value throws; nothing has been taken over then.
    template <class T>
    StyleProperty(VelPref::Validator* validator, T defaultValue,
                  const VelPref::Detail::IConversionPolicy* conversionPolicy, int newSinceVersion)
        : BaseStyleProperty(validator, Any(std::move(defaultValue)), newSinceVersion),
          m_conversionPolicy(conversionPolicy),
          m_typeTest(&Detail::HoldsType<VelUtils::AnyValueType<T>>)
    {}

    /// The copy shares validator and policy of `other`: of the two, only one may be destroyed.
    StyleProperty(const StyleProperty& other);
    /// Shares validator and policy of `other`, as the copy constructor; what was here is not deleted.
    StyleProperty& operator=(const StyleProperty& other);
    ~StyleProperty() override;

    /// Writes the text of the value as a JSON string, null without a policy; false for a property newer than the sheet.
    bool Serialize(const StyleSheet& sheet, const Style* style, const Any& value, Json::Variant& output) const override;

    /// Reads a string, a number or a boolean. \throws VelPref::Detail::BadConversion when the text is no value of this
    /// property; the style keeps what it had.
    bool Deserialize(const StyleSheet& sheet, Style* style, const Json::Variant* json) const override;

    const VelPref::Detail::IConversionPolicy* GetConversionPolicy() const override;
    bool CheckType(const Any& value) const override;

private:
    const VelPref::Detail::IConversionPolicy* m_conversionPolicy;
    Detail::TypeTest m_typeTest;
};

/// A plain value that is neither written nor read.
class STYLES_API TemporaryStyleProperty : public BaseStyleProperty
{
public:
    /// Takes over `validator` (may be null). The type of the property is that of `defaultValue`.
    template <class T>
    TemporaryStyleProperty(VelPref::Validator* validator, T defaultValue, int newSinceVersion)
        : BaseStyleProperty(validator, Any(std::move(defaultValue)), newSinceVersion),
          m_typeTest(&Detail::HoldsType<VelUtils::AnyValueType<T>>)
    {}

    /// The copy shares the validator of `other`: of the two, only one may be destroyed.
    TemporaryStyleProperty(const TemporaryStyleProperty& other);
    /// Shares the validator of `other`, as the copy constructor; what was here is not deleted.
    TemporaryStyleProperty& operator=(const TemporaryStyleProperty& other);
    ~TemporaryStyleProperty() override;

    /// True, and nothing is written.
    bool Serialize(const StyleSheet& sheet, const Style* style, const Any& value, Json::Variant& output) const override;

    /// True, and nothing is read.
    bool Deserialize(const StyleSheet& sheet, Style* style, const Json::Variant* json) const override;

    bool CheckType(const Any& value) const override;
    bool IsTemporary() const override;

private:
    Detail::TypeTest m_typeTest;
};

/// A substyle: a style of another category that belongs to the style that holds it.
///
/// The value is a `Style*`. A `Style*` or `const Style*` that is handed in names a style to be copied, never one to be
/// adopted: the holding style stores its own copy, which knows its owner and its key. A null substyle is a legal
/// default and clears the property when it is stored.
class STYLES_API StyleSetProperty : public BaseStyleProperty
{
public:
    /// Takes over `validator` and `defaultSubstyle` (both may be null).
    StyleSetProperty(VelPref::Validator* validator, const PropertyKey& elementCategoryName, Style* defaultSubstyle,
                     int newSinceVersion);

    /// The copy shares validator and default substyle of `other`: of the two, only one may be destroyed.
    StyleSetProperty(const StyleSetProperty& other);
    /// Shares validator and default substyle of `other`, as the copy constructor; what was here is not deleted.
    StyleSetProperty& operator=(const StyleSetProperty& other);

    /// Deletes the default substyle.
    ~StyleSetProperty() override;

    PropertyKey GetElementCategoryName() override;
    bool Serialize(const StyleSheet& sheet, const Style* style, const Any& value, Json::Variant& output) const override;
    bool Deserialize(const StyleSheet& sheet, Style* style, const Json::Variant* json) const override;
    void DestroyPropertyData(const Any& value) const override;
    Any MovePropertyData(Style* newOwner, Any&& value) override;
    std::vector<Style*> GetDependencies(const Any& value, StyleSpan styles, bool direct) override;
    bool HasDependency(const Any& value, StyleSpan styles, bool direct) const override;
    void RemoveDependency(Any& value, StyleSpan styles, bool direct) const override;
    bool HasParentalDependency(const Any& value) const override;
    void RemoveAllDependencies(Any& value) const override;
    void RemapDependency(Any& value, const std::map<Style*, Style*>& replacements) const override;
    void RemapPointer(Any& value, const std::vector<std::pair<Any, Any>>& replacements) const override;
    void SetOwner(Any& value, Style* owner, const PropertyKey& key) const override;

    /// Visits the values of the substyle; the substyle itself is no plain value.
    bool ProcessProperty(Any& value, const PropertyVisitor& visitor, Style* style,
                         const PropertyKey& key) const override;

    void MergeProperty(Style* target, const Style* source, const PropertyKey& key, bool overwrite) const override;
    void MergeParentProperty(Style* target, const Style* source, const PropertyKey& key) const override;

    /// Flattens the own substyle, or an own copy of what is inherited. Where the category nests in itself, a substyle
    /// that would contain itself without end is left to inheritance.
    bool FlattenProperty(Style* style, const PropertyKey& key) const override;

    /// Whether the substyles are equal, as `Style::operator==`; two null ones are.
    bool IsEqual(const Any& a, const Any& b) const override;
    /// The order of the substyles, as `Style::operator<`; null comes first.
    bool IsLess(const Any& a, const Any& b) const override;
    bool ProcessStylesInProperty(const Any& value, const Delegate<bool(Style*)>& visitor) const override;
    bool CheckType(const Any& value) const override;
    bool IsSubstyle() const override;

private:
    PropertyKey m_elementCategoryName;
};

/// An ordered list of styles that belong to the style that holds the list.
///
/// The value is a `std::vector<Style*>`. Storing one copies its elements; the elements have no owner link.
class STYLES_API StyleArrayProperty : public BaseStyleProperty
{
public:
    /// Takes over `validator` (may be null). Elements have the category that the property belongs to.
    StyleArrayProperty(VelPref::Validator* validator, int newSinceVersion);

    /// Takes over `validator` (may be null). New since version 0.
    StyleArrayProperty(VelPref::Validator* validator, const PropertyKey& elementCategoryName);

    /// The copy shares the validator of `other`: of the two, only one may be destroyed.
    StyleArrayProperty(const StyleArrayProperty& other);
    /// Shares the validator of `other`, as the copy constructor; what was here is not deleted.
    StyleArrayProperty& operator=(const StyleArrayProperty& other);
    ~StyleArrayProperty() override;

    PropertyKey GetElementCategoryName() override;
    bool Serialize(const StyleSheet& sheet, const Style* style, const Any& value, Json::Variant& output) const override;
    bool Deserialize(const StyleSheet& sheet, Style* style, const Json::Variant* json) const override;
    void DestroyPropertyData(const Any& value) const override;
    Any MovePropertyData(Style* newOwner, Any&& value) override;
    std::vector<Style*> GetDependencies(const Any& value, StyleSpan styles, bool direct) override;
    bool HasDependency(const Any& value, StyleSpan styles, bool direct) const override;
    void RemoveDependency(Any& value, StyleSpan styles, bool direct) const override;
    bool HasParentalDependency(const Any& value) const override;
    void RemoveAllDependencies(Any& value) const override;
    void RemapDependency(Any& value, const std::map<Style*, Style*>& replacements) const override;
    void RemapPointer(Any& value, const std::vector<std::pair<Any, Any>>& replacements) const override;

    /// Visits the values of the elements; the list itself is no plain value.
    bool ProcessProperty(Any& value, const PropertyVisitor& visitor, Style* style,
                         const PropertyKey& key) const override;

    /// Stores flattened copies of the elements. A list that would contain itself without end is left to inheritance.
    bool FlattenProperty(Style* style, const PropertyKey& key) const override;

    /// Lists of different lengths compare equal; others when their elements do, one by one.
    bool IsEqual(const Any& a, const Any& b) const override;
    /// The shorter list is less; of two of one length the first elements that differ decide.
    bool IsLess(const Any& a, const Any& b) const override;

    /// Calls `visitor` for every element, null ones included.
    bool ProcessStylesInProperty(const Any& value, const Delegate<bool(Style*)>& visitor) const override;
    bool CheckType(const Any& value) const override;

private:
    [[nodiscard]] PropertyKey GetCategoryOfElements() const;

    PropertyKey m_elementCategoryName;
};

} // namespace Styles
