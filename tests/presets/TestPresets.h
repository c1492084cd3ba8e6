// A preset manager whose files lie in a folder of the test, and two styles to make presets of.
#pragma once

#include <styles/StylePresetManager.h>

#include "support/TemporaryFolder.h"
#include "support/TestSheet.h"

#include <VelUtils/Path.h>
#include <VelUtils/Stream.h>

#include <filesystem>
#include <memory>

namespace Styles::Testing
{

/// Has a sheet for every category but "none", loaded when it is asked for.
class TestPresets : public StylePresetManager
{
public:
    explicit TestPresets(const std::filesystem::path& folder) : m_folder(Support::ToText(folder)) {}

    using StylePresetManager::GetFileName;
    using StylePresetManager::sheets;

    StyleSheet* GetPresetSheet(const VelString& category) override
    {
        if (category == VelString(L"none"))
        {
            return nullptr;
        }
        StyleSheet*& sheet = sheets[category];
        if (sheet == nullptr)
        {
            auto made = std::make_unique<TestSheet>();
            VelUtils::Stream stream =
                VelUtils::FileStream::Open(VelUtils::SystemIO::Path::Combine(m_folder, GetFileName(category)));
            wasLoaded = stream && made->Import(stream, false);
            sheet = made.release();
        }
        return sheet;
    }

    VelString GetPresetFolder() override { return m_folder; }

    TestSheet& GetSheet(const VelString& category) { return dynamic_cast<TestSheet&>(*GetPresetSheet(category)); }

    /// Whether the sheet that was made last came from a file.
    bool wasLoaded = false;

private:
    VelString m_folder;
};

class PresetsFixture : public SchemaFixture
{
protected:
    PresetsFixture()
    {
        red.SetProperty(Note, Any(VelString(L"red")));
        blue.SetProperty(Note, Any(VelString(L"blue")));
    }

    const VelString category = VelString(L"style");
    const Support::TemporaryFolder folder;
    const std::filesystem::path file = folder / "style.mtss";
    TestPresets presets{folder.GetPath()};
    Style red{nullptr, StyleCategoryName};
    Style blue{nullptr, StyleCategoryName};
};

} // namespace Styles::Testing
