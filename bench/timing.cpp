#include "bench/timing.h"

#include <algorithm>
#include <chrono>

namespace ombrix::bench {

double SecondsOf(const std::function<void()>& work) {
    using Clock = std::chrono::steady_clock;
    const Clock::time_point start = Clock::now();
    work();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

}  // namespace ombrix::bench
