/// \file
/// Every value that a style effectively has, with the place it comes from.
#pragma once

#include "Origins.h"

#include <string>
#include <vector>

namespace Inspect
{

/// One effective value.
struct EffectiveValue
{
    /// From the style shown: "fill.angle", "fill.stops[1].color".
    std::string path;

    /// The style that was asked for `key`: the effective substyle at the path, which may belong to another style. Null
    /// where there is none and the defaults of its category stand in.
    const Style* asked = nullptr;
    /// The category of that style.
    PropertyKey category;
    PropertyKey key;

    /// The very object that the look-up answered; null when it answered with an exception, which `text` tells.
    const Any* value = nullptr;
    Origin origin;

    /// The style shown has the value at this path of its own.
    bool isOwn = false;
    /// A substyle that this is inside of, which is not gone into again.
    bool isClosed = false;
    /// For an inherited value: the style whose parent is followed to it. It is the style shown itself, or its substyle
    /// at the path or above.
    const Style* heir = nullptr;

    /// The value for people: a text in quotes, the text of a number, in round brackets what a style inside is.
    std::string text;
};

/// The effective values of `style`, a style of the sheet of `origins`: in the order of the schema, a substyle or a list
/// before the values inside it. What contains itself is not gone into again.
///
/// A style that is made to be without end (styles can inherit from what holds them) is cut off: `isComplete` is false
/// then.
[[nodiscard]] std::vector<EffectiveValue> CollectEffectiveValues(const Origins& origins, const Style& style,
                                                                 bool& isComplete);

} // namespace Inspect
