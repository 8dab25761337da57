// Spinning for a moment before a thread sleeps, since what it waits for may come sooner than it would wake.
#pragma once

#include <sched.h>

#include <algorithm>
#include <atomic>
#include <chrono>

namespace ombrix::platform {

/// Notices that other work competes for the processors: one that was yielded came back late.
class Crowd {
  public:
    using Clock = std::chrono::steady_clock;

    bool IsThere(Clock::time_point now) const { return now.time_since_epoch().count() < until_.load(kRelaxed); }

    void Note(Clock::time_point before, Clock::time_point after) {
        const auto lost = after - before;
        if (lost > kShortTask) until_.store((after + kAvoidedFor * lost).time_since_epoch().count(), kRelaxed);
    }

  private:
    static constexpr auto kRelaxed = std::memory_order_relaxed;
    /// Threads with long work keep a processor for some milliseconds.
    static constexpr std::chrono::microseconds kShortTask{500};
    /// No spinning for so many times the loss: a tenth of the time is lost at most.
    static constexpr int kAvoidedFor = 10;

    std::atomic<Clock::rep> until_ = Clock::time_point::min().time_since_epoch().count();
};

inline Crowd gCrowd;

/// Spins for about one wake-up: at most twice the best possible wait. Waking a thread took 40 to 100 us on an idle
/// virtual processor, 3 us on one that is awake.
inline constexpr std::chrono::microseconds kMoment{50};

/// Returns when `condition` holds, but no later than after kMoment or `atMost`.
/// Yields all the while: the thread that is waited for may need this processor. Returns at once in a crowd, which gives
/// a processor back late, whereas a thread that slept is scheduled early.
template <typename Condition>
void StayAwakeUntil(Condition condition, std::chrono::microseconds atMost = kMoment) {
    auto now = Crowd::Clock::now();
    const auto end = now + std::min(atMost, kMoment);
    while (!condition() && now < end && !gCrowd.IsThere(now)) {
        const auto before = now;
        sched_yield();
        now = Crowd::Clock::now();
        gCrowd.Note(before, now);
    }
}

}  // namespace ombrix::platform
