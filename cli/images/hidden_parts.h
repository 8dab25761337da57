// Parts of image files that libvips does not show, and that a copy therefore does not have.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace ombrix::cli {

/// "gain map", "animation", "further pictures".
std::vector<std::string> HiddenParts(const std::filesystem::path& file);

}  // namespace ombrix::cli
