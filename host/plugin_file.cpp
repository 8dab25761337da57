#include "host/plugin_file.h"

#include <dlfcn.h>

#include "ombrix/error.h"
#include "ombrix/host.h"
#include "platform/bitmap_context.h"
#include "text/phrases.h"

namespace ombrix::host {

namespace fs = std::filesystem;

namespace {

/// Plug-ins need the platform's functions from the process. A program that is linked with the platform offers them by
/// itself. One that loaded this library at run time does not, unless the platform is made global.
void MakePlatformVisible() {
    Dl_info platform;
    if (dladdr(reinterpret_cast<void*>(&OmbrixBitmapContextCreate), &platform) == 0) return;
    void* handle = dlopen(platform.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_GLOBAL);
    if (handle != nullptr) dlclose(handle);
}

/// A name without a folder is also looked for beside the program, beside the host and beside the platform.
fs::path Located(const fs::path& path) {
    std::error_code error;
    if (path.has_parent_path() || fs::exists(path, error)) return path;
    for (const fs::path& folder : Host::OwnFolders()) {
        if (fs::exists(folder / path, error)) return folder / path;
    }
    return path;
}

}  // namespace

PluginFile::PluginFile(const fs::path& given) : path_(Located(given).string()) {
    const fs::path path = path_;
    const std::string name = text::Quoted(path_);
    std::error_code status;
    if (!fs::exists(path, status)) throw Error("there is no plug-in file " + name);
    if (!fs::is_regular_file(path, status)) throw Error(name + " is no file, so it cannot be a plug-in");

    MakePlatformVisible();
    // A name without a folder would be looked up among the system's libraries.
    library_.reset(dlopen(fs::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!library_) {
        const char* reason = dlerror();
        throw Error(name + " cannot be loaded as a plug-in: " + (reason != nullptr ? reason : "no reason was given"));
    }
    entry_ = reinterpret_cast<void (*)(REALresolver)>(dlsym(library_.get(), "REALPluginMain"));
    if (entry_ == nullptr) throw Error(name + " is a shared object, but no plug-in: it has no function REALPluginMain");
}

void PluginFile::Close::operator()(void* library) const { dlclose(library); }

}  // namespace ombrix::host
