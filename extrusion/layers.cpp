// Elements and spacing of extruded layers.
#include "extrusion/layers.h"

#include "extrusion/spacing.h"
#include "foundation/status.h"

namespace vorel::tessalo2d {

namespace {

/// The two ends of an edge and their copies, named by the layers that they stand in.
struct swept_edge {
    swept_edge(const unsigned* edge, const unsigned* copies)
        : a(edge[0]), b(edge[1]), a_copy(copies[0]), b_copy(copies[1])
    {
    }

    /// The same edge one layer on, for `m` nodes in a layer.
    swept_edge next(unsigned m) const { return {a_copy, b_copy, a_copy + m, b_copy + m}; }

    unsigned a, b;
    unsigned a_copy, b_copy;

private:
    swept_edge(unsigned a_, unsigned b_, unsigned c, unsigned d)
        : a(a_), b(b_), a_copy(c), b_copy(d)
    {
    }
};

/// The entries of one layer's elements, which from the second layer on all grow by the same number:
/// the loops over them become single vector operations.
struct quadrilateral {
    explicit quadrilateral(const swept_edge& s) : entries{s.a, s.b, s.b_copy, s.a_copy} {}

    void write(unsigned* column, std::size_t) const
    {
        for (int i = 0; i < 4; ++i) column[i] = entries[i];
    }
    void advance(unsigned step)
    {
        for (unsigned& entry : entries) entry += step;
    }

    unsigned entries[4];
};

/// As above for the two triangles of a quadrilateral that is cut from b to the copy of a, or else
/// from a to the copy of b.
struct triangle_pair {
    triangle_pair(const swept_edge& s, bool from_b)
        : first{s.a, s.b, from_b ? s.a_copy : s.b_copy},
          second{from_b ? s.b : s.a, s.b_copy, s.a_copy}
    {
    }

    void write(unsigned* column, std::size_t ld) const
    {
        for (int i = 0; i < 3; ++i) column[i] = first[i];
        for (int i = 0; i < 3; ++i) (column + ld)[i] = second[i];
    }
    void advance(unsigned step)
    {
        for (unsigned& entry : first) entry += step;
        for (unsigned& entry : second) entry += step;
    }

    unsigned first[3];
    unsigned second[3];
};

} // namespace

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
        const swept_edge edge(connect.column(e), map.copies.column(e));
        quadrilateral(edge).write(column, ld);
        column += ld;
        quadrilateral q(edge.next(m));
        for (unsigned l = 1; l < N; ++l, column += ld) {
            q.write(column, ld);
            q.advance(m);
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
        const swept_edge edge(connect.column(e), map.copies.column(e));
        const bool from_b = pattern == 0 || (checkerboard && e % 2 == 1);
        triangle_pair(edge, from_b).write(column, ld);
        column += 2 * ld;
        triangle_pair here(edge.next(m), from_b != checkerboard);
        triangle_pair next(edge.next(m).next(m), from_b);
        unsigned l = 1;
        for (; l + 1 < N; l += 2, column += 4 * ld) {
            here.write(column, ld);
            next.write(column + 2 * ld, ld);
            here.advance(2 * m);
            next.advance(2 * m);
        }
        if (l < N) {
            here.write(column, ld);
            column += 2 * ld;
        }
    }
    return success;
}

} // namespace vorel::tessalo2d
