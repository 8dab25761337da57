// What the worker is doing, in memory that its supervisor shares: counters, and who is to blame when it dies.
#pragma once

#include <array>
#include <atomic>
#include <climits>
#include <cstdint>
#include <string>

namespace ombrix::cli {

enum class Activity : std::uint16_t { Other, Reading, Effect, Writing };

/// A subject is a file or the class of an effect. Plain data: it is read after the worker has been killed, and written
/// in handlers of signals.
class ProgressOfWork {
  public:
    struct Place {
        Activity activity = Activity::Other;
        std::string subject;
    };

    std::atomic<std::int64_t> done{0};    ///< of the current stage, in its own units
    std::atomic<std::int64_t> total{0};   ///< 0 when unknown
    std::atomic<std::int64_t> pixels{0};  ///< that decoders have delivered
    std::atomic<std::int64_t> bytes{0};   ///< size of all files that are read
    std::atomic<int> readers{0};          ///< threads that wait for a decoder
    std::atomic<int> effects{0};          ///< threads in an effect

    /// Where the main thread is.
    Place Main() const { return PlaceOf(main); }
    /// Which file a decoder was last asked for.
    Place LastReading() const { return PlaceOf(lastReading); }
    /// Where a thread crashed; where the main thread was, if that did not come to be noted.
    Place Crash() const { return crash != 0 ? PlaceOf(crash) : Main(); }
    /// Bytes of private memory when a thread crashed, which the limit on data counts. 0 if none did.
    std::int64_t DataAtCrash() const { return dataAtCrash; }

  private:
    friend class Doing;
    friend void NoteCrash(int signal);
    using Packed = std::uint32_t;  ///< activity, and index of the subject

    Place PlaceOf(Packed packed) const;
    /// Of a thread that a library started.
    Packed LikelyPlace() const;
    Packed Pack(Activity activity, const char* subject);

    static constexpr std::size_t kMostSubjects = 64;
    std::atomic<Packed> main{0};
    std::atomic<Packed> lastReading{0};
    std::atomic<Packed> lastEffect{0};
    std::atomic<Packed> crash{0};
    std::atomic<std::int64_t> dataAtCrash{0};
    std::atomic<std::size_t> subjectCount{0};
    std::array<std::array<char, PATH_MAX>, kMostSubjects> subjects;
};

/// This process's. Shared with the supervisor in a worker, otherwise its own.
ProgressOfWork& Work();

/// Memory that survives a fork shared. Call before it. A std::bad_alloc when there is none.
void ShareWork();

/// Notes what the calling thread does, until the end of the scope. Scopes nest.
class Doing {
  public:
    Doing(Activity activity, const std::string& subject);
    ~Doing();
    Doing(const Doing&) = delete;
    Doing& operator=(const Doing&) = delete;

  private:
    std::atomic<int>* Counter() const;

    const Activity activity_;
    const ProgressOfWork::Packed outer_;
};

/// Handler of signals that mean a crash: notes where, and lets the signal end the process.
void NoteCrash(int signal);

}  // namespace ombrix::cli
