// Makes, counts and destroys objects.
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

/// References of the host and the program, which are always right, are counted apart from those that plug-ins have. So
/// a plug-in that releases once too often is caught when it does, and cannot destroy what the program still uses.
class ObjectStore {
  public:
    explicit ObjectStore(Watch& watch) : watch_(watch) {}
    ~ObjectStore();
    ObjectStore(const ObjectStore&) = delete;
    ObjectStore& operator=(const ObjectStore&) = delete;

    /// A new object: data of 0, then its constructors, and one reference for a plug-in. Null without memory.
    REALobjectStruct* Create(const Class& type);

    /// For any value, object or not.
    bool IsLive(REALobjectStruct* handle) const { return live_.contains(handle); }
    /// "a Picture"; or what else the handle is, such as "nil" or "a Picture that was destroyed in X.Y".
    std::string Describe(REALobjectStruct* handle) const;

    /// References of plug-ins. The handles must be live.
    void Retain(REALobjectStruct* object) { ++object->references; }
    void Release(REALobjectStruct* object);
    /// References of the host and the program.
    void Hold(REALobjectStruct* object);
    void LetGo(REALobjectStruct* object);
    /// Makes a plug-in's reference the program's. A fault when plug-ins have none.
    void Adopt(REALobjectStruct* object);

    std::int64_t LiveCount() const { return static_cast<std::int64_t>(live_.size()); }

    /// Regardless of references.
    void DestroyAll();
    /// The objects of one plug-in's classes.
    void DestroyAllOf(const std::string& plugin);
    /// A sentence for each object that still lives, oldest first.
    std::vector<std::string> DescribeLive() const;

  private:
    /// Keeps a destroyed object's memory for a while, so that its handle does not soon mean another object.
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
