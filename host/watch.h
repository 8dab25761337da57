// Keeps watch over what passes between host and plug-ins: the calls in progress, the locks on pictures, and the faults.
#pragma once

#include <cstdint>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "frame/definition_records.h"
#include "host/host.h"

namespace ombrix::host {

class Watch {
  public:
    Watch(FaultPolicy policy, std::function<void(const std::string&)> report);

    bool OnOwnThread() const { return std::this_thread::get_id() == thread_; }

    /// Notes that the call in progress, or the program when there is none, did what `deed` says.
    void Fault(const std::string& deed);
    /// Notes a whole sentence.
    void NoteFault(std::string sentence);
    /// Notes that another thread asked for this service. The one function here that any thread may call.
    void FaultOfOtherThread(const char* service);
    const std::vector<std::string>& Faults();

    /// `ColorFilterEffect.Apply`, or `the program`.
    std::string Culprit() const;

    /// A call into a plug-in, from here to the end of the scope.
    class Call;
    /// Keeps what the program threw inside a call, to be thrown on when the plug-in has returned.
    void KeepException(std::exception_ptr thrown);
    bool HasKeptException() const;

    enum class Locker { Program, Plugin };
    void AddLock(REALobjectStruct* picture, Locker locker);
    /// Ends the latest lock of the picture that the locker may end; without one, a fault. `description` is what the
    /// fault calls the picture.
    void EndLock(REALobjectStruct* picture, Locker locker, const std::string& description);
    /// Forgets all locks of a picture; how many there were.
    std::int64_t DropLocks(REALobjectStruct* picture);
    std::int64_t LockCount(REALobjectStruct* picture) const;
    std::int64_t LockCount() const { return static_cast<std::int64_t>(locks_.size()); }

  private:
    struct Lock {
        REALobjectStruct* picture;
        std::uint64_t owner;  ///< serial of the call that took it, or one of the two below
    };
    static constexpr std::uint64_t kProgram = 0;
    static constexpr std::uint64_t kLeftBehind = ~std::uint64_t{0};  ///< anyone may end it

    std::uint64_t OwnerFor(Locker locker) const;
    void FaultForLocksLeftBy(const Call& call);
    void TakeInFaultsOfOtherThreads();

    const FaultPolicy policy_;
    const std::function<void(const std::string&)> report_;
    const std::thread::id thread_ = std::this_thread::get_id();
    std::vector<std::string> faults_;
    std::vector<Call*> calls_;  ///< the innermost last
    std::uint64_t callsSoFar_ = 0;
    std::vector<Lock> locks_;

    std::mutex otherThreadsMutex_;
    std::vector<std::string> otherThreadsServices_;
};

class Watch::Call {
  public:
    /// `name` is what faults call it.
    Call(Watch& watch, std::string name);
    /// Ends the call without throwing: its faults stay noted.
    ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    /// Ends the call: throws on what the program threw during it, or else an Error for its first fault, as the policy
    /// has it.
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
