#include "bench/copy_pace.h"

#include <array>
#include <cstring>
#include <stdexcept>

#include "platform/multiprocessing.h"

namespace ombrix::bench {
namespace {

constexpr int kMostTasks = 8;

struct Part {
    std::uint8_t* target;
    const std::uint8_t* source;
    std::size_t bytes;
};

std::int32_t CopyPart(void* argument) {
    const auto* part = static_cast<const Part*>(argument);
    std::memcpy(part->target, part->source, part->bytes);
    return 0;
}

}  // namespace

void Copy(std::uint8_t* target, const std::uint8_t* source, std::size_t bytes, int tasks) {
    if (tasks <= 1) {
        std::memcpy(target, source, bytes);
        return;
    }
    if (tasks > kMostTasks) throw std::invalid_argument("more than 8 tasks");
    std::array<Part, kMostTasks> parts;
    MPQueueID queue = nullptr;
    if (MPCreateQueue(&queue) != 0) throw std::runtime_error("no queue for tasks");
    const std::size_t share = bytes / static_cast<std::size_t>(tasks);
    int started = 0;
    for (int i = 0; i < tasks; ++i) {
        const std::size_t first = share * static_cast<std::size_t>(i);
        parts[i] = {target + first, source + first, i == tasks - 1 ? bytes - first : share};
        started += MPCreateTask(CopyPart, &parts[i], 0, queue, nullptr, nullptr, 0, nullptr) == 0;
    }
    for (int i = 0; i < started; ++i) MPWaitOnQueue(queue, nullptr, nullptr, nullptr, kWaitForever);
    MPDeleteQueue(queue);
    if (started < tasks) throw std::runtime_error("a task could not be started");
}

}  // namespace ombrix::bench
