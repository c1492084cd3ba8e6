#include "SheetCheck.h"

#include "Output.h"
#include "Progress.h"

#include <styles/TextPolicy.h>

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

class Checker
{
public:
    Checker(const CheckedDocument& checked, const Styles::StyleSheet& sheet) : m_checked(checked), m_sheet(sheet) {}

    std::vector<Finding> Check()
    {
        const Json::Variant& document = m_checked.document.value;
        const Spot spot(m_checked.positions);
        const auto* root = document.GetIf<Json::Object>();
        if (root == nullptr)
        {
            Add(Rules::BadShape, spot, "a sheet is an object, not " + KindOf(document));
            return std::move(m_findings);
        }
        // A style may name a parent that comes later, and the version may stand anywhere.
        for (std::size_t index = 0; index < root->GetSize(); ++index)
        {
            CollectNames(root->GetValueName(index), *root->GetValue(index), spot.Member(*root, index));
        }
        const ProgressPhase phase(m_checked.progress, "checking", m_names.size());
        for (std::size_t index = 0; index < root->GetSize(); ++index)
        {
            CheckBlock(root->GetValueName(index), *root->GetValue(index), spot.Member(*root, index));
        }
        return std::move(m_findings);
    }

private:
    void Add(const Rule& rule, const Spot& spot, std::string message)
    {
        m_findings.push_back({&rule, spot.GetPlace(), spot.GetPosition(), std::move(message)});
    }

    void CollectNames(const VelString& category, const Json::Variant& value, const Spot& spot)
    {
        const auto* block = value.GetIf<Json::Object>();
        if (block == nullptr || !Manager().CategoryExists(category))
        {
            m_version = block == nullptr && category == L"version" && IsVersion(value)
                            ? static_cast<int>(value.Get<double>())
                            : m_version;
            return;
        }
        for (std::size_t index = 0; index < block->GetSize(); ++index)
        {
            const auto [found, isNew] = m_names.insert(block->GetValueName(index));
            if (!isNew)
            {
                Add(Rules::RepeatedName, spot.Member(*block, index),
                    "there is a style " + Quoted(*found) + " already; case makes no difference");
            }
        }
    }

    void CheckBlock(const VelString& name, const Json::Variant& value, const Spot& spot)
    {
        const auto* block = value.GetIf<Json::Object>();
        if (block == nullptr)
        {
            CheckHeading(name, value, spot);
        }
        else if (const CategoryPointer category = FindCategory(name))
        {
            for (std::size_t index = 0; index < block->GetSize(); ++index)
            {
                const Spot styleSpot = spot.Member(*block, index);
                if (const auto* style = block->GetValue(index)->GetIf<Json::Object>())
                {
                    CheckStyle(*category, *style, styleSpot);
                    CheckSelf(block->GetValueName(index), *style, styleSpot);
                }
                else
                {
                    Add(Rules::BadShape, styleSpot, "a style is an object, not " + KindOf(*block->GetValue(index)));
                }
                CountStep(m_checked.progress);
            }
        }
        else
        {
            Add(Rules::UnknownCategory, spot,
                "the schema has no such category; " + Counted(block->GetSize(), "style") + " passed over");
        }
    }

    static bool IsVersion(const Json::Variant& value)
    {
        const auto* number = value.GetIf<double>();
        return number != nullptr && *number == std::trunc(*number) && *number >= 0 &&
               *number <= std::numeric_limits<int>::max();
    }

    void CheckHeading(const VelString& name, const Json::Variant& value, const Spot& spot)
    {
        if (name == L"version")
        {
            if (!IsVersion(value))
            {
                Add(Rules::BadVersion, spot, "is no version");
            }
            else if (m_version > Manager().GetCurrentVersion())
            {
                Add(Rules::NewerVersion, spot,
                    "the sheet has version " + std::to_string(m_version) + ", and the schema " +
                        std::to_string(Manager().GetCurrentVersion()));
            }
        }
        else if (name != L"id" || !value.Is<VelString>())
        {
            Add(Rules::UnknownMember, spot, "means nothing as " + KindOf(value));
        }
    }

    void CheckStyle(const Styles::StyleCategory& category, const Json::Object& style, const Spot& spot)
    {
        for (std::size_t index = 0; index < style.GetSize(); ++index)
        {
            CheckMember(category, style.GetValueName(index), *style.GetValue(index), spot.Member(style, index));
        }
    }

    void CheckSelf(const VelString& name, const Json::Object& style, const Spot& spot)
    {
        for (std::size_t index = 0; index < style.GetSize(); ++index)
        {
            const auto* parent = style.GetValue(index)->GetIf<VelString>();
            if (parent != nullptr && style.GetValueName(index) == L"inherits" && parent->CompareNoCase(name) == 0)
            {
                Add(Rules::OwnParent, spot.Member(style, index), "a style does not inherit from itself");
            }
        }
    }

    void CheckMember(const Styles::StyleCategory& category, const VelString& name, const Json::Variant& value,
                     const Spot& spot)
    {
        if (name == L"inherits" || name == L"id" || name == L"original")
        {
            CheckIdentity(name, value, spot);
            return;
        }
        const auto entry = category.GetProperties().find(PropertyKey(name));
        if (entry == category.GetProperties().end())
        {
            Add(Rules::UnknownProperty, spot, "the schema has no such property");
            return;
        }
        Styles::BaseStyleProperty& definition = *entry->second;
        if (definition.GetNewSinceVersion() > m_version)
        {
            Add(Rules::NewerProperty, spot,
                "new since version " + std::to_string(definition.GetNewSinceVersion()) +
                    ", and the sheet has version " + std::to_string(m_version) + ": writing leaves it out");
        }
        if (value.Is<Json::NullType>())
        {
            Add(Rules::NullValue, spot, "null is no value");
        }
        else if (definition.IsSubstyle())
        {
            CheckSubstyle(definition.GetElementCategoryName(), value, spot);
        }
        else if (definition.GetDefaultValue().Is<std::vector<Style*>>())
        {
            const PropertyKey elements = definition.GetElementCategoryName();
            CheckList(elements == PropertyKey::Empty ? category.GetCategoryName() : elements, value, spot);
        }
        else
        {
            CheckValue(category.GetCategoryName(), entry->first, definition, value, spot);
        }
    }

    void CheckIdentity(const VelString& name, const Json::Variant& value, const Spot& spot)
    {
        const auto* text = value.GetIf<VelString>();
        if (text == nullptr)
        {
            Add(Rules::WrongType, spot, "is " + KindOf(value) + ", not a text");
        }
        else if (text->empty())
        {
            Add(Rules::EmptyMember, spot, "means nothing while it is empty");
        }
        else if (name == L"inherits" && !m_names.contains(*text))
        {
            Add(Rules::UnknownParent, spot, "there is no style " + Quoted(*text) + " to inherit from");
        }
    }

    void CheckSubstyle(const PropertyKey& categoryName, const Json::Variant& value, const Spot& spot)
    {
        const auto* object = value.GetIf<Json::Object>();
        if (object == nullptr)
        {
            Add(Rules::WrongType, spot, "is " + KindOf(value) + ", not an object");
        }
        else if (const CategoryPointer category = FindCategory(categoryName.GetText()))
        {
            CheckStyle(*category, *object, spot);
        }
    }

    void CheckList(const PropertyKey& categoryName, const Json::Variant& value, const Spot& spot)
    {
        const auto* list = value.GetIf<Json::Array>();
        if (list == nullptr)
        {
            Add(Rules::WrongType, spot, "is " + KindOf(value) + ", not an array");
            return;
        }
        for (std::size_t index = 0; index < list->GetSize(); ++index)
        {
            const Spot element = spot.Element(index);
            if (list->GetValue(index)->Is<Json::NullType>())
            {
                Add(Rules::NullValue, element, "null is no style");
            }
            else
            {
                CheckSubstyle(categoryName, *list->GetValue(index), element);
            }
        }
    }

    void CheckValue(const PropertyKey& category, const PropertyKey& key, const Styles::BaseStyleProperty& definition,
                    const Json::Variant& value, const Spot& spot)
    {
        Style style(nullptr, category);
        const auto* text = value.GetIf<VelString>();
        try
        {
            if (!definition.Deserialize(m_sheet, &style, &value))
            {
                Add(Rules::WrongType, spot, KindOf(value) + " is no value");
                return;
            }
        }
        catch (const VelPref::Detail::BadConversion& error)
        {
            Add(Rules::BadValue, spot,
                (text != nullptr ? Quoted(*text) : KindOf(value)) + " is no value: " + error.what());
            return;
        }
        if (text != nullptr)
        {
            CheckText(definition, *text, style.GetProperty(key), spot);
        }
        const auto* written = value.GetIf<double>();
        const auto* read = style.GetProperty(key).GetIf<double>();
        if (written != nullptr && read != nullptr && *written != *read)
        {
            Add(Rules::RoundedNumber, spot, "a number is read to six digits; a text would keep them all");
        }
    }

    /// Some properties take a neutral value in the place of a text that cannot be read.
    void CheckText(const Styles::BaseStyleProperty& definition, const VelString& text, const Styles::Any& read,
                   const Spot& spot)
    {
        const auto* policy = definition.GetConversionPolicy();
        try
        {
            static_cast<void>(policy != nullptr ? policy->FromText(text) : Styles::Any());
        }
        catch (const VelPref::Detail::BadConversion&)
        {
            const auto* number = read.GetIf<double>();
            Add(Rules::ReplacedValue, spot,
                Quoted(text) + " is no value" +
                    (number != nullptr ? "; it is read as " + Shown(Styles::TextPolicy<double>().ToText(read)) : ""));
        }
    }

    const CheckedDocument& m_checked;
    const Styles::StyleSheet& m_sheet;
    std::set<VelString, VelUtils::String::LessThanCaseInsensitive> m_names;
    int m_version = 0; // a sheet that tells none has this one
    std::vector<Finding> m_findings;
};

} // namespace

CategoryPointer FindCategory(const VelString& name)
{
    return Manager().CategoryExists(name) ? Manager().GetCategory(PropertyKey(name)) : nullptr;
}

const char* NameOf(Severity severity)
{
    return severity == Severity::Error ? "error" : severity == Severity::Warning ? "warning" : "hint";
}

std::vector<Finding> CheckSheet(const CheckedDocument& checked, const Styles::StyleSheet& sheet)
{
    return Checker(checked, sheet).Check();
}

std::vector<std::string> MessagesOf(const VelString& file, const std::vector<Finding>& findings, Effect effect)
{
    std::vector<std::string> messages;
    for (const Finding& finding : findings)
    {
        if (finding.rule->effect == effect)
        {
            messages.push_back(MessageAt(file, finding.place, finding.message));
        }
    }
    return messages;
}

} // namespace Inspect
