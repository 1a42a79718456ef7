// Fields over structured patches: lists and counts that are refused, and those that leave nothing
// to do. The same for sizes and for metrics.
#include "metrics/boundary_loop.h"
#include "support/matrices.h"

#include <utility>

#include <sys/mman.h>

using namespace vorel;
using namespace patch_tests;
using tessalo2d::metrics_struct;

TEST(MetricsStruct, AnEmptyListOrACountOfZeroIsNothingToDo)
{
    dense1D<double, 8> sizes;
    const dense1D<unsigned, 8> wrong{9, 8, 7, 6};
    EXPECT_EQ(metrics_struct({}, 3, sizes), 0);
    EXPECT_EQ(metrics_struct(wrong, 0, sizes), 0);
    EXPECT_EQ(sizes.size, 0u);
    for (const std::size_t rows : {3u, 6u}) {
        dense2D<double> metrics = support::without_columns<double>(rows);
        EXPECT_EQ(metrics_struct({}, 3, metrics), 0);
        EXPECT_EQ(metrics_struct(wrong, 0, metrics), 0);
        EXPECT_EQ(metrics.cols, 0u);
        EXPECT_EQ(metrics.rows, rows);
    }
}

TEST(MetricsStruct, TheRowsAreCheckedBeforeAnythingElse)
{
    for (const std::size_t rows : {0u, 1u, 2u, 4u, 5u, 7u}) {
        dense2D<double> metrics = support::without_columns<double>(rows);
        EXPECT_EQ(metrics_struct({}, 0, metrics), -3) << rows;
        EXPECT_EQ(metrics_struct({1, 2}, 5, metrics), -3) << rows;
        dense2D<double> filled(rows, 4, 1.0);
        EXPECT_EQ(metrics_struct({0, 1, 2, 3, 0}, 1, filled), -3) << rows;
    }
}

TEST(MetricsStruct, StatusesComeInTheOrderOfTheChecks)
{
    struct {
        dense1D<unsigned, 8> ids;
        unsigned count;
        int status;
        const char* why;
    } const rows[] = {
        {{0}, 1, -1, "too short"},
        {{0, 1}, 7, -1, "too short"},
        {{0, 1, 2, 0}, 1, -1, "four nodes"},
        {{0, 1, 2, 0}, 9, -1, "four nodes, before the count"},
        {{0, 1, 2, 3, 4}, 1, -1, "not closed"},
        {{0, 1, 2, 3, 4}, 9, -1, "not closed, before the count"},
        {{0, 1, 2, 8, 0}, 1, -1, "an ID that is the length of the field"},
        {{0, 1, UNSET_ID, 3, 0}, 1, -1, "an unset ID"},
        {{0, 1, 2, 8, 0}, 9, -1, "a wrong ID, before the count"},
        {{8, 1, 2, 3, 4, 5, 8}, 9, -1, "a wrong ID at the ends"},
        {{0, 1, 2, 3, 0}, 3, -2, "more cells than nodes"},
        {{0, 1, 2, 3, 0}, 4000000000u, -2, "far more cells than nodes"},
        {{0, 1, 2, 3, 4, 0}, 1, -2, "an even number of nodes"},
        {{0, 1, 2, 3, 4, 0}, 3, -2, "twice the count is the length"},
        {{0, 1, 2, 3, 0}, 1, 0, "one cell"},
    };
    for (const auto& row : rows) {
        dense1D<double, 8> sizes(8, 1.0);
        EXPECT_EQ(metrics_struct(row.ids, row.count, sizes), row.status) << row.why;
        EXPECT_EQ(support::elements(sizes), std::vector<double>(8, 1.0)) << row.why;
        for (const std::size_t entries : {3u, 6u}) {
            dense2D<double> metrics(entries, 8, 1.0);
            EXPECT_EQ(metrics_struct(row.ids, row.count, metrics), row.status) << row.why;
            EXPECT_EQ(metrics.cols, 8u) << row.why;
        }
    }
}

TEST(MetricsStruct, APatchOfOneCellAcrossHasNoInteriorNode)
{
    for (const auto& [n, m] : {std::pair{1, 1}, std::pair{1, 5}, std::pair{5, 1}}) {
        const loop l(static_cast<std::size_t>(n), static_cast<std::size_t>(m), 1);
        dense1D<double, 8> sizes(l.nodes, 2.0);
        EXPECT_EQ(metrics_struct(l.ids, static_cast<unsigned>(m), sizes), 0);
        EXPECT_EQ(sizes.size, l.nodes);
        dense2D<double> metrics(6, l.nodes, 2.0);
        EXPECT_EQ(metrics_struct(l.ids, static_cast<unsigned>(m), metrics), 0);
        EXPECT_EQ(metrics.cols, l.nodes);
    }
}

TEST(MetricsStruct, MoreNodesThanIDsAreOutOfMemory)
{
    // 70000 x 70000 cells have more than 2^32 interior nodes. There is address space for all of
    // them, so that it is not the storage that is refused; nothing of it may be touched.
    const std::size_t n = 70000;
    const std::size_t room = n * n;
    void* const space = mmap(nullptr, room * sizeof(double), PROT_READ | PROT_WRITE,
                             MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (space == MAP_FAILED) GTEST_SKIP() << "no address space";
    const dense1D<unsigned, 8> ids(4 * n + 1, 0u);
    auto sizes = dense1D<double, 8>::wrap(static_cast<double*>(space), room);
    sizes.size = 1;
    EXPECT_EQ(metrics_struct(ids, static_cast<unsigned>(n), sizes), -199);
    EXPECT_EQ(sizes.size, 1u);
    auto metrics = dense2D<double>::wrap(static_cast<double*>(space), 3, room / 3);
    metrics.cols = 1;
    EXPECT_EQ(metrics_struct(ids, static_cast<unsigned>(n), metrics), -199);
    EXPECT_EQ(metrics.cols, 1u);
    munmap(space, room * sizeof(double));
}
