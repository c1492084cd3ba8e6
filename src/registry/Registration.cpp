// The registrations that every host makes.

#include <styles/StyleManager.h>

#include <memory>

namespace Styles
{

namespace
{

StyleManager& Manager()
{
    return VelUtils::Singleton<StyleManager, 0>::GetInstance();
}

/// Adds a substyle property to `category`, named like the category of its substyles, unless `category` is unknown or
/// has a property of that name.
void AddSubstyleProperty(const PropertyKey& category, const PropertyKey& name)
{
    if (!Manager().CategoryExists(category) || Manager().GetCategory(category)->GetProperties().contains(name))
    {
        return; // nobody would own the definition
    }
    auto definition = std::make_unique<StyleSetProperty>(nullptr, name, nullptr, 0);
    Manager().RegisterProperty(category, name, definition.get());
    definition.release();
}

} // namespace

void RegisterStyleCategory(const VelString& uiName)
{
    const std::vector<PropertyKey> styleSets = Manager().GetStyleSetCategoryNames();
    const bool isNew = !Manager().CategoryExists(StyleCategoryName);
    Manager().RegisterCategory(StyleCategoryName, uiName, /*isStyleSet*/ false, /*isPublic*/ true);
    try
    {
        for (const PropertyKey& styleSet : styleSets)
        {
            AddSubstyleProperty(StyleCategoryName, styleSet);
        }
    }
    catch (...)
    {
        if (isNew)
        {
            DeregisterStyleCategory();
        }
        throw;
    }
}

void DeregisterStyleCategory()
{
    Manager().DeregisterCategory(StyleCategoryName);
}

void RegisterSubstyleSet(const PropertyKey& category, const PropertyKey& name)
{
    AddSubstyleProperty(category, name);
}

void ResetStyleManager()
{
    Manager().Reset();
}

} // namespace Styles
