# Uses the library as another project would, and fails where that does not work.
#
#   cmake -D SOURCE=<tree> -D WORK=<folder> -D MODE=<mode> [-D BUILD=<folder>] -D COMPILER=... -D BUILD_TYPE=...
#         -D FLAGS=... [-D LIBRARY_FLAGS=...] -P RunPackageTest.cmake
#
#   installed        installs the build in BUILD, moves the folder, and uses the package
#   other_compiler   the same, the users being compiled by COMPILER, another than the library's
#   static           builds and installs the library as static libraries first; then installs them once more, into a
#                    library folder given as an absolute path
#   subfolder        configures the sources as a part of the other project
#
# FLAGS are those of the build type, so that a sanitized library meets a sanitized program; LIBRARY_FLAGS are the
# warnings, which are no matter of the library's users.
foreach(variable IN ITEMS SOURCE WORK MODE COMPILER BUILD_TYPE)
  if(NOT ${variable})
    message(FATAL_ERROR "RunPackageTest.cmake needs ${variable}")
  endif()
endforeach()

function(run)
  execute_process(COMMAND ${ARGV} COMMAND_ECHO STDOUT RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    list(JOIN ARGV " " command)
    message(FATAL_ERROR "failed (${status}): ${command}")
  endif()
endfunction()

string(TOUPPER ${BUILD_TYPE} configuration)
set(options -G Ninja -D CMAKE_BUILD_TYPE=${BUILD_TYPE} -D CMAKE_CXX_COMPILER=${COMPILER}
  "-DCMAKE_CXX_FLAGS_${configuration}=${FLAGS}")
set(prefix ${WORK}/prefix)
set(library_folder ${prefix}/lib)

# build_library(<option>...): the libraries alone, in WORK/library.
function(build_library)
  run(${CMAKE_COMMAND} -S ${SOURCE} -B ${WORK}/library ${options} "-DCMAKE_CXX_FLAGS=${LIBRARY_FLAGS}"
    -D STYLES_BUILD_TESTS=OFF -D STYLES_BUILD_EXAMPLES=OFF -D STYLES_BUILD_BENCHMARKS=OFF ${ARGN})
  run(${CMAKE_COMMAND} --build ${WORK}/library --parallel 2)
endfunction()

# What is private stays private: neither the package files nor the headers know the JSON library or the place
# where the library was built.
function(check_secrets)
  file(GLOB_RECURSE installed ${prefix}/*.cmake ${prefix}/*.h ${prefix}/*.pc)
  if(NOT installed)
    message(FATAL_ERROR "nothing was installed")
  endif()
  foreach(file IN LISTS installed)
    file(READ ${file} text)
    foreach(secret IN ITEMS boost Boost ${SOURCE} ${WORK}/first)
      string(FIND "${text}" ${secret} position)
      if(NOT position EQUAL -1)
        message(FATAL_ERROR "${file} mentions ${secret}")
      endif()
    endforeach()
  endforeach()

  find_program(NM nm REQUIRED)
  file(GLOB_RECURSE libraries ${prefix}/*.so)
  foreach(library IN LISTS libraries)
    execute_process(COMMAND ${NM} -D -C --defined-only ${library} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
    if(symbols MATCHES "[^\n]*boost[^\n]*")
      message(FATAL_ERROR "${library} exports ${CMAKE_MATCH_0}")
    endif()
  endforeach()
endfunction()

# use_project(<folder of the tree> <name>): builds and tests a project against the installed package.
function(use_project folder name)
  run(${CMAKE_COMMAND} -S ${SOURCE}/${folder} -B ${WORK}/${name} ${options} -D CMAKE_PREFIX_PATH=${library_folder}/cmake ${ARGN})
  run(${CMAKE_COMMAND} --build ${WORK}/${name} --parallel 2)
endfunction()

function(use_by_find_package)
  use_project(tests/package/consumer consumer)
  run(${CMAKE_CTEST_COMMAND} --test-dir ${WORK}/consumer --output-on-failure --no-tests=error)
endfunction()

function(use_by_pkg_config)
  find_program(PKG_CONFIG pkg-config REQUIRED)
  set(static)
  if(MODE STREQUAL "static")
    set(static --static)
  endif()
  set(ENV{PKG_CONFIG_PATH} ${library_folder}/pkgconfig)
  execute_process(COMMAND ${PKG_CONFIG} ${static} --cflags --libs styles
    OUTPUT_VARIABLE flags OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
  string(REPLACE "-L" "-Wl,-rpath," rpath "${flags}")
  separate_arguments(flags UNIX_COMMAND "${flags} ${FLAGS}")
  separate_arguments(rpath UNIX_COMMAND "${rpath}")
  list(FILTER rpath INCLUDE REGEX "^-Wl,-rpath,")
  run(${COMPILER} -std=c++20 ${SOURCE}/tests/package/consumer/consumer.cpp -o ${WORK}/by_pkg_config ${flags} ${rpath})
  run(${WORK}/by_pkg_config)
endfunction()

function(use_by_plugins)
  use_project(tests/package/plugins plugins)
  run(${CMAKE_CTEST_COMMAND} --test-dir ${WORK}/plugins --output-on-failure --no-tests=error)
endfunction()

# What was built already is only installed, as the prefix given when configuring says.
function(use_from_absolute_folder)
  set(library_folder ${WORK}/elsewhere/libraries)
  build_library(-D CMAKE_INSTALL_PREFIX=${WORK}/absolute -D CMAKE_INSTALL_LIBDIR=${library_folder})
  run(${CMAKE_COMMAND} --install ${WORK}/library)
  file(REMOVE_RECURSE ${prefix} ${WORK}/consumer)
  use_by_find_package()
  use_by_pkg_config()
endfunction()

# Each example is a project of its own.
function(build_examples)
  use_project(examples/inspect inspect)
  set(data ${SOURCE}/examples/inspect/data)
  run(${WORK}/inspect/styles-inspect --schema ${data}/drawing-schema.json ${data}/drawing-sheet.json tree)
  use_project(examples/presets presets)
  run(${WORK}/presets/styles-presets ${WORK}/kept-presets list)
endfunction()

file(REMOVE_RECURSE ${WORK})
if(MODE STREQUAL "subfolder")
  use_project(tests/package/consumer consumer -D STYLES_SOURCE_FOLDER=${SOURCE})
else()
  if(MODE STREQUAL "static")
    build_library(-D BUILD_SHARED_LIBS=OFF)
    set(BUILD ${WORK}/library)
  endif()
  run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/first)
  file(RENAME ${WORK}/first ${prefix})
  check_secrets()
  use_by_find_package()
  use_by_pkg_config()
  if(MODE STREQUAL "static")
    use_from_absolute_folder()
  else()
    use_by_plugins()
  endif()
  if(MODE STREQUAL "installed" AND BUILD_TYPE STREQUAL "Release") # once is enough, and they take a while
    build_examples()
  endif()
endif()
