/// \file
/// A description of a schema, read from a JSON file and registered with the library.
///
/// The description is an object with these members:
/// - "title": a note; "version": the version that new sheets get;
/// - "styleSets": the style-set categories, each with "name", "uiName" and its plain "properties"; of a property:
///   "name", "type" ("double", "string", "int", "uint" or "bool"), "default" as text, "newSince" (0 when absent), and
///   "unit", in which the value is meant;
/// - "categories": the other categories, in the same form;
/// - "base": the category "style", in the same form;
/// - "substyles": for categories, the names of substyle properties that are called like their element categories;
/// - "namedSubstyles": for categories, substyle properties with "name", "elementCategory" and "newSince";
/// - "lists": for categories, lists of styles, in the same form;
/// - "look": of each of these but the plain names of substyles, see Looks.h.
///
/// Reading checks everything and registers nothing: a description with a mistake leaves no trace.
#pragma once

#include "Document.h"
#include "Looks.h"

#include <styles/StyleManager.h>

#include <memory>
#include <vector>

namespace Inspect
{

using Styles::PropertyKey;

class Schema
{
public:
    /// \throws Failure that names the file, the member and the mistake.
    explicit Schema(const Document& description);

    /// Registers everything, in the order of the description, with the process-wide manager, which should be empty and
    /// owns the definitions from then on. To be called once.
    void Register();

    [[nodiscard]] int GetVersion() const noexcept { return m_version; }

    /// What the properties are in a drawing.
    [[nodiscard]] const Looks& GetLooks() const noexcept { return m_looks; }

    /// Of the file with the description.
    [[nodiscard]] const VelString& GetPath() const noexcept { return m_path; }

    /// All categories, in the order of registration.
    [[nodiscard]] const std::vector<PropertyKey>& GetCategoryNames() const noexcept { return m_categoryNames; }

private:
    friend class SchemaReader;

    struct Property
    {
        PropertyKey name;
        /// Null for a substyle property that is called like its element category.
        std::unique_ptr<Styles::BaseStyleProperty> definition;
    };

    struct Category
    {
        PropertyKey name;
        VelString uiName;
        bool isStyleSet = false;
        std::vector<Property> properties;
    };

    static void Register(const PropertyKey& category, std::vector<Property>& properties);

    VelString m_path;
    int m_version = 0;
    std::vector<Category> m_categories; // the base category last
    std::vector<std::pair<PropertyKey, std::vector<Property>>> m_furtherProperties;
    std::vector<PropertyKey> m_categoryNames;
    Looks m_looks;
};

/// Registers a schema and, at the end of its life, empties the manager. Sheets must be gone by then.
class RegisteredSchema
{
public:
    explicit RegisteredSchema(Schema& schema);
    RegisteredSchema(const RegisteredSchema&) = delete;
    RegisteredSchema& operator=(const RegisteredSchema&) = delete;
    ~RegisteredSchema();
};

} // namespace Inspect
