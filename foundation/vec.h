// Vectors of 2 or 3 numbers with operators, so that a formula in the code looks like the formula in
// a book. Sums run from left to right in the order of the components.
//
// A component is a double, or `lanes` where a kernel takes two elements at once: formulas that are
// written over the component type serve both, with the same bits.
#pragma once

#include "foundation/lanes.h"

#include <cmath>
#include <cstddef>

namespace vorel::tessalo2d {

template <int D, class T = double>
struct vec {
    static_assert(D == 2 || D == 3);

    T& operator[](int i) { return data[i]; }
    T operator[](int i) const { return data[i]; }

    T data[D];
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

/// Two vectors side by side in the lanes.
template <int D>
inline vec<D, lanes> load_both(const double* p, const double* q)
{
    vec<D, lanes> v;
    for (int i = 0; i < D; ++i) v[i] = lanes{p[i], q[i]};
    return v;
}

template <int D>
inline void store(const vec<D>& v, double* p)
{
    for (int i = 0; i < D; ++i) p[i] = v[i];
}

/// The vector in one of the lanes.
template <int D>
inline vec<D> lane(const vec<D, lanes>& both, int i)
{
    vec<D> v;
    for (int k = 0; k < D; ++k) v[k] = both[k][i];
    return v;
}

/// The vector of each lane to a place of its own.
template <int D>
inline void store_both(const vec<D, lanes>& v, double* p, double* q)
{
    store(lane(v, 0), p);
    store(lane(v, 1), q);
}

/// One operand may have lanes where the other, which then serves all lanes, has none.
template <int D, class A, class B>
inline auto operator+(const vec<D, A>& a, const vec<D, B>& b)
{
    vec<D, decltype(A() + B())> v;
    for (int i = 0; i < D; ++i) v[i] = a[i] + b[i];
    return v;
}

template <int D, class A, class B>
inline auto operator-(const vec<D, A>& a, const vec<D, B>& b)
{
    vec<D, decltype(A() - B())> v;
    for (int i = 0; i < D; ++i) v[i] = a[i] - b[i];
    return v;
}

template <int D, class T>
inline vec<D, T> operator*(T s, const vec<D, T>& a)
{
    vec<D, T> v;
    for (int i = 0; i < D; ++i) v[i] = s * a[i];
    return v;
}

template <int D, class T>
inline T dot(const vec<D, T>& a, const vec<D, T>& b)
{
    T sum = a[0] * b[0];
    for (int i = 1; i < D; ++i) sum += a[i] * b[i];
    return sum;
}

template <int D, class T>
inline T squared_length(const vec<D, T>& a)
{
    return dot(a, a);
}

template <int D, class T>
inline T length(const vec<D, T>& a)
{
    return square_root(squared_length(a));
}

/// The vector scaled to unit length; one whose squared length is exactly 0 or 1 stays as it is.
template <int D>
inline vec<D> normalized(const vec<D>& a)
{
    const double q = squared_length(a);
    return q == 0.0 || q == 1.0 ? a : (1.0 / std::sqrt(q)) * a;
}

/// Third component of the cross product of two plane vectors.
template <class T>
inline T cross(const vec<2, T>& a, const vec<2, T>& b)
{
    return a[0] * b[1] - a[1] * b[0];
}

template <class T>
inline vec<3, T> cross(const vec<3, T>& a, const vec<3, T>& b)
{
    return {{a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]}};
}

/// `b` where `condition` holds, else `c`, component by component.
template <class Condition, int D, class T>
inline vec<D, T> select(Condition condition, const vec<D, T>& b, const vec<D, T>& c)
{
    vec<D, T> v;
    for (int i = 0; i < D; ++i) v[i] = condition ? b[i] : c[i];
    return v;
}

} // namespace vorel::tessalo2d
