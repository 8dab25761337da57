#include "bench/row.h"

#include <utility>

namespace ombrix::bench {

RowName RowName::Split(const std::string& joined) {
    const auto first = joined.find('/');
    const auto last = joined.rfind('/');
    return {joined.substr(0, first), joined.substr(first + 1, last - first - 1),
            std::stoi(joined.substr(joined.find(':', last) + 1))};
}

void AddRow(const RowName& name, std::function<void(benchmark::State&)> measure) {
    benchmark::RegisterBenchmark(name.Joined().c_str(), std::move(measure))
        ->UseManualTime()
        ->Iterations(kIterations)
        ->Unit(benchmark::kMillisecond);
}

void ReportPace(benchmark::State& state, const Pace& pace, Size size, Limit limit) {
    state.counters[kPixelRateCounter] = size.Megapixels() / pace.workSeconds;
    state.counters[kRatioCounter] = pace.ratio;
    if (limit.least > 0) state.counters[kLeastCounter] = limit.least;
    if (limit.aim > 0) state.counters[kAimCounter] = limit.aim;
}

}  // namespace ombrix::bench
