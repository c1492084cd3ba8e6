// Writing a sheet as a document, and the text and stream forms of both ways.

#include <styles/StyleSheet.h>

#include "sheet/DocumentMembers.h"

#include <VelUtils/TextStream.h>

#include <utility>

namespace Styles
{

namespace
{

constexpr VelUtils::TextStream::Encoding DocumentEncoding = VelUtils::TextStream::Encoding::Utf8;

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
        document.AddValue(Detail::VersionMember, static_cast<double>(m_version));
    }
    if (!m_externalID.empty())
    {
        document.AddValue(Detail::IdMember, m_externalID);
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
