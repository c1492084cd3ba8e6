#pragma once

/// @file
/// Marks what the platform library exports. A static library defines VEL_STATIC; the library itself is compiled with
/// VEL_BUILDING.

/// @def VEL_API
/// For functions, objects and classes that are compiled into the library.

/// @def VEL_VISIBLE
/// For class templates that live wholly in their header, so that every module of a process means the same type.

/// @def VEL_HIDDEN
/// For what every module has for itself even so: an exported variable of a template would keep its module from ever
/// being unloaded.

#if defined(VEL_STATIC)
#    define VEL_API
#elif defined(_WIN32)
#    if defined(VEL_BUILDING)
#        define VEL_API __declspec(dllexport)
#    else
#        define VEL_API __declspec(dllimport)
#    endif
#else
#    define VEL_API __attribute__((visibility("default")))
#endif

#if defined(_WIN32)
#    define VEL_VISIBLE
#    define VEL_HIDDEN
#else
#    define VEL_VISIBLE __attribute__((visibility("default")))
#    define VEL_HIDDEN __attribute__((visibility("hidden")))
#endif
