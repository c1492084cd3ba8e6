// What reading a sheet costs: from the UTF-8 text of a document to linked styles, and their destruction. All contenders
// check that the document was read. The rows "parse" stop at what the reader of JSON itself gives.

#include "PeerStyles.h"
#include "Rows.h"
#include "SheetDocument.h"

#include <VelUtils/Json.h>
#include <VelUtils/Stream.h>
#include <styles/Styles.h>

#ifdef STYLES_PEER_SIMDJSON
#    include <simdjson.h>
#endif

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <string>
#include <unordered_map>

namespace
{

/// A contender that fails measures nothing.
void Require(bool holds, const char* what)
{
    if (!holds)
    {
        std::fprintf(stderr, "The document was not read: %s.\n", what);
        std::abort();
    }
}

/// One document of each size for all rows of a process: they are large.
const std::string& Document(std::size_t styles)
{
    static std::map<std::size_t, std::string> documents;
    std::string& document = documents[styles];
    if (document.empty())
    {
        document = SheetDocument::Make(styles);
    }
    return document;
}

Rows::Operation PrepareOurs(std::size_t styles)
{
    SheetDocument::RegisterSchema();
    return [styles, &document = Document(styles)] {
        VelUtils::MemoryStream stream(document);
        Styles::StyleSheet sheet;
        Require(sheet.Import(stream, /*replace*/ true) && sheet.GetStyles().size() == styles, "ours");
    };
}

Rows::Operation PrepareOurParse(std::size_t styles)
{
    return [text = VelPlatform::ToWide(Document(styles))] {
        VelUtils::Json::Variant value;
        Styles::VelString errorText;
        Require(VelUtils::Json::Parse(text, value, errorText), "ours");
    };
}

using PeerImport = std::function<bool(const std::string&, PeerStyles::Sheet&)>;

/// Adds a row of a peer that reads UTF-8.
[[maybe_unused]] void AddPeer(std::size_t styles, const std::string& contender, const PeerImport& import)
{
    Rows::Add("import/" + std::to_string(styles), contender, styles, [=] {
        return Rows::Operation([=, &document = Document(styles)] {
            PeerStyles::Sheet sheet;
            Require(import(document, sheet) && sheet.styles.size() == styles, contender.c_str());
        });
    });
}

#ifdef STYLES_PEER_RAPIDJSON

void AddRapidJson(std::size_t styles)
{
    using namespace PeerStyles;
    AddPeer(styles, "RapidJSON events", [](const std::string& text, Sheet& sheet) {
        return ImportByRapidEvents<rapidjson::UTF8<>>(text.c_str(), sheet);
    });
    AddPeer(styles, "RapidJSON document",
            [](const std::string& text, Sheet& sheet) { return ImportByRapidDocument(text.c_str(), sheet); });
    Rows::Add("import/" + std::to_string(styles), "RapidJSON events, wide text", styles, [styles] {
        std::wstring wide;
        Widen(Document(styles), wide);
        return Rows::Operation([styles, wide = std::move(wide)] {
            Sheet sheet;
            Require(ImportByRapidEvents<Wide>(wide.c_str(), sheet) && sheet.styles.size() == styles, "RapidJSON");
        });
    });
    Rows::Add("parse/" + std::to_string(styles), "RapidJSON events", styles, [styles] {
        return Rows::Operation([&document = Document(styles)] {
            rapidjson::Reader reader;
            rapidjson::StringStream stream(document.c_str());
            rapidjson::BaseReaderHandler<> handler;
            Require(!reader.Parse(stream, handler).IsError(), "RapidJSON");
        });
    });
}

#endif

#ifdef STYLES_PEER_NLOHMANN

class NothingHandler : public nlohmann::json_sax<nlohmann::json>
{
public:
    bool null() override { return true; }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t) override { return true; }
    bool number_unsigned(number_unsigned_t) override { return true; }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool start_object(std::size_t) override { return true; }
    bool key(string_t&) override { return true; }
    bool end_object() override { return true; }
    bool start_array(std::size_t) override { return true; }
    bool end_array() override { return true; }
    bool parse_error(std::size_t, const std::string&, const nlohmann::json::exception&) override { return false; }
};

void AddNlohmann(std::size_t styles)
{
    using namespace PeerStyles;
    AddPeer(styles, "nlohmann::json events", &ImportByNlohmannEvents);
    if (styles < 100'000) // it looks for each name among all before it
    {
        AddPeer(styles, "nlohmann::ordered_json", &ImportByNlohmannDocument<nlohmann::ordered_json>);
    }
    Rows::Add("parse/" + std::to_string(styles), "nlohmann::json events", styles, [styles] {
        return Rows::Operation([&document = Document(styles)] {
            NothingHandler handler;
            Require(nlohmann::json::sax_parse(document, &handler), "nlohmann");
        });
    });
}

#endif

#ifdef STYLES_PEER_SIMDJSON

/// The least that holds the same: maps by address, filled from the fastest reader.
struct LeanStyle
{
    std::map<const void*, Styles::Any> texts;
    std::map<const void*, LeanStyle> substyles;
    LeanStyle* parent = nullptr;
};

class LeanReader
{
public:
    /// The styles by name.
    std::unordered_map<std::string, LeanStyle> Read(simdjson::ondemand::object document)
    {
        std::unordered_map<std::string, LeanStyle> styles;
        for (auto entry : document.find_field("style").get_object())
        {
            LeanStyle& style = styles[std::string(std::string_view(entry.unescaped_key()))];
            Fill(style, entry.value().get_object());
        }
        for (auto& [style, parent] : m_links)
        {
            const auto found = styles.find(parent);
            style->parent = found != styles.end() ? &found->second : nullptr;
        }
        return styles;
    }

private:
    void Fill(LeanStyle& style, simdjson::ondemand::object members)
    {
        for (auto member : members)
        {
            const std::string_view name = member.unescaped_key();
            simdjson::ondemand::value value = member.value();
            if (name == "inherits")
            {
                m_links.emplace_back(&style, std::string_view(value.get_string()));
            }
            else if (value.type() == simdjson::ondemand::json_type::object)
            {
                Fill(style.substyles[Key(name)], value.get_object());
            }
            else
            {
                style.texts.emplace(Key(name), Styles::Any(VelPlatform::ToWide(std::string_view(value.get_string()))));
            }
        }
    }

    const void* Key(std::string_view name)
    {
        m_name = name;
        return &*m_keys.emplace(m_name, 0).first;
    }

    std::string m_name;
    std::unordered_map<std::string, int> m_keys;
    std::vector<std::pair<LeanStyle*, std::string>> m_links;
};

void AddSimdjson(std::size_t styles)
{
    Rows::Add("import/" + std::to_string(styles), "limit: simdjson into maps by address", styles, [styles] {
        auto parser = std::make_shared<simdjson::ondemand::parser>();
        return Rows::Operation([=, text = std::make_shared<simdjson::padded_string>(Document(styles))] {
            simdjson::ondemand::document document = parser->iterate(*text);
            Require(LeanReader().Read(document.get_object()).size() == styles, "simdjson");
        });
    });
    Rows::Add("parse/" + std::to_string(styles), "simdjson document", styles, [styles] {
        auto parser = std::make_shared<simdjson::dom::parser>();
        return Rows::Operation([=, text = std::make_shared<simdjson::padded_string>(Document(styles))] {
            Require(parser->parse(*text).error() == simdjson::SUCCESS, "simdjson");
        });
    });
}

#endif

[[maybe_unused]] const bool added = [] {
    for (const std::size_t styles : {std::size_t{100}, std::size_t{1000}, std::size_t{10'000}, std::size_t{100'000}})
    {
        Rows::Add("import/" + std::to_string(styles), Rows::Ours, styles, [styles] { return PrepareOurs(styles); });
        Rows::Add("parse/" + std::to_string(styles), Rows::Ours, styles, [styles] { return PrepareOurParse(styles); });
#ifdef STYLES_PEER_RAPIDJSON
        AddRapidJson(styles);
#endif
#ifdef STYLES_PEER_NLOHMANN
        AddNlohmann(styles);
#endif
#ifdef STYLES_PEER_SIMDJSON
        AddSimdjson(styles);
#endif
    }
    return true;
}();

} // namespace
