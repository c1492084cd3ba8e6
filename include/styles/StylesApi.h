/// \file
/// What every exported header needs: the export macro and the version of the library.
#pragma once

// The version, in one place: the build reads these three lines.
#define STYLES_VERSION_MAJOR 1 ///< Changes when hosts must change.
#define STYLES_VERSION_MINOR 0 ///< Changes when hosts may want to.
#define STYLES_VERSION_PATCH 0 ///< Changes with every other release.

/// Marks what the shared library exports. Everything else is hidden.
#if defined(STYLES_STATIC)
#    define STYLES_API
#elif defined(_WIN32)
#    if defined(STYLES_BUILDING)
#        define STYLES_API __declspec(dllexport)
#    else
#        define STYLES_API __declspec(dllimport)
#    endif
#else
#    define STYLES_API __attribute__((visibility("default")))
#endif
