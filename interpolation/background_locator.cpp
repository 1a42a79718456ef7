// Filling the tree of a background mesh, and locating points with it.
#include "interpolation/background_locator.h"

#include <algorithm>

namespace vorel::tessalo2d {

namespace {

constexpr double LARGEST = node_quadtree::LARGEST;

/// Nodes to expect for each element, for a first reservation.
template <mesh_form F>
constexpr double nodes_per_element()
{
    return F == mesh_form::T3 ? 0.5 : F == mesh_form::Q4 ? 1.0 : 1.75;
}

/// The largest entry that is no `UNSET_ID`, 0 when there is none.
unsigned largest_id(const dense2D<unsigned>& connect)
{
    unsigned largest = 0;
    for (std::size_t e = 0; e < connect.cols; ++e) {
        const unsigned* const column = connect.column(e);
        for (std::size_t i = 0; i < connect.rows; ++i)
            largest = std::max(largest, column[i] == UNSET_ID ? 0 : column[i]);
    }
    return largest;
}

} // namespace

template <mesh_form F>
background_locator<F>::background_locator(const dense2D<double>& coords_,
                                          const dense2D<unsigned>& connect_,
                                          const dense2D<unsigned>& neighbors,
                                          const dense1D<unsigned, 8>& node_element)
    : coords(coords_),
      connect(connect_),
      elements(coords_, connect_, neighbors),
      tree(coords_),
      filter(node_element)
{
    tree.set_box({{0.0, 0.0}}, {{1.0, 1.0}});
}

template <mesh_form F>
bool background_locator<F>::used_nodes(dense1D<unsigned, 8>& ids) const
{
    dense1D<unsigned char, 8> seen;
    const std::size_t bound = std::size_t(largest_id(connect)) + 1;
    if (!seen.resize(bound, 0)) return false;
    const double expected = static_cast<double>(connect.cols) * nodes_per_element<F>();
    if (!ids.reserve(static_cast<std::size_t>(expected), 1)) return false;
    for (std::size_t e = 0; e < connect.cols; ++e) {
        const unsigned* const column = connect.column(e);
        const unsigned corners = is_quad<F>(column) ? 4 : 3;
        for (unsigned i = 0; i < corners; ++i) {
            const unsigned id = column[i];
            if (seen[id]) continue;
            seen[id] = 1;
            ids.append(id);
        }
    }
    return true;
}

template <mesh_form F>
std::size_t background_locator<F>::fill_tree()
{
    dense1D<unsigned, 8> ids;
    vec2 low{{0.0, 0.0}};
    vec2 high{{1.0, 1.0}};
    if (!connect.is_empty()) {
        if (!used_nodes(ids)) return 0;
        low = {{LARGEST, LARGEST}};
        high = {{-LARGEST, -LARGEST}};
        for (std::size_t k = 0; k < ids.size; ++k) {
            const vec2 p = elements.point(ids[k]);
            // A NaN coordinate moves no bound.
            for (int i = 0; i < 2; ++i) {
                low[i] = p[i] < low[i] ? p[i] : low[i];
                high[i] = p[i] > high[i] ? p[i] : high[i];
            }
        }
    }
    tree.set_box(low, high);
    return tree.insert_nodes(ids);
}

template <mesh_form F>
unsigned background_locator<F>::nearest_node(const vec2& point) const
{
    double distance2 = LARGEST;
    return tree.nearest_node(point, distance2, filter);
}

template <mesh_form F>
bool background_locator<F>::locate_element(const vec2& point, unsigned& element, double tolerance,
                                           bool allow_fallback, side_draw& draw,
                                           const known_tests& known)
{
    if (element == UNSET_ID) {
        const unsigned node = tree.approximate_node(point, filter);
        if (node == UNSET_ID) return false;
        element = start_element(node);
        if (element == UNSET_ID) return false;
    }
    std::size_t steps;
    walk_end end = walk_to_element<F>(elements, point, element, tolerance, steps, draw, known);
    if (allow_fallback && end == WALK_LEFT) {
        const unsigned node = nearest_node(point);
        if (node == UNSET_ID) return false;
        ball.size = 0;
        // Without storage for the set the ball is what can be reached without it.
        (void)visited.init(23, 23);
        bool closed;
        (void)collect_ball<F>(node, start_element(node), elements, ball, closed, stack, visited);
        for (std::size_t k = 0; k < ball.size && end == WALK_LEFT; ++k) {
            element = ball[k];
            end = walk_to_element<F>(elements, point, element, tolerance, steps, draw);
        }
    }
    if (end != WALK_FOUND) element = UNSET_ID;
    return end == WALK_FOUND;
}

template <mesh_form F>
void background_locator<F>::approach(const vec2* points, unsigned n, double tolerance,
                                     unsigned* starts, known_tests* known) const
{
    constexpr unsigned BLOCK = node_quadtree::BLOCK;
    unsigned near[BLOCK];
    tree.approximate_nodes(points, n, filter, near);

    struct {
        unsigned target;
        unsigned element;
    } walking[BLOCK];
    unsigned on_the_way = 0;
    for (unsigned i = 0; i < n; ++i) {
        known[i].size = 0;
        starts[i] = near[i] == UNSET_ID ? UNSET_ID : start_element(near[i]);
        if (starts[i] == UNSET_ID) continue;
        elements.prefetch_columns(starts[i]);
        walking[on_the_way++] = {i, starts[i]};
    }
    for (unsigned step = 0; on_the_way > 0; ++step) {
        for (unsigned k = 0; k < on_the_way; ++k)
            elements.template prefetch_points<F>(walking[k].element);
        if (step == known_tests::MOST) break;
        unsigned left = 0;
        for (unsigned k = 0; k < on_the_way; ++k) {
            const unsigned i = walking[k].target;
            const unsigned element = walking[k].element;
            const side_test test =
                test_sides<F>(elements, points[i], elements.column(element), tolerance);
            known[i].add(element, test);
            if (!test.proper || test.outside == 0) continue;
            // The side that most draws lead to.
            const unsigned next = elements.neighbors(element)[first_outside(test, 0)];
            if (next == UNSET_ID) continue;
            elements.prefetch_columns(next);
            walking[left++] = {i, next};
        }
        on_the_way = left;
    }
}

template class background_locator<mesh_form::T3>;
template class background_locator<mesh_form::Q4>;
template class background_locator<mesh_form::mixed>;

} // namespace vorel::tessalo2d
