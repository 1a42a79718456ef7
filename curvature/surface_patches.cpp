// Patches of triangles around the nodes of a surface.
//
// Neighbouring patches share most of their triangles and edges, so what these contribute is
// computed once a call and not once a patch; a patch then only follows links.
#include "curvature/surface_patches.h"

#include "foundation/chained_hash.h"
#include "measures/triangle_normal.h"

#include <vorel/element_type.h>

#include <cmath>
#include <utility>

namespace vorel::tessalo2d {

namespace {

using edge_set = chained_hash<elfes::edge2>;

/// The local nodes at the ends of the edge opposite local node k.
constexpr int EDGE_ENDS[3][2] = {{1, 2}, {2, 0}, {0, 1}};

/// The square of a number with the number's sign.
double signed_square(double x)
{
    return x * std::fabs(x);
}

/// A set that can't grow lacks the ridges that it had no room for.
[[nodiscard]] bool fill_edge_set(const dense2D<unsigned>& ridges, edge_set& set)
{
    if (ridges.is_empty()) return true;
    if (!set.init(23, 23)) return false;
    set.expect(ridges.cols);
    for (std::size_t j = 0; j < ridges.cols; ++j) {
        const unsigned* const ends = ridges.column(j);
        (void)set.insert({ends[0], ends[1]});
    }
    return true;
}

void fill_facets(const double* points, std::size_t point_ld, const dense2D<unsigned>& connect,
                 surface_patches::facet* facets)
{
    const unsigned* column = connect.column(0);
    for (std::size_t e = 0; e < connect.cols; ++e, column += connect.ld) {
        surface_patches::facet& f = facets[e];
        const vec3 a = load<3>(points + column[0] * point_ld);
        const vec3 b = load<3>(points + column[1] * point_ld);
        const vec3 c = load<3>(points + column[2] * point_ld);
        f.normal = triangle_normal(points, point_ld, column);
        f.square = squared_length(f.normal);
        f.length = std::sqrt(f.square);
        f.centroid = 0.3333333333333333 * ((a + b) + c);
    }
}

/// True when the normals of two triangles enclose less than the angle of which the signed squared
/// cosine is given; compared without a root. False when one of the triangles has no area.
bool within_angle(const surface_patches::facet& t, const surface_patches::facet& u,
                  double squared_cosine)
{
    return signed_square(dot(t.normal, u.normal)) > t.square * u.square * squared_cosine;
}

surface_patches::edge_share share_of_edge(const vec3& a, const vec3& b, const vec3& n,
                                          const vec3& m)
{
    vec3 v = b - a;
    double l = squared_length(v);
    if (l != 0.0 && l != 1.0) {
        l = std::sqrt(l);
        v = (1.0 / l) * v;
    }
    return {std::atan2(dot(cross(n, v), m), dot(n, m)) * l, v};
}

} // namespace

bool prepare_patches(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                     const dense2D<unsigned>& neighbors, const patch_limits& limits,
                     surface_patches& surface)
{
    const std::size_t elements = connect.cols;
    edge_set ridges;
    if (!surface.facets.resize(elements) || !surface.triangles.resize(elements) ||
        !fill_edge_set(limits.ridges, ridges))
        return false;
    surface.squared_radius = limits.radius * limits.radius;
    surface.max_triangles = limits.max_triangles;
    const double* const points = coords.column(0);
    const std::size_t point_ld = coords.ld;
    surface_patches::facet* const facets = surface.facets.begin();
    surface_patches::links* const triangles = surface.triangles.begin();
    fill_facets(points, point_ld, connect, facets);

    const double c = std::cos(limits.max_angle);
    const double squared_cosine = signed_square(c);
    const bool angle_limited = c > -1.0;
    const bool with_ridges = ridges.count > 0;
    std::size_t shares = 0;
    for (std::size_t t = 0; t < elements; ++t) {
        const unsigned* const column = connect.column(t);
        surface_patches::links& at = triangles[t];
        at.closed = 0;
        at.first_share = shares;
        for (int k = 0; k < 3; ++k) {
            const std::size_t row = static_cast<std::size_t>(k);
            unsigned u = row < neighbors.rows ? neighbors(row, t) : UNSET_ID;
            if (u >= elements) u = UNSET_ID;
            at.across[k] = u;
            if (u == UNSET_ID) continue;
            const bool ridge = with_ridges && ridges.find({column[EDGE_ENDS[k][0]],
                                                           column[EDGE_ENDS[k][1]]}) != nullptr;
            if (ridge || (angle_limited && !within_angle(facets[t], facets[u], squared_cosine)))
                at.closed |= 1u << k;
            if (u <= t) ++shares;
        }
    }

    if (!surface.shares.resize(shares)) return false;
    surface_patches::edge_share* share = surface.shares.begin();
    for (std::size_t t = 0; t < elements; ++t) {
        const unsigned* const column = connect.column(t);
        for (int k = 0; k < 3; ++k) {
            const unsigned u = triangles[t].across[k];
            if (u > t) continue;
            const vec3 a = load<3>(points + column[EDGE_ENDS[k][0]] * point_ld);
            const vec3 b = load<3>(points + column[EDGE_ENDS[k][1]] * point_ld);
            *share++ = share_of_edge(a, b, facets[t].normal, facets[u].normal);
        }
    }
    return true;
}

void collect_patch(const surface_patches& surface, const vec3& point, unsigned seed,
                   generation_marks& marks, dense1D<unsigned, 8>& list)
{
    list.size = 0;
    list.append(seed);
    marks.start();
    marks.insert(seed);
    if (!(surface.squared_radius > 0.0)) return;
    const surface_patches::facet* const facets = surface.facets.begin();
    const surface_patches::links* const triangles = surface.triangles.begin();
    for (std::size_t position = 0; position < list.size; ++position) {
        if (list.size >= surface.max_triangles) return;
        const surface_patches::links& t = triangles[list[position]];
        unsigned found[3];
        int count = 0;
        for (int k = 0; k < 3; ++k) {
            const unsigned u = t.across[k];
            if (u == UNSET_ID || marks.holds(u)) continue;
            marks.insert(u);
            if (t.closed >> k & 1u) continue;
            if (squared_length(facets[u].centroid - point) > surface.squared_radius) continue;
            found[count++] = u;
            for (int i = count - 1; i > 0 && found[i] < found[i - 1]; --i)
                std::swap(found[i], found[i - 1]);
        }
        for (int i = 0; i < count; ++i) list.append(found[i]);
    }
}

} // namespace vorel::tessalo2d
