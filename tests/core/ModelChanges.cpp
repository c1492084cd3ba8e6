// The changes of a pair that styles offer themselves: setting, clearing, merging, flattening, making independent.

#include "core/ModelPair.h"

#include <algorithm>
#include <functional>
#include <set>

namespace Styles::Modelling
{

namespace
{

/// Whether `style` would be among its own parents; only styles of the sheet are parents.
bool WouldClose(const ModelStyle* style, const ModelStyle* parent)
{
    while (parent != nullptr && parent != style)
    {
        parent = parent->parent;
    }
    return parent != nullptr;
}

/// Makes `style` independent of the span, after those of its parents that are in the span: only where a style inherits
/// from the style around it does the order show, in how often what is inside is repeated.
void CutParentsFirst(ModelStyle& style, const ModelSpan& span, std::set<const ModelStyle*>& done)
{
    if (done.insert(&style).second)
    {
        if (IsIn(span, style.parent))
        {
            CutParentsFirst(*style.parent, span, done);
        }
        RemoveDependency(style, span, true);
    }
}

/// Both sides of a span: the styles of the model, and the real ones, sometimes sorted.
struct Span
{
    Span(const std::vector<Place>& places, bool sorted) : isSorted(sorted)
    {
        for (const Place& place : places)
        {
            model.push_back(place.model);
            real.push_back(place.real);
        }
        if (sorted)
        {
            std::sort(real.begin(), real.end(), std::less<>());
        }
    }

    [[nodiscard]] VelUtils::maybe_sorted_span<Style* const> Real() const { return {real, isSorted}; }

    ModelSpan model;
    std::vector<Style*> real;
    bool isSorted;
};

} // namespace

void Pair::ChangeText()
{
    const Place place = AnyPlace();
    const std::vector<PropertyKey> path = AnyPath(*place.model);
    ModelStyle* reached = place.model;
    for (std::size_t index = 0; index + 1 < path.size(); ++index)
    {
        reached = &GetOrCreate(*reached, path[index]);
    }
    if (reached->category->Of(path.back()).kind == Kind::Text)
    {
        const std::string text = AnyText();
        SetText(*reached, path.back(), text);
        const Any value(Wide(text));
        OneIn(2) ? place.real->SetPathProperty(path, value) : place.real->SetPathProperty(path, Any(value));
        return;
    }
    // An empty value clears; a substyle would then belong to nobody, so the copying form is the one to take.
    Clear(*reached, path.back());
    if (reached->category->Of(path.back()).kind == Kind::Substyle)
    {
        place.real->SetPathProperty(path, static_cast<const Any&>(Any(static_cast<const Style*>(nullptr))));
    }
    else
    {
        SetOrDefault(*reached, path.back(), nullptr);
        place.real->SetPathProperty(path, Any(std::vector<Style*>()));
    }
}

void Pair::ChangeParent()
{
    const Place place = AnyPlace();
    const Place parent = OneIn(3) ? Place() : AnyTopOf(place.model->category);
    if (!WouldClose(place.model, parent.model))
    {
        place.model->parent = parent.model;
        place.real->SetParent(parent.real);
    }
}

void Pair::ChangeList()
{
    const Place place = AnyPlace();
    const PropertyKey key = AnyKey(*place.model->category, Kind::List);
    if (key == PropertyKey::Empty)
    {
        return;
    }
    const ModelCategory* element = place.model->category->Of(key).element;
    ModelValue list;
    list.kind = Kind::List;
    std::vector<std::unique_ptr<Style>> elements;
    std::vector<Style*> pointers;
    for (std::size_t count = Below(3); count > 0; --count)
    {
        const Place given = OneIn(4) ? AnyPlaceOf(element) : Place();
        const Place parent = AnyTopOf(element);
        list.list.push_back(given.model != nullptr ? Copy(*given.model) : std::make_unique<ModelStyle>(*element));
        elements.push_back(given.real != nullptr ? std::make_unique<Style>(*given.real)
                                                 : std::make_unique<Style>(parent.real, element->name));
        list.list.back()->parent = given.model != nullptr ? given.model->parent : parent.model;
        const PropertyKey text = AnyKey(*element, Kind::Text);
        SetText(*list.list.back(), text, AnyText());
        elements.back()->SetProperty(text, Any(Wide(Own(*list.list.back(), text)->text)));
        pointers.push_back(elements.back().get());
    }
    Set(*place.model, key, std::move(list));
    place.real->SetProperty(key, Any(pointers));
}

void Pair::ChangeSubstyle()
{
    const Place place = AnyPlace();
    const PropertyKey key = AnyKey(*place.model->category, Kind::Substyle);
    if (key == PropertyKey::Empty)
    {
        return;
    }
    const ModelCategory* element = place.model->category->Of(key).element;
    if (const Place given = AnyPlaceOf(element); given.model != nullptr)
    {
        if (OneIn(2))
        {
            Modelling::SetSubstyle(*place.model, key, Copy(*given.model));
            return OneIn(2) ? place.real->SetSubstyle(key, given.real) : place.real->SetPathSubstyle({key}, given.real);
        }
        const auto old = place.model->own.extract(key); // the other form removes the old value before it copies
        Modelling::SetSubstyle(*place.model, key, Copy(*given.model));
        place.real->SetProperty(key, static_cast<const Any&>(Any(given.real)));
    }
}

void Pair::ClearOne()
{
    const Place place = AnyPlace();
    const std::vector<PropertyKey> path = AnyPath(*place.model);
    ModelStyle* reached = place.model;
    for (std::size_t index = 0; index + 1 < path.size() && reached != nullptr; ++index)
    {
        reached = OwnSubstyle(*reached, path[index]);
    }
    const bool cleared = reached != nullptr && Modelling::Clear(*reached, path.back());
    Expect(place.real->ClearPathProperty(path) == cleared, "whether there was something to clear");
}

void Pair::RevertOne()
{
    const Place place = AnyPlace();
    const std::vector<PropertyKey> path = AnyPath(*place.model);
    const bool force = OneIn(3);
    const ModelStyle* owner = place.model->owner;
    bool inherits = force || place.model->parent != nullptr || (owner != nullptr && owner->parent != nullptr);
    ModelStyle* reached = place.model;
    for (std::size_t index = 0; index + 1 < path.size() && reached != nullptr; ++index)
    {
        reached = OwnSubstyle(*reached, path[index]);
        inherits = inherits || (reached != nullptr && reached->parent != nullptr);
    }
    const bool reverted = reached != nullptr && inherits && Modelling::Clear(*reached, path.back());
    Expect(place.real->RevertPathProperty(path, force) == reverted, "whether there was something to revert");
}

void Pair::ClearMany()
{
    const Place place = AnyPlace();
    switch (Below(3))
    {
    case 0: {
        const bool reverted = RevertAll(*place.model);
        Expect(place.real->RevertAllProperties() == reverted, "whether anything was reverted");
        return;
    }
    case 1: {
        const Place other = AnyPlace();
        for (const PropertyKey& key : OwnKeys(*other.model))
        {
            Modelling::Clear(*place.model, key);
        }
        return place.real->ClearProperties(other.real);
    }
    default:
        place.model->own.clear();
        return place.real->ClearAllProperties();
    }
}

void Pair::CopyPaths()
{
    const Place place = AnyPlace();
    const Place source = AnyPlaceOf(place.model->category);
    if (source.model == nullptr)
    {
        return;
    }
    const std::vector<PropertyPath> paths = {AnyPath(*place.model)};
    CopyPath(*place.model, paths.front(), *source.model);
    OneIn(2) ? place.real->SetPathProperty(paths.front(), source.real) : place.real->SetProperties(paths, source.real);
}

void Pair::CopyToAnother()
{
    const Place place = AnyPlace();
    const std::set<PropertyKey> keys = {AnyKey(*place.model->category), AnyKey(*place.model->category)};
    const std::unique_ptr<ModelStyle> expected =
        CopyProperties(*place.model, std::vector<PropertyKey>(keys.begin(), keys.end()));
    const std::unique_ptr<Style> copy(place.real->CopyProperties(keys));
    CompareOwn(*copy, *expected);
}

void Pair::MergeAnother()
{
    const Place place = AnyPlace();
    const Place other = AnyPlaceOf(place.model->category);
    if (other.model == nullptr)
    {
        return;
    }
    if (OneIn(3))
    {
        MergeParent(*place.model, *other.model);
        return place.real->MergeParentProperties(other.real);
    }
    const bool overwrite = OneIn(2);
    Merge(*place.model, *other.model, overwrite);
    place.real->MergeProperties(other.real, overwrite);
}

void Pair::AssignAnother()
{
    const Place place = AnyPlace();
    const Place other = AnyPlaceOf(place.model->category);
    if (other.model != nullptr && !WouldClose(place.model, other.model->parent))
    {
        Assign(*place.model, *other.model);
        *place.real = *other.real;
    }
}

void Pair::SwapWithAnother()
{
    const Place a = AnyPlace();
    const Place b = AnyPlaceOf(a.model->category);
    if (b.model != nullptr && !WouldClose(a.model, b.model->parent) && !WouldClose(b.model, a.model->parent) &&
        !Holds(*a.model, *b.model) && !Holds(*b.model, *a.model))
    {
        Modelling::SwapData(*a.model, *b.model);
        a.real->SwapData(*b.real);
    }
}

void Pair::FlattenOne()
{
    const Place place = AnyPlace();
    const bool changed = Flatten(*place.model);
    Expect(place.real->Flatten() == changed, "whether anything was flattened");
}

void Pair::FlattenACopy()
{
    const Place place = AnyPlace();
    const std::unique_ptr<ModelStyle> expected = Copy(*place.model);
    Flatten(*expected);
    const std::unique_ptr<Style> flat(place.real->CreateFlattenedStyle());
    CompareOwn(*flat, *expected);
}

void Pair::CutSome()
{
    const Place place = AnyPlace();
    const Span span(AnySpan(), OneIn(2));
    const bool direct = OneIn(2);
    RemoveDependency(*place.model, span.model, direct);
    place.real->RemoveDependency(span.Real(), direct);
}

void Pair::CutAll()
{
    const Place place = AnyPlace();
    RemoveAllDependencies(*place.model);
    place.real->RemoveAllDependencies();
    Expect(place.real->GetParent() == nullptr && !place.real->SubstylesHaveAnyParentalRelationships(),
           "a parent link is left");
}

void Pair::RemapOne()
{
    const Place place = AnyPlace();
    const Place from = AnyTop();
    const Place to = OneIn(4) ? Place() : AnyTopOf(from.model->category);
    if (!WouldClose(place.model, to.model))
    {
        Remap(*place.model, *from.model, to.model);
        place.real->RemapDependency({{from.real, to.real}});
    }
}

void Pair::Clone()
{
    const Place place = AnyPlace();
    const PropertyKey key = AnyKey(*place.model->category, Kind::Substyle);
    if (key == PropertyKey::Empty || OneIn(2))
    {
        const std::unique_ptr<Style> clone(place.real->CreateStyleCloneWithNoDependencyOnOwner());
        return CompareOwn(*clone, *CloneWithoutOwner(*place.model));
    }
    const std::unique_ptr<Style> clone(place.real->CreateSubStyleCloneWithNoDependencyOnOwner(key));
    CompareOwn(*clone, *CloneSubstyleWithoutOwner(*place.model, key));
}

void Pair::CopySubstyleOfAnother()
{
    const Place place = AnyPlace();
    const Place source = AnyPlaceOf(place.model->category);
    const PropertyKey key = AnyKey(*place.model->category, Kind::Substyle);
    if (source.model != nullptr && key != PropertyKey::Empty)
    {
        CopySubstyle(*place.model, *source.model, key);
        place.real->CopySubstyleProperties(source.real, key);
    }
}

void Pair::DeleteSome()
{
    const std::vector<Place> places = AnySpan();
    const Span span(places, OneIn(2));
    std::vector<std::string> gone;
    for (const auto& [name, model] : m_models)
    {
        if (IsIn(span.model, model.get()))
        {
            gone.push_back(name);
        }
    }
    if (!OneIn(2) || m_models.size() < gone.size() + 4)
    {
        return; // deleting is rare, or nothing is left to be done
    }
    std::set<const ModelStyle*> done;
    for (const auto& [name, model] : m_models)
    {
        CutParentsFirst(*model, span.model, done);
    }
    Expect(m_sheet.DeleteStyles(span.Real()) == !gone.empty(), "whether anything was deleted");
    std::erase_if(m_handles, [&span](const Handle& handle) { return IsIn(span.model, handle.root); });
    for (const std::string& name : gone)
    {
        m_models.erase(name);
    }
}

} // namespace Styles::Modelling
