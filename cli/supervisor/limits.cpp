#include "cli/supervisor/limits.h"

#include <unistd.h>

#include <algorithm>

namespace ombrix::cli {

namespace {

constexpr std::int64_t kSmallFilePixels = 50'000'000;  // at four bytes and a few copies, well below 1 GB
constexpr std::int64_t kPixelsPerByte = 8'400;         // deflate reaches 1032 : 1, and a byte has 8 pixels at least

constexpr std::int64_t kSmallFileMemory = 900'000'000;  // bytes
constexpr std::int64_t kMemoryPerByte = 4096;           // the same compression at 4 bytes a pixel

constexpr double kSmallFileSeconds = 4;
constexpr double kBytesPerSecond = 200'000;     // a tenth of the slowest decoder on a slow machine
constexpr double kPixelsPerSecond = 1'000'000;  // likewise

std::int64_t MachineMemory() {
    const long pages = sysconf(_SC_PHYS_PAGES), page = sysconf(_SC_PAGESIZE);
    return pages > 0 && page > 0 ? std::int64_t{pages} * page : INT64_MAX;
}

}  // namespace

std::int64_t MemoryLimit(const Limits& limits, std::int64_t bytesRead) {
    if (limits.memory) return *limits.memory;
    return std::min(MachineMemory() / 4 * 3, kSmallFileMemory + std::min(bytesRead, INT64_MAX / 8192) * kMemoryPerByte);
}

std::chrono::duration<double> DecodingTime(std::int64_t bytesRead, std::int64_t pixelsDelivered) {
    return std::chrono::duration<double>(kSmallFileSeconds + static_cast<double>(bytesRead) / kBytesPerSecond +
                                         static_cast<double>(pixelsDelivered) / kPixelsPerSecond);
}

std::int64_t PixelLimit(std::int64_t bytesOfFile) {
    return kSmallFilePixels + std::min(bytesOfFile, INT64_MAX / 16384) * kPixelsPerByte;
}

}  // namespace ombrix::cli
