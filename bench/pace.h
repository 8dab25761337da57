// How the pace of a piece of work is measured: against a copy of the same pixels right before it, many times over, and
// the median taken. What else the machine does disturbs both alike.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <vector>

namespace ombrix::bench {

/// Measured iterations, and those before them that only bring caches and threads into their usual state.
inline constexpr int kIterations = 21;
inline constexpr int kWarmUps = 2;

/// One iteration does these in turn.
struct PaceWork {
    std::function<void()> prepare;  ///< not timed; may be empty
    std::function<void()> copy;     ///< the yardstick: a copy, or other work of about as long
    std::function<void()> work;
};

/// Medians over the iterations.
struct Pace {
    double ratio;  ///< time of the copy / time of the work, each pair by itself: 1 is the pace of a copy
    double copySeconds;
    double workSeconds;
};

/// Measures as the iterations of `state`, whose number was set to kIterations.
Pace MeasurePace(benchmark::State& state, const PaceWork& work);
/// Measures by itself, for works of which many are slow: one warm-up, and fewer iterations (3 at least) when as many
/// would take longer than 0.4 seconds.
Pace MeasureBriefly(const PaceWork& work);

/// Seconds that `work` takes.
double SecondsOf(const std::function<void()>& work);
/// `values` must not be empty.
double Median(std::vector<double> values);

}  // namespace ombrix::bench
