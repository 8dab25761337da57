// The embedded host: loads plug-ins and works with objects of the classes that they register. A program includes this
// header alone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include "ombrix/api.h"
#include "ombrix/error.h"
#include "ombrix/object.h"
#include "ombrix/picture.h"
#include "ombrix/reflection.h"
#include "ombrix/value.h"

namespace ombrix::host {

class HostState;

/// What the host does when a plug-in or the program breaks a rule: releases an object once too often, unlocks what it
/// has not locked, leaves a lock behind, calls from a foreign thread.
enum class FaultPolicy {
    Throw,  ///< note it, and end the call in which it happened with an Error
    Abort,  ///< print it and abort at once, for tests and debuggers
    Note,   ///< note it only; see Host::Faults
};

struct HostOptions {
    /// Who makes the Host, for the Error of the next who tries: "the camera server"; empty for the program.
    std::string owner = {};
    double version = 2024.0;  ///< the host's version, as plug-ins are told
    FaultPolicy faults = FaultPolicy::Throw;
    /// Services to hide from plug-ins, by name.
    std::set<std::string, std::less<>> withheldServices = {};
    /// Called with each fault, also with those found while the Host ends. Must not throw.
    std::function<void(const std::string&)> onFault = {};
};

/// Pixels in memory of the program.
struct PixelRows {
    void* base;               ///< the first byte of the first row
    std::ptrdiff_t rowBytes;  ///< from a row to the next; at least those of the pixels of one
    std::int64_t width;       ///< pixels
    std::int64_t height;      ///< rows
    int depth;                ///< 16, 24 or 32 bits per pixel, laid out as in a Picture
};

/// A plug-in that was found and cannot be used.
struct BrokenPlugin {
    std::filesystem::path file;
    std::string reason;  ///< one sentence
};

/// Plug-ins know one resolver per process, so only one Host exists at a time. It, its objects and its pictures belong
/// to the thread that made it, and to any other thread for its Turn. Names are the same in any case.
class OMBRIX_API Host {
  public:
    explicit Host(HostOptions options = {});
    /// Destroys objects that still live, noting a fault for each, and unloads the plug-ins.
    ~Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;

    /// Loads a plug-in and takes in what it registers: all of it, or nothing and an Error that names the bad class and
    /// row. A name without a folder is looked for in the current folder, then beside the program and beside the
    /// libraries of the host and its platform.
    void Load(const std::filesystem::path& plugin);
    /// Loads the standard plug-in, from beside the host's library or the program or from their folder ombrix/, and all
    /// others that are installed: the files that $OMBRIX_PLUGINS names and those in its folders, parted by colons; the
    /// files in ombrix/plugins/ of $XDG_DATA_HOME, or else of ~/.local/share; those in ombrix/plugins/ beside the
    /// host's library. What is loaded already stays. An Error when the standard plug-in cannot be loaded; others that
    /// cannot be are passed over and returned. A process with more rights than its user ignores the user's folders.
    std::vector<BrokenPlugin> LoadInstalled();
    /// The folders of the program, of the host's library and of the platform's, in this order and each once, where the
    /// files that belong to them lie.
    static std::vector<std::filesystem::path> OwnFolders();

    /// A new object of a class, registered or the host's own.
    Object New(std::string_view className);
    /// Pixels are 0. An Error when the size is negative, the depth is not 16, 24 or 32, or memory is short.
    Picture NewPicture(std::int64_t width, std::int64_t height, std::int64_t depth = 32);
    /// A picture over memory of the program, which it neither copies nor frees: the memory has to outlive the picture.
    /// An Error as for NewPicture, or when the rows overlap.
    Picture WrapPixels(const PixelRows& pixels);
    /// A picture that is not a bitmap: it has a size and no pixels.
    Picture NewDrawing(std::int64_t width, std::int64_t height);
    Point NewPoint(std::int64_t x, std::int64_t y);
    /// An IProgressHandler that calls `report(rowsDone, rowsInAll)`. What `report` throws is thrown on when the plug-in
    /// has returned from its call.
    Object NewProgressHandler(std::function<void(std::int64_t, std::int64_t)> report);

    /// Chooses a method of a module as Object::Call does, and calls it.
    Value CallModule(std::string_view module, std::string_view method, const std::vector<Argument>& arguments = {});
    /// Calls this method, for example one from ChooseMethod.
    Value CallModule(std::string_view module, const MethodInfo& method, const std::vector<Argument>& arguments);

    /// In the order of registration. The host's own classes come first.
    std::vector<ClassInfo> Classes() const;
    std::vector<ModuleInfo> Modules() const;
    /// Null when there is none. Valid until the next Load.
    const ClassInfo* FindClass(std::string_view name) const;
    const ModuleInfo* FindModule(std::string_view name) const;
    /// The class, then its superclasses.
    std::vector<const ClassInfo*> Ancestry(std::string_view className) const;
    /// Whether the class is, derives from or implements what is named.
    bool IsA(std::string_view className, std::string_view classOrInterface) const;
    /// Looks in the class, then in its superclasses; null when none has it.
    const PropertyInfo* FindProperty(std::string_view className, std::string_view property) const;

    /// The methods of this name: of a module, or of a class and its superclasses.
    std::vector<MethodInfo> FindMethods(std::string_view classOrModule, std::string_view method) const;
    /// The method that a call with arguments of these names means, for programs that need the parameters' types before
    /// they have values. Follows Object::Call as far as names decide. Nothing when no method takes the names; an Error
    /// when several do equally well.
    std::optional<MethodInfo> ChooseMethod(std::string_view classOrModule, std::string_view method,
                                           const std::vector<std::string>& arguments) const;

    class Turn;
    class ResultPlace;

    std::int64_t LiveObjects() const;
    std::int64_t OutstandingLocks() const;
    const std::vector<std::string>& Faults() const;

  private:
    std::unique_ptr<HostState> state_;
};

/// Lets the thread that makes it use the Host, its objects and its pictures for the time of its scope. Waits for the
/// turns of other threads; a thread has one at a time. An Error in a process that was forked after the first turn:
/// a thread that had its turn then would have it there forever. The Host's own thread takes turns as well, as long as
/// other threads may have theirs.
class OMBRIX_API Host::Turn {
  public:
    explicit Turn(Host& host);
    ~Turn();
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

  private:
    HostState& host_;
    std::thread::id before_;
};

/// Lets an effect's result land in memory of the program: within its scope, the first picture of just this size and
/// depth that a plug-in makes lies over these pixels, and has none any more when the scope ends. Scopes do not nest.
class OMBRIX_API Host::ResultPlace {
  public:
    /// An Error as for WrapPixels.
    ResultPlace(Host& host, const PixelRows& pixels);
    ~ResultPlace();
    ResultPlace(const ResultPlace&) = delete;
    ResultPlace& operator=(const ResultPlace&) = delete;

    /// Whether this is the picture that lies there.
    bool Holds(const Picture& picture) const;

  private:
    HostState& host_;
};

}  // namespace ombrix::host
