// The system's header on Windows, without its macros named like standard functions.
#pragma once

#if !defined(NOMINMAX)
#    define NOMINMAX
#endif
#if !defined(WIN32_LEAN_AND_MEAN)
#    define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>
