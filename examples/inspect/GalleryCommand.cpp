// gallery: a page that shows the styles as they look.

#include "Commands.h"
#include "Failure.h"
#include "GalleryData.h"
#include "GalleryFiles.h"
#include "Output.h"

#include <VelUtils/Stream.h>

#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Inspect
{

namespace
{

using VelPlatform::VelStringA;

/// JSON that may stand in a page: what could end the element around it, or a line of a script, is written by number.
std::string ForPage(std::string_view json)
{
    constexpr std::string_view separators = "\xE2\x80"; // begins U+2028 and U+2029
    std::string text;
    text.reserve(json.size());
    for (std::size_t index = 0; index < json.size(); ++index)
    {
        const char c = json[index];
        if (c == '<' || c == '>' || c == '&')
        {
            text += c == '<' ? "\\u003c" : c == '>' ? "\\u003e" : "\\u0026";
        }
        else if (json.compare(index, 2, separators) == 0 && index + 2 < json.size() &&
                 (json[index + 2] == '\xA8' || json[index + 2] == '\xA9'))
        {
            text += json[index + 2] == '\xA8' ? "\\u2028" : "\\u2029";
            index += 2;
        }
        else
        {
            text += c;
        }
    }
    return text;
}

std::string ForMarkup(std::string_view text)
{
    std::string markup;
    for (const char c : text)
    {
        switch (c)
        {
        case '<':
            markup += "&lt;";
            break;
        case '&':
            markup += "&amp;";
            break;
        case '"':
            markup += "&quot;";
            break;
        default:
            markup += c;
            break;
        }
    }
    return markup;
}

/// The page with each @name@ of `texts` replaced once, in the order of the page.
std::string Fill(std::string_view page, const std::vector<std::pair<std::string_view, std::string>>& texts)
{
    std::string filled;
    for (const auto& [name, text] : texts)
    {
        const std::size_t found = page.find(name);
        if (found == std::string_view::npos)
        {
            throw std::logic_error("the page has no place for " + std::string(name));
        }
        filled.append(page.substr(0, found)).append(text);
        page.remove_prefix(found + name.size());
    }
    return filled.append(page);
}

std::string MakePage(const Session& session, const Looks& looks)
{
    const Json::Variant data = MakeGalleryData(session.schema, session.sheet, looks);
    const VelStringA json = VelPlatform::ToNarrow(Json::ValueToString(data, /*compact*/ true));
    const VelString& name = data.Get<Json::Object>().GetValue(VelString(L"sheet"))->Get<VelString>();
    return Fill(GalleryFiles::Page, {{"@title@", ForMarkup(Shown(name))},
                                     {"@style@", std::string(GalleryFiles::Style)},
                                     {"@data@", ForPage(std::string_view(json))},
                                     {"@script@", std::string(GalleryFiles::Script)}});
}

void CheckOutput(const Session& session)
{
    const Request& request = session.request;
    for (const VelString& input : {session.sheet.GetPath(), session.schema.GetPath(), request.lookPath})
    {
        if (!input.empty() && AreSameFile(input, request.outputPath))
        {
            throw Failure(Shown(request.outputPath) + ": is what the page is made of; nothing was written");
        }
    }
}

} // namespace

void RunGallery(Session& session)
{
    CheckOutput(session);
    Looks looks = session.schema.GetLooks();
    if (!session.request.lookPath.empty())
    {
        looks.ReadFile(ReadDocument(session.request.lookPath));
    }
    const std::string page = MakePage(session, looks);
    const VelString& path = session.request.outputPath;
    if (path == L"-")
    {
        session.out << page;
        return;
    }
    VelUtils::Stream stream = VelUtils::FileStream::Create(path);
    if (!stream || !stream.Write(page.data(), page.size()) || !stream.Close())
    {
        throw Failure(Shown(path) + ": cannot be written; nothing was saved");
    }
    session.out << Counted(session.sheet.GetStyles().size(), "style") << " shown in " << Shown(path) << '\n';
}

} // namespace Inspect
