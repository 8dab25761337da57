// A colour, and where its channels lie in the bytes of a pixel.
#pragma once

#include "pixels/level.h"

namespace ombrix {

/// The byte of each channel within a pixel of 4 bytes, and that of the fourth, which effects leave alone.
struct PixelFormat {
    int red;
    int green;
    int blue;
    int fourth;
};

inline namespace OMBRIX_LEVEL {

/// A value for each channel. Colours are from 0 to 255.
template <class T>
struct Rgb {
    T red;
    T green;
    T blue;
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
