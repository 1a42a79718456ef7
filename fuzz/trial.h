// Runs one call of the library on arguments that an input describes, and holds it to its contract:
// the status, what may change and what not, the same result from any layout, and what the family
// promises besides.
#pragma once

#include "fuzz/arguments.h"
#include "fuzz/input.h"

#include <functional>
#include <utility>
#include <vector>

namespace fuzz {

/// What a call does with a view. All others are inputs.
enum class role {
    appends,      ///< keeps its columns; as before when the call fails
    appends_some, ///< keeps its columns; after a refused allocation new ones may stay
    widens,       ///< as `appends`, and may use the gap behind its rows for another one
    edits,        ///< entries change in place; as before when the call fails
    replaces,     ///< gets a new content; empty after a refused allocation
    replaces_self ///< as above; or still the old content, since it is an input, too
};

/// The statuses of a call whose arguments pass all checks.
enum class returns {
    zero,
    count, ///< 0 or more
    tally  ///< any above -199 (kept: callers rely on it)
};

struct call {
    const char* name;
    returns kind;
    /// The negative statuses of checks, in order.
    std::vector<int> failures;
    std::vector<std::pair<view, role>> outputs;
    std::function<void(input&, arguments&)> prepare;
    std::function<int(arguments&)> run;
    /// The status of the first check that fails, worked out from the arguments; 0 when none does.
    std::function<int(const arguments&)> first_failure;
    /// Promises of the function, called whenever no allocation was refused.
    std::function<void(const arguments& before, const arguments& after, int status)> verify;
    /// False for a function that does not take views of one block.
    bool takes_shared = true;
    /// True for one whose sizes or IDs can be out of range: -199 though nothing was refused.
    bool may_exceed = false;
};

/// Prints the call, its circumstances and `what`, and aborts.
[[noreturn]] void infringed(const char* what);

/// Ends the program unless the promise holds.
inline void promise(bool holds, const char* what)
{
    if (!holds) infringed(what);
}

/// The table of the family; each program has one.
const std::vector<call>& family();

/// One input: the bytes choose one of the calls, its arguments and the circumstances.
void run(const std::vector<call>& calls, const std::uint8_t* bytes, std::size_t count);

/// One input under all circumstances, not only those that it chooses; whether its arguments passed
/// the checks of the call.
bool run_in_all(const std::vector<call>& calls, const std::uint8_t* bytes, std::size_t count);

/// Every call of the table on tame arguments, of which some pass its checks; the number of inputs.
std::size_t run_each(const std::vector<call>& calls);

} // namespace fuzz
