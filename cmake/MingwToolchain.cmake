# Builds for 64-bit Windows on Debian, with mingw-w64 (package g++-mingw-w64-x86-64-posix). What was built runs under
# Wine (package wine64), which ctest uses by itself.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix) # GoogleTest asks for one
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

# Libraries are those of the target, programs those of this machine.
set(CMAKE_FIND_ROOT_PATH /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# The JSON library is headers only, so this machine's package serves; but its include folder, /usr/include, must not be
# searched for anything else. A link to the folder of its headers makes a prefix of its own.
get_property(is_trial GLOBAL PROPERTY IN_TRY_COMPILE)
if(NOT is_trial)
  set(prefix ${CMAKE_BINARY_DIR}/packages)
  file(MAKE_DIRECTORY ${prefix}/include)
  file(CREATE_LINK /usr/include/boost ${prefix}/include/boost SYMBOLIC)
  set(Boost_INCLUDE_DIR ${prefix}/include CACHE PATH "Where the headers of the JSON library are")
endif()

find_program(STYLES_WINE NAMES wine64 PATHS /usr/lib/wine NO_CMAKE_FIND_ROOT_PATH)
if(STYLES_WINE)
  set(CMAKE_CROSSCOMPILING_EMULATOR ${STYLES_WINE})
endif()
