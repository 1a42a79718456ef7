// What an interpolation carries from a background mesh to a target: each kind of value knows how it
// is interpolated in a triangle and in a quadrilateral, copied and stored.
//
// A carrier has
//   bool ready()                  false when there is no storage for a value
//   bool keeps(node)              the node's present value is to stay
//   bool in_triangle(column, uv)  the value at weights (u, v); false when it is refused
//   bool in_quad(column, xi_eta)  likewise in the square from -1 to 1
//   void prefetch(node)           the node's value is likely to be read soon
//   void copy(node)               takes a node's value as it stands
//   void store(node)              writes the value taken last
// and FILLS_TREE, whether its engines put nodes into the search tree.
#pragma once

#include "foundation/prefetch.h"
#include "foundation/vec.h"

#include <vorel/dense2D.h>

namespace vorel::tessalo2d {

/// Linear in (u, v), the weights of nodes 0 and 1.
inline double interpolate_linear(const vec2& uv, double f0, double f1, double f2)
{
    return (f0 - f2) * uv[0] + (f1 - f2) * uv[1] + f2;
}

/// Linear along both axes of the square from -1 to 1.
inline double interpolate_bilinear(const vec2& xi_eta, double f0, double f1, double f2, double f3)
{
    const double s = (xi_eta[0] + 1.0) * 0.5;
    const double t = (xi_eta[1] + 1.0) * 0.5;
    const double a = (f1 - f0) * s + f0;
    const double b = (f2 - f3) * s + f3;
    return (b - a) * t + a;
}

/// One number a node.
class scalar_carrier {
public:
    static constexpr bool FILLS_TREE = true;

    explicit scalar_carrier(dense1D<double, 8>& field) : f(field.begin()) {}

    bool ready() const { return true; }
    bool keeps(unsigned) const { return false; }
    bool in_triangle(const unsigned* n, const vec2& uv)
    {
        value = interpolate_linear(uv, f[n[0]], f[n[1]], f[n[2]]);
        return true;
    }
    bool in_quad(const unsigned* n, const vec2& xi_eta)
    {
        value = interpolate_bilinear(xi_eta, f[n[0]], f[n[1]], f[n[2]], f[n[3]]);
        return true;
    }
    void prefetch(unsigned node) const { tessalo2d::prefetch(f + node); }
    void copy(unsigned node) { value = f[node]; }
    void store(unsigned node) { f[node] = value; }

private:
    double* f;
    double value = 0.0;
};

/// Any number of rows a node.
class rows_carrier {
public:
    /// Kept: callers rely on the matrix form leaving every field as it is.
    static constexpr bool FILLS_TREE = false;

    explicit rows_carrier(dense2D<double>& field)
        : f(field.column(0)), ld(field.ld), rows(field.rows), values(field.rows)
    {
    }

    bool ready() const { return values.size == rows; }
    bool keeps(unsigned) const { return false; }
    bool in_triangle(const unsigned* n, const vec2& uv)
    {
        const double* const f0 = f + n[0] * ld;
        const double* const f1 = f + n[1] * ld;
        const double* const f2 = f + n[2] * ld;
        for (std::size_t i = 0; i < rows; ++i)
            values[i] = interpolate_linear(uv, f0[i], f1[i], f2[i]);
        return true;
    }
    bool in_quad(const unsigned* n, const vec2& xi_eta)
    {
        const double* const f0 = f + n[0] * ld;
        const double* const f1 = f + n[1] * ld;
        const double* const f2 = f + n[2] * ld;
        const double* const f3 = f + n[3] * ld;
        for (std::size_t i = 0; i < rows; ++i)
            values[i] = interpolate_bilinear(xi_eta, f0[i], f1[i], f2[i], f3[i]);
        return true;
    }
    void prefetch(unsigned node) const { tessalo2d::prefetch(f + node * ld); }
    void copy(unsigned node)
    {
        for (std::size_t i = 0; i < rows; ++i) values[i] = f[node * ld + i];
    }
    void store(unsigned node)
    {
        for (std::size_t i = 0; i < rows; ++i) f[node * ld + i] = values[i];
    }

private:
    double* f;
    std::size_t ld;
    std::size_t rows;
    dense1D<double, 8> values;
};

} // namespace vorel::tessalo2d
