// The walk over the rows of a band, which every tone and colour effect shares. An effect brings a formula, a callable
// from Rgb<int> to Rgb<int> with channels from 0 to 255, and knows nothing of rows, depths, masks or tasks.
#pragma once

#include <cstdint>

#include "engine/effect_params.h"
#include "engine/instruction_level.h"
#include "engine/pixel.h"

// Tells the compiler that the pixels of a loop do not depend on each other, although source and destination may be the
// same bytes: in place, each pixel is read before it is written.
#if defined(__clang__)
#define OMBRIX_INDEPENDENT_PIXELS _Pragma("clang loop vectorize(assume_safety)")
#elif defined(__GNUC__)
#define OMBRIX_INDEPENDENT_PIXELS _Pragma("GCC ivdep")
#else
#define OMBRIX_INDEPENDENT_PIXELS
#endif

namespace ombrix {

/// Mixes an effect with its source. A mask pixel that is black lets the whole effect through. Any other weighs each
/// channel by the mask's same channel; the sum is divided by 256 and not by 255, so that a white mask pixel gives one
/// less than the source.
inline Rgb<int> MixByMask(Rgb<int> source, Rgb<int> effect, Rgb<int> mask) {
    const bool isBlack = (mask.red | mask.green | mask.blue) == 0;
    const auto mix = [isBlack](int s, int e, int m) { return isBlack ? e : (s * m + (255 - m) * e) >> 8; };
    return {mix(source.red, effect.red, mask.red), mix(source.green, effect.green, mask.green),
            mix(source.blue, effect.blue, mask.blue)};
}

/// One row of an effect without a mask.
template <class Formula>
void WalkRow(const std::uint8_t* source, std::uint8_t* destination, std::int64_t width, const PixelFormat& image,
             const Formula& formula) {
    if (image.bytesPerPixel == 4) {
        const WordFormat format(image);
        OMBRIX_INDEPENDENT_PIXELS
        for (std::int64_t x = 0; x < width; ++x) {
            const std::uint32_t pixel = LoadWord(source + 4 * x);
            const Rgb<int> result = formula(ColourOf(pixel, format));
            StoreWord(destination + 4 * x, (pixel & format.fourthMask) | WordOf(result, format));
        }
        return;
    }
    for (std::int64_t x = 0; x < width; ++x) {
        WriteColour(destination + 3 * x, image, formula(ReadColour(source + 3 * x, image)));
    }
}

/// One row of an effect with a mask. Each of the two depths goes with each.
template <class Formula>
void WalkMaskedRow(const std::uint8_t* source, const std::uint8_t* mask, std::uint8_t* destination, std::int64_t width,
                   const PixelFormat& image, const PixelFormat& maskImage, const Formula& formula) {
    const auto mixed = [&formula](Rgb<int> colour, Rgb<int> weight) {
        return MixByMask(colour, formula(colour), weight);
    };
    if (image.bytesPerPixel == 4 && maskImage.bytesPerPixel == 4) {
        const WordFormat format(image);
        OMBRIX_INDEPENDENT_PIXELS
        for (std::int64_t x = 0; x < width; ++x) {
            const std::uint32_t pixel = LoadWord(source + 4 * x);
            const Rgb<int> result = mixed(ColourOf(pixel, format), ColourOf(LoadWord(mask + 4 * x), format));
            StoreWord(destination + 4 * x, (pixel & format.fourthMask) | WordOf(result, format));
        }
        return;
    }
    for (std::int64_t x = 0; x < width; ++x) {
        const std::uint8_t* from = source + image.bytesPerPixel * x;
        std::uint8_t* to = destination + image.bytesPerPixel * x;
        const Rgb<int> weight = ReadColour(mask + maskImage.bytesPerPixel * x, maskImage);
        if (image.bytesPerPixel == 4) to[image.fourth] = from[image.fourth];
        WriteColour(to, image, mixed(ReadColour(from, image), weight));
    }
}

/// Calls `process(row)` for each row of a band, and counts it.
template <class Process>
std::int32_t ForEachRow(const MPParamBlock* band, GenericMPParams& params, Process process) {
    for (std::int64_t row = band->firstRow; row < band->endRow; ++row) {
        process(row);
        params.rowsDone.fetch_add(1, std::memory_order_relaxed);
    }
    return 0;
}

/// A worker of an effect without a mask: runs a formula over the pixels of its band. `formulaOf` makes the formula from
/// the effect's record, once per band.
template <class Params, class FormulaOf>
std::int32_t WalkBand(const MPParamBlock* band, FormulaOf formulaOf) {
    auto& params = *static_cast<Params*>(band->params);
    StdMPEffectParams& head = params.head;
    const PixelFormat image(head.bytesPerPixel);
    const auto formula = formulaOf(params);
    return ForEachRow(band, head.generic, [&](std::int64_t row) {
        RunAtBestLevel([&] {
            WalkRow(head.srcBase + row * head.srcRowBytes, head.dstBase + row * head.dstRowBytes, head.generic.width,
                    image, formula);
        });
    });
}

/// A worker of an effect with a mask.
template <class Params, class FormulaOf>
std::int32_t WalkMaskedBand(const MPParamBlock* band, FormulaOf formulaOf) {
    auto& params = *static_cast<Params*>(band->params);
    StdMPEffectParams& head = params.head;
    const PixelFormat image(head.bytesPerPixel);
    const PixelFormat mask(head.maskBytesPerPixel);
    const auto formula = formulaOf(params);
    return ForEachRow(band, head.generic, [&](std::int64_t row) {
        RunAtBestLevel([&] {
            WalkMaskedRow(head.srcBase + row * head.srcRowBytes, head.maskBase + row * head.maskRowBytes,
                          head.dstBase + row * head.dstRowBytes, head.generic.width, image, mask, formula);
        });
    });
}

}  // namespace ombrix
