#include "VelUtils/Stream.h"

#include "StreamTestTools.h"

#include <gmock/gmock.h>

#include <optional>
#include <stdexcept>
#include <string>

using Support::Write;
using testing::ElementsAre;
using VelUtils::MemoryStream;
using VelUtils::Stream;

namespace
{

/// Writes down what is done to it.
class RecordingDevice final : public Stream::Device
{
public:
    struct Record
    {
        std::vector<std::string> calls;
        bool works = true;
        bool throws = false;
    };

    explicit RecordingDevice(Record& record) : m_record(record) {}
    ~RecordingDevice() override { m_record.calls.push_back("end"); }

    bool Read(void*, std::size_t, std::size_t& read) override
    {
        read = 0;
        return Note("read");
    }
    bool Write(const void* source, std::size_t size) override
    {
        return Note("write " + std::string(static_cast<const char*>(source), size));
    }
    bool Commit() override { return Note("commit"); }

private:
    bool Note(const std::string& call)
    {
        m_record.calls.push_back(call);
        if (m_record.throws)
        {
            throw std::runtime_error(call);
        }
        return m_record.works;
    }

    Record& m_record;
};

using Record = RecordingDevice::Record;

Stream Recorded(Record& record)
{
    return Stream(std::make_unique<RecordingDevice>(record));
}

std::string ReadAll(Stream& stream)
{
    std::string all;
    char chunk[3];
    for (std::size_t size = 0; (size = stream.Read(chunk, sizeof chunk)) > 0;)
    {
        all.append(chunk, size);
    }
    return all;
}

} // namespace

TEST(Stream, AHandleOnNothingRefusesEverything)
{
    char byte = 0;
    for (Stream stream : {Stream(), Stream(nullptr)})
    {
        EXPECT_FALSE(stream);
        EXPECT_EQ(stream.Read(&byte, 1), 0u);
        EXPECT_FALSE(stream.Write(&byte, 1));
        EXPECT_FALSE(stream.Write(nullptr, 0));
        EXPECT_FALSE(stream.Close());
        EXPECT_FALSE(stream.Failed());
        stream.GiveUp();
    }
}

TEST(Stream, ClosingCommitsOnceAndAnswersTheSameAgain)
{
    Record record;
    Stream stream = Recorded(record);
    EXPECT_TRUE(stream);
    EXPECT_TRUE(Write(stream, "a"));
    EXPECT_TRUE(stream.Close());
    EXPECT_FALSE(stream);
    EXPECT_TRUE(stream.Close());
    EXPECT_FALSE(Write(stream, "b"));
    EXPECT_TRUE(stream.Close());
    EXPECT_FALSE(stream.Failed());
    EXPECT_THAT(record.calls, ElementsAre("write a", "commit", "end"));
}

TEST(Stream, ClosingCommitsAlsoWhenNothingWasWritten)
{
    Record record;
    EXPECT_TRUE(Recorded(record).Close());
    EXPECT_THAT(record.calls, ElementsAre("commit", "end"));
}

TEST(Stream, TheLastHandleClosesByItself)
{
    Record record;
    {
        std::optional<Stream> first = Recorded(record);
        Stream second = *first;
        EXPECT_TRUE(Write(*first, "a"));
        first.reset();
        EXPECT_TRUE(Write(second, "b"));
        EXPECT_THAT(record.calls, ElementsAre("write a", "write b"));
    }
    EXPECT_THAT(record.calls, ElementsAre("write a", "write b", "commit", "end"));
}

TEST(Stream, TheLastHandleGivesUpWhenNothingWasWritten)
{
    Record record;
    {
        Stream stream = Recorded(record);
        EXPECT_TRUE(Write(stream, ""));
    }
    EXPECT_THAT(record.calls, ElementsAre("end"));
}

TEST(Stream, AssigningAnotherStreamLetsGoOfTheFirst)
{
    Record first;
    Record second;
    Stream stream = Recorded(first);
    EXPECT_TRUE(Write(stream, "a"));
    stream = Recorded(second);
    EXPECT_THAT(first.calls, ElementsAre("write a", "commit", "end"));
    const Stream& same = stream;
    stream = same;
    EXPECT_TRUE(stream);
    Stream moved = std::move(stream);
    EXPECT_TRUE(moved);
    EXPECT_FALSE(stream); // NOLINT(bugprone-use-after-move): a moved-from handle is one on nothing
}

TEST(Stream, AHandleThatDiesWhileAnExceptionPassesGivesUp)
{
    Record record;
    try
    {
        Stream stream = Recorded(record);
        EXPECT_TRUE(Write(stream, "a"));
        throw std::runtime_error("passing");
    }
    catch (const std::runtime_error&)
    {}
    EXPECT_THAT(record.calls, ElementsAre("write a", "end"));
}

TEST(Stream, ACopyThatDiesWhileAnExceptionPassesGivesUpForAllHandles)
{
    Record record;
    Stream stream = Recorded(record);
    try
    {
        Stream copy = stream;
        EXPECT_TRUE(Write(copy, "half of it"));
        throw std::runtime_error("passing");
    }
    catch (const std::runtime_error&)
    {}
    EXPECT_FALSE(stream);
    EXPECT_TRUE(stream.Failed());
    EXPECT_FALSE(stream.Close());
    EXPECT_THAT(record.calls, ElementsAre("write half of it", "end"));
}

TEST(Stream, AStreamMadeAndEndedWhileAnExceptionPassesIsNotGivenUp)
{
    Record record;
    struct SaveAtTheEnd
    {
        Record& record;
        ~SaveAtTheEnd()
        {
            Stream stream = Recorded(record);
            EXPECT_TRUE(Write(stream, "a"));
        }
    };
    try
    {
        const SaveAtTheEnd save{record};
        throw std::runtime_error("passing");
    }
    catch (const std::runtime_error&)
    {}
    EXPECT_THAT(record.calls, ElementsAre("write a", "commit", "end"));
}

TEST(Stream, ARefusedWriteEndsTheStream)
{
    Record record;
    Stream stream = Recorded(record);
    record.works = false;
    EXPECT_FALSE(Write(stream, "a"));
    EXPECT_FALSE(stream);
    EXPECT_TRUE(stream.Failed());
    record.works = true;
    EXPECT_FALSE(Write(stream, "b"));
    EXPECT_FALSE(stream.Close());
    EXPECT_THAT(record.calls, ElementsAre("write a", "end"));
}

TEST(Stream, AFailedReadIsToldApartFromTheEnd)
{
    char byte = 0;
    Record record;
    Stream stream = Recorded(record);
    EXPECT_EQ(stream.Read(&byte, 1), 0u);
    EXPECT_FALSE(stream.Failed());
    record.works = false;
    EXPECT_EQ(stream.Read(&byte, 1), 0u);
    EXPECT_TRUE(stream.Failed());
}

TEST(Stream, AFailedCommitMakesClosingFail)
{
    Record record;
    Stream stream = Recorded(record);
    EXPECT_TRUE(Write(stream, "a"));
    record.works = false;
    EXPECT_FALSE(stream.Close());
    EXPECT_FALSE(stream.Close());
    EXPECT_TRUE(stream.Failed());
    EXPECT_THAT(record.calls, ElementsAre("write a", "commit", "end"));
}

TEST(Stream, WhatADeviceThrowsPassesThroughAndCountsAsAFailure)
{
    Record record;
    {
        Stream stream = Recorded(record);
        record.throws = true;
        EXPECT_THROW(Write(stream, "a"), std::runtime_error);
        EXPECT_FALSE(stream);
        record.throws = false;
        EXPECT_FALSE(stream.Close());
    }
    EXPECT_THAT(record.calls, ElementsAre("write a", "end"));
}

TEST(Stream, ClosingNeverThrows)
{
    Record record;
    Stream stream = Recorded(record);
    EXPECT_TRUE(Write(stream, "a"));
    record.throws = true;
    EXPECT_FALSE(stream.Close());
    EXPECT_TRUE(stream.Failed());
}

TEST(Stream, GivingUpDropsWhatWasWritten)
{
    Record record;
    Stream stream = Recorded(record);
    EXPECT_TRUE(Write(stream, "a"));
    stream.GiveUp();
    EXPECT_FALSE(stream);
    EXPECT_FALSE(stream.Close());
    EXPECT_THAT(record.calls, ElementsAre("write a", "end"));
}

TEST(MemoryStream, KeepsWhatIsWritten)
{
    MemoryStream stream;
    EXPECT_TRUE(Write(stream, "ab"));
    EXPECT_TRUE(Write(stream, std::string_view("c\0d", 3)));
    EXPECT_EQ(stream.GetBytes(), std::string("abc\0d", 5));
    EXPECT_TRUE(stream.Close());
    EXPECT_EQ(stream.GetBytes().size(), 5u);
}

TEST(MemoryStream, GivesItsBytesFromTheBeginningToTheEnd)
{
    MemoryStream stream("abcdefgh");
    char two[2];
    EXPECT_EQ(stream.Read(two, 2), 2u);
    EXPECT_EQ(std::string(two, 2), "ab");
    EXPECT_EQ(ReadAll(stream), "cdefgh");
    EXPECT_EQ(ReadAll(stream), "");
    EXPECT_TRUE(stream);
}

TEST(MemoryStream, HandedOnAsAStreamItStaysTheSame)
{
    MemoryStream memory;
    {
        Stream stream = memory;
        EXPECT_TRUE(Write(stream, "written by the copy"));
    }
    EXPECT_EQ(memory.GetBytes(), "written by the copy");
    EXPECT_EQ(ReadAll(memory), "written by the copy");
}
