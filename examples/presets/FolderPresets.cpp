#include "FolderPresets.h"

#include <VelUtils/Path.h>
#include <VelUtils/Stream.h>

#include <fstream>
#include <iterator>
#include <string>
#include <system_error>
#include <utility>

using Styles::StyleSheet;
using Styles::VelString;

namespace
{

std::filesystem::path ToPath(const VelString& text)
{
    const VelPlatform::VelStringA utf8 = VelPlatform::ToNarrow(text);
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

std::string ToUtf8(const std::filesystem::path& path)
{
    const std::u8string text = path.u8string();
    return std::string(text.begin(), text.end());
}

} // namespace

FolderPresets::FolderPresets(const VelString& folder, Notice notice) : m_folder(folder), m_notice(std::move(notice)) {}

StyleSheet* FolderPresets::GetPresetSheet(const VelString& category)
{
    if (const auto loaded = sheets.find(category); loaded != sheets.end())
    {
        return loaded->second;
    }
    const auto& manager = VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
    if (!manager.CategoryExists(category))
    {
        return nullptr;
    }
    std::unique_ptr<StyleSheet> sheet = Load(GetFile(category));
    if (!sheet)
    {
        return nullptr;
    }
    return sheets.emplace(category, nullptr).first->second = sheet.release();
}

bool FolderPresets::IsSaved(const VelString& category)
{
    const StyleSheet* sheet = GetPresetSheet(category);
    VelUtils::MemoryStream document;
    std::ifstream file(GetFile(category), std::ios::binary);
    return sheet != nullptr && sheet->Export(document) && file &&
           std::string(std::istreambuf_iterator<char>(file), {}) == document.GetBytes();
}

std::filesystem::path FolderPresets::GetFile(const VelString& category) const
{
    return ToPath(VelUtils::SystemIO::Path::Combine(m_folder, GetFileName(category)));
}

std::unique_ptr<StyleSheet> FolderPresets::Load(const std::filesystem::path& file) const
{
    auto sheet = std::make_unique<StyleSheet>();
    std::error_code error;
    if (!std::filesystem::exists(file, error) && !error)
    {
        return sheet; // the first preset of the category makes the file
    }
    const std::u8string name = file.u8string();
    VelUtils::Stream stream = VelUtils::FileStream::Open(
        VelPlatform::ToWide(std::string_view(reinterpret_cast<const char*>(name.data()), name.size())));
    if (!stream)
    {
        m_notice("The presets in " + ToUtf8(file) + " cannot be opened.");
        return nullptr;
    }
    if (sheet->Import(stream, /*replace*/ false))
    {
        return sheet;
    }
    if (!KeepAside(file))
    {
        return nullptr;
    }
    return std::make_unique<StyleSheet>(); // what was read before the damage was found goes
}

bool FolderPresets::KeepAside(const std::filesystem::path& file) const
{
    std::error_code error;
    for (int number = 1; number <= 1000; ++number)
    {
        std::filesystem::path aside = file;
        aside += ".damaged-" + std::to_string(number);
        if (std::filesystem::exists(aside, error))
        {
            continue;
        }
        std::filesystem::rename(file, aside, error);
        if (!error)
        {
            m_notice("The presets in " + ToUtf8(file) + " are damaged. The file is kept as " + ToUtf8(aside) + ".");
            return true;
        }
        break;
    }
    m_notice("The presets in " + ToUtf8(file) + " are damaged, and the file cannot be kept aside.");
    return false;
}
