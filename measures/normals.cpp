// Normal vectors of the elements and at the nodes of a surface.
#include "foundation/status.h"
#include "measures/triangle_normal.h"

#include <vorel/tessalo2d.h>

#include <cfloat>
#include <cmath>

namespace vorel::tessalo2d {

namespace {

/// The elements of a surface mesh. `MIXED` storage has 4 rows with triangles among them.
template <bool MIXED>
struct surface {
    surface(const dense2D<double>& coords, const dense2D<unsigned>& connect)
        : points(coords.column(0)),
          point_ld(coords.ld),
          first_column(connect.column(0)),
          ld(connect.ld),
          elements(connect.cols)
    {
    }

    const unsigned* column(std::size_t e) const { return first_column + e * ld; }

    static bool is_quad(const unsigned* c) { return MIXED && c[3] < UNSET_ID; }

    /// False for an element that misses a corner it needs.
    static bool has_corners(const unsigned* c)
    {
        return ((c[0] == UNSET_ID) | (c[1] == UNSET_ID) | (c[2] == UNSET_ID)) == 0;
    }

    vec3 raw_normal(const unsigned* c) const
    {
        return is_quad(c) ? quad_normal(points, point_ld, c) : triangle_normal(points, point_ld, c);
    }

    const double* points;
    std::size_t point_ld;
    const unsigned* first_column;
    std::size_t ld;
    std::size_t elements;
};

template <bool MIXED>
void element_normals(const surface<MIXED>& mesh, bool unit_length, dense2D<double>& vectors)
{
    double* to = vectors.column(0);
    const std::size_t to_ld = vectors.ld;
    for (std::size_t e = 0; e < mesh.elements; ++e, to += to_ld) {
        const unsigned* const c = mesh.column(e);
        vec3 n{{0.0, 0.0, 0.0}};
        if (mesh.has_corners(c)) n = mesh.raw_normal(c);
        store(unit_length ? normalized(n) : n, to);
    }
}

/// How the normals of the elements around a node make the node's.
enum class gathering { mean, smallest, largest };

/// The weight of an element of size s.
double weight_of(double s, double exponent)
{
    // pow is exact for these two, and slow.
    if (exponent == 0.0) return 1.0;
    if (exponent == 1.0) return s;
    return std::pow(s, exponent);
}

/// First pass: gathers unit normals and weights at the nodes, in the order of the elements. With a
/// choice of one element the weights mix sizes and counts; kept: callers rely on it.
template <gathering HOW, bool MIXED>
void gather_normals(const surface<MIXED>& mesh, double exponent, double* weights, double* vectors,
                    std::size_t vector_ld)
{
    for (std::size_t e = 0; e < mesh.elements; ++e) {
        const unsigned* const c = mesh.column(e);
        if (!mesh.has_corners(c)) continue;
        vec3 n = mesh.raw_normal(c);
        double s = squared_length(n);
        if (s != 0.0 && s != 1.0) {
            s = std::sqrt(s);
            n = 1.0 / s * n;
        }
        const double w = HOW == gathering::mean ? weight_of(s, exponent) : 1.0;
        const vec3 weighted = w * n;
        const int corners = mesh.is_quad(c) ? 4 : 3;
        for (int k = 0; k < corners; ++k) {
            double& weight = weights[c[k]];
            double* const vector = vectors + c[k] * vector_ld;
            if ((HOW == gathering::largest && s > weight) ||
                (HOW == gathering::smallest && (s < weight || weight == 0.0))) {
                weight = s;
                store(n, vector);
            } else {
                weight += w;
                store(load<3>(vector) + weighted, vector);
            }
        }
    }
}

/// Second pass: turns sums into means or unit vectors.
void finish_normals(std::size_t nodes, bool unit_length, const double* weights, double* vectors,
                    std::size_t vector_ld)
{
    for (std::size_t node = 0; node < nodes; ++node, vectors += vector_ld) {
        if (weights[node] == 0.0) continue;
        const vec3 sum = load<3>(vectors);
        store(unit_length ? normalized(sum) : 1.0 / weights[node] * sum, vectors);
    }
}

template <bool MIXED>
void node_normals(const surface<MIXED>& mesh, double exponent, bool unit_length, double* weights,
                  dense2D<double>& result)
{
    double* const vectors = result.column(0);
    const std::size_t ld = result.ld;
    if (exponent == DBL_MAX) {
        gather_normals<gathering::largest>(mesh, exponent, weights, vectors, ld);
    } else if (exponent == -DBL_MAX) {
        gather_normals<gathering::smallest>(mesh, exponent, weights, vectors, ld);
    } else {
        // An exponent that is not finite weighs all alike.
        const double power = std::isfinite(exponent) ? exponent : 0.0;
        gather_normals<gathering::mean>(mesh, power, weights, vectors, ld);
        finish_normals(result.cols, unit_length, weights, vectors, ld);
    }
}

/// The checks of both forms on a mesh that is not empty.
int check(const dense2D<double>& coords, const dense2D<unsigned>& connect)
{
    if (!has_rows(coords, 3)) return bad_argument(1);
    if (!has_rows(connect, 3, 4)) return bad_argument(2);
    if (!tessalo::check_IDs(connect, node_bound(coords))) return bad_argument(2);
    return success;
}

} // namespace

int normals(const dense2D<double>& coords, const dense2D<unsigned>& connect, bool unit_length,
            dense2D<double>& vectors)
{
    vectors.clear();
    if (is_empty(coords) || is_empty(connect)) return success;
    if (const int status = check(coords, connect)) return status;
    if (!vectors.resize(3, connect.cols)) return out_of_memory;
    if (has_rows(connect, 4))
        element_normals<true>({coords, connect}, unit_length, vectors);
    else
        element_normals<false>({coords, connect}, unit_length, vectors);
    return success;
}

int normals(const dense2D<double>& coords, const dense2D<unsigned>& connect, double weight_exponent,
            bool unit_length, dense2D<double>& vectors)
{
    vectors.clear();
    if (is_empty(coords) || is_empty(connect)) return success;
    if (const int status = check(coords, connect)) return status;
    const std::size_t nodes = coords.cols;
    dense1D<double, 8> weights;
    if (!weights.resize(nodes, 0.0)) return out_of_memory;
    if (!vectors.resize(3, nodes, 0.0)) return out_of_memory;
    if (has_rows(connect, 4))
        node_normals<true>({coords, connect}, weight_exponent, unit_length, weights.begin(),
                           vectors);
    else
        node_normals<false>({coords, connect}, weight_exponent, unit_length, weights.begin(),
                            vectors);
    return success;
}

} // namespace vorel::tessalo2d
