// frei0r's own header, which is of C and leaves it open what a library shows.
#pragma once

#pragma GCC visibility push(default)
extern "C" {
#include <frei0r.h>
}
#pragma GCC visibility pop
