#include "cli/supervisor/worker.h"

#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <new>
#include <sstream>

#include "cli/failure.h"
#include "cli/supervisor/channel.h"
#include "cli/supervisor/cleanup.h"
#include "cli/supervisor/limits.h"
#include "cli/supervisor/progress_of_work.h"

#if defined(__SANITIZE_ADDRESS__)
#include <sanitizer/lsan_interface.h>
#endif

namespace ombrix::cli {

namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

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

/// The supervisor looks at resident memory; this stops what grows faster than it looks.
void LimitMemory(const Options& options) {
    if (kSanitized) return;                        // shadow memory is larger than any limit
    constexpr std::int64_t kStacks = 512'000'000;  // bytes of threads and heaps that are not used
    const std::int64_t most = MemoryLimit(options.limits, Work().bytes);
    const rlimit limit{static_cast<rlim_t>(most + kStacks), RLIM_INFINITY};
    rlimit now;
    if (getrlimit(RLIMIT_DATA, &now) == 0 && now.rlim_cur < limit.rlim_cur) return;
    setrlimit(RLIMIT_DATA, &limit);
}

void Redirect(const WorkerPipes& pipes) {
    dup2(pipes.chatter, STDOUT_FILENO);
    // The sanitizers' reports are for whoever tests.
    if (!kSanitized) dup2(pipes.chatter, STDERR_FILENO);
}

void Try(Session& session, const std::function<void(Session&)>& work, MessageWriter& messages) {
    Console told(session.console,
                 {.note = [&](const std::string& sentence) { messages.Send(MessageKind::Note, sentence); },
                  .stage = [&](const std::string& label) { messages.Send(MessageKind::Stage, label); }});
    std::ostringstream text;
    std::streambuf* const before = std::cout.rdbuf(text.rdbuf());
    try {
        Session own{session.host, session.options, told};
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
               const std::filesystem::path& temporaryFolder) {
    prctl(PR_SET_PDEATHSIG, SupervisorDiedSignal());
    // It may have died before.
    if (getppid() != supervisor) raise(SupervisorDiedSignal());
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    NoteCrashes();
    LimitMemory(session.options);
    Redirect(pipes);
    if (!temporaryFolder.empty()) setenv("TMPDIR", temporaryFolder.c_str(), 1);
    MessageWriter messages(pipes.messages);
    Try(session, work, messages);
#if defined(__SANITIZE_ADDRESS__)
    if (__lsan_do_recoverable_leak_check() != 0) _exit(23);
#endif
    _exit(0);
}

}  // namespace ombrix::cli
