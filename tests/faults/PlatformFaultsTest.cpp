// Strings, the pool, JSON, streams and values fail wherever memory can end.

#include "faults/UnderFailures.h"
#include "support/TemporaryFolder.h"

#include <VelPlatform/String.h>
#include <VelUtils/Json.h>
#include <VelUtils/Path.h>
#include <VelUtils/Stream.h>
#include <VelUtils/StringPool.h>
#include <VelUtils/StringUtils.h>
#include <VelUtils/TextStream.h>
#include <styles/Styles.h>

#include <memory>
#include <string>

namespace Styles::Testing
{

namespace
{

using VelUtils::MemoryStream;
using VelUtils::TextStream;
using VelUtils::TextStreamReader;
using VelUtils::TextStreamWriter;

std::string Narrowed(const VelString& text)
{
    const VelStringA utf8 = VelPlatform::ToNarrow(text);
    return {utf8.c_str(), utf8.size()};
}

const std::string& DocumentText()
{
    static const std::string text = R"({"eins":[1,2.5,"zwei mit Umlauten: äöü",null,true,{"tief":{"tiefer":[[]]}}],)"
                                    R"("a":1,"b":2,"c":3,"d":4,"e":5,"f":6,"g":7,"h":8,"i":9,"j":10,"k":11,"l":12})";
    return text;
}

/// One thing of each kind.
class PlatformWorld
{
public:
    PlatformWorld()
    {
        VelString errorText;
        Json::Parse(VelPlatform::ToWide(DocumentText()), document, errorText);
        shared = text;
        pool.AddString(L"schon da");
    }

    [[nodiscard]] Picture GetIdentity() const
    {
        Picture picture;
        picture["text"] = Narrowed(text);
        picture["shared"] = Narrowed(shared);
        picture["narrow"] = std::string(narrow.c_str(), narrow.size());
        picture["document"] = Narrowed(Json::ValueToString(document, true));
        picture["value"] = value.Is<VelString>() ? Narrowed(value.Get<VelString>()) : value.GetType().name();
        picture["pool"] = pool.GetSize() == 1 ? "as it was" : "more than before";
        return picture;
    }
    [[nodiscard]] Picture GetContent() const { return GetIdentity(); }
    [[nodiscard]] Picture GetEffect() const { return GetIdentity(); }

    VelString text = L"  ein Text, der lang genug ist  ";
    VelString shared;
    VelStringA narrow = "schmal";
    Json::Variant document;
    Any value{VelString(L"ein Wert")};
    VelUtils::StringPool pool;
};

using W = PlatformWorld;
using Op = Operation<W>;

class PlatformFaults : public testing::TestWithParam<Op>
{};

TEST_P(PlatformFaults, LeaveEverythingAsItWas)
{
    RunUnderFailures(GetParam(), /*byMemory*/ true);
}

INSTANTIATE_TEST_SUITE_P(
    Strings, PlatformFaults,
    testing::Values(Op{"Append", [](W& w) { w.text += L", und noch etwas dahinter"; }},
                    Op{"AppendToItself", [](W& w) { w.text += w.text; }},
                    Op{"AppendACharacter", [](W& w) { w.shared += L'!'; }},
                    Op{"Reserve", [](W& w) { w.text.reserve(1000); }}, Op{"Truncate", [](W& w) { w.text.Truncate(5); }},
                    Op{"Trim", [](W& w) { w.text.Trim(); }},
                    Op{"Format", [](W& w) { w.text = VelString::Format(L"{} und {} und {}", 1, L"zwei", 3.5); }},
                    Op{"Join", [](W& w) { w.text = L"davor" + w.text + VelString(L"dahinter") + L'.'; }},
                    Op{"ToNarrow", [](W& w) { w.narrow = VelPlatform::ToNarrow(w.text); }},
                    Op{"TryToNarrow", [](W& w) { VelPlatform::TryToNarrow(w.text, w.narrow); }},
                    Op{"ToWide", [](W& w) { w.text = VelPlatform::ToWide("schmale Umlaute: äöü"); }},
                    Op{"TryToWide", [](W& w) { VelPlatform::TryToWide("schmale Umlaute: äöü", w.text); }},
                    Op{"Split", [](W&) { (void)VelUtils::String::Split(L"a, b, c,, d", L',', true, true); }},
                    Op{"FindUnusedName",
                       [](W& w) {
                           w.text = VelUtils::String::FindUnusedName(
                               L"Füllung 98", [](const VelString& name) { return name != L"Füllung 101"; });
                       }},
                    Op{"KeepAndRemove",
                       [](W& w) {
                           w.text = VelUtils::String::RemoveCharacters(
                               VelUtils::String::KeepCharacters(w.text, L"einTxt "), L"T");
                       }},
                    Op{"CombinePath", [](W& w) { w.text = VelUtils::SystemIO::Path::Combine(w.text, L"Datei"); }}),
    OperationName());

void FillPool(W& w)
{
    for (int number = 0; number < 40; ++number)
    {
        w.pool.AddString(VelString::Format(L"Text Nummer {}", number));
    }
}

INSTANTIATE_TEST_SUITE_P(
    PoolAndValues, PlatformFaults,
    testing::Values(Op{"AddToPool",
                       [](W& w) {
                           w.pool.AddString(L"schon da");
                           w.pool.AddString(L"neu");
                       }},
                    Op{"FillPool", FillPool, Promise::Stepwise, Promise::Stepwise, false, true, Promise::Stepwise,
                       nullptr,
                       [](W& w, const Picture&, const Expectation&) {
                           FillPool(w);
                           EXPECT_EQ(w.pool.GetSize(), 41u) << "a text is in the pool twice, or was not added";
                       }},
                    Op{"AssignAnyOfOneType", [](W& w) { w.value = Any(VelString(L"ein anderer Wert")); }},
                    Op{"AssignAnyOfAnotherType",
                       [](W& w) {
                           w.value = Any(std::vector<int>{1, 2, 3});
                       }},
                    Op{"AssignToEmptyAny",
                       [](W& w) {
                           Any empty;
                           empty = Any(w.document.Get<Json::Object>());
                           const Any copy(empty);
                           Any moved(std::move(empty));
                           w.value = moved;
                       }},
                    Op{"SplitPath", [](W&) { (void)SplitPath(L"eins.zwei.drei"); }},
                    Op{"ReadAndWriteValues",
                       [](W&) {
                           (void)TextPolicy<double>().FromText(TextPolicy<double>().ToText(Any(0.1)));
                           (void)TextPolicy<VelString>().FromText(L"ein langer, langer Text");
                           (void)TextPolicy<std::int32_t>().ToText(Any(std::int32_t{-5}));
                           (void)TextPolicy<std::uint32_t>().FromText(L"-1");
                           (void)TextPolicy<bool>().FromText(L"true");
                       }}),
    OperationName());

INSTANTIATE_TEST_SUITE_P(
    Json, PlatformFaults,
    testing::Values(
        Op{"Parse",
           [](W& w) {
               VelString errorText;
               Json::Parse(VelPlatform::ToWide(R"({"neu":[1,{"a":"b"},"lang genug für den Speicher"]})"), w.document,
                           errorText);
           }},
        Op{"ParseRepeatedMembers",
           [](W& w) {
               VelString errorText;
               Json::Parse(L"{\"a\":[1,2],\"b\":{},\"a\":{\"c\":\"d\"}}", w.document, errorText);
           }},
        Op{"ParseNonsense",
           [](W& w) {
               VelString errorText;
               EXPECT_FALSE(Json::Parse(L"{\"a\": [1, 2, nichts]}", w.document, errorText));
           }},
        Op{"ParseWhatIsTooDeep",
           [](W& w) {
               VelString errorText;
               const VelString deep = VelString::Make(600, [](wchar_t* units) { std::fill(units, units + 600, L'['); });
               EXPECT_FALSE(Json::Parse(deep, w.document, errorText));
           }},
        Op{"ValueToString",
           [](W& w) {
               (void)Json::ValueToString(w.document, true);
               (void)Json::ValueToString(w.document, false);
           }},
        Op{"CopyDocument",
           [](W& w) {
               const Json::Variant copy(w.document);
               Json::Variant assigned;
               assigned = copy;
               (void)(assigned == copy);
           }},
        Op{"AssignDocument",
           [](W& w) {
               Json::Variant other = Json::Object();
               other.Get<Json::Object>().AddValue(L"ein Teil des Dokuments", w.document);
               w.document = other;
           }},
        Op{"AssignObject",
           [](W& w) {
               Json::Object other;
               other.AddValue(L"ein Teil des Dokuments", VelString(L"ein Text"));
               w.document.Get<Json::Object>() = other;
           }},
        Op{"AddMember",
           [](W& w) { w.document.Get<Json::Object>().AddValue(L"ein neuer Name", VelString(L"ein neuer Text")); }},
        Op{"AddElement",
           [](W& w) {
               w.document.Get<Json::Object>().GetValue(L"eins")->Get<Json::Array>().AddValue(VelString(L"noch eins"));
           }}),
    OperationName());

Op FileOperation()
{
    static const Support::TemporaryFolder folder(Support::FolderInMemory());
    return {"WriteAndReadAFile", [](W& w) {
                const VelString path = Support::ToText(folder / "Datei");
                {
                    VelUtils::Stream stream = VelUtils::FileStream::Create(path);
                    TextStreamWriter(stream, TextStream::Encoding::Utf8, false).Write(w.shared);
                    stream.Close();
                }
                TextStreamReader reader(VelUtils::FileStream::Open(path), TextStream::Encoding::Utf8);
                const VelString read = reader.ReadToEnd();
                EXPECT_TRUE(read.empty() || read == w.shared);
                w.text = L"gelesen";
            }};
}

INSTANTIATE_TEST_SUITE_P(
    Streams, PlatformFaults,
    testing::Values(FileOperation(),
                    Op{"WriteToMemory",
                       [](W& w) {
                           MemoryStream stream;
                           for (const auto encoding :
                                {TextStream::Encoding::Utf8, TextStream::Encoding::Utf16BigEndian,
                                 TextStream::Encoding::Utf16LittleEndian, TextStream::Encoding::Latin1})
                           {
                               TextStreamWriter(stream, encoding, true).Write(w.text);
                           }
                       }},
                    Op{"ReadFromMemory",
                       [](W& w) {
                           for (const auto encoding :
                                {TextStream::Encoding::Utf8, TextStream::Encoding::Utf16BigEndian,
                                 TextStream::Encoding::Utf16LittleEndian, TextStream::Encoding::Latin1})
                           {
                               (void)TextStreamReader(MemoryStream(DocumentText()), encoding).ReadToEnd();
                           }
                           w.text =
                               TextStreamReader(MemoryStream(DocumentText()), TextStream::Encoding::Utf8).ReadToEnd();
                       }}),
    OperationName());

} // namespace

} // namespace Styles::Testing
