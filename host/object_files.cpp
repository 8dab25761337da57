#include "host/object_files.h"

#include <dlfcn.h>

#include <algorithm>

#include "ombrix/host.h"
#include "platform/bitmap_context.h"

namespace ombrix::host {

namespace fs = std::filesystem;

fs::path ObjectFileOf(void* function) {
    Dl_info object;
    if (dladdr(function, &object) == 0) return {};
    // A program's own name is as it was typed, and a run path's may go up and down.
    std::error_code error;
    const fs::path file = fs::absolute(object.dli_fname, error);
    const fs::path folder = fs::canonical(file.parent_path(), error);
    return error ? fs::path() : folder / file.filename();
}

std::vector<fs::path> Host::OwnFolders() {
    std::error_code error;
    std::vector<fs::path> folders;
    for (const fs::path& folder : {fs::read_symlink("/proc/self/exe", error).parent_path(),
                                   ObjectFileOf(reinterpret_cast<void*>(&ObjectFileOf)).parent_path(),
                                   ObjectFileOf(reinterpret_cast<void*>(&OmbrixBitmapContextCreate)).parent_path()}) {
        if (!folder.empty() && std::ranges::find(folders, folder) == folders.end()) folders.push_back(folder);
    }
    return folders;
}

}  // namespace ombrix::host
