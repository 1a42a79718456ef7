#include "conversion/reference_high_order.h"

#include "extrusion/spacing.h"
#include "foundation/chained_hash.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <utility>
#include <vector>

namespace reference {

using namespace vorel;
using elfes::edge2;
using tessalo2d::geometric_fraction;

namespace {

using edge_map = tessalo2d::chained_hash<std::pair<edge2, unsigned>>;

void require(bool done)
{
    if (!done) std::abort();
}

std::vector<unsigned> corners_of(const dense2D<unsigned>& connect, std::size_t e)
{
    std::vector<unsigned> corners;
    for (std::size_t i = 0; i < connect.rows; ++i)
        if (connect(i, e) != UNSET_ID) corners.push_back(connect(i, e));
    return corners;
}

edge2 local_edge(const std::vector<unsigned>& corners, std::size_t k)
{
    if (corners.size() == 3) return {corners[(k + 1) % 3], corners[(k + 2) % 3]};
    return {corners[k], corners[(k + 1) % 4]};
}

class conversion {
public:
    conversion(dense2D<double>& coords_, const dense1D<double, 8>& sizes_)
        : coords(coords_), sizes(sizes_)
    {
    }

    bool sized(const std::vector<unsigned>& nodes) const
    {
        for (const unsigned node : nodes)
            if (node >= sizes.size || !(sizes[node] > 0.0) ||
                !(sizes[node] < std::numeric_limits<double>::max()))
                return false;
        return true;
    }

    void place_on_edge(const edge2& ends, unsigned first, unsigned count)
    {
        for (unsigned i = 0; i < count; ++i) {
            double t = (i + 1) * (1.0 / (count + 1.0));
            if (sized({ends.a, ends.b})) t = geometric_fraction(t, sizes[ends.a], sizes[ends.b]);
            for (std::size_t r = 0; r < coords.rows; ++r) {
                const double a = coords(r, ends.a);
                const double b = coords(r, ends.b);
                coords(r, first + i) = t != 0.0 ? a + t * (b - a) : a;
            }
        }
    }

    void place_in_triangle(const std::vector<unsigned>& c, unsigned node, unsigned i,
                           unsigned count)
    {
        double w0 = count == 1 ? 1.0 / 3.0 : (i == 1 ? 1.0 / 3.0 : 1.0 / 6.0);
        double w1 = count == 1 ? 1.0 / 3.0 : (i == 2 ? 1.0 / 3.0 : 1.0 / 6.0);
        if (sized(c)) {
            w0 = geometric_fraction(w0, sizes[c[2]], sizes[c[0]]);
            w1 = geometric_fraction(w1, sizes[c[2]], sizes[c[1]]);
        }
        for (std::size_t r = 0; r < coords.rows; ++r) {
            double x = coords(r, c[2]);
            if (w0 != 0.0) x = x + w0 * (coords(r, c[0]) - coords(r, c[2]));
            if (w1 != 0.0) x = x + w1 * (coords(r, c[1]) - coords(r, c[2]));
            coords(r, node) = x;
        }
    }

    void place_in_quad(const std::vector<unsigned>& c, unsigned node, double u, double v)
    {
        double s = u;
        double t = v;
        if (sized(c)) {
            const double a = geometric_fraction(u, sizes[c[0]], sizes[c[1]]);
            const double b = geometric_fraction(v, sizes[c[0]], sizes[c[3]]);
            const double cc = geometric_fraction(v, sizes[c[1]], sizes[c[2]]);
            const double d = geometric_fraction(u, sizes[c[3]], sizes[c[2]]);
            const double k = 1.0 / (1.0 - (a - d) * (b - cc));
            s = (a - (a - d) * b) * k;
            t = (b - (b - cc) * a) * k;
        }
        const std::array<double, 4> w{(1.0 - s) * (1.0 - t), s * (1.0 - t), s * t, (1.0 - s) * t};
        for (std::size_t r = 0; r < coords.rows; ++r) {
            std::vector<double> terms;
            for (std::size_t k = 0; k < 4; ++k)
                if (w[k] != 0.0) terms.push_back(w[k] * coords(r, c[k]));
            double sum = terms.empty() ? 0.0 : terms[0];
            for (std::size_t k = 1; k < terms.size(); ++k) sum = sum + terms[k];
            coords(r, node) = sum;
        }
    }

private:
    dense2D<double>& coords;
    const dense1D<double, 8>& sizes;
};

} // namespace

void convert_into_high_order(dense2D<double>& coords, const dense2D<unsigned>& connect,
                             unsigned edge_nodes, unsigned quad_nodes, unsigned triangle_nodes,
                             dense2D<unsigned>& result, const dense2D<unsigned>& edges,
                             const dense1D<double, 8>& sizes)
{
    result = dense2D<unsigned>();
    const auto old_nodes = static_cast<unsigned>(coords.cols);
    edge_map table;
    require(table.init(23, 23));
    table.expect(edges.cols + connect.cols);
    for (std::size_t j = 0; j < edges.cols; ++j) {
        if (edges(0, j) == UNSET_ID || edges(1, j) == UNSET_ID || edges(2, j) == UNSET_ID) continue;
        require(table.prepare_insertion());
        table.find_or_insert({edge2{edges(0, j), edges(1, j)}, 0})->first.second = edges(2, j);
    }

    unsigned next = old_nodes;
    std::size_t rows = 0;
    table.expect(2 * connect.cols);
    for (std::size_t e = 0; e < connect.cols; ++e) {
        const std::vector<unsigned> corners = corners_of(connect, e);
        const std::size_t n = corners.size();
        rows = std::max<std::size_t>(rows,
                                     n + n * edge_nodes + (n == 3 ? triangle_nodes : quad_nodes));
        for (std::size_t k = 0; k < n; ++k) {
            require(table.prepare_insertion());
            const std::size_t before = table.count;
            (void)table.find_or_insert({local_edge(corners, k), next});
            if (table.count != before) next += edge_nodes;
        }
    }

    const unsigned edge_end = next;
    for (std::size_t e = 0; e < connect.cols; ++e)
        next += corners_of(connect, e).size() == 3 ? triangle_nodes : quad_nodes;
    require(coords.resize(coords.rows, next, 0.0));
    require(result.resize(rows, connect.cols, UNSET_ID));

    conversion to(coords, sizes);
    table.for_each([&](const edge_map::slot& slot) {
        if (slot.first.second >= old_nodes)
            to.place_on_edge(slot.first.first, slot.first.second, edge_nodes);
    });

    const auto side = static_cast<unsigned>(std::lround(std::sqrt(quad_nodes)));
    next = edge_end;
    for (std::size_t e = 0; e < connect.cols; ++e) {
        const std::vector<unsigned> corners = corners_of(connect, e);
        std::vector<unsigned> column = corners;
        for (std::size_t k = 0; k < corners.size(); ++k) {
            const edge2 edge = local_edge(corners, k);
            const auto* const slot = table.find({edge, 0});
            std::vector<unsigned> run;
            for (unsigned i = 0; i < edge_nodes; ++i) run.push_back(slot->first.second + i);
            if (slot->first.first.a != edge.a) std::reverse(run.begin(), run.end());
            column.insert(column.end(), run.begin(), run.end());
        }
        if (corners.size() == 3) {
            for (unsigned i = 0; i < triangle_nodes; ++i) {
                to.place_in_triangle(corners, next, i, triangle_nodes);
                column.push_back(next++);
            }
        } else {
            for (unsigned i = 0; i < side; ++i)
                for (unsigned j = 0; j < side; ++j) {
                    const double step = 1.0 / (side + 1.0);
                    to.place_in_quad(corners, next, (j + 1) * step, (i + 1) * step);
                    column.push_back(next++);
                }
        }
        std::copy(column.begin(), column.end(), result.column(e));
    }
}

} // namespace reference
