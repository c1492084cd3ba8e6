// A walk along parents and through values that meets every style once.
#pragma once

#include <styles/Style.h>

#include <unordered_set>
#include <vector>

namespace Styles::Detail
{

/// One question about dependencies, followed through the graph of parents and values.
///
/// Definitions ask the styles inside their values the same question, and those go on to their parents, which may be the
/// very style that was asked first. So the same questions about one span that are asked while one is being answered, on
/// this thread, share one walk: it remembers the styles it has met, and it puts parents aside until the values are
/// done, so that chains of any length need no deep stack.
class DependencyWalk
{
public:
    enum class Question
    {
        HasAny,
        Which,
        WhichDirectly
    };

    /// Begins a walk and makes it the one under way on this thread.
    DependencyWalk(Question question, StyleSpan styles);
    DependencyWalk(const DependencyWalk&) = delete;
    DependencyWalk& operator=(const DependencyWalk&) = delete;
    ~DependencyWalk();

    /// The walk under way on this thread when it answers this question, else null.
    [[nodiscard]] static DependencyWalk* FindUnderWay(Question question, StyleSpan styles) noexcept;

    /// True the first time that `style` is met.
    bool Meet(const Style& style) { return m_met.insert(&style).second; }

    /// Puts `style` aside, to be visited when what is under way is done.
    void PutAside(Style& style) { m_aside.push_back(&style); }

    /// The next style that was put aside, null when there is none.
    [[nodiscard]] Style* TakeAside() noexcept;

private:
    Question m_question;
    StyleSpan m_styles;
    DependencyWalk* m_outer;
    std::unordered_set<const Style*> m_met;
    std::vector<Style*> m_aside;
};

} // namespace Styles::Detail
