/// \file
/// Ready-made validators: a range, and a choice of values.
///
/// They change nothing: a value of another type, out of the range or not among the choices is answered false.
#pragma once

#include "Any.h"

#include <VelPref/Validator.h>

#include <utility>
#include <vector>

namespace Styles
{

/// Accepts the values from `lowest` to `highest`, both included. A value that does not compare (NaN) is refused.
template <class T>
class RangeValidator final : public VelPref::Validator
{
public:
    /// A range without values, `highest` below `lowest`, accepts nothing.
    RangeValidator(T lowest, T highest) : m_lowest(std::move(lowest)), m_highest(std::move(highest)) {}

    bool Validate(VelUtils::Any& value, const VelUtils::Any& /*defaultValue*/) const override
    {
        const T* candidate = value.GetIf<T>();
        return candidate != nullptr && m_lowest <= *candidate && *candidate <= m_highest;
    }

private:
    T m_lowest;
    T m_highest;
};

/// Accepts the values of a list.
template <class T>
class ChoiceValidator final : public VelPref::Validator
{
public:
    /// An empty list accepts nothing.
    explicit ChoiceValidator(std::vector<T> choices) : m_choices(std::move(choices)) {}

    bool Validate(VelUtils::Any& value, const VelUtils::Any& /*defaultValue*/) const override
    {
        const T* candidate = value.GetIf<T>();
        for (auto choice = m_choices.begin(); candidate != nullptr && choice != m_choices.end(); ++choice)
        {
            if (*choice == *candidate)
            {
                return true;
            }
        }
        return false;
    }

private:
    std::vector<T> m_choices;
};

} // namespace Styles
