// The version text.
#include <vorel/tessalo2d.h>

namespace vorel::tessalo2d {

const char* version()
{
    return "5.1.0.0";
}

} // namespace vorel::tessalo2d
