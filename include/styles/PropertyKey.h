/// \file
/// `PropertyKey`: a name, interned once per process, and the paths that are made of keys.
///
/// Property names, category names and the steps of a path into substyles are all keys. A key is one pointer wide and
/// refers to its text in the string pool of the library; two keys are equal exactly when their texts are. Copying,
/// comparing, ordering and hashing a key never read the text. Making one from text looks the text up in the pool: make
/// keys once, in a table, and not inside a loop.
///
/// Order: `std::less<PropertyKey>` orders by the address of the pooled text. A map of keys is in the same order for the
/// life of the process, in an order without meaning, and in another order in the next run.
///
/// Lifetime: the texts live until the library is unloaded. Keys that outlive it dangle.
///
/// Threads: any thread may make, copy and compare keys.
#pragma once

#include "StylesApi.h"

#include <VelPlatform/String.h>
#include <VelUtils/StringPool.h>

#include <cstddef>
#include <set> // also std::less
#include <vector>

namespace Styles
{

using VelPlatform::VelString;
using VelPlatform::VelStringA;
using VelPlatform::VelStringT;

/// Names the pool that keys live in.
class StringPool
{
public:
    /// The one pool of the process, made on first use.
    STYLES_API static VelUtils::StringPool& Get();
};

/// An interned name. Default construction gives the key of the empty text, `Empty`.
class PropertyKey : public VelUtils::PooledString<StringPool>
{
public:
    PropertyKey() = default;

    /// Interns `text`. \throws std::bad_alloc when a new text finds no memory.
    explicit PropertyKey(const VelString& text) : PooledString(text) {}

    /// The key of the empty text: no name, no category, no owner.
    STYLES_API static const PropertyKey Empty;
};

/// "style": the base category, and the property that carries a style's category.
STYLES_API extern const PropertyKey StyleCategoryName;

/// A path from a style down through its substyles: every key but the last names a substyle property, the last one the
/// property. A last key "*" stands for the substyle itself.
using PropertyPath = std::vector<PropertyKey>;

/// The path that `text` writes with points between its keys. Nothing is trimmed or looked up, and an empty piece is the
/// empty key: a text without a point gives a path of one key.
[[nodiscard]] STYLES_API PropertyPath SplitPath(const VelString& text);

/// \name Paths from their parts, in the order given.
/// @{

/// A path of one key: a property of the style itself.
[[nodiscard]] STYLES_API PropertyPath MakePath(const PropertyKey& first);
/// The property `second` of the substyle `first`.
[[nodiscard]] STYLES_API PropertyPath MakePath(const PropertyKey& first, const PropertyKey& second);
/// The property `third` of the substyle `second` of the substyle `first`.
[[nodiscard]] STYLES_API PropertyPath MakePath(const PropertyKey& first, const PropertyKey& second,
                                               const PropertyKey& third);
/// `rest`, as seen from the style that holds the substyle `first`.
[[nodiscard]] STYLES_API PropertyPath MakePath(const PropertyKey& first, const PropertyPath& rest);
/// The property `last` of the substyle that `start` leads to.
[[nodiscard]] STYLES_API PropertyPath MakePath(const PropertyPath& start, const PropertyKey& last);
/// `rest`, as seen from the style that holds the substyle that `start` leads to.
[[nodiscard]] STYLES_API PropertyPath MakePath(const PropertyPath& start, const PropertyPath& rest);
/// @}

/// \name One path of a single key for each key, in the order of the container; duplicates stay.
/// @{

/// In the order of the keys.
[[nodiscard]] STYLES_API std::vector<PropertyPath> MakePaths(const std::set<PropertyKey>& keys);
/// In the order given.
[[nodiscard]] STYLES_API std::vector<PropertyPath> MakePaths(const std::vector<PropertyKey>& keys);
/// @}

} // namespace Styles

/// Orders keys by the address of their pooled texts, without reading them.
// KEPT: the order is not alphabetical, and another one in each run. Look-ups by key never touch a text; who needs a
// stable order keeps a list or sorts by text. Pinned by
// PropertyKey.ASetOfKeysIsInTheOrderOfTheirAddressesAndNotOfTheirTexts
template <>
struct std::less<Styles::PropertyKey>
{
    /// Whether the text of `a` lies at the lower address.
    bool operator()(const Styles::PropertyKey& a, const Styles::PropertyKey& b) const noexcept
    {
        return std::less<const void*>()(a.GetPooled(), b.GetPooled());
    }
};

/// Hashes the address of the pooled text, without reading it.
template <>
struct std::hash<Styles::PropertyKey>
{
    /// The same for equal keys, and another one in each run.
    std::size_t operator()(const Styles::PropertyKey& key) const noexcept
    {
        return static_cast<std::size_t>(key.getHash());
    }
};
