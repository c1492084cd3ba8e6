/// \file
/// Why a property has the value that it has: every place where it is looked for, in order.
#pragma once

#include "Origins.h"
#include "PropertyPath.h"

#include <string>
#include <vector>

namespace Inspect
{

/// A place where a value is looked for.
struct Link
{
    enum class Kind
    {
        Own,          ///< the style that is asked
        Parent,       ///< the parent of the style in the link before
        OwnersParent, ///< the substyle at the same place of what an owner of the style in the link before inherits from
        Closed,       ///< a style that was asked before: from here on everything would come again
        NoSubstyle,   ///< that place, where there is no substyle
        Default,      ///< of the category
        Elsewhere     ///< what the look-up answers, found at none of the other places
    };

    Kind kind = Kind::Own;
    /// That is asked here. For `NoSubstyle` the style that an owner inherits from; null for `Default` and `Elsewhere`.
    const Style* style = nullptr;
    /// For `OwnersParent` and `NoSubstyle`: the owner whose parent is followed.
    const Style* owner = nullptr;
    PropertyKey category;       ///< for `Default`
    const Any* value = nullptr; ///< what is held here; null for nothing
    bool isWinner = false;      ///< the look-up answers with this very object
};

/// A step on the way to the style that is asked.
struct Step
{
    std::string path;
    const Style* style = nullptr; ///< that is effective there; null for none
    bool isOwn = false;           ///< it belongs to the style that is explained
};

struct Explanation
{
    std::vector<Step> steps;
    const Styles::BaseStyleProperty* definition = nullptr;
    /// The style that the last step leads to, which is asked for the property; null where there is none and the
    /// default of its category stands in.
    const Style* asked = nullptr;
    /// Goes on behind the winner, through what it hides, to the default.
    std::vector<Link> links;
    /// What the look-up of the library answers; null when it throws, with what it says in `failure`.
    const Any* answer = nullptr;
    std::string failure;
};

/// Explains the property at the end of the path from `style`. The answer is that of the library's own look-up.
/// \throws Failure for an element of a list that is not there.
[[nodiscard]] Explanation Explain(const Style& style, const std::vector<PathStep>& steps);

} // namespace Inspect
