// Second fundamental form of a parametric surface from its first derivatives: each coefficient is a
// line integral around the node's ring of triangles (Green's theorem), divided by the ring's area
// in the parameter plane.
#include "foundation/status.h"
#include "foundation/vec.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

/// What a node carries through the call; one cache line.
struct ring {
    vec3 normal;    ///< unit normal of the surface at the node
    double weight;  ///< twice the area of the ring in the parameter plane
    double sums[3]; ///< twice the line integrals of L, M, N
    double unused;
};

vec3 surface_normal(const double* derivatives)
{
    return normalized(cross(load<3>(derivatives), load<3>(derivatives + 3)));
}

/// Adds to the sums at node c the share of the ring edge from p to q. The two end values of the
/// edge are added, not averaged, so each sum is twice its integral.
void add_ring_edge(const vec2& uv_c, const vec2& uv_p, const vec2& uv_q, const double* at_p,
                   const double* at_q, ring& c)
{
    const vec2 a = uv_p - uv_c;
    const vec2 b = uv_q - uv_c;
    const double dv = a[1] - b[1];
    const double du = b[0] - a[0];
    const double d = a[0] * dv + du * a[1];
    if (!(d < 0.0 || d > 0.0)) return;
    const double area = std::fabs(a[0] * b[1] - b[0] * a[1]);
    c.weight += area;
    // Plus or minus 1: the result does not depend on the triangle's orientation.
    const double s = area / d;
    const double along_u = s * dot(c.normal, load<3>(at_p) + load<3>(at_q));
    const double along_v = s * dot(c.normal, load<3>(at_p + 3) + load<3>(at_q + 3));
    c.sums[0] -= along_u * dv;
    c.sums[2] -= along_v * du;
    c.sums[1] -= (along_u * du + along_v * dv) * 0.5;
}

} // namespace

int parametric_curvatures(const dense2D<double>& uvs, const dense2D<unsigned>& connect,
                          const dense2D<double>& derivatives, dense2D<double>& forms)
{
    forms.clear();
    if (is_empty(connect)) return success;
    const std::size_t nodes = uvs.cols;
    if (!has_rows(uvs, 2)) return bad_argument(1);
    if (!tessalo::check_IDs(connect, ELEMENT_T3, node_bound(uvs))) return bad_argument(2);
    if (!has_rows(derivatives, 6) || derivatives.cols != nodes) return bad_argument(3);
    dense1D<ring, 8> rings;
    if (!rings.reserve(nodes, 1)) return out_of_memory;
    if (!forms.resize(3, nodes)) return out_of_memory;

    ring* const at = rings.begin();
    const double* const uv = uvs.column(0);
    const std::size_t uv_ld = uvs.ld;
    const double* const first = derivatives.column(0);
    const std::size_t ld = derivatives.ld;
    for (std::size_t i = 0; i < nodes; ++i) at[i] = {surface_normal(first + i * ld), 0.0, {}, 0.0};

    const unsigned* column = connect.column(0);
    for (std::size_t e = 0; e < connect.cols; ++e, column += connect.ld) {
        vec2 points[3];
        for (int k = 0; k < 3; ++k) points[k] = load<2>(uv + column[k] * uv_ld);
        for (int k = 0; k < 3; ++k) {
            const int q = k < 2 ? k + 1 : 0;
            const int c = 3 - k - q;
            add_ring_edge(points[c], points[k], points[q], first + column[k] * ld,
                          first + column[q] * ld, at[column[c]]);
        }
    }
    double* out = forms.column(0);
    for (std::size_t i = 0; i < nodes; ++i, out += 3) {
        const double weight = at[i].weight;
        const double w = weight > 0.0 ? 1.0 / weight : weight;
        for (int k = 0; k < 3; ++k) out[k] = at[i].sums[k] * w;
    }
    return success;
}

} // namespace vorel::tessalo2d
