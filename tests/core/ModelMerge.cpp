// The plain model: merging, flattening, making independent, copies without owner.

#include "core/ModelStyle.h"

#include <algorithm>
#include <utility>

namespace Styles::Modelling
{

namespace
{

/// The styles that are being flattened or made independent, from the outermost inwards, and for copies that were made
/// meanwhile what each was made from. What is in the middle of it is not brought in once more.
std::vector<const ModelStyle*> underWay;
std::map<const ModelStyle*, const ModelStyle*> madeFrom;

const ModelStyle* OriginalOf(const ModelStyle* style)
{
    const auto entry = madeFrom.find(style);
    return entry != madeFrom.end() ? entry->second : style;
}

class UnderWay
{
public:
    explicit UnderWay(const ModelStyle& style)
    {
        underWay.push_back(&style);
        underWay.push_back(OriginalOf(&style));
    }
    UnderWay(const UnderWay&) = delete;
    UnderWay& operator=(const UnderWay&) = delete;
    ~UnderWay()
    {
        underWay.resize(underWay.size() - 2);
        if (underWay.empty())
        {
            madeFrom.clear();
        }
    }
};

bool IsUnderWay(const ModelStyle* style)
{
    return std::find(underWay.begin(), underWay.end(), style) != underWay.end();
}

/// Whether a style inside the value, at any depth, is `target`, has it inside, or is under way.
bool LeadsBackTo(const ModelStyle& target, const ModelValue& value)
{
    const std::vector<ModelStyle*> inside = Inside(value);
    return std::any_of(inside.begin(), inside.end(), [&target](const ModelStyle* style) {
        bool leadsBack = IsUnderWay(style);
        for (const ModelStyle* around = &target; around != nullptr; around = around->owner)
        {
            leadsBack = leadsBack || around == style;
        }
        return leadsBack || std::any_of(style->own.begin(), style->own.end(),
                                        [&target](const auto& entry) { return LeadsBackTo(target, entry.second); });
    });
}

/// A copy of the value becomes the target's, unless that would put a style into its own inside.
void BringIn(ModelStyle& target, const PropertyKey& key, const ModelValue& value)
{
    if (LeadsBackTo(target, value))
    {
        return;
    }
    const std::vector<ModelStyle*> originals = Inside(value);
    Set(target, key, value.Copy());
    const std::vector<ModelStyle*> copies = Inside(target.own[key]);
    for (std::size_t index = 0; index < copies.size() && !underWay.empty(); ++index)
    {
        madeFrom[copies[index]] = OriginalOf(originals[index]);
    }
}

void TakeOverParent(ModelStyle& style)
{
    const ModelStyle& parent = *style.parent;
    MergeParent(style, parent);
    style.parent = parent.parent;
}

} // namespace

void Merge(ModelStyle& target, const ModelStyle& source, bool overwrite)
{
    if (&target == &source)
    {
        return;
    }
    if (overwrite && Holds(target, source))
    {
        return Merge(target, *Copy(source), overwrite);
    }
    for (const PropertyKey& key : OwnKeys(source))
    {
        const ModelStyle* inner = OwnSubstyle(source, key);
        ModelStyle* present = OwnSubstyle(target, key);
        if (inner != nullptr && present != nullptr)
        {
            Merge(*present, *inner, overwrite);
        }
        else if (overwrite || !target.own.contains(key))
        {
            BringIn(target, key, *Own(source, key));
        }
    }
}

void MergeParent(ModelStyle& target, const ModelStyle& source)
{
    if (&target == &source)
    {
        return;
    }
    for (const PropertyKey& key : OwnKeys(source))
    {
        const ModelStyle* inner = OwnSubstyle(source, key);
        ModelStyle* present = OwnSubstyle(target, key);
        if (!target.own.contains(key))
        {
            BringIn(target, key, *Own(source, key));
        }
        else if (inner != nullptr && present != nullptr && present->parent == nullptr)
        {
            MergeParent(*present, *inner);
            present->parent = inner->parent;
        }
    }
}

namespace
{

bool FlattenSubstyle(ModelStyle& style, const PropertyKey& key)
{
    if (ModelStyle* own = OwnSubstyle(style, key))
    {
        return Flatten(*own);
    }
    const ModelStyle* inherited = EffectiveSubstyle(style, key);
    if (inherited == nullptr || IsUnderWay(inherited))
    {
        return false;
    }
    const UnderWay source(*inherited);
    return Flatten(GetOrCreate(style, key));
}

bool FlattenList(ModelStyle& style, const PropertyKey& key)
{
    const ModelValue* value = Effective(style, key);
    if (value == nullptr ||
        (Own(style, key) == nullptr &&
         std::any_of(value->list.begin(), value->list.end(), [](const auto& e) { return IsUnderWay(e.get()); })))
    {
        return false;
    }
    bool changed = false;
    ModelValue flat;
    flat.kind = Kind::List;
    for (const auto& element : value->list)
    {
        const UnderWay source(*element);
        flat.list.push_back(Copy(*element));
        changed |= Flatten(*flat.list.back());
    }
    Set(style, key, std::move(flat));
    return changed;
}

bool FlattenText(ModelStyle& style, const PropertyKey& key)
{
    const ModelValue* value = Effective(style, key);
    if (value != nullptr)
    {
        Set(style, key, value->Copy());
    }
    return value != nullptr;
}

} // namespace

bool Flatten(ModelStyle& style)
{
    const UnderWay work(style);
    bool changed = false;
    for (const ModelDefinition& definition : style.category->definitions)
    {
        constexpr bool (*flatten[])(ModelStyle&, const PropertyKey&) = {FlattenText, FlattenSubstyle, FlattenList};
        changed |= flatten[static_cast<std::size_t>(definition.kind)](style, definition.key);
    }
    style.parent = nullptr;
    return changed;
}

void RemoveDependency(ModelStyle& style, const ModelSpan& span, bool direct)
{
    const UnderWay work(style);
    const ModelStyle* last = nullptr; // the last parent to go
    for (const ModelStyle* parent = style.parent; parent != nullptr && (!direct || IsIn(span, parent));
         parent = parent->parent)
    {
        last = IsIn(span, parent) ? parent : last;
    }
    const ModelStyle* next = last != nullptr ? last->parent : style.parent;
    while (style.parent != next)
    {
        TakeOverParent(style);
    }
    for (ModelStyle* inside : Inside(style))
    {
        RemoveDependency(*inside, span, direct);
    }
}

void RemoveAllDependencies(ModelStyle& style)
{
    const UnderWay work(style);
    while (style.parent != nullptr)
    {
        TakeOverParent(style);
    }
    for (ModelStyle* inside : Inside(style))
    {
        RemoveAllDependencies(*inside);
    }
}

bool DependsOnOwner(const ModelStyle& style)
{
    const ModelStyle* around = style.owner;
    while (around != nullptr && around->parent == nullptr)
    {
        around = around->owner;
    }
    return style.parent == nullptr && around != nullptr;
}

std::unique_ptr<ModelStyle> CloneWithoutOwner(const ModelStyle& style)
{
    if (!DependsOnOwner(style))
    {
        return Copy(style);
    }
    std::vector<PropertyKey> place; // innermost first
    ModelSpan parents;
    const ModelStyle* top = &style;
    for (; top->owner != nullptr; top = top->owner)
    {
        place.push_back(top->ownersKey);
        if (top->owner->parent != nullptr)
        {
            parents.push_back(top->owner->parent);
        }
    }
    const std::unique_ptr<ModelStyle> copy = Copy(*top);
    RemoveDependency(*copy, parents, true);
    const ModelStyle* reached = copy.get();
    for (; reached != nullptr && !place.empty(); place.pop_back())
    {
        reached = OwnSubstyle(*reached, place.back());
    }
    return Copy(reached != nullptr ? *reached : style);
}

std::unique_ptr<ModelStyle> CloneSubstyleWithoutOwner(const ModelStyle& style, const PropertyKey& key)
{
    const ModelStyle* substyle = EffectiveSubstyle(style, key);
    return substyle != nullptr ? CloneWithoutOwner(*substyle)
                               : std::make_unique<ModelStyle>(*style.category->Of(key).element);
}

void CopySubstyle(ModelStyle& target, const ModelStyle& source, const PropertyKey& key)
{
    const ModelStyle* own = OwnSubstyle(source, key);
    bool plain = (own != nullptr && !DependsOnOwner(*own)) || (source.parent == nullptr && !DependsOnOwner(source));
    const ModelStyle* theirs = &source;
    const ModelStyle* ours = &target;
    while (theirs != nullptr && ours != nullptr && theirs->parent == nullptr)
    {
        theirs = theirs->owner;
        ours = ours->owner;
    }
    plain = plain || (theirs != nullptr && ours != nullptr && theirs->parent == ours->parent);
    if (EffectiveSubstyle(source, key) == nullptr || (plain && own == nullptr))
    {
        Clear(target, key);
    }
    else
    {
        SetSubstyle(target, key, plain ? Copy(*own) : CloneSubstyleWithoutOwner(source, key));
    }
}

} // namespace Styles::Modelling
