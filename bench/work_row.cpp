#include "bench/work_row.h"

#include <stdexcept>

#include "engine/executor.h"

namespace ombrix::bench {

void RunRowWork(GenericMPParams* params, RowWorker worker, int tasks) {
    params->multiprocessingHint = tasks;
    Execute(params, worker, tasks);
    if (params->rowsDone != params->height) throw std::logic_error("rows were left out");
}

void MeasureRowWork(benchmark::State& state, const PictureSet& pictures, bool inPlace, GenericMPParams* params,
                    RowWorker worker, int tasks, Limit limit) {
    PaceWork work{.prepare = nullptr,
                  .copy = [&] { pictures.CopySource(tasks); },
                  .work = [&] { RunRowWork(params, worker, tasks); }};
    if (inPlace) work.prepare = [&] { pictures.RestoreSource(); };
    ReportPace(state, MeasurePace(state, work), pictures.source.Extent(), limit);
    if (inPlace) pictures.RestoreSource();
}

}  // namespace ombrix::bench
