/// \file
/// `SubStyle`: a handle on a substyle that survives the replacement of its owner's values, and functions over
/// substyles.
///
/// A substyle belongs to a value of another style, so copying, replacing or reading its owner again makes new substyle
/// objects, and a plain pointer to one goes stale. The handle keeps the top-level style and the path instead.
#pragma once

#include "Style.h"

#include <VelUtils/Delegate.h>

#include <vector>

namespace Styles
{

/// A style, named by the topmost style that holds it and the path from there.
///
/// Ownership: none; the top style must outlive the use of the handle.
class STYLES_API SubStyle
{
public:
    /// A handle on `style` (null: an empty handle), wherever it is held now.
    explicit SubStyle(Style* style);
    /// A handle on the same place.
    SubStyle(const SubStyle& other);
    /// Leaves `other` empty.
    SubStyle(SubStyle&& other) noexcept;
    /// Becomes a handle on the same place.
    SubStyle& operator=(const SubStyle& other);
    ~SubStyle();

    /// The topmost style; null for an empty handle.
    [[nodiscard]] Style* GetRoot() const noexcept { return m_root; }

    /// The style that stands at the path now, null when there is none.
    operator Style*() const;
    /// The same, to be called through; not to be used where it is null.
    Style* operator->() const;

private:
    Style* m_root;
    PropertyPath m_path;
};

/// One handle for each style, in order.
[[nodiscard]] STYLES_API std::vector<SubStyle> StylesToSubStyles(const std::vector<Style*>& styles);

/// One style for each handle, in order; null for a handle that leads nowhere.
[[nodiscard]] STYLES_API std::vector<Style*> SubStylesToStyles(const std::vector<SubStyle>& subStyles);

/// The effective value of `propertyKey` in the effective substyle under `substyleKey`. Where that is null, the default
/// of the category that the substyle would have. \throws std::bad_cast when the value under `substyleKey` is no
/// substyle. \throws std::logic_error as `Style::GetProperty`.
[[nodiscard]] STYLES_API const Any& GetSubstyleProperty(const Style& style, const PropertyKey& substyleKey,
                                                        const PropertyKey& propertyKey);

/// Copies the effective value of `propertyKey` in the effective substyle into `out`. False, `out` untouched, when
/// either is the default. \throws std::bad_cast when the value under `substyleKey` is no substyle.
STYLES_API bool GetSubstyleProperty(const Style& style, const PropertyKey& substyleKey, const PropertyKey& propertyKey,
                                    Any& out);

/// The own substyle under `substyleKey`, made first when there is none. Null, and no change, for a key that is no
/// substyle property.
STYLES_API Style* GetOrCreateSubstyle(Style& style, const PropertyKey& substyleKey);

/// Sets a value in the own substyle under `substyleKey`, made first, of category `substyleCategory`, when there is
/// none. Where none can be made, the value is set in the inherited substyle, and nothing happens without that.
/// \throws std::bad_cast when the value under `substyleKey` is no substyle.
STYLES_API void SetSubstyleProperty(Style& style, const PropertyKey& substyleCategory, const PropertyKey& substyleKey,
                                    const PropertyKey& propertyKey, const Any& value);

/// Removes a value from the own substyle under `substyleKey`; nothing happens without one.
/// \throws std::bad_cast when the own value under `substyleKey` is no substyle.
STYLES_API void ClearSubstyleProperty(Style& style, const PropertyKey& substyleKey, const PropertyKey& propertyKey);

/// `style` itself when `key` is its category's name, else its substyle under `key`, see `Style::GetSubstyle`. Null for
/// null.
[[nodiscard]] STYLES_API Style* GetStyleOrSubstyle(Style* style, const PropertyKey& key, bool inherited);

/// The parent that a substyle effectively has: its own, or that of the substyle under the same key of the nearest style
/// that its owner inherits from and whose substyle has one. Null when there is none.
[[nodiscard]] STYLES_API Style* GetSubstyleParent(const Style& style);

/// Visits the own direct substyles under `keys`, or under all properties of the category when `keys` is empty, in
/// order, and before them, with `includeSelf`, the style itself. False when the visitor answered false, or when there
/// is something to visit and `visit` is empty. True for null.
STYLES_API bool ForEachSubStyle(Style* style, const VelUtils::basic_safe_function<bool(Style*)>& visit,
                                bool includeSelf, std::vector<PropertyKey> keys);

/// Removes the substyles without values, innermost first.
STYLES_API void ClearEmptySubstyles(Style& style);

/// Brings the substyles of `source` into `destination` where that has a value already: with `mergeValues` value by
/// value, else as a copy in its place.
STYLES_API void CopySourceSubstylesThatExistsInDestinationStyle(Style* destination, const Style* source,
                                                                bool mergeValues);

} // namespace Styles
