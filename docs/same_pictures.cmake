# The pictures in one folder are those that a program draws.
#
#   cmake -DPROGRAM=draw_pictures -DPICTURES=folder -DFRESH=folder -P same_pictures.cmake
cmake_minimum_required(VERSION 3.25)
file(MAKE_DIRECTORY ${FRESH})
execute_process(COMMAND ${PROGRAM} ${FRESH} COMMAND_ERROR_IS_FATAL ANY)
file(GLOB fresh RELATIVE ${FRESH} ${FRESH}/*.svg)
file(GLOB kept RELATIVE ${PICTURES} ${PICTURES}/*.svg)
if(NOT fresh STREQUAL kept)
  message(FATAL_ERROR "${PICTURES} holds ${kept}, and ${fresh} are drawn")
endif()
foreach(picture ${fresh})
  execute_process(COMMAND ${CMAKE_COMMAND} -E compare_files ${FRESH}/${picture}
                          ${PICTURES}/${picture} RESULT_VARIABLE differs)
  if(differs)
    message(SEND_ERROR "${picture} is out of date: ./docs/build --pictures draws it anew")
  endif()
endforeach()
