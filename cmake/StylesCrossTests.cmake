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

# styles_copy_runtime()
#
# Puts the compiler's runtime beside the programs. All modules of a process share it: linked into each of them, it would
# know in each only of the exceptions that this one throws.
function(styles_copy_runtime)
  foreach(library IN ITEMS libstdc++-6 libgcc_s_seh-1 libwinpthread-1)
    execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${library}.dll
      OUTPUT_VARIABLE file OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
    file(COPY ${file} DESTINATION ${CMAKE_RUNTIME_OUTPUT_DIRECTORY})
  endforeach()
endfunction()

# styles_add_static_libraries(<target>)
#
# The sources of the libraries once more, as one static library, for a program that replaces operator new: on Windows a
# shared library has one of its own, whatever the program does with its.
function(styles_add_static_libraries target)
  find_package(Boost 1.75 REQUIRED)
  add_library(${target} STATIC)
  foreach(library IN ITEMS styles platform)
    target_sources(${target} PRIVATE $<TARGET_PROPERTY:${library},SOURCES>)
    target_include_directories(${target} PUBLIC $<TARGET_PROPERTY:${library},INCLUDE_DIRECTORIES>)
  endforeach()
  target_link_libraries(${target} PRIVATE Boost::headers)
  target_compile_definitions(${target} PUBLIC STYLES_STATIC VEL_STATIC)
  target_compile_features(${target} PUBLIC cxx_std_20)
  target_link_options(${target} PUBLIC -static) # the runtime too calls the operator new of the program then
endfunction()

# styles_add_whole_program(<program> <folder>)
#
# One ctest, named after the folder, of all tests in a program.
function(styles_add_whole_program program folder)
  add_test(NAME ${folder} COMMAND ${program} --gtest_brief=1)
  set_tests_properties(${folder} PROPERTIES LABELS ${folder} TIMEOUT 600)
endfunction()
