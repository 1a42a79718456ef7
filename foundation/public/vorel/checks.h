// The mesh checks that every exported function makes on its arguments.
#pragma once

#include <vorel/dense2D.h>
#include <vorel/element_type.h>

namespace vorel::tessalo {

/// True if `connect` has a row count that `type` allows and every entry is a node ID below `n`, or
/// `UNSET_ID` where the storage form allows it. `ELEMENT_ANY_FACE` takes 3 rows, or 4 rows of which
/// row 3 may be `UNSET_ID` (the column is then a triangle); every other kind takes exactly its
/// node count of rows and no `UNSET_ID`. An empty matrix is true for any type; a code outside the
/// table is false for any other. With `n` 0xFFFFFFFF only the rows and the place of `UNSET_ID`
/// are tested. O(E), reads each entry once.
VOREL_API bool check_IDs(const dense2D<unsigned>& connect, element_type type, unsigned n);

/// True if every entry is below `n` or `UNSET_ID`; any row count. O(rows * cols).
VOREL_API bool check_IDs(const dense2D<unsigned>& m, unsigned n);

/// True if every entry is below `n`; `UNSET_ID` does not pass. O(size).
VOREL_API bool check_IDs(const dense1D<unsigned, 8>& v, unsigned n);

} // namespace vorel::tessalo
