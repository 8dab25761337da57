#include "host/host_state.h"

#include <algorithm>
#include <atomic>
#include <utility>

#include "host/own_classes.h"
#include "host/services.h"
#include "text/numbers.h"
#include "text/phrases.h"

namespace ombrix::host {
namespace {

std::atomic<HostState*> current = nullptr;

}  // namespace

HostState::HostState(HostOptions givenOptions)
    : options(std::move(givenOptions)), claim(options.owner), watch(options.faults, options.onFault), objects(watch) {
    current = this;
    try {
        for (REALclassDefinition* definition :
             {&PictureDefinition(), &GraphicsDefinition(), &PointDefinition(), &ProgressHandlerDefinition()}) {
            registry.AddClass(*definition, "");
        }
        registry.CheckTypes("");
    } catch (...) {
        current = nullptr;
        throw;
    }
}

HostState::~HostState() {
    for (const std::string& sentence : objects.DescribeLive()) watch.NoteFault(sentence);
    objects.DestroyAll();
    while (!plugins_.empty()) {
        registry.Remove(plugins_.back().Path());
        plugins_.pop_back();
    }
    current = nullptr;
}

HostState* HostState::Current() noexcept { return current; }

HostState& HostState::ForProgram() {
    if (!watch.OnOwnThread()) throw Error("a Host and its objects can only be used on the thread that made the Host");
    if (current != this) throw Error("plug-ins use another Host");
    return *this;
}

HostState& HostState::Required() {
    HostState* host = Current();
    if (host == nullptr) throw Error("there is no Host");
    return host->ForProgram();
}

REALobjectStruct* HostState::Passed(REALobjectStruct* handle, const char* service, const char* className) {
    const bool live = objects.IsLive(handle);
    if (live && (className == nullptr || Distance(*handle->type, className) >= 0)) return handle;
    watch.Fault("passed " + objects.Describe(handle) + " to " + service +
                (live ? ", which takes " + text::WithArticle(className) : ""));
    return nullptr;
}

bool HostState::HasLoaded(const std::filesystem::path& path) const {
    return std::ranges::any_of(plugins_, [&path](const PluginFile& each) {
        std::error_code error;
        return std::filesystem::equivalent(each.Path(), path, error);
    });
}

void HostState::Load(const std::filesystem::path& path) {
    PluginFile file(path);
    const std::string name = text::Quoted(file.Path());
    for (const PluginFile& other : plugins_) {
        if (other == file) throw Error("the plug-in " + name + " is loaded already");
    }
    plugins_.reserve(plugins_.size() + 1);

    Loading current{file.Path(), std::nullopt};
    try {
        Watch::Call call(watch, "the loading of " + name);
        loading = &current;
        file.CallEntry(&Resolve);
        loading = nullptr;
        if (current.refusal) throw Error("the plug-in " + name + " cannot be used: " + *current.refusal);
        if (!registry.HasAnyOf(file.Path())) {
            throw Error("the plug-in " + name + " has registered nothing: it does not work with a host of version " +
                        text::Shown(options.version));
        }
        try {
            registry.CheckTypes(file.Path());
        } catch (const Error& error) {
            throw Error("the plug-in " + name + " cannot be used: " + error.what());
        }
        call.Finish();
    } catch (...) {
        loading = nullptr;
        objects.DestroyAllOf(file.Path());
        registry.Remove(file.Path());
        throw;
    }
    plugins_.push_back(std::move(file));
}

}  // namespace ombrix::host
