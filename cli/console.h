// Notes and a progress line, on standard error.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace ombrix::cli {

/// The progress line names the current stage and how much of it is done. It appears on terminals, once the work has
/// taken long enough to be noticed, and is wiped before anything else is written.
class Console {
  public:
    /// Where a worker's words go instead of standard error. May be called by any thread.
    struct Sink {
        std::function<void(const std::string& sentence)> note;
        std::function<void(const std::string& label)> stage;
    };

    explicit Console(bool quiet);
    /// A worker's. Says what `shown` would say, through the sink.
    Console(const Console& shown, Sink sink);
    ~Console();
    Console(const Console&) = delete;
    Console& operator=(const Console&) = delete;

    /// Says in one sentence what was done otherwise than expected. Silent when quiet.
    void Note(const std::string& sentence);

    bool ShowsProgress() const { return showsProgress_; }
    /// Ends the current stage and begins one such as "SepiaEffect" or "writing out.png".
    void BeginStage(const std::string& label);
    /// In units of the stage's own. By any thread.
    void Report(std::int64_t done, std::int64_t total);

    /// Draws the progress line if it is time to. For whoever waits for the work.
    void Draw();

  private:
    void Wipe();

    const bool quiet_;
    const bool showsProgress_;
    const Sink sink_;
    const std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::chrono::steady_clock::time_point drawnAt_;
    bool drawn_ = false;
    std::string label_;
};

}  // namespace ombrix::cli
