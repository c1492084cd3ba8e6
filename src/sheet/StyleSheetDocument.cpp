// Writing a sheet as a document, and reading documents into it.

#include <styles/StyleSheet.h>

#include "core/StyleAccess.h"

#include <VelUtils/TextStream.h>

#include <exception>
#include <limits>
#include <map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace Styles
{

namespace
{

const VelString VersionMember(L"version");
const VelString IdMember(L"id");

constexpr VelUtils::TextStream::Encoding DocumentEncoding = VelUtils::TextStream::Encoding::Utf8;

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

/// Remaps the parents of `style` and of the styles in its values, as far as they can be seen without definitions.
void RemapParents(Style& style, const std::map<Style*, Style*>& replacements)
{
    if (const auto entry = replacements.find(style.GetParent()); entry != replacements.end())
    {
        style.SetParent(entry->second);
    }
    for (const auto& [key, value] : Detail::StyleAccess::Properties(style))
    {
        if (Style* const* substyle = value.GetIf<Style*>())
        {
            if (*substyle != nullptr)
            {
                RemapParents(**substyle, replacements);
            }
        }
        else if (const auto* list = value.GetIf<std::vector<Style*>>())
        {
            for (Style* element : *list)
            {
                if (element != nullptr)
                {
                    RemapParents(*element, replacements);
                }
            }
        }
    }
}

/// The styles that an import has replaced, each with its replacement; owned. They live until the heirs have been told.
class ReplacedStyles
{
public:
    /// `destroy` is called for each of the styles in the end.
    explicit ReplacedStyles(Delegate<void(Style*)> destroy) noexcept : m_destroy(destroy) {}
    ReplacedStyles(const ReplacedStyles&) = delete;
    ReplacedStyles& operator=(const ReplacedStyles&) = delete;

    ~ReplacedStyles()
    {
        for (const auto& entry : m_replacements)
        {
            try
            {
                m_destroy(entry.first);
            }
            catch (...) // a definition; the next one goes all the same
            {}
        }
    }

    /// Makes the next `Add` safe.
    void Prepare(Style* style) { m_prepared.emplace(nullptr, style); }

    /// Takes over `removed`, in whose place the style stands that was prepared.
    void Add(Style* removed) noexcept
    {
        auto node = m_prepared.extract(m_prepared.begin());
        node.key() = removed;
        m_replacements.insert(std::move(node));
    }

    /// Nothing was replaced by the style that was prepared.
    void Forget() noexcept { m_prepared.clear(); }

    /// Lets the heirs among `styles` inherit from the replacements. Every style is told, then the first exception goes
    /// on.
    void TellHeirs(const StyleSheet::NameMap& styles)
    {
        if (m_replacements.empty())
        {
            return;
        }
        for (const auto& entry : m_replacements)
        {
            FindLastReplacement(entry.first);
        }
        std::exception_ptr failure;
        for (const auto& [name, style] : styles)
        {
            try
            {
                if (style != nullptr)
                {
                    style->RemapDependency(m_replacements);
                }
            }
            catch (...)
            {
                RemapParents(*style, m_replacements); // no link may lead to a style that is about to go
                if (!failure)
                {
                    failure = std::current_exception();
                }
            }
        }
        if (failure)
        {
            std::rethrow_exception(failure);
        }
    }

private:
    /// One document may hold a name many times, so a replacement may have been replaced in turn. All on the way from
    /// `style` get the last one, so that no way is gone twice.
    void FindLastReplacement(Style* style)
    {
        Style* last = style;
        for (auto next = m_replacements.find(last); next != m_replacements.end(); next = m_replacements.find(last))
        {
            last = next->second;
        }
        for (auto next = m_replacements.find(style); next != m_replacements.end(); next = m_replacements.find(style))
        {
            style = std::exchange(next->second, last);
        }
    }

    Delegate<void(Style*)> m_destroy;
    std::map<Style*, Style*> m_replacements;
    std::map<Style*, Style*> m_prepared;
};

} // namespace

bool StyleSheet::Export(VelUtils::Stream& stream) const
{
    VelString text;
    ExportToString(text, /*includeTemporaries*/ false);
    VelUtils::TextStreamWriter writer(stream, DocumentEncoding, /*byteOrderMark*/ false);
    return writer.Write(text);
}

bool StyleSheet::Import(VelUtils::Stream& stream, bool replace)
{
    VelUtils::TextStreamReader reader(stream, DocumentEncoding);
    const VelString text = reader.ReadToEnd();
    return ImportFromString(text, replace);
}

void StyleSheet::ExportToString(VelString& out, bool includeTemporaries) const
{
    Json::Variant document = Json::Object();
    ExportJson(document, includeTemporaries);
    out = Json::ValueToString(document, /*compact*/ false);
}

bool StyleSheet::ImportFromString(const VelString& text, bool replace)
{
    try
    {
        Json::Variant document;
        VelString errorText;
        if (!Json::Parse(text, document, errorText))
        {
            return false;
        }
        auto* root = document.GetIf<Json::Object>();
        return root != nullptr && ImportJson(root, replace);
    }
    catch (...) // whatever a document does to a definition, its reader is told false
    {
        return false;
    }
}

void StyleSheet::ExportJson(Json::Variant& out, bool includeTemporaries) const
{
    auto& document = out.Get<Json::Object>();
    CategoryStyleMap categories;
    GenerateCategoryStyleMap(categories);
    if (m_version > 0)
    {
        document.AddValue(VersionMember, static_cast<double>(m_version));
    }
    if (!m_externalID.empty())
    {
        document.AddValue(IdMember, m_externalID);
    }
    for (const auto& [category, styles] : categories)
    {
        Json::Object block;
        for (const auto& [name, style] : styles)
        {
            Json::Variant written;
            style->Serialize(*this, written, includeTemporaries);
            block.AddValue(name, std::move(written));
        }
        document.AddValue(category.GetText(), std::move(block));
    }
}

bool StyleSheet::ImportJson(Json::Object* root, bool replace)
{
    if (root == nullptr)
    {
        return false;
    }
    bool hasVersion = false;
    std::unordered_set<const Style*> created;
    const auto destroy = [this](Style* style) { DestroyStyle(style); };
    ReplacedStyles replaced(destroy);

    const auto createStyles = [&](const Json::Object& block) {
        for (std::size_t index = 0; index < block.GetSize(); ++index)
        {
            static_cast<void>(block.GetValue(index)->Get<Json::Object>()); // anything else ends the import
            auto* style = new Style();
            try
            {
                created.insert(style);
                replaced.Prepare(style);
            }
            catch (...)
            {
                delete style;
                throw;
            }
            if (Style* removed = AddStyle(block.GetValueName(index), style, replace))
            {
                created.erase(removed);
                replaced.Add(removed);
            }
            replaced.Forget();
        }
    };

    const auto readStyles = [&](const PropertyKey& category, const Json::Object& block) {
        for (std::size_t index = 0; index < block.GetSize(); ++index)
        {
            const auto& object = block.GetValue(index)->Get<Json::Object>();
            Style* style = GetStyle(block.GetValueName(index));
            if (style == nullptr || !created.contains(style))
            {
                continue;
            }
            ClearStylesUnknownTo(category, *style);
            style->SetCategory(category);
            style->DeserializeJson(*this, object);
            if (!m_externalID.empty())
            {
                style->SetExternalID(m_externalID);
            }
        }
    };

    // All styles are there, empty, before the first is read, so that a style may name a parent that comes later.
    try
    {
        for (std::size_t index = 0; index < root->GetSize(); ++index)
        {
            const VelString& name = root->GetValueName(index);
            const Json::Variant& value = *root->GetValue(index);
            if (const auto* block = value.GetIf<Json::Object>())
            {
                if (Manager().CategoryExists(name))
                {
                    createStyles(*block);
                }
            }
            else if (const double* number = value.GetIf<double>(); number != nullptr && name == VersionMember)
            {
                m_version = Truncate(*number);
                hasVersion = true;
            }
            else if (const VelString* id = value.GetIf<VelString>(); id != nullptr && name == IdMember)
            {
                // KEPT: only a sheet that has an identity takes the one of the document. A sheet without is no copy of
                // an outside one, and reading a document does not make it one. Pinned by
                // StyleSheetDocument.OnlyASheetWithAnIdentityTakesThatOfTheDocument
                if (!m_externalID.empty())
                {
                    m_externalID = *id;
                }
            }
        }
    }
    catch (...)
    {
        try
        {
            replaced.TellHeirs(*m_stylesByName);
        }
        catch (...) // the first exception is the one that goes on
        {}
        throw;
    }
    replaced.TellHeirs(*m_stylesByName);
    for (std::size_t index = 0; index < root->GetSize(); ++index)
    {
        const VelString& name = root->GetValueName(index);
        const auto* block = root->GetValue(index)->GetIf<Json::Object>();
        if (block != nullptr && Manager().CategoryExists(name))
        {
            readStyles(PropertyKey(name), *block);
        }
    }
    if (!hasVersion)
    {
        m_version = 0;
    }
    return true;
}

void StyleSheet::GenerateCategoryStyleMap(CategoryStyleMap& out) const
{
    out.clear();
    for (const auto& [name, style] : *m_stylesByName)
    {
        if (style != nullptr)
        {
            NameMap& styles = out[style->GetCategoryName()];
            styles.emplace_hint(styles.end(), name, style);
        }
    }
}

} // namespace Styles
