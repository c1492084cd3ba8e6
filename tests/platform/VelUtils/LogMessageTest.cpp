#include "VelUtils/LogMessage.h"

#include "VelPlatform/StringIO.h"

#include <gmock/gmock.h>

#include <atomic>
#include <stdexcept>
#include <thread>
#include <vector>

using VelPlatform::VelString;
using VelUtils::IsLogging;
using VelUtils::LogMessage;
using VelUtils::SetLogSink;

namespace
{

class LogMessageTest : public testing::Test
{
protected:
    void TearDown() override { SetLogSink(nullptr); }

    void Listen()
    {
        SetLogSink([this](const VelString& text) { m_heard.push_back(text); });
    }

    std::vector<VelString> m_heard;
};

} // namespace

TEST_F(LogMessageTest, IsSilentUntilASinkIsInstalled)
{
    EXPECT_FALSE(IsLogging());
    LogMessage(L"lost");
    Listen();
    EXPECT_TRUE(IsLogging());
    LogMessage(L"heard");
    EXPECT_THAT(m_heard, testing::ElementsAre(VelString(L"heard")));
}

TEST_F(LogMessageTest, AnEmptySinkSilencesAgain)
{
    Listen();
    SetLogSink(nullptr);
    EXPECT_FALSE(IsLogging());
    LogMessage(L"lost");
    EXPECT_THAT(m_heard, testing::IsEmpty());
}

TEST_F(LogMessageTest, InstallingGivesTheSinkBeforeBack)
{
    Listen();
    VelUtils::LogSink before = SetLogSink([](const VelString&) {});
    LogMessage(L"elsewhere");
    ASSERT_TRUE(before);
    before(L"directly");
    EXPECT_TRUE(SetLogSink(before));
    LogMessage(L"again");
    EXPECT_THAT(m_heard, testing::ElementsAre(VelString(L"directly"), VelString(L"again")));
}

TEST_F(LogMessageTest, WhatASinkThrowsEndsThere)
{
    SetLogSink([](const VelString&) { throw std::runtime_error("sink"); });
    EXPECT_NO_THROW(LogMessage(L"text"));
}

TEST_F(LogMessageTest, ASinkMayExchangeTheSink)
{
    SetLogSink([this](const VelString&) { Listen(); });
    LogMessage(L"first");
    LogMessage(L"second");
    EXPECT_THAT(m_heard, testing::ElementsAre(VelString(L"second")));
}

TEST(LogMessageThreads, MessagesAndExchangesOfTheSinkMeet)
{
    std::atomic<int> heard = 0;
    std::vector<std::thread> threads;
    SetLogSink([&](const VelString&) { ++heard; });
    for (int t = 0; t < 4; ++t)
    {
        threads.emplace_back([&, t] {
            for (int i = 0; i < 500; ++i)
            {
                LogMessage(L"text");
                if (t == 0)
                {
                    SetLogSink([&](const VelString&) { ++heard; });
                }
            }
        });
    }
    for (std::thread& thread : threads)
    {
        thread.join();
    }
    SetLogSink(nullptr);
    EXPECT_EQ(2000, heard);
}
