// A module that a test loads while the program runs.
#pragma once

#include <filesystem>
#include <utility>
#if defined(_WIN32)
#    include "support/WindowsHeader.h"
#else
#    include <dlfcn.h>
#endif

namespace Support
{

/// Loads the module of a path, and unloads it again.
class LoadedModule
{
public:
    LoadedModule() = default;
    explicit LoadedModule(const std::filesystem::path& path) : m_module(Load(path)) {}
    LoadedModule(LoadedModule&& other) noexcept : m_module(std::exchange(other.m_module, nullptr)) {}
    LoadedModule& operator=(LoadedModule&& other) noexcept
    {
        std::swap(m_module, other.m_module);
        return *this;
    }
    ~LoadedModule() { Unload(); }

    void Unload()
    {
        if (m_module != nullptr)
        {
            Free(std::exchange(m_module, nullptr));
        }
    }

    /// Whether it is loaded.
    explicit operator bool() const noexcept { return m_module != nullptr; }

    /// A function that it exports with C linkage; null when it has none of that name.
    template <class Function>
    Function* Find(const char* name) const
    {
        return reinterpret_cast<Function*>(FindAddress(name));
    }

private:
#if defined(_WIN32)
    using Handle = HMODULE;

    static Handle Load(const std::filesystem::path& path)
    {
        return LoadLibraryW(std::filesystem::absolute(path).make_preferred().c_str());
    }
    static void Free(Handle module)
    {
        FreeLibrary(module);
    }
    void* FindAddress(const char* name) const
    {
        return reinterpret_cast<void*>(GetProcAddress(m_module, name));
    }
#else
    using Handle = void*;

    static Handle Load(const std::filesystem::path& path)
    {
        return dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    }
    static void Free(Handle module)
    {
        dlclose(module);
    }
    void* FindAddress(const char* name) const
    {
        return dlsym(m_module, name);
    }
#endif

    Handle m_module = nullptr;
};

} // namespace Support
