#include "call.h"

#include <string>

namespace tessalo2d_python {

void raise_for_status(int status, const char* function, std::initializer_list<refusal> refusals)
{
    if (status == -199) {
        PyErr_Format(PyExc_MemoryError, "%s: out of memory or of node IDs", function);
        throw py::error_already_set();
    }
    std::string text = "argument " + std::to_string(-status) + " was refused";
    for (const refusal& known : refusals)
        if (known.status == status) text = known.text;
    throw py::value_error(std::string(function) + ": " + text + " (status " +
                          std::to_string(status) + ")");
}

} // namespace tessalo2d_python
