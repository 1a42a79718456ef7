#include "foundation/status.h"

#include "support/matrices.h"

#include <string>

using namespace vorel;
using namespace vorel::tessalo2d;

TEST(Version, IsTheText)
{
    EXPECT_EQ(std::string(version()), "5.1.0.0");
}

TEST(Status, CodesNameTheArgument)
{
    EXPECT_EQ(success, 0);
    EXPECT_EQ(out_of_memory, -199);
    for (int k = 1; k <= 10; ++k) EXPECT_EQ(bad_argument(k), -k);
}

TEST(Status, EmptyMeansWithoutEntries)
{
    EXPECT_TRUE(is_empty(dense2D<double>()));
    EXPECT_TRUE(is_empty(support::without_columns<double>(5)));
    dense2D<double> hollow;
    hollow.cols = 4;
    EXPECT_TRUE(is_empty(hollow));
    EXPECT_FALSE(is_empty(dense2D<double>(1, 1, 0.0)));
}

TEST(Status, RowTestsLookAtTheRowCount)
{
    const dense2D<double> m(3, 2, 0.0);
    EXPECT_TRUE(has_rows(m, 3));
    EXPECT_FALSE(has_rows(m, 2));
    EXPECT_TRUE(has_rows(m, 2, 3));
    EXPECT_TRUE(has_rows(m, 3, 4));
    EXPECT_FALSE(has_rows(m, 2, 4));
    EXPECT_TRUE(takes_rows(m, 3));
    EXPECT_FALSE(takes_rows(m, 4));
    EXPECT_TRUE(takes_rows(support::without_columns<double>(3), 4))
        << "without entries it takes any";
}

TEST(Status, NodeBoundIsCutToWhatIDsCanName)
{
    dense2D<double> coords(2, 3, 0.0);
    EXPECT_EQ(node_bound(coords), 3u);
    coords.cols = UNSET_ID;
    EXPECT_EQ(node_bound(coords), UNSET_ID);
    coords.cols = std::size_t(UNSET_ID) + 5;
    EXPECT_EQ(node_bound(coords), UNSET_ID) << "not 4";
}
