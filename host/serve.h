// The way in for plug-ins. Every function that they can call is wrapped in Serve.
#pragma once

#include <exception>
#include <string>

#include "host/host_state.h"

namespace ombrix::host {

/// Returns `body(host)`. Returns an empty result when there is no host, on a foreign thread, and instead of an
/// exception, which must not pass through a plug-in's frames. Faults name it `service`.
template <class Result, class Body>
Result Serve(const char* service, Body body) noexcept {
    HostState* host = HostState::Current();
    if (host == nullptr) return Result();
    if (!host->watch.OnOwnThread()) {
        host->watch.FaultOfOtherThread(service);
        return Result();
    }
    try {
        return body(*host);
    } catch (const std::exception& error) {
        host->watch.Fault("could not be served by " + std::string(service) + ": " + error.what());
    }
    return Result();
}

}  // namespace ombrix::host
