// Sizes and metrics for the interior nodes of a structured patch, from those on its boundary: the
// mean of what is interpolated across the patch and along it.
#include "foundation/status.h"
#include "metrics/metric_pair.h"
#include "metrics/sizes.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

/// A patch of n x m cells and the closed list of nodes around it.
struct patch {
    unsigned bottom(std::size_t i) const { return ids[i]; }
    unsigned right(std::size_t j) const { return ids[n + j]; }
    unsigned top(std::size_t i) const { return ids[2 * n + m - i]; }
    unsigned left(std::size_t j) const { return ids[2 * (n + m) - j]; }

    const unsigned* ids;
    std::size_t n;
    std::size_t m;
};

/// The checks that sizes and metrics share, for a field of `entries`. A list without entries or a
/// count of 0 is left to the caller.
int find_patch(const dense1D<unsigned, 8>& ids, std::size_t m, std::size_t entries, patch& p)
{
    const std::size_t length = ids.size;
    if (length < 5) return bad_argument(1);
    if (ids[0] != ids[length - 1]) return bad_argument(1);
    if (!tessalo::check_IDs(ids, node_bound(entries))) return bad_argument(1);
    const std::size_t n = (length - 2 * m - 1) >> 1;
    if (2 * m > length || 2 * (n + m) != length - 1) return bad_argument(2);
    p = {ids.begin(), n, m};
    return success;
}

/// The entries of a field with the interior nodes of the patch. Without cells along the bottom the
/// product wraps around and takes m - 1 entries away; kept: callers rely on it. False when there
/// are more nodes than IDs.
bool count_with_interior(const patch& p, std::size_t entries, std::size_t& total)
{
    total = entries + (p.n - 1) * (p.m - 1);
    if (p.n < 2 || p.m < 2) return true;
    return entries <= UNSET_ID && p.n - 1 <= (UNSET_ID - entries) / (p.m - 1);
}

double fraction(std::size_t i, std::size_t n)
{
    return static_cast<double>(i) / static_cast<double>(n);
}

/// Writes the sizes of the interior nodes from entry `first` on. Fractions are well away from the
/// ends, and a size that is out of range goes on all the same.
void fill_sizes(const patch& p, double* sizes, std::size_t first)
{
    double* interior = sizes + first;
    for (std::size_t i = 1; i < p.n; ++i) {
        const double s = fraction(i, p.n);
        const double bottom = sizes[p.bottom(i)];
        const double top = sizes[p.top(i)];
        for (std::size_t j = 1; j < p.m; ++j) {
            const double across = size_between(s, sizes[p.left(j)], sizes[p.right(j)]);
            const double along = size_between(fraction(j, p.m), bottom, top);
            *interior++ = size_between(0.5, along, across);
        }
    }
}

/// The line between two nodes on opposite sides, reduced once for all nodes on it. Where there is
/// no metric it is zero.
template <std::size_t D>
struct line {
    line(const dense2D<double>& metrics, unsigned from, unsigned to)
    {
        (void)reduce_metric_pair(pair, metric_column<D>(metrics, from),
                                 metric_column<D>(metrics, to));
        sizes = sizes_of(pair);
    }

    symmetric_fixed<double, D> at(double t) const
    {
        symmetric_fixed<double, D> m = {};
        (void)interpolate_pair_sizes(sizes, pair.inverse, t, m);
        return m;
    }

    metric_pair_reduction<D> pair;
    metric_pair_sizes<D> sizes;
};

/// Writes the metrics of the interior nodes from column `first` on. A node costs one reduction and
/// not three; what was interpolated across waits in the columns of the result. Fractions are well
/// away from the ends, at which a metric would be copied.
template <std::size_t D>
void fill_metrics(const patch& p, dense2D<double>& metrics, std::size_t first)
{
    const std::size_t ld = metrics.ld;
    double* const interior = metrics.column(first);
    const std::size_t row_ld = (p.m - 1) * ld;
    for (std::size_t j = 1; j < p.m; ++j) {
        const line<D> across(metrics, p.left(j), p.right(j));
        double* column = interior + (j - 1) * ld;
        for (std::size_t i = 1; i < p.n; ++i, column += row_ld)
            store_metric(across.at(fraction(i, p.n)), column);
    }
    double* column = interior;
    for (std::size_t i = 1; i < p.n; ++i) {
        const line<D> along(metrics, p.bottom(i), p.top(i));
        for (std::size_t j = 1; j < p.m; ++j, column += ld) {
            metric_pair_reduction<D> both;
            symmetric_fixed<double, D> m = {};
            if (reduce_metric_pair(both, along.at(fraction(j, p.m)), load_metric<D>(column)))
                (void)interpolate_reduced_metrics(both, 0.5, m);
            store_metric(m, column);
        }
    }
}

} // namespace

int metrics_struct(const dense1D<unsigned, 8>& ids, unsigned count, dense1D<double, 8>& sizes)
{
    if (ids.size == 0 || count == 0) return success;
    patch p;
    const int status = find_patch(ids, count, sizes.size, p);
    if (status != success) return status;

    dense1D<double, 8> grown = sizes;
    std::size_t total;
    if (!count_with_interior(p, sizes.size, total) || !grown.resize(total)) return out_of_memory;
    fill_sizes(p, grown.begin(), sizes.size);
    sizes = grown;
    return success;
}

int metrics_struct(const dense1D<unsigned, 8>& ids, unsigned count, dense2D<double>& metrics)
{
    if (!has_rows(metrics, 3, 6)) return bad_argument(3);
    if (ids.size == 0 || count == 0) return success;
    patch p;
    const int status = find_patch(ids, count, metrics.cols, p);
    if (status != success) return status;

    dense2D<double> grown = metrics;
    std::size_t total;
    if (!count_with_interior(p, metrics.cols, total) || !grown.resize(metrics.rows, total))
        return out_of_memory;
    if (p.n > 1 && p.m > 1) {
        if (metrics.rows == 3)
            fill_metrics<2>(p, grown, metrics.cols);
        else
            fill_metrics<3>(p, grown, metrics.cols);
    }
    metrics = grown;
    return success;
}

} // namespace vorel::tessalo2d
