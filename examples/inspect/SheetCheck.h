/// \file
/// A report on a sheet's document: what keeps it from being read, and what reading passes over.
#pragma once

#include "Document.h"

#include <styles/StyleSheet.h>

#include <string>
#include <vector>

namespace Inspect
{

struct SheetReport
{
    std::vector<std::string> mistakes; ///< what keeps the document from being read
    std::vector<std::string> losses;   ///< what is passed over, since the schema knows nothing of it
    std::vector<std::string> warnings; ///< what is read as something else
};

/// Looks through a document for `sheet`, which is empty yet. The schema must be registered. The definitions themselves
/// are asked to read the values, so that the report says what an import will do.
[[nodiscard]] SheetReport CheckSheet(const Document& document, const Styles::StyleSheet& sheet);

} // namespace Inspect
