// The records that an effect hands to its row workers. Other plug-ins build on their layouts.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "sdk/definition_records.h"

namespace ombrix {

/// The head of every parameter record, for the executor.
struct GenericMPParams {
    std::int32_t width;                  ///< pixels per row
    std::int32_t height;                 ///< rows to process
    std::atomic<std::int32_t> rowsDone;  ///< for progress reports; workers add 1 per finished row
    std::int32_t multiprocessingHint;
    REALobjectStruct* progressHandler;  ///< null for none
};
static_assert(sizeof(std::atomic<std::int32_t>) == 4 && std::atomic<std::int32_t>::is_always_lock_free);
static_assert(sizeof(GenericMPParams) == 24 && offsetof(GenericMPParams, rowsDone) == 8 &&
              offsetof(GenericMPParams, multiprocessingHint) == 12 && offsetof(GenericMPParams, progressHandler) == 16);

/// The head of every effect's record, which the driver fills; the effect's own fields follow. The row paddings are for
/// other plug-ins' workers: those here go by row bytes.
struct StdMPEffectParams {
    GenericMPParams generic;
    std::uint8_t* srcBase;       ///< first byte of the first row
    std::uint8_t* dstBase;       ///< in place: srcBase
    std::uint8_t* maskBase;      ///< as all of the mask's fields, set only with a mask
    std::int32_t srcRowPadding;  ///< bytes after the last pixel of a row
    std::int32_t srcRowBytes;    ///< bytes from one row to the next
    std::int32_t dstRowPadding;
    std::int32_t dstRowBytes;
    std::int32_t maskRowBytes;       ///< row bytes come first here
    std::int32_t maskRowPadding;     ///< bytes after the image's width of mask pixels
    std::int32_t maskBytesPerPixel;  ///< 3 or 4
    std::int32_t bytesPerPixel;      ///< of source and destination, 3 or 4
};
static_assert(sizeof(StdMPEffectParams) == 80);
static_assert(offsetof(StdMPEffectParams, srcBase) == 24 && offsetof(StdMPEffectParams, dstBase) == 32 &&
              offsetof(StdMPEffectParams, maskBase) == 40 && offsetof(StdMPEffectParams, srcRowPadding) == 48 &&
              offsetof(StdMPEffectParams, srcRowBytes) == 52 && offsetof(StdMPEffectParams, dstRowPadding) == 56 &&
              offsetof(StdMPEffectParams, dstRowBytes) == 60 && offsetof(StdMPEffectParams, maskRowBytes) == 64 &&
              offsetof(StdMPEffectParams, maskRowPadding) == 68 &&
              offsetof(StdMPEffectParams, maskBytesPerPixel) == 72 && offsetof(StdMPEffectParams, bytesPerPixel) == 76);

/// A band of rows: `firstRow` up to, but not including, `endRow`.
struct MPParamBlock {
    std::int32_t firstRow;
    std::int32_t endRow;
    void* params;  ///< the effect's record
};
static_assert(sizeof(MPParamBlock) == 16 && offsetof(MPParamBlock, params) == 8);

/// Tasks of a tone or colour effect unless the program sets a number. More gain little: memory is the limit.
constexpr std::int32_t kToneTaskCount = 2;

/// Processes one band, possibly empty, and adds 1 to `rowsDone` per row. Runs on any thread, touches no other rows and
/// calls no host service. The result is ignored.
using RowWorker = std::int32_t (*)(MPParamBlock* band);

}  // namespace ombrix
