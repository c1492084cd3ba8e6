#pragma once

/// @file
/// Process-wide single objects: however many modules (programs, shared libraries) carry the code of
/// `Singleton<T, N>`, all of them reach one instance, through a table that this library keeps.

#include "VelPlatform/VelApi.h"
#include "VelUtils/Delegate.h"

#include <atomic>
#include <cstdlib>
#include <memory>
#include <mutex>
#include <typeindex>
#include <typeinfo>

namespace VelUtils
{

/// A lock for one record of the singleton table.
class ThreadLock
{
public:
    ThreadLock() = default;
    ThreadLock(const ThreadLock&) = delete;
    ThreadLock& operator=(const ThreadLock&) = delete;

private:
    friend class WriteLock;
    std::mutex m_mutex;
};

/// Holds a ThreadLock alone, from construction to destruction.
class WriteLock
{
public:
    /// Waits until nobody else holds the lock, which must outlive this object.
    explicit WriteLock(ThreadLock& lock) : m_guard(lock.m_mutex) {}

private:
    std::lock_guard<std::mutex> m_guard;
};

/// What the process knows of one singleton. Knows nothing of the type's code, so it outlives the module that made it.
struct SingletonRecord
{
    std::atomic<void*> instance{nullptr}; ///< Null while there is none.
    std::atomic<bool> finished{false};    ///< Released for good; the making of another instance takes it back.
    ThreadLock lock;                      ///< Held while the instance is made or deleted.
};

/// The table of all singletons of the process. Safe from any thread; it is never destroyed, so it serves to the very
/// end of the process.
class VEL_API SingletonLibrary
{
public:
    /// What a module is told by: it is to forget its record.
    using ResetCallback = basic_safe_function<void()>;

    /// The record of the type, or null when there is none and `create` is false; otherwise `makeRecord` makes it and
    /// the table owns it. The caller, one per module and type, is entered as a user of the record, under the address
    /// of `reset`, and may keep the record until it calls NotifySingletonModuleUnloaded() or RemoveCallback().
    /// `reset` is not called before the former. Throws std::bad_alloc and what `makeRecord` throws, the table being as
    /// it was.
    static SingletonRecord* GetEntryForType(std::type_index type,
                                            Delegate<std::unique_ptr<SingletonRecord>()> makeRecord, bool create,
                                            ResetCallback* reset);

    /// Tells that the module that entered `reset` goes: calls `reset`, so that the module forgets the record, and
    /// then does what RemoveCallback() does. Unknown and null pointers change nothing.
    static void NotifySingletonModuleUnloaded(ResetCallback* reset);

    /// Strikes the user `reset` from its record, without calling it. The record dies with its last user. Unknown and
    /// null pointers change nothing.
    static void RemoveCallback(ResetCallback* reset) noexcept;
};

namespace Detail
{

/// Tells numbered singletons of one type apart in the table.
template <class T, int N>
struct NumberedSingleton;

template <class T, int N>
std::type_index GetSingletonType() noexcept
{
    if constexpr (N == 0)
    {
        return typeid(T);
    }
    else
    {
        return typeid(NumberedSingleton<T, N>*);
    }
}

} // namespace Detail

/// The one `T` with the number `N` of the process. `T` is made and deleted only here; its constructor and destructor
/// may be private with this class as a friend. Making and releasing are safe from any thread; a constructor must not
/// ask for the instance that it is making. A module that exports the singleton of a class instantiates this template
/// explicitly, others may leave that to the compiler.
template <class T, int N>
class Singleton
{
public:
    /// The instance, made on first use, also anew after it was released. Throws what the constructor of `T` throws, or
    /// std::bad_alloc; the next call tries again.
    static T& GetInstance();
    /// Whether there is an instance now; makes none.
    static bool HasInstance();
    /// Deletes the instance, if there is one. References to it end. `final` marks the record as finished.
    static void ReleaseInstance(bool final);

    /// A new `T`, which the caller owns; the instance stays as it is. Used by GetInstance().
    static T* CreateInstance();
    /// Deletes what CreateInstance() made; null is nothing.
    static void DeleteInstance(T* instance);

    /// The record that the process keeps; null when there is none and `create` is false.
    static SingletonRecord* GetSingletonData(bool create);
    /// Makes the instance of the record, if there is none.
    static void CreateSingletonData(SingletonRecord* data);
    /// Has StaticFinalizer() called, once more, when the module is unloaded or the process ends.
    static void RegisterFinalizer();
    /// Releases the instance, if this module made it, and gives the module's part in the record up. Whoever asks for
    /// the instance afterwards gets a new one.
    static void StaticFinalizer();

private:
    static void ForgetRecord();

    // Every module's own, whoever exports the functions.
    VEL_HIDDEN static std::atomic<SingletonRecord*> s_record; // what the table gave, while this module is a user of it
    VEL_HIDDEN static std::atomic<void*> s_made;              // the instance that this module's code made
    VEL_HIDDEN static std::atomic<bool> s_finalizedAfterMaking;
    VEL_HIDDEN static std::mutex s_moduleLock; // guards what stands below
    VEL_HIDDEN static SingletonLibrary::ResetCallback* s_reset;
};

template <class T, int N>
std::atomic<SingletonRecord*> Singleton<T, N>::s_record{nullptr};
template <class T, int N>
std::atomic<void*> Singleton<T, N>::s_made{nullptr};
template <class T, int N>
std::atomic<bool> Singleton<T, N>::s_finalizedAfterMaking{false};
template <class T, int N>
std::mutex Singleton<T, N>::s_moduleLock;
template <class T, int N>
SingletonLibrary::ResetCallback* Singleton<T, N>::s_reset = nullptr;

template <class T, int N>
T& Singleton<T, N>::GetInstance()
{
    SingletonRecord* const data = GetSingletonData(true);
    CreateSingletonData(data);
    return *static_cast<T*>(data->instance.load(std::memory_order_acquire));
}

template <class T, int N>
bool Singleton<T, N>::HasInstance()
{
    SingletonRecord* const data = GetSingletonData(false);
    return data && data->instance.load(std::memory_order_acquire);
}

template <class T, int N>
void Singleton<T, N>::ReleaseInstance(bool final)
{
    SingletonRecord* const data = GetSingletonData(false);
    if (!data)
    {
        return;
    }
    const WriteLock lock(data->lock);
    // Forgotten only when it is gone: what its destructor calls may still ask for it.
    DeleteInstance(static_cast<T*>(data->instance.load(std::memory_order_acquire)));
    data->instance.store(nullptr, std::memory_order_release);
    s_made.store(nullptr, std::memory_order_relaxed);
    if (final)
    {
        data->finished.store(true, std::memory_order_relaxed);
    }
}

template <class T, int N>
T* Singleton<T, N>::CreateInstance()
{
    return new T;
}

template <class T, int N>
void Singleton<T, N>::DeleteInstance(T* instance)
{
    delete instance;
}

template <class T, int N>
SingletonRecord* Singleton<T, N>::GetSingletonData(bool create)
{
    if (SingletonRecord* const known = s_record.load(std::memory_order_acquire))
    {
        return known;
    }
    const std::lock_guard guard(s_moduleLock);
    if (SingletonRecord* const known = s_record.load(std::memory_order_relaxed))
    {
        return known;
    }
    auto reset = std::make_unique<SingletonLibrary::ResetCallback>(&ForgetRecord);
    SingletonRecord* const found = SingletonLibrary::GetEntryForType(
        Detail::GetSingletonType<T, N>(), [] { return std::make_unique<SingletonRecord>(); }, create, reset.get());
    if (found)
    {
        s_reset = reset.release();
        s_record.store(found, std::memory_order_release);
        RegisterFinalizer();
    }
    return found;
}

template <class T, int N>
void Singleton<T, N>::CreateSingletonData(SingletonRecord* data)
{
    if (data->instance.load(std::memory_order_acquire))
    {
        return;
    }
    const WriteLock lock(data->lock);
    if (!data->instance.load(std::memory_order_relaxed))
    {
        T* const made = CreateInstance();
        s_made.store(made, std::memory_order_relaxed);
        data->finished.store(false, std::memory_order_relaxed);
        data->instance.store(made, std::memory_order_release);
        // Again, behind the statics that the constructor used: they must outlive the instance.
        if (!s_finalizedAfterMaking.exchange(true))
        {
            RegisterFinalizer();
        }
    }
}

template <class T, int N>
void Singleton<T, N>::RegisterFinalizer()
{
    // This is the exit list of the module whose code this is. Without room there, the instance lives to the end.
    static_cast<void>(std::atexit(&StaticFinalizer));
}

template <class T, int N>
void Singleton<T, N>::StaticFinalizer()
{
    SingletonRecord* const data = s_record.load(std::memory_order_acquire);
    void* const made = s_made.load(std::memory_order_relaxed);
    if (data && made && data->instance.load(std::memory_order_acquire) == made)
    {
        ReleaseInstance(true);
    }
    const std::lock_guard guard(s_moduleLock);
    SingletonLibrary::NotifySingletonModuleUnloaded(s_reset);
    delete s_reset;
    s_reset = nullptr;
    s_finalizedAfterMaking.store(false);
}

template <class T, int N>
void Singleton<T, N>::ForgetRecord()
{
    s_record.store(nullptr, std::memory_order_release);
}

} // namespace VelUtils
