#include "core/DependencyWalk.h"

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

} // namespace Styles::Detail
