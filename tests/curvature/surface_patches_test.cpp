#include "curvature/surface_patches.h"

#include "plain_curvature.h"
#include "support/allocation.h"
#include "support/matrices.h"
#include "support/meshes.h"
#include "support/topology.h"

#include <algorithm>
#include <cmath>
#include <limits>

using namespace vorel;
using namespace vorel::tessalo2d;

namespace {

const double PI = std::acos(-1.0);

/// A mesh with its adjacency, and the patches of its nodes on demand.
struct patches {
    explicit patches(const support::mesh& m)
        : coords(m.coords), connect(m.connect), neighbors(support::neighbors_of(m.connect))
    {
    }

    std::vector<unsigned> patch(unsigned node, unsigned seed)
    {
        surface_patches surface;
        EXPECT_TRUE(prepare_patches(coords, connect, neighbors,
                                    {radius, max_angle, max_triangles, ridges}, surface));
        generation_marks marks;
        EXPECT_TRUE(marks.init(connect.cols));
        dense1D<unsigned, 8> list;
        collect_patch(surface, load<3>(coords.column(node)), seed, marks, list);
        return support::elements(list);
    }

    dense2D<double> coords;
    dense2D<unsigned> connect;
    dense2D<unsigned> neighbors;
    dense2D<unsigned> ridges;
    double radius = 100.0;
    double max_angle = PI;
    unsigned max_triangles = 1000;
};

/// Four triangles in a row over a strip of two cells: (0 1 4) (4 3 0) (1 2 5) (5 4 1).
///
///     3 - 4 - 5
///     |1/0|3/2|
///     0 - 1 - 2
support::mesh strip()
{
    return support::grid_T3(2, 1, 3);
}

} // namespace

TEST(SurfacePatches, GrowFromTheSeedAcrossEdgesInAscendingOrder)
{
    patches p(strip());
    // From 0: triangles 1 and 3 lie across; 2 lies across from 3.
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1, 3, 2}));
    EXPECT_EQ(p.patch(2, 2), (std::vector<unsigned>{2, 3, 0, 1}));
}

TEST(SurfacePatches, RadiusTestsTheCentroid)
{
    patches p(strip());
    // Centroids from node 0: (2/3, 1/3), (1/3, 2/3), (5/3, 1/3), (4/3, 2/3).
    p.radius = 1.0;
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1}));
    p.radius = -1.5;
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1, 3})) << "only the square counts";
    p.radius = 1.71;
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1, 3, 2}));
}

TEST(SurfacePatches, ARadiusThatIsNotAboveZeroLeavesTheSeedAlone)
{
    patches p(strip());
    p.radius = 0.0;
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0});
    p.radius = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0});
}

TEST(SurfacePatches, TheLimitIsTestedBeforeEachTrianglesNeighbours)
{
    patches p(strip());
    p.max_triangles = 0;
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0});
    p.max_triangles = 1;
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0});
    p.max_triangles = 2;
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1, 3})) << "longer than the limit";
    p.max_triangles = 4;
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1, 3, 2}));
}

TEST(SurfacePatches, RidgesAreNotCrossedInEitherDirection)
{
    patches p(strip());
    p.ridges = dense2D<unsigned>{{4, 1}};
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1}));
    p.ridges = dense2D<unsigned>{{1, 4}, {0, 4}};
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0});
}

TEST(SurfacePatches, AngleIsTestedBetweenTheNormalsOfNeighbours)
{
    // A roof along x: two faces that turn by 90 degrees.
    support::mesh roof{
        "roof", {{0, 0, 0}, {1, 0, 0}, {0, 1, 1}, {0, -1, 1}}, {{0, 1, 2}, {1, 0, 3}}};
    patches p(roof);
    p.max_angle = PI * 91 / 180;
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1}));
    p.max_angle = PI * 89 / 180;
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0});
    p.max_angle = PI;
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1}));
}

TEST(SurfacePatches, AnObtuseLimitKeepsTheSignOfTheCosine)
{
    // Faces folded back by 135 degrees between the normals.
    support::mesh fold{
        "fold", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 1, 1}}, {{0, 1, 2}, {1, 0, 3}}};
    patches p(fold);
    p.max_angle = PI * 136 / 180;
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1}));
    p.max_angle = PI * 134 / 180;
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0});
}

TEST(SurfacePatches, AnAngleAtTheLimitIsNotCrossed)
{
    patches p(strip());
    p.max_angle = 0.0;
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0}) << "parallel normals enclose the angle 0";
}

TEST(SurfacePatches, ATriangleWithoutAreaIsNotCrossedWhileTheAngleIsTested)
{
    support::mesh line{
        "line", {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {2, 0, 0}}, {{0, 1, 2}, {1, 0, 3}}};
    patches p(line);
    p.max_angle = 3.0;
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0});
    EXPECT_EQ(p.patch(0, 1), std::vector<unsigned>{1});
    p.max_angle = PI;
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1}));
}

TEST(SurfacePatches, ANotANumberAngleTestsNothing)
{
    support::mesh roof{
        "roof", {{0, 0, 0}, {1, 0, 0}, {0, 1, 1}, {0, -1, 1}}, {{0, 1, 2}, {1, 0, 3}}};
    patches p(roof);
    p.max_angle = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1}));
}

TEST(SurfacePatches, ANotANumberDistanceRejectsNothing)
{
    support::mesh m = strip();
    m.coords(0, 3) = std::numeric_limits<double>::quiet_NaN();
    patches p(m);
    p.radius = 0.9;
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 1}));
}

TEST(SurfacePatches, ARejectedTriangleIsNotAskedAgainAcrossAnotherEdge)
{
    // A fan of three around node 0: every pair shares an edge. The way from 0 to 1 is a ridge, so 1
    // is refused first and stays out although the edge between 2 and 1 is open.
    support::mesh fan{
        "fan", {{0, 0, 0}, {1, 0, 0}, {-1, 1, 0}, {-1, -1, 0}}, {{0, 1, 2}, {0, 2, 3}, {0, 3, 1}}};
    patches p(fan);
    p.ridges = dense2D<unsigned>{{0, 2}};
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 2}));
}

TEST(SurfacePatches, NeighborsThatNameNoTriangleAreNone)
{
    patches p(strip());
    p.neighbors(0, 0) = 4;
    p.neighbors(1, 0) = 4000000000u;
    p.neighbors(2, 0) = 4;
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0});
    p.neighbors = dense2D<unsigned>(1, 4, 3u);
    EXPECT_EQ(p.patch(0, 0), (std::vector<unsigned>{0, 3})) << "missing rows are no neighbours";
    p.neighbors = dense2D<unsigned>(3, 4, 0u);
    EXPECT_EQ(p.patch(0, 0), std::vector<unsigned>{0}) << "a triangle beside itself";
}

TEST(SurfacePatches, MatchAPlainSearchEntryByEntry)
{
    std::size_t longest = 0;
    std::size_t cut = 0;
    for (unsigned seed = 1; seed <= 80; ++seed)
        for (const bool contradictory : {false, true}) {
            const plain::surface s = plain::random_surface(seed, contradictory);
            surface_patches surface;
            ASSERT_TRUE(prepare_patches(s.coords, s.connect, s.neighbors,
                                        {s.radius, s.max_angle, s.max_triangles, s.ridges},
                                        surface));
            generation_marks marks;
            ASSERT_TRUE(marks.init(s.connect.cols));
            dense1D<unsigned, 8> list;
            for (unsigned e = 0; e < s.connect.cols; ++e) {
                const unsigned node = s.connect(e % 3, e);
                collect_patch(surface, s.point(node), e, marks, list);
                ASSERT_EQ(support::elements(list), plain::patch(s, node, e))
                    << "seed " << seed << (contradictory ? " contradictory" : "") << " triangle "
                    << e;
                longest = std::max(longest, list.size);
                cut += list.size > 1 && list.size < s.connect.cols;
            }
        }
    EXPECT_GE(longest, 60u) << "some patches fill their mesh";
    EXPECT_GE(cut, 1000u) << "and many end within it";
}
