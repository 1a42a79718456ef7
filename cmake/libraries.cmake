# The shared and the static library. `vorel::tessalo2d` is the shared one where both are built.
tessalo2d_find_lapack(REQUIRED)

function(tessalo2d_library target kind)
  add_library(${target} ${kind} $<TARGET_OBJECTS:tessalo2d_objects>)
  add_library(vorel::${target} ALIAS ${target})
  target_compile_features(${target} PUBLIC cxx_std_17)
  target_include_directories(
    ${target}
    INTERFACE $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
              $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/foundation/public>
              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  target_link_libraries(${target} PRIVATE LAPACK::LAPACK)
  set_target_properties(
    ${target}
    PROPERTIES OUTPUT_NAME tessalo2d
               VERSION ${PROJECT_VERSION}
               SOVERSION ${PROJECT_VERSION_MAJOR}
               LINKER_LANGUAGE CXX)
endfunction()

if(TESSALO2D_SHARED)
  tessalo2d_library(tessalo2d_shared SHARED)
  # Standard library templates that the code instantiates carry default visibility: the map keeps
  # them in. Of the libraries that LAPACK brings only those with a used symbol are needed.
  set(export_map ${PROJECT_SOURCE_DIR}/cmake/exports.map)
  target_link_options(tessalo2d_shared PRIVATE
                      "SHELL:-Xlinker \"--version-script=${export_map}\"" -Wl,--as-needed)
  set_target_properties(tessalo2d_shared PROPERTIES LINK_DEPENDS ${export_map})
  if(PROJECT_IS_TOP_LEVEL AND NOT TESSALO2D_SANITIZERS)
    # The run-time libraries of some sanitizers are linked to programs only.
    target_link_options(tessalo2d_shared PRIVATE -Wl,--no-undefined)
  endif()
  add_library(vorel::tessalo2d ALIAS tessalo2d_shared)
endif()
if(TESSALO2D_STATIC)
  tessalo2d_library(tessalo2d_static STATIC)
  if(NOT TESSALO2D_SHARED)
    add_library(vorel::tessalo2d ALIAS tessalo2d_static)
  endif()
endif()
