/// \file
/// Matchers and printers for tests of hosts that use GoogleTest: what a style has, and a failure that says where it
/// has it from.
///
/// ```cpp
/// EXPECT_THAT(*warning, HasValue(width, 0.5));           // own, inherited or default
/// EXPECT_THAT(warning, HasOwnValue(L"fill.color", L"red")); // a style or a pointer to one; a key or a path
/// EXPECT_THAT(warning, AllOf(Inherits(outline), IsCategory(L"shape")));
/// EXPECT_TRUE(HasValue(*warning, width, 0.5));
/// ```
///
/// A place is a key, a path, or a text with points between the keys of a path. A value is an `Any` or what one is made
/// of, so that 1 and 1.0 differ; a style stands for an equal substyle. Values are compared as their definition does.
/// What a matcher is given must outlive it where it is a pointer or a style.
///
/// Nothing of this header is in the library: it needs GoogleMock, 1.11 or newer, of the host. It brings the printers of
/// `StylesPrinters.h`, so that all sources of a test program include it, or none.
#pragma once

#include <styles/testing/StylesMatchersDetail.h>

#include <set>
#include <sstream>

namespace Styles::Testing
{

/// The effective value at `place`, through effective substyles, is `value`.
template <class Value>
[[nodiscard]] StyleMatcher HasValue(const PropertyPlace& place, const Value& value)
{
    const Any expected = MatcherDetail::AsValue(value);
    return {"has", "does not have", MatcherDetail::Described("the value", expected, place),
            [place, expected](const Style& style, std::ostream& out) {
                const MatcherDetail::Found found = MatcherDetail::FindEffective(style, place.GetPath());
                return MatcherDetail::Explain(found, place, out) && MatcherDetail::IsEqual(found, expected);
            }};
}

/// The same as a predicate: `EXPECT_TRUE(HasValue(style, key, value))`.
template <class Value>
[[nodiscard]] ::testing::AssertionResult HasValue(const Style& style, const PropertyPlace& place, const Value& value)
{
    return HasValue(place, value).Apply(style);
}

/// The effective value at `place` is a `T` that `matcher` matches: `HasValueThat<double>(width, Gt(0.5))`.
template <class T, class Matcher>
[[nodiscard]] StyleMatcher HasValueThat(const PropertyPlace& place, const Matcher& matcher)
{
    const ::testing::Matcher<const T&> inner = ::testing::SafeMatcherCast<const T&>(matcher);
    std::ostringstream rest;
    rest << "a value for " << place << " that ";
    inner.DescribeTo(&rest);
    return {"has", "does not have", rest.str(), [place, inner](const Style& style, std::ostream& out) {
                const MatcherDetail::Found found = MatcherDetail::FindEffective(style, place.GetPath());
                if (!MatcherDetail::Explain(found, place, out))
                {
                    return false;
                }
                const T* held = found.value->template GetIf<T>();
                return held != nullptr && inner.Matches(*held);
            }};
}

/// The own value at `place`, through own substyles, is `value`.
template <class Value>
[[nodiscard]] StyleMatcher HasOwnValue(const PropertyPlace& place, const Value& value)
{
    const Any expected = MatcherDetail::AsValue(value);
    return {"has", "does not have", MatcherDetail::Described("the own value", expected, place),
            [place, expected](const Style& style, std::ostream& out) {
                Any kept;
                const MatcherDetail::Found found = MatcherDetail::FindOwn(style, place.GetPath(), kept);
                return MatcherDetail::Explain(found, place, out) && MatcherDetail::IsEqual(found, expected);
            }};
}

/// The same as a predicate.
template <class Value>
[[nodiscard]] ::testing::AssertionResult HasOwnValue(const Style& style, const PropertyPlace& place, const Value& value)
{
    return HasOwnValue(place, value).Apply(style);
}

/// There is an own value at `place`, through own substyles, whatever it is.
[[nodiscard]] inline StyleMatcher HasOwnValue(const PropertyPlace& place)
{
    std::ostringstream rest;
    rest << "an own value for " << place;
    return {"has", "does not have", rest.str(), [place](const Style& style, std::ostream& out) {
                Any kept;
                return MatcherDetail::Explain(MatcherDetail::FindOwn(style, place.GetPath(), kept), place, out);
            }};
}

/// The parent is `parent`; null for none.
[[nodiscard]] inline StyleMatcher HasParent(const Style* parent)
{
    std::ostringstream rest;
    parent != nullptr ? rest << "the parent " << *parent << " at " << parent : rest << "no parent";
    return {"has", "does not have", rest.str(), [parent](const Style& style, std::ostream& out) {
                const Style* actual = style.GetParent();
                actual != nullptr ? out << "whose parent is " << *actual << " at " << actual
                                  : out << "which has no parent";
                return actual == parent;
            }};
}

/// `ancestor` is the parent, or a parent of it, and so on.
[[nodiscard]] inline StyleMatcher Inherits(const Style* ancestor)
{
    std::ostringstream rest;
    ancestor != nullptr ? rest << "from " << *ancestor << " at " << ancestor : rest << "from null";
    return {"inherits", "does not inherit", rest.str(), [ancestor](const Style& style, std::ostream& out) {
                const char* before = "which inherits from ";
                std::set<const Style*> seen;
                bool found = false;
                for (const Style* above = style.GetParent(); above != nullptr && !found && seen.insert(above).second;
                     above = above->GetParent())
                {
                    out << before << *above << " at " << above;
                    before = ", which inherits from ";
                    found = above == ancestor;
                }
                if (seen.empty())
                {
                    out << "which has no parent";
                }
                return found;
            }};
}

/// The same of a style that is at hand.
[[nodiscard]] inline StyleMatcher Inherits(const Style& ancestor)
{
    return Inherits(&ancestor);
}

/// The category has this name; `PropertyKey::Empty` for none.
[[nodiscard]] inline StyleMatcher IsCategory(const PropertyKey& name)
{
    std::ostringstream rest;
    rest << "of the category ";
    PrintTo(name, &rest);
    return {"is", "is not", rest.str(), [name](const Style& style, std::ostream& out) {
                const PropertyKey actual = style.GetCategoryName();
                actual == PropertyKey::Empty ? out << "which has no category"
                                             : out << "which is of the category \"" << actual << '"';
                return actual == name;
            }};
}

/// The same of a name as text.
[[nodiscard]] inline StyleMatcher IsCategory(const wchar_t* name)
{
    return IsCategory(PropertyKey(name));
}

} // namespace Styles::Testing
