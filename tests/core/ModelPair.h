// A sheet and a small model of it, plain maps and recursive look-ups, that are changed alike at random.
#pragma once

#include <styles/Styles.h>

#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace Styles::Modelling
{

using Random = std::mt19937;

/// A style of the model: texts by key, styles inside by key, lists by key, and the name of a parent.
struct ModelStyle
{
    std::string category;
    ModelStyle* parent = nullptr;
    std::map<std::string, std::string> texts;
    std::map<std::string, std::unique_ptr<ModelStyle>> substyles;
    std::map<std::string, std::vector<std::unique_ptr<ModelStyle>>> lists;

    [[nodiscard]] std::unique_ptr<ModelStyle> Copy() const
    {
        auto copy = std::make_unique<ModelStyle>();
        copy->category = category;
        copy->parent = parent;
        copy->texts = texts;
        for (const auto& [key, substyle] : substyles)
        {
            copy->substyles[key] = substyle->Copy();
        }
        for (const auto& [key, list] : lists)
        {
            copy->lists[key] = CopyList(list);
        }
        return copy;
    }

    static std::vector<std::unique_ptr<ModelStyle>> CopyList(const std::vector<std::unique_ptr<ModelStyle>>& list)
    {
        std::vector<std::unique_ptr<ModelStyle>> copy;
        for (const auto& element : list)
        {
            copy.push_back(element->Copy());
        }
        return copy;
    }
};

/// The properties of a category, by name: the default of a text, or the category of the styles inside.
struct ModelCategory
{
    std::map<std::string, std::string> texts;
    std::vector<std::string> substyles; ///< named like their categories
    std::map<std::string, std::string> lists;
};

using ModelSchema = std::map<std::string, ModelCategory>;
using Path = std::vector<std::string>;

inline std::string Narrow(const VelString& text)
{
    const VelStringA utf8 = VelPlatform::ToNarrow(text);
    return {utf8.c_str(), utf8.size()};
}

inline VelString Wide(const std::string& text)
{
    return VelPlatform::ToWide(text);
}

inline PropertyKey KeyOf(const std::string& text)
{
    return PropertyKey(Wide(text));
}

inline PropertyPath PathOf(const Path& path)
{
    PropertyPath keys;
    for (const std::string& step : path)
    {
        keys.push_back(KeyOf(step));
    }
    return keys;
}

inline StyleManager& Manager()
{
    return VelUtils::Singleton<StyleManager, 0>::GetInstance();
}

/// A sheet and its model, which are changed alike.
class Pair
{
public:
    explicit Pair(unsigned seed) : m_random(seed)
    {
        MakeSchema();
        MakeStyles();
    }
    ~Pair()
    {
        m_sheet.Clear();
        Manager().Reset();
        Manager().SetCurrentVersion(-1);
    }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    void ChangeOnce();
    void CompareAll();
    void CompareAfterAJourneyThroughADocument();

private:
    std::size_t Below(std::size_t count) { return m_random() % count; }
    std::string AnyText() { return "text " + std::to_string(Below(4)); }
    template <class Container>
    const auto& AnyOf(const Container& container)
    {
        return *std::next(container.begin(), static_cast<std::ptrdiff_t>(Below(container.size())));
    }

    void MakeSchema();
    void MakeStyles();

    Style* Real(const std::string& name) const { return m_sheet.GetStyle(Wide(name)); }
    std::string AnyName() { return AnyOf(m_models).first; }
    /// A style that does not come after `name`, so that chains of parents are open.
    std::string AnyEarlierName(const std::string& name);
    Path AnyPath(const std::string& category);

    std::optional<std::string> FindText(const Path& place, const ModelStyle& top, const std::string& key) const;
    std::string EffectiveText(const ModelStyle& top, const Path& place, const std::string& key) const;
    const ModelStyle* FollowOwn(const ModelStyle& top, const Path& place) const;

    void SetText(const std::string& name);
    void ClearOne(const std::string& name);
    void SetParents(const std::string& name);
    void SetList(const std::string& name);
    void Merge(const std::string& name);
    void Assign(const std::string& name);
    void FlattenCopy(const std::string& name);
    void Cut(const std::string& name);
    void Delete(const std::string& name);
    void Clone(const std::string& name);

    void MergeInto(ModelStyle& target, const ModelStyle& source, bool overwrite);
    void CompareOwn(const Style& real, const ModelStyle& model, const std::string& place);
    void CompareEffect(const Style& real, const ModelStyle& top, Path& place, const std::string& category, int depth);
    void CompareDependencies();
    bool Inherits(const ModelStyle& model, const ModelStyle& from) const;

    Random m_random;
    ModelSchema m_schema;
    StyleSheet m_sheet;
    std::map<std::string, std::unique_ptr<ModelStyle>> m_models;
};

} // namespace Styles::Modelling
