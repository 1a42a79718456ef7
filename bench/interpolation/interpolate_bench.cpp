// Interpolation of as many targets as the background mesh has elements, against the latency of one
// dependent random load a target: the tree's build, the search for a start element, the walk, and
// the whole call. `steps` is the mean number of elements that a walk visits.
#include "bench/support/meshes.h"
#include "bench/support/roof.h"
#include "interpolation/background_locator.h"

using namespace bench_support;
using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

enum class order {
    random,  ///< uniform over the mesh
    spatial, ///< the same, along a space-filling curve
    line     ///< from corner to corner
};

struct background {
    dense2D<double> coords;
    dense2D<unsigned> connect;
    dense2D<unsigned> neighbors;
    dense1D<unsigned> node_element;
    dense1D<unsigned> targets;
    dense1D<double> field;

    std::size_t bytes() const
    {
        return bench_support::bytes(coords) + bench_support::bytes(connect) +
               bench_support::bytes(neighbors) + node_element.size * sizeof(unsigned);
    }
};

/// Interleaved bits of a place in a grid of 2^16 x 2^16.
std::uint64_t along_curve(double x, double y)
{
    const auto a = static_cast<std::uint64_t>(x * 65535);
    const auto b = static_cast<std::uint64_t>(y * 65535);
    std::uint64_t key = 0;
    for (int bit = 0; bit < 16; ++bit)
        key |= (a >> bit & 1) << 2 * bit | (b >> bit & 1) << (2 * bit + 1);
    return key;
}

background make(form kind, std::size_t elements, numbering number, order place)
{
    const mesh m = grid(kind, elements, 2, number);
    const std::size_t nodes = m.coords.cols;
    double side = 0;
    for (std::size_t j = 0; j < nodes; ++j) side = std::max(side, m.coords(0, j));

    std::mt19937 draw(7);
    const auto uniform = [&] { return static_cast<double>(draw()) * 0x1p-32; };
    std::vector<std::pair<double, double>> points(elements);
    for (std::size_t k = 0; k < elements; ++k) {
        const double t = (static_cast<double>(k) + 0.5) / static_cast<double>(elements);
        points[k] =
            place == order::line ? std::pair(t, 0.3 + 0.4 * t) : std::pair(uniform(), uniform());
    }
    if (place == order::spatial)
        std::sort(points.begin(), points.end(), [](const auto& p, const auto& q) {
            return along_curve(p.first, p.second) < along_curve(q.first, q.second);
        });

    background b;
    b.connect = m.connect;
    b.coords = dense2D<double>(2, nodes + elements);
    b.field = dense1D<double>(nodes + elements, 0.0);
    std::copy(m.coords.column(0), m.coords.column(0) + 2 * nodes, b.coords.column(0));
    for (std::size_t j = 0; j < nodes; ++j) b.field[j] = m.coords(0, j) + 2 * m.coords(1, j);
    b.targets = dense1D<unsigned>(elements);
    for (std::size_t k = 0; k < elements; ++k) {
        b.coords(0, nodes + k) = points[k].first * side;
        b.coords(1, nodes + k) = points[k].second * side;
        b.targets[k] = static_cast<unsigned>(nodes + k);
    }
    b.neighbors = neighbors_of(b.connect);
    b.node_element = node_element_of(b.connect, b.coords.cols);
    return b;
}

/// Seconds of `loads` loads of which each names the place of the next, in random order over `bytes`
/// bytes.
double latency_roof(std::size_t bytes, std::size_t loads)
{
    struct alignas(64) line {
        std::size_t next;
    };
    std::vector<line> lines(std::max<std::size_t>(bytes / sizeof(line), 2));
    std::vector<std::size_t> visit(lines.size());
    std::iota(visit.begin(), visit.end(), std::size_t(0));
    std::mt19937_64 draw(3);
    std::shuffle(visit.begin(), visit.end(), draw);
    for (std::size_t i = 0; i < visit.size(); ++i)
        lines[visit[i]].next = visit[(i + 1) % visit.size()];
    std::size_t at = 0;
    const std::size_t sample = std::min<std::size_t>(loads, 1000000);
    const double seconds = best_seconds([&] {
        for (std::size_t k = 0; k < sample; ++k) at = lines[at].next;
        benchmark::DoNotOptimize(at);
    });
    return seconds / static_cast<double>(sample) * static_cast<double>(loads);
}

template <mesh_form F>
background_locator<F> locator_of(const background& b)
{
    return {b.coords, b.connect, b.neighbors, b.node_element};
}

void interpolate_field(benchmark::State& state, form kind, element_type type, numbering number,
                       order place)
{
    background b = make(kind, static_cast<std::size_t>(state.range(0)), number, place);
    const against_roof watch(state, b.targets.size, latency_roof(b.bytes(), b.targets.size));
    for (auto _ : state)
        benchmark::DoNotOptimize(interpolate(b.coords, b.connect, b.neighbors, b.node_element,
                                             b.field, b.targets, type));
}

/// A size or a metric that varies over the nodes of the mesh; `rows` 1 is a size.
dense2D<double> anisotropy(const background& b, std::size_t rows)
{
    dense2D<double> m(rows, b.coords.cols, 0.0);
    for (std::size_t j = 0; j < m.cols; ++j) {
        const double wave = 0.5 + 0.25 * std::sin(b.coords(0, j) / 10.0);
        m(0, j) = wave;
        if (rows > 1) m(1, j) = 0.1;
        if (rows > 1) m(2, j) = 2.0 - wave;
        if (rows > 3) m(5, j) = 1.0;
    }
    return m;
}

void interpolate_anisotropy(benchmark::State& state, std::size_t rows)
{
    const background b =
        make(form::T3, static_cast<std::size_t>(state.range(0)), numbering::natural, order::random);
    dense2D<double> m = anisotropy(b, rows);
    dense1D<double> sizes = m.as_vector();
    const against_roof watch(state, b.targets.size, latency_roof(b.bytes(), b.targets.size));
    for (auto _ : state)
        benchmark::DoNotOptimize(
            rows == 1 ? interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, sizes,
                                            b.targets, false, ELEMENT_T3)
                      : interpolate_metrics(b.coords, b.connect, b.neighbors, b.node_element, m,
                                            b.targets, false, ELEMENT_T3));
}

void locator_build(benchmark::State& state, numbering number)
{
    const background b =
        make(form::T3, static_cast<std::size_t>(state.range(0)), number, order::line);
    const against_roof watch(state, b.targets.size, latency_roof(b.bytes(), b.targets.size));
    for (auto _ : state) {
        auto locator = locator_of<mesh_form::T3>(b);
        benchmark::DoNotOptimize(locator.fill_tree());
    }
}

void locator_start(benchmark::State& state, numbering number, order place)
{
    const background b = make(form::T3, static_cast<std::size_t>(state.range(0)), number, place);
    auto locator = locator_of<mesh_form::T3>(b);
    (void)locator.fill_tree();
    const against_roof watch(state, b.targets.size, latency_roof(b.bytes(), b.targets.size));
    for (auto _ : state)
        for (const unsigned node : b.targets)
            benchmark::DoNotOptimize(
                locator.nodes().approximate_node(load<2>(b.coords.column(node)), b.node_element));
}

void locator_walk(benchmark::State& state, numbering number, order place)
{
    const background b = make(form::T3, static_cast<std::size_t>(state.range(0)), number, place);
    auto locator = locator_of<mesh_form::T3>(b);
    (void)locator.fill_tree();
    std::vector<unsigned> starts;
    for (const unsigned node : b.targets) {
        const unsigned near =
            locator.nodes().approximate_node(load<2>(b.coords.column(node)), b.node_element);
        starts.push_back(near == UNSET_ID ? UNSET_ID : b.node_element[near]);
    }
    std::size_t all_steps = 0;
    const against_roof watch(state, b.targets.size, latency_roof(b.bytes(), b.targets.size));
    for (auto _ : state) {
        side_draw draw;
        all_steps = 0;
        for (std::size_t k = 0; k < starts.size(); ++k) {
            unsigned element = starts[k];
            std::size_t steps;
            const vec2 point = load<2>(b.coords.column(b.targets[k]));
            benchmark::DoNotOptimize(
                walk_to_element<mesh_form::T3>(locator.mesh(), point, element, 1e-6, steps, draw));
            all_steps += steps;
        }
    }
    state.counters["steps"] = static_cast<double>(all_steps) / static_cast<double>(b.targets.size);
}

constexpr auto NATURAL = numbering::natural;
constexpr auto SHUFFLED = numbering::shuffled;

BENCHMARK_CAPTURE(interpolate_anisotropy, sizes_random_natural, 1)->Apply(element_counts);
BENCHMARK_CAPTURE(interpolate_anisotropy, plane_random_natural, 3)->Apply(element_counts);
BENCHMARK_CAPTURE(interpolate_anisotropy, space_random_natural, 6)->Apply(element_counts);
BENCHMARK_CAPTURE(locator_build, natural, NATURAL)->Apply(element_counts);
BENCHMARK_CAPTURE(locator_build, shuffled, SHUFFLED)->Apply(element_counts);
BENCHMARK_CAPTURE(locator_start, random_natural, NATURAL, order::random)->Apply(element_counts);
BENCHMARK_CAPTURE(locator_start, spatial_natural, NATURAL, order::spatial)->Apply(element_counts);
BENCHMARK_CAPTURE(locator_start, line_natural, NATURAL, order::line)->Apply(element_counts);
BENCHMARK_CAPTURE(locator_start, random_shuffled, SHUFFLED, order::random)->Apply(element_counts);
BENCHMARK_CAPTURE(locator_walk, random_natural, NATURAL, order::random)->Apply(element_counts);
BENCHMARK_CAPTURE(locator_walk, spatial_natural, NATURAL, order::spatial)->Apply(element_counts);
BENCHMARK_CAPTURE(locator_walk, line_natural, NATURAL, order::line)->Apply(element_counts);
BENCHMARK_CAPTURE(locator_walk, random_shuffled, SHUFFLED, order::random)->Apply(element_counts);
BENCHMARK_CAPTURE(interpolate_field, T3_random_natural, form::T3, ELEMENT_T3, NATURAL,
                  order::random)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(interpolate_field, T3_spatial_natural, form::T3, ELEMENT_T3, NATURAL,
                  order::spatial)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(interpolate_field, T3_line_natural, form::T3, ELEMENT_T3, NATURAL, order::line)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(interpolate_field, T3_random_shuffled, form::T3, ELEMENT_T3, SHUFFLED,
                  order::random)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(interpolate_field, T3_spatial_shuffled, form::T3, ELEMENT_T3, SHUFFLED,
                  order::spatial)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(interpolate_field, Q4_random_natural, form::Q4, ELEMENT_Q4, NATURAL,
                  order::random)
    ->Apply(element_counts);
BENCHMARK_CAPTURE(interpolate_field, mixed_random_natural, form::mixed, ELEMENT_ANY_FACE, NATURAL,
                  order::random)
    ->Apply(element_counts);

} // namespace
