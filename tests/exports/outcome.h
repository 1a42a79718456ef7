// What must hold after a call of any exported function.
#pragma once

#include "exports/contract.h"

namespace exports {

/// Expects the inputs to be as they were and each output to be in the state that its slot says for
/// that status. `before` are the pictures of the arguments before the call; `end` is the step at
/// which the contract ends the call, null if it gets to work.
void expect_outcome(const exported& e, const std::vector<picture>& before, const arguments& after,
                    const step* end, int status, const std::string& told);

/// Expects the inputs to be as they were after an exception, and the outputs to be matrices and
/// lists: what they hold is promised by few slots.
void expect_outcome_of_exception(const exported& e, const std::vector<picture>& before,
                                 const arguments& after, const std::string& told);

/// True if the first columns of `after` are those of `before`, as far as both have them.
bool keeps_columns(const picture& before, const picture& after);

/// Names the arguments whose pictures differ.
std::string differences(const exported& e, const std::vector<picture>& a,
                        const std::vector<picture>& b);

} // namespace exports
