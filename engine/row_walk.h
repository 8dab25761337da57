// The walk over the rows of a band, which all effects share. It knows depths, paddings and the caches, and brings the
// pixels of a row to a kernel in the one form that kernels know.
#pragma once

#include <atomic>
#include <cstdint>

#include "engine/effect_params.h"
#include "engine/word_pixels.h"

namespace ombrix {

/// A row of pixels of 3 or 4 bytes. Null pixels: there is no such row.
struct PixelRow {
    const std::uint8_t* pixels = nullptr;
    std::int32_t bytesPerPixel = 4;
};

/// What a kernel reads and writes of a row.
struct RowJob {
    PixelRow source;
    PixelRow fill{};
    PixelRow mask{};
    std::uint8_t* destination;  ///< in pixels of the source's depth; the source's own, in place
    std::int64_t count;         ///< pixels; none when it is below 0
    bool isStreamed = false;    ///< whether the destination is written past the caches
};

/// Whether a destination is so large that it is better written past the caches.
bool ShouldStream(const StdMPEffectParams& params);

/// Runs a kernel over a row, of which it sees source and fill. If there is a second kernel, that one is given what came
/// out as its fill, with the source and the mask, and its results are the row's. No byte is read but the pixels of the
/// rows, and none written but the destination's.
void WalkRow(const RowJob& job, const WordKernel& kernel, const WordKernel& mix = {});

/// Calls `process(row)` for each row of a band, and counts it.
template <class Process>
void ForEachRow(const MPParamBlock* band, GenericMPParams& params, Process process) {
    for (std::int64_t row = band->firstRow; row < band->endRow; ++row) {
        process(row);
        params.rowsDone.fetch_add(1, std::memory_order_relaxed);
    }
}

}  // namespace ombrix
