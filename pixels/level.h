// The level of the instruction set that a file is compiled for.
//
// The loops over pixels are compiled once for each level, into the namespace of that level: two levels must never share
// a function, since the linker would keep one of them for both. All other files see the same code in `portable`, where
// formulas work on one pixel at a time.
#pragma once

#ifndef OMBRIX_LEVEL
#define OMBRIX_LEVEL portable
#endif
