// Writing and reading documents fail wherever they can.

#include "faults/DocumentWorld.h"

#include <VelUtils/Stream.h>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace Styles::Testing
{

namespace
{

using W = DocumentWorld;
using Op = Operation<W>;

class DocumentFaults : public FaultsOf<W>
{};

TEST_P(DocumentFaults, HoldWhatIsPromisedWhenMemoryEnds)
{
    RunUnderFailures(GetParam(), /*byMemory*/ true);
}

TEST_P(DocumentFaults, HoldWhatIsPromisedWhenTheHostThrows)
{
    RunUnderFailures(GetParam(), /*byMemory*/ false);
}

/// Another document with all styles but one, of an older version and with an identity, in which the base is different.
const VelString& OtherDocument()
{
    static const VelString text = [] {
        W other;
        delete other.sheet.RemoveStyle(L"Fremd");
        FaultWorld::Set(*other.sheet.GetStyle(L"Basis"), MakePath(K().fill, K().color), L"blau");
        other.sheet.SetExternalID(L"andere Tabelle");
        other.sheet.SetVersion(2);
        VelString document;
        static_cast<OpenSheet&>(other.sheet).OpenSheet::ExportToString(document, true);
        return document;
    }();
    return text;
}

void Import(W& w, bool replace)
{
    VelUtils::MemoryStream stream(Narrow(OtherDocument()));
    w.sheet.Import(stream, replace);
}

/// What is below one style of the sheet, or stands for it.
Picture PlacesOf(const Picture& picture, const std::string& style)
{
    Picture places;
    for (const auto& [place, text] : picture)
    {
        if (place.rfind(style, 0) == 0)
        {
            places[place] = text;
        }
    }
    return places;
}

/// Each place is empty or as it is in `read`, but for the external identity, which comes in two steps.
void ExpectReadInPart(const Picture& now, const Picture& read)
{
    for (const auto& [place, text] : now)
    {
        if (place.back() == '@' || place.back() == '#' || text == "none" || text == "style of ")
        {
            continue;
        }
        const auto expected = read.find(place);
        EXPECT_TRUE(expected != read.end() && expected->second == text) << place << " is " << text;
    }
}

void ExpectOneOf(const Picture& now, const Picture& before, const Picture& read)
{
    for (const char* place : {"(version)", "(id)"})
    {
        const std::string& text = now.at(place);
        EXPECT_TRUE(text == before.at(place) || text == read.at(place)) << place << " is " << text;
    }
}

/// After an import: each style that the document names is the old one as it was or a new one read in part, and the
/// other is as it was.
void OldOrReadInPart(W& w, const Picture& before, const Expectation& expected)
{
    const Picture now = w.GetIdentity();
    for (const std::string style : {"Basis", "Kind", "Linie", "Punkt", "Nest"})
    {
        ASSERT_TRUE(now.contains(style + "@")) << style << " is gone";
        if (before.at(style + "@") == now.at(style + "@"))
        {
            EXPECT_EQ(PlacesOf(now, style), PlacesOf(before, style));
        }
        else
        {
            ExpectReadInPart(PlacesOf(now, style), expected.contentAfter);
        }
    }
    EXPECT_EQ(PlacesOf(now, "Fremd"), PlacesOf(before, "Fremd"));
    ExpectOneOf(now, before, expected.contentAfter);
}

/// After the contents were replaced: the sheet is as it was, or all of its styles are new ones, read in part.
void AllOldOrReadInPart(W& w, const Picture& before, const Expectation& expected)
{
    if (w.GetIdentity() == before)
    {
        return;
    }
    Picture now = w.GetContent();
    ExpectOneOf(now, before, expected.contentAfter);
    now.erase("(version)");
    ExpectReadInPart(now, expected.contentAfter);
}

Op Writing(const char* name, std::function<void(W&)> act)
{
    Op operation;
    operation.name = name;
    operation.act = std::move(act);
    return operation;
}

INSTANTIATE_TEST_SUITE_P(Writing, DocumentFaults,
                         testing::Values(Writing("ExportJson",
                                                 [](W& w) {
                                                     Json::Variant out = Json::Object();
                                                     static_cast<OpenSheet&>(w.sheet).ExportJson(out, false);
                                                 }),
                                         Writing("Export",
                                                 [](W& w) {
                                                     VelUtils::MemoryStream stream;
                                                     w.sheet.Export(stream);
                                                 })),
                         OperationName());

Op Reading(const char* name, std::function<void(W&)> act, Promise promise,
           std::function<void(W&, const Picture&, const Expectation&)> alsoHolds = nullptr)
{
    Op operation;
    operation.name = name;
    operation.act = std::move(act);
    operation.whenMemoryEnds = promise;
    operation.whenDefinitionsThrow = promise;
    operation.whenDestroyingThrows = promise;
    operation.mayAnswerInstead = true;
    operation.alsoHolds = std::move(alsoHolds);
    return operation;
}

void ReplaceAll(W& w)
{
    Import(w, true);
}

/// Throws what the reading threw.
void ReplaceAllFromJson(W& w)
{
    VelString errorText;
    Json::Variant document;
    Json::Parse(OtherDocument(), document, errorText);
    static_cast<OpenSheet&>(w.sheet).ImportJson(&document.Get<Json::Object>(), true);
}

void KeepAll(W& w)
{
    Import(w, false);
}

void ImportNothing(W& w)
{
    VelUtils::MemoryStream stream("{ \"style\" ");
    EXPECT_FALSE(w.sheet.Import(stream, true));
}

/// The sheet of the world is of a derived class; one of the library's own class is read and written in other ways.
void ReadAndWriteAPlainSheet(W& /*w*/)
{
    StyleSheet plain;
    for (int time = 0; time < 2; ++time)
    {
        VelUtils::MemoryStream document(Narrow(OtherDocument()));
        plain.Import(document, /*replace*/ true);
        VelUtils::MemoryStream written;
        plain.Export(written);
    }
}

class Duplicates : public IStyleSheetDuplicationContext
{
public:
    void OnStyleDuplicated(Style* /*style*/, bool /*reserved*/) override { ReachCall(); }
};

class ThrowingAt : public IStyleSheetDuplicationContext
{
public:
    explicit ThrowingAt(std::size_t n) : m_left(n) {}

    void OnStyleDuplicated(Style* /*style*/, bool /*reserved*/) override
    {
        if (--m_left == 0)
        {
            throw HostFailure();
        }
    }

private:
    std::size_t m_left;
};

/// A sheet to copy from.
void MakeOther(W& w)
{
    w.other = std::make_unique<FaultySheet>();
    w.other->SetVersion(2);
    auto base = std::make_unique<Style>(nullptr, StyleCategoryName);
    base->SetProperty(K().note, Any(VelString(L"kopierte Notiz")));
    auto heir = std::make_unique<Style>(base.get(), StyleCategoryName);
    heir->GetSubstyleAndCreateIfMissing(K().fill, K().fill);
    w.other->AddStyle(VelString(L"Kopie"), base.release(), true);
    w.other->AddStyle(VelString(L"Erbe der Kopie"), heir.release(), true);
}

void CopyOther(W& w)
{
    Duplicates duplicates;
    w.sheet.CopyContentsFrom(*w.other, &duplicates);
}

Op Copying()
{
    Op operation = Reading("CopyContentsFrom", CopyOther, Promise::AsChecked, AllOldOrReadInPart);
    operation.prepare = MakeOther;
    return operation;
}

/// The styles of the other sheet belong to nobody when it is done, and to that sheet before.
void MergeOther(W& w, bool replace)
{
    std::vector<Style*> theirs = w.other->GetStyles();
    w.sheet.MergeIn(*w.other, replace);
    w.abandoned.insert(w.abandoned.end(), theirs.begin(), theirs.end());
}

Op Merging(const char* name, bool replace)
{
    Op operation;
    operation.name = name;
    operation.act = [replace](W& w) { MergeOther(w, replace); };
    operation.whenMemoryEnds = Promise::Stepwise;
    operation.whenDefinitionsThrow = Promise::ThrowsNothing;
    operation.whenDestroyingThrows = Promise::ThrowsNothing;
    operation.prepare = [](W& w) {
        MakeOther(w);
        w.abandoned.reserve(2);
    };
    operation.alsoHolds = [](W& w, const Picture&, const Expectation&) {
        EXPECT_EQ(w.sheet.GetStyles().size(), 6u);
        EXPECT_EQ(w.other->GetStyles().empty(), !w.abandoned.empty());
    };
    return operation;
}

Op DestroyASheet()
{
    Op operation;
    operation.name = "Destroy";
    operation.act = [](W& w) { w.other.reset(); };
    operation.whenMemoryEnds = Promise::ThrowsNothing;
    operation.whenDefinitionsThrow = Promise::ThrowsNothing;
    operation.whenDestroyingThrows = Promise::ThrowsNothing;
    operation.prepare = MakeOther;
    return operation;
}

INSTANTIATE_TEST_SUITE_P(Together, DocumentFaults,
                         testing::Values(Merging("MergeIn", false), Merging("MergeInReplacing", true), DestroyASheet()),
                         OperationName());

INSTANTIATE_TEST_SUITE_P(Reading, DocumentFaults,
                         testing::Values(Reading("ImportInPlaceOfAll", ReplaceAll, Promise::AsChecked, OldOrReadInPart),
                                         Reading("ImportJsonInPlaceOfAll", ReplaceAllFromJson, Promise::AsChecked,
                                                 OldOrReadInPart),
                                         Reading("ImportBesideAll", KeepAll, Promise::AsChecked, OldOrReadInPart),
                                         Reading("ImportNothing", ImportNothing, Promise::Unchanged),
                                         Reading("PlainSheet", ReadAndWriteAPlainSheet, Promise::Unchanged), Copying()),
                         OperationName());

TEST(CopiedContents, AreAllThereWhateverTheContextThrows)
{
    const FaultySchema schema;
    W complete;
    MakeOther(complete);
    complete.sheet.CopyContentsFrom(*complete.other, nullptr);
    for (std::size_t n = 1; n <= 2; ++n)
    {
        W w;
        MakeOther(w);
        ThrowingAt context(n);
        EXPECT_THROW(w.sheet.CopyContentsFrom(*w.other, &context), HostFailure);
        EXPECT_EQ(w.GetContent(), complete.GetContent());
    }
}

TEST(CopiedContents, AreThoseFromBeforeWhenTheSourceCannotBeWritten)
{
    const FaultySchema schema;
    W w;
    MakeOther(w);
    const Picture before = w.GetIdentity();
    CallPoints().Arm(1, FailureMode::Once);
    EXPECT_THROW(CopyOther(w), HostFailure);
    CallPoints().Disarm();
    EXPECT_EQ(w.GetIdentity(), before);
}

} // namespace

} // namespace Styles::Testing
