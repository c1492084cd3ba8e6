# Tests in a build for another system: the framework is built along, from its sources, and the tests of a program are
# run all at once, because starting a program under an emulator takes longer than most tests.
include_guard()

# styles_add_google_test()
#
# Makes GTest::gmock of the sources that Debian's package googletest installs.
function(styles_add_google_test)
  set(STYLES_GOOGLETEST_SOURCES /usr/src/googletest CACHE PATH "The sources of GoogleTest")
  if(NOT EXISTS ${STYLES_GOOGLETEST_SOURCES}/CMakeLists.txt)
    message(FATAL_ERROR "There are no sources of GoogleTest in ${STYLES_GOOGLETEST_SOURCES} (package googletest)")
  endif()
  # A library of its own for each program, whatever is chosen for the project's libraries.
  set(BUILD_SHARED_LIBS OFF)
  set(INSTALL_GTEST OFF CACHE BOOL "Not a part of what the project installs" FORCE)
  add_subdirectory(${STYLES_GOOGLETEST_SOURCES} ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  foreach(target IN ITEMS gtest gmock)
    target_compile_options(${target} PRIVATE -w)
  endforeach()
endfunction()

# styles_add_objects_of_libraries(<target>)
#
# What shared libraries are made of, to be linked into one program: on Windows each library has an operator new of its
# own, whatever the program does with its one.
function(styles_add_objects_of_libraries target)
  add_library(${target} INTERFACE)
  foreach(library IN ITEMS styles platform)
    target_link_libraries(${target} INTERFACE $<TARGET_OBJECTS:${library}>)
    target_include_directories(${target} INTERFACE $<TARGET_PROPERTY:${library},INTERFACE_INCLUDE_DIRECTORIES>)
  endforeach()
  target_compile_definitions(${target} INTERFACE STYLES_STATIC VEL_STATIC)
  target_compile_features(${target} INTERFACE cxx_std_20)
endfunction()

# styles_add_whole_program(<program> <folder>)
#
# One ctest, named after the folder, of all tests in a program.
function(styles_add_whole_program program folder)
  add_test(NAME ${folder} COMMAND ${program} --gtest_brief=1)
  set_tests_properties(${folder} PROPERTIES LABELS ${folder} TIMEOUT 600)
endfunction()
