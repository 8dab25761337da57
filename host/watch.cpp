#include "host/watch.h"

#include <pthread.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <utility>

#include "host/instance.h"
#include "host/registry.h"
#include "ombrix/error.h"
#include "text/phrases.h"

namespace ombrix::host {
namespace {

std::atomic<int> generation = 0;

/// How many forks lie behind this process since the first call. Asking for the process's number would take longer than
/// the rest of a turn.
int Generation() {
    static const int error = pthread_atfork(nullptr, nullptr, [] { ++generation; });
    if (error != 0) throw std::system_error(error, std::generic_category(), "forks cannot be counted");
    return generation;
}

}  // namespace

Watch::Watch(FaultPolicy policy, std::function<void(const std::string&)> report)
    : policy_(policy), report_(std::move(report)) {}

std::thread::id Watch::BeginTurn() {
    const int now = Generation();
    int ofTurns = kNone;
    if (!generationOfTurns_.compare_exchange_strong(ofTurns, now) && ofTurns != now) {
        throw Error("this process was forked from one whose threads took turns with the Host, and cannot take turns");
    }
    turn_.lock();
    return thread_.exchange(std::this_thread::get_id());
}

void Watch::EndTurn(std::thread::id before) {
    thread_ = before;
    turn_.unlock();
}

void Watch::Fault(const std::string& deed) { NoteFault(Culprit() + " " + deed); }

void Watch::NoteFault(std::string sentence) {
    if (policy_ == FaultPolicy::Abort) {
        std::fprintf(stderr, "host fault: %s\n", sentence.c_str());
        std::abort();
    }
    faults_.push_back(std::move(sentence));
    try {
        if (report_) report_(faults_.back());
    } catch (...) {
        // Must not reach a plug-in's frames.
    }
}

void Watch::FaultOfOtherThread(const char* service) {
    if (policy_ == FaultPolicy::Abort) {
        std::fprintf(stderr, "host fault: %s was called from a thread that is not the host's own\n", service);
        std::abort();
    }
    const std::lock_guard guard(otherThreadsMutex_);
    otherThreadsServices_.emplace_back(service);
}

void Watch::TakeInFaultsOfOtherThreads() {
    std::vector<std::string> services;
    {
        const std::lock_guard guard(otherThreadsMutex_);
        services.swap(otherThreadsServices_);
    }
    for (const std::string& service : services)
        Fault("called " + service + " from a thread that is not the host's own");
}

const std::vector<std::string>& Watch::Faults() {
    TakeInFaultsOfOtherThreads();
    return faults_;
}

std::string Watch::Culprit() const { return calls_.empty() ? "the program" : calls_.back()->name_; }

void Watch::KeepException(std::exception_ptr thrown) {
    if (!calls_.empty() && !calls_.back()->thrown_) calls_.back()->thrown_ = std::move(thrown);
}

bool Watch::HasKeptException() const { return !calls_.empty() && calls_.back()->thrown_; }

std::uint64_t Watch::OwnerFor(Locker locker) const {
    return locker == Locker::Program || calls_.empty() ? kProgram : calls_.back()->serial_;
}

void Watch::AddLock(REALobjectStruct* picture, Locker locker) { locks_.push_back({picture, OwnerFor(locker)}); }

void Watch::EndLock(REALobjectStruct* picture, Locker locker, const std::string& description) {
    const std::uint64_t owner = OwnerFor(locker);
    for (auto lock = locks_.rbegin(); lock != locks_.rend(); ++lock) {
        if (lock->picture != picture || (lock->owner != owner && lock->owner != kLeftBehind)) continue;
        locks_.erase(std::next(lock).base());
        return;
    }
    Fault("unlocked " + description + " without having locked it");
}

std::int64_t Watch::DropLocks(REALobjectStruct* picture) {
    return static_cast<std::int64_t>(std::erase_if(locks_, [&](const Lock& lock) { return lock.picture == picture; }));
}

std::int64_t Watch::LockCount(REALobjectStruct* picture) const {
    return std::ranges::count(locks_, picture, &Lock::picture);
}

void Watch::FaultForLocksLeftBy(const Call& call) {
    // By index, since reporting a fault may add locks.
    for (std::size_t i = 0; i < locks_.size(); ++i) {
        if (locks_[i].owner != call.serial_) continue;
        locks_[i].owner = kLeftBehind;
        Fault("left " + text::WithArticle(locks_[i].picture->type->info.name) + " locked when it returned");
    }
}

Watch::Call::Call(Watch& watch, std::string name)
    : watch_(watch), name_(std::move(name)), serial_(++watch.callsSoFar_), faultsBefore_(watch.faults_.size()) {
    watch_.calls_.push_back(this);
}

Watch::Call::~Call() {
    if (ended_) return;
    if (thrown_) watch_.Fault("dropped what a progress report threw");
    End();
}

void Watch::Call::End() {
    watch_.TakeInFaultsOfOtherThreads();
    watch_.FaultForLocksLeftBy(*this);
    watch_.calls_.pop_back();
    ended_ = true;
}

void Watch::Call::Finish() {
    End();
    if (thrown_) std::rethrow_exception(std::exchange(thrown_, nullptr));
    const std::vector<std::string>& faults = watch_.faults_;
    if (watch_.policy_ != FaultPolicy::Throw || faults.size() == faultsBefore_) return;
    const std::size_t others = faults.size() - faultsBefore_ - 1;
    throw Error(faults[faultsBefore_] + (others == 0 ? "" : " (and " + std::to_string(others) + " more)"));
}

}  // namespace ombrix::host
