/// \file
/// Presets in a folder of the user's: a preset manager as a host writes one.
///
/// The sheet of a category is loaded the first time it is asked for. A file that cannot be read as a sheet is kept
/// aside under another name, never overwritten, and the user is told; the category then starts empty.
#pragma once

#include <styles/StylePresetManager.h>

#include <filesystem>
#include <functional>
#include <memory>
#include <string>

class FolderPresets : public Styles::StylePresetManager
{
public:
    /// Tells the user something, as UTF-8.
    using Notice = std::function<void(const std::string&)>;

    FolderPresets(const Styles::VelString& folder, Notice notice);

    /// Null for a category that is not registered, and where a damaged file can be neither read nor kept aside: presets
    /// that cannot be loaded must not be written over.
    Styles::StyleSheet* GetPresetSheet(const Styles::VelString& category) override;

    Styles::VelString GetPresetFolder() override { return m_folder; }

    /// Whether the file of a category holds its presets as they are now. Adding and deleting go on where a file cannot
    /// be written; a host that wants to tell the user asks here.
    [[nodiscard]] bool IsSaved(const Styles::VelString& category);

private:
    [[nodiscard]] std::filesystem::path GetFile(const Styles::VelString& category) const;
    [[nodiscard]] std::unique_ptr<Styles::StyleSheet> Load(const std::filesystem::path& file) const;
    [[nodiscard]] bool KeepAside(const std::filesystem::path& file) const;

    Styles::VelString m_folder;
    Notice m_notice;
};
