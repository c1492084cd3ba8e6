/// \file
/// What is different between two sheets, style by style.
#pragma once

#include "EffectiveValues.h"
#include "Progress.h"

#include <string>
#include <vector>

namespace Inspect
{

/// One difference, in texts for people.
struct Difference
{
    enum class Kind
    {
        Heading,      ///< the version or the identity of the sheet; `path` says which
        Added,        ///< a style that only the second sheet has
        Removed,      ///< a style that only the first sheet has
        Renamed,      ///< the name is written otherwise in upper and lower case
        Category,     ///< the style is of another category
        Reparented,   ///< it, or the style inside it at `path`, inherits from another style
        Set,          ///< a value that only the second style has of its own
        Cleared,      ///< a value that only the first style has of its own
        Changed,      ///< an own value that is another
        NowOwn,       ///< the value was inherited, and is the style's own; its effect is the same
        NowInherited, ///< the value was the style's own, and is inherited; its effect is the same
    };

    Kind kind = Kind::Changed;
    VelString style;      ///< its name; of a renamed one, the new name; empty for the sheet itself
    PropertyKey category; ///< of the style
    std::string path;     ///< empty for the style itself; "id" and "original" for its external identity
    std::string before;   ///< for values that one style does not have of its own, what it inherits; empty for nothing
    std::string after;
};

/// Compares sheets under the registered schema. Styles are told apart by their names, in which case makes no
/// difference. The differences stand in the order of the names, those of a style in the order of the schema.
///
/// What reading a sheet passes over is in neither.
[[nodiscard]] std::vector<Difference> CompareSheets(Styles::StyleSheet& first, Styles::StyleSheet& second,
                                                    Progress* progress);

/// "reparented", "now-own"
[[nodiscard]] const char* NameOf(Difference::Kind kind);

} // namespace Inspect
