#include "cli/supervisor/cleanup.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <climits>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

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
Name* folder = nullptr;  // both processes have it
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
    if (folder != nullptr && folder->isSet) RemoveFolder(folder->text);
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
    void* memory = mmap(nullptr, sizeof(Name), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::bad_alloc();
    folder = new (memory) Name;
}

TemporaryFolder::~TemporaryFolder() {
    if (folder->isSet) {
        RemoveFolder(folder->text);
        std::error_code ignored;
        fs::remove_all(folder->text, ignored);
    }
    Name* const gone = std::exchange(folder, nullptr);
    munmap(gone, sizeof *gone);
}

fs::path TemporaryFolder::Make() const {
    const char* given = std::getenv("TMPDIR");
    const fs::path parent = given != nullptr && *given != '\0' ? given : "/tmp";
    std::random_device random;
    char number[17];
    std::snprintf(number, sizeof number, "%08x%08x", random(), random());
    const fs::path path = parent / ("ombrix-" + std::string(number));
    if (path.native().size() >= PATH_MAX) return {};
    // Known before it is there, or a signal could come between.
    Set(*folder, path);
    if (mkdir(path.c_str(), 0700) == 0) return path;
    folder->isSet = false;
    return {};
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
