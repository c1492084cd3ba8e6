/// \file
/// `StylePresetManager`: named copies of styles that a user keeps, a file for each category.
///
/// A preset refers to no other style: what it inherited has become its own. The presets of a category are a style
/// sheet, stored as a file named after the category with the extension ".mtss" in the preset folder. The library
/// supplies the operations and the saving; a host derives from the class and says where the sheets and the folder are.
///
/// Threads: one thread at a time.
#pragma once

#include "StyleSheet.h"

#include <map>
#include <vector>

namespace Styles
{

/// Adds, deletes and finds presets, and saves the sheet of their category after each change.
class STYLES_API StylePresetManager
{
public:
    StylePresetManager();

    /// Shares the sheets of `other`: of the two managers, only one may be destroyed.
    StylePresetManager(const StylePresetManager& other);
    /// As the copy constructor; the sheets that were here belong to nobody from then on.
    StylePresetManager& operator=(const StylePresetManager& other);

    /// Destroys the sheets.
    virtual ~StylePresetManager();

    /// The sheet of presets of a category, loaded if need be; null when the category has none. The manager owns it.
    virtual StyleSheet* GetPresetSheet(const VelString& category) = 0;

    /// The folder of the preset files.
    virtual VelString GetPresetFolder() = 0;

    /// Writes the file of a category; the old file stays until the new one is whole. False when writing fails. True
    /// also when the file cannot be created, and when the category has no sheet: then an existing file stays.
    bool Save(const VelString& category) const;

    /// All presets of a category in the order of their names.
    [[nodiscard]] std::vector<VelString> GetPresetNames(const VelString& category) const;

    /// Whether the category has a preset of that name, without regard to case.
    [[nodiscard]] bool DoesPresetNameExist(const VelString& category, VelString name) const;

    /// Adds a copy of `style` without its dependencies, and saves. Presets that inherit from one that is replaced take
    /// its values first. Without `replace` a preset of that name stays as it is. False without a sheet, name or style.
    /// A failed save is not reported, see `Save`.
    bool AddPreset(const VelString& category, VelString name, const Style* style, bool replace);

    /// Deletes a preset, after making the others independent of it, and saves. Whether there was one.
    bool DeletePreset(const VelString& category, VelString name);

    /// The preset, owned by its sheet; null when there is none.
    [[nodiscard]] Style* GetPreset(const VelString& category, VelString name);

    /// A name that no preset of the category has, made from `baseName`; empty without a sheet or base name.
    [[nodiscard]] VelString GetUnusedPresetName(const VelString& category, const VelString& baseName) const;

protected:
    /// The name of a category's file, without folder.
    [[nodiscard]] VelString GetFileName(const VelString& category) const;

    /// The sheets by category, for the derived class to fill; owned.
    std::map<VelString, StyleSheet*, VelUtils::String::LessThanCaseInsensitive> sheets;

private:
    [[nodiscard]] StyleSheet* FindSheet(const VelString& category) const;
};

} // namespace Styles
