// A chain of effects as a part of libvips' pipeline: it works on the strip of pixels that is asked for, while that is
// in the cache.
#pragma once

#include <atomic>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>
#include <vips/vips8>

#include "catalogue/parts.h"
#include "cli/images/image_reader.h"
#include "cli/session.h"

namespace ombrix::cli {

/// An effect that works by parts.
struct StripStep {
    host::Object effect;  ///< set up but for its pictures and the points that place them
    catalogue::PartRoles roles;
    std::vector<OpenedImage> pictures;  ///< of roles.pictures, in its order: 8-bit red, green, blue
    catalogue::Coordinates position;    ///< of the placed pictures
    std::optional<catalogue::Coordinates> extent;
    std::function<void()> check;  ///< throws when the effect reports an error
};

/// The steps, and what went wrong in them. Must outlive the images that it makes, and is destroyed by the host's
/// thread.
class Strips {
  public:
    /// At least one step. `source` takes what the first one is given.
    Strips(Session& session, OpenedImage source, std::vector<StripStep> steps)
        : session_(session), source_(std::move(source)), steps_(std::move(steps)), rowsRead_(PictureCount()) {}
    Strips(const Strips&) = delete;
    Strips& operator=(const Strips&) = delete;

    /// The image after the steps, computed as it is read, by any thread. Frames are worked on one by one.
    vips::VImage Image();

    /// Checks pictures that were not needed to their end, when all else is done: a file that is cut short there is
    /// damaged all the same. A WorkError says so.
    void CheckTheRest();

    /// Throws what a step threw while pixels were computed, if anything.
    void Rethrow() const;

  private:
    static int Generate(VipsRegion* out, void* inputs, void* images, void* self, gboolean* stop);
    std::size_t PictureCount() const;
    /// One part of one frame, in the coordinates of that. `top` is the frame's first row.
    void Fill(VipsRegion* out, VipsRegion** inputs, const catalogue::Rectangle& part, int top);

    Session& session_;
    const OpenedImage source_;
    const std::vector<StripStep> steps_;
    std::vector<std::atomic<int>> rowsRead_;  ///< of all pictures of all steps
    std::mutex mutex_;
    std::exception_ptr failure_;
};

}  // namespace ombrix::cli
