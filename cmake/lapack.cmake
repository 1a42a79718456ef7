# LAPACK, for the eigenvalues of metrics: a private dependency, of which only the static library's
# users need to know. Read by the project itself and, installed, by the package's configuration.
#
# The plain liblapack and libblas are preferred: on Debian these names lead to the implementation
# that the system's administrator chose. Whoever wants another one sets BLA_VENDOR.
macro(tessalo2d_find_lapack)
  if(TARGET LAPACK::LAPACK)
    set(LAPACK_FOUND TRUE)
  else()
    if(NOT BLA_VENDOR)
      set(BLA_VENDOR Generic)
      find_package(LAPACK QUIET)
      unset(BLA_VENDOR)
    endif()
    if(NOT TARGET LAPACK::LAPACK)
      find_package(LAPACK ${ARGN})
    endif()
  endif()
endmacro()
