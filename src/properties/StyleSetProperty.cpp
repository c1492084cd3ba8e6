// Substyles. Each operation is forwarded into the substyle; a null one is passed over.

#include <styles/Style.h>
#include <styles/StyleProperty.h>

#include "core/StyleAccess.h"
#include "core/StyleJson.h"
#include "core/StylesInside.h"

#include <functional>
#include <memory>
#include <typeinfo>
#include <utility>

namespace Styles
{

namespace
{

/// The substyle in a stored value. \throws std::bad_cast when it holds none.
Style* SubstyleOf(const Any& value)
{
    return value.Get<Style*>();
}

/// The substyle in a value that may come from outside. \throws std::bad_cast when it holds none.
const Style* GivenSubstyleOf(const Any& value)
{
    if (const Style* const* substyle = value.GetIf<const Style*>())
    {
        return *substyle;
    }
    return SubstyleOf(value);
}

/// Stores a copy of the own substyle of `source` in `target`, which has none.
void CopySubstyle(const BaseStyleProperty& definition, Style& target, const Style& source, const PropertyKey& key)
{
    if (const Any* own = Detail::StyleAccess::FindOwn(source, key))
    {
        Detail::BringIn(definition, *own, Any(static_cast<const Style*>(source.GetSubstyle(key, false))), target, key);
    }
}

} // namespace

StyleSetProperty::StyleSetProperty(VelPref::Validator* validator, const PropertyKey& elementCategoryName,
                                   Style* defaultSubstyle, int newSinceVersion)
    : BaseStyleProperty(validator, Any(defaultSubstyle), newSinceVersion), m_elementCategoryName(elementCategoryName)
{}

StyleSetProperty::StyleSetProperty(const StyleSetProperty& other) = default;
StyleSetProperty& StyleSetProperty::operator=(const StyleSetProperty& other) = default;

StyleSetProperty::~StyleSetProperty()
{
    Style* const* defaultSubstyle = GetDefaultValue().GetIf<Style*>();
    delete (defaultSubstyle != nullptr ? *defaultSubstyle : nullptr);
}

PropertyKey StyleSetProperty::GetElementCategoryName()
{
    return m_elementCategoryName;
}

bool StyleSetProperty::Serialize(const StyleSheet& sheet, const Style* /*style*/, const Any& value,
                                 Json::Variant& output) const
{
    if (Detail::IsOlderThan(sheet, GetNewSinceVersion()))
    {
        return false;
    }
    output = Json::NullType::Null;
    if (const Style* substyle = SubstyleOf(value))
    {
        substyle->Serialize(sheet, output, /*includeTemporaries*/ false);
    }
    return true;
}

bool StyleSetProperty::Deserialize(const StyleSheet& sheet, Style* style, const Json::Variant* json) const
{
    const Json::Object* object = json != nullptr ? json->GetIf<Json::Object>() : nullptr;
    if (style == nullptr || object == nullptr)
    {
        return false;
    }
    std::unique_ptr<Style> substyle(Style::Deserialize(sheet, *object, m_elementCategoryName));
    substyle->SetOwner(style, GetPropertyName());
    // A value that is there already wins, and the one that was read goes.
    if (!style->DoesOverrideProperty(GetPropertyName()))
    {
        Detail::StyleAccess::Adopt(*style, *this, GetPropertyName(), Any(substyle.release()));
    }
    return true;
}

void StyleSetProperty::DestroyPropertyData(const Any& value) const
{
    delete SubstyleOf(value);
}

Any StyleSetProperty::MovePropertyData(Style* newOwner, Any&& value)
{
    const Style* given = GivenSubstyleOf(value);
    if (given == nullptr)
    {
        return Any();
    }
    auto copy = std::make_unique<Style>(*given);
    copy->SetOwner(newOwner, GetPropertyName());
    return Any(copy.release());
}

std::vector<Style*> StyleSetProperty::GetDependencies(const Any& value, StyleSpan styles, bool direct)
{
    // KEPT: the substyle itself is not listed, also where `HasDependency` counts it: it goes with its owner, and
    // callers list the styles of a sheet. Pinned by StyleSetProperty.TheSubstyleItselfIsADependencyThatIsNotListed
    Style* substyle = SubstyleOf(value);
    if (substyle == nullptr)
    {
        return {};
    }
    if (direct)
    {
        Style* parent = substyle->GetParent();
        return parent != nullptr && styles.contains(parent) ? std::vector<Style*>{parent} : std::vector<Style*>();
    }
    std::vector<Style*> found = substyle->GetDependencies(styles, false);
    std::erase(found, substyle);
    return found;
}

bool StyleSetProperty::HasDependency(const Any& value, StyleSpan styles, bool direct) const
{
    const Style* substyle = SubstyleOf(value);
    if (substyle == nullptr)
    {
        return false;
    }
    if (direct)
    {
        return substyle->GetParent() != nullptr && styles.contains(substyle->GetParent());
    }
    return styles.contains(substyle) || Detail::StyleAccess::HasDependency(*substyle, styles, false);
}

void StyleSetProperty::RemoveDependency(Any& value, StyleSpan styles, bool direct) const
{
    if (Style* substyle = SubstyleOf(value))
    {
        substyle->RemoveDependency(styles, direct);
    }
}

bool StyleSetProperty::HasParentalDependency(const Any& value) const
{
    const Style* substyle = SubstyleOf(value);
    return substyle != nullptr && substyle->HasParentalDependency();
}

void StyleSetProperty::RemoveAllDependencies(Any& value) const
{
    if (Style* substyle = SubstyleOf(value))
    {
        substyle->RemoveAllDependencies();
    }
}

void StyleSetProperty::RemapDependency(Any& value, const std::map<Style*, Style*>& replacements) const
{
    if (Style* substyle = SubstyleOf(value))
    {
        substyle->RemapDependency(replacements);
    }
}

void StyleSetProperty::RemapPointer(Any& value, const std::vector<std::pair<Any, Any>>& replacements) const
{
    if (Style* substyle = SubstyleOf(value))
    {
        substyle->RemapPointer(replacements);
    }
}

void StyleSetProperty::SetOwner(Any& value, Style* owner, const PropertyKey& key) const
{
    if (Style* substyle = SubstyleOf(value))
    {
        substyle->SetOwner(owner, key);
    }
}

bool StyleSetProperty::ProcessProperty(Any& value, const PropertyVisitor& visitor, Style* /*style*/,
                                       const PropertyKey& /*key*/) const
{
    Style* substyle = SubstyleOf(value);
    return substyle == nullptr || substyle->ProcessProperties(visitor);
}

void StyleSetProperty::MergeProperty(Style* target, const Style* source, const PropertyKey& key, bool overwrite) const
{
    if (!target->DoesOverrideProperty(key))
    {
        CopySubstyle(*this, *target, *source, key);
    }
    else if (Style* substyle = target->GetSubstyle(key, false))
    {
        substyle->MergeProperties(source->GetSubstyle(key, false), overwrite);
    }
}

void StyleSetProperty::MergeParentProperty(Style* target, const Style* source, const PropertyKey& key) const
{
    if (!target->DoesOverrideProperty(key))
    {
        CopySubstyle(*this, *target, *source, key);
        return;
    }
    Style* substyle = target->GetSubstyle(key, false);
    const Style* sourceSubstyle = source->GetSubstyle(key, false);
    if (substyle == nullptr || sourceSubstyle == nullptr || substyle->GetParent() != nullptr)
    {
        return;
    }
    substyle->MergeParentProperties(sourceSubstyle);
    if (sourceSubstyle->GetParent() != substyle)
    {
        substyle->SetParent(sourceSubstyle->GetParent());
    }
}

bool StyleSetProperty::FlattenProperty(Style* style, const PropertyKey& key) const
{
    if (Style* own = style->GetSubstyle(key, false))
    {
        return own->Flatten();
    }
    const Style* inherited = style->GetSubstyle(key, true);
    if (inherited == nullptr || Detail::WorkInProgress::Includes(*inherited) || Detail::WorkInProgress::IsTooDeep())
    {
        return false;
    }
    {
        Style empty;
        empty.SetCategory(m_elementCategoryName);
        style->SetProperty(key, Any(static_cast<const Style*>(&empty)));
    }
    Style* own = style->GetSubstyle(key, false);
    if (own == nullptr)
    {
        return false;
    }
    try
    {
        const Detail::WorkInProgress source(*inherited);
        return own->Flatten();
    }
    catch (...)
    {
        style->ClearProperty(key); // it goes on inheriting
        throw;
    }
}

bool StyleSetProperty::IsEqual(const Any& a, const Any& b) const
{
    const Style* left = SubstyleOf(a);
    const Style* right = SubstyleOf(b);
    if (left == right || left == nullptr || right == nullptr)
    {
        return left == right;
    }
    return *left == *right;
}

bool StyleSetProperty::IsLess(const Any& a, const Any& b) const
{
    const Style* left = SubstyleOf(a);
    const Style* right = SubstyleOf(b);
    if (left == right || left == nullptr || right == nullptr)
    {
        return std::less<const Style*>()(left, right);
    }
    return *left < *right;
}

bool StyleSetProperty::ProcessStylesInProperty(const Any& value, const Delegate<bool(Style*)>& visitor) const
{
    return visitor(SubstyleOf(value));
}

bool StyleSetProperty::CheckType(const Any& value) const
{
    return value.Is<Style*>() || value.Is<const Style*>();
}

bool StyleSetProperty::IsSubstyle() const
{
    return true;
}

} // namespace Styles
