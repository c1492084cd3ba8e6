#include "Origins.h"

#include "Output.h"

namespace Inspect
{

Origins::Origins(const Styles::StyleSheet& sheet) : m_sheet(sheet)
{
    const auto addValue = [this](const OwnValue& value) {
        m_values[value.value] = {Origin::Kind::Style, value.style, {}, value.key};
    };
    const auto addStyle = [this](const InnerStyle& inner) { m_inner[inner.style] = inner; };
    for (const Style* style : sheet.GetStyles())
    {
        if (style != nullptr)
        {
            ForEachOwnValue(*style, addValue, addStyle);
        }
    }
    const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
    for (const PropertyKey& category : manager.GetCategoryNames())
    {
        for (const Property& property : PropertiesOf(manager.GetCategory(category).get()))
        {
            m_values[&property.definition->GetDefaultValue()] = {Origin::Kind::Default, nullptr, category,
                                                                 property.key};
        }
    }
}

Origin Origins::Find(const Any& value) const
{
    const auto found = m_values.find(&value);
    return found != m_values.end() ? found->second : Origin{};
}

const Style* Origins::GetTop(const Style& style) const
{
    const Style* top = &style;
    for (auto inner = m_inner.find(top); inner != m_inner.end(); inner = m_inner.find(top))
    {
        top = inner->second.outer;
    }
    return m_sheet.GetStyleName(top).empty() && m_sheet.GetStyle(VelString()) != top ? nullptr : top;
}

std::string Origins::GetPath(const Style& style) const
{
    std::string path;
    for (auto inner = m_inner.find(&style); inner != m_inner.end(); inner = m_inner.find(inner->second.outer))
    {
        std::string step = Shown(inner->second.key.GetText());
        if (inner->second.isElement)
        {
            step += '[' + std::to_string(inner->second.index) + ']';
        }
        path.insert(0, path.empty() ? step : step + '.');
    }
    return path;
}

std::string Origins::GetName(const Style& style) const
{
    const Style* top = GetTop(style);
    const std::string path = GetPath(style);
    return (top != nullptr ? Quoted(m_sheet.GetStyleName(top)) : "(no style of the sheet)") +
           (path.empty() ? "" : ' ' + path);
}

std::string PathTo(const std::string& stylePath, const PropertyKey& key)
{
    return stylePath.empty() ? Shown(key.GetText()) : stylePath + '.' + Shown(key.GetText());
}

} // namespace Inspect
