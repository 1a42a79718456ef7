# Installs a build tree to one place, and moves it to another.
#
#   cmake -DBUILD=... -DFIRST=... -DMOVED=... -P install.cmake
cmake_minimum_required(VERSION 3.25)
file(REMOVE_RECURSE ${FIRST} ${MOVED})
execute_process(COMMAND ${CMAKE_COMMAND} --install ${BUILD} --prefix ${FIRST}
                OUTPUT_QUIET COMMAND_ERROR_IS_FATAL ANY)
file(RENAME ${FIRST} ${MOVED})

# All public headers stand side by side, and nothing else is laid down beside them.
file(GLOB_RECURSE headers RELATIVE ${MOVED}/include ${MOVED}/include/*)
if(NOT "vorel/tessalo2d.h" IN_LIST headers OR NOT "vorel/dense2D.h" IN_LIST headers)
  message(SEND_ERROR "Headers are missing: ${headers}")
endif()
foreach(header ${headers})
  if(NOT header MATCHES "^vorel/[A-Za-z0-9_]+\\.h$")
    message(SEND_ERROR "Not a public header: ${header}")
  endif()
endforeach()
