#include "engine/mask_mix.h"

#include "engine/instruction_level.h"
#include "engine/word_kernel.h"

namespace ombrix {
namespace {

void MixByMask(const void* /*formula*/, const WordPixels& pixelsOfCall) {
    RunAtBestLevel([&pixelsOfCall] {
        const WordPixels pixels = pixelsOfCall;
        const WordFormat format;
        static constexpr Roles roles{.fill = true, .mask = true};
        ForEachRun<roles, kRun>(pixels, [&format](const WordPixels& run) {
            // Where the mask is black, the effect's weight is 256.
            const PixelWeights black(run.mask, run.count, [colours = ~format.fourthMask](std::uint32_t mask) {
                return (mask & colours) == 0 ? 1u : 0u;
            });
            ForEachByte<roles>(run, format, [&black](const WordPixels& block, std::int64_t first) {
                return [isBlack = black.Block(first), fill = block.fill, mask = block.mask](Place place, Lane source) {
                    const Lane weight = ByteAt(mask, place);
                    const Lane effectWeight = 255 - weight + PixelWeights::At(isBlack, place);
                    return (source * weight + ByteAt(fill, place) * effectWeight) >> 8;
                };
            });
        });
    });
}

}  // namespace

const WordKernel kMaskMix{MixByMask};

}  // namespace ombrix
