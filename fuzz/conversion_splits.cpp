// Splitting of elements under fuzzed arguments.
#include "fuzz/conversion.h"
#include "fuzz/expectations.h"
#include "fuzz/meshes.h"
#include "fuzz/trial.h"

using namespace fuzz;
using namespace vorel::tessalo2d;

namespace {

/// Columns without rows pass.
int columns_failure(const arguments& a)
{
    if (!is_plane_or_space(a.coords())) return -1;
    return a.connect().is_empty() || holds_faces(a.connect(), a.coords().cols) ? 0 : -2;
}

int split_into_Q4_failure(const arguments& a)
{
    if (a.connect().cols == 0) return 0;
    if (const int failure = columns_failure(a)) return failure;
    if (!takes(a.result(), 4)) return -3;
    if (a.edges().is_empty()) return 0;
    return a.edges().rows == 3 && holds_IDs(a.edges(), a.coords().cols, false) ? 0 : -4;
}

void verify_split_into_Q4(const arguments& before, const arguments& after, int status)
{
    const ids& old = before.connect();
    if (status != 0 || old.is_empty()) return;
    const std::size_t first = columns_of(before.result());
    const ids& now = after.result();
    promise(now.cols == first + 3 * old.cols + quad_count(old), "three or four children each");
    std::size_t child = first;
    for (std::size_t e = 0; e < old.cols; ++e)
        for (std::size_t k = 0; k < (is_quad(old, e) ? 4 : 3); ++k, ++child) {
            promise(now(0, child) == old(k, e), "children begin at the corners in order");
            for (unsigned i = 0; i < 4; ++i)
                promise(now(i, child) < after.coords().cols, "a corner that names no node");
        }
}

void prepare_faces(input& in, arguments& a)
{
    read_mesh(in, a, {in.rows({4, 4, 4, 3}), in.rows({2, 3}), in.below(3)});
    a.result() = read_result(in, {3, 4});
}

int split_fixed_failure(const arguments& a)
{
    if (a.connect().cols == 0) return 0; // no rows are wrong rows
    if (a.connect().rows != 3 && a.connect().rows != 4) return -1;
    return takes(a.result(), 3) ? 0 : -2;
}

int split_quality_failure(const arguments& a)
{
    if (a.connect().cols == 0) return 0;
    if (const int failure = columns_failure(a)) return failure;
    return takes(a.result(), 3) ? 0 : -3;
}

/// Both triangles of a quadrilateral hold three of its corners in order, and share a diagonal.
void verify_cut(const ids& parents, std::size_t e, const ids& now, std::size_t column)
{
    const auto corner = [&](std::size_t k) { return parents(k % 4, e); };
    bool found = false;
    for (std::size_t s = 0; s < 4 && !found; ++s)
        found = now(0, column) == corner(s) && now(1, column) == corner(s + 1) &&
                now(2, column) == corner(s + 2) && now(0, column + 1) == corner(s + 2) &&
                now(1, column + 1) == corner(s + 3) && now(2, column + 1) == corner(s);
    promise(found, "not the two halves of a quadrilateral");
}

void verify_split(const arguments& before, const arguments& after, int status)
{
    const ids& old = before.connect();
    if (status < 0 || old.is_empty()) return;
    const ids& now = after.result();
    std::size_t column = columns_of(before.result());
    promise(std::size_t(status) == quad_count(old), "the number of quadrilaterals");
    promise(now.cols == column + old.cols + quad_count(old), "a triangle more for each");
    for (std::size_t e = 0; e < old.cols; ++e) {
        if (is_quad(old, e)) {
            verify_cut(old, e, now, column);
            column += 2;
            continue;
        }
        for (unsigned k = 0; k < 3; ++k) promise(now(k, column) == old(k, e), "triangles stay");
        ++column;
    }
}

void prepare_gated(input& in, arguments& a)
{
    read_mesh(in, a, {in.rows({4}), in.rows({2, 3}), in.below(3)});
    a.result() = read_result(in, {4});
    for (unsigned k = 0; k < 3; ++k) a.real[k] = in.small_real(10);
    a.choice = in.chance(90) ? int(in.below(8)) : int(in.word());
    a.list() = read_id_list(in, in.chance(60) ? 0 : in.below(6), a.connect().cols);
    a.more_list() = read_id_list(in, in.chance(60) ? 0 : in.below(6), a.connect().cols);
}

int split_gated_failure(const arguments& a)
{
    if (a.connect().cols == 0) return 0;
    if (!is_plane_or_space(a.coords())) return -1;
    if (a.connect().rows != 4 || !holds_faces(a.connect(), a.coords().cols)) return -2;
    return takes(a.result(), 4) ? 0 : -8;
}

void verify_gated(const arguments& before, const arguments& after, int status)
{
    const ids& old = before.connect();
    if (status < 0 || old.is_empty()) return;
    const auto& kept = after.list();
    const auto& cut = after.more_list();
    promise(kept.size + cut.size == before.list().size + before.more_list().size + old.cols,
            "every element is in one of the lists");
    std::size_t column = columns_of(before.result());
    std::size_t quads = 0;
    const ids& now = after.result();
    for (std::size_t k = 0; k < kept.size; ++k) {
        if (kept[k] >= old.cols) continue;
        for (unsigned i = 0; i < 4; ++i)
            promise(now(i, column) == old(i, kept[k]), "elements that stay");
        ++column;
    }
    for (std::size_t k = 0; k < cut.size; ++k) {
        if (cut[k] >= old.cols || !is_quad(old, cut[k])) continue;
        verify_cut(old, cut[k], now, column);
        promise(now(3, column) == UNSET_ID && now(3, column + 1) == UNSET_ID, "row 3 is unset");
        column += 2;
        ++quads;
    }
    promise(now.cols == column || (now.is_empty() && column == 0), "nothing else");
    promise(std::size_t(status) == quads, "the number of cut quadrilaterals");
}

} // namespace

std::vector<call> fuzz::splits()
{
    return {
        {"split_into_Q4",
         returns::zero,
         {-1, -2, -3, -4},
         {{COORDS, role::appends_some}, {RESULT, role::appends}},
         prepare_middle,
         [](arguments& a) { return split_into_Q4(a.coords(), a.connect(), a.result(), a.edges()); },
         split_into_Q4_failure,
         verify_split_into_Q4},
        {"split_Q4_into_T3",
         returns::count,
         {-1, -2},
         {{RESULT, role::appends}},
         prepare_faces,
         [](arguments& a) { return split_Q4_into_T3(a.connect(), a.result()); },
         split_fixed_failure,
         verify_split},
        {"split_Q4_into_T3 by quality",
         returns::count,
         {-1, -2, -3},
         {{RESULT, role::appends}},
         prepare_faces,
         [](arguments& a) { return split_Q4_into_T3(a.coords(), a.connect(), a.result()); },
         split_quality_failure,
         verify_split},
        {"split_Q4_into_T3 by thresholds",
         returns::count,
         {-1, -2, -8},
         {{RESULT, role::appends}, {LIST, role::appends_some}, {MORE_LIST, role::appends_some}},
         prepare_gated,
         [](arguments& a) {
             return split_Q4_into_T3(a.coords(), a.connect(), a.real[0], a.real[1], a.real[2],
                                     a.choice, a.list(), a.more_list(), a.result());
         },
         split_gated_failure,
         verify_gated},
    };
}
