#include "cli/plugins.h"

#include <string>
#include <system_error>

#include "cli/failure.h"

namespace ombrix::cli {

namespace fs = std::filesystem;

namespace {

/// Beside the command as built, in a library folder as installed.
fs::path StandardPlugin() {
    std::error_code error;
    const fs::path folder = fs::read_symlink("/proc/self/exe", error).parent_path();
    const fs::path beside = folder / "libombrix.so";
    const fs::path installed = folder / "../lib/ombrix/libombrix.so";
    for (const fs::path& candidate : {beside, installed}) {
        if (fs::exists(candidate, error)) return candidate.lexically_normal();
    }
    throw WorkError("the standard plug-in is missing: it belongs at " + beside.string() + " or " +
                    installed.lexically_normal().string());
}

}  // namespace

void LoadPlugins(host::Host& host, const std::vector<fs::path>& plugins) {
    host.Load(StandardPlugin());
    for (const fs::path& plugin : plugins) {
        if (!fs::exists(plugin)) throw WorkError("there is no plug-in file " + plugin.string());
        // A bare name would be looked up among the system's libraries.
        host.Load(fs::absolute(plugin));
    }
}

}  // namespace ombrix::cli
