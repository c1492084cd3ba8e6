/// Sheets of any number of styles, for the questions about many styles.
#pragma once

#include <styles/Styles.h>

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <vector>

namespace SheetData
{

/// The base category, with two texts, a number, the substyle property `SubstyleKey` and the list `ListKey`.
[[nodiscard]] const Styles::PropertyKey& Category();
/// Another category of top-level styles, with the same texts.
[[nodiscard]] const Styles::PropertyKey& OtherCategory();

[[nodiscard]] const Styles::PropertyKey& TextKey();
[[nodiscard]] const Styles::PropertyKey& NumberKey();
[[nodiscard]] const Styles::PropertyKey& SubstyleKey();
[[nodiscard]] const Styles::PropertyKey& ListKey();

/// The name of a style: different for every index, in an order that has nothing to do with the index.
[[nodiscard]] Styles::VelString NameOf(std::size_t index);
/// The same with another case.
[[nodiscard]] Styles::VelString NameInOtherCase(std::size_t index);
/// The names of the styles 0 to `count` - 1.
[[nodiscard]] std::vector<Styles::VelString> NamesOf(std::size_t count);

/// The numbers 0 to `count` - 1 in no order, always the same.
[[nodiscard]] std::vector<std::size_t> Shuffled(std::size_t count);

/// A sheet and its styles by index.
struct FilledSheet
{
    std::unique_ptr<Styles::StyleSheet> sheet = std::make_unique<Styles::StyleSheet>();
    std::vector<Styles::Style*> styles;

    /// Adds an empty style as number `styles.size()`.
    Styles::Style& Add(Styles::Style* parent, const Styles::PropertyKey& category = Category());
};

/// `count` empty styles without parents, every other one of the other category.
[[nodiscard]] FilledSheet MakeFlatSheet(std::size_t count);

/// `count` styles with two texts, a number, a substyle with two texts and, every fourth, a list of two styles. Each but
/// the first inherits from the style of an eighth of its index, and its substyle from another one's.
[[nodiscard]] FilledSheet MakeRichSheet(std::size_t count);

/// The span that the dependency queries take.
[[nodiscard]] Styles::StyleSpan Span(const std::vector<Styles::Style*>& styles, bool sorted = false);

/// The sizes that growth is told by: an eighth, a quarter and a half of `largest`, and itself.
[[nodiscard]] std::vector<std::size_t> Doubling(std::size_t largest);

/// The name of a row that belongs to a size.
[[nodiscard]] std::string Sized(const std::string& workload, std::size_t size);

} // namespace SheetData
