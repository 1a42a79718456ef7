# Every command of the project compiles without contraction, and no source of the library compiles
# under -ffast-math or its parts.
#
#   cmake -DCOMMANDS=compile_commands.json -DLIBRARY_SOURCES=... -P arithmetic_options.cmake
cmake_minimum_required(VERSION 3.25)
set(failures "")
set(refused 0)

file(READ ${COMMANDS} commands)
string(JSON count LENGTH "${commands}")
math(EXPR last "${count} - 1")
foreach(i RANGE ${last})
  string(JSON source GET "${commands}" ${i} file)
  string(JSON directory GET "${commands}" ${i} directory)
  string(JSON command GET "${commands}" ${i} command)
  separate_arguments(command UNIX_COMMAND "${command}")
  if(NOT "-ffp-contract=off" IN_LIST command)
    list(APPEND failures "without -ffp-contract=off: ${source}")
  endif()
  if(source IN_LIST LIBRARY_SOURCES)
    foreach(option -ffast-math -funsafe-math-optimizations)
      if(option STREQUAL "-funsafe-math-optimizations" AND command MATCHES "clang")
        continue() # nothing in clang tells a source that it is on; the library switches its parts off
      endif()
      execute_process(
        COMMAND ${command} ${option} -fsyntax-only -Wfatal-errors
        WORKING_DIRECTORY ${directory}
        RESULT_VARIABLE status
        OUTPUT_VARIABLE output
        ERROR_VARIABLE output)
      if(status EQUAL 0)
        list(APPEND failures "compiles with ${option}: ${source}")
      elseif(NOT output MATCHES "reproducible bit for bit")
        list(APPEND failures "refused for another reason than ${option}: ${source}\n${output}")
      endif()
    endforeach()
    math(EXPR refused "${refused} + 1")
  endif()
endforeach()

list(LENGTH LIBRARY_SOURCES expected)
if(refused LESS expected AND NOT failures)
  list(APPEND failures "${expected} library sources, but only ${refused} of them have a command")
endif()
if(failures)
  list(JOIN failures "\n  " failures)
  message(FATAL_ERROR "Commands that may change results:\n  ${failures}")
endif()
message(STATUS "${count} commands, ${refused} sources of the library refused fast arithmetic")
