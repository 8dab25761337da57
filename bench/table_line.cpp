#include "bench/table_line.h"

#include <utility>

namespace ombrix::bench {

LineName LineName::Split(const std::string& joined) {
    const auto first = joined.find('/');
    const auto last = joined.rfind('/');
    return {joined.substr(0, first), joined.substr(first + 1, last - first - 1),
            std::stoi(joined.substr(joined.find(':', last) + 1))};
}

std::string AtDepth(const std::string& table, int bits) {
    return bits == 32 ? table : table + " at " + std::to_string(bits) + " bits";
}

void AddLine(const LineName& name, std::function<void(benchmark::State&)> measure, int iterations) {
    benchmark::RegisterBenchmark(name.Joined().c_str(), std::move(measure))
        ->UseManualTime()
        ->Iterations(iterations)
        ->Unit(benchmark::kMillisecond);
}

void ReportShare(benchmark::State& state, const Share& share, double megapixels, Bar bar) {
    state.counters[kPixelRateCounter] = megapixels / share.workSeconds;
    state.counters[kShareCounter] = share.share;
    if (bar.least > 0) state.counters[kLeastCounter] = bar.least;
    if (bar.aim > 0) state.counters[kAimCounter] = bar.aim;
}

}  // namespace ombrix::bench
