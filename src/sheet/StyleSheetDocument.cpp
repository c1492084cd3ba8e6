// Writing a sheet as a document.

#include <styles/StyleSheet.h>

#include "core/StyleJson.h"
#include "sheet/DocumentMembers.h"

#include <VelUtils/TextStream.h>

#include <map>
#include <typeinfo>
#include <utility>
#include <vector>

namespace Styles
{

namespace
{

/// The styles of one category with their names, in the order of the names.
using Block = std::vector<std::pair<VelString, const Style*>>;

std::map<PropertyKey, Block> GroupByCategory(const StyleSheet::NameMap& stylesByName)
{
    std::map<PropertyKey, Block> blocks;
    for (const auto& [name, style] : stylesByName)
    {
        if (style != nullptr)
        {
            blocks[style->GetCategoryName()].emplace_back(name, style);
        }
    }
    return blocks;
}

} // namespace

/// One writing of a document.
class StyleSheet::DocumentWriter
{
public:
    DocumentWriter(const StyleSheet& sheet, bool includeTemporaries)
        : m_sheet(sheet), m_includeTemporaries(includeTemporaries)
    {}

    /// Whether the text may be written at once. A sheet of a host's class may have its say about the document.
    static bool MayWriteText(const StyleSheet& sheet) { return typeid(sheet) == typeid(StyleSheet); }

    /// Adds the members to `document`.
    void WriteTo(Json::Object& document) const
    {
        AddHeader(document);
        for (const auto& [category, styles] : GroupByCategory(*m_sheet.m_stylesByName))
        {
            Json::Object block;
            for (const auto& [name, style] : styles)
            {
                Json::Variant written;
                style->Serialize(m_sheet, written, m_includeTemporaries);
                block.AddValue(name, std::move(written));
            }
            document.AddValue(category.GetText(), std::move(block));
        }
    }

    /// The text of the document that the other function makes, written member by member: in less than half the
    /// time, because no document is made.
    template <class CharT>
    VelStringT<CharT> WriteText() const
    {
        Json::BasicWriter<CharT> writer(/*compact*/ false);
        writer.StartObject();
        Json::Object header;
        AddHeader(header);
        for (std::size_t index = 0; index < header.GetSize(); ++index)
        {
            writer.Name(header.GetValueName(index));
            writer.Value(*header.GetValue(index));
        }
        for (const auto& [category, styles] : GroupByCategory(*m_sheet.m_stylesByName))
        {
            if (header.GetValue(category.GetText()) != nullptr)
            {
                continue; // no two members have the same name
            }
            writer.Name(category.GetText());
            writer.StartObject();
            for (const auto& [name, style] : styles)
            {
                writer.Name(name);
                writer.StartObject();
                Detail::WriteMembers(*style, m_sheet, m_includeTemporaries,
                                     [&writer](const VelString& member, const Json::Variant& value) {
                                         writer.Name(member);
                                         writer.Value(value);
                                     });
                writer.EndObject();
            }
            writer.EndObject();
        }
        writer.EndObject();
        return writer.Finish();
    }

private:
    /// What stands before the categories.
    void AddHeader(Json::Object& document) const
    {
        if (m_sheet.m_version > 0)
        {
            document.AddValue(Detail::VersionMember, static_cast<double>(m_sheet.m_version));
        }
        if (!m_sheet.m_externalID.empty())
        {
            document.AddValue(Detail::IdMember, m_sheet.m_externalID);
        }
    }

    const StyleSheet& m_sheet;
    bool m_includeTemporaries;
};

bool StyleSheet::Export(VelUtils::Stream& stream) const
{
    if (DocumentWriter::MayWriteText(*this))
    {
        const VelStringA text = DocumentWriter(*this, /*includeTemporaries*/ false).WriteText<char>();
        return VelUtils::Stream(stream).Write(text.data(), text.size());
    }
    VelString text;
    ExportToString(text, /*includeTemporaries*/ false);
    VelUtils::TextStreamWriter writer(stream, Detail::DocumentEncoding, /*byteOrderMark*/ false);
    return writer.Write(text);
}

void StyleSheet::ExportToString(VelString& out, bool includeTemporaries) const
{
    if (DocumentWriter::MayWriteText(*this))
    {
        out = DocumentWriter(*this, includeTemporaries).WriteText<wchar_t>();
        return;
    }
    Json::Variant document = Json::Object();
    ExportJson(document, includeTemporaries);
    out = Json::ValueToString(document, /*compact*/ false);
}

void StyleSheet::ExportJson(Json::Variant& out, bool includeTemporaries) const
{
    DocumentWriter(*this, includeTemporaries).WriteTo(out.Get<Json::Object>());
}

void StyleSheet::GenerateCategoryStyleMap(CategoryStyleMap& out) const
{
    CategoryStyleMap categories;
    for (const auto& [name, style] : *m_stylesByName)
    {
        if (style != nullptr)
        {
            NameMap& styles = categories[style->GetCategoryName()];
            styles.emplace_hint(styles.end(), name, style);
        }
    }
    out.swap(categories);
}

} // namespace Styles
