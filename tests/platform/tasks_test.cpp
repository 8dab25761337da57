#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <barrier>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <latch>
#include <thread>
#include <vector>

#include "platform/multiprocessing.h"

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

MPQueueID NewQueue() {
    MPQueueID queue = nullptr;
    EXPECT_EQ(MPCreateQueue(&queue), 0);
    return queue;
}

std::int32_t CallFunction(void* function) { return (*static_cast<std::function<std::int32_t()>*>(function))(); }

/// Starts a task that calls `work`, which must outlive it.
std::int32_t Start(std::function<std::int32_t()>& work, MPQueueID queue) {
    return MPCreateTask(CallFunction, &work, 0, queue, nullptr, nullptr, 0, nullptr);
}

/// Takes `count` messages, or says that they do not come.
void AwaitMessages(MPQueueID queue, int count) {
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(MPWaitOnQueue(queue, nullptr, nullptr, nullptr, 20'000), 0) << "message " << i << " of " << count;
    }
}

long Threads() {
    const std::filesystem::directory_iterator tasks("/proc/self/task");
    return std::distance(begin(tasks), end(tasks));
}

/// Runs `count` tasks that all wait for each other: they end only if they all run at once.
void RunTogether(int count) {
    std::barrier meeting(count);
    std::function<std::int32_t()> meet = [&meeting] {
        meeting.arrive_and_wait();
        return 0;
    };
    const MPQueueID queue = NewQueue();
    for (int i = 0; i < count; ++i) {
        ASSERT_EQ(Start(meet, queue), 0);
    }
    AwaitMessages(queue, count);
    MPDeleteQueue(queue);
}

TEST(Tasks, RunAtOnceHoweverManyAreStarted) {
    for (const int count : {1, 2, 3, 8, 64}) {
        RunTogether(count);
    }
}

TEST(Tasks, ReuseTheirThreads) {
    RunTogether(8);
    const long threads = Threads();
    for (int round = 0; round < 200; ++round) {
        RunTogether(1 + round % 8);
    }
    EXPECT_EQ(Threads(), threads);
    RunTogether(9);
    EXPECT_LE(Threads(), threads + 1);
}

TEST(Tasks, GiveTheirMessageInFullAndInOrder) {
    const MPQueueID queue = NewQueue();
    int marks[2];
    std::int32_t results[] = {0, 7, -1, INT32_MIN, INT32_MAX};
    MPTaskID last = nullptr;
    for (std::int32_t& result : results) {
        MPTaskID task = nullptr;
        const auto echo = [](void* value) { return *static_cast<std::int32_t*>(value); };
        ASSERT_EQ(MPCreateTask(echo, &result, 0, queue, &marks[0], &marks[1], 0, &task), 0);
        EXPECT_NE(task, nullptr);
        EXPECT_NE(task, last);
        last = task;
        // The next task starts once this one's message lies in the queue, so that their order is known.
        void* first = nullptr;
        void* second = nullptr;
        void* third = nullptr;
        ASSERT_EQ(MPWaitOnQueue(queue, &first, &second, &third, kWaitForever), 0);
        EXPECT_EQ(first, &marks[0]);
        EXPECT_EQ(second, &marks[1]);
        EXPECT_EQ(static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(third)), result);
    }
    EXPECT_EQ(MPDeleteQueue(queue), 0);
}

TEST(Queues, KeepMessagesApartAndInTheOrderOfTheirEnds) {
    const MPQueueID odd = NewQueue();
    const MPQueueID even = NewQueue();
    std::atomic<int> turn = 0;
    std::vector<std::function<std::int32_t()>> works;
    for (int i = 0; i < 20; ++i) {
        works.emplace_back([&turn, i] {
            while (turn != i) {
                std::this_thread::yield();
            }
            return i;
        });
    }
    for (int i = 0; i < 20; ++i) {
        ASSERT_EQ(Start(works[static_cast<std::size_t>(i)], i % 2 ? odd : even), 0);
    }
    for (int i = 0; i < 20; ++i) {
        turn = i;
        void* result = nullptr;
        ASSERT_EQ(MPWaitOnQueue(i % 2 ? odd : even, nullptr, nullptr, &result, 20'000), 0);
        EXPECT_EQ(reinterpret_cast<std::intptr_t>(result), i);
        EXPECT_EQ(MPWaitOnQueue(i % 2 ? even : odd, nullptr, nullptr, nullptr, 0), kWaitTimedOut);
    }
    MPDeleteQueue(odd);
    MPDeleteQueue(even);
}

TEST(Queues, WaitAsLongAsTheyAreAsked) {
    const MPQueueID queue = NewQueue();
    const struct {
        std::int32_t duration;
        Clock::duration least, most;
    } cases[] = {
        {0, 0ms, 200ms},
        {30, 30ms, 500ms},
        {-30'000, 30ms, 500ms},  // negative durations are microseconds
        {-1, 1us, 200ms},
    };
    for (const auto& [duration, least, most] : cases) {
        const auto start = Clock::now();
        EXPECT_EQ(MPWaitOnQueue(queue, nullptr, nullptr, nullptr, duration), kWaitTimedOut);
        EXPECT_GE(Clock::now() - start, least) << duration;
        EXPECT_LE(Clock::now() - start, most) << duration;
    }

    // The longest waits of either sign neither overflow nor end before their message.
    std::function<std::int32_t()> dawdle = [] {
        std::this_thread::sleep_for(20ms);
        return 0;
    };
    for (const std::int32_t duration : {kWaitForever, kWaitForever - 1, INT32_MIN}) {
        ASSERT_EQ(Start(dawdle, queue), 0);
        EXPECT_EQ(MPWaitOnQueue(queue, nullptr, nullptr, nullptr, duration), 0) << duration;
    }
    MPDeleteQueue(queue);
}

TEST(Queues, MayBeDeletedWhileTasksRunAndOthersWait) {
    for (int round = 0; round < 20; ++round) {
        const MPQueueID queue = NewQueue();
        std::latch deleted(1);
        std::atomic<int> ended = 0;
        std::function<std::int32_t()> outlive = [&] {
            deleted.wait();
            ++ended;
            return 0;
        };
        for (int i = 0; i < 4; ++i) {
            ASSERT_EQ(Start(outlive, queue), 0);
        }
        std::thread waiting([queue] {
            const std::int32_t status = MPWaitOnQueue(queue, nullptr, nullptr, nullptr, kWaitForever);
            EXPECT_NE(status, 0);
            EXPECT_NE(status, kWaitTimedOut);
        });
        if (round % 2) {
            std::this_thread::sleep_for(1ms);
        }
        EXPECT_EQ(MPDeleteQueue(queue), 0);
        waiting.join();
        deleted.count_down();
        while (ended != 4) {
            std::this_thread::yield();
        }
        // A message for the deleted queue must not turn up in a later one.
        const MPQueueID later = NewQueue();
        EXPECT_EQ(MPWaitOnQueue(later, nullptr, nullptr, nullptr, 0), kWaitTimedOut);
        MPDeleteQueue(later);
    }
}

TEST(Queues, AnswerWhatCannotBeWithAStatus) {
    const auto entry = [](void*) -> std::int32_t { return 0; };
    const auto create = [&entry](MPQueueID queue, unsigned long stackSize = 0, std::uint32_t options = 0) {
        return MPCreateTask(entry, nullptr, stackSize, queue, nullptr, nullptr, options, nullptr);
    };
    const MPQueueID dead = NewQueue();
    ASSERT_EQ(MPDeleteQueue(dead), 0);
    const MPQueueID live = NewQueue();  // must not bring the dead one back to life
    for (const MPQueueID queue : {MPQueueID{nullptr}, dead}) {
        EXPECT_NE(MPWaitOnQueue(queue, nullptr, nullptr, nullptr, kWaitForever), 0);
        EXPECT_NE(MPDeleteQueue(queue), 0);
    }
    EXPECT_NE(create(dead), 0);
    EXPECT_NE(create(live, ~0UL), 0) << "no thread has such a stack";
    EXPECT_NE(create(live, 0, 1), 0);
    EXPECT_NE(MPCreateTask(nullptr, nullptr, 0, live, nullptr, nullptr, 0, nullptr), 0);
    EXPECT_NE(MPCreateQueue(nullptr), 0);
    EXPECT_EQ(MPWaitOnQueue(live, nullptr, nullptr, nullptr, 0), kWaitTimedOut) << "a refused task ran";
    EXPECT_EQ(create(live, 64 * 1024), 0);
    AwaitMessages(live, 1);
    MPDeleteQueue(live);
}

TEST(Tasks, NeedNoQueue) {
    std::latch ran(1);
    std::function<std::int32_t()> work = [&ran] {
        ran.count_down();
        return 0;
    };
    ASSERT_EQ(Start(work, nullptr), 0);
    ran.wait();
}

TEST(Tasks, BlockEverySignal) {
    const MPQueueID queue = NewQueue();
    std::function<std::int32_t()> look = [] {
        sigset_t blocked;
        pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
        return sigismember(&blocked, SIGINT) && sigismember(&blocked, SIGTERM) && sigismember(&blocked, SIGALRM);
    };
    ASSERT_EQ(Start(look, queue), 0);
    void* allBlocked = nullptr;
    ASSERT_EQ(MPWaitOnQueue(queue, nullptr, nullptr, &allBlocked, kWaitForever), 0);
    EXPECT_NE(allBlocked, nullptr);
    MPDeleteQueue(queue);

    sigset_t blocked;
    pthread_sigmask(SIG_SETMASK, nullptr, &blocked);
    EXPECT_FALSE(sigismember(&blocked, SIGINT)) << "the caller's own mask was not given back";
}

TEST(Tasks, MayComeByTheThousandsFromSeveralThreads) {
    constexpr int kCallers = 4;
    constexpr int kRounds = 500;
    std::atomic<int> runs = 0;
    std::vector<std::thread> callers;
    for (int caller = 0; caller < kCallers; ++caller) {
        callers.emplace_back([&runs, caller] {
            for (int round = 0; round < kRounds; ++round) {
                const MPQueueID queue = NewQueue();
                const int count = 1 + (round + caller) % 4;
                // Every other time they wait for each other: none may be left behind by threads that take several.
                std::latch meeting(count);
                std::function<std::int32_t()> run = [&runs, &meeting, round] {
                    if (round % 2) {
                        meeting.arrive_and_wait();
                    }
                    return ++runs, 0;
                };
                for (int i = 0; i < count; ++i) {
                    ASSERT_EQ(Start(run, queue), 0);
                }
                AwaitMessages(queue, count);
                ASSERT_EQ(MPDeleteQueue(queue), 0);
            }
        });
    }
    for (std::thread& caller : callers) {
        caller.join();
    }
    EXPECT_EQ(runs, kCallers * kRounds * 5 / 2);
    EXPECT_LE(Threads(), 1 + 4 * kCallers + 64) << "threads were made while others lay idle";
}

TEST(Processors, AreThoseThatMayBeUsed) {
    EXPECT_EQ(MPProcessorsScheduled(), std::thread::hardware_concurrency());
    std::thread([] {
        cpu_set_t one;
        CPU_ZERO(&one);
        CPU_SET(sched_getcpu(), &one);
        ASSERT_EQ(sched_setaffinity(0, sizeof(one), &one), 0);
        EXPECT_EQ(MPProcessorsScheduled(), 1);
    }).join();
}

// ---- Processes of their own -----------------------------------------------------------------------------------

/// What a child does is run in a fresh process, which has used no task before.
class TaskProcess : public testing::Test {
  protected:
    TaskProcess() { GTEST_FLAG_SET(death_test_style, OMBRIX_DEATH_TEST_STYLE); }
};

TEST_F(TaskProcess, EndsWithThreadsIdle) {
    const auto child = [] {
        RunTogether(8);
        std::exit(0);
    };
    for (int i = 0; i < 5; ++i) {
        EXPECT_EXIT(child(), testing::ExitedWithCode(0), "");
    }
}

TEST_F(TaskProcess, EndsWithThreadsBusy) {
    const auto child = [] {
        static std::atomic<int> running = 0;
        const auto count = [](void*) -> std::int32_t {
            const MPQueueID mine = NewQueue();
            ++running;
            for (;;) {  // in the midst of the library's own functions when the process ends
                MPWaitOnQueue(mine, nullptr, nullptr, nullptr, -10);
            }
        };
        for (int i = 0; i < 4; ++i) {
            MPCreateTask(count, nullptr, 0, nullptr, nullptr, nullptr, 0, nullptr);
        }
        while (running < 4) {
            std::this_thread::yield();
        }
        std::exit(0);
    };
    for (int i = 0; i < 5; ++i) {
        EXPECT_EXIT(child(), testing::ExitedWithCode(0), "");
    }
}

/// Calls in here may come from the destructors of static objects, after main has returned.
struct LateCaller {
    bool active = false;
    ~LateCaller() {
        if (active) {
            RunTogether(2);
            _exit(3);
        }
    }
};

TEST_F(TaskProcess, MayUseTasksWhileItEnds) {
    const auto child = [] {
        static LateCaller late;
        late.active = true;
        RunTogether(1);
        std::exit(0);
    };
    EXPECT_EXIT(child(), testing::ExitedWithCode(3), "");
}

// The thread sanitizer and the emulator have a thread of their own, and let no child that is forked from a process with
// threads start new ones.
#if !defined(__SANITIZE_THREAD__) && !defined(OMBRIX_EMULATED)
[[noreturn]] void ExitWith(bool good) { std::exit(good ? 0 : 1); }

TEST_F(TaskProcess, StartsNoThreadBeforeATaskNeedsIt) {
    const auto child = [] {
        const long before = Threads();
        const MPQueueID queue = NewQueue();
        MPProcessorsScheduled();
        MPWaitOnQueue(queue, nullptr, nullptr, nullptr, 1);
        const bool noneYet = Threads() == before;
        RunTogether(3);
        const bool three = Threads() == before + 3;
        MPDeleteQueue(queue);
        ExitWith(before == 1 && noneYet && three);
    };
    EXPECT_EXIT(child(), testing::ExitedWithCode(0), "");
}

TEST_F(TaskProcess, MayForkAndUseTasksInTheChild) {
    const auto parent = [] {
        RunTogether(4);
        const MPQueueID queue = NewQueue();
        const pid_t child = fork();
        if (child == 0) {
            alarm(20);
            const bool ofTheParent = MPDeleteQueue(queue) != 0;
            RunTogether(4);
            _exit(ofTheParent ? 5 : 6);
        }
        int status = 0;
        waitpid(child, &status, 0);
        ExitWith(WIFEXITED(status) && WEXITSTATUS(status) == 5);
    };
    EXPECT_EXIT(parent(), testing::ExitedWithCode(0), "");
}
#endif

}  // namespace
