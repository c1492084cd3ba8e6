// The plain model: questions about dependencies, and what helpers do.

#include "core/ModelStyle.h"

#include <algorithm>
#include <set>
#include <utility>

namespace Styles::Modelling
{

namespace
{

using Reached = std::set<const ModelStyle*>;

/// `style`, and everything that parents and values lead to from there. Those that are only met as substyles are left
/// out of `listed`.
void Reach(const ModelStyle& style, bool isSubstyle, Reached& reached, Reached& listed)
{
    if (!isSubstyle)
    {
        listed.insert(&style);
    }
    if (!reached.insert(&style).second)
    {
        return;
    }
    if (style.parent != nullptr)
    {
        Reach(*style.parent, false, reached, listed);
    }
    for (const ModelStyle* inside : Inside(style))
    {
        Reach(*inside, inside->owner != nullptr, reached, listed);
    }
}

ModelSpan MembersIn(const Reached& reached, const ModelSpan& span)
{
    ModelSpan members;
    std::copy_if(reached.begin(), reached.end(), std::back_inserter(members),
                 [&span](const ModelStyle* style) { return IsIn(span, style); });
    return members;
}

} // namespace

bool Depends(const ModelStyle& style, const ModelSpan& span, bool direct)
{
    if (!direct)
    {
        Reached reached;
        Reached listed;
        Reach(style, false, reached, listed);
        return !MembersIn(reached, span).empty();
    }
    const std::vector<ModelStyle*> inside = Inside(style);
    return IsIn(span, &style) || IsIn(span, style.parent) ||
           std::any_of(inside.begin(), inside.end(),
                       [&](const ModelStyle* inner) { return IsIn(span, inner->parent); });
}

bool DependsThroughParent(const ModelStyle& style, const ModelSpan& span)
{
    return style.parent != nullptr && Depends(*style.parent, span, false);
}

bool InheritsAnywhere(const ModelStyle& style)
{
    const std::vector<ModelStyle*> inside = Inside(style);
    return style.parent != nullptr || (style.owner != nullptr && style.owner->parent != nullptr) ||
           std::any_of(inside.begin(), inside.end(), [](const ModelStyle* inner) { return InheritsAnywhere(*inner); });
}

bool IsHollow(const ModelStyle& style)
{
    return std::all_of(style.own.begin(), style.own.end(), [](const auto& entry) {
        const std::vector<ModelStyle*> inside = Inside(entry.second);
        return entry.second.kind != Kind::Text &&
               std::all_of(inside.begin(), inside.end(), [](const ModelStyle* inner) { return IsHollow(*inner); });
    });
}

bool AnyInsideHasParent(const ModelStyle& style)
{
    const std::vector<ModelStyle*> inside = Inside(style);
    return std::any_of(inside.begin(), inside.end(),
                       [](const ModelStyle* inner) { return inner->parent != nullptr || AnyInsideHasParent(*inner); });
}

ModelSpan Dependencies(const ModelStyle& style, const ModelSpan& span, bool direct)
{
    Reached reached;
    Reached listed;
    if (!direct)
    {
        Reach(style, false, reached, listed);
        return MembersIn(listed, span);
    }
    listed = {&style, style.parent};
    for (const ModelStyle* inside : Inside(style))
    {
        // Of a list the elements, of a substyle its parent.
        listed.insert(inside->owner == nullptr ? inside : inside->parent);
    }
    return MembersIn(listed, span);
}

void Remap(ModelStyle& style, const ModelStyle& from, ModelStyle* to)
{
    if (style.parent == &from && to != nullptr)
    {
        style.parent = to;
    }
    for (ModelStyle* inside : Inside(style))
    {
        Remap(*inside, from, to);
    }
}

ModelStyle* SubstyleParent(const ModelStyle& style)
{
    if (style.parent != nullptr)
    {
        return style.parent;
    }
    for (const ModelStyle* around = style.owner; around != nullptr; around = around->parent)
    {
        const ModelStyle* alike = OwnSubstyle(*around, style.ownersKey);
        if (alike != nullptr && alike->parent != nullptr)
        {
            return alike->parent;
        }
    }
    return nullptr;
}

void ClearEmptySubstyles(ModelStyle& style)
{
    for (const PropertyKey& key : OwnKeys(style))
    {
        ModelStyle* substyle = OwnSubstyle(style, key);
        if (substyle == nullptr)
        {
            continue;
        }
        ClearEmptySubstyles(*substyle);
        if (substyle->own.empty())
        {
            Clear(style, key);
        }
    }
}

void CopySubstylesOf(ModelStyle& target, const ModelStyle& source, bool mergeValues)
{
    if (&target == &source)
    {
        return;
    }
    if (Holds(target, source))
    {
        return CopySubstylesOf(target, *Copy(source), mergeValues);
    }
    for (const PropertyKey& key : OwnKeys(target))
    {
        const ModelStyle* given = OwnSubstyle(source, key);
        if (given == nullptr)
        {
            continue;
        }
        if (!mergeValues)
        {
            SetSubstyle(target, key, Copy(*given));
            continue;
        }
        for (const PropertyKey& inner : OwnKeys(*given))
        {
            Replace(*OwnSubstyle(target, key), inner, *Own(*given, inner));
        }
    }
}

std::vector<std::pair<const ModelStyle*, PropertyKey>> Texts(const ModelStyle& style)
{
    std::vector<std::pair<const ModelStyle*, PropertyKey>> texts;
    for (const auto& [key, value] : style.own)
    {
        if (value.kind == Kind::Text)
        {
            texts.emplace_back(&style, key);
        }
        for (const ModelStyle* inside : Inside(value))
        {
            const auto more = Texts(*inside);
            texts.insert(texts.end(), more.begin(), more.end());
        }
    }
    return texts;
}

/// It is looked up by the name of its category, not by its key.
ModelStyle* LastSubstyle(const ModelStyle& style)
{
    const auto last = std::find_if(style.own.rbegin(), style.own.rend(),
                                   [](const auto& entry) { return entry.second.kind == Kind::Substyle; });
    return last != style.own.rend() ? OwnSubstyle(style, last->second.substyle->category->name) : nullptr;
}

std::vector<std::vector<PropertyKey>> OverriddenPaths(const ModelStyle& style)
{
    std::vector<std::vector<PropertyKey>> paths;
    for (const PropertyKey& key : OwnKeys(style))
    {
        const ModelStyle* substyle = OwnSubstyle(style, key);
        if (substyle == nullptr)
        {
            paths.push_back({key});
            continue;
        }
        for (std::vector<PropertyKey> path : OverriddenPaths(*substyle))
        {
            path.insert(path.begin(), key);
            paths.push_back(std::move(path));
        }
    }
    return paths;
}

std::unique_ptr<ModelStyle> MakeFromSubstyle(const ModelStyle& style, const PropertyKey& key)
{
    const ModelStyle* substyle = EffectiveSubstyle(style, key);
    if (substyle == nullptr)
    {
        return nullptr;
    }
    std::unique_ptr<ModelStyle> made = Copy(*substyle);
    made->parent = SubstyleParent(*substyle);
    for (const ModelDefinition& definition : substyle->category->definitions)
    {
        const ModelValue* value = Effective(*substyle, definition.key);
        const ModelValue* inherited = made->parent != nullptr ? Effective(*made->parent, definition.key) : nullptr;
        if (value != inherited)
        {
            SetOrDefault(*made, definition.key, value);
        }
    }
    return made;
}

void ClearMatchingInherited(ModelStyle& style)
{
    if (style.parent == nullptr && !DependsOnOwner(style))
    {
        return;
    }
    std::map<PropertyKey, ModelValue> examined;
    examined.swap(style.own);
    for (auto& [key, value] : examined)
    {
        const ModelValue* inherited = Inherited(style, key);
        const std::string& initial = style.category->Of(key).defaultText;
        // A list equals the empty one by default: it is as long, or of another length.
        const bool matches = inherited != nullptr       ? AreEqual(value, *inherited)
                             : value.kind == Kind::Text ? value.text == initial
                                                        : value.kind == Kind::List;
        if (!matches)
        {
            Set(style, key, std::move(value));
        }
    }
}

} // namespace Styles::Modelling
