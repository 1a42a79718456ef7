// The intersection of two metrics.
#pragma once

#include <vorel/export.h>
#include <vorel/fixed.h>

namespace vorel::tessalo {

/// The metric that asks, in every direction, for edges at least as short as either operand does:
/// its unit ellipsoid is the largest one inside both of theirs, so it has the least determinant of
/// all metrics M with x'Mx >= x'Ax and x'Mx >= x'Bx for every x.
///
/// a, b     metrics in packed order 00, 01, 11, 02, 12, 22
/// result   may be one of the operands
/// returns  false when neither operand is a metric, else true
///
/// An operand is a metric when it is finite and no eigenvalue is below -1e-12 times its largest
/// one. With some between that and 0 it counts as the metric with a diagonal raised until there are
/// none: by no more than 11 times what the lowest one lacks, whatever the other operand. An
/// eigenvalue of 0 is no constraint in its direction. What comes back is, in this order:
///
///   neither is a metric                   b, bit for bit, and false
///   one is a metric                       that one, bit for bit
///   one is zero, or they are equal        the other one, bit for bit
///   both are diagonal                     the larger entry of each pair, or 0, exactly
///   one covers the other, to rounding     the one that covers, bit for bit: so also of a pair that
///                                         is proportional, and of a result and an operand that it
///                                         was made of
///   otherwise                             the larger of the two in the basis in which both are
///                                         diagonal, (S + |A - B|) / 2 with S = A + B and |.| the
///                                         absolute value of the pencil (A - B) v = l S v; in
///                                         directions in which S is singular to rounding, S; all
///                                         of S where the difference reaches into them
///
/// The order of two metrics changes no bit of the result, unless both cover each other to rounding.
/// What the result lacks to cover both is, in entry ij, a few units in the last place of
/// sqrt(Sii Sjj), however thin the ellipsoids are and whatever the scales of the axes, which are
/// taken out by powers of two. An entry of the result beyond the range of doubles becomes infinite.
///
/// No allocation and no LAPACK: the result is the same bit for bit on every machine.
VOREL_API bool minimum_metric(const symmetric_fixed<double, 3>& a,
                              const symmetric_fixed<double, 3>& b,
                              symmetric_fixed<double, 3>& result);

} // namespace vorel::tessalo
