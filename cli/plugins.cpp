#include "cli/plugins.h"

#include <algorithm>
#include <system_error>

#include "cli/failure.h"

namespace ombrix::cli {

namespace fs = std::filesystem;

std::vector<host::BrokenPlugin> LoadPlugins(host::Host& host, const std::vector<fs::path>& plugins) {
    const std::vector<host::BrokenPlugin> broken = host.LoadInstalled();
    const std::vector<host::ClassInfo> installed = plugins.empty() ? std::vector<host::ClassInfo>() : host.Classes();
    for (const fs::path& plugin : plugins) {
        if (!fs::exists(plugin)) throw WorkError("there is no plug-in file " + plugin.string());
        const auto isOf = [&plugin](const host::ClassInfo& type) {
            std::error_code error;
            return fs::equivalent(type.plugin, plugin, error);
        };
        if (std::ranges::any_of(installed, isOf)) continue;
        // A bare name would be looked up among the system's libraries.
        host.Load(fs::absolute(plugin));
    }
    return broken;
}

}  // namespace ombrix::cli
