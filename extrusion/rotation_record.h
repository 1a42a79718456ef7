// Rotations in space from a rotation vector: the exponential map of the cross-product matrix and
// what its derivatives are made of.
#pragma once

#include "foundation/vec.h"

namespace vorel::tessalo2d {

/// A rotation by the vector `v` (direction: the axis, right-hand rule; length: the angle in
/// radians). Matrices are stored column after column. With I the identity and D the operator
/// (1 / theta) d / d theta:
///
///     a2 = D a0, a3 = D a1, a6 = D a5, a4 = D a3, a7 = D a6
struct rotation_record {
    double a0; ///< sin(theta) / theta
    double a1; ///< (1 - cos(theta)) / theta^2
    double a2;
    double a3;
    double a4;
    double a5; ///< (1 - a0) / theta^2
    double a6;
    double a7;
    double v[3];
    double M1[9]; ///< a0 * S + a1 * S2
    double R[9];  ///< I + M1, the rotation
    double T[9];  ///< I + a1 * S + a5 * S2, the left Jacobian of the exponential map
    double M3[9]; ///< a3 * S + a6 * S2, first D-derivative of T's coefficients
    double M4[9]; ///< a4 * S + a7 * S2, second D-derivative of T's coefficients
    double S[9];  ///< S * u = v x u
    double S2[9]; ///< S * S
};

/// Fills the whole record. Up to an angle of 0.1, and for a NaN, the coefficients come from their
/// series in the squared angle: the closed forms lose their digits to cancellation there.
void rotation_from_vector(rotation_record& record, const double v[3]);

/// C += alpha * A * B for 3 x 3 matrices stored column after column; nothing when `alpha` is 0.
void matrix_multiply_add(double alpha, const double A[9], const double B[9], double C[9]);

/// The rotation of points about an axis through `center`.
class axis_rotation {
public:
    axis_rotation(const vec3& center_, const vec3& vector) : center(center_)
    {
        rotation_record record;
        rotation_from_vector(record, vector.data);
        for (int i = 0; i < 9; ++i) R[i] = record.R[i];
    }

    /// R * (p - center), each component summed from left to right along the row, and the centre.
    template <class T>
    vec<3, T> operator()(const vec<3, T>& p) const
    {
        const vec<3, T> d = p - center;
        vec<3, T> turned;
        for (int i = 0; i < 3; ++i) turned[i] = R[i] * d[0] + R[3 + i] * d[1] + R[6 + i] * d[2];
        return center + turned;
    }

private:
    vec3 center;
    double R[9];
};

} // namespace vorel::tessalo2d
