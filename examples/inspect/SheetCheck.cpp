#include "SheetCheck.h"

#include "Output.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <set>

namespace Inspect
{

namespace
{

using Styles::PropertyKey;
using Styles::Style;
using CategoryPointer = std::shared_ptr<const Styles::StyleCategory>;

const Styles::StyleManager& Manager()
{
    return VelUtils::Singleton<Styles::StyleManager, 0>::GetInstance();
}

CategoryPointer FindCategory(const PropertyKey& name)
{
    return Manager().CategoryExists(name) ? Manager().GetCategory(name) : nullptr;
}

class Checker
{
public:
    Checker(const Document& document, const Styles::StyleSheet& sheet) : m_file(document.path), m_sheet(sheet) {}

    SheetReport Check(const Json::Variant& document)
    {
        const auto* root = document.GetIf<Json::Object>();
        if (root == nullptr)
        {
            AddMistake({}, "a sheet is an object, not " + KindOf(document));
            return m_report;
        }
        // A style may name a parent that comes later.
        for (std::size_t index = 0; index < root->GetSize(); ++index)
        {
            CollectNames(root->GetValueName(index), *root->GetValue(index));
        }
        for (std::size_t index = 0; index < root->GetSize(); ++index)
        {
            CheckBlock(root->GetValueName(index), *root->GetValue(index));
        }
        return m_report;
    }

private:
    void AddMistake(const Place& place, const std::string& message)
    {
        m_report.mistakes.push_back(MessageAt(m_file, place, message));
    }

    void AddLoss(const Place& place, const std::string& message)
    {
        m_report.losses.push_back(MessageAt(m_file, place, message));
    }

    void AddWarning(const Place& place, const std::string& message)
    {
        m_report.warnings.push_back(MessageAt(m_file, place, message));
    }

    void CollectNames(const VelString& category, const Json::Variant& value)
    {
        const auto* block = value.GetIf<Json::Object>();
        if (block == nullptr || !Manager().CategoryExists(category))
        {
            return;
        }
        for (std::size_t index = 0; index < block->GetSize(); ++index)
        {
            const auto [found, isNew] = m_names.insert(block->GetValueName(index));
            if (!isNew)
            {
                AddMistake(Place().Member(category).Member(block->GetValueName(index)),
                           "there is a style " + Quoted(*found) + " already; case makes no difference");
            }
        }
    }

    void CheckBlock(const VelString& name, const Json::Variant& value)
    {
        const Place place = Place().Member(name);
        const auto* block = value.GetIf<Json::Object>();
        if (block == nullptr)
        {
            CheckHeading(name, value, place);
        }
        else if (const CategoryPointer category = FindCategory(PropertyKey(name)))
        {
            for (std::size_t index = 0; index < block->GetSize(); ++index)
            {
                const Place stylePlace = place.Member(block->GetValueName(index));
                if (const auto* style = block->GetValue(index)->GetIf<Json::Object>())
                {
                    CheckStyle(*category, *style, stylePlace);
                    CheckSelf(block->GetValueName(index), *style, stylePlace);
                }
                else
                {
                    AddMistake(stylePlace, "a style is an object, not " + KindOf(*block->GetValue(index)));
                }
            }
        }
        else
        {
            AddLoss(place, "the schema has no such category; " + Counted(block->GetSize(), "style") + " passed over");
        }
    }

    void CheckHeading(const VelString& name, const Json::Variant& value, const Place& place)
    {
        if (name == L"version")
        {
            const auto* number = value.GetIf<double>();
            if (number == nullptr || *number != std::trunc(*number) || *number < 0 ||
                *number > std::numeric_limits<int>::max())
            {
                AddLoss(place, "is no version");
            }
        }
        else if (name != L"id" || !value.Is<VelString>())
        {
            AddLoss(place, "means nothing as " + KindOf(value));
        }
    }

    void CheckStyle(const Styles::StyleCategory& category, const Json::Object& style, const Place& place)
    {
        for (std::size_t index = 0; index < style.GetSize(); ++index)
        {
            CheckMember(category, style.GetValueName(index), *style.GetValue(index),
                        place.Member(style.GetValueName(index)));
        }
    }

    void CheckSelf(const VelString& name, const Json::Object& style, const Place& place)
    {
        const VelString member(L"inherits");
        const Json::Variant* inherits = style.GetValue(member);
        const auto* parent = inherits != nullptr ? inherits->GetIf<VelString>() : nullptr;
        if (parent != nullptr && parent->CompareNoCase(name) == 0)
        {
            AddWarning(place.Member(member), "a style does not inherit from itself");
        }
    }

    void CheckMember(const Styles::StyleCategory& category, const VelString& name, const Json::Variant& value,
                     const Place& place)
    {
        if (name == L"inherits" || name == L"id" || name == L"original")
        {
            CheckIdentity(name, value, place);
            return;
        }
        const auto entry = category.GetProperties().find(PropertyKey(name));
        if (entry == category.GetProperties().end())
        {
            AddLoss(place, "the schema has no such property");
            return;
        }
        Styles::BaseStyleProperty& definition = *entry->second;
        if (definition.IsSubstyle())
        {
            CheckSubstyle(definition.GetElementCategoryName(), value, place);
        }
        else if (definition.GetDefaultValue().Is<std::vector<Style*>>())
        {
            const PropertyKey elements = definition.GetElementCategoryName();
            CheckList(elements == PropertyKey::Empty ? category.GetCategoryName() : elements, value, place);
        }
        else
        {
            CheckValue(category.GetCategoryName(), entry->first, definition, value, place);
        }
    }

    void CheckIdentity(const VelString& name, const Json::Variant& value, const Place& place)
    {
        const auto* text = value.GetIf<VelString>();
        if (text == nullptr)
        {
            AddLoss(place, "is " + KindOf(value) + ", not a text");
        }
        else if (name == L"inherits" && !text->empty() && !m_names.contains(*text))
        {
            AddWarning(place, "there is no style " + Quoted(*text) + " to inherit from");
        }
    }

    void CheckSubstyle(const PropertyKey& categoryName, const Json::Variant& value, const Place& place)
    {
        if (const auto* object = value.GetIf<Json::Object>())
        {
            if (const CategoryPointer category = FindCategory(categoryName))
            {
                CheckStyle(*category, *object, place);
            }
        }
        else if (!value.Is<Json::NullType>())
        {
            AddLoss(place, "is " + KindOf(value) + ", not an object");
        }
    }

    void CheckList(const PropertyKey& categoryName, const Json::Variant& value, const Place& place)
    {
        if (const auto* list = value.GetIf<Json::Array>())
        {
            for (std::size_t index = 0; index < list->GetSize(); ++index)
            {
                CheckSubstyle(categoryName, *list->GetValue(index), place.Element(index));
            }
        }
        else if (!value.Is<Json::NullType>())
        {
            AddLoss(place, "is " + KindOf(value) + ", not an array");
        }
    }

    void CheckValue(const PropertyKey& category, const PropertyKey& key, const Styles::BaseStyleProperty& definition,
                    const Json::Variant& value, const Place& place)
    {
        Style style(nullptr, category);
        try
        {
            if (!definition.Deserialize(m_sheet, &style, &value))
            {
                if (!value.Is<Json::NullType>())
                {
                    AddLoss(place, KindOf(value) + " is no value");
                }
                return;
            }
        }
        catch (const VelPref::Detail::BadConversion& error)
        {
            const auto* text = value.GetIf<VelString>();
            AddMistake(place, (text != nullptr ? Quoted(*text) : KindOf(value)) + " is no value: " + error.what());
            return;
        }
        const auto* written = value.GetIf<double>();
        const auto* read = style.GetProperty(key).GetIf<double>();
        if (written != nullptr && read != nullptr && *written != *read)
        {
            AddWarning(place, "a number is read to six digits; a text would keep them all");
        }
    }

    const VelString& m_file;
    const Styles::StyleSheet& m_sheet;
    std::set<VelString, VelUtils::String::LessThanCaseInsensitive> m_names;
    SheetReport m_report;
};

} // namespace

SheetReport CheckSheet(const Document& document, const Styles::StyleSheet& sheet)
{
    return Checker(document, sheet).Check(document.value);
}

} // namespace Inspect
