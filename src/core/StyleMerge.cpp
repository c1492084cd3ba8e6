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

bool Style::Flatten()
{
    std::set<PropertyKey> changed;
    return Flatten(changed);
}

bool Style::Flatten(std::set<PropertyKey>& changed)
{
    if (m_category)
    {
        const std::shared_ptr<const StyleCategory> flattened = m_category;
        const Detail::WorkInProgress work(*this);
        for (const PropertyKey& key : std::vector<PropertyKey>(flattened->GetPropertyNames()))
        {
            const BaseStyleProperty* definition = flattened->GetStyleProperty(key);
            if (definition != nullptr && definition->FlattenProperty(this, key))
            {
                changed.insert(key);
            }
        }
    }
    m_parent = nullptr;
    // KEPT: the answer is about the whole set, so a set that held keys before gives true although nothing changed now.
    // Hosts flatten several styles into one set. Pinned by StyleMerge.FlatteningIntoASetThatIsNotEmptyAnswersTrue
    return !changed.empty();
}

Style* Style::CreateFlattenedStyle() const
{
    std::set<PropertyKey> changed;
    return CreateFlattenedStyle(changed);
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
