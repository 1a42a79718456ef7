# Compares the dynamic symbols that a shared library defines with a list of demangled signatures,
# one a line, sorted.
#
#   cmake -DNM=nm -DLIBRARY=libx.so -DEXPECTED=list.txt -P compare_symbols.cmake
cmake_minimum_required(VERSION 3.25)
execute_process(
  COMMAND ${NM} --dynamic --defined-only --demangle ${LIBRARY}
  OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE "\n$" "" output "${output}")
string(REPLACE "\n" ";" lines "${output}")
set(exported "")
foreach(line ${lines})
  # An address, a letter for the kind, the signature.
  string(REGEX REPLACE "^[0-9a-f]+ . " "" signature "${line}")
  list(APPEND exported "${signature}")
endforeach()
file(STRINGS ${EXPECTED} expected)

set(sorted ${expected})
list(SORT sorted)
if(NOT sorted STREQUAL expected)
  message(SEND_ERROR "Not sorted: ${EXPECTED}")
endif()

set(missing ${expected})
list(REMOVE_ITEM missing ${exported})
set(extra ${exported})
list(REMOVE_ITEM extra ${expected})
foreach(line ${missing})
  message(SEND_ERROR "Listed but not exported: ${line}")
endforeach()
foreach(line ${extra})
  message(SEND_ERROR "Exported but not listed: ${line}")
endforeach()
list(LENGTH exported count)
message(STATUS "${count} symbols exported")
