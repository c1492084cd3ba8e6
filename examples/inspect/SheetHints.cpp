#include "SheetHints.h"

#include "Output.h"
#include "OwnValues.h"
#include "Progress.h"

#include <algorithm>
#include <exception>
#include <functional>
#include <map>
#include <utility>

namespace Inspect
{

namespace
{

/// A look-up visits every parent. In a sheet of many styles longer chains take too long, and no drawing has them.
constexpr std::size_t LongChain = 200;
/// So many styles of a closed chain are named.
constexpr std::size_t ShownOfChain = 8;

using VisitStyle = std::function<void(const VelString& name, const Json::Object& style, const Spot& spot)>;

/// Visits the styles of a document, in its order.
void ForEachStyle(const CheckedDocument& checked, const VisitStyle& visit)
{
    const Spot spot(checked.positions);
    const auto* root = checked.document.value.GetIf<Json::Object>();
    for (std::size_t block = 0; root != nullptr && block < root->GetSize(); ++block)
    {
        const auto* styles = root->GetValue(block)->GetIf<Json::Object>();
        if (styles == nullptr || FindCategory(root->GetValueName(block)) == nullptr)
        {
            continue;
        }
        const Spot blockSpot = spot.Member(*root, block);
        for (std::size_t index = 0; index < styles->GetSize(); ++index)
        {
            if (const auto* style = styles->GetValue(index)->GetIf<Json::Object>())
            {
                visit(styles->GetValueName(index), *style, blockSpot.Member(*styles, index));
            }
        }
    }
}

/// The styles of a document with their parents. No style has more than one, so following them needs no search.
class Chains
{
public:
    explicit Chains(const CheckedDocument& checked)
    {
        ForEachStyle(checked, [this](const VelString& name, const Json::Object& style, const Spot& spot) {
            m_numbers.emplace(name, m_styles.size());
            m_styles.push_back({name, {}, {}, {}, 0});
            for (std::size_t index = 0; index < style.GetSize(); ++index)
            {
                const auto* parent = style.GetValue(index)->GetIf<VelString>();
                if (parent != nullptr && style.GetValueName(index) == L"inherits")
                {
                    const Spot member = spot.Member(style, index);
                    m_styles.back() = {name, *parent, member.GetPlace(), member.GetPosition(), 0};
                }
            }
        });
    }

    std::vector<Finding> Find()
    {
        std::vector<Finding> findings;
        std::vector<std::size_t> walks(m_styles.size(), 0); // by which walk a style was met; 0 for none yet
        std::vector<std::size_t> way;
        for (std::size_t start = 0; start < m_styles.size(); ++start)
        {
            way.clear();
            std::size_t at = start;
            while (at != None && walks[at] == 0)
            {
                walks[at] = start + 1;
                way.push_back(at);
                at = ParentOf(at);
            }
            const bool isClosed = at != None && walks[at] == start + 1;
            if (isClosed && ParentOf(at) != at)
            {
                findings.push_back(Tell(at));
            }
            NoteLengths(way, isClosed ? at : None);
        }
        TellOfLongChain(findings);
        return findings;
    }

private:
    static constexpr std::size_t None = static_cast<std::size_t>(-1);

    struct Entry
    {
        VelString name;
        VelString parent;
        Place place;
        TextPosition at;
        std::size_t length = 0; ///< the number of parents, those of a closed chain once around
    };

    /// \param closing where the way came back to; none for a way that ended or met an earlier one
    void NoteLengths(const std::vector<std::size_t>& way, std::size_t closing)
    {
        const auto first = std::find(way.begin(), way.end(), closing);
        const auto around = static_cast<std::size_t>(way.end() - first);
        for (auto style = way.rbegin(); style != way.rend(); ++style)
        {
            const std::size_t parent = ParentOf(*style);
            const bool isInside = static_cast<std::size_t>(style - way.rbegin()) < around;
            m_styles[*style].length = isInside ? around : parent != None ? m_styles[parent].length + 1 : 0;
        }
    }

    void TellOfLongChain(std::vector<Finding>& findings) const
    {
        const auto found =
            std::find_if(m_styles.begin(), m_styles.end(), [](const Entry& style) { return style.length > LongChain; });
        if (found != m_styles.end())
        {
            findings.push_back({&Rules::LongChain, found->place, found->at,
                                "more than " + Counted(LongChain, "parent") +
                                    ", one behind the other; values are not compared with what is inherited"});
        }
    }

    std::size_t ParentOf(std::size_t style) const
    {
        const auto parent = m_numbers.find(m_styles[style].parent);
        return m_styles[style].parent.empty() || parent == m_numbers.end() ? None : parent->second;
    }

    /// The chain that leads from this style back to it, told at the one of its styles that comes first.
    Finding Tell(std::size_t style) const
    {
        std::size_t first = style;
        for (std::size_t at = ParentOf(style); at != style; at = ParentOf(at))
        {
            first = std::min(first, at);
        }
        std::string names = Quoted(m_styles[first].name);
        std::size_t count = 1;
        for (std::size_t at = ParentOf(first); at != first; at = ParentOf(at), ++count)
        {
            names += count < ShownOfChain ? " < " + Quoted(m_styles[at].name) : count == ShownOfChain ? " < ..." : "";
        }
        return {&Rules::ClosedChain, m_styles[first].place, m_styles[first].at,
                "the parents lead back: " + names + " < " + Quoted(m_styles[first].name) + ", " +
                    Counted(count, "style")};
    }

    std::vector<Entry> m_styles;
    std::map<VelString, std::size_t, VelUtils::String::LessThanCaseInsensitive> m_numbers;
};

class RedundancySearch
{
public:
    explicit RedundancySearch(std::vector<Finding>& findings) : m_findings(findings) {}

    void Look(const Style& style, const Json::Object& object, const Spot& spot)
    {
        const auto category = style.GetCategory();
        for (std::size_t index = 0; category != nullptr && index < object.GetSize(); ++index)
        {
            const Property property = FindProperty(*category, PropertyKey(object.GetValueName(index)));
            if (property.definition != nullptr && style.DoesOverrideProperty(property.key))
            {
                LookAtValue(style, property, *object.GetValue(index), spot.Member(object, index));
            }
        }
    }

private:
    void LookAtValue(const Style& style, const Property& property, const Json::Variant& json, const Spot& spot)
    {
        const Any& own = style.GetProperty(property.key);
        Style* const* substyle = own.GetIf<Style*>();
        const auto* object = json.GetIf<Json::Object>();
        if (substyle != nullptr && *substyle != nullptr && object != nullptr)
        {
            Look(**substyle, *object, spot);
        }
        else if (const auto* list = own.GetIf<StyleList>())
        {
            LookAtList(*list, json.GetIf<Json::Array>(), spot);
        }
        else if (substyle == nullptr && IsSameWithout(style, property, own))
        {
            m_findings.push_back({&Rules::SameAsInherited, spot.GetPlace(), spot.GetPosition(),
                                  "the value is the same without this member"});
        }
    }

    /// Reading passes over elements that are no objects.
    void LookAtList(const StyleList& list, const Json::Array* elements, const Spot& spot)
    {
        std::size_t next = 0;
        for (std::size_t index = 0; elements != nullptr && index < elements->GetSize(); ++index)
        {
            const auto* object = elements->GetValue(index)->GetIf<Json::Object>();
            if (object != nullptr && next < list.size() && list[next] != nullptr)
            {
                Look(*list[next], *object, spot.Element(index));
            }
            next += object != nullptr ? 1 : 0;
        }
    }

    static bool IsSameWithout(const Style& style, const Property& property, const Any& own)
    {
        try
        {
            return property.definition->IsEqual(own, style.GetInheritedProperty(property.key));
        }
        catch (const std::exception&) // a parent of another category, which has no such value
        {
            return false;
        }
    }

    std::vector<Finding>& m_findings;
};

} // namespace

std::vector<Finding> FindRepeatedMembers(const DocumentPositions& positions)
{
    std::vector<Finding> findings;
    for (const RepeatedMember& member : positions.GetRepeatedMembers())
    {
        findings.push_back({&Rules::RepeatedMember, member.place, member.at,
                            "stands in line " + std::to_string(member.before.line) + ", column " +
                                std::to_string(member.before.column) + " already; the last one counts"});
    }
    return findings;
}

std::vector<Finding> FindStrangeChains(const CheckedDocument& checked)
{
    return Chains(checked).Find();
}

std::vector<Finding> FindSameAsInherited(const CheckedDocument& checked, const Styles::StyleSheet& sheet)
{
    std::vector<Finding> findings;
    RedundancySearch search(findings);
    const ProgressPhase phase(checked.progress, "comparing", sheet.GetStyles().size());
    ForEachStyle(checked, [&](const VelString& name, const Json::Object& object, const Spot& spot) {
        if (const Style* style = sheet.GetStyle(name))
        {
            search.Look(*style, object, spot);
        }
        CountStep(checked.progress);
    });
    return findings;
}

} // namespace Inspect
