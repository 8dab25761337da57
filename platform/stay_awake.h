// Staying awake for a moment, where what a thread waits for may come sooner than a sleeping thread wakes.
#pragma once

#include <sched.h>

#include <algorithm>
#include <atomic>
#include <chrono>

namespace ombrix::platform {

/// Whether processor time that was offered to others lately came back late: mostly because other programs took it, now
/// and then because a long task of this one did, next to which the loss is small.
class Crowd {
  public:
    using Clock = std::chrono::steady_clock;

    bool IsThere(Clock::time_point now) const { return now.time_since_epoch().count() < until_.load(kRelaxed); }

    /// Takes note that the processor was given away at `before` and came back at `after`.
    void Note(Clock::time_point before, Clock::time_point after) {
        const auto lost = after - before;
        if (lost > kShortTask) until_.store((after + kAvoidedFor * lost).time_since_epoch().count(), kRelaxed);
    }

  private:
    static constexpr auto kRelaxed = std::memory_order_relaxed;
    /// Threads with long work of their own keep a processor for some milliseconds once they have it.
    static constexpr std::chrono::microseconds kShortTask{500};
    /// So that what is lost to them is a tenth of the time at most.
    static constexpr int kAvoidedFor = 10;

    std::atomic<Clock::rep> until_ = Clock::time_point::min().time_since_epoch().count();
};

inline Crowd gCrowd;

/// About what it takes to wake a thread where the processor for it is a virtual one that has gone idle: 40 to 100 us
/// were measured, and 3 us where it is awake. Who stays awake for as long never waits more than twice the time.
inline constexpr std::chrono::microseconds kMoment{50};

/// Returns when `condition` holds, and after a moment or `atMost` in any case.
/// The processor is offered to others all the while: there may be more threads awake than processors, and what is
/// waited for may be done by a thread whose turn comes after this one's. A crowd would not give it back soon, whereas
/// a thread that slept has its turn early, so that this returns at once where there is one.
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
