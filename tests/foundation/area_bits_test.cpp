// The area to the last bit: against the measure written out once more, over meshes of all shapes
// and sizes.
#include "foundation/area_of.h"
#include "support/matrices.h"
#include "support/meshes.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <string>

using namespace vorel;
using namespace area_tests;
using support::mesh;
using support::placed;

namespace {

// The measure written out once more, number by number, as the yardstick for every bit.

double plain_cross2(double ax, double ay, double bx, double by)
{
    const double dx = bx - ax;
    const double dy = by - ay;
    const double aa = ax * ax + ay * ay;
    const double bb = bx * bx + by * by;
    const double dd = dx * dx + dy * dy;
    if (dd >= std::min(bb, aa)) return ax * by - ay * bx;
    return ax * dy - ay * dx;
}

double plain_norm_of_cross(const double* a, const double* b)
{
    const double x = a[1] * b[2] - a[2] * b[1];
    const double y = a[2] * b[0] - a[0] * b[2];
    const double z = a[0] * b[1] - a[1] * b[0];
    return std::sqrt(x * x + y * y + z * z);
}

double plain_cross3(const double* a, const double* b)
{
    double d[3];
    for (int i = 0; i < 3; ++i) d[i] = b[i] - a[i];
    const double aa = a[0] * a[0] + a[1] * a[1] + a[2] * a[2];
    const double bb = b[0] * b[0] + b[1] * b[1] + b[2] * b[2];
    const double dd = d[0] * d[0] + d[1] * d[1] + d[2] * d[2];
    return dd >= std::min(bb, aa) ? plain_norm_of_cross(a, b) : plain_norm_of_cross(a, d);
}

double plain_column(const reals& coords, const IDs& connect, std::size_t e)
{
    double p[4][3] = {};
    const bool quad = connect.rows == 4 && connect(3, e) != U;
    for (std::size_t k = 0; k < (quad ? 4u : 3u); ++k)
        for (std::size_t i = 0; i < coords.rows; ++i) p[k][i] = coords(i, connect(k, e));
    const auto minus = [&](int k, int l, double* out) {
        for (int i = 0; i < 3; ++i) out[i] = p[k][i] - p[l][i];
    };
    double a[3];
    double b[3];
    double c[3];
    if (!quad) {
        minus(0, 2, a);
        minus(1, 2, b);
        return coords.rows == 2 ? plain_cross2(a[0], a[1], b[0], b[1]) : plain_cross3(a, b);
    }
    if (coords.rows == 2)
        return (p[3][1] - p[1][1]) * (p[2][0] - p[0][0]) -
               (p[2][1] - p[0][1]) * (p[3][0] - p[1][0]);
    minus(1, 0, a);
    minus(2, 0, b);
    minus(3, 0, c);
    const double s1 = plain_norm_of_cross(a, b) + plain_norm_of_cross(c, b);
    minus(0, 1, a);
    minus(3, 1, b);
    minus(2, 1, c);
    const double s2 = plain_norm_of_cross(a, b) + plain_norm_of_cross(c, b);
    return s1 > s2 ? s1 : s2;
}

double plain_area(const mesh& m)
{
    double sum = 0.0;
    for (std::size_t e = 0; e < m.connect.cols; ++e) sum += plain_column(m.coords, m.connect, e);
    return sum * 0.5;
}

void expect_every_bit(const mesh& m, const std::string& told)
{
    const double expected = plain_area(m);
    const double found = area_of(m.coords, m.connect);
    if (std::isnan(expected))
        EXPECT_TRUE(std::isnan(found)) << told;
    else
        EXPECT_EQ(support::bits(found), support::bits(expected)) << told << ": " << found;
}

} // namespace

TEST(Area, LargeMeshesAreSummedInColumnOrderToTheLastBit)
{
    // Counts around powers of two and odd ones: the sum goes on over whatever is worked on at once.
    for (const std::size_t dimension : {2u, 3u})
        for (mesh m :
             {support::grid_T3(40, 33, dimension), support::grid_mixed(40, 33, dimension, 5)}) {
            support::jitter(m, 0.4, 7);
            for (const std::size_t cols : {511u, 512u, 513u, 1023u, 1024u, 1025u, 1537u}) {
                ASSERT_LE(cols, m.connect.cols);
                mesh part = m;
                part.connect.cols = cols;
                expect_every_bit(part, part.name + ", " + std::to_string(cols));
                const placed<unsigned> connect(part.connect, 3, 2);
                const placed<double> coords(part.coords, 5, 1);
                EXPECT_EQ(support::bits(area_of(coords.view, connect.view)),
                          support::bits(plain_area(part)))
                    << part.name << ", " << cols;
            }
        }
}

TEST(Area, IsTheSumInColumnOrderToTheLastBit)
{
    for (unsigned seed = 1; seed <= 60; ++seed)
        for (const std::size_t dimension : {2u, 3u}) {
            std::mt19937 draw(seed);
            const auto nx = static_cast<unsigned>(1 + draw() % 9);
            const auto ny = static_cast<unsigned>(1 + draw() % 9);
            for (mesh m :
                 {support::grid_T3(nx, ny, dimension), support::grid_mixed(nx, ny, dimension, seed),
                  support::grid_Q4(nx, ny, dimension)}) {
                support::jitter(m, 0.7, seed);
                if (seed % 2) support::shuffle(m, seed);
                expect_every_bit(m, m.name + ", seed " + std::to_string(seed));
            }
        }
}

TEST(Area, NeedlesOfAllShapesToTheLastBit)
{
    // Coordinates of wildly different sizes put the shortest side anywhere.
    for (unsigned seed = 1; seed <= 200; ++seed) {
        std::mt19937 draw(seed);
        std::uniform_real_distribution<double> mantissa(-1.0, 1.0);
        const std::size_t dimension = 2 + draw() % 2;
        const std::size_t nodes = 40;
        mesh m{"needles", reals(dimension, nodes), IDs(3 + draw() % 2, 1 + draw() % 70)};
        for (std::size_t j = 0; j < nodes; ++j)
            for (std::size_t i = 0; i < dimension; ++i)
                m.coords(i, j) = std::ldexp(mantissa(draw), static_cast<int>(draw() % 40) - 20);
        for (std::size_t e = 0; e < m.connect.cols; ++e)
            for (std::size_t k = 0; k < m.connect.rows; ++k)
                m.connect(k, e) = k == 3 && draw() % 2 ? U : static_cast<unsigned>(draw() % nodes);
        expect_every_bit(m, "seed " + std::to_string(seed));
    }
}

TEST(Area, AwkwardMeshesToTheLastBit)
{
    for (const std::size_t dimension : {2u, 3u})
        for (const mesh& m : support::awkward_meshes(dimension)) expect_every_bit(m, m.name);
}
