/// How what is done with a sheet grows with its styles: every row is measured for an eighth, a quarter and a half of
/// the styles too, and is good when twice the styles take no more than 2.3 times as long, as n log n does.

#include "Rows.h"
#include "SheetData.h"

#include <algorithm>
#include <map>
#include <memory>
#include <string>
#include <utility>

namespace
{

using namespace SheetData;
using Rows::Keep;
using Styles::Style;
using Styles::StyleSheet;
using Styles::VelString;

constexpr std::size_t kStyles = 1'000'000;
constexpr std::size_t kUnusedNames = 10'000;
constexpr const char* kFoldingMap = "std::map<wstring> folding ASCII";

/// What most would write for names without case.
struct LessFoldingAscii
{
    static wchar_t Fold(wchar_t unit) noexcept
    {
        return unit >= L'A' && unit <= L'Z' ? static_cast<wchar_t>(unit + 32) : unit;
    }

    bool operator()(const std::wstring& left, const std::wstring& right) const noexcept
    {
        return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                            [](wchar_t a, wchar_t b) { return Fold(a) < Fold(b); });
    }
};

using FoldingMap = std::map<std::wstring, void*, LessFoldingAscii>;

std::wstring ToStd(const VelString& text)
{
    return std::wstring(text.begin(), text.end());
}

Rows::Operation PrepareAdding(std::size_t count)
{
    struct World
    {
        std::vector<VelString> names;
        std::vector<std::unique_ptr<Style>> styles;
        StyleSheet sheet;
    };
    auto world = std::make_shared<World>();
    world->names = NamesOf(count);
    for (std::size_t index = 0; index < count; ++index)
    {
        world->styles.push_back(std::make_unique<Style>(nullptr, Category()));
    }
    return [world] {
        for (std::size_t index = 0; index < world->names.size(); ++index)
        {
            world->sheet.AddStyle(world->names[index], world->styles[index].release(), false);
        }
    };
}

Rows::Operation PrepareAddingToMap(std::size_t count)
{
    auto names = std::make_shared<std::vector<std::wstring>>();
    for (std::size_t index = 0; index < count; ++index)
    {
        names->push_back(ToStd(NameOf(index)));
    }
    return [names, map = std::make_shared<FoldingMap>()] {
        for (const std::wstring& name : *names)
        {
            map->emplace(name, nullptr);
        }
    };
}

Rows::Operation PrepareFindingAs(std::size_t count, VelString (*spell)(std::size_t))
{
    auto filled = std::make_shared<FilledSheet>(MakeFlatSheet(count));
    auto wanted = std::make_shared<std::vector<VelString>>();
    for (const std::size_t index : Shuffled(count))
    {
        wanted->push_back(spell(index));
    }
    return [filled, wanted] {
        for (const VelString& name : *wanted)
        {
            Keep(filled->sheet->GetStyle(name));
        }
    };
}

Rows::Operation PrepareFinding(std::size_t count)
{
    return PrepareFindingAs(count, NameOf);
}

Rows::Operation PrepareFindingInOtherCase(std::size_t count)
{
    return PrepareFindingAs(count, NameInOtherCase);
}

Rows::Operation PrepareFindingInMapAs(std::size_t count, VelString (*spell)(std::size_t))
{
    auto map = std::make_shared<FoldingMap>();
    auto wanted = std::make_shared<std::vector<std::wstring>>();
    for (std::size_t index = 0; index < count; ++index)
    {
        map->emplace(ToStd(NameOf(index)), map.get());
    }
    for (const std::size_t index : Shuffled(count))
    {
        wanted->push_back(ToStd(spell(index)));
    }
    return [map, wanted] {
        for (const std::wstring& name : *wanted)
        {
            const auto entry = map->find(name);
            Keep(entry != map->end() ? entry->second : nullptr);
        }
    };
}

Rows::Operation PrepareFindingInMap(std::size_t count)
{
    return PrepareFindingInMapAs(count, NameOf);
}

Rows::Operation PrepareFindingInMapInOtherCase(std::size_t count)
{
    return PrepareFindingInMapAs(count, NameInOtherCase);
}

Rows::Operation PrepareRenaming(std::size_t count)
{
    auto filled = std::make_shared<FilledSheet>(MakeFlatSheet(count));
    auto changes = std::make_shared<std::vector<std::pair<VelString, VelString>>>();
    for (const std::size_t index : Shuffled(count))
    {
        changes->emplace_back(NameOf(index), NameOf(count + index));
    }
    return [filled, changes] {
        for (const auto& [oldName, newName] : *changes)
        {
            filled->sheet->RenameStyle(oldName, newName);
        }
    };
}

Rows::Operation PrepareListingACategory(std::size_t count)
{
    auto filled = std::make_shared<FilledSheet>(MakeFlatSheet(count));
    return [filled] { Keep(filled->sheet->GetStylesByCategory(OtherCategory()).size()); };
}

Rows::Operation PrepareListingNames(std::size_t count)
{
    auto filled = std::make_shared<FilledSheet>(MakeFlatSheet(count));
    return [filled] { Keep(filled->sheet->GetStyleNames(OtherCategory()).size()); };
}

/// The even styles are the parents of the odd ones.
FilledSheet MakePairs(std::size_t count)
{
    FilledSheet made;
    made.styles.reserve(count);
    for (std::size_t index = 0; index < count; ++index)
    {
        Style& style = made.Add(index % 2 == 0 ? nullptr : made.styles[index - 1]);
        style.SetProperty(index % 2 == 0 ? TextKey() : NumberKey(),
                          index % 2 == 0 ? Styles::Any(VelString(L"from the parent")) : Styles::Any(1.0));
    }
    return made;
}

Rows::Operation PrepareDeletingHalf(std::size_t count)
{
    auto filled = std::make_shared<FilledSheet>(MakePairs(count));
    auto doomed = std::make_shared<std::vector<Style*>>();
    for (std::size_t index = 0; index < count; index += 2)
    {
        doomed->push_back(filled->styles[index]);
    }
    return [filled, doomed] { Keep(filled->sheet->DeleteStyles(Span(*doomed))); };
}

Rows::Operation PrepareRemovingAll(std::size_t count)
{
    auto filled = std::make_shared<FilledSheet>(MakeFlatSheet(count));
    return [filled, order = Shuffled(count)] {
        for (const std::size_t index : order)
        {
            filled->sheet->RemoveStyle(filled->styles[index]);
            delete filled->styles[index];
        }
    };
}

Rows::Operation PrepareDestroying(std::size_t count)
{
    auto filled = std::make_shared<FilledSheet>(MakeFlatSheet(count));
    return [filled] { filled->sheet.reset(); };
}

/// `names` names from one base, each given to a style, in a sheet that has `others` styles more.
Rows::Operation PrepareUnusedNames(std::size_t names, std::size_t others)
{
    auto filled = std::make_shared<FilledSheet>(MakeFlatSheet(others));
    return [filled, names] {
        const VelString base(L"Heading");
        for (std::size_t index = 0; index < names; ++index)
        {
            auto style = std::make_unique<Style>(nullptr, Category());
            filled->sheet->AddStyle(filled->sheet->GetUnusedStyleName(base), style.release(), false);
        }
    };
}

/// Whenever a style has been added the sheet loses another one of the same base, in no order.
Rows::Operation PrepareUnusedNamesBetweenRemovals(std::size_t names)
{
    auto filled = std::make_shared<FilledSheet>();
    const VelString base(L"Heading");
    auto inUse = std::make_shared<std::vector<Style*>>();
    const auto add = [filled, inUse, base] {
        inUse->push_back(new Style(nullptr, Category()));
        filled->sheet->AddStyle(filled->sheet->GetUnusedStyleName(base), inUse->back(), false);
    };
    for (std::size_t index = 0; index < names; ++index)
    {
        add();
    }
    return [filled, inUse, add, order = Shuffled(names)] {
        for (const std::size_t index : order)
        {
            filled->sheet->RemoveStyle((*inUse)[index]);
            delete (*inUse)[index];
            add();
        }
    };
}

const bool rowsAdded = [] {
    for (const std::size_t count : Doubling(kStyles))
    {
        const auto once = [count](const char* workload, Rows::Operation (*prepare)(std::size_t),
                                  const char* contender = Rows::Ours) {
            Rows::AddOnce(Sized(workload, count), contender, count, [=] { return prepare(count); });
        };
        const auto often = [count](const char* workload, Rows::Operation (*prepare)(std::size_t),
                                   const char* contender = Rows::Ours) {
            Rows::Add(Sized(workload, count), contender, count, [=] { return prepare(count); });
        };
        once("sheet/add", PrepareAdding);
        once("sheet/add", PrepareAddingToMap, kFoldingMap);
        often("sheet/find by name", PrepareFinding);
        often("sheet/find by name", PrepareFindingInMap, kFoldingMap);
        often("sheet/find by name in other case", PrepareFindingInOtherCase);
        often("sheet/find by name in other case", PrepareFindingInMapInOtherCase, kFoldingMap);
        once("sheet/rename", PrepareRenaming);
        often("sheet/list a category", PrepareListingACategory);
        often("sheet/list the names of a category", PrepareListingNames);
        once("sheet/delete half with dependants", PrepareDeletingHalf);
        once("sheet/remove", PrepareRemovingAll);
        once("sheet/destroy", PrepareDestroying);
        Rows::AddOnce(Sized("sheet/10000 unused names beside", count), Rows::Ours, kUnusedNames,
                      [count] { return PrepareUnusedNames(kUnusedNames, count); });
    }
    for (const std::size_t names : Doubling(2 * kUnusedNames))
    {
        Rows::AddOnce(Sized("sheet/unused names from one base", names), Rows::Ours, names,
                      [names] { return PrepareUnusedNames(names, 0); });
        Rows::AddOnce(Sized("sheet/unused names between removals", names), Rows::Ours, names,
                      [names] { return PrepareUnusedNamesBetweenRemovals(names); });
    }
    return true;
}();

} // namespace
