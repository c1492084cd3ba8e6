#pragma once

/// @file
/// Small operations on texts: splitting, numbering names, keeping and removing characters, ordering without case.

#include "VelPlatform/String.h"
#include "VelUtils/CaseInsensitiveOrder.h"

#include <functional>
#include <vector>

namespace VelUtils::String
{

/// The pieces between the separators, in order: one more than there are separators, so the empty text (or a null one)
/// is one empty piece. `trim` takes the white space off the ends of every piece, then `skipEmpty` leaves out the
/// empty ones.
VEL_API std::vector<VelPlatform::VelString> Split(const wchar_t* text, wchar_t separator, bool skipEmpty, bool trim);
/// The same for a text that may hold zeros.
VEL_API std::vector<VelPlatform::VelString> Split(VelPlatform::VelStringView text, wchar_t separator, bool skipEmpty,
                                                  bool trim);

/// A name for which `isUsed` is false: the candidate itself when it is free. Else, when it ends in a blank and decimal
/// digits, that number is counted up ("Fill 7" to "Fill 8", "Fill 09" to "Fill 10", of any length), and when it does
/// not, " 1", " 2", … is appended; the first free name wins, so `isUsed` is asked once for every number passed over.
/// `isUsed` must not be empty (std::bad_function_call) and must be false for some number, or the search never ends.
/// What it throws passes through.
VEL_API VelPlatform::VelString FindUnusedName(const VelPlatform::VelString& candidate,
                                              const std::function<bool(const VelPlatform::VelString&)>& isUsed);

/// The text without the characters that are not in `set`.
VEL_API VelPlatform::VelString KeepCharacters(const VelPlatform::VelString& text, VelPlatform::VelStringView set);
/// The text without the characters that are in `set`.
VEL_API VelPlatform::VelString RemoveCharacters(const VelPlatform::VelString& text, VelPlatform::VelStringView set);

} // namespace VelUtils::String
