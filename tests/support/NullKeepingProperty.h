// A substyle property whose values may be null.
#pragma once

#include "support/StyleMaking.h"

#include <utility>

namespace Styles::Testing
{

/// Keeps a null substyle as a value, where others clear the property.
class NullKeepingProperty : public StyleSetProperty
{
public:
    using StyleSetProperty::StyleSetProperty;

    Any MovePropertyData(Style* newOwner, Any&& value) override
    {
        Any stored = StyleSetProperty::MovePropertyData(newOwner, std::move(value));
        return stored.IsEmpty() ? NullSubstyle() : stored;
    }
};

/// Registers such a property of element category `category` with the base category, and gives `style` a null for it.
inline PropertyKey KeepNull(Style& style, const PropertyKey& category)
{
    const PropertyKey key = Key(L"hollow");
    Manager().RegisterProperty(StyleCategoryName, key, new NullKeepingProperty(nullptr, category, nullptr, 0));
    style.SetSubstyle(key, nullptr);
    EXPECT_TRUE(style.DoesOverrideProperty(key));
    return key;
}

} // namespace Styles::Testing
