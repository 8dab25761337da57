#include "bench/cold_caches.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>

namespace ombrix::bench {
namespace {

constexpr std::size_t kLine = 64;  // bytes that caches hold together

/// Where the system does not tell the size, that of a large desktop's is taken.
std::size_t LargestCache() {
    const long size = sysconf(_SC_LEVEL3_CACHE_SIZE);
    return size > 0 ? static_cast<std::size_t>(size) : std::size_t{64} << 20;
}

}  // namespace

// A page that was never written would be read from one and the same page of zeros.
ColdCaches::ColdCaches() : memory_(LargestCache() / 4 * 5, 1) {}

void ColdCaches::Evict() const {
    unsigned sum = 0;
    for (std::size_t i = 0; i < memory_.size(); i += kLine) sum += memory_[i];
    benchmark::DoNotOptimize(sum);
}

}  // namespace ombrix::bench
