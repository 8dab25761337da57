// The pictures that lines share.
#pragma once

#include "bench/bench_picture.h"
#include "bench/picture_content.h"

namespace ombrix::bench {

/// All of one size and depth.
struct PictureSet {
    PictureSet(Size size, int bits);

    /// Gives source and fill this content.
    void Paint(Content content);
    /// Gives `source` its content back. With cold caches, empties them too.
    void Prepare() const;

    BenchPicture source;
    BenchPicture original;  ///< what `source` is restored from
    BenchPicture fill;
    BenchPicture mask;
    BenchPicture destination;

  private:
    Content content_;
};

/// Whether pictures come from memory: off unless this is called. Else caches of some hundred megabytes hold the
/// pictures from one piece of work to the next.
void UseColdCaches();

/// The set of that size and depth, with that content, prepared. It is kept until another size or depth is asked for:
/// two sets would take much memory.
PictureSet& Pictures(Size size, int bits, Content content = Content::Photo);

}  // namespace ombrix::bench
