// The plain model of a style: values in one map, links to the styles that it inherits from, look-ups that call
// themselves. It knows what styles do and nothing of how they do it.
#pragma once

#include <styles/PropertyKey.h>

#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Styles::Modelling
{

struct ModelStyle;
struct ModelCategory;

using ModelList = std::vector<std::unique_ptr<ModelStyle>>;
using ModelSpan = std::vector<const ModelStyle*>;

enum class Kind
{
    Text,
    Substyle,
    List
};

struct ModelDefinition
{
    PropertyKey key;
    Kind kind = Kind::Text;
    std::string defaultText;
    const ModelCategory* element = nullptr; ///< of a substyle or a list
};

struct ModelCategory
{
    PropertyKey name;
    std::vector<ModelDefinition> definitions; ///< as they were registered

    [[nodiscard]] const ModelDefinition& Of(const PropertyKey& key) const;
    [[nodiscard]] std::vector<ModelDefinition> Those(Kind kind) const;
};

struct ModelValue
{
    Kind kind = Kind::Text;
    std::string text;
    std::unique_ptr<ModelStyle> substyle;
    ModelList list;

    [[nodiscard]] ModelValue Copy() const;
};

/// A model that would grow beyond what is sensible; styles that are copied into each other do.
struct TooLarge
{};

struct ModelStyle
{
    explicit ModelStyle(const ModelCategory& categoryOfStyle);
    ModelStyle(const ModelStyle&) = delete;
    ModelStyle& operator=(const ModelStyle&) = delete;
    ~ModelStyle();

    const ModelCategory* category;
    ModelStyle* parent = nullptr;
    ModelStyle* owner = nullptr;
    PropertyKey ownersKey;
    std::map<PropertyKey, ModelValue> own; ///< in key order, the order of all walks
};

/// A copy without owner.
[[nodiscard]] std::unique_ptr<ModelStyle> Copy(const ModelStyle& style);
[[nodiscard]] bool AreEqual(const ModelStyle& a, const ModelStyle& b);
[[nodiscard]] bool AreEqual(const ModelValue& a, const ModelValue& b);

[[nodiscard]] bool IsIn(const ModelSpan& span, const ModelStyle* style);
[[nodiscard]] std::vector<PropertyKey> OwnKeys(const ModelStyle& style);
/// The styles inside a value, or inside all values, of the first level.
[[nodiscard]] std::vector<ModelStyle*> Inside(const ModelValue& value);
[[nodiscard]] std::vector<ModelStyle*> Inside(const ModelStyle& style);
/// Whether `wanted` is inside `style` at any depth.
[[nodiscard]] bool Holds(const ModelStyle& style, const ModelStyle& wanted);

// Looking up; null stands for the default.
[[nodiscard]] const ModelValue* Own(const ModelStyle& style, const PropertyKey& key);
[[nodiscard]] const ModelValue* Inherited(const ModelStyle& style, const PropertyKey& key);
[[nodiscard]] const ModelValue* Effective(const ModelStyle& style, const PropertyKey& key);
[[nodiscard]] ModelStyle* OwnSubstyle(const ModelStyle& style, const PropertyKey& key);
[[nodiscard]] ModelStyle* EffectiveSubstyle(const ModelStyle& style, const PropertyKey& key);

// Changing.
void Set(ModelStyle& style, const PropertyKey& key, ModelValue value);
/// A copy of `value`, which is made when the old value has left the style already.
void Replace(ModelStyle& style, const PropertyKey& key, const ModelValue& value);
void SetText(ModelStyle& style, const PropertyKey& key, const std::string& text);
void SetSubstyle(ModelStyle& style, const PropertyKey& key, std::unique_ptr<ModelStyle> substyle);
/// The value, or the default where it is null: an empty list, no substyle.
void SetOrDefault(ModelStyle& style, const PropertyKey& key, const ModelValue* value);
bool Clear(ModelStyle& style, const PropertyKey& key);
bool RevertAll(ModelStyle& style);
ModelStyle& GetOrCreate(ModelStyle& style, const PropertyKey& key);
void Assign(ModelStyle& style, const ModelStyle& other);
void SwapData(ModelStyle& a, ModelStyle& b);
[[nodiscard]] std::unique_ptr<ModelStyle> CopyProperties(const ModelStyle& style, const std::vector<PropertyKey>& keys);
/// The own value of `source` at the end of the path, or nothing, becomes that of `target`.
void CopyPath(ModelStyle& target, const std::vector<PropertyKey>& path, const ModelStyle& source);

// Merging, flattening, copies without owner.
void Merge(ModelStyle& target, const ModelStyle& source, bool overwrite);
void MergeParent(ModelStyle& target, const ModelStyle& source);
bool Flatten(ModelStyle& style);
[[nodiscard]] bool DependsOnOwner(const ModelStyle& style);
[[nodiscard]] std::unique_ptr<ModelStyle> CloneWithoutOwner(const ModelStyle& style);
[[nodiscard]] std::unique_ptr<ModelStyle> CloneSubstyleWithoutOwner(const ModelStyle& style, const PropertyKey& key);
void CopySubstyle(ModelStyle& target, const ModelStyle& source, const PropertyKey& key);

// Dependencies.
[[nodiscard]] bool Depends(const ModelStyle& style, const ModelSpan& span, bool direct);
[[nodiscard]] bool DependsThroughParent(const ModelStyle& style, const ModelSpan& span);
[[nodiscard]] bool InheritsAnywhere(const ModelStyle& style);
/// Whether there is no text in it, at any depth.
[[nodiscard]] bool IsHollow(const ModelStyle& style);
[[nodiscard]] bool AnyInsideHasParent(const ModelStyle& style);
/// The members of the span that `style` depends on, without order.
[[nodiscard]] ModelSpan Dependencies(const ModelStyle& style, const ModelSpan& span, bool direct);
void RemoveDependency(ModelStyle& style, const ModelSpan& span, bool direct);
void RemoveAllDependencies(ModelStyle& style);
void Remap(ModelStyle& style, const ModelStyle& from, ModelStyle* to);

// Helpers.
[[nodiscard]] ModelStyle* SubstyleParent(const ModelStyle& style);
void ClearEmptySubstyles(ModelStyle& style);
void CopySubstylesOf(ModelStyle& target, const ModelStyle& source, bool mergeValues);
/// What is visited of a style: each text with the style that holds it.
[[nodiscard]] std::vector<std::pair<const ModelStyle*, PropertyKey>> Texts(const ModelStyle& style);
[[nodiscard]] ModelStyle* LastSubstyle(const ModelStyle& style);
[[nodiscard]] std::vector<std::vector<PropertyKey>> OverriddenPaths(const ModelStyle& style);
/// Null where there is no substyle.
[[nodiscard]] std::unique_ptr<ModelStyle> MakeFromSubstyle(const ModelStyle& style, const PropertyKey& key);
void ClearMatchingInherited(ModelStyle& style);

} // namespace Styles::Modelling
