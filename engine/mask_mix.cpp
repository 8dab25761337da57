#include "engine/mask_mix.h"

#include "engine/instruction_level.h"
#include "engine/word_kernel.h"

namespace ombrix {
namespace {

/// For each byte of a block, what is added to its effect's weight of 255 at most: 1 where the mask pixel is black.
class BlackPixels {
  public:
    BlackPixels(const std::uint8_t* mask, const WordFormat& format) {
        for (int x = 0; x < kBlockPixels; ++x) {
            const bool isBlack = (LoadWord(mask + 4 * x) & ~format.fourthMask) == 0;
            StoreWord(units_ + 4 * x, isBlack ? 0x00010001u : 0u);
        }
    }
    Lane At(Place place) const { return {LoadUnit(units_ + 2 * place.unit)}; }

  private:
    alignas(kBlockBytes) std::uint8_t units_[kBlockBytes];
};

void MixByMask(const void* /*formula*/, const WordPixels& pixelsOfCall) {
    RunAtBestLevel([&pixelsOfCall] {
        const WordPixels pixels = pixelsOfCall;
        const WordFormat format{PixelFormat(4)};
        ForEachByte<Roles{.fill = true, .mask = true}>(pixels, format, [&format](const WordPixels& block) {
            const BlackPixels black(block.mask, format);
            return [black, fill = block.fill, mask = block.mask](Place place, Lane source) {
                const Lane weight = ByteAt(mask, place);
                return (source * weight + ByteAt(fill, place) * (255 - weight + black.At(place))) >> 8;
            };
        });
    });
}

}  // namespace

const WordKernel kMaskMix{MixByMask};

}  // namespace ombrix
