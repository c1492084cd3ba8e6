#include "ValueTexts.h"

#include "Output.h"

#include <typeinfo>

namespace Inspect
{

namespace
{

std::string DescribePlain(const Styles::BaseStyleProperty& definition, const Any& value)
{
    const auto* policy = definition.GetConversionPolicy();
    try
    {
        const VelString text = policy != nullptr ? policy->ToText(value) : VelString();
        return policy == nullptr ? "(not written)" : value.Is<VelString>() ? Quoted(text) : Shown(text);
    }
    catch (const std::bad_cast&) // inherited from a style of another category
    {
        return "(a value of another kind)";
    }
}

} // namespace

std::string DescribeStyle(const Origins& origins, const Style* style, std::string_view remark)
{
    if (style == nullptr)
    {
        return "(none)";
    }
    std::string text = '(' + Shown(style->GetCategoryName().GetText());
    if (const Style* parent = style->GetParent())
    {
        text += ", inherits " + origins.GetName(*parent);
    }
    return text.append(remark) + ')';
}

std::string DescribeValue(const Origins& origins, const Styles::BaseStyleProperty& definition, const Any& value)
{
    if (Style* const* substyle = value.GetIf<Style*>())
    {
        return DescribeStyle(origins, *substyle);
    }
    const StyleList* list = value.GetIf<StyleList>();
    return list != nullptr ? "(list of " + std::to_string(list->size()) + ')' : DescribePlain(definition, value);
}

} // namespace Inspect
