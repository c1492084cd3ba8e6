/// \file
/// What the properties of a schema are in a drawing: which of them is a colour, a width, the angle of a pattern. The
/// page of the command `gallery` draws by it, and knows no property by its name.
///
/// A look is a word, "color", or an object with
/// - "part": the word,
/// - "unit": in which the value is meant, where the schema does not say it,
/// - "tiles": for a pattern, what to draw for each of its values: the path data of an 8 by 8 tile of lines, in SVG's
///   way of writing; an empty text for no pattern.
///
/// A property with a style inside, or a list, has the look of the category of that style unless it has one of its own.
/// Looks are joined along the way to a value: the "color" in the "fill" of a "text" is another than that of a "line".
/// What has no look is told, not drawn.
///
/// They stand in the description of the schema, or in a file of their own:
///
///     {"title": "a note",
///      "looks": {"line": {"look": "line", "properties": {"stroke-width": "width", "stroke-color": "color"}}}}
#pragma once

#include "Document.h"

#include <styles/PropertyKey.h>

#include <map>
#include <utility>
#include <vector>

namespace Inspect
{

/// What a property is in a drawing.
struct Look
{
    VelString part; ///< empty for nothing that is drawn
    VelString unit; ///< "mm", "pt", "degree", "%"; empty for none
    std::vector<std::pair<VelString, VelString>> tiles;
};

class Looks
{
public:
    /// Takes up what the description of a schema says, which has been checked but for this.
    /// \throws Failure that names the place, for what is no look.
    void ReadSchema(const Document& description);

    /// Takes up a file of looks; what it says goes before what was said until then. The schema must be registered.
    /// \throws Failure also for a category or a property that the schema does not have.
    void ReadFile(const Document& file);

    /// What a style of that category is by itself, and where a property has one inside; empty for nothing.
    [[nodiscard]] VelString OfCategory(const Styles::PropertyKey& category) const;

    /// What a property of a category is, without regard to the category of a style inside.
    [[nodiscard]] Look OfProperty(const Styles::PropertyKey& category, const Styles::PropertyKey& property) const;

private:
    static void ReadLook(const VelString& file, const Json::Variant& value, const Place& place, Look& look);
    void ReadCategory(const VelString& file, const Json::Object& category, const Place& place);
    void ReadFileCategory(const VelString& file, const Styles::PropertyKey& name, const Json::Object& category,
                          const Place& place);
    void ReadSection(const Document& description, const wchar_t* section);
    void ReadFurther(const Document& description, const wchar_t* section);

    std::map<Styles::PropertyKey, VelString> m_categories;
    std::map<Styles::PropertyKey, std::map<Styles::PropertyKey, Look>> m_properties; // by category
};

} // namespace Inspect
