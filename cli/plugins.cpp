#include "cli/plugins.h"

#include <algorithm>
#include <system_error>

#include "cli/failure.h"

namespace ombrix::cli {

namespace fs = std::filesystem;

std::vector<host::BrokenPlugin> LoadPlugins(host::Host& host, const std::vector<fs::path>& plugins) {
    const std::vector<host::BrokenPlugin> broken = host.LoadInstalled();
    std::vector<fs::path> loaded;
    if (!plugins.empty()) {
        for (const host::ClassInfo& type : host.Classes()) loaded.push_back(type.plugin);
    }
    for (const fs::path& plugin : plugins) {
        if (!fs::exists(plugin)) throw WorkError("there is no plug-in file " + plugin.string());
        const auto isSame = [&plugin](const fs::path& other) {
            std::error_code error;
            return fs::equivalent(other, plugin, error);
        };
        if (std::ranges::any_of(loaded, isSame)) continue;
        loaded.push_back(plugin);
        // A bare name would be looked up among the system's libraries.
        host.Load(fs::absolute(plugin));
    }
    return broken;
}

}  // namespace ombrix::cli
