// A plug-in's shared object.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "sdk/definition_records.h"

namespace ombrix::host {

/// Loaded for the time of its scope.
class PluginFile {
  public:
    /// A name without a folder that is not in the current one is looked for beside the program, the host's library and
    /// the platform's. An Error when there is no such file, or it is no plug-in.
    explicit PluginFile(const std::filesystem::path& given);

    const std::string& Path() const { return path_; }
    void CallEntry(REALresolver resolver) const { entry_(resolver); }
    /// Whether both are the same shared object.
    bool operator==(const PluginFile& other) const { return library_ == other.library_; }

  private:
    struct Close {
        void operator()(void* library) const;
    };
    std::string path_;
    std::unique_ptr<void, Close> library_;
    void (*entry_)(REALresolver) = nullptr;
};

}  // namespace ombrix::host
