// The shared object that a plug-in lies in.
#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "frame/definition_records.h"

namespace ombrix::host {

/// A loaded shared object with the entry of a plug-in; unloaded at the end of the scope.
class PluginFile {
  public:
    /// An Error, in one sentence, when there is no such file or it is no plug-in.
    explicit PluginFile(const std::filesystem::path& path);

    const std::string& Path() const { return path_; }
    void CallEntry(REALresolver resolver) const { entry_(resolver); }
    /// Whether both are one and the same shared object.
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
