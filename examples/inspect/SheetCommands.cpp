// What several commands do with the sheet.

#include "Commands.h"
#include "Failure.h"
#include "Output.h"

#include <VelUtils/Stream.h>

#include <filesystem>
#include <string>
#include <system_error>

namespace Inspect
{

Styles::Style& FindStyle(const Sheet& sheet, const VelString& name)
{
    if (Styles::Style* style = sheet.GetStyle(name))
    {
        return *style;
    }
    throw Failure(Shown(sheet.GetPath()) + ": there is no style " + Quoted(name) + "; `list` shows those there are");
}

bool AreSameFile(const VelString& one, const VelString& other)
{
    const auto pathOf = [](const VelString& text) {
        const VelPlatform::VelStringA narrow = VelPlatform::ToNarrow(text);
        return std::filesystem::path(std::u8string(narrow.begin(), narrow.end()));
    };
    std::error_code ignored; // a file that is not there yet is no other
    return one == other || std::filesystem::equivalent(pathOf(one), pathOf(other), ignored);
}

void SaveSheet(Session& session, const VelString& path)
{
    const Sheet& sheet = session.sheet;
    if (!sheet.GetLosses().empty() && !session.request.lossy && AreSameFile(sheet.GetPath(), path))
    {
        throw Failure(Shown(sheet.GetPath()) + ": not saved, since what was passed over would be lost; " +
                      "--lossy saves the rest");
    }
    WarnOfValuesLeftOut(session, sheet.GetValuesLeftOut());
    if (path == L"-")
    {
        session.out << sheet.ToBytes();
    }
    else
    {
        sheet.Save(path);
    }
}

void SaveChanges(Session& session, const std::string& report)
{
    const VelString& given = session.request.outputPath;
    const VelString& path = given.empty() ? session.sheet.GetPath() : given;
    SaveSheet(session, path);
    if (path != L"-")
    {
        session.out << report << "saved to " << Shown(path) << '\n';
    }
}

void WarnOfLosses(const Sheet& sheet, std::ostream& err)
{
    for (const std::string& loss : sheet.GetLosses())
    {
        err << "styles-inspect: warning: " << loss << " (passed over)\n";
    }
    for (const std::string& warning : sheet.GetWarnings())
    {
        err << "styles-inspect: warning: " << warning << '\n';
    }
}

void WriteFile(const VelString& path, const std::string& bytes)
{
    VelUtils::Stream stream = VelUtils::FileStream::Create(path);
    if (!stream || !stream.Write(bytes.data(), bytes.size()) || !stream.Close())
    {
        throw Failure(Shown(path) + ": cannot be written; nothing was saved");
    }
}

void WarnOfValuesLeftOut(Session& session, const std::vector<std::string>& messages)
{
    for (const std::string& message : messages)
    {
        session.err << "styles-inspect: warning: " << Shown(session.sheet.GetPath()) << ": " << message << '\n';
    }
}

} // namespace Inspect
