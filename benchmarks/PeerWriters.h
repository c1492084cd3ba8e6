/// The roads of the styles of PeerStyles.h into the text of a document, in UTF-8.
#pragma once

#include "PeerStyles.h"

#ifdef STYLES_PEER_RAPIDJSON
#    include <rapidjson/prettywriter.h>
#    include <rapidjson/stringbuffer.h>
#    include <rapidjson/writer.h>
#endif

namespace PeerStyles
{

#ifdef STYLES_PEER_RAPIDJSON

namespace Detail
{

template <class Writer>
void WriteText(Writer& writer, const std::wstring& text)
{
    writer.String(text.data(), static_cast<rapidjson::SizeType>(text.size()));
}

template <class Writer>
void WriteName(Writer& writer, const std::wstring& name)
{
    writer.Key(name.data(), static_cast<rapidjson::SizeType>(name.size()));
}

template <class Writer>
void WriteStyle(Writer& writer, const Style& style)
{
    writer.StartObject();
    if (style.parent != nullptr)
    {
        WriteName(writer, L"inherits");
        WriteText(writer, *style.parent->name);
    }
    for (const auto& [name, value] : style.properties)
    {
        WriteName(writer, name);
        if (const auto* text = std::any_cast<std::wstring>(&value))
        {
            WriteText(writer, *text);
        }
        else if (const auto* substyle = std::any_cast<Style>(&value))
        {
            WriteStyle(writer, *substyle);
        }
    }
    writer.EndObject();
}

template <class Writer>
void WriteSheet(Writer& writer, const Sheet& sheet)
{
    writer.StartObject();
    WriteName(writer, L"version");
    writer.Double(sheet.version);
    WriteName(writer, L"style");
    writer.StartObject();
    for (const auto& [name, style] : sheet.styles)
    {
        WriteName(writer, name);
        WriteStyle(writer, style);
    }
    writer.EndObject();
    writer.EndObject();
}

} // namespace Detail

/// By RapidJSON's writer, without white space. \return the number of bytes
inline std::size_t ExportByRapidWriter(const Sheet& sheet)
{
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer, Wide, rapidjson::UTF8<>> writer(buffer);
    Detail::WriteSheet(writer, sheet);
    return buffer.GetSize();
}

/// By RapidJSON's writer, a member a line, as this library writes. \return the number of bytes
inline std::size_t ExportByRapidPrettyWriter(const Sheet& sheet)
{
    rapidjson::StringBuffer buffer;
    rapidjson::PrettyWriter<rapidjson::StringBuffer, Wide, rapidjson::UTF8<>> writer(buffer);
    writer.SetIndent(' ', 1);
    Detail::WriteSheet(writer, sheet);
    return buffer.GetSize();
}

#endif // STYLES_PEER_RAPIDJSON

#ifdef STYLES_PEER_NLOHMANN

/// The UTF-8 form of a text without characters beyond the first 65,536.
inline std::string Narrow(std::wstring_view wide)
{
    std::string utf8;
    utf8.reserve(wide.size());
    for (const wchar_t character : wide)
    {
        const auto code = static_cast<unsigned>(character);
        if (code < 0x80)
        {
            utf8 += static_cast<char>(code);
        }
        else if (code < 0x800)
        {
            utf8 += static_cast<char>(0xC0U | code >> 6U);
            utf8 += static_cast<char>(0x80U | (code & 0x3FU));
        }
        else
        {
            utf8 += static_cast<char>(0xE0U | code >> 12U);
            utf8 += static_cast<char>(0x80U | (code >> 6U & 0x3FU));
            utf8 += static_cast<char>(0x80U | (code & 0x3FU));
        }
    }
    return utf8;
}

namespace Detail
{
inline nlohmann::ordered_json MakeDocument(const Style& style)
{
    nlohmann::ordered_json document = nlohmann::ordered_json::object();
    if (style.parent != nullptr)
    {
        document["inherits"] = Narrow(*style.parent->name);
    }
    for (const auto& [name, value] : style.properties)
    {
        if (const auto* text = std::any_cast<std::wstring>(&value))
        {
            document[Narrow(name)] = Narrow(*text);
        }
        else if (const auto* substyle = std::any_cast<Style>(&value))
        {
            document[Narrow(name)] = MakeDocument(*substyle);
        }
    }
    return document;
}
} // namespace Detail

/// By nlohmann::ordered_json, a member a line. \return the number of bytes
inline std::size_t ExportByNlohmannDocument(const Sheet& sheet)
{
    nlohmann::ordered_json document;
    document["version"] = sheet.version;
    nlohmann::ordered_json& styles = document["style"] = nlohmann::ordered_json::object();
    for (const auto& [name, style] : sheet.styles)
    {
        styles[Narrow(name)] = Detail::MakeDocument(style);
    }
    return document.dump(1).size();
}

#endif // STYLES_PEER_NLOHMANN

} // namespace PeerStyles
