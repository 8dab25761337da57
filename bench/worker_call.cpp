#include "bench/worker_call.h"

#include <stdexcept>
#include <utility>

#include "engine/executor.h"

namespace ombrix::bench {
namespace {

WorkerCallReceiver current;

/// Calls the receiver once. It may capture another call meanwhile.
void GiveToReceiver(GenericMPParams* params, RowWorker worker, std::int32_t /*autoTaskCount*/) {
    std::exchange(current, nullptr)({params, worker});
}

}  // namespace

void WorkerCall::Run(int tasks) const {
    params->multiprocessingHint = tasks;
    Execute(params, worker, tasks);
    if (params->rowsDone != params->height) throw std::logic_error("rows were left out");
}

void WorkerCall::RunAlone() const {
    MPParamBlock all{0, params->height, params};
    worker(&all);
}

WorkerCallCapture::WorkerCallCapture(MPImageFilterData& base, WorkerCallReceiver receiver)
    : base_(base), execute_(base.Execute) {
    current = std::move(receiver);
    base.Execute = GiveToReceiver;
}

WorkerCallCapture::~WorkerCallCapture() {
    base_.Execute = execute_;
    current = nullptr;
}

}  // namespace ombrix::bench
