# Uses the library as another project would, and fails where that does not work.
#
#   cmake -D SOURCE=<tree> -D WORK=<folder> -D MODE=<mode> [-D BUILD=<folder>] -D COMPILER=...
#         -D BUILD_TYPE=... -D FLAGS=... -P RunPackageTest.cmake
#
#   installed   installs the build in BUILD and finds the package, after its folder has been moved
#   static      builds and installs the library as static libraries first
#   subfolder   configures the sources as a part of the other project
#
# FLAGS are those of the build type, so that a sanitized library meets a sanitized program; the project's warnings are
# left out, because they are no matter of its users.
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
file(REMOVE_RECURSE ${WORK})

if(MODE STREQUAL "subfolder")
  run(${CMAKE_COMMAND} -S ${SOURCE}/tests/package -B ${WORK}/build ${options} -D STYLES_SOURCE_FOLDER=${SOURCE})
  return()
endif()

if(MODE STREQUAL "static")
  set(BUILD ${WORK}/library)
  run(${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD} ${options} -D BUILD_SHARED_LIBS=OFF
    -D STYLES_BUILD_TESTS=OFF -D STYLES_BUILD_EXAMPLES=OFF -D STYLES_BUILD_BENCHMARKS=OFF)
  run(${CMAKE_COMMAND} --build ${BUILD} --parallel 2)
endif()

run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/first)
file(RENAME ${WORK}/first ${WORK}/prefix)

# What is private stays private: neither the package files nor the headers know the JSON library or the place
# where the library was built.
file(GLOB_RECURSE installed ${WORK}/prefix/*.cmake ${WORK}/prefix/*.h)
if(NOT installed)
  message(FATAL_ERROR "nothing was installed")
endif()
foreach(file IN LISTS installed)
  file(READ ${file} text)
  foreach(secret IN ITEMS nlohmann ${SOURCE} ${WORK}/first)
    string(FIND "${text}" ${secret} position)
    if(NOT position EQUAL -1)
      message(FATAL_ERROR "${file} mentions ${secret}")
    endif()
  endforeach()
endforeach()

find_program(NM nm REQUIRED)
file(GLOB_RECURSE libraries ${WORK}/prefix/*.so)
foreach(library IN LISTS libraries)
  execute_process(COMMAND ${NM} -D -C --defined-only ${library} OUTPUT_VARIABLE symbols COMMAND_ERROR_IS_FATAL ANY)
  if(symbols MATCHES "[^\n]*nlohmann[^\n]*")
    message(FATAL_ERROR "${library} exports ${CMAKE_MATCH_0}")
  endif()
endforeach()

run(${CMAKE_COMMAND} -S ${SOURCE}/tests/package -B ${WORK}/build ${options} -D CMAKE_PREFIX_PATH=${WORK}/prefix)
run(${CMAKE_COMMAND} --build ${WORK}/build --parallel 2)
run(${CMAKE_CTEST_COMMAND} --test-dir ${WORK}/build --output-on-failure --no-tests=error)

# The example builds alone against the installed package, too.
if(NOT MODE STREQUAL "static")
  run(${CMAKE_COMMAND} -S ${SOURCE}/examples/inspect -B ${WORK}/inspect ${options} -D CMAKE_PREFIX_PATH=${WORK}/prefix)
  run(${CMAKE_COMMAND} --build ${WORK}/inspect --parallel 2)
  set(data ${SOURCE}/examples/inspect/data)
  run(${WORK}/inspect/styles-inspect --schema ${data}/drawing-schema.json ${data}/drawing-sheet.json tree)
endif()
