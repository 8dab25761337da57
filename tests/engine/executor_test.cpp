// The executor's bands and reports, and that no row is lost when the platform fails.
#include "engine/executor.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>

#include "tests/support/fake_host.h"

namespace ombrix::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Bands = std::vector<std::pair<int, int>>;
using Report = std::pair<std::int64_t, std::int64_t>;

/// The record of a worker that only notes its bands.
struct NotingParams {
    GenericMPParams generic{};
    std::mutex mutex;
    Bands bands;
};

std::int32_t NoteBand(MPParamBlock* band) {
    auto& params = *static_cast<NotingParams*>(band->params);
    const std::lock_guard lock(params.mutex);
    params.bands.emplace_back(band->firstRow, band->endRow);
    params.generic.rowsDone += std::max(band->endRow - band->firstRow, 0);
    return 77;
}

class Executor : public ::testing::Test {
  protected:
    void SetUp() override { host_.Start(); }

    /// The bands of a call, sorted by their first row.
    Bands BandsOf(int height, int hint, int autoTaskCount, bool reporting = false) {
        NotingParams params;
        params.generic.height = height;
        params.generic.multiprocessingHint = hint;
        params.generic.rowsDone = 12345;
        params.generic.progressHandler = reporting ? host_.ProgressHandler() : nullptr;
        host_.reports.clear();
        host_.tasksStarted = 0;
        Execute(&params.generic, NoteBand, autoTaskCount);
        EXPECT_EQ(params.generic.rowsDone, std::max(height, 0));
        EXPECT_EQ(host_.queuesAlive, 0);
        std::sort(params.bands.begin(), params.bands.end());
        return params.bands;
    }

    FakeHost host_;
};

TEST_F(Executor, SplitsRowsIntoOneBandPerTask) {
    EXPECT_THAT(BandsOf(100, 3, 2), ElementsAre(std::pair{0, 33}, std::pair{33, 66}, std::pair{66, 100}));
    EXPECT_THAT(BandsOf(17, 8, 2),
                ElementsAre(std::pair{0, 2}, std::pair{2, 4}, std::pair{4, 6}, std::pair{6, 8}, std::pair{8, 10},
                            std::pair{10, 12}, std::pair{12, 14}, std::pair{14, 17}));
    EXPECT_EQ(host_.tasksStarted, 8);
    EXPECT_THAT(BandsOf(15, 8, 2), ElementsAre(std::pair{0, 15}));
    EXPECT_EQ(host_.tasksStarted, 0);
    EXPECT_EQ(BandsOf(2147483647, 8, 2).back(), std::pair(7 * (2147483647 / 8), 2147483647));

    const std::tuple<int, int, std::size_t> counts[] = {
        // hint, autoTaskCount, tasks on 16 processors
        {1, 3, 1}, {2, 3, 2}, {7, 1, 7}, {8, 1, 8},  {9, 1, 8},  {20, 1, 8},          {2147483647, 2, 8},
        {0, 2, 2}, {0, 3, 3}, {0, 1, 1}, {0, 99, 8}, {-1, 2, 8}, {-2147483648, 2, 8}, {-5, 1, 8},
    };
    for (const auto& [hint, autoTaskCount, tasks] : counts) {
        EXPECT_EQ(BandsOf(1000, hint, autoTaskCount).size(), tasks) << hint << ", " << autoTaskCount;
    }
}

TEST_F(Executor, ReportsPerHundredRowsOrOnceAtTheEnd) {
    const auto report = [](std::int64_t done, std::int64_t total) { return Report(done, total); };
    EXPECT_THAT(BandsOf(250, 1, 2, true), ElementsAre(std::pair{0, 100}, std::pair{100, 200}, std::pair{200, 250}));
    EXPECT_THAT(host_.reports, ElementsAre(report(100, 250), report(200, 250), report(250, 250), report(250, 250)));

    EXPECT_THAT(BandsOf(15, 8, 2, true), ElementsAre(std::pair{0, 15}));
    EXPECT_THAT(host_.reports, ElementsAre(report(15, 15), report(15, 15)));

    EXPECT_EQ(BandsOf(250, 4, 2, true).size(), 4u);
    EXPECT_THAT(host_.reports, ElementsAre(report(250, 250)));

    for (const int height : {0, -3}) {
        EXPECT_THAT(BandsOf(height, 8, 2, true), IsEmpty());
        EXPECT_THAT(host_.reports, ElementsAre(report(height, height)));
        EXPECT_THAT(BandsOf(height, 8, 2), ElementsAre(std::pair{0, height}));
    }

    host_.missing = {"OnProgress(value as Integer,total as Integer)"};
    EXPECT_THAT(BandsOf(250, 1, 2, true), ElementsAre(std::pair{0, 250}));
    EXPECT_THAT(host_.reports, IsEmpty());
}

TEST_F(Executor, LosesNoRowWhenThePlatformFails) {
    const Bands four = {{0, 25}, {25, 50}, {50, 75}, {75, 100}};
    for (const std::set<int>& failing : {std::set{0}, {3}, {1, 2}, {0, 1, 2, 3}}) {
        host_.failTasks = failing;
        EXPECT_EQ(BandsOf(100, 4, 2, true), four);
        EXPECT_THAT(host_.reports, ElementsAre(Report(100, 100)));
    }
    host_.failTasks.clear();

    host_.failQueues = 1;
    EXPECT_EQ(BandsOf(100, 4, 2, true), four);
    EXPECT_EQ(host_.tasksStarted, 0);
    EXPECT_THAT(host_.reports, ElementsAre(Report(100, 100)));
}

std::int32_t WorkForAWhile(MPParamBlock* band) {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    return NoteBand(band);
}

TEST_F(Executor, ReturnsOnlyWhenAllBandsAreDoneWhateverTheWaitsSay) {
    for (const std::int32_t status : {-1, -29296, 5}) {
        for (const int failures : {1, 3, 1000000}) {
            host_.failWaits = failures;
            host_.waitStatus = status;
            NotingParams params;
            params.generic.height = 64;
            params.generic.multiprocessingHint = 4;
            Execute(&params.generic, WorkForAWhile, 2);
            EXPECT_EQ(params.generic.rowsDone, 64) << status << ", " << failures;
            EXPECT_EQ(params.bands.size(), 4u) << status << ", " << failures;
            host_.failWaits = 0;
        }
    }
}

/// Processors are counted once in a process, so each machine needs a process of its own.
TEST_F(Executor, UsesNoMoreTasksThanProcessors) {
    GTEST_FLAG_SET(death_test_style, OMBRIX_DEATH_TEST_STYLE);
    const std::tuple<unsigned long, std::size_t, std::size_t, std::size_t> machines[] = {
        // processors; tasks for autoTaskCount 2, for 3, and for all processors
        {0, 1, 1, 1}, {1, 1, 1, 1}, {2, 2, 2, 2}, {3, 2, 3, 3}, {12, 2, 3, 8}, {~0ul, 1, 1, 1},
    };
    for (const auto& [processors, two, three, all] : machines) {
        EXPECT_EXIT(
            {
                host_.processors = processors;
                EXPECT_EQ(BandsOf(1000, 0, 2).size(), two);
                EXPECT_EQ(BandsOf(1000, 0, 3).size(), three);
                EXPECT_EQ(BandsOf(1000, -1, 2).size(), all);
                EXPECT_EQ(GetCPUCoreCount(nullptr, 0), static_cast<std::int64_t>(processors));
                host_.processors = 5;
                EXPECT_EQ(GetCPUCoreCount(nullptr, 0), static_cast<std::int64_t>(processors ? processors : 5));
                std::exit(HasFailure() ? 1 : 0);
            },
            ::testing::ExitedWithCode(0), "")
            << processors;
    }
}

}  // namespace
}  // namespace ombrix::testing
