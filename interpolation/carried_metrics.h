// Sizes and metrics as carried values: see carried_values.h for what a carrier has.
#pragma once

#include "foundation/prefetch.h"
#include "foundation/vec.h"
#include "interpolation/size_quad.h"
#include "metrics/interpolate_metric.h"
#include "metrics/lapack.h"
#include "metrics/sizes.h"
#include "metrics/symmetric2.h"

namespace vorel::tessalo2d {

/// One size a node. An interpolation is refused when a size that it uses is not above 0.
class size_carrier {
public:
    static constexpr bool FILLS_TREE = true;

    size_carrier(const dense1D<double, 8>& sizes, bool keep_valid) : h(sizes), keep(keep_valid) {}

    bool ready() const { return true; }
    bool keeps(unsigned node) const { return keep && h[node] > 0.0 && h[node] < largest_double; }
    bool in_triangle(const unsigned* n, const vec2& uv)
    {
        return interpolate_size_triangle(h, uv[0], uv[1], n[0], n[1], n[2], value);
    }
    bool in_quad(const unsigned* n, const vec2& xi_eta)
    {
        return interpolate_size_quad(xi_eta[0], xi_eta[1], h[n[0]], h[n[1]], h[n[2]], h[n[3]],
                                     value);
    }
    void prefetch(unsigned node) const { tessalo2d::prefetch(h.begin() + node); }
    void copy(unsigned node) { value = h[node]; }
    void store(unsigned node) { h[node] = value; }

private:
    /// Shares the caller's storage, so that what is stored lands there.
    dense1D<double, 8> h;
    bool keep;
    double value = 0.0;
};

/// Whether the smallest eigenvalue is above 0.
inline bool is_definite(const symmetric_fixed<double, 2>& m)
{
    double values[2];
    (void)eigen_sym2_values(m.data[0], m.data[1], m.data[2], values);
    return values[0] > 0.0;
}

/// As above. What a failed call leaves, zeros or NaN, is not above 0.
inline bool is_definite(const symmetric_fixed<double, 3>& m)
{
    symmetric_fixed<double, 3> overwritten = m;
    double values[3] = {0.0, 0.0, 0.0};
    double vectors[1];
    double work[9] = {};
    (void)lapack::dspev('N', 'U', 3, overwritten.data, values, vectors, 1, work);
    return values[0] > 0.0;
}

/// One metric of dimension D a node. An interpolation is refused when a metric that it uses is not
/// positive definite; on a node of the background its metric is copied, whatever it holds.
template <std::size_t D>
class metric_carrier {
public:
    static constexpr bool FILLS_TREE = true;

    metric_carrier(const dense2D<double>& metrics, bool keep_valid) : m(metrics), keep(keep_valid)
    {
    }

    bool ready() const { return true; }
    bool keeps(unsigned node) const { return keep && is_definite(metric_column<D>(m, node)); }
    bool in_triangle(const unsigned* n, const vec2& uv)
    {
        return interpolate_metric_triangle<D>(m, uv[0], uv[1], n[0], n[1], n[2], value);
    }
    bool in_quad(const unsigned* n, const vec2& xi_eta)
    {
        return interpolate_metric_quad_columns<D>(m, xi_eta[0], xi_eta[1], n[0], n[1], n[2], n[3],
                                                  value);
    }
    void prefetch(unsigned node) const { tessalo2d::prefetch(m.column(node)); }
    void copy(unsigned node) { value = metric_column<D>(m, node); }
    void store(unsigned node)
    {
        double* const column = m.column(node);
        for (std::size_t k = 0; k < value.size; ++k) column[k] = value.data[k];
    }

private:
    /// Shares the caller's storage, so that what is stored lands there.
    dense2D<double> m;
    bool keep;
    symmetric_fixed<double, D> value{};
};

} // namespace vorel::tessalo2d
