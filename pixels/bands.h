// The walk over the rows of a band.
#pragma once

#include <algorithm>
#include <cstdint>

#include "pixels/row.h"
#include "sdk/effect_params.h"

namespace ombrix {

/// Destinations of this many bytes or more are stored past the caches. They would not stay there, and a cached store
/// reads each line first: half as much traffic again. Only tests change it.
extern std::int64_t gStreamedFromBytes;

/// The settings of a band: channel positions as they are now, and whether to stream.
RowSettings SettingsOf(const StdMPEffectParams& head, const void* formula);

/// Rows that are counted at once: an atomic addition waits for all streamed stores, which would cost each row a tenth.
constexpr std::int64_t kRowsCounted = 16;

/// Calls `process(row, rows)` for all rows of a band, and counts them. `rows` is 1 unless `areJoined`: rows without
/// padding are one long row.
template <class Process>
void ForEachRow(const MPParamBlock* band, GenericMPParams& params, bool areJoined, const Process& process) {
    for (std::int64_t first = band->firstRow; first < band->endRow; first += kRowsCounted) {
        const std::int64_t rows = std::min<std::int64_t>(kRowsCounted, band->endRow - first);
        const std::int64_t atOnce = areJoined ? rows : 1;
        for (std::int64_t row = 0; row < rows; row += atOnce) process(first + row, atOnce);
        params.rowsDone.fetch_add(static_cast<std::int32_t>(rows), std::memory_order_relaxed);
    }
}

/// Orders what was streamed before what other threads are told afterwards. Ends every band.
void FinishBand(const RowSettings& settings);

}  // namespace ombrix
