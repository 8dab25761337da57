// Notes and a progress line, on standard error.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

namespace ombrix::cli {

/// The progress line names the current stage and how much of it is done. It appears on terminals, once the work has
/// taken long enough to be noticed, and is wiped before anything else is written.
class Console {
  public:
    explicit Console(bool quiet);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Says in one sentence what was done otherwise than expected. Silent when quiet.
    void Note(const std::string& sentence);

    bool ShowsProgress() const { return showsProgress_; }
    /// Ends the current stage and begins one such as "SepiaEffect" or "writing out.png".
    void BeginStage(std::string label);
    /// In units of the stage's own.
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
    std::thread drawer_;  // last, since it uses all of the above
};

}  // namespace ombrix::cli
