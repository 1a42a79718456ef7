# Configures a project from nothing, builds it and runs its program `consumer`.
#
#   cmake -DSOURCE=... -DBUILD=... -DOPTIONS=... -DNEEDED=shared|static ... -P build_and_run.cmake
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/needs.cmake)

file(REMOVE_RECURSE ${BUILD})
set(configure
    ${CMAKE_COMMAND} -S ${SOURCE} -B ${BUILD} -G ${GENERATOR} -DCMAKE_CXX_COMPILER=${CXX}
    -DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER} -DCMAKE_PREFIX_PATH=${PREFIX} ${OPTIONS})
foreach(step configure build run)
  if(step STREQUAL "build")
    set(build ${CMAKE_COMMAND} --build ${BUILD})
  elseif(step STREQUAL "run")
    set(run ${BUILD}/consumer)
  endif()
  execute_process(
    COMMAND ${${step}}
    OUTPUT_VARIABLE output
    ERROR_VARIABLE output
    RESULT_VARIABLE status)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "Failed to ${step} ${SOURCE} (${status}):\n${output}")
  endif()
endforeach()
message("${output}")
require_needs(${BUILD}/consumer ${NEEDED})
