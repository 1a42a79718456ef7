// How the examples read a status: 0 is success, -k names the argument that failed its check, -199
// is a lack of memory, and what is above 0 is a count.
#pragma once

#include <cstdio>
#include <cstdlib>

/// Passes a status on that is no failure; otherwise the program says what went wrong and ends.
inline int check_status(int status, const char* call)
{
    if (status >= 0) return status;
    if (status == -199)
        std::fprintf(stderr, "%s: out of memory\n", call);
    else
        std::fprintf(stderr, "%s: argument %d failed its check\n", call, -status);
    std::exit(EXIT_FAILURE);
}
