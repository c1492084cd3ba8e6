// The styles inside values: finding them, and keeping a style from being copied into its own inside.
#pragma once

#include <styles/Style.h>

#include <cstddef>
#include <vector>

namespace Styles::Detail
{

/// Whether `candidate`, a value about to be stored under `definition`, names a style that lives inside `old`, a stored
/// value of that definition, so that destroying `old` would destroy it.
[[nodiscard]] bool RefersInto(const BaseStyleProperty& definition, const Any& old, const Any& candidate);

/// Whether `wanted` is one of the styles inside the values of `style`, at any depth.
[[nodiscard]] bool HoldsStyle(const Style& style, const Style& wanted);

/// Marks a style as being worked on while it is flattened or made independent, for as long as this object lives.
///
/// In a category that nests in itself, a style inside a style may inherit from the very style around it. To bring such
/// values in would go on for ever: each copy has the next one inside. So the styles on the way from the outermost style
/// inwards are marked, and so are the styles that copies among them were made from; what would bring a marked style in
/// once more is left out. The marks are per thread.
class WorkInProgress
{
public:
    explicit WorkInProgress(const Style& style);
    WorkInProgress(const WorkInProgress&) = delete;
    WorkInProgress& operator=(const WorkInProgress&) = delete;
    ~WorkInProgress();

    [[nodiscard]] static bool Includes(const Style& style);

    /// Whether styles are nested as deep as a document can be: nothing deeper could be written.
    [[nodiscard]] static bool IsTooDeep() noexcept;

private:
    const Style* m_style;
    const Style* m_original;
};

/// Stores `given`, made from `value`, which a style has under `definition`, in `target`, for merging. Nothing is stored
/// where that would put a style into its own inside, or bring in once more what is being brought in around `target`.
void BringIn(const BaseStyleProperty& definition, const Any& value, Any given, Style& target, const PropertyKey& key);

} // namespace Styles::Detail
