// The gallery as one HTML file that needs nothing else, no script either.
#pragma once

#include <string>

#include "cli/gallery_content.h"

namespace ombrix::cli {

/// The bytes of the file, in UTF-8.
std::string LayOutPage(const GalleryContent& content);

}  // namespace ombrix::cli
