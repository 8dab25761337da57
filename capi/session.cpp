#include "capi/session.h"

#include <pthread.h>

#include <atomic>
#include <mutex>
#include <optional>
#include <vector>

namespace ombrix::capi {
namespace {

thread_local std::string lastError;
thread_local bool isInside = false;

/// A child has neither the threads of its parent nor what they were about to do.
std::atomic<bool> forked = false;

struct Process {
    host::Host host{{.owner = "the C interface"}};
    std::optional<std::vector<host::BrokenPlugin>> broken;  ///< once plug-ins have been loaded
    std::optional<catalogue::Catalogue> catalogue;          ///< since the last was
};

/// Null before the first use. Never destroyed: threads may use it until the process ends.
std::atomic<Process*> process = nullptr;
std::mutex making;

Process& MakeProcess() {
    const std::lock_guard guard(making);
    if (Process* made = process) return *made;
    try {
        auto* made = new Process;
        pthread_atfork(nullptr, nullptr, [] { forked = true; });
        process = made;
        return *made;
    } catch (const host::Error& error) {
        throw Failure{OMBRIX_BUSY, error.what()};
    }
}

host::Host& EnteredHost() {
    if (forked) {
        throw Failure{OMBRIX_FORKED,
                      "this process was forked after effects were used, and can use none; fork before, or start a "
                      "program of its own"};
    }
    if (isInside) throw Failure{OMBRIX_BUSY, "effects cannot be used within a progress function"};
    Process* made = process;
    return made != nullptr ? made->host : MakeProcess().host;
}

}  // namespace

bool IsForked() noexcept { return forked; }

ombrix_status Failed(ombrix_status status, const std::string& sentence) noexcept {
    try {
        lastError = sentence;
    } catch (const std::bad_alloc&) {
        lastError.clear();
    }
    return status;
}

const char* LastError() noexcept { return lastError.c_str(); }

Session::Session() : turn_(EnteredHost()) { isInside = true; }
Session::~Session() { isInside = false; }

host::Host& Session::Host() const { return process.load()->host; }

const catalogue::Catalogue& Session::Catalogue() const {
    Process& current = *process;
    if (!current.broken) current.broken = current.host.LoadInstalled();
    if (!current.catalogue) current.catalogue.emplace(current.host, *current.broken);
    return *current.catalogue;
}

void Session::Load(const char* plugin) const {
    Catalogue();
    process.load()->catalogue.reset();
    Host().Load(plugin);
}

}  // namespace ombrix::capi
