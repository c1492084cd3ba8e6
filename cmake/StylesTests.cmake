# How test programs are made. One program per folder of tests/, all with the main function of
# tests/support/Main.cpp.
include_guard()
include(GoogleTest)
include(StylesCrossTests)

set(STYLES_TEST_DATA "${PROJECT_SOURCE_DIR}/../shared/data" CACHE PATH
  "Folder of test data that is not part of the project; tests that use it pass without")

# A quarter of the time that a test's source takes to compile goes into the headers of the test framework. Batches
# share it, which pays where everything is built from nothing, and costs where one file is edited over and over.
option(STYLES_BATCH_TESTS "Compile the sources of each test program in batches" OFF)

# styles_add_test_program(<folder> [LIBRARIES <target>...])
#
# Makes <folder>_tests of the sources in tests/<folder>, and a ctest of every test in it, named
# <folder>/<Suite>.<Test> and labelled <folder>. Does nothing while the folder has no tests.
# In a build for another system one ctest runs the program as a whole.
#
# Two subfolders are not part of the program:
#   modules/<Name>.cpp    becomes a shared object with the file name <Name>.dll, in STYLES_TEST_MODULES
#   programs/<Name>.cpp   becomes a program of that name, in STYLES_TEST_PROGRAMS
# The tests find both through these macros, and the source tree through STYLES_SOURCE_FOLDER.
function(styles_add_test_program folder)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "LIBRARIES")
  styles_test_sources(${folder} sources)
  if(NOT sources)
    return()
  endif()

  set(program ${folder}_tests)
  add_executable(${program} ${sources} $<TARGET_OBJECTS:test_main>)
  target_link_libraries(${program} PRIVATE ${arg_LIBRARIES} GTest::gmock)
  styles_add_test_helpers(${program} ${folder} "${arg_LIBRARIES}")
  styles_set_up_test_target(${program})
  set_target_properties(${program} PROPERTIES UNITY_BUILD ${STYLES_BATCH_TESTS} UNITY_BUILD_BATCH_SIZE 6)
  if(STYLES_BATCH_TESTS AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Takes the files of a batch for headers, which should have no fixtures in anonymous namespaces.
    target_compile_options(${program} PRIVATE -Wno-subobject-linkage)
  endif()
  styles_register_tests(${program} ${folder})
  set_property(GLOBAL APPEND PROPERTY STYLES_TEST_PROGRAMS ${program})
endfunction()

# Makes the tests of a program known to ctest.
function(styles_register_tests program folder)
  if(CMAKE_CROSSCOMPILING)
    styles_add_whole_program(${program} ${folder})
  else()
    gtest_discover_tests(${program} TEST_PREFIX ${folder}/ PROPERTIES LABELS ${folder} DISCOVERY_TIMEOUT 120)
  endif()
endfunction()

option(STYLES_THREAD_TESTS_ONLY "Leave out sources without a test that starts threads (one with Thread in its name)" OFF)

# The sources of the program of a folder: all but those that become modules, programs and other programs.
function(styles_test_sources folder out_variable)
  file(GLOB_RECURSE sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  list(FILTER sources EXCLUDE REGEX "/${folder}/(border|modules|programs)/")
  if(STYLES_THREAD_TESTS_ONLY)
    set(all ${sources})
    set(sources)
    foreach(source IN LISTS all)
      file(STRINGS ${source} thread_tests REGEX "^TEST.*Thread")
      if(thread_tests)
        list(APPEND sources ${source})
      endif()
    endforeach()
  endif()
  set(${out_variable} ${sources} PARENT_SCOPE)
endfunction()

# Where tests find their own headers (from tests/) and the files built beside them.
function(styles_set_up_test_target target)
  target_include_directories(${target} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
  target_compile_definitions(${target} PRIVATE
    STYLES_SOURCE_FOLDER="${PROJECT_SOURCE_DIR}"
    STYLES_TEST_DATA="${STYLES_TEST_DATA}"
    STYLES_TEST_MODULES="${CMAKE_CURRENT_BINARY_DIR}/modules"
    STYLES_TEST_PROGRAMS="${STYLES_TEST_PROGRAMS}")
endfunction()

# Where programs are put for tests that start them: on Windows beside the libraries that they load.
set(STYLES_TEST_PROGRAMS ${CMAKE_CURRENT_BINARY_DIR}/programs)
if(WIN32 AND CMAKE_RUNTIME_OUTPUT_DIRECTORY)
  set(STYLES_TEST_PROGRAMS ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
endif()

# Builds the modules and programs of a folder, before the test program that loads or starts them.
function(styles_add_test_helpers program folder libraries)
  file(GLOB modules CONFIGURE_DEPENDS ${folder}/modules/*.cpp)
  foreach(source IN LISTS modules)
    cmake_path(GET source STEM name)
    add_library(${folder}_${name} MODULE ${source})
    target_link_libraries(${folder}_${name} PRIVATE ${libraries})
    target_include_directories(${folder}_${name} PRIVATE ${CMAKE_CURRENT_SOURCE_DIR})
    set_target_properties(${folder}_${name} PROPERTIES
      PREFIX "" OUTPUT_NAME ${name} SUFFIX .dll
      LIBRARY_OUTPUT_DIRECTORY ${CMAKE_CURRENT_BINARY_DIR}/modules)
    add_dependencies(${program} ${folder}_${name})
  endforeach()

  file(GLOB programs CONFIGURE_DEPENDS ${folder}/programs/*.cpp)
  foreach(source IN LISTS programs)
    cmake_path(GET source STEM name)
    add_executable(${folder}_${name} ${source})
    target_link_libraries(${folder}_${name} PRIVATE ${libraries})
    styles_set_up_test_target(${folder}_${name})
    set_target_properties(${folder}_${name} PROPERTIES
      OUTPUT_NAME ${name}
      RUNTIME_OUTPUT_DIRECTORY ${STYLES_TEST_PROGRAMS})
    add_dependencies(${program} ${folder}_${name})
  endforeach()
endfunction()

# styles_add_border_test()
#
# Values that cross the border between two shared libraries: the sources of tests/core/border make a second
# library that hides its symbols, but for those ending in Test.cpp, which make the program border_tests.
function(styles_add_border_test)
  file(GLOB sources CONFIGURE_DEPENDS core/border/*.cpp)
  set(tests ${sources})
  list(FILTER tests INCLUDE REGEX "Test\\.cpp$")
  list(FILTER sources EXCLUDE REGEX "Test\\.cpp$")
  if(NOT tests OR NOT sources)
    return()
  endif()

  add_library(border SHARED ${sources})
  set_target_properties(border PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_link_libraries(border PUBLIC styles)
  target_include_directories(border PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})

  add_executable(border_tests ${tests} $<TARGET_OBJECTS:test_main>)
  target_link_libraries(border_tests PRIVATE border GTest::gmock)
  styles_set_up_test_target(border_tests)
  styles_register_tests(border_tests border)
endfunction()

# styles_add_fuzz_targets()
#
# Every tests/fuzz/Fuzz<Name>.cpp becomes the program Fuzz<Name>. With STYLES_FUZZ it is a fuzzer (script/fuzz);
# otherwise it replays the inputs kept in tests/fuzz/corpus/Fuzz<Name>/ as a test.
function(styles_add_fuzz_targets)
  add_custom_target(fuzz_targets)
  # The plain model of styles, which the tests of core/ have too.
  file(GLOB model CONFIGURE_DEPENDS core/Model*.cpp)
  list(FILTER model EXCLUDE REGEX "Test\\.cpp$")
  add_library(model STATIC ${model})
  target_link_libraries(model PUBLIC styles)
  styles_set_up_test_target(model)

  file(GLOB sources CONFIGURE_DEPENDS fuzz/Fuzz*.cpp)
  foreach(source IN LISTS sources)
    cmake_path(GET source STEM program)
    add_executable(${program} ${source})
    target_link_libraries(${program} PRIVATE styles model)
    styles_set_up_test_target(${program})
    add_dependencies(fuzz_targets ${program})
    if(STYLES_FUZZ)
      target_link_options(${program} PRIVATE -fsanitize=fuzzer)
    else()
      target_sources(${program} PRIVATE fuzz/Replay.cpp)
      add_test(NAME fuzz/${program} COMMAND ${program} ${CMAKE_CURRENT_SOURCE_DIR}/fuzz/corpus/${program})
      set_tests_properties(fuzz/${program} PROPERTIES LABELS fuzz)
    endif()
  endforeach()
endfunction()

# styles_add_header_check(<folder>...)
#
# Compiles each header under the folders alone, in a source of its own that includes it twice, and links the
# sources together: a header that leans on another's includes, lacks a guard or lacks an `inline` fails the build.
function(styles_add_header_check)
  set(sources)
  foreach(folder IN LISTS ARGN)
    file(GLOB_RECURSE headers CONFIGURE_DEPENDS RELATIVE ${folder} ${folder}/*.h)
    foreach(header IN LISTS headers)
      set(source ${CMAKE_CURRENT_BINARY_DIR}/headers/${header}.cpp)
      file(CONFIGURE OUTPUT ${source} CONTENT "#include <${header}>\n#include <${header}> // twice\n")
      list(APPEND sources ${source})
    endforeach()
  endforeach()
  set(main ${CMAKE_CURRENT_BINARY_DIR}/headers/main.cpp)
  file(CONFIGURE OUTPUT ${main} CONTENT "int main() { return 0; }\n")
  add_executable(header_check ${main} ${sources})
  target_link_libraries(header_check PRIVATE styles GTest::gmock)
  # Nothing of it runs: what sanitizers and the optimiser add would only cost time.
  target_compile_options(header_check PRIVATE -O0 -g0 -fno-sanitize=all)
endfunction()

# styles_add_house_tests()
#
# Tests of the tree itself, in Python, and of the pages, whose programs and examples are what they say.
function(styles_add_house_tests)
  foreach(script IN ITEMS include_order kept_behaviour guarantees links words)
    add_test(NAME house/${script} COMMAND Python3::Interpreter -B ${CMAKE_CURRENT_SOURCE_DIR}/house/${script}.py)
    set_tests_properties(house/${script} PROPERTIES LABELS house)
  endforeach()

  styles_add_interface_test(layout)
  styles_add_interface_test(cost)
  # What is exported also depends on the compiler and its options: one build stands for each.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND BUILD_SHARED_LIBS)
    if(CMAKE_BUILD_TYPE STREQUAL "Release")
      styles_add_interface_test(symbols $<TARGET_FILE:platform> $<TARGET_FILE:styles>)
    elseif(CMAKE_CXX_FLAGS_DEBUG MATCHES "-fsanitize=address")
      styles_add_interface_test(changes $<TARGET_FILE:platform> $<TARGET_FILE:styles>)
    endif()
  endif()
  styles_add_reference_test()

  styles_add_page_program(readme README.md)
  styles_add_page_program(using_it docs/using-it.md)
  styles_add_page_program(document_format docs/document-format.md SOURCE house/pages/DocumentFormat.cpp LANGUAGE json)
endfunction()

# styles_add_page_program(<name> <page> [SOURCE <file>] [LANGUAGE <language>])
#
# Compiles the C++ that a page shows, or the source, and compares what it prints with what the page shows in that
# language, which is text if none is given.
function(styles_add_page_program name page)
  cmake_parse_arguments(PARSE_ARGV 2 arg "" "SOURCE;LANGUAGE" "")
  set(page ${PROJECT_SOURCE_DIR}/${page})
  set(script ${CMAKE_CURRENT_SOURCE_DIR}/house/page_program.py)
  if(NOT arg_SOURCE)
    set(arg_SOURCE ${CMAKE_CURRENT_BINARY_DIR}/page_${name}.cpp)
    add_custom_command(OUTPUT ${arg_SOURCE}
      COMMAND Python3::Interpreter -B ${script} extract ${page} ${arg_SOURCE}
      DEPENDS ${page} ${script}
      VERBATIM)
  endif()
  add_executable(page_${name} ${arg_SOURCE})
  target_link_libraries(page_${name} PRIVATE styles::styles)
  add_test(NAME house/page_${name}
    COMMAND Python3::Interpreter -B ${script} check ${page} $<TARGET_FILE:page_${name}> ${arg_LANGUAGE})
  set_tests_properties(house/page_${name} PROPERTIES LABELS house)
endfunction()

# styles_add_interface_test(<what> [<argument>...])
function(styles_add_interface_test what)
  set(name house/interface_${what})
  add_test(NAME ${name}
    COMMAND Python3::Interpreter -B ${CMAKE_CURRENT_SOURCE_DIR}/house/interface.py ${what} ${ARGN})
  set_tests_properties(${name} PROPERTIES LABELS house)
endfunction()

# styles_add_reference_test()
#
# Doxygen over the public headers: every declaration has a comment, and one that fits. It reads sources only, so one
# build has it, the optimised one.
function(styles_add_reference_test)
  if(NOT CMAKE_BUILD_TYPE STREQUAL "Release")
    return()
  endif()
  find_program(STYLES_DOXYGEN doxygen REQUIRED)
  set(output ${CMAKE_CURRENT_BINARY_DIR}/reference)
  file(MAKE_DIRECTORY ${output})
  add_test(NAME house/doxygen COMMAND ${STYLES_DOXYGEN} docs/Doxyfile WORKING_DIRECTORY ${PROJECT_SOURCE_DIR})
  set_tests_properties(house/doxygen PROPERTIES LABELS house ENVIRONMENT STYLES_DOCS_OUTPUT=${output})
endfunction()

# styles_add_package_tests()
#
# The library as other projects use it, tests/package: installed as it was built, and in optimised builds also by
# another compiler's projects, as static libraries, and as a part of the other project.
function(styles_add_package_tests)
  set(build_type ${CMAKE_BUILD_TYPE})
  if(NOT build_type)
    set(build_type Release)
  endif()
  string(TOUPPER ${build_type} configuration)
  styles_add_package_test(installed ${CMAKE_CXX_COMPILER})
  if(NOT build_type STREQUAL "Release")
    return()
  endif()
  foreach(mode IN ITEMS static subfolder)
    styles_add_package_test(${mode} ${CMAKE_CXX_COMPILER})
  endforeach()
  find_program(STYLES_OTHER_COMPILER NAMES clang++-14 clang++ REQUIRED)
  styles_add_package_test(other_compiler ${STYLES_OTHER_COMPILER})

  add_test(NAME package/debian COMMAND ${CMAKE_CURRENT_SOURCE_DIR}/package/debian.sh ${PROJECT_BINARY_DIR}
    ${CMAKE_CURRENT_BINARY_DIR}/package/debian)
  set_tests_properties(package/debian PROPERTIES LABELS package TIMEOUT 600 RUN_SERIAL ON)
endfunction()

function(styles_add_package_test mode compiler)
  add_test(NAME package/${mode}
    COMMAND ${CMAKE_COMMAND}
      -D SOURCE=${PROJECT_SOURCE_DIR} -D BUILD=${PROJECT_BINARY_DIR} -D WORK=${CMAKE_CURRENT_BINARY_DIR}/package/${mode}
      -D MODE=${mode} -D COMPILER=${compiler} -D BUILD_TYPE=${build_type}
      "-DFLAGS=${CMAKE_CXX_FLAGS_${configuration}}" "-DLIBRARY_FLAGS=${CMAKE_CXX_FLAGS}"
      -P ${CMAKE_CURRENT_SOURCE_DIR}/package/RunPackageTest.cmake)
  set_tests_properties(package/${mode} PROPERTIES LABELS package TIMEOUT 600 RUN_SERIAL ON)
endfunction()
