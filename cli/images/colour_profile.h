// Embedded colour profiles.
#pragma once

#include <optional>
#include <string>
#include <vips/vips8>

namespace ombrix::cli {

/// What an image's profile can be used for.
struct ColourProfile {
    std::string name;  ///< "Display P3"; empty when it has none
    /// How it brings colours to others, the preferred way if it has that. Nothing when it is damaged or for other
    /// channels than the image has.
    std::optional<VipsIntent> intent;
};

/// Nothing when the image has none.
std::optional<ColourProfile> ProfileOf(const vips::VImage& image);

}  // namespace ombrix::cli
