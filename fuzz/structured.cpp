// Structured grids and work on connectivity under fuzzed arguments.
#include "fuzz/expectations.h"
#include "fuzz/loops.h"
#include "fuzz/meshes.h"
#include "fuzz/trial.h"

#include <algorithm>
#include <set>

using namespace fuzz;
using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

std::vector<unsigned> column(const ids& m, std::size_t j)
{
    std::vector<unsigned> entries;
    for (std::size_t i = 0; i < m.rows; ++i) entries.push_back(m(i, j));
    return entries;
}

// ---------------------------------------------------------------------------------------- grids

void prepare_grid(input& in, arguments& a)
{
    a.coords() = read_reals(in, {in.rows({2, 3}), in.chance(3) ? 0 : 1 + in.below(20)});
    read_loop(in, a, a.coords().cols);
    a.choice = in.chance(90) ? int(in.below(3)) : int(in.word());
    a.result() = read_result(in, {3, 4});
}

int grid_failure(const arguments& a, bool quads)
{
    const loop l(a.nodes().size, a.count[0]);
    if (l.is_nothing || (quads && l.has_no_cells)) return 0;
    if (!is_plane_or_space(a.coords())) return -1;
    if (!is_closed_loop(a.nodes(), a.coords().cols)) return -2;
    if (!l.fits) return -3;
    if (!quads && (a.choice < 0 || a.choice > 2)) return -4;
    return takes(a.result(), quads ? 4 : 3) ? 0 : quads ? -4 : -5;
}

int Q4_failure(const arguments& a)
{
    return grid_failure(a, true);
}
int T3_failure(const arguments& a)
{
    return grid_failure(a, false);
}

/// The node at (i, j) of the logical grid.
unsigned grid_node(const arguments& before, const loop& l, std::size_t i, std::size_t j)
{
    const auto& B = before.nodes();
    if (j == 0) return B[i];
    if (i == l.M) return B[l.M + j];
    if (j == l.N) return B[2 * l.M - i + l.N];
    if (i == 0) return B[2 * (l.M + l.N) - j];
    return unsigned(before.coords().cols + (i - 1) * (l.N - 1) + j - 1);
}

void verify_grid(const arguments& before, const arguments& after, int status, bool quads)
{
    const loop l(before.nodes().size, before.count[0]);
    const std::size_t nodes = before.coords().cols;
    const std::size_t first = before.result().cols;
    const ids& now = after.result();
    if (status != 0) return;
    if (l.is_nothing || (quads && l.has_no_cells)) {
        promise(same_entries(before.coords(), after.coords()), "nothing to do changes nothing");
        return;
    }
    if (l.M == 0) {
        promise(after.coords().cols == nodes - (l.N - 1), "the last columns are cut off");
        promise(begins_with(before.coords(), after.coords()), "the others stay");
        return;
    }
    promise(begins_with(after.coords(), before.coords()), "old nodes stay");
    promise(after.coords().cols == nodes + (l.M - 1) * (l.N - 1), "interior nodes");
    promise(now.cols == first + (quads ? 1 : 2) * l.M * l.N, "cells");
    std::size_t k = first;
    for (std::size_t i = 0; i < l.M; ++i)
        for (std::size_t j = 0; j < l.N; ++j) {
            const unsigned c[] = {grid_node(before, l, i, j), grid_node(before, l, i + 1, j),
                                  grid_node(before, l, i + 1, j + 1),
                                  grid_node(before, l, i, j + 1)};
            using entries = std::vector<unsigned>;
            const bool falling = before.choice == 0 || (before.choice == 2 && (i + j) % 2 == 1);
            if (quads) {
                promise(column(now, k++) == entries{c[0], c[1], c[2], c[3]}, "a cell");
                continue;
            }
            promise(column(now, k++) == entries{c[0], c[1], falling ? c[3] : c[2]}, "first half");
            promise(column(now, k++) == entries{falling ? c[1] : c[0], c[2], c[3]}, "second half");
        }
}

// ------------------------------------------------------------------------------------------ flip

void flip_column(std::vector<unsigned>& c, bool six_nodes)
{
    std::swap(c[0], c[2]);
    if (six_nodes) {
        std::swap(c[3], c[5]);
    } else if (c.size() >= 8) {
        std::swap(c[4], c[5]);
        std::swap(c[6], c[7]);
    }
}

void prepare_flip(input& in, arguments& a)
{
    a.choice = in.chance(60) ? 5 : in.chance(80) ? int(in.below(23)) : int(in.word());
    const bool any = a.choice == 5 || a.choice < 0 || a.choice > 22;
    const std::size_t rows =
        any ? in.rows({3, 4, 6, 8, 9}) : in.rows({element_node_count(element_type(a.choice))});
    a.connect() = read_ids(in, {rows, in.below(20)}, 40);
    for (std::size_t j = 0; j < a.connect().cols && rows >= 8; ++j)
        if (in.chance(40)) a.connect()(6, j) = UNSET_ID;
}

int flip_failure(const arguments& a)
{
    return a.connect().cols == 0 || a.connect().rows >= 3 ? 0 : -1;
}

int flip_typed_failure(const arguments& a)
{
    const std::size_t rows = a.connect().rows;
    if (a.connect().cols == 0) return 0;
    if (a.choice == ELEMENT_ANY_FACE)
        return rows == 3 || rows == 4 || rows == 6 || rows == 8 || rows == 9 ? 0 : -2;
    if (a.choice < 0 || a.choice > 22) return -2;
    return rows == element_node_count(element_type(a.choice)) ? 0 : -2;
}

void verify_flip(const arguments& before, const arguments& after, int status)
{
    if (status != 0) return;
    for (std::size_t j = 0; j < before.connect().cols; ++j) {
        std::vector<unsigned> c = column(before.connect(), j);
        std::swap(c[0], c[2]);
        promise(column(after.connect(), j) == c, "corners 0 and 2 change places");
    }
}

void verify_flip_typed(const arguments& before, const arguments& after, int status)
{
    if (status != 0) return;
    const bool faces = before.choice >= ELEMENT_ANY_FACE && before.choice <= ELEMENT_Q9;
    for (std::size_t j = 0; j < before.connect().cols && !before.connect().is_empty(); ++j) {
        std::vector<unsigned> c = column(before.connect(), j);
        const bool T6 = c.size() == 6 ||
                        (before.choice == ELEMENT_ANY_FACE && c.size() >= 8 && c[6] == UNSET_ID);
        if (faces) flip_column(c, T6);
        promise(column(after.connect(), j) == c, "a column turned round");
    }
}

// ----------------------------------------------------------------------------------- degenerated

void prepare_degenerated(input& in, arguments& a)
{
    const unsigned nodes = in.pick({3u, 6u, 200u}); // few, so that many are equal
    a.connect() = read_ids(in, {in.rows({4, 4, 8, 9}), in.below(70)}, nodes);
    unset_some(in, a.connect(), in.pick({0u, 0u, 15u}));
    a.list() = read_id_list(in, in.below(4), 9);
}

/// What becomes of a column; false when it stays.
bool collapse(std::vector<unsigned>& c)
{
    if (std::count(c.begin(), c.end(), UNSET_ID) > 0) return false;
    unsigned k = 0;
    while (k < 4 && c[k] != c[(k + 1) % 4]) ++k;
    if (k == 4) return false;
    std::vector<unsigned> corners, middles;
    for (unsigned i = 0; i < 4; ++i) {
        if (i != (k < 3 ? k + 1 : 3)) corners.push_back(c[i]);
        if (i != k && c.size() > 4) middles.push_back(c[4 + i]);
    }
    // The middles of sides 0-1, 1-2, 2-0 stand opposite corners 2, 0, 1.
    if (!middles.empty()) std::rotate(middles.begin(), middles.begin() + 1, middles.end());
    const std::size_t rows = c.size();
    c = corners;
    c.insert(c.end(), middles.begin(), middles.end());
    c.resize(rows, UNSET_ID);
    return true;
}

int degenerated_Q4_failure(const arguments& a)
{
    return a.connect().is_empty() || a.connect().rows == 4 ? 0 : -1;
}

int degenerated_Q_failure(const arguments& a)
{
    const std::size_t rows = a.connect().rows;
    return a.connect().is_empty() || rows == 4 || rows == 8 || rows == 9 ? 0 : -1;
}

void verify_degenerated(const arguments& before, const arguments& after, int status)
{
    if (status < 0 || before.connect().is_empty()) return;
    int converted = 0;
    for (std::size_t j = 0; j < before.connect().cols; ++j) {
        std::vector<unsigned> c = column(before.connect(), j);
        converted += collapse(c);
        promise(column(after.connect(), j) == c, "a column collapsed");
    }
    promise(status == converted, "the number of collapsed columns");
}

void verify_degenerated_list(const arguments& before, const arguments& after, int status)
{
    verify_degenerated(before, after, status);
    const auto& list = after.list();
    promise(list.size == std::size_t(std::max(status, 0)), "a list as long as the count");
    for (std::size_t k = 0; k < list.size; ++k) {
        promise(list[k] < before.connect().cols, "a listed column exists");
        promise(k == 0 || list[k - 1] < list[k], "columns are listed in order");
    }
}

// -------------------------------------------------------------------------------------- topology

void prepare_topology(input& in, arguments& a)
{
    const mesh m = read_mesh(in, {in.rows({3, 4}), 0, in.below(3)});
    a.connect() = m.connect;
    a.neighbors() = m.neighbors;
    a.node_element() = m.node_element;
    a.count[0] = in.id(m.connect.cols);
    a.choice = in.pick({0, 1, -7});
    a.list() = read_id_list(in, in.below(4), 9);
    a.more_list() = read_id_list(in, in.below(4), 9);
}

int reorient_failure(const arguments& a)
{
    const ids& connect = a.connect();
    if (connect.cols == 0) return 0;
    if (!connect.is_empty() && !holds_faces(connect, UNSET_ID)) return -1;
    if (!same_shape(a.neighbors(), connect)) return -2;
    return a.count[0] < connect.cols ? 0 : -3;
}

void verify_reorient(const arguments& before, const arguments& after, int status)
{
    const ids& old = before.connect();
    const ids& now = after.connect();
    if (old.is_empty() || reorient_failure(before) < 0) {
        promise(same_entries(old, now) && same_entries(before.neighbors(), after.neighbors()),
                "unchanged on failure");
        return;
    }
    promise(status >= -2, "a count, or a conflict");
    for (std::size_t e = 0; e < old.cols; ++e) {
        std::vector<unsigned> c = column(old, e);
        std::vector<unsigned> n = column(before.neighbors(), e);
        const bool stays = column(now, e) == c && column(after.neighbors(), e) == n;
        std::swap(c[0], c[2]);
        if (is_quad(old, e)) {
            std::swap(n[0], n[1]);
            std::swap(n[2], n[3]);
        } else {
            std::swap(n[0], n[2]);
        }
        const bool turned = column(now, e) == c && column(after.neighbors(), e) == n;
        promise(stays || (turned && e != before.count[0]), "a column stays or is turned round");
    }
}

int connected_failure(const arguments& a)
{
    const ids& connect = a.connect();
    if (connect.rows != 3 && connect.rows != 4) return -1;
    if (!same_shape(a.neighbors(), connect)) return -2;
    return holds_IDs(a.node_element(), connect.cols, true) ? 0 : -3;
}

void verify_connected(const arguments& before, const arguments& after, int status)
{
    const auto& offsets = after.list();
    const auto& elements = after.more_list();
    const std::size_t nodes = before.node_element().size;
    if (status != 0) {
        promise(offsets.size == 0 && elements.size == 0, "emptied without a result");
        return;
    }
    promise(offsets.size >= 1 && offsets.size <= nodes + 1, "an offset for each node, and the end");
    promise(offsets[0] == 0 && offsets[offsets.size - 1] == elements.size, "from 0 to the end");
    for (std::size_t n = 0; n + 1 < offsets.size; ++n) {
        promise(offsets[n] <= offsets[n + 1], "offsets do not fall");
        // The last list may be that of a walk which ended early.
        const bool whole = n + 2 < offsets.size;
        std::set<unsigned> seen;
        for (std::size_t k = offsets[n]; k < offsets[n + 1]; ++k) {
            promise(elements[k] < before.connect().cols, "a listed element exists");
            promise(seen.insert(elements[k]).second || !whole, "an element once a node");
        }
    }
}

// ----------------------------------------------------------------------------------------- table

const std::vector<call> calls = {
    {"mesh_struct_Q4",
     returns::zero,
     {-1, -2, -3, -4},
     {{COORDS, role::edits}, {RESULT, role::appends}},
     prepare_grid,
     [](arguments& a) { return mesh_struct_Q4(a.coords(), a.nodes(), a.count[0], a.result()); },
     Q4_failure,
     [](const arguments& before, const arguments& after, int status) {
         verify_grid(before, after, status, true);
     },
     true,
     true},
    {"mesh_struct_T3",
     returns::zero,
     {-1, -2, -3, -4, -5},
     {{COORDS, role::edits}, {RESULT, role::appends}},
     prepare_grid,
     [](arguments& a) {
         return mesh_struct_T3(a.coords(), a.nodes(), a.count[0], a.choice, a.result());
     },
     T3_failure,
     [](const arguments& before, const arguments& after, int status) {
         verify_grid(before, after, status, false);
     },
     true,
     true},
    {"flip",
     returns::zero,
     {-1},
     {{CONNECT, role::edits}},
     prepare_flip,
     [](arguments& a) { return flip(a.connect()); },
     flip_failure,
     verify_flip},
    {"flip of a type",
     returns::zero,
     {-2},
     {{CONNECT, role::edits}},
     prepare_flip,
     [](arguments& a) { return flip(a.connect(), element_type(a.choice)); },
     flip_typed_failure,
     verify_flip_typed},
    {"convert_degenerated_Q4",
     returns::count,
     {-1},
     {{CONNECT, role::edits}},
     prepare_degenerated,
     [](arguments& a) { return convert_degenerated_Q4(a.connect()); },
     degenerated_Q4_failure,
     verify_degenerated},
    {"convert_degenerated_Q",
     returns::count,
     {-1},
     {{CONNECT, role::edits}, {LIST, role::replaces}},
     prepare_degenerated,
     [](arguments& a) { return convert_degenerated_Q(a.connect(), a.list()); },
     degenerated_Q_failure,
     verify_degenerated_list},
    {"mesh_reorient",
     returns::tally,
     {-1, -2, -3},
     {{CONNECT, role::edits}, {NEIGHBORS, role::edits}},
     prepare_topology,
     [](arguments& a) { return mesh_reorient(a.connect(), a.neighbors(), a.count[0], a.choice); },
     reorient_failure,
     verify_reorient},
    {"get_connected_elements",
     returns::zero,
     {-1, -2, -3},
     {{LIST, role::replaces}, {MORE_LIST, role::replaces}},
     prepare_topology,
     [](arguments& a) {
         return get_connected_elements(a.connect(), a.neighbors(), a.node_element(), a.list(),
                                       a.more_list());
     },
     connected_failure,
     verify_connected},
};

} // namespace

const std::vector<call>& fuzz::family()
{
    return calls;
}
