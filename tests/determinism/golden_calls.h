// Calls of every function of the library on the fixed inputs, with all that they give written down.
#pragma once

#include "golden_inputs.h"

#include <cstring>
#include <map>
#include <ostream>
#include <utility>

namespace golden {

/// One number of a result.
struct entry {
    unsigned label;
    std::uint32_t index;
    bool is_real;
    std::uint64_t bits;
    /// A count of rows, columns or entries.
    bool is_shape = false;
};

inline bool operator==(const entry& a, const entry& b)
{
    return a.label == b.label && a.index == b.index && a.is_real == b.is_real && a.bits == b.bits;
}

/// What the calls gave, number by number, with a label a matrix.
class results {
public:
    /// What follows comes from this function, called on this.
    void from(const std::string& function, const std::string& on)
    {
        call = function + '\t' + on + '\t';
    }

    void add(const char* what, int number)
    {
        label(what);
        whole(0, static_cast<std::uint64_t>(std::int64_t(number)));
    }
    void add(const char* what, double number)
    {
        label(what);
        real(0, number);
    }
    template <class T>
    void add(const char* what, const vorel::dense1D<T, 8>& run)
    {
        label(what);
        shape(run.size);
        for (std::size_t i = 0; i < run.size; ++i) put(i, run[i]);
    }
    template <class T>
    void add(const char* what, const vorel::dense2D<T>& m)
    {
        label(what);
        shape(m.rows);
        shape(m.cols);
        for (std::size_t j = 0; j < m.cols; ++j)
            for (std::size_t i = 0; i < m.rows; ++i) put(j * m.rows + i, m(i, j));
    }

    /// What an argument holds that the call is going to change.
    template <class Container>
    void before(const char* what, const Container& held)
    {
        results of_it;
        of_it.add(what, held);
        inputs_of[call + what] = std::move(of_it.entries);
    }

    /// The entries that are not zero and were not there before. Shapes and statuses don't count.
    std::size_t written() const
    {
        std::size_t n = 0;
        std::size_t first = 0;
        for (std::size_t k = 0; k < entries.size(); ++k) {
            const entry& e = entries[k];
            if (k > 0 && e.label != entries[k - 1].label) first = k;
            const std::string& name = labels[e.label];
            if (e.is_shape || e.bits == 0 || name.substr(name.rfind('\t') + 1) == "status")
                continue;
            const auto held = inputs_of.find(name);
            const bool same = held != inputs_of.end() && k - first < held->second.size() &&
                              held->second[k - first].bits == e.bits;
            n += !same;
        }
        return n;
    }

    std::vector<std::string> labels;
    std::vector<entry> entries;

private:
    void shape(std::size_t number)
    {
        whole(0, number);
        entries.back().is_shape = true;
    }
    void label(const char* what) { labels.push_back(call + what); }
    void put(std::size_t index, double number) { real(index, number); }
    void put(std::size_t index, unsigned number) { whole(index, number); }
    void whole(std::size_t index, std::uint64_t number) { write(index, false, number); }
    void real(std::size_t index, double number)
    {
        // Which NaN comes out of an operation is the compiler's choice of operands.
        std::uint64_t bits = 0x7FF8000000000000u;
        if (number == number) std::memcpy(&bits, &number, sizeof(bits));
        write(index, true, bits);
    }
    void write(std::size_t index, bool is_real, std::uint64_t bits)
    {
        entries.push_back({static_cast<unsigned>(labels.size() - 1),
                           static_cast<std::uint32_t>(index), is_real, bits, false});
    }

    std::string call;
    std::map<std::string, std::vector<entry>> inputs_of;
};

inline bool operator==(const results& a, const results& b)
{
    return a.labels == b.labels && a.entries == b.entries;
}

/// All calls of one function, with its name and what tells it from functions of the same name.
struct golden_call {
    const char* function;
    void (*run)(const char* function, const inputs& in, results& out);
};

/// For the names and messages of tests.
inline void PrintTo(const golden_call& call, std::ostream* stream)
{
    *stream << call.function;
}

std::vector<golden_call> measure_calls();
std::vector<golden_call> conversion_calls();
std::vector<golden_call> extrusion_calls();
std::vector<golden_call> structured_calls();
std::vector<golden_call> interpolation_calls();
std::vector<golden_call> metric_calls();

/// All 55.
std::vector<golden_call> all_calls();

} // namespace golden
