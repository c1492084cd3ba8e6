// Reading a document into a sheet.

#include <styles/StyleSheet.h>

#include "core/StyleAccess.h"
#include "sheet/DocumentMembers.h"
#include "sheet/ReplacedStyles.h"
#include "sheet/SheetNames.h"

#include <VelUtils/TextStream.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

namespace Styles
{

namespace
{

StyleManager& Manager()
{
    return VelUtils::Singleton<StyleManager, 0>::GetInstance();
}

/// `number` without its fraction, or the nearest `int`.
int Truncate(double number)
{
    using Limits = std::numeric_limits<int>;
    if (number >= static_cast<double>(Limits::max()))
    {
        return Limits::max();
    }
    return number <= static_cast<double>(Limits::min()) ? Limits::min() : static_cast<int>(number);
}

/// Clears the values that hold styles and that a style of `category` would not destroy. There are such when a document
/// holds a name in the blocks of two categories.
void ClearStylesUnknownTo(const PropertyKey& category, Style& style)
{
    std::vector<PropertyKey> unknown;
    for (const auto& [key, value] : Detail::StyleAccess::Properties(style))
    {
        const BaseStyleProperty* definition = Detail::StyleAccess::FindDefinition(style, key);
        bool holdsStyles = false;
        if (definition != nullptr)
        {
            definition->ProcessStylesInProperty(value, [&holdsStyles](Style*) { return holdsStyles = true; });
        }
        if (!holdsStyles)
        {
            continue;
        }
        const BaseStyleProperty* newDefinition = Manager().GetStyleProperty(category, key);
        if (newDefinition == nullptr || !newDefinition->CheckType(value))
        {
            unknown.push_back(key);
        }
    }
    for (const PropertyKey& key : unknown)
    {
        style.ClearProperty(key);
    }
}

/// The object of a style. \throws std::bad_cast for anything else, which ends the import.
const Json::Object& StyleObject(const Json::Object& block, std::size_t index)
{
    return block.GetValue(index)->Get<Json::Object>();
}

} // namespace

/// One reading of a document. All styles are there, empty, before the first is read, so that a style may name a parent
/// that comes later.
class StyleSheet::DocumentReader
{
public:
    /// Whether the text and the document go through functions that a class of a host may have made its own. Where they
    /// do not, nobody can tell which way was taken.
    static bool IsForHostsToSee(const StyleSheet& sheet) { return typeid(sheet) != typeid(StyleSheet); }

    /// Reads the document that `parse` makes of a text. Whatever it does to a definition, the answer is false then.
    template <class Parse>
    static bool ReadText(StyleSheet& sheet, bool replace, const Parse& parse)
    {
        try
        {
            Json::Variant document;
            VelString errorText;
            auto* root = parse(document, errorText) ? document.template GetIf<Json::Object>() : nullptr;
            if (root == nullptr || IsForHostsToSee(sheet))
            {
                return root != nullptr && sheet.ImportJson(root, replace);
            }
            DocumentReader(sheet, *root, replace, /*isUsedUp*/ true).Read();
            return true;
        }
        catch (...)
        {
            return false;
        }
    }

    /// `isUsedUp`: whether nobody will look at the document afterwards. Then what has been read is freed at once, while
    /// it is at hand.
    DocumentReader(StyleSheet& sheet, Json::Object& root, bool replace, bool isUsedUp)
        : m_sheet(sheet),
          m_root(root),
          m_replace(replace),
          m_isUsedUp(isUsedUp),
          m_destroy{sheet},
          m_replaced(m_destroy)
    {}

    void Read()
    {
        try
        {
            CreateAll();
        }
        catch (...)
        {
            TellHeirsOfWhatWasReplaced();
            throw;
        }
        m_replaced.TellHeirs(*m_sheet.m_stylesByName);
        m_changes = Names().changes;
        ForEachCategory(
            [this](const VelString& category, Json::Object& block) { ReadStyles(PropertyKey(category), block); });
        if (!m_hasVersion)
        {
            m_sheet.m_version = 0;
        }
    }

private:
    struct Destroy
    {
        StyleSheet& sheet;
        void operator()(Style* style) const { sheet.DestroyStyle(style); }
    };

    template <class Action>
    void ForEachCategory(const Action& action)
    {
        for (std::size_t index = 0; index < m_root.GetSize(); ++index)
        {
            const VelString& name = m_root.GetValueName(index);
            auto* block = m_root.GetValue(index)->GetIf<Json::Object>();
            if (block != nullptr && Manager().CategoryExists(name))
            {
                action(name, *block);
            }
        }
    }

    /// Version, identity, and all styles, empty. They are visited in the order of the document, whose end a failure
    /// leaves unread.
    void CreateAll()
    {
        for (std::size_t index = 0; index < m_root.GetSize(); ++index)
        {
            const VelString& name = m_root.GetValueName(index);
            const Json::Variant& value = *m_root.GetValue(index);
            if (const auto* block = value.GetIf<Json::Object>())
            {
                if (Manager().CategoryExists(name))
                {
                    CreateStyles(*block);
                }
            }
            else if (const double* number = value.GetIf<double>(); number != nullptr && name == Detail::VersionMember)
            {
                m_sheet.m_version = Truncate(*number);
                m_hasVersion = true;
            }
            else if (const VelString* id = value.GetIf<VelString>(); id != nullptr && name == Detail::IdMember)
            {
                TakeIdentity(*id);
            }
        }
    }

    void TakeIdentity(const VelString& id)
    {
        // KEPT: only a sheet that has an identity takes the one of the document. A sheet without is no copy of an
        // outside one, and reading a document does not make it one. Pinned by
        // StyleSheetDocument.OnlyASheetWithAnIdentityTakesThatOfTheDocument
        if (!m_sheet.m_externalID.empty())
        {
            m_sheet.m_externalID = id;
        }
    }

    void CreateStyles(const Json::Object& block)
    {
        m_firstOfBlock.emplace(&block, m_created.size());
        for (std::size_t index = 0; index < block.GetSize(); ++index)
        {
            static_cast<void>(StyleObject(block, index));
            auto style = std::make_unique<Style>();
            m_created.push_back(style.get());
            m_replaced.Prepare(style.get());
            const std::size_t changes = Names().changes;
            if (Style* removed = m_sheet.AddStyle(block.GetValueName(index), style.release(), m_replace))
            {
                m_replaced.Add(removed);
                m_namesAreNew = false;
            }
            else if (Names().changes == changes)
            {
                m_created.back() = nullptr; // the name stays with the style that it had
                m_namesAreNew = false;
            }
        }
    }

    const Detail::SheetNames& Names() const { return Detail::SheetNames::Of(*m_sheet.m_stylesByName); }

    /// The style that this reading has created and that is listed under the name at a place of a block; else null.
    Style* FindCreated(const Json::Object& block, std::size_t index)
    {
        if (m_namesAreNew && Names().changes == m_changes)
        {
            // As a rule each name has got a style, and all are still listed as they were then.
            if (const auto first = m_firstOfBlock.find(&block); first != m_firstOfBlock.end())
            {
                return m_created[first->second + index];
            }
        }
        if (!std::exchange(m_areSorted, true))
        {
            std::sort(m_created.begin(), m_created.end(), std::less<>());
            m_namesAreNew = false;
        }
        Style* const style = m_sheet.GetStyle(block.GetValueName(index));
        return std::binary_search(m_created.begin(), m_created.end(), style, std::less<>()) ? style : nullptr;
    }

    void ReadStyles(const PropertyKey& category, Json::Object& block)
    {
        for (std::size_t index = 0; index < block.GetSize(); ++index)
        {
            const Json::Object& object = StyleObject(block, index);
            Style* style = FindCreated(block, index);
            if (style == nullptr)
            {
                continue;
            }
            ClearStylesUnknownTo(category, *style);
            style->SetCategory(category);
            style->DeserializeJson(m_sheet, object);
            if (!m_sheet.m_externalID.empty())
            {
                style->SetExternalID(m_sheet.m_externalID);
            }
            if (m_isUsedUp)
            {
                *block.GetValue(index) = Json::Object();
            }
        }
    }

    void TellHeirsOfWhatWasReplaced() noexcept
    {
        try
        {
            m_replaced.TellHeirs(*m_sheet.m_stylesByName);
        }
        catch (...) // the exception that ended the reading is the one that goes on
        {}
    }

    StyleSheet& m_sheet;
    Json::Object& m_root;
    bool m_replace;
    bool m_isUsedUp;
    bool m_hasVersion = false;
    std::vector<Style*> m_created; // for each name in the order of the document, until they are sorted
    bool m_areSorted = false;
    bool m_namesAreNew = true; // no name of the document was listed before, and none twice
    std::map<const Json::Object*, std::size_t> m_firstOfBlock;
    std::size_t m_changes = 0; // of the names, when all styles were there
    Destroy m_destroy;
    Detail::ReplacedStyles m_replaced;
};

bool StyleSheet::ImportJson(Json::Object* root, bool replace)
{
    if (root == nullptr)
    {
        return false;
    }
    DocumentReader(*this, *root, replace, /*isUsedUp*/ false).Read();
    return true;
}

bool StyleSheet::Import(VelUtils::Stream& stream, bool replace)
{
    VelUtils::TextStreamReader reader(stream, Detail::DocumentEncoding);
    if (!DocumentReader::IsForHostsToSee(*this))
    {
        const std::string bytes = reader.ReadBytes();
        return !reader.Failed() && DocumentReader::ReadText(*this, replace, [&bytes](auto& document, auto& errorText) {
            return Json::ParseUtf8(bytes, document, errorText);
        });
    }
    const VelString text = reader.ReadToEnd();
    return ImportFromString(text, replace);
}

bool StyleSheet::ImportFromString(const VelString& text, bool replace)
{
    return DocumentReader::ReadText(
        *this, replace, [&text](auto& document, auto& errorText) { return Json::Parse(text, document, errorText); });
}

} // namespace Styles
