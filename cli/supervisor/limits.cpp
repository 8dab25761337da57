#include "cli/supervisor/limits.h"

#include <unistd.h>

#include <algorithm>
#include <fstream>

#include "cli/supervisor/sanitizers.h"

namespace ombrix::cli {

namespace {

constexpr std::int64_t kSmallFilePixels = 50'000'000;  // at four bytes and a few copies, well below 1 GB
constexpr std::int64_t kPixelsPerByte = 8'400;         // deflate reaches 1032 : 1, and a byte has 8 pixels at least

constexpr std::int64_t kSmallFileMemory = 900'000'000;  // bytes
constexpr std::int64_t kMemoryPerByte = 4096;           // the same compression at 4 bytes a pixel

constexpr std::int64_t kSmallFile = 10'000;  // bytes
constexpr double kSmallFileWork = 4.5;       // seconds
constexpr double kSecondsPerByte = 0.001;    // 17 minutes for 1 MB
constexpr double kSlowness = OMBRIX_SANITIZED ? 10 : 1;

constexpr double kSmallFileSeconds = 4;
constexpr double kBytesPerSecond = 200'000;     // a tenth of the slowest decoder on a slow machine
constexpr double kPixelsPerSecond = 1'000'000;  // likewise

std::int64_t MachineMemory() {
    const long pages = sysconf(_SC_PHYS_PAGES), page = sysconf(_SC_PAGESIZE);
    std::int64_t memory = pages > 0 && page > 0 ? std::int64_t{pages} * page : INT64_MAX;
    // A container's, by the two versions of control groups. There is no number where there is no limit.
    for (const char* limit : {"/sys/fs/cgroup/memory.max", "/sys/fs/cgroup/memory/memory.limit_in_bytes"}) {
        std::int64_t bytes = 0;
        if (std::ifstream(limit) >> bytes && bytes > 0) memory = std::min(memory, bytes);
    }
    return memory;
}

}  // namespace

std::int64_t MemoryLimit(const Limits& limits, std::int64_t bytesRead) {
    if (limits.memory) return *limits.memory;
    static const std::int64_t machine = MachineMemory();
    return std::min(machine / 4 * 3, kSmallFileMemory + std::min(bytesRead, INT64_MAX / 8192) * kMemoryPerByte);
}

std::int64_t DataLimit(const Limits& limits, std::int64_t bytesRead) {
    constexpr std::int64_t kReserves = 512'000'000;  // bytes
    return 2 * std::min(MemoryLimit(limits, bytesRead), INT64_MAX / 4) + kReserves;
}

std::chrono::duration<double> WorkTime(std::int64_t bytesRead) {
    const auto more = static_cast<double>(std::max<std::int64_t>(0, bytesRead - kSmallFile));
    return std::chrono::duration<double>((kSmallFileWork + more * kSecondsPerByte) * kSlowness);
}

std::chrono::duration<double> DecodingTime(std::int64_t bytesRead, std::int64_t pixelsDelivered) {
    return std::chrono::duration<double>(kSmallFileSeconds + static_cast<double>(bytesRead) / kBytesPerSecond +
                                         static_cast<double>(pixelsDelivered) / kPixelsPerSecond);
}

std::int64_t PixelLimit(std::int64_t bytesOfFile) {
    return kSmallFilePixels + std::min(bytesOfFile, INT64_MAX / 16384) * kPixelsPerByte;
}

}  // namespace ombrix::cli
