#include "InspectTools.h"

#include "GalleryFiles.h"

#include <VelPlatform/StringIO.h>

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <regex>

namespace Inspect::Testing
{

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

/// The data of a page, to be asked as the page asks it.
class GalleryPage
{
public:
    explicit GalleryPage(const std::string& page)
    {
        const std::string start = R"(<script id="data" type="application/json">)";
        const std::size_t from = page.find(start) + start.size();
        text = page.substr(from, page.find("</script>", from) - from);
        VelString error;
        EXPECT_TRUE(Json::Parse(VelPlatform::ToWide(text), m_data, error)) << error;
    }

    const Json::Variant& At(const wchar_t* member) const { return MemberOf(m_data, member); }

    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        for (std::size_t index = 0; index < ArrayOf(At(L"styles")).GetSize(); ++index)
        {
            names.push_back(TextOf(MemberOf(*ArrayOf(At(L"styles")).GetValue(index), L"name")));
        }
        return names;
    }

    const Json::Variant& Style(const std::string& name) const
    {
        const auto names = Names();
        const auto found = std::find(names.begin(), names.end(), name);
        EXPECT_NE(found, names.end()) << name;
        return *ArrayOf(At(L"styles")).GetValue(static_cast<std::size_t>(found - names.begin()));
    }

    /// A row as a text: look, value, place, and what is hidden with its places.
    std::string Row(const std::string& style, const std::string& path) const
    {
        const Json::Array& rows = ArrayOf(MemberOf(Style(style), L"rows"));
        for (std::size_t index = 0; index < rows.GetSize(); ++index)
        {
            const Json::Variant& row = *rows.GetValue(index);
            const Json::Array& slot = Slot(row.Is<double>() ? row : *ArrayOf(row).GetValue(0));
            if (TextOf(*slot.GetValue(0)) == path)
            {
                const std::string look = slot.GetValue(1)->Is<VelString>() ? TextOf(*slot.GetValue(1)) : "-";
                return look + ": " + (row.Is<double>() ? Value(*slot.GetValue(4)) + " default" : Told(ArrayOf(row)));
            }
        }
        return "no row";
    }

    static const Json::Variant& MemberOf(const Json::Variant& value, const wchar_t* name)
    {
        return *value.Get<Json::Object>().GetValue(VelString(name));
    }
    static const Json::Array& ArrayOf(const Json::Variant& value) { return value.Get<Json::Array>(); }
    static std::string TextOf(const Json::Variant& value)
    {
        return std::string(std::string_view(VelPlatform::ToNarrow(value.Get<VelString>())));
    }

    std::string text; ///< as it stands in the page

private:
    static std::size_t IndexOf(const Json::Variant& value) { return static_cast<std::size_t>(value.Get<double>()); }
    const Json::Array& Slot(const Json::Variant& number) const
    {
        return ArrayOf(*ArrayOf(At(L"slots")).GetValue(IndexOf(number)));
    }

    std::string Value(const Json::Variant& number) const
    {
        const Json::Variant& value = *ArrayOf(At(L"values")).GetValue(IndexOf(number));
        if (value.Is<VelString>())
        {
            return TextOf(value);
        }
        if (value.Is<double>())
        {
            return "list of " + std::to_string(IndexOf(value));
        }
        if (value.Is<Json::Object>())
        {
            return '(' + TextOf(MemberOf(value, L"text")) + ')';
        }
        return value.Is<Json::Array>() ? "style <" + Place(*ArrayOf(value).GetValue(1)) + '>' : "none";
    }

    std::string Place(const Json::Variant& number) const
    {
        const double place = number.Get<double>();
        if (place < 0)
        {
            return place == -1 ? "own" : place == -2 ? "outside" : "default";
        }
        const Json::Array& found = ArrayOf(*ArrayOf(At(L"places")).GetValue(IndexOf(number)));
        return TextOf(MemberOf(*ArrayOf(At(L"styles")).GetValue(IndexOf(*found.GetValue(0))), L"name")) + '/' +
               TextOf(*found.GetValue(1));
    }

    std::string Told(const Json::Array& row) const
    {
        std::string told = Value(*row.GetValue(1)) + ' ' + Place(*row.GetValue(2));
        if (const auto* hidden = row.GetValue(3)->GetIf<Json::Array>())
        {
            for (std::size_t index = 0; index + 1 < hidden->GetSize(); index += 2)
            {
                told += ", over " + Value(*hidden->GetValue(index + 1)) + ' ' + Place(*hidden->GetValue(index));
            }
            told += hidden->GetSize() % 2 != 0
                        ? ", and " + std::to_string(IndexOf(*hidden->GetValue(hidden->GetSize() - 1))) + " more"
                        : "";
        }
        return told + (row.GetSize() > 4 ? " through " + TextOf(*row.GetValue(4)) : "");
    }

    Json::Variant m_data;
};

class GalleryCommand : public InspectProgram
{
protected:
    /// The page of sheet.json.
    std::string MakePage(std::vector<std::string> options = {})
    {
        options.insert(options.begin(), {"gallery", "-o", "page.html"});
        const Answer answer = Run(options);
        EXPECT_EQ(answer.err, "");
        EXPECT_EQ(answer.status, 0);
        return Read("page.html");
    }
};

TEST_F(GalleryCommand, WritesOnePageAndTellsHowManyStylesItShows)
{
    const Answer answer = Run({"gallery", "-o", "page.html"});
    EXPECT_EQ(answer.err, "");
    EXPECT_EQ(answer.out, "3 styles shown in page.html\n");
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(m_folder.GetNames(), ElementsAre("page.html", "schema.json", "sheet.json"));
    EXPECT_EQ(Run({"gallery", "-o", "-"}).out, Read("page.html"));
}

TEST_F(GalleryCommand, ShowsTheBaseCategoryFirstAndEachStyleWithItsParent)
{
    const GalleryPage page(MakePage());
    EXPECT_EQ(GalleryPage::TextOf(page.At(L"sheet")), "sheet.json");
    EXPECT_THAT(page.Names(), ElementsAre("Base", "Größe", "Dawn"));
    const auto& size = page.Style("Größe").Get<Json::Object>();
    EXPECT_EQ(*size.GetValue(VelString(L"parent")), Json::Variant(0.0));
    EXPECT_EQ(*size.GetValue(VelString(L"id")), Json::Variant(VelString(L"x-1")));
    EXPECT_EQ(*size.GetValue(VelString(L"original")), Json::Variant(VelString(L"Size")));
    EXPECT_EQ(page.Style("Base").Get<Json::Object>().GetValue(VelString(L"parent")), nullptr);
}

TEST_F(GalleryCommand, TellsOfEveryValueWhereItComesFromAndWhatItOverrides)
{
    Write("sheet.json", R"({"version": 3,
        "gradient": {"Dawn": {"kind": "radial", "stops": [{"at": "0.5"}]}},
        "style": {"Base": {"note": "all", "fill": {"color": "red", "gradient": {"inherits": "Dawn"}}},
                  "Heir": {"inherits": "Base", "note": "", "fill": {"color": "blue", "angle": "30"}}}})");
    const GalleryPage page(MakePage());
    EXPECT_EQ(page.Row("Base", "note"), "-: all own, over  default");
    EXPECT_EQ(page.Row("Heir", "note"), "-:  own, over all Base/note, over  default");
    EXPECT_EQ(page.Row("Heir", "fill.color"), "-: blue own, over red Base/fill.color, over white default");
    EXPECT_EQ(page.Row("Heir", "fill.patternId"), "-: 4294967295 default");
    EXPECT_EQ(page.Row("Heir", "fill.gradient"), "-: style <Dawn/> Base/fill.gradient");
    EXPECT_EQ(page.Row("Base", "fill.gradient.kind"), "-: radial Dawn/kind, over linear default through fill.gradient");
    EXPECT_EQ(page.Row("Base", "fill.gradient.stops"),
              "-: list of 1 Dawn/stops, over list of 0 default through fill.gradient");
    EXPECT_EQ(page.Row("Base", "fill.gradient.stops[0].at"),
              "-: 0.5 Dawn/stops[0].at, over 0 default through fill.gradient");
    EXPECT_EQ(page.Row("Base", "nested"), "-: none default");
}

TEST_F(GalleryCommand, JoinsTheLooksAlongThePath)
{
    Write("looks.json", R"({"title": "t", "looks": {
        "fill": {"look": "fill", "properties": {"color": "color", "angle": {"part": "angle", "unit": "degree"},
                 "patternId": {"part": "pattern", "tiles": {"7": "M0 0h8"}}}},
        "gradient": {"look": "gradient", "properties": {"kind": "kind"}},
        "stop": {"look": "stops", "properties": {"at": "position"}}}})");
    const GalleryPage page(MakePage({"--look", "looks.json"}));
    EXPECT_EQ(page.Row("Base", "fill.color"), "fill.color: red own, over white default");
    EXPECT_EQ(page.Row("Base", "fill.gradient.stops[1].at"),
              "fill.gradient.stops[1].position: 0.5 Dawn/stops[1].at, over 0 default through fill.gradient");
    EXPECT_EQ(page.Row("Dawn", "stops[0].at"), "stops[0].position: 0 own, over 0 default");
    EXPECT_EQ(page.Row("Dawn", "kind"), "kind: linear default");
    EXPECT_THAT(page.Row("Base", "note"), HasSubstr("-: "));
    EXPECT_EQ(*GalleryPage::ArrayOf(page.At(L"tiles")).GetValue(0)->Get<Json::Object>().GetValue(VelString(L"7")),
              Json::Variant(VelString(L"M0 0h8")));
    EXPECT_EQ(
        GalleryPage::TextOf(GalleryPage::MemberOf(*GalleryPage::ArrayOf(page.At(L"categories")).GetValue(1), L"look")),
        "fill");
}

TEST_F(GalleryCommand, NamesCannotEndTheElementThatTheyStandIn)
{
    const std::string lines = "a\xE2\x80\xA8\x62\xE2\x80\xA9\x63\xE2\x80\xAE";
    Write("sheet.json", R"({"version": 3, "style": {"</script><script>x()</script>": {"note": "<!--<script>&amp;"},
        "\"'\\ @script@ @data@": {}, ")" +
                            lines + R"(": {}}})");
    const std::string text = MakePage();
    const GalleryPage page(text);
    EXPECT_THAT(page.Names(),
                ::testing::UnorderedElementsAre("</script><script>x()</script>", "\"'\\ @script@ @data@", lines));
    EXPECT_EQ(page.Row("</script><script>x()</script>", "note"), "-: <!--<script>&amp; own, over  default");
    for (const char* dangerous : {"<", ">", "&", "\xE2\x80\xA8", "\xE2\x80\xA9"})
    {
        EXPECT_THAT(page.text, Not(HasSubstr(dangerous)));
    }
    EXPECT_THAT(page.text, HasSubstr("a\\u2028b\\u2029c"));
    EXPECT_THAT(text, HasSubstr("\"use strict\""));
}

TEST_F(GalleryCommand, TheNameOfTheFileIsShownAsText)
{
#if defined(_WIN32) // where names hold no more of markup
    const std::string name = "&lt;.json";
    const std::string shown = "&amp;lt;.json";
#else
    const std::string name = "<b>&\".json";
    const std::string shown = "&lt;b>&amp;&quot;.json";
#endif
    Write(name, SmallSheet);
    const Answer answer = RunBare({"--schema", "schema.json", name, "gallery", "-o", "-"});
    EXPECT_EQ(answer.status, 0);
    EXPECT_THAT(answer.out, HasSubstr("<title>" + shown + "</title>"));
}

TEST_F(GalleryCommand, ThePageRefersToNothingOutsideOfIt)
{
    const std::string page = MakePage();
    EXPECT_THAT(page, HasSubstr("default-src 'none'"));
    for (const char* reference : {" src=", "@import", "fetch(", "XMLHttp", "innerHTML"})
    {
        EXPECT_THAT(page, Not(HasSubstr(reference)));
    }
    EXPECT_FALSE(std::regex_search(page, std::regex("<link [^>]*href=\"[^d]")));
    std::size_t addresses = 0;
    for (std::size_t at = page.find("://"); at != std::string::npos; at = page.find("://", at + 1))
    {
        ++addresses;
    }
    EXPECT_EQ(addresses, 1u); // the name of SVG, which nobody fetches
}

TEST_F(GalleryCommand, NeedsAFileToWriteTo)
{
    ExpectRefusal({"gallery"}, "the command \"gallery\" takes -o FILE.html [--look FILE]", 2);
    ExpectRefusal({"gallery", "page.html"}, "the command \"gallery\" takes -o FILE.html [--look FILE]", 2);
    ExpectRefusal({"list", "--look", "x"}, "the command \"list\" takes no --look", 2);
}

TEST_F(GalleryCommand, DoesNotWriteOverWhatThePageIsMadeOf)
{
    ExpectRefusal({"gallery", "-o", "./sheet.json"}, "./sheet.json: is what the page is made of; nothing was written");
    ExpectRefusal({"gallery", "-o", "schema.json"}, "schema.json: is what the page is made of; nothing was written");
    Write("looks.json", R"({"looks": {}})");
    const Answer answer = Run({"gallery", "--look", "looks.json", "-o", "looks.json"});
    EXPECT_EQ(answer.err, "styles-inspect: looks.json: is what the page is made of; nothing was written\n");
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(Read("looks.json"), R"({"looks": {}})");
}

TEST_F(GalleryCommand, WhatCannotBeWrittenIsTold)
{
    ExpectRefusal({"gallery", "-o", "none/page.html"}, "none/page.html: cannot be written; nothing was saved");
}

TEST_F(GalleryCommand, AMistakeInTheLooksLeavesAnOldPageAsItWas)
{
    MakePage();
    const std::string before = Read("page.html");
    Write("looks.json", R"({"looks": {"fill": {"look": "colour"}}})");
    const Answer answer = Run({"gallery", "-o", "page.html", "--look", "looks.json"});
    EXPECT_THAT(answer.err,
                HasSubstr("looks.json: looks.fill.look: nothing is drawn for \"colour\"; there are: fill, "));
    EXPECT_EQ(answer.status, 1);
    EXPECT_EQ(Read("page.html"), before);
}

TEST_F(GalleryCommand, ShowsAThousandStylesThatInheritFromOneAnother)
{
    std::string sheet = R"({"version": 3, "style": {"s0": {"note": "0"})";
    for (int number = 1; number < 1000; ++number)
    {
        const std::string text = std::to_string(number);
        sheet +=
            ", \"s" + text + R"(": {"inherits": "s)" + std::to_string(number - 1) + R"(", "note": ")" + text + "\"}";
    }
    Write("sheet.json", sheet + "}}");
    const GalleryPage page(MakePage());
    EXPECT_EQ(page.Names().size(), 1000u);
    EXPECT_EQ(page.Row("s2", "note"), "-: 2 own, over 1 s1/note, over 0 s0/note, over  default");
    const std::string last = page.Row("s999", "note");
    EXPECT_THAT(last, ::testing::StartsWith("-: 999 own, over 998 s998/note, over 997 s997/note, "));
    EXPECT_THAT(last, ::testing::EndsWith("over 987 s987/note, and 988 more"));
    EXPECT_EQ(page.Row("s999", "level"), "-: 1 default");
}

TEST_F(GalleryCommand, ClosedChainsAndStylesInsideThemselvesEnd)
{
    Write("sheet.json", R"({"version": 3, "style": {"A": {"inherits": "B"}, "B": {"inherits": "A", "note": "b"},
        "Inside": {"inherits": "Holder"}, "Holder": {"nested": {"inherits": "Inside"}}}})");
    const GalleryPage page(MakePage());
    EXPECT_EQ(page.Row("A", "note"), "-: b B/note, over  default");
    EXPECT_EQ(page.Style("A").Get<Json::Object>().GetValue(VelString(L"cut")), nullptr);
    EXPECT_EQ(page.Row("Holder", "nested"), "-: style <Inside/> own");
}

TEST_F(GalleryCommand, AStyleOfTooManyValuesIsCutShortAndSaysSo)
{
    std::string stops = "{}";
    for (int number = 1; number < 5100; ++number)
    {
        stops += ", {}";
    }
    Write("sheet.json", R"({"version": 3, "gradient": {"Long": {"stops": [)" + stops + R"(]}, "Short": {}}})");
    const GalleryPage page(MakePage());
    const auto& cut = page.Style("Long").Get<Json::Object>();
    EXPECT_EQ(*cut.GetValue(VelString(L"cut")), Json::Variant(true));
    EXPECT_EQ(cut.GetValue(VelString(L"rows"))->Get<Json::Array>().GetSize(), 5000u);
    EXPECT_EQ(page.Style("Short").Get<Json::Object>().GetValue(VelString(L"cut")), nullptr);
}

TEST_F(GalleryCommand, WhatAParentOfAnotherCategoryDoesNotHaveIsTold)
{
    Write("sheet.json", R"({"version": 3, "gradient": {"G": {}}, "style": {"A": {"inherits": "G"}}})");
    const GalleryPage page(MakePage());
    EXPECT_THAT(page.Row("A", "note"), ::testing::StartsWith("-: ((none: "));
}

TEST_F(GalleryCommand, EveryDrawingOfTheExampleHasItsData)
{
    for (const DataSet& data : DataSets())
    {
        const Answer answer = RunBare({"--schema", data.schema.string(), data.sheet.string(), "gallery", "-o", "-"});
        EXPECT_EQ(answer.status, 0);
        EXPECT_EQ(GalleryPage(answer.out).Names().size(), data.styleCount);
    }
}

} // namespace Inspect::Testing
