/* The interface in the oldest C. */
#include <ombrix/ombrix.h>

const char* Version(void);
const char* Version(void) { return ombrix_version(); }
