/// \file
/// A report on a sheet's document: what keeps it from being read, and what reading passes over.
#pragma once

#include "DocumentPositions.h"
#include "Findings.h"

#include <styles/StyleSheet.h>

#include <string>
#include <vector>

namespace Inspect
{

class Progress;

/// What is known of a document before it is checked.
struct CheckedDocument
{
    const Document& document;
    const PositionNode* positions = nullptr; ///< null where no positions are wanted
    Progress* progress = nullptr;            ///< null for silence
};

/// Looks through a document for `sheet`, which is empty yet: everything that keeps it from being read, and everything
/// that reading passes over or reads as something else, in the order of the document. The schema must be registered.
/// The definitions themselves are asked to read the values, so that the report says what an import will do.
[[nodiscard]] std::vector<Finding> CheckSheet(const CheckedDocument& checked, const Styles::StyleSheet& sheet);

/// The findings with this effect, each with file and place.
[[nodiscard]] std::vector<std::string> MessagesOf(const VelString& file, const std::vector<Finding>& findings,
                                                  Effect effect);

/// The registered category of that name; null when there is none.
[[nodiscard]] std::shared_ptr<const Styles::StyleCategory> FindCategory(const VelPlatform::VelString& name);

} // namespace Inspect
