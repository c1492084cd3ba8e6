#include "Sheet.h"

#include "Failure.h"
#include "Output.h"
#include "OwnValues.h"
#include "Progress.h"
#include "SheetCheck.h"

#include <VelUtils/Stream.h>

#include <map>
#include <utility>

namespace Inspect
{

namespace
{

/// Counts the values that are newer than a version, by property.
class NewerValues
{
public:
    explicit NewerValues(int version) : m_version(version) {}

    void Count(const OwnValue& value)
    {
        const int newSince = value.definition->GetNewSinceVersion();
        if (newSince > m_version)
        {
            auto& count = m_counts[Shown(value.style->GetCategoryName().GetText()) + '.' + Shown(value.key.GetText())];
            ++count.first;
            count.second = newSince;
        }
    }

    std::vector<std::string> GetMessages() const
    {
        std::vector<std::string> messages;
        for (const auto& [name, count] : m_counts)
        {
            messages.push_back(Counted(count.first, "value") + " of " + name + " left out: new since version " +
                               std::to_string(count.second) + ", and the sheet has version " +
                               std::to_string(m_version));
        }
        return messages;
    }

private:
    int m_version;
    std::map<std::string, std::pair<std::size_t, int>> m_counts; // in the order of their names
};

} // namespace

Sheet::Sheet(const Schema& schema, const VelString& path, Progress* progress)
    : Sheet(schema, ReadDocument(path), progress)
{}

Sheet::Sheet(const Schema& schema, const Document& document, Progress* progress) : m_path(document.path)
{
    const std::vector<Finding> findings = CheckSheet({document, nullptr, progress}, *this);
    Read(schema, document, findings, progress);
}

Sheet::Sheet(const Schema& schema, const Document& document, const std::vector<Finding>& findings, Progress* progress)
    : m_path(document.path)
{
    Read(schema, document, findings, progress);
}

void Sheet::Read(const Schema& schema, const Document& document, const std::vector<Finding>& findings,
                 Progress* progress)
{
    std::string message;
    for (const std::string& mistake : MessagesOf(m_path, findings, Effect::Refused))
    {
        message += (message.empty() ? "" : "\n") + mistake;
    }
    if (!message.empty())
    {
        throw Failure(message);
    }
    const ProgressPhase phase(progress, "reading", document.bytes.size());
    VelUtils::MemoryStream stream(document.bytes);
    if (!Import(stream, /*replace*/ false))
    {
        throw Failure(Shown(m_path) + ": cannot be read as a sheet");
    }
    m_losses = MessagesOf(m_path, findings, Effect::Lost);
    m_warnings = MessagesOf(m_path, findings, Effect::Altered);

    const auto& root = document.value.Get<Json::Object>();
    for (std::size_t index = 0; index < root.GetSize(); ++index)
    {
        m_categoryOrder.push_back(root.GetValueName(index));
    }
    for (const PropertyKey& category : schema.GetCategoryNames())
    {
        m_categoryOrder.push_back(category.GetText());
    }
    // Set before the import, the identity would become that of every style.
    const Json::Variant* id = root.GetValue(VelString(L"id"));
    if (id != nullptr && id->Is<VelString>())
    {
        SetExternalID(id->Get<VelString>());
    }
}

std::vector<std::string> Sheet::GetValuesLeftOut() const
{
    NewerValues newer(GetVersion());
    ForEachOwnValue(*this, [&](const OwnValue& value) { newer.Count(value); });
    return newer.GetMessages();
}

std::vector<std::string> Sheet::GetValuesLeftOut(const Styles::Style& style) const
{
    NewerValues newer(GetVersion());
    ForEachOwnValue(style, [&](const OwnValue& value) { newer.Count(value); });
    return newer.GetMessages();
}

std::string Sheet::ToBytes() const
{
    VelUtils::MemoryStream stream;
    if (!Export(stream))
    {
        throw Failure(Shown(m_path) + ": the document cannot be made");
    }
    return stream.GetBytes();
}

void Sheet::Save(const VelString& path) const
{
    VelUtils::Stream stream = VelUtils::FileStream::Create(path);
    if (!stream || !Export(stream) || !stream.Close())
    {
        throw Failure(Shown(path) + ": cannot be written; nothing was saved");
    }
}

void Sheet::ExportJson(Json::Variant& out, bool includeTemporaries) const
{
    Json::Variant document = Json::Object();
    StyleSheet::ExportJson(document, includeTemporaries);
    auto& unordered = document.Get<Json::Object>();
    auto& ordered = out.Get<Json::Object>();
    const auto take = [&](const VelString& name) {
        Json::Variant* value = unordered.GetValue(name);
        if (value != nullptr && ordered.GetValue(name) == nullptr)
        {
            ordered.AddValue(name, std::move(*value));
        }
    };
    take(VelString(L"version"));
    take(VelString(L"id"));
    for (const VelString& name : m_categoryOrder)
    {
        take(name);
    }
    for (std::size_t index = 0; index < unordered.GetSize(); ++index)
    {
        take(unordered.GetValueName(index));
    }
}

} // namespace Inspect
