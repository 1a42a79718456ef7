# Options of every target of this project. Results are reproducible bit for bit, so no contraction
# of products and sums, on any target.
add_library(tessalo2d_options INTERFACE)
target_compile_options(tessalo2d_options INTERFACE -ffp-contract=off -Wall -Wextra -Wpedantic -Wshadow
                                                   -Wconversion)
if(TESSALO2D_WERROR)
  target_compile_options(tessalo2d_options INTERFACE -Werror)
endif()

# Instrumentation for the presets of that name.
set(TESSALO2D_SANITIZERS "" CACHE STRING "Sanitizers to build with, as in -fsanitize=")
if(TESSALO2D_SANITIZERS)
  add_compile_options(-fsanitize=${TESSALO2D_SANITIZERS} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_link_options(-fsanitize=${TESSALO2D_SANITIZERS})
endif()
option(TESSALO2D_COVERAGE "Instrument for line and branch coverage" OFF)
if(TESSALO2D_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
