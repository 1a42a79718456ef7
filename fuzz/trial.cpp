#include "fuzz/trial.h"

#include "fuzz/allocator.h"
#include "fuzz/placement.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

namespace fuzz {

namespace {

struct {
    const char* name = "";
    const char* circumstances = "";
    int status = 0;
    const arguments* given = nullptr;
} current;

/// The shapes of all views that are not without rows and columns, and the numbers.
void describe(const arguments& a)
{
    each_view(a, [](const auto& v, view k) {
        const shape s = shape_of(v);
        if (s.cols != 0 || (s.rows != 0 && k < VALUES))
            std::fprintf(stderr, "  %s: %zu x %zu\n", name_of(k), s.rows, s.cols);
    });
    std::fprintf(stderr, "  counts: %u %u %u, choice: %d, flag: %d\n  reals:", a.count[0],
                 a.count[1], a.count[2], a.choice, a.flag);
    for (const double x : a.real) std::fprintf(stderr, " %g", x);
    std::fprintf(stderr, "\n");
}

struct outcome {
    int status;
    bool refused;
};

outcome attempt(const call& c, arguments& a, unsigned char fill, refusal kind = refusal::none,
                std::size_t k = 0)
{
    const allocator_rules rules(fill, kind, k);
    const int status = c.run(a);
    current.status = status;
    return {status, rules.refused()};
}

const role* role_of(const call& c, view v)
{
    for (const auto& [output, what] : c.outputs)
        if (output == v) return &what;
    return nullptr;
}

bool is_well_formed(const shape& s, std::size_t capacity)
{
    return s.is_empty() || (s.ld >= s.rows && s.offset + s.extent() <= capacity);
}

void check_views(const arguments& a)
{
    each_view(a, [](const auto& v, view) {
        const shape s = shape_of(v);
        promise(is_well_formed(s, v.block->capacity), "a view reaches beyond its block");
        promise(s.is_empty() || v.size == s.extent(),
                "the size of a view is not that of its shape");
    });
}

void check_status(const call& c, const arguments& before, const outcome& o)
{
    const int failure = c.first_failure(before);
    if (o.status == -199 && (o.refused || failure == 0)) {
        promise(o.refused || c.may_exceed, "-199 though nothing was refused");
        return;
    }
    if (failure < 0) {
        promise(o.status == failure, "not the status of the first failed check");
    } else {
        promise(c.kind != returns::zero || o.status == 0, "neither 0 nor -199");
        promise(c.kind != returns::count || o.status >= 0, "neither a count nor -199");
        promise(c.kind != returns::tally || o.status > -199, "below -199");
    }
}

template <class View>
void check_output(role what, const View& before, const View& after, int status, bool failed)
{
    const bool as_before = same_entries(before, after);
    const shape s = shape_of(before);
    const shape t = shape_of(after);
    const bool out_of_memory = status == -199;
    switch (what) {
    case role::appends:
    case role::widens:
        promise(begins_with(after, before), "old columns have changed");
        promise(!out_of_memory || t.cols == s.cols || t.is_empty(), "columns stay after -199");
        promise(!failed || as_before, "an output has changed though a check failed");
        break;
    case role::appends_some:
        promise(begins_with(after, before), "old columns have changed");
        promise(!failed || as_before, "an output has changed though a check failed");
        break;
    case role::edits:
        promise(!(failed || out_of_memory) || as_before, "changed though the call failed");
        break;
    case role::replaces:
        promise(!out_of_memory || t.is_empty(), "not emptied by -199");
        break;
    case role::replaces_self:
        promise(!out_of_memory || t.is_empty() || as_before, "neither emptied nor kept by -199");
        break;
    }
}

/// What must hold whatever the layout, and when an allocation was refused, too.
void check_outcome(const call& c, const arguments& before, const arguments& after, const outcome& o)
{
    check_views(after);
    check_status(c, before, o);
    const bool failed = o.status < 0 && o.status != -199 && c.first_failure(before) < 0;
    each_pair(before, after, [&](const auto& old, const auto& now, view v) {
        if (const role* const what = role_of(c, v))
            check_output(*what, old, now, o.status, failed);
        else
            promise(same_entries(old, now), "an input has changed");
    });
    if (!o.refused) c.verify(before, after, o.status);
}

void check_surroundings(const call& c, const placement& p)
{
    each_view(p.placed, [&](const auto&, view v) {
        const role* const what = role_of(c, v);
        if (!what) {
            promise(p.is_untouched(v), "the block of an input has changed");
            return;
        }
        const bool keeps_gaps =
            *what == role::appends || *what == role::appends_some || *what == role::edits;
        promise(p.has_kept_surroundings(v, keeps_gaps), "written beside an output");
    });
}

void compare(const call& c, const arguments& plain, const arguments& other)
{
    each_pair(plain, other, [&](const auto& a, const auto& b, view v) {
        if (role_of(c, v)) promise(same_entries(a, b), "the result depends on the layout");
    });
    promise(same(plain.real_out, other.real_out), "the number depends on the layout");
}

void try_layout(const call& c, input& in, const arguments& given, const arguments& plain,
                const outcome& expected)
{
    current.circumstances = "placed with gaps and offsets";
    placement p(in, given);
    const outcome o = attempt(c, p.placed, 0x3C);
    check_outcome(c, given, p.placed, o);
    check_surroundings(c, p);
    if (o.refused || expected.refused) return;
    promise(o.status == expected.status, "the status depends on the layout");
    if (o.status != -199) compare(c, plain, p.placed);
}

void try_refusal(const call& c, input& in, const arguments& given)
{
    current.circumstances = "with a refused allocation";
    placement p(in, given);
    const refusal kind = in.chance(50) ? refusal::once : refusal::for_good;
    const outcome o = attempt(c, p.placed, 0x3C, kind, in.below(12));
    check_outcome(c, given, p.placed, o);
    check_surroundings(c, p);
}

void try_shared(const call& c, input& in, const arguments& given)
{
    current.circumstances = "with views of one block";
    arguments a = dense_copy(given);
    share(in, a);
    const outcome o = attempt(c, a, 0x3C);
    check_views(a);
    const bool known = std::count(c.failures.begin(), c.failures.end(), o.status) > 0;
    const bool good = c.kind == returns::zero    ? o.status == 0
                      : c.kind == returns::count ? o.status >= 0
                                                 : o.status > -199;
    promise(known || good || o.status == -199, "a status that the function does not have");
}

enum class circumstance { layout, refusal, sharing };

/// What the shares of 5, 2 and 2 in 9 choose.
circumstance read_circumstance(input& in)
{
    const unsigned k = in.below(9);
    return k < 5 ? circumstance::layout : k < 7 ? circumstance::refusal : circumstance::sharing;
}

/// A call and what an input made of its arguments; `in` goes on behind them.
class trial {
public:
    trial(const call& chosen, input& in) : c(chosen)
    {
        c.prepare(in, given);
        given.tame = in.is_tame();
        current = {c.name, "in dense matrices", 0, &given};
        plain = dense_copy(given);
        expected = attempt(c, plain, 0xA7);
        check_outcome(c, given, plain, expected);
    }
    trial(const trial&) = delete;
    trial& operator=(const trial&) = delete;
    ~trial() { current.given = nullptr; }

    void under(circumstance what, input& in) const
    {
        if (what == circumstance::layout)
            try_layout(c, in, given, plain, expected);
        else if (what == circumstance::refusal || !c.takes_shared)
            try_refusal(c, in, given);
        else
            try_shared(c, in, given);
    }

    bool passed_checks() const { return expected.status != -199 && c.first_failure(given) == 0; }

private:
    const call& c;
    arguments given;
    arguments plain;
    outcome expected;
};

const call& read_call(input& in, const std::vector<call>& calls)
{
    return calls[in.below(static_cast<unsigned>(calls.size()))];
}

} // namespace

void infringed(const char* what)
{
    std::fprintf(stderr, "%s, %s, status %d: %s\n", current.name, current.circumstances,
                 current.status, what);
    if (current.given) describe(*current.given);
    std::abort();
}

void run(const std::vector<call>& calls, const std::uint8_t* bytes, std::size_t count)
{
    const std::size_t live = live_blocks();
    {
        input in(bytes, count);
        const call& c = read_call(in, calls);
        const circumstance chosen = read_circumstance(in);
        trial(c, in).under(chosen, in);
    }
    promise(live_blocks() == live, "storage leaked");
}

bool run_in_all(const std::vector<call>& calls, const std::uint8_t* bytes, std::size_t count)
{
    const std::size_t live = live_blocks();
    bool passed = false;
    {
        input in(bytes, count);
        const call& c = read_call(in, calls);
        read_circumstance(in);
        const trial t(c, in);
        for (const circumstance each :
             {circumstance::layout, circumstance::refusal, circumstance::sharing}) {
            input behind = in;
            t.under(each, behind);
        }
        passed = t.passed_checks();
    }
    promise(live_blocks() == live, "storage leaked");
    return passed;
}

std::size_t run_each(const std::vector<call>& calls)
{
    constexpr std::uint8_t seeds = 40;
    std::size_t inputs = 0;
    for (std::size_t k = 0; k < calls.size(); ++k) {
        bool passed = false;
        for (std::uint8_t seed = 0; seed < seeds; ++seed, ++inputs) {
            // Two tame moods and the scale 1; then the position in the table.
            const std::uint8_t bytes[] = {seed, 0, 8, static_cast<std::uint8_t>(k)};
            passed = run_in_all(calls, bytes, sizeof bytes) || passed;
        }
        current = {calls[k].name, "on tame arguments", 0, nullptr};
        promise(passed, "none of them passes the checks");
    }
    return inputs;
}

} // namespace fuzz
