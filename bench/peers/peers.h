// What other libraries have for a line, on one thread, as a share of the line's limit.
//
// They do similar work, not the same: they round in other ways, most treat the fourth channel as a colour, those that
// expect another order of channels take ours for it at no cost, and mode normal of an opaque fill is a mere copy. Each
// file says what else differs.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>

#include "bench/bench_picture.h"
#include "bench/picture_set.h"
#include "bench/share.h"
#include "bench/table_line.h"

namespace ombrix::bench {

/// Measures all libraries that were found and reports their shares, for lines of one task and 32 bits. `contest` is
/// that of the line, and `limitSeconds` its result.
void MeasurePeers(benchmark::State& state, const LineName& line, PictureSet& pictures, const Contest& contest,
                  double limitSeconds);

// A library's counterpart of a line, on pictures whose source has been restored; empty when it has none. What it needs
// besides the pictures is made here and not timed. Each exists where its library was found when this was built.
std::function<void()> OpenCvCounterpart(const LineName& line, PictureSet& pictures);
std::function<void()> LibyuvCounterpart(const LineName& line, PictureSet& pictures);
std::function<void()> PixmanCounterpart(const LineName& line, PictureSet& pictures);
std::function<void()> LibvipsCounterpart(const LineName& line, PictureSet& pictures);

/// Seconds that Pillow takes, which times itself in a Python of its own; 0 when it has no counterpart or was not found.
double PillowSeconds(const LineName& line, Size size);

}  // namespace ombrix::bench
