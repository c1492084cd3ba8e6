#include "faults/FailingAllocations.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace Styles::Testing
{

void FailurePoints::Count() noexcept
{
    Arm(0, FailureMode::Once);
}

void FailurePoints::Arm(std::size_t n, FailureMode mode) noexcept
{
    m_active = true;
    m_failed = false;
    m_reached = 0;
    m_failAt = n;
    m_mode = mode;
}

void FailurePoints::Disarm() noexcept
{
    m_active = false;
}

bool FailurePoints::Reach() noexcept
{
    if (!m_active)
    {
        return false;
    }
    ++m_reached;
    const bool fails = m_failAt != 0 && (m_mode == FailureMode::Once ? m_reached == m_failAt : m_reached >= m_failAt);
    m_failed = m_failed || fails;
    return fails;
}

namespace
{

thread_local constinit FailurePoints allocations;
constinit std::atomic<std::size_t> live = 0;

} // namespace

FailurePoints& AllocationPoints() noexcept
{
    return allocations;
}

std::size_t GetLiveAllocations() noexcept
{
    return live.load(std::memory_order_relaxed);
}

namespace
{

#if defined(_WIN32) // whose memory with an alignment is given back by a function of its own

void* AllocateAligned(std::size_t size, std::size_t alignment) noexcept
{
    return _aligned_malloc(size, alignment);
}
void FreeAligned(void* memory) noexcept
{
    _aligned_free(memory);
}

#else

void* AllocateAligned(std::size_t size, std::size_t alignment) noexcept
{
    return std::aligned_alloc(alignment, (size + alignment - 1) / alignment * alignment);
}
void FreeAligned(void* memory) noexcept
{
    std::free(memory);
}

#endif

void* AllocateOrNull(std::size_t size, std::size_t alignment) noexcept
{
    if (allocations.Reach())
    {
        return nullptr;
    }
    const std::size_t wanted = size == 0 ? 1 : size;
    void* memory = alignment == 0 ? std::malloc(wanted) : AllocateAligned(wanted, alignment);
    if (memory != nullptr)
    {
        live.fetch_add(1, std::memory_order_relaxed);
    }
    return memory;
}

void* Allocate(std::size_t size, std::size_t alignment)
{
    if (void* memory = AllocateOrNull(size, alignment))
    {
        return memory;
    }
    throw std::bad_alloc();
}

void GiveBack(void* memory, void (*release)(void*) noexcept) noexcept
{
    if (memory != nullptr)
    {
        live.fetch_sub(1, std::memory_order_relaxed);
        release(memory);
    }
}

void GiveBack(void* memory) noexcept
{
    GiveBack(memory, [](void* plain) noexcept { std::free(plain); });
}

void GiveBackAligned(void* memory) noexcept
{
    GiveBack(memory, &FreeAligned);
}

} // namespace

} // namespace Styles::Testing

namespace Faults = Styles::Testing;

void* operator new(std::size_t size)
{
    return Faults::Allocate(size, 0);
}
void* operator new[](std::size_t size)
{
    return Faults::Allocate(size, 0);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return Faults::AllocateOrNull(size, 0);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return Faults::AllocateOrNull(size, 0);
}
void* operator new(std::size_t size, std::align_val_t alignment)
{
    return Faults::Allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment)
{
    return Faults::Allocate(size, static_cast<std::size_t>(alignment));
}
void* operator new(std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
    return Faults::AllocateOrNull(size, static_cast<std::size_t>(alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment, const std::nothrow_t&) noexcept
{
    return Faults::AllocateOrNull(size, static_cast<std::size_t>(alignment));
}

void operator delete(void* memory) noexcept
{
    Faults::GiveBack(memory);
}
void operator delete[](void* memory) noexcept
{
    Faults::GiveBack(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    Faults::GiveBack(memory);
}
void operator delete[](void* memory, std::size_t) noexcept
{
    Faults::GiveBack(memory);
}
void operator delete(void* memory, const std::nothrow_t&) noexcept
{
    Faults::GiveBack(memory);
}
void operator delete[](void* memory, const std::nothrow_t&) noexcept
{
    Faults::GiveBack(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept
{
    Faults::GiveBackAligned(memory);
}
void operator delete[](void* memory, std::align_val_t) noexcept
{
    Faults::GiveBackAligned(memory);
}
void operator delete(void* memory, std::size_t, std::align_val_t) noexcept
{
    Faults::GiveBackAligned(memory);
}
void operator delete[](void* memory, std::size_t, std::align_val_t) noexcept
{
    Faults::GiveBackAligned(memory);
}
void operator delete(void* memory, std::align_val_t, const std::nothrow_t&) noexcept
{
    Faults::GiveBackAligned(memory);
}
void operator delete[](void* memory, std::align_val_t, const std::nothrow_t&) noexcept
{
    Faults::GiveBackAligned(memory);
}
