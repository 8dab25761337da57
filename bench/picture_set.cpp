#include "bench/picture_set.h"

#include <cstring>
#include <memory>

#include "bench/cold_caches.h"

namespace ombrix::bench {
namespace {

std::unique_ptr<ColdCaches> cold_caches;  // or null

}  // namespace

void UseColdCaches() { cold_caches = std::make_unique<ColdCaches>(); }

PictureSet::PictureSet(Size size, int bits)
    : source(size, bits),
      original(size, bits),
      fill(size, bits),
      mask(size, bits),
      destination(size, bits),
      content_(Content::Photo) {
    PaintMask(mask);
    bench::Paint(original, content_, 1);
    bench::Paint(fill, content_, 2);
}

void PictureSet::Paint(Content content) {
    if (content == content_) return;
    bench::Paint(original, content, 1);
    bench::Paint(fill, content, 2);
    content_ = content;
}

void PictureSet::Prepare() const {
    std::memcpy(source.Bytes(), original.Bytes(), original.ByteCount());
    if (cold_caches) cold_caches->Evict();
}

PictureSet& Pictures(Size size, int bits, Content content) {
    static std::unique_ptr<PictureSet> set;
    if (!set || set->source.Extent() != size || set->source.BytesPerPixel() != bits / 8) {
        set.reset();
        set = std::make_unique<PictureSet>(size, bits);
    }
    set->Paint(content);
    set->Prepare();
    return *set;
}

}  // namespace ombrix::bench
