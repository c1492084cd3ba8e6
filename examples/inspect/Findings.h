/// \file
/// What a look through a sheet's document finds.
#pragma once

#include "Document.h"

#include <string>
#include <vector>

namespace Inspect
{

enum class Severity
{
    Hint,
    Warning,
    Error
};

/// What becomes of the document because of a finding.
enum class Effect
{
    Kept,    ///< it is read as it stands
    Altered, ///< something is read as something else
    Lost,    ///< something is passed over, and saving loses it
    Refused  ///< nothing is read
};

/// A kind of finding. The identifiers stay the same from version to version.
struct Rule
{
    const char* id;
    Severity severity;
    Effect effect;
};

namespace Rules
{

inline constexpr Rule MalformedText{"malformed-text", Severity::Error, Effect::Refused};
inline constexpr Rule MalformedJson{"malformed-json", Severity::Error, Effect::Refused};
inline constexpr Rule BadShape{"bad-shape", Severity::Error, Effect::Refused};
inline constexpr Rule RepeatedName{"repeated-name", Severity::Error, Effect::Refused};
inline constexpr Rule BadValue{"bad-value", Severity::Error, Effect::Refused};
inline constexpr Rule UnknownCategory{"unknown-category", Severity::Warning, Effect::Lost};
inline constexpr Rule UnknownMember{"unknown-member", Severity::Warning, Effect::Lost};
inline constexpr Rule UnknownProperty{"unknown-property", Severity::Warning, Effect::Lost};
inline constexpr Rule WrongType{"wrong-type", Severity::Warning, Effect::Lost};
inline constexpr Rule BadVersion{"bad-version", Severity::Warning, Effect::Lost};
inline constexpr Rule RepeatedMember{"repeated-member", Severity::Warning, Effect::Kept};
inline constexpr Rule NewerVersion{"newer-version", Severity::Warning, Effect::Kept};
inline constexpr Rule NewerProperty{"newer-property", Severity::Warning, Effect::Kept};
inline constexpr Rule UnknownParent{"unknown-parent", Severity::Warning, Effect::Altered};
inline constexpr Rule OwnParent{"own-parent", Severity::Warning, Effect::Altered};
inline constexpr Rule ClosedChain{"closed-chain", Severity::Warning, Effect::Kept};
inline constexpr Rule ReplacedValue{"replaced-value", Severity::Warning, Effect::Altered};
inline constexpr Rule RoundedNumber{"rounded-number", Severity::Warning, Effect::Altered};
inline constexpr Rule EmptyMember{"empty-member", Severity::Hint, Effect::Kept};
inline constexpr Rule NullValue{"null-value", Severity::Hint, Effect::Kept};
inline constexpr Rule SameAsInherited{"same-as-inherited", Severity::Hint, Effect::Kept};
inline constexpr Rule LongChain{"long-chain", Severity::Hint, Effect::Kept};

} // namespace Rules

struct Finding
{
    const Rule* rule = nullptr;
    Place place;
    /// Line 0 where nobody asked for positions.
    TextPosition at;
    std::string message;
};

/// "error", "warning", "hint"
[[nodiscard]] const char* NameOf(Severity severity);

} // namespace Inspect
