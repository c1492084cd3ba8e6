#include "PropertyPath.h"

#include "Failure.h"
#include "Origins.h"
#include "Output.h"

#include <VelUtils/StringUtils.h>
#include <styles/SubStyle.h>

#include <utility>

namespace Inspect
{

namespace
{

/// A step as it was typed: a name, and perhaps an index in brackets behind it.
struct TypedStep
{
    VelString name;
    bool hasIndex = false;
    std::size_t index = 0;
};

TypedStep ParseStep(const VelString& text)
{
    const VelStringView view = text;
    const std::size_t bracket = view.find(L'[');
    if (bracket == VelStringView::npos)
    {
        return {text, false, 0};
    }
    TypedStep step{VelString(view.substr(0, bracket)), true, 0};
    const VelStringView digits = view.substr(bracket + 1, view.size() - bracket - 2);
    bool isNumber = view.back() == L']' && !digits.empty() && digits.size() <= 9;
    for (const wchar_t digit : digits)
    {
        isNumber = isNumber && digit >= L'0' && digit <= L'9';
        step.index = step.index * 10 + static_cast<std::size_t>(digit - L'0');
    }
    if (!isNumber)
    {
        throw Failure(Quoted(text) + " is no step of a path; an element of a list is written like stops[0]");
    }
    return step;
}

std::string NamesOf(const Styles::StyleCategory& category)
{
    std::string names;
    for (const PropertyKey& name : category.GetPropertyNames())
    {
        names += (names.empty() ? "" : ", ") + Shown(name.GetText());
    }
    return names.empty() ? "none" : names;
}

/// The element of the list; of an inherited list, a copy is made first if `create`. Null when there is no own list.
Style* FindElement(Style& style, const PathStep& step, const VelString& path, bool create)
{
    if (!style.DoesOverrideProperty(step.property.key) && create)
    {
        const Any inherited(style.GetProperty(step.property.key));
        if (inherited.Is<StyleList>() && step.index < inherited.Get<StyleList>().size())
        {
            style.SetProperty(step.property.key, inherited);
        }
    }
    const StyleList list = style.DoesOverrideProperty(step.property.key) || create
                               ? style.GetProperty(step.property.key).Get<StyleList>()
                               : StyleList();
    if (step.index < list.size() && list[step.index] != nullptr)
    {
        return list[step.index];
    }
    if (!create)
    {
        return nullptr;
    }
    throw Failure(
        Shown(path) + ": the list " + Quoted(step.property.key.GetText()) + " has " +
        (list.empty() ? "no elements" : Counted(list.size(), "element") + ", 0 to " + std::to_string(list.size() - 1)));
}

} // namespace

std::vector<PathStep> ParsePath(const VelString& path, std::shared_ptr<const Styles::StyleCategory> category)
{
    std::vector<PathStep> steps;
    const std::vector<VelString> pieces =
        VelUtils::String::Split(VelStringView(path), L'.', /*skipEmpty*/ false, /*trim*/ false);
    for (const VelString& piece : pieces)
    {
        const std::string where = Shown(path) + ": ";
        const TypedStep typed = ParseStep(piece);
        PathStep step{FindProperty(*category, PropertyKey(typed.name)), category, typed.hasIndex, typed.index};
        if (step.property.definition == nullptr)
        {
            throw Failure(where + "the category " + Quoted(category->GetCategoryName().GetText()) +
                          " has no property " + Quoted(typed.name) + "; its properties: " + NamesOf(*category));
        }
        const bool isLast = &piece == &pieces.back();
        const bool hasStyles = step.property.elementCategory != PropertyKey::Empty;
        if (typed.hasIndex && (!step.property.isList || isLast))
        {
            throw Failure(where + Quoted(piece) + (isLast ? " is no property" : " is no list"));
        }
        if (!isLast && !hasStyles)
        {
            throw Failure(where + Quoted(typed.name) + " is a plain property; a path ends there");
        }
        if (!isLast && step.property.isList && !typed.hasIndex)
        {
            throw Failure(where + Quoted(typed.name) + " is a list; an element of it is written like " +
                          Shown(typed.name) + "[0]");
        }
        if (!isLast)
        {
            const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
            category = manager.GetCategory(step.property.elementCategory);
        }
        steps.push_back(std::move(step));
    }
    return steps;
}

Style* FollowPath(Style& style, const std::vector<PathStep>& steps, const VelString& path, bool create)
{
    Style* reached = &style;
    for (std::size_t index = 0; index + 1 < steps.size() && reached != nullptr; ++index)
    {
        const PathStep& step = steps[index];
        if (step.hasIndex)
        {
            reached = FindElement(*reached, step, path, create);
        }
        else
        {
            reached = create ? Styles::GetOrCreateSubstyle(*reached, step.property.key)
                             : reached->GetSubstyle(step.property.key, false);
        }
    }
    return reached;
}

std::string WritePath(const std::vector<PathStep>& steps)
{
    std::string path;
    for (const PathStep& step : steps)
    {
        path = PathTo(path, step.property.key) + (step.hasIndex ? '[' + std::to_string(step.index) + ']' : "");
    }
    return path;
}

} // namespace Inspect
