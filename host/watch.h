// Watches the traffic between host and plug-ins: calls in progress, locks, faults.
#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "ombrix/host.h"
#include "sdk/definition_records.h"

namespace ombrix::host {

class Watch {
  public:
    Watch(FaultPolicy policy, std::function<void(const std::string&)> report);

    bool OnOwnThread() const { return std::this_thread::get_id() == thread_; }
    /// Makes the calling thread the own one, once no other thread has a turn. Returns the one before. An Error in a
    /// process that was forked after the first turn.
    std::thread::id BeginTurn();
    void EndTurn(std::thread::id before);

    /// Notes a fault, "<culprit> <deed>".
    void Fault(const std::string& deed);
    /// Notes a fault that is a whole sentence.
    void NoteFault(std::string sentence);
    /// Notes that a foreign thread called this service. The one function for any thread.
    void FaultOfOtherThread(const char* service);
    const std::vector<std::string>& Faults();

    /// The call in progress, such as "ColorFilterEffect.Apply", or "the program".
    std::string Culprit() const;

    /// A call into a plug-in, for the time of its scope.
    class Call;
    /// Keeps what the program threw inside a call until the plug-in has returned.
    void KeepException(std::exception_ptr thrown);
    bool HasKeptException() const;

    enum class Locker { Program, Plugin };
    void AddLock(REALobjectStruct* picture, Locker locker);
    /// Ends the latest lock that the locker may end; a fault when there is none. `description` is the picture's.
    void EndLock(REALobjectStruct* picture, Locker locker, const std::string& description);
    /// Forgets all locks of a picture. Returns their number.
    std::int64_t DropLocks(REALobjectStruct* picture);
    std::int64_t LockCount(REALobjectStruct* picture) const;
    std::int64_t LockCount() const { return static_cast<std::int64_t>(locks_.size()); }

  private:
    struct Lock {
        REALobjectStruct* picture;
        std::uint64_t owner;  ///< serial of the call that took it, or one of these:
    };
    static constexpr std::uint64_t kProgram = 0;
    static constexpr std::uint64_t kLeftBehind = ~std::uint64_t{0};  ///< free for anyone to end

    std::uint64_t OwnerFor(Locker locker) const;
    void FaultForLocksLeftBy(const Call& call);
    void TakeInFaultsOfOtherThreads();

    const FaultPolicy policy_;
    const std::function<void(const std::string&)> report_;
    static constexpr int kNone = -1;
    std::atomic<int> generationOfTurns_ = kNone;  ///< of processes; none before the first turn
    std::mutex turn_;
    std::atomic<std::thread::id> thread_ = std::this_thread::get_id();
    std::vector<std::string> faults_;
    std::vector<Call*> calls_;  ///< the innermost last
    std::uint64_t callsSoFar_ = 0;
    std::vector<Lock> locks_;

    std::mutex otherThreadsMutex_;
    std::vector<std::string> otherThreadsServices_;
};

class Watch::Call {
  public:
    /// Faults name the call `name`.
    Call(Watch& watch, std::string name);
    /// Notes faults and does not throw.
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    /// Ends the call. Throws on what the program threw in it, or else, by policy, an Error for its first fault.
    void Finish();

  private:
    friend class Watch;
    void End();

    Watch& watch_;
    const std::string name_;
    const std::uint64_t serial_;
    const std::size_t faultsBefore_;
    std::exception_ptr thrown_;
    bool ended_ = false;
};

}  // namespace ombrix::host
