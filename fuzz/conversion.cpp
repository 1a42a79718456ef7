// Order conversion under fuzzed arguments.
#include "fuzz/conversion.h"
#include "fuzz/expectations.h"
#include "fuzz/meshes.h"
#include "fuzz/trial.h"

#include "support/topology.h"

#include <algorithm>
#include <cmath>

using namespace fuzz;
using namespace vorel::tessalo2d;

namespace {

void prepare_quadratic(input& in, arguments& a)
{
    const std::size_t rows = in.rows({6, 8, 9});
    a.connect() = read_quadratic(in, rows, 1 + in.below(40));
    a.result() = read_result(in, {3, 4});
}

int linear_failure(const arguments& a)
{
    const std::size_t rows = a.connect().rows;
    return a.connect().is_empty() || rows == 6 || rows == 8 || rows == 9 ? 0 : -1;
}

void verify_linear(const arguments& before, const arguments& after, int status)
{
    const ids& old = before.connect();
    const ids& now = after.connect();
    if (status != 0 || old.is_empty()) return;
    promise(now.cols == old.cols && now.rows == (old.rows == 6 ? 3 : 4), "shape");
    for (std::size_t e = 0; e < now.cols; ++e) {
        const bool triangle = old.rows == 6 || old(6, e) == UNSET_ID;
        for (unsigned k = 0; k < 3; ++k) promise(now(k, e) == old(k, e), "corners are kept");
        if (now.rows == 4) promise(now(3, e) == (triangle ? UNSET_ID : old(3, e)), "row 3");
    }
}

int split_into_linear_failure(const arguments& a)
{
    const std::size_t rows = a.connect().rows;
    const std::size_t target = a.result().rows;
    if (a.connect().is_empty()) return 0;
    if (rows != 6 && rows != 9) return -1;
    return target == 0 || target == 3 || target == 4 ? 0 : -2;
}

void verify_split_into_linear(const arguments& before, const arguments& after, int status)
{
    const ids& parents = before.connect();
    if (status != 0 || parents.is_empty()) return;
    const std::size_t first = columns_of(before.result());
    const ids& now = after.result();
    promise(now.cols == first + 4 * parents.cols, "four children each");
    for (std::size_t e = 0; e < parents.cols; ++e)
        for (unsigned k = 0; k < 3; ++k)
            promise(now(0, first + 4 * e + k) == parents(k, e), "a child at each corner");
}

void prepare_high_order(input& in, arguments& a, unsigned edge_nodes)
{
    read_mesh(in, a, {in.rows({3, 4}), in.rows({2, 3}), in.below(4)});
    a.result() = read_result(in, {3, 4, 6, 9});
    a.count[0] = edge_nodes;
    a.count[1] = in.chance(85) ? in.pick({0u, 1u, 4u, 9u}) : in.count(400);
    a.count[2] = in.chance(85) ? in.pick({0u, 1u, 3u}) : in.count(5);
    if (in.chance(50)) return;
    // Prepared edges: some of the mesh, some that are not.
    const std::size_t rows = edge_nodes > 200 ? in.below(11) : in.rows({edge_nodes + 2});
    a.edges() = read_ids(in, {rows, in.below(7)}, a.coords().cols);
    ids& edges = a.edges();
    for (std::size_t j = 0; j < edges.cols && rows >= 3 && !a.connect().is_empty(); ++j) {
        if (in.chance(30) || a.connect().rows < 3) continue;
        const std::size_t e = in.below(unsigned(a.connect().cols));
        const unsigned k = in.below(3);
        edges(0, j) = a.connect()(k, e);
        edges(1, j) = a.connect()((k + 1) % 3, e);
        if (in.chance(10)) edges(in.below(3), j) = UNSET_ID;
    }
}

void prepare_any_order(input& in, arguments& a)
{
    prepare_high_order(in, a, in.count(5));
}

bool is_square(unsigned n)
{
    const auto root = static_cast<unsigned long long>(std::sqrt(n) + 0.5);
    return root * root == n;
}

int high_order_failure(const arguments& a)
{
    const auto [edge_nodes, quad_nodes, triangle_nodes] = a.count;
    const bool nothing = edge_nodes == 0 && quad_nodes == 0 && triangle_nodes == 0;
    if (!is_plane_or_space(a.coords())) return -1; // ahead of an empty mesh
    if (a.connect().is_empty() || nothing) return 0;
    if (const int failure = faces_failure(a)) return failure;
    if (!is_square(quad_nodes)) return -4;
    if (triangle_nodes != 0 && triangle_nodes != 1 && triangle_nodes != 3) return -5;
    if (a.edges().is_empty()) return 0;
    const bool fits = a.edges().rows == std::size_t(edge_nodes) + 2;
    return fits && holds_IDs(a.edges(), a.coords().cols, true) ? 0 : -6;
}

void verify_raised(const arguments& before, const arguments& after, const ids& now)
{
    const ids& old = before.connect();
    const std::size_t a = before.count[0];
    promise(now.cols == old.cols, "one element each");
    promise(after.coords().rows == before.coords().rows, "rows of coords");
    // Of a prepared edge only the first node is checked, so its run may end behind the nodes.
    std::size_t bound = after.coords().cols;
    if (!before.edges().is_empty()) bound = std::max(bound, before.coords().cols + a);
    promise(holds_IDs(now, bound, true), "an ID that names no node");
    if (before.edges().is_empty()) {
        const std::size_t quads = quad_count(old);
        const std::size_t inner = quads * before.count[1] + (old.cols - quads) * before.count[2];
        const std::size_t on_edges = a == 0 ? 0 : a * support::edge_count(old);
        promise(after.coords().cols == before.coords().cols + on_edges + inner,
                "elements that share an edge share its nodes");
    }
    for (std::size_t e = 0; e < old.cols; ++e) {
        const std::size_t corners = is_quad(old, e) ? 4 : 3;
        const std::size_t used = a == 0 ? 0 : corners * (1 + a);
        const std::size_t inner = before.count[is_quad(old, e) ? 1 : 2];
        for (std::size_t k = 0; k < corners && a != 0; ++k)
            promise(now(k, e) == old(k, e), "corners are kept");
        if (a != 0)
            for (std::size_t k = used + inner; k < now.rows; ++k)
                promise(now(k, e) == UNSET_ID, "short columns are filled up");
    }
}

void verify_high_order(const arguments& before, const arguments& after, int status, const ids& now)
{
    const bool nothing = before.count[0] == 0 && before.count[1] == 0 && before.count[2] == 0;
    if (status == -1) return;
    if (status != 0 || before.connect().is_empty() || nothing) {
        promise(now.is_empty(), "emptied when there is no result");
        promise(same_entries(before.coords(), after.coords()), "coords stay without a result");
    } else {
        verify_raised(before, after, now);
    }
}

void verify_into_result(const arguments& before, const arguments& after, int status)
{
    verify_high_order(before, after, status, after.result());
}

void verify_in_place(const arguments& before, const arguments& after, int status)
{
    if (status == -199) return; // emptied or kept
    verify_high_order(before, after, status, after.connect());
}

// The forms with fixed counts: what they stand for is filled in.
arguments with_counts(const arguments& a, bool with_edges)
{
    arguments b = a;
    b.count[0] = 1;
    b.count[1] = 1;
    b.count[2] = 0;
    if (!with_edges) b.edges() = ids();
    return b;
}

int quadratic_failure(const arguments& a)
{
    return high_order_failure(with_counts(a, false));
}
int quadratic_edges_failure(const arguments& a)
{
    return high_order_failure(with_counts(a, true));
}
void verify_quadratic(const arguments& before, const arguments& after, int status)
{
    verify_in_place(with_counts(before, true), after, status);
}

const std::vector<call> order_conversions = {
    {"convert_into_linear",
     returns::zero,
     {-1},
     {{CONNECT, role::edits}},
     prepare_quadratic,
     [](arguments& a) { return convert_into_linear(a.connect()); },
     linear_failure,
     verify_linear},
    {"split_into_linear",
     returns::zero,
     {-1, -2},
     {{RESULT, role::appends}},
     prepare_quadratic,
     [](arguments& a) { return split_into_linear(a.connect(), a.result()); },
     split_into_linear_failure,
     verify_split_into_linear},
    {"convert_into_high_order",
     returns::zero,
     {-1, -2, -4, -5, -6},
     {{COORDS, role::appends}, {RESULT, role::replaces}},
     prepare_any_order,
     [](arguments& a) {
         return convert_into_high_order(a.coords(), a.connect(), a.count[0], a.count[1], a.count[2],
                                        a.result(), a.edges());
     },
     high_order_failure,
     verify_into_result,
     true,
     true},
    {"convert_into_high_order in place",
     returns::zero,
     {-1, -2, -4, -5, -6},
     {{COORDS, role::appends}, {CONNECT, role::replaces_self}},
     prepare_any_order,
     [](arguments& a) {
         return convert_into_high_order(a.coords(), a.connect(), a.count[0], a.count[1], a.count[2],
                                        a.edges());
     },
     high_order_failure,
     verify_in_place,
     true,
     true},
    {"convert_into_quadratic",
     returns::zero,
     {-1, -2},
     {{COORDS, role::appends}, {CONNECT, role::replaces_self}},
     prepare_middle,
     [](arguments& a) { return convert_into_quadratic(a.coords(), a.connect()); },
     quadratic_failure,
     verify_quadratic},
    {"convert_into_quadratic with edges",
     returns::zero,
     {-1, -2, -6},
     {{COORDS, role::appends}, {CONNECT, role::replaces_self}},
     prepare_middle,
     [](arguments& a) { return convert_into_quadratic(a.coords(), a.connect(), a.edges()); },
     quadratic_edges_failure,
     verify_quadratic},
};

} // namespace

void fuzz::prepare_middle(input& in, arguments& a)
{
    prepare_high_order(in, a, 1);
}

const std::vector<call>& fuzz::family()
{
    // Bytes choose a call by its place: the order counts.
    static const std::vector<call> calls = [] {
        std::vector<call> all = order_conversions;
        const std::vector<call> others = splits();
        all.insert(all.end(), others.begin(), others.end());
        return all;
    }();
    return calls;
}
