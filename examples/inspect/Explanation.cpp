#include "Explanation.h"

#include "Failure.h"
#include "Output.h"

#include <exception>
#include <unordered_set>

namespace Inspect
{

namespace
{

/// Walks the places in the order in which a look-up visits them, without stopping at the first value.
class ChainWalk
{
public:
    ChainWalk(const PropertyKey& key, std::vector<Link>& links) : m_key(key), m_links(links) {}

    void Walk(const Style& asked)
    {
        const Style* origin = &asked; // whose default answers where the chain is closed
        const Style* run = &asked;
        Link::Kind kind = Link::Kind::Own;
        while (run != nullptr)
        {
            const Style* top = WalkParents(*run, kind);
            if (top == nullptr)
            {
                AddDefault(*origin);
                return;
            }
            origin = kind == Link::Kind::Own ? top : origin;
            kind = Link::Kind::OwnersParent;
            run = FollowOwner(*top);
        }
    }

private:
    /// Adds the run of parents. The last of them; null when the chain is closed.
    const Style* WalkParents(const Style& first, Link::Kind kind)
    {
        const Style* top = nullptr;
        for (const Style* style = &first; style != nullptr; style = style->GetParent())
        {
            if (!m_met.insert(style).second)
            {
                m_links.push_back({Link::Kind::Closed, style, nullptr, {}, nullptr, false});
                return nullptr;
            }
            const Any* own = style->DoesOverrideProperty(m_key) ? &style->GetProperty(m_key) : nullptr;
            m_links.push_back({kind, style, m_owner, {}, own, false});
            kind = Link::Kind::Parent;
            m_owner = nullptr;
            top = style;
        }
        return top;
    }

    /// The substyle at the place of `heir` in what its owner inherits from; null, with the default added, when nothing
    /// is inherited.
    const Style* FollowOwner(const Style& heir)
    {
        std::vector<PropertyKey> place;
        const Style* owner = &heir;
        while (owner->GetParent() == nullptr && owner->GetOwner() != nullptr)
        {
            place.push_back(owner->GetOwnersSubstylePropertyName());
            owner = owner->GetOwner();
        }
        const Style* source = owner->GetParent();
        for (auto key = place.rbegin(); source != nullptr && key != place.rend(); ++key)
        {
            source = source->GetSubstyle(*key, true);
        }
        if (source == nullptr)
        {
            if (owner->GetParent() != nullptr)
            {
                m_links.push_back({Link::Kind::NoSubstyle, owner->GetParent(), owner, {}, nullptr, false});
            }
            AddDefault(heir);
        }
        m_owner = owner;
        return source;
    }

    void AddDefault(const Style& style)
    {
        const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
        const PropertyKey category = style.GetCategoryName();
        m_links.push_back(
            {Link::Kind::Default, nullptr, nullptr, category, &manager.GetDefaultValue(category, m_key), false});
    }

    const PropertyKey& m_key;
    std::vector<Link>& m_links;
    std::unordered_set<const Style*> m_met;
    const Style* m_owner = nullptr; // whose parent led to the run that begins
};

/// The style that a step leads to from `style`.
const Style* FollowStep(const Style& style, const PathStep& step, const std::string& path)
{
    const Any& value = style.GetProperty(step.property.key);
    if (!step.hasIndex)
    {
        Style* const* substyle = value.GetIf<Style*>();
        return substyle != nullptr ? *substyle : nullptr;
    }
    const StyleList* list = value.GetIf<StyleList>();
    if (list == nullptr || step.index >= list->size())
    {
        throw Failure(path + ": the list has " + Counted(list != nullptr ? list->size() : 0, "element"));
    }
    return (*list)[step.index];
}

void MarkWinner(Explanation& explanation)
{
    for (Link& link : explanation.links)
    {
        if (link.value == explanation.answer)
        {
            link.isWinner = true;
            return;
        }
    }
    explanation.links.push_back({Link::Kind::Elsewhere, nullptr, nullptr, {}, explanation.answer, true});
}

} // namespace

Explanation Explain(const Style& style, const std::vector<PathStep>& steps)
{
    Explanation explanation;
    explanation.asked = &style;
    bool isOwn = true;
    const PathStep& last = steps.back();
    explanation.definition = last.property.definition;
    for (std::size_t index = 0; index + 1 < steps.size(); ++index)
    {
        const std::vector<PathStep> way(steps.begin(), steps.begin() + static_cast<std::ptrdiff_t>(index) + 1);
        const std::string path = WritePath(way);
        const Style* before = explanation.asked;
        if (before == nullptr && steps[index].hasIndex)
        {
            throw Failure(path + ": the list has 0 elements");
        }
        explanation.asked = before != nullptr ? FollowStep(*before, steps[index], path) : nullptr;
        isOwn = isOwn && before != nullptr && before->DoesOverrideProperty(steps[index].property.key);
        explanation.steps.push_back({path, explanation.asked, isOwn});
    }
    const PropertyKey& key = last.property.key;
    try
    {
        if (explanation.asked != nullptr)
        {
            explanation.answer = &explanation.asked->GetProperty(key);
            ChainWalk(key, explanation.links).Walk(*explanation.asked);
        }
        else
        {
            explanation.answer = &last.category->GetDefaultValue(key);
            explanation.links.push_back(
                {Link::Kind::Default, nullptr, nullptr, last.category->GetCategoryName(), explanation.answer, false});
        }
    }
    catch (const std::exception& error) // a parent of another category, which has no such value
    {
        explanation.failure = Shown(VelPlatform::ToWide(error.what()));
    }
    if (explanation.answer != nullptr)
    {
        MarkWinner(explanation);
    }
    return explanation;
}

} // namespace Inspect
