// MPImageFilter, the base class of every effect: its instance data and error codes.
#pragma once

#include <cstddef>
#include <cstdint>

#include "sdk/effect_params.h"

namespace ombrix {

/// The constants of module OmbrixError.
enum ErrorCode : std::int64_t {
    NO_ERROR = 0,
    INVALID_MASK = 1,                  ///< cannot be locked, has another depth than 24 or 32 bits, or is too small
    INVALID_SOURCE_IMAGE = 2,          ///< cannot be locked, or has another depth than 24 or 32 bits
    UNABLE_TO_CREATE_DESTINATION = 3,  ///< the host gives no new picture of the source's size and depth
    ILLEGAL_INPUT_PARAMETER = 4,       ///< an argument is out of range or missing
};

/// The instance data. Its entries are how all effects, also those of other plug-ins, reach the engine.
struct MPImageFilterData {
    /// The executor: runs `worker` over all rows (engine/executor.h).
    void (*Execute)(GenericMPParams* params, RowWorker worker, std::int32_t autoTaskCount);

    /// The driver: applies an effect to a copy of `source` by `worker`, or `maskedWorker` when there is a mask. The
    /// caller has filled its own fields of `params`; the driver fills the head, and sets ErrorCode. Returns the new
    /// picture, owned by the caller, or null. On INVALID_MASK no worker has touched it.
    REALobjectStruct* (*ApplyEffect)(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker,
                                     RowWorker maskedWorker, REALobjectStruct* source, REALobjectStruct* mask,
                                     std::int32_t autoTaskCount);

    /// The driver on `source` itself, which stays unchanged on INVALID_MASK.
    void (*ApplyEffectInPlace)(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker,
                               RowWorker maskedWorker, REALobjectStruct* source, REALobjectStruct* mask,
                               std::int32_t autoTaskCount);

    /// Finds an EngineFunction (sdk/engine_functions.h) for other plug-ins; null for other numbers.
    void* (*GetFunction)(std::int32_t number);

    std::int64_t MultiprocessingHint;   ///< the CPU_USE_… constants
    std::int64_t ErrorCode;             ///< of the last call
    REALobjectStruct* progressHandler;  ///< a reference, or null
};
static_assert(sizeof(MPImageFilterData) == 56);
static_assert(offsetof(MPImageFilterData, ApplyEffect) == 8 && offsetof(MPImageFilterData, ApplyEffectInPlace) == 16 &&
              offsetof(MPImageFilterData, GetFunction) == 24 &&
              offsetof(MPImageFilterData, MultiprocessingHint) == 32 && offsetof(MPImageFilterData, ErrorCode) == 40 &&
              offsetof(MPImageFilterData, progressHandler) == 48);

/// An effect's base data, which the host puts right before the effect's own.
inline MPImageFilterData* BaseDataOf(void* effectData) {
    return reinterpret_cast<MPImageFilterData*>(static_cast<char*>(effectData) - sizeof(MPImageFilterData));
}

}  // namespace ombrix
