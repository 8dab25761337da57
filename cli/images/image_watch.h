// Looks at pixels while they go by.
#pragma once

#include <functional>
#include <vips/vips8>

namespace ombrix::cli {

/// The same image. `look` is called for each part that is computed, by any thread, and must outlive the image.
vips::VImage Watched(const vips::VImage& image, std::function<void(VipsRegion*)>& look);

}  // namespace ombrix::cli
