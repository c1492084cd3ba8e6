#include "VelUtils/TextStream.h"

#include "VelPlatform/StringIO.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>

using Encoding = VelUtils::TextStream::Encoding;
using VelPlatform::VelString;
using VelUtils::MemoryStream;
using VelUtils::Stream;
using VelUtils::TextStreamReader;
using VelUtils::TextStreamWriter;
using namespace std::string_view_literals;

namespace
{

constexpr Encoding kAll[] = {Encoding::Latin1, Encoding::Utf16LittleEndian, Encoding::Utf16BigEndian, Encoding::Utf8};

VelString ReadText(std::string_view bytes, Encoding encoding)
{
    TextStreamReader reader{MemoryStream(bytes), encoding};
    const VelString text = reader.ReadToEnd();
    EXPECT_FALSE(reader.Failed());
    return text;
}

bool IsMalformed(std::string_view bytes, Encoding encoding)
{
    TextStreamReader reader{MemoryStream(bytes), encoding};
    EXPECT_FALSE(reader.Failed());
    const VelString text = reader.ReadToEnd();
    EXPECT_TRUE(!reader.Failed() || text.empty());
    return reader.Failed();
}

std::string Written(const VelString& text, Encoding encoding, bool mark)
{
    MemoryStream stream;
    TextStreamWriter writer(stream, encoding, mark);
    EXPECT_TRUE(writer.Write(text));
    return stream.GetBytes();
}

VelString WithHalfAPair()
{
    VelString text = L"ab";
    text += static_cast<wchar_t>(0xD800);
    return text;
}

/// Gives some bytes, or takes some, and then fails.
class FailingDevice final : public Stream::Device
{
public:
    explicit FailingDevice(std::size_t working) : m_working(working) {}

    bool Read(void* target, std::size_t size, std::size_t& read) override
    {
        read = std::min(size, m_working);
        std::fill_n(static_cast<char*>(target), read, 'a');
        m_working -= read;
        return read > 0;
    }
    bool Write(const void*, std::size_t size) override
    {
        const bool works = size <= m_working;
        m_working -= works ? size : 0;
        return works;
    }
    bool Commit() override { return true; }

private:
    std::size_t m_working;
};

} // namespace

TEST(TextStream, TheValueThreeIsUtf8)
{
    EXPECT_EQ(static_cast<int>(Encoding::Utf8), 3);
    EXPECT_EQ(Written(L"\u00E9", static_cast<Encoding>(3), false), "\xC3\xA9");
}

TEST(TextStream, EveryEncodingReadsBackWhatItWrites)
{
    VelString everyByte;
    for (int c = 0; c < 256; ++c)
    {
        everyByte += static_cast<wchar_t>(c);
    }
    for (const Encoding encoding : kAll)
    {
        for (const bool mark : {false, true})
        {
            EXPECT_EQ(ReadText(Written(everyByte, encoding, mark), encoding), everyByte);
            EXPECT_EQ(ReadText(Written(VelString(), encoding, mark), encoding), VelString());
        }
    }
    const VelString wide = L"\u0000\u20AC\uFFFF\U0001D11E\U0010FFFF z";
    for (const Encoding encoding : {Encoding::Utf8, Encoding::Utf16BigEndian, Encoding::Utf16LittleEndian})
    {
        EXPECT_EQ(ReadText(Written(wide, encoding, true), encoding), wide);
    }
}

TEST(TextStream, BytesAreThoseOfTheEncoding)
{
    const VelString text = L"a\u00E9";
    EXPECT_EQ(Written(text, Encoding::Latin1, false), "a\xE9");
    EXPECT_EQ(Written(text, Encoding::Utf8, false), "a\xC3\xA9");
    EXPECT_EQ(Written(text, Encoding::Utf16LittleEndian, false), "a\0\xE9\0"sv);
    EXPECT_EQ(Written(text, Encoding::Utf16BigEndian, false), "\0a\0\xE9"sv);
    EXPECT_EQ(Written(L"\U0001D11E", Encoding::Utf16BigEndian, false), "\xD8\x34\xDD\x1E");
}

TEST(TextStream, AMarkIsWrittenOnceBeforeTheFirstText)
{
    MemoryStream stream;
    TextStreamWriter writer(stream, Encoding::Utf8, true);
    EXPECT_EQ(stream.GetBytes(), "");
    EXPECT_TRUE(writer.Write(L"a"));
    EXPECT_TRUE(writer.Write(L"b"));
    EXPECT_EQ(stream.GetBytes(), "\xEF\xBB\xBF"
                                 "ab");
    EXPECT_EQ(Written(L"a", Encoding::Utf16LittleEndian, true), "\xFF\xFE"
                                                                "a\0"sv);
    EXPECT_EQ(Written(L"a", Encoding::Utf16BigEndian, true), "\xFE\xFF\0a"sv);
    EXPECT_EQ(Written(L"a", Encoding::Latin1, true), "a");
}

TEST(TextStream, OneLeadingMarkIsDropped)
{
    EXPECT_EQ(ReadText("\xEF\xBB\xBF"
                       "a",
                       Encoding::Utf8),
              L"a");
    EXPECT_EQ(ReadText("\xEF\xBB\xBF\xEF\xBB\xBF"
                       "a",
                       Encoding::Utf8),
              L"\uFEFFa");
    EXPECT_EQ(ReadText("a\xEF\xBB\xBF", Encoding::Utf8), L"a\uFEFF");
    EXPECT_EQ(ReadText("\xEF\xBB\xBF", Encoding::Utf8), L"");
    EXPECT_EQ(ReadText("\xFF\xFE"
                       "a\0"sv,
                       Encoding::Utf16LittleEndian),
              L"a");
    EXPECT_EQ(ReadText("\xFE\xFF\0a"sv, Encoding::Utf16BigEndian), L"a");
}

TEST(TextStream, BytesAreReadAsTheyAreBehindALeadingMark)
{
    TextStreamReader reader{MemoryStream("\xEF\xBB\xBF\xEF\xBB\xBF"
                                         "a\xFF\0b"sv),
                            Encoding::Utf8};
    EXPECT_EQ(reader.ReadBytes(), "\xEF\xBB\xBF"
                                  "a\xFF\0b"sv);
    EXPECT_FALSE(reader.Failed());
    EXPECT_EQ(reader.ReadBytes(), "");
    TextStreamReader none{Stream(), Encoding::Utf8};
    EXPECT_EQ(none.ReadBytes(), "");
    EXPECT_TRUE(none.Failed());
    TextStreamReader failing{Stream(std::make_unique<FailingDevice>(5)), Encoding::Utf8};
    static_cast<void>(failing.ReadBytes());
    EXPECT_TRUE(failing.Failed());
}

TEST(TextStream, MalformedInputGivesAnEmptyTextAndAFailure)
{
    for (const std::string_view bytes :
         {"a\xFF"sv, "a\xC3"sv, "\x80"sv, "\xC0\x80"sv, "\xED\xA0\x80"sv, "\xF4\x90\x80\x80"sv, "\xE2\x82 "sv,
          "\xF8\x88\x80\x80\x80"sv, "\xFE\xFF\0a"sv})
    {
        EXPECT_TRUE(IsMalformed(bytes, Encoding::Utf8)) << bytes;
    }
    EXPECT_TRUE(IsMalformed("a\0b"sv, Encoding::Utf16LittleEndian));
    EXPECT_TRUE(IsMalformed("\xD8\x34"sv, Encoding::Utf16BigEndian));
    EXPECT_TRUE(IsMalformed("\xD8\x34\0a"sv, Encoding::Utf16BigEndian));
    EXPECT_TRUE(IsMalformed("\xDD\x1E\xD8\x34"sv, Encoding::Utf16BigEndian));
    EXPECT_TRUE(IsMalformed("a", static_cast<Encoding>(77)));
}

TEST(TextStream, ReadsLongTextsInWholeAndAgainNothing)
{
    const std::string bytes = std::string(65'535, 'a') + "\xC3\xA9" + std::string(200'000, 'b');
    TextStreamReader reader{MemoryStream(bytes), Encoding::Utf8};
    const VelString text = reader.ReadToEnd();
    EXPECT_FALSE(reader.Failed());
    EXPECT_EQ(text.size(), bytes.size() - 1);
    EXPECT_EQ(text[65'535], wchar_t{0xE9});
    EXPECT_EQ(reader.ReadToEnd(), L"");
    EXPECT_FALSE(reader.Failed());
}

TEST(TextStream, AStreamThatCannotBeReadGivesAnEmptyTextAndAFailure)
{
    TextStreamReader none{Stream(), Encoding::Utf8};
    EXPECT_EQ(none.ReadToEnd(), L"");
    EXPECT_TRUE(none.Failed());
    TextStreamReader failing{Stream(std::make_unique<FailingDevice>(5)), Encoding::Utf8};
    EXPECT_EQ(failing.ReadToEnd(), L"");
    EXPECT_TRUE(failing.Failed());
}

TEST(TextStream, TextThatHasNoEncodingIsRefusedAndTheStreamGivenUp)
{
    for (const Encoding encoding : kAll)
    {
        MemoryStream stream;
        TextStreamWriter writer(stream, encoding, true);
        EXPECT_FALSE(writer.Write(WithHalfAPair()));
        EXPECT_EQ(stream.GetBytes(), "");
        EXPECT_TRUE(stream.Failed());
        EXPECT_FALSE(writer.Write(L"a"));
    }
    MemoryStream latin;
    EXPECT_FALSE(TextStreamWriter(latin, Encoding::Latin1, false).Write(L"\u0100"));
    EXPECT_FALSE(TextStreamWriter(MemoryStream(), static_cast<Encoding>(77), false).Write(L"a"));
}

TEST(TextStream, AStreamThatRefusesAByteMakesWritingFail)
{
    TextStreamWriter writer(Stream(std::make_unique<FailingDevice>(5)), Encoding::Utf8, false);
    EXPECT_TRUE(writer.Write(L"abc"));
    EXPECT_FALSE(writer.Write(L"def"));
    EXPECT_FALSE(writer.Write(L"g"));
    EXPECT_FALSE(TextStreamWriter(Stream(), Encoding::Utf8, false).Write(L"a"));
}
