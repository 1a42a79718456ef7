// Fields over structured grids and the intersection of metrics under fuzzed arguments.
#include "fuzz/expectations.h"
#include "fuzz/loops.h"
#include "fuzz/meshes.h"
#include "fuzz/trial.h"

#include <cmath>
#include <limits>

using namespace fuzz;
using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

// ------------------------------------------------------------------------------ structured fields

void prepare_field(input& in, arguments& a)
{
    const std::size_t nodes = in.chance(3) ? 0 : 1 + in.below(20);
    read_loop(in, a, nodes);
    a.values() = read_real_list(in, nodes);
    a.field() = read_metrics(in, {in.rows({3, 6}), nodes});
}

int field_failure(const arguments& a, std::size_t length)
{
    const loop l(a.nodes().size, a.count[0]);
    if (l.is_nothing) return 0;
    if (!is_closed_loop(a.nodes(), length)) return -1;
    return l.fits ? 0 : -2;
}

int sizes_failure(const arguments& a)
{
    return field_failure(a, a.values().size);
}

int metrics_failure(const arguments& a)
{
    if (a.field().rows != 3 && a.field().rows != 6) return -3;
    return field_failure(a, a.field().cols);
}

template <class Field>
void verify_field(const arguments& before, const Field& old, const Field& now, int status)
{
    const loop l(before.nodes().size, before.count[0]);
    if (status != 0) return;
    const std::size_t length = shape_of(old).cols;
    if (l.is_nothing) {
        promise(same_entries(old, now), "nothing to do changes nothing");
    } else if (l.M == 0) {
        promise(shape_of(now).cols == length - (l.N - 1), "the last entries are taken away");
        promise(begins_with(old, now), "the others stay");
    } else {
        promise(shape_of(now).cols == length + (l.M - 1) * (l.N - 1), "one for each inner node");
        promise(begins_with(now, old), "old entries stay");
    }
}

void verify_sizes(const arguments& before, const arguments& after, int status)
{
    verify_field(before, before.values(), after.values(), status);
    for (std::size_t k = before.values().size; k < after.values().size && status == 0; ++k)
        promise(!(after.values()[k] < 0.0), "a size is not negative");
}

void verify_metrics(const arguments& before, const arguments& after, int status)
{
    verify_field(before, before.field(), after.field(), status);
}

// ---------------------------------------------------------------------------------- intersection

using metric = symmetric_fixed<double, 3>;

metric metric_at(const arguments& a, std::size_t k)
{
    metric m;
    for (std::size_t i = 0; i < 6; ++i) m[i] = a.real[k + i];
    return m;
}

void prepare_pair(input& in, arguments& a)
{
    const dense2D<double> pair = read_metrics(in, {6, 2});
    for (unsigned k = 0; k < 12; ++k) a.real[k] = pair(k % 6, k / 6);
    if (in.chance(40))
        // Thin ellipsoids in any direction.
        for (unsigned k : {0u, 6u}) {
            metric m{};
            for (unsigned axis = 0; axis < 3; ++axis) {
                double v[3];
                for (double& x : v) x = (in.below(201) - 100.0) / 100.0;
                const double weight = std::ldexp(1.0, int(in.below(60)) - 30);
                for (unsigned i = 0; i < 3; ++i)
                    for (unsigned j = 0; j <= i; ++j) m(i, j) += weight * v[i] * v[j];
            }
            for (unsigned i = 0; i < 6; ++i) a.real[k + i] = m[i];
        }
    const double factor = in.pick({1.0, 1.0, 2.0, 3.0});
    if (in.chance(15))
        for (unsigned i = 0; i < 6; ++i) a.real[6 + i] = factor * a.real[i];
}

bool same_bits(const metric& a, const metric& b)
{
    for (std::size_t k = 0; k < 6; ++k)
        if (!same(a[k], b[k])) return false;
    return true;
}

/// x'Mx, and the scale that it is rounded on.
struct form {
    long double value = 0.0L;
    long double scale = 0.0L;
    form(const metric& m, const double (&x)[3])
    {
        for (unsigned i = 0; i < 3; ++i) {
            scale += std::sqrt(std::fabs(m(i, i))) * std::fabs(x[i]);
            for (unsigned j = 0; j < 3; ++j)
                value += static_cast<long double>(m(i, j)) * x[i] * x[j];
        }
        scale *= scale;
    }
};

void check_cover(const metric& result, const metric& operand)
{
    // Whether the operand is a metric shows when the other one is none.
    metric none{}, alone;
    none[0] = std::numeric_limits<double>::quiet_NaN();
    if (!tessalo::minimum_metric(operand, none, alone)) return;
    constexpr double directions[][3] = {{1, 0, 0},  {0, 1, 0},  {0, 0, 1},   {1, 1, 0},
                                        {1, 0, -1}, {0, 1, -1}, {1, -2, 0.5}};
    for (const auto& x : directions) {
        const form covers(result, x);
        const form covered(operand, x);
        promise(covers.value >= covered.value - 1e-11L * covers.scale, "covers both operands");
    }
}

bool is_moderate(const metric& m)
{
    for (std::size_t k = 0; k < 6; ++k)
        if (!(std::fabs(m[k]) < 1e140) || (m[k] != 0.0 && std::fabs(m[k]) < 1e-140)) return false;
    return true;
}

void verify_pair(const arguments& before, const arguments&, int status)
{
    const metric a = metric_at(before, 0);
    const metric b = metric_at(before, 6);
    metric result, swapped, over_a = a, over_b = b;
    const bool done = tessalo::minimum_metric(a, b, result);
    promise(done == (status == 1), "the same on every call");
    promise(tessalo::minimum_metric(b, a, swapped) == done, "whatever the order");
    promise(tessalo::minimum_metric(over_a, b, over_a) == done && same_bits(over_a, result),
            "the result may be the first operand");
    promise(tessalo::minimum_metric(a, over_b, over_b) == done && same_bits(over_b, result),
            "the result may be the second operand");
    if (!done) {
        promise(same_bits(result, b), "the second operand when neither is a metric");
        return;
    }
    if (!is_moderate(a) || !is_moderate(b)) return;
    check_cover(result, a);
    check_cover(result, b);
    for (unsigned i = 0; i < 3; ++i)
        for (unsigned j = 0; j <= i; ++j) {
            const double scale = std::sqrt(std::fabs(result(i, i)) * std::fabs(result(j, j)));
            promise(std::fabs(result(i, j) - swapped(i, j)) <= 1e-11 * scale,
                    "the order changes no more than rounding");
        }
}

const std::vector<call> calls = {
    {"metrics_struct of sizes",
     returns::zero,
     {-1, -2},
     {{VALUES, role::edits}},
     prepare_field,
     [](arguments& a) { return metrics_struct(a.nodes(), a.count[0], a.values()); },
     sizes_failure,
     verify_sizes,
     true,
     true},
    {"metrics_struct",
     returns::zero,
     {-3, -1, -2},
     {{FIELD, role::edits}},
     prepare_field,
     [](arguments& a) { return metrics_struct(a.nodes(), a.count[0], a.field()); },
     metrics_failure,
     verify_metrics,
     true,
     true},
    {"minimum_metric",
     returns::count,
     {},
     {},
     prepare_pair,
     [](arguments& a) {
         metric result;
         const bool done = tessalo::minimum_metric(metric_at(a, 0), metric_at(a, 6), result);
         a.real_out = result[0];
         return int(done);
     },
     [](const arguments&) { return 0; },
     verify_pair},
};

} // namespace

const std::vector<call>& fuzz::family()
{
    return calls;
}
