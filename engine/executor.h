// Runs a row worker over an image: on up to 8 tasks at once, or on the calling thread.
#pragma once

#include <cstdint>

#include "sdk/effect_params.h"

namespace ombrix {

/// Runs `worker` over `params->height` rows and returns when all are done, even if tasks cannot be started or waited
/// for. `autoTaskCount` is the number of tasks when the hint leaves it open. Reports progress from the calling thread.
void Execute(GenericMPParams* params, RowWorker worker, std::int32_t autoTaskCount);

/// A handler's OnProgress: `value` of `total` rows are done.
using ProgressProc = void (*)(REALobjectStruct* handler, std::int64_t value, std::int64_t total);

/// Null when there is no handler, or it has no OnProgress.
ProgressProc GetProgressProc(REALobjectStruct* handler);

/// Getter of CPUCoreCount: the processors that can run tasks, counted once in a process.
std::int64_t GetCPUCoreCount(REALobjectStruct* instance, std::int64_t parameter);

}  // namespace ombrix
