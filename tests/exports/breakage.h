// Ways to put an argument at the boundary of what is allowed, and beyond.
#pragma once

#include "exports/contract.h"

namespace exports {

struct breakage {
    /// Of the argument.
    std::size_t place;
    std::string about;
    std::function<void(arguments&)> apply;
    /// Can ask for more storage than there is.
    bool wild = false;
};

/// Every way that the kinds of the slots allow: each row count from 0 to 10, no column, one column
/// fewer and more, each slot of a column unset, at the bound and just below it, numbers at their
/// ends. They can be combined.
std::vector<breakage> breakages(const exported& e);

/// The smallest valid mesh: one element.
void keep_one_element(arguments& a);

/// All matrices and lists without entries, those of ID matrices with their rows or without.
void empty_all(arguments& a, bool keep_rows);

/// What IDs in a slot are to be below, as the arguments stand.
unsigned bound_of(const arguments& a, const slot& s);

} // namespace exports
