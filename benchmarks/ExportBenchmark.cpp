// What writing a sheet costs: from the styles in memory to the UTF-8 text of a document. Ours writes a member a line;
// the peers that do so are named pretty, the other writes no white space at all.

#include "PeerWriters.h"
#include "Rows.h"
#include "SheetDocument.h"

#include <VelUtils/Stream.h>
#include <styles/Styles.h>

#include <algorithm>
#include <any>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace
{

/// A contender that writes too little measures nothing.
void Require(bool holds)
{
    if (!holds)
    {
        std::fputs("The sheet was not written.\n", stderr);
        std::abort();
    }
}

std::shared_ptr<Styles::StyleSheet> MakeSheet(std::size_t styles)
{
    SheetDocument::RegisterSchema();
    auto sheet = std::make_shared<Styles::StyleSheet>();
    VelUtils::MemoryStream stream(SheetDocument::Make(styles));
    Require(sheet->Import(stream, /*replace*/ true) && sheet->GetStyles().size() == styles);
    return sheet;
}

Rows::Operation PrepareOurs(std::size_t styles)
{
    return [styles, sheet = MakeSheet(styles)] {
        VelUtils::MemoryStream stream;
        Require(sheet->Export(stream) && stream.GetBytes().size() > styles * 600);
    };
}

/// Everything that a document holds of a style, copied as it is: no member, no escape, no check.
[[maybe_unused]] void CopyTexts(const PeerStyles::Style& style, std::string& out)
{
    const auto copy = [&out](const std::wstring& text) {
        const std::size_t size = out.size();
        out.resize(size + text.size());
        std::transform(text.begin(), text.end(), out.begin() + static_cast<std::ptrdiff_t>(size),
                       [](wchar_t character) { return static_cast<char>(character); });
    };
    for (const auto& [name, value] : style.properties)
    {
        copy(name);
        if (const auto* text = std::any_cast<std::wstring>(&value))
        {
            copy(*text);
        }
        else if (const auto* substyle = std::any_cast<PeerStyles::Style>(&value))
        {
            CopyTexts(*substyle, out);
        }
    }
}

/// The least that has to be done with styles that stand about in maps.
[[maybe_unused]] std::size_t CopyAllTexts(const PeerStyles::Sheet& sheet)
{
    std::string out;
    for (const auto& [name, style] : sheet.styles)
    {
        CopyTexts(style, out);
    }
    return out.size() * 2; // what is between the texts is missing
}

/// The same without styles: our document, made already, copied to where it goes.
Rows::Operation PrepareCopy(std::size_t styles)
{
    VelUtils::MemoryStream stream;
    Require(MakeSheet(styles)->Export(stream));
    return [text = stream.GetBytes()] {
        const std::string copy = text;
        Rows::Keep(copy.data());
    };
}

using PeerImport = bool (*)(const std::string&, PeerStyles::Sheet&);
using PeerExport = std::size_t (*)(const PeerStyles::Sheet&);

[[maybe_unused]] void AddPeer(std::size_t styles, const char* contender, PeerImport import, PeerExport exportSheet)
{
    Rows::Add("export/" + std::to_string(styles), contender, styles, [=] {
        const auto sheet = std::make_shared<PeerStyles::Sheet>();
        Require(import(SheetDocument::Make(styles), *sheet) && sheet->styles.size() == styles);
        return Rows::Operation([=] { Require(exportSheet(*sheet) > styles * 600); });
    });
}

[[maybe_unused]] const bool added = [] {
    for (const std::size_t styles : {std::size_t{100}, std::size_t{1000}, std::size_t{10'000}, std::size_t{100'000}})
    {
        Rows::Add("export/" + std::to_string(styles), Rows::Ours, styles, [styles] { return PrepareOurs(styles); });
#ifdef STYLES_PEER_RAPIDJSON
        const PeerImport importByEvents = [](const std::string& text, PeerStyles::Sheet& sheet) {
            return PeerStyles::ImportByRapidEvents<rapidjson::UTF8<>>(text.c_str(), sheet);
        };
        AddPeer(styles, "RapidJSON writer", importByEvents, &PeerStyles::ExportByRapidWriter);
        AddPeer(styles, "RapidJSON pretty writer", importByEvents, &PeerStyles::ExportByRapidPrettyWriter);
        AddPeer(styles, "limit: copying the texts", importByEvents, &CopyAllTexts);
#endif
#ifdef STYLES_PEER_NLOHMANN
        if (styles < 100'000) // it looks for each name among all before it
        {
            AddPeer(styles, "nlohmann::ordered_json, pretty", &PeerStyles::ImportByNlohmannEvents,
                    &PeerStyles::ExportByNlohmannDocument);
        }
#endif
        Rows::Add("export/" + std::to_string(styles), "limit: copying the document", styles,
                  [styles] { return PrepareCopy(styles); });
    }
    return true;
}();

} // namespace
