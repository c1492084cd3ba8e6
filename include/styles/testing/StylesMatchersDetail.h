/// \file
/// What the matchers of `StylesMatchers.h` are made of.
#pragma once

#include <styles/testing/StylesPrinters.h>

#include <gmock/gmock.h>

#include <concepts>
#include <functional>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <utility>

namespace Styles::Testing
{

/// Where a value is looked for: from a style down through its substyles.
class PropertyPlace
{
public:
    /// A property of the style itself.
    PropertyPlace(const PropertyKey& key) : m_path{key} {}
    /// A property at the end of a path.
    PropertyPlace(const PropertyPath& path) : m_path(path) {}
    /// Points stand between keys.
    PropertyPlace(const VelString& text) : m_path(SplitPath(text)) {}
    /// The same of a text literal.
    PropertyPlace(const wchar_t* text) : PropertyPlace(VelString(text)) {}

    /// The keys, the last being that of the property.
    [[nodiscard]] const PropertyPath& GetPath() const noexcept { return m_path; }
    /// Writes the path in quotes.
    friend std::ostream& operator<<(std::ostream& out, const PropertyPlace& place)
    {
        const char* before = "\"";
        for (const PropertyKey& key : place.m_path)
        {
            out << before << key;
            before = ".";
        }
        return out << (place.m_path.empty() ? "\"\"" : "\"");
    }

private:
    PropertyPath m_path;
};

/// Matches a style, a pointer to one (plain or smart; null never matches) and a `SubStyle`.
class StyleMatcher
{
public:
    /// Tells GoogleTest that this is a matcher.
    using is_gtest_matcher = void;
    /// Tests a style and says what is there, as a clause that begins with "which" or "whose".
    using Test = std::function<bool(const Style&, std::ostream&)>;

    /// `verb` and `deny` are followed by `rest`: "has", "does not have", "the value 1".
    StyleMatcher(std::string verb, std::string deny, std::string rest, Test test)
        : m_verb(std::move(verb)), m_deny(std::move(deny)), m_rest(std::move(rest)), m_test(std::move(test))
    {}

    /// \name What GoogleTest asks; `out` may be null
    /// @{

    /// Whether `style` is as wanted, and, in `out`, what it is like.
    bool MatchAndExplain(const Style& style, std::ostream* out) const
    {
        std::ostringstream explanation;
        const bool matches = m_test(style, explanation);
        if (out != nullptr)
        {
            *out << explanation.str();
        }
        return matches;
    }
    /// The same of a pointer.
    bool MatchAndExplain(const Style* style, std::ostream* out) const
    {
        if (style == nullptr)
        {
            if (out != nullptr)
            {
                *out << "which is null";
            }
            return false;
        }
        return MatchAndExplain(*style, out);
    }
    /// The same of a smart pointer.
    template <class Pointer>
    requires requires(const Pointer& pointer)
    {
        {
            pointer.get()
            } -> std::convertible_to<const Style*>;
    }
    bool MatchAndExplain(const Pointer& pointer, std::ostream* out) const
    {
        return MatchAndExplain(pointer.get(), out);
    }

    /// Writes what is wanted.
    void DescribeTo(std::ostream* out) const { *out << m_verb << ' ' << m_rest; }
    /// Writes what is wanted of a style that is not to match.
    void DescribeNegationTo(std::ostream* out) const { *out << m_deny << ' ' << m_rest; }
    /// @}

    /// The same as a predicate.
    [[nodiscard]] ::testing::AssertionResult Apply(const Style& style) const
    {
        std::ostringstream explanation;
        const bool matches = m_test(style, explanation);
        return (matches ? ::testing::AssertionSuccess() : ::testing::AssertionFailure())
               << style << ", " << explanation.str() << "; asked was whether it " << m_verb << ' ' << m_rest;
    }

private:
    std::string m_verb;
    std::string m_deny;
    std::string m_rest;
    Test m_test;
};

namespace MatcherDetail
{

inline Any AsValue(const Any& value)
{
    return value;
}
/// Values of substyle properties are pointers to styles that may be changed.
inline Any AsValue(const Style& style)
{
    return Any(const_cast<Style*>(&style));
}
inline Any AsValue(const Style* style)
{
    return Any(const_cast<Style*>(style));
}
inline Any AsValue(Style* style)
{
    return Any(style);
}
template <class T>
Any AsValue(const T& value)
{
    return Any(value);
}

/// A value and its type; a style with its values.
inline void Write(const Any& value, std::ostream& out)
{
    Style* const* style = value.GetIf<Style*>();
    if (style != nullptr && *style != nullptr)
    {
        out << **style;
    }
    else
    {
        PrintTo(value, &out);
    }
}

inline BaseStyleProperty* FindDefinition(const StyleCategory* category, const PropertyKey& key)
{
    if (category == nullptr)
    {
        return nullptr;
    }
    const auto entry = category->GetProperties().find(key);
    return entry != category->GetProperties().end() ? entry->second : nullptr;
}

/// What a look-up found: a value, or why there is none.
struct Found
{
    const Any* value = nullptr;
    const BaseStyleProperty* definition = nullptr;
    std::string text; ///< Where the value comes from, or the reason.
};

/// Where `value`, the effective one, comes from.
inline std::string OriginOf(const Style& style, const PropertyKey& key, const Any& value)
{
    if (style.DoesOverrideProperty(key))
    {
        return "its own";
    }
    std::ostringstream text;
    std::set<const Style*> seen{&style};
    int distance = 1;
    for (const Style* above = style.GetParent(); above != nullptr && seen.insert(above).second;
         above = above->GetParent(), ++distance)
    {
        if (above->DoesOverrideProperty(key))
        {
            text << "inherited from its ";
            (distance == 1 ? text << "parent" : text << "ancestor " << distance << " above") << ": " << *above;
            return text.str();
        }
    }
    for (const Style* one : seen)
    {
        const BaseStyleProperty* definition = FindDefinition(one->GetCategory().get(), key);
        if (definition != nullptr && &definition->GetDefaultValue() == &value)
        {
            return "the default";
        }
    }
    return "inherited through its owner";
}

/// The default at the rest of a path, below a substyle property that holds none.
inline Found FindDefault(const StyleCategory* category, const PropertyPath& path, std::size_t index)
{
    for (;; ++index)
    {
        BaseStyleProperty* definition = FindDefinition(category, path[index]);
        if (definition == nullptr)
        {
            return {};
        }
        if (index + 1 == path.size())
        {
            return {&definition->GetDefaultValue(), definition, "the default, for want of a substyle"};
        }
        const StyleManager& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
        const PropertyKey element = definition->GetElementCategoryName();
        if (!manager.CategoryExists(element))
        {
            return {};
        }
        category = manager.GetCategory(element).get();
    }
}

/// The effective value at the end of a path through effective substyles.
inline Found FindEffective(const Style& style, const PropertyPath& path)
{
    const Style* reached = &style;
    for (std::size_t index = 0; index < path.size(); ++index)
    {
        const std::shared_ptr<const StyleCategory> category = reached->GetCategory();
        const BaseStyleProperty* definition = FindDefinition(category.get(), path[index]);
        std::ostringstream problem;
        if (definition == nullptr && !reached->DoesOverrideProperty(path[index]))
        {
            problem << *reached << " knows no \"" << path[index] << '"';
            return {nullptr, nullptr, problem.str()};
        }
        const Any& value = reached->GetProperty(path[index]);
        if (index + 1 == path.size())
        {
            return {&value, definition, OriginOf(*reached, path[index], value)};
        }
        Style* const* substyle = value.GetIf<Style*>();
        if (substyle == nullptr)
        {
            problem << '"' << path[index] << "\" is no substyle but ";
            Write(value, problem);
            return {nullptr, nullptr, problem.str()};
        }
        if (*substyle == nullptr)
        {
            Found found = FindDefault(category.get(), path, index);
            if (found.value == nullptr)
            {
                problem << '"' << path[index] << "\" holds no substyle, and its category knows no \"" << path.back()
                        << '"';
                found.text = problem.str();
            }
            return found;
        }
        reached = *substyle;
    }
    return {nullptr, nullptr, "the path is empty"};
}

/// The own value at the end of a path through own substyles; it stays in `kept`.
inline Found FindOwn(const Style& style, const PropertyPath& path, Any& kept)
{
    const Style* reached = &style;
    std::ostringstream problem;
    for (std::size_t index = 0; index < path.size(); ++index)
    {
        if (!reached->GetOverrideProperty(path[index], kept))
        {
            problem << *reached << " has no own \"" << path[index] << '"';
            return {nullptr, nullptr, problem.str()};
        }
        if (index + 1 == path.size())
        {
            return {&kept, FindDefinition(reached->GetCategory().get(), path[index]), "its own"};
        }
        Style* const* substyle = kept.GetIf<Style*>();
        if (substyle == nullptr || *substyle == nullptr)
        {
            problem << '"' << path[index] << "\" is no substyle but ";
            Write(kept, problem);
            return {nullptr, nullptr, problem.str()};
        }
        reached = *substyle;
    }
    return {nullptr, nullptr, "the path is empty"};
}

/// Says what was found; false when nothing was.
inline bool Explain(const Found& found, const PropertyPlace& place, std::ostream& out)
{
    if (found.value == nullptr)
    {
        out << "where " << found.text;
        return false;
    }
    out << "whose " << place << " is ";
    Write(*found.value, out);
    out << ", " << found.text;
    return true;
}

inline bool IsEqual(const Found& found, const Any& expected)
{
    if (found.value->GetType() != expected.GetType())
    {
        return false;
    }
    return found.definition != nullptr ? found.definition->IsEqual(*found.value, expected) : *found.value == expected;
}

inline std::string Described(const char* what, const Any& value, const PropertyPlace& place)
{
    std::ostringstream text;
    text << what << ' ';
    Write(value, text);
    text << " for " << place;
    return text.str();
}

} // namespace MatcherDetail

} // namespace Styles::Testing
