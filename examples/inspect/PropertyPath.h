/// \file
/// Paths to properties as people type them: fill.angle, fill.stops[1].color
#pragma once

#include "OwnValues.h"

#include <string>
#include <vector>

namespace Inspect
{

/// One step of a path: a property, and for a list the element that the path goes on in.
struct PathStep
{
    Property property;
    /// Of the style that has the property.
    std::shared_ptr<const Styles::StyleCategory> category;
    bool hasIndex = false;
    std::size_t index = 0;
};

/// The steps of a path from a style of `category`. Every step but the last leads into a substyle or an element of a
/// list; whether the list has such an element is not looked at. \throws Failure that names the step that does not
/// exist, and those that do.
[[nodiscard]] std::vector<PathStep> ParsePath(const VelString& path,
                                              std::shared_ptr<const Styles::StyleCategory> category);

/// The style that has the property at the end of the path from `style`. Its substyles and lists on the way are made if
/// `create`; otherwise null when one is missing. `path` is for messages. \throws Failure for an element of a list that
/// is not there.
[[nodiscard]] Style* FollowPath(Style& style, const std::vector<PathStep>& steps, const VelString& path, bool create);

/// The path as `EffectiveValue` writes it.
[[nodiscard]] std::string WritePath(const std::vector<PathStep>& steps);

} // namespace Inspect
