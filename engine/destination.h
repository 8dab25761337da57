// The new picture that an effect writes its result to.
#pragma once

#include "engine/pixel_buffer.h"
#include "frame/host_reference.h"

namespace ombrix {

/// A new picture of the size and depth of another, locked. Released at the end of the scope unless it was handed on.
class Destination {
  public:
    /// `model` is usable.
    explicit Destination(const LockedPixels& model);

    /// Whether there is a picture, locked and of the size and depth asked for.
    explicit operator bool() const { return matches_; }
    const LockedPixels& Pixels() const { return pixels_; }
    /// Ends the lock and hands the picture's reference to the caller.
    REALobjectStruct* Finish();

  private:
    HostReference picture_;
    LockedPixels pixels_;
    bool matches_;
};

}  // namespace ombrix
