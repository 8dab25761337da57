#include "host/installed_plugins.h"

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>

#include "host/object_files.h"
#include "ombrix/error.h"
#include "text/phrases.h"

namespace ombrix::host {

namespace fs = std::filesystem;

namespace {

/// Empty also in a process with more rights than its user, who could lead it to code of his own.
std::string Variable(const char* name) {
    const char* value = secure_getenv(name);
    return value != nullptr ? value : "";
}

/// Why the folder could not be read to its end, if it could not.
std::error_code AddFilesOf(const fs::path& folder, std::vector<fs::path>& files) {
    std::error_code error;
    const std::size_t before = files.size();
    for (fs::directory_iterator each(folder, error), end; !error && each != end; each.increment(error)) {
        if (each->path().extension() == ".so") files.push_back(each->path());
    }
    std::sort(files.begin() + static_cast<std::ptrdiff_t>(before), files.end());
    return error;
}

void AddNamed(std::string_view list, std::vector<fs::path>& files, std::vector<BrokenPlugin>& broken) {
    while (!list.empty()) {
        const std::size_t end = std::min(list.find(':'), list.size());
        const fs::path path(list.substr(0, end));
        list.remove_prefix(std::min(end + 1, list.size()));
        std::error_code error;
        if (path.empty()) continue;
        if (!fs::is_directory(path, error)) {
            files.push_back(path);
        } else if (error = AddFilesOf(path, files); error) {
            broken.push_back({path, "the folder of plug-ins " + path.string() + " cannot be read: " + error.message()});
        }
    }
}

fs::path UserDataFolder() {
    // The XDG base directory specification leaves relative ones out of account.
    if (const fs::path folder = Variable("XDG_DATA_HOME"); folder.is_absolute()) return folder;
    const fs::path home = Variable("HOME");
    return home.is_absolute() ? home / ".local/share" : fs::path();
}

}  // namespace

fs::path StandardPlugin() {
    std::vector<std::string> places;
    for (const fs::path& folder : Host::OwnFolders()) {
        for (const char* place : {"libombrix.so", "ombrix/libombrix.so"}) {
            std::error_code error;
            if (fs::exists(folder / place, error)) return folder / place;
            places.push_back((folder / place).string());
        }
    }
    throw Error("the standard plug-in is missing: it belongs at " + text::Join(places, " or "));
}

std::vector<fs::path> InstalledPlugins(std::vector<BrokenPlugin>& broken) {
    std::vector<fs::path> files, once;
    AddNamed(Variable("OMBRIX_PLUGINS"), files, broken);
    if (const fs::path data = UserDataFolder(); !data.empty()) AddFilesOf(data / "ombrix/plugins", files);
    AddFilesOf(ObjectFileOf(reinterpret_cast<void*>(&ObjectFileOf)).parent_path() / "ombrix/plugins", files);
    for (const fs::path& file : files) {
        const auto isSame = [&file](const fs::path& other) {
            std::error_code error;
            return other == file || fs::equivalent(other, file, error);
        };
        if (std::ranges::none_of(once, isSame)) once.push_back(file);
    }
    return once;
}

}  // namespace ombrix::host
