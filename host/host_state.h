// What a Host consists of; and how the services and the host's own classes, which plug-ins call without saying which
// host they mean, come by it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/host.h"
#include "host/invoke.h"
#include "host/objects.h"
#include "host/plugin_file.h"
#include "host/registry.h"
#include "host/watch.h"

namespace ombrix::host {

class HostState {
  public:
    explicit HostState(HostOptions givenOptions);
    ~HostState();
    HostState(const HostState&) = delete;
    HostState& operator=(const HostState&) = delete;

    /// The host of this process, or null. Any thread may ask.
    static HostState* Current() noexcept;
    /// The host, for what the program asks of it: an Error when there is none or this is not its thread.
    static HostState& Required();

    /// The object behind a handle that a plug-in passed, when it lives and its class is or derives from
    /// `className`; otherwise null, and a fault that tells that the plug-in asked for `service`.
    REALobjectStruct* Passed(REALobjectStruct* handle, const char* service, const char* className = nullptr);

    void Load(const std::filesystem::path& path);

    const HostOptions options;
    Watch watch;
    Registry registry;
    ObjectStore objects;

    /// What is being loaded, while its entry runs.
    struct Loading {
        std::string plugin;
        std::optional<std::string> refusal;  ///< what is wrong with its records
    };
    Loading* loading = nullptr;

  private:
    std::vector<PluginFile> plugins_;
};

}  // namespace ombrix::host
