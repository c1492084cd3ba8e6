// What the host asks of a plug-in, and a type of values that only they know.
#pragma once

#include <styles/Styles.h>

#include <typeinfo>

#if defined(_WIN32)
#    define PLUGIN_EXPORT extern "C" __declspec(dllexport)
#else
#    define PLUGIN_EXPORT extern "C" __attribute__((visibility("default")))
#endif

struct Length
{
    double millimetres = 0;
    bool operator==(const Length&) const = default;
};

/// What a plug-in sees of the things of which there must be one in the process.
struct View
{
    Styles::StyleManager* manager;
    Styles::PropertyKey key;
    const std::type_info* style;
    const std::type_info* definition;
    const std::type_info* length;
};

using LookFunction = void (*)(View&);
using RegisterFunction = void (*)();
using MakeFunction = Styles::Style* (*)();
using ReadFunction = bool (*)(const Styles::Style&, const Styles::Any& length);
