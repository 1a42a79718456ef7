// Extrusion of line meshes around a point of the plane or an axis in space.
#include "extrusion/frame.h"
#include "extrusion/rotation_record.h"

#include <vorel/tessalo2d.h>

#include <type_traits>

namespace vorel::tessalo2d {

namespace {

/// A node in space; one without a third coordinate lies at 0.
vec3 node_in_space(const double* p, std::size_t rows)
{
    return {{p[0], p[1], rows == 3 ? p[2] : 0.0}};
}

class plane_rotation {
public:
    plane_rotation(const vector_fixed<double, 2>& center_, double angle_)
        : center(load<2>(center_.data)), angle(angle_)
    {
    }

    double length(const double* p, std::size_t rows) const
    {
        const vec3 center_in_space = {{center[0], center[1], 0.0}};
        const double radius = tessalo2d::length(node_in_space(p, rows) - center_in_space);
        return radius * std::fabs(angle);
    }

    std::size_t rows(const dense2D<double>& coords) const { return coords.rows; }

    /// A third coordinate is 0.0 whatever the source's is: kept, callers rely on it.
    void place(const layer_source& source, std::size_t rows, double t, double* target) const
    {
        const double a = t * angle;
        const double c = std::cos(a);
        const double s = std::sin(a);
        // Two sums, of the same bits (but for a NaN's sign) as a difference and a sum: for a
        // processor that has it g++ makes one fused instruction of that pair, with other roundings,
        // even where contraction is off.
        const double minus_s = -s;
        const vec2 m = center;
        const auto turned = [=](auto x, auto y) -> vec<2, decltype(x)> {
            const auto dx = x - m[0];
            const auto dy = y - m[1];
            return {{dx * c + dy * minus_s + m[0], dy * c + dx * s + m[1]}};
        };
        if (rows == 2)
            place_layer<2>(source, target, [=](const auto& p) { return turned(p[0], p[1]); });
        else
            place_layer<3>(source, target, [=](const auto& p) {
                const auto q = turned(p[0], p[1]);
                return std::decay_t<decltype(p)>{{q[0], q[1], {}}};
            });
    }

private:
    vec2 center;
    double angle;
};

class space_rotation {
public:
    space_rotation(const vector_fixed<double, 3>& center_, const vector_fixed<double, 3>& rotation_)
        : center(load<3>(center_.data)), rotation(load<3>(rotation_.data))
    {
    }

    /// The arc of the node's circle: its distance from the axis times the angle.
    double length(const double* p, std::size_t rows) const
    {
        return tessalo2d::length(cross(node_in_space(p, rows) - center, rotation));
    }

    std::size_t rows(const dense2D<double>&) const { return 3; }

    /// Each layer turns the source by a rotation of its own, so that the last one is as accurate as
    /// the first.
    void place(const layer_source& source, std::size_t, double t, double* target) const
    {
        place_layer<3>(source, target, axis_rotation(center, t * rotation));
    }

private:
    vec3 center;
    vec3 rotation;
};

} // namespace

int extrude_rotate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 2>& center, double angle, unsigned N,
                      dense2D<unsigned>& connectQ)
{
    return extrude(contracts::ROTATE_Q4_PLANE_FIXED, plane_rotation(center, angle),
                   layer_request::fixed(N), 0, {coords, connect, connectQ});
}

int extrude_rotate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 2>& center, double angle, double h0, double h1,
                      bool force_even, dense2D<unsigned>& connectQ)
{
    return extrude(contracts::ROTATE_Q4_PLANE_SIZED, plane_rotation(center, angle),
                   layer_request::sized(h0, h1, force_even), 0, {coords, connect, connectQ});
}

int extrude_rotate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 3>& center,
                      const vector_fixed<double, 3>& rotation, unsigned N,
                      dense2D<unsigned>& connectQ)
{
    return extrude(contracts::ROTATE_Q4_SPACE_FIXED, space_rotation(center, rotation),
                   layer_request::fixed(N), 0, {coords, connect, connectQ});
}

int extrude_rotate_Q4(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 3>& center,
                      const vector_fixed<double, 3>& rotation, double h0, double h1,
                      bool force_even, dense2D<unsigned>& connectQ)
{
    return extrude(contracts::ROTATE_Q4_SPACE_SIZED, space_rotation(center, rotation),
                   layer_request::sized(h0, h1, force_even), 0, {coords, connect, connectQ});
}

int extrude_rotate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 2>& center, double angle, unsigned N, int pattern,
                      dense2D<unsigned>& connectT)
{
    return extrude(contracts::ROTATE_T3_PLANE_FIXED, plane_rotation(center, angle),
                   layer_request::fixed(N), pattern, {coords, connect, connectT});
}

int extrude_rotate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 2>& center, double angle, double h0, double h1,
                      int pattern, bool force_even, dense2D<unsigned>& connectT)
{
    return extrude(contracts::ROTATE_T3_PLANE_SIZED, plane_rotation(center, angle),
                   layer_request::sized(h0, h1, force_even), pattern, {coords, connect, connectT});
}

int extrude_rotate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 3>& center,
                      const vector_fixed<double, 3>& rotation, unsigned N, int pattern,
                      dense2D<unsigned>& connectT)
{
    return extrude(contracts::ROTATE_T3_SPACE_FIXED, space_rotation(center, rotation),
                   layer_request::fixed(N), pattern, {coords, connect, connectT});
}

int extrude_rotate_T3(dense2D<double>& coords, const dense2D<unsigned>& connect,
                      const vector_fixed<double, 3>& center,
                      const vector_fixed<double, 3>& rotation, double h0, double h1, int pattern,
                      bool force_even, dense2D<unsigned>& connectT)
{
    return extrude(contracts::ROTATE_T3_SPACE_SIZED, space_rotation(center, rotation),
                   layer_request::sized(h0, h1, force_even), pattern, {coords, connect, connectT});
}

} // namespace vorel::tessalo2d
