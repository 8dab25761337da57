#include "cli/console.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

namespace ombrix::cli {

namespace {

constexpr auto kNoticeable = std::chrono::milliseconds(500);  // shorter work shows no line
constexpr auto kRedraw = std::chrono::milliseconds(100);
constexpr int kBarWidth = 30;  // characters

}  // namespace

Console::Console(bool quiet) : quiet_(quiet), showsProgress_(!quiet && isatty(STDERR_FILENO) != 0) {
    if (showsProgress_) drawer_ = std::thread([this] { DrawUntilStopped(); });
}

Console::~Console() {
    if (!showsProgress_) return;
    {
        const std::lock_guard lock(mutex_);
        stopped_ = true;
    }
    changed_.notify_all();
    drawer_.join();
    Wipe();
}

void Console::Note(const std::string& sentence) {
    if (quiet_) return;
    const std::lock_guard lock(mutex_);
    Wipe();
    std::fprintf(stderr, "ombrix: note: %s\n", sentence.c_str());
}

void Console::BeginStage(std::string label) {
    const std::lock_guard lock(mutex_);
    label_ = std::move(label);
    done_ = total_ = 0;
}

void Console::Report(std::int64_t done, std::int64_t total) {
    const std::lock_guard lock(mutex_);
    done_ = done;
    total_ = total;
}

void Console::DrawUntilStopped() {
    std::unique_lock lock(mutex_);
    if (changed_.wait_until(lock, start_ + kNoticeable, [this] { return stopped_; })) return;
    do {
        Draw();
    } while (!changed_.wait_for(lock, kRedraw, [this] { return stopped_; }));
}

void Console::Draw() {
    if (label_.empty()) return;
    std::string line = label_;
    if (total_ > 0) {
        const double share = std::clamp(static_cast<double>(done_) / static_cast<double>(total_), 0.0, 1.0);
        const auto filled = static_cast<std::size_t>(share * kBarWidth);
        line += " [" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] " +
                std::to_string(static_cast<int>(share * 100)) + " %";
    } else {
        line += " ...";
    }
    std::fprintf(stderr, "\r\x1b[K%s", line.c_str());
    std::fflush(stderr);
    drawn_ = true;
}

void Console::Wipe() {
    if (!drawn_) return;
    std::fprintf(stderr, "\r\x1b[K");
    std::fflush(stderr);
    drawn_ = false;
}

}  // namespace ombrix::cli
