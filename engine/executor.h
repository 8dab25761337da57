// Runs a row worker over all rows of an image: on up to 8 tasks at once, or in bands on the calling thread.
#pragma once

#include <cstdint>

#include "engine/effect_params.h"

namespace ombrix {

/// Runs `worker` over rows 0 to `params->height` and returns when all of them are done, also when tasks cannot be
/// started or waited for. `autoTaskCount` is the number of tasks that the effect wants when the hint leaves it open.
/// Reports to the progress handler, if there is one, from the calling thread.
void Execute(GenericMPParams* params, RowWorker worker, std::int32_t autoTaskCount);

/// The entry of a progress handler's OnProgress.
using ProgressProc = void (*)(REALobjectStruct* handler, std::int64_t value, std::int64_t total);

/// The entry of the handler's method, or null when there is no handler or no such method.
ProgressProc GetProgressProc(REALobjectStruct* handler);

/// Getter of `CPUCoreCount`: processors that can run tasks, asked for once in the life of the process.
std::int64_t GetCPUCoreCount(REALobjectStruct* instance, std::int64_t parameter);

}  // namespace ombrix
