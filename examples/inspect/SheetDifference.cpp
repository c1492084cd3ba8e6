#include "SheetDifference.h"

#include "Output.h"
#include "ValueTexts.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

namespace Inspect
{

namespace
{

/// Of styles that moved as wholes, so many values are compared in all; what comes then counts as different.
constexpr std::size_t MaximalCompared = 5000000;

using Kind = Difference::Kind;

/// A sheet, and where its values come from.
struct Side
{
    explicit Side(Styles::StyleSheet& side) : sheet(side), origins(side) {}

    std::string NameOfParent(const Style* style) const
    {
        return style != nullptr && style->GetParent() != nullptr ? origins.GetName(*style->GetParent()) : "";
    }

    Styles::StyleSheet& sheet; // whose identity is asked for with a mutable operation
    const Origins origins;
};

/// The same place in a style of each sheet.
struct Pair
{
    const Style* own[2];       ///< the style's own style there; null for none
    const Style* effective[2]; ///< the style that is effective there; null for none
};

/// A property of a style in both sheets.
struct Values
{
    const Any* own[2] = {nullptr, nullptr};
    const Any* effective[2] = {nullptr, nullptr}; ///< null where the look-up fails
};

bool AreSameNames(const VelString& one, const VelString& other)
{
    return one.CompareNoCase(other) == 0;
}

const Style* SubstyleOf(const Any* value)
{
    Style* const* substyle = value != nullptr ? value->GetIf<Style*>() : nullptr;
    return substyle != nullptr ? *substyle : nullptr;
}

const StyleList* ListOf(const Any* value)
{
    return value != nullptr ? value->GetIf<StyleList>() : nullptr;
}

const Style* ElementOf(const Any* value, std::size_t index)
{
    const StyleList* list = ListOf(value);
    return list != nullptr && index < list->size() ? (*list)[index] : nullptr;
}

std::size_t SizeOf(const Any* value)
{
    const StyleList* list = ListOf(value);
    return list != nullptr ? list->size() : 0;
}

class Comparer
{
public:
    Comparer(Styles::StyleSheet& first, Styles::StyleSheet& second) : m_sides{Side(first), Side(second)} {}

    void CompareHeadings()
    {
        const auto compare = [this](const char* path, const std::string& before, const std::string& after) {
            if (before != after)
            {
                Add(Kind::Heading, path, before, after);
            }
        };
        compare("version", std::to_string(m_sides[0].sheet.GetVersion()),
                std::to_string(m_sides[1].sheet.GetVersion()));
        compare("id", TextOf(m_sides[0].sheet.GetExternalID()), TextOf(m_sides[1].sheet.GetExternalID()));
    }

    void AddOnly(std::size_t side, const VelString& name, const Style& style)
    {
        m_name = name;
        m_category = style.GetCategoryName();
        const std::string text = DescribeStyle(m_sides[side].origins, &style);
        Add(side == 0 ? Kind::Removed : Kind::Added, "", side == 0 ? text : "", side == 0 ? "" : text);
    }

    void Compare(const VelString& firstName, const Style& first, const VelString& secondName, const Style& second)
    {
        m_name = secondName;
        m_category = second.GetCategoryName();
        if (firstName != secondName)
        {
            Add(Kind::Renamed, "", Quoted(firstName), Quoted(secondName));
        }
        if (first.GetCategoryName() != second.GetCategoryName())
        {
            Add(Kind::Category, "", Shown(first.GetCategoryName().GetText()),
                Shown(second.GetCategoryName().GetText()));
        }
        m_isIdentityTold =
            first.GetExternalID() != second.GetExternalID() || first.GetExternalName() != second.GetExternalName();
        const Pair pair{{&first, &second}, {&first, &second}};
        CompareIdentity("", pair);
        CompareParents("", pair);
        CompareProperties("", pair);
    }

    std::vector<Difference> differences;

private:
    void Add(Kind kind, const std::string& path, const std::string& before, const std::string& after)
    {
        differences.push_back({kind, m_name, m_category, path, before, after});
    }

    static std::string TextOf(const VelString& text) { return text.empty() ? "" : Quoted(text); }

    void CompareText(const std::string& path, const VelString& before, const VelString& after)
    {
        if (before != after)
        {
            Add(before.empty()  ? Kind::Set
                : after.empty() ? Kind::Cleared
                                : Kind::Changed,
                path, TextOf(before), TextOf(after));
        }
    }

    void CompareIdentity(const std::string& path, const Pair& pair)
    {
        if (pair.own[0] != nullptr && pair.own[1] != nullptr)
        {
            const std::string start = path.empty() ? "" : path + '.';
            CompareText(start + "id", pair.own[0]->GetExternalID(), pair.own[1]->GetExternalID());
            CompareText(start + "original", pair.own[0]->GetExternalName(), pair.own[1]->GetExternalName());
        }
    }

    void CompareParents(const std::string& path, const Pair& pair)
    {
        const Style* parents[2] = {pair.own[0]->GetParent(), pair.own[1]->GetParent()};
        const std::string names[2] = {m_sides[0].NameOfParent(pair.own[0]), m_sides[1].NameOfParent(pair.own[1])};
        if (names[0] != names[1] &&
            (parents[0] == nullptr || parents[1] == nullptr ||
             !AreSameNames(m_sides[0].sheet.GetStyleName(parents[0]), m_sides[1].sheet.GetStyleName(parents[1]))))
        {
            Add(Kind::Reparented, path, names[0], names[1]);
        }
    }

    /// The properties of the category that the second style has, and those that only the category of the first knows.
    void CompareProperties(const std::string& path, const Pair& pair)
    {
        const auto categoryOf = [](const Style* style) { return style != nullptr ? style->GetCategory() : nullptr; };
        const auto first = categoryOf(pair.own[0]);
        const auto second = categoryOf(pair.own[1]);
        for (const Property& property : PropertiesOf(second.get()))
        {
            CompareProperty(path, pair, property);
        }
        for (const Property& property : PropertiesOf(first != second ? first.get() : nullptr))
        {
            if (second == nullptr || FindProperty(*second, property.key).definition == nullptr)
            {
                CompareProperty(path, pair, property);
            }
        }
    }

    static Values ValuesOf(const Pair& pair, const Property& property)
    {
        Values values;
        for (const std::size_t side : {0u, 1u})
        {
            const Style* own = pair.own[side];
            const bool isOwn = own != nullptr && own->DoesOverrideProperty(property.key);
            values.own[side] = isOwn ? &own->GetProperty(property.key) : nullptr;
        }
        if (values.own[0] == nullptr && values.own[1] == nullptr)
        {
            return values; // most are; the look-ups would be in vain
        }
        for (const std::size_t side : {0u, 1u})
        {
            const Style* style = pair.effective[side];
            try
            {
                values.effective[side] = values.own[side] != nullptr ? values.own[side]
                                         : style != nullptr          ? &style->GetProperty(property.key)
                                                                     : &property.definition->GetDefaultValue();
            }
            catch (const std::exception&) // a parent of another category, which has no such value
            {}
        }
        return values;
    }

    void CompareProperty(const std::string& path, const Pair& pair, const Property& property)
    {
        const Values values = ValuesOf(pair, property);
        if (values.own[0] == nullptr && values.own[1] == nullptr)
        {
            return;
        }
        const std::string place = PathTo(path, property.key);
        const bool isSubstyle = property.definition->IsSubstyle();
        const bool areBothOwn = values.own[0] != nullptr && values.own[1] != nullptr;
        if (!areBothOwn || !isSubstyle)
        {
            CompareValues(place, property, values, areBothOwn);
        }
        if (isSubstyle)
        {
            CompareInner(place, {{SubstyleOf(values.own[0]), SubstyleOf(values.own[1])},
                                 {SubstyleOf(values.effective[0]), SubstyleOf(values.effective[1])}});
        }
        else if (property.isList)
        {
            CompareElements(place, values);
        }
    }

    std::string Describe(std::size_t side, const Property& property, const Any* value) const
    {
        return value != nullptr ? DescribeValue(m_sides[side].origins, *property.definition, *value) : "";
    }

    void CompareValues(const std::string& place, const Property& property, const Values& values, bool areBothOwn)
    {
        const std::string before = Describe(0, property, values.effective[0]);
        const std::string after = Describe(1, property, values.effective[1]);
        if (areBothOwn)
        {
            if (before != after)
            {
                Add(Kind::Changed, place, before, after);
            }
            return;
        }
        const bool isSet = values.own[1] != nullptr;
        const bool isSame = HaveSameEffect(property, before, values.effective[0], after, values.effective[1]);
        Add(isSame ? (isSet ? Kind::NowOwn : Kind::NowInherited) : (isSet ? Kind::Set : Kind::Cleared), place, before,
            after);
    }

    void CompareElements(const std::string& place, const Values& values)
    {
        const std::size_t count = std::max(SizeOf(values.own[0]), SizeOf(values.own[1]));
        for (std::size_t index = 0; index < count; ++index)
        {
            const std::string path = place + '[' + std::to_string(index) + ']';
            CompareInner(path, {{ElementOf(values.own[0], index), ElementOf(values.own[1], index)},
                                {ElementOf(values.effective[0], index), ElementOf(values.effective[1], index)}});
        }
    }

    /// A style inside, which both or one of the sheets have.
    void CompareInner(const std::string& path, const Pair& pair)
    {
        if (pair.own[0] != nullptr && pair.own[1] != nullptr)
        {
            if (!m_isIdentityTold) // which is passed on to styles inside
            {
                CompareIdentity(path, pair);
            }
            CompareParents(path, pair);
        }
        if (pair.own[0] != nullptr || pair.own[1] != nullptr)
        {
            CompareProperties(path, pair);
        }
    }

    bool HaveSameEffect(const Property& property, const std::string& before, const Any* first, const std::string& after,
                        const Any* second)
    {
        if (first == nullptr || second == nullptr)
        {
            return false;
        }
        if (property.definition->IsSubstyle())
        {
            return HaveSameEffect(SubstyleOf(first), SubstyleOf(second));
        }
        if (!property.isList)
        {
            return before == after;
        }
        bool isSame = SizeOf(first) == SizeOf(second);
        for (std::size_t index = 0; isSame && index < SizeOf(first); ++index)
        {
            isSame = HaveSameEffect(ElementOf(first, index), ElementOf(second, index));
        }
        return isSame;
    }

    /// Whether all values of the styles are the same, through those inside.
    bool HaveSameEffect(const Style* first, const Style* second)
    {
        if (first == nullptr || second == nullptr || m_compared > MaximalCompared)
        {
            return first == second;
        }
        bool areComplete[2] = {false, false};
        const auto before = CollectEffectiveValues(m_sides[0].origins, *first, areComplete[0]);
        const auto after = CollectEffectiveValues(m_sides[1].origins, *second, areComplete[1]);
        m_compared += before.size() + after.size();
        const auto isSame = [](const EffectiveValue& one, const EffectiveValue& other) {
            const bool areSubstyles = SubstyleOf(one.value) != nullptr && SubstyleOf(other.value) != nullptr;
            return one.path == other.path && one.isClosed == other.isClosed && (areSubstyles || one.text == other.text);
        };
        return areComplete[0] && areComplete[1] &&
               std::equal(before.begin(), before.end(), after.begin(), after.end(), isSame);
    }

    const Side m_sides[2];
    VelString m_name;
    PropertyKey m_category;
    bool m_isIdentityTold = false;
    std::size_t m_compared = 0;
};

} // namespace

std::vector<Difference> CompareSheets(Styles::StyleSheet& first, Styles::StyleSheet& second, Progress* progress)
{
    const std::vector<VelString> before = first.GetStyleNames();
    const std::vector<VelString> after = second.GetStyleNames();
    const ProgressPhase phase(progress, "comparing", std::max(before.size(), after.size()));
    Comparer comparer(first, second);
    comparer.CompareHeadings();
    auto one = before.begin();
    auto other = after.begin();
    while (one != before.end() || other != after.end())
    {
        const int order = one == before.end() ? 1 : other == after.end() ? -1 : one->CompareNoCase(*other);
        const Style* removed = order <= 0 ? first.GetStyle(*one) : nullptr;
        const Style* added = order >= 0 ? second.GetStyle(*other) : nullptr;
        if (order == 0)
        {
            comparer.Compare(*one, *removed, *other, *added);
        }
        else
        {
            comparer.AddOnly(order < 0 ? 0 : 1, order < 0 ? *one : *other, order < 0 ? *removed : *added);
        }
        one += order <= 0 ? 1 : 0;
        other += order >= 0 ? 1 : 0;
        CountStep(progress);
    }
    return std::move(comparer.differences);
}

const char* NameOf(Difference::Kind kind)
{
    static constexpr const char* names[] = {"heading", "added",   "removed", "renamed", "category",     "reparented",
                                            "set",     "cleared", "changed", "now-own", "now-inherited"};
    return names[static_cast<std::size_t>(kind)];
}

} // namespace Inspect
