#include "bench/picture_set.h"

#include <cstring>
#include <memory>

#include "bench/copy_pace.h"
#include "bench/picture_content.h"

namespace ombrix::bench {

PictureSet::PictureSet(Size size, int bits)
    : source(size, bits),
      original(size, bits),
      fill(size, bits),
      mask(size, bits),
      destination(size, bits),
      scratch(size, bits) {
    PaintPhoto(original, 1);
    PaintPhoto(fill, 2);
    PaintMask(mask);
    RestoreSource();
}

void PictureSet::RestoreSource() const { std::memcpy(source.Bytes(), original.Bytes(), original.ByteCount()); }

void PictureSet::CopySource(int tasks) const { Copy(scratch.Bytes(), source.Bytes(), source.ByteCount(), tasks); }

PictureSet& Pictures(Size size, int bits) {
    static std::unique_ptr<PictureSet> set;
    if (!set || set->source.Extent() != size || set->source.BytesPerPixel() != bits / 8) {
        set.reset();
        set = std::make_unique<PictureSet>(size, bits);
    }
    return *set;
}

}  // namespace ombrix::bench
