// Fields carried to target nodes under fuzzed arguments.
#include "fuzz/expectations.h"
#include "fuzz/meshes.h"
#include "fuzz/trial.h"

#include "support/topology.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

using namespace fuzz;
using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

/// Puts targets on nodes, between nodes and beside them.
void place_targets(input& in, dense2D<double>& coords, std::size_t first)
{
    for (std::size_t t = first; t < coords.cols && coords.rows >= 2 && first > 0; ++t) {
        const std::size_t p = in.below(unsigned(first));
        const std::size_t q = in.below(unsigned(first));
        const double s = in.pick({0.0, 0.5, 0.25, 1.0 / 3.0, 1.25, 1e-7});
        if (in.chance(30)) continue;
        for (unsigned i = 0; i < 2; ++i)
            coords(i, t) = coords(i, p) + s * (coords(i, q) - coords(i, p));
    }
}

// Whether the fields are ones that interpolation reproduces: the value is linear in the
// coordinates, the metric is one and the same.
constexpr unsigned REPRODUCED = 1;

double linear_value(const dense2D<double>& coords, std::size_t node)
{
    return 12.0 + coords(0, node) + 2.0 * coords(1, node);
}

/// The nodes that elements use.
std::vector<bool> used_nodes(const arguments& a)
{
    std::vector<bool> used(a.coords().cols, false);
    for (std::size_t e = 0; e < a.connect().cols; ++e)
        for (std::size_t i = 0; i < a.connect().rows; ++i)
            if (a.connect()(i, e) < used.size()) used[a.connect()(i, e)] = true;
    return used;
}

/// The others get another metric, so that a target which is not served shows.
void make_reproduced(arguments& a)
{
    a.count[REPRODUCED] = 1;
    const dense2D<double>& coords = a.coords();
    dense2D<double>& field = a.field();
    const std::vector<bool> used = used_nodes(a);
    for (std::size_t k = 0; k < a.values().size && k < coords.cols && coords.rows >= 2; ++k)
        if (used[k]) a.values()[k] = linear_value(coords, k);
    for (std::size_t j = field.cols; j-- > 0;)
        for (std::size_t i = 0; i < field.rows; ++i)
            field(i, j) = (j < used.size() && used[j] ? 1.0 : 4.0) * field(i, 0);
}

void prepare_rows(input& in, arguments& a, std::size_t rows)
{
    const unsigned targets = in.chance(10) ? 40 + in.below(40) : in.below(12);
    const mesh m = read_mesh(in, {rows, in.rows({2, 2, 2, 3}), targets});
    a.coords() = m.coords;
    a.connect() = m.connect;
    a.neighbors() = m.neighbors;
    a.node_element() = m.node_element;
    const std::size_t nodes = m.coords.cols;
    const std::size_t background = nodes > targets ? nodes - targets : 0;
    place_targets(in, a.coords(), background);
    a.nodes() = read_id_list(in, in.below(20), nodes);
    if (in.chance(60))
        for (std::size_t k = 0; k < a.nodes().size && background < nodes; ++k)
            a.nodes()[k] = unsigned(background + in.below(unsigned(nodes - background)));
    a.choice = in.chance(4) ? int(in.below(26)) - 1
               : rows == 3  ? in.pick({6, 6, 5})
                            : in.pick({5, 5, 5, 7});
    a.flag = in.chance(40);
    const std::size_t length = in.chance(3) ? in.below(9) : nodes;
    a.values() = read_real_list(in, length);
    a.field() = read_metrics(in, {in.rows({3, 6}), length});
    if (in.chance(40)) make_reproduced(a);
}

void prepare(input& in, arguments& a)
{
    prepare_rows(in, a, in.rows({3, 4}));
}

/// Metrics are carried by triangles only.
void prepare_triangles(input& in, arguments& a)
{
    prepare_rows(in, a, in.rows({3, 3, 3, 3, 3, 3, 3, 4}));
}

/// The first failure of the checks that all forms share; the last one looks at the field.
int background_failure(const arguments& a, element_type type, std::size_t field_length,
                       bool right_field)
{
    const ids& connect = a.connect();
    const std::size_t nodes = a.coords().cols;
    if (a.coords().rows != 2) return -1;
    if (!holds_elements(connect, type, nodes)) return -2;
    if (!same_shape(a.neighbors(), connect)) return -3;
    if (!holds_IDs(a.neighbors(), connect.cols, true)) return -3;
    if (a.node_element().size != nodes) return -4;
    return field_length == nodes && right_field ? 0 : -5;
}

int listed_failure(const arguments& a, element_type type, std::size_t length, bool right_field)
{
    if (a.nodes().size == 0) return 0;
    if (const int failure = background_failure(a, type, length, right_field)) return failure;
    return holds_IDs(a.nodes(), a.coords().cols) ? 0 : -6;
}

int field_failure(const arguments& a)
{
    return listed_failure(a, element_type(a.choice), a.field().cols, true);
}
int values_failure(const arguments& a)
{
    return listed_failure(a, element_type(a.choice), a.values().size, true);
}
bool holds_metrics(const arguments& a)
{
    return a.field().rows == 3 || a.field().rows == 6;
}
int metrics_failure(const arguments& a)
{
    return listed_failure(a, ELEMENT_T3, a.field().cols, holds_metrics(a));
}
int all_metrics_failure(const arguments& a)
{
    if (a.coords().cols == 0) return 0;
    return background_failure(a, ELEMENT_T3, a.field().cols, holds_metrics(a));
}
int all_sizes_failure(const arguments& a)
{
    if (a.coords().cols == 0) return 0;
    return background_failure(a, element_type(a.choice), a.values().size, true);
}

bool is_target(const arguments& a, std::size_t node, bool all)
{
    if (node >= a.node_element().size || a.node_element()[node] != UNSET_ID) return false;
    for (std::size_t k = 0; k < a.nodes().size && !all; ++k)
        if (a.nodes()[k] == node) return true;
    return all;
}

void verify_kept(const arguments& before, const arguments& after, int)
{
    promise(same_entries(before.field(), after.field()), "this form leaves the field as it is");
}

/// The box of the nodes in use; a target in it is served, if only by the nearest node.
class background_box {
public:
    explicit background_box(const arguments& a) : coords(a.coords()), used(used_nodes(a))
    {
        for (std::size_t j = 0; j < used.size() && coords.rows == 2; ++j)
            for (std::size_t i = 0; i < 2 && used[j]; ++i) {
                least[i] = std::min(least[i], coords(i, j));
                most[i] = std::max(most[i], coords(i, j));
            }
    }
    bool holds(std::size_t node) const
    {
        return coords.rows == 2 && least[0] <= coords(0, node) && coords(0, node) <= most[0] &&
               least[1] <= coords(1, node) && coords(1, node) <= most[1];
    }

    /// So close to a node that the tolerance of the walk counts: there the weights that a metric is
    /// nested by can cancel, and the result is refused.
    bool nearly_meets_node(std::size_t node) const
    {
        for (std::size_t j = 0; j < used.size(); ++j) {
            const double x = std::fabs(coords(0, j) - coords(0, node));
            const double y = std::fabs(coords(1, j) - coords(1, node));
            if (used[j] && std::max(x, y) > 0.0 && std::max(x, y) < 1e-5) return true;
        }
        return false;
    }

private:
    static constexpr double infinity = std::numeric_limits<double>::infinity();
    const dense2D<double>& coords;
    std::vector<bool> used;
    double least[2] = {infinity, infinity};
    double most[2] = {-infinity, -infinity};
};

/// Whether the form works on `type`, no target may keep its own, and the mesh contradicts itself
/// nowhere: a walk that is led astray can end in a result that is refused.
bool serves(const arguments& a, int status)
{
    const std::size_t rows = a.connect().rows;
    const bool pair = (rows == 3 && a.choice == ELEMENT_T3) ||
                      (rows == 4 && (a.choice == ELEMENT_Q4 || a.choice == ELEMENT_ANY_FACE));
    if (status != 0 || !pair || !a.tame || a.flag) return false;
    if (!same_entries(a.neighbors(), support::neighbors_of(a.connect()))) return false;
    const std::vector<bool> used = used_nodes(a);
    for (std::size_t j = 0; j < used.size(); ++j)
        if (used[j] && (j >= a.node_element().size || a.node_element()[j] >= a.connect().cols))
            return false;
    return true;
}

/// Clearly positive definite: each diagonal entry stands out from its row.
bool is_plain_metric(const dense2D<double>& field, std::size_t j)
{
    double off[3] = {};
    double diagonal[3] = {};
    const unsigned n = field.rows == 3 ? 2 : 3;
    for (unsigned i = 0, k = 0; i < n; ++i)
        for (unsigned c = 0; c <= i; ++c, ++k) {
            const double entry = field(k, j);
            if (!(std::fabs(entry) < 10.0)) return false;
            if (i == c) {
                diagonal[i] = entry;
            } else {
                off[i] += std::fabs(entry);
                off[c] += std::fabs(entry);
            }
        }
    for (unsigned i = 0; i < n; ++i)
        if (!(diagonal[i] >= off[i] + 0.25)) return false;
    return true;
}

bool is_close(const dense2D<double>& a, std::size_t i, const dense2D<double>& b, std::size_t j)
{
    double largest = 0.0;
    for (std::size_t k = 0; k < a.rows; ++k) largest = std::max(largest, std::fabs(a(k, i)));
    for (std::size_t k = 0; k < a.rows; ++k)
        if (!same(a(k, i), b(k, j)) && !(std::fabs(a(k, i) - b(k, j)) <= 1e-9 * largest))
            return false;
    return true;
}

bool is_same_column(const dense2D<double>& a, const dense2D<double>& b, std::size_t j)
{
    for (std::size_t i = 0; i < a.rows; ++i)
        if (!same(a(i, j), b(i, j))) return false;
    return true;
}

template <bool all>
void verify_matrix(const arguments& before, const arguments& after, int status)
{
    const auto& old = before.field();
    const auto& now = after.field();
    promise(same_shape(old, now), "shape");
    for (std::size_t j = 0; j < old.cols && old.rows > 0; ++j)
        promise(is_target(before, j, all) || is_same_column(old, now, j),
                "only targets are written");
    if (before.count[REPRODUCED] == 0 || old.is_empty() || status != 0) return;
    if (old.cols != before.coords().cols) return; // nothing to do
    const std::vector<bool> used = used_nodes(before);
    const std::size_t node = std::size_t(std::find(used.begin(), used.end(), true) - used.begin());
    if (node == used.size()) return;
    const background_box box(before);
    const bool served = serves(before, status) && is_plain_metric(old, node);
    for (std::size_t j = 0; j < old.cols; ++j) {
        const bool kept = is_same_column(old, now, j);
        promise(kept || is_close(old, node, now, j), "a metric that is everywhere the same stays");
        if (served && is_target(before, j, all) && box.holds(j) && !box.nearly_meets_node(j))
            promise(is_close(old, node, now, j), "a target amid the background is served");
    }
}

/// Where a target was found its value is the linear one; elsewhere it is that of a node, or its own
/// when it may keep that.
void check_linear(const arguments& before, std::size_t target, double now, bool keeps)
{
    const auto& old = before.values();
    bool known = (keeps && same(now, old[target])) ||
                 std::fabs(now - linear_value(before.coords(), target)) < 1e-6;
    const std::vector<bool> used = used_nodes(before);
    for (std::size_t k = 0; k < old.size && !known; ++k) known = used[k] && same(now, old[k]);
    promise(known, "a linear field is reproduced");
}

/// Every quadrilateral turns left at each of its corners, where Newton's method is at its best: of
/// multiples of one unit this is exact.
bool is_convex(const dense2D<double>& p, const ids& connect)
{
    for (std::size_t e = 0; e < connect.cols; ++e)
        for (unsigned k = 0; k < 4 && is_quad(connect, e); ++k) {
            const unsigned a = connect(k, e);
            const unsigned b = connect((k + 1) % 4, e);
            const unsigned c = connect((k + 2) % 4, e);
            const double turn = (p(0, b) - p(0, a)) * (p(1, c) - p(1, b)) -
                                (p(1, b) - p(1, a)) * (p(0, c) - p(0, b));
            if (!(turn > 0.0)) return false;
        }
    return true;
}

/// In quadrilaterals `interpolate` is bilinear, while sizes are not.
template <bool all, bool bilinear>
void verify_list(const arguments& before, const arguments& after, int status)
{
    const auto& old = before.values();
    const auto& now = after.values();
    promise(old.size == now.size, "size");
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double least = infinity;
    double most = -infinity;
    const bool triangles = before.connect().rows == 3;
    // Where there is nothing to do, sizes may differ.
    const bool done = status == 0 && old.size == before.coords().cols;
    bool bounded = before.tame && triangles && done;
    const std::vector<bool> used = used_nodes(before);
    for (std::size_t j = 0; j < old.size && bounded; ++j) {
        if (!used[j]) continue;
        bounded = std::fabs(old[j]) < 100.0;
        least = std::min(least, old[j]);
        most = std::max(most, old[j]);
    }
    const background_box box(before);
    const bool served = serves(before, status);
    const bool reproduced =
        done && before.tame && before.count[REPRODUCED] != 0 && before.coords().rows == 2 &&
        (triangles || (bilinear && before.nodes().size > 0 && before.connect().rows == 4 &&
                       is_convex(before.coords(), before.connect())));
    for (std::size_t j = 0; j < old.size; ++j) {
        if (!is_target(before, j, all)) {
            promise(same(old[j], now[j]), "only targets are written");
            continue;
        }
        const double slack = least < most ? 1e-4 * (most - least) + 1e-12 : 1e-12;
        promise(!bounded || same(now[j], old[j]) ||
                    (now[j] >= least - slack && now[j] <= most + slack),
                "linear values stay between those of the background");
        if (reproduced) check_linear(before, j, now[j], !(served && box.holds(j)));
    }
}

const std::vector<int> listed{-1, -2, -3, -4, -5, -6};

const std::vector<call> calls = {
    {"interpolate a matrix",
     returns::zero,
     listed,
     {{FIELD, role::edits}},
     prepare,
     [](arguments& a) {
         return interpolate(a.coords(), a.connect(), a.neighbors(), a.node_element(), a.field(),
                            a.nodes(), element_type(a.choice));
     },
     field_failure,
     verify_kept},
    {"interpolate",
     returns::zero,
     listed,
     {{VALUES, role::edits}},
     prepare,
     [](arguments& a) {
         return interpolate(a.coords(), a.connect(), a.neighbors(), a.node_element(), a.values(),
                            a.nodes(), element_type(a.choice));
     },
     values_failure,
     verify_list<false, true>},
    {"interpolate_metrics",
     returns::zero,
     listed,
     {{FIELD, role::edits}},
     prepare_triangles,
     [](arguments& a) {
         return interpolate_metrics(a.coords(), a.connect(), a.neighbors(), a.node_element(),
                                    a.field(), a.nodes(), a.flag, element_type(a.choice));
     },
     metrics_failure,
     verify_matrix<false>},
    {"interpolate_metrics of all",
     returns::zero,
     listed,
     {{FIELD, role::edits}},
     prepare_triangles,
     [](arguments& a) {
         return interpolate_metrics(a.coords(), a.connect(), a.neighbors(), a.node_element(),
                                    a.field(), a.flag, element_type(a.choice));
     },
     all_metrics_failure,
     verify_matrix<true>},
    {"interpolate_metrics of sizes",
     returns::zero,
     listed,
     {{VALUES, role::edits}},
     prepare,
     [](arguments& a) {
         return interpolate_metrics(a.coords(), a.connect(), a.neighbors(), a.node_element(),
                                    a.values(), a.nodes(), a.flag, element_type(a.choice));
     },
     values_failure,
     verify_list<false, false>},
    {"interpolate_metrics of all sizes",
     returns::zero,
     listed,
     {{VALUES, role::edits}},
     prepare,
     [](arguments& a) {
         return interpolate_metrics(a.coords(), a.connect(), a.neighbors(), a.node_element(),
                                    a.values(), a.flag, element_type(a.choice));
     },
     all_sizes_failure,
     verify_list<true, false>},
};

} // namespace

const std::vector<call>& fuzz::family()
{
    return calls;
}
