#include "cli/supervisor/worker.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <mutex>
#include <new>
#include <optional>
#include <set>
#include <sstream>

#include "cli/failure.h"
#include "cli/supervisor/channel.h"
#include "cli/supervisor/cleanup.h"
#include "cli/supervisor/limits.h"
#include "cli/supervisor/progress_of_work.h"
#include "cli/supervisor/sanitizers.h"
#include "cli/terminal.h"

#if OMBRIX_SANITIZED
#include <sanitizer/common_interface_defs.h>
#endif
#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace ombrix::cli {

namespace {

/// Of this process, if it is a worker.
std::optional<Limits> own;

/// On a stack of its own, since an overflow of the main thread's is a crash too.
void NoteCrashes() {
    static std::array<char, std::size_t{64} * 1024> stack;
    const stack_t other{stack.data(), 0, stack.size()};
    sigaltstack(&other, nullptr);
    struct sigaction action = {};
    action.sa_handler = NoteCrash;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER | SA_ONSTACK);
    for (const int signal : {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP}) sigaction(signal, &action, nullptr);
}

void LimitMemory() {
    if (OMBRIX_SANITIZED || !own) return;  // shadow memory is larger than any limit
    static const rlimit given = [] {
        rlimit limit{RLIM_INFINITY, RLIM_INFINITY};
        getrlimit(RLIMIT_DATA, &limit);
        return limit;
    }();
    const auto most = static_cast<rlim_t>(DataLimit(*own, Work().bytes));
    const rlimit limit{std::min(most, given.rlim_cur), given.rlim_max};
    setrlimit(RLIMIT_DATA, &limit);
}

void Redirect(const WorkerPipes& pipes) {
#if OMBRIX_SANITIZED
    // Their reports are for whoever tests.
    const std::intptr_t reports = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO);
    __sanitizer_set_report_fd(reinterpret_cast<void*>(reports));
#endif
    LineWidth(STDOUT_FILENO);  // which is remembered
    dup2(pipes.chatter, STDOUT_FILENO);
    dup2(pipes.chatter, STDERR_FILENO);
}

void Try(Session& session, const std::function<void(Session&)>& work, MessageWriter& messages) {
    Console told(session.console,
                 {.note = [&](const std::string& sentence) { messages.Send(MessageKind::Note, sentence); },
                  .stage = [&](const std::string& label) { messages.Send(MessageKind::Stage, label); }});
    std::ostringstream text;
    std::streambuf* const before = std::cout.rdbuf(text.rdbuf());
    try {
        Session own{session.host, session.catalogue, session.options, told};
        work(own);
        messages.Send(MessageKind::Text, text.str());
        messages.Send(MessageKind::Done);
    } catch (const UsageError& wrong) {
        messages.Send(MessageKind::UsageError, wrong.what());
    } catch (const std::bad_alloc&) {
        messages.Send(MessageKind::OutOfMemory);
    } catch (const std::exception& failure) {
        messages.Send(MessageKind::WorkError, failure.what());
    }
    std::cout.rdbuf(before);
}

}  // namespace

void RunWorker(Session& session, const std::function<void(Session&)>& work, WorkerPipes pipes, pid_t supervisor,
               const TemporaryFolder& temporary) {
    prctl(PR_SET_PDEATHSIG, SupervisorDiedSignal());
    // It may have died before.
    if (getppid() != supervisor) raise(SupervisorDiedSignal());
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    NoteCrashes();
    own = session.options.limits;
    LimitMemory();
    Redirect(pipes);
    if (const std::filesystem::path folder = temporary.Make(); !folder.empty()) setenv("TMPDIR", folder.c_str(), 1);
    MessageWriter messages(pipes.messages);
    Try(session, work, messages);
#if defined(__SANITIZE_ADDRESS__)
    if (__lsan_do_recoverable_leak_check() != 0) _exit(23);
#endif
    _exit(0);
}

void WillRead(const std::filesystem::path& file) {
    static std::mutex mutex;
    static std::set<std::filesystem::path> files;
    const std::lock_guard lock(mutex);
    if (!files.insert(file).second) return;
    Work().bytes += static_cast<std::int64_t>(std::filesystem::file_size(file));
    LimitMemory();
}

}  // namespace ombrix::cli
