#include "core/SubstyleSteps.h"

#include "core/DefinitionCalls.h"
#include "core/StyleAccess.h"

namespace Styles::Detail
{

const Style* FollowPath(const Style& style, const PropertyPath& path)
{
    const Style* reached = &style;
    for (std::size_t index = 0; index + 1 < path.size() && reached != nullptr; ++index)
    {
        reached = reached->GetSubstyle(path[index], false);
    }
    return reached;
}

Style* FollowPath(Style& style, const PropertyPath& path)
{
    return const_cast<Style*>(FollowPath(static_cast<const Style&>(style), path));
}

std::shared_ptr<const StyleCategory> GetElementCategory(const BaseStyleProperty& definition)
{
    return VelUtils::Singleton<StyleManager, 0>::GetInstance().GetCategory(
        Callable(definition).GetElementCategoryName());
}

Style* FindOrCreateSubstyle(Style& style, const PropertyKey& key)
{
    const BaseStyleProperty* definition = StyleAccess::FindDefinition(style, key);
    if (definition == nullptr)
    {
        return nullptr;
    }
    if (Style* substyle = style.GetSubstyle(key, false))
    {
        return substyle;
    }
    return CreateSubstyle(style, *definition, key, Callable(*definition).GetElementCategoryName());
}

Style* CreateSubstyle(Style& style, const BaseStyleProperty& definition, const PropertyKey& key,
                      const PropertyKey& categoryName)
{
    if (!definition.IsSubstyle())
    {
        return nullptr;
    }
    Style empty;
    empty.SetCategory(categoryName);
    const PropertyKey name = key;
    style.SetSubstyle(name, &empty);
    return style.GetSubstyle(name, false);
}

} // namespace Styles::Detail
