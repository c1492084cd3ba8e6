/// \file
/// The files of gallery/, which the build puts into the program.
#pragma once

#include <string_view>

namespace Inspect::GalleryFiles
{

extern const std::string_view Page;   ///< page.html
extern const std::string_view Style;  ///< style.css
extern const std::string_view Script; ///< the scripts, one behind the other

} // namespace Inspect::GalleryFiles
