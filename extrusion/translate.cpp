// Extrusion of line meshes along a straight path.
#include "extrusion/frame.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

template <int D>
class translation {
public:
    explicit translation(const vector_fixed<double, D>& V) : v(load<D>(V.data)) {}

    double length(const double*, std::size_t) const { return tessalo2d::length(v); }

    std::size_t rows(const dense2D<double>&) const { return D; }

    void place(const layer_source& source, std::size_t, double t, double* target) const
    {
        // No layer lies at 0, so none is a mere copy.
        const vec<D> w = t * v;
        place_layer<D>(source, target, [=](const auto& p) { return p + w; });
    }

private:
    vec<D> v;
};

} // namespace

int extrude_translate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                         const vector_fixed<double, 2>& V, unsigned N, dense2D<unsigned>& connectQ)
{
    return extrude(contracts::TRANSLATE_Q4_PLANE_FIXED, translation<2>(V), layer_request::fixed(N),
                   0, {coords, connect, connectQ});
}

int extrude_translate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                         const vector_fixed<double, 2>& V, double h0, double h1, bool force_even,
                         dense2D<unsigned>& connectQ)
{
    return extrude(contracts::TRANSLATE_Q4_PLANE_SIZED, translation<2>(V),
                   layer_request::sized(h0, h1, force_even), 0, {coords, connect, connectQ});
}

int extrude_translate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                         const vector_fixed<double, 3>& V, unsigned N, dense2D<unsigned>& connectQ)
{
    return extrude(contracts::TRANSLATE_Q4_SPACE_FIXED, translation<3>(V), layer_request::fixed(N),
                   0, {coords, connect, connectQ});
}

int extrude_translate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                         const vector_fixed<double, 3>& V, double h0, double h1, bool force_even,
                         dense2D<unsigned>& connectQ)
{
    return extrude(contracts::TRANSLATE_Q4_SPACE_SIZED, translation<3>(V),
                   layer_request::sized(h0, h1, force_even), 0, {coords, connect, connectQ});
}

int extrude_translate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                         const vector_fixed<double, 2>& V, unsigned N, int pattern,
                         dense2D<unsigned>& connectT)
{
    return extrude(contracts::TRANSLATE_T3_PLANE_FIXED, translation<2>(V), layer_request::fixed(N),
                   pattern, {coords, connect, connectT});
}

int extrude_translate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                         const vector_fixed<double, 2>& V, double h0, double h1, int pattern,
                         bool force_even, dense2D<unsigned>& connectT)
{
    return extrude(contracts::TRANSLATE_T3_PLANE_SIZED, translation<2>(V),
                   layer_request::sized(h0, h1, force_even), pattern, {coords, connect, connectT});
}

int extrude_translate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                         const vector_fixed<double, 3>& V, unsigned N, int pattern,
                         dense2D<unsigned>& connectT)
{
    return extrude(contracts::TRANSLATE_T3_SPACE_FIXED, translation<3>(V), layer_request::fixed(N),
                   pattern, {coords, connect, connectT});
}

int extrude_translate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                         const vector_fixed<double, 3>& V, double h0, double h1, int pattern,
                         bool force_even, dense2D<unsigned>& connectT)
{
    return extrude(contracts::TRANSLATE_T3_SPACE_SIZED, translation<3>(V),
                   layer_request::sized(h0, h1, force_even), pattern, {coords, connect, connectT});
}

} // namespace vorel::tessalo2d
