// Prints what every function gives on the fixed inputs, one number a line: function, input, output
// and index, then a real number in hexadecimal or a whole one. Two builds that agree print the same.
#include "golden_calls.h"

#include <cinttypes>
#include <cstdio>

int main()
{
    const golden::inputs in = golden::make_inputs();
    for (const golden::golden_call& call : golden::all_calls()) {
        golden::results out;
        call.run(call.function, in, out);
        for (const golden::entry& e : out.entries) {
            const char* const label = out.labels[e.label].c_str();
            double real;
            std::memcpy(&real, &e.bits, sizeof(real));
            if (e.is_real)
                std::printf("%s[%" PRIu32 "]\t%a\n", label, e.index, real);
            else
                std::printf("%s[%" PRIu32 "]\t%" PRId64 "\n", label, e.index,
                            static_cast<std::int64_t>(e.bits));
        }
    }
    return std::fflush(stdout) == 0 && !std::ferror(stdout) ? 0 : 1;
}
