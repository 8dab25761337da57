// The records that pass from an effect through the driver and the executor to the row workers. They are part of what
// code outside this plug-in builds on, so their layouts are fixed.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "frame/definition_records.h"

namespace ombrix {

/// The head of every parameter record: what the executor knows of a call.
struct GenericMPParams {
    std::int32_t width;                  ///< pixels per row
    std::int32_t height;                 ///< rows to process
    std::atomic<std::int32_t> rowsDone;  ///< every worker adds 1 per finished row; only for progress reports
    std::int32_t multiprocessingHint;
    REALobjectStruct* progressHandler;  ///< or null
};
static_assert(sizeof(std::atomic<std::int32_t>) == 4 && std::atomic<std::int32_t>::is_always_lock_free);
static_assert(sizeof(GenericMPParams) == 24 && offsetof(GenericMPParams, rowsDone) == 8 &&
              offsetof(GenericMPParams, multiprocessingHint) == 12 && offsetof(GenericMPParams, progressHandler) == 16);

/// The head of the records of effects that go through the driver, which fills all of it; an effect's own fields follow.
struct StdMPEffectParams {
    GenericMPParams generic;
    std::uint8_t* srcBase;  ///< first byte of the first row
    std::uint8_t* dstBase;  ///< the source's, in place
    std::uint8_t* maskBase;
    std::int32_t srcRowPadding;  ///< bytes after the last pixel of a row
    std::int32_t srcRowBytes;    ///< bytes from row to row
    std::int32_t dstRowPadding;
    std::int32_t dstRowBytes;
    std::int32_t maskRowBytes;    ///< this pair in the other order
    std::int32_t maskRowPadding;  ///< after the image's width of mask pixels; a mask may be wider than that
    std::int32_t maskBytesPerPixel;
    std::int32_t bytesPerPixel;  ///< of source and destination
};
static_assert(sizeof(StdMPEffectParams) == 80);
static_assert(offsetof(StdMPEffectParams, srcBase) == 24 && offsetof(StdMPEffectParams, dstBase) == 32 &&
              offsetof(StdMPEffectParams, maskBase) == 40 && offsetof(StdMPEffectParams, srcRowPadding) == 48 &&
              offsetof(StdMPEffectParams, srcRowBytes) == 52 && offsetof(StdMPEffectParams, dstRowPadding) == 56 &&
              offsetof(StdMPEffectParams, dstRowBytes) == 60 && offsetof(StdMPEffectParams, maskRowBytes) == 64 &&
              offsetof(StdMPEffectParams, maskRowPadding) == 68 &&
              offsetof(StdMPEffectParams, maskBytesPerPixel) == 72 && offsetof(StdMPEffectParams, bytesPerPixel) == 76);

/// A band of rows for one worker: from `firstRow` up to, not including, `endRow`.
struct MPParamBlock {
    std::int32_t firstRow;
    std::int32_t endRow;
    void* params;  ///< the effect's record, shared by all bands of a call
};
static_assert(sizeof(MPParamBlock) == 16 && offsetof(MPParamBlock, params) == 8);

/// The tasks of a tone or colour effect when the program leaves the number open: more gain little where memory is the
/// limit.
constexpr std::int32_t kToneTaskCount = 2;

/// Processes one band: touches no row outside it, returns at once when it is empty, and adds 1 to `rowsDone` for each
/// row. Runs on any thread and calls nothing of the host. The result is not looked at.
using RowWorker = std::int32_t (*)(MPParamBlock* band);

}  // namespace ombrix
