#include "cli/supervisor/progress_of_work.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstring>
#include <mutex>
#include <new>

namespace ombrix::cli {

namespace {

ProgressOfWork own;
ProgressOfWork* work = &own;
std::mutex naming;

/// Of this thread.
thread_local std::uint32_t current = 0;

bool IsMainThread() { return syscall(SYS_gettid) == getpid(); }

/// By system calls alone, for a handler: the sixth number of statm, in bytes.
std::int64_t PrivateMemory() {
    std::array<char, 256> text{};
    const int file = open("/proc/self/statm", O_RDONLY | O_CLOEXEC);
    if (file < 0) return 0;
    const bool isRead = read(file, text.data(), text.size() - 1) > 0;
    close(file);
    const char* at = text.data();
    for (int number = 1; isRead && number < 6; ++number) {
        while (*at != ' ' && *at != 0) ++at;
        while (*at == ' ') ++at;
    }
    std::int64_t pages = 0;
    for (; *at >= '0' && *at <= '9'; ++at) pages = 10 * pages + (*at - '0');
    return pages * sysconf(_SC_PAGESIZE);
}

}  // namespace

ProgressOfWork::Place ProgressOfWork::PlaceOf(Packed packed) const {
    const std::size_t index = packed & 0xffff;
    const bool isKnown = packed != 0 && index < kMostSubjects;
    return {static_cast<Activity>(packed >> 16), isKnown ? std::string(subjects[index].data()) : std::string()};
}

ProgressOfWork::Packed ProgressOfWork::Pack(Activity activity, const char* subject) {
    const std::lock_guard lock(naming);
    std::size_t index = 0;
    while (index < subjectCount && std::strncmp(subjects[index].data(), subject, PATH_MAX - 1) != 0) ++index;
    if (index == subjectCount) {
        index = std::min(index, kMostSubjects - 1);
        std::strncpy(subjects[index].data(), subject, PATH_MAX - 1);
        subjectCount = index + 1;
    }
    return (static_cast<Packed>(activity) << 16) | static_cast<Packed>(index);
}

ProgressOfWork::Packed ProgressOfWork::LikelyPlace() const {
    if (effects > 0 && readers == 0) return lastEffect;
    if (readers > 0 && effects == 0) return lastReading;
    return main;
}

ProgressOfWork& Work() { return *work; }

void ShareWork() {
    void* memory = mmap(nullptr, sizeof(ProgressOfWork), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) throw std::bad_alloc();
    // Pages of names are not touched before there are any.
    const std::int64_t bytes = work->bytes;
    work = new (memory) ProgressOfWork;
    work->bytes = bytes;
}

Doing::Doing(Activity activity, const std::string& subject) : activity_(activity), outer_(current) {
    current = work->Pack(activity, subject.c_str());
    if (IsMainThread()) work->main = current;
    if (activity == Activity::Reading) work->lastReading = current;
    if (activity == Activity::Effect) work->lastEffect = current;
    if (auto* counter = Counter()) ++*counter;
}

Doing::~Doing() {
    if (auto* counter = Counter()) --*counter;
    current = outer_;
    if (IsMainThread()) work->main = current;
}

std::atomic<int>* Doing::Counter() const {
    if (activity_ == Activity::Reading) return &work->readers;
    if (activity_ == Activity::Effect) return &work->effects;
    return nullptr;
}

void NoteCrash(int signal) {
    std::uint32_t none = 0;
    if (work->crash.compare_exchange_strong(none, current != 0 ? current : work->LikelyPlace())) {
        work->dataAtCrash = PrivateMemory();
    }
    // SA_RESETHAND has restored the default action. The signal is the one that the supervisor is told of.
    raise(signal);
}

}  // namespace ombrix::cli
