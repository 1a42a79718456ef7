// Angles, normals and circumcenters under fuzzed arguments.
#include "fuzz/expectations.h"
#include "fuzz/meshes.h"
#include "fuzz/trial.h"

#include <cmath>
#include <limits>

using namespace fuzz;
using namespace vorel::tessalo2d;

namespace {

/// An output that holds something else.
dense2D<double> read_old_result(input& in)
{
    return read_reals(in, {in.below(5), in.below(5)});
}

void prepare_angles(input& in, arguments& a)
{
    read_mesh(in, a, {in.rows({3, 4}), in.rows({2, 3}), in.below(3)});
    a.flag = in.chance(50);
    a.values() = read_real_list(in, in.below(5));
    a.more_values() = read_real_list(in, in.below(5));
}

int angles_failure(const arguments& a)
{
    return a.connect().is_empty() ? 0 : faces_failure(a);
}

void verify_angles(const arguments& before, const arguments& after, int status)
{
    const ids& connect = before.connect();
    const auto& smallest = after.values();
    const auto& largest = after.more_values();
    promise(smallest.size == largest.size, "two lists of one length");
    const bool right_rows = connect.rows == 3 || connect.rows == 4;
    if (connect.is_empty() || status == -1 || status == -199 || !right_rows) {
        promise(smallest.size == 0, "empty without a result");
        return;
    }
    promise(smallest.size == connect.cols, "an entry for each element");
    constexpr double pi = 3.14159265358979324;
    for (std::size_t e = 0; e < connect.cols; ++e) {
        if (status != 0) {
            promise(same(smallest[e], 0.0) && same(largest[e], 0.0), "zeros for wrong IDs");
            continue;
        }
        promise(!(smallest[e] > largest[e]), "the smallest is not above the largest");
        const double bound = before.flag ? (is_quad(connect, e) ? 2.0 : 3.0) : pi;
        promise(!(largest[e] > bound * 1.0000001), "not above a straight angle");
        const double least = before.coords().rows == 2 ? -bound * 1.0000001 : 0.0;
        promise(!(smallest[e] < least), "not below the least angle");
    }
}

void prepare_normals(input& in, arguments& a)
{
    read_mesh(in, a, {in.rows({3, 4}), in.rows({3}), in.below(3)});
    const unsigned unset = in.pick({0u, 0u, 10u});
    if (a.connect().rows >= 3) unset_some(in, a.connect(), unset);
    a.flag = in.chance(50);
    constexpr double largest = std::numeric_limits<double>::max();
    a.real[0] = in.pick({0.0, 1.0, -1.0, 2.0, 0.5, largest, -largest, in.wild_real()});
    a.real_result() = read_old_result(in);
}

int normals_failure(const arguments& a)
{
    if (a.coords().is_empty() || a.connect().is_empty()) return 0;
    if (a.coords().rows != 3) return -1;
    const bool right_rows = a.connect().rows == 3 || a.connect().rows == 4;
    return right_rows && holds_IDs(a.connect(), a.coords().cols, true) ? 0 : -2;
}

void check_normals(const arguments& before, const arguments& after, int status, std::size_t cols,
                   bool unit)
{
    const auto& vectors = after.real_result();
    const bool nothing = before.coords().is_empty() || before.connect().is_empty();
    if (status != 0 || nothing) {
        promise(vectors.cols == 0, "no columns without a result");
        return;
    }
    promise(vectors.rows == 3 && vectors.cols == cols, "shape");
    if (!before.tame || !unit) return;
    for (std::size_t j = 0; j < cols; ++j) {
        double square = 0.0;
        for (unsigned i = 0; i < 3; ++i) square += vectors(i, j) * vectors(i, j);
        promise(square == 0.0 || std::fabs(square - 1.0) < 1e-12, "unit length, or zero");
    }
}

void verify_normals(const arguments& before, const arguments& after, int status)
{
    check_normals(before, after, status, before.connect().cols, before.flag);
    const auto& vectors = after.real_result();
    const auto& p = before.coords();
    const ids& connect = before.connect();
    for (std::size_t e = 0; e < vectors.cols && before.tame; ++e) {
        const unsigned* const n = connect.column(e);
        if (is_quad(connect, e) || n[0] >= p.cols || n[1] >= p.cols || n[2] >= p.cols) continue;
        for (const unsigned k : {1u, 2u}) {
            double along = 0.0;
            for (unsigned i = 0; i < 3; ++i) along += vectors(i, e) * (p(i, n[k]) - p(i, n[0]));
            promise(std::fabs(along) < 1e-12, "at a right angle to the sides");
        }
    }
}

void verify_node_normals(const arguments& before, const arguments& after, int status)
{
    const bool plain = before.real[0] == 0.0 || before.real[0] == 1.0;
    check_normals(before, after, status, before.coords().cols, before.flag && plain);
}

double squared_distance(const dense2D<double>& a, std::size_t i, const dense2D<double>& b,
                        std::size_t j)
{
    double sum = 0.0;
    for (std::size_t k = 0; k < a.rows; ++k) sum += (a(k, i) - b(k, j)) * (a(k, i) - b(k, j));
    return sum;
}

/// Three points in a line or in one place: of multiples of one unit this is exact.
bool is_flat(const dense2D<double>& p, const unsigned* n)
{
    double uu = 0.0, uv = 0.0, vv = 0.0;
    for (std::size_t k = 0; k < p.rows; ++k) {
        const double u = p(k, n[1]) - p(k, n[0]);
        const double v = p(k, n[2]) - p(k, n[0]);
        uu += u * u;
        uv += u * v;
        vv += v * v;
    }
    return uu * vv == uv * uv;
}

void prepare_circumcenters(input& in, arguments& a)
{
    read_mesh(in, a, {in.rows({3}), in.rows({2, 3}), in.below(3)});
    a.real_result() = read_old_result(in);
}

int circumcenters_failure(const arguments& a)
{
    if (!is_plane_or_space(a.coords())) return -1; // ahead of an empty mesh
    return a.connect().rows == 3 && holds_faces(a.connect(), a.coords().cols) ? 0 : -2;
}

void verify_circumcenters(const arguments& before, const arguments& after, int status)
{
    const auto& centers = after.real_result();
    if (status != 0) {
        promise(centers.is_empty(), "emptied");
        return;
    }
    promise(centers.is_empty() || centers.rows == before.coords().rows, "rows");
    promise(centers.cols == before.connect().cols || centers.is_empty(), "a column each");
    if (!before.tame) return;
    for (std::size_t e = 0; e < centers.cols; ++e) {
        for (std::size_t i = 0; i < centers.rows; ++i)
            promise(std::isfinite(centers(i, e)), "finite points have a finite centre");
        const unsigned* const n = before.connect().column(e);
        if (is_flat(before.coords(), n)) continue;
        const double radius = squared_distance(centers, e, before.coords(), n[0]);
        for (const unsigned k : {1u, 2u})
            promise(std::fabs(squared_distance(centers, e, before.coords(), n[k]) - radius) <
                        1e-9 * radius,
                    "as far from each corner");
    }
}

const std::vector<call> calls = {
    {"angles",
     returns::zero,
     {-1, -2},
     {{VALUES, role::replaces}, {MORE_VALUES, role::replaces}},
     prepare_angles,
     [](arguments& a) {
         return angles(a.coords(), a.connect(), a.flag, a.values(), a.more_values());
     },
     angles_failure,
     verify_angles},
    {"normals",
     returns::zero,
     {-1, -2},
     {{REAL_RESULT, role::replaces}},
     prepare_normals,
     [](arguments& a) { return normals(a.coords(), a.connect(), a.flag, a.real_result()); },
     normals_failure,
     verify_normals},
    {"normals at nodes",
     returns::zero,
     {-1, -2},
     {{REAL_RESULT, role::replaces}},
     prepare_normals,
     [](arguments& a) {
         return normals(a.coords(), a.connect(), a.real[0], a.flag, a.real_result());
     },
     normals_failure,
     verify_node_normals},
    {"circumcenters",
     returns::zero,
     {-1, -2},
     {{REAL_RESULT, role::replaces}},
     prepare_circumcenters,
     [](arguments& a) { return circumcenters(a.coords(), a.connect(), a.real_result()); },
     circumcenters_failure,
     verify_circumcenters},
};

} // namespace

const std::vector<call>& fuzz::family()
{
    return calls;
}
