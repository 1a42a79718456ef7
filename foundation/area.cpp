// The area of a mesh.
#include "foundation/area.h"

#include "foundation/status.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

/// Sum of the doubled areas in column order. `MIXED` storage has 4 rows with triangles among them.
template <int D, bool MIXED>
double sum_of_double_areas(const dense2D<double>& coords, const dense2D<unsigned>& connect)
{
    const double* const points = coords.block->data + coords.offset;
    const std::size_t point_ld = coords.ld;
    const unsigned* column = connect.block->data + connect.offset;
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    double sum = 0.0;
    for (std::size_t e = 0; e < elements; ++e, column += ld) {
        if (MIXED && column[3] < UNSET_ID)
            sum += quad_double_area<D>(points, point_ld, column);
        else
            sum += triangle_double_area<D>(points, point_ld, column);
    }
    return sum;
}

} // namespace

int area(const dense2D<double>& coords, const dense2D<unsigned>& connect, double& result)
{
    result = 0.0;
    if (is_empty(connect)) return success;
    if (!has_rows(coords, 2, 3)) return bad_argument(1);
    if (!has_rows(connect, 3, 4)) return bad_argument(2);
    const bool mixed = connect.rows == 4;
    const element_type form = mixed ? ELEMENT_ANY_FACE : ELEMENT_T3;
    if (!tessalo::check_IDs(connect, form, node_bound(coords))) return bad_argument(2);

    const bool plane = coords.rows == 2;
    double sum;
    if (plane)
        sum = mixed ? sum_of_double_areas<2, true>(coords, connect)
                    : sum_of_double_areas<2, false>(coords, connect);
    else
        sum = mixed ? sum_of_double_areas<3, true>(coords, connect)
                    : sum_of_double_areas<3, false>(coords, connect);
    result = sum * 0.5;
    return success;
}

} // namespace vorel::tessalo2d
