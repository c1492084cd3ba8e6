#include "JsonReader.h"

#include "JsonLibrary.h"
#include "JsonPlace.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace VelUtils::Json
{

namespace
{

/// Hands the events of the library on as ours.
class Translator
{
public:
    static constexpr std::size_t max_object_size = std::numeric_limits<std::size_t>::max();
    static constexpr std::size_t max_array_size = max_object_size;
    static constexpr std::size_t max_key_size = max_object_size;
    static constexpr std::size_t max_string_size = max_object_size;

    explicit Translator(JsonEvents& events) : m_events(events) {}

    bool IsNumberTooLarge() const noexcept { return m_numberTooLarge; }
    std::size_t GetSizeOfNumber() const noexcept { return m_sizeOfNumber; }

    using Text = Library::string_view;
    using Error = Library::error_code;

    bool on_document_begin(Error&) { return true; }
    bool on_document_end(Error&) { return true; }
    bool on_object_begin(Error& stop) { return GoOn(m_events.StartObject(), stop); }
    bool on_object_end(std::size_t, Error& stop) { return GoOn(m_events.EndObject(), stop); }
    bool on_array_begin(Error& stop) { return GoOn(m_events.StartArray(), stop); }
    bool on_array_end(std::size_t, Error& stop) { return GoOn(m_events.EndArray(), stop); }
    bool on_key_part(Text part, std::size_t, Error&) { return Collect(part); }
    bool on_key(Text rest, std::size_t, Error& stop) { return GoOn(m_events.Name(Collected(rest)), stop); }
    bool on_string_part(Text part, std::size_t, Error&) { return Collect(part); }
    bool on_string(Text rest, std::size_t, Error& stop) { return GoOn(m_events.String(Collected(rest)), stop); }
    bool on_number_part(Text, Error&) { return true; } // only of texts that come in pieces
    bool on_int64(std::int64_t value, Text digits, Error& stop)
    {
        const bool isMinusZero = value == 0 && digits.front() == '-';
        return GoOn(m_events.Number(isMinusZero ? -0.0 : static_cast<double>(value)), stop);
    }
    bool on_uint64(std::uint64_t value, Text, Error& stop)
    {
        return GoOn(m_events.Number(static_cast<double>(value)), stop);
    }
    bool on_double(double approximate, Text digits, Error& stop);
    bool on_bool(bool value, Error& stop) { return GoOn(m_events.Truth(value), stop); }
    bool on_null(Error& stop) { return GoOn(m_events.Null(), stop); }
    bool on_comment_part(Text, Error&) { return false; } // comments are not read
    bool on_comment(Text, Error&) { return false; }

private:
    static bool GoOn(bool goOn, Error& stop)
    {
        if (!goOn)
        {
            stop = MakeStopCode();
        }
        return goOn;
    }
    /// Strings with escapes come in parts.
    bool Collect(Text part)
    {
        m_parts.append(part.data(), part.size());
        m_hasParts = true;
        return true;
    }
    std::string_view Collected(Text rest);

    JsonEvents& m_events;
    std::string m_parts;
    std::string m_whole;
    bool m_hasParts = false;
    bool m_numberTooLarge = false;
    std::size_t m_sizeOfNumber = 0;
};

std::string_view Translator::Collected(Text rest)
{
    if (!m_hasParts)
    {
        return {rest.data(), rest.size()};
    }
    Collect(rest);
    m_hasParts = false;
    m_whole.clear();
    m_whole.swap(m_parts);
    return m_whole;
}

bool Translator::on_double(double approximate, Text digits, Error& stop)
{
    // The library may miss the nearest double by one.
    double exact = 0;
    if (std::from_chars(digits.data(), digits.data() + digits.size(), exact).ec != std::errc())
    {
        if (std::fabs(approximate) > 1)
        {
            m_numberTooLarge = true;
            m_sizeOfNumber = digits.size();
            return GoOn(false, stop);
        }
        exact = digits.front() == '-' ? -0.0 : 0.0; // too small
    }
    return GoOn(m_events.Number(exact), stop);
}

bool IsDigit(char c) noexcept
{
    return c >= '0' && c <= '9';
}

/// The same text, in which exponents of many digits are 999,999,999: the library refuses larger ones, although a number
/// with one may be a small one. No text is so long that it made a difference.
std::string LimitExponents(std::string text)
{
    constexpr std::size_t kMostDigits = 9;
    bool isInString = false;
    for (std::size_t at = 0; at < text.size(); ++at)
    {
        if (isInString && text[at] == '\\')
        {
            ++at;
        }
        else if (text[at] == '"')
        {
            isInString = !isInString;
        }
        else if (!isInString && (text[at] == 'e' || text[at] == 'E'))
        {
            std::size_t first = at + 1;
            first += first < text.size() && (text[first] == '+' || text[first] == '-') ? 1 : 0;
            std::size_t end = first;
            while (end < text.size() && IsDigit(text[end]))
            {
                ++end;
            }
            const std::size_t significant = std::min(text.find_first_not_of('0', first), end);
            if (end - significant > kMostDigits)
            {
                text.replace(first, end - first, end - first, '0');
                text.replace(end - kMostDigits, kMostDigits, kMostDigits, '9');
            }
            at = std::max(at, end - 1);
        }
    }
    return text;
}

Library::parse_options Options()
{
    Library::parse_options options;
    options.max_depth = std::numeric_limits<std::size_t>::max(); // the events end what is too deep
    return options;
}

} // namespace

bool ReadJson(std::string_view utf8, JsonEvents& events, JsonReadError& error)
{
    error = {};
    Library::basic_parser<Translator> parser(Options(), events);
    Library::error_code problem;
    error.offset = parser.write_some(false, utf8.data(), utf8.size(), problem);
    if (problem == Library::error::exponent_overflow)
    {
        const std::string limited = LimitExponents(std::string(utf8));
        if (limited == utf8) // a number of a thousand million digits
        {
            error.reason = "expected a number in the range of a double";
            return false;
        }
        events.Restart();
        return ReadJson(limited, events, error);
    }
    if (!problem)
    {
        // What stands behind the document is left to the caller.
        if (error.offset == utf8.size())
        {
            return true;
        }
        problem = Library::error::extra_data;
    }
    if (parser.handler().IsNumberTooLarge())
    {
        error.offset -= std::min(error.offset, parser.handler().GetSizeOfNumber());
        error.reason = "expected a number in the range of a double";
    }
    else if (problem != MakeStopCode())
    {
        error.reason = ExpectedAt(utf8, error.offset);
    }
    return false;
}

} // namespace VelUtils::Json
