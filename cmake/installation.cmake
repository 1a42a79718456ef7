# What `cmake --install` lays down: the headers, the libraries, the CMake package and the pkg-config
# file. Everything finds the rest by relative paths, so that an installed tree can be moved.
include(CMakePackageConfigHelpers)
set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/tessalo2d)

install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/ ${PROJECT_SOURCE_DIR}/foundation/public/
        DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development FILES_MATCHING PATTERN *.h)

# A set of targets for each library: who links the shared one need not have LAPACK's development
# files.
foreach(kind shared static)
  if(TARGET tessalo2d_${kind})
    install(
      TARGETS tessalo2d_${kind}
      EXPORT tessalo2d_${kind}
      ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
      LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
      RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT runtime)
    install(
      EXPORT tessalo2d_${kind}
      FILE tessalo2d-${kind}.cmake
      NAMESPACE vorel::
      DESTINATION ${package_dir}
      COMPONENT development)
  endif()
endforeach()

configure_package_config_file(
  ${PROJECT_SOURCE_DIR}/cmake/tessalo2d-config.cmake.in
  ${PROJECT_BINARY_DIR}/tessalo2d-config.cmake
  INSTALL_DESTINATION ${package_dir}
  NO_SET_AND_CHECK_MACRO NO_CHECK_REQUIRED_COMPONENTS_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/tessalo2d-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(
  FILES ${PROJECT_BINARY_DIR}/tessalo2d-config.cmake
        ${PROJECT_BINARY_DIR}/tessalo2d-config-version.cmake
        ${PROJECT_SOURCE_DIR}/cmake/lapack.cmake
  DESTINATION ${package_dir}
  COMPONENT development)

# pkg-config. The static library's own needs, as linker options.
set(lapack_flags "")
foreach(library ${BLAS_LIBRARIES} ${LAPACK_LIBRARIES})
  if(library MATCHES "^-")
    list(APPEND lapack_flags ${library})
  elseif(library MATCHES "/lib([^/]+)\\.(so|a)$")
    list(APPEND lapack_flags -l${CMAKE_MATCH_1})
  else()
    list(APPEND lapack_flags ${library})
  endif()
endforeach()
# The user of a library stands before it.
list(REMOVE_DUPLICATES lapack_flags)
list(REVERSE lapack_flags)
list(JOIN lapack_flags " " lapack_flags)
if(TARGET tessalo2d_shared)
  set(pc_libs "-L\${libdir} -ltessalo2d")
  set(pc_libs_private "${lapack_flags}")
else()
  set(pc_libs "-L\${libdir} -ltessalo2d ${lapack_flags}")
  set(pc_libs_private "")
endif()
set(pc_dir ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
foreach(dir prefix includedir libdir)
  set(path_prefix .)
  set(path_includedir ${CMAKE_INSTALL_INCLUDEDIR})
  set(path_libdir ${CMAKE_INSTALL_LIBDIR})
  set(path ${path_${dir}})
  if(IS_ABSOLUTE ${path} OR IS_ABSOLUTE ${pc_dir})
    cmake_path(ABSOLUTE_PATH path BASE_DIRECTORY ${CMAKE_INSTALL_PREFIX} NORMALIZE)
    set(pc_${dir} ${path})
  else()
    cmake_path(RELATIVE_PATH path BASE_DIRECTORY ${pc_dir} OUTPUT_VARIABLE relative)
    string(REGEX REPLACE "/\\.$" "" relative ${relative})
    set(pc_${dir} "\${pcfiledir}/${relative}")
  endif()
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/cmake/tessalo2d.pc.in ${PROJECT_BINARY_DIR}/tessalo2d.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/tessalo2d.pc DESTINATION ${pc_dir} COMPONENT development)
