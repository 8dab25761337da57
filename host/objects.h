// The objects that live: made, counted and destroyed here.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/instance.h"
#include "host/registry.h"
#include "host/watch.h"

namespace ombrix::host {

/// References are of two sorts: those that the host and the program hold, which are always right, and those that
/// passed to a plug-in. Since they are counted apart, a plug-in that releases once too often is caught when it does,
/// and cannot take an object from under the program.
class ObjectStore {
  public:
    explicit ObjectStore(Watch& watch) : watch_(watch) {}
    ~ObjectStore();
    ObjectStore(const ObjectStore&) = delete;
    ObjectStore& operator=(const ObjectStore&) = delete;

    /// A new object, its memory 0 and its constructors run, with one reference, a plug-in's. Null without memory.
    REALobjectStruct* Create(const Class& type);

    /// Whether a handle is a live object's; any value may be asked about.
    bool IsLive(REALobjectStruct* handle) const { return live_.contains(handle); }
    /// `a Picture`, or what the handle is instead: `nil`, `a Picture that was destroyed in X.Y`, …
    std::string Describe(REALobjectStruct* handle) const;

    /// A plug-in's references. The handles must be live.
    void Retain(REALobjectStruct* object) { ++object->references; }
    void Release(REALobjectStruct* object);
    /// The host's and the program's references.
    void Hold(REALobjectStruct* object);
    void LetGo(REALobjectStruct* object);
    /// Makes a plug-in's reference the host's; a fault when the plug-ins have none.
    void Adopt(REALobjectStruct* object);

    std::int64_t LiveCount() const { return static_cast<std::int64_t>(live_.size()); }

    /// Destroys what still lives, whatever references there are.
    void DestroyAll();
    /// The same for the objects of one plug-in's classes.
    void DestroyAllOf(const std::string& plugin);
    /// A sentence for each object that still lives, the oldest first.
    std::vector<std::string> DescribeLive() const;

  private:
    /// An object that was destroyed a short while ago. Its memory is kept back, so that a handle to it is not soon a
    /// handle to something else.
    struct Dead {
        REALobjectStruct* memory;
        std::string description;
    };

    std::vector<REALobjectStruct*> LiveBySerial() const;
    void Destroy(REALobjectStruct* object);
    void Destroy(const std::vector<REALobjectStruct*>& objects);
    void RunDestructors(REALobjectStruct* object);
    void Bury(REALobjectStruct* object);
    void FreeOldestDead();

    Watch& watch_;
    std::unordered_set<REALobjectStruct*> live_;
    std::deque<Dead> dead_;
    std::uint64_t serials_ = 0;
};

}  // namespace ombrix::host
