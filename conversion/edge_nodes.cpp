// The passes over the edges of all elements. They meet each edge once for every element that has
// it, in column order.
#include "conversion/edge_nodes.h"

#include "conversion/node_placement.h"
#include "conversion/node_sizes.h"
#include "extrusion/spacing.h"

#include <algorithm>

namespace vorel::tessalo2d {

namespace {

/// Writes the IDs of a run in the direction of the element that lists them.
void write_run(const edge_run& run, unsigned length, unsigned* out)
{
    if (length == 1 || run.first == UNSET_ID) {
        std::fill(out, out + length, run.first);
    } else if (run.reversed) {
        for (unsigned i = 0; i < length; ++i) out[i] = run.first + (length - 1 - i);
    } else {
        for (unsigned i = 0; i < length; ++i) out[i] = run.first + i;
    }
}

/// `SINGLE` edges get one node each, which has no direction.
template <bool MIXED, bool SINGLE>
bool number_columns(edge_numbering& numbering, const dense2D<unsigned>& connect,
                    const element_nodes& added, dense2D<unsigned>& result)
{
    const unsigned* column = connect.block->data + connect.offset;
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    unsigned* out = result.block->data + result.offset;
    const std::size_t out_ld = result.ld;
    const std::size_t rows = result.rows;
    const unsigned run_length = added.on_edge;
    for (std::size_t e = 0; e < elements; ++e, column += ld, out += out_ld) {
        const unsigned corners = corner_count<MIXED>(column);
        for (unsigned k = 0; k < corners; ++k) out[k] = column[k];
        unsigned* run = out + corners;
        edge_run met[4];
        edge_run* last = met;
        for_each_edge(column, corners, [&](unsigned from, unsigned to) {
            const edge_run here = numbering.meet(from, to);
            if (SINGLE)
                *run++ = here.first;
            else
                *last++ = here;
        });
        // Before longer runs are written: they may be billions of entries long.
        if (numbering.next_id() > UNSET_ID) return false;
        if (!SINGLE)
            for (unsigned k = 0; k < corners; ++k, run += run_length)
                write_run(met[k], run_length, run);
        if (MIXED) std::fill(out + added.rows(corners), out + rows, UNSET_ID);
    }
    return true;
}

/// The common case of one node on each edge and no sizes. Which sides are new is hard to foretell:
/// a node is placed at every side, and the next one overwrites it unless it was new.
template <int D, bool MIXED>
void place_midpoints(dense2D<double>& coords, const dense2D<unsigned>& connect,
                     const dense2D<unsigned>& result, std::size_t first, std::size_t end)
{
    double* const points = coords.block->data + coords.offset;
    const std::size_t point_ld = coords.ld;
    const unsigned* column = connect.block->data + connect.offset;
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    const unsigned* listed = result.block->data + result.offset;
    const std::size_t listed_ld = result.ld;
    std::size_t next = first;
    for (std::size_t e = 0; e < elements && next != end; ++e, column += ld, listed += listed_ld) {
        const unsigned corners = corner_count<MIXED>(column);
        const unsigned* midnode = listed + corners;
        for_each_edge(column, corners, [&](unsigned from, unsigned to) {
            if (next == end) return;
            const vec<D> a = load<D>(points + from * point_ld);
            const vec<D> b = load<D>(points + to * point_ld);
            store(a + 0.5 * (b - a), points + next * point_ld);
            next += *midnode++ == next;
        });
    }
}

template <int D, bool MIXED>
void place_columns(dense2D<double>& coords, const dense2D<unsigned>& connect,
                   const element_nodes& added, const dense2D<unsigned>& result, std::size_t first,
                   std::size_t end, const node_sizes& sizes)
{
    double* const points = coords.block->data + coords.offset;
    const std::size_t point_ld = coords.ld;
    const unsigned* column = connect.block->data + connect.offset;
    const std::size_t ld = connect.ld;
    const std::size_t elements = connect.cols;
    const unsigned* listed = result.block->data + result.offset;
    const std::size_t listed_ld = result.ld;
    const unsigned run_length = added.on_edge;
    const double step = 1.0 / (static_cast<double>(run_length) + 1.0);
    std::size_t next = first;
    for (std::size_t e = 0; e < elements && next != end; ++e, column += ld, listed += listed_ld) {
        const unsigned corners = corner_count<MIXED>(column);
        const unsigned* run = listed + corners;
        for_each_edge(column, corners, [&](unsigned from, unsigned to) {
            // A run that goes down is a prepared one against its direction, whose numbers may
            // reach beyond the old nodes.
            const bool is_new =
                run[0] == next && next != end && (run_length == 1 || run[1] == next + 1);
            run += run_length;
            if (!is_new) return;
            const vec<D> a = load<D>(points + from * point_ld);
            const vec<D> b = load<D>(points + to * point_ld);
            const bool sized = sizes.has(from) && sizes.has(to);
            for (unsigned i = 0; i < run_length; ++i, ++next) {
                double t = (static_cast<double>(i) + 1.0) * step;
                if (sized) t = geometric_fraction(t, sizes[from], sizes[to]);
                store(point_on_edge(a, b, t), points + next * point_ld);
            }
        });
    }
}

} // namespace

bool number_edge_nodes(edge_numbering& numbering, const dense2D<unsigned>& connect,
                       const element_nodes& added, dense2D<unsigned>& result)
{
    const bool mixed = connect.rows == 4;
    const auto number = added.on_edge == 1
                            ? (mixed ? number_columns<true, true> : number_columns<false, true>)
                            : (mixed ? number_columns<true, false> : number_columns<false, false>);
    return number(numbering, connect, added, result);
}

void place_edge_nodes(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const element_nodes& added, const dense2D<unsigned>& result,
                      std::size_t first, std::size_t end, const dense1D<double, 8>& sizes)
{
    if (added.on_edge == 1 && sizes.size == 0) {
        const auto place =
            coords.rows == 2
                ? (connect.rows == 4 ? place_midpoints<2, true> : place_midpoints<2, false>)
                : (connect.rows == 4 ? place_midpoints<3, true> : place_midpoints<3, false>);
        return place(coords, connect, result, first, end);
    }
    const node_sizes known(sizes);
    const auto place = coords.rows == 2
                           ? (connect.rows == 4 ? place_columns<2, true> : place_columns<2, false>)
                           : (connect.rows == 4 ? place_columns<3, true> : place_columns<3, false>);
    place(coords, connect, added, result, first, end, known);
}

void fill_refused_edges(edge_numbering& numbering, const dense2D<unsigned>& connect,
                        const element_nodes& added, dense2D<unsigned>& result)
{
    for (std::size_t e = 0; e < connect.cols; ++e) {
        const unsigned* const column = connect.column(e);
        const unsigned corners =
            connect.rows == 4 ? corner_count<true>(column) : corner_count<false>(column);
        unsigned* run = result.column(e) + corners;
        for_each_edge(column, corners, [&](unsigned from, unsigned to) {
            if (run[0] == UNSET_ID) write_run(numbering.find_refused(from, to), added.on_edge, run);
            run += added.on_edge;
        });
    }
}

} // namespace vorel::tessalo2d
