#include <styles/StylePresetManager.h>

#include <VelUtils/Path.h>
#include <VelUtils/Stream.h>

#include <algorithm>
#include <memory>
#include <span>

namespace Styles
{

namespace Path = VelUtils::SystemIO::Path;

StylePresetManager::StylePresetManager() = default;

// KEPT: copies share the sheets, and assignment lets go of the sheets that were here without destroying them. Only one
// of two managers that share sheets may be destroyed; hosts hand a manager on in this way. Pinned by
// StylePresetManager.CopiesShareTheSheets
StylePresetManager::StylePresetManager(const StylePresetManager& other) = default;
StylePresetManager& StylePresetManager::operator=(const StylePresetManager& other) = default;

StylePresetManager::~StylePresetManager()
{
    for (const auto& entry : sheets)
    {
        delete entry.second;
    }
}

bool StylePresetManager::Save(const VelString& category) const
{
    const VelString fileName = GetFileName(category);
    const VelString folder = const_cast<StylePresetManager*>(this)->GetPresetFolder();
    // KEPT: a file that cannot be created, and a category without a sheet, are no failure. Presets are a convenience,
    // and a host with a read-only profile goes on without a message at each change. Pinned by
    // StylePresetManager.SavingWhereNoFileCanBeCreatedAnswersTrue
    VelUtils::Stream stream =
        Path::IsFileName(fileName) ? VelUtils::FileStream::Create(Path::Combine(folder, fileName)) : VelUtils::Stream();
    if (!stream)
    {
        return true;
    }
    const StyleSheet* sheet = FindSheet(category);
    if (sheet == nullptr)
    {
        return true;
    }
    return sheet->Export(stream) && stream.Close();
}

std::vector<VelString> StylePresetManager::GetPresetNames(const VelString& category) const
{
    const StyleSheet* sheet = FindSheet(category);
    return sheet != nullptr ? sheet->GetStyleNames() : std::vector<VelString>();
}

bool StylePresetManager::DoesPresetNameExist(const VelString& category, VelString name) const
{
    const std::vector<VelString> names = GetPresetNames(category);
    return std::any_of(names.begin(), names.end(),
                       [&name](const VelString& candidate) { return candidate.CompareNoCase(name) == 0; });
}

bool StylePresetManager::AddPreset(const VelString& category, VelString name, const Style* style, bool replace)
{
    StyleSheet* sheet = FindSheet(category);
    if (sheet == nullptr || name.empty() || style == nullptr)
    {
        return false;
    }
    auto copy = std::make_unique<Style>(*style);
    copy->RemoveAllDependencies();
    if (Style* old = replace ? sheet->GetStyle(name) : nullptr)
    {
        for (Style* preset : sheet->GetStyles())
        {
            if (preset != nullptr)
            {
                preset->RemoveDependency(StyleSpan(std::span(&old, 1)), /*direct*/ true);
            }
        }
    }
    delete sheet->AddStyle(name, copy.release(), replace);
    // KEPT: nobody is told when saving fails, see Save.
    // Pinned by StylePresetManager.AddingAPresetSucceedsWhereItCannotBeSaved
    static_cast<void>(Save(category));
    return true;
}

bool StylePresetManager::DeletePreset(const VelString& category, VelString name)
{
    StyleSheet* sheet = FindSheet(category);
    if (sheet == nullptr || name.empty())
    {
        return false;
    }
    Style* preset = sheet->GetStyle(name);
    const bool deleted = preset != nullptr && sheet->DeleteStyles(StyleSpan(std::span(&preset, 1)));
    static_cast<void>(Save(category));
    return deleted;
}

Style* StylePresetManager::GetPreset(const VelString& category, VelString name)
{
    const StyleSheet* sheet = FindSheet(category);
    return sheet != nullptr && !name.empty() ? sheet->GetStyle(name) : nullptr;
}

VelString StylePresetManager::GetUnusedPresetName(const VelString& category, const VelString& baseName) const
{
    const StyleSheet* sheet = FindSheet(category);
    return sheet != nullptr && !baseName.empty() ? sheet->GetUnusedStyleName(baseName) : VelString();
}

VelString StylePresetManager::GetFileName(const VelString& category) const
{
    return category + VelString(L".mtss");
}

StyleSheet* StylePresetManager::FindSheet(const VelString& category) const
{
    // Hosts load sheets in this operation, which has never been const.
    return const_cast<StylePresetManager*>(this)->GetPresetSheet(category);
}

} // namespace Styles
