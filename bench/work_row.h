// A row that measures an effect's row work over whole pictures.
#pragma once

#include <benchmark/benchmark.h>

#include "bench/picture_set.h"
#include "bench/row.h"
#include "engine/effect_params.h"

namespace ombrix::bench {

/// Runs the row work of a call once, on `tasks` tasks. Throws when not all rows were worked on.
void RunRowWork(GenericMPParams* params, RowWorker worker, int tasks);

/// What is measured in a row, and against what.
struct WorkRow {
    RowName name;
    PictureSet& pictures;
    bool inPlace;
    Limit limit;
};

/// Measures row work against a copy of the pictures' source, and what other libraries have for it. In place, the source
/// is restored before each iteration.
void MeasureRowWork(benchmark::State& state, const WorkRow& row, GenericMPParams* params, RowWorker worker);

}  // namespace ombrix::bench
