#include "sheet/ReplacedStyles.h"

#include "core/StyleAccess.h"

#include <exception>
#include <utility>
#include <vector>

namespace Styles::Detail
{

namespace
{

/// Remaps the parents of `style` and of the styles in its values, as far as they can be seen without definitions.
void RemapParents(Style& style, const std::map<Style*, Style*>& replacements)
{
    if (const auto entry = replacements.find(style.GetParent()); entry != replacements.end())
    {
        style.SetParent(entry->second);
    }
    for (const auto& [key, value] : StyleAccess::Properties(style))
    {
        if (Style* const* substyle = value.GetIf<Style*>())
        {
            if (*substyle != nullptr)
            {
                RemapParents(**substyle, replacements);
            }
        }
        else if (const auto* list = value.GetIf<std::vector<Style*>>())
        {
            for (Style* element : *list)
            {
                if (element != nullptr)
                {
                    RemapParents(*element, replacements);
                }
            }
        }
    }
}

} // namespace

ReplacedStyles::~ReplacedStyles()
{
    for (const auto& entry : m_replacements)
    {
        try
        {
            m_destroy(entry.first);
        }
        catch (...) // a definition; the next one goes all the same
        {}
    }
}

void ReplacedStyles::Add(Style* removed) noexcept
{
    auto node = m_prepared.extract(m_prepared.begin());
    node.key() = removed;
    m_replacements.insert(std::move(node));
}

void ReplacedStyles::TellHeirs(const StyleSheet::NameMap& styles)
{
    if (m_replacements.empty())
    {
        return;
    }
    for (const auto& entry : m_replacements)
    {
        FindLastReplacement(entry.first);
    }
    std::exception_ptr failure;
    for (const auto& [name, style] : styles)
    {
        try
        {
            if (style != nullptr)
            {
                style->RemapDependency(m_replacements);
            }
        }
        catch (...)
        {
            RemapParents(*style, m_replacements); // no link may lead to a style that is about to go
            if (!failure)
            {
                failure = std::current_exception();
            }
        }
    }
    if (failure)
    {
        std::rethrow_exception(failure);
    }
}

/// One document may hold a name many times, so a replacement may have been replaced in turn. All on the way from
/// `style` get the last one, so that no way is gone twice.
void ReplacedStyles::FindLastReplacement(Style* style)
{
    Style* last = style;
    for (auto next = m_replacements.find(last); next != m_replacements.end(); next = m_replacements.find(last))
    {
        last = next->second;
    }
    for (auto next = m_replacements.find(style); next != m_replacements.end(); next = m_replacements.find(style))
    {
        style = std::exchange(next->second, last);
    }
}

} // namespace Styles::Detail
