// Loads two plug-ins, each linked to the library like the host itself, and finds that all three see the same keys,
// types, values and manager, and that a plug-in goes away cleanly once it has taken its definitions back.
#include "Plugin.h"

#include <cstdlib>
#include <iostream>
#include <memory>

#if defined(_WIN32)
#    include <windows.h>
#else
#    include <dlfcn.h>
#endif

using namespace Styles;

namespace
{

void Check(bool holds, const char* what)
{
    std::cout << (holds ? "yes: " : "NO: ") << what << '\n';
    if (!holds)
    {
        std::exit(EXIT_FAILURE);
    }
}

class Plugin
{
public:
#if defined(_WIN32)
    explicit Plugin(const char* file) : m_file(file), m_module(LoadLibraryA(file)) {}
    void Unload()
    {
        FreeLibrary(m_module);
    }
    bool IsLoaded() const
    {
        return GetModuleHandleA(m_file) != nullptr;
    }
    explicit operator bool() const
    {
        return m_module != nullptr;
    }
    template <class Function>
    Function Find(const char* name) const
    {
        return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(m_module, name)));
    }

private:
    const char* m_file;
    HMODULE m_module;
#else
    explicit Plugin(const char* file) : m_file(file), m_module(dlopen(file, RTLD_NOW | RTLD_LOCAL)) {}
    void Unload()
    {
        dlclose(m_module);
    }
    bool IsLoaded() const
    {
        return dlopen(m_file, RTLD_NOW | RTLD_NOLOAD) != nullptr;
    }
    explicit operator bool() const
    {
        return m_module != nullptr;
    }
    template <class Function>
    Function Find(const char* name) const
    {
        return reinterpret_cast<Function>(dlsym(m_module, name));
    }

private:
    const char* m_file;
    void* m_module;
#endif
};

bool SeesTheSame(const Plugin& plugin, const PropertyKey& shape)
{
    View view{};
    plugin.Find<LookFunction>("Look")(view);
    return view.manager == &VelUtils::Singleton<StyleManager, 0>::GetInstance() && view.key == shape &&
           *view.style == typeid(Style) && *view.definition == typeid(BaseStyleProperty) &&
           *view.length == typeid(Length);
}

} // namespace

int main(int count, char** arguments)
{
    Check(count == 3, "two plug-ins are named");
    Plugin shapes(arguments[1]);
    const Plugin texts(arguments[2]);
    Check(shapes && texts, "both are loaded");

    const PropertyKey shape(L"shape");
    const PropertyKey width(L"width");
    Check(SeesTheSame(shapes, shape) && SeesTheSame(texts, shape), "manager, keys and types are one");

    shapes.Find<RegisterFunction>("Register")();
    std::unique_ptr<Style> style(shapes.Find<MakeFunction>("Make")());
    Check(style->GetProperty(PropertyKey(L"length")).Get<Length>() == Length{2},
          "the host reads what a plug-in stored");
    Check(texts.Find<ReadFunction>("Read")(*style, Any(Length{2})), "the other plug-in reads it");

    auto& manager = VelUtils::Singleton<StyleManager, 0>::GetInstance();
    Check(style->GetProperty(width) == Any(0.25), "the default of a plug-in's definition holds everywhere");
    Check(manager.GetStyleProperty(shape, width)->IsEqual(Any(1.0), Any(2.0)), "and so does its code");

    Any own;
    const Style other(nullptr, shape);
    style.reset();
    shapes.Find<RegisterFunction>("Deregister")();
    shapes.Unload();
    Check(!shapes.IsLoaded(), "the plug-in is gone");

    Check(manager.GetStyleProperty(shape, width) == nullptr, "its definitions are gone with it");
    Check(!other.GetOverrideProperty(width, own) && own.IsEmpty(), "styles of its category go on without them");
    Check(SeesTheSame(texts, shape), "the other plug-in goes on");
    ResetStyleManager();
}
