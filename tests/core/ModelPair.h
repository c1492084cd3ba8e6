// A sheet and the plain model of it, which are changed alike, as somebody chooses, and compared.
#pragma once

#include "core/ModelStyle.h"

#include <styles/Styles.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Styles::Modelling
{

/// The same style on both sides. No style at all is null on both.
struct Place
{
    ModelStyle* model = nullptr;
    Style* real = nullptr;
};

class Pair
{
public:
    /// Chooses a number below the one given, which is not zero.
    using Choose = std::function<std::size_t(std::size_t)>;

    /// Registers a schema of its own, for which the process-wide manager must be free.
    explicit Pair(Choose choose);
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;
    ~Pair();

    /// Changes both sides alike. False when that would make the model too large: then there is nothing more to do.
    bool ChangeOnce();
    void CompareAll();
    void CompareAfterAJourneyThroughADocument();

    /// What was found to differ, a line each.
    [[nodiscard]] const std::vector<std::string>& GetDifferences() const { return m_differences; }

private:
    struct Handle
    {
        SubStyle handle;
        const ModelStyle* root;
        std::vector<PropertyKey> path;
    };

    std::size_t Below(std::size_t count) { return m_choose(count); }
    bool OneIn(std::size_t count) { return Below(count) == count - 1; }
    std::string AnyText() { return "text " + std::to_string(Below(3)); }
    template <class Container>
    auto AnyOf(const Container& container)
    {
        return *std::next(container.begin(), static_cast<std::ptrdiff_t>(Below(container.size())));
    }
    const ModelCategory& AnyCategory() { return *m_schema[Below(m_schema.size())]; }
    bool Expect(bool holds, std::string_view what);

    void MakeSchema();
    void MakeCategory(std::size_t index);
    void AddTop();

    [[nodiscard]] Style* Real(const std::string& name) const;
    [[nodiscard]] Style* RealTop(const ModelStyle* model) const;
    [[nodiscard]] Style* Counterpart(const ModelStyle* model) const;
    [[nodiscard]] std::vector<Place> Tops() const;
    [[nodiscard]] std::vector<Place> Inside(const Place& place) const;
    Place AnyTop() { return AnyOf(Tops()); }
    std::string AnyName()
    {
        return std::next(m_models.begin(), static_cast<std::ptrdiff_t>(Below(m_models.size())))->first;
    }
    Place AnyPlace();
    /// A style of that category, or none.
    Place AnyPlaceOf(const ModelCategory* category);
    Place AnyTopOf(const ModelCategory* category);
    /// The key of one of that kind, in `category`; empty when there is none.
    PropertyKey AnyKey(const ModelCategory& category, Kind kind);
    PropertyKey AnyKey(const ModelCategory& category);
    std::vector<PropertyKey> AnyPath(const ModelStyle& style);
    std::vector<Place> AnySpan();

    // The changes.
    void ChangeText();
    void ChangeParent();
    void ChangeList();
    void ChangeSubstyle();
    void ClearOne();
    void RevertOne();
    void ClearMany();
    void CopyPaths();
    void CopyToAnother();
    void MergeAnother();
    void AssignAnother();
    void SwapWithAnother();
    void FlattenOne();
    void FlattenACopy();
    void CutSome();
    void CutAll();
    void RemapOne();
    void Clone();
    void CopySubstyleOfAnother();
    void ChangeInSubstyle();
    void PruneSubstyles();
    void TakeSubstylesOfAnother();
    void MakeFromASubstyle();
    void ClearMatching();
    void KeepAHandle();
    void DeleteSome();
    void RenameOne();
    void MergeSheets();
    void CopySheet();
    void KeepSmall();

    // The comparisons.
    void CompareOwn(const Style& real, const ModelStyle& model);
    void CompareOwn(const Any& real, const ModelValue& model, const Style& holder, const PropertyKey& key);
    void CompareEffect(const Style& real, const ModelStyle& model);
    void CompareValue(const Any& real, const ModelValue* model, const ModelDefinition& definition);
    void CompareSubstyleValues(const Style& real, const ModelStyle& model, const PropertyKey& key);
    void CompareQuestions(const Style& real, const ModelStyle& model);
    void CompareVisits(Style& real, const ModelStyle& model);
    void CompareWithAnother(const Place& place);
    void CompareOverrides(const Style& real, const ModelStyle& model);
    void CompareDependencies();
    void CompareHandles();
    void FindCounterparts(const Place& place);

    Choose m_choose;
    std::vector<std::unique_ptr<ModelCategory>> m_schema;
    StyleSheet m_sheet;
    std::map<std::string, std::unique_ptr<ModelStyle>> m_models;
    std::size_t m_named = 0; ///< how many names were given away
    std::vector<Handle> m_handles;

    std::vector<Place> m_places; ///< all, as of the last comparison
    std::map<const ModelStyle*, Style*> m_counterparts;
    const char* m_operation = "";
    std::vector<std::string> m_differences;
};

inline VelString Wide(const std::string& text)
{
    return VelPlatform::ToWide(text);
}

inline PropertyKey KeyOf(const std::string& text)
{
    return PropertyKey(Wide(text));
}

} // namespace Styles::Modelling
