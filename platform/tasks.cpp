// Tasks on threads that are kept and reused, and the queues that tasks notify.
//
// Tasks wait in one line, and any free thread takes the first: one that is awake may be there before the one called. At
// least as many threads are coming as there are tasks in the line, so n tasks run at once, whatever they wait for.
//
// One mutex guards everything, and is never held while a task runs. A thread posts its task's message and counts as
// coming again under one lock: whoever has the message finds the thread free, so n tasks at once never cause more than
// n threads.
#include <pthread.h>
#include <sched.h>
#include <signal.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <new>
#include <thread>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/multiprocessing.h"
#include "platform/stay_awake.h"

namespace {

using ombrix::platform::Crowd;
using ombrix::platform::StayAwakeUntil;

// The system's own statuses.
constexpr std::int32_t kBadParameter = -50;
constexpr std::int32_t kDeleted = -29295;
constexpr std::int32_t kInsufficientResources = -29298;
constexpr std::int32_t kInvalidId = -29299;

/// Numbers that are never reused, so that a deleted queue's stays invalid.
using Id = std::uintptr_t;

/// A task, and later its message: posting needs no memory.
struct Task {
    std::int32_t (*entry)(void*);
    void* parameter;
    Id queue;
    void* termination1;
    void* termination2;
    std::int32_t result;
};

/// Tasks move by splicing, which neither allocates nor fails.
using Tasks = std::list<Task>;

struct Queue {
    Tasks messages;
    bool deleted = false;
    std::atomic<bool> isReady = false;  // there is a message, or none will come; read without the mutex
    std::condition_variable changed;
};

/// A sleeping thread, on that thread's stack.
struct IdleThread {
    bool isCalled = false;
    std::condition_variable called;
    IdleThread* next = nullptr;
};

struct State {
    explicit State(Id firstId) : nextId(firstId) {}

    std::shared_ptr<Queue> Find(Id queue) const {
        const auto found = queues.find(queue);
        return found == queues.end() ? nullptr : found->second;
    }

    std::mutex mutex;
    Id nextId;
    std::unordered_map<Id, std::shared_ptr<Queue>> queues;
    Tasks line;                         // tasks that no thread has begun, the oldest first
    std::atomic<bool> hasLine = false;  // there are any; read without the mutex
    std::size_t coming = 0;             // threads without a task that will look at the line before they sleep
    IdleThread* idle = nullptr;         // the latest first, whose stack is warmest in the caches
    Tasks spare;                        // memory for the next tasks
};

/// Never destroyed: threads use it until the process ends, and destructors elsewhere may call in here.
State& Shared() {
    alignas(State) static std::byte storage[sizeof(State)];
    static State* const state = [] {
        // A forked child has none of the threads, and perhaps a locked mutex.
        pthread_atfork(nullptr, nullptr, [] {
            const Id nextId = Shared().nextId;
            new (storage) State(nextId);
        });
        return new (storage) State(1);
    }();
    return *state;
}

/// New threads inherit this mask: signals are for threads that the program knows.
class AllSignalsBlocked {
  public:
    AllSignalsBlocked() {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~AllSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    AllSignalsBlocked(const AllSignalsBlocked&) = delete;
    AllSignalsBlocked& operator=(const AllSignalsBlocked&) = delete;

  private:
    sigset_t before_;
};

/// Sleeps until called, unless a task comes first. The thread counts as coming, before and after.
void AwaitCall(State& state, std::unique_lock<std::mutex>& lock, IdleThread& self) {
    lock.unlock();
    StayAwakeUntil([&state] { return state.hasLine.load(std::memory_order_relaxed); });
    lock.lock();
    if (state.line.empty()) {
        --state.coming;
        self.isCalled = false;
        self.next = std::exchange(state.idle, &self);
        self.called.wait(lock, [&self] { return self.isCalled; });
    }
}

/// Posts the message of the task in `finished`.
void Post(State& state, std::unique_lock<std::mutex>& lock, Tasks& finished) {
    const std::shared_ptr<Queue> queue = state.Find(finished.front().queue);
    if (!queue) {
        state.spare.splice(state.spare.end(), finished);
        return;
    }
    queue->messages.splice(queue->messages.end(), finished);
    queue->isReady = true;
    lock.unlock();  // or the woken thread would have to wait for it
    queue->changed.notify_one();
    lock.lock();
}

/// Runs one task after the other until the process ends. The thread counts as coming.
[[noreturn]] void RunTasks() {
    State& state = Shared();
    IdleThread self;
    Tasks running;
    std::unique_lock lock(state.mutex);
    for (;;) {
        while (state.line.empty()) {
            AwaitCall(state, lock, self);
        }
        running.splice(running.end(), state.line, state.line.begin());
        state.hasLine = !state.line.empty();
        --state.coming;
        lock.unlock();

        Task& task = running.front();
        task.result = task.entry(task.parameter);

        lock.lock();
        ++state.coming;
        Post(state, lock, running);
    }
}

void StartThread() {
    const AllSignalsBlocked blocked;
    std::thread(RunTasks).detach();
}

/// Throws std::system_error or std::bad_alloc when there is no thread or memory for the task.
void Start(State& state, std::unique_lock<std::mutex>& lock, const Task& task) {
    Tasks started;
    if (state.spare.empty()) {
        started.push_back(task);
    } else {
        started.splice(started.end(), state.spare, state.spare.begin());
        started.front() = task;
    }
    IdleThread* called = nullptr;
    if (state.line.size() >= state.coming) {
        called = state.idle;
        if (called) {
            state.idle = called->next;
            called->isCalled = true;
        } else {
            StartThread();  // under the mutex: the task joins the line only once it has a thread
        }
        ++state.coming;
    }
    state.line.splice(state.line.end(), started);
    state.hasLine = true;
    if (called) {
        lock.unlock();
        called->called.notify_one();
    }
}

/// Whether a thread's stack, of the default size, is large enough.
bool FitsTheStack(unsigned long stackSize) {
    pthread_attr_t attributes;
    if (stackSize == 0 || pthread_attr_init(&attributes) != 0) {
        return stackSize == 0;
    }
    std::size_t available = 0;
    pthread_attr_getstacksize(&attributes, &available);
    pthread_attr_destroy(&attributes);
    return stackSize <= available;
}

std::chrono::microseconds Duration(std::int32_t duration) {
    if (duration < 0) {
        return std::chrono::microseconds(-std::int64_t{duration});
    }
    return std::chrono::milliseconds(duration);
}

void Store(void** address, void* value) {
    if (address) {
        *address = value;
    }
}

template <typename Handle>
Handle ToHandle(Id id) {
    return reinterpret_cast<Handle>(id);
}

Id ToId(MPQueueID queue) { return reinterpret_cast<Id>(queue); }

}  // namespace

/// Counts the processors that the calling thread may run on.
unsigned long MPProcessorsScheduled(void) {
    std::vector<cpu_set_t> mask(1);
    // The kernel refuses masks smaller than its own, whose size it does not tell.
    while (sched_getaffinity(0, mask.size() * sizeof(cpu_set_t), mask.data()) != 0) {
        if (errno != EINVAL || mask.size() >= 1024) {
            return 1;
        }
        mask.resize(2 * mask.size());
    }
    return static_cast<unsigned long>(CPU_COUNT_S(mask.size() * sizeof(cpu_set_t), mask.data()));
}

std::int32_t MPCreateQueue(MPQueueID* queue) {
    if (!queue) {
        return kBadParameter;
    }
    try {
        auto created = std::make_shared<Queue>();
        State& state = Shared();
        const std::lock_guard lock(state.mutex);
        state.queues.emplace(state.nextId, std::move(created));
        *queue = ToHandle<MPQueueID>(state.nextId++);
        return 0;
    } catch (const std::exception&) {
        return kInsufficientResources;
    }
}

std::int32_t MPCreateTask(std::int32_t (*entry)(void*), void* parameter, unsigned long stackSize, MPQueueID notifyQueue,
                          void* termination1, void* termination2, std::uint32_t options, MPTaskID* task) {
    if (!entry || options != 0) {
        return kBadParameter;
    }
    if (!FitsTheStack(stackSize)) {
        return kInsufficientResources;
    }
    try {
        State& state = Shared();
        std::unique_lock lock(state.mutex);
        if (notifyQueue && !state.Find(ToId(notifyQueue))) {
            return kInvalidId;
        }
        const Id id = state.nextId++;
        Start(state, lock, {entry, parameter, ToId(notifyQueue), termination1, termination2, 0});
        if (task) {
            *task = ToHandle<MPTaskID>(id);
        }
        return 0;
    } catch (const std::exception&) {
        return kInsufficientResources;
    }
}

std::int32_t MPWaitOnQueue(MPQueueID queue, void** parameter1, void** parameter2, void** parameter3,
                           std::int32_t duration) {
    State& state = Shared();
    std::unique_lock lock(state.mutex);
    // Shared, so that it outlives a deletion during the wait.
    const std::shared_ptr<Queue> waited = state.Find(ToId(queue));
    if (!waited) {
        return kInvalidId;
    }
    const auto end = Crowd::Clock::now() + Duration(duration);
    if (!waited->isReady) {
        lock.unlock();
        StayAwakeUntil([&waited] { return waited->isReady.load(std::memory_order_relaxed); }, Duration(duration));
        lock.lock();
    }
    const auto changed = [&waited] { return waited->deleted || !waited->messages.empty(); };
    if (duration == kWaitForever) {
        waited->changed.wait(lock, changed);
    } else if (!waited->changed.wait_until(lock, end, changed)) {
        return kWaitTimedOut;
    }
    if (waited->deleted) {
        return kDeleted;
    }
    const Task& message = waited->messages.front();
    Store(parameter1, message.termination1);
    Store(parameter2, message.termination2);
    Store(parameter3, ToHandle<void*>(static_cast<Id>(static_cast<std::intptr_t>(message.result))));
    state.spare.splice(state.spare.end(), waited->messages, waited->messages.begin());
    waited->isReady = !waited->messages.empty();
    return 0;
}

std::int32_t MPDeleteQueue(MPQueueID queue) {
    State& state = Shared();
    const std::lock_guard lock(state.mutex);
    const auto found = state.queues.find(ToId(queue));
    if (found == state.queues.end()) {
        return kInvalidId;
    }
    found->second->deleted = true;
    found->second->isReady = true;
    found->second->changed.notify_all();
    state.spare.splice(state.spare.end(), found->second->messages);
    state.queues.erase(found);
    return 0;
}
