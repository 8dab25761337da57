// The gallery as an HTML file that needs no other, and no script.
#pragma once

#include <string>

#include "cli/gallery/content.h"

namespace ombrix::cli {

/// In UTF-8.
std::string LayOutPage(const GalleryContent& content);

}  // namespace ombrix::cli
