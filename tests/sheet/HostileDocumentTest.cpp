// Documents from somebody who wishes us ill: reading one gives false or a sheet, and what was there stays intact.

#include <styles/StyleSheet.h>

#include "support/TestSheet.h"

#include <gmock/gmock.h>

#include <VelUtils/Stream.h>

#include <functional>
#include <memory>
#include <set>
#include <stdexcept>
#include <string>
#include <typeinfo>
#include <utility>
#include <vector>

namespace Styles::Testing
{

namespace
{

/// A document with every kind of value, inheritance through values included.
constexpr const char* smallDocument = R"({"version": 3, "id": "ä", "style": {
 "base": {"note": "n", "number": "1.5", "fill": {"angle": "1", "patternId": "-1"}, "id": "i", "original": "o"},
 "heir": {"inherits": "base", "fill": {"inherits": "blue", "color": "x"}, "stops": [{"position": "0"}, {"inherits": "stop"}],
          "character": {"font": "Ünï", "fill": {"xScale": "2"}}}},
"fill": {"blue": {"color": "\ud83c\udfa8"}}, "stop": {"stop": {"position": 0.5}},
"nest": {"nest": {"nest": {"inherits": "nest", "nests": [{"inherits": "nest"}, {"nest": {}}]}}}})";

class HostileDocument : public SchemaFixture
{
protected:
    /// Asks for every value of a style and of the styles inside it, effective and inherited. Where a parent is of
    /// another category, the answer may be that there is none.
    void Resolve(const Style& style) const
    {
        if (style.GetCategory() == nullptr)
        {
            return;
        }
        Any value;
        for (const PropertyKey& key : style.GetCategory()->GetPropertyNames())
        {
            try
            {
                static_cast<void>(style.GetProperty(key, value));
                static_cast<void>(style.GetProperty(key));
                static_cast<void>(style.GetInheritedProperty(key));
            }
            catch (const std::logic_error&) // what the other category does not know
            {
                ++unresolved;
            }
            catch (const std::bad_cast&) // what is no substyle there
            {
                ++unresolved;
            }
            if (const Style* substyle = style.GetSubstyle(key, false))
            {
                EXPECT_EQ(substyle->GetOwner(), &style);
                Resolve(*substyle);
            }
            else if (style.GetOverrideProperty(key, value) && value.Is<std::vector<Style*>>())
            {
                for (const Style* element : style.GetProperty(key).Get<std::vector<Style*>>())
                {
                    Resolve(*element);
                }
            }
        }
    }

    /// Reads a document into a sheet with a style of its own, looks at all that came of it, and writes and reads it
    /// again. Whether the document was taken.
    bool Survives(std::string_view bytes, bool replace = false) const
    {
        TestSheet sheet;
        Style* kept = sheet.Add(L"kept \x2603", Fill);
        kept->SetProperty(Angle, Any(12.5));
        sheet.SetVersion(41);
        VelUtils::MemoryStream stream(bytes);
        const bool taken = sheet.Import(stream, replace);
        EXPECT_EQ(sheet.Get(L"kept \x2603"), kept);
        EXPECT_EQ(EffectiveNumber(*kept, Angle), 12.5);
        EXPECT_EQ(kept->GetParent(), nullptr);
        const std::vector<Style*> styles = sheet.GetStyles();
        const std::set<const Style*> members(styles.begin(), styles.end());
        for (const Style* style : styles)
        {
            EXPECT_TRUE(style->GetParent() == nullptr || members.contains(style->GetParent()));
            Resolve(*style);
        }
        const std::string written = sheet.Write();
        TestSheet again;
        EXPECT_TRUE(again.Read(written));
        for (const Style* style : again.GetStyles())
        {
            Resolve(*style);
        }
        if (taken)
        {
            EXPECT_EQ(again.Write(), written);
        }
        return taken;
    }

    mutable int unresolved = 0;
};

/// Calls `visit` for the value and every value inside it.
void ForEachValue(Json::Variant& value, const std::function<void(Json::Variant&)>& visit)
{
    visit(value);
    if (auto* object = value.GetIf<Json::Object>())
    {
        for (std::size_t index = 0; index < object->GetSize(); ++index)
        {
            ForEachValue(*object->GetValue(index), visit);
        }
    }
    else if (auto* array = value.GetIf<Json::Array>())
    {
        for (std::size_t index = 0; index < array->GetSize(); ++index)
        {
            ForEachValue(*array->GetValue(index), visit);
        }
    }
}

Json::Variant Parsed(std::string_view utf8)
{
    Json::Variant value;
    VelString error;
    EXPECT_TRUE(Json::Parse(Text(utf8), value, error)) << utf8;
    return value;
}

std::string Utf8Of(std::uint32_t character)
{
    const auto bits = [character](int shift, std::uint32_t mask, std::uint32_t lead) {
        return std::string(1, static_cast<char>(lead | (character >> shift & mask)));
    };
    const std::string last = bits(0, 0x3F, 0x80);
    if (character < 0x80)
    {
        return std::string(1, static_cast<char>(character));
    }
    if (character < 0x800)
    {
        return bits(6, 0x1F, 0xC0) + last;
    }
    if (character < 0x10000)
    {
        return bits(12, 0x0F, 0xE0) + bits(6, 0x3F, 0x80) + last;
    }
    return bits(18, 0x07, 0xF0) + bits(12, 0x3F, 0x80) + bits(6, 0x3F, 0x80) + last;
}

/// The document `{"style": {NAME: {"note": NAME}, ...}}`, written by the library.
std::string DocumentOfNames(const std::vector<VelString>& names)
{
    Json::Object block;
    for (const VelString& name : names)
    {
        Json::Object style;
        style.AddValue(VelString(L"note"), name);
        EXPECT_TRUE(block.AddValue(name, std::move(style)));
    }
    Json::Object root;
    root.AddValue(VelString(L"style"), std::move(block));
    return Utf8(Json::ValueToString(root, true));
}

} // namespace

TEST_F(HostileDocument, TheDocumentThatIsTornApartHereIsGood)
{
    EXPECT_TRUE(Survives(smallDocument));
    EXPECT_TRUE(Survives(smallDocument, true));
    EXPECT_EQ(unresolved, 0);
}

TEST_F(HostileDocument, TruncatedAtEveryByteIsRefused)
{
    const std::string document(smallDocument);
    for (std::size_t size = 0; size < document.size(); ++size)
    {
        EXPECT_FALSE(Survives(std::string_view(document).substr(0, size))) << size;
    }
}

TEST_F(HostileDocument, AByteExchangedAnywhereDoesNoHarm)
{
    std::string document(smallDocument);
    for (std::size_t place = 0; place < document.size(); ++place)
    {
        for (const char byte : {'\0', '"', '}', '\x80'})
        {
            const char old = std::exchange(document[place], byte);
            Survives(document, place % 2 == 0);
            document[place] = old;
        }
    }
}

TEST_F(HostileDocument, ValuesOfTheWrongTypeEverywhereDoNoHarm)
{
    std::vector<Json::Variant> values;
    for (const char* text : {"null", "true", "-1", "1e308", "\"\"", "\"base\"", "[]", "{}", "[[{}]]",
                             "[null, 1, \"x\", {}]", R"({"inherits": "heir", "nest": 1, "fill": [], "note": {}})"})
    {
        values.push_back(Parsed(text));
    }
    Json::Variant document = Parsed(smallDocument);
    std::size_t count = 0;
    ForEachValue(document, [&count](Json::Variant&) { ++count; });
    ASSERT_GT(count, 30u);
    std::size_t taken = 0;
    for (std::size_t place = 0; place < count; ++place)
    {
        for (const Json::Variant& value : values)
        {
            Json::Variant copy = document;
            std::size_t index = 0;
            ForEachValue(copy, [&](Json::Variant& candidate) {
                if (index++ == place)
                {
                    candidate = value;
                    index = count; // and not inside it
                }
            });
            taken += Survives(Utf8(Json::ValueToString(copy, true)), true);
        }
    }
    EXPECT_GT(taken, 0u);
    EXPECT_LT(taken, count * values.size());
}

TEST_F(HostileDocument, TenMillionOpenBracketsAreRefused)
{
    EXPECT_FALSE(Survives(std::string(10'000'000, '[')));
    std::string objects;
    for (int index = 0; index < 1'000'000; ++index)
    {
        objects += "{\"a\":";
    }
    EXPECT_FALSE(Survives(objects));
}

TEST_F(HostileDocument, StylesInStylesAsDeepAsADocumentGoes)
{
    using Step = std::pair<std::string, std::string>;
    for (const auto& [open, close] : {Step("{\"nest\":", "}"), Step("{\"nests\":[", "]}")})
    {
        for (const int depth : {200, 1000})
        {
            std::string document = R"({"nest": {"deep": )";
            for (int index = 0; index < depth; ++index)
            {
                document += open;
            }
            document += "{}";
            for (int index = 0; index < depth; ++index)
            {
                document += close;
            }
            EXPECT_EQ(Survives(document + "}}"), depth == 200);
        }
    }
}

TEST_F(HostileDocument, AHundredThousandStylesAreRead)
{
    std::string chain = R"({"outline": {)";
    for (int index = 0; index < 100'000; ++index)
    {
        chain += (index == 0 ? "\"" : ",\"") + std::to_string(index) + R"(":{"inherits":")" +
                 std::to_string((index + 1) % 100'000) + "\"}";
    }
    // Each inherits from the next and the last from the first. Resolving all of them one by one would be quadratic
    // because of the length of the ways, so a few are asked.
    TestSheet sheet;
    EXPECT_TRUE(sheet.Read(chain + "}}"));
    EXPECT_EQ(sheet.GetStyles().size(), 100'000u);
    for (const wchar_t* name : {L"0", L"50000", L"99999"})
    {
        EXPECT_EQ(EffectiveNumber(*sheet.Get(name), Width), 0.5);
    }
    const std::string written = sheet.Write();
    TestSheet again;
    EXPECT_TRUE(again.Read(written));
    EXPECT_EQ(again.GetStyleNames(), sheet.GetStyleNames());
}

TEST_F(HostileDocument, AHundredThousandMembersOfOneNameAreOne)
{
    std::string properties = R"({"style": {"a": {"note": "first")";
    std::string styles = R"({"style": {"a": {"note": "first"})";
    std::string blocks = R"({"style": {"a": {"note": "first"}})";
    for (int index = 0; index < 100'000; ++index)
    {
        properties += R"(,"note":"x")";
        styles += R"(,"a":{"note":"x"})";
        blocks += R"(,"style":{"a":{"note":"x"}})";
    }
    for (const std::string& document : {properties + "}}}", styles + "}}", blocks + "}"})
    {
        EXPECT_TRUE(Survives(document));
        TestSheet sheet;
        EXPECT_TRUE(sheet.Read(document));
        ASSERT_EQ(sheet.GetStyles().size(), 1u);
        EXPECT_EQ(EffectiveText(*sheet.Get(L"a"), Note), VelString(L"x"));
    }
}

TEST_F(HostileDocument, AHundredThousandUnknownMembersArePassedOver)
{
    std::string members;
    for (int index = 0; index < 100'000; ++index)
    {
        members += ",\"m" + std::to_string(index) + "\": {\"a\": {}}";
    }
    EXPECT_TRUE(Survives(R"({"style": {"a": {"note": "x")" + members + "}}}"));
    EXPECT_TRUE(Survives(R"({"style": {})" + members + "}"));
}

TEST_F(HostileDocument, ASubstyleMayInheritFromItsOwnOwner)
{
    EXPECT_TRUE(Survives(R"({"nest": {"a": {"note": "x", "nest": {"inherits": "a", "nest": {"inherits": "a"}},
                                            "nests": [{"inherits": "a"}, {"inherits": "a", "nest": {"inherits": "a"}}]},
                                      "b": {"nest": {"inherits": "c"}}, "c": {"nest": {"inherits": "b"}},
                                      "d": {"inherits": "e", "nest": {}}, "e": {"nest": {"nest": {"inherits": "d"}}}}})"));
}

TEST_F(HostileDocument, ParentsThatCloseOnThemselvesStayAsWritten)
{
    const std::string document = R"({"fill": {"a": {"inherits": "b"}, "b": {"inherits": "c"}, "c": {"inherits": "a"},
                                              "self": {"inherits": "SELF"}, "heir": {"inherits": "a"}}})";
    EXPECT_TRUE(Survives(document));
    TestSheet sheet;
    EXPECT_TRUE(sheet.Read(document));
    EXPECT_EQ(sheet.Get(L"a")->GetParent(), sheet.Get(L"b"));
    EXPECT_EQ(sheet.Get(L"b")->GetParent(), sheet.Get(L"c"));
    EXPECT_EQ(sheet.Get(L"c")->GetParent(), sheet.Get(L"a"));
    EXPECT_EQ(sheet.Get(L"self")->GetParent(), nullptr);
    EXPECT_EQ(&sheet.Get(L"heir")->GetProperty(Angle), &Manager().GetDefaultValue(Fill, Angle));
}

TEST_F(HostileDocument, ParentsOfOtherCategoriesAreFollowed)
{
    EXPECT_TRUE(Survives(R"({"fill": {"a": {"inherits": "b"}}, "outline": {"b": {"inherits": "c", "color": "x"}},
                             "style": {"c": {"inherits": "a", "fill": {"inherits": "c"}}}})"));
}

TEST_F(HostileDocument, NamesWithEveryKindOfCharacterSurvive)
{
    std::vector<VelString> names;
    for (std::uint32_t character = 0; character <= 0x10FFFF; character += character < 0x600 ? 1 : 0x1F7)
    {
        if (character >= 0xD800 && character <= 0xDFFF)
        {
            continue;
        }
        // Numbered, because some differ in case only.
        names.push_back(Text(std::to_string(character) + " ") + Text(Utf8Of(character)));
    }
    names.push_back(Text("\xD7\xA9\xD7\x9C\xD7\x95\xD7\x9D \xE2\x80\xAE right to left"));
    names.push_back(Text(std::string_view("\0", 1)));
    names.push_back(Text(std::string_view("zero \0 inside", 13)));
    names.push_back(VelString());
    const std::string document = DocumentOfNames(names);
    EXPECT_TRUE(Survives(document));
    TestSheet sheet;
    ASSERT_TRUE(sheet.Read(document));
    EXPECT_EQ(sheet.GetStyles().size(), names.size());
    for (const VelString& name : names)
    {
        const Style* style = sheet.GetStyle(name);
        ASSERT_NE(style, nullptr) << name;
        EXPECT_EQ(sheet.GetStyleName(style), name);
        EXPECT_EQ(OwnText(*style, Note), name);
    }
}

TEST_F(HostileDocument, NamesOfAMillionCharactersSurvive)
{
    const VelString name = Text(std::string(1'000'000, 'n'));
    const std::string document = DocumentOfNames({name, name + VelString(L"2")});
    EXPECT_TRUE(Survives(document));
    TestSheet sheet;
    EXPECT_TRUE(sheet.Read(document));
    ASSERT_NE(sheet.GetStyle(name), nullptr);
    EXPECT_EQ(OwnText(*sheet.GetStyle(name), Note), name);
    EXPECT_TRUE(Survives("{\"" + std::string(1'000'000, 'c') + "\": {\"a\": {}}, \"fill\": {\"a\": {\"" +
                         std::string(1'000'000, 'p') + "\": 1}}}"));
}

TEST_F(HostileDocument, EscapedNamesAreTheCharactersThatTheyStandFor)
{
    EXPECT_TRUE(Survives(
        R"({"fill": {"\u0000\u001f\\\"\/": {}, "\ud83c\udfa8": {}, "\u0066ill": {}}, "\u006eest": {"x": {}}})"));
    EXPECT_FALSE(Survives(R"({"fill": {"\ud83c": {}}})")) << "half a character";
    EXPECT_FALSE(Survives("{\"fill\": {\"a\nb\": {}}}")) << "a control character as it stands";
}

TEST_F(HostileDocument, BytesThatAreNoUtf8AreRefused)
{
    for (const std::string_view bytes :
         {"\xFF", "\x80", "\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF5\x80\x80\x80", "\xE2\x82"})
    {
        EXPECT_FALSE(Survives("{\"fill\": {\"a" + std::string(bytes) + "\": {}}}"));
        EXPECT_FALSE(Survives("{}" + std::string(bytes)));
        EXPECT_FALSE(Survives(std::string(bytes) + "{}"));
    }
}

TEST_F(HostileDocument, OneByteOrderMarkMayLead)
{
    const std::string document = R"({"fill": {"a": {}}})";
    EXPECT_TRUE(Survives("\xEF\xBB\xBF" + document));
    EXPECT_FALSE(Survives("\xEF\xBB\xBF\xEF\xBB\xBF" + document));
    EXPECT_FALSE(Survives(document + "\xEF\xBB\xBF"));
}

TEST_F(HostileDocument, Utf16IsRefused)
{
    const std::string document = R"({"fill": {"a": {}}})";
    std::string littleEndian, bigEndian;
    for (const char character : document)
    {
        littleEndian += {character, '\0'};
        bigEndian += {'\0', character};
    }
    EXPECT_FALSE(Survives(littleEndian));
    EXPECT_FALSE(Survives("\xFF\xFE" + littleEndian));
    EXPECT_FALSE(Survives(bigEndian));
    EXPECT_FALSE(Survives("\xFE\xFF" + bigEndian));
}

} // namespace Styles::Testing
