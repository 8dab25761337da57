// A row that measures an effect's row work over whole pictures.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>

#include "bench/picture_set.h"
#include "bench/row.h"
#include "engine/effect_params.h"

namespace ombrix::bench {

/// Runs the row work of a call once, on `tasks` tasks. Throws when not all rows were worked on.
void RunRowWork(GenericMPParams* params, RowWorker worker, int tasks);

/// Measures row work against a copy of the pictures' source. In place, the source is restored before each iteration.
void MeasureRowWork(benchmark::State& state, const PictureSet& pictures, bool inPlace, GenericMPParams* params,
                    RowWorker worker, int tasks, Limit limit);

}  // namespace ombrix::bench
