// Reduction of a pair of metrics and interpolation in its common basis.
#include "metrics/metric_pair.h"

#include "metrics/generalized_eigen.h"
#include "metrics/sizes.h"
#include "metrics/symmetric3.h"

namespace vorel::tessalo2d {

namespace {

/// A basis without area keeps the inverse as it is.
void invert_basis(const double (&p)[4], double (&inverse)[4])
{
    const double det = p[0] * p[3] - p[2] * p[1];
    if (det == 0.0) return;
    inverse[0] = p[3] / det;
    inverse[1] = -p[2] / det;
    inverse[2] = -p[1] / det;
    inverse[3] = p[0] / det;
}

void invert_basis(const double (&basis)[9], double (&inverse)[9])
{
    double det;
    inverse_transpose3(basis, inverse, det);
}

} // namespace

template <std::size_t D>
void compose_metric(const double (&eigenvalues)[D], const double (&inverse)[D * D],
                    symmetric_fixed<double, D>& m)
{
    double* entry = m.data;
    for (std::size_t i = 0; i < D; ++i)
        for (std::size_t j = 0; j <= i; ++j, ++entry) {
            double sum = eigenvalues[0] * inverse[i] * inverse[j];
            for (std::size_t k = 1; k < D; ++k)
                sum += eigenvalues[k] * inverse[k * D + i] * inverse[k * D + j];
            *entry = sum;
        }
}

template <std::size_t D>
bool reduce_metric_pair(metric_pair_reduction<D>& reduction, const symmetric_fixed<double, D>& m1,
                        const symmetric_fixed<double, D>& m2)
{
    reduction = {};
    double values[D];
    if (!generalized_eigen(m1, m2, values, reduction.basis, true)) {
        reduction = {};
        return false;
    }
    invert_basis(reduction.basis, reduction.inverse);
    for (std::size_t k = 0; k < D; ++k) {
        reduction.first_diagonal[k] = quadratic_form(m1, reduction.basis + k * D);
        reduction.second_diagonal[k] = values[k] * reduction.first_diagonal[k];
    }
    return true;
}

template <std::size_t D>
metric_pair_sizes<D> sizes_of(const metric_pair_reduction<D>& reduction)
{
    metric_pair_sizes<D> sizes;
    sizes.valid =
        spectrum_is_valid(reduction.first_diagonal) && spectrum_is_valid(reduction.second_diagonal);
    eigenvalues_to_sizes(reduction.first_diagonal, sizes.first);
    eigenvalues_to_sizes(reduction.second_diagonal, sizes.second);
    return sizes;
}

template <std::size_t D>
bool interpolate_pair_sizes(const metric_pair_sizes<D>& sizes, const double (&inverse)[D * D],
                            double t, symmetric_fixed<double, D>& m)
{
    if (!sizes.valid) return false;
    double h[D];
    for (std::size_t k = 0; k < D; ++k)
        h[k] = (sizes.second[k] - sizes.first[k]) * t + sizes.first[k];
    const bool inside = t >= 0.0 && t <= 1.0;
    if (!inside && !spectrum_is_valid(h)) {
        m = {};
        return false;
    }
    double eigenvalues[D];
    sizes_to_eigenvalues(h, eigenvalues);
    compose_metric(eigenvalues, inverse, m);
    return true;
}

template <std::size_t D>
bool interpolate_reduced_metrics(const metric_pair_reduction<D>& reduction, double t,
                                 symmetric_fixed<double, D>& m)
{
    return interpolate_pair_sizes(sizes_of(reduction), reduction.inverse, t, m);
}

template <std::size_t D>
bool interpolate_metric_pair(double t, const symmetric_fixed<double, D>& m1,
                             const symmetric_fixed<double, D>& m2, symmetric_fixed<double, D>& m)
{
    if (counts_as_zero(t)) {
        m = m1;
        return true;
    }
    if (counts_as_zero(1.0 - t)) {
        m = m2;
        return true;
    }
    metric_pair_reduction<D> reduction;
    return reduce_metric_pair(reduction, m1, m2) && interpolate_reduced_metrics(reduction, t, m);
}

template <std::size_t D>
bool interpolate_metric_columns(const dense2D<double>& metrics, double t, std::size_t i,
                                std::size_t j, symmetric_fixed<double, D>& m)
{
    return interpolate_metric_pair<D>(t, metric_column<D>(metrics, i), metric_column<D>(metrics, j),
                                      m);
}

// The two dimensions that there are.
template void compose_metric<2>(const double (&)[2], const double (&)[4],
                                symmetric_fixed<double, 2>&);
template void compose_metric<3>(const double (&)[3], const double (&)[9],
                                symmetric_fixed<double, 3>&);
template bool reduce_metric_pair<2>(metric_pair_reduction<2>&, const symmetric_fixed<double, 2>&,
                                    const symmetric_fixed<double, 2>&);
template bool reduce_metric_pair<3>(metric_pair_reduction<3>&, const symmetric_fixed<double, 3>&,
                                    const symmetric_fixed<double, 3>&);
template metric_pair_sizes<2> sizes_of<2>(const metric_pair_reduction<2>&);
template bool interpolate_pair_sizes<2>(const metric_pair_sizes<2>&, const double (&)[4], double,
                                        symmetric_fixed<double, 2>&);
template bool interpolate_reduced_metrics<2>(const metric_pair_reduction<2>&, double,
                                             symmetric_fixed<double, 2>&);
template metric_pair_sizes<3> sizes_of<3>(const metric_pair_reduction<3>&);
template bool interpolate_pair_sizes<3>(const metric_pair_sizes<3>&, const double (&)[9], double,
                                        symmetric_fixed<double, 3>&);
template bool interpolate_reduced_metrics<3>(const metric_pair_reduction<3>&, double,
                                             symmetric_fixed<double, 3>&);
template bool interpolate_metric_pair<2>(double, const symmetric_fixed<double, 2>&,
                                         const symmetric_fixed<double, 2>&,
                                         symmetric_fixed<double, 2>&);
template bool interpolate_metric_pair<3>(double, const symmetric_fixed<double, 3>&,
                                         const symmetric_fixed<double, 3>&,
                                         symmetric_fixed<double, 3>&);
template bool interpolate_metric_columns<2>(const dense2D<double>&, double, std::size_t,
                                            std::size_t, symmetric_fixed<double, 2>&);
template bool interpolate_metric_columns<3>(const dense2D<double>&, double, std::size_t,
                                            std::size_t, symmetric_fixed<double, 3>&);

} // namespace vorel::tessalo2d
