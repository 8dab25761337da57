// Functions for other plug-ins: MPImageFilterData::GetFunction gives their addresses by number.
#pragma once

#include <cstddef>
#include <cstdint>

#include "sdk/effect_params.h"
#include "sdk/mp_image_filter.h"

namespace ombrix {

/// The numbers, and the type to give each address.
enum class EngineFunction : std::int32_t {
    ApplyMapEffect = 1,         ///< ApplyMapEffectProc
    ApplyMapEffectInPlace = 2,  ///< ApplyMapEffectInPlaceProc
    EnsurePictureBits = 3,      ///< EnsurePictureBitsProc
};

/// The record of a map effect, which replaces channel value i by entry i of the channel's table. The caller sets the
/// tables and leaves them unchanged during the call.
struct MapParams {
    StdMPEffectParams head;
    const std::uint8_t* redTable;  ///< 256 bytes, as the others
    const std::uint8_t* greenTable;
    const std::uint8_t* blueTable;
};
static_assert(sizeof(MapParams) == 104);
static_assert(offsetof(MapParams, redTable) == 80 && offsetof(MapParams, greenTable) == 88 &&
              offsetof(MapParams, blueTable) == 96);

/// Applies the tables to a copy of `source`, through `mask` unless that is null. Returns the new picture, without a
/// mask and owned by the caller, or null. `base` receives the error code: ILLEGAL_INPUT_PARAMETER when source, params
/// or a table is missing, else the driver's.
using ApplyMapEffectProc = REALobjectStruct* (*)(MPImageFilterData* base, REALobjectStruct* source,
                                                 REALobjectStruct* mask, MapParams* params);

/// Applies the tables to `source` itself.
using ApplyMapEffectInPlaceProc = void (*)(MPImageFilterData* base, REALobjectStruct* source, REALobjectStruct* mask,
                                           MapParams* params);

/// Returns `source` if it is a bitmap of exactly `depth` bits per pixel, else a new picture of that depth with `source`
/// drawn into it and its mask attached. The caller receives a reference either way. Null when `source` is null or the
/// host cannot make or draw the picture.
using EnsurePictureBitsProc = REALobjectStruct* (*)(REALobjectStruct* source, std::int64_t depth);

}  // namespace ombrix
