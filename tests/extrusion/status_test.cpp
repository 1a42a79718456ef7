// The status tables: every cell alone, and with everything that is checked later broken as well.
#include "extrusion/overloads.h"
#include "support/matrices.h"

#include <limits>

using namespace extrusion_tests;
using support::bits;
using support::columns;

namespace {

constexpr double NOT_A_NUMBER = std::numeric_limits<double>::quiet_NaN();

/// Code of each check, 0 where the overload makes none.
struct row {
    const char* name;
    std::vector<std::size_t> coords_rows;
    int connect;
    int h0;
    int h1;
    int pattern;
    std::size_t output_rows;
    int output;
};

const std::vector<row> TABLE = {
    {"translate Q4 plane fixed", {2}, -2, 0, 0, 0, 4, -5},
    {"translate Q4 plane sized", {2}, -2, -4, -5, 0, 4, -7},
    {"translate Q4 space fixed", {2, 3}, -2, 0, 0, 0, 4, -5},
    {"translate Q4 space sized", {2, 3}, -2, -4, -5, 0, 4, -7},
    {"translate T3 plane fixed", {2}, -2, 0, 0, -5, 3, -6},
    {"translate T3 plane sized", {2}, -2, -4, -5, -6, 3, -8},
    {"translate T3 space fixed", {2, 3}, -2, 0, 0, -5, 3, -6},
    {"translate T3 space sized", {2, 3}, -2, -4, -5, -6, 3, -8},
    {"rotate Q4 plane fixed", {2, 3}, -2, 0, 0, 0, 4, -6},
    {"rotate Q4 plane sized", {2, 3}, -2, -5, -6, 0, 4, -8},
    {"rotate Q4 space fixed", {2, 3}, -2, 0, 0, 0, 3, -3},
    {"rotate Q4 space sized", {2, 3}, -2, -5, -6, 0, 3, -8},
    {"rotate T3 plane fixed", {2, 3}, -2, 0, 0, 0, 3, -7},
    {"rotate T3 plane sized", {2, 3}, -2, -5, -6, -7, 3, -9},
    {"rotate T3 space fixed", {2, 3}, -2, 0, 0, 0, 3, -7},
    {"rotate T3 space sized", {2, 3}, -1, -5, -6, 0, 3, -9},
    {"spiral Q4 fixed", {2, 3}, -2, 0, 0, 0, 4, -9},
    {"spiral Q4 sized", {2, 3}, -2, -6, -7, 0, 4, -9},
    {"spiral T3 fixed", {2, 3}, -2, 0, 0, 0, 3, -10},
    {"spiral T3 sized", {2, 3}, -2, -6, -4, 0, 3, -10},
};

/// The checks in their order.
enum check { COORDS, CONNECT, H0, H1, PATTERN, OUTPUT, CHECKS };

int code(const row& r, int check)
{
    switch (check) {
    case COORDS:
        return -1;
    case CONNECT:
        return r.connect;
    case H0:
        return r.h0;
    case H1:
        return r.h1;
    case PATTERN:
        return r.pattern;
    default:
        return r.output;
    }
}

const char* check_name(int check)
{
    const char* const names[] = {"coords", "connect", "h0", "h1", "pattern", "output"};
    return names[check];
}

struct state {
    dense2D<double> coords;
    dense2D<unsigned> connect;
    arguments given;
    dense2D<unsigned> output;
};

state valid(const row& r)
{
    return {nodes(2, 4), {{0, 1}, {1, 2}}, {}, dense2D<unsigned>(r.output_rows, 2, 1u)};
}

constexpr int VARIANTS = 3;

/// Breaks one argument in one of several ways.
void break_argument(state& s, const row& r, int check, int variant)
{
    const double not_above_zero[VARIANTS] = {0.0, -1.0, NOT_A_NUMBER};
    switch (check) {
    case COORDS: {
        const std::size_t rows[VARIANTS] = {1, 4, r.coords_rows.size() == 1 ? 3u : 5u};
        s.coords = nodes(rows[variant], 4);
        break;
    }
    case CONNECT:
        if (variant == 0) s.connect(1, 1) = 4;
        if (variant == 1) s.connect = dense2D<unsigned>(3, 2, 0u);
        if (variant == 2) s.connect(0, 0) = UNSET_ID;
        break;
    case H0:
        s.given.h0 = not_above_zero[variant];
        break;
    case H1:
        s.given.h1 = not_above_zero[variant];
        break;
    case PATTERN: {
        const int patterns[VARIANTS] = {3, -1, std::numeric_limits<int>::min()};
        s.given.pattern = patterns[variant];
        break;
    }
    default: {
        const std::size_t rows[VARIANTS] = {r.output_rows == 4 ? 3u : 4u, 2, 6};
        s.output = dense2D<unsigned>(rows[variant], 1, 0u);
    }
    }
}

void expect_refused(const row& r, state& s, int expected)
{
    const dense2D<double> coords = support::copy_of(s.coords);
    const dense2D<unsigned> connect = support::copy_of(s.connect);
    const dense2D<unsigned> output = support::copy_of(s.output);
    EXPECT_EQ(overload_named(r.name).run(s.coords, s.connect, s.given, s.output), expected);
    EXPECT_EQ(bits(s.coords), bits(coords));
    EXPECT_EQ(s.coords.rows, coords.rows);
    EXPECT_EQ(columns(s.connect), columns(connect));
    EXPECT_EQ(columns(s.output), columns(output));
    EXPECT_EQ(s.output.rows, output.rows);
}

} // namespace

TEST(ExtrusionStatus, EveryOverloadHasARow)
{
    ASSERT_EQ(TABLE.size(), overloads().size());
    for (std::size_t k = 0; k < TABLE.size(); ++k) EXPECT_EQ(TABLE[k].name, overloads()[k].name);
}

TEST(ExtrusionStatus, EachCheckAloneReportsItsCodeAndChangesNothing)
{
    for (const row& r : TABLE)
        for (int check = COORDS; check < CHECKS; ++check)
            for (int variant = 0; variant < VARIANTS; ++variant) {
                if (code(r, check) == 0) continue;
                SCOPED_TRACE(std::string(r.name) + ", " + check_name(check) + " variant " +
                             std::to_string(variant));
                state s = valid(r);
                break_argument(s, r, check, variant);
                expect_refused(r, s, code(r, check));
            }
}

TEST(ExtrusionStatus, EachCheckComesBeforeAllLaterOnes)
{
    for (const row& r : TABLE)
        for (int check = COORDS; check < CHECKS; ++check)
            for (int variant = 0; variant < VARIANTS; ++variant) {
                if (code(r, check) == 0) continue;
                SCOPED_TRACE(std::string(r.name) + ", from " + check_name(check) + " on, variant " +
                             std::to_string(variant));
                state s = valid(r);
                for (int later = check; later < CHECKS; ++later)
                    break_argument(s, r, later, later == check ? variant : 0);
                expect_refused(r, s, code(r, check));
            }
}

TEST(ExtrusionStatus, WhatAnOverloadDoesNotCheckIsNoError)
{
    for (const row& r : TABLE) {
        const bool by_size = overload_named(r.name).by_size;
        for (int check = H0; check <= PATTERN; ++check)
            for (int variant = 0; variant < VARIANTS; ++variant) {
                if (code(r, check) != 0) continue;
                SCOPED_TRACE(std::string(r.name) + ", " + check_name(check));
                ASSERT_TRUE(check == PATTERN || !by_size);
                state s = valid(r);
                break_argument(s, r, check, variant);
                EXPECT_EQ(overload_named(r.name).run(s.coords, s.connect, s.given, s.output), 0);
            }
    }
}

TEST(ExtrusionStatus, EveryAcceptedRowCountPasses)
{
    for (const row& r : TABLE)
        for (const std::size_t rows : r.coords_rows)
            for (const bool filled : {false, true}) {
                SCOPED_TRACE(std::string(r.name) + ", rows " + std::to_string(rows));
                state s = valid(r);
                s.coords = nodes(rows, 4);
                if (!filled) s.output.clear();
                EXPECT_EQ(overload_named(r.name).run(s.coords, s.connect, s.given, s.output), 0);
                EXPECT_GT(s.output.cols, 2u);
            }
}

TEST(ExtrusionStatus, AnOutputWithoutEntriesMayHaveAnyRowCount)
{
    for (const row& r : TABLE) {
        SCOPED_TRACE(r.name);
        state s = valid(r);
        s.output = support::without_columns<unsigned>(7);
        EXPECT_EQ(overload_named(r.name).run(s.coords, s.connect, s.given, s.output), 0);
        EXPECT_EQ(s.output.rows, overload_named(r.name).rows);
    }
}

TEST(ExtrusionStatus, AnEmptyLineIsNothingToDoWhateverTheRest)
{
    for (const row& r : TABLE) {
        SCOPED_TRACE(r.name);
        for (const std::size_t rows : {std::size_t(0), std::size_t(2), std::size_t(9)}) {
            state s = valid(r);
            for (int check = COORDS; check < CHECKS; ++check) break_argument(s, r, check, 1);
            s.connect = support::without_columns<unsigned>(rows);
            expect_refused(r, s, 0);
        }
        // Columns without rows.
        state s = valid(r);
        s.connect.clear();
        s.connect.cols = 3;
        expect_refused(r, s, 0);
    }
}

TEST(ExtrusionStatus, APlaneMeshStaysPlaneWhenTheLineIsEmpty)
{
    for (const row& r : TABLE) {
        SCOPED_TRACE(r.name);
        state s = valid(r);
        s.connect.clear();
        expect_refused(r, s, 0);
        EXPECT_EQ(s.coords.rows, 2u);
    }
}

TEST(ExtrusionStatus, NoLayersAreNothingToDoWhateverTheRest)
{
    for (const row& r : TABLE) {
        if (overload_named(r.name).by_size) continue;
        SCOPED_TRACE(r.name);
        state s = valid(r);
        for (int check = COORDS; check < CHECKS; ++check) break_argument(s, r, check, 0);
        s.given.translation = {{0.0, 0.0, 0.0}};
        s.given.N = 0;
        expect_refused(r, s, 0);
    }
}

TEST(ExtrudeSpiral, AFixedCountNeedsATranslationAfterRowsAndIDsHavePassed)
{
    for (const row& r : TABLE) {
        const overload& o = overload_named(r.name);
        if (o.moves != motion::spiral || o.by_size) continue;
        SCOPED_TRACE(r.name);
        for (const double length : {0.0, NOT_A_NUMBER}) {
            for (int check = COORDS; check <= CONNECT; ++check) {
                state s = valid(r);
                s.given.translation = {{0.0, length, 0.0}};
                break_argument(s, r, OUTPUT, 0);
                break_argument(s, r, check, 0);
                expect_refused(r, s, code(r, check));
            }
            state s = valid(r);
            s.given.translation = {{0.0, length, 0.0}};
            break_argument(s, r, OUTPUT, 0);
            expect_refused(r, s, -6);
        }
    }
}

TEST(ExtrudeRotateQ4, SpaceFormRefusesFourRowOutputSoASecondSweepFails)
{
    for (const char* name : {"rotate Q4 space fixed", "rotate Q4 space sized"}) {
        const overload& o = overload_named(name);
        dense2D<double> coords = nodes(3, 3);
        const dense2D<unsigned> connect = {{0, 1}, {1, 2}};
        dense2D<unsigned> output;
        EXPECT_EQ(o.run(coords, connect, {}, output), 0);
        EXPECT_EQ(output.rows, 4u);
        EXPECT_EQ(o.run(coords, connect, {}, output), o.by_size ? -8 : -3);
    }
}

TEST(ExtrudeRotateQ4, SpaceFormTurnsThreeRowOutputIntoMixedStorage)
{
    for (const char* name : {"rotate Q4 space fixed", "rotate Q4 space sized"}) {
        dense2D<double> coords = nodes(3, 3);
        dense2D<unsigned> output = {{0, 1, 2}, {2, 1, 0}};
        EXPECT_EQ(overload_named(name).run(coords, {{0, 1}}, {}, output), 0);
        ASSERT_EQ(output.rows, 4u);
        EXPECT_EQ(columns(output)[0], (std::vector<unsigned>{0, 1, 2, UNSET_ID}));
        EXPECT_EQ(columns(output)[1], (std::vector<unsigned>{2, 1, 0, UNSET_ID}));
        EXPECT_EQ(columns(output)[2], (std::vector<unsigned>{0, 1, 4, 3}));
    }
}
