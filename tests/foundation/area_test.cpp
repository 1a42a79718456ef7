#include "support/matrices.h"
#include "support/meshes.h"

using namespace vorel;
using tessalo2d::area;

TEST(Area, EmptyConnectivityIsZeroWhateverTheCoordinates)
{
    double result = 7.0;
    EXPECT_EQ(area(dense2D<double>(5, 2, 1.0), dense2D<unsigned>(), result), 0);
    EXPECT_EQ(result, 0.0);
}
