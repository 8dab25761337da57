// What the command says on standard error while it works: notes, and a progress line on terminals.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace ombrix::cli {

/// The progress line names the stage that is at work and, as far as that stage reports, how much of it is done. It
/// shows only when standard error is a terminal and the work has taken long enough to be noticed, and is wiped out
/// before anything else is written.
class Console {
  public:
    explicit Console(bool quiet);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// One sentence about something that was done differently from what one might expect. Silent when quiet.
    void Note(const std::string& sentence);

    bool ShowsProgress() const { return showsProgress_; }
    /// Begins a stage, such as "SepiaEffect" or "writing out.png"; the one before it ends.
    void BeginStage(std::string label);
    /// What is done of the stage, in units of its own.
    void Report(std::int64_t done, std::int64_t total);

  private:
    void DrawUntilStopped();
    void Draw();
    void Wipe();

    const bool quiet_;
    const bool showsProgress_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::mutex mutex_;
    std::condition_variable changed_;
    bool stopped_ = false;
    bool drawn_ = false;
    std::string label_;
    std::int64_t done_ = 0;
    std::int64_t total_ = 0;
    std::thread drawer_;  // last: it uses all of the above
};

}  // namespace ombrix::cli
