// A row of the table: what it is called, what it is held to, and what it reports.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>
#include <vector>

#include "bench/bench_picture.h"
#include "bench/pace.h"

namespace ombrix::bench {

/// The name of a benchmark, in its parts: "in place/brightness/tasks:2".
struct RowName {
    std::string group;
    std::string work;
    int tasks;

    std::string Joined() const { return group + '/' + work + "/tasks:" + std::to_string(tasks); }
    static RowName Split(const std::string& joined);
};

// The groups of rows that other libraries have work for.
inline constexpr const char* kInPlace = "in place";
inline constexpr const char* kIntoNew = "into a new picture";
inline constexpr const char* kInPlaceMasked = "in place with a mask";
inline constexpr const char* kBlend = "blend";
inline constexpr const char* kBlendMixed = "blend with opacity and mask";
inline constexpr double kMixedOpacity = 0.7;

/// What a ratio is held to: `least` has to be reached, `aim` is where it should be. 0: nothing is asked.
struct Limit {
    double least = 0;
    double aim = 0;

    Limit Scaled(double factor) const { return {least * factor, aim * factor}; }
};

/// Two halves that meet in memory and wait for each other do not come to the whole.
inline constexpr double kSeveralTasksFactor = 0.8;
inline Limit ForTasks(Limit limit, int tasks) { return tasks > 1 ? limit.Scaled(kSeveralTasksFactor) : limit; }

// The counters of a row, which the table is made of. Those that begin with kPeerCounter are the ratios of peers.
inline constexpr const char* kPixelRateCounter = "Mpixel/s";
inline constexpr const char* kRatioCounter = "ratio";
inline constexpr const char* kLeastCounter = "least";
inline constexpr const char* kAimCounter = "aim";
inline constexpr const char* kOverheadCounter = "overhead us";
inline constexpr const char* kMostOverheadCounter = "at most us";
inline constexpr const char* kPeerCounter = "peer ";

/// Registers a row that `measure` takes kIterations of.
void AddRow(const RowName& name, std::function<void(benchmark::State&)> measure);

void ReportPace(benchmark::State& state, const Pace& pace, Size size, Limit limit);

}  // namespace ombrix::bench
