#include "bench/pace.h"

#include <algorithm>
#include <chrono>
#include <vector>

namespace ombrix::bench {
namespace {

class Samples {
  public:
    /// One iteration; returns the seconds of the work.
    double Take(const PaceWork& work) {
        if (work.prepare) work.prepare();
        copies_.push_back(SecondsOf(work.copy));
        works_.push_back(SecondsOf(work.work));
        ratios_.push_back(copies_.back() / works_.back());
        return works_.back();
    }
    Pace Medians() const { return {Median(ratios_), Median(copies_), Median(works_)}; }

  private:
    std::vector<double> ratios_;
    std::vector<double> copies_;
    std::vector<double> works_;
};

void WarmUp(const PaceWork& work) {
    Samples ignored;
    for (int i = 0; i < kWarmUps; ++i) ignored.Take(work);
}

}  // namespace

Pace MeasurePace(benchmark::State& state, const PaceWork& work) {
    WarmUp(work);
    Samples samples;
    for (auto iteration : state) {
        static_cast<void>(iteration);
        state.SetIterationTime(samples.Take(work));
    }
    return samples.Medians();
}

Pace MeasureBriefly(const PaceWork& work) {
    constexpr int kFewest = 3;
    constexpr double kSeconds = 0.4;
    Samples samples;
    const double each = SecondsOf([&work] { Samples().Take(work); });
    const double affordable = std::clamp(kSeconds / each, 1.0 * kFewest, 1.0 * kIterations);
    for (int i = 0; i < static_cast<int>(affordable); ++i) samples.Take(work);
    return samples.Medians();
}

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
