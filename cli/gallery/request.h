// What to make a gallery of.
#pragma once

#include <filesystem>
#include <optional>

namespace ombrix::cli {

struct GalleryRequest {
    std::filesystem::path picture;
    std::optional<std::filesystem::path> fill, mask;
    int size = 1120;  ///< longer side of the page's pictures, in pixels
};

}  // namespace ombrix::cli
