// The registration of a schema. SchemaReader.cpp reads it.

#include "Schema.h"

namespace Inspect
{

namespace
{

Styles::StyleManager& Manager()
{
    return VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
}

} // namespace

void Schema::Register()
{
    for (Category& category : m_categories)
    {
        if (category.name == Styles::StyleCategoryName)
        {
            Styles::RegisterStyleCategory(category.uiName);
        }
        else
        {
            Manager().RegisterCategory(category.name, category.uiName, category.isStyleSet, /*isPublic*/ true);
        }
        Register(category.name, category.properties);
    }
    for (auto& [category, properties] : m_furtherProperties)
    {
        Register(category, properties);
    }
    Manager().SetCurrentVersion(m_version);
}

void Schema::Register(const PropertyKey& category, std::vector<Property>& properties)
{
    for (Property& property : properties)
    {
        if (property.definition)
        {
            Manager().RegisterProperty(category, property.name, property.definition.get());
            property.definition.release();
        }
        else
        {
            Styles::RegisterSubstyleSet(category, property.name);
        }
    }
}

RegisteredSchema::RegisteredSchema(Schema& schema)
{
    try
    {
        schema.Register();
    }
    catch (...)
    {
        Styles::ResetStyleManager();
        throw;
    }
}

RegisteredSchema::~RegisteredSchema()
{
    Styles::ResetStyleManager();
    Manager().SetCurrentVersion(-1);
}

} // namespace Inspect
