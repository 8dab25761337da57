// An effect's work on the pixels alone, without locks, records and new pictures.
#pragma once

#include <functional>

#include "sdk/effect_params.h"
#include "sdk/mp_image_filter.h"

namespace ombrix::bench {

/// What the executor would run for a call of an effect. Both are valid until the capture's receiver returns.
struct WorkerCall {
    GenericMPParams* params;  ///< complete
    RowWorker worker;

    /// Works on the whole picture once, as the executor does. Throws when rows were left out.
    void Run(int tasks) const;
    /// The same on the calling thread, without the executor.
    void RunAlone() const;
};

using WorkerCallReceiver = std::function<void(const WorkerCall& call)>;

/// While this lives, calls of the effect stop where the executor would run and give the worker call to `receiver`.
/// One at a time.
class WorkerCallCapture {
  public:
    WorkerCallCapture(MPImageFilterData& base, WorkerCallReceiver receiver);
    ~WorkerCallCapture();
    WorkerCallCapture(const WorkerCallCapture&) = delete;
    WorkerCallCapture& operator=(const WorkerCallCapture&) = delete;

  private:
    MPImageFilterData& base_;
    decltype(MPImageFilterData::Execute) execute_;
};

}  // namespace ombrix::bench
