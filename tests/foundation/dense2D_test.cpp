#include "support/allocation.h"
#include "support/matrices.h"

#include <memory>
#include <type_traits>

using namespace vorel;
using support::columns;
using support::failing_allocation;
using support::placed;

namespace {

constexpr std::size_t LARGEST = std::numeric_limits<std::size_t>::max();

using IDs = dense2D<unsigned>;
using plain = std::vector<std::vector<unsigned>>;

} // namespace

TEST(Dense2D, DefaultMatrixHoldsAnEmptyBlockOfItsOwn)
{
    const IDs m;
    ASSERT_TRUE(m.block);
    EXPECT_EQ(m.block->capacity, 0u);
    EXPECT_EQ(m.size, 0u);
    EXPECT_EQ(m.offset, 0u);
    EXPECT_EQ(m.rows, 0u);
    EXPECT_EQ(m.cols, 0u);
    EXPECT_EQ(m.ld, 0u);
    EXPECT_TRUE(m.is_empty());
}

TEST(Dense2D, FieldsStandInTheOrderThatInnerLoopsRead)
{
    const IDs m;
    const auto* const begin = reinterpret_cast<const char*>(&m);
    const auto at = [&](const void* field) { return static_cast<const char*>(field) - begin; };
    EXPECT_EQ(at(&m.block), 0);
    EXPECT_EQ(at(&m.size), 8);
    EXPECT_EQ(at(&m.offset), 16);
    EXPECT_EQ(at(&m.rows), 24);
    EXPECT_EQ(at(&m.cols), 32);
    EXPECT_EQ(at(&m.ld), 40);
    EXPECT_EQ(sizeof(m), 48u);
}

TEST(Dense2D, ConstructorsGiveShapeAndValues)
{
    const IDs m(2, 3, 7u);
    EXPECT_EQ(columns(m), (plain{{7, 7}, {7, 7}, {7, 7}}));
    EXPECT_EQ(m.ld, 2u);
    EXPECT_EQ(m.size, 6u);
    EXPECT_EQ(columns(IDs{{1, 2, 3}, {4, 5, 6}}), (plain{{1, 2, 3}, {4, 5, 6}}));
    EXPECT_EQ(columns(IDs{{1, 2, 3}, {4}}), (plain{{1, 2, 3}, {4, 0, 0}}));
    EXPECT_EQ(columns(IDs{{1, 2}}), (plain{{1, 2}})) << "one column, not a shape";
    EXPECT_EQ(columns(IDs{{}, {}}), (plain{{}, {}}));
    const IDs shape{3, 2};
    EXPECT_EQ(shape.rows, 3u);
    EXPECT_EQ(shape.cols, 2u);
}

TEST(Dense2D, ElementStandsAtOffsetPlusColumnTimesLdPlusRow)
{
    placed<unsigned> p(IDs{{1, 2}, {3, 4}, {5, 6}}, 5, 3);
    const IDs& m = p.view;
    for (std::size_t j = 0; j < 3; ++j)
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_EQ(&m(i, j), m.block->data + 5 + j * 5 + i);
            EXPECT_EQ(m.column(j)[i], m(i, j));
            EXPECT_EQ(m(i, j), 2 * j + i + 1);
        }
}

TEST(Dense2D, CopiesShareTheBlock)
{
    IDs m{{1, 2}, {3, 4}};
    IDs n = m;
    EXPECT_TRUE(n.block == m.block);
    n(1, 1) = 40;
    EXPECT_EQ(m(1, 1), 40u);
    IDs s{{9}};
    s.shallow_copy(m);
    EXPECT_TRUE(s.block == m.block);
    EXPECT_EQ(s.ld, m.ld);
    EXPECT_EQ(columns(s), columns(m));
    EXPECT_EQ(m.block->count.load(), 3);
}

TEST(Dense2D, ShallowCopyTakesOffsetShapeAndLd)
{
    placed<double> p(dense2D<double>{{1, 2}, {3, 4}}, 3, 2);
    dense2D<double> s;
    s.shallow_copy(p.view);
    EXPECT_EQ(s.offset, 3u);
    EXPECT_EQ(s.size, p.view.size);
    EXPECT_EQ(s.rows, 2u);
    EXPECT_EQ(s.cols, 2u);
    EXPECT_EQ(s.ld, 4u);
}

TEST(Dense2D, GrowthThroughALocalViewReachesTheCallersView)
{
    dense2D<double> caller{{1, 2}, {3, 4}};
    dense2D<double> local;
    local.shallow_copy(caller);
    ASSERT_TRUE(local.resize(2, 100, 5.0));
    EXPECT_EQ(columns(caller), (std::vector<std::vector<double>>{{1, 2}, {3, 4}}));
    EXPECT_EQ(caller.column(0), local.column(0));
    caller.shallow_copy(local);
    EXPECT_EQ(caller.cols, 100u);
    EXPECT_EQ(caller(1, 99), 5.0);
}

TEST(Dense2D, DeepCopySharesNothingAndIsDense)
{
    placed<unsigned> p(IDs{{1, 2}, {3, 4}, {5, 6}}, 5, 3);
    IDs m{{9, 9, 9}};
    ASSERT_TRUE(m.copy(p.view));
    EXPECT_EQ(columns(m), columns(p.view));
    EXPECT_EQ(m.ld, 2u);
    EXPECT_EQ(m.offset, 0u);
    EXPECT_FALSE(m.block == p.view.block);
    m(0, 0) = 77;
    EXPECT_EQ(p.view(0, 0), 1u);
    ASSERT_TRUE(m.copy(m)) << "of itself";
    EXPECT_EQ(m(0, 0), 77u);
    ASSERT_TRUE(m.copy(support::without_columns<unsigned>(4)));
    EXPECT_EQ(m.rows, 4u);
    EXPECT_EQ(m.cols, 0u);
    EXPECT_EQ(m.ld, 4u);
    p.expect_gaps_untouched();
}

TEST(Dense2D, RefusedDeepCopyChangesNothing)
{
    const IDs source{{1, 2}, {3, 4}};
    IDs m{{9, 8, 7}};
    {
        const failing_allocation armed(0);
        EXPECT_FALSE(m.copy(source));
    }
    EXPECT_EQ(columns(m), (plain{{9, 8, 7}}));
}

TEST(Dense2D, AsVectorIsARunOfTheSameBlock)
{
    const placed<unsigned> p(IDs{{1, 2}, {3, 4}}, 3, 0);
    const dense1D<unsigned, 8> run = p.view.as_vector();
    EXPECT_TRUE(run.block == p.view.block);
    EXPECT_EQ(support::elements(run), (std::vector<unsigned>{1, 2, 3, 4}));
}

TEST(Dense2D, ClearForgetsTheShapeAndKeepsTheStorage)
{
    IDs m{{1, 2}, {3, 4}};
    const unsigned* const data = m.block->data;
    m.clear();
    EXPECT_EQ(m.size + m.rows + m.cols + m.ld, 0u);
    EXPECT_TRUE(m.is_empty());
    ASSERT_TRUE(m.resize(4, 1));
    EXPECT_EQ(m.block->data, data);
}

TEST(Dense2D, MovedFromMatrixIsEmptyAndUsable)
{
    IDs m{{1, 2}};
    IDs n(std::move(m));
    ASSERT_TRUE(m.block);
    EXPECT_TRUE(m.is_empty());
    ASSERT_TRUE(m.resize(1, 1, 5u));
    EXPECT_EQ(columns(n), (plain{{1, 2}}));
    n = std::move(m);
    EXPECT_EQ(columns(n), (plain{{5}}));
}

TEST(Dense2D, WrapsMemoryThatOutlivesTheView)
{
    unsigned memory[] = {1, 2, 99, 3, 4, 99, 5, 6};
    {
        IDs m = IDs::wrap(memory, 2, 3, 3);
        EXPECT_EQ(columns(m), (plain{{1, 2}, {3, 4}, {5, 6}}));
        EXPECT_EQ(m.block->capacity, 8u);
        m(0, 0) = 10;
        ASSERT_TRUE(m.resize(2, 4, 7u));
        m(1, 0) = 20;
        EXPECT_EQ(columns(m), (plain{{10, 20}, {3, 4}, {5, 6}, {7, 7}}));
    }
    EXPECT_EQ(memory[0], 10u);
    EXPECT_EQ(memory[1], 2u) << "left untouched from the growth on";
    EXPECT_EQ(memory[2], 99u);
}

TEST(Dense2D, OutlivesTheMemoryThatItLeft)
{
    IDs m;
    {
        const auto memory = std::make_unique<unsigned[]>(4);
        for (unsigned i = 0; i < 4; ++i) memory[i] = i;
        m = IDs::wrap(memory.get(), 2, 2);
        ASSERT_TRUE(m.resize(3, 2, 9u));
    }
    EXPECT_EQ(columns(m), (plain{{0, 1, 9}, {2, 3, 9}}));
}

TEST(Dense2D, WrapsConstantMemory)
{
    const std::vector<double> memory{0, 0, 1, 0, 0, 1};
    const auto coords = dense2D<double>::wrap(memory.data(), 2, 3);
    const IDs connect{{0, 1, 2}};
    double result = 0.0;
    EXPECT_EQ(tessalo2d::area(coords, connect, result), 0);
    EXPECT_EQ(result, 0.5);
    const auto wide = dense2D<double>::wrap(memory.data(), 1, 2, 4);
    EXPECT_EQ(wide.size, 5u);
    EXPECT_EQ(wide(0, 1), 0.0);
    const auto none = dense2D<double>::wrap(static_cast<const double*>(nullptr), 2, 0);
    EXPECT_TRUE(none.is_empty());
}

TEST(Dense2D, ServesTheUsualIdioms)
{
    IDs m = {{1, 2, 3}, {4, 5, 6}};
    const IDs& constant = m;
    EXPECT_TRUE((std::is_same_v<decltype(constant(0, 0)), const unsigned&>));
    EXPECT_TRUE((std::is_same_v<decltype(constant.column(0)), const unsigned*>));
    m(2, 1) = 60;
    EXPECT_EQ(constant(2, 1), 60u);
    m = {{7}};
    EXPECT_EQ(columns(m), (plain{{7}}));
    m = IDs();
    EXPECT_TRUE(m.is_empty());
    std::vector<IDs> many;
    for (unsigned i = 1; i < 20; ++i) many.emplace_back(2, i, i);
    for (unsigned i = 1; i < 20; ++i) EXPECT_EQ(many[i - 1](1, i - 1), i);
    const auto made = [] { return IDs(2, 2, 4u); };
    m = made();
    EXPECT_EQ(m.block->count.load(), 1);
    EXPECT_EQ(columns(m), (plain{{4, 4}, {4, 4}}));
}

TEST(Dense2D, ConstructionWithoutStorageIsEmpty)
{
    const failing_allocation armed(0, support::failure::for_good);
    EXPECT_TRUE(IDs(2, 3).is_empty());
    EXPECT_TRUE(IDs(2, 3, 1u).is_empty());
    EXPECT_TRUE((IDs{{1, 2}}).is_empty());
}

TEST(Dense2D, ColumnCapacityCountsFromTheOffset)
{
    IDs m;
    EXPECT_EQ(m.column_capacity(), 0u);
    ASSERT_TRUE(m.reserve(1, 24, 1));
    EXPECT_EQ(m.column_capacity(), 24u) << "without an ld in elements";
    ASSERT_TRUE(m.resize(4, 1));
    EXPECT_EQ(m.column_capacity(), 6u);
    m.offset = 3;
    EXPECT_EQ(m.column_capacity(), 5u);
    m.offset = 30;
    EXPECT_EQ(m.column_capacity(), 0u);
}

TEST(Dense2D, RefusedSizesChangeNothing)
{
    for (const std::size_t offset : {0u, 3u}) {
        placed<unsigned> p(IDs{{1, 2}, {3, 4}}, offset, 1);
        IDs& m = p.view;
        const unsigned* const data = m.block->data;
        EXPECT_FALSE(m.resize(2, LARGEST));
        EXPECT_FALSE(m.resize(LARGEST, 2));
        EXPECT_FALSE(m.resize(LARGEST, LARGEST));
        EXPECT_FALSE(m.resize(2, LARGEST / 3, 1u)) << "count fits, bytes do not";
        EXPECT_FALSE(m.resize(LARGEST - 2, 1)) << "fits alone, not in bytes or behind an offset";
        EXPECT_FALSE(m.resize(std::size_t(1) << 32, std::size_t(1) << 32)) << "the product wraps";
        EXPECT_FALSE(m.reserve(2, LARGEST, 1));
        EXPECT_FALSE(m.reserve(std::size_t(1) << 32, std::size_t(1) << 32, 1));
        EXPECT_FALSE(m.reserve(4, 100, LARGEST));
        {
            const failing_allocation armed(0, support::failure::for_good);
            EXPECT_FALSE(m.resize(2, 9));
            EXPECT_FALSE(m.resize(9, 2));
            EXPECT_FALSE(m.resize(9, 9, 0u));
            EXPECT_FALSE(m.reserve(2, 9, 2));
        }
        EXPECT_EQ(m.block->data, data);
        EXPECT_EQ(columns(m), (plain{{1, 2}, {3, 4}}));
        EXPECT_EQ(m.ld, 3u);
        p.expect_gaps_untouched();
    }
}
