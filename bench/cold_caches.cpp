#include "bench/cold_caches.h"

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>

#include "bench/cache_line.h"

namespace ombrix::bench {
namespace {

/// As large as a large desktop's where the system does not tell.
std::size_t LargestCache() {
    const long size = sysconf(_SC_LEVEL3_CACHE_SIZE);
    return size > 0 ? static_cast<std::size_t>(size) : std::size_t{64} << 20;
}

}  // namespace

// All pages that were never written are one and the same page of zeros.
ColdCaches::ColdCaches() : memory_(LargestCache() / 4 * 5, 1) {}

void ColdCaches::Evict() const {
    unsigned sum = 0;
    for (std::size_t i = 0; i < memory_.size(); i += kCacheLine) sum += memory_[i];
    benchmark::DoNotOptimize(sum);
}

}  // namespace ombrix::bench
