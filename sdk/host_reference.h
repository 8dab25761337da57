// A scope that owns a reference to a host object.
#pragma once

#include <utility>

#include "sdk/process_state.h"

namespace ombrix {

/// Owns one reference, or none, and drops it at its end.
class HostReference {
  public:
    /// Takes over a reference of the caller's.
    explicit HostReference(REALobjectStruct* owned) : object_(owned) {}
    /// Adds a reference to an object that somebody else keeps; null is allowed.
    static HostReference Share(REALobjectStruct* object) {
        if (object) ELockObject(object);
        return HostReference(object);
    }
    ~HostReference() {
        if (object_) EUnlockObject(object_);
    }
    HostReference(const HostReference&) = delete;
    HostReference& operator=(const HostReference&) = delete;

    explicit operator bool() const { return object_ != nullptr; }
    REALobjectStruct* Get() const { return object_; }
    /// Hands the reference over to the caller.
    REALobjectStruct* Release() { return std::exchange(object_, nullptr); }

  private:
    REALobjectStruct* object_;
};

}  // namespace ombrix
