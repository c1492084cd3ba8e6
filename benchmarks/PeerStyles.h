/// What a program keeps its styles in that does without this library: plain structs with maps of texts, and the roads
/// of a JSON document into them and back.
#pragma once

#include <any>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#ifdef STYLES_PEER_RAPIDJSON
#    include <rapidjson/document.h>
#    include <rapidjson/reader.h>
#endif
#ifdef STYLES_PEER_NLOHMANN
#    include <nlohmann/json.hpp>
#endif

namespace PeerStyles
{

/// A style or a substyle. Its values are texts (`std::wstring`) and substyles (`Style`).
struct Style
{
    std::map<std::wstring, std::any> properties;
    const Style* parent = nullptr;
    const std::wstring* name = nullptr; ///< as the sheet spells it; null for a substyle
};

struct Sheet
{
    double version = 0;
    std::map<std::wstring, Style> styles;
};

/// Fills a sheet from the events of a reader. Other documents than those of SheetDocument.h are not provided for.
class SheetBuilder
{
public:
    explicit SheetBuilder(Sheet& sheet) : m_sheet(sheet) {}

    void Version(double version) { m_sheet.version = version; }
    void Name(std::wstring_view name) { m_name = name; }

    void Text(std::wstring_view text)
    {
        if (m_depth == kInStyle && m_name == L"inherits")
        {
            m_links.emplace_back(m_holder, text);
            return;
        }
        m_holder->properties[m_name].emplace<std::wstring>(text);
    }

    void Begin()
    {
        if (++m_depth == kInStyle)
        {
            const auto added = m_sheet.styles.try_emplace(m_name).first;
            m_style = m_holder = &added->second;
            m_style->name = &added->first;
        }
        else if (m_depth > kInStyle)
        {
            m_holder = &m_style->properties[m_name].emplace<Style>();
        }
    }

    void End()
    {
        if (--m_depth == kInStyle)
        {
            m_holder = m_style;
        }
    }

    /// Links the styles to their parents, which may stand behind them.
    void Finish()
    {
        for (const auto& [style, name] : m_links)
        {
            const auto found = m_sheet.styles.find(name);
            style->parent = found != m_sheet.styles.end() ? &found->second : nullptr;
        }
    }

private:
    static constexpr int kInStyle = 3;

    Sheet& m_sheet;
    int m_depth = 0;
    std::wstring m_name;
    Style* m_style = nullptr;
    Style* m_holder = nullptr;
    std::vector<std::pair<Style*, std::wstring>> m_links;
};

/// Appends the wide form of a UTF-8 text, which is known to be well-formed, and has no character beyond the first
/// 65,536.
inline void Widen(std::string_view utf8, std::wstring& wide)
{
    wide.clear();
    for (std::size_t at = 0; at < utf8.size();)
    {
        const auto byte = [&] { return static_cast<unsigned char>(utf8[at++]); };
        const unsigned lead = byte();
        if (lead < 0x80)
        {
            wide += static_cast<wchar_t>(lead);
        }
        else if (lead < 0xE0)
        {
            wide += static_cast<wchar_t>((lead & 0x1FU) << 6U | (byte() & 0x3FU));
        }
        else
        {
            const unsigned middle = byte() & 0x3FU;
            wide += static_cast<wchar_t>((lead & 0x0FU) << 12U | middle << 6U | (byte() & 0x3FU));
        }
    }
}

#ifdef STYLES_PEER_RAPIDJSON

/// The encoding of wide texts.
using Wide = std::conditional_t<sizeof(wchar_t) == 2, rapidjson::UTF16<wchar_t>, rapidjson::UTF32<wchar_t>>;

class RapidHandler : public rapidjson::BaseReaderHandler<Wide, RapidHandler>
{
public:
    explicit RapidHandler(Sheet& sheet) : m_builder(sheet) {}

    bool Double(double value)
    {
        m_builder.Version(value);
        return true;
    }
    bool Key(const wchar_t* text, rapidjson::SizeType length, bool)
    {
        m_builder.Name({text, length});
        return true;
    }
    bool String(const wchar_t* text, rapidjson::SizeType length, bool)
    {
        m_builder.Text({text, length});
        return true;
    }
    bool StartObject()
    {
        m_builder.Begin();
        return true;
    }
    bool EndObject(rapidjson::SizeType)
    {
        m_builder.End();
        return true;
    }
    void Finish() { m_builder.Finish(); }

private:
    SheetBuilder m_builder;
};

/// By the events of RapidJSON's reader. `Source` is the encoding of `text`, which ends in a zero.
template <class Source>
bool ImportByRapidEvents(const typename Source::Ch* text, Sheet& sheet)
{
    rapidjson::GenericReader<Source, Wide> reader;
    rapidjson::GenericStringStream<Source> stream(text);
    RapidHandler handler(sheet);
    const bool read = !reader.Parse(stream, handler).IsError();
    handler.Finish();
    return read;
}

namespace Detail
{
inline void Visit(const rapidjson::Value& object, SheetBuilder& builder, std::wstring& scratch)
{
    builder.Begin();
    for (const auto& member : object.GetObject())
    {
        Widen({member.name.GetString(), member.name.GetStringLength()}, scratch);
        builder.Name(scratch);
        if (member.value.IsObject())
        {
            Visit(member.value, builder, scratch);
        }
        else if (member.value.IsString())
        {
            Widen({member.value.GetString(), member.value.GetStringLength()}, scratch);
            builder.Text(scratch);
        }
        else
        {
            builder.Version(member.value.GetDouble());
        }
    }
    builder.End();
}
} // namespace Detail

/// By RapidJSON's document.
inline bool ImportByRapidDocument(const char* text, Sheet& sheet)
{
    rapidjson::Document document;
    if (document.Parse(text).HasParseError())
    {
        return false;
    }
    SheetBuilder builder(sheet);
    std::wstring scratch;
    Detail::Visit(document, builder, scratch);
    builder.Finish();
    return true;
}

#endif // STYLES_PEER_RAPIDJSON

#ifdef STYLES_PEER_NLOHMANN

class NlohmannHandler : public nlohmann::json_sax<nlohmann::json>
{
public:
    explicit NlohmannHandler(Sheet& sheet) : m_builder(sheet) {}

    bool null() override { return false; }
    bool boolean(bool) override { return false; }
    bool number_integer(number_integer_t) override { return false; }
    bool number_unsigned(number_unsigned_t) override { return false; }
    bool number_float(number_float_t value, const string_t&) override
    {
        m_builder.Version(value);
        return true;
    }
    bool string(string_t& text) override
    {
        Widen(text, m_scratch);
        m_builder.Text(m_scratch);
        return true;
    }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override
    {
        m_builder.Begin();
        return true;
    }
    bool key(string_t& text) override
    {
        Widen(text, m_scratch);
        m_builder.Name(m_scratch);
        return true;
    }
    bool end_object() override
    {
        m_builder.End();
        return true;
    }
    bool start_array(std::size_t) override { return false; }
    bool end_array() override { return false; }
    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) override { return false; }
    void Finish() { m_builder.Finish(); }

private:
    SheetBuilder m_builder;
    std::wstring m_scratch;
};

/// By the events of nlohmann's reader.
inline bool ImportByNlohmannEvents(const std::string& text, Sheet& sheet)
{
    NlohmannHandler handler(sheet);
    const bool read = nlohmann::json::sax_parse(text, &handler);
    handler.Finish();
    return read;
}

namespace Detail
{
template <class Document>
void Visit(const Document& object, SheetBuilder& builder, std::wstring& scratch)
{
    builder.Begin();
    for (const auto& [name, value] : object.items())
    {
        Widen(name, scratch);
        builder.Name(scratch);
        if (value.is_object())
        {
            Visit(value, builder, scratch);
        }
        else if (value.is_string())
        {
            Widen(value.template get_ref<const std::string&>(), scratch);
            builder.Text(scratch);
        }
        else
        {
            builder.Version(value.template get<double>());
        }
    }
    builder.End();
}
} // namespace Detail

/// By one of nlohmann's documents, `nlohmann::json` or `nlohmann::ordered_json`.
template <class Document>
bool ImportByNlohmannDocument(const std::string& text, Sheet& sheet)
{
    const Document document = Document::parse(text, nullptr, /*allow_exceptions*/ false);
    if (!document.is_object())
    {
        return false;
    }
    SheetBuilder builder(sheet);
    std::wstring scratch;
    Detail::Visit(document, builder, scratch);
    builder.Finish();
    return true;
}

#endif // STYLES_PEER_NLOHMANN

} // namespace PeerStyles
