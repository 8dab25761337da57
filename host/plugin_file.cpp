#include "host/plugin_file.h"

#include <dlfcn.h>

#include "ombrix/error.h"
#include "platform/bitmap_context.h"
#include "text/phrases.h"

namespace ombrix::host {
namespace {

/// Plug-ins need the platform's functions from the process. A program that is linked with the platform offers them by
/// itself. One that loaded this library at run time does not, unless the platform is made global.
void MakePlatformVisible() {
    Dl_info platform;
    if (dladdr(reinterpret_cast<void*>(&OmbrixBitmapContextCreate), &platform) == 0) return;
    void* handle = dlopen(platform.dli_fname, RTLD_NOW | RTLD_NOLOAD | RTLD_GLOBAL);
    if (handle != nullptr) dlclose(handle);
}

}  // namespace

PluginFile::PluginFile(const std::filesystem::path& path) : path_(path.string()) {
    const std::string name = text::Quoted(path_);
    std::error_code status;
    if (!std::filesystem::exists(path, status)) throw Error("there is no plug-in file " + name);
    if (!std::filesystem::is_regular_file(path, status)) throw Error(name + " is no file, so it cannot be a plug-in");

    MakePlatformVisible();
    // A name without a folder would be looked up among the system's libraries.
    library_.reset(dlopen(std::filesystem::absolute(path).c_str(), RTLD_NOW | RTLD_LOCAL));
    if (!library_) {
        const char* reason = dlerror();
        throw Error(name + " cannot be loaded as a plug-in: " + (reason != nullptr ? reason : "no reason was given"));
    }
    entry_ = reinterpret_cast<void (*)(REALresolver)>(dlsym(library_.get(), "REALPluginMain"));
    if (entry_ == nullptr) throw Error(name + " is a shared object, but no plug-in: it has no function REALPluginMain");
}

void PluginFile::Close::operator()(void* library) const { dlclose(library); }

}  // namespace ombrix::host
