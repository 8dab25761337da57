// What other libraries have for a row: measured in the same run, on the same pictures, against the same copy, on one
// thread.
//
// They do similar work, not the same: their formulas round in other ways, most treat the fourth channel as one of the
// colours, those that expect some other order of channels take ours for it, which costs them nothing, and mode normal
// of an opaque fill is no more than a copy. Each file says what else is different.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>

#include "bench/picture_set.h"
#include "bench/row.h"

namespace ombrix::bench {

/// Measures all libraries that are there and reports their ratios. Only for rows with one task.
void MeasurePeers(benchmark::State& state, const RowName& row, PictureSet& pictures);

// A library's work for a row, on pictures whose source has been restored; empty when it has none. What it needs besides
// the pictures is made here and not timed. Each exists where its library was found when this was built.
std::function<void()> OpenCvWork(const RowName& row, PictureSet& pictures);
std::function<void()> LibyuvWork(const RowName& row, PictureSet& pictures);
std::function<void()> PixmanWork(const RowName& row, PictureSet& pictures);
std::function<void()> LibvipsWork(const RowName& row, PictureSet& pictures);

/// Pillow times itself, in a Python of its own; the counterpart of the ratio of the others, or 0 when it has no such
/// work or is not there.
double PillowRatio(const RowName& row, Size size);

}  // namespace ombrix::bench
