# What the project's libraries have in common.
#
#   styles_add_library(<target> OUTPUT_NAME <name> SOURCES <folder> INCLUDE <folder> API <prefix>)
#
# Builds every .cpp under SOURCES into <target> (alias styles::<target>), a shared library unless
# BUILD_SHARED_LIBS is off. INCLUDE holds the public headers, SOURCES also the private ones. Nothing is
# exported but what carries <prefix>_API: the library itself is compiled with <prefix>_BUILDING, and a
# static one hands <prefix>_STATIC to whoever uses it.
include_guard()

function(styles_add_library target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "OUTPUT_NAME;SOURCES;INCLUDE;API" "")

  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${arg_SOURCES}/*.cpp)
  add_library(${target} ${sources})
  add_library(styles::${target} ALIAS ${target})

  target_compile_features(${target} PUBLIC cxx_std_20)
  target_include_directories(${target}
    PUBLIC $<BUILD_INTERFACE:${arg_INCLUDE}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
    PRIVATE ${arg_SOURCES})

  if(APPLE)
    set(own_folder @loader_path)
  else()
    set(own_folder $ORIGIN)
  endif()
  set_target_properties(${target} PROPERTIES
    OUTPUT_NAME ${arg_OUTPUT_NAME}
    VERSION ${PROJECT_VERSION}
    SOVERSION ${PROJECT_VERSION_MAJOR}
    CXX_VISIBILITY_PRESET hidden
    VISIBILITY_INLINES_HIDDEN ON
    POSITION_INDEPENDENT_CODE ON
    DEFINE_SYMBOL ${arg_API}_BUILDING
    INSTALL_RPATH ${own_folder})

  get_target_property(type ${target} TYPE)
  if(type STREQUAL "STATIC_LIBRARY")
    target_compile_definitions(${target} PUBLIC ${arg_API}_STATIC)
  endif()
endfunction()
