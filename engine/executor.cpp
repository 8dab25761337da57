#include "engine/executor.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <thread>

#include "platform/multiprocessing.h"
#include "sdk/host_calls.h"
#include "sdk/host_reference.h"

namespace ombrix {
namespace {

constexpr std::int32_t kMostTasks = 8;
constexpr std::int32_t kFewestParallelRows = 16;  // below that, starting tasks costs more than it gains
constexpr std::int32_t kRowsPerReport = 100;

std::int64_t cpu_count = 0;

std::int64_t CPUCount() {
    if (cpu_count == 0) cpu_count = static_cast<std::int64_t>(MPProcessorsScheduled());
    return cpu_count;
}

std::int64_t TaskCount(std::int32_t hint, std::int32_t autoTaskCount) {
    if (hint > 0) return std::min(hint, kMostTasks);
    const std::int32_t most = hint == 0 ? std::min(autoTaskCount, kMostTasks) : kMostTasks;
    return std::min<std::int64_t>(CPUCount(), most);
}

void RunSequentially(GenericMPParams* params, RowWorker worker, ProgressProc progress) {
    const std::int32_t height = params->height;
    if (!progress) {
        MPParamBlock all{0, height, params};
        worker(&all);
        return;
    }
    for (std::int32_t first = 0; first < height;) {
        const std::int32_t end = first + std::min(kRowsPerReport, height - first);
        MPParamBlock band{first, end, params};
        worker(&band);
        progress(params->progressHandler, params->rowsDone, height);
        first = end;
    }
    progress(params->progressHandler, height, height);
}

/// A task's argument, which begins with the band.
struct TaskBlock {
    MPParamBlock band;
    RowWorker worker;
    std::atomic<bool> finished;
};

std::int32_t RunTask(void* argument) {
    auto* task = static_cast<TaskBlock*>(argument);
    const std::int32_t result = task->worker(&task->band);
    // The last access: the calling thread may return now, and `task` lies on its stack.
    task->finished.store(true, std::memory_order_release);
    return result;
}

bool Finished(const TaskBlock& task) { return task.finished.load(std::memory_order_acquire); }

/// Returns when all tasks have finished, of which `started` post a message each.
void WaitForTasks(MPQueueID queue, std::int32_t started, const TaskBlock* tasks, std::int32_t count) {
    void* result = nullptr;
    for (std::int32_t arrived = 0; arrived < started;) {
        const std::int32_t status = MPWaitOnQueue(queue, nullptr, nullptr, &result, kWaitForever);
        if (status == 0) {
            ++arrived;
        } else if (status != kWaitTimedOut || std::all_of(tasks, tasks + count, Finished)) {
            break;
        } else {
            std::this_thread::yield();
        }
    }
    // A wait may have failed, but the buffers must stay locked until all tasks have finished.
    while (!std::all_of(tasks, tasks + count, Finished)) std::this_thread::sleep_for(std::chrono::microseconds(50));
}

void RunOnTasks(GenericMPParams* params, RowWorker worker, std::int32_t count) {
    const std::int32_t height = params->height;
    const std::int32_t rowsPerTask = height / count;
    std::array<TaskBlock, kMostTasks> tasks;
    for (std::int32_t i = 0; i < count; ++i) {
        tasks[i].band = {i * rowsPerTask, i == count - 1 ? height : (i + 1) * rowsPerTask, params};
        tasks[i].worker = worker;
        tasks[i].finished.store(false, std::memory_order_relaxed);
    }

    MPQueueID queue = nullptr;
    const bool hasQueue = MPCreateQueue(&queue) == 0;
    std::array<bool, kMostTasks> isStarted{};
    std::int32_t started = 0;
    for (std::int32_t i = 0; hasQueue && i < count; ++i) {
        MPTaskID identifier{};
        isStarted[i] = MPCreateTask(RunTask, &tasks[i], 0, queue, nullptr, nullptr, 0, &identifier) == 0;
        started += isStarted[i];
    }
    // This thread takes the bands of tasks that could not be started.
    for (std::int32_t i = 0; i < count; ++i) {
        if (!isStarted[i]) RunTask(&tasks[i]);
    }
    if (!hasQueue) return;
    WaitForTasks(queue, started, tasks.data(), count);
    MPDeleteQueue(queue);
}

}  // namespace

void Execute(GenericMPParams* params, RowWorker worker, std::int32_t autoTaskCount) {
    params->rowsDone = 0;
    const ProgressProc progress = GetProgressProc(params->progressHandler);
    // A report runs the program, which may drop its handler.
    const HostReference handler = progress ? HostReference::Share(params->progressHandler) : HostReference(nullptr);
    const std::int64_t count =
        params->height < kFewestParallelRows ? 1 : TaskCount(params->multiprocessingHint, autoTaskCount);
    if (count <= 1) {
        RunSequentially(params, worker, progress);
        return;
    }
    RunOnTasks(params, worker, static_cast<std::int32_t>(count));
    if (progress) progress(params->progressHandler, params->height, params->height);
}

ProgressProc GetProgressProc(REALobjectStruct* handler) {
    if (!handler) return nullptr;
    return reinterpret_cast<ProgressProc>(
        REALLoadObjectMethod(handler, "OnProgress(value as Integer,total as Integer)"));
}

std::int64_t GetCPUCoreCount(REALobjectStruct* /*instance*/, std::int64_t /*parameter*/) { return CPUCount(); }

}  // namespace ombrix
