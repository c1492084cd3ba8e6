/// How questions about dependencies, and what follows from the answers, grow with the styles that are visited: styles
/// with substyles and lists, which inherit from one another. Twice the styles are to take twice as long.

#include "Rows.h"
#include "SheetData.h"

#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace
{

using namespace SheetData;
using Rows::Keep;
using Styles::Style;

constexpr std::size_t kStyles = 100'000;

using Filled = std::shared_ptr<FilledSheet>;

Filled MakeRich(std::size_t count)
{
    return std::make_shared<FilledSheet>(MakeRichSheet(count));
}

/// Each style inherits from the one before.
Filled MakeChain(std::size_t count)
{
    auto filled = std::make_shared<FilledSheet>();
    filled->styles.reserve(count);
    Style* parent = nullptr;
    for (std::size_t index = 0; index < count; ++index)
    {
        parent = &filled->Add(parent);
    }
    return filled;
}

/// Every `step`-th style, sorted by address.
std::vector<Style*> Pick(const FilledSheet& filled, std::size_t step)
{
    std::vector<Style*> picked;
    for (std::size_t index = step - 1; index < filled.styles.size(); index += step)
    {
        picked.push_back(filled.styles[index]);
    }
    std::sort(picked.begin(), picked.end(), std::less<>());
    return picked;
}

Rows::Operation PrepareDependantsOfOne(std::size_t count)
{
    return [filled = MakeRich(count)] {
        std::vector<Style*> dependants;
        filled->sheet->GetDependencies(std::vector<Style*>{filled->styles.front()}, dependants);
        Keep(dependants.size());
    };
}

Rows::Operation PrepareDependantsOfHalf(std::size_t count)
{
    Filled filled = MakeRich(count);
    return [filled, wanted = Pick(*filled, 2)] {
        std::vector<Style*> dependants;
        filled->sheet->GetDependencies(Span(wanted, true), dependants);
        Keep(dependants.size());
    };
}

Rows::Operation PrepareDependenciesOfEach(std::size_t count)
{
    Filled filled = MakeRich(count);
    return [filled, wanted = Pick(*filled, 2)] {
        for (Style* style : filled->styles)
        {
            Keep(style->GetDependencies(Span(wanted, true), false).size());
        }
    };
}

Rows::Operation PrepareHasDependencyOfEach(std::size_t count)
{
    Filled filled = MakeRich(count);
    return [filled, wanted = std::vector<Style*>{filled->styles.back()}] {
        for (const Style* style : filled->styles)
        {
            Keep(style->HasDependency(Span(wanted, true)));
        }
    };
}

Rows::Operation PrepareDependenciesOfTheLast(std::size_t count)
{
    Filled filled = MakeChain(count);
    return [filled, wanted = Pick(*filled, 2)] {
        Keep(filled->styles.back()->GetDependencies(Span(wanted, true), false).size());
    };
}

Rows::Operation PrepareDeletingATenth(std::size_t count)
{
    Filled filled = MakeRich(count);
    return [filled, doomed = Pick(*filled, 10)] { Keep(filled->sheet->DeleteStyles(Span(doomed, true))); };
}

Rows::Operation PrepareRemovingFromEach(std::size_t count)
{
    Filled filled = MakeRich(count);
    return [filled, wanted = Pick(*filled, 2)] {
        for (Style* style : filled->styles)
        {
            style->RemoveDependency(Span(wanted, true), true);
        }
    };
}

Rows::Operation PrepareRemovingFromTheLast(std::size_t count)
{
    Filled filled = MakeChain(count);
    return [filled, wanted = Pick(*filled, 2)] { filled->styles.back()->RemoveDependency(Span(wanted, true), false); };
}

Rows::Operation PrepareRemapping(std::size_t count)
{
    Filled filled = MakeRich(count);
    std::map<Style*, Style*> replacements;
    for (Style* style : Pick(*filled, 2))
    {
        replacements.emplace(style, filled->styles.front());
    }
    return [filled, replacements = std::move(replacements)] {
        for (Style* style : filled->styles)
        {
            style->RemapDependency(replacements);
        }
    };
}

const bool rowsAdded = [] {
    for (const std::size_t count : Doubling(kStyles))
    {
        const auto often = [count](const char* workload, Rows::Operation (*prepare)(std::size_t)) {
            Rows::Add(Sized(workload, count), Rows::Ours, count, [=] { return prepare(count); });
        };
        const auto once = [count](const char* workload, Rows::Operation (*prepare)(std::size_t)) {
            Rows::AddOnce(Sized(workload, count), Rows::Ours, count, [=] { return prepare(count); });
        };
        often("dependencies/dependants of one style", PrepareDependantsOfOne);
        often("dependencies/dependants of half the styles", PrepareDependantsOfHalf);
        often("dependencies/dependencies of each style", PrepareDependenciesOfEach);
        often("dependencies/ask each style for one", PrepareHasDependencyOfEach);
        often("dependencies/dependencies at the end of a chain", PrepareDependenciesOfTheLast);
        once("dependencies/delete a tenth", PrepareDeletingATenth);
        once("dependencies/remove half from each style", PrepareRemovingFromEach);
        once("dependencies/remove half at the end of a chain", PrepareRemovingFromTheLast);
        once("dependencies/remap half of the parents", PrepareRemapping);
    }
    return true;
}();

} // namespace
