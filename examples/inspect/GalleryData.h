/// \file
/// A sheet as the page of the command `gallery` takes it: every effective value of every style, with the place that it
/// comes from and what it hides.
///
/// It is a JSON object. Texts are the sheet's own, with nothing escaped for people. Its members:
/// - "sheet": the name of the file; "version": of the sheet;
/// - "categories": in the order in which they are shown, each with "name", "label" and "look";
/// - "values": that rows refer to. A text is a plain value; a number tells how many elements a list has; an array of a
///   category and a place is a style inside, with the place of its parent; null is no style inside; an object has in
///   "text" what the value cannot tell by itself;
/// - "places": arrays of a style and a path in it, empty for the style itself;
/// - "tiles": of patterns, see Looks.h;
/// - "slots": what a row can be about: an array of the path, the look along the path (null where something on the way
///   has none), the unit, the category, the default value, and the tiles or null;
/// - "styles": each with "name", "category", "parent" (absent for none), "id" and "original" (absent when empty), and
///   "rows". "cut" is true where the rows are too many to be told.
///
/// A row is the number of a slot where the value is the default there, else an array of the slot, the value, the place
/// that it comes from, what it hides (an array of places and values in turns, with the number of those left out at the
/// end; 0 for nothing) and the substyle whose own parent led to it (a path; absent for the style's own parent).
///
/// Styles, values, places, slots and categories are referred to by their index. Of places, -1 is the style itself, -2
/// is outside of the sheet, and -3 and below are the defaults of categories, counted downwards.
#pragma once

#include "Sheet.h"

namespace Inspect
{

/// The data of a sheet. `looks` tell what the properties are in a drawing.
[[nodiscard]] Json::Variant MakeGalleryData(const Schema& schema, const Sheet& sheet, const Looks& looks);

} // namespace Inspect
