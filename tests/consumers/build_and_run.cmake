# Configures a project from nothing, builds it and runs its program `consumer`. With THEN_OPTIONS
# that is done once more on top, with other options.
#
#   cmake -DSOURCE=... -DBUILD=... -DOPTIONS=... -DNEEDED=shared|static
#         [-DTHEN_OPTIONS=... -DTHEN_NEEDED=shared|static] ... -P build_and_run.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/needs.cmake)

# succeed(COMMAND...): runs a command, whose output matters when it fails or is the program's.
function(succeed)
  execute_process(
    COMMAND ${ARGN}
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output
    RESULT_VARIABLE status)
  list(JOIN ARGN " " command)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "Ended with ${status}: ${command}\n${output}")
  endif()
  if(command STREQUAL "${BUILD}/consumer")
    message("${output}")
  endif()
endfunction()

# build_and_run(NEEDED OPTION...)
function(build_and_run needed)
  succeed(
    ${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD} -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${CXX}
    -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER} -DCMAKE_PREFIX_PATH=${PREFIX} ${ARGN})
  succeed(${CMAKE_COMMAND} --build ${BUILD} --parallel 2)
  succeed(${BUILD}/consumer)
  require_needs(${BUILD}/consumer ${needed})
endfunction()

file(REMOVE_RECURSE ${BUILD})
build_and_run(${NEEDED} ${OPTIONS})
if(THEN_OPTIONS)
  build_and_run(${THEN_NEEDED} ${THEN_OPTIONS})
endif()
