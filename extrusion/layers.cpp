// Elements and spacing of extruded layers.
#include "extrusion/layers.h"

#include "extrusion/spacing.h"
#include "foundation/ID_lanes.h"
#include "foundation/status.h"

namespace vorel::tessalo2d {

bool IDs_suffice(std::size_t used, std::size_t count, std::size_t each)
{
    const std::size_t left = used < UNSET_ID ? UNSET_ID - used : 0;
    return each == 0 || count <= left / each;
}

unsigned sized_layer_count(double length, const layer_request& request)
{
    const double mean = logarithmic_mean(request.h0, request.h1);
    const double x = mean > 0.0 ? length / mean : 0.0;
    return static_cast<unsigned>(subdivision_count(x, request.force_even ? 2 : 1));
}

double layer_position(unsigned l, double step, double h0, double h1)
{
    const double t = l * step;
    return h0 > 0.0 && h1 > 0.0 ? geometric_fraction(t, h0, h1) : t;
}

int extrude_elements_Q4(const dense2D<unsigned>& connect, const node_map& map, unsigned N,
                        dense2D<unsigned>& connectQ)
{
    const std::size_t cols0 = connectQ.cols;
    const std::size_t edges = connect.cols;
    if (!extend(connectQ, 4, Q4_PER_LAYER * N * edges, UNSET_ID)) return out_of_memory;
    if (N == 0) return success;

    const unsigned m = static_cast<unsigned>(map.size());
    const std::size_t ld = connectQ.ld;
    unsigned* column = connectQ.column(cols0);
    for (std::size_t e = 0; e < edges; ++e) {
        const ID_pair ends = load_lanes<ID_pair>(connect.column(e));
        const ID_pair copies = load_lanes<ID_pair>(map.copies.column(e));
        store_lanes(joined(ends, swapped(copies)), column);
        column += ld;
        // From the second layer on all four corners grow by the same number.
        ID_lanes corners = joined(copies, swapped(copies + m));
        for (unsigned l = 1; l < N; ++l, column += ld) {
            store_lanes(corners, column);
            corners += m;
        }
    }
    return success;
}

int extrude_elements_T3(const dense2D<unsigned>& connect, const node_map& map, unsigned N,
                        int pattern, dense2D<unsigned>& connectT)
{
    const std::size_t cols0 = connectT.cols;
    const std::size_t edges = connect.cols;
    if (!extend(connectT, 3, T3_PER_LAYER * N * edges, UNSET_ID)) return out_of_memory;
    if (N == 0) return success;

    const unsigned m = static_cast<unsigned>(map.size());
    const std::size_t ld = connectT.ld;
    unsigned* column = connectT.column(cols0);
    const bool checkerboard = pattern == 2;
    for (std::size_t e = 0; e < edges; ++e) {
        // The quadrilateral of a layer has lower[0], lower[1], upper[1] and upper[0] as corners.
        ID_pair lower = load_lanes<ID_pair>(connect.column(e));
        ID_pair upper = load_lanes<ID_pair>(map.copies.column(e));
        bool from_far = pattern == 0 || (checkerboard && e % 2 == 1);
        for (unsigned l = 0; l < N; ++l, column += 2 * ld) {
            store_lanes(lower, column);
            column[2] = from_far ? upper[0] : upper[1];
            column[ld] = from_far ? lower[1] : lower[0];
            store_lanes(swapped(upper), column + ld + 1);
            from_far ^= checkerboard;
            lower = upper;
            upper += m;
        }
    }
    return success;
}

} // namespace vorel::tessalo2d
