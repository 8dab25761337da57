// A line of the tables: its name, and what it reports.
#pragma once

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

#include "bench/bars.h"
#include "bench/share.h"
#include "bench/timing.h"

namespace ombrix::bench {

/// The parts of a benchmark's name, which is like "in place/brightness/tasks:2".
struct LineName {
    std::string table;
    std::string measured;  ///< an effect, a blend mode or a loop
    int tasks;

    std::string Joined() const { return table + '/' + measured + "/tasks:" + std::to_string(tasks); }
    static LineName Split(const std::string& joined);
};

// The tables that other libraries have counterparts for.
inline constexpr const char* kInPlace = "in place";
inline constexpr const char* kIntoNew = "into a new picture";
inline constexpr const char* kInPlaceMasked = "in place with a mask";
inline constexpr const char* kBlend = "blend";
inline constexpr const char* kBlendMixed = "blend with opacity and mask";

/// The name of a table for pictures of `bits` per pixel: 32 bits go without saying.
std::string AtDepth(const std::string& table, int bits);

// The counters of a line, which the reporter makes cells of.
inline constexpr const char* kPixelRateCounter = "Mpixel/s";
inline constexpr const char* kShareCounter = "share";
inline constexpr const char* kLeastCounter = "least";
inline constexpr const char* kAimCounter = "aim";
inline constexpr const char* kLimitRateCounter = "limit GB/s";  ///< the label is then the form of the loop
inline constexpr const char* kOverheadCounter = "overhead us";
inline constexpr const char* kMostOverheadCounter = "at most us";
inline constexpr const char* kOtherCounter = "other ";  ///< begins the name: what a library or another loop reaches

/// Registers a line. `measure` takes that many iterations.
void AddLine(const LineName& name, std::function<void(benchmark::State&)> measure, int iterations = kRounds);

/// Reports a share and the pace of the work on so many megapixels. Without a bar, none is shown.
void ReportShare(benchmark::State& state, const Share& share, double megapixels, Bar bar);

}  // namespace ombrix::bench
