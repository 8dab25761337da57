// A Host's state, and how the services that plug-ins call find it.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/claim.h"
#include "host/invoke.h"
#include "host/objects.h"
#include "host/pixel_buffer.h"
#include "host/plugin_file.h"
#include "host/registry.h"
#include "host/watch.h"
#include "ombrix/host.h"

namespace ombrix::host {

class HostState {
  public:
    explicit HostState(HostOptions givenOptions);
    ~HostState();
    HostState(const HostState&) = delete;
    HostState& operator=(const HostState&) = delete;

    /// The Host of this process, or null. For any thread.
    static HostState* Current() noexcept;
    /// This Host, for use by the program. An Error on a foreign thread, or if plug-ins use another Host.
    HostState& ForProgram();
    /// The same for objects, which do not know their Host. An Error also when there is none.
    static HostState& Required();

    /// A handle that a plug-in passed to `service`, if it is a live object of the class. Otherwise null, and a fault.
    REALobjectStruct* Passed(REALobjectStruct* handle, const char* service, const char* className = nullptr);

    void Load(const std::filesystem::path& path);
    /// Whether this file, by any name, is among the loaded ones.
    bool HasLoaded(const std::filesystem::path& path) const;

    const HostOptions options;
    const Claim claim;
    Watch watch;
    Registry registry;
    ObjectStore objects;

    /// The plug-in whose entry is running.
    struct Loading {
        std::string plugin;
        std::optional<std::string> refusal;  ///< what is wrong with its records
    };
    Loading* loading = nullptr;

    /// Memory of the program for the next picture of its size and depth that a plug-in makes.
    std::optional<PixelView> resultPlace;
    REALobjectStruct* resultPicture = nullptr;  ///< the one that has it; held

  private:
    std::vector<PluginFile> plugins_;
};

}  // namespace ombrix::host
