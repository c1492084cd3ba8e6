// One style as a JSON object.

#include "core/StyleJson.h"

#include "core/StyleAccess.h"

#include <styles/StyleSheet.h>

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <vector>

namespace Styles
{

namespace
{

// The fixed members of a style's object.
const VelString InheritsMember(L"inherits");
const VelString IdMember(L"id");
const VelString OriginalMember(L"original");

StyleManager& Manager()
{
    return VelUtils::Singleton<StyleManager, 0>::GetInstance();
}

/// The category of that name as it is registered now; null when it is not.
std::shared_ptr<const StyleCategory> FindCategory(const PropertyKey& name)
{
    return Manager().CategoryExists(name) ? Manager().GetCategory(name) : nullptr;
}

/// The style that a style of `sheet` inherits from when its document says `name`; null for none.
Style* ResolveParent(const StyleSheet& sheet, const VelString& name)
{
    const WImportStyleInfo& importInfo = Manager().GetImportStyleInfo();
    if (importInfo.nameSet.contains(name))
    {
        return nullptr;
    }
    const auto substitute = importInfo.nameMap.find(name);
    return sheet.GetStyle(substitute != importInfo.nameMap.end() ? substitute->second : name);
}

/// The text of a JSON string; null for any other value and for an empty one.
const VelString* FindText(const Json::Variant& value)
{
    const VelString* text = value.GetIf<VelString>();
    return text != nullptr && !text->empty() ? text : nullptr;
}

/// Reads one of the fixed members into `style`. False when `name` is none of them.
bool ReadFixedMember(Style& style, const StyleSheet& sheet, const VelString& name, const Json::Variant& value)
{
    const VelString* text = FindText(value);
    if (name == InheritsMember)
    {
        Style* found = text != nullptr ? ResolveParent(sheet, *text) : nullptr;
        if (found != nullptr && found != &style)
        {
            style.SetParent(found);
        }
        return true;
    }
    if (name != IdMember && name != OriginalMember)
    {
        return false;
    }
    if (text != nullptr)
    {
        name == IdMember ? style.SetExternalID(*text) : style.SetExternalName(*text);
    }
    return true;
}

} // namespace

bool Detail::IsOlderThan(const StyleSheet& sheet, int newSinceVersion) noexcept
{
    return sheet.GetVersion() < newSinceVersion;
}

void Detail::WriteMembers(const Style& style, const StyleSheet& sheet, bool includeTemporaries,
                          Delegate<void(const VelString&, Json::Variant&&)> add)
{
    std::array<const VelString*, 3> fixed{}; // names that no property can have any more
    auto addFixed = [&, next = fixed.begin()](const VelString& name, const VelString& text) mutable {
        if (!text.empty())
        {
            add(name, text);
            *next++ = &name;
        }
    };
    const auto isFixed = [&fixed](const VelString& name) {
        return std::any_of(fixed.begin(), fixed.end(),
                           [&name](const VelString* taken) { return taken != nullptr && *taken == name; });
    };
    addFixed(InheritsMember, sheet.GetStyleName(style.GetParent()));
    addFixed(IdMember, style.GetExternalID());
    addFixed(OriginalMember, style.GetExternalName());
    const std::shared_ptr<const StyleCategory> category = FindCategory(style.GetCategoryName());
    if (!category)
    {
        return;
    }
    std::vector<std::pair<PropertyKey, const Any*>> values;
    values.reserve(StyleAccess::Properties(style).size());
    for (const auto& [key, value] : StyleAccess::Properties(style))
    {
        values.emplace_back(key, &value);
    }
    std::sort(values.begin(), values.end(),
              [](const auto& a, const auto& b) { return a.first.GetText().Compare(b.first.GetText()) < 0; });
    for (const auto& [key, value] : values)
    {
        const BaseStyleProperty* definition = category->GetStyleProperty(key);
        if (definition == nullptr || (definition->IsTemporary() && !includeTemporaries))
        {
            continue;
        }
        Json::Variant written;
        if (definition->Serialize(sheet, &style, *value, written) && !isFixed(key.GetText()))
        {
            add(key.GetText(), std::move(written));
        }
    }
}

void Style::Serialize(const StyleSheet& sheet, Json::Variant& output, bool includeTemporaries) const
{
    output = Json::Object();
    auto& members = output.Get<Json::Object>();
    Detail::WriteMembers(*this, sheet, includeTemporaries, [&members](const VelString& name, Json::Variant&& value) {
        members.AddValue(name, std::move(value));
    });
}

VelString Style::Serialize(const StyleSheet& sheet, bool compact, bool includeTemporaries) const
{
    Json::Variant object;
    Serialize(sheet, object, includeTemporaries);
    return Json::ValueToString(object, compact);
}

void Style::DeserializeJson(const StyleSheet& sheet, const Json::Object& object)
{
    const std::shared_ptr<const StyleCategory> category = FindCategory(GetCategoryName());
    std::vector<std::pair<const BaseStyleProperty*, const Json::Variant*>> deferred;
    std::vector<const BaseStyleProperty*> toAdjust;
    for (std::size_t index = 0; index < object.GetSize(); ++index)
    {
        const VelString& name = object.GetValueName(index);
        const Json::Variant* value = object.GetValue(index);
        if (value == nullptr || ReadFixedMember(*this, sheet, name, *value) || !category)
        {
            continue;
        }
        const BaseStyleProperty* definition = category->GetStyleProperty(PropertyKey(name));
        if (definition == nullptr)
        {
            continue;
        }
        if (definition->IsDeprecated())
        {
            deferred.emplace_back(definition, value);
        }
        else
        {
            definition->Deserialize(sheet, this, value);
        }
        if (definition->NeedAdjustementsForStyleIO())
        {
            toAdjust.push_back(definition);
        }
    }
    for (const auto& [definition, value] : deferred)
    {
        definition->Deserialize(sheet, this, value);
    }
    for (const BaseStyleProperty* definition : toAdjust)
    {
        definition->AdjustAfterDeserialize(sheet, this);
    }
}

Style* Style::Deserialize(const StyleSheet& sheet, const Json::Object& object, const PropertyKey& categoryName)
{
    auto style = std::make_unique<Style>(nullptr, categoryName);
    style->DeserializeJson(sheet, object);
    return style.release();
}

} // namespace Styles
