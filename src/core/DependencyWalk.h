// A walk along parents and through values that meets every style once.
#pragma once

#include <styles/Style.h>

#include <unordered_set>
#include <utility>
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

    /// For the question `HasAny`: whether `style`, when it is met for the first time, is a member of the span, has a
    /// member for its parent, or has a value that depends on one. Its parent is put aside.
    bool Visit(const Style& style);

private:
    friend std::vector<Style*> FindDependants(const std::vector<Style*>& styles, StyleSpan wanted);

    /// A style, and a style that it inherits from or that is inside its values.
    using Link = std::pair<const Style*, const Style*>;

    void Record(const Style* from, const Style& to);

    Question m_question;
    StyleSpan m_styles;
    DependencyWalk* m_outer;
    std::unordered_set<const Style*> m_met;
    std::vector<Style*> m_aside;
    const Style* m_visited = nullptr;     // whose values are being asked
    std::vector<Link>* m_links = nullptr; // null unless the way is recorded
};

/// The same members, sorted by address in `storage` unless they are sorted already.
[[nodiscard]] StyleSpan Sorted(StyleSpan styles, std::vector<Style*>& storage);

/// Whether `style` depends on a member of `wanted`, at any distance, as a question of its own.
[[nodiscard]] bool DependsOnAny(const Style& style, StyleSpan wanted);

/// Those of `styles`, in their order, that depend on a member of `wanted`: the answers of `DependsOnAny`, for the cost
/// of one walk over all of them. Null ones are passed over.
[[nodiscard]] std::vector<Style*> FindDependants(const std::vector<Style*>& styles, StyleSpan wanted);

} // namespace Styles::Detail
