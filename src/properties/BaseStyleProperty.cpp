#include <styles/StyleProperty.h>

#include "core/StyleAccess.h"
#include "core/StylesInside.h"

#include <utility>

namespace Styles
{

BaseStyleProperty::BaseStyleProperty(VelPref::Validator* validator, Any defaultValue, int newSinceVersion)
    : m_validator(validator), m_defaultValue(std::move(defaultValue)), m_newSinceVersion(newSinceVersion)
{}

// KEPT: the copy shares the validator, which both would delete. A definition is not copied once it is registered; a
// host that copies one keeps the copy from being destroyed. Pinned by
// BaseStyleProperty.ACopySharesTheValidatorOfItsSource
BaseStyleProperty::BaseStyleProperty(const BaseStyleProperty& other) = default;

BaseStyleProperty& BaseStyleProperty::operator=(const BaseStyleProperty& other) = default;

BaseStyleProperty::~BaseStyleProperty()
{
    delete m_validator;
}

PropertyKey BaseStyleProperty::GetElementCategoryName()
{
    return PropertyKey::Empty;
}

bool BaseStyleProperty::NeedAdjustementsForStyleIO() const
{
    return false;
}

void BaseStyleProperty::AdjustAfterDeserialize(const StyleSheet& /*sheet*/, Style* /*style*/) const {}

const VelPref::Detail::IConversionPolicy* BaseStyleProperty::GetConversionPolicy() const
{
    return nullptr;
}

void BaseStyleProperty::DestroyPropertyData(const Any& /*value*/) const {}

Any BaseStyleProperty::MovePropertyData(Style* /*newOwner*/, Any&& value)
{
    return std::move(value);
}

std::vector<Style*> BaseStyleProperty::GetDependencies(const Any& /*value*/, StyleSpan /*styles*/, bool /*direct*/)
{
    return {};
}

bool BaseStyleProperty::HasDependency(const Any& /*value*/, StyleSpan /*styles*/, bool /*direct*/) const
{
    return false;
}

void BaseStyleProperty::RemoveDependency(Any& /*value*/, StyleSpan /*styles*/, bool /*direct*/) const {}

bool BaseStyleProperty::HasParentalDependency(const Any& /*value*/) const
{
    return false;
}

void BaseStyleProperty::RemoveAllDependencies(Any& /*value*/) const {}

void BaseStyleProperty::RemapDependency(Any& /*value*/, const std::map<Style*, Style*>& /*replacements*/) const {}

void BaseStyleProperty::RemapPointer(Any& /*value*/, const std::vector<std::pair<Any, Any>>& /*replacements*/) const {}

void BaseStyleProperty::SetOwner(Any& /*value*/, Style* /*owner*/, const PropertyKey& /*key*/) const {}

bool BaseStyleProperty::ProcessProperty(Any& value, const PropertyVisitor& visitor, Style* style,
                                        const PropertyKey& key) const
{
    return visitor(value, style, key);
}

void BaseStyleProperty::MergeProperty(Style* target, const Style* source, const PropertyKey& key, bool overwrite) const
{
    if (!overwrite && target->DoesOverrideProperty(key))
    {
        return;
    }
    const Any* own = Detail::StyleAccess::FindOwn(*source, key);
    const Any value(own != nullptr ? *own : source->GetInheritedProperty(key));
    Detail::BringIn(*this, value, value, *target, key);
}

void BaseStyleProperty::MergeParentProperty(Style* target, const Style* source, const PropertyKey& key) const
{
    Any value;
    if (!target->DoesOverrideProperty(key) && source->GetProperty(key, value))
    {
        Detail::BringIn(*this, value, value, *target, key);
    }
}

bool BaseStyleProperty::FlattenProperty(Style* style, const PropertyKey& key) const
{
    Any value;
    if (!style->GetProperty(key, value))
    {
        return false;
    }
    style->SetProperty(key, std::move(value));
    return true;
}

bool BaseStyleProperty::IsEqual(const Any& a, const Any& b) const
{
    return a == b;
}

bool BaseStyleProperty::IsDeprecated() const
{
    return false;
}

bool BaseStyleProperty::IsLess(const Any& a, const Any& b) const
{
    return a < b;
}

bool BaseStyleProperty::ProcessStylesInProperty(const Any& /*value*/, const Delegate<bool(Style*)>& /*visitor*/) const
{
    return false;
}

bool BaseStyleProperty::IsTemporary() const
{
    return false;
}

bool BaseStyleProperty::IsSubstyle() const
{
    return false;
}

bool BaseStyleProperty::Validate(Any& value) const
{
    return m_validator != nullptr && m_validator->Validate(value, m_defaultValue);
}

void BaseStyleProperty::SetName(const PropertyKey& category, const PropertyKey& name) noexcept
{
    m_categoryName = category;
    m_propertyName = name;
}

} // namespace Styles
