// The embedded host: loads plug-ins, keeps what they register, and makes, reads, sets, calls and destroys objects of
// their classes. The one header that a program which embeds the host has to include.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "host/error.h"
#include "host/object.h"
#include "host/picture.h"
#include "host/reflection.h"

namespace ombrix::host {

/// What happens when a plug-in (or the program) breaks a rule between plug-in and host: an over-release, an unlock
/// without a lock, a lock left behind, a call from a foreign thread.
enum class FaultPolicy {
    Throw,  ///< note it; the call during which it happened ends with an Error that names the culprit
    Abort,  ///< print it and abort at the spot, for tests and debuggers
    Note,   ///< note it only (see Host::Faults)
};

struct HostOptions {
    double version = 2024.0;  ///< what the host says its version is
    FaultPolicy faults = FaultPolicy::Throw;
    /// Services, by the names that plug-ins ask for, that this host pretends not to have.
    std::set<std::string, std::less<>> withheldServices = {};
    /// Called with each fault when it is noted, also with those that the end of the Host brings. Must not throw.
    std::function<void(const std::string&)> onFault = {};
};

/// One host. Plug-ins know of one resolver in a process, so only one Host exists at a time, and everything happens on
/// the thread that made it.
class Host {
  public:
    explicit Host(HostOptions options = {});
    /// Unloads the plug-ins. Objects that still live are destroyed first and noted as faults.
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Loads a plug-in and takes in what it registers. An Error, which names the class and the row, when a record
    /// cannot be used; nothing of that plug-in is kept then.
    void Load(const std::filesystem::path& plugin);

    /// A new object of a registered class (any case), or of the host's own Picture, Point.
    Object New(std::string_view className);
    /// Pixels are 0. An Error when the size is negative, the depth is not 16, 24 or 32, or there is no memory.
    Picture NewPicture(std::int64_t width, std::int64_t height, std::int64_t depth = 32);
    /// A picture of a kind that has no pixels to lock as a bitmap, such as a drawing.
    Picture NewDrawing(std::int64_t width, std::int64_t height);
    Point NewPoint(std::int64_t x, std::int64_t y);
    /// An IProgressHandler whose OnProgress calls `report(rowsDone, rowsInAll)`. What `report` throws ends the call
    /// that reported, once the plug-in has returned.
    Object NewProgressHandler(std::function<void(std::int64_t, std::int64_t)> report);

    /// Calls a method of a module, with the rules of Object::Call.
    Value CallModule(std::string_view module, std::string_view method, const std::vector<Argument>& arguments = {});

    /// What is registered, in the order of registration; the host's own classes come first.
    std::vector<ClassInfo> Classes() const;
    std::vector<ModuleInfo> Modules() const;
    /// A class or module by name, in any case; null when there is none. Valid until the next Load.
    const ClassInfo* FindClass(std::string_view name) const;
    const ModuleInfo* FindModule(std::string_view name) const;
    /// The class and its superclasses, the class first.
    std::vector<const ClassInfo*> Ancestry(std::string_view className) const;

    std::int64_t LiveObjects() const;
    std::int64_t OutstandingLocks() const;
    const std::vector<std::string>& Faults() const;

  private:
    std::unique_ptr<class HostState> state_;
};

}  // namespace ombrix::host
