#include "bench/share.h"

#include <algorithm>

#include "bench/timing.h"

namespace ombrix::bench {
namespace {

class Rounds {
  public:
    explicit Rounds(const Contest& contest) : contest_(contest), limitSeconds_(contest.limits.size()) {}

    /// Returns the seconds of the work.
    double Take() {
        for (std::size_t i = 0; i < limitSeconds_.size(); ++i) limitSeconds_[i].push_back(Time(contest_.limits[i]));
        workSeconds_.push_back(Time(contest_.work));
        return workSeconds_.back();
    }

    Share Result() const {
        std::vector<double> medians;
        for (const std::vector<double>& seconds : limitSeconds_) medians.push_back(Median(seconds));
        const auto fastest = std::min_element(medians.begin(), medians.end()) - medians.begin();
        const std::vector<double>& limit = limitSeconds_[fastest];
        std::vector<double> shares;
        for (std::size_t i = 0; i < limit.size(); ++i) shares.push_back(limit[i] / workSeconds_[i]);
        return {Median(shares), medians[fastest], Median(workSeconds_), static_cast<std::size_t>(fastest)};
    }

  private:
    double Time(const std::function<void()>& piece) const {
        if (contest_.prepare) contest_.prepare();
        return SecondsOf(piece);
    }

    const Contest& contest_;
    std::vector<std::vector<double>> limitSeconds_;
    std::vector<double> workSeconds_;
};

}  // namespace

Share MeasureShare(benchmark::State& state, const Contest& contest) {
    Rounds warmUps(contest);
    for (int i = 0; i < kWarmUps; ++i) warmUps.Take();
    Rounds rounds(contest);
    for (auto iteration : state) {
        static_cast<void>(iteration);
        state.SetIterationTime(rounds.Take());
    }
    return rounds.Result();
}

Share MeasureShareBriefly(const Contest& contest) {
    constexpr double kFewest = 3;
    constexpr double kSeconds = 0.4;
    const double each = SecondsOf([&contest] { Rounds(contest).Take(); });
    const double count = std::clamp(kSeconds / each, kFewest, 1.0 * kRounds);
    Rounds rounds(contest);
    for (int i = 0; i < static_cast<int>(count); ++i) rounds.Take();
    return rounds.Result();
}

}  // namespace ombrix::bench
