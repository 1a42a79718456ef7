// The calls of the functions that sweep lines.
#include "golden_calls.h"

namespace golden {

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

using vector2 = vector_fixed<double, 2>;
using vector3 = vector_fixed<double, 3>;

constexpr vector2 V2{{0x1.921fb5p+1, -0x1.5bf0a8p+0}};
constexpr vector3 V3{{0x1.921fb5p+1, -0x1.5bf0a8p+0, 0x1.6a09e6p-1}};
constexpr vector2 CENTER2{{0x1.3333333333333p-2, -0x1.999999999999ap-4}};
constexpr vector3 CENTER3{{0x1.3333333333333p-2, -0x1.999999999999ap-4, 0.5}};
constexpr vector3 ROTATION{{0x1.28f5c28f5c28fp-1, -0x1.1eb851eb851ecp+0, 0x1.bp+0}};

struct sizes {
    double h0;
    double h1;
    bool force_even;
};
constexpr sizes SIZES[] = {{0.5, 0.5, false},
                           {0x1.999999999999ap-4, 0x1.b333333333333p-1, false},
                           {0x1.ccccccccccccdp-1, 0x1.47ae147ae147bp-4, true}};

/// Makes `call(coords, connect, result)` on a copy of each line.
template <class Call>
void sweep(const char* function, const std::vector<line>& lines, const std::string& how,
           results& out, Call call)
{
    for (const line& l : lines) {
        out.from(function, l.name + " of " + std::to_string(l.coords.rows) + " rows, " + how);
        dense2D<double> coords = own(l.coords);
        dense2D<unsigned> result;
        out.before("coords", coords);
        out.add("status", call(coords, l.connect, result));
        out.add("coords", coords);
        out.add("result", result);
    }
}

/// `call(coords, connect, N, pattern, result)` for some numbers of layers.
template <class Call>
void layers(const char* function, const std::vector<line>& lines, results& out, Call call)
{
    for (const unsigned N : {1u, 3u, 10u})
        sweep(function, lines, std::to_string(N) + " layers", out,
              [&](dense2D<double>& coords, const dense2D<unsigned>& connect,
                  dense2D<unsigned>& result) {
                  return call(coords, connect, N, static_cast<int>(N % 3), result);
              });
}

/// `call(coords, connect, sizes, pattern, result)` for some sizes.
template <class Call>
void sized(const char* function, const std::vector<line>& lines, results& out, Call call)
{
    int pattern = 0;
    for (const sizes& s : SIZES) {
        sweep(function, lines, "sizes " + std::to_string(pattern), out,
              [&](dense2D<double>& coords, const dense2D<unsigned>& connect,
                  dense2D<unsigned>& result) { return call(coords, connect, s, pattern, result); });
        ++pattern;
    }
}

using coords_t = dense2D<double>&;
using connect_t = const dense2D<unsigned>&;
using result_t = dense2D<unsigned>&;

} // namespace

std::vector<golden_call> extrusion_calls()
{
    return {
        {"extrude_translate_Q4(plane, N)",
         [](const char* function, const inputs& in, results& out) {
             layers(function, in.plane_lines, out,
                    [](coords_t x, connect_t c, unsigned N, int, result_t r) {
                        return extrude_translate_Q4(x, c, V2, N, r);
                    });
         }},
        {"extrude_translate_Q4(plane, sizes)",
         [](const char* function, const inputs& in, results& out) {
             sized(function, in.plane_lines, out,
                   [](coords_t x, connect_t c, const sizes& s, int, result_t r) {
                       return extrude_translate_Q4(x, c, V2, s.h0, s.h1, s.force_even, r);
                   });
         }},
        {"extrude_translate_Q4(space, N)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 layers(function, *lines, out,
                        [](coords_t x, connect_t c, unsigned N, int, result_t r) {
                            return extrude_translate_Q4(x, c, V3, N, r);
                        });
         }},
        {"extrude_translate_Q4(space, sizes)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 sized(function, *lines, out,
                       [](coords_t x, connect_t c, const sizes& s, int, result_t r) {
                           return extrude_translate_Q4(x, c, V3, s.h0, s.h1, s.force_even, r);
                       });
         }},
        {"extrude_translate_T3(plane, N)",
         [](const char* function, const inputs& in, results& out) {
             layers(function, in.plane_lines, out,
                    [](coords_t x, connect_t c, unsigned N, int pattern, result_t r) {
                        return extrude_translate_T3(x, c, V2, N, pattern, r);
                    });
         }},
        {"extrude_translate_T3(plane, sizes)",
         [](const char* function, const inputs& in, results& out) {
             sized(function, in.plane_lines, out,
                   [](coords_t x, connect_t c, const sizes& s, int pattern, result_t r) {
                       return extrude_translate_T3(x, c, V2, s.h0, s.h1, pattern, s.force_even, r);
                   });
         }},
        {"extrude_translate_T3(space, N)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 layers(function, *lines, out,
                        [](coords_t x, connect_t c, unsigned N, int pattern, result_t r) {
                            return extrude_translate_T3(x, c, V3, N, pattern, r);
                        });
         }},
        {"extrude_translate_T3(space, sizes)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 sized(function, *lines, out,
                       [](coords_t x, connect_t c, const sizes& s, int pattern, result_t r) {
                           return extrude_translate_T3(x, c, V3, s.h0, s.h1, pattern, s.force_even,
                                                       r);
                       });
         }},
        {"extrude_rotate_Q4(plane, N)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 layers(function, *lines, out,
                        [](coords_t x, connect_t c, unsigned N, int, result_t r) {
                            return extrude_rotate_Q4(x, c, CENTER2, -2.5, N, r);
                        });
         }},
        {"extrude_rotate_Q4(plane, sizes)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 sized(function, *lines, out,
                       [](coords_t x, connect_t c, const sizes& s, int, result_t r) {
                           return extrude_rotate_Q4(x, c, CENTER2, 1.0, s.h0, s.h1, s.force_even,
                                                    r);
                       });
         }},
        {"extrude_rotate_Q4(space, N)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 layers(function, *lines, out,
                        [](coords_t x, connect_t c, unsigned N, int, result_t r) {
                            return extrude_rotate_Q4(x, c, CENTER3, ROTATION, N, r);
                        });
         }},
        {"extrude_rotate_Q4(space, sizes)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 sized(function, *lines, out,
                       [](coords_t x, connect_t c, const sizes& s, int, result_t r) {
                           return extrude_rotate_Q4(x, c, CENTER3, ROTATION, s.h0, s.h1,
                                                    s.force_even, r);
                       });
         }},
        {"extrude_rotate_T3(plane, N)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 layers(function, *lines, out,
                        [](coords_t x, connect_t c, unsigned N, int pattern, result_t r) {
                            return extrude_rotate_T3(x, c, CENTER2, -2.5, N, pattern, r);
                        });
         }},
        {"extrude_rotate_T3(plane, sizes)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 sized(function, *lines, out,
                       [](coords_t x, connect_t c, const sizes& s, int pattern, result_t r) {
                           return extrude_rotate_T3(x, c, CENTER2, 1.0, s.h0, s.h1, pattern,
                                                    s.force_even, r);
                       });
         }},
        {"extrude_rotate_T3(space, N)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 layers(function, *lines, out,
                        [](coords_t x, connect_t c, unsigned N, int pattern, result_t r) {
                            return extrude_rotate_T3(x, c, CENTER3, ROTATION, N, pattern, r);
                        });
         }},
        {"extrude_rotate_T3(space, sizes)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 sized(function, *lines, out,
                       [](coords_t x, connect_t c, const sizes& s, int pattern, result_t r) {
                           return extrude_rotate_T3(x, c, CENTER3, ROTATION, s.h0, s.h1, pattern,
                                                    s.force_even, r);
                       });
         }},
        {"extrude_spiral_Q4(N)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 layers(function, *lines, out,
                        [](coords_t x, connect_t c, unsigned N, int, result_t r) {
                            return extrude_spiral_Q4(x, c, CENTER3, ROTATION, V3, N, r);
                        });
         }},
        {"extrude_spiral_Q4(sizes)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 sized(function, *lines, out,
                       [](coords_t x, connect_t c, const sizes& s, int, result_t r) {
                           return extrude_spiral_Q4(x, c, CENTER3, ROTATION, V3, s.h0, s.h1,
                                                    s.force_even, r);
                       });
         }},
        {"extrude_spiral_T3(N)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 layers(function, *lines, out,
                        [](coords_t x, connect_t c, unsigned N, int pattern, result_t r) {
                            return extrude_spiral_T3(x, c, CENTER3, ROTATION, V3, N, pattern, r);
                        });
         }},
        {"extrude_spiral_T3(sizes)",
         [](const char* function, const inputs& in, results& out) {
             for (const auto* lines : {&in.plane_lines, &in.space_lines})
                 sized(function, *lines, out,
                       [](coords_t x, connect_t c, const sizes& s, int pattern, result_t r) {
                           return extrude_spiral_T3(x, c, CENTER3, ROTATION, V3, s.h0, s.h1,
                                                    pattern, s.force_even, r);
                       });
         }},
    };
}

} // namespace golden
