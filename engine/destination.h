// The new picture that receives an effect's result.
#pragma once

#include "engine/locked_pixels.h"
#include "sdk/host_reference.h"

namespace ombrix {

/// A locked new picture, unlocked and released at the end of the scope unless handed over.
class Destination {
  public:
    /// Of `model`'s size and depth. `model` is usable.
    explicit Destination(const LockedPixels& model);

    /// Whether the host gave such a picture and locked it.
    explicit operator bool() const { return matches_; }
    const LockedPixels& Pixels() const { return pixels_; }
    /// Unlocks it and hands its reference to the caller.
    REALobjectStruct* Finish();

  private:
    HostReference picture_;
    LockedPixels pixels_;
    bool matches_;
};

}  // namespace ombrix
