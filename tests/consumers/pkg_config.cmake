# Compiles and runs a program with the options that pkg-config tells.
cmake_minimum_required(VERSION 3.25)
include(${CMAKE_CURRENT_LIST_DIR}/needs.cmake)

set(ENV{PKG_CONFIG_PATH} ${PREFIX}/${LIBDIR}/pkgconfig)
set(kind_option "")
if(NEEDED STREQUAL "static")
  set(kind_option --static)
endif()
execute_process(
  COMMAND ${PKG_CONFIG} --cflags --libs ${kind_option} tessalo2d
  OUTPUT_VARIABLE options OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
execute_process(
  COMMAND ${PKG_CONFIG} --modversion tessalo2d
  OUTPUT_VARIABLE version OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
if(NOT version STREQUAL "5.1.0")
  message(FATAL_ERROR "pkg-config tells version ${version}")
endif()
if(NEEDED STREQUAL "static")
  # Both libraries stand in one folder: the archive is asked for by its file name.
  string(REPLACE "-ltessalo2d" "-l:libtessalo2d.a" options "${options}")
elseif(options MATCHES "lapack|blas")
  message(FATAL_ERROR "A private dependency reaches users of the shared library: ${options}")
endif()
separate_arguments(options UNIX_COMMAND "${options}")

file(REMOVE_RECURSE ${BUILD})
file(MAKE_DIRECTORY ${BUILD})
execute_process(
  COMMAND ${CXX} -std=c++17 -Wall -Wextra -Wpedantic -Werror -o ${BUILD}/consumer ${SOURCE}
          ${options} COMMAND_ERROR_IS_FATAL ANY)
set(ENV{LD_LIBRARY_PATH} ${PREFIX}/${LIBDIR})
execute_process(COMMAND ${BUILD}/consumer COMMAND_ERROR_IS_FATAL ANY)
require_needs(${BUILD}/consumer ${NEEDED})
