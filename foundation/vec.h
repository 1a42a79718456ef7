// Vectors of 2 or 3 doubles with operators, so that a formula in the code looks like the formula in
// a book. Sums run from left to right in the order of the components.
#pragma once

#include <cmath>
#include <cstddef>

namespace vorel::tessalo2d {

template <int D>
struct vec {
    static_assert(D == 2 || D == 3);

    double& operator[](int i) { return data[i]; }
    double operator[](int i) const { return data[i]; }

    double data[D];
};

using vec2 = vec<2>;
using vec3 = vec<3>;

/// The vector whose components start at `p`.
template <int D>
inline vec<D> load(const double* p)
{
    vec<D> v;
    for (int i = 0; i < D; ++i) v[i] = p[i];
    return v;
}

template <int D>
inline void store(const vec<D>& v, double* p)
{
    for (int i = 0; i < D; ++i) p[i] = v[i];
}

template <int D>
inline vec<D> operator+(const vec<D>& a, const vec<D>& b)
{
    vec<D> v;
    for (int i = 0; i < D; ++i) v[i] = a[i] + b[i];
    return v;
}

template <int D>
inline vec<D> operator-(const vec<D>& a, const vec<D>& b)
{
    vec<D> v;
    for (int i = 0; i < D; ++i) v[i] = a[i] - b[i];
    return v;
}

template <int D>
inline vec<D> operator*(double s, const vec<D>& a)
{
    vec<D> v;
    for (int i = 0; i < D; ++i) v[i] = s * a[i];
    return v;
}

template <int D>
inline double dot(const vec<D>& a, const vec<D>& b)
{
    double sum = a[0] * b[0];
    for (int i = 1; i < D; ++i) sum += a[i] * b[i];
    return sum;
}

template <int D>
inline double squared_length(const vec<D>& a)
{
    return dot(a, a);
}

template <int D>
inline double length(const vec<D>& a)
{
    return std::sqrt(squared_length(a));
}

/// The vector scaled to unit length; one whose squared length is exactly 0 or 1 stays as it is.
template <int D>
inline vec<D> normalized(const vec<D>& a)
{
    const double q = squared_length(a);
    return q == 0.0 || q == 1.0 ? a : (1.0 / std::sqrt(q)) * a;
}

/// Third component of the cross product of two plane vectors.
inline double cross(const vec2& a, const vec2& b)
{
    return a[0] * b[1] - a[1] * b[0];
}

inline vec3 cross(const vec3& a, const vec3& b)
{
    return {{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]}};
}

/// `b` where `condition` holds, else `c`, component by component and without a branch.
template <int D>
inline vec<D> select(bool condition, const vec<D>& b, const vec<D>& c)
{
    vec<D> v;
    for (int i = 0; i < D; ++i) v[i] = condition ? b[i] : c[i];
    return v;
}

} // namespace vorel::tessalo2d
