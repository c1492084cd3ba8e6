// Presets and their files fail wherever they can.

#include "faults/FaultWorld.h"
#include "support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>

namespace Styles::Testing
{

namespace
{

const Support::TemporaryFolder& Folder()
{
    static const Support::TemporaryFolder folder(Support::FolderInMemory());
    return folder;
}

/// Presets of a host whose answers may fail.
class FaultyPresets : public StylePresetManager
{
public:
    FaultyPresets()
    {
        auto made = std::make_unique<OpenSheet>();
        sheet = made.get();
        sheets[VelString(L"style")] = sheet;
        made.release();
    }
    StyleSheet* GetPresetSheet(const VelString& category) override
    {
        ReachCall();
        const auto entry = sheets.find(category);
        return entry != sheets.end() ? entry->second : nullptr;
    }
    VelString GetPresetFolder() override
    {
        ReachCall();
        return Support::ToText(Folder().GetPath());
    }
    using StylePresetManager::GetFileName;

    OpenSheet* sheet;
};

/// Presets, one of which inherits from another, and their file, which holds an older state of them.
class PresetWorld
{
public:
    PresetWorld()
    {
        style.SetProperty(K().note, Any(VelString(L"Notiz des neuen Presets")));
        style.GetSubstyleAndCreateIfMissing(K().fill, K().fill);
        auto old = std::make_unique<Style>(nullptr, StyleCategoryName);
        old->SetProperty(K().number, Any(2.0));
        auto heir = std::make_unique<Style>(old.get(), StyleCategoryName);
        heir->SetProperty(K().note, Any(VelString(L"Notiz des Erben")));
        presets.sheet->AddStyle(VelString(L"Alt"), old.release(), true);
        presets.sheet->AddStyle(VelString(L"Erbe"), heir.release(), true);
        std::ofstream(GetFile(), std::ios::trunc) << "alte Datei";
    }

    static std::filesystem::path GetFile() { return Folder() / "style.mtss"; }

    [[nodiscard]] Picture GetIdentity() const { return Draw(Painter::Look::Identity); }
    [[nodiscard]] Picture GetContent() const { return Draw(Painter::Look::Content); }
    [[nodiscard]] Picture GetEffect() const { return Draw(Painter::Look::Effect); }

    FaultyPresets presets;
    Style style{nullptr, StyleCategoryName};

private:
    Picture Draw(Painter::Look look) const
    {
        Picture picture;
        Painter(*presets.sheet, look, picture).DrawSheet();
        if (look != Painter::Look::Effect)
        {
            picture["(file)"] = Support::BytesOf(GetFile());
            EXPECT_EQ(Folder().GetNames().size(), 1u) << "something was left beside the file";
        }
        return picture;
    }
};

using W = PresetWorld;
using Op = Operation<W>;

class PresetFaults : public FaultsOf<W>
{};

TEST_P(PresetFaults, HoldWhatIsPromisedWhenMemoryEnds)
{
    RunUnderFailures(GetParam(), /*byMemory*/ true);
}

TEST_P(PresetFaults, HoldWhatIsPromisedWhenTheHostThrows)
{
    RunUnderFailures(GetParam(), /*byMemory*/ false);
}

/// The file is the old one, or one that can be read and holds the presets as they are now.
void ExpectOldOrNewFile(W& w, const Picture& before, const Expectation&)
{
    const std::string bytes = Support::BytesOf(W::GetFile());
    if (bytes == before.at("(file)"))
    {
        return;
    }
    OpenSheet read;
    EXPECT_TRUE(read.ImportFromString(VelPlatform::ToWide(bytes), true)) << bytes;
    EXPECT_EQ(read.GetStyleNames(), w.presets.sheet->GetStyleNames());
}

const VelString& Category()
{
    static const VelString category = L"style";
    return category;
}

Op Changing(const char* name, std::function<void(W&)> act)
{
    Op operation;
    operation.name = name;
    operation.act = std::move(act);
    operation.whenMemoryEnds = Promise::Stepwise;
    operation.whenDefinitionsThrow = Promise::Stepwise;
    operation.whenDestroyingThrows = Promise::Stepwise;
    operation.mayAnswerInstead = true;
    operation.alsoHolds = ExpectOldOrNewFile;
    return operation;
}

INSTANTIATE_TEST_SUITE_P(
    Presets, PresetFaults,
    testing::Values(Changing("AddPreset", [](W& w) { w.presets.AddPreset(Category(), L"Neu", &w.style, false); }),
                    Changing("AddPresetInPlaceOfAnother",
                             [](W& w) { w.presets.AddPreset(Category(), L"Alt", &w.style, true); }),
                    Changing("DeletePreset", [](W& w) { w.presets.DeletePreset(Category(), L"Alt"); }),
                    Changing("Save", [](W& w) { w.presets.Save(Category()); }),
                    Op{"Ask",
                       [](W& w) {
                           (void)w.presets.GetPresetNames(Category());
                           (void)w.presets.DoesPresetNameExist(Category(), L"Alt");
                           (void)w.presets.GetPreset(Category(), L"Alt");
                           (void)w.presets.GetUnusedPresetName(Category(), L"Alt");
                           (void)w.presets.GetFileName(Category());
                       }},
                    Op{"Construct", [](W&) { FaultyPresets presets; }}),
    OperationName());

} // namespace

} // namespace Styles::Testing
