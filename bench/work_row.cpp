#include "bench/work_row.h"

#include <stdexcept>

#include "bench/peers/peers.h"
#include "engine/executor.h"

namespace ombrix::bench {

void RunRowWork(GenericMPParams* params, RowWorker worker, int tasks) {
    params->multiprocessingHint = tasks;
    Execute(params, worker, tasks);
    if (params->rowsDone != params->height) throw std::logic_error("rows were left out");
}

void MeasureRowWork(benchmark::State& state, const WorkRow& row, GenericMPParams* params, RowWorker worker) {
    const PictureSet& pictures = row.pictures;
    const int tasks = row.name.tasks;
    PaceWork work{.prepare = nullptr,
                  .copy = [&] { pictures.CopySource(tasks); },
                  .work = [&] { RunRowWork(params, worker, tasks); }};
    if (row.inPlace) work.prepare = [&] { pictures.RestoreSource(); };
    ReportPace(state, MeasurePace(state, work), pictures.source.Extent(), row.limit);
    if (row.inPlace) pictures.RestoreSource();
    MeasurePeers(state, row.name, row.pictures);
}

}  // namespace ombrix::bench
