// The pictures that rows share.
#pragma once

#include "bench/bench_picture.h"

namespace ombrix::bench {

/// All of one size and depth.
struct PictureSet {
    PictureSet(Size size, int bits);

    /// Gives `source` its content back, after work in place.
    void RestoreSource() const;
    /// The yardstick: copies the source's pixels to where nothing else works.
    void CopySource(int tasks) const;

    BenchPicture source;
    BenchPicture original;  ///< what `source` was in the beginning
    BenchPicture fill;
    BenchPicture mask;
    BenchPicture destination;
    BenchPicture scratch;
};

/// The set of that size and depth. It is kept until another is asked for: two at a time would take much memory.
PictureSet& Pictures(Size size, int bits);

}  // namespace ombrix::bench
