// The arguments of any exported function as a record of named values, so that tests over all of
// them are loops.
#pragma once

#include <vorel/tessalo2d.h>

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace exports {

using namespace vorel;

using reals = dense2D<double>;
using IDs = dense2D<unsigned>;
using real_list = dense1D<double, 8>;
using ID_list = dense1D<unsigned, 8>;
using vector2 = vector_fixed<double, 2>;
using vector3 = vector_fixed<double, 3>;

using value = std::variant<reals, IDs, real_list, ID_list, vector2, vector3, double, unsigned, int,
                           bool, element_type>;

/// What the entries of an argument are, which says how it can be broken.
enum class kind {
    coordinates,
    field,
    nodes,    ///< IDs of nodes: a connectivity or a list
    elements, ///< IDs of elements: neighbors, one element of each node
    count,
    size,    ///< a wanted edge length
    measure, ///< any other number or vector
    choice,  ///< a small number that selects a way
    flag,
    type
};

enum class flow {
    in,
    changed,  ///< rewritten in place
    replaced, ///< what it held does not matter
    grown     ///< results are appended
};

/// What an output holds after a call that made no result.
enum class state {
    unchanged,
    emptied,
    zeros,
    columns_back, ///< its columns are those from before, perhaps with fewer or more rows
    extended,     ///< the columns from before, and perhaps new ones
    unchanged_or_emptied
};

struct slot {
    std::string name;
    kind what;
    flow direction;
    value valid;
    /// After a failed check, or when there is nothing to do.
    state refused = state::unchanged;
    /// After -199.
    state exhausted = state::unchanged;
    /// After `std::bad_alloc`, where that is promised.
    std::optional<state> thrown = std::nullopt;
    /// Rows that the call may use on the way, beyond those before and after.
    std::size_t rows_on_the_way = 0;
    /// Some lists of boundary nodes take columns away (kept: callers rely on it).
    bool may_shrink = false;
};

/// Rows and columns; a list is one row, a single value 1 x 1.
struct extent {
    std::size_t rows;
    std::size_t cols;
};
extent extent_of(const value& v);

/// A value as it can be compared: its shape and the bits of its entries, column after column.
struct picture {
    std::size_t rows;
    std::size_t cols;
    std::vector<std::uint64_t> bits;
    friend bool operator==(const picture& a, const picture& b)
    {
        return a.rows == b.rows && a.cols == b.cols && a.bits == b.bits;
    }
    std::uint64_t operator()(std::size_t i, std::size_t j) const { return bits[j * rows + i]; }
};
picture picture_of(const value& v);

/// A deep copy with ld equal to the rows.
value copy_of(const value& v);

/// True if the entries of a view lie in its storage.
bool is_well_formed(const value& v);

/// One value for each slot. Copies are deep.
class arguments {
public:
    explicit arguments(const std::vector<slot>& all) : slots(&all)
    {
        for (const slot& s : all) values.push_back(copy_of(s.valid));
    }
    arguments(const arguments& other) : slots(other.slots)
    {
        for (const value& v : other.values) values.push_back(copy_of(v));
    }
    arguments& operator=(const arguments&) = delete;

    std::size_t count() const { return values.size(); }
    const slot& about(std::size_t k) const { return (*slots)[k]; }
    value& operator[](std::size_t k) { return values[k]; }
    const value& operator[](std::size_t k) const { return values[k]; }
    value& operator[](const std::string& name) { return values[place(name)]; }
    const value& operator[](const std::string& name) const { return values[place(name)]; }

    bool has(const std::string& name) const;
    template <class T>
    T& get(const std::string& name)
    {
        return std::get<T>((*this)[name]);
    }
    template <class T>
    const T& get(const std::string& name) const
    {
        return std::get<T>((*this)[name]);
    }
    std::size_t rows(const std::string& name) const { return extent_of((*this)[name]).rows; }
    std::size_t cols(const std::string& name) const { return extent_of((*this)[name]).cols; }

    std::vector<picture> pictures() const;

private:
    std::size_t place(const std::string& name) const;

    const std::vector<slot>* slots;
    std::vector<value> values;
};

} // namespace exports
