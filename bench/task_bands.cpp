#include "bench/task_bands.h"

#include <array>
#include <cstdint>
#include <stdexcept>

#include "bench/cache_line.h"
#include "platform/multiprocessing.h"

namespace ombrix::bench {
namespace {

constexpr int kMostTasks = 8;

struct Task {
    const std::function<void(Band band)>* run;
    Band band;
};

std::int32_t RunTask(void* argument) {
    const auto* task = static_cast<const Task*>(argument);
    (*task->run)(task->band);
    return 0;
}

}  // namespace

void RunInBands(std::size_t count, int tasks, const std::function<void(Band band)>& run) {
    if (tasks <= 1) {
        run({0, count});
        return;
    }
    if (tasks > kMostTasks) throw std::invalid_argument("more than 8 tasks");
    std::array<Task, kMostTasks> all;
    MPQueueID queue = nullptr;
    if (MPCreateQueue(&queue) != 0) throw std::runtime_error("no queue for tasks");
    const std::size_t share = count / static_cast<std::size_t>(tasks) / kCacheLine * kCacheLine;
    int started = 0;
    for (int i = 0; i < tasks; ++i) {
        const std::size_t first = share * static_cast<std::size_t>(i);
        all[i] = {&run, {first, i == tasks - 1 ? count : first + share}};
        started += MPCreateTask(RunTask, &all[i], 0, queue, nullptr, nullptr, 0, nullptr) == 0;
    }
    for (int i = 0; i < started; ++i) MPWaitOnQueue(queue, nullptr, nullptr, nullptr, kWaitForever);
    MPDeleteQueue(queue);
    if (started < tasks) throw std::runtime_error("a task could not be started");
}

}  // namespace ombrix::bench
