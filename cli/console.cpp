#include "cli/console.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>

#include "cli/supervisor/progress_of_work.h"
#include "text/printable.h"

namespace ombrix::cli {

namespace {

constexpr auto kNoticeable = std::chrono::milliseconds(500);  // shorter work shows no line
constexpr auto kRedraw = std::chrono::milliseconds(100);
constexpr int kBarWidth = 30;  // characters

}  // namespace

Console::Console(bool quiet) : quiet_(quiet), showsProgress_(!quiet && isatty(STDERR_FILENO) != 0) {}

Console::Console(const Console& shown, Sink sink)
    : quiet_(shown.quiet_), showsProgress_(shown.showsProgress_), sink_(std::move(sink)) {}

Console::~Console() { Wipe(); }

void Console::Note(const std::string& sentence) {
    if (quiet_) return;
    if (sink_.note) return sink_.note(sentence);
    Wipe();
    std::fprintf(stderr, "ombrix: note: %s\n", text::Printable(sentence).c_str());
}

void Console::BeginStage(const std::string& label) {
    Report(0, 0);
    if (sink_.stage) return sink_.stage(label);
    label_ = label;
}

void Console::Report(std::int64_t done, std::int64_t total) {
    Work().done = done;
    Work().total = total;
}

void Console::Draw() {
    const auto now = std::chrono::steady_clock::now();
    if (!showsProgress_ || label_.empty() || now < start_ + kNoticeable || now < drawnAt_ + kRedraw) return;
    drawnAt_ = now;
    std::string line = text::Printable(label_);
    if (const std::int64_t total = Work().total; total > 0) {
        const double share = std::clamp(static_cast<double>(Work().done) / static_cast<double>(total), 0.0, 1.0);
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
