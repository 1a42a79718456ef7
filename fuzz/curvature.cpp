// Curvatures and metrics from surfaces under fuzzed arguments.
#include "fuzz/expectations.h"
#include "fuzz/meshes.h"
#include "fuzz/trial.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace fuzz;
using namespace vorel::tessalo2d;

namespace {

// --------------------------------------------------------------------------- parametric surfaces

void prepare_parametric(input& in, arguments& a)
{
    read_mesh(in, a, {in.rows({3}), in.rows({2}), in.below(3)});
    const std::size_t columns = in.chance(3) ? in.below(9) : a.coords().cols;
    a.field() = read_reals(in, {in.rows({6}), columns});
    if (in.chance(70))
        for (std::size_t j = 0; j < columns && a.field().rows == 6; ++j) {
            // Close to a plane: the normal has a length.
            a.field()(0, j) += in.real_at(1);
            a.field()(4, j) += in.real_at(1);
        }
    a.real_result() = read_reals(in, {in.below(5), in.below(5)});
}

int parametric_failure(const arguments& a)
{
    const std::size_t nodes = a.coords().cols;
    if (a.connect().is_empty()) return 0;
    if (a.coords().rows != 2) return -1;
    if (a.connect().rows != 3 || !holds_faces(a.connect(), nodes)) return -2;
    return a.field().rows == 6 && a.field().cols == nodes ? 0 : -3;
}

void verify_parametric(const arguments& before, const arguments& after, int status)
{
    const auto& forms = after.real_result();
    if (status != 0 || before.connect().is_empty())
        promise(forms.is_empty(), "emptied without a result");
    else
        promise(forms.rows == 3 && forms.cols == before.coords().cols, "shape");
}

// ------------------------------------------------------------------------------ principal values

void prepare_principal(input& in, arguments& a)
{
    const mesh m = read_mesh(in, {in.rows({3}), in.rows({3}), in.below(3)});
    const std::size_t nodes = m.coords.cols;
    a.coords() = m.coords;
    a.connect() = m.connect;
    a.neighbors() = m.neighbors;
    const unsigned wild = in.pick({0u, 0u, 40u});
    a.real[0] = in.small_real(wild);
    a.real[1] = in.small_real(wild);
    a.count[0] = in.chance(60) ? 1000 : in.count(6);
    if (in.chance(50)) a.edges() = read_ids(in, {in.rows({2}), in.below(6)}, nodes);
    a.real_result() = read_reals(in, {in.below(10), in.below(5)});
}

int principal_failure(const arguments& a)
{
    const std::size_t nodes = a.coords().cols;
    if (a.connect().is_empty()) return 0;
    if (a.coords().rows != 3) return -1;
    if (a.connect().rows != 3 || !holds_faces(a.connect(), nodes)) return -2;
    if (a.neighbors().cols != a.connect().cols) return -3;
    if (a.edges().is_empty()) return 0;
    return a.edges().rows == 2 && holds_IDs(a.edges(), nodes, false) ? 0 : -7;
}

double squared_length(const dense2D<double>& m, std::size_t first, std::size_t j)
{
    double square = 0.0;
    for (std::size_t i = first; i < first + 3; ++i) square += m(i, j) * m(i, j);
    return square;
}

void verify_principal(const arguments& before, const arguments& after, int status)
{
    const auto& curvatures = after.real_result();
    if (status == -199) return;
    if (status != 0 || before.connect().is_empty()) {
        promise(same_entries(before.real_result(), curvatures), "unchanged without a result");
        return;
    }
    promise(curvatures.rows == 8 && curvatures.cols == before.coords().cols, "shape");
    for (std::size_t j = 0; j < curvatures.cols && before.tame; ++j) {
        const double first = squared_length(curvatures, 0, j);
        const double second = squared_length(curvatures, 3, j);
        const bool none = first == 0.0 && second == 0.0;
        promise(none || (std::fabs(first - 1.0) < 1e-9 && std::fabs(second - 1.0) < 1e-9),
                "unit vectors, or zeros");
        promise(!(std::fabs(curvatures(6, j)) < std::fabs(curvatures(7, j))),
                "the larger value comes first");
    }
}

// --------------------------------------------------------------------------------------- metrics

void prepare_metrics(input& in, arguments& a)
{
    read_mesh(in, a, {in.rows({3}), in.rows({3, 3, 3, 4, 5}), in.below(3)});
    a.real[0] = in.small_real(in.pick({0u, 0u, 40u}));
    a.field() = read_metrics(in, {in.rows({6}), in.chance(40) ? 0 : in.below(30)});
}

int metrics_failure(const arguments& a)
{
    const std::size_t nodes = a.coords().cols;
    if (a.coords().rows < 3) return -1;
    if (a.connect().rows != 3 || !holds_faces(a.connect(), nodes)) return -2;
    if (nodes == 0) return -2; // no elements count as the ID 0
    return takes(a.field(), 6) ? 0 : -4;
}

void verify_metrics(const arguments& before, const arguments& after, int status)
{
    const auto& old = before.field();
    const auto& now = after.field();
    const auto& connect = before.connect();
    if (status != 0) return;
    std::size_t largest = 0;
    for (std::size_t j = 0; j < connect.cols; ++j)
        for (std::size_t i = 0; i < 3; ++i) largest = std::max<std::size_t>(largest, connect(i, j));
    promise(now.rows == 6 && now.cols == std::max(old.cols, largest + 1), "shape");
    const std::vector<bool> used = used_nodes(connect, now.cols);
    for (std::size_t j = 0; j < now.cols; ++j)
        for (std::size_t i = 0; i < 6 && !used[j]; ++i) {
            const double was = old.rows == 6 && j < old.cols ? old(i, j) : 0.0;
            promise(same(now(i, j), was), "columns of other nodes stay");
        }
    const double size = std::fabs(before.real[0]);
    if (!before.tame || !(size == 0.0 || (size > 1e-3 && size < 1e3))) return;
    for (std::size_t j = columns_of(old); j < now.cols; ++j)
        for (const std::size_t i : {0u, 2u, 5u})
            promise(now(i, j) >= 0.0 && now(i, j) <= std::numeric_limits<double>::max(),
                    "a new metric has a diagonal that is finite and not negative");
}

const std::vector<call> calls = {
    {"parametric_curvatures",
     returns::zero,
     {-1, -2, -3},
     {{REAL_RESULT, role::replaces}},
     prepare_parametric,
     [](arguments& a) {
         return parametric_curvatures(a.coords(), a.connect(), a.field(), a.real_result());
     },
     parametric_failure,
     verify_parametric},
    {"principal_curvatures",
     returns::zero,
     {-1, -2, -3, -7},
     {{REAL_RESULT, role::replaces}},
     prepare_principal,
     [](arguments& a) {
         return principal_curvatures(a.coords(), a.connect(), a.neighbors(), a.real[0], a.real[1],
                                     a.count[0], a.edges(), a.real_result());
     },
     principal_failure,
     verify_principal},
    {"metrics_gen_aniso3d",
     returns::zero,
     {-1, -2, -4},
     {{FIELD, role::edits}},
     prepare_metrics,
     [](arguments& a) {
         return metrics_gen_aniso3d(a.coords(), a.connect(), a.real[0], a.field());
     },
     metrics_failure,
     verify_metrics},
};

} // namespace

const std::vector<call>& fuzz::family()
{
    return calls;
}
