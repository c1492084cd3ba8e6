#include "JsonReader.h"

#include "NumericLocale.h"
#include "VelPlatform/Unicode.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <iterator>

namespace VelUtils::Json
{

namespace
{

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// Walks through the text for the lexer, and leaves a note of how far it came: events carry no position.
class Cursor
{
public:
    using iterator_category = std::input_iterator_tag;
    using value_type = char;
    using difference_type = std::ptrdiff_t;
    using pointer = const char*;
    using reference = char;

    Cursor(const char* at, const char** reached) : m_at(at), m_reached(reached) {}

    // The lexer takes a zero for the end of the text; for it, another character that stands nowhere takes its place.
    char operator*() const { return *m_at == '\0' ? '\x01' : *m_at; }
    Cursor& operator++()
    {
        *m_reached = ++m_at;
        return *this;
    }
    Cursor operator++(int)
    {
        Cursor before = *this;
        ++*this;
        return before;
    }
    bool operator==(const Cursor& other) const { return m_at == other.m_at; }
    bool operator!=(const Cursor& other) const { return m_at != other.m_at; }

private:
    const char* m_at;
    const char** m_reached;
};

bool Contains(std::string_view text, std::string_view part)
{
    return text.find(part) != std::string_view::npos;
}

/// The character at a place, for people.
std::string NameOfCharacter(std::string_view text, std::size_t offset)
{
    if (offset >= text.size())
    {
        return "the end of the text";
    }
    const VelPlatform::Unicode::Decoded found =
        VelPlatform::Unicode::Decode(text.data() + offset, text.data() + text.size());
    if (found.value > ' ' && found.value < 0x7F)
    {
        return {'\'', static_cast<char>(found.value), '\''};
    }
    char name[16];
    std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(found.value));
    return name;
}

/// What is wrong inside a string or a number, from the words of the lexer; empty for other errors.
std::string ExpectedInToken(std::string_view complaint)
{
    struct Wording
    {
        std::string_view complaint;
        const char* expected;
    };
    static constexpr Wording kWordings[] = {
        {"closing quote", "'\"' at the end of the string"},
        {"control character", "a control character of a string to be written as an escape"},
        {"after backslash", "one of \"\\/bfnrtu after the backslash"},
        {"hex digits", "four hexadecimal digits after \\u"},
        {"must be followed by", "the second half of a surrogate pair behind the first"},
        {"must follow", "the first half of a surrogate pair before the second"},
        {"invalid number", "a digit"},
    };
    const auto* const known = std::find_if(std::begin(kWordings), std::end(kWordings), [&](const Wording& wording) {
        return Contains(complaint, wording.complaint);
    });
    return known == std::end(kWordings) ? std::string() : known->expected;
}

/// Hands the events of the library on as ours, and its errors.
class Translator
{
public:
    using Library = nlohmann::json;

    Translator(std::string_view text, JsonEvents& events, JsonReadError& error)
        : m_text(text), m_events(events), m_error(error)
    {}

    bool null() { return Value(m_events.Null()); }
    bool boolean(bool value) { return Value(m_events.Truth(value)); }
    bool number_integer(Library::number_integer_t value)
    {
        // Only what begins with a minus comes here, so this zero had one.
        return Value(m_events.Number(value == 0 ? -0.0 : static_cast<double>(value)));
    }
    bool number_unsigned(Library::number_unsigned_t value)
    {
        return Value(m_events.Number(static_cast<double>(value)));
    }
    bool number_float(Library::number_float_t value, const std::string& token);
    bool string(std::string& text) { return Value(m_events.String(text)); }
    bool binary(Library::binary_t&) { return false; }
    bool start_object(std::size_t) { return Begin(m_events.StartObject()); }
    bool key(std::string& text) { return Value(m_events.Name(text)); }
    bool end_object() { return Value(m_events.EndObject()); }
    bool start_array(std::size_t) { return Begin(m_events.StartArray()); }
    bool end_array() { return Value(m_events.EndArray()); }
    bool parse_error(std::size_t position, const std::string& token, const Library::exception& problem);

private:
    bool Begin(bool goOn)
    {
        m_justBegun = true;
        return goOn;
    }
    bool Value(bool goOn)
    {
        m_justBegun = false;
        return goOn;
    }
    std::string ExpectedHere(std::string_view context) const;

    std::string_view m_text;
    JsonEvents& m_events;
    JsonReadError& m_error;
    bool m_justBegun = false; ///< a container, and nothing in it yet
};

bool Translator::number_float(Library::number_float_t value, const std::string& token)
{
    std::string digits = token;
    // The library puts the decimal point of the locale in place of the point that it reads.
    const auto isForeign = [](char c) { return !Contains("0123456789+-eE", {&c, 1}); };
    std::replace_if(digits.begin(), digits.end(), isForeign, '.');
    double exact = 0;
    const std::from_chars_result read = std::from_chars(digits.data(), digits.data() + digits.size(), exact);
    if (read.ec != std::errc())
    {
        // Numbers too large were refused before they came here: this one is too small.
        exact = std::copysign(0.0, value);
    }
    return Value(m_events.Number(exact));
}

std::string Translator::ExpectedHere(std::string_view context) const
{
    if (context == "object key")
    {
        return m_justBegun ? "a member name in quotes or '}'" : "a member name in quotes";
    }
    if (context == "object separator")
    {
        return "':'";
    }
    if (context == "object")
    {
        return "',' or '}'";
    }
    if (context == "array")
    {
        return "',' or ']'";
    }
    return m_justBegun ? "a value or ']'" : "a value";
}

bool Translator::parse_error(std::size_t position, const std::string& token, const Library::exception& problem)
{
    constexpr int kNumberOutOfRange = 406;
    constexpr std::string_view kContext = "while parsing ";
    // The position is that behind the character read last, the end of the text being one.
    std::size_t back = 1;
    if (problem.id == kNumberOutOfRange)
    {
        m_error.offset = position - std::min(position, token.size());
        m_error.reason = "expected a number in the range of a double";
        return false;
    }
    std::string_view message = problem.what();
    message.remove_prefix(std::min(message.find(kContext), message.size() - kContext.size()) + kContext.size());
    const std::string_view context = message.substr(0, message.find(" - "));
    const std::string_view complaint = message.substr(0, message.find("; last read"));

    std::string expected = ExpectedInToken(complaint);
    if (expected.empty())
    {
        expected = message.ends_with("expected end of input") ? "the end of the text" : ExpectedHere(context);
        if (Contains(complaint, "unexpected string") || Contains(complaint, "unexpected number"))
        {
            back = token.size();
        }
        else if (Contains(complaint, "unexpected true") || Contains(complaint, "unexpected null"))
        {
            back = 4;
        }
        else if (Contains(complaint, "unexpected false"))
        {
            back = 5;
        }
    }
    m_error.offset = std::min(position - std::min(position, back), m_text.size());
    m_error.reason = "expected " + expected + ", found " + NameOfCharacter(m_text, m_error.offset);
    return false;
}

} // namespace

bool ReadJson(std::string_view utf8, JsonEvents& events, JsonReadError& error)
{
    error = {};
    if (utf8.starts_with(kByteOrderMark)) // the library would skip it
    {
        error.reason = "expected a value, found U+FEFF";
        return false;
    }
    const NumericLocale pointIsPoint;
    const char* reached = utf8.data();
    Translator translator(utf8, events, error);
    const bool read = nlohmann::json::sax_parse(Cursor(utf8.data(), &reached),
                                                Cursor(utf8.data() + utf8.size(), &reached), &translator);
    if (!read && error.reason.empty())
    {
        error.offset = static_cast<std::size_t>(reached - utf8.data()) - 1;
    }
    return read;
}

} // namespace VelUtils::Json
