// A line that measures an effect's work on the pixels as a share of its limit.
#pragma once

#include <benchmark/benchmark.h>

#include "bench/bars.h"
#include "bench/limits/limit_loops.h"
#include "bench/picture_set.h"
#include "bench/table_line.h"
#include "bench/worker_call.h"

namespace ombrix::bench {

struct EffectLine {
    LineName name;
    PictureSet& pictures;
    Traffic traffic;
    Bar bar;
};

/// Measures a worker call on the line's pictures beside its limit, and what other libraries have for it.
void MeasureEffectLine(benchmark::State& state, const EffectLine& line, const WorkerCall& call);

}  // namespace ombrix::bench
