#include "cli/supervisor/cleanup.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <system_error>

namespace ombrix::cli {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kMostFiles = 8;

/// For the handler.
struct Name {
    char text[PATH_MAX];
    std::atomic<bool> isSet = false;
};
static_assert(std::atomic<bool>::is_always_lock_free && std::atomic<pid_t>::is_always_lock_free);

Name files[kMostFiles];
Name folder;
std::atomic<pid_t> worker{0};

void Set(Name& name, const fs::path& path) {
    if (path.native().size() >= PATH_MAX) throw std::length_error("a file name is too long");
    std::strcpy(name.text, path.c_str());
    name.isSet = true;
}

/// Removes a folder and the files in it by system calls alone, which a handler may make.
void RemoveFolder(const char* path) {
    const int descriptor = open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NOFOLLOW);
    if (descriptor >= 0) {
        struct Entry {
            std::uint64_t inode;
            std::int64_t offset;
            unsigned short length;
            unsigned char type;
            char name[1];
        };
        alignas(Entry) char buffer[4096];
        for (bool removed = true; removed;) {
            removed = false;
            lseek(descriptor, 0, SEEK_SET);
            const long count = syscall(SYS_getdents64, descriptor, buffer, sizeof buffer);
            for (long at = 0; at < count;) {
                const auto* entry = reinterpret_cast<const Entry*>(buffer + at);
                if (unlinkat(descriptor, entry->name, 0) == 0) removed = true;
                at += entry->length;
            }
        }
        close(descriptor);
    }
    rmdir(path);
}

void OnSignal(int signal) {
    if (const pid_t child = worker.exchange(0); child > 0) {
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
    }
    for (const Name& file : files) {
        if (file.isSet) unlink(file.text);
    }
    if (folder.isSet) RemoveFolder(folder.text);
    // SA_RESETHAND has restored the default action, which ends the process.
    raise(signal);
}

}  // namespace

RemovedOnSignals::RemovedOnSignals(const fs::path& file) {
    while (place_ + 1 < kMostFiles && files[place_].isSet) ++place_;
    Set(files[place_], file);
}

RemovedOnSignals::~RemovedOnSignals() { files[place_].isSet = false; }

TemporaryFolder::TemporaryFolder() {
    const char* given = std::getenv("TMPDIR");
    std::string name = fs::path(given != nullptr && *given != '\0' ? given : "/tmp") / "ombrix-XXXXXX";
    sigset_t all, before;
    sigfillset(&all);
    // Its name is known only when it is there.
    sigprocmask(SIG_SETMASK, &all, &before);
    if (name.size() < PATH_MAX && mkdtemp(name.data()) != nullptr) {
        path_ = name;
        Set(folder, path_);
    }
    sigprocmask(SIG_SETMASK, &before, nullptr);
}

TemporaryFolder::~TemporaryFolder() {
    if (path_.empty()) return;
    RemoveFolder(path_.c_str());
    std::error_code ignored;
    fs::remove_all(path_, ignored);
    folder.isSet = false;
}

void KillOnSignals(pid_t child) { worker = child; }

int SupervisorDiedSignal() { return SIGUSR2; }

void CleanUpOnSignals() {
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = static_cast<int>(SA_RESETHAND | SA_NODEFER);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE, SIGXCPU, SupervisorDiedSignal()}) {
        struct sigaction current;
        // Stays ignored, as under nohup.
        if (signal != SupervisorDiedSignal() && sigaction(signal, nullptr, &current) == 0 &&
            current.sa_handler == SIG_IGN) {
            continue;
        }
        sigaction(signal, &action, nullptr);
    }
    std::signal(SIGXFSZ, SIG_IGN);
}

}  // namespace ombrix::cli
