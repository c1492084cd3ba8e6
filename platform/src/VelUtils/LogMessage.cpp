#include "VelUtils/LogMessage.h"

#include <atomic>
#include <memory>
#include <mutex>

namespace VelUtils
{

namespace
{

struct Log
{
    std::atomic<bool> listening{false};
    std::mutex lock;
    std::shared_ptr<const LogSink> sink;
};

/// Never destroyed: messages may come while the process ends.
Log& GetLog()
{
    static Log& log = *new Log;
    return log;
}

} // namespace

void LogMessage(const VelPlatform::VelString& text) noexcept
{
    try
    {
        Log& log = GetLog();
        if (!log.listening.load(std::memory_order_acquire))
        {
            return;
        }
        std::shared_ptr<const LogSink> sink;
        {
            const std::lock_guard guard(log.lock);
            sink = log.sink;
        }
        // Called without the lock, so that a sink may log or exchange the sink itself.
        if (sink)
        {
            (*sink)(text);
        }
    }
    catch (...)
    {}
}

LogSink SetLogSink(LogSink sink)
{
    Log& log = GetLog();
    std::shared_ptr<const LogSink> next = sink ? std::make_shared<const LogSink>(std::move(sink)) : nullptr;
    LogSink before;
    const std::lock_guard guard(log.lock);
    if (log.sink)
    {
        before = *log.sink;
    }
    log.listening.store(next != nullptr, std::memory_order_release);
    log.sink.swap(next);
    return before;
}

bool IsLogging() noexcept
{
    return GetLog().listening.load(std::memory_order_acquire);
}

} // namespace VelUtils
