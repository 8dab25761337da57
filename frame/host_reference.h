// A reference to a host object as a scope.
#pragma once

#include <utility>

#include "frame/process_state.h"

namespace ombrix {

/// Owns one reference to a host object (or none) and drops it at the end of the scope.
class HostReference {
  public:
    /// Takes over a reference that the caller was given.
    explicit HostReference(REALobjectStruct* owned) : object_(owned) {}
    /// Adds a reference to an object that somebody else keeps (or to none).
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
    /// Hands the reference on to the caller.
    REALobjectStruct* Release() { return std::exchange(object_, nullptr); }

  private:
    REALobjectStruct* object_;
};

}  // namespace ombrix
