// Interpolation of three and four metrics.
#include "metrics/interpolate_metric.h"

#include "metrics/sizes.h"

namespace vorel::tessalo2d {

namespace {

/// Between two metrics at a `t` whose nearness to 0 is no matter any more.
template <std::size_t D>
bool reduce_and_interpolate(const symmetric_fixed<double, D>& m1,
                            const symmetric_fixed<double, D>& m2, double t,
                            symmetric_fixed<double, D>& m)
{
    metric_pair_reduction<D> reduction;
    return reduce_metric_pair(reduction, m1, m2) && interpolate_reduced_metrics(reduction, t, m);
}

/// As above; near 1 it is a copy of the second metric.
template <std::size_t D>
bool toward(const symmetric_fixed<double, D>& m1, const symmetric_fixed<double, D>& m2, double t,
            symmetric_fixed<double, D>& m)
{
    if (counts_as_zero(1.0 - t)) {
        m = m2;
        return true;
    }
    return reduce_and_interpolate(m1, m2, t, m);
}

} // namespace

template <std::size_t D>
bool interpolate_metric_triangle(const dense2D<double>& metrics, double u, double v, std::size_t a,
                                 std::size_t b, std::size_t c, symmetric_fixed<double, D>& m)
{
    using metric = symmetric_fixed<double, D>;
    const metric at_a = metric_column<D>(metrics, a);
    const metric at_b = metric_column<D>(metrics, b);
    const metric at_c = metric_column<D>(metrics, c);
    const bool no_u = counts_as_zero(u);
    const bool no_v = counts_as_zero(v);
    if (no_u && no_v) {
        m = at_c;
        return true;
    }
    if (no_u) return toward(at_c, at_b, v, m);
    if (no_v) return toward(at_c, at_a, u, m);
    if (is_on_hypotenuse(u, v)) return toward(at_a, at_b, v, m);

    const double w = u + v;
    metric on_edge;
    if (!interpolate_metric_pair(v / w, at_a, at_b, on_edge)) return false;
    if (counts_as_zero(w)) {
        m = at_c;
        return true;
    }
    return reduce_and_interpolate(at_c, on_edge, w, m);
}

template <std::size_t D>
bool interpolate_metric_quad(double xi, double eta, const symmetric_fixed<double, D>& m0,
                             const symmetric_fixed<double, D>& m1,
                             const symmetric_fixed<double, D>& m2,
                             const symmetric_fixed<double, D>& m3, symmetric_fixed<double, D>& m)
{
    const double s = (xi + 1.0) * 0.5;
    const double t = (eta + 1.0) * 0.5;
    if (counts_as_zero(t)) return interpolate_metric_pair(s, m0, m1, m);
    if (counts_as_zero(s)) return interpolate_metric_pair(t, m0, m3, m);
    if (counts_as_zero(1.0 - t)) return interpolate_metric_pair(s, m3, m2, m);
    if (counts_as_zero(1.0 - s)) return interpolate_metric_pair(t, m1, m2, m);
    symmetric_fixed<double, D> low;
    symmetric_fixed<double, D> high;
    if (!interpolate_metric_pair(s, m0, m1, low)) return false;
    if (!interpolate_metric_pair(s, m3, m2, high)) return false;
    return reduce_and_interpolate(low, high, t, m);
}

template <std::size_t D>
bool interpolate_metric_quad_columns(const dense2D<double>& metrics, double xi, double eta,
                                     std::size_t c0, std::size_t c1, std::size_t c2, std::size_t c3,
                                     symmetric_fixed<double, D>& m)
{
    return interpolate_metric_quad<D>(xi, eta, metric_column<D>(metrics, c0),
                                      metric_column<D>(metrics, c1), metric_column<D>(metrics, c2),
                                      metric_column<D>(metrics, c3), m);
}

// The two dimensions that there are.
template bool interpolate_metric_triangle<2>(const dense2D<double>&, double, double, std::size_t,
                                             std::size_t, std::size_t, symmetric_fixed<double, 2>&);
template bool interpolate_metric_triangle<3>(const dense2D<double>&, double, double, std::size_t,
                                             std::size_t, std::size_t, symmetric_fixed<double, 3>&);
template bool interpolate_metric_quad<2>(double, double, const symmetric_fixed<double, 2>&,
                                         const symmetric_fixed<double, 2>&,
                                         const symmetric_fixed<double, 2>&,
                                         const symmetric_fixed<double, 2>&,
                                         symmetric_fixed<double, 2>&);
template bool interpolate_metric_quad<3>(double, double, const symmetric_fixed<double, 3>&,
                                         const symmetric_fixed<double, 3>&,
                                         const symmetric_fixed<double, 3>&,
                                         const symmetric_fixed<double, 3>&,
                                         symmetric_fixed<double, 3>&);
template bool interpolate_metric_quad_columns<2>(const dense2D<double>&, double, double,
                                                 std::size_t, std::size_t, std::size_t, std::size_t,
                                                 symmetric_fixed<double, 2>&);
template bool interpolate_metric_quad_columns<3>(const dense2D<double>&, double, double,
                                                 std::size_t, std::size_t, std::size_t, std::size_t,
                                                 symmetric_fixed<double, 3>&);

} // namespace vorel::tessalo2d
