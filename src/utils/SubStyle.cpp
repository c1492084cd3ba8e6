#include <styles/SubStyle.h>

#include "core/LinkWalk.h"
#include "core/StyleAccess.h"

#include <algorithm>
#include <utility>

namespace Styles
{

SubStyle::SubStyle(Style* style) : m_root(style)
{
    if (style == nullptr)
    {
        return;
    }
    Detail::OwnerWalk owners(*style);
    while (Style* owner = owners.Next())
    {
        m_path.push_back(m_root->GetOwnersSubstylePropertyName());
        m_root = owner;
    }
    std::reverse(m_path.begin(), m_path.end());
}

SubStyle::SubStyle(const SubStyle& other) = default;

SubStyle::SubStyle(SubStyle&& other) noexcept
    : m_root(std::exchange(other.m_root, nullptr)), m_path(std::exchange(other.m_path, {}))
{}

SubStyle& SubStyle::operator=(const SubStyle& other)
{
    if (this != &other)
    {
        PropertyPath path = other.m_path; // a failure leaves the handle as it was
        m_root = other.m_root;
        m_path.swap(path);
    }
    return *this;
}

SubStyle::~SubStyle() = default;

SubStyle::operator Style*() const
{
    Style* reached = m_root;
    for (auto key = m_path.begin(); key != m_path.end() && reached != nullptr; ++key)
    {
        reached = reached->GetSubstyle(*key, false);
    }
    return reached;
}

Style* SubStyle::operator->() const
{
    return *this;
}

std::vector<SubStyle> StylesToSubStyles(const std::vector<Style*>& styles)
{
    std::vector<SubStyle> subStyles;
    subStyles.reserve(styles.size());
    for (Style* style : styles)
    {
        subStyles.emplace_back(style);
    }
    return subStyles;
}

std::vector<Style*> SubStylesToStyles(const std::vector<SubStyle>& subStyles)
{
    return std::vector<Style*>(subStyles.begin(), subStyles.end());
}

Style* GetStyleOrSubstyle(Style* style, const PropertyKey& key, bool inherited)
{
    if (style == nullptr || style->GetCategoryName() == key)
    {
        return style;
    }
    return style->GetSubstyle(key, inherited);
}

Style* GetSubstyleParent(const Style& style)
{
    if (style.GetParent() != nullptr)
    {
        return style.GetParent();
    }
    if (style.GetOwner() == nullptr)
    {
        return nullptr;
    }
    const PropertyKey key = style.GetOwnersSubstylePropertyName();
    Detail::ParentWalk ancestors(*style.GetOwner());
    for (const Style* current = style.GetOwner(); current != nullptr; current = ancestors.Next())
    {
        const Style* substyle = current->GetSubstyle(key, false);
        if (substyle != nullptr && substyle->GetParent() != nullptr)
        {
            return substyle->GetParent();
        }
    }
    return nullptr;
}

bool ForEachSubStyle(Style* style, const VelUtils::basic_safe_function<bool(Style*)>& visit, bool includeSelf,
                     std::vector<PropertyKey> keys)
{
    if (style == nullptr)
    {
        return true;
    }
    if (includeSelf && (!visit || !visit(style)))
    {
        return false;
    }
    if (const StyleCategory* category = Detail::StyleAccess::Category(*style); keys.empty() && category != nullptr)
    {
        keys = category->GetPropertyNames();
    }
    return std::all_of(keys.begin(), keys.end(), [&](const PropertyKey& key) {
        Style* substyle = style->GetSubstyle(key, false);
        return substyle == nullptr || (visit && visit(substyle));
    });
}

} // namespace Styles
