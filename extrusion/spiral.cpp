// Extrusion of line meshes along a screw motion.
#include "extrusion/frame.h"
#include "extrusion/rotation_record.h"

#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

namespace {

class spiral {
public:
    spiral(const vector_fixed<double, 3>& center_, const vector_fixed<double, 3>& rotation_,
           const vector_fixed<double, 3>& translation_)
        : center(load<3>(center_.data)),
          rotation(load<3>(rotation_.data)),
          translation(load<3>(translation_.data))
    {
    }

    /// The translation alone decides on the number of layers.
    double length(const double*, std::size_t) const { return tessalo2d::length(translation); }

    std::size_t rows(const dense2D<double>&) const { return 3; }

    void place(const layer_source& source, std::size_t, double t, double* target) const
    {
        const axis_rotation turned(center, t * rotation);
        const vec3 w = t * translation;
        place_layer<3>(source, target, [=](const auto& p) { return turned(p) + w; });
    }

private:
    vec3 center;
    vec3 rotation;
    vec3 translation;
};

/// The size at which the translation makes `N` layers.
double layer_height(const vector_fixed<double, 3>& translation, unsigned N)
{
    return length(load<3>(translation.data)) * (1.0 / N);
}

} // namespace

int extrude_spiral_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 3>& center,
                      const vector_fixed<double, 3>& rotation,
                      const vector_fixed<double, 3>& translation, unsigned N,
                      dense2D<unsigned>& connectQ)
{
    if (N == 0) return success;
    const double h = layer_height(translation, N);
    return extrude_spiral_Q4(coords, connect, center, rotation, translation, h, h, false, connectQ);
}

int extrude_spiral_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 3>& center,
                      const vector_fixed<double, 3>& rotation,
                      const vector_fixed<double, 3>& translation, double h0, double h1,
                      bool force_even, dense2D<unsigned>& connectQ)
{
    return extrude(contracts::SPIRAL_Q4, spiral(center, rotation, translation),
                   layer_request::sized(h0, h1, force_even), 0, {coords, connect, connectQ});
}

int extrude_spiral_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 3>& center,
                      const vector_fixed<double, 3>& rotation,
                      const vector_fixed<double, 3>& translation, unsigned N, int pattern,
                      dense2D<unsigned>& connectT)
{
    if (N == 0) return success;
    const double h = layer_height(translation, N);
    return extrude_spiral_T3(coords, connect, center, rotation, translation, h, h, pattern, false,
                             connectT);
}

int extrude_spiral_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 3>& center,
                      const vector_fixed<double, 3>& rotation,
                      const vector_fixed<double, 3>& translation, double h0, double h1, int pattern,
                      bool force_even, dense2D<unsigned>& connectT)
{
    return extrude(contracts::SPIRAL_T3, spiral(center, rotation, translation),
                   layer_request::sized(h0, h1, force_even), pattern, {coords, connect, connectT});
}

} // namespace vorel::tessalo2d
