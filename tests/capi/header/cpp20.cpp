// The interface beside the library in C++.
#include <ombrix/host.h>
#include <ombrix/ombrix.h>

static_assert(OMBRIX_OK == 0);
