// Numbering, elements and spacing of extruded layers.
#include "extrusion/layers.h"

#include "extrusion/spacing.h"
#include "foundation/status.h"

namespace vorel::tessalo2d {

namespace {

/// The four corners of an edge's quadrilateral in one layer, and the step to the next layer: the
/// far side becomes the near side.
struct swept_edge {
    unsigned a, b;
    unsigned a_copy, b_copy;

    void advance(unsigned nodes_per_layer)
    {
        a = a_copy;
        b = b_copy;
        a_copy += nodes_per_layer;
        b_copy += nodes_per_layer;
    }
};

/// The copy of a node in the first layer. Every node of the line mesh is in the map as long as the
/// output does not share the line mesh's storage.
unsigned copy_of(node_map& map, unsigned id)
{
    const node_map::slot* const found = map.find({id, 0});
    return found ? found->first.second : UNSET_ID;
}

swept_edge first_layer(const unsigned* edge, node_map& map)
{
    return {edge[0], edge[1], copy_of(map, edge[0]), copy_of(map, edge[1])};
}

/// Room for `per_layer` elements of each edge in each of `N` layers behind the columns of the
/// output. Element IDs stay below `UNSET_ID`.
bool extend_output(const dense2D<unsigned>& connect, unsigned N, std::size_t rows,
                   std::size_t per_layer, dense2D<unsigned>& output)
{
    const std::size_t per_edge = per_layer * N;
    const std::size_t ids = output.cols < UNSET_ID ? UNSET_ID - output.cols : 0;
    if (per_edge != 0 && connect.cols > ids / per_edge) return false;
    return extend(output, rows, per_edge * connect.cols, UNSET_ID);
}

} // namespace

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

bool extrusion_node_map(const dense2D<unsigned>& connect, unsigned first_id, node_map& map)
{
    if (!map.init(23, 23)) return false;
    map.expect(connect.cols);
    const unsigned* edge = connect.column(0);
    const std::size_t ld = connect.ld;
    const std::size_t edges = connect.cols;
    unsigned next_id = first_id;
    for (std::size_t e = 0; e < edges; ++e, edge += ld)
        for (int end = 0; end < 2; ++end) {
            if (!map.prepare_insertion()) return false;
            const node_map::slot* const s = map.find_or_insert({edge[end], next_id});
            // A map that couldn't grow hands back another node's slot.
            if (s->first.first != edge[end]) return false;
            if (s->first.second == next_id) ++next_id;
        }
    return true;
}

int extrude_elements_Q4(const dense2D<unsigned>& connect, node_map& map, unsigned N,
                        dense2D<unsigned>& connectQ)
{
    const std::size_t cols0 = connectQ.cols;
    if (!extend_output(connect, N, 4, 1, connectQ)) return out_of_memory;

    const unsigned nodes_per_layer = static_cast<unsigned>(map.count);
    const std::size_t edges = connect.cols;
    const std::size_t ld = connectQ.ld;
    unsigned* column = connectQ.column(cols0);
    for (std::size_t e = 0; e < edges; ++e) {
        swept_edge s = first_layer(connect.column(e), map);
        for (unsigned l = 0; l < N; ++l, column += ld) {
            column[0] = s.a;
            column[1] = s.b;
            column[2] = s.b_copy;
            column[3] = s.a_copy;
            s.advance(nodes_per_layer);
        }
    }
    return success;
}

int extrude_elements_T3(const dense2D<unsigned>& connect, node_map& map, unsigned N, int pattern,
                        dense2D<unsigned>& connectT)
{
    const std::size_t cols0 = connectT.cols;
    if (!extend_output(connect, N, 3, 2, connectT)) return out_of_memory;

    const unsigned nodes_per_layer = static_cast<unsigned>(map.count);
    const std::size_t edges = connect.cols;
    const std::size_t ld = connectT.ld;
    unsigned* column = connectT.column(cols0);
    const bool checkerboard = pattern == 2;
    for (std::size_t e = 0; e < edges; ++e) {
        swept_edge s = first_layer(connect.column(e), map);
        bool from_b = pattern == 0 || (checkerboard && e % 2 == 1);
        for (unsigned l = 0; l < N; ++l, column += 2 * ld) {
            column[0] = s.a;
            column[1] = s.b;
            column[2] = from_b ? s.a_copy : s.b_copy;
            column[ld] = from_b ? s.b : s.a;
            column[ld + 1] = s.b_copy;
            column[ld + 2] = s.a_copy;
            s.advance(nodes_per_layer);
            from_b = from_b != checkerboard;
        }
    }
    return success;
}

} // namespace vorel::tessalo2d
