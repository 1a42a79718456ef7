// Structured grids: a closed loop of boundary nodes is filled with nodes by a transfinite blend of
// its four sides, and with quadrilaterals or triangles.
#include "foundation/status.h"
#include "structured/loop_grid.h"

#include <vorel/tessalo2d.h>

#include <algorithm>

namespace vorel::tessalo2d {

namespace {

/// The coordinates of the nodes: first coordinate of node 0, distance between nodes.
struct node_points {
    const double* of(unsigned node) const { return first + node * ld; }

    double* first;
    std::size_t ld;
};

/// A stretch of the interior in the direction of j, and what its blend takes from the second and
/// the fourth side. It is used for all i, so that each side node is fetched once.
template <int D>
struct stretch {
    static constexpr std::size_t LONGEST = 128;

    stretch(const loop_grid& grid, const unsigned* loop, const node_points& points,
            std::size_t first, std::size_t count)
        : begin(first), size(count)
    {
        for (std::size_t k = 0; k < size; ++k) {
            const std::size_t j = begin + k;
            v[k] = static_cast<double>(j) / static_cast<double>(grid.N);
            one_less_v[k] = 1.0 - v[k];
            const double* const second_side = points.of(loop[grid.second_side(j)]);
            const double* const fourth_side = points.of(loop[grid.fourth_side(j)]);
            for (int d = 0; d < D; ++d) {
                second[d][k] = second_side[d];
                fourth[d][k] = fourth_side[d];
            }
        }
    }

    std::size_t begin;
    std::size_t size;
    double v[LONGEST];
    double one_less_v[LONGEST];
    double second[D][LONGEST];
    double fourth[D][LONGEST];
};

/// What the blend takes from the first and the third side at i, and from the corners.
template <int D>
struct crossing {
    crossing(const loop_grid& grid, const unsigned* loop, const node_points& points, std::size_t i)
        : u(static_cast<double>(i) / static_cast<double>(grid.M))
    {
        copy(points.of(loop[grid.first_side(i)]), first);
        copy(points.of(loop[grid.third_side(i)]), third);
        copy(points.of(loop[0]), c00);
        copy(points.of(loop[grid.M]), c10);
        copy(points.of(loop[grid.M + grid.N]), c11);
        copy(points.of(loop[2 * grid.M + grid.N]), c01);
    }

    static void copy(const double* from, double* to) { std::copy(from, from + D, to); }

    double u;
    double first[D];
    double third[D];
    double c00[D];
    double c10[D];
    double c11[D];
    double c01[D];
};

/// The Coons patch at one i over a stretch of j: the sides, less the corners that two sides count
/// each. The eight terms are added in this order. 1 - v and v - 1 differ in the sign only, so that
/// the corners can be subtracted.
template <int D>
void blend(const crossing<D>& at, const stretch<D>& along, double* to, std::size_t ld)
{
    const double u = at.u;
    const double one_less_u = 1.0 - u;
    for (std::size_t k = 0; k < along.size; ++k) {
        const double v = along.v[k];
        const double one_less_v = along.one_less_v[k];
        const double on_c00 = one_less_v * one_less_u;
        const double on_c10 = one_less_v * u;
        const double on_c11 = v * u;
        const double on_c01 = one_less_u * v;
        for (int d = 0; d < D; ++d) {
            double sum = one_less_v * at.first[d];
            sum += u * along.second[d][k];
            sum += v * at.third[d];
            sum += one_less_u * along.fourth[d][k];
            sum -= on_c00 * at.c00[d];
            sum -= on_c10 * at.c10[d];
            sum -= on_c11 * at.c11[d];
            sum -= on_c01 * at.c01[d];
            to[k * ld + static_cast<std::size_t>(d)] = sum;
        }
    }
}

/// Writes the coordinates of all interior nodes, the first of which is `nods0`.
template <int D>
void blend_interior(const loop_grid& grid, const unsigned* loop, const node_points& points,
                    std::size_t nods0)
{
    constexpr std::size_t LONGEST = stretch<D>::LONGEST;
    if (grid.M < 2) return;
    for (std::size_t j = 1; j < grid.N; j += LONGEST) {
        const stretch<D> along(grid, loop, points, j, std::min(LONGEST, grid.N - j));
        for (std::size_t i = 1; i < grid.M; ++i) {
            const crossing<D> at(grid, loop, points, i);
            double* const to = points.first + (nods0 + grid.interior(i, j)) * points.ld;
            // Packed columns are the usual case and can be stored as whole registers.
            if (points.ld == D)
                blend<D>(at, along, to, D);
            else
                blend<D>(at, along, to, points.ld);
        }
    }
}

struct cell {
    unsigned g00;
    unsigned g10;
    unsigned g11;
    unsigned g01;
};

/// Numbers the nodes of the grid.
struct grid_numbering {
    unsigned node(std::size_t i, std::size_t j) const
    {
        if (j == 0) return loop[grid.first_side(i)];
        if (i == grid.M) return loop[grid.second_side(j)];
        if (j == grid.N) return loop[grid.third_side(i)];
        if (i == 0) return loop[grid.fourth_side(j)];
        return static_cast<unsigned>(nods0 + grid.interior(i, j));
    }

    cell around(std::size_t i, std::size_t j) const
    {
        return {node(i, j), node(i + 1, j), node(i + 1, j + 1), node(i, j + 1)};
    }

    loop_grid grid;
    const unsigned* loop;
    std::size_t nods0;
};

/// Writes a cell as one quadrilateral.
struct Q4_cells {
    static constexpr std::size_t ROWS = 4;
    static constexpr std::size_t COLUMNS = 1;

    void write(const cell& c, std::size_t, unsigned* to, std::size_t) const
    {
        to[0] = c.g00;
        to[1] = c.g10;
        to[2] = c.g11;
        to[3] = c.g01;
    }
};

/// Writes a cell as two triangles. The diagonal runs from g10 to g01 with pattern 0, from g00 to
/// g11 with pattern 1, and alternates with pattern 2.
struct T3_cells {
    static constexpr std::size_t ROWS = 3;
    static constexpr std::size_t COLUMNS = 2;

    explicit T3_cells(int pattern) : fixed(pattern == 0), alternating(pattern == 2) {}

    void write(const cell& c, std::size_t i_plus_j, unsigned* to, std::size_t ld) const
    {
        const bool from_g10 = ((i_plus_j & alternating) | fixed) != 0;
        to[0] = c.g00;
        to[1] = c.g10;
        to[2] = from_g10 ? c.g01 : c.g11;
        to[ld] = from_g10 ? c.g10 : c.g00;
        to[ld + 1] = c.g11;
        to[ld + 2] = c.g01;
    }

    unsigned fixed;
    unsigned alternating;
};

/// Writes `count` cells of the strip i from j = 1 on, none of which has a boundary node.
template <class Cells>
void write_inner_cells(const grid_numbering& numbering, std::size_t i, std::size_t count,
                       const Cells& cells, unsigned* to, std::size_t ld)
{
    const unsigned near = numbering.node(i, 1);
    const unsigned far = numbering.node(i + 1, 1);
    const auto write = [&](std::size_t k, unsigned* at, std::size_t at_ld) {
        const unsigned near_k = near + static_cast<unsigned>(k);
        const unsigned far_k = far + static_cast<unsigned>(k);
        cells.write({near_k, far_k, far_k + 1, near_k + 1}, i + 1 + k, at, at_ld);
    };
    const std::size_t step = Cells::COLUMNS * ld;
    std::size_t k = 0;
    if (ld == Cells::ROWS) {
        // Two cells without gaps, again and again, with numbers that rise by two.
        constexpr std::size_t ENTRIES = Cells::COLUMNS * Cells::ROWS;
        unsigned pair[2 * ENTRIES];
        write(0, pair, Cells::ROWS);
        write(1, pair + ENTRIES, Cells::ROWS);
        for (; k + 2 <= count; k += 2, to += 2 * ENTRIES)
            for (std::size_t entry = 0; entry < 2 * ENTRIES; ++entry)
                to[entry] = pair[entry] + static_cast<unsigned>(k);
    }
    for (; k < count; ++k, to += step) write(k, to, ld);
}

template <class Cells>
void write_cells(const grid_numbering& numbering, const Cells& cells, unsigned* to, std::size_t ld)
{
    const std::size_t M = numbering.grid.M;
    const std::size_t N = numbering.grid.N;
    const std::size_t step = Cells::COLUMNS * ld;
    for (std::size_t i = 0; i < M; ++i, to += N * step) {
        const bool inner = i > 0 && i + 1 < M && N > 2;
        const std::size_t resume = inner ? N - 1 : 1;
        cells.write(numbering.around(i, 0), i, to, ld);
        if (inner) write_inner_cells(numbering, i, N - 2, cells, to + step, ld);
        for (std::size_t j = resume; j < N; ++j)
            cells.write(numbering.around(i, j), i + j, to + j * step, ld);
    }
}

/// The checks that both kinds of grid make on the loop.
int check_loop(const dense2D<double>& coords, const dense1D<unsigned, 8>& boundary,
               const loop_grid& grid)
{
    const std::size_t L = boundary.size;
    if (!has_rows(coords, 2, 3)) return bad_argument(1);
    if (L < 5) return bad_argument(2);
    if (boundary[0] != boundary[L - 1]) return bad_argument(2);
    if (!tessalo::check_IDs(boundary, node_bound(coords))) return bad_argument(2);
    if (!grid.fits(L)) return bad_argument(3);
    return success;
}

/// True if all interior nodes get a node ID.
bool can_number(const loop_grid& grid, std::size_t nods0)
{
    if (grid.N < 2 || grid.M < 2) return true;
    return nods0 <= UNSET_ID && grid.M - 1 <= (UNSET_ID - nods0) / (grid.N - 1);
}

/// Appends the interior nodes and the cells of a loop that passed its checks.
template <class Cells>
int append_grid(dense2D<double>& coords, const dense1D<unsigned, 8>& boundary,
                const loop_grid& grid, const Cells& cells, dense2D<unsigned>& connect)
{
    constexpr std::size_t ROWS = Cells::ROWS;
    const dense2D<double> before = coords;
    const std::size_t nods0 = coords.cols;
    const std::size_t cols0 = connect.cols;
    const std::size_t dangling = connect.is_empty() ? cols0 : 0;
    const std::size_t cols = cols0 + Cells::COLUMNS * grid.N * grid.M;
    // Elements are written, and storage moves, while the loop is read: from a copy if they are in
    // one block.
    dense1D<unsigned, 8> around = boundary;
    const bool kept = !shares_block(connect, boundary) || around.copy(boundary);
    // Without cells along the first side the new count wraps and cuts nodes off.
    // Kept: callers rely on it.
    if (!kept || !can_number(grid, nods0) || cols < cols0 ||
        !coords.resize(coords.rows, nods0 + grid.interior_count()) || !connect.resize(ROWS, cols)) {
        // Back to the old nodes, in their layout, and to the old count of elements. The output has
        // its rows from now on, and columns that had none hold no element; if there is no storage
        // for those they stay without.
        coords = before;
        (void)connect.resize(ROWS, cols0, UNSET_ID);
        return out_of_memory;
    }

    const unsigned* const loop = around.begin();
    const node_points points{coords.block->data + coords.offset, coords.ld};
    if (coords.rows == 2)
        blend_interior<2>(grid, loop, points, nods0);
    else
        blend_interior<3>(grid, loop, points, nods0);

    unsigned* const first = connect.block->data + connect.offset;
    const std::size_t ld = connect.ld;
    // An output that had columns but no rows: its columns hold no element.
    for (std::size_t j = 0; j < dangling; ++j) std::fill_n(first + j * ld, ROWS, UNSET_ID);
    write_cells(grid_numbering{grid, loop, nods0}, cells, first + cols0 * ld, ld);
    return success;
}

} // namespace

int mesh_struct_Q4(dense2D<double>& coords, const dense1D<unsigned, 8>& boundary, unsigned N,
                   dense2D<unsigned>& connectQ)
{
    const loop_grid grid(boundary.size, N);
    if (N == 0 || boundary.size == 0 || grid.M == 0) return success;
    if (const int status = check_loop(coords, boundary, grid)) return status;
    if (!takes_rows(connectQ, 4)) return bad_argument(4);
    return append_grid(coords, boundary, grid, Q4_cells(), connectQ);
}

int mesh_struct_T3(dense2D<double>& coords, const dense1D<unsigned, 8>& boundary, unsigned N,
                   int pattern, dense2D<unsigned>& connectT)
{
    const loop_grid grid(boundary.size, N);
    if (N == 0 || boundary.size == 0) return success;
    if (const int status = check_loop(coords, boundary, grid)) return status;
    if (static_cast<unsigned>(pattern) > 2) return bad_argument(4);
    if (!takes_rows(connectT, 3)) return bad_argument(5);
    return append_grid(coords, boundary, grid, T3_cells(pattern), connectT);
}

} // namespace vorel::tessalo2d
