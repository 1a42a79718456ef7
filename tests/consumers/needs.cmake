# require_needs(PROGRAM NEEDED): a program on the shared library needs that at run time and not its
# private dependencies; a program on the static library does not need the shared one.
function(require_needs program needed)
  execute_process(
    COMMAND ${READELF} --dynamic --wide ${program}
    OUTPUT_VARIABLE dynamic COMMAND_ERROR_IS_FATAL ANY)
  if(needed STREQUAL "shared")
    if(NOT dynamic MATCHES "\\(NEEDED\\)[^\n]*libtessalo2d\\.so\\.5\\]")
      message(FATAL_ERROR "Does not need libtessalo2d.so.5: ${program}\n${dynamic}")
    endif()
    if(dynamic MATCHES "\\(NEEDED\\)[^\n]*(lapack|blas)")
      message(FATAL_ERROR "Needs a private dependency of the library: ${program}\n${dynamic}")
    endif()
  elseif(dynamic MATCHES "libtessalo2d")
    message(FATAL_ERROR "Needs the shared library: ${program}\n${dynamic}")
  endif()
endfunction()
