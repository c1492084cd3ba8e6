// Definitions of a host that throw at a call of the test's choice, made of the ready-made ones.
#pragma once

#include "faults/FailingAllocations.h"

#include <styles/Styles.h>

#include <exception>
#include <map>
#include <utility>
#include <vector>

namespace Styles::Testing
{

/// What a definition throws.
class HostFailure : public std::exception
{};

/// The calls of definitions.
inline FailurePoints& CallPoints() noexcept
{
    static FailurePoints points;
    return points;
}

/// Whether the first call that failed was one to destroy a value.
inline bool& FirstFailureWasDestroying() noexcept
{
    static bool was = false;
    return was;
}

/// A call has been reached. \throws HostFailure where it is to fail.
inline void ReachCall(bool destroying = false)
{
    const bool isFirst = !CallPoints().HasFailed();
    if (CallPoints().Reach())
    {
        if (isFirst)
        {
            FirstFailureWasDestroying() = destroying;
        }
        throw HostFailure();
    }
}

/// A ready-made conversion to and from text, each call of which may fail.
template <class T>
class FaultyPolicy : public VelPref::Detail::IConversionPolicy
{
public:
    VelString ToText(const Any& value) const override
    {
        ReachCall();
        return m_policy.ToText(value);
    }
    Any FromText(const VelString& text) const override
    {
        ReachCall();
        return m_policy.FromText(text);
    }

private:
    TextPolicy<T> m_policy;
};

/// A ready-made definition, each call of which may fail: before it has done anything, and a call to destroy a value
/// after it is destroyed.
template <class Base>
class Faulty : public Base
{
public:
    using Base::Base;

    PropertyKey GetElementCategoryName() override
    {
        ReachCall();
        return Base::GetElementCategoryName();
    }
    bool NeedAdjustementsForStyleIO() const override
    {
        ReachCall();
        return true;
    }
    void AdjustAfterDeserialize(const StyleSheet& sheet, Style* style) const override
    {
        ReachCall();
        Base::AdjustAfterDeserialize(sheet, style);
    }
    const VelPref::Detail::IConversionPolicy* GetConversionPolicy() const override
    {
        ReachCall();
        return Base::GetConversionPolicy();
    }
    bool IsDeprecated() const override
    {
        ReachCall();
        return Base::IsDeprecated();
    }
    bool CheckType(const Any& value) const override
    {
        ReachCall();
        return Base::CheckType(value);
    }
    bool IsTemporary() const override
    {
        ReachCall();
        return Base::IsTemporary();
    }
    bool IsSubstyle() const override
    {
        ReachCall();
        return Base::IsSubstyle();
    }
    bool Serialize(const StyleSheet& sheet, const Style* style, const Any& value, Json::Variant& output) const override
    {
        ReachCall();
        return Base::Serialize(sheet, style, value, output);
    }
    bool Deserialize(const StyleSheet& sheet, Style* style, const Json::Variant* json) const override
    {
        ReachCall();
        return Base::Deserialize(sheet, style, json);
    }
    void DestroyPropertyData(const Any& value) const override
    {
        Base::DestroyPropertyData(value);
        ReachCall(/*destroying*/ true);
    }
    Any MovePropertyData(Style* newOwner, Any&& value) override
    {
        ReachCall();
        return Base::MovePropertyData(newOwner, std::move(value));
    }
    std::vector<Style*> GetDependencies(const Any& value, StyleSpan styles, bool direct) override
    {
        ReachCall();
        return Base::GetDependencies(value, styles, direct);
    }
    bool HasDependency(const Any& value, StyleSpan styles, bool direct) const override
    {
        ReachCall();
        return Base::HasDependency(value, styles, direct);
    }
    void RemoveDependency(Any& value, StyleSpan styles, bool direct) const override
    {
        ReachCall();
        Base::RemoveDependency(value, styles, direct);
    }
    bool HasParentalDependency(const Any& value) const override
    {
        ReachCall();
        return Base::HasParentalDependency(value);
    }
    void RemoveAllDependencies(Any& value) const override
    {
        ReachCall();
        Base::RemoveAllDependencies(value);
    }
    void RemapDependency(Any& value, const std::map<Style*, Style*>& replacements) const override
    {
        ReachCall();
        Base::RemapDependency(value, replacements);
    }
    void RemapPointer(Any& value, const std::vector<std::pair<Any, Any>>& replacements) const override
    {
        ReachCall();
        Base::RemapPointer(value, replacements);
    }
    void SetOwner(Any& value, Style* owner, const PropertyKey& key) const override
    {
        ReachCall();
        Base::SetOwner(value, owner, key);
    }
    bool ProcessProperty(Any& value, const PropertyVisitor& visitor, Style* style,
                         const PropertyKey& key) const override
    {
        ReachCall();
        return Base::ProcessProperty(value, visitor, style, key);
    }
    void MergeProperty(Style* target, const Style* source, const PropertyKey& key, bool overwrite) const override
    {
        ReachCall();
        Base::MergeProperty(target, source, key, overwrite);
    }
    void MergeParentProperty(Style* target, const Style* source, const PropertyKey& key) const override
    {
        ReachCall();
        Base::MergeParentProperty(target, source, key);
    }
    bool FlattenProperty(Style* style, const PropertyKey& key) const override
    {
        ReachCall();
        return Base::FlattenProperty(style, key);
    }
    bool IsEqual(const Any& a, const Any& b) const override
    {
        ReachCall();
        return Base::IsEqual(a, b);
    }
    bool IsLess(const Any& a, const Any& b) const override
    {
        ReachCall();
        return Base::IsLess(a, b);
    }
    bool ProcessStylesInProperty(const Any& value, const Delegate<bool(Style*)>& visitor) const override
    {
        ReachCall();
        return Base::ProcessStylesInProperty(value, visitor);
    }
};

} // namespace Styles::Testing
