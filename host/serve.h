// The way in for plug-ins: every function of the host that a plug-in can call is wrapped in Serve.
#pragma once

#include <exception>
#include <string>

#include "host/host_state.h"

namespace ombrix::host {

/// Does `body(host)` and returns its result, or an empty one: when there is no host, when this is not its thread, and
/// when something throws, since nothing may be thrown through a plug-in's frames. `service` is what faults call it.
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
