// Merging styles, flattening them, and copies that no longer depend on an owner.

#include <styles/Style.h>

#include "core/DefinitionCalls.h"
#include "core/LinkWalk.h"
#include "core/StyleAccess.h"
#include "core/StylesInside.h"

#include <algorithm>
#include <functional>
#include <memory>
#include <typeinfo>

namespace Styles
{

namespace
{

/// The first style on the way from `style` along its owners, itself included, that has a parent or no owner.
const Style& ClimbToHeir(const Style& style)
{
    const Style* current = &style;
    Detail::OwnerWalk owners(style);
    while (current->GetParent() == nullptr)
    {
        const Style* owner = owners.Next();
        if (owner == nullptr)
        {
            break;
        }
        current = owner;
    }
    return *current;
}

/// Whether `style` or a style on its owner chain has a parent.
bool InheritsAnything(const Style& style)
{
    return ClimbToHeir(style).GetParent() != nullptr;
}

/// Whether the values of substyles of `source` and `target` come from the same style when both are copied plainly: the
/// same number of owners up, both reach a style with the same parent.
bool InheritAlike(const Style& source, const Style& target)
{
    const Style* theirs = &source;
    const Style* ours = &target;
    Detail::OwnerWalk theirOwners(source);
    Detail::OwnerWalk ourOwners(target);
    while (theirs->GetParent() == nullptr)
    {
        theirs = theirOwners.Next();
        ours = ourOwners.Next();
        if (theirs == nullptr || ours == nullptr)
        {
            return false;
        }
    }
    return theirs->GetParent() == ours->GetParent();
}

template <class Merge>
void ForEachOwnValue(const Style& source, const Merge& merge)
{
    // What is merged may change the very map that is walked.
    std::vector<PropertyKey> keys;
    keys.reserve(Detail::StyleAccess::Properties(source).size());
    for (const auto& entry : Detail::StyleAccess::Properties(source))
    {
        keys.push_back(entry.first);
    }
    for (const PropertyKey& key : keys)
    {
        if (const BaseStyleProperty* definition = Detail::StyleAccess::FindDefinition(source, key))
        {
            merge(*definition, key);
        }
    }
}

} // namespace

void Style::MergeProperties(const Style* source, bool overwrite)
{
    if (source == nullptr || source == this)
    {
        return;
    }
    std::unique_ptr<const Style> copy;
    if (overwrite && Detail::HoldsStyle(*this, *source))
    {
        copy = std::make_unique<const Style>(*source); // overwriting may destroy the source
        source = copy.get();
    }
    ForEachOwnValue(*source, [&](const BaseStyleProperty& definition, const PropertyKey& key) {
        definition.MergeProperty(this, source, key, overwrite);
    });
}

void Style::MergeParentProperties(const Style* source)
{
    if (source == nullptr || source == this)
    {
        return;
    }
    ForEachOwnValue(*source, [&](const BaseStyleProperty& definition, const PropertyKey& key) {
        definition.MergeParentProperty(this, source, key);
    });
}

bool Detail::StyleAccess::FlattenPlain(Style& style, const BaseStyleProperty& definition, const PropertyKey& key)
{
    const auto place = FindPlace(style, key);
    if (place != style.m_properties.end() && place->first == key)
    {
        if (place->second.IsEmpty())
        {
            style.m_properties.erase(place); // nothing, stored back, removes
        }
        return true;
    }
    const Any& inherited = style.GetInheritedProperty(key);
    if (&inherited == &definition.GetDefaultValue())
    {
        return false;
    }
    if (!inherited.IsEmpty())
    {
        style.m_properties.emplace_hint(place, key, inherited);
    }
    return true;
}

bool Detail::StyleAccess::InheritsPlainly(const Style& style) noexcept
{
    if (!HoldsOnlyPlainValues(style))
    {
        return false;
    }
    const Style* top = &style;
    ParentWalk parents(style);
    while (const Style* parent = parents.Next())
    {
        if (parent->m_category != style.m_category)
        {
            return false;
        }
        top = parent;
    }
    return parents.IsClosed() || top->m_owner == nullptr;
}

bool Detail::StyleAccess::FlattenPlainly(Style& style, std::set<PropertyKey>* changed)
{
    PropertyMap& values = style.m_properties;
    std::set<PropertyKey> hidden; // a parent has an empty value: it hides those of its parents, but is not stored
    ParentWalk parents(style);
    while (const Style* parent = parents.Next())
    {
        for (const auto& entry : parent->m_properties)
        {
            const auto place = values.lower_bound(entry.first);
            if (place != values.end() && place->first == entry.first)
            {
                continue;
            }
            if (entry.second.IsEmpty())
            {
                hidden.insert(entry.first);
            }
            else if (hidden.empty() || !hidden.contains(entry.first))
            {
                values.insert(place, entry);
            }
        }
    }
    const bool hadValue = !values.empty() || !hidden.empty();
    if (changed != nullptr)
    {
        changed->insert(hidden.begin(), hidden.end());
        for (const auto& entry : values)
        {
            changed->insert(entry.first);
        }
    }
    std::erase_if(values, [](const auto& entry) { return entry.second.IsEmpty(); });
    return hadValue;
}

bool Detail::StyleAccess::Flatten(Style& style, std::set<PropertyKey>* changed)
{
    bool hadValue = false;
    if (InheritsPlainly(style))
    {
        hadValue = FlattenPlainly(style, changed);
    }
    else if (style.m_category)
    {
        const std::shared_ptr<const StyleCategory> category = style.m_category; // a definition may exchange it
        const IndexedCategory& flattened = *Category(style);
        const WorkInProgress work(style);
        for (const PropertyKey& key : std::vector<PropertyKey>(flattened.GetPropertyNames()))
        {
            const Definition definition = flattened.Find(key);
            if (definition.property == nullptr)
            {
                static_cast<void>(flattened.GetStyleProperty(key)); // reports
            }
            else if (definition.isPlain && style.m_category == category
                         ? FlattenPlain(style, *definition.property, key)
                         : definition.property->FlattenProperty(&style, key))
            {
                hadValue = true;
                if (changed != nullptr)
                {
                    changed->insert(key);
                }
            }
        }
    }
    style.m_parent = nullptr;
    return hadValue;
}

bool Style::Flatten()
{
    return Detail::StyleAccess::Flatten(*this, nullptr);
}

bool Style::Flatten(std::set<PropertyKey>& changed)
{
    Detail::StyleAccess::Flatten(*this, &changed);
    // KEPT: the answer is about the whole set, so a set that held keys before gives true although nothing changed now.
    // Hosts flatten several styles into one set. Pinned by StyleMerge.FlatteningIntoASetThatIsNotEmptyAnswersTrue
    return !changed.empty();
}

Style* Style::CreateFlattenedStyle() const
{
    auto flattened = std::make_unique<Style>(*this);
    flattened->Flatten();
    return flattened.release();
}

Style* Style::CreateFlattenedStyle(std::set<PropertyKey>& changed) const
{
    auto flattened = std::make_unique<Style>(*this);
    flattened->Flatten(changed);
    return flattened.release();
}

bool Style::StylePropertiesHasDependencyOnOwner() const
{
    return m_parent == nullptr && InheritsAnything(*this);
}

Style* Style::CreateStyleCloneWithNoDependencyOnOwner() const
{
    if (!StylePropertiesHasDependencyOnOwner())
    {
        return new Style(*this);
    }
    PropertyPath place; // innermost first
    std::vector<Style*> parents;
    const Style* top = this;
    Detail::OwnerWalk owners(*this);
    while (const Style* owner = owners.Next())
    {
        place.push_back(top->m_ownersSubstylePropertyName);
        if (owner->m_parent != nullptr)
        {
            parents.push_back(owner->m_parent);
        }
        top = owner;
    }
    Style copy(*top);
    copy.RemoveDependency(StyleSpan(parents, std::is_sorted(parents.begin(), parents.end(), std::less<>())), true);
    const Style* reached = &copy;
    for (auto key = place.rbegin(); key != place.rend() && reached != nullptr; ++key)
    {
        reached = reached->GetSubstyle(*key, false);
    }
    return new Style(reached != nullptr ? *reached : *this);
}

Style* Style::CreateSubStyleCloneWithNoDependencyOnOwner(const PropertyKey& key) const
{
    if (const Style* substyle = GetSubstyle(key, false))
    {
        return substyle->CreateStyleCloneWithNoDependencyOnOwner();
    }
    Any inherited;
    if (GetProperty(key, inherited))
    {
        Style* const* substyle = inherited.GetIf<Style*>();
        if (substyle != nullptr && *substyle != nullptr)
        {
            return (*substyle)->CreateStyleCloneWithNoDependencyOnOwner();
        }
    }
    const BaseStyleProperty* definition = FindDefinition(key);
    auto empty = std::make_unique<Style>();
    empty->SetCategory(definition != nullptr ? Detail::Callable(*definition).GetElementCategoryName()
                                             : PropertyKey::Empty);
    return empty.release();
}

void Style::CopySubstyleProperties(const Style* source, const PropertyKey& key)
{
    if (source == nullptr)
    {
        return;
    }
    const PropertyKey name = key;
    Any effective;
    if (!source->GetProperty(name, effective))
    {
        ClearProperty(name);
        const BaseStyleProperty* definition = FindDefinition(name);
        if (definition == nullptr)
        {
            return;
        }
        const Style* defaultSubstyle = definition->GetDefaultValue().Get<Style*>();
        if (GetSubstyle(name, true) != defaultSubstyle)
        {
            SetSubstyle(name, defaultSubstyle);
        }
        return;
    }
    const Style* substyle = source->GetSubstyle(name, false);
    const bool plain = (substyle != nullptr && !substyle->StylePropertiesHasDependencyOnOwner()) ||
                       !InheritsAnything(*source) || InheritAlike(*source, *this);
    if (plain && substyle == nullptr)
    {
        ClearProperty(name);
        return;
    }
    const BaseStyleProperty* definition = FindDefinition(name);
    if (definition != nullptr && !definition->IsSubstyle())
    {
        throw VelUtils::BadAnyCast(); // a plain value would name a style that may be gone soon
    }
    const std::unique_ptr<const Style> clone(plain ? nullptr
                                                   : source->CreateSubStyleCloneWithNoDependencyOnOwner(name));
    SetSubstyle(name, plain ? substyle : clone.get());
}

} // namespace Styles
