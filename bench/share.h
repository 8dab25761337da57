// Measures work as a share of its limit. Both are timed beside each other, round after round, so that what else the
// machine does slows both alike.
#pragma once

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <vector>

namespace ombrix::bench {

/// What a round times, one after the other.
struct Contest {
    std::function<void()> prepare;              ///< runs before each piece and is not timed; may be empty
    std::vector<std::function<void()>> limits;  ///< at least one; the fastest of them is the limit
    std::function<void()> work;
};

/// Medians over the rounds.
struct Share {
    double share;  ///< time of the limit / time of the work, round by round
    double limitSeconds;
    double workSeconds;
    std::size_t limit;  ///< which one was the fastest
};

/// Takes the rounds as the iterations of `state`.
Share MeasureShare(benchmark::State& state, const Contest& contest);

/// Without a state, for work that may be slow: as many rounds as fit into 0.4 seconds, but 3 at least.
Share MeasureShareBriefly(const Contest& contest);

}  // namespace ombrix::bench
