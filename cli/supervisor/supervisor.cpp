#include "cli/supervisor/supervisor.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <optional>
#include <string>
#include <system_error>

#include "cli/failure.h"
#include "cli/supervisor/channel.h"
#include "cli/supervisor/cleanup.h"
#include "cli/supervisor/limits.h"
#include "cli/supervisor/progress_of_work.h"
#include "cli/supervisor/sanitizers.h"
#include "cli/supervisor/worker.h"
#include "text/names.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

using Seconds = std::chrono::duration<double>;
using Clock = std::chrono::steady_clock;
using Place = ProgressOfWork::Place;

constexpr int kLook = 10, kCloseLook = 1;  // milliseconds between looks at the worker
constexpr Seconds kLongestLook{0.1};       // a process that was stopped meanwhile did not work
constexpr Seconds kFullDisk{2};            // without a byte written to a full disk
constexpr std::int64_t kWrittenAtOnce = 65536;
constexpr std::size_t kMostChatter = 4096;

struct Pipe {
    Pipe() {
        int ends[2];
        if (pipe2(ends, O_CLOEXEC) != 0) {
            throw WorkError("the work cannot be started (" + std::generic_category().message(errno) + ")");
        }
        from = ends[0];
        to = ends[1];
    }
    ~Pipe() {
        Close(from);
        Close(to);
    }
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    static void Close(int& end) {
        if (end >= 0) close(end);
        end = -1;
    }
    int from, to;
};

std::string Amount(std::int64_t bytes) { return std::to_string(bytes / 1'000'000) + " MB"; }

/// "1.5 seconds"
std::string Amount(Seconds time) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3g second%s", time.count(), time.count() == 1 ? "" : "s");
    return text;
}

/// Bytes of a process that no file backs.
std::int64_t ResidentMemory(pid_t process) {
    std::int64_t size = 0, resident = 0, shared = 0;
    std::ifstream("/proc/" + std::to_string(process) + "/statm") >> size >> resident >> shared;
    return (resident - shared) * sysconf(_SC_PAGESIZE);
}

/// Why a file can be given no more than `needed` bytes, if that is so.
std::optional<std::string> LackOfSpace(int file, std::int64_t needed) {
    struct stat status = {};
    if (fstat(file, &status) != 0) return std::nullopt;
    rlimit largest = {};
    if (getrlimit(RLIMIT_FSIZE, &largest) == 0 && largest.rlim_cur != RLIM_INFINITY &&
        static_cast<rlim_t>(status.st_size + needed) >= largest.rlim_cur) {
        return "the system's limit on the size of files is reached";
    }
    struct statvfs disk = {};
    if (fstatvfs(file, &disk) != 0 || disk.f_blocks == 0) return std::nullopt;
    const auto free = static_cast<std::int64_t>((geteuid() == 0 ? disk.f_bfree : disk.f_bavail) * disk.f_frsize);
    return free <= needed ? std::optional("the disk is full") : std::nullopt;
}

std::string Crash(const Place& place, int signal) {
    // The pages of a file that is read in place are touched by whoever works on them.
    if (const std::string file = Work().LastReading().subject; signal == SIGBUS && !file.empty()) {
        return file + " was cut short while it was read";
    }
    const std::string how = std::string(" (") + strsignal(signal) + ")";
    switch (place.activity) {
        case Activity::Reading:
            return place.subject + " is damaged in a way that its decoder does not survive" + how;
        case Activity::Effect:
            return "the plug-in of " + place.subject + " crashed" + how;
        case Activity::Writing:
            return place.subject + " cannot be written: its encoder crashed" + how;
        case Activity::Other:
            break;
    }
    return "the work crashed" + how;
}

/// Whether a library's message says that it was given no memory.
bool IsAboutMemory(const std::string& message) {
    const std::string words = text::LowerCase(message);
    for (const char* phrase :
         {"out of memory", "insufficient memory", "not enough memory", "cannot allocate", "unable to allocate",
          "memory allocation", "failed to allocate", "allocation failed", "bad_alloc"}) {
        if (words.find(phrase) != std::string::npos) return true;
    }
    return false;
}

class Supervisor {
  public:
    Supervisor(Session& session, const SupervisedWork& work)
        : session_(session), limits_(session.options.limits), written_(work.written), pictures_(work.pictures) {}
    ~Supervisor() {
        if (worker_ > 0) End();
    }
    Supervisor(const Supervisor&) = delete;
    Supervisor& operator=(const Supervisor&) = delete;

    void Run(const std::function<void(Session&)>& work) {
        Start(work);
        while (Look()) session_.console.Draw();
        const int status = End();
        if (isDone_) {
            if (WIFEXITED(status) && WEXITSTATUS(status) == 0) return Print();
        } else if (usageError_) {
            throw UsageError(*usageError_);
        } else if (workError_) {
            throw WorkError(*workError_);
        }
        const Place place = Work().Crash();
        if (IsAboutMemory(chatter_) || HadLittleMemoryLeft()) throw WorkError(TooMuchMemory());
        if (WIFSIGNALED(status)) {
            const int signal = WTERMSIG(status);
            if (signal == SIGKILL) throw WorkError("the work was killed, perhaps because memory was short");
            const bool isAsked = signal == SIGTERM || signal == SIGINT || signal == SIGHUP || signal == SIGQUIT;
            throw WorkError(isAsked ? "the work was interrupted" : Crash(place, signal));
        }
        const std::string subject = place.subject.empty() ? "the work" : place.subject;
        throw WorkError(subject + " made a library end the work" +
                        (chatter_.empty() ? "" : ": " + text::OnOneLine(chatter_)));
    }

  private:
    void Start(const std::function<void(Session&)>& work) {
        ShareWork();
        // Or both processes would write what is left in them.
        std::cout.flush();
        std::fflush(nullptr);
        const pid_t supervisor = getpid();
        // No signal may find a worker that nobody knows.
        sigset_t all, before;
        sigfillset(&all);
        sigprocmask(SIG_SETMASK, &all, &before);
        worker_ = fork();
        if (worker_ == 0) {
            KillOnSignals(0);
            sigprocmask(SIG_SETMASK, &before, nullptr);
            RunWorker(session_, work, {messages_.to, chatterPipe_.to}, supervisor, temporary_);
        }
        const int error = errno;
        KillOnSignals(worker_);
        sigprocmask(SIG_SETMASK, &before, nullptr);
        if (worker_ < 0) throw WorkError("the work cannot be started (" + std::generic_category().message(error) + ")");
        Pipe::Close(messages_.to);
        Pipe::Close(chatterPipe_.to);
    }

    /// Waits a moment for messages. False when there will be no more.
    bool Look() {
        std::array<pollfd, 2> ends{pollfd{messages_.from, POLLIN, 0}, pollfd{chatterPipe_.from, POLLIN, 0}};
        if (poll(ends.data(), ends.size(), look_) < 0) return true;
        if (ends[1].revents != 0) KeepChatter();
        if (ends[0].revents != 0 &&
            !reader_.Read([this](MessageKind kind, const std::string& text) { Take(kind, text); })) {
            return false;
        }
        const auto now = Clock::now();
        const Seconds passed = std::min<Seconds>(now - lastLook_, kLongestLook);
        lastLook_ = now;
        CheckTime(passed);
        CheckMemory();
        CheckDisk(passed);
        return true;
    }

    void Take(MessageKind kind, const std::string& text) {
        switch (kind) {
            case MessageKind::Note:
                session_.console.Note(text);
                break;
            case MessageKind::Stage:
                session_.console.BeginStage(text);
                break;
            case MessageKind::Text:
                text_ = text;
                break;
            case MessageKind::UsageError:
                usageError_ = text;
                break;
            case MessageKind::WorkError:
                workError_ = IsAboutMemory(text) ? TooMuchMemory() : WithReasonOfDisk(text);
                break;
            case MessageKind::OutOfMemory:
                workError_ = TooMuchMemory();
                break;
            case MessageKind::Done:
                isDone_ = true;
                break;
        }
    }

    void KeepChatter() {
        std::array<char, 4096> buffer;
        const ssize_t count = read(chatterPipe_.from, buffer.data(), buffer.size());
        if (count <= 0) return Pipe::Close(chatterPipe_.from);
        const std::size_t room = kMostChatter - std::min(kMostChatter, chatter_.size());
        chatter_.append(buffer.data(), std::min(room, static_cast<std::size_t>(count)));
    }

    void CheckTime(Seconds passed) {
        spent_ += passed;
        if (limits_.seconds && spent_.count() > *limits_.seconds) {
            const Place place = Culprit();
            throw WorkError((place.subject.empty() ? "the work" : place.subject) + " takes longer than the " +
                            Amount(Seconds(*limits_.seconds)) + " that --limit-time allows");
        }
        if (limits_.seconds) return;
        if (const Seconds most = pictures_ * WorkTime(Work().bytes); spent_ > most) {
            const Place place = Culprit();
            throw WorkError((place.subject.empty() ? "the work" : place.subject) + " takes longer than " +
                            Amount(most) + ", too long for files as small as these; --limit-time SECONDS allows more");
        }
        if (Work().readers == 0 || Work().effects > 0) return;
        decoding_ += passed;
        const Seconds most = DecodingTime(Work().bytes, Work().pixels);
        if (decoding_ > most) {
            throw WorkError(Work().LastReading().subject + " takes longer than " + Amount(most) +
                            " to decode, so it may never end; --limit-time SECONDS allows more");
        }
    }

    void CheckMemory() {
        const std::int64_t used = ResidentMemory(worker_), most = MemoryLimit(limits_, Work().bytes);
        if (used > most) throw WorkError(TooMuchMemory());
        look_ = used > most / 2 ? kCloseLook : kLook;
    }

    /// Libraries crash when they are refused memory. What they asked for last is not known.
    bool HadLittleMemoryLeft() const {
        return !OMBRIX_SANITIZED && Work().DataAtCrash() > DataLimit(limits_, Work().bytes) / 2;
    }

    std::string TooMuchMemory() const {
        const Place place = Culprit();
        return (place.subject.empty() ? "the work" : place.subject) + " needs more than the " +
               Amount(MemoryLimit(limits_, Work().bytes)) + " of memory that are allowed; --limit-memory allows more";
    }

    /// Some encoders try for ever to write to a full disk.
    void CheckDisk(Seconds passed) {
        for (std::size_t i = 0; i < written_.size(); ++i) {
            const WatchedFile& file = written_[i];
            Standstill& still = standstills_[i];
            struct stat status = {};
            const auto lack = LackOfSpace(file.descriptor, 0);
            if (!lack || fstat(file.descriptor, &status) != 0) continue;
            still.time = status.st_size == still.size ? still.time + passed : Seconds{0};
            still.size = status.st_size;
            if (still.time > kFullDisk) throw WorkError(file.name + " cannot be written: " + *lack);
        }
    }

    /// Libraries say no more than that a write failed, and may not have filled the last blocks.
    std::string WithReasonOfDisk(const std::string& message) const {
        for (const WatchedFile& file : written_) {
            const std::string failed = file.name + " cannot be written: ";
            if (!message.starts_with(failed)) continue;
            if (const auto lack = LackOfSpace(file.descriptor, kWrittenAtOnce)) return failed + *lack;
        }
        return message;
    }

    Place Culprit() const {
        if (Work().effects == 0 && Work().readers > 0) return Work().LastReading();
        return Work().Main();
    }

    /// Kills the worker if it has not ended, and returns its status.
    int End() {
        if (std::uncaught_exceptions() > 0) kill(worker_, SIGKILL);
        int status = 0;
        while (waitpid(worker_, &status, 0) < 0 && errno == EINTR) {
        }
        KillOnSignals(0);
        worker_ = 0;
        while (chatterPipe_.from >= 0) {
            pollfd end{chatterPipe_.from, POLLIN, 0};
            if (poll(&end, 1, 0) <= 0) break;
            KeepChatter();
        }
        return status;
    }

    void Print() const { std::cout << text_; }

    Session& session_;
    const Limits& limits_;
    const std::vector<WatchedFile>& written_;
    const int pictures_;
    const TemporaryFolder temporary_;
    Pipe messages_, chatterPipe_;
    MessageReader reader_{messages_.from};
    pid_t worker_ = 0;

    int look_ = kLook;
    Clock::time_point lastLook_ = Clock::now();
    Seconds spent_{0}, decoding_{0};
    struct Standstill {
        std::int64_t size = 0;
        Seconds time{0};
    };
    std::vector<Standstill> standstills_ = std::vector<Standstill>(written_.size());

    bool isDone_ = false;
    std::optional<std::string> usageError_, workError_;
    std::string text_, chatter_;
};

}  // namespace

void Supervise(Session& session, const SupervisedWork& supervised, const std::function<void(Session&)>& work) {
    Supervisor(session, supervised).Run(work);
}

}  // namespace ombrix::cli
