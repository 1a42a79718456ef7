// The bucket counts of the hash tables.
#include "foundation/chained_hash.h"

namespace vorel::tessalo2d {

namespace {

constexpr unsigned PRIMES[30] = {
    13,        23,        53,        97,         193,        389,       769,      1543,
    3079,      6151,      12289,     24593,      49157,      98317,     196613,   393241,
    786433,    1572869,   3145739,   6291469,    12582917,   25165843,  50331653, 100663319,
    201326611, 402653189, 805306457, 1610612741, 3221225473, 4294967291};

} // namespace

unsigned next_prime(unsigned n)
{
    const unsigned* const last = PRIMES + 29;
    const unsigned* first = PRIMES;
    std::size_t width = 30;
    while (width > 0) {
        const std::size_t mid = width / 2;
        if (first[mid] < n) {
            first += mid + 1;
            width -= mid + 1;
        } else {
            width = mid;
        }
    }
    return first > last ? *last : *first;
}

} // namespace vorel::tessalo2d
