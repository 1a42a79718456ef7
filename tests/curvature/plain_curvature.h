// Principal curvatures the plain way, one node after the other with nothing computed beforehand:
// what the tests hold the library to.
#pragma once

#include "curvature/complete_frame.h"
#include "measures/triangle_normal.h"
#include "metrics/symmetric3.h"

#include "support/meshes.h"
#include "support/topology.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <set>
#include <utility>
#include <vector>

namespace plain {

using namespace vorel;
using namespace vorel::tessalo2d;

/// The arguments of one call.
struct surface {
    dense2D<double> coords;
    dense2D<unsigned> connect;
    dense2D<unsigned> neighbors;
    double radius = 2.0;
    double max_angle = 3.0;
    unsigned max_triangles = 1000;
    dense2D<unsigned> ridges;

    vec3 point(std::size_t i) const { return load<3>(coords.column(i)); }
    vec3 corner(unsigned e, unsigned k) const { return point(connect(k % 3, e)); }
    vec3 normal(unsigned e) const
    {
        return triangle_normal(corner(e, 0), corner(e, 1), corner(e, 2));
    }
    unsigned across(unsigned e, unsigned k) const
    {
        if (k >= neighbors.rows || neighbors(k, e) >= connect.cols) return UNSET_ID;
        return neighbors(k, e);
    }
    bool is_ridge(unsigned a, unsigned b) const
    {
        for (std::size_t j = 0; j < ridges.cols; ++j)
            if ((ridges(0, j) == a && ridges(1, j) == b) ||
                (ridges(0, j) == b && ridges(1, j) == a))
                return true;
        return false;
    }
};

inline double signed_square(double x)
{
    return x < 0.0 ? -(x * x) : x * x;
}

/// Grows the patch of node `i` from triangle `seed`.
inline std::vector<unsigned> patch(const surface& s, std::size_t i, unsigned seed)
{
    std::vector<unsigned> list{seed};
    std::set<unsigned> met{seed};
    const double r2 = s.radius * s.radius;
    const double c = std::cos(s.max_angle);
    for (std::size_t at = 0; at < list.size(); ++at) {
        if (list.size() >= s.max_triangles || !(r2 > 0.0)) break;
        const unsigned t = list[at];
        const vec3 n = s.normal(t);
        std::vector<unsigned> candidates;
        for (unsigned k = 0; k < 3; ++k) {
            const unsigned u = s.across(t, k);
            if (u == UNSET_ID || !met.insert(u).second) continue;
            const vec3 sum = (s.corner(u, 0) + s.corner(u, 1)) + s.corner(u, 2);
            if (squared_length(0.3333333333333333 * sum - s.point(i)) > r2) continue;
            if (s.is_ridge(s.connect((k + 1) % 3, t), s.connect((k + 2) % 3, t))) continue;
            if (c > -1.0) {
                const vec3 m = s.normal(u);
                const double limit = squared_length(n) * squared_length(m) * signed_square(c);
                if (!(signed_square(dot(n, m)) > limit)) continue;
            }
            candidates.push_back(u);
        }
        std::sort(candidates.begin(), candidates.end());
        list.insert(list.end(), candidates.begin(), candidates.end());
    }
    return list;
}

/// Writes the 8 numbers of a patch to `out`, which is zero.
inline void tensor_values(const surface& s, const std::vector<unsigned>& list, double* out)
{
    const std::set<unsigned> in_patch(list.begin(), list.end());
    double area = 0.0;
    vec3 reference = {{0, 0, 0}};
    symmetric_fixed<double, 3> tensor = {};
    for (const unsigned e : list) {
        const vec3 n = s.normal(e);
        const double size = std::sqrt(squared_length(n));
        area += size;
        if (e == list[0] && size != 0.0) reference = reference + size * n;
        for (unsigned k = 0; k < 3; ++k) {
            const unsigned u = s.across(e, k);
            if (u > e || in_patch.count(u) == 0) continue;
            const vec3 m = s.normal(u);
            vec3 v = s.corner(e, k + 2) - s.corner(e, k + 1);
            double l = squared_length(v);
            if (l != 0.0 && l != 1.0) {
                l = std::sqrt(l);
                v = (1.0 / l) * v;
            }
            const double beta = std::atan2(dot(cross(n, v), m), dot(n, m)) * l;
            if (beta == 0.0) continue;
            tensor.data[0] += beta * v[0] * v[0];
            tensor.data[1] += beta * v[1] * v[0];
            tensor.data[2] += beta * v[1] * v[1];
            tensor.data[3] += beta * v[2] * v[0];
            tensor.data[4] += beta * v[2] * v[1];
            tensor.data[5] += beta * v[2] * v[2];
        }
    }
    if (area == 0.0) return;
    double w[3];
    double z[9];
    if (!eigen_sym3(tensor, w, z, true)) return;
    for (double& value : w) value *= 2.0 / area;
    int lo = 0;
    int hi = 0;
    for (int i = 1; i < 3; ++i) {
        if (std::fabs(w[i]) < std::fabs(w[lo])) lo = i;
        if (std::fabs(w[i]) > std::fabs(w[hi])) hi = i;
    }
    const int mid = lo == hi ? (hi + 1) % 3 : 3 - lo - hi;
    vec3 first = load<3>(z + 3 * hi);
    vec3 second = load<3>(z + 3 * mid);
    if (!(std::fabs(w[mid]) > 0.001 * std::fabs(w[hi]))) complete_frame(first, reference, second);
    store(first, out);
    store(second, out + 3);
    out[6] = w[hi];
    out[7] = w[mid];
}

/// The whole result.
inline dense2D<double> curvatures(const surface& s)
{
    dense2D<double> all(8, s.coords.cols, 0.0);
    std::set<unsigned> done;
    for (unsigned e = 0; e < s.connect.cols; ++e)
        for (unsigned k = 0; k < 3; ++k) {
            const unsigned i = s.connect(k, e);
            if (done.insert(i).second) tensor_values(s, patch(s, i, e), all.column(i));
        }
    return all;
}

/// A wavy surface with folds, in random order, some triangles turned round, drawn limits and
/// ridges. With `contradictory` about a fifth of the neighbours are any triangle, the triangle
/// itself, or no triangle at all, sometimes with a row missing.
inline surface random_surface(unsigned seed, bool contradictory)
{
    std::mt19937 draw(seed);
    const auto below = [&](unsigned n) { return static_cast<unsigned>(draw() % n); };
    support::mesh flat = support::grid_T3(5 + below(4), 4 + below(4));
    support::jitter(flat, 0.3, seed);
    support::shuffle(flat, seed);
    const support::mesh m = support::lifted(flat, [](double x, double y) {
        return std::sin(x) * std::cos(0.7 * y) + 1.5 * std::fabs(y - 2.5);
    });
    surface s;
    s.coords = m.coords;
    s.connect = m.connect;
    const auto elements = static_cast<unsigned>(s.connect.cols);
    if (seed % 3 == 0)
        for (unsigned e = 0; e < elements; ++e)
            if (below(6) == 0) std::swap(s.connect(0, e), s.connect(1, e));
    if (seed % 5 == 0) {
        // A triangle of no area.
        const unsigned e = below(elements);
        store(s.corner(e, 0), s.coords.column(s.connect(1, e)));
    }
    s.neighbors = support::neighbors_of(s.connect);
    if (contradictory) {
        for (unsigned e = 0; e < elements; ++e)
            for (unsigned k = 0; k < 3; ++k) {
                const unsigned others[] = {below(elements), e, elements, 4000000000u + below(9),
                                           UNSET_ID};
                if (below(5) == 0) s.neighbors(k, e) = others[below(5)];
            }
        if (seed % 7 == 0) {
            dense2D<unsigned> two_rows(2, elements);
            for (unsigned e = 0; e < elements; ++e)
                for (unsigned k = 0; k < 2; ++k) two_rows(k, e) = s.neighbors(k, e);
            s.neighbors = two_rows;
        }
    }
    const double radii[] = {0.9, 1.7, -2.4, 4.0, 100.0};
    const double angles[] = {
        0.3, 0.8, 1.6, 2.5, std::acos(-1.0), std::numeric_limits<double>::quiet_NaN()};
    const unsigned limits[] = {0, 1, 2, 5, 12, 1000, 1000, 1000};
    s.radius = radii[below(5)];
    s.max_angle = angles[below(6)];
    s.max_triangles = limits[below(8)];
    if (seed % 2 == 0) {
        s.ridges = dense2D<unsigned>(2, 12);
        for (unsigned j = 0; j < 12; ++j) {
            const unsigned e = below(elements);
            const unsigned k = below(3);
            s.ridges(0, j) = s.connect(k, e);
            s.ridges(1, j) = s.connect((k + 1) % 3, e);
        }
    }
    return s;
}

} // namespace plain
