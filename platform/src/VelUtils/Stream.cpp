#include "VelUtils/Stream.h"

#include <exception>
#include <utility>

namespace VelUtils
{

/// What all handles on one stream share.
struct Stream::State
{
    explicit State(std::unique_ptr<Device> opened) : device(std::move(opened)) {}

    ~State()
    {
        if (device && written && !failed)
        {
            Commit();
        }
    }

    bool IsOpen() const noexcept { return device && !failed; }

    /// Does something with the device, which is dropped when that fails. What the device throws passes through, and
    /// counts as a failure.
    template <class Action>
    bool Try(Action action)
    {
        failed = true;
        failed = !action(*device);
        if (failed)
        {
            device.reset();
        }
        return !failed;
    }

    bool Commit() noexcept
    {
        try
        {
            Try([](Device& opened) { return opened.Commit(); });
        }
        catch (...)
        {
            // Failed it has already.
        }
        device.reset();
        return !failed;
    }

    std::unique_ptr<Device> device; ///< null once it is closed or has failed
    bool written = false;
    bool failed = false;
};

Stream::Device::~Device() = default;

Stream::Stream() noexcept : m_exceptionsPassing(std::uncaught_exceptions()) {}

Stream::Stream(std::unique_ptr<Device> device)
    : m_state(device ? std::make_shared<State>(std::move(device)) : nullptr),
      m_exceptionsPassing(std::uncaught_exceptions())
{}

Stream::Stream(const Stream& other) noexcept : m_state(other.m_state), m_exceptionsPassing(std::uncaught_exceptions())
{}

Stream::Stream(Stream&& other) noexcept
    : m_state(std::move(other.m_state)), m_exceptionsPassing(std::uncaught_exceptions())
{}

Stream::~Stream()
{
    if (std::uncaught_exceptions() > m_exceptionsPassing)
    {
        GiveUp();
    }
}

Stream& Stream::operator=(const Stream& other) noexcept
{
    return *this = Stream(other);
}

Stream& Stream::operator=(Stream&& other) noexcept
{
    std::shared_ptr<State> taken = std::move(other.m_state);
    m_state.swap(taken);
    m_exceptionsPassing = std::uncaught_exceptions();
    return *this;
}

Stream::operator bool() const noexcept
{
    return m_state && m_state->IsOpen();
}

std::size_t Stream::Read(void* target, std::size_t size)
{
    std::size_t total = 0;
    while (total < size && *this)
    {
        std::size_t read = 0;
        char* const free = static_cast<char*>(target) + total;
        if (!m_state->Try([&](Device& device) { return device.Read(free, size - total, read); }) || read == 0)
        {
            break;
        }
        total += read;
    }
    return total;
}

bool Stream::Write(const void* source, std::size_t size)
{
    if (!*this || size == 0)
    {
        return static_cast<bool>(*this);
    }
    m_state->written = true;
    return m_state->Try([&](Device& device) { return device.Write(source, size); });
}

bool Stream::Close()
{
    if (*this)
    {
        return m_state->Commit();
    }
    return m_state && !m_state->failed;
}

void Stream::GiveUp() noexcept
{
    if (*this)
    {
        m_state->failed = true;
        m_state->device.reset();
    }
}

bool Stream::Failed() const noexcept
{
    return m_state && m_state->failed;
}

namespace
{

class MemoryDevice final : public Stream::Device
{
public:
    explicit MemoryDevice(std::shared_ptr<std::string> bytes) : m_bytes(std::move(bytes)) {}

    bool Read(void* target, std::size_t size, std::size_t& read) override
    {
        read = m_bytes->copy(static_cast<char*>(target), size, m_position);
        m_position += read;
        return true;
    }
    bool Write(const void* source, std::size_t size) override
    {
        m_bytes->append(static_cast<const char*>(source), size);
        return true;
    }
    bool Commit() override { return true; }

private:
    std::shared_ptr<std::string> m_bytes;
    std::size_t m_position = 0;
};

} // namespace

MemoryStream::MemoryStream() : MemoryStream(std::string_view()) {}

MemoryStream::MemoryStream(std::string_view bytes) : MemoryStream(std::make_shared<std::string>(bytes)) {}

MemoryStream::MemoryStream(std::shared_ptr<std::string> bytes)
    : Stream(std::make_unique<MemoryDevice>(bytes)), m_bytes(std::move(bytes))
{}

const std::string& MemoryStream::GetBytes() const noexcept
{
    return *m_bytes;
}

} // namespace VelUtils
