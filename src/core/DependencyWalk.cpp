#include "core/DependencyWalk.h"

#include "core/StyleAccess.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <utility>

namespace Styles::Detail
{

namespace
{

thread_local DependencyWalk* walkUnderWay = nullptr;

} // namespace

DependencyWalk::DependencyWalk(Question question, StyleSpan styles)
    : m_question(question), m_styles(styles), m_outer(std::exchange(walkUnderWay, this))
{}

DependencyWalk::~DependencyWalk()
{
    walkUnderWay = m_outer;
}

DependencyWalk* DependencyWalk::FindUnderWay(Question question, StyleSpan styles) noexcept
{
    DependencyWalk* walk = walkUnderWay;
    const bool same = walk != nullptr && walk->m_question == question && walk->m_styles.data() == styles.data() &&
                      walk->m_styles.size() == styles.size() && walk->m_styles.is_sorted() == styles.is_sorted();
    return same ? walk : nullptr;
}

Style* DependencyWalk::TakeAside() noexcept
{
    if (m_aside.empty())
    {
        return nullptr;
    }
    Style* style = m_aside.back();
    m_aside.pop_back();
    return style;
}

bool DependencyWalk::Visit(const Style& style)
{
    Record(m_visited, style);
    if (!Meet(style))
    {
        return false;
    }
    Style* parent = style.GetParent();
    if (m_styles.contains(&style) || (parent != nullptr && m_styles.contains(parent)))
    {
        return true;
    }
    if (parent != nullptr)
    {
        Record(&style, *parent);
        PutAside(*parent);
    }
    const Style* outer = std::exchange(m_visited, &style);
    bool found = false;
    for (auto entry = StyleAccess::Properties(style).begin(); entry != StyleAccess::Properties(style).end() && !found;
         ++entry)
    {
        const BaseStyleProperty* definition = StyleAccess::FindDefinition(style, entry->first);
        found = definition != nullptr && definition->HasDependency(entry->second, m_styles, false);
    }
    m_visited = outer;
    return found;
}

void DependencyWalk::Record(const Style* from, const Style& to)
{
    if (m_links != nullptr && from != nullptr)
    {
        m_links->emplace_back(from, &to);
    }
}

StyleSpan Sorted(StyleSpan styles, std::vector<Style*>& storage)
{
    if (styles.is_sorted())
    {
        return styles;
    }
    storage.assign(styles.begin(), styles.end());
    std::sort(storage.begin(), storage.end(), std::less<>());
    return StyleSpan(storage, true);
}

bool DependsOnAny(const Style& style, StyleSpan wanted)
{
    constexpr std::size_t FewEnoughToSearch = 8;
    std::vector<Style*> storage;
    const StyleSpan members = wanted.size() > FewEnoughToSearch ? Sorted(wanted, storage) : wanted;
    DependencyWalk walk(DependencyWalk::Question::HasAny, members);
    bool found = walk.Visit(style);
    while (const Style* aside = found ? nullptr : walk.TakeAside())
    {
        found = walk.Visit(*aside);
    }
    return found;
}

std::vector<Style*> FindDependants(const std::vector<Style*>& styles, StyleSpan wanted)
{
    std::vector<Style*> storage;
    std::vector<DependencyWalk::Link> links;
    std::vector<const Style*> dependent;
    {
        DependencyWalk walk(DependencyWalk::Question::HasAny, Sorted(wanted, storage));
        walk.m_links = &links;
        for (Style* style : styles)
        {
            for (const Style* next = style; next != nullptr; next = walk.TakeAside())
            {
                if (walk.Visit(*next))
                {
                    dependent.push_back(next);
                }
            }
        }
    }
    // What leads to a dependent style is dependent too: the links, backwards.
    const auto byTarget = [](const auto& a, const auto& b) { return std::less<>()(a.second, b.second); };
    std::sort(links.begin(), links.end(), byTarget);
    std::unordered_set<const Style*> found(dependent.begin(), dependent.end());
    while (!dependent.empty())
    {
        const Style* target = dependent.back();
        dependent.pop_back();
        const auto [first, last] =
            std::equal_range(links.begin(), links.end(), DependencyWalk::Link(nullptr, target), byTarget);
        std::for_each(first, last, [&](const DependencyWalk::Link& link) {
            if (found.insert(link.first).second)
            {
                dependent.push_back(link.first);
            }
        });
    }
    std::vector<Style*> dependants;
    std::copy_if(styles.begin(), styles.end(), std::back_inserter(dependants),
                 [&found](const Style* style) { return found.contains(style); });
    return dependants;
}

} // namespace Styles::Detail
