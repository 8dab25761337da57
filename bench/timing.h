// How often and how long.
#pragma once

#include <functional>
#include <vector>

namespace ombrix::bench {

/// Rounds that count, and those before them that fill caches and wake threads.
inline constexpr int kRounds = 21;
inline constexpr int kWarmUps = 2;

/// Seconds that `work` takes.
double SecondsOf(const std::function<void()>& work);

/// `values` must not be empty.
double Median(std::vector<double> values);

}  // namespace ombrix::bench
