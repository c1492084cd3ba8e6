// One style as a JSON object.

#include "core/StyleJson.h"

#include <styles/StyleSheet.h>

#include <algorithm>
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

void Style::Serialize(const StyleSheet& sheet, Json::Variant& output, bool includeTemporaries) const
{
    output = Json::Object();
    auto& members = output.Get<Json::Object>();
    if (m_parent != nullptr)
    {
        if (const VelString name = sheet.GetStyleName(m_parent); !name.empty())
        {
            members.AddValue(InheritsMember, name);
        }
    }
    if (!m_externalID.empty())
    {
        members.AddValue(IdMember, m_externalID);
    }
    if (!m_externalName.empty())
    {
        members.AddValue(OriginalMember, m_externalName);
    }
    const std::shared_ptr<const StyleCategory> category = FindCategory(GetCategoryName());
    if (!category)
    {
        return;
    }
    std::vector<std::pair<PropertyKey, const Any*>> values;
    values.reserve(m_properties.size());
    for (const auto& [key, value] : m_properties)
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
        if (definition->Serialize(sheet, this, *value, written))
        {
            members.AddValue(key.GetText(), std::move(written));
        }
    }
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
