// Two metrics in a basis in which both are diagonal, and the interpolation between them there.
//
// A metric is interpolated by its sizes: along each vector of the common basis the size runs
// linearly from that of the one metric to that of the other.
#pragma once

#include <vorel/dense2D.h>
#include <vorel/fixed.h>

namespace vorel::tessalo2d {

/// A pair of metrics of dimension D in its common basis.
template <std::size_t D>
struct metric_pair_reduction {
    /// Vector k in entries kD to kD + D - 1, of unit length.
    double basis[D * D];
    /// Row k of the inverse of the matrix with the basis vectors as columns, at kD.
    double inverse[D * D];
    /// x'M1x and x'M2x of each basis vector x.
    double first_diagonal[D];
    double second_diagonal[D];
};

/// x'Mx, the squared length of x in the metric m.
inline double quadratic_form(const symmetric_fixed<double, 2>& m, const double* x)
{
    return m.data[0] * (x[0] * x[0]) + 2.0 * m.data[1] * x[0] * x[1] + m.data[2] * (x[1] * x[1]);
}
inline double quadratic_form(const symmetric_fixed<double, 3>& m, const double* x)
{
    return m.data[0] * (x[0] * x[0]) + 2.0 * m.data[1] * x[0] * x[1] + m.data[2] * (x[1] * x[1]) +
           2.0 * m.data[3] * x[0] * x[2] + 2.0 * m.data[4] * x[1] * x[2] +
           m.data[5] * (x[2] * x[2]);
}

/// The metric whose entries start at `entry`.
template <std::size_t D>
inline symmetric_fixed<double, D> load_metric(const double* entry)
{
    symmetric_fixed<double, D> m;
    for (std::size_t k = 0; k < m.size; ++k) m.data[k] = entry[k];
    return m;
}

template <std::size_t D>
inline void store_metric(const symmetric_fixed<double, D>& m, double* entry)
{
    for (std::size_t k = 0; k < m.size; ++k) entry[k] = m.data[k];
}

/// The metric of column j of a field with 3 rows (in the plane) or 6.
template <std::size_t D>
inline symmetric_fixed<double, D> metric_column(const dense2D<double>& metrics, std::size_t j)
{
    return load_metric<D>(metrics.column(j));
}

/// The metric whose quadratic form takes the value eigenvalues[k] on basis vector k, from the
/// inverse of the basis as in `metric_pair_reduction`.
template <std::size_t D>
void compose_metric(const double (&eigenvalues)[D], const double (&inverse)[D * D],
                    symmetric_fixed<double, D>& m);

/// Brings both metrics into their common basis. M1 has to be definite, M2 only symmetric. False,
/// and a record of zeros, when the pencil of the pair can't be solved. In the plane in closed form,
/// in space by one call of `dspev`.
template <std::size_t D>
[[nodiscard]] bool reduce_metric_pair(metric_pair_reduction<D>& reduction,
                                      const symmetric_fixed<double, D>& m1,
                                      const symmetric_fixed<double, D>& m2);

/// The sizes that a pair of metrics asks for along its common basis.
template <std::size_t D>
struct metric_pair_sizes {
    double first[D];
    double second[D];
    /// False when one of the two is no metric; the sizes are then unspecified.
    bool valid;
};

template <std::size_t D>
metric_pair_sizes<D> sizes_of(const metric_pair_reduction<D>& reduction);

/// The metric at `t` from the sizes along the common basis, for many `t` between two metrics.
/// Results as with `interpolate_reduced_metrics`.
template <std::size_t D>
[[nodiscard]] bool interpolate_pair_sizes(const metric_pair_sizes<D>& sizes,
                                          const double (&inverse)[D * D], double t,
                                          symmetric_fixed<double, D>& m);

/// The metric at `t` between M1 (t = 0) and M2 (t = 1); `t` may lie outside. False with `m` as it
/// was when one of the two is no metric; false with `m` zeroed when, outside, a size runs out of
/// range.
template <std::size_t D>
[[nodiscard]] bool interpolate_reduced_metrics(const metric_pair_reduction<D>& reduction, double t,
                                               symmetric_fixed<double, D>& m);

/// Reduces the pair and interpolates. Within the end tolerance of an end the metric there is
/// copied, whatever it holds. `m` may be one of the two.
template <std::size_t D>
[[nodiscard]] bool interpolate_metric_pair(double t, const symmetric_fixed<double, D>& m1,
                                           const symmetric_fixed<double, D>& m2,
                                           symmetric_fixed<double, D>& m);

/// As above between columns i and j of a field.
template <std::size_t D>
[[nodiscard]] bool interpolate_metric_columns(const dense2D<double>& metrics, double t,
                                              std::size_t i, std::size_t j,
                                              symmetric_fixed<double, D>& m);

} // namespace vorel::tessalo2d
