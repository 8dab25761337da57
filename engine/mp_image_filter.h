// MPImageFilter, the base class of every effect: what all effects share, and the driver that they go through.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/effect_params.h"

namespace ombrix {

/// The error codes of module `OmbrixError`.
enum ErrorCode : std::int64_t {
    NO_ERROR = 0,
    INVALID_MASK = 1,                  ///< the mask cannot be used
    INVALID_SOURCE_IMAGE = 2,          ///< the source cannot be locked, or is not of 24 or 32 bits per pixel
    UNABLE_TO_CREATE_DESTINATION = 3,  ///< there is no new picture to write to
    ILLEGAL_INPUT_PARAMETER = 4,       ///< an argument is out of range
};

/// The instance data of MPImageFilter. Effects reach the engine only through the entries that stand here, so that
/// effects of other plug-ins can do so too.
struct MPImageFilterData {
    void (*Execute)(GenericMPParams* params, RowWorker worker, std::int32_t autoTaskCount);

    /// Applies an effect to a copy of `source`: the new picture, whose reference is the caller's, or null. Runs
    /// `worker`, or with a mask (which may be null) `maskedWorker`, over all rows. The caller has filled its own
    /// fields of `params`; the driver fills the head, and `ErrorCode`. A mask that cannot be used gives a new picture
    /// that no worker has touched, and INVALID_MASK.
    REALobjectStruct* (*ApplyEffect)(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker,
                                     RowWorker maskedWorker, REALobjectStruct* source, REALobjectStruct* mask,
                                     std::int32_t autoTaskCount);

    /// The same, on `source` itself; a mask that cannot be used leaves it as it is.
    void (*ApplyEffectInPlace)(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker,
                               RowWorker maskedWorker, REALobjectStruct* source, REALobjectStruct* mask,
                               std::int32_t autoTaskCount);

    /// Functions of the engine by number, for code that builds on MPImageFilter; null for a number that has none.
    void* (*GetFunction)(std::int32_t number);

    std::int64_t MultiprocessingHint;   ///< the CPU_USE_… constants
    std::int64_t ErrorCode;             ///< what the last call came to
    REALobjectStruct* progressHandler;  ///< holds a reference; or null
};
static_assert(sizeof(MPImageFilterData) == 56);
static_assert(offsetof(MPImageFilterData, ApplyEffect) == 8 && offsetof(MPImageFilterData, ApplyEffectInPlace) == 16 &&
              offsetof(MPImageFilterData, GetFunction) == 24 &&
              offsetof(MPImageFilterData, MultiprocessingHint) == 32 && offsetof(MPImageFilterData, ErrorCode) == 40 &&
              offsetof(MPImageFilterData, progressHandler) == 48);

/// The base data of an effect, given the effect's own: the host lays a class's data right after its superclass's.
inline MPImageFilterData* BaseDataOf(void* effectData) {
    return reinterpret_cast<MPImageFilterData*>(static_cast<char*>(effectData) - sizeof(MPImageFilterData));
}

}  // namespace ombrix
