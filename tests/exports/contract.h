// An exported function and its contract as data: the arguments, and the steps that every call goes
// through before it works, in their order.
#pragma once

#include "exports/arguments.h"

#include <functional>
#include <initializer_list>
#include <optional>
#include <typeinfo>
#include <utility>

namespace exports {

/// A reason to return before any work: a check that fails, with the code of an argument, or a sign
/// that there is nothing to do, with 0.
struct step {
    std::string about;
    std::function<bool(const arguments&)> ends;
    int status;
    /// What the outputs but `coords` hold then, where it is not what their slots say.
    std::optional<state> outputs = std::nullopt;

    step leaving(state s) const
    {
        step other = *this;
        other.outputs = s;
        return other;
    }
};

step nothing_to_do(const std::string& about, std::function<bool(const arguments&)> so);
step refuse(const std::string& about, std::function<bool(const arguments&)> so, int status);

/// Nothing to do without entries, without columns, at a count of 0.
step none_if_empty(const std::string& name);
step none_without_columns(const std::string& name);
step none_at_zero(const std::string& name);

step rows(const std::string& name, std::initializer_list<std::size_t> accepted, int status);
/// Results are appended: empty, or with a row count of these.
step takes(const std::string& name, std::initializer_list<std::size_t> accepted, int status);
/// IDs of a kind of element, below the columns of `counted`.
step typed_IDs(const std::string& name, element_type type, const std::string& counted, int status);
/// Every entry an ID below the columns of `counted`, or unset.
step IDs_or_unset(const std::string& name, const std::string& counted, int status);
/// Every entry an ID below the columns of `counted`.
step listed_IDs(const std::string& name, const std::string& counted, int status);
step shape_of(const std::string& name, const std::string& other, int status);
step columns_of(const std::string& name, const std::string& other, int status);
step above_zero(const std::string& name, int status);
step pattern_checked(int status);

/// The rule that the mesh checks go by, written here once more.
bool good_IDs(const IDs& m, element_type type, std::size_t bound);
bool good_or_unset(const picture& m, std::size_t bound);
bool good_list(const ID_list& v, std::size_t bound);
/// Rows of a matrix of that kind of element; nothing for a code outside the table.
std::optional<std::size_t> rows_of_type(element_type type);

struct exported {
    /// With the types of its arguments, as a list of symbols shows it.
    std::string signature;
    std::vector<slot> slots;
    std::vector<step> steps;
    /// The result for the valid arguments.
    int status;
    /// Makes larger arguments of the valid ones, for which storage grows many times.
    std::function<void(arguments&)> enlarge = [](arguments&) {};
    /// False where the docstring promises that nothing is allocated.
    bool allocates = true;
    /// The least result of a call that got to work.
    int least = 0;
    std::function<int(arguments&)> run = nullptr;

    /// The step at which a call with these arguments ends; null if it gets to work.
    const step* first_end(const arguments& a) const;
};

std::string signature_of(const std::string& name, const std::type_info& function);

/// A row of the table for the overload with the argument types `A`.
template <class... A>
struct overload {
    static exported row(const std::string& name, int (*f)(A...), std::vector<slot> slots,
                        std::vector<step> steps, int status = 0)
    {
        exported e{signature_of(name, typeid(int(A...))), std::move(slots), std::move(steps),
                   status};
        e.run = [f](arguments& a) { return call(f, a, std::index_sequence_for<A...>()); };
        return e;
    }

private:
    template <std::size_t... K>
    static int call(int (*f)(A...), arguments& a, std::index_sequence<K...>)
    {
        return f(std::get<std::decay_t<A>>(a[K])...);
    }
};

} // namespace exports
