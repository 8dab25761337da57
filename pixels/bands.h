// The walk over the rows of a band.
#pragma once

#include <cstdint>

#include "pixels/row.h"
#include "sdk/effect_params.h"

namespace ombrix {

/// Destinations of this many bytes or more are stored past the caches. They would not stay there, and a cached store
/// reads each line first: half as much traffic again. Only tests change it.
extern std::int64_t gStreamedFromBytes;

/// The settings of a band: channel positions as they are now, and whether to stream.
RowSettings SettingsOf(const StdMPEffectParams& head, const void* formula);

/// Calls `process(row)` for each row of a band, and counts it.
template <class Process>
void ForEachRow(const MPParamBlock* band, GenericMPParams& params, const Process& process) {
    for (std::int64_t row = band->firstRow; row < band->endRow; ++row) {
        process(row);
        params.rowsDone.fetch_add(1, std::memory_order_relaxed);
    }
}

/// Orders what was streamed before what other threads are told afterwards. Ends every band.
void FinishBand(const RowSettings& settings);

}  // namespace ombrix
