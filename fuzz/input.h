// Bytes read as choices, IDs and numbers. The bytes come first; behind the last one a generator
// that they seed goes on, so that a file of a few bytes stands for a whole mesh.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>

namespace fuzz {

class input {
public:
    /// The first bytes decide the moods: how often IDs and numbers are wild, and the scale.
    input(const std::uint8_t* bytes, std::size_t count);

    std::uint8_t byte();
    std::uint32_t word();

    /// A number below `n`; 0 when `n` is 0.
    unsigned below(unsigned n);

    /// True about `percent` times in a hundred.
    bool chance(unsigned percent) { return below(100) < percent; }

    template <class T>
    T pick(std::initializer_list<T> values)
    {
        return values.begin()[below(static_cast<unsigned>(values.size()))];
    }

    /// An ID below `bound`, or in a wild mood anything: the bound, beyond, unset.
    unsigned id(std::size_t bound);

    /// An ID that most likely no check lets pass.
    unsigned wild_id(std::size_t bound);

    /// A point on a coarse lattice, in the scale of this input; in a wild mood any double.
    double real() { return real_at(static_cast<int>(below(5)) - 1); }
    double real_at(int point);

    /// True in the share of cases in which IDs of this input are wild.
    bool wild_id_mood() { return wild(id_mood); }

    /// NaN, infinities, and numbers whose squares, sums or quotients leave the range.
    double wild_real();

    /// A real that is wild in the given share of cases, and otherwise small, without scale.
    double small_real(unsigned wild_percent);

    /// A count: mostly small, sometimes near 2^31 or 2^32.
    unsigned count(unsigned usual);

    /// A number of rows: mostly one of the usual ones, sometimes any from 0 to 10.
    std::size_t rows(std::initializer_list<std::size_t> usual);

    /// True when all reals are small multiples of one unit: sums and products of few are exact.
    bool is_tame() const { return real_mood == mood::tame && exact; }

private:
    enum class mood { tame, some, many };
    mood read_mood();
    bool wild(mood m);

    const std::uint8_t* next;
    const std::uint8_t* end;
    std::uint64_t state;
    mood id_mood = mood::tame;
    mood real_mood = mood::tame;
    double scale = 1.0;
    double spread = 0.0;
    bool exact = true;
};

} // namespace fuzz
