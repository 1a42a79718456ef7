// The one export macro: what carries it is visible in the shared library, everything else is not.
#pragma once

#if defined(__GNUC__)
#define VOREL_API __attribute__((visibility("default")))
#else
#define VOREL_API
#endif
