# Options of every target of this project.
#
# Results are reproducible bit for bit: products and sums are not contracted, on any target, and no
# source of the library compiles under options that change the arithmetic - the guard is included
# ahead of each of them. None of it is carried to users: the public headers hold no floating-point
# arithmetic, they only move numbers, so a user's program may be compiled with any options.
#
# Nobody reads errno or the floating-point exception flags: without them a square root is an
# instruction, a choice needs no branch and loops over elements are vectorised, with the same bits.
add_library(tessalo2d_options INTERFACE)
target_compile_options(
  tessalo2d_options
  INTERFACE -ffp-contract=off
            -fno-associative-math
            -fno-reciprocal-math
            -fsigned-zeros
            -fno-math-errno
            -fno-trapping-math
            -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wconversion)
if(TESSALO2D_WERROR)
  target_compile_options(tessalo2d_options INTERFACE -Werror)
endif()
set(exact_arithmetic_guard ${CMAKE_CURRENT_SOURCE_DIR}/foundation/exact_arithmetic.h)

# Instrumentation for the presets of that name.
set(TESSALO2D_SANITIZERS "" CACHE STRING "Sanitizers to build with, as in -fsanitize=")
if(TESSALO2D_SANITIZERS)
  add_compile_options(-fsanitize=${TESSALO2D_SANITIZERS} -fno-sanitize-recover=all
                      -fno-omit-frame-pointer)
  add_compile_definitions(_GLIBCXX_ASSERTIONS)
  add_link_options(-fsanitize=${TESSALO2D_SANITIZERS})
endif()
if(TESSALO2D_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
option(TESSALO2D_COVERAGE "Instrument for line and branch coverage" OFF)
if(TESSALO2D_COVERAGE)
  add_compile_options(--coverage -fprofile-update=atomic)
  add_link_options(--coverage)
endif()
