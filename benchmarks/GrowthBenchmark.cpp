/// How work grows with what it is given: documents of 1, 10 and 100 megabytes, chains of parents, children of one
/// parent, names that differ only at their end, and many small sheets. The number at the end of a row's name is the
/// size; n log n is the bound.
///
/// The documents of 100 megabytes take 20 seconds for each repetition, and 1.7 gigabytes; `--benchmark_filter=-/100/`
/// leaves them out.

#include "Rows.h"
#include "SheetData.h"
#include "SheetDocument.h"

#include <cstdio>
#include <cstdlib>
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

constexpr std::size_t kBytesPerStyle = 670;
constexpr std::size_t kMegabyte = 1'000'000;
constexpr std::size_t kLongest = 1'000'000;
constexpr std::size_t kAlikeNames = 100'000;
constexpr std::size_t kSmallSheets = 10'000;
constexpr std::size_t kStylesOfSmallSheet = 10;

void Require(bool holds, const char* what)
{
    if (!holds)
    {
        std::fprintf(stderr, "not done: %s\n", what);
        std::exit(1);
    }
}

std::string MakeDocument(std::size_t megabytes)
{
    SheetDocument::RegisterSchema();
    return SheetDocument::Make(megabytes * kMegabyte / kBytesPerStyle);
}

std::shared_ptr<StyleSheet> ReadDocument(const std::string& document)
{
    auto sheet = std::make_shared<StyleSheet>();
    VelUtils::MemoryStream stream(document);
    Require(sheet->Import(stream, true), "import");
    return sheet;
}

Rows::Operation PrepareImport(std::size_t megabytes)
{
    struct World
    {
        std::string document;
        StyleSheet sheet;
    };
    auto world = std::make_shared<World>();
    world->document = MakeDocument(megabytes);
    return [world] {
        VelUtils::MemoryStream stream(world->document);
        Require(world->sheet.Import(stream, true), "import");
    };
}

Rows::Operation PrepareExport(std::size_t megabytes)
{
    return [sheet = ReadDocument(MakeDocument(megabytes))] {
        VelUtils::MemoryStream stream;
        Require(sheet->Export(stream), "export");
    };
}

Rows::Operation PrepareCopy(std::size_t megabytes)
{
    return [sheet = ReadDocument(MakeDocument(megabytes)), copy = std::make_shared<StyleSheet>()] {
        copy->CopyContentsFrom(*sheet, nullptr);
    };
}

Rows::Operation PrepareDestroy(std::size_t megabytes)
{
    auto sheet = std::make_shared<std::shared_ptr<StyleSheet>>(ReadDocument(MakeDocument(megabytes)));
    return [sheet] { sheet->reset(); };
}

/// Each style inherits from the one before; the first has two texts, the others a number.
std::shared_ptr<FilledSheet> MakeChain(std::size_t count)
{
    auto filled = std::make_shared<FilledSheet>();
    filled->styles.reserve(count);
    for (std::size_t index = 0; index < count; ++index)
    {
        Style& style = filled->Add(index != 0 ? filled->styles.back() : nullptr);
        style.SetProperty(NumberKey(), Styles::Any(static_cast<double>(index)));
    }
    filled->styles.front()->SetProperty(TextKey(), Styles::Any(VelString(L"at the top")));
    return filled;
}

Rows::Operation PrepareLookUpThroughChain(std::size_t count)
{
    return [filled = MakeChain(count)] { Keep(filled->styles.back()->GetProperty(TextKey()).IsEmpty()); };
}

Rows::Operation PrepareFlattenEndOfChain(std::size_t count)
{
    return [filled = MakeChain(count)] {
        const std::unique_ptr<Style> flat(filled->styles.back()->CreateFlattenedStyle());
        Keep(flat->GetParent());
    };
}

Rows::Operation PrepareDestroyChain(std::size_t count)
{
    return [filled = MakeChain(count)] { filled->sheet.reset(); };
}

std::shared_ptr<FilledSheet> MakeFamily(std::size_t children)
{
    auto filled = std::make_shared<FilledSheet>();
    filled->styles.reserve(children + 1);
    filled->Add(nullptr);
    for (std::size_t index = 0; index < children; ++index)
    {
        filled->Add(filled->styles.front());
    }
    return filled;
}

Rows::Operation PrepareListChildren(std::size_t count)
{
    return [filled = MakeFamily(count)] { Keep(filled->sheet->GetChildStyles(filled->styles.front()).size()); };
}

Rows::Operation PrepareDestroyFamily(std::size_t count)
{
    return [filled = MakeFamily(count)] { filled->sheet.reset(); };
}

/// Names that begin with the same 200 letters in either case, and differ in the number behind.
VelString AlikeName(std::size_t index, bool upper)
{
    std::wstring name(200, upper ? L'N' : L'n');
    name += std::to_wstring(kAlikeNames + index);
    return VelString(name.c_str());
}

Rows::Operation PrepareAddAlike(std::size_t count)
{
    struct World
    {
        std::vector<VelString> names;
        std::vector<std::unique_ptr<Style>> styles;
        StyleSheet sheet;
    };
    auto world = std::make_shared<World>();
    for (const std::size_t index : Shuffled(count))
    {
        world->names.push_back(AlikeName(index, index % 2 == 0));
        world->styles.push_back(std::make_unique<Style>(nullptr, Category()));
    }
    return [world] {
        for (std::size_t index = 0; index < world->names.size(); ++index)
        {
            world->sheet.AddStyle(world->names[index], world->styles[index].release(), false);
        }
    };
}

Rows::Operation PrepareFindAlike(std::size_t count)
{
    auto filled = std::make_shared<FilledSheet>();
    auto wanted = std::make_shared<std::vector<VelString>>();
    for (const std::size_t index : Shuffled(count))
    {
        filled->sheet->AddStyle(AlikeName(index, false), std::make_unique<Style>(nullptr, Category()).release(), false);
        wanted->push_back(AlikeName(index, true));
    }
    return [filled, wanted] {
        for (const VelString& name : *wanted)
        {
            Keep(filled->sheet->GetStyle(name));
        }
    };
}

Rows::Operation PrepareSmallSheets(std::size_t count)
{
    SheetDocument::RegisterSchema();
    struct World
    {
        std::string document = SheetDocument::Make(kStylesOfSmallSheet);
        std::vector<std::unique_ptr<StyleSheet>> sheets;
    };
    auto world = std::make_shared<World>();
    for (std::size_t index = 0; index < count; ++index)
    {
        world->sheets.push_back(std::make_unique<StyleSheet>());
    }
    return [world] {
        for (const std::unique_ptr<StyleSheet>& sheet : world->sheets)
        {
            VelUtils::MemoryStream stream(world->document);
            Require(sheet->Import(stream, true), "import");
        }
    };
}

using Prepare = Rows::Operation (*)(std::size_t);

void AddOnce(const char* workload, std::size_t size, std::size_t items, Prepare prepare)
{
    Rows::AddOnce(Sized(workload, size), Rows::Ours, items, [=] { return prepare(size); });
}

void AddOften(const char* workload, std::size_t size, std::size_t items, Prepare prepare)
{
    Rows::Add(Sized(workload, size), Rows::Ours, items, [=] { return prepare(size); });
}

const bool rowsAdded = [] {
    for (const std::size_t megabytes : {std::size_t{1}, std::size_t{10}, std::size_t{100}})
    {
        AddOnce("growth/import a document of megabytes", megabytes, megabytes, PrepareImport);
        AddOften("growth/export a document of megabytes", megabytes, megabytes, PrepareExport);
        AddOnce("growth/copy a document of megabytes", megabytes, megabytes, PrepareCopy);
        AddOnce("growth/destroy a document of megabytes", megabytes, megabytes, PrepareDestroy);
    }
    for (const std::size_t length : Doubling(kLongest))
    {
        AddOften("growth/look up through parents", length, length, PrepareLookUpThroughChain);
        AddOften("growth/flatten below parents", length, length, PrepareFlattenEndOfChain);
        AddOnce("growth/destroy a chain of parents", length, length, PrepareDestroyChain);
        AddOften("growth/list the children of one style", length, length, PrepareListChildren);
        AddOnce("growth/destroy a style and its children", length, length, PrepareDestroyFamily);
    }
    for (const std::size_t count : Doubling(kAlikeNames))
    {
        AddOnce("growth/add styles with names that begin alike", count, count, PrepareAddAlike);
        AddOften("growth/find styles with names that begin alike", count, count, PrepareFindAlike);
    }
    for (const std::size_t count : Doubling(kSmallSheets))
    {
        AddOnce("growth/import sheets of 10 styles", count, count, PrepareSmallSheets);
    }
    return true;
}();

} // namespace
