// Holding what styles say against the plain model.

#include "core/ModelPair.h"

#include <VelUtils/Stream.h>

#include <algorithm>
#include <functional>

namespace Styles::Modelling
{

void Pair::CompareOwn(const Style& real, const ModelStyle& model)
{
    Expect(real.GetCategoryName() == model.category->name, "the category");
    Expect(real.GetParent() == RealTop(model.parent), "the parent");
    const std::set<PropertyKey> keys = GetOverriddenProperties(real);
    if (!Expect(std::vector<PropertyKey>(keys.begin(), keys.end()) == OwnKeys(model), "the own keys"))
    {
        return;
    }
    for (const auto& [key, value] : model.own)
    {
        Any own;
        real.GetOverrideProperty(key, own);
        CompareOwn(own, value, real, key);
    }
}

void Pair::CompareOwn(const Any& real, const ModelValue& model, const Style& holder, const PropertyKey& key)
{
    if (model.kind == Kind::Text)
    {
        Expect(real == Any(Wide(model.text)), "an own text");
        return;
    }
    if (model.kind == Kind::Substyle)
    {
        Style* substyle = real.Get<Style*>();
        Expect(substyle->GetOwner() == &holder && substyle->GetOwnersSubstylePropertyName() == key, "an owner");
        return CompareOwn(*substyle, *model.substyle);
    }
    const auto& list = real.Get<std::vector<Style*>>();
    if (Expect(list.size() == model.list.size(), "the size of an own list"))
    {
        for (std::size_t index = 0; index < list.size(); ++index)
        {
            Expect(list[index]->GetOwner() == nullptr, "the owner of an element");
            CompareOwn(*list[index], *model.list[index]);
        }
    }
}

void Pair::CompareValue(const Any& real, const ModelValue* model, const ModelDefinition& definition)
{
    switch (definition.kind)
    {
    case Kind::Text:
        Expect(real == Any(Wide(model != nullptr ? model->text : definition.defaultText)), "an effective text");
        return;
    case Kind::Substyle:
        Expect(real.Get<Style*>() == Counterpart(model != nullptr ? model->substyle.get() : nullptr),
               "an effective substyle");
        return;
    default:
        const auto& list = real.Get<std::vector<Style*>>();
        Expect(list.size() == (model != nullptr ? model->list.size() : 0), "the size of an effective list");
        for (std::size_t index = 0; index < list.size() && m_differences.empty(); ++index)
        {
            Expect(list[index] == Counterpart(model->list[index].get()), "an element of an effective list");
        }
    }
}

void Pair::CompareEffect(const Style& real, const ModelStyle& model)
{
    for (const ModelDefinition& definition : model.category->definitions)
    {
        const PropertyKey& key = definition.key;
        const ModelValue* effective = Effective(model, key);
        const ModelValue* inherited = Inherited(model, key);
        CompareValue(real.GetProperty(key), effective, definition);
        CompareValue(real.GetInheritedProperty(key), inherited, definition);
        Any value;
        Expect(real.GetProperty(key, value) == (effective != nullptr), "whether a value is the default");
        Expect(real.GetInheritedProperty(key, value) == (inherited != nullptr), "whether the default is inherited");
        Expect(real.DoesOverrideProperty(key) == (Own(model, key) != nullptr), "whether a value is its own");
        if (definition.kind == Kind::Substyle)
        {
            CompareSubstyleValues(real, model, key);
        }
    }
}

void Pair::CompareSubstyleValues(const Style& real, const ModelStyle& model, const PropertyKey& key)
{
    const ModelStyle* own = OwnSubstyle(model, key);
    const ModelStyle* substyle = EffectiveSubstyle(model, key);
    for (const ModelDefinition& definition : model.category->Of(key).element->definitions)
    {
        const ModelValue* expected = substyle != nullptr ? Effective(*substyle, definition.key) : nullptr;
        CompareValue(GetSubstyleProperty(real, key, definition.key), expected, definition);
        Any value;
        Expect(GetSubstyleProperty(real, key, definition.key, value) == (expected != nullptr),
               "whether a value of a substyle is the default");
        CompareValue(real.GetPathProperty({key, definition.key}),
                     own != nullptr ? Effective(*own, definition.key) : nullptr, definition);
    }
    const bool overrides = own != nullptr && (own->parent != nullptr || !IsHollow(*own) || AnyInsideHasParent(*own));
    Expect(real.DoesOverridePathProperty({key, KeyOf("*")}) == overrides, "whether a substyle is overridden");
    Style& style = const_cast<Style&>(real);
    Expect(GetStyleOrSubstyle(&style, key, true) == (model.category->name == key ? &style : Counterpart(substyle)),
           "the style or its substyle");
}

void Pair::CompareQuestions(const Style& real, const ModelStyle& model)
{
    Expect(GetSubstyleParent(real) == Counterpart(SubstyleParent(model)), "the parent of a substyle");
    Expect(real.StylePropertiesHasDependencyOnOwner() == DependsOnOwner(model), "whether it depends on its owner");
    Expect(real.HasParentalDependency() == InheritsAnywhere(model), "whether it depends on any parent");
    Expect(real.SubstylesHaveAnyParentalRelationships() == AnyInsideHasParent(model), "whether a parent is inside");
    Expect(real.IsEmpty() == model.own.empty(), "whether it is empty");
    Expect(real.IsEmptyWithEmptySubstyles() == IsHollow(model), "whether it is empty but for empty styles");
    std::vector<Style*> expected;
    for (const ModelDefinition& definition : model.category->Those(Kind::Substyle))
    {
        if (const ModelStyle* substyle = OwnSubstyle(model, definition.key))
        {
            expected.push_back(Counterpart(substyle));
        }
    }
    Expect(real.GetNumSubstyles() == static_cast<int>(expected.size()), "the number of substyles");
    Expect(real.GetLastSubstyle() == Counterpart(LastSubstyle(model)), "the last substyle");
    std::vector<Style*> visited;
    const auto visit = [&visited](Style* substyle) {
        visited.push_back(substyle);
        return true;
    };
    Expect(ForEachSubStyle(const_cast<Style*>(&real), visit, false, {}), "whether the visit went on to the end");
    Expect(visited == expected, "the substyles that are visited");
}

void Pair::CompareVisits(Style& real, const ModelStyle& model)
{
    std::vector<std::pair<Style*, PropertyKey>> visited;
    Expect(real.ProcessProperties([&visited](Any&, Style* holder, const PropertyKey& key) {
        visited.emplace_back(holder, key);
        return true;
    }),
           "whether all values were visited");
    std::vector<std::pair<Style*, PropertyKey>> expected;
    for (const auto& [holder, key] : Texts(model))
    {
        expected.emplace_back(Counterpart(holder), key);
    }
    Expect(visited == expected, "the values that are visited");
    const std::vector<Style*> found = SubStylesToStyles(StylesToSubStyles({&real, nullptr}));
    Expect(found == std::vector<Style*>{&real, nullptr}, "a style by its handle");
}

void Pair::CompareWithAnother(const Place& place)
{
    const Place other = AnyPlaceOf(place.model->category);
    if (other.model == nullptr)
    {
        return;
    }
    const bool areEqual = AreEqual(*place.model, *other.model);
    Expect((*place.real == *other.real) == areEqual, "whether two styles are equal");
    const bool isLess = *place.real < *other.real;
    const bool isGreater = *other.real < *place.real;
    Expect(areEqual ? !isLess && !isGreater : isLess != isGreater, "the order of two styles");
}

void Pair::CompareOverrides(const Style& real, const ModelStyle& model)
{
    Expect(GetOverriddenPropertyPaths(real) == OverriddenPaths(model), "the paths of the own values");
    for (const ModelDefinition& definition : model.category->Those(Kind::Substyle))
    {
        std::vector<PropertyPath> withKey;
        std::vector<PropertyPath> without;
        if (const ModelStyle* substyle = OwnSubstyle(model, definition.key))
        {
            for (const PropertyKey& key : OwnKeys(*substyle))
            {
                withKey.push_back({definition.key, key});
                without.push_back({key});
            }
        }
        Expect(GetOverriddenSubstyleProperties(real, definition.key, true) == withKey &&
                   GetOverriddenSubstyleProperties(real, definition.key, false) == without,
               "the own values of a substyle");
    }
    std::set<PropertyKey> keys;
    for (const ModelDefinition& definition : model.category->definitions)
    {
        keys.insert(definition.key);
    }
    Expect(GetStyleCategoryProperties(real) == keys, "the properties of the category");
}

void Pair::CompareDependencies()
{
    const std::vector<Place> places = AnySpan();
    ModelSpan model;
    std::vector<Style*> span;
    for (const Place& place : places)
    {
        model.push_back(place.model);
        span.push_back(place.real);
    }
    std::vector<Style*> dependants;
    m_sheet.GetDependencies(span, dependants);
    std::vector<Style*> expected;
    for (const Place& top : Tops())
    {
        if (Depends(*top.model, model, false))
        {
            expected.push_back(top.real);
        }
    }
    Expect(dependants == expected, "the styles of the sheet that depend on some");

    for (const Place& place : m_places)
    {
        Expect(place.real->HasDependency(span) == Depends(*place.model, model, false), "whether it depends on some");
        Expect(place.real->HasDirectDependency(span) == Depends(*place.model, model, true),
               "whether it depends on some directly");
        Expect(place.real->HasParentalDependency(span) == DependsThroughParent(*place.model, model),
               "whether its parents depend on some");
        for (const bool direct : {false, true})
        {
            std::set<Style*, std::less<>> members;
            for (const ModelStyle* member : Dependencies(*place.model, model, direct))
            {
                members.insert(Counterpart(member));
            }
            Expect(place.real->GetDependencies(span, direct) == std::vector<Style*>(members.begin(), members.end()),
                   "those that it depends on");
        }
    }
    const Place parent = AnyTop();
    std::vector<Style*> children;
    for (const auto& [name, child] : m_sheet.GetChildStyles(parent.real))
    {
        children.push_back(child);
    }
    std::vector<Place> expectedChildren = Tops();
    std::erase_if(expectedChildren, [&parent](const Place& top) { return top.model->parent != parent.model; });
    Expect(std::equal(children.begin(), children.end(), expectedChildren.begin(), expectedChildren.end(),
                      [](const Style* child, const Place& place) { return child == place.real; }),
           "the children of a style");
}

/// A handle finds what is at its place now.
void Pair::CompareHandles()
{
    for (const Handle& handle : m_handles)
    {
        const ModelStyle* reached = handle.root;
        for (auto key = handle.path.begin(); key != handle.path.end() && reached != nullptr; ++key)
        {
            reached = OwnSubstyle(*reached, *key);
        }
        Expect(static_cast<Style*>(handle.handle) == Counterpart(reached), "what a handle finds");
    }
}

void Pair::FindCounterparts(const Place& place)
{
    m_places.push_back(place);
    m_counterparts[place.model] = place.real;
    for (const Place& inside : Inside(place))
    {
        FindCounterparts(inside);
    }
}

void Pair::CompareAll()
{
    std::vector<VelString> names;
    for (const auto& entry : m_models)
    {
        names.push_back(Wide(entry.first));
    }
    if (!Expect(m_sheet.GetStyleNames() == names, "the names in the sheet"))
    {
        return;
    }
    m_places.clear();
    m_counterparts.clear();
    for (const Place& top : Tops())
    {
        CompareOwn(*top.real, *top.model);
        if (!m_differences.empty())
        {
            return; // there is no telling which style is which
        }
        FindCounterparts(top);
    }
    for (const Place& place : m_places)
    {
        CompareEffect(*place.real, *place.model);
        CompareQuestions(*place.real, *place.model);
        CompareVisits(*place.real, *place.model);
        CompareOverrides(*place.real, *place.model);
    }
    CompareWithAnother(AnyPlace());
    CompareDependencies();
    CompareHandles();
}

void Pair::CompareAfterAJourneyThroughADocument()
{
    m_operation = "a journey through a document";
    m_handles.clear();
    VelUtils::MemoryStream written;
    Expect(m_sheet.Export(written), "whether it is written");
    VelUtils::MemoryStream input(written.GetBytes());
    m_sheet.Clear();
    Expect(m_sheet.Import(input, /*replace*/ true), "whether it is read");
    CompareAll();
}

} // namespace Styles::Modelling
