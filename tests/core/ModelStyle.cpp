#include "core/ModelStyle.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Styles::Modelling
{

namespace
{

constexpr int MostStyles = 3000;
int stylesAlive = 0;

} // namespace

const ModelDefinition& ModelCategory::Of(const PropertyKey& key) const
{
    return *std::find_if(definitions.begin(), definitions.end(),
                         [&key](const ModelDefinition& definition) { return definition.key == key; });
}

std::vector<ModelDefinition> ModelCategory::Those(Kind kind) const
{
    std::vector<ModelDefinition> those;
    std::copy_if(definitions.begin(), definitions.end(), std::back_inserter(those),
                 [kind](const ModelDefinition& definition) { return definition.kind == kind; });
    return those;
}

ModelStyle::ModelStyle(const ModelCategory& categoryOfStyle) : category(&categoryOfStyle)
{
    if (stylesAlive == MostStyles)
    {
        throw TooLarge();
    }
    ++stylesAlive;
}

ModelStyle::~ModelStyle()
{
    --stylesAlive;
}

ModelValue ModelValue::Copy() const
{
    ModelValue copy;
    copy.kind = kind;
    copy.text = text;
    copy.substyle = substyle != nullptr ? Modelling::Copy(*substyle) : nullptr;
    for (const auto& element : list)
    {
        copy.list.push_back(Modelling::Copy(*element));
    }
    return copy;
}

std::unique_ptr<ModelStyle> Copy(const ModelStyle& style)
{
    auto copy = std::make_unique<ModelStyle>(*style.category);
    copy->parent = style.parent;
    for (const auto& [key, value] : style.own)
    {
        Set(*copy, key, value.Copy());
    }
    return copy;
}

bool AreEqual(const ModelStyle& a, const ModelStyle& b)
{
    return a.category == b.category && a.parent == b.parent &&
           std::equal(a.own.begin(), a.own.end(), b.own.begin(), b.own.end(),
                      [](const auto& x, const auto& y) { return x.first == y.first && AreEqual(x.second, y.second); });
}

bool AreEqual(const ModelValue& a, const ModelValue& b)
{
    switch (a.kind)
    {
    case Kind::Text:
        return a.text == b.text;
    case Kind::Substyle:
        return AreEqual(*a.substyle, *b.substyle);
    default:
        // Lists of different lengths compare equal.
        return a.list.size() != b.list.size() ||
               std::equal(a.list.begin(), a.list.end(), b.list.begin(),
                          [](const auto& x, const auto& y) { return AreEqual(*x, *y); });
    }
}

bool IsIn(const ModelSpan& span, const ModelStyle* style)
{
    return style != nullptr && std::find(span.begin(), span.end(), style) != span.end();
}

std::vector<PropertyKey> OwnKeys(const ModelStyle& style)
{
    std::vector<PropertyKey> keys;
    for (const auto& entry : style.own)
    {
        keys.push_back(entry.first);
    }
    return keys;
}

std::vector<ModelStyle*> Inside(const ModelValue& value)
{
    std::vector<ModelStyle*> inside;
    if (value.substyle != nullptr)
    {
        inside.push_back(value.substyle.get());
    }
    for (const auto& element : value.list)
    {
        inside.push_back(element.get());
    }
    return inside;
}

std::vector<ModelStyle*> Inside(const ModelStyle& style)
{
    std::vector<ModelStyle*> inside;
    for (const auto& entry : style.own)
    {
        const std::vector<ModelStyle*> more = Inside(entry.second);
        inside.insert(inside.end(), more.begin(), more.end());
    }
    return inside;
}

bool Holds(const ModelStyle& style, const ModelStyle& wanted)
{
    const std::vector<ModelStyle*> inside = Inside(style);
    return std::any_of(inside.begin(), inside.end(),
                       [&wanted](const ModelStyle* inner) { return inner == &wanted || Holds(*inner, wanted); });
}

const ModelValue* Own(const ModelStyle& style, const PropertyKey& key)
{
    const auto entry = style.own.find(key);
    return entry != style.own.end() ? &entry->second : nullptr;
}

/// From the parent; without one, from the same place in what the nearest style around it inherits from.
const ModelValue* Inherited(const ModelStyle& style, const PropertyKey& key)
{
    std::vector<PropertyKey> place;
    const ModelStyle* heir = &style;
    while (heir->parent == nullptr && heir->owner != nullptr)
    {
        place.push_back(heir->ownersKey);
        heir = heir->owner;
    }
    const ModelStyle* source = heir->parent;
    for (; source != nullptr && !place.empty(); place.pop_back())
    {
        source = EffectiveSubstyle(*source, place.back());
    }
    return source != nullptr ? Effective(*source, key) : nullptr;
}

const ModelValue* Effective(const ModelStyle& style, const PropertyKey& key)
{
    const ModelValue* own = Own(style, key);
    return own != nullptr ? own : Inherited(style, key);
}

ModelStyle* OwnSubstyle(const ModelStyle& style, const PropertyKey& key)
{
    const ModelValue* value = Own(style, key);
    return value != nullptr ? value->substyle.get() : nullptr;
}

ModelStyle* EffectiveSubstyle(const ModelStyle& style, const PropertyKey& key)
{
    const ModelValue* value = Effective(style, key);
    return value != nullptr ? value->substyle.get() : nullptr;
}

void Set(ModelStyle& style, const PropertyKey& key, ModelValue value)
{
    if (value.substyle != nullptr)
    {
        value.substyle->owner = &style;
        value.substyle->ownersKey = key;
    }
    std::swap(style.own[key], value);
}

void Replace(ModelStyle& style, const PropertyKey& key, const ModelValue& value)
{
    const auto old = style.own.extract(key);
    Set(style, key, value.Copy());
}

void SetText(ModelStyle& style, const PropertyKey& key, const std::string& text)
{
    ModelValue value;
    value.text = text;
    Set(style, key, std::move(value));
}

void SetSubstyle(ModelStyle& style, const PropertyKey& key, std::unique_ptr<ModelStyle> substyle)
{
    ModelValue value;
    value.kind = Kind::Substyle;
    value.substyle = std::move(substyle);
    Set(style, key, std::move(value));
}

void SetOrDefault(ModelStyle& style, const PropertyKey& key, const ModelValue* value)
{
    const ModelDefinition& definition = style.category->Of(key);
    if (value == nullptr && definition.kind == Kind::Substyle)
    {
        Clear(style, key);
        return;
    }
    ModelValue initial;
    initial.kind = definition.kind;
    initial.text = definition.defaultText;
    Set(style, key, value != nullptr ? value->Copy() : std::move(initial));
}

bool Clear(ModelStyle& style, const PropertyKey& key)
{
    return !style.own.extract(key).empty();
}

bool RevertAll(ModelStyle& style)
{
    bool changed = false;
    for (const PropertyKey& key : OwnKeys(style))
    {
        ModelStyle* substyle = OwnSubstyle(style, key);
        changed |= substyle != nullptr ? RevertAll(*substyle) : Clear(style, key);
    }
    return changed;
}

ModelStyle& GetOrCreate(ModelStyle& style, const PropertyKey& key)
{
    if (OwnSubstyle(style, key) == nullptr)
    {
        SetSubstyle(style, key, std::make_unique<ModelStyle>(*style.category->Of(key).element));
    }
    return *OwnSubstyle(style, key);
}

void Assign(ModelStyle& style, const ModelStyle& other)
{
    const std::unique_ptr<ModelStyle> copy = Copy(other);
    SwapData(style, *copy);
}

void SwapData(ModelStyle& a, ModelStyle& b)
{
    std::swap(a.category, b.category);
    std::swap(a.parent, b.parent);
    std::swap(a.own, b.own);
    for (ModelStyle* style : {&a, &b})
    {
        for (auto& entry : style->own)
        {
            if (entry.second.substyle != nullptr)
            {
                entry.second.substyle->owner = style;
            }
        }
    }
}

std::unique_ptr<ModelStyle> CopyProperties(const ModelStyle& style, const std::vector<PropertyKey>& keys)
{
    auto copy = std::make_unique<ModelStyle>(*style.category);
    for (const PropertyKey& key : keys)
    {
        SetOrDefault(*copy, key, Effective(style, key));
    }
    return copy;
}

void CopyPath(ModelStyle& target, const std::vector<PropertyKey>& path, const ModelStyle& source)
{
    ModelStyle* to = &target;
    const ModelStyle* from = &source;
    for (std::size_t index = 0; index + 1 < path.size(); ++index)
    {
        to = &GetOrCreate(*to, path[index]);
        from = OwnSubstyle(*from, path[index]);
        if (from == nullptr)
        {
            Clear(*to, path[index + 1]);
            return;
        }
    }
    if (const ModelValue* value = Own(*from, path.back()))
    {
        Replace(*to, path.back(), *value);
    }
    else
    {
        Clear(*to, path.back());
    }
}

} // namespace Styles::Modelling
