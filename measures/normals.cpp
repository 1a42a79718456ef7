// Normal vectors of the elements and at the nodes of a surface.
#include "foundation/status.h"
#include "measures/normal_block.h"

#include <vorel/tessalo2d.h>

#include <algorithm>
#include <cfloat>
#include <cmath>

namespace vorel::tessalo2d {

namespace {

/// Calls `work(block, column, count)` for one block of elements after the other; `column` is
/// that of the first, and the block holds their raw normals.
template <bool MIXED, class Work>
void for_each_block(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                    const Work& work)
{
    const double* const points = coords.column(0);
    const std::size_t elements = connect.cols;
    const std::size_t ld = connect.ld;
    const unsigned* column = connect.column(0);
    normal_block<MIXED> block;
    for (std::size_t first = 0; first < elements; first += block.CAPACITY) {
        const std::size_t count = std::min(block.CAPACITY, elements - first);
        block.load(points, coords.ld, column, ld, count);
        work(block, column, count);
        column += count * ld;
    }
}

template <bool MIXED>
void element_normals(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                     bool unit_length, dense2D<double>& vectors)
{
    const std::size_t to_ld = vectors.ld;
    double* to = vectors.column(0);
    for_each_block<MIXED>(coords, connect,
                          [&](normal_block<MIXED>& block, const unsigned*, std::size_t count) {
                              if (unit_length) block.scale(count);
                              block.store_normals(count, to, to_ld);
                              to += count * to_ld;
                          });
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
void gather_normals(const dense2D<double>& coords, const dense2D<unsigned>& connect,
                    double exponent, double* weights, double* vectors, std::size_t vector_ld)
{
    const std::size_t ld = connect.ld;
    const auto gather = [&](const unsigned* c, int corners, const vec3& n, double s) {
        const double w = HOW == gathering::mean ? weight_of(s, exponent) : 1.0;
        const vec3 weighted = w * n;
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
    };
    for_each_block<MIXED>(
        coords, connect,
        [&](normal_block<MIXED>& block, const unsigned* column, std::size_t count) {
            block.scale(count);
            for (std::size_t i = 0; i < count; ++i, column += ld)
                if (block.has_corners(column))
                    gather(column, block.is_quad(column) ? 4 : 3, block.normal(i), block.length(i));
        });
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
void node_normals(const dense2D<double>& coords, const dense2D<unsigned>& connect, double exponent,
                  bool unit_length, double* weights, dense2D<double>& result)
{
    double* const vectors = result.column(0);
    const std::size_t ld = result.ld;
    if (exponent == DBL_MAX) {
        gather_normals<gathering::largest, MIXED>(coords, connect, exponent, weights, vectors, ld);
    } else if (exponent == -DBL_MAX) {
        gather_normals<gathering::smallest, MIXED>(coords, connect, exponent, weights, vectors, ld);
    } else {
        // An exponent that is not finite weighs all alike.
        const double power = std::isfinite(exponent) ? exponent : 0.0;
        gather_normals<gathering::mean, MIXED>(coords, connect, power, weights, vectors, ld);
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
        element_normals<true>(coords, connect, unit_length, vectors);
    else
        element_normals<false>(coords, connect, unit_length, vectors);
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
        node_normals<true>(coords, connect, weight_exponent, unit_length, weights.begin(), vectors);
    else
        node_normals<false>(coords, connect, weight_exponent, unit_length, weights.begin(),
                            vectors);
    return success;
}

} // namespace vorel::tessalo2d
