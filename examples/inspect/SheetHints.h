/// \file
/// What is strange in a document that is read as it stands: parents that lead back, values that change nothing.
#pragma once

#include "SheetCheck.h"

#include <vector>

namespace Inspect
{

/// The members whose names their objects had before.
[[nodiscard]] std::vector<Finding> FindRepeatedMembers(const DocumentPositions& positions);

/// The chains of parents that are closed, each where the first of its styles in the document names its parent; and the
/// first style with very many parents.
[[nodiscard]] std::vector<Finding> FindStrangeChains(const CheckedDocument& checked);

/// The plain values of a sheet, which was read from the document, that would be the same if they were not there. To be
/// asked only while no chain of parents is long: look-ups follow them.
[[nodiscard]] std::vector<Finding> FindSameAsInherited(const CheckedDocument& checked, const Styles::StyleSheet& sheet);

} // namespace Inspect
