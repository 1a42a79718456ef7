#include "exports/outcome.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace exports {

namespace {

bool is_empty(const picture& p)
{
    return p.bits.empty();
}

bool is_in(state s, const picture& before, const picture& after, std::size_t elements)
{
    switch (s) {
    case state::unchanged:
        return before == after;
    case state::emptied:
        return after.cols == 0;
    case state::zeros:
        // A result is one number; lists have one entry for each element.
        return (after.cols == elements || before.cols == 1) &&
               std::all_of(after.bits.begin(), after.bits.end(),
                           [](std::uint64_t b) { return b == 0; });
    case state::columns_back:
        if (is_empty(before)) return is_empty(after);
        return after.cols == before.cols && keeps_columns(before, after);
    case state::extended:
        return after.cols >= before.cols && keeps_columns(before, after);
    case state::unchanged_or_emptied:
        return before == after || after.cols == 0;
    }
    return false;
}

} // namespace

bool keeps_columns(const picture& before, const picture& after)
{
    const std::size_t rows = std::min(before.rows, after.rows);
    const std::size_t cols = std::min(before.cols, after.cols);
    for (std::size_t j = 0; j < cols; ++j)
        for (std::size_t i = 0; i < rows; ++i)
            if (before(i, j) != after(i, j)) return false;
    return true;
}

void expect_outcome(const exported& e, const std::vector<picture>& before, const arguments& after,
                    const step* end, int status, const std::string& told)
{
    const bool exhausted = !end && status == -199;
    if (end)
        EXPECT_EQ(status, end->status) << e.signature << "\n  " << told << ": " << end->about;
    else
        EXPECT_TRUE(exhausted || status >= e.least)
            << e.signature << "\n  " << told << ": status " << status;
    const std::size_t elements = after.has("connect") ? after.cols("connect") : 0;
    for (std::size_t k = 0; k < e.slots.size(); ++k) {
        const slot& s = e.slots[k];
        const picture now = picture_of(after[k]);
        if (s.direction == flow::in) {
            EXPECT_TRUE(now == before[k])
                << e.signature << "\n  " << told << ": input " << s.name << " changed";
            continue;
        }
        if (!end && !exhausted) {
            const bool complete = is_empty(before[k]) || s.may_shrink || now.cols >= before[k].cols;
            EXPECT_TRUE(s.direction != flow::grown || (complete && keeps_columns(before[k], now)))
                << e.signature << "\n  " << told << ": " << s.name << " lost what it held";
            continue;
        }
        const bool own = !end || !end->outputs || s.what == kind::coordinates;
        const state wanted = exhausted ? s.exhausted : own ? s.refused : *end->outputs;
        EXPECT_TRUE(is_in(wanted, before[k], now, elements))
            << e.signature << "\n  " << told << ": " << s.name << " after " << status << " is "
            << now.rows << " x " << now.cols << ", was " << before[k].rows << " x "
            << before[k].cols;
    }
}

void expect_outcome_of_exception(const exported& e, const std::vector<picture>& before,
                                 const arguments& after, const std::string& told)
{
    for (std::size_t k = 0; k < e.slots.size(); ++k) {
        const slot& s = e.slots[k];
        EXPECT_TRUE(is_well_formed(after[k])) << e.signature << "\n  " << told << ": " << s.name;
        const std::optional<state> wanted = s.direction == flow::in ? state::unchanged : s.thrown;
        EXPECT_TRUE(!wanted || is_in(*wanted, before[k], picture_of(after[k]), 0))
            << e.signature << "\n  " << told << ": " << s.name << " after an exception";
    }
}

std::string differences(const exported& e, const std::vector<picture>& a,
                        const std::vector<picture>& b)
{
    std::string names;
    for (std::size_t k = 0; k < e.slots.size(); ++k)
        if (!(a[k] == b[k])) names += (names.empty() ? "" : ", ") + e.slots[k].name;
    return names;
}

} // namespace exports
