// Making, copying and moving styles; their links and what is in them.

#include <styles/Style.h>

#include "core/DefinitionCalls.h"
#include "core/StyleAccess.h"
#include "core/StylesInside.h"

#include <exception>
#include <utility>

namespace Styles
{

Style::Style() : m_parent(nullptr), m_owner(nullptr) {}

Style::Style(Style* parent, const PropertyKey& categoryName) : Style()
{
    m_parent = parent;
    SetCategory(categoryName);
}

// Both delegate, so that a throw in the middle runs the destructor.
Style::Style(const Style& other) : Style()
{
    Detail::StyleAccess::Fill(*this, other);
}

Style::Style(Style&& other) : Style()
{
    try
    {
        Detail::StyleAccess::Take(*this, other);
    }
    catch (...)
    {
        other.m_properties.swap(m_properties); // this style will not be there to hold them
        try
        {
            other.RepairSubstyleOwnerPointers();
        }
        catch (...) // the first exception is the one that goes on
        {}
        throw;
    }
}

Style& Style::operator=(const Style& other)
{
    if (&other == this)
    {
        return *this;
    }
    if (Detail::HoldsStyle(other, *this))
    {
        Style copy(other); // this very style is copied too, so it must not change before
        Detail::StyleAccess::Take(*this, copy);
        return *this;
    }
    Detail::StyleAccess::Copy(*this, other);
    return *this;
}

Style& Style::operator=(Style&& other)
{
    if (&other == this)
    {
        return *this;
    }
    if (Detail::HoldsStyle(other, *this))
    {
        return *this = static_cast<const Style&>(other); // taking the values would take this very style
    }
    Detail::StyleAccess::Take(*this, other);
    return *this;
}

void Detail::StyleAccess::Fill(Style& style, const Style& other)
{
    style.m_parent = other.m_parent;
    style.m_category = other.m_category;
    style.m_externalID = other.m_externalID;
    style.m_externalName = other.m_externalName;
    if (HoldsOnlyPlainValues(style))
    {
        PropertyMap copies(other.m_properties);
        style.m_properties.swap(copies);
        return;
    }
    for (const auto& [key, value] : other.m_properties)
    {
        if (const BaseStyleProperty* definition = FindDefinition(style, key))
        {
            Any copy(value);
            Adopt(style, *definition, key, Callable(*definition).MovePropertyData(&style, std::move(copy)));
        }
    }
}

void Detail::StyleAccess::Copy(Style& style, const Style& other)
{
    // The old values go last: `other` may be inside them, and they come back when a definition throws.
    Style old;
    old.m_properties.swap(style.m_properties);
    old.m_parent = style.m_parent;
    old.m_category = style.m_category;
    old.m_externalID = style.m_externalID;
    old.m_externalName = style.m_externalName;
    try
    {
        Fill(style, other);
    }
    catch (...)
    {
        style.m_properties.swap(old.m_properties); // `old` now destroys what was made
        std::swap(style.m_category, old.m_category);
        style.m_parent = old.m_parent;
        style.m_externalID = old.m_externalID;
        style.m_externalName = old.m_externalName;
        throw;
    }
    old.ClearAllProperties();
}

void Detail::StyleAccess::Take(Style& style, Style& other)
{
    Style old; // `other` may be inside the old values
    old.m_properties.swap(style.m_properties);
    old.m_category = style.m_category;
    style.m_parent = other.m_parent;
    style.m_category = other.m_category;
    style.m_externalID = other.m_externalID;
    style.m_externalName = other.m_externalName;
    style.m_properties.swap(other.m_properties);
    std::exception_ptr failure;
    try
    {
        style.RepairSubstyleOwnerPointers();
    }
    catch (...)
    {
        failure = std::current_exception();
    }
    old.ClearAllProperties();
    if (failure)
    {
        std::rethrow_exception(failure);
    }
}

Style::~Style()
{
    try
    {
        ClearAllProperties();
    }
    catch (...) // every value has been destroyed by now, and a destructor has nobody to tell
    {}
}

void Style::SwapData(Style& other)
{
    if (&other != this && (Detail::HoldsStyle(other, *this) || Detail::HoldsStyle(*this, other)))
    {
        return;
    }
    std::swap(m_category, other.m_category);
    std::swap(m_parent, other.m_parent);
    if (&other != this)
    {
        m_properties.swap(other.m_properties);
    }
    std::swap(m_externalID, other.m_externalID);
    std::swap(m_externalName, other.m_externalName);
    std::exception_ptr failure;
    try
    {
        RepairSubstyleOwnerPointers();
    }
    catch (...)
    {
        failure = std::current_exception();
    }
    other.RepairSubstyleOwnerPointers();
    if (failure)
    {
        std::rethrow_exception(failure);
    }
}

void Style::Clear()
{
    m_parent = nullptr;
    ClearAllProperties();
}

void Style::SetOwner(Style* style, const PropertyKey& ownersKey) noexcept
{
    m_owner = style;
    m_ownersSubstylePropertyName = ownersKey;
}

void Style::SetCategory(const PropertyKey& categoryName)
{
    try
    {
        std::shared_ptr<const StyleCategory> category =
            VelUtils::Singleton<StyleManager, 0>::GetInstance().GetCategory(categoryName);
        if (category != m_category)
        {
            m_category = std::move(category);
            if (!m_properties.empty())
            {
                Detail::StyleAccess::Category(*this)->ExpectUnknownValues();
            }
        }
    }
    catch (...) // unknown: the style keeps what it has
    {}
}

PropertyKey Style::GetCategoryName() const
{
    return m_category ? m_category->GetCategoryName() : PropertyKey::Empty;
}

VelString Style::GetCategoryUIName() const
{
    return m_category ? m_category->GetCategoryUIName() : VelString();
}

void Style::SetExternalID(const VelString& id)
{
    SetIdentity(&Style::m_externalID, id);
}

void Style::SetExternalName(const VelString& name)
{
    SetIdentity(&Style::m_externalName, name);
}

void Style::SetIdentity(VelString Style::*field, VelString text)
{
    this->*field = text;
    if (GetCategoryName() == StyleCategoryName)
    {
        for (const auto& entry : m_properties)
        {
            if (Style* substyle = GetSubstyle(entry.first, false))
            {
                substyle->*field = text;
            }
        }
    }
}

bool Style::IsEmptyWithEmptySubstyles() const
{
    const auto isEmpty = [](const Style* style) { return style == nullptr || style->IsEmptyWithEmptySubstyles(); };
    for (const auto& [key, value] : m_properties)
    {
        const BaseStyleProperty* definition = FindDefinition(key);
        if (definition == nullptr || !definition->ProcessStylesInProperty(value, isEmpty))
        {
            return false;
        }
    }
    return true;
}

int Style::GetNumSubstyles() const
{
    int count = 0;
    for (const auto& entry : m_properties)
    {
        const BaseStyleProperty* definition = FindDefinition(entry.first);
        if (definition != nullptr && definition->IsSubstyle())
        {
            ++count;
        }
    }
    return count;
}

Style* Style::GetLastSubstyle() const
{
    for (auto entry = m_properties.rbegin(); entry != m_properties.rend(); ++entry)
    {
        const BaseStyleProperty* definition = FindDefinition(entry->first);
        if (definition != nullptr && definition->IsSubstyle())
        {
            // KEPT: the substyle is looked up by the name of its category, not by the key it was found under. Hosts
            // rely on a named substyle giving way to the one that is named like their category. Pinned by
            // Style.TheLastSubstyleIsLookedUpByItsElementCategoryAndNotByItsKey
            return GetSubstyle(Detail::Callable(*definition).GetElementCategoryName(), false);
        }
    }
    return nullptr;
}

bool Style::SubstylesHaveAnyParentalRelationships() const
{
    bool found = false;
    const auto visitor = [&found](const Style* style) {
        found = style != nullptr && (style->m_parent != nullptr || style->SubstylesHaveAnyParentalRelationships());
        return !found;
    };
    for (const auto& [key, value] : m_properties)
    {
        if (const BaseStyleProperty* definition = FindDefinition(key))
        {
            definition->ProcessStylesInProperty(value, visitor);
            if (found)
            {
                return true;
            }
        }
    }
    return false;
}

bool Style::RepairSubstyleOwnerPointers()
{
    std::exception_ptr failure;
    for (auto& [key, value] : m_properties)
    {
        try
        {
            if (const BaseStyleProperty* definition = FindDefinition(key))
            {
                definition->SetOwner(value, this, key);
            }
        }
        catch (...)
        {
            // The link may name a style that goes, and must not be left behind.
            if (Style* const* substyle = value.GetIf<Style*>(); substyle != nullptr && *substyle != nullptr)
            {
                (*substyle)->SetOwner(this, key);
            }
            if (!failure)
            {
                failure = std::current_exception();
            }
        }
    }
    if (failure)
    {
        std::rethrow_exception(failure);
    }
    return false;
}

const BaseStyleProperty* Style::FindDefinition(const PropertyKey& key) const
{
    return Detail::StyleAccess::Find(*this, key).property;
}

} // namespace Styles
