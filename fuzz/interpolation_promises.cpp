// What fields carried to target nodes have to be like.
#include "fuzz/interpolation.h"

#include "support/topology.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

namespace fuzz {

using namespace vorel;

namespace {

bool is_target(const arguments& a, std::size_t node, bool all)
{
    if (node >= a.node_element().size || a.node_element()[node] != UNSET_ID) return false;
    for (std::size_t k = 0; k < a.nodes().size && !all; ++k)
        if (a.nodes()[k] == node) return true;
    return all;
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

} // namespace

void verify_kept(const arguments& before, const arguments& after, int)
{
    promise(same_entries(before.field(), after.field()), "this form leaves the field as it is");
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

template void verify_matrix<false>(const arguments&, const arguments&, int);
template void verify_matrix<true>(const arguments&, const arguments&, int);

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

template void verify_list<false, true>(const arguments&, const arguments&, int);
template void verify_list<false, false>(const arguments&, const arguments&, int);
template void verify_list<true, false>(const arguments&, const arguments&, int);

} // namespace fuzz
