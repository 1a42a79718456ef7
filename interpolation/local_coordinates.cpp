// Local coordinates: a closed form with refinement in triangles, Newton's method in quadrilaterals.
#include "interpolation/local_coordinates.h"

#include <cmath>

namespace vorel::tessalo2d {

namespace {

bool equal(const vec2& a, const vec2& b)
{
    return a[0] == b[0] && a[1] == b[1];
}

} // namespace

int solve2_refined(const vec2& a, const vec2& b, double inverse_determinant, const vec2& r,
                   double& u, double& v, int passes)
{
    u = (b[1] * r[0] - b[0] * r[1]) * inverse_determinant;
    v = (a[0] * r[1] - a[1] * r[0]) * inverse_determinant;
    while (passes > 0) {
        --passes;
        const vec2 e = r - (u * a + v * b);
        const double du = (e[0] * b[1] - e[1] * b[0]) * inverse_determinant;
        const double dv = (e[1] * a[0] - e[0] * a[1]) * inverse_determinant;
        u += du;
        v += dv;
        if (!(std::fabs(du) > std::fabs(u) * 1e-12) && !(std::fabs(dv) > std::fabs(v) * 1e-12))
            break;
    }
    return passes;
}

double local_coords_T3(const double* points, std::size_t ld, const unsigned* column,
                       const vec2& point, vec2& uv)
{
    const vec2 p0 = load<2>(points + column[0] * ld);
    const vec2 p1 = load<2>(points + column[1] * ld);
    const vec2 p2 = load<2>(points + column[2] * ld);
    const vec2 a = p0 - p2;
    vec2 b = p1 - p2;
    const vec2 c = p1 - p0;
    // The two shorter edges as base vectors: as far from parallel as the triangle allows.
    const double cc = squared_length(c);
    const bool replaced = cc < squared_length(a) && cc < squared_length(b);
    if (replaced) b = c;
    uv = {{0.0, 0.0}};
    const double determinant = cross(a, b);
    if (equal(point, p0)) {
        uv[0] = 1.0;
        return determinant;
    }
    if (equal(point, p1)) {
        uv[1] = 1.0;
        return determinant;
    }
    if (determinant == 0.0) return 0.0;
    (void)solve2_refined(a, b, 1.0 / determinant, point - p2, uv[0], uv[1], 2);
    if (replaced) uv[0] -= uv[1];
    return determinant;
}

vec2 map_Q4(const double* points, std::size_t ld, const unsigned* column, const vec2& xi_eta)
{
    vec2 x{{0.0, 0.0}};
    for (int i = 0; i < 4; ++i) {
        const corner_signs& s = shape_table_Q4[i];
        const double weight = (s.a * xi_eta[0] + 0.5) * (s.b * xi_eta[1] + 0.5);
        if (weight != 0.0) x = x + weight * load<2>(points + column[i] * ld);
    }
    return x;
}

void jacobian_Q4(const double* points, std::size_t ld, const unsigned* column, const vec2& xi_eta,
                 vec2 (&J)[2])
{
    J[0] = {{0.0, 0.0}};
    J[1] = {{0.0, 0.0}};
    for (int i = 0; i < 4; ++i) {
        const corner_signs& s = shape_table_Q4[i];
        const vec2 p = load<2>(points + column[i] * ld);
        J[0] = J[0] + s.a * (s.b * xi_eta[1] + 0.5) * p;
        J[1] = J[1] + s.b * (s.a * xi_eta[0] + 0.5) * p;
    }
}

bool local_coords_Q4(const double* points, std::size_t ld, const unsigned* column,
                     const vec2& point, vec2& xi_eta, double tolerance)
{
    constexpr int LIMIT = 10;
    xi_eta = {{0.0, 0.0}};
    vec2 inverse[2] = {{{0.0, 0.0}}, {{0.0, 0.0}}};
    for (int passes = 1;; ++passes) {
        const vec2 r = map_Q4(points, ld, column, xi_eta) - point;
        vec2 J[2];
        jacobian_Q4(points, ld, column, xi_eta, J);
        const double determinant = J[0][0] * J[1][1] - J[1][0] * J[0][1];
        if (determinant != 0.0) {
            inverse[0] = {{J[1][1] / determinant, -J[1][0] / determinant}};
            inverse[1] = {{-J[0][1] / determinant, J[0][0] / determinant}};
        }
        const vec2 d{{dot(inverse[0], r), dot(inverse[1], r)}};
        xi_eta = xi_eta - d;
        if (!(length(d) > tolerance) || passes == LIMIT) return passes < LIMIT;
    }
}

} // namespace vorel::tessalo2d
