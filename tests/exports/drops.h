// The places where a refused request costs an element and not the call.
#pragma once

#include "exports/contract.h"

namespace exports {

/// A call as it is compared: its status and what its arguments then hold.
struct result {
    int status;
    std::vector<picture> after;
};

/// A list that grows inside the call has no room for an element; the call goes on, succeeds, and
/// its result differs from that of an undisturbed call in this and nothing else.
struct drop {
    /// The functions, by the beginnings of their names.
    std::vector<std::string> functions;
    std::string what_is_lost;
    /// `fresh` are the arguments before the call.
    std::function<bool(const exported& e, const arguments& fresh, const result& got,
                       const result& undisturbed)>
        shows;
};

const std::vector<drop>& drops();

/// The drop of the function that explains the result; null if none does.
const drop* drop_that_shows(const exported& e, const arguments& fresh, const result& got,
                            const result& undisturbed);

} // namespace exports
